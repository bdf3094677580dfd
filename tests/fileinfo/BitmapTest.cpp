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
constexpr uint32_t kTransparentRed = 0x0000FF00;  // alpha 0

// One pixel as B, G, R, A packed like the constants above.
uint32_t Pixel(const FiBitmap& bitmap, int x, int y) {
    const uint8_t* p = bitmap.bits + (size_t(y) * bitmap.width + x) * 4;
    return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
}

}  // namespace

TEST(WFileBaseBitmap, FittedOnWhite) {
    const struct { uint32_t colour; SIZE requested; bool enlarge; int width, height; uint32_t expected; } cases[] = {
        {kOpaqueRed, {2, 2}, false, 2, 1, kOpaqueRed},
        {kOpaqueRed, {64, 64}, false, 4, 2, kOpaqueRed},  // no enlarging: own size
        {kOpaqueRed, {64, 64}, true, 64, 32, kOpaqueRed},
        {kTransparentRed, {4, 4}, false, 4, 2, 0xFFFFFFFF},  // transparency shows the white
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.requested.cx << "x" << c.requested.cy);
        ReaderPtr reader(TestReader::Make());
        reader->dib = SolidDib(4, 2, c.colour);
        uint8_t hasAlpha = 7;
        HBITMAP bitmap = reader->GetBitmap(c.requested, 0, c.enlarge, &hasAlpha);
        ASSERT_NE(bitmap, nullptr);
        EXPECT_EQ(bitmap->width, c.width);
        EXPECT_EQ(bitmap->height, c.height);
        EXPECT_EQ(hasAlpha, 0);
        EXPECT_EQ(Pixel(*bitmap, 0, 0), c.expected);
        EXPECT_EQ(Pixel(*bitmap, c.width - 1, c.height - 1), c.expected);
        DeleteObject(bitmap);
    }
}

TEST(WFileBaseBitmap, IconKeepsAlphaInATransparentSquare) {
    for (uint32_t colour : {kOpaqueRed, kTransparentRed}) {
        ReaderPtr reader(TestReader::Make());
        reader->dib = SolidDib(4, 2, colour);
        HICON icon = reader->GetIcon(nullptr, 8);
        ASSERT_NE(icon, nullptr);
        ASSERT_NE(icon->color, nullptr);
        EXPECT_EQ(icon->color->width, 8);
        EXPECT_EQ(icon->color->height, 8);
        EXPECT_EQ(Pixel(*icon->color, 0, 0) & 0xFF, 0u);  // the margin is transparent
        // The image sits at (2, 3), 4 x 2; a transparent one is not made opaque on the way.
        const uint32_t mask = colour == kOpaqueRed ? 0xFFFFFFFF : 0xFF;
        EXPECT_EQ(Pixel(*icon->color, 3, 4) & mask, colour & mask);
        DestroyIcon(icon);
        EXPECT_EQ(reader->GetIcon(nullptr, 0), nullptr);
    }
}

TEST(WFileBaseBitmap, PagesAndPreviewCache) {
    ReaderPtr reader(TestReader::Make());
    const SIZE size{16, 16};
    // No preview is asked for again each time.
    EXPECT_EQ(reader->GetBitmap(size, 0, false, nullptr), nullptr);
    EXPECT_EQ(reader->GetIcon(nullptr, 16), nullptr);
    EXPECT_EQ(reader->previewReads, 2);
    reader->dib = {1, 2, 3};  // shorter than a header: dropped, not kept
    EXPECT_EQ(reader->GetBitmap(size, 0, false, nullptr), nullptr);
    EXPECT_EQ(reader->previewReads, 3);
    reader->dib = SolidDib(4, 2, kOpaqueRed);
    HBITMAP page1 = reader->GetPageBitmap(1, size, 0, false, nullptr);
    ASSERT_NE(page1, nullptr);
    DeleteObject(page1);
    EXPECT_EQ(reader->GetPageBitmap(2, size, 0, false, nullptr), nullptr);
    EXPECT_EQ(reader->GetPageBitmap(0, size, 0, false, nullptr), nullptr);
    DestroyIcon(reader->GetIcon(nullptr, 16));
    EXPECT_EQ(reader->previewReads, 4);  // read once, kept
    reader->CloseFile();                  // drops the cache
    DeleteObject(reader->GetBitmap(size, 0, false, nullptr));
    EXPECT_EQ(reader->previewReads, 5);
}

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
