// BMP files: a file header in front of a packed DIB. Reading goes through
// the DIB decoder; writing produces a bottom-up 24-bit file, or 32 bits with
// straight alpha for a bitmap that has alpha.
#include <cstring>

#include "imaging/DibDecoder.h"
#include "imaging/codecs/Codecs.h"
#include "platform/Bitmap.h"

namespace BrmUtils::Codecs {

namespace {
constexpr LONG kPixelsPerMetre = 3779;  // 96 dots per inch
}

std::unique_ptr<NativeBitmap> DecodeBmp(const uint8_t* data, size_t size) {
    if (!data || size < sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER)) return nullptr;
    BITMAPFILEHEADER file;
    std::memcpy(&file, data, sizeof file);
    if (file.bfType != 0x4D42) return nullptr;  // "BM"
    DibSource source;
    source.block = data + sizeof file;
    source.size = size - sizeof file;
    // The file header's offset wins when it points into the block; writers
    // may leave a gap after the colour table. A nonsense offset is ignored.
    if (file.bfOffBits > sizeof file && file.bfOffBits - sizeof file <= source.size)
        source.pixelOffset = file.bfOffBits - sizeof file;
    source.opaqueIfAlphaAllZero = true;
    auto bitmap = DecodePackedDib(source);
    if (!bitmap && source.pixelOffset) {
        source.pixelOffset = 0;
        bitmap = DecodePackedDib(source);
    }
    return bitmap;
}

bool EncodeBmp(const NativeBitmap& bitmap, const EncoderParams&, Bytes& out) {
    const int w = bitmap.Width(), h = bitmap.Height();
    if (w <= 0 || h <= 0) return false;
    const bool alpha = bitmap.HasAlpha();
    const size_t bytesPerPixel = alpha ? 4 : 3;
    const size_t stride = (size_t(w) * bytesPerPixel + 3) & ~size_t(3);
    const size_t pixelBytes = stride * size_t(h);
    const size_t offset = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
    if (offset + pixelBytes > 0xFFFFFFFFu) return false;

    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;
    file.bfSize = DWORD(offset + pixelBytes);
    file.bfOffBits = DWORD(offset);
    BITMAPINFOHEADER info{};
    info.biSize = sizeof info;
    info.biWidth = w;
    info.biHeight = h;
    info.biPlanes = 1;
    info.biBitCount = WORD(bytesPerPixel * 8);
    info.biCompression = BI_RGB;
    info.biSizeImage = DWORD(pixelBytes);
    info.biXPelsPerMeter = kPixelsPerMetre;
    info.biYPelsPerMeter = kPixelsPerMetre;

    const Bytes bgra = StraightBgra(bitmap);
    Bytes result(offset + pixelBytes, 0);
    std::memcpy(result.data(), &file, sizeof file);
    std::memcpy(result.data() + sizeof file, &info, sizeof info);
    for (int y = 0; y < h; ++y) {
        const uint8_t* src = bgra.data() + size_t(y) * size_t(w) * 4;
        uint8_t* dst = result.data() + offset + size_t(h - 1 - y) * stride;
        if (alpha) {
            std::memcpy(dst, src, size_t(w) * 4);
        } else {
            for (int x = 0; x < w; ++x) std::memcpy(dst + 3 * size_t(x), src + 4 * size_t(x), 3);
        }
    }
    out = std::move(result);
    return true;
}

}  // namespace BrmUtils::Codecs
