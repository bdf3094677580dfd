// Width conversion, VARIANT, BSTR and the standard library bridges.
#include "StringTestSupport.h"

#include "platform/OleAuto.h"

using namespace StringTest;
using BrmPlatform::BrmStringA;
using BrmPlatform::BrmStringViewW;
using BrmPlatform::BrmStringW;

TEST(StringConversion, VariantValuesBecomeText) {
    VARIANT number;
    VariantInit(&number);
    number.vt = VT_I4;
    number.lVal = -42;
    EXPECT_EQ(BrmStringW(number).StdString(), L"-42");
    EXPECT_EQ(BrmStringA(number).StdString(), "-42");

    BrmStringW appended(L"n=");
    appended += number;
    EXPECT_EQ(appended.StdString(), L"n=-42");

    VARIANT text;
    VariantInit(&text);
    text.vt = VT_BSTR;
    text.bstrVal = SysAllocString(L"from bstr");
    BrmStringW assigned;
    assigned = text;
    EXPECT_EQ(assigned.StdString(), L"from bstr");
    VariantClear(&text);
    // A value that cannot become text gives empty, or leaves the target alone.
    VARIANT unknown;
    VariantInit(&unknown);
    unknown.vt = VT_UNKNOWN;
    EXPECT_TRUE(BrmStringW(unknown).IsEmpty());
    BrmStringW kept(L"kept");
    kept = unknown;
    kept += unknown;
    EXPECT_EQ(kept.StdString(), L"kept");
}

TEST(StringConversion, SysStrings) {
    const BrmStringW wide(L"text\0with zero", 14);
    BSTR b = wide.AllocSysString();
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(SysStringLen(b), 14u);
    EXPECT_EQ(std::wstring(b, 14), std::wstring(L"text\0with zero", 14));
    BrmStringA("narrow \xE9").SetSysString(&b);
    EXPECT_EQ(std::wstring(b, SysStringLen(b)), L"narrow \u00e9");
    SysFreeString(b);
}

TEST(StringConversion, ViewTruncateNeverLengthens) {
    const wchar_t text[] = L"abcdef";
    BrmStringViewW v(text, 3);
    v.Truncate(5);
    EXPECT_EQ(v.GetLength(), 3);
    v.Truncate(1);
    EXPECT_EQ(v.StdString(), L"a");
    v.Empty();
    EXPECT_EQ(v.GetString(), nullptr);
    EXPECT_EQ(v.Compare(L""), 0);
    EXPECT_EQ(v.Find(L'a'), -1);
    EXPECT_EQ(BrmStringViewW(nullptr, 5).GetLength(), 0);
    EXPECT_TRUE(BrmStringW(BrmStringViewW(nullptr, 5)).IsEmpty());
}
