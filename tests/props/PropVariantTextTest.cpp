// The text form of variant values: every type name, vectors with escapes,
// the C-library reading of numbers, and the failures.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "platform/OleAuto.h"
#include "tests/props/VariantText.h"
#include "utils/props/PropVariantText.h"

using BrmPlatform::BrmStringW;
using BrmUtils::FormatPropVariant;
using BrmUtils::ParsePropVariant;
using fitest::Owned;
using fitest::TextCase;

namespace {

// Texts that read, but are written back differently.
const TextCase kReadings[] = {
    {L"bool", false, L"TRUE", VT_BOOL, L"true"}, {L"bool", false, L"yes", VT_BOOL, L"false"},
    {L"bool", false, L"", VT_BOOL, L"false"}, {L"int", false, L"  42xyz", VT_I4, L"42"},
    {L"int", false, L"+7", VT_I4, L"7"}, {L"int", false, L"abc", VT_I4, L"0"},
    {L"byte", false, L"300", VT_UI1, L"44"},  // cut to the type
    {L"uint", false, L"-1", VT_UI4, L"4294967295"}, {L"double", false, L" +2.50", VT_R8, L"2.5"},
    {L"double", false, L"1,5", VT_R8, L"1"},  // '.' is the only decimal point
    {L"binary", false, L"00FF", VT_BLOB, L"00ff"},
    {L"string", true, L"ab\\", VT_VECTOR | VT_LPWSTR, L"ab"},  // a lone backslash ends the text
    {L"string", true, L"\\", VT_VECTOR | VT_LPWSTR, L""}, {L"string", true, L"\\x\\;", VT_VECTOR | VT_LPWSTR, L"x\\;"},
    {L"int", true, L"1;;2", VT_VECTOR | VT_I4, L"1;0;2"},
};

}  // namespace

TEST(PropVariantText, Failures) {
    const TextCase parse[] = {
        {L"Int", false, L"1", 0, nullptr},  // names compare exactly
        {L"integer", false, L"1", 0, nullptr}, {L"in", false, L"1", 0, nullptr}, {L"", false, L"1", 0, nullptr},
        {L"binary", true, L"00", 0, nullptr},  // no vector form
        {L"binary", false, L"abc", 0, nullptr}, {L"binary", false, L"zz", 0, nullptr},
        {L"binary", false, L"0 1", 0, nullptr},
    };
    for (const TextCase& c : parse) {
        SCOPED_TRACE(fitest::Narrow(c.type));
        PROPVARIANT value;
        value.vt = VT_I4;
        EXPECT_FALSE(ParsePropVariant(c.type, c.vector, c.text, &value));
        EXPECT_EQ(value.vt, VT_EMPTY);
    }
    EXPECT_FALSE(ParsePropVariant(L"int", false, L"1", nullptr));

    const VARTYPE types[] = {VT_EMPTY, VT_NULL, VT_INT, VT_FILETIME, VT_CLSID, VT_ERROR,
                             VT_VECTOR | VT_BLOB, VT_ARRAY | VT_I4, VT_BYREF | VT_I4, VT_VECTOR | VT_FILETIME,
                             VT_VECTOR | VT_I4 /* three elements and no array */};
    for (VARTYPE vt : types) {
        SCOPED_TRACE(vt);
        PROPVARIANT value;
        PropVariantInit(&value);
        value.vt = vt;
        if (vt == (VT_VECTOR | VT_I4)) value.cal.cElems = 3;
        BrmStringW type(L"old"), text(L"old");
        bool vector = true;
        EXPECT_FALSE(FormatPropVariant(value, type, vector, text));
        EXPECT_TRUE(type.IsEmpty() && text.IsEmpty());
        EXPECT_FALSE(vector);
    }
}

TEST(PropVariantText, RoundTripsAndReadings) {
    std::vector<TextCase> cases(std::begin(fitest::kTextRoundTrips), std::end(fitest::kTextRoundTrips));
    cases.insert(cases.end(), std::begin(kReadings), std::end(kReadings));
    for (const TextCase& c : cases) {
        SCOPED_TRACE(fitest::Narrow(c.type) + (c.vector ? "[] " : " ") + fitest::Narrow(c.text));
        Owned value;
        ASSERT_TRUE(ParsePropVariant(c.type, c.vector, c.text, &value.v));
        EXPECT_EQ(value.v.vt, c.vt);
        BrmStringW type, text;
        bool vector = !c.vector;
        ASSERT_TRUE(FormatPropVariant(value.v, type, vector, text));
        EXPECT_EQ(type.StdString(), c.type);
        EXPECT_EQ(vector, c.vector);
        EXPECT_EQ(text.StdString(), c.formatted ? c.formatted : c.text);
    }
}
