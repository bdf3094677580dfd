// The C interface: status texts, properties handed out and freed, typed
// values turned into the property's type, and the arguments it refuses.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "fileinfo/Variants.h"
#include "fileinfo/fileinfo_c.h"
#include "tests/support/kvdzip/KvdZipWriter.h"
#include "tests/support/zip/ZipTestArchive.h"

namespace {

fi_value Value(fi_value_type type, int64_t i = 0, double f = 0, const char* s = nullptr,
               const fi_value* items = nullptr, size_t count = 0) {
    return fi_value{type, i, f, s, items, count};
}

TEST(CInterface, TypedValuesAndRefusals) {
    for (int s = FI_OK; s <= FI_ERR_INTERNAL + 1; ++s) EXPECT_STRNE(fi_status_text(fi_status(s)), "");
    EXPECT_EQ(fi_format_name(7), nullptr);
    const std::vector<uint8_t> bytes = kvdzip::Build(kvdzip::FullDocument(false));
    fi_document* d = nullptr;
    ASSERT_EQ(fi_open_memory(bytes.data(), bytes.size(), FI_FORMAT_DETECT, &d), FI_OK);
    for (size_t i = 0; i <= fi_property_count(d); ++i) {
        fi_property* p = nullptr;
        EXPECT_EQ(fi_property_at(d, i, &p), i < fi_property_count(d) ? FI_OK : FI_ERR_NOT_FOUND);
        fi_property_free(p);
    }
    const std::string open = std::string(kvdzip::kOpenFmtid) + "/7";
    const fi_value names[] = {Value(FI_VALUE_STRING, 0, 0, "Ann"), Value(FI_VALUE_STRING, 0, 0, "Bo")};
    const fi_value badItems[] = {Value(FI_VALUE_INT, 1)};
    const struct {
        const char* name;
        fi_value value;
        fi_status status;
    } cases[] = {
        {"System.Title", Value(FI_VALUE_STRING, 0, 0, "Typed"), FI_OK},
        {"System.Author", Value(FI_VALUE_LIST, 0, 0, nullptr, names, 2), FI_OK},
        {"System.Author", Value(FI_VALUE_LIST, 0, 0, nullptr, badItems, 1), FI_ERR_VALUE},
        {"System.Title", Value(FI_VALUE_LIST, 0, 0, nullptr, names, 2), FI_ERR_VALUE},
        {"System.Title", Value(FI_VALUE_DATETIME, 0), FI_ERR_VALUE},
        {"System.Title", Value(FI_VALUE_BYTES), FI_ERR_VALUE},
        {"System.Title", Value(FI_VALUE_STRING), FI_ERR_VALUE},
        {"System.Document.PageCount", Value(FI_VALUE_INT, 3), FI_ERR_READ_ONLY},
        {"System.NoSuchName", Value(FI_VALUE_INT, 3), FI_ERR_NOT_FOUND},
        {open.c_str(), Value(FI_VALUE_INT, 42), FI_OK},
        {open.c_str(), Value(FI_VALUE_BOOL, 1), FI_OK},
        {open.c_str(), Value(FI_VALUE_FLOAT, 0, 2.5), FI_OK},
        {open.c_str(), Value(FI_VALUE_DATETIME, 1700000000000000), FI_OK},
        {open.c_str(), Value(FI_VALUE_LIST, 0, 0, nullptr, names, 2), FI_OK},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(fi_set_value(d, c.name, &c.value), c.status) << c.name << " " << c.value.type;
        fi_property* p = nullptr;
        if (c.status == FI_OK && fi_property_get(d, c.name, &p) == FI_OK) {
            EXPECT_EQ(p->value.type, c.value.type) << c.name;
            fi_property_free(p);
        }
    }
    EXPECT_EQ(fi_set_text(d, "System.Title", nullptr), FI_ERR_ARGUMENT);
    fi_close(d);
}

// The text forms of values, both ways: what the tool and the bindings
// accept comes back in the same form, what does not fit is refused.
TEST(CInterface, ValueTextForms) {
    const struct {
        VARTYPE vt;
        const char* text;
        const char* back;  // null: refused
    } typed[] = {
        {VT_I2, "-5", "-5"}, {VT_UI2, "7", "7"}, {VT_I4, " -70000 ", "-70000"}, {VT_INT, "3", "3"},
        {VT_UI4, "70000", "70000"}, {VT_UINT, "4", "4"}, {VT_R8, "2.5", "2.5"}, {VT_R4, "0.5", "0.5"},
        {VT_BOOL, "true", "true"}, {VT_BOOL, "0", "false"}, {VT_LPWSTR, "x", "x"},
        {VT_VECTOR | VT_LPWSTR, " a, b;;c ", "a; b; c"}, {VT_VECTOR | VT_LPWSTR, ";", ""},
        {VT_I2, "40000", nullptr}, {VT_UI4, "-1", nullptr}, {VT_R8, "nan", nullptr}, {VT_R8, "1x", nullptr},
        {VT_BOOL, "maybe", nullptr}, {VT_I4, " ", nullptr}, {VT_CLSID, "x", nullptr},
    };
    for (const auto& c : typed) {
        fi::Variant v;
        ASSERT_EQ(fi::TextToVariant(c.text, c.vt, &v.pv), c.back != nullptr) << c.text;
        if (c.back) {
            EXPECT_EQ(fi::VariantToText(v.pv), c.back) << c.text;
        }
    }
    // Values only readers make; integers of every width share the union.
    const struct {
        VARTYPE vt;
        int64_t value;
        const char* text;
    } raw[] = {{VT_I1, -2, "-2"}, {VT_UI1, 200, "200"}, {VT_ERROR, 5, "5"}, {VT_I8, -(1LL << 40), "-1099511627776"},
               {VT_UI8, 1LL << 40, "1099511627776"}, {VT_FILETIME, 116444736000000000LL, "1970-01-01T00:00:00Z"},
               {VT_NULL, 0, ""}, {VT_STREAM, 0, ""}};
    for (const auto& c : raw) {
        PROPVARIANT v{};
        v.vt = c.vt;
        v.hVal.QuadPart = c.value;
        EXPECT_EQ(fi::VariantToText(v), c.text) << fi::VtName(c.vt);
    }
    LONG longs[] = {1, -2};
    DOUBLE doubles[] = {0.5, std::numeric_limits<double>::infinity()};
    char narrow[] = "caf\xE9";
    LPSTR narrows[] = {narrow};
    PROPVARIANT v{};
    v.vt = VT_VECTOR | VT_I4, v.cal = {2, longs};
    EXPECT_EQ(fi::VariantToText(v), "1; -2");
    v.vt = VT_VECTOR | VT_R8, v.cadbl = {2, doubles};
    EXPECT_EQ(fi::VariantToText(v), "0.5; ");  // what is no finite number is null
    v.vt = VT_VECTOR | VT_LPSTR, v.calpstr = {1, narrows};
    EXPECT_EQ(fi::VariantToText(v), "caf\xC3\xA9");  // narrow text is Latin-1
    EXPECT_EQ(fi::VtName(VT_VECTOR | VT_ARRAY | VT_BYREF | 0x77), "VT_VECTOR|VT_ARRAY|VT_BYREF|VT_0x0077");
}

// A document on a path: JSON, text, thumbnail, a commit, and the scan line
// of it and of files that cannot be read.
TEST(CInterface, DocumentOnAPath) {
    ziptest::TempDir dir;
    const std::string path = dir / "doc.kvd", other = dir / "notes.txt";
    ziptest::WriteFile(path, kvdzip::Build(kvdzip::FullDocument(false)));
    ziptest::WriteFile(other, ziptest::Bytes("plain text"));
    fi_document* d = nullptr;
    EXPECT_EQ(fi_open_path((dir / "missing").c_str(), FI_FORMAT_DETECT, &d), FI_ERR_UNREADABLE);
    EXPECT_EQ(fi_open_path(other.c_str(), FI_FORMAT_DETECT, &d), FI_ERR_UNSUPPORTED);
    ASSERT_EQ(fi_open_path(path.c_str(), FI_FORMAT_DETECT, &d), FI_OK);
    EXPECT_STREQ(fi_format_name(fi_document_format(d)), "drawing");
    char* json = nullptr;
    ASSERT_EQ(fi_props_json(d, "doc.kvd", &json), FI_OK);
    EXPECT_NE(std::string(json).find("Garden plan"), std::string::npos) << json;
    fi_free(json);
    fi_text_chunk* chunks = nullptr;
    size_t count = 0;
    ASSERT_EQ(fi_text(d, &chunks, &count), FI_OK);
    ASSERT_EQ(count, 5u);
    EXPECT_STREQ(chunks[0].text, "Garden plan");
    fi_text_free(chunks, count);
    for (int page : {-1, 1, 9}) {
        unsigned char* png = nullptr;
        size_t length = 0;
        EXPECT_EQ(fi_thumbnail_png(d, 64, page, &png, &length), page == 9 ? FI_ERR_NOT_FOUND : FI_OK) << page;
        EXPECT_EQ(length > 8 && png[1] == 'P', page != 9);
        fi_free(png);
    }
    EXPECT_EQ(fi_set_text(d, "System.Title", "Committed"), FI_OK);
    EXPECT_EQ(fi_commit(d), FI_OK);
    fi_close(d);
    for (const std::string& file : {path, other, dir / "missing"}) {
        fi_status status = fi_scan_json(file.c_str(), FI_FORMAT_DETECT, &json);
        EXPECT_EQ(status, file == path ? FI_OK : file == other ? FI_ERR_UNSUPPORTED : FI_ERR_UNREADABLE) << file;
        EXPECT_EQ(json && std::string(json).find("Committed") != std::string::npos, file == path);
        fi_free(json);
        json = nullptr;
    }
    ASSERT_EQ(fi_scan_json((dir / "missing").c_str(), FI_FORMAT_DRAWING, &json), FI_OK);  // an error line
    EXPECT_NE(std::string(json).find("\"error\""), std::string::npos) << json;
    fi_free(json);
}

}  // namespace
