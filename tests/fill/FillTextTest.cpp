// Text forms of fill.xml values and the fountain matrix decomposition.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "fill/FillText.h"
#include "fill/FountainMatrix.h"

namespace {

using namespace FillText;

TEST(FillText, IntegersSaturateAndVersionsCutToHundredths) {
    EXPECT_EQ(ParseInt(" 42px"), 42);
    EXPECT_EQ(ParseInt("-2147483648"), std::numeric_limits<int>::min());
    EXPECT_EQ(ParseInt("99999999999"), std::numeric_limits<int>::max());
    EXPECT_EQ(ParseInt64("-99999999999999999999"), std::numeric_limits<int64_t>::min());
    struct Case { const char* text; int version; } versions[] = {
        {"1.0", 100}, {"1.00999", 100}, {"0.9999", 99}, {"2.0", 200}, {"", 0}, {"1e300", std::numeric_limits<int>::max()},
    };
    for (const auto& c : versions) EXPECT_EQ(ParseVersion(c.text), c.version) << c.text;
    EXPECT_EQ(FormatVersion(100) + FormatVersion(105) + FormatVersion(150), "1.01.051.5");
}

TEST(FillText, ColourTextSplitsModelsAndKeepsTheLastOfAName) {
    struct Case { const wchar_t* text; ColorModels models; } cases[] = {
        {L"RGB(255,0,0)", {{L"RGB", L"255,0,0"}}},
        {L"RGB(1);CMYK(0,0,0,100)", {{L"CMYK", L"0,0,0,100"}, {L"RGB", L"1"}}},
        {L"RGB(1);RGB(2)", {{L"RGB", L"2"}}},
        {L"Lab((1))", {{L"Lab", L"(1)"}}},
        {L"Gray;;x(", {{L"Gray", L""}, {L"x", L""}}},
        {L"", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(ParseColor(c.text), c.models) << BrmStringW(c.text).GetString();
    const ColorModels two{{L"RGB", L"1,2,3"}, {L"CMYK", L"4"}};
    EXPECT_EQ(FormatColor(two), L"CMYK(4);RGB(1,2,3)");
    EXPECT_EQ(ParseColor(FormatColor(two).StdView()), two);
}

constexpr double kDeg = std::numbers::pi / 180;

struct MatrixCase {
    const char* what;
    FillMatrix::Matrix m;
    bool decomposes;
};

// Rotation by r, then scale and skew as Compose builds them.
FillMatrix::Matrix Make(double sx, double sy, double skewDeg, double angleDeg, double tx = 0, double ty = 0) {
    return *FillMatrix::Compose({sx, sy, std::tan(skewDeg * kDeg), angleDeg * kDeg, tx, ty});
}

TEST(FountainMatrix, DecompositionAndCompositionAreInverse) {
    const MatrixCase cases[] = {
        {"identity", FillMatrix::kIdentity, true},
        {"translation", {1, 0, 5, 0, 1, -7}, true},
        {"rotation 30", Make(1, 1, 0, 30), true},
        {"rotation 180", {-1, 0, 0, 0, -1, 0}, true},
        {"horizontal flip", {-1, 0, 0, 0, 1, 0}, true},
        {"vertical flip", {1, 0, 0, 0, -1, 0}, true},
        {"flip, scale, rotate", {-2 * std::cos(0.3), -3 * std::sin(-0.3), 1, -2 * std::sin(0.3), 3 * std::cos(0.3), 2}, true},
        {"skew 45", Make(2, 0.5, 45, 10), true},
        {"skew -89", Make(1, 3, -89, 200), true},
        {"skew 89.09", Make(1, 1, 89.09, 0), true},
        {"skew 89.11", {1, std::tan(89.11 * kDeg), 0, 0, 1, 0}, false},
        {"columns parallel", {1, 2, 0, 1, 2, 0}, false},
        {"zero x scale", {0, 0, 0, 0, 1, 0}, false},
        {"zero y scale", {1, 0, 0, 0, 0, 0}, false},
        {"not a number", {std::nan(""), 0, 0, 0, 1, 0}, false},
        {"infinite shift", {1, 0, HUGE_VAL, 0, 1, 0}, false},
    };
    for (const auto& c : cases) {
        const auto parts = FillMatrix::Decompose(c.m);
        ASSERT_EQ(parts.has_value(), c.decomposes) << c.what;
        if (!parts) continue;
        const auto back = FillMatrix::Compose(*parts);
        ASSERT_TRUE(back) << c.what;
        for (int i = 0; i < 6; ++i) EXPECT_NEAR((*back)[i], c.m[i], 1e-12 * (1 + std::fabs(c.m[i]))) << c.what << " " << i;
        // Parts that came out of a decomposition come out again unchanged.
        const auto again = FillMatrix::Decompose(*back);
        ASSERT_TRUE(again) << c.what;
        EXPECT_NEAR(again->sx, parts->sx, 1e-12) << c.what;
        EXPECT_NEAR(again->sy, parts->sy, 1e-9) << c.what;
        EXPECT_NEAR(again->angle, parts->angle, 1e-12) << c.what;
        EXPECT_NEAR(std::atan(again->skew), std::atan(parts->skew), 1e-9) << c.what;
    }
    EXPECT_FALSE(FillMatrix::Compose({0, 1, 0, 0, 0, 0}));
    EXPECT_FALSE(FillMatrix::Compose({1, 1, std::tan(89.2 * kDeg), 0, 0, 0}));
}

}  // namespace
