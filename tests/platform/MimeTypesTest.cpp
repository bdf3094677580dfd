// The extension and media type table: its fixed rows, its order and the
// lookups in both directions.
#include <gtest/gtest.h>

#include <cwctype>
#include <set>
#include <string>

#include "utils/MimeTypes.h"

namespace {

using namespace BrmUtils;

TEST(MimeTypes, FixedRows) {
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L".txt", L"text/plain"},
        {L".%", L"application/x-trash"},
        {L".dae", L"model/vnd.collada+xml"},
        {L".dat", L"application/x-ns-proxy-autoconfig"},
        {L".jpeg", L"image/jpeg"},
        {L".pdf", L"application/pdf"},
        {L".tiff", L"image/tiff"},
        {L".xml", L"application/xml"},
        {L".zip", L"application/zip"},
        {L".kvd", L"application/x-vnd.brimo.zcf.plotra.document+zip"},
        {L".kvt", L"application/x-vnd.brimo.zcf.plotra.template+zip"},
        {L".pat", L"application/x-vnd.brimo.zcf.pattern+zip"},
        {L".~", L"application/x-trash"},
        {L".zmt", L"chemical/x-mopac-input"},
    };
    for (const auto& [ext, type] : rows) {
        const wchar_t* found = MimeTypeFromExtension(ext);
        ASSERT_NE(found, nullptr) << std::wstring(ext).size();
        EXPECT_STREQ(found, type);
    }
}

TEST(MimeTypes, TableShape) {
    auto rows = MimeTypeRows();
    ASSERT_GE(rows.size(), 900u);
    EXPECT_STREQ(rows[0].extension, L".txt");
    EXPECT_STREQ(rows[1].extension, L".%");
    EXPECT_STREQ(rows[2].extension, L".~");
    EXPECT_STREQ(rows.back().extension, L".zmt");
    std::set<std::wstring> seen;
    for (const auto& row : rows) {
        std::wstring ext = row.extension;
        EXPECT_EQ(ext[0], L'.');
        EXPECT_TRUE(seen.insert(ext).second) << "twice: " << std::string(ext.begin(), ext.end());
        std::wstring type = row.mimeType;
        EXPECT_NE(type.find(L'/'), std::wstring::npos);
        for (wchar_t c : ext) EXPECT_FALSE(std::iswupper(wint_t(c)));  // types keep their registered case
    }
}

TEST(MimeTypes, ExtensionLookupForms) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"pdf", L"application/pdf"},   {L".PDF", L"application/pdf"}, {L"KvD", L"application/x-vnd.brimo.zcf.plotra.document+zip"},
        {L".nosuch", nullptr},          {L"", nullptr},                {L".", nullptr},
        {L"pd", nullptr},               {L"pdff", nullptr},            {L"..pdf", nullptr},
    };
    for (const auto& [ext, type] : cases) {
        const wchar_t* found = MimeTypeFromExtension(ext);
        if (type) {
            ASSERT_NE(found, nullptr);
            EXPECT_STREQ(found, type);
        } else {
            EXPECT_EQ(found, nullptr);
        }
    }
    EXPECT_EQ(MimeTypeFromExtension(nullptr), nullptr);
}

TEST(MimeTypes, TypeLookupGivesTheFirstRow) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"text/plain", L".txt"},  // the default row, before any later one
        {L"application/x-trash", L".%"},
        {L"IMAGE/JPEG", L".jpe"},
        {L" application/pdf ; charset=binary", L".pdf"},
        {L"application/x-vnd.brimo.zcf.pattern+zip", L".pat"},
        {L"application/x-unknown-type", nullptr},
        {L"", nullptr},
        {L"application/pd", nullptr},
    };
    for (const auto& [type, ext] : cases) {
        const wchar_t* found = ExtensionFromMimeType(type);
        if (ext) {
            ASSERT_NE(found, nullptr);
            EXPECT_STREQ(found, ext);
        } else {
            EXPECT_EQ(found, nullptr);
        }
    }
    // Every row's type leads back to a row with that type.
    for (const auto& row : MimeTypeRows()) {
        const wchar_t* ext = ExtensionFromMimeType(row.mimeType);
        ASSERT_NE(ext, nullptr);
        EXPECT_STREQ(MimeTypeFromExtension(ext), row.mimeType);
    }
}

}  // namespace
