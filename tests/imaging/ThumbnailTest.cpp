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

struct CanvasCase {
    SIZE image, requested;
    bool enlarge, shrink, transparent;
    SIZE canvas;
    RECT drawn;  // left, top, right, bottom (exclusive)
};

TEST(ScaleImage, NoSizeOrNoCanvasGivesNull) {
    auto image = Solid(1000, 1, 0xFF000000);
    EXPECT_FALSE(ScaleImage(*image, {100, 10}, false, true, false));  // fitted height 0
    EXPECT_TRUE(ScaleImage(*image, {100, 10}, false, false, false));  // canvas kept, nothing drawn
    EXPECT_FALSE(ScaleImage(*image, {0, 0}, false, false, false));
    EXPECT_FALSE(ScaleImage(*image, {NativeBitmap::kMaxEdge + 1, 10}, true, false, false));
    NativeBitmap empty(nullptr, PixelFormat::Argb32);
    EXPECT_FALSE(ScaleImage(empty, {10, 10}, true, true, true));
}

}  // namespace
