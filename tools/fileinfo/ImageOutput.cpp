// PNG, BMP and atomic file writing for the image subcommands.
#include "ImageOutput.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#include "fileinfo/BitmapPng.h"

namespace fitool {

bool WriteFileAtomic(const std::string& path, const void* data, size_t size, std::string* why) {
    if (path == "-") {
        if (std::fwrite(data, 1, size, stdout) != size || std::fflush(stdout) != 0) {
            *why = "cannot write to standard output";
            return false;
        }
        return true;
    }
    // A device or a FIFO (say -o /dev/null) is written straight into: a
    // temporary renamed over it would replace the device with a plain file.
    struct stat st {};
    const bool special = ::stat(path.c_str(), &st) == 0 && !S_ISREG(st.st_mode);
    std::string temp = special ? path : path + ".part" + std::to_string(::getpid());
    FILE* f = std::fopen(temp.c_str(), "wb");
    if (!f) {
        *why = std::string("cannot write: ") + std::strerror(errno);
        return false;
    }
    bool ok = std::fwrite(data, 1, size, f) == size;
    ok = std::fflush(f) == 0 && ok;
    ok = std::fclose(f) == 0 && ok;
    if (special) {
        if (!ok) *why = std::string("cannot write: ") + std::strerror(errno);
        return ok;
    }
    if (!ok || std::rename(temp.c_str(), path.c_str()) != 0) {
        *why = std::string("cannot write: ") + std::strerror(errno);
        std::remove(temp.c_str());
        return false;
    }
    return true;
}

bool WritePng(const FiBitmap& bitmap, bool alpha, const std::string& path, std::string* why) {
    std::vector<uint8_t> bytes;
    return fi::EncodePng(bitmap, alpha, &bytes, why) && WriteFileAtomic(path, bytes.data(), bytes.size(), why);
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
