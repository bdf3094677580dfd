// Blocks, sharing, copy on write, growth and the buffer family.
#include "StringTestSupport.h"

using namespace StringTest;

template <typename T>
class StringBlock : public ::testing::Test {};
TYPED_TEST_SUITE(StringBlock, Widths, WidthNames);

TYPED_TEST(StringBlock, BufferFamily) {
    using T = TypeParam;
    BrmStringT<T> s;
    T* p = s.GetBuffer(8);
    EXPECT_GE(s.GetAllocLength(), 8);
    const std::basic_string<T> text = Lit<T>("abc");
    std::copy(text.begin(), text.end(), p);
    p[3] = 0;
    s.ReleaseBuffer(-1);
    EXPECT_EQ(Ascii(s), "abc");

    // Without a zero the scan stops at the allocation.
    p = s.GetBufferSetLength(4);
    EXPECT_EQ(s.GetLength(), 4);
    const int alloc = s.GetAllocLength();
    for (int i = 0; i < alloc; ++i)
        p[i] = T('z');
    s.ReleaseBuffer();
    EXPECT_EQ(s.GetLength(), alloc);

    s.ReleaseBufferSetLength(2);
    EXPECT_EQ(Ascii(s), "zz");
    EXPECT_EQ(s.GetString()[2], T(0));

    s.FreeExtra();
    EXPECT_EQ(s.GetAllocLength(), 2);
    s.Empty();
    EXPECT_TRUE(IsNil(s));
}

TYPED_TEST(StringBlock, SelfReferencingEditsReadTheOldText) {
    using T = TypeParam;
    BrmStringT<T> s = Str<T>("abc");
    s.Append(s);
    EXPECT_EQ(Ascii(s), "abcabc");
    s.Append(s.GetString() + 1, 2);
    EXPECT_EQ(Ascii(s), "abcabcbc");
    s.Insert(1, BrmStringViewT<T>(s.GetString(), 3));
    EXPECT_EQ(Ascii(s), "aabcbcabcbc");
    s.SetString(s.GetString() + 8);
    EXPECT_EQ(Ascii(s), "cbc");
    s.Replace(BrmStringViewT<T>(s.GetString(), 1), BrmStringViewT<T>(s.GetString(), 3));
    EXPECT_EQ(Ascii(s), "cbcbcbc");
    s.Format(Lit<T>("%s-%s").c_str(), s.GetString(), s.GetString());
    EXPECT_EQ(Ascii(s), "cbcbcbc-cbcbcbc");
}

TYPED_TEST(StringBlock, ConcatenationInAllMixes) {
    using T = TypeParam;
    const BrmStringT<T> s = Str<T>("mid");
    const std::basic_string<T> left = Lit<T>("<"), right = Lit<T>(">");
    EXPECT_EQ(Ascii(left.c_str() + s + right.c_str()), "<mid>");
    EXPECT_EQ(Ascii(T('[') + s + T(']')), "[mid]");
    EXPECT_EQ(Ascii(s + s), "midmid");
    EXPECT_EQ(Ascii(s + BrmStringViewT<T>(right.c_str())), "mid>");
    EXPECT_TRUE(IsNil(BrmStringT<T>() + BrmStringT<T>()));
    BrmStringT<T> assigned;
    EXPECT_EQ(Ascii(assigned = BrmStringViewT<T>(right.c_str())), ">");
    EXPECT_EQ(Ascii(assigned = T('x')), "x");
    EXPECT_EQ(Ascii(assigned = left), "<");
}

TYPED_TEST(StringBlock, StringsServeAsMapKeys) {
    using T = TypeParam;
    std::map<BrmStringT<T>, int> ordered;
    std::unordered_map<BrmStringT<T>, int> hashed;
    for (const char* key : {"b", "a", "ab", "a"}) {
        ++ordered[Str<T>(key)];
        ++hashed[Str<T>(key)];
    }
    std::string order;
    for (const auto& [key, count] : ordered)
        order += Ascii(key) + "=" + std::to_string(count) + " ";
    EXPECT_EQ(order, "a=2 ab=1 b=1 ");
    EXPECT_EQ(hashed.size(), 3u);
    EXPECT_EQ(hashed[Str<T>("a")], 2);
    EXPECT_TRUE(Str<T>("x") == Lit<T>("x").c_str());
    EXPECT_TRUE(Str<T>("x") != Str<T>("y"));
}

TYPED_TEST(StringBlock, EveryMutationLeavesTheOtherOwnerAlone) {
    using T = TypeParam;
    using S = BrmStringT<T>;
    const struct {
        const char* name;
        void (*edit)(S&);
        const char* expected;
    } cases[] = {
        {"Append", [](S& s) { s += Str<T>("!"); }, "Hello World!"},
        {"AppendChar", [](S& s) { s.AppendChar(T('?')); }, "Hello World?"},
        {"Insert", [](S& s) { s.Insert(5, Str<T>(",")); }, "Hello, World"},
        {"Delete", [](S& s) { s.Delete(0, 6); }, "World"},
        {"Replace", [](S& s) { s.Replace(Str<T>("o"), Str<T>("0")); }, "Hell0 W0rld"},
        {"ReplaceChar", [](S& s) { s.Replace(T('l'), T('L')); }, "HeLLo WorLd"},
        {"Remove", [](S& s) { s.Remove(T('l')); }, "Heo Word"},
        {"MakeUpper", [](S& s) { s.MakeUpper(); }, "HELLO WORLD"},
        {"MakeLower", [](S& s) { s.MakeLower(); }, "hello world"},
        {"MakeReverse", [](S& s) { s.MakeReverse(); }, "dlroW olleH"},
        {"TrimChar", [](S& s) { s.Trim(T('H')); }, "ello World"},
        {"TrimNothing", [](S& s) { s.Trim(); }, "Hello World"},  // unshares all the same
        {"Truncate", [](S& s) { s.Truncate(5); }, "Hello"},
        {"GetBuffer", [](S& s) { s.GetBuffer()[0] = T('J'); }, "Jello World"},
        {"RemoveLeft", [](S& s) { s.RemoveLeft(Str<T>("Hello ")); }, "World"},
        {"SetString", [](S& s) { s.SetString(Lit<T>("New").c_str()); }, "New"},
    };
    for (const auto& c : cases) {
        const S original = Str<T>("Hello World");
        S edited = original;
        c.edit(edited);
        EXPECT_EQ(Ascii(original), "Hello World") << c.name;
        EXPECT_EQ(Ascii(edited), c.expected) << c.name;
        EXPECT_EQ(RefCount(original), 1) << c.name;
        EXPECT_NE(edited.GetString(), original.GetString()) << c.name;
    }
}
