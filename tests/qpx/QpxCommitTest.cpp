// Write-back of paint images over their file: the comment and open
// properties come back, the file keeps its bytes up to the old block, and
// a commit that cannot finish leaves the file as it was and no temporary.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/Files.h"
#include "tests/qpx/QpxTestUtil.h"
#include "tests/support/zip/ZipTestArchive.h"

using namespace QpxTest;
namespace PK = PropertyKeys;
namespace fs = std::filesystem;

namespace {

// A file a.qpx in a folder of its own.
struct Folder : ziptest::TempDir {
    const std::string file = *this / "a.qpx";
    std::string Put(const Bytes& bytes) const { return ziptest::WriteFile(file, bytes), file; }
    Bytes Bytes_() const { return ziptest::ReadFile(file); }
    size_t Files() const { return List().size(); }
};

InfoPtr OpenPath(const std::string& path) {
    return InfoPtr(IFileInfo::GetInst(PathFromNative(path.c_str()).c_str(), FileFormatPaint));
}

uint32_t U32(const Bytes& b, size_t at) { return b[at] | b[at + 1] << 8 | b[at + 2] << 16 | uint32_t(b[at + 3]) << 24; }

}  // namespace

TEST(QpxCommit, CommentComesBackAndTheFileKeepsItsBytesUpToTheOldBlock) {
    const PROPERTYKEY other = {PK::kImage, 900};
    PROPVARIANT number{};
    number.vt = VT_I4, number.lVal = 42;
    for (const bool withBlock : {true, false}) {
        for (const bool doubled : {false, true}) {
            SCOPED_TRACE(std::string(withBlock ? "block" : "no block") + (doubled ? ", doubled" : ""));
            Image image;
            image.doubled = doubled;
            image.description = "picture";
            image.objects = {Object{QpxFormat::kKindBackground, 64, 32, 24, 0, {}, {}}};
            if (withBlock) {
                image.block = Meta({{other, &number}});
                for (const Bytes& b : {Record(QpxFormat::kIntentId, {1, 0, 0, 0}), EndMark()})
                    image.block.insert(image.block.end(), b.begin(), b.end());
            }
            const Bytes original = Write(image);
            const size_t header = doubled ? QpxFormat::kHeaderSize : 0;
            const size_t oldEnd = withBlock ? U32(original, header + QpxFormat::kTailOffsetAt) : original.size();
            Folder folder;
            const std::string path = folder.Put(original);
            InfoPtr info = OpenPath(path);
            ASSERT_EQ(KvdTest::SetText(info.get(), PK::kComments, L"\u00c9crit"), S_OK);
            ASSERT_EQ(info->Commit(), S_OK);
            EXPECT_EQ(Get(info.get(), PK::kComments), L"text:\u00c9crit");  // the reader goes on with the new file
            info = OpenPath(path);
            EXPECT_EQ(Get(info.get(), PK::kComments), L"text:\u00c9crit");
            EXPECT_EQ(Get(info.get(), other), withBlock ? L"i4:42" : L"empty");
            EXPECT_EQ(Get(info.get(), PK::kRenderingIntent), withBlock ? L"ui4:1" : L"ui4:0");
            EXPECT_EQ(Get(info.get(), PK::kImageWidth), L"ui4:64");
            Bytes now = folder.Bytes_();
            ASSERT_GT(now.size(), oldEnd);
            EXPECT_EQ(U32(now, header + QpxFormat::kTailOffsetAt), oldEnd);
            for (size_t at : {size_t(0), header}) std::memcpy(now.data() + at + QpxFormat::kTailOffsetAt, original.data() + at + QpxFormat::kTailOffsetAt, 4);
            EXPECT_TRUE(std::equal(original.begin(), original.begin() + long(oldEnd), now.begin()));
            EXPECT_EQ(folder.Files(), 1u);
        }
    }
}

TEST(QpxCommit, OlderGenerationsAndFailures) {
    Folder folder;
    Image image;
    image.magic = "QPX8FILE";
    image.objects = {Object{QpxFormat::kKindBackground, 64, 32, 24, 0, {}, {}}};
    const Bytes older = Write(image);
    InfoPtr info = OpenPath(folder.Put(older));
    EXPECT_TRUE(info->IsReadOnly(&PK::kComments));
    EXPECT_EQ(info->Commit(), S_OK);  // nothing to write: the same bytes
    EXPECT_EQ(folder.Bytes_(), older);

    // The file shrinks behind the reader's back: the copy comes up short.
    image.magic = "QPX9FILE";
    image.block = EndMark();
    const Bytes newer = Write(image);
    info = OpenPath(folder.Put(newer));
    KvdTest::SetText(info.get(), PK::kComments, L"lost");
    const Bytes cut(newer.begin(), newer.end() - 20);
    fs::resize_file(folder.file, cut.size());
    EXPECT_EQ(info->Commit(), E_FAIL);
    EXPECT_EQ(folder.Bytes_(), cut);
    EXPECT_EQ(folder.Files(), 1u);

    // The TIFF generation has no place for properties; a stream without a
    // destination factory has no file to replace.
    Bytes tiff = WriteTiff({TiffDirectory{}});
    tiff.resize(400);
    info = OpenPath(folder.Put(tiff));
    EXPECT_EQ(info->Commit(), STG_E_ACCESSDENIED);
    EXPECT_EQ(folder.Bytes_(), tiff);
    EXPECT_EQ(Open(newer)->Commit(), E_FAIL);
}
