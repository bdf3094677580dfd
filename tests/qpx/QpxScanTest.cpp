// The scan of paint images: each generation and record flag, and files that
// lie.
#include <gtest/gtest.h>

#include "fileinfo/WQpxFile.h"
#include "tests/qpx/QpxTestUtil.h"

using namespace QpxTest;
namespace PK = PropertyKeys;

namespace {

Image WithBackground(const char* magic, uint32_t flags) {
    Image image;
    image.magic = magic;
    image.flags = flags;
    image.objects = {TextObject({{"Courier", u""}}), Object{QpxFormat::kKindBackground, 640, 480, 24, 0, {}, {}}};
    return image;
}

}  // namespace

TEST(QpxScan, EveryGenerationAndRecordLayout) {
    struct Case { const char* magic; uint32_t flags, skip, extendedSkip; bool doubled, tableAtEnd; uint32_t name; };
    const Case cases[] = {
        {"QPX7FILE", 0, 0, 0, false, false, 1043},         {"QPX8FILE", 0x100, 0, 5, false, false, 1042},
        {"QPX9FILE", 0x200, 7, 0, false, false, 1041},     {"QPX9FILE", 0x400, 0, 0, false, true, 1041},
        {"QPX9FILE", 0x700, 3, 9, true, true, 1045},       {"QPX8FILE", 0x500, 1, 0, true, false, 1042},
    };
    for (const Case& c : cases) {
        Image image = WithBackground(c.magic, c.flags);
        image.skip = c.skip, image.extendedSkip = c.extendedSkip, image.doubled = c.doubled;
        image.tableAtEnd = c.tableAtEnd;
        image.wideDescription = u"wide";
        InfoPtr info = Open(Write(image));
        SCOPED_TRACE(std::string(c.magic) + " flags " + std::to_string(c.flags));
        EXPECT_EQ(Get(info.get(), PK::kFormatVersion), Resource(c.name));
        EXPECT_EQ(Get(info.get(), PK::kImageWidth), L"ui4:640");
        EXPECT_EQ(Get(info.get(), PK::kDimensions), L"text:640 x 480");
        EXPECT_EQ(Get(info.get(), PK::kImageFonts), L"list:Courier");
        EXPECT_EQ(info->HasOpenProperties(), std::string(c.magic) == "QPX9FILE");
        EXPECT_EQ(info->IsReadOnly(&PK::kComments), std::string(c.magic) != "QPX9FILE");
    }
}

TEST(QpxScan, TiffShortAndUnknownFiles) {
    Bytes tiff = WriteTiff({TiffDirectory{}});
    tiff.resize(400, 0);
    InfoPtr info = Open(tiff);
    EXPECT_EQ(Get(info.get(), PK::kFormatVersion), Resource(1044));
    EXPECT_EQ(Get(info.get(), PK::kImageWidth), L"ui4:0");
    EXPECT_EQ(Get(info.get(), PK::kColourProfile), L"text:");
    info = Open(Bytes(315, 'Q'));
    EXPECT_EQ(Get(info.get(), PK::kFormatVersion), L"empty");
    EXPECT_EQ(Get(info.get(), PK::kResolutionUnit), L"empty");
}

TEST(QpxScan, BrokenBlocksAndTablesLeaveEveryPropertyEmpty) {
    const Bytes brokenBlocks[] = {
        Record(QpxFormat::kMetaId, {19, 0, 0, 0}),                    // length under 20
        Record(QpxFormat::kMetaId, {200, 0, 0, 0, 1, 2, 3}),           // length past the record
        Record(QpxFormat::kMetaId, {1, 2}),                            // not even a length
        Record(QpxFormat::kIntentId, {1, 0}),                          // intent under four bytes
        Record(QpxFormat::Id("zzzz"), {1, 2, 3}),                      // no end mark
        Bytes{'M', 'E', 'T', 'A', 0xFF, 0xFF, 0xFF, 0x7F},              // size beyond the file
    };
    for (const Bytes& block : brokenBlocks) {
        Image image = WithBackground("QPX9FILE", 0);
        image.block = block;
        InfoPtr info = Open(Write(image));
        EXPECT_EQ(Get(info.get(), PK::kImageWidth), L"empty");
        EXPECT_EQ(Get(info.get(), PK::kComments), L"empty");
    }
    // A table of billions of objects, and offsets past the end or wrapping round.
    Bytes file = Write(WithBackground("QPX9FILE", 0));
    for (const uint64_t patch : {0xFFFFFFFFull, 0ull, 1ull}) {
        Bytes broken = file;
        if (patch == 0xFFFFFFFFull) {
            std::memset(broken.data() + QpxFormat::kObjectCountAt, 0xFF, 4);
        } else {
            std::memset(broken.data() + QpxFormat::kHeaderSize + 8 * patch, 0xFF, 8 - patch);
        }
        EXPECT_EQ(Get(Open(broken).get(), PK::kImageWidth), L"empty");
        EXPECT_TRUE(Pixels(broken).empty());
    }
}
