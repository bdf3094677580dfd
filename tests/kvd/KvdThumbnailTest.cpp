// The thumbnail of the drawing reader (packed DIB at every bit depth, long
// headers, bitmaps and icons made from it) and the page configuration of
// every version band, read through the scanner itself.
#include <gtest/gtest.h>

#include "fileinfo/KvdDocumentInfo.h"
#include "riff/RiffReader.h"
#include "tests/kvd/KvdTestSupport.h"

using namespace TestDocs;
using namespace KvdTest;

namespace {

// The scanner run over a document, as the reader runs it.
struct Scanned {
    std::unique_ptr<KvdDocumentInfo> info;
    bool ok = false;
};

Scanned Scan(const Bytes& bytes, uint32_t mode = 6) {
    StreamPtr stream = StreamOnBytes(bytes);
    auto reader = std::make_unique<KvdFileIO::RiffReader>(stream.get());
    uint32_t form = 0;
    Scanned result;
    if (!reader->Open(form)) return result;
    result.info = std::make_unique<KvdDocumentInfo>(reader.release(), form);
    result.ok = result.info->Scan(mode);
    return result;
}

}  // namespace

TEST(KvdThumbnail, ColourProfilesOnRequest) {
    Bytes document = Riff(Tag("KVDC"), {VrsnChunk(1200), IccpList({1, 2, 3}, {4, 5})});
    Scanned plain = Scan(document);
    ASSERT_TRUE(plain.ok);
    EXPECT_TRUE(plain.info->iccDocument.empty());
    Scanned profiles = Scan(document, KvdDocumentInfo::kScanProfiles);
    ASSERT_TRUE(profiles.ok);
    EXPECT_EQ(profiles.info->iccDocument, Bytes({1, 2, 3}));
    EXPECT_EQ(profiles.info->iccSystem, Bytes({4, 5}));
}

TEST(KvdPageConfig, EveryVersionBand) {
    struct Case {
        uint32_t form;
        uint16_t version;
        uint16_t widthUnit;
        double width, height;  // inches
        double resolutionX, resolutionY;
    };
    const double none = 0.0;
    const Case cases[] = {
        {Tag("KVD4"), 404, 1, 0, 0, none, none},  // nothing is read
        {Tag("KVD5"), 501, 1, 8.5, 11, 300, 300},
        {Tag("KVD5"), 501, 2, 8500 * 10000.0 / 254000 / 1000, 11, 300, 300},
        {Tag("KVD5"), 501, 11, 8500 / 254000.0 / 1000, 11, 300, 300},  // unknown unit: the number as it is
        {Tag("kvd6"), 600, 1, 8.5, 11, 300, 300},
        {Tag("KVD7"), 700, 1, 8.5, 11, 600, 300},
        {Tag("KVD8"), 800, 1, 8.5, 11, 600, 300},
        {Tag("kvd8"), 801, 1, 8.5, 11, 600, 300},
        {Tag("KVD9"), 900, 1, 8.5, 11, 600, 300},
        {Tag("KVDA"), 1000, 1, 8.5, 11, 600, 300},
        {Tag("KVDB"), 1100, 1, 8.5, 11, 600, 300},
        {Tag("TCNA"), 1150, 1, 8.5, 11, 600, 300},
        {Tag("KVDC"), 1200, 1, 8.5, 11, 600, 300},
        {Tag("KVTD"), 1250, 1, 8.5, 11, 600, 300},
        {Tag("KVDD"), 1300, 1, 8.5, 11, 600, 300},
        {Tag("KVDN"), 2200, 1, 8.5, 11, 600, 300},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "version " << c.version << " unit " << c.widthUnit);
        PageConfig config;
        config.widthUnit = c.widthUnit;
        config.resolutionX = 23622048;  // 600 dpi
        for (uint32_t tag : {Tag("mcfg"), Tag("bcfg")}) {
            Scanned s = Scan(Riff(c.form, {VrsnChunk(c.version), DocList({PageConfigChunk(c.version, config, tag)})}));
            ASSERT_TRUE(s.ok);
            EXPECT_NEAR(s.info->pageWidth, c.width, 1e-9);
            EXPECT_NEAR(s.info->pageHeight, c.height, 1e-9);
            EXPECT_NEAR(s.info->resolutionX, c.resolutionX, 1e-3);
            EXPECT_NEAR(s.info->resolutionY, c.resolutionY, 1e-3);
        }
    }
}

