// The preview of a paint image: the thumbnail object of the binary
// generations decoded from its tiles, or the TIFF generation's thumbnail.
//
// An image object holds, behind its record and extra bytes, square tiles of
// the object's tile edge, uncompressed, tile rows top to bottom and tiles
// left to right in each, every tile whole (the right and bottom tiles padded
// past the image) with rows of edge pixels padded to whole bytes.
#include <algorithm>
#include <cstring>
#include <vector>

#include "fileinfo/QpxDib.h"
#include "fileinfo/QpxDocumentInfo.h"
#include "fileinfo/QpxFormat.h"
#include "fileinfo/QpxStreamReader.h"
#include "fileinfo/QpxTiffThumbnail.h"

namespace {

using Rd = QpxStreamReader;

// Tiles larger than this are refused: no writer makes them and their size
// would overflow the arithmetic below.
constexpr uint32_t kMaxTileEdge = 0x10000;

struct ImageObject {
    uint32_t width, height, bits, edge;
};

bool MakeDib(QpxDib& dib, const ImageObject& image) {
    switch (image.bits) {
        case 1:
            if (!dib.Create(image.width, image.height, 1, 2)) return false;
            dib.SetColour(1, 255, 255, 255);
            return true;
        case 8:
        case 16:
            if (!dib.Create(image.width, image.height, 8, 256)) return false;
            for (uint32_t i = 0; i < 256; ++i) dib.SetColour(i, uint8_t(i), uint8_t(i), uint8_t(i));
            return true;
        case 24:
        case 32:
        case 48: return dib.Create(image.width, image.height, 24, 0);
        default: return false;
    }
}

// Copies `count` pixels of one tile row into the DIB row at column x.
void CopyPixels(const ImageObject& image, const uint8_t* from, uint8_t* row, uint32_t x, uint32_t count) {
    switch (image.bits) {
        case 1:
            for (uint32_t i = 0; i < count; ++i) {
                const uint32_t to = x + i;
                if (from[i / 8] & (0x80 >> (i % 8))) row[to / 8] |= uint8_t(0x80 >> (to % 8));
            }
            break;
        case 8: std::memcpy(row + x, from, count); break;
        case 16:
            for (uint32_t i = 0; i < count; ++i) row[x + i] = from[i * 2 + 1];
            break;
        default: {
            // Red, green, blue in the file, 8 or 16 bits each, 32 bits with a fourth byte.
            const uint32_t step = image.bits / 8, wide = image.bits == 48 ? 1 : 0;
            for (uint32_t i = 0; i < count; ++i) {
                const uint8_t* p = from + i * step;
                uint8_t* q = row + (x + i) * 3;
                q[0] = p[(2 << wide) + wide];
                q[1] = p[(1 << wide) + wide];
                q[2] = p[wide];
            }
        }
    }
}

bool KnownDepth(uint32_t bits) {
    return bits == 1 || bits == 8 || bits == 16 || bits == 24 || bits == 32 || bits == 48;
}

DibBlock DecodeObject(Rd& in, const ImageObject& image) {
    // A depth of no row would make tiles of no bytes, which bound nothing.
    if (!KnownDepth(image.bits)) return {};
    const uint64_t tileRow = (uint64_t(image.edge) * image.bits + 7) / 8;
    const uint64_t tileBytes = tileRow * image.edge;
    const uint64_t across = (uint64_t(image.width) + image.edge - 1) / image.edge;
    const uint64_t down = (uint64_t(image.height) + image.edge - 1) / image.edge;
    if (tileBytes > in.Left() || across * down > in.Left() / tileBytes) return {};
    QpxDib dib;
    if (!MakeDib(dib, image)) return {};
    std::vector<uint8_t> tile(static_cast<size_t>(tileBytes));
    for (uint64_t ty = 0; ty < down; ++ty) {
        for (uint64_t tx = 0; tx < across; ++tx) {
            if (!in.Read(tile.data(), tileBytes)) return {};
            const uint32_t x0 = uint32_t(tx * image.edge), y0 = uint32_t(ty * image.edge);
            const uint32_t columns = std::min<uint32_t>(image.edge, image.width - x0);
            const uint32_t rows = std::min<uint32_t>(image.edge, image.height - y0);
            for (uint32_t y = 0; y < rows; ++y)
                CopyPixels(image, tile.data() + y * tileRow, dib.Row(y0 + y), x0, columns);
        }
    }
    return dib.Release();
}

}  // namespace

DibBlock QpxDocumentInfo::ReadThumbnail(IStream* stream) {
    using namespace QpxFormat;
    QpxStreamReader in(stream);
    uint8_t magic[12];
    if (!in.Read(magic, sizeof magic)) return {};
    // The binary generations share one object layout; the newest may put
    // a second header in front of the real one.
    uint64_t headerAt = 0;
    if (std::memcmp(magic, kDoubledMagic, 12) == 0) {
        headerAt = kHeaderSize;
    } else if (std::memcmp(magic, kMagic9, kMagicSize) != 0 && std::memcmp(magic, kMagic8, kMagicSize) != 0 &&
               std::memcmp(magic, kMagic7, kMagicSize) != 0) {
        return ReadQpxTiffThumbnail(stream);
    }
    uint8_t header[kHeaderSize];
    std::vector<uint64_t> offsets;
    if (!in.Seek(headerAt) || !in.Read(header, kHeaderSize) || !ReadRecords(in, header, nullptr)) return {};
    const uint64_t imageData = in.Position();
    if (!ReadTable(in, header, offsets)) return {};
    for (size_t i = 0; i < offsets.size(); ++i) {
        uint8_t object[kObjectSize];
        if (offsets[i] > in.Size() - imageData || !in.Seek(imageData + offsets[i]) || !in.Read(object, kObjectSize))
            return {};
        const uint32_t kind = Rd::Get32(object, kObjectKindAt);
        if (kind != kKindThumbnail && !(kind == kKindBackground && i + 1 == offsets.size())) continue;
        ImageObject image{Rd::Get32(object, kObjectWidthAt), Rd::Get32(object, kObjectHeightAt),
                          Rd::Get32(object, kObjectBitsAt), Rd::Get32(object, kObjectTileAt)};
        if (image.edge == 0) image.edge = kDefaultTileEdge;
        if (image.width > kMaxThumbnailWidth || image.edge > kMaxTileEdge) return {};
        if (!in.Skip(Rd::Get32(object, kObjectExtraAt))) return {};
        return DecodeObject(in, image);
    }
    return {};
}
