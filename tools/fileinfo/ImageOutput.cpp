// PNG, BMP and atomic file writing for the image subcommands.
#include "ImageOutput.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <unistd.h>

#include "imaging/NativeBitmap.h"
#include "imaging/PixelOps.h"
#include "imaging/codecs/ImageCodecs.h"
#include "utils/streams/MemStream.h"

namespace fitool {

bool WriteFileAtomic(const std::string& path, const void* data, size_t size, std::string* why) {
    if (path == "-") {
        if (std::fwrite(data, 1, size, stdout) != size || std::fflush(stdout) != 0) {
            *why = "cannot write to standard output";
            return false;
        }
        return true;
    }
    std::string temp = path + ".part" + std::to_string(::getpid());
    FILE* f = std::fopen(temp.c_str(), "wb");
    if (!f) {
        *why = std::string("cannot write: ") + std::strerror(errno);
        return false;
    }
    bool ok = std::fwrite(data, 1, size, f) == size;
    ok = std::fflush(f) == 0 && ok;
    ok = std::fclose(f) == 0 && ok;
    if (!ok || std::rename(temp.c_str(), path.c_str()) != 0) {
        *why = std::string("cannot write: ") + std::strerror(errno);
        std::remove(temp.c_str());
        return false;
    }
    return true;
}

bool WritePng(const FiBitmap& bitmap, bool alpha, const std::string& path, std::string* why) {
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
    std::vector<uint8_t> bytes;
    BrmUtils::MemStream* stream = BrmUtils::CreateMemStream(bytes);
    if (!stream || !BrmUtils::SaveImage(*image, L"image/png", stream)) {  // SaveImage releases the stream
        *why = "cannot encode PNG";
        return false;
    }
    return WriteFileAtomic(path, bytes.data(), bytes.size(), why);
}

bool DibToBmpBytes(const void* dib, size_t size, std::vector<uint8_t>* bmp) {
    if (!dib || size < sizeof(BITMAPINFOHEADER)) return false;
    BITMAPINFOHEADER h;
    std::memcpy(&h, dib, sizeof h);
    if (h.biSize < 12 || h.biSize > size) return false;
    uint64_t colours = 0;
    uint64_t masks = 0;
    if (h.biSize >= sizeof(BITMAPINFOHEADER)) {
        if (h.biBitCount <= 8) colours = h.biClrUsed ? h.biClrUsed : (uint64_t(1) << h.biBitCount);
        else colours = h.biClrUsed;
        if (h.biSize == sizeof(BITMAPINFOHEADER) && h.biCompression == 3) masks = 12;  // BI_BITFIELDS
    }
    uint64_t offBits = sizeof(BITMAPFILEHEADER) + uint64_t(h.biSize) + masks + colours * 4;
    uint64_t total = sizeof(BITMAPFILEHEADER) + uint64_t(size);
    if (offBits > total || total > 0xFFFFFFFFu) return false;
    BITMAPFILEHEADER fh{};
    fh.bfType = 0x4D42;
    fh.bfSize = DWORD(total);
    fh.bfOffBits = DWORD(offBits);
    bmp->resize(size_t(total));
    std::memcpy(bmp->data(), &fh, sizeof fh);
    std::memcpy(bmp->data() + sizeof fh, dib, size);
    return true;
}

}  // namespace fitool
