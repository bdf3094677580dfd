// Text forms of the simple data types, and where a named simple value is
// looked for.
#include <gtest/gtest.h>

#include "MetadataDocuments.h"
#include "metadata/Schema.h"

namespace {

using BrmPlatform::BrmStringW;
using BrmUtils::Any;
using namespace Metadata::DataType;

template <typename T>
Any From(const std::string& text) {
    Any out;
    T().FromText(out, text);
    return out;
}

template <typename T>
std::string To(const Any& value) {
    std::string out = "unset";
    T().ToText(out, value);
    return out;
}

// Every text reads as a value of type V, equal to the one given.
template <typename T, typename V, size_t N>
void ExpectReads(const std::pair<const char*, V> (&reads)[N]) {
    for (const auto& [text, value] : reads) {
        Any a = From<T>(text);
        ASSERT_TRUE(a.Is<V>()) << text;
        EXPECT_EQ(*a.GetPtr<V>(), value) << text;
    }
}

TEST(SimpleTypes, DoubleText) {
    const std::pair<const char*, double> reads[] = {
        {"1.5", 1.5}, {"  2.5e3x", 2500}, {"+1.25", 1.25}, {"-0.125", -0.125}, {"abc", 0}, {"", 0}, {"7", 7},
    };
    ExpectReads<Double>(reads);
    const std::pair<Any, const char*> writes[] = {
        {Any(0.1), "0.1"}, {Any(1.0 / 3), "0.333333333333333"}, {Any(2), "2"}, {Any(-4L), "-4"}, {Any(210.0), "210"},
        {Any(123456789012345678.0), "1.23456789012346e+17"}, {Any(true), "0"},
    };
    for (const auto& [value, text] : writes) EXPECT_EQ(To<Double>(value), text) << text;
}

TEST(SimpleTypes, StringText) {
    const wchar_t* wide = L"Gr\u00fc\u00dfe \u20ac \U0001F600";
    const std::string utf8 = "Gr\xC3\xBC\xC3\x9F" "e \xE2\x82\xAC \xF0\x9F\x98\x80";
    EXPECT_EQ(To<String>(Any(BrmStringW(wide))), utf8);
    EXPECT_EQ(From<String>(utf8).GetValue<BrmStringW>().StdString(), wide);
    EXPECT_EQ(To<String>(Any(static_cast<const wchar_t*>(L"abc"))), "abc");
    EXPECT_EQ(To<String>(Any(static_cast<const wchar_t*>(nullptr))), "");
    wchar_t buffer[] = L"mutable";
    EXPECT_EQ(To<String>(Any(static_cast<wchar_t*>(buffer))), "mutable");
    EXPECT_EQ(To<String>(Any(5)), "");
    EXPECT_TRUE(String().IsCompatible(Any(static_cast<const wchar_t*>(L"x"))));
    EXPECT_FALSE(String().IsCompatible(Any(std::string("narrow"))));
}

TEST(SimpleTypes, GuidText) {
    const std::string canonical = "6b29fc40-ca47-1067-b31d-00dd010662da";
    for (const char* text : {"6b29fc40-ca47-1067-b31d-00dd010662da", "6B29FC40-CA47-1067-B31D-00DD010662DA",
                             "{6b29fc40-ca47-1067-b31d-00dd010662da}"}) {
        Any a = From<Metadata::DataType::Guid>(text);
        ASSERT_TRUE(a.Is<BrmUtils::Guid>()) << text;
        EXPECT_EQ(To<Metadata::DataType::Guid>(a), canonical) << text;
    }
    Any bad = From<Metadata::DataType::Guid>("not a guid");
    ASSERT_TRUE(bad.Is<BrmUtils::Guid>());
    EXPECT_TRUE(bad.GetPtr<BrmUtils::Guid>()->IsNull());
    const GUID raw = BrmUtils::Guid(canonical.c_str());
    EXPECT_EQ(To<Metadata::DataType::Guid>(Any(raw)), canonical);
    EXPECT_EQ(To<Metadata::DataType::Guid>(Any()), "00000000-0000-0000-0000-000000000000");
}

}  // namespace
