// The drawing reader over generated documents: the links of every form of
// link list, and the failure table.
#include <gtest/gtest.h>

#include "tests/kvd/KvdTestSupport.h"

using namespace TestDocs;
using namespace KvdTest;

namespace {

Summary FullSummary() {
    Summary sum;
    sum.appVersion = 1000;
    sum.productId = 1;
    sum.buildNumber = 42;
    sum.firstFlag = 1;
    sum.secondFlag = 0;
    sum.compressionRatio = 0.5f;
    return sum;
}

// A version 1200 document holding every chunk the reader looks at.
Bytes FullDocument() {
    return Riff(Tag("KVDC"), {
        SumiChunk(FullSummary()),
        VrsnChunk(1200),
        InfoList({{Tag("ICMT"), L"first"}, {Tag("IKEY"), L"k1;k2"}, {Tag("ICMT"), L"second"}}, true),
        UrlChunk({{L"/a.kvd"}, {L"/b.kvd", L""}}, true),
        DocList({TdltChunk(), FontTable(1200, {L"Sans", L"Serif"}), PageConfigChunk(1200, PageConfig{})}),
        PageList(), PageList(), PageList(),
        DispChunk(DibParams{}),
    });
}

}  // namespace

// Every `elbs` of every `elbl` is a link, whatever holds the list: a plain
// `url ` chunk or a `LIST url `, in a compressed section or outside, with
// wide or narrow texts. Empty strings are skipped, the others stay.
TEST(KvdProperties, EveryLinkOfTheLinkList) {
    const std::vector<std::vector<std::wstring>> lists[] = {
        {{L"/a.kvd", L"/b.kvd", L"/c.kvd"}},
        {{L"/a.kvd"}, {L"/b.kvd"}, {L"/c.kvd"}},
        {{L"/a.kvd", L"", L"/b.kvd"}, {L"/c.kvd"}},
        {{L"/odd", L"/a"}, {L"/a.kvd", L""}, {L"", L"/b.kvd", L""}, {L"/c.kvd"}},
    };
    const wchar_t* expected[] = {L"list:/a.kvd|/b.kvd|/c.kvd", L"list:/a.kvd|/b.kvd|/c.kvd",
                                 L"list:/a.kvd|/b.kvd|/c.kvd", L"list:/odd|/a|/a.kvd|/b.kvd|/c.kvd"};
    for (size_t i = 0; i < std::size(lists); ++i) {
        for (uint16_t version : {uint16_t(1000), uint16_t(1200)}) {
            const bool wide = version >= 1200;
            Chunk plain = UrlChunk(lists[i], wide);
            std::vector<Chunk> labels;
            for (const std::vector<std::wstring>& texts : lists[i]) {
                std::vector<Chunk> strings;
                for (const std::wstring& text : texts) strings.push_back(StringChunk(Tag("elbs"), text, wide));
                labels.push_back(ListChunk(Tag("elbl"), std::move(strings)));
            }
            Chunk list = ListChunk(Tag("url "), std::move(labels));
            for (int form = 0; form < 2; ++form) {
                const Chunk& url = form ? list : plain;
                for (bool compressed : {false, true}) {
                    SCOPED_TRACE(testing::Message() << "case " << i << " version " << version << (form ? " LIST" : " plain")
                                                    << (compressed ? " compressed" : ""));
                    std::vector<Chunk> body = {VrsnChunk(version), PageList(), PageList()};
                    // The plain form's inner sizes are bytes, not indices: its section has no table.
                    SectionOptions section;
                    section.table = form == 1;
                    if (compressed)
                        body.push_back(CompressedSection({url, PageList()}, section));
                    else
                        body.push_back(url);
                    InfoPtr info = Open(Riff(Tag(wide ? "KVDC" : "KVDA"), body));
                    ASSERT_NE(info, nullptr);
                    EXPECT_EQ(Get(info.get(), WKvdFile::kLinks), expected[i]);
                    EXPECT_EQ(Get(info.get(), WKvdFile::kPageCount), compressed ? L"i4:2" : L"i4:1");
                }
            }
        }
    }
}

TEST(KvdProperties, BrokenDocumentsReadEmpty) {
    Bytes full = FullDocument();
    Bytes notRiff = full;
    notRiff[3] = 'X';
    Bytes truncated(full.begin(), full.end() - 20);  // inside the thumbnail's pixels
    DibParams bitmapFormat;
    bitmapFormat.format = 2;
    // A header promising 2^31 x 2^31 pixels over a few bytes.
    Chunk absurd = DataChunk(Tag("DISP"), ByteWriter()
                                              .U32(8).U32(40).I32(0x7FFFFFFF).I32(0x7FFFFFFF).U16(1).U16(24)
                                              .Zeros(24 + 64).Take());
    Chunk shortFont = DataChunk(Tag("font"), Bytes(100, 0x41));
    Chunk shortConfig = DataChunk(Tag("mcfg"), Bytes(30, 0));
    // The thumbnail's size field counts bytes the file no longer has.
    Chunk pastEnd = DispChunk(DibParams{});
    pastEnd.sizeField = uint32_t(pastEnd.data.size());
    pastEnd.data.resize(60);
    struct Case {
        const char* name;
        Bytes bytes;
    };
    const Case cases[] = {
        {"not RIFF", notRiff},
        {"unknown form", Riff(Tag("ABCD"), {VrsnChunk(0), PageList()})},
        {"truncated", truncated},
        {"wrong vrsn", Riff(Tag("KVDC"), {VrsnChunk(1100), PageList()})},
        {"no chunk at all", Riff(Tag("KVDC"), {})},
        {"thumbnail of format 2", Riff(Tag("KVDC"), {VrsnChunk(1200), DispChunk(bitmapFormat)})},
        {"absurd DIB", Riff(Tag("KVDC"), {VrsnChunk(1200), absurd})},
        {"chunk past the end", Riff(Tag("KVDC"), {VrsnChunk(1200), pastEnd})},
        {"short font record", Riff(Tag("KVDC"), {VrsnChunk(1200), DocList({ListChunk(Tag("fntt"), {shortFont})})})},
        {"short page configuration", Riff(Tag("KVD8"), {VrsnChunk(800), DocList({shortConfig})})},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        InfoPtr info = Open(c.bytes);
        ASSERT_NE(info, nullptr);  // the factory does not read; the getters find nothing
        for (const PROPERTYKEY& key : {WKvdFile::kPageCount, WKvdFile::kResolutionUnit, WKvdFile::kFirstFlag}) {
            EXPECT_EQ(Get(info.get(), key), L"empty");
        }
        DibBlock dib = info->ReadPreviewDib();
        EXPECT_EQ(dib.data, nullptr);
        std::free(dib.data);
        EXPECT_EQ(info->GetBitmap(SIZE{16, 16}, 0, false, nullptr), nullptr);
    }
}

