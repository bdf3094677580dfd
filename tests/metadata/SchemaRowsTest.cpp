// The rows of the current schema, one of each value type and written form
// (and the values that need escaping): written, saved, loaded and read back
// with the value intact, in the form the documents require.
#include <gtest/gtest.h>

#include <cstring>

#include "MetadataDocuments.h"
#include "SameValue.h"
#include "metadata/Names.h"
#include "metadata/Schema.h"

namespace {

namespace S = ZipContainerSchema;
namespace CT = Metadata::ComplexTypes;
using BrmPlatform::BrmStringW;
using BrmUtils::Any;
using Metadata::Container;
using Metadata::PropertyDescriptor;
using MetadataTest::Languages;
using MetadataTest::Same;
using MetadataTest::StringList;

SYSTEMTIME Time(WORD h) { return SYSTEMTIME{2021, 6, 0, 15, h, 30, 45, 0}; }

std::vector<S::OpenMetadataProperty> ExtendedProperties() {
    S::OpenMetadataProperty a, b;
    a.formatId = BrmUtils::Guid("{f29f85e0-4ff9-1068-ab91-08002b27b3d9}");
    a.propertyId = 4, a.type = L"ushort", a.array = false, a.value = L"12";
    b.formatId = BrmUtils::Guid("d5cdd502-2e9c-101b-9397-08002b2cf9ae");
    b.propertyId = -2, b.type = L"lpwstr", b.array = true, b.value = L"";  // written even when empty
    return {a, b};
}

CT::EffectInfo Effects() {
    CT::EffectInfo e;
    int* p = &e.Perspective;
    for (int i = 0; i < 12; ++i) p[i] = i + 1;
    return e;
}

CT::ObjectInfo Objects() {
    CT::ObjectInfo o;
    int* p = &o.Total;
    for (int i = 0; i < 14; ++i) p[i] = 100 + i;
    return o;
}

CT::TextInfo Text() { return CT::TextInfo{1, 2, 3, 4, 5, 6, 7, 8, 9, {1033, 1031}}; }

CT::FillInfo Fills() { return CT::FillInfo{1, 2, 3, 4, 5, 6, 7, {L"red", L"green"}, {L"pal"}, {}}; }

CT::OutlineInfo Outlines() { return CT::OutlineInfo{1, 2, 3, 4, 5, 6, 7, {L"black"}, {}, {L"spot 1", L"spot, 2"}}; }

enum class Form { Text, Alt, Seq, Bag, Attributes, ParseType };

struct RowCase { const PropertyDescriptor* row; Any value; Form form; };

std::vector<RowCase> AllRows() {
    return {
        {&S::dc::title, Languages({{L"en", L"Title"}, {L"de", L"Titel"}}), Form::Alt},
        {&S::dc::description, Languages({{L"", L"About"}}), Form::Alt},
        {&S::dc::rights, Languages({{L"fr", L"\u00a9 moi"}}), Form::Alt},
        {&S::dc::creator, StringList{L"Ann", L"Bob"}, Form::Seq},
        {&S::dc::format, BrmStringW(L"application/x-vnd.test"), Form::Text},
        {&S::xmp::CreateDate, Time(1), Form::Text},
        {&S::xmpMM::InstanceID, BrmUtils::Guid("0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9"), Form::Text},
        {&S::brm::Notes, Languages({{L"", L"line 1\nline 2"}}), Form::Alt},
        {&S::brm::Revision, 17, Form::Text},
        {&S::brm::DerivedFrom,
         std::vector<BrmUtils::Guid>{BrmUtils::Guid("11111111-2222-3333-4444-555555555555"), BrmUtils::Guid()},
         Form::Seq},
        {&S::brm::OpenMetadata, ExtendedProperties(), Form::Bag},
        {&S::kvd::ClipRect, RECT{-10, 20, 300, 400}, Form::Attributes},
        {&S::kvd::ProductName, BrmStringW(L"Product <&>"), Form::Text},
        {&S::kvdinfo::PageWidth, 210.25, Form::Text},
        {&S::kvdinfo::ResolutionY, 0.1, Form::Text},
        {&S::kvdinfo::EmbeddedOleObjects, true, Form::Text},
        {&S::kvdinfo::FontsEmbedded, false, Form::Text},
        {&S::kvdinfo::FontsUsed, StringList{L"Arial", L"Times New Roman"}, Form::Bag},
        {&S::kvdinfo::Styles, StringList{}, Form::Bag},
        {&S::kvdinfo::Effects, Effects(), Form::ParseType},
        {&S::kvdinfo::Objects, Objects(), Form::ParseType},
        {&S::kvdinfo::CurveInfo, CT::CurveInfo{7, 8, 9}, Form::Attributes},
        {&S::kvdinfo::BitmapInfo, CT::BitmapInfo{{1, 2, 3}, {L"c:\\a.png", L"b.jpg"}}, Form::ParseType},
        {&S::kvdinfo::TextInfo, Text(), Form::ParseType},
        {&S::kvdinfo::FillInfo, Fills(), Form::ParseType},
        {&S::kvdinfo::OutlineInfo, Outlines(), Form::ParseType},
        {&S::kvdinfo::ColorInfo, CT::ColorInfo{L"sRGB", L"", L"Gray \u03b3", 3, -1}, Form::Attributes},
    };
}

// All in one document: each comes back with its value, in its written form.
TEST(SchemaRows, EveryRowSurvivesSaveAndLoadInItsForm) {
    using Metadata::Names::rdf::Alt;
    using Metadata::Names::rdf::Bag;
    using Metadata::Names::rdf::Seq;
    using Metadata::Names::rdf::parseType;
    const auto rows = AllRows();
    Container written = Container::CreateEmpty();
    for (const auto& c : rows) written.SetProperty(*c.row, c.value);
    Container reread = MetadataTest::Reload(written);
    for (const auto& c : rows) {
        SCOPED_TRACE(c.row->name.local);
        const Any value = reread.GetProperty(*c.row);
        EXPECT_TRUE(Same(value, c.value)) << value.GetType().name();
        const XmlNS::Node* node = reread.FindDescription()->FindChild(c.row->name);
        ASSERT_TRUE(node);
        switch (c.form) {
            case Form::Text:
                EXPECT_TRUE(node->Children().empty() && node->Attributes().empty());
                break;
            case Form::Alt:
            case Form::Seq:
            case Form::Bag:
                ASSERT_EQ(node->Children().size(), 1u);
                EXPECT_TRUE(node->Children()[0]->HasName(c.form == Form::Alt ? Alt : c.form == Form::Seq ? Seq : Bag));
                break;
            case Form::Attributes:
                EXPECT_TRUE(node->Children().empty());
                EXPECT_GE(node->Attributes().size(), 3u);
                EXPECT_FALSE(node->GetAttribute(parseType));
                break;
            case Form::ParseType:
                ASSERT_TRUE(node->GetAttribute(parseType));
                EXPECT_EQ(*node->GetAttribute(parseType), "Resource");
                EXPECT_FALSE(node->Children().empty());
                break;
        }
    }
}

TEST(SchemaRows, WrongValueTypesLeaveTheTreeAlone) {
    for (const auto& c : AllRows()) {
        Container m = Container::CreateEmpty();
        m.SetModified(false);
        // A value no row takes.
        m.SetProperty(*c.row, Any(std::string("narrow")));
        EXPECT_FALSE(m.IsModified()) << c.row->name.local;
        EXPECT_TRUE(m.FindDescription()->Children().empty()) << c.row->name.local;
    }
}

}  // namespace
