// The extension and media type table: its fixed rows, its order and the
// lookups in both directions.
#include <gtest/gtest.h>

#include <string>

#include "utils/MimeTypes.h"

namespace {

using namespace BrmUtils;

std::wstring OrNone(const wchar_t* text) { return text ? text : L"<none>"; }

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
