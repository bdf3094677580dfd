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

TEST(ToolHelpers, TypeIsDetectedFromContentThenExtension) {
    using namespace TestDocs;
    ziptest::Archive fill;
    fill.entries.push_back(ziptest::MakeEntry("mimetype", ziptest::Bytes("application/x-vnd.brimo.zcf.fill+zip")));
    ziptest::Archive drawing;
    drawing.entries.push_back(ziptest::MakeEntry("mimetype", ziptest::Bytes("application/x-vnd.brimo.zcf.plotra.document+zip")));
    ziptest::Archive plainZip;
    plainZip.entries.push_back(ziptest::MakeEntry("readme", ziptest::Bytes("hello")));
    auto text = [](const char* s) { return std::vector<uint8_t>(s, s + std::strlen(s)); };
    struct Case {
        std::string name;
        std::vector<uint8_t> bytes;
        std::optional<EFileFormat> expected;
    };
    const Case cases[] = {
        {"doc.bin", DrawingDocument(), FileFormatDrawing},
        {"meta.kvd", Metafile(), FileFormatMetafile},  // content wins over the extension
        {"jmv3.bin", text("JMV3\1\0\0\0"), FileFormatMetafile},
        {"old.bin", text("QPX7FILE"), FileFormatPaint},
        {"new.bin", text("PP11QPX9FILE"), FileFormatPaint},
        {"fill.zip", ziptest::Build(fill), FileFormatFill},
        {"drawing.zip", ziptest::Build(drawing), FileFormatDrawing},
        {"other.zip", ziptest::Build(plainZip), std::nullopt},
        {"other.KVT", ziptest::Build(plainZip), FileFormatDrawing},
        {"image.qpx", text("II*\0"), FileFormatPaint},
        {"a.fill", text(""), FileFormatFill},
        {"notes.txt", text("RIFX"), std::nullopt},
        {"noext", text(""), std::nullopt},
    };
    Scratch s;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        bool readable = false;
        EXPECT_EQ(fitool::DetectFormat(s.Write(c.name, c.bytes), &readable, nullptr), c.expected);
        EXPECT_TRUE(readable);
    }
    bool readable = true;
    EXPECT_FALSE(fitool::DetectFormat(s.Path("absent.kvd"), &readable, nullptr));
    EXPECT_FALSE(readable);
}

TEST(ToolHelpers, BmpHeaderPointsAtThePixels) {
    struct Case {
        uint16_t bitCount;
        uint32_t clrUsed;
        uint32_t compression;
        uint32_t expectedOffset;
    };
    const Case cases[] = {
        {1, 0, 0, 14 + 40 + 8},
        {8, 0, 0, 14 + 40 + 1024},
        {8, 16, 0, 14 + 40 + 64},
        {24, 0, 0, 14 + 40},
        {32, 0, 3, 14 + 40 + 12},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.bitCount);
        BITMAPINFOHEADER h{};
        h.biSize = 40;
        h.biWidth = 2;
        h.biHeight = 2;
        h.biPlanes = 1;
        h.biBitCount = c.bitCount;
        h.biCompression = c.compression;
        h.biClrUsed = c.clrUsed;
        std::vector<uint8_t> dib(2048);
        std::memcpy(dib.data(), &h, sizeof h);
        std::vector<uint8_t> bmp;
        ASSERT_TRUE(fitool::DibToBmpBytes(dib.data(), dib.size(), &bmp));
        BITMAPFILEHEADER fh;
        std::memcpy(&fh, bmp.data(), sizeof fh);
        uint16_t type = fh.bfType;  // copies: the header is packed
        uint32_t size = fh.bfSize, offset = fh.bfOffBits;
        EXPECT_EQ(type, 0x4D42);
        EXPECT_EQ(size, dib.size() + 14);
        EXPECT_EQ(offset, c.expectedOffset);
    }
    // A table that runs past the block, or a header larger than the block.
    BITMAPINFOHEADER h{};
    h.biSize = 40;
    h.biBitCount = 8;
    std::vector<uint8_t> shortDib(100);
    std::memcpy(shortDib.data(), &h, sizeof h);
    std::vector<uint8_t> bmp;
    EXPECT_FALSE(fitool::DibToBmpBytes(shortDib.data(), shortDib.size(), &bmp));
    EXPECT_FALSE(fitool::DibToBmpBytes(shortDib.data(), 20, &bmp));
}

}  // namespace
}  // namespace tooltest
