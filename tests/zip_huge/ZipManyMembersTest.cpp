// Archives with more members than a 16-bit count holds: the zip64 end
// records carry the count, both when this layer writes them and when it
// reads a directory made by hand.
#include <gtest/gtest.h>

#include "tests/support/zip/ZipTestArchive.h"
#include "zipcontainer/ZipFileSet.h"

using namespace ziptest;

namespace {

TEST(ZipManyMembers, WrittenCountNeedsZip64) {
    TempDir dir;
    std::string path = dir / "many.zip";
    BrmPlatform::BrmStringW wpath(std::wstring(path.begin(), path.end()));
    const int count = 65536;
    {
        ZipFileSetRef set = ZipFileSet::CreateOnPath(wpath);
        ASSERT_TRUE(set);
        for (int i = 0; i < count; ++i) {
            Ref<IStream> s(set->CreateMember((L"n" + std::to_wstring(i)).c_str(), 0));
            ASSERT_TRUE(s);
        }
        ASSERT_TRUE(set->CommitSet());
    }
    std::vector<uint8_t> bytes = ReadFile(path);
    size_t end = EndRecordOffset(bytes);
    ASSERT_GE(end, 20u);
    EXPECT_EQ(bytes[end - 20], 'P');
    EXPECT_EQ(bytes[end - 18], 6);  // the zip64 locator
    EXPECT_EQ(bytes[end + 10] | (bytes[end + 11] << 8), 0xFFFF);

    ZipFileSetRef set = ZipFileSet::OpenFromPath(wpath);
    ASSERT_TRUE(set);
    EXPECT_EQ(set->ListMembers().size(), size_t(count));
    EXPECT_TRUE(set->Exists(L"n65535"));
    set.Reset();
    if (HaveTool("unzip")) {
        std::string output;
        EXPECT_EQ(RunCommand("unzip -t -q " + Quote(path), &output), 0) << output.substr(0, 2000);
    }
}

}  // namespace
