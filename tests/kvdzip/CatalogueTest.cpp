// The container drawing reader's catalogue and text chunks over documents of
// both layouts, the previews, and what broken documents answer.
#include <gtest/gtest.h>

#include "fileinfo/PropertyKeys.h"
#include "fileinfo/ResourceManager.h"
#include "tests/kvd/KvdTestSupport.h"
#include "tests/kvdzip/KvdZipTestSupport.h"
#include "tests/platform/EnvGuard.h"

namespace {

using KvdTest::Get;
using namespace kvdziptest;
namespace Keys = PropertyKeys;

std::wstring Res(uint32_t id) { return ShellExt::ResourceManager::Instance().LoadStringW(id).StdString(); }

// Sorted resource texts as a list.
std::wstring Kinds(std::vector<uint32_t> ids) {
    std::vector<std::wstring> names;
    for (uint32_t id : ids) names.push_back(Res(id));
    std::sort(names.begin(), names.end());
    std::wstring text = L"list:";
    for (size_t i = 0; i < names.size(); ++i) text += (i ? L"|" : L"") + names[i];
    return text;
}

struct Row {
    const char* what;
    PROPERTYKEY key;
    std::wstring current;  // primary value in the current layout
    std::wstring legacy;   // the same in the legacy layout
};

class Catalogue : public ::testing::Test {
protected:
    // English, in a locale every system has.
    void SetUp() override { env.Set("LC_ALL", "C"); }
    EnvGuard env;
};

TEST_F(Catalogue, EveryRowInBothLayouts) {
    const Row rows[] = {
        {"title", Keys::kTitle, L"text:Garden plan", L"text:Garden plan"},
        {"subject", Keys::kSubject, L"text:Spring planting", L"text:Spring planting"},
        // Every language's keywords, German before English; the legacy form has one text.
        {"keywords", Keys::kKeywords, L"list:Garten|Plan|garden|plan", L"list:garden|plan"},
        {"comments", Keys::kComments, L"text:Second draft", L"text:Second draft"},
        {"category", Keys::kCategory, L"text:Flyers", L"text:Flyers"},
        {"author", Keys::kAuthor, L"list:Ann Example|Ben Example", L"list:Ann Example|Ben Example"},
        {"last author", Keys::kLastAuthor, L"text:Ben Example", L"text:Ben Example"},
        {"application", Keys::kApplication, L"text:Plotra", L"text:Plotra"},
        {"app version", Keys::kAppVersion, L"text:22.0.0.601", L"text:22.0.0.601"},
        {"format version", Keys::kFormatVersion, L"text:22.00", L"text:22.00"},
        {"revision", Keys::kRevision, L"text:4", L"text:4"},
        {"copyright", Keys::kCopyright, L"text:(c) Example Gardens", L"text:(c) Example Gardens"},
        {"pages", Keys::kPageCount, L"i4:2", L"i4:2"},
        {"paragraphs", Keys::kParagraphCount, L"i4:3", L"i4:3"},
        {"characters", Keys::kCharCount, L"i4:64", L"i4:64"},
        {"resolution x", Keys::kResolutionX, L"r8:300", L"r8:300"},
        {"resolution y", Keys::kResolutionY, L"r8:150", L"r8:150"},
        {"dimensions", Keys::kDimensions, L"text:210 x 297 mm", L"text:210 x 297 mm"},
        {"fonts", Keys::kFonts, L"list:Serif|Sans", L"list:Serif|Sans"},
        {"languages", Keys::kLanguages, L"list:English (United States)|German (Germany)",
         L"list:English (United States)|German (Germany)"},
        {"page size", Keys::kPageSize, L"text:A4", L"text:A4"},
        {"orientation", Keys::kOrientation, L"ui4:2", L"ui4:2"},
        {"fonts embedded", Keys::kFontsEmbedded, L"bool:1", L"bool:1"},
        {"objects", Keys::kObjectCount, L"i4:9", L"i4:9"},
        {"links", Keys::kLinks, L"list:/plans/site.kvd|/plans/roses.png", L"list:/plans/site.kvd|/plans/roses.png"},
        {"page names", Keys::kPageNames, L"list:Front|Back", L"list:Front|Back"},
        {"layer names", Keys::kLayerNames, L"list:Beds|Paths", L"list:Beds|Paths"},
        {"object names", Keys::kObjectNames, L"list:Rose bed", L"list:Rose bed"},
        {"object kinds", Keys::kObjectKinds, Kinds({1007, 1008, 1017, 1018}), Kinds({1007, 1008, 1017, 1018})},
        {"fills", Keys::kFills, Kinds({1020, 1021}), Kinds({1020, 1021})},
        {"outlines", Keys::kOutlines, Kinds({1026, 1027}), Kinds({1026, 1027})},
        {"effects", Keys::kEffects, Kinds({1031, 1039}), Kinds({1031, 1039})},
        {"styles", Keys::kStyles, L"list:Heading|Body", L"list:Heading|Body"},
        {"palettes", Keys::kPalettes, L"list:Default|Garden", L"list:Default|Garden"},
        {"colours", Keys::kColours, L"list:Black|Green|Rose", L"list:Black|Green|Rose"},
        {"spot colours", Keys::kSpotColours, L"list:Spot Green", L"list:Spot Green"},
        {"rgb profile", Keys::kRgbProfile, L"text:sRGB", L"text:sRGB"},
        {"grey profile", Keys::kGreyProfile, L"text:Dot Gain 20%", L"text:Dot Gain 20%"},
        {"colour mode", Keys::kDocumentColourMode, L"ui4:1", L"ui4:1"},
        {"intent", Keys::kRenderingIntent, L"ui4:2", L"ui4:2"},
        {"unit", Keys::kResolutionUnit, L"i2:2", L"i2:2"},
        {"type", Keys::kTemplateType, L"text:flyer", L"text:flyer"},
        {"industry", Keys::kTemplateIndustry, L"text:gardening", L"text:gardening"},
    };
    for (bool legacy : {false, true}) {
        InfoPtr info = OpenBytes(kvdzip::Build(kvdzip::FullDocument(legacy)));
        ASSERT_TRUE(info) << legacy;
        ASSERT_TRUE(IsContainerReader(info.get()));
        for (const Row& row : rows) {
            EXPECT_EQ(Get(info.get(), row.key), legacy ? row.legacy : row.current)
                << row.what << (legacy ? " (legacy)" : " (current)");
        }
        // The display forms of the numbered settings and of the lists.
        EXPECT_EQ(Get(info.get(), Keys::kOrientation, true), L"text:" + Res(1056));
        EXPECT_EQ(Get(info.get(), Keys::kDocumentColourMode, true), L"text:" + Res(1049));
        EXPECT_EQ(Get(info.get(), Keys::kRenderingIntent, true), L"text:" + Res(1053));
        EXPECT_EQ(Get(info.get(), Keys::kFonts, true), L"text:Serif; Sans");

        Collector chunks;
        EXPECT_EQ(info->EnumTextChunks(chunks), S_OK);
        const std::vector<std::wstring> expected = {L"4/1033/Garden plan", L"3/1033/Roses by the gate",
                                                    L"3/1031/Rosen am Tor", L"4/1033/Legend", L"0/1033/Path"};
        EXPECT_EQ(chunks.chunks, expected) << legacy;
    }
}

TEST_F(Catalogue, Previews) {
    for (bool legacy : {false, true}) {
        InfoPtr info = OpenBytes(kvdzip::Build(kvdzip::FullDocument(legacy)));
        ASSERT_TRUE(info);
        uint8_t alpha = 7;
        // Page 1 is wide, page 2 tall; each is fitted into the box keeping its shape.
        EXPECT_EQ(BitmapSize(info->GetPageBitmap(1, {100, 100}, 0, false, &alpha)), "100x70") << legacy;
        EXPECT_EQ(alpha, 0);
        EXPECT_EQ(BitmapSize(info->GetPageBitmap(2, {100, 100}, 0, false, nullptr)), "70x100") << legacy;
        EXPECT_EQ(BitmapSize(info->GetPageBitmap(3, {100, 100}, 0, false, nullptr)), "null") << legacy;
        EXPECT_EQ(BitmapSize(info->GetBitmap({512, 512}, 0, false, nullptr)), "256x181") << legacy;
        EXPECT_EQ(BitmapSize(info->GetBitmap({512, 512}, 0, true, nullptr)), "512x362") << legacy;
        HICON icon = info->GetIcon(nullptr, 32);
        ASSERT_TRUE(icon);
        EXPECT_EQ(icon->color->width, 32);
        EXPECT_EQ(icon->color->height, 32);
        EXPECT_EQ(icon->color->bits[3], 0) << "the corner stays transparent";
        DestroyIcon(icon);
    }
    // A thumbnail whose recorded name is a link to a member under content/.
    InfoPtr linked = OpenBytes(kvdzip::Build(kvdzip::LinkedThumbnailDocument()));
    ASSERT_TRUE(linked);
    EXPECT_EQ(BitmapSize(linked->GetBitmap({160, 160}, 0, false, nullptr)), "160x120");
}

TEST_F(Catalogue, BrokenDocuments) {
    kvdzip::Document noThumbnail = kvdzip::FullDocument(false);
    noThumbnail.images[0].bytes = {'P', 'N', 'G', 0};  // does not decode
    kvdzip::Document badXml = kvdzip::FullDocument(false);
    badXml.metadata = "<x:xmpmeta><rdf:RDF><unclosed>";
    badXml.textInfo = "not xml at all";
    kvdzip::Document wrongForm = kvdzip::FullDocument(false);
    wrongForm.metadata = kvdzip::FullMetadata(kvdzip::Facts{}, false);
    const std::string::size_type pages = wrongForm.metadata->find("<kvdinfo:NumPages>2<");
    ASSERT_NE(pages, std::string::npos);
    wrongForm.metadata->replace(pages, 20, "<kvdinfo:NumPages>two<");
    kvdzip::Document hugeText = kvdzip::FullDocument(false);
    hugeText.textInfo = "<a>" + std::string(17u << 20, 'x') + "</a>";
    kvdzip::Document foreignZip;
    foreignZip.mimeType = "application/zip";
    foreignZip.writePartTable = false;

    struct Case {
        const char* what;
        const kvdzip::Document* doc;
        const wchar_t* pages;
        size_t chunks;
        bool thumbnail;
    };
    const Case cases[] = {
        {"thumbnail that does not decode", &noThumbnail, L"i4:2", 5, false},
        {"malformed XML", &badXml, L"i4:0", 0, true},
        {"number of the wrong form", &wrongForm, L"i4:0", 5, true},
        {"text part beyond the parser's limit", &hugeText, L"i4:2", 0, true},
        {"zip of no known kind", &foreignZip, L"i4:0", 0, false},
    };
    for (const Case& c : cases) {
        InfoPtr info = OpenBytes(kvdzip::Build(*c.doc));
        ASSERT_TRUE(info) << c.what;
        EXPECT_TRUE(IsContainerReader(info.get())) << c.what;
        EXPECT_EQ(Get(info.get(), Keys::kPageCount), c.pages) << c.what;
        Collector chunks;
        info->EnumTextChunks(chunks);
        EXPECT_EQ(chunks.chunks.size(), c.chunks) << c.what;
        EXPECT_EQ(BitmapSize(info->GetBitmap({64, 64}, 0, false, nullptr)) != "null", c.thumbnail) << c.what;
    }
    // Bytes that are no zip at all go to the RIFF reader, which finds nothing.
    InfoPtr riff = OpenBytes(std::vector<uint8_t>(100, 'x'));
    ASSERT_TRUE(riff);
    EXPECT_FALSE(IsContainerReader(riff.get()));
}

}  // namespace
