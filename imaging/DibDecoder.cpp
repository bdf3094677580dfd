// Packed DIB decoding. The header is validated first (sizes, bit counts,
// compression) and every byte range is checked against the block before it is
// read; the bitmap is only allocated once the pixels are known to be there.
#include "imaging/DibDecoder.h"

#include <bit>
#include <climits>
#include <cstring>
#include <vector>

#include <pixman.h>

#include "imaging/BoxReduce.h"
#include "imaging/PixelOps.h"
#include "platform/Bitmap.h"

namespace BrmUtils {
namespace {

constexpr uint32_t kOpaque = 0xFF000000u;
constexpr uint64_t kRleFreePixels = 1u << 16;

inline uint32_t ReadU32(const uint8_t* p) {
    uint32_t v;
    std::memcpy(&v, p, 4);
    return v;
}

// One channel of a BI_BITFIELDS mask: where it sits and how to widen it to 8 bits.
struct Channel {
    uint32_t mask = 0;
    int shift = 0;
    int bits = 0;

    explicit Channel(uint32_t m) : mask(m) {
        if (m == 0) return;
        shift = std::countr_zero(m);
        bits = std::bit_width(m >> shift);
        if (bits > 32 - shift) bits = 32 - shift;
    }
    uint32_t Extract(uint32_t v) const {
        if (bits == 0) return 0;
        uint64_t c = (v & mask) >> shift;
        if (bits >= 8) return uint32_t(c >> (bits - 8));
        return uint32_t(c * 255 / ((1u << bits) - 1));
    }
};

// The validated layout of one DIB.
struct Layout {
    int width = 0;
    int height = 0;  // rows, always positive
    bool topDown = false;
    int bitCount = 0;
    uint32_t compression = 0;
    bool alphaPath = false;
    const uint8_t* palette = nullptr;
    size_t paletteEntries = 0;
    const uint8_t* pixels = nullptr;
    size_t pixelBytes = 0;  // available from `pixels` to the block's end
    size_t stride = 0;
    uint32_t masks[3] = {0x00FF0000u, 0x0000FF00u, 0x000000FFu};
};

bool ReadLayout(const DibSource& src, Layout& out) {
    if (!src.block || src.size < sizeof(BITMAPINFOHEADER)) return false;
    BITMAPINFOHEADER h;
    std::memcpy(&h, src.block, sizeof h);
    if (h.biSize < sizeof(BITMAPINFOHEADER) || h.biSize > src.size) return false;
    if (h.biWidth <= 0 || h.biWidth > NativeBitmap::kMaxEdge) return false;
    if (h.biHeight == 0 || h.biHeight == INT_MIN) return false;
    int64_t rows = h.biHeight < 0 ? -int64_t(h.biHeight) : h.biHeight;
    if (rows > NativeBitmap::kMaxEdge) return false;

    out.width = h.biWidth;
    out.height = int(rows);
    out.topDown = h.biHeight < 0;
    out.bitCount = h.biBitCount;
    out.compression = h.biCompression;

    switch (h.biBitCount) {
        case 1: case 4: case 8: case 16: case 24: case 32: break;
        default: return false;
    }
    switch (h.biCompression) {
        case BI_RGB: break;
        case BI_BITFIELDS: if (h.biBitCount != 16 && h.biBitCount != 32) return false; break;
        case BI_RLE8: if (h.biBitCount != 8 || out.topDown) return false; break;
        case BI_RLE4: if (h.biBitCount != 4 || out.topDown) return false; break;
        default: return false;
    }
    out.alphaPath = h.biPlanes == 1 && h.biBitCount == 32 && h.biCompression == BI_RGB;

    // Colour table: biClrUsed entries, 1 << biBitCount when 0; none from 16 bits on.
    size_t start = h.biSize;
    if (h.biBitCount < 16) {
        uint64_t entries = h.biClrUsed ? h.biClrUsed : (1u << h.biBitCount);
        if (entries > (src.size - start) / 4) return false;
        out.palette = src.block + start;
        out.paletteEntries = size_t(entries);
        start += size_t(entries) * 4;
    }

    uint64_t stride = ((uint64_t(h.biBitCount) * uint64_t(out.width) + 31) / 32) * 4;
    uint64_t needed = stride * uint64_t(out.height);
    out.stride = size_t(stride);

    if (h.biCompression == BI_BITFIELDS) {
        if (h.biSize >= 52) {
            for (int i = 0; i < 3; ++i) out.masks[i] = ReadU32(src.block + 40 + 4 * i);
        } else if (src.pixelOffset ? src.pixelOffset >= start + 12 : src.size - start >= 12 + needed) {
            // Masks follow a 40-byte header when there is room for them.
            for (int i = 0; i < 3; ++i) out.masks[i] = ReadU32(src.block + start + 4 * i);
            start += 12;
        } else if (h.biBitCount == 16) {
            out.masks[0] = 0x7C00; out.masks[1] = 0x03E0; out.masks[2] = 0x001F;
        }
    } else if (h.biBitCount == 16) {
        out.masks[0] = 0x7C00; out.masks[1] = 0x03E0; out.masks[2] = 0x001F;
    }

    if (src.pixelOffset) {
        if (src.pixelOffset < start || src.pixelOffset > src.size) return false;
        start = src.pixelOffset;
    }
    out.pixels = src.block + start;
    out.pixelBytes = src.size - start;
    if (h.biCompression == BI_RLE8 || h.biCompression == BI_RLE4) {
        // A run of two bytes paints at most 255 pixels; a block claiming far
        // more pixels than its runs could reach is refused before allocating.
        uint64_t pixels = uint64_t(out.width) * uint64_t(out.height);
        return pixels <= kRleFreePixels || pixels / 256 <= out.pixelBytes;
    }
    return needed <= out.pixelBytes;
}

uint32_t PaletteColour(const Layout& l, uint32_t index) {
    if (index >= l.paletteEntries) return kOpaque;
    const uint8_t* q = l.palette + 4 * size_t(index);
    return Pixels::Pack(0xFF, q[2], q[1], q[0]);
}

// Bitmap row for the DIB's row `r` in storage order.
uint32_t* DestRow(pixman_image_t* image, const Layout& l, int r) {
    int y = l.topDown ? r : l.height - 1 - r;
    auto* base = reinterpret_cast<uint8_t*>(pixman_image_get_data(image));
    return reinterpret_cast<uint32_t*>(base + ptrdiff_t(y) * pixman_image_get_stride(image));
}

void DecodeRow(const Layout& l, const uint8_t* src, uint32_t* dst, const Channel* ch) {
    const int w = l.width;
    switch (l.bitCount) {
        case 1:
            for (int x = 0; x < w; ++x) dst[x] = PaletteColour(l, (src[x >> 3] >> (7 - (x & 7))) & 1);
            break;
        case 4:
            for (int x = 0; x < w; ++x) dst[x] = PaletteColour(l, (src[x >> 1] >> ((x & 1) ? 0 : 4)) & 0xF);
            break;
        case 8:
            for (int x = 0; x < w; ++x) dst[x] = PaletteColour(l, src[x]);
            break;
        case 16:
            for (int x = 0; x < w; ++x) {
                uint32_t v = uint32_t(src[2 * x]) | (uint32_t(src[2 * x + 1]) << 8);
                dst[x] = Pixels::Pack(0xFF, ch[0].Extract(v), ch[1].Extract(v), ch[2].Extract(v));
            }
            break;
        case 24:
            for (int x = 0; x < w; ++x) dst[x] = Pixels::Pack(0xFF, src[3 * x + 2], src[3 * x + 1], src[3 * x]);
            break;
        case 32:
            for (int x = 0; x < w; ++x) {
                uint32_t v = ReadU32(src + 4 * size_t(x));
                dst[x] = Pixels::Pack(0xFF, ch[0].Extract(v), ch[1].Extract(v), ch[2].Extract(v));
            }
            break;
    }
}

// Run-length coded 8- or 4-bit pixels, bottom-up. Pixels that no run reaches
// keep colour 0; runs past the edges are clipped; a short block ends the image.
void DecodeRle(const Layout& l, pixman_image_t* image) {
    const uint32_t background = PaletteColour(l, 0);
    for (int r = 0; r < l.height; ++r) {
        uint32_t* row = DestRow(image, l, r);
        for (int c = 0; c < l.width; ++c) row[c] = background;
    }
    const bool four = l.compression == BI_RLE4;
    const uint8_t* p = l.pixels;
    const uint8_t* end = l.pixels + l.pixelBytes;
    int64_t x = 0, y = 0;
    uint32_t* row = DestRow(image, l, 0);
    auto put = [&](uint32_t index) {
        if (x < l.width) row[x] = PaletteColour(l, index);
        ++x;
    };
    auto moveTo = [&](int64_t nx, int64_t ny) {
        x = nx;
        y = ny;
        if (y < l.height) row = DestRow(image, l, int(y));
    };
    while (end - p >= 2 && y < l.height) {
        uint8_t count = p[0], value = p[1];
        p += 2;
        if (count > 0) {
            for (int i = 0; i < count && x < l.width; ++i) put(four ? ((i & 1) ? value & 0xF : value >> 4) : value);
        } else if (value == 0) {
            moveTo(0, y + 1);
        } else if (value == 1) {
            break;
        } else if (value == 2) {
            if (end - p < 2) break;
            moveTo(x + p[0], y + p[1]);
            p += 2;
        } else {
            size_t bytes = four ? (size_t(value) + 1) / 2 : value;
            if (size_t(end - p) < bytes) break;
            for (int i = 0; i < value; ++i) put(four ? ((i & 1) ? p[i / 2] & 0xF : p[i / 2] >> 4) : p[i]);
            size_t padded = (bytes + 1) & ~size_t(1);
            p += padded <= size_t(end - p) ? padded : bytes;
        }
    }
}

// Whether the pixels keep their alpha: a 32-bit BI_RGB DIB does, unless the
// source asks to take one whose alpha bytes are all zero as opaque.
bool KeepsAlpha(const Layout& l, const DibSource& source) {
    if (!l.alphaPath || !source.opaqueIfAlphaAllZero) return l.alphaPath;
    for (int r = 0; r < l.height; ++r) {
        const uint8_t* row = l.pixels + size_t(r) * l.stride;
        for (int x = 0; x < l.width; ++x) {
            if (row[4 * size_t(x) + 3] != 0) return true;
        }
    }
    return false;
}

}  // namespace

std::unique_ptr<NativeBitmap> DecodePackedDib(const DibSource& source) {
    Layout l;
    if (!ReadLayout(source, l)) return nullptr;

    const bool keepAlpha = KeepsAlpha(l, source);

    auto bitmap = NativeBitmap::Create(l.width, l.height, keepAlpha ? PixelFormat::Argb32 : PixelFormat::Rgb24);
    if (!bitmap) return nullptr;
    pixman_image_t* image = bitmap->Image();

    if (l.compression == BI_RLE8 || l.compression == BI_RLE4) {
        DecodeRle(l, image);
        return bitmap;
    }
    if (keepAlpha) {
        // Straight ARGB words; a positive height lists the rows bottom-up.
        for (int r = 0; r < l.height; ++r) {
            const uint8_t* src = l.pixels + size_t(r) * l.stride;
            uint32_t* dst = DestRow(image, l, r);
            for (int x = 0; x < l.width; ++x) dst[x] = Pixels::Premultiply(ReadU32(src + 4 * size_t(x)));
        }
        return bitmap;
    }
    const Channel ch[3] = {Channel(l.masks[0]), Channel(l.masks[1]), Channel(l.masks[2])};
    for (int r = 0; r < l.height; ++r) DecodeRow(l, l.pixels + size_t(r) * l.stride, DestRow(image, l, r), ch);
    return bitmap;
}

bool PackedDibSize(const DibSource& source, int& width, int& height) {
    Layout l;
    if (!ReadLayout(source, l)) return false;
    width = l.width;
    height = l.height;
    return true;
}

std::unique_ptr<NativeBitmap> DecodePackedDibReduced(const DibSource& source, int kx, int ky) {
    if (kx <= 1 && ky <= 1) return DecodePackedDib(source);
    Layout l;
    if (!ReadLayout(source, l)) return nullptr;
    if (l.compression == BI_RLE8 || l.compression == BI_RLE4) {
        // Runs may jump about the image: decoded whole, then shrunk.
        auto whole = DecodePackedDib(source);
        return whole ? ReduceBox(*whole, kx, ky) : nullptr;
    }
    const bool keepAlpha = KeepsAlpha(l, source);
    auto sourceRow = [&l](int y) { return l.pixels + size_t(l.topDown ? y : l.height - 1 - y) * l.stride; };
    // 24-bit rows are summed as they are stored (B, G, R); any other row is
    // decoded to ARGB words first.
    const bool raw = l.bitCount == 24 && l.compression == BI_RGB;
    BoxReducer reducer(l.width, l.height, kx, ky, raw ? 3 : 4);
    if (!reducer.Start(keepAlpha ? PixelFormat::Argb32 : PixelFormat::Rgb24)) return nullptr;
    if (raw) {
        for (int y = 0; y < l.height; ++y) reducer.AddRow(sourceRow(y));
        return reducer.Finish();
    }
    std::vector<uint32_t> row(size_t(l.width));
    const Channel ch[3] = {Channel(l.masks[0]), Channel(l.masks[1]), Channel(l.masks[2])};
    for (int y = 0; y < l.height; ++y) {
        const uint8_t* src = sourceRow(y);
        if (keepAlpha) {
            for (int x = 0; x < l.width; ++x) row[size_t(x)] = Pixels::Premultiply(ReadU32(src + 4 * size_t(x)));
        } else {
            DecodeRow(l, src, row.data(), ch);
        }
        reducer.AddRow(reinterpret_cast<const uint8_t*>(row.data()));
    }
    return reducer.Finish();
}

}  // namespace BrmUtils
