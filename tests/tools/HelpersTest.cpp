// The tool's property keys: canonical text, names, and the texts refused.
#include <gtest/gtest.h>

#include "Tool.h"

namespace tooltest {
namespace {

TEST(ToolHelpers, KeysRoundTripAndBadOnesAreRefused) {
    const char* keywords = "{F29F85E0-4FF9-1068-AB91-08002B27B3D9}/5";
    auto key = fitool::ParseKeyText(keywords);
    ASSERT_TRUE(key);
    EXPECT_EQ(fitool::KeyText(*key), keywords);
    EXPECT_EQ(fitool::KeyName(*key), "System.Keywords");
    EXPECT_EQ(fitool::ResolveKey("System.Keywords"), key);
    EXPECT_EQ(fitool::ResolveKey("f29f85e0-4ff9-1068-ab91-08002b27b3d9/5"), key);
    auto big = fitool::ParseKeyText("{01C02975-0DB2-4DFE-80A1-324591D2ECBC}/4294967295");
    ASSERT_TRUE(big);
    EXPECT_EQ(big->pid, 0xFFFFFFFFu);
    EXPECT_EQ(fitool::KeyName(*big), "fileinfo.{01C02975-0DB2-4DFE-80A1-324591D2ECBC}/4294967295");
    EXPECT_EQ(fitool::ResolveKey(fitool::KeyName(*big)), big);
    for (const char* bad : {"", "/5", "{F29F85E0-4FF9-1068-AB91-08002B27B3D9}", "{F29F85E0-4FF9-1068-AB91-08002B27B3D9}/",
                            "{F29F85E0-4FF9-1068-AB91-08002B27B3D9}/4294967296", "{G29F85E0-4FF9-1068-AB91-08002B27B3D9}/5",
                            "{F29F85E04FF9-1068-AB91-08002B27B3D9-}/5", "System.Nothing"}) {
        EXPECT_FALSE(fitool::ResolveKey(bad)) << bad;
    }
}

}  // namespace
}  // namespace tooltest
