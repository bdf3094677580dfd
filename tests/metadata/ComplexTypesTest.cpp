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

}  // namespace
