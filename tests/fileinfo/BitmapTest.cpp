// The bitmap operations of WFileBase over the test reader's packed DIB:
// fitted size, white background, kept alpha in icons, the preview cache.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/fileinfo/TestReader.h"

using namespace fitest;

namespace {

// A bottom-up 32-bit DIB of one colour (B, G, R, A).
std::vector<uint8_t> SolidDib(int width, int height, uint32_t bgra) {
    const BITMAPINFOHEADER header{sizeof header, width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    std::vector<uint8_t> dib(sizeof header + size_t(width) * height * 4);
    std::memcpy(dib.data(), &header, sizeof header);
    for (size_t i = sizeof header; i < dib.size(); ++i) dib[i] = uint8_t(bgra >> (8 * (3 - (i % 4))));
    return dib;
}

constexpr uint32_t kOpaqueRed = 0x0000FFFF;       // B 0, G 0, R 255, A 255

}  // namespace

TEST(WFileBaseBitmap, DamagedPreviewGivesNull) {
    std::vector<uint8_t> truncated = SolidDib(4, 2, kOpaqueRed), badDepth = truncated, hugeWidth = truncated;
    truncated.resize(60);  // the header and half the pixels
    badDepth[14] = 7;      // biBitCount
    hugeWidth[4] = 0xFF, hugeWidth[5] = 0xFF, hugeWidth[6] = 0xFF, hugeWidth[7] = 0x7F;
    for (const auto& dib : {truncated, badDepth, hugeWidth}) {
        ReaderPtr reader(TestReader::Make());
        reader->dib = dib;
        EXPECT_EQ(reader->GetBitmap(SIZE{16, 16}, 0, false, nullptr), nullptr);
        EXPECT_EQ(reader->GetIcon(nullptr, 16), nullptr);
    }
}
