// Image files in and out: round trips per format, the JPEG retry without
// alpha, encoder lookup, stream references, and damaged or hostile input.
#include <gtest/gtest.h>

#include <cstring>

#include "imaging/PixelOps.h"
#include "imaging/codecs/Codecs.h"
#include "imaging/codecs/ImageCodecs.h"
#include "utils/streams/MemStream.h"
#include "ImagingTestUtil.h"
#include "tests/support/qpx/QpxWriter.h"
#include "tests/support/zip/ZipTestArchive.h"

using namespace BrmUtils;
using imaging_test::MaxDiff;
using imaging_test::PixelAt;

namespace {

// Made with a few lines of zlib: a 2x1 8-bit grey, a 2x1 2-bit palette with
// a half-transparent entry, a 1x1 16-bit RGB, a 1x1 grey with alpha, and a
// header alone that claims 16384 x 16384.
const uint8_t kGrayPng[] = {0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x00, 0x00, 0x00, 0xd1, 0x49, 0x20, 0x56, 0x00, 0x00, 0x00, 0x0b, 0x49, 0x44, 0x41, 0x54, 0x78, 0x9c, 0x63, 0x60, 0x68, 0x00, 0x00, 0x00, 0x83, 0x00, 0x81, 0x87, 0xcf, 0xec, 0xa4, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};
const uint8_t kPalettePng[] = {0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x01, 0x02, 0x03, 0x00, 0x00, 0x00, 0x89, 0x4c, 0x97, 0x19, 0x00, 0x00, 0x00, 0x06, 0x50, 0x4c, 0x54, 0x45, 0xff, 0x00, 0x00, 0x00, 0x00, 0xff, 0x6c, 0xa1, 0xfd, 0x8e, 0x00, 0x00, 0x00, 0x02, 0x74, 0x52, 0x4e, 0x53, 0xff, 0x80, 0x08, 0x0f, 0xb3, 0x6a, 0x00, 0x00, 0x00, 0x0a, 0x49, 0x44, 0x41, 0x54, 0x78, 0x9c, 0x63, 0x10, 0x00, 0x00, 0x00, 0x12, 0x00, 0x11, 0xa5, 0x56, 0xc7, 0x4e, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};
const uint8_t kRgb16Png[] = {0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x10, 0x02, 0x00, 0x00, 0x00, 0xc0, 0xe7, 0x8f, 0x9d, 0x00, 0x00, 0x00, 0x0f, 0x49, 0x44, 0x41, 0x54, 0x78, 0x9c, 0x63, 0xf8, 0xff, 0xbf, 0x81, 0x81, 0x81, 0x01, 0x00, 0x0c, 0xfc, 0x02, 0x7f, 0xa3, 0x77, 0x94, 0xcc, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};
const uint8_t kGrayAlphaPng[] = {0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x04, 0x00, 0x00, 0x00, 0xb5, 0x1c, 0x0c, 0x02, 0x00, 0x00, 0x00, 0x0b, 0x49, 0x44, 0x41, 0x54, 0x78, 0x9c, 0x63, 0xf8, 0xef, 0x00, 0x00, 0x02, 0x41, 0x01, 0x40, 0xfb, 0x41, 0xde, 0x5e, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};
const uint8_t kHugePng[] = {0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00, 0x40, 0x00, 0x00, 0x00, 0x40, 0x00, 0x08, 0x06, 0x00, 0x00, 0x00, 0xa9, 0xc8, 0x10, 0x84};

// A 7x5 picture with every alpha from 0 to 255 (premultiplied) or opaque.
std::unique_ptr<NativeBitmap> TestPicture(bool alpha) {
    auto b = NativeBitmap::Create(7, 5, alpha ? PixelFormat::Argb32 : PixelFormat::Rgb24);
    auto rows = b->LockBits();
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 7; ++x) {
            uint32_t a = alpha ? uint32_t(x * 42 + y) % 256 : 255;
            uint32_t straight = Pixels::Pack(a, uint32_t(x * 36), uint32_t(y * 60), 200);
            rows->GetRow(y)[x] = Pixels::Premultiply(straight);
        }
    }
    return b;
}

std::vector<uint8_t> Save(const NativeBitmap& b, const wchar_t* mime) {
    ziptest::Ref<IStream> s = ziptest::EmptyStream();
    s->AddRef();  // SaveImage takes one reference
    EXPECT_TRUE(SaveImage(b, mime, s.get())) << "saving as " << char(mime[6]);
    return ziptest::Contents(s.get());
}

// A BMP file of one 32-bit column of two pixels, its pixels `gap` bytes after the header.
std::vector<uint8_t> BmpFile(std::vector<uint8_t> pixels, int32_t height, uint32_t gap) {
    std::vector<uint8_t> dib = imaging_test::BuildDib({1, height, 32, BI_RGB, 0, 1, {}, {}});
    BITMAPFILEHEADER fh{0x4D42, 0, 0, 0, uint32_t(14 + 40 + gap)};
    // Filled in place rather than by insert: GCC 12 at -O3 warns falsely on
    // the inserts into a reserved vector.
    std::vector<uint8_t> out(14 + dib.size() + gap + pixels.size(), 0xEE);
    std::memcpy(out.data(), &fh, 14);
    std::memcpy(out.data() + 14, dib.data(), dib.size());
    if (!pixels.empty()) std::memcpy(out.data() + 14 + dib.size() + gap, pixels.data(), pixels.size());
    return out;
}

std::vector<uint8_t> Of(const uint8_t* data, size_t size) { return std::vector<uint8_t>(data, data + size); }

// Files the encoder never writes: PNG colour types, TIFF photometrics, BMP alpha and offsets.
TEST(Codecs, ForeignFilesDecode) {
    // Uncompressed TIFF files of one strip: width, samples, photometric, extra sample, pixels.
    auto tiff = [](uint32_t width, uint16_t samples, uint16_t photometric, uint16_t extra, QpxTest::Bytes pixels) {
        QpxTest::TiffDirectory d;
        d.width = width, d.height = 1, d.samples = samples, d.photometric = photometric, d.extraSample = extra;
        d.rows = std::move(pixels);
        return QpxTest::WriteTiff({d});
    };
    const struct {
        const char* name;
        std::vector<uint8_t> bytes;
        PixelFormat format;
        std::vector<uint32_t> row0, row1;
    } cases[] = {
        {"grey PNG", Of(kGrayPng, sizeof kGrayPng), PixelFormat::Rgb24, {0xFF000000, 0xFF808080}, {}},
        {"PNG palette with transparency", Of(kPalettePng, sizeof kPalettePng), PixelFormat::Argb32,
         {0xFFFF0000, 0x80000080}, {}},
        {"16-bit PNG", Of(kRgb16Png, sizeof kRgb16Png), PixelFormat::Rgb24, {0xFFFF8000}, {}},
        {"PNG grey with alpha", Of(kGrayAlphaPng, sizeof kGrayAlphaPng), PixelFormat::Argb32, {0x40404040}, {}},
        {"CMYK TIFF", tiff(3, 4, 5, 0, {255, 0, 0, 0, 0, 255, 255, 0, 0, 0, 0, 255}), PixelFormat::Cmyk32,
         {0xFF00FFFF, 0xFFFF0000, 0xFF000000}, {}},
        {"RGB TIFF", tiff(2, 3, 2, 0, {10, 20, 30, 40, 50, 60}), PixelFormat::Rgb24, {0xFF0A141E, 0xFF28323C}, {}},
        {"TIFF unassociated alpha", tiff(1, 4, 2, 2, {255, 0, 0, 128}), PixelFormat::Argb32, {0x80800000}, {}},
        {"TIFF associated alpha", tiff(1, 4, 2, 1, {64, 0, 0, 128}), PixelFormat::Argb32, {0x80400000}, {}},
        // A 32-bit file whose alpha bytes are all 0 is opaque; one with any alpha keeps it.
        {"BMP zero alpha is opaque", BmpFile({1, 2, 3, 0, 4, 5, 6, 0}, 2, 0), PixelFormat::Rgb24, {0xFF060504},
         {0xFF030201}},
        {"BMP alpha kept", BmpFile({0, 0, 255, 128, 4, 5, 6, 0}, 2, 0), PixelFormat::Argb32, {0}, {0x80800000}},
        {"BMP pixels after a gap", BmpFile({1, 2, 3, 0, 4, 5, 6, 0}, -2, 6), PixelFormat::Rgb24, {0xFF030201},
         {0xFF060504}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto b = LoadImage(c.bytes.data(), c.bytes.size());
        ASSERT_TRUE(b);
        EXPECT_EQ(b->Format(), c.format);
        const int tolerance = std::strstr(c.name, "TIFF") ? 1 : 0;  // colour maths
        for (size_t x = 0; x < c.row0.size(); ++x) EXPECT_LE(MaxDiff(PixelAt(*b, int(x), 0), c.row0[x]), tolerance) << x;
        for (size_t x = 0; x < c.row1.size(); ++x) EXPECT_EQ(PixelAt(*b, int(x), 1), c.row1[x]) << x;
    }
}

TEST(Codecs, DamagedAndHostileInputGivesNull) {
    auto picture = TestPicture(true);
    for (const wchar_t* mime : {L"image/png", L"image/jpeg", L"image/tiff", L"image/bmp"}) {
        const auto whole = Save(*picture, mime);
        for (size_t keep : {size_t(4), size_t(20), whole.size() / 2}) {
            EXPECT_FALSE(LoadImage(whole.data(), keep)) << "format " << char(mime[6]) << " cut to " << keep;
        }
        auto scrambled = whole;
        for (size_t i = 8; i < scrambled.size(); i += 3) scrambled[i] ^= 0x5A;
        LoadImage(scrambled.data(), scrambled.size());  // no crash, no leak, whatever it answers
    }
    // Cut inside the scan data, past every header: libjpeg would pad with grey.
    auto noise = NativeBitmap::Create(64, 64, PixelFormat::Rgb24);
    auto rows = noise->LockBits();
    uint32_t seed = 1;
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) rows->GetRow(y)[x] = 0xFF000000 | ((seed = seed * 1103515245 + 12345) >> 8);
    const auto jpeg = Save(*noise, L"image/jpeg");
    ASSERT_TRUE(LoadImage(jpeg.data(), jpeg.size()));
    EXPECT_FALSE(LoadImage(jpeg.data(), jpeg.size() * 4 / 5));

    const uint8_t hugeJpeg[] = {0xFF, 0xD8, 0xFF, 0xC0, 0x00, 0x11, 0x08, 0xFF, 0xF0, 0xFF, 0xF0, 0x03,
                                0x01, 0x11, 0x00, 0x02, 0x11, 0x01, 0x03, 0x11, 0x01, 0xFF, 0xD9};
    const uint8_t gif[] = {'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0};
    EXPECT_FALSE(LoadImage(kHugePng, sizeof kHugePng));
    EXPECT_FALSE(LoadImage(hugeJpeg, sizeof hugeJpeg));
    EXPECT_FALSE(LoadImage(gif, sizeof gif));
    EXPECT_FALSE(LoadImage(nullptr, 0));

    using Codecs::DecodedSizeAllowed;
    EXPECT_TRUE(DecodedSizeAllowed(1024, 1024, 10));
    EXPECT_FALSE(DecodedSizeAllowed(16384, 16384, 1000));
    EXPECT_TRUE(DecodedSizeAllowed(16384, 16384, 262144));
    EXPECT_FALSE(DecodedSizeAllowed(16385, 1, 1u << 30));
    EXPECT_FALSE(DecodedSizeAllowed(0, 5, 100));
}

}  // namespace
