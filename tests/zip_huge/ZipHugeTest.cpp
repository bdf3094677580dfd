// A deflated member of more than 4 GiB: written as a stream without ever
// holding it in memory, committed (copied raw into the final archive) and
// read back through the zip64 records.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "tests/support/zip/ZipTestArchive.h"
#include "zipcontainer/ZipFileSet.h"

using namespace ziptest;

namespace {

constexpr uint64_t kSize = (uint64_t(4) << 30) + (uint64_t(3) << 20) + 17;  // past 4 GiB, not a round number
constexpr size_t kChunk = 1 << 20;

TEST(ZipHuge, DeflatedMemberBeyondFourGiB) {
    TempDir dir;
    std::string path = dir / "huge.zip";
    BrmPlatform::BrmStringW wpath(std::wstring(path.begin(), path.end()));
    std::vector<uint8_t> zeros(kChunk, 0);
    {
        ZipFileSetRef set = ZipFileSet::CreateOnPath(wpath);
        ASSERT_TRUE(set);
        {
            Ref<IStream> before(set->CreateMember(L"before.txt", 3));
            ULONG n = 0;
            ASSERT_EQ(before->Write("small member in front", 21, &n), S_OK);
        }
        Ref<IStream> s(set->CreateMember(L"zeros.bin", 1));
        ASSERT_TRUE(s);
        for (uint64_t done = 0; done < kSize;) {
            ULONG n = ULONG(std::min<uint64_t>(kChunk, kSize - done));
            ULONG written = 0;
            ASSERT_EQ(s->Write(zeros.data(), n, &written), S_OK);
            done += written;
        }
        s.reset();
        Ref<IStream> after(set->CreateMember(L"after.txt", 0));
        ULONG n = 0;
        ASSERT_EQ(after->Write("small member behind", 19, &n), S_OK);
        after.reset();
        ASSERT_TRUE(set->CommitSet());
    }
    EXPECT_EQ(dir.List(), (std::vector<std::string>{"huge.zip"}));

    ZipFileSetRef set = ZipFileSet::OpenFromPath(wpath);
    ASSERT_TRUE(set);
    const ZipMember* m = set->FindMember(L"zeros.bin");
    ASSERT_TRUE(m);
    EXPECT_EQ(m->uncompressedSize, kSize);
    EXPECT_EQ(m->method, 8);
    EXPECT_EQ(m->versionNeeded, 45);
    EXPECT_EQ(m->flags & 8, 0);  // cleared on reading; the local header has it

    Ref<IStream> in(set->OpenMember(m));
    ASSERT_TRUE(in);
    std::vector<uint8_t> buffer(kChunk);
    uint64_t total = 0;
    bool allZero = true;
    for (;;) {
        ULONG got = 0;
        ASSERT_EQ(in->Read(buffer.data(), ULONG(buffer.size()), &got), S_OK);
        if (got == 0)
            break;
        allZero = allZero && std::memcmp(buffer.data(), zeros.data(), got) == 0;
        total += got;
    }
    EXPECT_EQ(total, kSize);
    EXPECT_TRUE(allZero);

    // A seek past 4 GiB, then back before it.
    ULARGE_INTEGER at{};
    ASSERT_EQ(in->Seek(MakeLargeInteger(int64_t(kSize - 10)), STREAM_SEEK_SET, &at), S_OK);
    ULONG got = 0;
    ASSERT_EQ(in->Read(buffer.data(), 100, &got), S_OK);
    EXPECT_EQ(got, 10u);
    for (const char* name : {"before.txt", "after.txt"}) {
        Ref<IStream> small(set->OpenMember(BrmPlatform::BrmStringW(std::wstring(name, name + strlen(name)))));
        ASSERT_TRUE(small) << name;
        EXPECT_FALSE(ReadAll(small.get()).empty()) << name;
    }
    set.Reset();

    if (HaveTool("unzip")) {
        std::string output;
        EXPECT_EQ(RunCommand("unzip -t -q " + Quote(path), &output), 0) << output;
    }
}

}  // namespace
