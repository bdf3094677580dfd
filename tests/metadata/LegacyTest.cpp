// The legacy metadata form: its special data types and the conversions to
// and from the current form.
#include <gtest/gtest.h>

#include "MetadataDocuments.h"
#include "metadata/LegacyConversion.h"
#include "metadata/LegacySchema.h"
#include "metadata/Schema.h"
#include "metadata/Utf8.h"

namespace {

namespace S = ZipContainerSchema;
namespace L = ZipContainerSchema::legacykvd;
namespace CT = Metadata::ComplexTypes;
using BrmPlatform::BrmStringW;
using BrmUtils::Any;
using Metadata::Container;
using Metadata::MultiLanguageString;

std::vector<std::pair<std::wstring, std::wstring>> Entries(const Any& value) {
    std::vector<std::pair<std::wstring, std::wstring>> out;
    if (const auto* m = value.GetPtr<MultiLanguageString>()) {
        for (const auto& [k, v] : m->Entries()) out.emplace_back(k.StdString(), v.StdString());
    }
    return out;
}

// A legacy document with a value in every row that has a current row.
Container FullLegacyDocument() {
    Container m = Container::CreateEmpty();
    MultiLanguageString title;
    title.Set(L"", L"T");
    title.Set(L"de", L"Titel");
    m.SetProperty(L::Title, title);
    m.SetProperty(L::FontsUsed, std::vector<BrmStringW>{L"Arial", L"Times"});
    m.SetProperty(L::Styles, std::vector<BrmStringW>{L"Normal"});
    for (const auto* row : {&L::Keywords, &L::Notes, &L::Subject, &L::Copyright, &L::LastAuthor, &L::Sided,
                            &L::Folds, &L::Type, &L::Industry, &L::ProductName, &L::PageDimensions,
                            &L::PageSizeName}) {
        m.SetProperty(*row, Metadata::Utf8ToWide(row->name.Local()) + L" text");
    }
    m.SetProperty(L::Author, BrmStringW(L"a, b"));
    int n = 1;
    for (const auto* row : {&L::CoreVersion, &L::Revision, &L::ProductId, &L::AppVersion, &L::BuildNumber,
                            &L::Platform, &L::Locale, &L::NumPages, &L::NumLayers, &L::Language,
                            &L::PageOrientation}) {
        m.SetProperty(*row, n++);
    }
    m.SetProperty(L::PageWidth, 210.5);
    m.SetProperty(L::PageHeight, 297.25);
    m.SetProperty(L::ResolutionX, 72.0);
    m.SetProperty(L::ResolutionY, 96.0);
    m.SetProperty(L::Effects, CT::EffectInfo{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    m.SetProperty(L::Objects, CT::ObjectInfo{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14});
    m.SetProperty(L::CurveInfo, CT::CurveInfo{1, 2, 3});
    m.SetProperty(L::BitmapInfo, CT::BitmapInfo{{4, 5}, {L"p1", L"p2"}});
    m.SetProperty(L::TextInfo, CT::TextInfo{1, 2, 3, 4, 5, 6, 7, 8, 9, {1033}});
    m.SetProperty(L::Fills, CT::FillInfo{1, 2, 3, 4, 5, 6, 7, {L"c"}, {L"p"}, {L"s"}});
    m.SetProperty(L::Outlines, CT::OutlineInfo{1, 2, 3, 4, 5, 6, 7, {L"c"}, {}, {L"s"}});
    m.SetProperty(L::ClipRect, RECT{1, 2, 3, 4});
    m.SetProperty(L::Color, CT::ColorInfo{L"rgb", L"cmyk", L"gray", 2, 3});
    S::OpenMetadataProperty p;
    p.formatId = BrmUtils::Guid("f29f85e0-4ff9-1068-ab91-08002b27b3d9");
    p.propertyId = 4;
    p.type = L"lpwstr";
    p.value = L"v";
    m.SetProperty(L::Properties, std::vector<S::OpenMetadataProperty>{p});
    m.SetProperty(L::EmbeddedOleObjects, 3);
    m.SetProperty(L::FontsEmbedded, 0);
    m.SetProperty(L::DocID, BrmUtils::Guid("01234567-89ab-cdef-0123-456789abcdef"));
    m.SetProperty(L::RiffCompressionRatio, 0.5);
    return MetadataTest::Reload(m);
}

TEST(Legacy, MissingFlagsAndIdentifierBecomeFalseAndNull) {
    Container legacy = Container::CreateEmpty();
    Container current = Metadata::ConvertLegacyToCurrent(legacy);
    EXPECT_TRUE(current.GetProperty(S::kvdinfo::EmbeddedOleObjects).Is<bool>());
    EXPECT_FALSE(current.GetProperty(S::kvdinfo::EmbeddedOleObjects).GetValue<bool>(true));
    EXPECT_TRUE(current.GetProperty(S::xmpMM::DocumentID).GetValue<BrmUtils::Guid>(BrmUtils::Guid::Create()).IsNull());
    EXPECT_TRUE(current.GetProperty(S::kvdinfo::NumPages).IsEmpty());
}

TEST(Legacy, RoundTripKeepsEveryValueTheTablesCarry) {
    Container legacy = FullLegacyDocument();
    Container current = MetadataTest::Reload(Metadata::ConvertLegacyToCurrent(legacy));
    Container back = MetadataTest::Reload(Metadata::ConvertCurrentToLegacy(current));
    Container again = MetadataTest::Reload(Metadata::ConvertLegacyToCurrent(back));

    // Current -> legacy -> current gives the same document.
    EXPECT_EQ(again.SaveText(), current.SaveText());
    // And legacy -> current -> legacy gives the same rows, except what the
    // tables change on purpose: the ratio is 0 and the author list is
    // joined without blanks.
    EXPECT_EQ(back.GetProperty(L::RiffCompressionRatio).GetValue<double>(-1), 0.0);
    EXPECT_EQ(back.GetPropertyText(L::Author).StdString(), L"a,b");
    EXPECT_EQ(back.GetProperty(L::EmbeddedOleObjects).GetValue<int>(), 1);
    EXPECT_EQ(back.GetProperty(L::FontsEmbedded).GetValue<int>(-1), 0);
    EXPECT_EQ(back.GetProperty(L::DocID).GetValue<BrmUtils::Guid>(),
              legacy.GetProperty(L::DocID).GetValue<BrmUtils::Guid>());
    for (const auto* row : {&L::CoreVersion, &L::Revision, &L::Locale, &L::NumPages, &L::Language,
                            &L::PageOrientation}) {
        EXPECT_EQ(back.GetProperty(*row).GetValue<int>(-1), legacy.GetProperty(*row).GetValue<int>(-2))
            << row->name.local;
    }
    for (const auto* row : {&L::Keywords, &L::Notes, &L::Subject, &L::Copyright, &L::LastAuthor, &L::Sided,
                            &L::ProductName, &L::PageSizeName}) {
        EXPECT_EQ(back.GetPropertyText(*row).StdString(), legacy.GetPropertyText(*row).StdString())
            << row->name.local;
    }
    EXPECT_EQ(Entries(back.GetProperty(L::Title)), Entries(legacy.GetProperty(L::Title)));
    const auto color = back.GetProperty(L::Color).GetValue<CT::ColorInfo>();
    EXPECT_EQ(color.CmykProfileName.StdString(), L"cmyk");
    EXPECT_EQ(color.ColorMode, 2);
}

}  // namespace
