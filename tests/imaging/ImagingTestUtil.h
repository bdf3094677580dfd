// Helpers of the imaging tests: packed DIBs built byte by byte, solid
// bitmaps, and pixel reads.
#pragma once

#include <cstring>
#include <memory>
#include <vector>

#include "imaging/NativeBitmap.h"
#include "platform/Bitmap.h"

namespace imaging_test {

struct DibSpec {
    int width = 1;
    int height = 1;  // negative: top-down
    uint16_t bitCount = 24;
    uint32_t compression = BI_RGB;
    uint32_t clrUsed = 0;
    uint16_t planes = 1;
    std::vector<uint32_t> table;  // colour table or masks, as stored
    std::vector<uint8_t> pixels;
};

inline std::vector<uint8_t> BuildDib(const DibSpec& s) {
    BITMAPINFOHEADER h{};
    h.biSize = 40;
    h.biWidth = s.width;
    h.biHeight = s.height;
    h.biPlanes = s.planes;
    h.biBitCount = s.bitCount;
    h.biCompression = s.compression;
    h.biClrUsed = s.clrUsed;
    std::vector<uint8_t> out(40 + 4 * s.table.size() + s.pixels.size());
    std::memcpy(out.data(), &h, 40);
    if (!s.table.empty()) std::memcpy(out.data() + 40, s.table.data(), 4 * s.table.size());
    if (!s.pixels.empty()) std::memcpy(out.data() + 40 + 4 * s.table.size(), s.pixels.data(), s.pixels.size());
    return out;
}

// Premultiplied 0xAARRGGBB at (x, y).
inline uint32_t PixelAt(BrmUtils::NativeBitmap& b, int x, int y) {
    return b.LockBits()->GetRow(y)[x];
}

inline std::unique_ptr<BrmUtils::NativeBitmap> Solid(int w, int h, uint32_t premultiplied,
                                                     BrmUtils::PixelFormat f = BrmUtils::PixelFormat::Argb32) {
    auto b = BrmUtils::NativeBitmap::Create(w, h, f);
    auto rows = b->LockBits();
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) rows->GetRow(y)[x] = premultiplied;
    return b;
}

// Channel-wise distance of two pixels.
inline int MaxDiff(uint32_t a, uint32_t b) {
    int d = 0;
    for (int s = 0; s < 32; s += 8) {
        int c = int((a >> s) & 0xFF) - int((b >> s) & 0xFF);
        d = std::max(d, c < 0 ? -c : c);
    }
    return d;
}

}  // namespace imaging_test
