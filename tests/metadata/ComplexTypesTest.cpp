// Complex properties and arrays in every spelling a document may use.
#include <gtest/gtest.h>

#include "MetadataDocuments.h"
#include "SameValue.h"
#include "metadata/Schema.h"

namespace {

namespace S = ZipContainerSchema;
namespace CT = Metadata::ComplexTypes;
using BrmPlatform::BrmStringW;
using BrmUtils::Any;
using Metadata::Container;
using MetadataTest::Languages;
using StringList = std::vector<BrmStringW>;

// Each spelling of a structure, an array or a language alternative reads as
// the value given, or as nothing.
TEST(ComplexTypes, Spellings) {
    const Metadata::PropertyDescriptor &rect = S::kvd::ClipRect, &fonts = S::kvdinfo::FontsUsed, &title = S::dc::title;
    const struct {
        const char* what;
        const Metadata::PropertyDescriptor& row;
        std::string content;
        Any value;  // empty: nothing is read
    } cases[] = {
        {"rect attributes", rect, "<kvd:ClipRect rect:left='1' rect:top='2' rect:right='3' rect:bottom='4'/>",
         RECT{1, 2, 3, 4}},
        {"fewer than four attributes", rect, "<kvd:ClipRect rect:left='1' rect:bottom='4'/>", RECT{1, 0, 0, 4}},
        {"rect parseType", rect,
         "<kvd:ClipRect rdf:parseType='Resource'><rect:left>5</rect:left><rect:top>6</rect:top>"
         "<rect:right>7</rect:right><rect:bottom>8</rect:bottom></kvd:ClipRect>",
         RECT{5, 6, 7, 8}},
        {"nested description", rect,
         "<kvd:ClipRect><rdf:Description rect:left='9'><rect:top>10</rect:top></rdf:Description></kvd:ClipRect>",
         RECT{9, 10, 0, 0}},
        {"fields in rdf:value", rect,
         "<kvd:ClipRect rdf:parseType='Resource'><rect:left rdf:value='11'/>"
         "<rect:top><rdf:value>12</rdf:value></rect:top></kvd:ClipRect>",
         RECT{11, 0, 0, 0}},
        {"plain text is no structure", rect, "<kvd:ClipRect>1,2,3,4</kvd:ClipRect>", Any()},
        {"parseType Literal is no structure", rect,
         "<kvd:ClipRect rdf:parseType='Literal'><rect:left>1</rect:left></kvd:ClipRect>", Any()},
        {"rdf:resource is no structure", rect, "<kvd:ClipRect rdf:resource='urn:x' rect:left='1'/>", Any()},
        {"missing rect", rect, "", Any()},
        {"bag", fonts, "<kvdinfo:FontsUsed><rdf:Bag><rdf:li>A</rdf:li><rdf:li>B</rdf:li></rdf:Bag></kvdinfo:FontsUsed>",
         StringList{L"A", L"B"}},
        {"empty bag", fonts, "<kvdinfo:FontsUsed><rdf:Bag/></kvdinfo:FontsUsed>", StringList{}},
        {"missing bag", fonts, "", Any()},
        {"seq where a bag is expected", fonts,
         "<kvdinfo:FontsUsed><rdf:Seq><rdf:li>A</rdf:li></rdf:Seq></kvdinfo:FontsUsed>", Any()},
        {"items in rdf:value and resource", fonts,
         "<kvdinfo:FontsUsed><rdf:Bag><rdf:li rdf:value='V'/><rdf:li rdf:resource='R'/><other>x</other>"
         "</rdf:Bag></kvdinfo:FontsUsed>",
         StringList{L"V", L"R"}},
        {"plain text is no array", fonts, "<kvdinfo:FontsUsed>A,B</kvdinfo:FontsUsed>", Any()},
        {"default and language", title,
         "<dc:title><rdf:Alt><rdf:li xml:lang='x-default'>T</rdf:li><rdf:li xml:lang='DE'>D</rdf:li></rdf:Alt>"
         "</dc:title>",
         Languages({{L"", L"T"}, {L"de", L"D"}})},
        {"no xml:lang is the default", title, "<dc:title><rdf:Alt><rdf:li>T</rdf:li></rdf:Alt></dc:title>",
         Languages({{L"", L"T"}})},
        {"empty alt", title, "<dc:title><rdf:Alt/></dc:title>", Languages({})},
        {"empty item sets nothing", title, "<dc:title><rdf:Alt><rdf:li xml:lang='en'></rdf:li></rdf:Alt></dc:title>",
         Languages({})},
        {"first language fills the default", title,
         "<dc:title><rdf:Alt><rdf:li xml:lang='fr'>F</rdf:li></rdf:Alt></dc:title>",
         Languages({{L"", L"F"}, {L"fr", L"F"}})},
        {"X-DEFAULT is a language", title,
         "<dc:title><rdf:Alt><rdf:li xml:lang='x-default'>T</rdf:li><rdf:li xml:lang='X-DEFAULT'>U</rdf:li>"
         "</rdf:Alt></dc:title>",
         Languages({{L"", L"T"}, {L"x-default", L"U"}})},
        {"plain text is no alternative", title, "<dc:title>T</dc:title>", Any()},
        {"missing alternative", title, "", Any()},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Any value = MetadataTest::Load(c.content).GetProperty(c.row);
        if (c.value.IsEmpty()) {
            EXPECT_TRUE(value.IsEmpty());
        } else {
            EXPECT_TRUE(MetadataTest::Same(value, c.value)) << value.GetType().name();
        }
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

TEST(ComplexTypes, ArrayItemsThatDoNotParse) {
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
