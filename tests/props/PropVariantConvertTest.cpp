// The string and list conversions that readers' getters and setters use.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/OleAuto.h"
#include "tests/props/VariantText.h"
#include "utils/props/PropVariantConvert.h"

using BrmPlatform::BrmStringW;
using fitest::Owned;
using namespace BrmUtils;
using Strings = std::vector<std::wstring>;

namespace {

Strings Std(const std::vector<BrmStringW>& items) {
    Strings out;
    for (const BrmStringW& item : items) out.push_back(item.StdString());
    return out;
}

}  // namespace

TEST(PropVariantConvert, SplitList) {
    const struct { const wchar_t* text; Strings items; } cases[] = {
        {L"a, b;c", {L"a", L"b", L"c"}}, {L" a ;\t\r\nb, ", {L"a", L"b"}}, {L"two words; x", {L"two words", L"x"}},
        {L",,;", {}}, {L" , ;", {}}, {L"", {}}, {nullptr, {}},
        {L"\u00a0a", {L"\u00a0a"}},  // only space, CR, LF and tab are trimmed
    };
    for (const auto& c : cases) EXPECT_EQ(Std(SplitList(c.text)), c.items);
}

TEST(PropVariantConvert, ListsInBothForms) {
    const std::vector<BrmStringW> items = {L"red", L"green", L"blue"};
    Owned joined, vector, emptyJoined, emptyVector, split;
    ASSERT_EQ(ListToPropVariant(items, VT_LPWSTR, &joined.v), S_OK);
    EXPECT_EQ(joined.v.vt, VT_LPWSTR);
    EXPECT_STREQ(joined.v.pwszVal, L"red; green; blue");
    ASSERT_EQ(ListToPropVariant(items, VT_VECTOR | VT_LPWSTR, &vector.v), S_OK);
    ASSERT_EQ(vector.v.calpwstr.cElems, 3u);
    EXPECT_STREQ(vector.v.calpwstr.pElems[1], L"green");
    ASSERT_EQ(ListToPropVariant({}, VT_LPWSTR, &emptyJoined.v), S_OK);
    EXPECT_STREQ(emptyJoined.v.pwszVal, L"");
    ASSERT_EQ(ListToPropVariant({}, VT_VECTOR | VT_LPWSTR, &emptyVector.v), S_OK);
    EXPECT_EQ(emptyVector.v.calpwstr.cElems, 0u);
    ASSERT_EQ(SplitListToPropVariant(L"a ,b;; c", VT_LPWSTR, &split.v), S_OK);
    EXPECT_STREQ(split.v.pwszVal, L"a; b; c");
    for (VARTYPE vt : {VARTYPE(VT_BSTR), VARTYPE(VT_UI4), VARTYPE(VT_VECTOR | VT_BSTR), VARTYPE(VT_EMPTY)}) {
        PROPVARIANT v;
        v.vt = VT_I4;
        EXPECT_EQ(ListToPropVariant(items, vt, &v), E_INVALIDARG);
        EXPECT_EQ(v.vt, VT_EMPTY);
        EXPECT_EQ(SplitListToPropVariant(L"a,b", vt, &v), E_INVALIDARG);
    }
}

TEST(PropVariantConvert, StringsFromAndToVariants) {
    Owned none, empty, wide, ansi, bstr, vector, number;
    ASSERT_EQ(StringToPropVariant(nullptr, &none.v), S_OK);
    EXPECT_STREQ(none.v.pwszVal, L"");
    StringToPropVariant(L"w\u00e9", &wide.v);
    ansi.v.vt = VT_LPSTR;
    ansi.v.pszVal = static_cast<char*>(CoTaskMemAlloc(5));
    std::memcpy(ansi.v.pszVal, "caf\xe9", 5);  // the ANSI code page
    bstr.v.vt = VT_BSTR;
    bstr.v.bstrVal = SysAllocStringLen(L"b", 1);
    ListToPropVariant({L"x", L"y"}, VT_VECTOR | VT_LPWSTR, &vector.v);
    number.v.vt = VT_UI4;
    const struct { const PROPVARIANT& value; bool ok; std::wstring text; Strings items; } cases[] = {
        {empty.v, true, L"", {}},         {wide.v, true, L"w\u00e9", {L"w\u00e9"}},
        {ansi.v, true, L"caf\u00e9", {L"caf\u00e9"}}, {bstr.v, true, L"b", {L"b"}},
        {vector.v, true, L"x; y", {L"x", L"y"}}, {number.v, false, L"", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value.vt);
        BrmStringW text;
        EXPECT_EQ(PropVariantToString(c.value, text), c.ok);
        EXPECT_EQ(text.StdString(), c.text);
        std::vector<BrmStringW> items;
        EXPECT_EQ(PropVariantToList(c.value, items), c.ok);
        if (c.ok && c.value.vt != VT_EMPTY) {
            EXPECT_EQ(Std(items), c.items);
        }
    }
}
