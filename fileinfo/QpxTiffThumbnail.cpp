// The TIFF generation's thumbnail. The directory walk is this reader's own
// (little-endian only, the application's software tag, the thumbnail mark,
// at most 480 pixels on each side); decoding the chosen directory's strips
// is left to libtiff, over the source stream and under a memory limit.
#include "fileinfo/QpxTiffThumbnail.h"

#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <set>
#include <vector>

#include "fileinfo/QpxDib.h"
#include "fileinfo/QpxStreamReader.h"

namespace {

using Rd = QpxStreamReader;

constexpr uint32_t kMaxThumbnailEdge = 480;
constexpr uint32_t kMaxDirectories = 1024;
constexpr uint16_t kTagPrivateThumbnail = 0xA027;
constexpr uint32_t kPrivateThumbnailMark = 16;
constexpr uint32_t kSoftwareSize = 21;
constexpr tmsize_t kMaxSingleAllocation = tmsize_t(16) << 20;

enum class Version { Unknown, Five, Six };

// What the walk takes from one directory.
struct Directory {
    uint64_t offset = 0;
    uint32_t width = 0, height = 0, compression = 1, photometric = 0, samples = 1, bits = 1, unit = 2;
    double resolutionX = 0, resolutionY = 0;
    bool software = false, thumbnailText = false, privateMark = false;
    Version version = Version::Unknown;
};

uint32_t ShortOrLong(const uint8_t* entry) {
    const uint16_t type = Rd::Get16(entry, 2);
    if (type == 3) return Rd::Get16(entry, 8);
    if (type == 4) return Rd::Get32(entry, 8);
    return 0;
}

// The bytes of an entry's value: inline when they fit in four, else at the offset.
bool ValueBytes(Rd& in, const uint8_t* entry, uint32_t size, uint8_t* out) {
    if (size <= 4) {
        std::memcpy(out, entry + 8, size);
        return true;
    }
    return in.Seek(Rd::Get32(entry, 8)) && in.Read(out, size);
}

double Rational(Rd& in, const uint8_t* entry) {
    uint8_t value[8];
    if (!in.Seek(Rd::Get32(entry, 8)) || !in.Read(value, 8)) return 0;
    const uint32_t denominator = Rd::Get32(value, 4);
    return denominator ? double(Rd::Get32(value, 0)) / denominator : 0.0;
}

// False when the directory cannot be read or its software is another's.
bool ReadDirectory(Rd& in, Directory& dir, uint64_t& next) {
    uint8_t countBytes[2];
    if (!in.Seek(dir.offset) || !in.Read(countBytes, 2)) return false;
    const uint32_t count = Rd::Get16(countBytes, 0);
    std::vector<uint8_t> entries;
    uint8_t nextBytes[4];
    if (!in.Read(entries, uint64_t(count) * 12) || !in.Read(nextBytes, 4)) return false;
    next = Rd::Get32(nextBytes, 0);
    for (uint32_t i = 0; i < count; ++i) {
        const uint8_t* e = entries.data() + i * 12;
        const uint16_t tag = Rd::Get16(e, 0);
        const uint32_t n = Rd::Get32(e, 4);
        switch (tag) {
            case 256: dir.width = ShortOrLong(e); break;
            case 257: dir.height = ShortOrLong(e); break;
            case 258:
                // One value inline; more as SHORTs, inline up to two, else behind the offset.
                if (n == 1 || Rd::Get16(e, 2) != 3 || n <= 2) {
                    dir.bits = Rd::Get16(e, 2) == 3 ? Rd::Get16(e, 8) : ShortOrLong(e);
                } else {
                    uint8_t first[2];
                    if (!in.Seek(Rd::Get32(e, 8)) || !in.Read(first, 2)) return false;
                    dir.bits = Rd::Get16(first, 0);
                }
                break;
            case 259: dir.compression = ShortOrLong(e); break;
            case 262: dir.photometric = ShortOrLong(e); break;
            case 277: dir.samples = ShortOrLong(e); break;
            case 282: dir.resolutionX = Rational(in, e); break;
            case 283: dir.resolutionY = Rational(in, e); break;
            case 296: dir.unit = ShortOrLong(e); break;
            case 270: {
                uint8_t text[9];
                dir.thumbnailText = n >= 9 && ValueBytes(in, e, 9, text) && std::memcmp(text, "Thumbnail", 9) == 0;
                break;
            }
            case 305: {
                char text[kSoftwareSize + 1] = {};
                if (!ValueBytes(in, e, std::min(n, kSoftwareSize), reinterpret_cast<uint8_t*>(text))) return false;
                dir.software = true;
                if (std::strcmp(text, "Brimo Pixora 5.0") == 0) dir.version = Version::Five;
                else if (std::strcmp(text, "Brimo Pixora 6.0") == 0) dir.version = Version::Six;
                else return false;
                break;
            }
            case kTagPrivateThumbnail: {
                uint8_t record[8];
                dir.privateMark = in.Seek(Rd::Get32(e, 8)) && in.Read(record, 8) &&
                                  Rd::Get32(record, 4) == kPrivateThumbnailMark;
                break;
            }
            default: break;
        }
    }
    return true;
}

// The directory that holds the thumbnail; false when there is none.
bool FindThumbnail(Rd& in, Directory& found) {
    uint8_t header[8];
    if (!in.Read(header, 8) || header[0] != 'I' || header[1] != 'I' || Rd::Get16(header, 2) != 42) return false;
    Version version = Version::Unknown;
    std::set<uint64_t> seen;
    for (uint64_t offset = Rd::Get32(header, 4); offset != 0 && seen.size() < kMaxDirectories;) {
        if (!seen.insert(offset).second) return false;  // a chain that loops
        Directory dir;
        dir.offset = offset;
        if (!ReadDirectory(in, dir, offset)) return false;
        if (dir.software) version = dir.version;
        const bool marked = (version == Version::Five && dir.thumbnailText) ||
                            (version == Version::Six && dir.privateMark);
        if (marked && dir.width <= kMaxThumbnailEdge && dir.height <= kMaxThumbnailEdge) {
            found = dir;
            return true;
        }
    }
    return false;
}

// ---- libtiff over the stream -------------------------------------------

struct Source {
    IStream* stream;
    uint64_t size;
};

tmsize_t StreamRead(thandle_t h, void* buffer, tmsize_t count) {
    auto* s = static_cast<Source*>(h);
    uint64_t read = 0;
    if (count <= 0 || !BrmUtils::ReadFully(s->stream, buffer, uint64_t(count), read)) return count < 0 ? -1 : 0;
    return tmsize_t(read);
}
tmsize_t StreamWrite(thandle_t, void*, tmsize_t) { return -1; }
toff_t StreamSeek(thandle_t h, toff_t offset, int whence) {
    auto* s = static_cast<Source*>(h);
    const DWORD origin = whence == SEEK_CUR ? STREAM_SEEK_CUR : whence == SEEK_END ? STREAM_SEEK_END : STREAM_SEEK_SET;
    ULARGE_INTEGER position{};
    if (FAILED(s->stream->Seek(MakeLargeInteger(int64_t(offset)), origin, &position))) return toff_t(-1);
    return position.QuadPart;
}
int StreamClose(thandle_t) { return 0; }
toff_t StreamSize(thandle_t h) { return static_cast<Source*>(h)->size; }
int NoMap(thandle_t, void**, toff_t*) { return 0; }
void NoUnmap(thandle_t, void*, toff_t) {}
int Quiet(TIFF*, void*, const char*, const char*, va_list) { return 1; }

struct TiffCloser {
    void operator()(TIFF* t) const { TIFFClose(t); }
};
using TiffPtr = std::unique_ptr<TIFF, TiffCloser>;

TiffPtr OpenDirectory(Source& source, uint64_t offset) {
    TIFFOpenOptions* options = TIFFOpenOptionsAlloc();
    if (!options) return nullptr;
    TIFFOpenOptionsSetMaxSingleMemAlloc(options, kMaxSingleAllocation);
    TIFFOpenOptionsSetErrorHandlerExtR(options, Quiet, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options, Quiet, nullptr);
    // "h": the header only; the directory is the one the walk chose.
    TiffPtr tif(TIFFClientOpenExt("qpx", "rh", &source, StreamRead, StreamWrite, StreamSeek, StreamClose, StreamSize,
                                  NoMap, NoUnmap, options));
    TIFFOpenOptionsFree(options);
    if (tif && !TIFFSetSubDirectory(tif.get(), offset)) tif.reset();
    return tif;
}

// The strips of the directory, decoded, one row after the other.
bool ReadRows(TIFF* tif, uint32_t height, std::vector<uint8_t>& rows, tmsize_t& rowBytes) {
    uint16_t planar = PLANARCONFIG_CONTIG;
    TIFFGetFieldDefaulted(tif, TIFFTAG_PLANARCONFIG, &planar);
    rowBytes = TIFFScanlineSize(tif);
    if (planar != PLANARCONFIG_CONTIG || rowBytes <= 0 || rowBytes > (tmsize_t(1) << 20)) return false;
    rows.assign(size_t(rowBytes) * height, 0);
    const tmsize_t stripBytes = TIFFStripSize(tif);
    std::vector<uint8_t> strip;
    size_t filled = 0;
    for (uint32_t s = 0; s < TIFFNumberOfStrips(tif) && filled < rows.size(); ++s) {
        if (stripBytes <= 0) return false;
        strip.resize(size_t(stripBytes));
        const tmsize_t got = TIFFReadEncodedStrip(tif, s, strip.data(), stripBytes);
        if (got < 0) return false;
        const size_t take = std::min(size_t(got), rows.size() - filled);
        std::memcpy(rows.data() + filled, strip.data(), take);
        filled += take;
    }
    return filled == rows.size();
}

int32_t PixelsPerMetre(double value, uint32_t unit) {
    return unit == 3 ? int32_t(value * 100) : int32_t(value * 10000 / 254);
}

void SetResolution(QpxDib& dib, const Directory& dir) {
    if (!(dir.resolutionX > 0) || !(dir.resolutionY > 0)) return;  // the default for both
    if (dir.unit == 2 || dir.unit == 3) {
        dib.SetResolution(PixelsPerMetre(dir.resolutionX, dir.unit), PixelsPerMetre(dir.resolutionY, dir.unit));
    } else {
        dib.SetResolution(QpxDib::kDefaultPpm, int32_t(QpxDib::kDefaultPpm * dir.resolutionY / dir.resolutionX));
    }
}

bool Accepted(const Directory& dir) {
    static const uint32_t compressions[] = {1, 2, 3, 4, 5, 32773};
    if (std::find(std::begin(compressions), std::end(compressions), dir.compression) == std::end(compressions))
        return false;
    if (dir.photometric >= 4 && dir.photometric <= 10 && dir.photometric != 5 && dir.photometric != 10) return false;
    if (dir.photometric > 10 || dir.width == 0 || dir.height == 0) return false;
    if (dir.photometric <= 1 || dir.photometric == 3) return dir.samples == 1 && (dir.bits == 1 || dir.bits == 2 || dir.bits == 4 || dir.bits == 8);
    return dir.bits == 8 && dir.samples >= (dir.photometric == 5 ? 4u : 3u) && dir.samples <= 8;
}

// One value of `bits` bits at pixel x of a row.
uint8_t Sample(const uint8_t* row, uint32_t x, uint32_t bits) {
    const uint32_t bit = x * bits;
    return uint8_t((row[bit / 8] >> (8 - bits - bit % 8)) & ((1u << bits) - 1));
}

DibBlock Convert(TIFF* tif, const Directory& dir, const std::vector<uint8_t>& rows, tmsize_t rowBytes) {
    QpxDib dib;
    if (dir.photometric <= 1 || dir.photometric == 3) {
        const uint32_t colours = 1u << dir.bits;
        if (!dib.Create(dir.width, dir.height, 8, colours)) return {};
        uint16_t *red = nullptr, *green = nullptr, *blue = nullptr;
        if (dir.photometric == 3 && !TIFFGetField(tif, TIFFTAG_COLORMAP, &red, &green, &blue)) return {};
        for (uint32_t i = 0; i < colours; ++i) {
            if (red) {
                dib.SetColour(i, uint8_t(red[i] >> 8), uint8_t(green[i] >> 8), uint8_t(blue[i] >> 8));
            } else {
                const uint8_t up = uint8_t(i * 255 / (colours - 1));
                const uint8_t grey = dir.photometric == 1 ? up : uint8_t(255 - up);
                dib.SetColour(i, grey, grey, grey);
            }
        }
        for (uint32_t y = 0; y < dir.height; ++y) {
            const uint8_t* from = rows.data() + size_t(rowBytes) * y;
            uint8_t* to = dib.Row(y);
            for (uint32_t x = 0; x < dir.width; ++x) to[x] = Sample(from, x, dir.bits);
        }
    } else {
        if (!dib.Create(dir.width, dir.height, 24, 0)) return {};
        for (uint32_t y = 0; y < dir.height; ++y) {
            const uint8_t* from = rows.data() + size_t(rowBytes) * y;
            uint8_t* to = dib.Row(y);
            for (uint32_t x = 0; x < dir.width; ++x, from += dir.samples, to += 3) {
                if (dir.photometric == 5) {
                    const uint32_t k = from[3];
                    to[0] = uint8_t(255 - std::min<uint32_t>(from[2] + k, 255));
                    to[1] = uint8_t(255 - std::min<uint32_t>(from[1] + k, 255));
                    to[2] = uint8_t(255 - std::min<uint32_t>(from[0] + k, 255));
                } else {
                    to[0] = from[2];
                    to[1] = from[1];
                    to[2] = from[0];
                }
            }
        }
    }
    SetResolution(dib, dir);
    return dib.Release();
}

}  // namespace

DibBlock ReadQpxTiffThumbnail(IStream* stream) {
    if (!stream) return {};
    Rd in(stream);
    Directory dir;
    if (!FindThumbnail(in, dir) || !Accepted(dir)) return {};
    Source source{stream, in.Size()};
    if (FAILED(stream->Seek(MakeLargeInteger(0), STREAM_SEEK_SET, nullptr))) return {};
    TiffPtr tif = OpenDirectory(source, dir.offset);
    if (!tif) return {};
    // libtiff's reading of the directory must agree with the walk's.
    uint32_t width = 0, height = 0;
    uint16_t bits = 0, samples = 0;
    TIFFGetField(tif.get(), TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tif.get(), TIFFTAG_IMAGELENGTH, &height);
    TIFFGetFieldDefaulted(tif.get(), TIFFTAG_BITSPERSAMPLE, &bits);
    TIFFGetFieldDefaulted(tif.get(), TIFFTAG_SAMPLESPERPIXEL, &samples);
    if (width != dir.width || height != dir.height || bits != dir.bits || samples != dir.samples) return {};
    std::vector<uint8_t> rows;
    tmsize_t rowBytes = 0;
    if (!ReadRows(tif.get(), dir.height, rows, rowBytes)) return {};
    return Convert(tif.get(), dir, rows, rowBytes);
}
