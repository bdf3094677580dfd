// The paint image writer of the tests.
#include "tests/support/qpx/QpxWriter.h"

#include <tiffio.h>

#include <cstring>

#include "utils/props/PropVariantBytes.h"

namespace QpxTest {
namespace {

using namespace QpxFormat;

void Put32(Bytes& out, uint32_t v) {
    for (int i = 0; i < 4; ++i) out.push_back(uint8_t(v >> (8 * i)));
}
void Put64(Bytes& out, uint64_t v) { Put32(out, uint32_t(v)), Put32(out, uint32_t(v >> 32)); }
void Set32(Bytes& out, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) out[at + i] = uint8_t(v >> (8 * i));
}

Bytes Header(const Image& image, uint32_t tableOffset, uint32_t tailOffset) {
    Bytes h(kHeaderSize, 0);
    std::memcpy(h.data(), image.magic.data(), std::min<size_t>(image.magic.size(), 8));
    Set32(h, kColourModeAt, image.colourMode);
    Set32(h, kSkipAt, image.skip);
    Set32(h, kResolutionXAt, image.resolutionX);
    Set32(h, kResolutionYAt, image.resolutionY);
    Set32(h, kObjectCountAt, uint32_t(image.objects.size()));
    Set32(h, kFlagsAt, image.flags);
    Set32(h, kTableOffsetAt, tableOffset);
    Set32(h, kTailOffsetAt, tailOffset);
    std::memcpy(h.data() + kDescriptionAt, image.description.data(), std::min<size_t>(image.description.size(), 255));
    return h;
}

}  // namespace

uint32_t RawResolution(double dpi) { return uint32_t(dpi * 10000.0 * 1000000.0 / 254000.0 + 0.5); }

Bytes Write(const Image& image) {
    const uint64_t headers = image.doubled ? 2 * kHeaderSize : kHeaderSize;
    Bytes records;
    if (image.flags & kFlagExtended) {
        uint64_t dataAt = headers + kExtendedSize + image.extendedSkip + image.skip;
        if (image.flags & kFlagWide) dataAt += kWideSize;
        if (image.flags & kFlagSize) dataAt += kSizeRecordSize;
        Put64(records, dataAt);
        Put64(records, image.extendedSkip);
        Put64(records, image.block.size());
        records.insert(records.end(), image.extendedSkip, 0xEE);
    }
    if (image.flags & kFlagWide) {
        Bytes wide(kWideSize, 0);
        for (size_t i = 0; i < image.wideDescription.size() && i < 257; ++i)
            wide[i * 2] = uint8_t(image.wideDescription[i]), wide[i * 2 + 1] = uint8_t(image.wideDescription[i] >> 8);
        records.insert(records.end(), wide.begin(), wide.end());
    }
    if (image.flags & kFlagSize) Put64(records, image.block.size());
    records.insert(records.end(), image.skip, 0xDD);
    const uint64_t dataAt = headers + records.size();

    // Image data: [table] objects [table]; offsets from dataAt.
    const uint64_t tableSize = image.objects.size() * 8;
    Bytes objects, table;
    for (const Object& o : image.objects) {
        Put64(table, (image.tableAtEnd ? 0 : tableSize) + objects.size());
        Bytes record(kObjectSize, 0);
        Set32(record, kObjectWidthAt, o.width);
        Set32(record, kObjectHeightAt, o.height);
        Set32(record, kObjectKindAt, o.kind);
        Set32(record, kObjectBitsAt, o.bits);
        Set32(record, kObjectExtraAt, uint32_t(o.extra.size()));
        Set32(record, kObjectTileAt, o.tile);
        objects.insert(objects.end(), record.begin(), record.end());
        objects.insert(objects.end(), o.extra.begin(), o.extra.end());
        objects.insert(objects.end(), o.tiles.begin(), o.tiles.end());
    }
    const uint32_t tableOffset = image.tableAtEnd ? uint32_t(dataAt + objects.size()) : 0;
    const uint64_t blockAt = dataAt + tableSize + objects.size();
    const uint32_t tail = image.block.empty() ? 0 : uint32_t(blockAt);

    Bytes out;
    if (image.doubled) {
        Image outer = image;
        outer.magic = "PP11QPX9";
        out = Header(outer, tableOffset, tail);
        std::memcpy(out.data() + 8, "FILE", 4);
    }
    const Bytes h = Header(image, tableOffset, tail);
    out.insert(out.end(), h.begin(), h.end());
    out.insert(out.end(), records.begin(), records.end());
    if (!image.tableAtEnd) out.insert(out.end(), table.begin(), table.end());
    out.insert(out.end(), objects.begin(), objects.end());
    if (image.tableAtEnd) out.insert(out.end(), table.begin(), table.end());
    out.insert(out.end(), image.block.begin(), image.block.end());
    return out;
}

Object TextObject(const std::vector<std::pair<std::string, std::u16string>>& fonts) {
    Object o;
    o.kind = kKindText;
    o.extra.assign(kSubRecordsAt, 0);
    for (const auto& [narrow, wide] : fonts) {
        Bytes font(kFontSize, 0);
        std::memcpy(font.data() + kFontNarrowAt, narrow.data(), std::min<size_t>(narrow.size(), kFontNarrowSize - 1));
        for (size_t i = 0; i < wide.size() && i < 63; ++i)
            font[kFontWideAt + i * 2] = uint8_t(wide[i]), font[kFontWideAt + i * 2 + 1] = uint8_t(wide[i] >> 8);
        Put32(o.extra, kFontSize);
        Put32(o.extra, kFontId);
        o.extra.insert(o.extra.end(), font.begin(), font.end());
    }
    return o;
}

Object ImageObject(uint32_t kind, uint32_t width, uint32_t height, uint32_t bits, uint32_t tile,
                   const std::function<uint64_t(uint32_t, uint32_t)>& pixel) {
    Object o{kind, width, height, bits, tile, {}, {}};
    const uint32_t edge = tile ? tile : kDefaultTileEdge;
    const uint32_t rowBytes = (edge * bits + 7) / 8;
    for (uint32_t ty = 0; ty < height; ty += edge) {
        for (uint32_t tx = 0; tx < width; tx += edge) {
            Bytes t(size_t(rowBytes) * edge, 0);
            for (uint32_t y = 0; y < edge && ty + y < height; ++y) {
                for (uint32_t x = 0; x < edge && tx + x < width; ++x) {
                    const uint64_t v = pixel(tx + x, ty + y);
                    if (bits == 1) {
                        if (v & 1) t[y * rowBytes + x / 8] |= uint8_t(0x80 >> (x % 8));
                    } else {
                        for (uint32_t b = 0; b < bits / 8; ++b) t[y * rowBytes + x * (bits / 8) + b] = uint8_t(v >> (8 * b));
                    }
                }
            }
            o.tiles.insert(o.tiles.end(), t.begin(), t.end());
        }
    }
    return o;
}

Bytes Record(uint32_t id, const Bytes& body) {
    Bytes out;
    Put32(out, id);
    Put32(out, uint32_t(body.size()));
    out.insert(out.end(), body.begin(), body.end());
    return out;
}

Bytes Meta(const std::vector<std::pair<PROPERTYKEY, const PROPVARIANT*>>& values) {
    Bytes body, value;
    for (const auto& [key, variant] : values) {
        BrmUtils::SerializePropVariant(*variant, value);
        Put32(body, uint32_t(kKeySize + value.size()));
        const auto* k = reinterpret_cast<const uint8_t*>(&key.fmtid);
        body.insert(body.end(), k, k + 16);
        Put32(body, key.pid);
        body.insert(body.end(), value.begin(), value.end());
    }
    return Record(kMetaId, body);
}

Bytes EndMark() {
    Bytes out;
    Put32(out, kEndId);
    Put32(out, 0);
    return out;
}

// ---- TIFF ------------------------------------------------------------------

namespace {

struct MemoryFile {
    Bytes bytes;
    uint64_t pos = 0;
};

tmsize_t MemRead(thandle_t h, void* buffer, tmsize_t count) {
    auto* f = static_cast<MemoryFile*>(h);
    const uint64_t n = f->pos >= f->bytes.size() ? 0 : std::min<uint64_t>(uint64_t(count), f->bytes.size() - f->pos);
    if (n) std::memcpy(buffer, f->bytes.data() + f->pos, n);
    f->pos += n;
    return tmsize_t(n);
}
tmsize_t MemWrite(thandle_t h, void* buffer, tmsize_t count) {
    auto* f = static_cast<MemoryFile*>(h);
    if (f->pos + uint64_t(count) > f->bytes.size()) f->bytes.resize(f->pos + uint64_t(count));
    std::memcpy(f->bytes.data() + f->pos, buffer, size_t(count));
    f->pos += uint64_t(count);
    return count;
}
toff_t MemSeek(thandle_t h, toff_t offset, int whence) {
    auto* f = static_cast<MemoryFile*>(h);
    f->pos = (whence == SEEK_CUR ? f->pos : whence == SEEK_END ? f->bytes.size() : 0) + offset;
    return f->pos;
}
int MemClose(thandle_t) { return 0; }
toff_t MemSize(thandle_t h) { return static_cast<MemoryFile*>(h)->bytes.size(); }
int NoMap(thandle_t, void**, toff_t*) { return 0; }
void NoUnmap(thandle_t, void*, toff_t) {}

const TIFFFieldInfo kPrivateField[] = {{0xA027, 8, 8, TIFF_UNDEFINED, FIELD_CUSTOM, 1, 1, const_cast<char*>("Private")}};

}  // namespace

Bytes WriteTiff(const std::vector<TiffDirectory>& directories) {
    MemoryFile file;
    TIFF* tif = TIFFClientOpen("test", "wl", &file, MemRead, MemWrite, MemSeek, MemClose, MemSize, NoMap, NoUnmap);
    if (!tif) return {};
    for (const TiffDirectory& d : directories) {
        // Unknown tags are forgotten with each directory written.
        if (!TIFFFindField(tif, 0xA027, TIFF_ANY)) TIFFMergeFieldInfo(tif, kPrivateField, 1);
        TIFFSetField(tif, TIFFTAG_IMAGEWIDTH, d.width);
        TIFFSetField(tif, TIFFTAG_IMAGELENGTH, d.height);
        TIFFSetField(tif, TIFFTAG_BITSPERSAMPLE, d.bits);
        TIFFSetField(tif, TIFFTAG_SAMPLESPERPIXEL, d.samples);
        TIFFSetField(tif, TIFFTAG_PHOTOMETRIC, d.photometric);
        TIFFSetField(tif, TIFFTAG_COMPRESSION, d.compression);
        TIFFSetField(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        if (d.extraSample) TIFFSetField(tif, TIFFTAG_EXTRASAMPLES, 1, &d.extraSample);
        TIFFSetField(tif, TIFFTAG_FILLORDER, d.fillOrder);
        TIFFSetField(tif, TIFFTAG_ROWSPERSTRIP, d.rowsPerStrip ? d.rowsPerStrip : d.height);
        if (d.compression == COMPRESSION_LZW && d.predictor != 1) TIFFSetField(tif, TIFFTAG_PREDICTOR, d.predictor);
        if (d.compression == COMPRESSION_CCITTFAX3) TIFFSetField(tif, TIFFTAG_GROUP3OPTIONS, d.t4Options);
        if (!d.software.empty()) TIFFSetField(tif, TIFFTAG_SOFTWARE, d.software.c_str());
        if (!d.description.empty()) TIFFSetField(tif, TIFFTAG_IMAGEDESCRIPTION, d.description.c_str());
        if (d.resolutionX > 0) {
            TIFFSetField(tif, TIFFTAG_XRESOLUTION, d.resolutionX);
            TIFFSetField(tif, TIFFTAG_YRESOLUTION, d.resolutionY);
            TIFFSetField(tif, TIFFTAG_RESOLUTIONUNIT, d.unit);
        }
        if (!d.colourMap.empty()) {
            const size_t n = d.colourMap.size() / 3;
            TIFFSetField(tif, TIFFTAG_COLORMAP, d.colourMap.data(), d.colourMap.data() + n, d.colourMap.data() + 2 * n);
        }
        if (d.privateMark) {
            const uint8_t record[8] = {0, 0, 0, 0, 16, 0, 0, 0};
            TIFFSetField(tif, 0xA027, 8, record);
        }
        const tmsize_t rowBytes = TIFFScanlineSize(tif);
        Bytes rows = d.rows, row;
        rows.resize(size_t(rowBytes) * d.height);
        for (uint32_t y = 0; y < d.height; ++y) {
            row.assign(rows.begin() + y * rowBytes, rows.begin() + (y + 1) * rowBytes);
            TIFFWriteScanline(tif, row.data(), y, 0);
        }
        TIFFWriteDirectory(tif);
    }
    TIFFClose(tif);
    return file.bytes;
}

}  // namespace QpxTest
