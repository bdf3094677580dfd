// The extra-field records of a member: reading those this layer understands
// (zip64 sizes, NTFS times, unicode name and comment) into the member, and
// writing the zip64 and NTFS records of the headers the writer makes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "zipcontainer/ZipMember.h"

namespace ZipExtraFields {

// The raw header values the extra records refer to.
struct CentralValues {
    const uint8_t* rawName = nullptr;
    size_t rawNameLength = 0;
    const uint8_t* rawComment = nullptr;
    size_t rawCommentLength = 0;
    uint32_t plainCompressedSize = 0;
    uint32_t plainUncompressedSize = 0;
    uint32_t plainLocalHeaderOffset = 0;
};

// Walks the extra field of a central header. Interpreted records change
// `member`; the others are appended to `member.extras`.
void Apply(const uint8_t* extra, size_t length, const CentralValues& plain, ZipMember& member);

// A zip64 record for the sizes (and, in the central header, the offset) that
// don't fit in 32 bits; nothing if all fit.
void AppendZip64(std::vector<uint8_t>& out, const ZipMember& member, bool withOffset);
// The NTFS record with the member's three times.
void AppendNtfsTimes(std::vector<uint8_t>& out, const ZipMember& member);
// The records kept from reading, as they were.
void AppendKept(std::vector<uint8_t>& out, const ZipMember& member);

}  // namespace ZipExtraFields
