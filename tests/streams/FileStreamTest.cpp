// File streams on real temporary files.
#include <gtest/gtest.h>
#include <algorithm>
#include <unistd.h>

#include "platform/LastError.h"
#include "platform/PropIdl.h"
#include "tests/streams/TestStreams.h"
#include "tests/support/zip/ZipTestArchive.h"
#include "utils/streams/FileStream.h"
#include "utils/streams/StreamHelpers.h"

using namespace BrmUtils;
using namespace streamtest;

namespace {

class FileStreamTest : public ::testing::Test {
protected:
    std::wstring PathOf(const std::string& name) { return PathFromNative((dir / name).c_str()); }
    // A file of the given bytes; answers its path.
    std::wstring MakeFile(const std::string& name, const std::vector<uint8_t>& bytes) {
        ziptest::WriteFile(dir / name, bytes);
        return PathOf(name);
    }

    ziptest::TempDir dir;
};

}  // namespace

TEST_F(FileStreamTest, ReadsAndStatsFilesOfAnySize) {
    // 200000 spans several buffered blocks and reads some whole.
    for (size_t size : {size_t(0), size_t(1), size_t(10000), size_t(200000)}) {
        SCOPED_TRACE(size);
        const std::vector<uint8_t> bytes = Pattern(size);
        const std::wstring path = MakeFile("a.kvd", bytes);
        Ref<FileStream> stream(FileStream::Open(path.c_str()));
        ASSERT_TRUE(stream);
        EXPECT_EQ(ReadAt(stream.get(), 0, ULONG(size + 100)), bytes);
        // Beyond the end a seek works and a read is a success with nothing.
        EXPECT_EQ(ReadAt(stream.get(), size + 50, 1).size(), 0u);
        EXPECT_EQ(GetPosition(stream.get()), size + 50);
        ULONG count = 99;
        EXPECT_EQ(stream->Read(nullptr, 1, &count), STG_E_INVALIDPOINTER);

        STATSTG stat{};
        ASSERT_EQ(stream->Stat(&stat, STATFLAG_DEFAULT), S_OK);
        ASSERT_NE(stat.pwcsName, nullptr);
        EXPECT_EQ(std::wstring(stat.pwcsName), path);
        CoTaskMemFree(stat.pwcsName);
        EXPECT_EQ(stat.cbSize.QuadPart, size);
        EXPECT_EQ(stat.type, DWORD(STGTY_STREAM));
        EXPECT_NE(FileTimeToUInt64(stat.mtime), 0u);
    }
}

TEST_F(FileStreamTest, ViewsShowRangesWithinOneBlockOfTheFile) {
    const std::vector<uint8_t> bytes = Pattern(200000);
    Ref<FileStream> stream(FileStream::Open(MakeFile("v.kvd", bytes).c_str()));
    ASSERT_TRUE(stream);
    const struct {
        uint64_t offset;
        size_t length;
        bool shown;
    } cases[] = {{0, 100, true}, {199900, 100, true}, {65536, 65536, true}, {65500, 100, false},
                 {199950, 100, false}, {300000, 1, false}, {10, 0, false}};
    for (const auto& c : cases) {
        const uint8_t* view = stream->View(c.offset, c.length);
        EXPECT_EQ(view != nullptr, c.shown) << c.offset;
        if (view) {
            EXPECT_TRUE(std::equal(view, view + c.length, bytes.begin() + ptrdiff_t(c.offset))) << c.offset;
        }
    }
}

TEST_F(FileStreamTest, WritingSetSizeAndCommit) {
    const std::wstring path = PathOf("w.bin");
    {
        Ref<FileStream> stream(FileStream::Create(path.c_str()));
        ASSERT_TRUE(stream);
        EXPECT_TRUE(WriteExactly(stream.get(), "0123456789", 10));
        EXPECT_EQ(stream->Write(nullptr, 0, nullptr), S_OK);
        EXPECT_EQ(stream->Write(nullptr, 1, nullptr), STG_E_INVALIDPOINTER);
        SeekTo(stream.get(), 3);
        for (uint64_t size : {6u, 8u}) {
            EXPECT_EQ(stream->SetSize(MakeULargeInteger(size)), S_OK);
            EXPECT_EQ(GetPosition(stream.get()), 3u);
            EXPECT_EQ(GetSize(stream.get()), size);
        }
        // A write over bytes already read is seen by the next read.
        EXPECT_EQ(ReadAt(stream.get(), 0, 3), Bytes(std::string("012")));
        SeekTo(stream.get(), 1);
        EXPECT_TRUE(WriteExactly(stream.get(), "X", 1));
        EXPECT_EQ(ReadAt(stream.get(), 0, 3), Bytes(std::string("0X2")));
        EXPECT_EQ(stream->Commit(STGC_DEFAULT), S_OK);
    }
    Ref<FileStream> reread(FileStream::Open(path.c_str()));
    EXPECT_EQ(ReadAt(reread.get(), 0, 10), Bytes(std::string("0X2345\0\0", 8)));

    // A file opened for reading refuses writes and says why.
    ULONG count = 99;
    const HRESULT hr = reread->Write("x", 1, &count);
    EXPECT_TRUE(hr == STG_E_ACCESSDENIED || hr == E_FAIL) << std::hex << hr;
    EXPECT_EQ(count, 0u);
    EXPECT_FALSE(reread->GetLastErrorText().IsEmpty());

    // Create truncates what was there.
    Ref<FileStream> again(FileStream::Create(path.c_str()));
    EXPECT_EQ(GetSize(again.get()), 0u);
}

TEST_F(FileStreamTest, CloneReadsTheSameFileOnAHandleOfItsOwn) {
    Ref<FileStream> stream(FileStream::Open(MakeFile("c", Pattern(50)).c_str()));
    ASSERT_TRUE(stream);
    IStream* raw = nullptr;
    ASSERT_EQ(stream->Clone(&raw), S_OK);
    Ref<IStream> clone(raw);
    stream.reset();
    EXPECT_EQ(ReadAt(clone.get(), 45, 10), Slice(Pattern(50), 45));
    EXPECT_EQ(clone->Clone(nullptr), STG_E_INVALIDPOINTER);
}
