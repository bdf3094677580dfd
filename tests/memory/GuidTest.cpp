// Guid: the brace rules of the text constructor and malformed text.
#include "utils/Guid.h"

#include <gtest/gtest.h>

#include <string>

using BrmUtils::Guid;
using BrmPlatform::BrmStringA;
using BrmPlatform::BrmStringW;

TEST(Guid, TextFormsAndMalformedText) {
    const Guid value(GUID{0x6B29FC40, 0xCA47, 0x1067, {0xB3, 0x1D, 0x00, 0xDD, 0x01, 0x06, 0x62, 0xDA}});
    const struct {
        const wchar_t* text;
        bool valid;
    } cases[] = {
        {L"6b29fc40-ca47-1067-b31d-00dd010662da", true}, {L"{6b29fc40-ca47-1067-b31d-00dd010662da}", true},
        {L"6b29fc40-ca47-1067-b31d-00dd010662da}", true},  // one brace of either side
        {L"{6b29fc40-ca47-1067-b31d-00dd010662da", true},
        {L"{}6b29fc40-ca47-1067-b31d-00dd010662da}{}", true},  // runs of either brace
        {L"6B29FC40-CA47-1067-B31D-00DD010662DA", true},
        {L"", false}, {L"{}", false},
        {L"}6b29fc40-ca47-1067-b31d-00dd010662da", false},  // neither starts with { nor ends with }
        {L"6b29fc40-ca47-1067-b31d-00dd010662d", false}, {L"6b29fc40-ca47-1067-b31d-00dd010662daa", false},
        {L"6b29fc40_ca47-1067-b31d-00dd010662da", false}, {L"6b29fc40-ca47-1067-b31d-00dd010662dg", false},
        {L"(6b29fc40-ca47-1067-b31d-00dd010662da)", false}, {L" 6b29fc40-ca47-1067-b31d-00dd010662da", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.text)));
        EXPECT_EQ(Guid(c.text), c.valid ? value : Guid());
        EXPECT_EQ(Guid(BrmStringW(c.text)), c.valid ? value : Guid());
    }
    EXPECT_EQ(Guid("{6b29fc40-ca47-1067-b31d-00dd010662da}"), value);
    EXPECT_EQ(Guid(BrmStringA("6b29fc40-ca47-1067-b31d-00dd010662da")), value);
    EXPECT_TRUE(Guid(static_cast<const wchar_t*>(nullptr)).IsNull());
    EXPECT_TRUE(Guid(static_cast<const char*>(nullptr)).IsNull());
}
