// The string and list conversions that readers' getters and setters use.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/OleAuto.h"
#include "utils/props/PropVariantConvert.h"

using BrmPlatform::BrmStringW;
using namespace BrmUtils;

namespace {

std::vector<std::wstring> Std(const std::vector<BrmStringW>& items) {
    std::vector<std::wstring> out;
    for (const BrmStringW& item : items) {
        out.push_back(item.StdString());
    }
    return out;
}

}  // namespace

TEST(PropVariantConvert, SplitList) {
    struct Case {
        const wchar_t* text;
        std::vector<std::wstring> items;
    };
    const Case cases[] = {
        {L"a, b;c", {L"a", L"b", L"c"}},
        {L" a ;\t\r\nb, ", {L"a", L"b"}},
        {L"two words; x", {L"two words", L"x"}},
        {L",,;", {}},
        {L" , ;", {}},
        {L"", {}},
        {nullptr, {}},
        {L"\u00a0a", {L"\u00a0a"}},  // only space, CR, LF and tab are trimmed
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Std(SplitList(c.text)), c.items);
    }
}

TEST(PropVariantConvert, ListsInBothForms) {
    const std::vector<BrmStringW> items = {L"red", L"green", L"blue"};
    PROPVARIANT v;
    ASSERT_EQ(ListToPropVariant(items, VT_LPWSTR, &v), S_OK);
    EXPECT_EQ(v.vt, VT_LPWSTR);
    EXPECT_STREQ(v.pwszVal, L"red; green; blue");
    PropVariantClear(&v);

    ASSERT_EQ(ListToPropVariant(items, VT_VECTOR | VT_LPWSTR, &v), S_OK);
    ASSERT_EQ(v.calpwstr.cElems, 3u);
    EXPECT_STREQ(v.calpwstr.pElems[1], L"green");
    PropVariantClear(&v);

    ASSERT_EQ(ListToPropVariant({}, VT_LPWSTR, &v), S_OK);
    EXPECT_STREQ(v.pwszVal, L"");
    PropVariantClear(&v);
    ASSERT_EQ(ListToPropVariant({}, VT_VECTOR | VT_LPWSTR, &v), S_OK);
    EXPECT_EQ(v.calpwstr.cElems, 0u);
    PropVariantClear(&v);

    for (VARTYPE vt : {VARTYPE(VT_BSTR), VARTYPE(VT_UI4), VARTYPE(VT_VECTOR | VT_BSTR), VARTYPE(VT_EMPTY)}) {
        v.vt = VT_I4;
        EXPECT_EQ(ListToPropVariant(items, vt, &v), E_INVALIDARG);
        EXPECT_EQ(v.vt, VT_EMPTY);
        EXPECT_EQ(SplitListToPropVariant(L"a,b", vt, &v), E_INVALIDARG);
    }
    ASSERT_EQ(SplitListToPropVariant(L"a ,b;; c", VT_LPWSTR, &v), S_OK);
    EXPECT_STREQ(v.pwszVal, L"a; b; c");
    PropVariantClear(&v);
}

TEST(PropVariantConvert, StringsFromAndToVariants) {
    PROPVARIANT v;
    ASSERT_EQ(StringToPropVariant(nullptr, &v), S_OK);
    EXPECT_STREQ(v.pwszVal, L"");
    PropVariantClear(&v);

    struct Case {
        PROPVARIANT value;
        bool ok;
        std::wstring text;
    };
    PROPVARIANT empty, wide, ansi, bstr, vector, number;
    PropVariantInit(&empty);
    StringToPropVariant(L"w\u00e9", &wide);
    PropVariantInit(&ansi);
    ansi.vt = VT_LPSTR;
    ansi.pszVal = const_cast<char*>("caf\xe9");  // the ANSI code page
    PropVariantInit(&bstr);
    bstr.vt = VT_BSTR;
    bstr.bstrVal = SysAllocStringLen(L"b", 1);
    ListToPropVariant({L"x", L"y"}, VT_VECTOR | VT_LPWSTR, &vector);
    PropVariantInit(&number);
    number.vt = VT_UI4;
    const Case cases[] = {
        {empty, true, L""}, {wide, true, L"w\u00e9"}, {ansi, true, L"caf\u00e9"},
        {bstr, true, L"b"}, {vector, true, L"x; y"},  {number, false, L""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.value.vt);
        BrmStringW text;
        EXPECT_EQ(PropVariantToString(c.value, text), c.ok);
        EXPECT_EQ(text.StdString(), c.text);
        std::vector<BrmStringW> items;
        EXPECT_EQ(PropVariantToList(c.value, items), c.ok);
    }
    std::vector<BrmStringW> items;
    ASSERT_TRUE(PropVariantToList(wide, items));
    EXPECT_EQ(items.size(), 1u);
    ASSERT_TRUE(PropVariantToList(vector, items));
    EXPECT_EQ(Std(items), (std::vector<std::wstring>{L"x", L"y"}));
    PropVariantClear(&wide);
    PropVariantClear(&bstr);
    PropVariantClear(&vector);
}
