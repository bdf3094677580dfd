// One member of a zip archive as its central directory describes it, after
// the extra fields have been applied, and the extra-field records kept with
// it. The writer fills the same record for the members it adds.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/WinTypes.h"
#include "utils/strings/BrmString.h"

// An extra-field record that the layer doesn't interpret; written back as is.
struct ZipExtraRecord {
    uint16_t id = 0;
    std::vector<uint8_t> data;
};

struct ZipMember {
    BrmPlatform::BrmStringW name;
    BrmPlatform::BrmStringW comment;
    FILETIME modified{};
    FILETIME accessed{};
    FILETIME created{};
    uint16_t versionNeeded = 0;
    uint16_t flags = 0;  // data-descriptor bit cleared on reading
    uint16_t method = 0;
    uint32_t crc32 = 0;
    uint64_t compressedSize = 0;
    uint64_t uncompressedSize = 0;
    uint16_t internalAttributes = 0;
    uint32_t externalAttributes = 0;
    uint64_t localHeaderOffset = 0;
    std::vector<ZipExtraRecord> extras;
    bool deleted = false;       // removed from the logical zip; lookups skip it
    bool openForWrite = false;  // a write stream on it hasn't been closed yet
};
