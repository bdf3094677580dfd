// The paint image samples and fuzz seeds, made with the test writer.
#include "tools/mksamples/PaintSamples.h"

#include <tiffio.h>

#include <cmath>

#include "fileinfo/PropertyKeys.h"
#include "tests/support/qpx/QpxWriter.h"

namespace PaintSamples {
namespace {

using namespace QpxTest;
using QpxFormat::kKindBackground;
using QpxFormat::kKindThumbnail;

struct Rgb {
    uint32_t r, g, b;
};

// A sun rising over the sea behind a green hill, drawn at any size.
Rgb Landscape(uint32_t x, uint32_t y, uint32_t width, uint32_t height) {
    const double u = (x + 0.5) / width, v = (y + 0.5) / height;
    const double horizon = 0.62;
    const double hill = 0.78 - 0.16 * std::exp(-std::pow((u - 0.25) / 0.22, 2));
    if (v > hill) return {uint32_t(40 + 50 * (1 - v)), uint32_t(120 + 60 * (1 - v)), 40};
    const double dx = (u - 0.62) * width / height, dy = v - horizon;
    const bool sun = dx * dx + dy * dy < 0.16 * 0.16;
    if (v > horizon) {
        // The sea, with the sun's reflection as broken stripes.
        const bool glint = std::fabs(dx) < 0.12 * (1 - (v - horizon) * 2) && (y * 7 / height) % 2 == 0;
        return glint ? Rgb{250, 200, 90} : Rgb{20, uint32_t(70 + 80 * (v - horizon)), 140};
    }
    if (sun) return {255, 214, 60};
    const double t = v / horizon;  // deep blue at the top, orange at the horizon
    return {uint32_t(30 + 220 * t), uint32_t(40 + 110 * t), uint32_t(120 - 80 * t)};
}

uint64_t FileBytes(const Rgb& c, uint32_t bits) {
    switch (bits) {
        case 1: return (c.r + c.g + c.b) / 3 > 110 ? 1 : 0;
        case 8: return (c.r * 77 + c.g * 150 + c.b * 29) >> 8;
        case 16: return ((c.r * 77 + c.g * 150 + c.b * 29) >> 8) * 0x101;
        case 48: return uint64_t(c.r * 0x101) | uint64_t(c.g * 0x101) << 16 | uint64_t(c.b * 0x101) << 32;
        default: return c.r | c.g << 8 | c.b << 16 | (bits == 32 ? 0xFFu << 24 : 0);
    }
}

Object Picture(uint32_t kind, uint32_t width, uint32_t height, uint32_t bits, uint32_t tile) {
    return ImageObject(kind, width, height, bits, tile, [=](uint32_t x, uint32_t y) {
        return FileBytes(Landscape(x, y, width, height), bits);
    });
}

Bytes Text(const wchar_t* text) {
    PROPVARIANT value{};
    value.vt = VT_LPWSTR;
    value.pwszVal = const_cast<wchar_t*>(text);
    return Meta({{PropertyKeys::kComments, &value}});
}

Bytes Block(const wchar_t* comment, bool withProfile) {
    Bytes block = Text(comment);
    const auto add = [&](const Bytes& b) { block.insert(block.end(), b.begin(), b.end()); };
    if (withProfile) {
        const std::u16string profile = u"sRGB IEC61966-2.1";
        add(Record(QpxFormat::kProfileId, Bytes(reinterpret_cast<const uint8_t*>(profile.data()),
                                                reinterpret_cast<const uint8_t*>(profile.data() + profile.size()))));
        add(Record(QpxFormat::kIntentId, {1, 0, 0, 0}));
    }
    add(EndMark());
    return block;
}

Image Painting(const char* magic, uint32_t bits, uint32_t edge, uint32_t width, uint32_t height) {
    Image image;
    image.magic = magic;
    // The colour mode whose name matches the depth: RGB, greyscale, RGB with alpha, black and white.
    image.colourMode = bits == 8 ? 5 : bits == 16 ? 14 : bits == 32 ? 17 : bits == 48 ? 12 : bits == 1 ? 6 : 1;
    image.resolutionX = image.resolutionY = RawResolution(300);
    image.description = "Sunrise over the bay";
    image.objects = {Object{kKindBackground, width * 8, height * 8, bits, 0, {}, {}},
                     TextObject({{"Garamond", u""}, {"", u"Futura Medium"}}),
                     Picture(kKindThumbnail, width, height, bits, edge)};
    return image;
}

TiffDirectory TiffPicture(uint32_t width, uint32_t height, uint16_t compression) {
    TiffDirectory d;
    d.width = width, d.height = height;
    d.bits = 8, d.samples = 3, d.photometric = PHOTOMETRIC_RGB, d.compression = compression;
    d.predictor = compression == COMPRESSION_LZW ? 2 : 1;
    d.resolutionX = d.resolutionY = 150;
    for (uint32_t y = 0; y < height; ++y)
        for (uint32_t x = 0; x < width; ++x) {
            const Rgb c = Landscape(x, y, width, height);
            d.rows.insert(d.rows.end(), {uint8_t(c.r), uint8_t(c.g), uint8_t(c.b)});
        }
    return d;
}

// A small bilevel or grey directory for the seeds.
TiffDirectory TiffSeed(uint16_t compression, uint16_t photometric, uint16_t bits, uint16_t samples) {
    TiffDirectory d;
    d.width = 24, d.height = 16, d.rowsPerStrip = 5;
    d.compression = compression, d.photometric = photometric, d.bits = bits, d.samples = samples;
    const uint32_t rowBytes = (d.width * bits * samples + 7) / 8;
    d.rows.resize(size_t(rowBytes) * d.height);
    for (size_t i = 0; i < d.rows.size(); ++i) d.rows[i] = uint8_t((i / 3) * 37 % 251);
    return d;
}

}  // namespace

Named Samples() {
    Image v7 = Painting("QPX7FILE", 24, 32, 160, 120);
    Image v8 = Painting("QPX8FILE", 8, 64, 160, 120);
    v8.flags = QpxFormat::kFlagExtended;
    Image v9 = Painting("QPX9FILE", 24, 32, 160, 120);
    v9.flags = QpxFormat::kFlagWide;
    v9.wideDescription = u"Sunrise over the bay";
    v9.block = Block(L"Morning light over the bay, painted from the harbour wall.", true);
    Image v11 = Painting("QPX9FILE", 32, 40, 160, 120);
    v11.doubled = true;
    v11.block = Block(L"Second state, warmer sky.", false);
    TiffDirectory full = TiffPicture(640, 480, COMPRESSION_LZW);
    full.description.clear();
    return {{"sunrise-v7.qpx", Write(v7)},
            {"sunrise-v8.qpx", Write(v8)},
            {"sunrise-v9.qpx", Write(v9)},
            {"sunrise-v11.qpx", Write(v11)},
            {"sunrise-tiff.qpx", WriteTiff({full, TiffPicture(160, 120, COMPRESSION_LZW)})}};
}

Named FuzzSeeds() {
    Named seeds;
    struct Binary { const char* name; const char* magic; uint32_t bits, flags, skip, extendedSkip; bool doubled, tableAtEnd, block; };
    const Binary binaries[] = {
        {"v7-24bit", "QPX7FILE", 24, 0, 0, 0, false, false, false},
        {"v8-8bit-extended", "QPX8FILE", 8, 0x100, 2, 3, false, false, false},
        {"v9-1bit-wide-block", "QPX9FILE", 1, 0x200, 0, 0, false, false, true},
        {"v9-16bit-size-table-at-end", "QPX9FILE", 16, 0x400, 1, 0, false, true, true},
        {"v11-48bit-all-records", "QPX9FILE", 48, 0x700, 3, 5, true, false, true},
        {"v9-32bit", "QPX9FILE", 32, 0, 0, 0, false, false, false},
    };
    for (const Binary& b : binaries) {
        Image image = Painting(b.magic, b.bits, 8, 12, 10);
        image.flags = b.flags, image.skip = b.skip, image.extendedSkip = b.extendedSkip;
        image.doubled = b.doubled, image.tableAtEnd = b.tableAtEnd;
        image.wideDescription = u"wide";
        if (b.block) image.block = Block(L"seed", true);
        seeds.emplace_back(std::string("qpx-") + b.name, Write(image));
    }
    // The background as the last object is the thumbnail when none is marked.
    Image last = Painting("QPX8FILE", 24, 4, 6, 6);
    last.objects = {TextObject({{"Courier", u""}}), Picture(kKindBackground, 6, 6, 24, 4)};
    seeds.emplace_back("qpx-background-last", Write(last));

    struct Tiff { const char* name; uint16_t compression, photometric, bits, samples; uint32_t t4; uint16_t fillOrder; };
    const Tiff tiffs[] = {
        {"none-grey", COMPRESSION_NONE, PHOTOMETRIC_MINISBLACK, 8, 1, 0, 1},
        {"ccitt-rle", COMPRESSION_CCITTRLE, PHOTOMETRIC_MINISWHITE, 1, 1, 0, 1},
        {"ccitt-g3-1d", COMPRESSION_CCITTFAX3, PHOTOMETRIC_MINISWHITE, 1, 1, 0, 1},
        {"ccitt-g3-2d", COMPRESSION_CCITTFAX3, PHOTOMETRIC_MINISWHITE, 1, 1, GROUP3OPT_2DENCODING, 1},
        {"ccitt-g4", COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE, 1, 1, 0, 1},
        {"ccitt-g4-lsb", COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISBLACK, 1, 1, 0, 2},
        {"lzw-grey", COMPRESSION_LZW, PHOTOMETRIC_MINISBLACK, 8, 1, 0, 1},
        {"packbits-4bit", COMPRESSION_PACKBITS, PHOTOMETRIC_MINISBLACK, 4, 1, 0, 1},
        {"packbits-cmyk", COMPRESSION_PACKBITS, PHOTOMETRIC_SEPARATED, 8, 4, 0, 1},
    };
    for (const Tiff& t : tiffs) {
        TiffDirectory d = TiffSeed(t.compression, t.photometric, t.bits, t.samples);
        d.t4Options = t.t4, d.fillOrder = t.fillOrder;
        seeds.emplace_back(std::string("tiff-") + t.name, WriteTiff({d}));
    }
    TiffDirectory rgb = TiffPicture(20, 15, COMPRESSION_LZW);
    rgb.unit = 3;
    seeds.emplace_back("tiff-lzw-predictor-rgb", WriteTiff({rgb}));
    TiffDirectory palette = TiffSeed(COMPRESSION_NONE, PHOTOMETRIC_PALETTE, 2, 1);
    palette.colourMap = {0, 0xFF00, 0, 0x8000, 0, 0, 0xFF00, 0x8000, 0, 0, 0, 0xFF00};
    TiffDirectory six = TiffSeed(COMPRESSION_PACKBITS, PHOTOMETRIC_MINISBLACK, 8, 1);
    six.software = "Brimo Pixora 6.0", six.description.clear(), six.privateMark = true;
    TiffDirectory big = TiffSeed(COMPRESSION_NONE, PHOTOMETRIC_MINISBLACK, 1, 1);
    big.width = 500, big.height = 2, big.description.clear();
    big.rows.assign(size_t(63) * 2, 0x5A);
    seeds.emplace_back("tiff-palette", WriteTiff({palette}));
    seeds.emplace_back("tiff-version6-private-mark", WriteTiff({six}));
    seeds.emplace_back("tiff-second-directory", WriteTiff({big, TiffSeed(COMPRESSION_CCITTFAX4, 0, 1, 1)}));
    return seeds;
}

}  // namespace PaintSamples
