// Builds small uncompressed little-endian TIFF files byte by byte, so that the
// tests can feed the decoder photometrics the encoder never writes.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

namespace imaging_test {

struct TiffSpec {
    uint32_t width = 1;
    uint32_t height = 1;
    uint16_t photometric = 2;  // 2 RGB, 5 separated (CMYK)
    uint16_t samples = 3;
    uint16_t extraSample = 0;  // 0 none, 1 associated alpha, 2 unassociated alpha
    std::vector<uint8_t> pixels;
};

inline std::vector<uint8_t> BuildTiff(const TiffSpec& s) {
    struct Entry { uint16_t tag, type; uint32_t count, value; };
    const uint16_t kShort = 3, kLong = 4;
    const bool hasExtra = s.extraSample != 0;
    const uint16_t n = hasExtra ? 11 : 10;
    const uint32_t ifdEnd = 8 + 2 + 12u * n + 4;
    const uint32_t bitsAt = ifdEnd, pixelsAt = bitsAt + 2u * s.samples;
    std::vector<Entry> entries = {
        {256, kLong, 1, s.width},          {257, kLong, 1, s.height},
        {258, kShort, s.samples, bitsAt},  {259, kShort, 1, 1},
        {262, kShort, 1, s.photometric},   {273, kLong, 1, pixelsAt},
        {277, kShort, 1, s.samples},       {278, kLong, 1, s.height},
        {279, kLong, 1, uint32_t(s.pixels.size())}, {284, kShort, 1, 1},
    };
    if (hasExtra) entries.push_back({338, kShort, 1, s.extraSample});
    std::vector<uint8_t> out = {'I', 'I', 42, 0, 8, 0, 0, 0};
    // resize and memcpy rather than insert: GCC 12 at -O3 warns falsely on
    // inserting from a pointer range into this vector.
    auto put = [&out](const void* p, size_t k) {
        const size_t at = out.size();
        out.resize(at + k);
        if (k) std::memcpy(out.data() + at, p, k);
    };
    put(&n, 2);
    for (const auto& e : entries) {
        put(&e.tag, 2);
        put(&e.type, 2);
        put(&e.count, 4);
        put(&e.value, 4);  // a SHORT value sits in the low bytes
    }
    const uint32_t next = 0;
    put(&next, 4);
    for (uint16_t i = 0; i < s.samples; ++i) {
        const uint16_t eight = 8;
        put(&eight, 2);
    }
    put(s.pixels.data(), s.pixels.size());
    return out;
}

}  // namespace imaging_test
