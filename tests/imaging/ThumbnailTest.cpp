// Fitting, canvas placement, background and alpha of thumbnails and icons.
#include <gtest/gtest.h>

#include "imaging/Thumbnail.h"
#include "ImagingTestUtil.h"

using namespace BrmUtils;
using imaging_test::MaxDiff;
using imaging_test::PixelAt;
using imaging_test::Solid;

namespace {

struct FitCase { SIZE requested, image; bool enlarge; SIZE expected; };

TEST(FitSize, AspectAndEnlargeRules) {
    const FitCase cases[] = {
        {{64, 64}, {100, 50}, false, {64, 32}},
        {{64, 64}, {50, 100}, false, {32, 64}},
        {{64, 64}, {10, 10}, false, {10, 10}},
        {{64, 64}, {10, 10}, true, {64, 64}},
        {{1, 1}, {1, 1}, false, {1, 1}},
        {{64, 48}, {640, 480}, false, {64, 48}},
        {{100, 100}, {3, 2}, true, {100, 66}},       // truncating division
        {{100, 10}, {1000, 1}, false, {100, 0}},     // too thin to keep a row
        {{64, 64}, {0, 10}, true, {0, 0}},           // no image
        {{64, 64}, {80, 10}, false, {64, 8}},
        {{64, 64}, {60, 10}, false, {60, 10}},       // a fit wider than the image keeps its size
        {{2000000000, 2000000000}, {16384, 1}, true, {2000000000, 122070}},  // no overflow
    };
    for (const auto& c : cases) {
        SIZE got = FitSize(c.requested, c.image, c.enlarge);
        EXPECT_EQ(got.cx, c.expected.cx) << c.image.cx << "x" << c.image.cy << " in " << c.requested.cx;
        EXPECT_EQ(got.cy, c.expected.cy) << c.image.cx << "x" << c.image.cy << " in " << c.requested.cx;
    }
}

struct CanvasCase {
    SIZE image, requested;
    bool enlarge, shrink, transparent;
    SIZE canvas;
    RECT drawn;  // left, top, right, bottom (exclusive)
};

TEST(ScaleImage, CanvasPlacementAndBackground) {
    const uint32_t red = 0xFFFF0000;
    const CanvasCase cases[] = {
        {{100, 50}, {64, 64}, false, true, false, {64, 32}, {0, 0, 64, 32}},
        {{100, 50}, {64, 64}, false, false, true, {64, 64}, {0, 16, 64, 48}},
        {{100, 50}, {64, 64}, false, false, false, {64, 64}, {0, 16, 64, 48}},
        {{10, 10}, {64, 64}, false, false, true, {64, 64}, {27, 27, 37, 37}},
        {{10, 10}, {64, 64}, true, false, true, {64, 64}, {0, 0, 64, 64}},
        {{1, 1}, {1, 1}, false, true, false, {1, 1}, {0, 0, 1, 1}},
        {{5, 10}, {9, 9}, false, false, true, {9, 9}, {2, 0, 6, 9}},  // (9 - 4) / 2 = 2, truncating
    };
    for (const auto& c : cases) {
        auto image = Solid(c.image.cx, c.image.cy, red);
        auto out = ScaleImage(*image, c.requested, c.enlarge, c.shrink, c.transparent);
        ASSERT_TRUE(out);
        ASSERT_EQ(out->Width(), c.canvas.cx);
        ASSERT_EQ(out->Height(), c.canvas.cy);
        EXPECT_EQ(out->Format(), PixelFormat::Argb32);
        const uint32_t background = c.transparent ? 0u : 0xFFFFFFFFu;
        for (int y = 0; y < c.canvas.cy; ++y) {
            for (int x = 0; x < c.canvas.cx; ++x) {
                bool inside = x >= c.drawn.left && x < c.drawn.right && y >= c.drawn.top && y < c.drawn.bottom;
                uint32_t want = inside ? red : background;
                ASSERT_LE(MaxDiff(PixelAt(*out, x, y), want), 1)
                    << "canvas " << c.canvas.cx << "x" << c.canvas.cy << " at " << x << "," << y;
            }
        }
    }
}

TEST(ScaleImage, NoSizeOrNoCanvasGivesNull) {
    auto image = Solid(1000, 1, 0xFF000000);
    EXPECT_FALSE(ScaleImage(*image, {100, 10}, false, true, false));  // fitted height 0
    EXPECT_TRUE(ScaleImage(*image, {100, 10}, false, false, false));  // canvas kept, nothing drawn
    EXPECT_FALSE(ScaleImage(*image, {0, 0}, false, false, false));
    EXPECT_FALSE(ScaleImage(*image, {NativeBitmap::kMaxEdge + 1, 10}, true, false, false));
    NativeBitmap empty(nullptr, PixelFormat::Argb32);
    EXPECT_FALSE(ScaleImage(empty, {10, 10}, true, true, true));
}

// A scaled uniform image stays uniform up to its edges: nothing fades in
// from outside the source, whichever way it is scaled.
TEST(ScaleImage, UniformColourSurvivesScaling) {
    const uint32_t colour = 0xFF336699, halfBlue = 0x80000080;
    const struct { SIZE image, requested; uint32_t colour; } cases[] = {
        {{1000, 500}, {64, 64}, colour}, {{7, 3}, {256, 256}, colour}, {{33, 17}, {32, 16}, halfBlue},
        {{4096, 64}, {64, 64}, colour},
    };
    for (const auto& c : cases) {
        auto image = Solid(c.image.cx, c.image.cy, c.colour);
        auto out = ScaleImage(*image, c.requested, true, true, true);
        ASSERT_TRUE(out);
        for (int y = 0; y < out->Height(); ++y)
            for (int x = 0; x < out->Width(); ++x)
                ASSERT_LE(MaxDiff(PixelAt(*out, x, y), c.colour), 1) << x << "," << y;
    }
}

TEST(ScaleImage, ShrinkingAveragesAndSameSizeCopiesExactly) {
    // One-pixel checks shrunk 17 times: sampling at points would hit one colour.
    auto checker = NativeBitmap::Create(255, 255);
    auto rows = checker->LockBits();
    for (int y = 0; y < 255; ++y)
        for (int x = 0; x < 255; ++x) rows->GetRow(y)[x] = ((x + y) & 1) ? 0xFFFFFFFF : 0xFF000000;
    auto small = ScaleImage(*checker, {15, 15}, false, true, false);
    ASSERT_TRUE(small);
    for (int y = 0; y < 15; ++y)
        for (int x = 0; x < 15; ++x) EXPECT_LE(MaxDiff(PixelAt(*small, x, y), 0xFF808080), 8) << x << "," << y;
    auto same = ScaleImage(*checker, {255, 255}, false, true, true);
    ASSERT_TRUE(same);
    for (int y = 0; y < 255; y += 37)
        for (int x = 0; x < 255; x += 29) EXPECT_EQ(PixelAt(*same, x, y), PixelAt(*checker, x, y));
}

TEST(CreateHBITMAP, CompositesOverBackgroundIntoStraightBgra) {
    const struct { uint32_t premultiplied, background, expectedBgraWord; } cases[] = {
        {0x80800000, 0xFFFFFFFF, 0xFFFF7F7F},  // half red over white
        {0x80800000, 0x00000000, 0x80FF0000},  // half red kept, straight alpha
        {0x00000000, 0xFF0000FF, 0xFF0000FF},  // transparent shows the background
        {0xFF102030, 0xFFFFFFFF, 0xFF102030},
    };
    for (const auto& c : cases) {
        auto image = Solid(3, 2, c.premultiplied);
        HBITMAP bmp = CreateHBITMAP(*image, c.background);
        ASSERT_TRUE(bmp);
        EXPECT_EQ(bmp->width, 3);
        EXPECT_EQ(bmp->height, 2);
        uint32_t word;
        std::memcpy(&word, bmp->bits + 4 * 5, 4);
        EXPECT_LE(MaxDiff(word, c.expectedBgraWord), 1) << std::hex << c.premultiplied << " on " << c.background;
        DeleteObject(bmp);
    }
}

TEST(Icons, HotSpotCentreAndStraightAlpha) {
    auto image = Solid(5, 4, 0x40400000);  // quarter-opaque red
    HICON icon = BitmapToIcon(*image);
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->hotspotX, 2);
    EXPECT_EQ(icon->hotspotY, 2);
    ASSERT_EQ(icon->color->width, 5);
    EXPECT_EQ(icon->color->bits[2], 0xFF);  // red, un-premultiplied
    EXPECT_EQ(icon->color->bits[3], 0x40);
    DestroyIcon(icon);

    auto wide = Solid(100, 50, 0xFF00FF00);
    HICON square = ImageToIcon(*wide, 32);
    ASSERT_TRUE(square);
    ASSERT_EQ(square->color->width, 32);
    ASSERT_EQ(square->color->height, 32);
    EXPECT_EQ(square->hotspotX, 16);
    EXPECT_EQ(square->color->bits[3], 0);                     // above the image: transparent
    EXPECT_EQ(square->color->bits[(16 * 32 + 16) * 4 + 3], 0xFF);
    DestroyIcon(square);

    auto tiny = Solid(2, 2, 0xFF00FF00);
    HICON kept = ImageToIcon(*tiny, 8);  // never enlarged: sits at (3, 3)
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->color->bits[(2 * 8 + 2) * 4 + 3], 0);
    EXPECT_EQ(kept->color->bits[(3 * 8 + 3) * 4 + 3], 0xFF);
    DestroyIcon(kept);
}

TEST(NativeBitmap, RowsFormatsAndClones) {
    EXPECT_FALSE(NativeBitmap::Create(0, 5));
    EXPECT_FALSE(NativeBitmap::Create(5, NativeBitmap::kMaxEdge + 1));
    auto opaque = NativeBitmap::Create(3, 3, PixelFormat::Rgb24);
    EXPECT_EQ(PixelAt(*opaque, 2, 2), 0xFF000000u);
    EXPECT_FALSE(opaque->HasAlpha());

    auto b = Solid(4, 3, 0x80800000);
    auto rows = b->LockBits();
    EXPECT_EQ(rows->GetRow(-1), nullptr);
    EXPECT_EQ(rows->GetRow(3), nullptr);
    EXPECT_EQ(reinterpret_cast<uint8_t*>(rows->GetRow(2)) - reinterpret_cast<uint8_t*>(rows->GetRow(0)), 32);
    NativeBitmap empty(nullptr, PixelFormat::Argb32);
    EXPECT_EQ(empty.LockBits()->GetRow(0), nullptr);

    auto flat = b->Clone(PixelFormat::Rgb24);  // over black
    ASSERT_TRUE(flat);
    EXPECT_EQ(flat->Format(), PixelFormat::Rgb24);
    EXPECT_EQ(PixelAt(*flat, 1, 1), 0xFF800000u);
    auto same = b->Clone(PixelFormat::Argb32);
    EXPECT_EQ(PixelAt(*same, 3, 2), 0x80800000u);

    // A borrowed image outlives its wrapper.
    {
        NativeBitmap borrowed(b->Image(), PixelFormat::Argb32, true);
        EXPECT_EQ(borrowed.Width(), 4);
    }
    EXPECT_EQ(PixelAt(*b, 0, 0), 0x80800000u);
}

}  // namespace
