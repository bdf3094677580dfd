// Previews of paint images: tiled objects of each bit depth, objects of no
// preview, and the TIFF generation: the directory walk and each compression
// decoded back to the pixels that were encoded.
#include <gtest/gtest.h>
#include <tiffio.h>

#include "tests/qpx/QpxTestUtil.h"

using namespace QpxTest;

namespace {

uint32_t Grey(uint32_t g) { return g << 16 | g << 8 | g; }

// A paint image whose only image object is `object`, behind a background.
Bytes WithObject(const Object& object, const char* magic = "QPX9FILE", bool backgroundLast = false) {
    Image image;
    image.magic = magic;
    const Object background{QpxFormat::kKindBackground, 100, 100, 24, 0, {}, {}};
    image.objects = backgroundLast ? std::vector<Object>{object, background} : std::vector<Object>{background, object};
    return Write(image);
}

Bytes Pack(uint32_t width, uint32_t height, uint32_t bits, uint32_t samples,
           const std::function<uint32_t(uint32_t, uint32_t, uint32_t)>& value) {
    const uint32_t rowBytes = (width * bits * samples + 7) / 8;
    Bytes rows(size_t(rowBytes) * height, 0);
    for (uint32_t y = 0; y < height; ++y)
        for (uint32_t x = 0; x < width; ++x)
            for (uint32_t s = 0; s < samples; ++s) {
                const uint32_t bit = (x * samples + s) * bits;
                rows[y * rowBytes + bit / 8] |= uint8_t(value(x, y, s) << (8 - bits - bit % 8));
            }
    return rows;
}

}  // namespace

TEST(QpxPreview, ObjectOfEachBitDepthInPartialTiles) {
    struct Case { uint32_t bits; uint64_t (*file)(uint32_t, uint32_t); uint32_t (*shown)(uint32_t, uint32_t); };
    const Case cases[] = {
        {1, [](uint32_t x, uint32_t y) { return uint64_t((x + y) % 2); },
         [](uint32_t x, uint32_t y) { return (x + y) % 2 ? 0xFFFFFFu : 0u; }},
        {8, [](uint32_t x, uint32_t y) { return uint64_t(x * 20 + y); }, [](uint32_t x, uint32_t y) { return Grey(x * 20 + y); }},
        {16, [](uint32_t x, uint32_t y) { return uint64_t((x * 20 + y) << 8 | 0x33); },
         [](uint32_t x, uint32_t y) { return Grey(x * 20 + y); }},
        {24, [](uint32_t x, uint32_t y) { return uint64_t(x | y << 8 | 0x77 << 16); },
         [](uint32_t x, uint32_t y) { return x << 16 | y << 8 | 0x77; }},
        {32, [](uint32_t x, uint32_t y) { return uint64_t(x | y << 8 | 0x77 << 16 | 0xAAu << 24); },
         [](uint32_t x, uint32_t y) { return x << 16 | y << 8 | 0x77; }},
        {48, [](uint32_t x, uint32_t y) { return uint64_t(x) << 8 | uint64_t(y) << 24 | uint64_t(0x7711) << 32; },
         [](uint32_t x, uint32_t y) { return x << 16 | y << 8 | 0x77; }},
    };
    for (const Case& c : cases) {
        std::vector<uint32_t> expected;
        for (uint32_t y = 0; y < 6; ++y)
            for (uint32_t x = 0; x < 10; ++x) expected.push_back(c.shown(x, y));
        for (const char* magic : {"QPX9FILE", "QPX7FILE"})
            EXPECT_EQ(Pixels(WithObject(ImageObject(QpxFormat::kKindThumbnail, 10, 6, c.bits, 4, c.file), magic)),
                      expected) << c.bits << " bits, " << magic;
    }
}

// Objects no preview can be made of: too wide, of no known depth (a depth
// of 0 made tiles of no bytes, found by fuzz_qpx), or cut short.
TEST(QpxPreview, ObjectsOfNoPreviewAreRefused) {
    auto grey = [](uint32_t, uint32_t) { return uint64_t(0x40); };
    EXPECT_TRUE(Pixels(WithObject(ImageObject(QpxFormat::kKindThumbnail, 769, 1, 8, 0, grey))).empty());
    for (uint32_t bits : {12u, 0u})
        EXPECT_TRUE(Pixels(WithObject(ImageObject(QpxFormat::kKindThumbnail, 4, 4, bits, 0, grey))).empty()) << bits;
    Bytes cut = WithObject(ImageObject(QpxFormat::kKindThumbnail, 300, 2, 8, 0, grey));
    cut.resize(cut.size() - 1);
    EXPECT_TRUE(Pixels(cut).empty());
}

TEST(QpxPreview, TiffCompressionsDecodeToTheEncodedPixels) {
    auto bilevel = [](uint32_t x, uint32_t y, uint32_t) { return (x / 3 + y) % 2; };
    auto grey = [](uint32_t x, uint32_t y, uint32_t) { return (x * 7 + y * 13) & 255; };
    auto colour = [](uint32_t x, uint32_t y, uint32_t s) { return s == 0 ? x * 5 : s == 1 ? y * 9 : s == 2 ? 200 : 30; };
    struct Case { uint16_t compression, photometric, bits, samples, predictor, fillOrder; uint32_t t4;
                  std::function<uint32_t(uint32_t, uint32_t, uint32_t)> value; std::function<uint32_t(uint32_t, uint32_t)> shown; };
    auto blackOnWhite = [&](uint32_t x, uint32_t y) { return bilevel(x, y, 0) ? 0u : 0xFFFFFFu; };
    auto greyShown = [&](uint32_t x, uint32_t y) { return Grey(grey(x, y, 0)); };
    const Case cases[] = {
        {COMPRESSION_NONE, 1, 8, 1, 1, 1, 0, grey, greyShown},
        {COMPRESSION_CCITTRLE, 0, 1, 1, 1, 1, 0, bilevel, blackOnWhite},
        {COMPRESSION_CCITTFAX3, 0, 1, 1, 1, 1, 0, bilevel, blackOnWhite},
        {COMPRESSION_CCITTFAX3, 0, 1, 1, 1, 1, GROUP3OPT_2DENCODING, bilevel, blackOnWhite},
        {COMPRESSION_CCITTFAX4, 0, 1, 1, 1, 1, 0, bilevel, blackOnWhite},
        {COMPRESSION_CCITTFAX4, 0, 1, 1, 1, 2, 0, bilevel, blackOnWhite},
        {COMPRESSION_LZW, 1, 8, 1, 1, 1, 0, grey, greyShown},
        {COMPRESSION_LZW, 1, 8, 1, 2, 1, 0, grey, greyShown},
        {COMPRESSION_PACKBITS, 1, 4, 1, 1, 1, 0, [](uint32_t x, uint32_t, uint32_t) { return x % 16; },
         [](uint32_t x, uint32_t) { return Grey(x % 16 * 17); }},
        {COMPRESSION_LZW, 2, 8, 3, 2, 1, 0, colour, [&](uint32_t x, uint32_t y) { return x * 5 << 16 | y * 9 << 8 | 200; }},
        {COMPRESSION_PACKBITS, 5, 8, 4, 1, 1, 0, colour,
         [&](uint32_t x, uint32_t y) { return (225 - x * 5) << 16 | (y * 9 > 225 ? 0 : 225 - y * 9) << 8 | 25; }},
    };
    for (const Case& c : cases) {
        TiffDirectory d;
        d.width = 40, d.height = 10, d.rowsPerStrip = 4;
        d.compression = c.compression, d.photometric = c.photometric, d.bits = c.bits, d.samples = c.samples;
        d.predictor = c.predictor, d.fillOrder = c.fillOrder, d.t4Options = c.t4;
        d.rows = Pack(40, 10, c.bits, c.samples, c.value);
        std::vector<uint32_t> expected;
        for (uint32_t y = 0; y < 10; ++y)
            for (uint32_t x = 0; x < 40; ++x) expected.push_back(c.shown(x, y));
        EXPECT_EQ(Pixels(WriteTiff({d})), expected) << "compression " << c.compression << " photometric " << c.photometric;
    }
    TiffDirectory palette;
    palette.bits = 2, palette.photometric = 3, palette.width = 4, palette.height = 1;
    palette.colourMap = {0, 0xFF00, 0, 0, /*green*/ 0, 0, 0xFF00, 0, /*blue*/ 0, 0, 0, 0xFF00};
    palette.rows = Pack(4, 1, 2, 1, [](uint32_t x, uint32_t, uint32_t) { return x; });
    EXPECT_EQ(Pixels(WriteTiff({palette})), (std::vector<uint32_t>{0, 0xFF0000, 0x00FF00, 0x0000FF}));
}

TEST(QpxPreview, TiffDirectoryWalk) {
    TiffDirectory big, small, other;
    big.width = 1024, small.width = 128;
    other.description = "Other";
    const auto width = [](const Bytes& file) { BITMAPINFOHEADER h{}; return Pixels(file, &h).empty() ? 0u : uint32_t(h.biWidth); };
    EXPECT_EQ(width(WriteTiff({big, small})), 128u);
    EXPECT_EQ(width(WriteTiff({other, small})), 128u);
    TiffDirectory six = other;
    six.software = "Brimo Pixora 6.0", six.privateMark = true;
    EXPECT_EQ(width(WriteTiff({other, six})), 8u);
    six.privateMark = false;
    six.description = "Thumbnail";  // the mark of the older version means nothing in 6.0
    EXPECT_EQ(width(WriteTiff({six})), 0u);
    TiffDirectory foreign = small;
    foreign.software = "Another Program 1.0";
    EXPECT_EQ(width(WriteTiff({foreign})), 0u);
    EXPECT_EQ(width(WriteTiff({big, big})), 0u);
    Bytes motorola = WriteTiff({small});
    motorola[0] = motorola[1] = 'M';
    EXPECT_EQ(width(motorola), 0u);
    // A chain that comes back to its first directory ends the walk.
    Bytes loop = WriteTiff({other, other});
    const uint32_t first = loop[4] | loop[5] << 8 | loop[6] << 16 | uint32_t(loop[7]) << 24;
    const uint32_t second = first + 2 + 12 * (loop[first] | loop[first + 1] << 8);
    const uint32_t secondIfd = loop[second] | loop[second + 1] << 8 | loop[second + 2] << 16 | uint32_t(loop[second + 3]) << 24;
    std::memcpy(loop.data() + secondIfd + 2 + 12 * (loop[secondIfd] | loop[secondIfd + 1] << 8), loop.data() + 4, 4);
    EXPECT_EQ(width(loop), 0u);
}
