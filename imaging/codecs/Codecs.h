// The codecs behind ImageCodecs: one decoder and one encoder per format, and
// the limits every decoder applies before it allocates.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "imaging/NativeBitmap.h"

namespace BrmUtils::Codecs {

// An image may be decoded when both edges are in 1..NativeBitmap::kMaxEdge
// and it has no more pixels than 1024 per byte of input (or 2^20): no
// compressed format this library reads can honestly exceed that, and a tiny
// hostile file cannot make it allocate gigabytes.
inline bool DecodedSizeAllowed(uint64_t width, uint64_t height, size_t inputBytes) {
    if (width == 0 || height == 0 || width > uint64_t(NativeBitmap::kMaxEdge) ||
        height > uint64_t(NativeBitmap::kMaxEdge))
        return false;
    const uint64_t pixels = width * height;
    return pixels <= (uint64_t(1) << 20) || pixels / 1024 <= inputBytes;
}

struct EncoderParams {
    int quality = 0;  // JPEG quality 1..100; 0 for the encoder's default
};

using Bytes = std::vector<uint8_t>;

// Straight-alpha rows of the bitmap, B, G, R, A per pixel, top-down, stride width * 4.
Bytes StraightBgra(const NativeBitmap& bitmap);

std::unique_ptr<NativeBitmap> DecodePng(const uint8_t* data, size_t size);
std::unique_ptr<NativeBitmap> DecodeJpeg(const uint8_t* data, size_t size);
std::unique_ptr<NativeBitmap> DecodeTiff(const uint8_t* data, size_t size);
std::unique_ptr<NativeBitmap> DecodeBmp(const uint8_t* data, size_t size);

bool EncodePng(const NativeBitmap& bitmap, const EncoderParams& params, Bytes& out);
// Refuses a bitmap with alpha: JPEG cannot carry it.
bool EncodeJpeg(const NativeBitmap& bitmap, const EncoderParams& params, Bytes& out);
bool EncodeTiff(const NativeBitmap& bitmap, const EncoderParams& params, Bytes& out);
bool EncodeBmp(const NativeBitmap& bitmap, const EncoderParams& params, Bytes& out);

}  // namespace BrmUtils::Codecs
