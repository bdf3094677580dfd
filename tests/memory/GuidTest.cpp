// Guid: the brace rules of the text constructor, malformed text, the text
// forms and their round trip, comparison and hashing.
#include "utils/Guid.h"

#include <gtest/gtest.h>

#include <string>
#include <unordered_set>
#include <vector>

using BrmUtils::Guid;
using BrmPlatform::BrmStringA;
using BrmPlatform::BrmStringW;

namespace {

const wchar_t* const kText = L"6b29fc40-ca47-1067-b31d-00dd010662da";
constexpr GUID kValue = {0x6B29FC40, 0xCA47, 0x1067, {0xB3, 0x1D, 0x00, 0xDD, 0x01, 0x06, 0x62, 0xDA}};

}  // namespace

TEST(Guid, TextFormsThatParseToTheSameValue) {
    const wchar_t* forms[] = {
        L"6b29fc40-ca47-1067-b31d-00dd010662da",
        L"{6b29fc40-ca47-1067-b31d-00dd010662da}",
        L"6b29fc40-ca47-1067-b31d-00dd010662da}",  // closing brace only
        L"{6b29fc40-ca47-1067-b31d-00dd010662da",  // opening brace only
        L"{{6b29fc40-ca47-1067-b31d-00dd010662da}}",
        L"{}6b29fc40-ca47-1067-b31d-00dd010662da}{}",  // runs of either brace
        L"6B29FC40-CA47-1067-B31D-00DD010662DA",
    };
    for (const wchar_t* text : forms) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(text)));
        EXPECT_EQ(Guid(text), Guid(kValue));
        EXPECT_EQ(Guid(BrmStringW(text)), Guid(kValue));
    }
    EXPECT_EQ(Guid("{6b29fc40-ca47-1067-b31d-00dd010662da}"), Guid(kValue));
    EXPECT_EQ(Guid(BrmStringA("6b29fc40-ca47-1067-b31d-00dd010662da")), Guid(kValue));
}

TEST(Guid, MalformedTextGivesZero) {
    const wchar_t* bad[] = {
        L"",
        L"{}",
        L"}6b29fc40-ca47-1067-b31d-00dd010662da",  // neither starts with { nor ends with }
        L"6b29fc40-ca47-1067-b31d-00dd010662d",
        L"6b29fc40-ca47-1067-b31d-00dd010662daa",
        L"6b29fc40_ca47-1067-b31d-00dd010662da",
        L"6b29fc40-ca47-1067-b31d-00dd010662dg",
        L"(6b29fc40-ca47-1067-b31d-00dd010662da)",
        L" 6b29fc40-ca47-1067-b31d-00dd010662da",
    };
    for (const wchar_t* text : bad) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(text)));
        EXPECT_TRUE(Guid(text).IsNull());
    }
    EXPECT_TRUE(Guid(static_cast<const wchar_t*>(nullptr)).IsNull());
    EXPECT_TRUE(Guid(static_cast<const char*>(nullptr)).IsNull());
}

TEST(Guid, OrderEqualityAndHash) {
    // Order is by bytes in memory: Data1 is little-endian, so its low byte
    // decides first.
    Guid a(L"00000100-0000-0000-0000-000000000000");
    Guid b(L"00000001-0000-0000-0000-000000000000");
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_NE(a, b);
    // A difference in the last byte alone counts for equality.
    Guid c(L"00000000-0000-0000-0000-000000000001");
    EXPECT_NE(c, Guid());
    EXPECT_TRUE(Guid() < c);

    std::unordered_set<Guid> set;
    for (int i = 0; i < 100; ++i) set.insert(Guid::Create());
    EXPECT_EQ(set.size(), 100u);
    Guid first = *set.begin();
    EXPECT_EQ(set.count(Guid(first.ToString())), 1u);
}
