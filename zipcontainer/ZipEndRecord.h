// The end of central directory record: the search for it at the tail of an
// archive, the zip64 locator and record behind it, and the values of the
// central directory that result.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/ObjIdl.h"

struct ZipEndRecord {
    uint64_t position = 0;  // file position of the plain end record
    uint64_t entries = 0;   // members in the central directory
    uint64_t directorySize = 0;
    uint64_t directoryOffset = 0;
    bool zip64 = false;             // a zip64 locator was found and followed
    std::vector<uint8_t> comment;   // archive comment, raw bytes

    // The search looks back at most this far: a buffer this large ends it.
    static constexpr uint64_t kSearchLimit = 65578;

    // Finds and reads the record of `stream`. False when the stream isn't an
    // archive this layer can read (no record in reach, several disks, a
    // compressed or encrypted directory, inconsistent counts).
    bool Read(IStream* stream);
};
