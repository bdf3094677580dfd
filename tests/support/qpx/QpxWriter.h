// QpxTest: paint images made in memory for tests, benchmarks, fuzz corpora
// and samples: every binary generation with the records of its flags,
// objects (backgrounds, text objects with fonts, tiled images) and a
// property block; the TIFF generation through libtiff's encoder.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "fileinfo/QpxFormat.h"
#include "platform/PropIdl.h"

namespace QpxTest {

using Bytes = std::vector<uint8_t>;

struct Object {
    uint32_t kind = QpxFormat::kKindBackground;
    uint32_t width = 0, height = 0, bits = 0, tile = 0;
    Bytes extra;  // follows the record; its size goes in the record
    Bytes tiles;  // follows the extra bytes
};

struct Image {
    std::string magic = "QPX9FILE";
    bool doubled = false;                // "PP11QPX9FILE" header in front
    uint32_t colourMode = 1, resolutionX = 0, resolutionY = 0, flags = 0;
    uint32_t skip = 0, extendedSkip = 0;  // header's and 0x100 record's skip counts
    std::string description;              // narrow, in the header
    std::u16string wideDescription;       // the 0x200 record
    bool tableAtEnd = false;              // the table behind the objects, by absolute offset
    std::vector<Object> objects;
    Bytes block;  // property block records, with end mark; empty: none
};

Bytes Write(const Image& image);

// The raw header value for a resolution in dots per inch.
uint32_t RawResolution(double dpi);

// A text object whose sub-records name one font each (a wide name if given, else narrow).
Object TextObject(const std::vector<std::pair<std::string, std::u16string>>& fonts);
// A tiled image object; `pixel(x, y)` gives the pixel's file bytes little-endian
// in a number (1 bit: 0 or 1; 24 bits: 0xBBGGRR is red first).
Object ImageObject(uint32_t kind, uint32_t width, uint32_t height, uint32_t bits, uint32_t tile,
                   const std::function<uint64_t(uint32_t, uint32_t)>& pixel);

// Property block records.
Bytes Record(uint32_t id, const Bytes& body);
Bytes Meta(const std::vector<std::pair<PROPERTYKEY, const PROPVARIANT*>>& values);
Bytes EndMark();

// TIFF files through libtiff, little-endian, one strip per directory unless rowsPerStrip says otherwise.
struct TiffDirectory {
    uint32_t width = 8, height = 8;
    uint16_t bits = 8, samples = 1, photometric = 1, compression = 1, predictor = 1, fillOrder = 1;
    uint16_t extraSample = 0;          // the last sample: 1 associated, 2 unassociated alpha
    uint32_t t4Options = 0, rowsPerStrip = 0;
    std::string software = "Brimo Pixora 5.0", description = "Thumbnail";
    bool privateMark = false;          // tag 0xA027 with the record of version 6.0
    float resolutionX = 0, resolutionY = 0;
    uint16_t unit = 2;
    std::vector<uint16_t> colourMap;   // three planes of 1 << bits entries
    Bytes rows;                        // packed rows, top down
};
Bytes WriteTiff(const std::vector<TiffDirectory>& directories);

}  // namespace QpxTest
