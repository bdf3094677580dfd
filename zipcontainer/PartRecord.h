// The description a container keeps of one part (what it is, its media
// type, caption, index and, for images, its size), and the listing entry of
// a part as the zip layer sees it.
#pragma once

#include <cstdint>
#include <utility>

#include "metadata/MultiLanguageString.h"
#include "platform/WinTypes.h"
#include "utils/strings/BrmString.h"

struct PartRecord {
    BrmPlatform::BrmStringW fileKind;   // "thumbnail", "page", "main" ...
    BrmPlatform::BrmStringW mediaType;  // "image/png" ...
    Metadata::MultiLanguageString captions;
    int32_t index = -1;   // page or sequence number; -1 none
    int32_t width = -1;   // pixels; -1 unknown
    int32_t height = -1;

    friend bool operator==(const PartRecord&, const PartRecord&) = default;
};

// A part name with its record: what the preview look-ups answer. An empty
// name means nothing was found.
using NamedPartRecord = std::pair<BrmPlatform::BrmStringW, PartRecord>;

// One entry of ListParts. A name that is only a link (its member lives
// elsewhere) has `isLink` set and zero sizes.
struct PartListing {
    BrmPlatform::BrmStringW name;
    BrmPlatform::BrmStringW comment;
    FILETIME modified{};
    FILETIME accessed{};
    FILETIME created{};
    uint64_t compressedSize = 0;
    uint64_t uncompressedSize = 0;
    uint16_t method = 0;  // 0 stored, 8 deflated
    uint32_t crc32 = 0;
    bool isLink = false;
};
