// Conversions between straight and premultiplied 0xAARRGGBB pixels, shared by
// the DIB decoder, the codecs and the conversion to caller bitmaps.
#pragma once

#include <bit>
#include <cstdint>

namespace BrmUtils::Pixels {

// Rows are read and written as 32-bit words laid out B, G, R, A in memory.
static_assert(std::endian::native == std::endian::little, "pixel words assume a little-endian machine");

// c * a / 255, rounded, for c and a in 0..255.
inline uint32_t MulDiv255(uint32_t c, uint32_t a) {
    uint32_t t = c * a + 128;
    return (t + (t >> 8)) >> 8;
}

inline uint32_t Pack(uint32_t a, uint32_t r, uint32_t g, uint32_t b) {
    return (a << 24) | (r << 16) | (g << 8) | b;
}

inline uint32_t Premultiply(uint32_t argb) {
    uint32_t a = argb >> 24;
    if (a == 255) return argb;
    if (a == 0) return 0;
    return Pack(a, MulDiv255((argb >> 16) & 0xFF, a), MulDiv255((argb >> 8) & 0xFF, a), MulDiv255(argb & 0xFF, a));
}

// Inverse of Premultiply; a channel above its alpha (a filter's overshoot) clamps to 255.
inline uint32_t Unpremultiply(uint32_t argb) {
    uint32_t a = argb >> 24;
    if (a == 255) return argb;
    if (a == 0) return 0;
    auto un = [a](uint32_t c) {
        uint32_t v = (c * 255 + a / 2) / a;
        return v > 255 ? 255u : v;
    };
    return Pack(a, un((argb >> 16) & 0xFF), un((argb >> 8) & 0xFF), un(argb & 0xFF));
}

}  // namespace BrmUtils::Pixels
