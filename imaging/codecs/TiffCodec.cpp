// TIFF through libtiff, over memory: reading goes through libtiff's RGBA
// interface, which handles every photometric it knows (CMYK separations and
// both kinds of alpha included); writing produces 8-bit RGB or RGBA, LZW.
#include <algorithm>
#include <cstring>

#include <pixman.h>
#include <tiffio.h>

#include "imaging/PixelOps.h"
#include "imaging/codecs/Codecs.h"

namespace BrmUtils::Codecs {
namespace {

constexpr tmsize_t kMaxSingleAllocation = tmsize_t(256) << 20;

// A memory file for libtiff: read-only over a block, or growing for writes.
struct MemoryFile {
    const uint8_t* data = nullptr;
    Bytes* out = nullptr;
    uint64_t size = 0;
    uint64_t pos = 0;
};

const uint8_t* Contents(const MemoryFile& f) { return f.out ? f.out->data() : f.data; }

tmsize_t FileRead(thandle_t h, void* buffer, tmsize_t count) {
    auto* f = static_cast<MemoryFile*>(h);
    if (count <= 0 || f->pos >= f->size) return 0;
    const uint64_t n = std::min<uint64_t>(uint64_t(count), f->size - f->pos);
    std::memcpy(buffer, Contents(*f) + f->pos, size_t(n));
    f->pos += n;
    return tmsize_t(n);
}

tmsize_t FileWrite(thandle_t h, void* buffer, tmsize_t count) {
    auto* f = static_cast<MemoryFile*>(h);
    if (!f->out || count < 0) return -1;
    try {
        const uint64_t end = f->pos + uint64_t(count);
        if (end > f->out->size()) f->out->resize(size_t(end));
        std::memcpy(f->out->data() + f->pos, buffer, size_t(count));
        f->pos = end;
        f->size = std::max(f->size, end);
    } catch (...) {
        return -1;
    }
    return count;
}

toff_t FileSeek(thandle_t h, toff_t offset, int whence) {
    auto* f = static_cast<MemoryFile*>(h);
    uint64_t base = whence == SEEK_CUR ? f->pos : whence == SEEK_END ? f->size : 0;
    const uint64_t target = base + offset;
    if (!f->out && target > f->size) return toff_t(-1);
    f->pos = target;
    return target;
}

int FileClose(thandle_t) { return 0; }
toff_t FileSize(thandle_t h) { return static_cast<MemoryFile*>(h)->size; }
int FileMap(thandle_t, void**, toff_t*) { return 0; }
void FileUnmap(thandle_t, void*, toff_t) {}

int Quiet(TIFF*, void*, const char*, const char*, va_list) { return 1; }

TIFF* OpenMemory(MemoryFile* file, const char* mode) {
    TIFFOpenOptions* options = TIFFOpenOptionsAlloc();
    if (!options) return nullptr;
    TIFFOpenOptionsSetMaxSingleMemAlloc(options, kMaxSingleAllocation);
    TIFFOpenOptionsSetErrorHandlerExtR(options, Quiet, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options, Quiet, nullptr);
    TIFF* tif = TIFFClientOpenExt("memory", mode, file, FileRead, FileWrite, FileSeek, FileClose, FileSize, FileMap,
                                  FileUnmap, options);
    TIFFOpenOptionsFree(options);
    return tif;
}

struct TiffCloser {
    void operator()(TIFF* t) const { TIFFClose(t); }
};
using TiffPtr = std::unique_ptr<TIFF, TiffCloser>;

PixelFormat FormatOf(TIFF* tif) {
    uint16_t photometric = 0, extraCount = 0;
    uint16_t* extra = nullptr;
    TIFFGetFieldDefaulted(tif, TIFFTAG_EXTRASAMPLES, &extraCount, &extra);
    for (uint16_t i = 0; i < extraCount && extra; ++i)
        if (extra[i] == EXTRASAMPLE_ASSOCALPHA || extra[i] == EXTRASAMPLE_UNASSALPHA) return PixelFormat::Argb32;
    if (TIFFGetField(tif, TIFFTAG_PHOTOMETRIC, &photometric) && photometric == PHOTOMETRIC_SEPARATED)
        return PixelFormat::Cmyk32;
    return PixelFormat::Rgb24;
}

}  // namespace

std::unique_ptr<NativeBitmap> DecodeTiff(const uint8_t* data, size_t size) {
    if (!data || size < 8) return nullptr;
    MemoryFile file;
    file.data = data;
    file.size = size;
    TiffPtr tif(OpenMemory(&file, "rm"));
    if (!tif) return nullptr;
    uint32_t width = 0, height = 0;
    TIFFGetField(tif.get(), TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tif.get(), TIFFTAG_IMAGELENGTH, &height);
    char message[1024];
    if (!DecodedSizeAllowed(width, height, size) || !TIFFRGBAImageOK(tif.get(), message)) return nullptr;
    const PixelFormat format = FormatOf(tif.get());
    auto bitmap = NativeBitmap::Create(int(width), int(height), PixelFormat::Argb32);
    if (!bitmap) return nullptr;
    auto* px = pixman_image_get_data(bitmap->Image());
    // Rows of exactly width words; the result is premultiplied, R in the low byte.
    if (!TIFFReadRGBAImageOriented(tif.get(), width, height, px, ORIENTATION_TOPLEFT, 1)) return nullptr;
    const size_t count = size_t(width) * size_t(height);
    for (size_t i = 0; i < count; ++i) {
        const uint32_t v = px[i];
        px[i] = (v & 0xFF00FF00u) | ((v & 0xFF) << 16) | ((v >> 16) & 0xFF);
    }
    bitmap->SetFormat(format);
    return bitmap;
}

bool EncodeTiff(const NativeBitmap& bitmap, const EncoderParams&, Bytes& out) {
    const int w = bitmap.Width(), h = bitmap.Height();
    if (w <= 0 || h <= 0) return false;
    const bool alpha = bitmap.HasAlpha();
    const uint16_t samples = alpha ? 4 : 3;
    const Bytes bgra = StraightBgra(bitmap);
    Bytes encoded;
    MemoryFile file;
    file.out = &encoded;
    {
        TiffPtr tif(OpenMemory(&file, "w"));
        if (!tif) return false;
        TIFF* t = tif.get();
        TIFFSetField(t, TIFFTAG_IMAGEWIDTH, uint32_t(w));
        TIFFSetField(t, TIFFTAG_IMAGELENGTH, uint32_t(h));
        TIFFSetField(t, TIFFTAG_BITSPERSAMPLE, 8);
        TIFFSetField(t, TIFFTAG_SAMPLESPERPIXEL, samples);
        TIFFSetField(t, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
        TIFFSetField(t, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        TIFFSetField(t, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
        TIFFSetField(t, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
        TIFFSetField(t, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
        if (alpha) {
            uint16_t extra = EXTRASAMPLE_UNASSALPHA;
            TIFFSetField(t, TIFFTAG_EXTRASAMPLES, 1, &extra);
        }
        TIFFSetField(t, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(t, 0));
        Bytes row(size_t(w) * samples);
        for (int y = 0; y < h; ++y) {
            const uint8_t* src = bgra.data() + size_t(y) * size_t(w) * 4;
            for (int x = 0; x < w; ++x) {
                uint8_t* d = row.data() + size_t(x) * samples;
                d[0] = src[4 * x + 2];
                d[1] = src[4 * x + 1];
                d[2] = src[4 * x];
                if (alpha) d[3] = src[4 * x + 3];
            }
            if (TIFFWriteScanline(t, row.data(), uint32_t(y), 0) < 0) return false;
        }
        if (!TIFFWriteDirectory(t)) return false;
    }
    out = std::move(encoded);
    out.resize(size_t(file.size));
    return true;
}

}  // namespace BrmUtils::Codecs
