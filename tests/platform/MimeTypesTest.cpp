// The extension and media type table: its fixed rows, its order and the
// lookups in both directions.
#include <gtest/gtest.h>

#include <cwctype>
#include <set>
#include <string>

#include "utils/MimeTypes.h"

namespace {

using namespace BrmUtils;

std::wstring OrNone(const wchar_t* text) { return text ? text : L"<none>"; }

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

// Fixed rows, and the forms an extension may be asked in.
TEST(MimeTypes, ExtensionLookup) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L".txt", L"text/plain"}, {L".%", L"application/x-trash"}, {L".dae", L"model/vnd.collada+xml"},
        {L".dat", L"application/x-ns-proxy-autoconfig"}, {L".jpeg", L"image/jpeg"}, {L".tiff", L"image/tiff"},
        {L".xml", L"application/xml"}, {L".zip", L"application/zip"},
        {L".kvt", L"application/x-vnd.brimo.zcf.plotra.template+zip"},
        {L".pat", L"application/x-vnd.brimo.zcf.pattern+zip"}, {L".~", L"application/x-trash"},
        {L".zmt", L"chemical/x-mopac-input"},
        {L"pdf", L"application/pdf"},   {L".PDF", L"application/pdf"}, {L"KvD", L"application/x-vnd.brimo.zcf.plotra.document+zip"},
        {L".nosuch", nullptr},          {L"", nullptr},                {L".", nullptr},
        {L"pd", nullptr},               {L"pdff", nullptr},            {L"..pdf", nullptr},
    };
    for (const auto& [ext, type] : cases) EXPECT_EQ(OrNone(MimeTypeFromExtension(ext)), OrNone(type)) << ext;
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
    for (const auto& [type, ext] : cases) EXPECT_EQ(OrNone(ExtensionFromMimeType(type)), OrNone(ext)) << type;
    // Every row's type leads back to a row with that type.
    for (const auto& row : MimeTypeRows()) {
        const wchar_t* ext = ExtensionFromMimeType(row.mimeType);
        ASSERT_NE(ext, nullptr);
        EXPECT_STREQ(MimeTypeFromExtension(ext), row.mimeType);
    }
}

}  // namespace
