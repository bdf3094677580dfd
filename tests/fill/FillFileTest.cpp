// The fill reader's commit on a host's stream: a refused destination, then
// a title written there and read back with the thumbnail.
#include <gtest/gtest.h>

#include "fileinfo/PropertyKeys.h"
#include "platform/Bitmap.h"
#include "tests/kvd/KvdTestSupport.h"
#include "tests/support/fill/FillFiles.h"
#include "tests/support/zip/ZipTestArchive.h"

namespace {

namespace K = PropertyKeys;
using ziptest::Ref;
using KvdTest::Get;
using KvdTest::InfoPtr;
using KvdTest::SetText;

bool HasThumbnail(IFileInfo* info) {
    uint8_t alpha = 1;
    HBITMAP bitmap = info->GetBitmap(SIZE{64, 64}, 0, false, &alpha);
    HICON icon = info->GetIcon(nullptr, 32);
    const bool both = bitmap && icon;
    if (bitmap) DeleteObject(bitmap);
    if (icon) DestroyIcon(icon);
    return both;
}

TEST(FillFile, CommitsOnTheHostsDestinationStream) {
    const auto original = FillDocs::Build(FillDocs::FountainSample());
    std::vector<uint8_t> source = original, target;
    Ref<ziptest::HostStream> destination(new ziptest::HostStream(target, nullptr));
    Ref<ziptest::HostStream> host(new ziptest::HostStream(source, destination.get()));
    host->refusal = STG_E_ACCESSDENIED;
    {
        InfoPtr info(IFileInfo::GetInst(host.get(), FileFormatFill));
        ASSERT_TRUE(info);
        EXPECT_EQ(info->Commit(), STG_E_ACCESSDENIED);
    }
    host->refusal = S_OK;
    {
        InfoPtr info(IFileInfo::GetInst(host.get(), FileFormatFill));
        ASSERT_TRUE(info);
        EXPECT_EQ(SetText(info.get(), K::kTitle, L"Dusk"), S_OK);
        EXPECT_EQ(Get(info.get(), K::kTitle), L"text:Dusk");  // before the commit, from memory
        EXPECT_EQ(info->Commit(), S_OK);
    }
    EXPECT_EQ(source, original);
    InfoPtr again = KvdTest::Open(target, FileFormatFill);
    ASSERT_TRUE(again);
    EXPECT_EQ(Get(again.get(), K::kTitle), L"text:Dusk");
    EXPECT_EQ(Get(again.get(), K::kComments), L"text:Four stops from yellow to night blue");
    EXPECT_TRUE(HasThumbnail(again.get()));
}

}  // namespace
