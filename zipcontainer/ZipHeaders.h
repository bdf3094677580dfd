// The byte forms of the records the writer puts into an archive: local and
// central headers, the data descriptor and the end records.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "zipcontainer/ZipMember.h"

namespace ZipHeaders {

// The local header. `withExtra` false gives the fixed 30 bytes alone, with
// `extraLength` as the extra length, for rewriting a header in place.
std::vector<uint8_t> Local(const ZipMember& member, bool withExtra, uint16_t extraLength = 0);
// The length of the extra field Local() writes for `member`.
uint16_t LocalExtraLength(const ZipMember& member);
// The central header with name, extra and comment.
std::vector<uint8_t> Central(const ZipMember& member);
// Signature, CRC and the two sizes as 64-bit values.
std::vector<uint8_t> DataDescriptor(const ZipMember& member);

// Whether the central header of `member` cuts a value to its zip64 marker.
bool CentralNeedsZip64(const ZipMember& member);

struct EndValues {
    uint64_t entries = 0;
    uint64_t directoryOffset = 0;
    uint64_t directorySize = 0;
    bool zip64 = false;                // write the zip64 record and locator
    std::string narrowComment;         // the archive comment in its narrow form
};
// The zip64 record and locator (if asked for) and the plain end record.
std::vector<uint8_t> EndRecords(const EndValues& values);

}  // namespace ZipHeaders
