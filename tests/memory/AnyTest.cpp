// Any: empty values, copies, inline versus heap holders, comparison, typed
// reading with defaults.
#include "utils/Any.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/WinTypes.h"
#include "utils/Guid.h"
#include "utils/strings/BrmString.h"

using BrmUtils::Any;
using BrmUtils::AnyCast;
using BrmUtils::Guid;
using BrmPlatform::BrmStringW;

namespace {

// Counts live copies so that leaks or double destruction show.
struct Tracked {
    static inline int live = 0;
    int v = 0;
    Tracked(int x = 0) : v(x) { ++live; }
    Tracked(const Tracked& o) : v(o.v) { ++live; }
    Tracked(Tracked&& o) noexcept : v(o.v) { ++live; }
    Tracked& operator=(const Tracked&) = default;
    ~Tracked() { --live; }
};

struct Big {
    int a[10] = {};
};

}  // namespace

TEST(Any, PlacementByType) {
    struct Case {
        const char* name;
        Any value;
        bool inlineExpected;
    };
    const Case cases[] = {
        {"int", Any(5), true},          {"long", Any(5L), true},       {"double", Any(2.5), true},
        {"bool", Any(true), true},      {"string", Any(BrmStringW(L"abc")), true},
        {"guid", Any(Guid()), false},   {"vector", Any(std::vector<int>{1, 2}), false},
        {"rect", Any(RECT{1, 2, 3, 4}), false}, {"big", Any(Big{}), false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_FALSE(c.value.IsEmpty());
        EXPECT_EQ(c.value.IsInline(), c.inlineExpected);
        // Copies keep the placement and the value's type.
        Any copy(c.value);
        EXPECT_EQ(copy.IsInline(), c.inlineExpected);
        EXPECT_EQ(copy.GetType(), c.value.GetType());
    }
}

TEST(Any, TypedReadTakesDefaultOnMismatch) {
    Any i(42);
    EXPECT_EQ(AnyCast<int>(i, -1), 42);
    EXPECT_EQ(AnyCast<long>(i, -1L), -1L);  // int is not long
    EXPECT_EQ(AnyCast<double>(i, 0.5), 0.5);
    EXPECT_EQ(AnyCast<int>(Any(), 7), 7);
    EXPECT_TRUE(i.Is<int>());
    EXPECT_FALSE(i.Is<unsigned>());

    Any s(BrmStringW(L"text"));
    EXPECT_TRUE(AnyCast<BrmStringW>(s, BrmStringW()) == L"text");
    EXPECT_TRUE(AnyCast<BrmStringW>(i, BrmStringW(L"dflt")) == L"dflt");
    const std::vector<int>* none = AnyCast<std::vector<int>>(&s);
    EXPECT_EQ(none, nullptr);
}

TEST(Any, CompareWithinType) {
    struct Case {
        const char* name;
        Any a, b;
        bool equal, less;
    };
    std::vector<Case> cases;
    cases.push_back({"int eq", Any(3), Any(3), true, false});
    cases.push_back({"int lt", Any(-3), Any(3), false, true});
    cases.push_back({"double", Any(1.5), Any(2.5), false, true});
    cases.push_back({"bool", Any(false), Any(true), false, true});
    // Strings compare over the shorter length, then by length.
    cases.push_back({"str prefix", Any(BrmStringW(L"ab")), Any(BrmStringW(L"abc")), false, true});
    cases.push_back({"str eq", Any(BrmStringW(L"abc")), Any(BrmStringW(L"abc")), true, false});
    cases.push_back({"str gt", Any(BrmStringW(L"b")), Any(BrmStringW(L"abc")), false, false});
    cases.push_back({"vec elem", Any(std::vector<int>{1, 2}), Any(std::vector<int>{1, 3}), false, true});
    cases.push_back({"vec len", Any(std::vector<int>{1}), Any(std::vector<int>{1, 0}), false, true});
    cases.push_back({"vec str",
                     Any(std::vector<BrmStringW>{BrmStringW(L"x")}),
                     Any(std::vector<BrmStringW>{BrmStringW(L"x")}), true, false});
    Guid g1(L"00000001-0000-0000-0000-000000000000"), g2(L"00000002-0000-0000-0000-000000000000");
    cases.push_back({"guid", Any(g1), Any(g2), false, true});
    cases.push_back({"guid vec", Any(std::vector<Guid>{g1}), Any(std::vector<Guid>{g1}), true, false});
    // Structures without an order never compare equal, even to themselves.
    cases.push_back({"rect", Any(RECT{1, 2, 3, 4}), Any(RECT{1, 2, 3, 4}), false, false});
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.a == c.b, c.equal);
        EXPECT_EQ(c.a < c.b, c.less);
    }
    // Different types are never equal, and still order one way only.
    Any i(1), l(1L);
    EXPECT_FALSE(i == l);
    EXPECT_NE(i < l, l < i);
}

TEST(Any, UncomparedHolderBecomesComparableOnCopy) {
    Any plain;
    plain.Emplace<int, false, false>(9);
    EXPECT_FALSE(plain.IsInline());
    EXPECT_FALSE(plain == Any(9));
    Any copy(plain);
    EXPECT_TRUE(copy.IsInline());
    EXPECT_TRUE(copy == Any(9));
    EXPECT_EQ(AnyCast<int>(plain, 0), 9);
}

TEST(Any, AssignmentAndMoveKeepValuesAlive) {
    Tracked::live = 0;
    {
        Any a(Tracked(1));
        Any b(Big{});
        EXPECT_EQ(Tracked::live, 1);
        b = a;  // different type: replaced
        EXPECT_EQ(Tracked::live, 2);
        EXPECT_EQ(AnyCast<Tracked>(&b)->v, 1);
        a = Tracked(5);  // same type: assigned in place
        EXPECT_EQ(Tracked::live, 2);
        b = a;
        EXPECT_EQ(AnyCast<Tracked>(&b)->v, 5);
        Any c(std::move(a));
        EXPECT_TRUE(a.IsEmpty());
        EXPECT_EQ(Tracked::live, 2);
        c.Swap(b);
        a = std::move(c);
        EXPECT_TRUE(c.IsEmpty());
        EXPECT_EQ(AnyCast<Tracked>(&a)->v, 5);
        a.Clear();
        EXPECT_EQ(Tracked::live, 1);
        a = 3;
        EXPECT_EQ(AnyCast<int>(a, 0), 3);
    }
    EXPECT_EQ(Tracked::live, 0);
}

