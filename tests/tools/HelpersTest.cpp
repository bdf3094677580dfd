// The tool's helpers that carry real rules: key text, typed-in values, type
// detection by content and extension, and the BMP file header of a DIB.
#include <gtest/gtest.h>

#include <cstring>

#include "ImageOutput.h"
#include "Tool.h"
#include "ToolRunner.h"
#include "tests/support/riff/DrawingChunks.h"
#include "tests/support/zip/ZipTestArchive.h"

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

TEST(ToolHelpers, TypedTextBecomesThePrimaryType) {
    struct Case {
        std::string text;
        VARTYPE type;
        bool ok;
        std::string json;  // the value as the tool prints it
    };
    const Case cases[] = {
        {"Plan \xC3\xA9t\xC3\xA9", VT_LPWSTR, true, "\"Plan \xC3\xA9t\xC3\xA9\""},
        {"a; b,c ;; ", VT_VECTOR | VT_LPWSTR, true, "[\"a\",\"b\",\"c\"]"},
        {"", VT_VECTOR | VT_LPWSTR, true, "[]"},
        {" 42 ", VT_I4, true, "42"},
        {"-2147483649", VT_I4, false, ""},
        {"4294967295", VT_UI4, true, "4294967295"},
        {"-1", VT_UI4, false, ""},
        {"32768", VT_I2, false, ""},
        {"12abc", VT_I4, false, ""},
        {"2.5", VT_R8, true, "2.5"},
        {"nan", VT_R8, false, ""},
        {"yes", VT_BOOL, true, "true"},
        {"0", VT_BOOL, true, "false"},
        {"maybe", VT_BOOL, false, ""},
        {"x", VT_FILETIME, false, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        fitool::Variant v;
        bool ok = fitool::TextToVariant(c.text, c.type, &v.pv);
        EXPECT_EQ(ok, c.ok);
        if (ok) {
            EXPECT_EQ(v.pv.vt, c.type);
            EXPECT_EQ(fitool::VariantToJson(v.pv).dump(), c.json);
        }
    }
}

TEST(ToolHelpers, VectorsAndTypeNamesPrint) {
    fitool::Variant v;
    ASSERT_TRUE(fitool::TextToVariant("a;b", VT_VECTOR | VT_LPWSTR, &v.pv));
    EXPECT_EQ(fitool::VariantToText(v.pv), "a; b");
    EXPECT_EQ(fitool::VtName(v.pv.vt), "VT_VECTOR|VT_LPWSTR");
    EXPECT_EQ(fitool::VtName(VT_EMPTY), "VT_EMPTY");
    EXPECT_EQ(fitool::VtName(0x49), "VT_0x0049");
    EXPECT_EQ(fitool::HexHresult(E_INVALIDARG), "0x80070057");
    EXPECT_EQ(fitool::HexHresult(S_FALSE), "0x00000001");
}

}  // namespace
}  // namespace tooltest
