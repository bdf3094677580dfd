// Text forms of fill.xml values and the fountain matrix decomposition.
#include <gtest/gtest.h>

#include <limits>
#include <numbers>

#include "fill/FillText.h"

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

}  // namespace
