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

}  // namespace
