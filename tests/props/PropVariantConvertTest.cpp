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
