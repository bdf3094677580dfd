// Part names through the link table, external containers and their bounds,
// the part table's document and order, and previews.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "tests/zipcontainer/ContainerTestSupport.h"

using namespace ctest;
using BrmUtils::PixelFormat;

namespace {

std::string FileUrl(const std::string& path) { return "file://" + path; }

TEST(ContainerParts, ReferenceForms) {
    ziptest::TempDir dir;
    ziptest::WriteFile(dir / "lib.zip", Zip({{"content/b.xml", "B"}}));
    ziptest::WriteFile(dir / "plain.txt", ziptest::Bytes("P"));
    setenv("FI_CONTAINER_TEST_DIR", dir.Path().c_str(), 1);
    const std::string lib = FileUrl(dir / "lib.zip");
    auto c = Open(Zip({{"META-INF/links.xml",
                        Links({{"three", "self:///content/a"},
                               {"two", "self://content/a"},
                               {"inner", lib + "#content/b.xml"},
                               {"query", lib + "?/content/b.xml"},
                               {"plain", FileUrl(dir / "plain.txt")},
                               {"env", "file://%FI_CONTAINER_TEST_DIR%/plain.txt"},
                               {"searched", "file:///ROOT/lib.zip#content/b.xml"},
                               {"fallback", FileUrl(dir / "missing.zip") + "#x;self:///content/a"},
                               {"selfmiss", "self:///content/none;self:///content/a"},
                               {"unknown", "http://example.com/a"},
                               {"directory", FileUrl(dir.Path())},
                               {"META-INF/links.xml", "self:///content/a"}})},
                 {"content/a", "A"}}));
    ASSERT_TRUE(c);
    static_cast<ZipContainerImpl&>(*c).SetSearchPaths({{L"/ROOT", W(dir.Path())}});
    const std::pair<const char*, const char*> cases[] = {
        {"three", "A"},  {"two", "A"},         {"inner", "B"},       {"query", "B"},
        {"plain", "P"},  {"env", "P"},         {"searched", "B"},    {"fallback", "A"},
        {"content/a", "A"}, {"selfmiss", "<null>"}, {"unknown", "<null>"}, {"directory", "<null>"},
        {"nothing", "<null>"},
    };
    for (const auto& [name, expected] : cases) EXPECT_EQ(Read(*c, name), expected) << name;
    EXPECT_NE(Read(*c, "META-INF/links.xml"), "A");  // the table never redirects itself

    ContainerOptions refuse;
    refuse.refuseFileLinks = true;
    auto guarded = Open(Zip({{"META-INF/links.xml", Links({{"inner", lib + "#content/b.xml"},
                                                             {"both", lib + "#content/b.xml;self:///content/a"}})},
                             {"content/a", "A"}}),
                        true, refuse);
    EXPECT_EQ(Read(*guarded, "inner"), "<null>");
    EXPECT_EQ(Read(*guarded, "both"), "A");
}

TEST(ContainerParts, ListingMatchesWholeNamesIgnoringCase) {
    auto c = Open(Zip({{"META-INF/links.xml", Links({{"content/linked", "self:///x"}, {"Content/A.xml", "self:///x"}})},
                       {"content/a.xml", "12345"},
                       {"other", ""}}));
    std::vector<std::wstring> names;
    for (const auto& n : c->ListPartNames(L"CONTENT/.*")) names.push_back(n.StdString());
    EXPECT_EQ(names, (std::vector<std::wstring>{L"content/a.xml", L"content/linked"}));
    EXPECT_TRUE(c->ListPartNames(L"content").empty());
    auto parts = c->ListParts(L"content/a\\.xml");
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_EQ(parts[0].uncompressedSize, 5u);
    EXPECT_EQ(parts[0].crc32, ziptest::Crc32("12345"));
    EXPECT_TRUE(c->ListParts(L"(unclosed").empty());
}

TEST(ContainerParts, PartTableDocument) {
    PartSet set;
    Metadata::MultiLanguageString two;
    two.Set(L"en", L"a]b\\c");
    two.Set(L"de", L"x;y");
    Metadata::MultiLanguageString one;
    one.Set(L"", L"plain");
    set.Set(L"p2", {L"page", L"image/png", {}, 2, 10, 20});
    set.Set(L"p1", {L"Page", L"image/png", two, 1, -1, 5});
    set.Set(L"m", {L"main", L"x/y", one, -1, -1, -1});
    set.Set(L"e", {L"", L"", {}, -2, -1, -1});
    set.Set(L"t", {L"thumbnail", L"image/jpeg", {}, -1, 4, 4});
    std::vector<std::wstring> order;
    for (const auto& [name, r] : set.SortedForWriting()) order.push_back(name.StdString());
    EXPECT_EQ(order, (std::vector<std::wstring>{L"e", L"m", L"p1", L"p2", L"t"}));

    auto document = set.ToDocument();
    std::string text = document->ToText();
    EXPECT_NE(text.find("full-path=\"p2\" media-type=\"image/png\" brm:file-kind=\"page\" brm:index=\"2\" "
                        "brm:image-width=\"10\" brm:image-height=\"20\""),
              std::string::npos)
        << text;
    EXPECT_EQ(text.find("image-width=\"-1\""), std::string::npos);
    PartSet back;
    Brm::XmlFile parsed(text);
    ASSERT_TRUE(back.Load(parsed));
    for (auto [name, record] : set.Parts()) {
        // A negative index and a size with a side below 1 are not written.
        record.index = std::max(record.index, -1);
        if (record.width < 1 || record.height < 1) record.width = record.height = -1;
        EXPECT_EQ(*back.Find(name), record) << name.StdString();
    }
    EXPECT_EQ(PartSet::CaptionsToText(one), L"plain");
    EXPECT_EQ(PartSet::CaptionsFromText(L"no[form").Get(L""), L"no[form");
}

TEST(ContainerParts, FindBestPart) {
    auto c = ZipContainerImpl::CreateOnStream(ziptest::EmptyStream().get());
    const std::pair<const wchar_t*, PartRecord> records[] = {
        {L"a", {L"page", L"", {}, 1, 200, 200}}, {L"b", {L"page", L"", {}, 1, 50, 50}},
        {L"c", {L"page", L"", {}, 1, -1, 100}},  {L"d", {L"page", L"", {}, 2, 90, 90}},
        {L"e", {L"PAGE", L"", {}, 1, 1000, 10}},
    };
    for (const auto& [name, record] : records) c->SetPartRecord(name, &record);
    EXPECT_EQ(c->FindBestPart(L"page", 100, 100, 1).first, L"a");  // tie of 2 and 2: table order
    EXPECT_EQ(c->FindBestPart(L"page", 100, 100, -1).first, L"d");
    EXPECT_EQ(c->FindBestPart(L"page", 60, 60, 1).first, L"b");
    EXPECT_EQ(c->FindBestPart(L"page", 0, 0, 1).first, L"e");  // no bound: the largest
    EXPECT_TRUE(c->FindBestPart(L"none", 10, 10, -1).first.IsEmpty());
    EXPECT_EQ(c->GetKindIndices(L"Page"), (std::set<int32_t>{1, 2}));
}

TEST(ContainerParts, PreviewsByPixelFormatAndLayout) {
    struct Case {
        bool legacy;
        PixelFormat format;
        bool lossless;
        const wchar_t* name;
        const wchar_t* type;
    };
    const Case cases[] = {
        {false, PixelFormat::Cmyk32, true, L"previews/page3.tif", L"image/tiff"},
        {false, PixelFormat::Argb32, false, L"previews/page3.png", L"image/png"},
        {false, PixelFormat::Rgb24, true, L"previews/page3.png", L"image/png"},
        {false, PixelFormat::Rgb24, false, L"previews/page3.jpg", L"image/jpeg"},
        {true, PixelFormat::Argb32, false, L"metadata/thumbnails/page3.bmp", L"image/bmp"},
    };
    for (const auto& c : cases) {
        auto stream = ziptest::EmptyStream();
        {
            auto container = ZipContainerImpl::CreateOnStream(stream.get());
            container->InitNew(L"x/y", c.legacy, false);
            ASSERT_TRUE(container->AddPreview(*Bitmap(30, 20, c.format), L"page", {}, 3, c.lossless));
            ASSERT_TRUE(container->AddThumbnail(*Bitmap(8, 8, PixelFormat::Rgb24)));
            ASSERT_TRUE(container->Commit());
        }
        auto container = Open(ziptest::Contents(stream.get()));
        NamedPartRecord record = container->GetPreviewRecord(L"page", -1, -1, 3);
        EXPECT_EQ(record.first, c.name);
        EXPECT_EQ(record.second.mediaType, c.type);
        auto image = container->GetPreviewImage(L"page", -1, -1, 3);
        ASSERT_TRUE(image) << record.first.StdString().size();
        EXPECT_EQ(image->Width(), 30);
        auto thumb = container->GetThumbnailImage();
        ASSERT_TRUE(thumb);
        EXPECT_EQ(thumb->Height(), 8);
    }
}

// A preview whose header claims an absurd size is refused before decoding.
TEST(ContainerParts, AbsurdPreviewIsRefused) {
    std::string png("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\x00\x0f\x42\x40\x00\x0f\x42\x40\x08\x02\0\0\0", 29);
    uint32_t crc = ziptest::Crc32(std::string_view(png).substr(12));  // 1 000 000 x 1 000 000, valid CRC
    for (int shift = 24; shift >= 0; shift -= 8) png += char(crc >> shift);
    png += std::string("\0\0\0\0IEND\xae\x42\x60\x82", 12);
    const std::string table = "<container xmlns:b=\"urn:brimo:namespaces:zcf:xmlns:container\"><rootfiles><rootfile "
                              "full-path=\"previews/thumbnail.png\" b:file-kind=\"thumbnail\" b:image-width=\"1\" "
                              "b:image-height=\"1\"/></rootfiles></container>";
    auto c = Open(Zip({{"META-INF/container.xml", table}, {"previews/thumbnail.png", png}}));
    EXPECT_EQ(c->GetThumbnailRecord().first, L"previews/thumbnail.png");
    EXPECT_FALSE(c->GetThumbnailImage());
}

}  // namespace
