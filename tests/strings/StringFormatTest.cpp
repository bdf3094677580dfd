// Printing: the conversion letters of both widths, positional arguments,
// failures, and message notation through FormatMessage.
#include "StringTestSupport.h"

#include <cwchar>
#include <iterator>

#include "utils/strings/PrintfFormat.h"

using namespace StringTest;
using BrmPlatform::BrmStringA;
using BrmPlatform::BrmStringW;
using BrmPlatform::details::ToCLibraryFormat;

TEST(CLibraryFormat, WideFormatsSwapTheTextWidths) {
    const struct {
        const wchar_t *in, *out;
    } cases[] = {
        {L"%s", L"%ls"},           {L"%c", L"%lc"},           {L"%S", L"%s"},           {L"%C", L"%c"},
        {L"%ls|%hs", L"%ls|%s"},   {L"%lc|%hc", L"%lc|%c"},   {L"%-10.3s", L"%-10.3ls"}, {L"%2$s %1$S", L"%2$ls %1$s"},
        {L"%*s", L"%*ls"},         {L"%%s", L"%%s"},          {L"%d %5.2f %x", L"%d %5.2f %x"},
        {L"%I64d", L"%lld"},       {L"%I32u", L"%u"},         {L"%ws", L"%ls"},          {L"100%", L"100%"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ToCLibraryFormat(c.in), c.out) << c.in;
}

TEST(CLibraryFormat, NarrowFormatsNameWideTextWithL) {
    const struct {
        const char *in, *out;
    } cases[] = {
        {"%s", "%s"},   {"%c", "%c"},         {"%S", "%ls"},       {"%C", "%lc"},        {"%hs", "%s"},
        {"%ls", "%ls"}, {"%1$S-%2$s", "%1$ls-%2$s"}, {"%I64x", "%llx"}, {"%lld", "%lld"}, {"%%S", "%%S"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ToCLibraryFormat(c.in), c.out) << c.in;
}

TEST(StringFormat, EachWidthTakesArgumentsOfBothWidths) {
    BrmStringW s;
    s.Format(L"%s|%S|%c|%C|%d", L"wide", "narrow", L'w', 'n', 42);
    EXPECT_EQ(s.StdString(), L"wide|narrow|w|n|42");
    s.Format(L"%2$s-%1$s-%2$s", L"one", L"two");
    EXPECT_EQ(s.StdString(), L"two-one-two");
    s.Format(L"%3$-4d|%1$5.1f|%2$08X", 1.25, 0xBEEFu, 7);
    EXPECT_EQ(s.StdString(), L"7   |  1.2|0000BEEF");
    s.Format(L"[%s][%S]", BrmStringW(L"value"), BrmStringA("other"));  // string objects pass as their text
    EXPECT_EQ(s.StdString(), L"[value][other]");
    BrmStringA a;
    a.Format("%s|%S|%c|%C|%lld", "narrow", L"wide", 'n', L'w', LLONG_MIN);
    EXPECT_EQ(a.StdString(), "narrow|wide|n|w|-9223372036854775808");
    a.Format("%2$s%1$s", "b", "a");
    EXPECT_EQ(a.StdString(), "ab");
}

template <typename T>
class StringFormatBoth : public ::testing::Test {};
TYPED_TEST_SUITE(StringFormatBoth, Widths, WidthNames);

TYPED_TEST(StringFormatBoth, LongOutputAndAppend) {
    using T = TypeParam;
    const BrmStringT<T> big(T('x'), 5000);
    BrmStringT<T> s;
    s.Format(Lit<T>("<%s>").c_str(), big.GetString());
    EXPECT_EQ(s.GetLength(), 5002);
    EXPECT_EQ(s[5001], T('>'));
    s = Str<T>("n=");
    for (int i = 0; i < 3; ++i)
        s.AppendFormat(Lit<T>("%d,").c_str(), i);
    EXPECT_EQ(Ascii(s), "n=0,1,2,");
}

TYPED_TEST(StringFormatBoth, EmptyOrFailedOutput) {
    using T = TypeParam;
    BrmStringT<T> s = Str<T>("before");
    s.Format(Lit<T>("").c_str());
    EXPECT_TRUE(IsNil(s));
    s = Str<T>("before");
    s.AppendFormat(Lit<T>("%s").c_str(), Lit<T>("").c_str());
    EXPECT_EQ(Ascii(s), "before");
}

// Text with plain numbers is printed without the C library: the same as it.
TEST(StringFormat, WideNumbersPrintAsTheCLibraryPrintsThem) {
    const wchar_t* formats[] = {L"%d.%02d", L"%i|%u|%5d|%05d|%03d", L"%d%%%d", L"%.02f", L"%f", L"%.0f|%.15f"};
    const double reals[] = {0.005, -0.125, 2.5, 1e300, -0.0, 123456.789, 1.0 / 3};
    const int ints[] = {0, -5, 42, -2147483647 - 1, 99999};
    for (const wchar_t* format : formats) {
        for (size_t i = 0; i < std::size(reals); ++i) {
            const bool real = std::wcschr(format, L'f') != nullptr;
            const int a = ints[i % std::size(ints)], b = ints[(i + 2) % std::size(ints)];
            BrmStringW s;
            wchar_t expected[1024];
            if (real) {
                s.Format(format, reals[i], reals[i]);
                std::swprintf(expected, std::size(expected), format, reals[i], reals[i]);
            } else {
                s.Format(format, a, b, a, b, a);
                std::swprintf(expected, std::size(expected), format, a, b, a, b, a);
            }
            EXPECT_EQ(s.StdString(), expected) << format << " " << i;
        }
    }
}

TEST(StringFormat, WideTextTheNarrowPrintCannotConvertGivesAnEmptyString) {
    // The C library converts the other width with its own locale, which
    // knows only ASCII here; the print fails rather than writing garbage.
    BrmStringA s("keep");
    s.AppendFormat("%S", L"\u4e2d");
    EXPECT_EQ(s.StdString(), "keep");
    s.Format("%S", L"\u4e2d");
    EXPECT_TRUE(s.IsEmpty());
}

TEST(StringFormat, FormatMessageUsesMessageNotation) {
    BrmStringW s;
    s.FormatMessage(L"%2!d! of %1%n100%% done", L"pages", 3);
    EXPECT_EQ(s.StdString(), L"3 of pages\n100% done");
    BrmStringA a;
    a.FormatMessage("%1!04X!%t%2", 255, "end");
    EXPECT_EQ(a.StdString(), "00FF\tend");
}
