// Reading fill.xml into the fill objects, and writing them back.
#include <gtest/gtest.h>

#include <cmath>

#include "fill/BitmapPatternInfo.h"
#include "fill/FillNames.h"
#include "fill/FountainFillInfo.h"
#include "fill/VectorPatternInfo.h"
#include "metadata/Container.h"
#include "metadata/Schema.h"
#include "metadata/Utf8.h"

namespace {

using Metadata::Container;
namespace S = ZipContainerSchema;

const std::string kTiling =
    "<tilingInfo units='pixels'><size width='2' height='3'/><offset x='1' y='0'/><angle>0</angle><skew>0</skew>"
    "<rowColumnOffset type='rows' amount='0.5'/><mirror horizontal='true' vertical='false'/></tilingInfo>"
    "<tile media-type='image/png'>content/tile.png</tile>";

std::string Fill(const std::string& attributes, const std::string& body) {
    return "<fill xmlns='urn:brimo:namespaces:zcf:xmlns:fill' " + attributes + ">" + body + "</fill>";
}
std::string Fountain(const std::string& body) { return Fill("version='1.0' type='fountain'", "<fountain type='linear'>" + body + "</fountain>"); }

// Factory and Read over one document; null when either refuses it.
std::unique_ptr<FillInfo> ReadFill(const std::string& xml, Container& metadata) {
    Brm::XmlFile file(xml);
    Container tree = Container::WrapElement(file);
    if (!tree.Root()) return nullptr;
    auto info = CreateFillInfo(metadata, *tree.Root());
    if (!info || !info->Read(metadata, *tree.Root(), nullptr)) return nullptr;
    return std::unique_ptr<FillInfo>(static_cast<FillInfo*>(info.release()));
}
std::unique_ptr<FillInfo> ReadFill(const std::string& xml) {
    Container metadata = Container::CreateEmpty();
    return ReadFill(xml, metadata);
}

TEST(FillInfo, RefusesWhatItCannotRead) {
    const std::pair<const char*, std::string> refused[] = {
        {"version 2.0", Fill("version='2.0' type='bitmap-tiles'", kTiling)},
        {"no version", Fill("type='bitmap-tiles'", kTiling)},
        {"unknown type", Fill("version='1.0' type='Fountain'", "<fountain><colors/></fountain>")},
        {"no tilingInfo", Fill("version='1.0' type='bitmap-tiles'", "<tile/>")},
        {"no tile", Fill("version='1.0' type='bitmap-tiles'", kTiling.substr(0, kTiling.find("<tile ")))},
        {"units unknown", Fill("version='1.0' type='bitmap-tiles'", "<tilingInfo units='inch'" + kTiling.substr(26))},
        {"Rows", Fill("version='1.0' type='bitmap-tiles'", std::string(kTiling).replace(kTiling.find("rows"), 4, "Rows"))},
        {"filter without name", Fill("version='1.0' type='bitmap-tiles'", kTiling + "<filterInfo><filter>1</filter></filterInfo>")},
        {"vector without crop", Fill("version='1.0' type='vector-tiles'", kTiling + "<vectorTileInfo/>")},
        {"no colors", Fountain("")},
        {"scale x 0", Fountain("<scale x='0' y='1'/><colors/>")},
        {"skew 89.5", Fountain("<skew>" + FillText::FormatNumber(std::tan(89.5 * 0.017453292519943295) * 57.29577951308232) + "</skew><colors/>")},
    };
    for (const auto& [what, xml] : refused) EXPECT_FALSE(ReadFill(xml)) << what;
}

// Write, print, parse, read: every field comes back, the identity through
// the metadata; a clone keeps the identity.
template <typename T>
void ExpectRoundTrip(const T& original, const char* needle, bool present) {
    Container metadata = Container::CreateEmpty();
    auto root = NewFillElement();
    ASSERT_TRUE(original.Write(metadata, *root, nullptr));
    const std::string xml = Brm::XmlFile::FromTree(root.get())->ToText();
    EXPECT_EQ(xml.find(needle) != std::string::npos, present) << xml;
    EXPECT_EQ(metadata.GetPropertyText(S::brm::SubFormat), Metadata::Utf8ToWide(original.GetTypeName()));
    EXPECT_EQ(metadata.GetPropertyText(S::brm::Version), L"1.0");
    Container reloaded = Container::LoadText(metadata.SaveText());
    auto back = ReadFill(xml, reloaded);
    ASSERT_TRUE(back) << xml;
    ASSERT_EQ(back->GetKind(), original.GetKind());
    const T& read = static_cast<const T&>(*back);
    EXPECT_EQ(read.identity, original.identity);
    if constexpr (requires { read.layout; }) {
        TileLayout expected = original.layout;
        expected.tileIndex = -1;
        EXPECT_EQ(read.layout, expected);
    }
    if constexpr (requires { read.filters; }) { EXPECT_EQ(read.filters, original.filters); }
    if constexpr (requires { read.crop; }) { EXPECT_EQ(read.crop, original.crop); }
    if constexpr (requires { read.fountain; }) {
        FountainSettings got = read.fountain, want = original.fountain;
        for (int i = 0; i < 6; ++i) EXPECT_NEAR(got.matrix[i], want.matrix[i], 1e-12) << i;
        got.matrix = want.matrix;
        EXPECT_EQ(got, want);
    }
    auto clone = original.Clone();
    EXPECT_EQ(static_cast<const T&>(*clone).identity, original.identity);
}

TEST(FillInfo, EveryKindSurvivesWriteAndRead) {
    BitmapPatternInfo bitmap;
    ExpectRoundTrip(bitmap, "filterInfo", false);
    bitmap.identity.derivedFrom = {BrmUtils::Guid::Create(), BrmUtils::Guid::Create()};
    bitmap.layout = {1, 0.1, 1e10, -3, 4, 33.3, -0.2, true, 7, true, true, L"content/tiles/a\u00e9.png", L"image/png", 3};
    bitmap.filters = {{L"blur", L"2.5"}, {L"tint", L"#ff0000"}, {L"blur", L""}};
    ExpectRoundTrip(bitmap, "filterInfo", true);

    VectorPatternInfo vector;
    vector.layout.tile = L"content/tile.kvd";
    vector.crop = {-5, 6, 1 << 30, -(1 << 30)};
    ExpectRoundTrip(vector, "units=\"pixels\"", true);

    FountainFillInfo fountain;
    fountain.fountain.spread = L"pad";
    fountain.fountain.blend = L"simple";
    ExpectRoundTrip(fountain, "<spread", false);
    auto& f = fountain.fountain;
    f = {L"radial", 0.25, -0.5, *FillMatrix::Compose({-2, 0.5, 0.3, 1.2, 0, 0}), true, L"repeat", L"rgb", 12, 0.7, 3,
         true, {}};
    for (int i = 0; i < 2000; ++i) {
        const double pos = i / 2000.0;
        f.stops[pos] = {{{L"RGB", L"1,2," + BrmPlatform::BrmStringW(std::to_wstring(i))}}, 0.3, L"hsv", 0.1, pos};
    }
    ExpectRoundTrip(fountain, "<reverse_colors>true", true);
}

}  // namespace
