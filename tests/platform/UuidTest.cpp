// Identifier creation and the strict text form.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "platform/Uuid.h"

namespace {

std::wstring Text(const GUID& g) {
    wchar_t* text = nullptr;
    EXPECT_EQ(UuidToStringW(&g, &text), RPC_S_OK);
    std::wstring out = text ? text : L"";
    RpcStringFreeW(&text);
    EXPECT_EQ(text, nullptr);
    return out;
}

TEST(Uuid, TextIsLowerCaseInWindowsFieldOrder) {
    const GUID g = {0x0C733A30, 0x2A1C, 0x11CE, {0xAD, 0xE5, 0x00, 0xAA, 0x00, 0x44, 0x77, 0x3D}};
    EXPECT_EQ(Text(g), L"0c733a30-2a1c-11ce-ade5-00aa0044773d");
    GUID back{};
    ASSERT_EQ(UuidFromStringW(L"0C733A30-2A1C-11CE-ADE5-00AA0044773D", &back), RPC_S_OK);
    EXPECT_EQ(back, g);
}

TEST(Uuid, CreatedIdentifiersAreVersion4AndDistinct) {
    std::set<std::wstring> seen;
    for (int i = 0; i < 200; ++i) {
        GUID g;
        ASSERT_EQ(UuidCreate(&g), RPC_S_OK);
        EXPECT_EQ(g.Data3 >> 12, 4);
        EXPECT_EQ(g.Data4[0] & 0xC0, 0x80);
        std::wstring text = Text(g);
        GUID back{};
        ASSERT_EQ(UuidFromStringW(text.c_str(), &back), RPC_S_OK);
        EXPECT_EQ(back, g);
        seen.insert(text);
    }
    EXPECT_EQ(seen.size(), 200u);
}

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
