// Comparison, search, cutting, tokens, trimming and replacing; the string and
// the view must answer alike.
#include "StringTestSupport.h"

using namespace StringTest;
using BrmPlatform::CompareCase;

namespace {
constexpr CompareCase kExact = CompareCase::Exact;
constexpr CompareCase kNoCase = CompareCase::IgnoreCase;
}  // namespace

template <typename T>
class StringSearch : public ::testing::Test {};
TYPED_TEST_SUITE(StringSearch, Widths, WidthNames);

TYPED_TEST(StringSearch, CollateGoesByCharacterCodes) {
    using T = TypeParam;
    const struct {
        const char *a, *b;
        int exact, noCase;
    } cases[] = {
        {"a", "B", 1, -1}, {"B", "a", -1, 1}, {"abc", "abc", 0, 0}, {"ab", "abc", -1, -1}, {"x", "", 1, 1}, {"Q", "q", -1, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Str<T>(c.a).Collate(Lit<T>(c.b).c_str()), c.exact) << c.a << " vs " << c.b;
        EXPECT_EQ(Str<T>(c.a).CollateNoCase(Lit<T>(c.b).c_str()), c.noCase) << c.a << " vs " << c.b;
    }
    EXPECT_EQ(Str<T>("").Collate(nullptr), 0);
}

TYPED_TEST(StringSearch, FindCharacterAndOneOf) {
    using T = TypeParam;
    const BrmStringT<T> s = Str<T>("a.b,c.D");
    const struct {
        char ch;
        int start;
        CompareCase cc;
        int expected;
    } chars[] = {{'.', 0, kExact, 1}, {'.', 2, kExact, 5}, {'.', 6, kExact, -1}, {'.', 7, kExact, -1},
                 {'.', -1, kExact, -1}, {'d', 0, kExact, -1}, {'d', 0, kNoCase, 6}};
    for (const auto& c : chars)
        EXPECT_EQ(s.Find(T(c.ch), c.start, c.cc), c.expected) << c.ch << " @" << c.start;

    const struct {
        const char* set;
        int start;
        int expected;
    } sets[] = {{",.", 0, 1}, {",.", 2, 3}, {",.", -4, 1}, {",.", 7, -1}, {"", 0, -1}, {"xyz", 0, -1}};
    for (const auto& c : sets)
        EXPECT_EQ(s.FindOneOf(Str<T>(c.set), c.start), c.expected) << c.set << " @" << c.start;
    EXPECT_EQ(s.FindOneOf(Str<T>("d")), -1);
    EXPECT_EQ(s.FindOneOf(Str<T>("d"), kNoCase), 6);
}

TYPED_TEST(StringSearch, ReverseFind) {
    using T = TypeParam;
    const BrmStringT<T> s = Str<T>("a/b/c");
    const struct {
        char ch;
        int start;
        int expected;
    } cases[] = {{'/', -1, 3}, {'/', 2, 1}, {'/', 0, -1}, {'a', 0, 0}, {'/', 99, 3}, {'x', -1, -1}};
    for (const auto& c : cases)
        EXPECT_EQ(s.ReverseFind(T(c.ch), c.start), c.expected) << c.ch << " @" << c.start;
    EXPECT_EQ(s.ReverseFind(T('/')), 3);
    EXPECT_EQ(BrmStringT<T>().ReverseFind(T('/')), -1);
    EXPECT_EQ(s.ReverseFind(T('A'), kNoCase), 0);
}

TYPED_TEST(StringSearch, PrefixesAndSuffixes) {
    using T = TypeParam;
    const struct {
        const char *text, *affix;
        CompareCase cc;
        bool starts, ends;
        const char *afterRemoveLeft, *afterRemoveRight;
    } cases[] = {
        {"file.txt", "file", kExact, true, false, ".txt", "file.txt"},
        {"file.txt", ".TXT", kNoCase, false, true, "file.txt", "file"},
        {"file.txt", "", kExact, true, true, "file.txt", "file.txt"}, {"ab", "abc", kExact, false, false, "ab", "ab"},
        {"abab", "ab", kExact, true, true, "ab", "ab"},
    };
    for (const auto& c : cases) {
        const BrmStringT<T> s = Str<T>(c.text);
        EXPECT_EQ(s.StartsWith(Str<T>(c.affix), c.cc), c.starts) << c.text << " / " << c.affix;
        EXPECT_EQ(s.EndsWith(Str<T>(c.affix), c.cc), c.ends) << c.text << " / " << c.affix;
        BrmStringT<T> left = s, right = s;
        EXPECT_EQ(left.RemoveLeft(Str<T>(c.affix), c.cc), c.starts);
        EXPECT_EQ(right.RemoveRight(Str<T>(c.affix), c.cc), c.ends);
        EXPECT_EQ(Ascii(left), c.afterRemoveLeft);
        EXPECT_EQ(Ascii(right), c.afterRemoveRight);
        BrmStringViewT<T> view = s;
        EXPECT_EQ(view.RemoveLeft(Str<T>(c.affix), c.cc), c.starts);
        EXPECT_EQ(Ascii(view), c.afterRemoveLeft);
    }
}

TYPED_TEST(StringSearch, Spans) {
    using T = TypeParam;
    const struct {
        const char *text, *set;
        CompareCase cc;
        const char *including, *excluding;
    } cases[] = {
        {"123abc", "0123456789", kExact, "123", ""}, {"abc123", "0123456789", kExact, "", "abc"},
        {"aAb", "a", kExact, "a", ""},               {"aAb", "a", kNoCase, "aA", ""},
        {"abc", "", kExact, "", ""},                 {"", "abc", kExact, "", ""},
    };
    for (const auto& c : cases) {
        const BrmStringT<T> s = Str<T>(c.text);
        EXPECT_EQ(Ascii(s.SpanIncluding(Str<T>(c.set), c.cc)), c.including) << c.text << " / " << c.set;
        EXPECT_EQ(Ascii(s.SpanExcluding(Str<T>(c.set), c.cc)), c.excluding) << c.text << " / " << c.set;
    }
    const std::basic_string<T> text = Lit<T>("abc");
    EXPECT_EQ(BrmStringViewT<T>(text).SpanIncluding(BrmStringViewT<T>()).GetString(), nullptr);
    EXPECT_TRUE(IsNil(Str<T>("abc").SpanExcluding(BrmStringT<T>())));
}

TYPED_TEST(StringSearch, TrimRemovesExactlyTheFourWhiteSpaceCharacters) {
    using T = TypeParam;
    const struct {
        const char* text;
        const char *both, *left, *right;
    } cases[] = {
        {" \r\n\tx y\t\n\r ", "x y", "x y\t\n\r ", " \r\n\tx y"},
        {"\v\fx\v\f", "\v\fx\v\f", "\v\fx\v\f", "\v\fx\v\f"}, {"    ", "", "", ""}, {"", "", "", ""},
    };
    for (const auto& c : cases) {
        BrmStringT<T> both = Str<T>(c.text), left = both, right = both;
        EXPECT_EQ(Ascii(both.Trim()), c.both) << c.text;
        EXPECT_EQ(Ascii(left.TrimLeft()), c.left) << c.text;
        EXPECT_EQ(Ascii(right.TrimRight()), c.right) << c.text;
        const BrmStringT<T> keep = Str<T>(c.text);
        BrmStringViewT<T> view = keep;
        EXPECT_EQ(Ascii(view.Trim()), c.both) << c.text;
    }
    BrmStringT<T> s = Str<T>("xXaXx");
    EXPECT_EQ(Ascii(s.Trim(T('x'))), "XaX");
    s = Str<T>("xXaXx");
    EXPECT_EQ(Ascii(s.Trim(T('x'), kNoCase)), "a");
    s = Str<T>("-+a+-");
    EXPECT_EQ(Ascii(s.TrimLeft(Str<T>("+-"))), "a+-");
    EXPECT_EQ(Ascii(s.TrimRight(Str<T>("+-"))), "a");
}

TYPED_TEST(StringSearch, FindTextBounds) {
    using T = TypeParam;
    const struct {
        const char *text, *needle;
        int start;
        CompareCase cc;
        int expected;
    } cases[] = {
        {"abcabc", "", 0, kExact, 0},     {"abcabc", "", -7, kExact, 0},   {"abcabc", "", 99, kExact, 0},
        {"abcabc", "bc", 0, kExact, 1},   {"abcabc", "bc", 2, kExact, 4},  {"abcabc", "bc", 4, kExact, 4},
        {"abcabc", "bc", 5, kExact, -1},  {"abcabc", "bc", -1, kExact, -1}, {"abcabc", "abcabcx", 0, kExact, -1},
        {"abcabc", "BC", 0, kExact, -1},  {"abcabc", "BC", 0, kNoCase, 1}, {"aBcAbC", "abc", 1, kNoCase, 3},
        {"abc", "c", 2, kExact, 2},       {"", "a", 0, kExact, -1},        {"aaa", "aa", 1, kExact, 1},
    };
    for (const auto& c : cases) {
        const BrmStringT<T> s = Str<T>(c.text);
        EXPECT_EQ(s.Find(Str<T>(c.needle), c.start, c.cc), c.expected) << c.text << " / " << c.needle << " @" << c.start;
        EXPECT_EQ(BrmStringViewT<T>(s).Find(Str<T>(c.needle), c.start, c.cc), c.expected) << c.text;
    }
    EXPECT_TRUE(Str<T>("Hello").Contains(Str<T>("LL"), kNoCase));
    EXPECT_FALSE(Str<T>("Hello").Contains(Str<T>("LL")));
}

TYPED_TEST(StringSearch, CuttingClampsItsArguments) {
    using T = TypeParam;
    const BrmStringT<T> s = Str<T>("abcdef");
    const BrmStringViewT<T> v = s;
    const struct {
        const char* what;
        BrmStringT<T> string;
        BrmStringViewT<T> view;
        const char* expected;
    } cases[] = {
        {"Left(2)", s.Left(2), v.Left(2), "ab"},         {"Left(-1)", s.Left(-1), v.Left(-1), ""},
        {"Right(2)", s.Right(2), v.Right(2), "ef"},      {"Right(-2)", s.Right(-2), v.Right(-2), ""},
        {"Mid(2)", s.Mid(2), v.Mid(2), "cdef"},          {"Mid(-3)", s.Mid(-3), v.Mid(-3), "abcdef"},
        {"Mid(2,2)", s.Mid(2, 2), v.Mid(2, 2), "cd"},    {"Mid(4,99)", s.Mid(4, 99), v.Mid(4, 99), "ef"},
        {"Mid(9,1)", s.Mid(9, 1), v.Mid(9, 1), ""},      {"Mid(1,-1)", s.Mid(1, -1), v.Mid(1, -1), ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Ascii(c.string), c.expected) << c.what;
        EXPECT_EQ(Ascii(c.view), c.expected) << c.what;
    }
    // A view's Mid beyond the length is an empty view at the text's end.
    EXPECT_EQ(v.Mid(9).GetString(), s.GetString() + 6);
}

TYPED_TEST(StringSearch, TokenizeSkipsEmptyTokens) {
    using T = TypeParam;
    const struct {
        const char *text, *delims;
        int start;
        const char* expected;  // each token with pos after it, then the final pos
    } cases[] = {
        {",,a,,b,", ",", 0, "a@4|b@7|end@-1"}, {"a b\tc", " \t", 0, "a@2|b@4|c@6|end@-1"},
        {"abc", ",", 0, "abc@4|end@-1"}, {",,,", ",", 0, "end@-1"}, {"", ",", 0, "end@-1"},
        {"a,b", ",", -2, "end@-1"}, {"a,b", ",", 7, "end@-1"}, {"a,b,c", ",", 2, "b@4|c@6|end@-1"},
        {"aXbxc", "x", 0, "aXb@4|c@6|end@-1"},
    };
    for (const auto& c : cases) {
        const BrmStringT<T> s = Str<T>(c.text);
        const BrmStringViewT<T> v = s;
        std::string stringTokens, viewTokens;
        int pos = c.start, viewPos = c.start;
        for (int guard = 0; guard < 10; ++guard) {
            const BrmStringT<T> token = s.Tokenize(Str<T>(c.delims), pos);
            const BrmStringViewT<T> viewToken = v.Tokenize(Str<T>(c.delims), viewPos);
            if (pos < 0) {
                EXPECT_TRUE(IsNil(token)) << c.text;
                EXPECT_EQ(viewToken.GetString(), nullptr) << c.text;
                break;
            }
            stringTokens += Ascii(token) + "@" + std::to_string(pos) + "|";
            viewTokens += Ascii(viewToken) + "@" + std::to_string(viewPos) + "|";
        }
        stringTokens += "end@" + std::to_string(pos);
        viewTokens += "end@" + std::to_string(viewPos);
        EXPECT_EQ(stringTokens, c.expected) << c.text;
        EXPECT_EQ(viewTokens, c.expected) << c.text;
    }
}
