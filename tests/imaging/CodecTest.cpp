// Image files in: damaged or hostile input of every format the encoder
// writes, and the decoded size limit.
#include <gtest/gtest.h>

#include "imaging/PixelOps.h"
#include "imaging/codecs/Codecs.h"
#include "imaging/codecs/ImageCodecs.h"
#include "utils/streams/MemStream.h"
#include "ImagingTestUtil.h"
#include "tests/support/zip/ZipTestArchive.h"

using namespace BrmUtils;

namespace {

// Made with a few lines of zlib: a PNG header alone that claims 16384 x 16384.
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
