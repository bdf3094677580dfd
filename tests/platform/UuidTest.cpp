// Identifier creation and the strict text form.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "platform/Uuid.h"

namespace {

TEST(Uuid, MalformedTextIsRefused) {
    const wchar_t* bad[] = {
        L"",
        L"{0c733a30-2a1c-11ce-ade5-00aa0044773d}",  // braces belong to the callers
        L"0c733a30-2a1c-11ce-ade5-00aa0044773",     // short
        L"0c733a30-2a1c-11ce-ade5-00aa0044773d0",   // long
        L"0c733a30-2a1c-11ce-ade500aa0044773d",     // hyphen missing
        L"0c733a30_2a1c-11ce-ade5-00aa0044773d",    // wrong separator
        L"0c733a3g-2a1c-11ce-ade5-00aa0044773d",    // not hex
        L" 0c733a30-2a1c-11ce-ade5-00aa0044773d",   // space
        L"0c733a30-2a1c-11ce-ade5-00aa0044773\uFF44",  // full-width letter
    };
    for (const wchar_t* text : bad) {
        GUID g = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
        EXPECT_EQ(UuidFromStringW(text, &g), RPC_S_INVALID_STRING_UUID) << std::wstring(text).size();
    }
    GUID nil = {1, 2, 3, {}};
    EXPECT_EQ(UuidFromStringW(nullptr, &nil), RPC_S_OK);
    EXPECT_EQ(nil, GUID_NULL);
}

}  // namespace
