// A bitmap handed out by a reader, encoded as PNG bytes.
#include "fileinfo/BitmapPng.h"

#include "imaging/NativeBitmap.h"
#include "imaging/PixelOps.h"
#include "imaging/codecs/ImageCodecs.h"
#include "utils/streams/MemStream.h"

namespace fi {

bool EncodePng(const FiBitmap& bitmap, bool alpha, std::vector<uint8_t>* png, std::string* why) {
    if (!bitmap.bits || bitmap.width <= 0 || bitmap.height <= 0) {
        *why = "empty bitmap";
        return false;
    }
    auto image = BrmUtils::NativeBitmap::Create(bitmap.width, bitmap.height,
                                                alpha ? BrmUtils::PixelFormat::Argb32 : BrmUtils::PixelFormat::Rgb24);
    if (!image) {
        *why = "bitmap too large";
        return false;
    }
    {
        auto access = image->LockBits();
        for (int y = 0; y < bitmap.height; ++y) {
            uint32_t* row = access ? access->GetRow(y) : nullptr;
            if (!row) {
                *why = "cannot convert the bitmap";
                return false;
            }
            const uint8_t* src = bitmap.bits + size_t(y) * size_t(bitmap.width) * 4;
            for (int x = 0; x < bitmap.width; ++x, src += 4) {
                uint32_t argb = uint32_t(src[3]) << 24 | uint32_t(src[2]) << 16 | uint32_t(src[1]) << 8 | src[0];
                row[x] = alpha ? BrmUtils::Pixels::Premultiply(argb) : (argb | 0xFF000000u);
            }
        }
    }
    png->clear();
    BrmUtils::MemStream* stream = BrmUtils::CreateMemStream(*png);
    if (!stream || !BrmUtils::SaveImage(*image, L"image/png", stream)) {  // SaveImage releases the stream
        *why = "cannot encode PNG";
        return false;
    }
    return true;
}

}  // namespace fi
