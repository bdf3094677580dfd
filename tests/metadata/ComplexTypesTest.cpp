// Complex properties and arrays in every spelling a document may use.
#include <gtest/gtest.h>

#include "MetadataDocuments.h"
#include "metadata/Schema.h"

namespace {

namespace S = ZipContainerSchema;
namespace CT = Metadata::ComplexTypes;
using BrmPlatform::BrmStringW;
using BrmUtils::Any;
using Metadata::Container;

struct RectCase { const char* what; std::string content; bool present; RECT rect; };

TEST(ComplexTypes, RectangleSpellings) {
    const RectCase cases[] = {
        {"attributes", "<kvd:ClipRect rect:left='1' rect:top='2' rect:right='3' rect:bottom='4'/>", true, {1, 2, 3, 4}},
        {"fewer than four attributes", "<kvd:ClipRect rect:left='1' rect:bottom='4'/>", true, {1, 0, 0, 4}},
        {"parseType", "<kvd:ClipRect rdf:parseType='Resource'><rect:left>5</rect:left><rect:top>6</rect:top>"
                      "<rect:right>7</rect:right><rect:bottom>8</rect:bottom></kvd:ClipRect>",
         true, {5, 6, 7, 8}},
        {"nested description", "<kvd:ClipRect><rdf:Description rect:left='9'><rect:top>10</rect:top>"
                               "</rdf:Description></kvd:ClipRect>",
         true, {9, 10, 0, 0}},
        {"fields in rdf:value", "<kvd:ClipRect rdf:parseType='Resource'><rect:left rdf:value='11'/>"
                                "<rect:top><rdf:value>12</rdf:value></rect:top></kvd:ClipRect>",
         true, {11, 0, 0, 0}},
        {"plain text is no structure", "<kvd:ClipRect>1,2,3,4</kvd:ClipRect>", false, {}},
        {"parseType Literal is no structure",
         "<kvd:ClipRect rdf:parseType='Literal'><rect:left>1</rect:left></kvd:ClipRect>", false, {}},
        {"rdf:resource is no structure", "<kvd:ClipRect rdf:resource='urn:x' rect:left='1'/>", false, {}},
        {"missing", "", false, {}},
    };
    for (const auto& c : cases) {
        Container m = MetadataTest::Load(c.content);
        Any value = m.GetProperty(S::kvd::ClipRect);
        ASSERT_EQ(value.Is<RECT>(), c.present) << c.what;
        if (!c.present) {
            EXPECT_TRUE(value.IsEmpty()) << c.what;
            continue;
        }
        const RECT r = *value.GetPtr<RECT>();
        EXPECT_EQ(r.left, c.rect.left) << c.what;
        EXPECT_EQ(r.top, c.rect.top) << c.what;
        EXPECT_EQ(r.right, c.rect.right) << c.what;
        EXPECT_EQ(r.bottom, c.rect.bottom) << c.what;
    }
}

TEST(ComplexTypes, PartialStructuresReadTheRestAsZero) {
    Container m = MetadataTest::Load(
        "<kvdinfo:Effects rdf:parseType='Resource'><inEff:Blend>4</inEff:Blend></kvdinfo:Effects>"
        "<kvdinfo:Objects rdf:parseType='Resource'/>"
        "<kvdinfo:TextInfo inTxt:Words='12'/>");
    const Any effects = m.GetProperty(S::kvdinfo::Effects);
    ASSERT_TRUE(effects.Is<CT::EffectInfo>());
    EXPECT_EQ(effects.GetPtr<CT::EffectInfo>()->Blend, 4);
    EXPECT_EQ(effects.GetPtr<CT::EffectInfo>()->Perspective, 0);
    EXPECT_EQ(effects.GetPtr<CT::EffectInfo>()->Distortion, 0);
    // A structure node without fields still gives a value.
    ASSERT_TRUE(m.GetProperty(S::kvdinfo::Objects).Is<CT::ObjectInfo>());
    EXPECT_EQ(m.GetProperty(S::kvdinfo::Objects).GetPtr<CT::ObjectInfo>()->Total, 0);
    const Any text = m.GetProperty(S::kvdinfo::TextInfo);
    ASSERT_TRUE(text.Is<CT::TextInfo>());
    EXPECT_EQ(text.GetPtr<CT::TextInfo>()->Words, 12);
    EXPECT_TRUE(text.GetPtr<CT::TextInfo>()->Languages.empty());

    Container plain = MetadataTest::Load("<kvdinfo:Effects>4</kvdinfo:Effects>");
    EXPECT_TRUE(plain.GetProperty(S::kvdinfo::Effects).IsEmpty());
}

TEST(ComplexTypes, RewritingReplacesTheOldForm) {
    // An old child-element form with a stray field is replaced as a whole.
    Container m = MetadataTest::Load(
        "<kvdinfo:CurveInfo rdf:parseType='Resource'><inCrv:Nodes>1</inCrv:Nodes><inCrv:Extra>x</inCrv:Extra>"
        "</kvdinfo:CurveInfo>");
    m.SetProperty(S::kvdinfo::CurveInfo, CT::CurveInfo{1, 2, 3});
    Container reread = MetadataTest::Reload(m);
    const XmlNS::Node* node = reread.FindDescription()->FindChild(S::kvdinfo::CurveInfo.name);
    ASSERT_TRUE(node);
    EXPECT_TRUE(node->Children().empty());
    EXPECT_EQ(node->Attributes().size(), 3u);
    EXPECT_EQ(*node->GetAttribute(S::inCrv::MaxNodes.name), "3");
}

struct ArrayCase { const char* what; std::string content; bool present; std::vector<std::wstring> items; };

TEST(ComplexTypes, ArraySpellings) {
    const ArrayCase cases[] = {
        {"bag", "<kvdinfo:FontsUsed><rdf:Bag><rdf:li>A</rdf:li><rdf:li>B</rdf:li></rdf:Bag></kvdinfo:FontsUsed>", true,
         {L"A", L"B"}},
        {"empty bag", "<kvdinfo:FontsUsed><rdf:Bag/></kvdinfo:FontsUsed>", true, {}},
        {"missing", "", false, {}},
        {"seq where a bag is expected", "<kvdinfo:FontsUsed><rdf:Seq><rdf:li>A</rdf:li></rdf:Seq></kvdinfo:FontsUsed>",
         false, {}},
        {"items in rdf:value and resource",
         "<kvdinfo:FontsUsed><rdf:Bag><rdf:li rdf:value='V'/><rdf:li rdf:resource='R'/><other>x</other>"
         "</rdf:Bag></kvdinfo:FontsUsed>",
         true, {L"V", L"R"}},
        {"plain text", "<kvdinfo:FontsUsed>A,B</kvdinfo:FontsUsed>", false, {}},
    };
    for (const auto& c : cases) {
        Container m = MetadataTest::Load(c.content);
        const Any value = m.GetProperty(S::kvdinfo::FontsUsed);
        ASSERT_EQ(!value.IsEmpty(), c.present) << c.what;
        if (!c.present) continue;
        std::vector<std::wstring> items;
        for (const auto& s : value.GetValue<std::vector<BrmStringW>>()) items.push_back(s.StdString());
        EXPECT_EQ(items, c.items) << c.what;
    }
    // An item that does not parse as a number reads 0; as a GUID, the null GUID.
    Container m = MetadataTest::Load(
        "<kvdinfo:TextInfo rdf:parseType='Resource'><inTxt:Languages><rdf:Bag><rdf:li>7</rdf:li>"
        "<rdf:li>x</rdf:li></rdf:Bag></inTxt:Languages></kvdinfo:TextInfo>"
        "<brm:DerivedFrom><rdf:Seq><rdf:li>bad</rdf:li></rdf:Seq></brm:DerivedFrom>");
    EXPECT_EQ(m.GetProperty(S::kvdinfo::TextInfo).GetPtr<CT::TextInfo>()->Languages, (std::vector<int>{7, 0}));
    const auto derived = m.GetProperty(S::brm::DerivedFrom).GetValue<std::vector<BrmUtils::Guid>>();
    ASSERT_EQ(derived.size(), 1u);
    EXPECT_TRUE(derived[0].IsNull());
}

struct AltCase {
    const char* what;
    std::string content;
    bool present;
    std::vector<std::pair<std::wstring, std::wstring>> entries;
};

TEST(ComplexTypes, LanguageAlternatives) {
    const AltCase cases[] = {
        {"default and language",
         "<dc:title><rdf:Alt><rdf:li xml:lang='x-default'>T</rdf:li><rdf:li xml:lang='DE'>D</rdf:li></rdf:Alt>"
         "</dc:title>",
         true, {{L"", L"T"}, {L"de", L"D"}}},
        {"no xml:lang is the default", "<dc:title><rdf:Alt><rdf:li>T</rdf:li></rdf:Alt></dc:title>", true,
         {{L"", L"T"}}},
        {"empty alt", "<dc:title><rdf:Alt/></dc:title>", true, {}},
        {"empty item sets nothing",
         "<dc:title><rdf:Alt><rdf:li xml:lang='en'></rdf:li></rdf:Alt></dc:title>", true, {}},
        {"first language fills the default", "<dc:title><rdf:Alt><rdf:li xml:lang='fr'>F</rdf:li></rdf:Alt></dc:title>",
         true, {{L"", L"F"}, {L"fr", L"F"}}},
        {"X-DEFAULT is a language",
         "<dc:title><rdf:Alt><rdf:li xml:lang='x-default'>T</rdf:li><rdf:li xml:lang='X-DEFAULT'>U</rdf:li>"
         "</rdf:Alt></dc:title>",
         true, {{L"", L"T"}, {L"x-default", L"U"}}},
        {"plain text is no alternative", "<dc:title>T</dc:title>", false, {}},
        {"missing", "", false, {}},
    };
    for (const auto& c : cases) {
        Container m = MetadataTest::Load(c.content);
        const Any value = m.GetProperty(S::dc::title);
        ASSERT_EQ(value.Is<Metadata::MultiLanguageString>(), c.present) << c.what;
        if (!c.present) continue;
        std::vector<std::pair<std::wstring, std::wstring>> entries;
        for (const auto& [k, v] : value.GetPtr<Metadata::MultiLanguageString>()->Entries()) {
            entries.emplace_back(k.StdString(), v.StdString());
        }
        EXPECT_EQ(entries, c.entries) << c.what;
    }
}

TEST(ComplexTypes, ExtendedPropertiesInEverySpelling) {
    Container m = MetadataTest::Load(
        "<brm:OpenMetadata><rdf:Bag>"
        "<rdf:li brm:fmtid='d5cdd502-2e9c-101b-9397-08002b2cf9ae' brm:propid='2' brm:type='lpwstr' brm:array='TRUE'"
        " brm:value='v1'/>"
        "<rdf:li rdf:parseType='Resource'><brm:propid>3</brm:propid><brm:value>v2</brm:value></rdf:li>"
        "<rdf:li>plain</rdf:li>"
        "</rdf:Bag></brm:OpenMetadata>");
    const auto list = m.GetProperty(S::brm::OpenMetadata).GetValue<std::vector<S::OpenMetadataProperty>>();
    // The plain item is no structure and is skipped.
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].formatId.ToString().StdString(), L"d5cdd502-2e9c-101b-9397-08002b2cf9ae");
    EXPECT_EQ(list[0].propertyId, 2);
    EXPECT_EQ(list[0].type.StdString(), L"lpwstr");
    EXPECT_TRUE(list[0].array);
    EXPECT_EQ(list[0].value.StdString(), L"v1");
    EXPECT_TRUE(list[1].formatId.IsNull());
    EXPECT_EQ(list[1].propertyId, 3);
    EXPECT_FALSE(list[1].array);
    EXPECT_EQ(list[1].type.StdString(), L"");
    EXPECT_EQ(list[1].value.StdString(), L"v2");
}

}  // namespace
