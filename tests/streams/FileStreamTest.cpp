// File streams on real temporary files.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/LastError.h"
#include "platform/PropIdl.h"
#include "tests/streams/TestStreams.h"
#include "utils/streams/FileStream.h"
#include "utils/streams/StreamHelpers.h"

using namespace BrmUtils;
using namespace streamtest;

namespace {

class FileStreamTest : public ::testing::Test {
protected:
    void SetUp() override {
        const std::string pattern = std::filesystem::temp_directory_path().string() + "/streams-XXXXXX";
        std::vector<char> name(pattern.begin(), pattern.end());
        name.push_back('\0');
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        directory = name.data();
    }
    void TearDown() override { std::filesystem::remove_all(directory); }

    // A file of the given bytes; answers its wide path.
    std::wstring MakeFile(const std::string& name, const std::vector<uint8_t>& bytes) {
        const std::string path = directory + "/" + name;
        std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()),
                                                    std::streamsize(bytes.size()));
        return PathFromNative(path.c_str());
    }
    std::wstring PathOf(const std::string& name) { return PathFromNative((directory + "/" + name).c_str()); }
    bool Exists(const std::wstring& path) { return std::filesystem::exists(PathToNative(path.c_str())); }

    std::string directory;
};

}  // namespace

TEST_F(FileStreamTest, ReadsTheFileToItsEnd) {
    const std::vector<uint8_t> bytes = Pattern(10000);
    Ref<FileStream> stream(FileStream::Open(MakeFile("a.bin", bytes).c_str()));
    ASSERT_TRUE(stream);
    std::vector<uint8_t> out(20000);
    uint64_t got = 0;
    ASSERT_TRUE(ReadFully(stream.get(), out.data(), out.size(), got));
    EXPECT_EQ(got, bytes.size());
    out.resize(got);
    EXPECT_EQ(out, bytes);
    // At the end a read is a success with nothing.
    ULONG count = 99;
    EXPECT_EQ(stream->Read(out.data(), 10, &count), S_OK);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(GetSize(stream.get()), 10000u);
    EXPECT_EQ(stream->Read(nullptr, 10, &count), STG_E_INVALIDPOINTER);
}

TEST_F(FileStreamTest, EmptyFileReadsNothing) {
    Ref<FileStream> stream(FileStream::Open(MakeFile("empty", {}).c_str()));
    ASSERT_TRUE(stream);
    uint8_t byte;
    ULONG count = 99;
    EXPECT_EQ(stream->Read(&byte, 1, &count), S_OK);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(GetSize(stream.get()), 0u);
    // Seeking beyond the end is allowed; reading there gives nothing.
    EXPECT_EQ(SeekTo(stream.get(), 50), 50u);
    EXPECT_EQ(stream->Read(&byte, 1, &count), S_OK);
    EXPECT_EQ(count, 0u);
}

TEST_F(FileStreamTest, OpeningWhatIsNotThereFails) {
    struct Case {
        std::wstring path;
        DWORD error;
    } cases[] = {
        {PathOf("missing"), ERROR_FILE_NOT_FOUND},
        {PathOf("no-dir/missing"), ERROR_PATH_NOT_FOUND},
    };
    for (const Case& c : cases) {
        SetLastError(0);
        EXPECT_EQ(FileStream::Open(c.path.c_str()), nullptr);
        const DWORD error = GetLastError();
        EXPECT_TRUE(error == c.error || error == ERROR_FILE_NOT_FOUND) << error;
    }
    EXPECT_EQ(FileStream::Open(L""), nullptr);
    EXPECT_EQ(FileStream::Open(nullptr), nullptr);
    EXPECT_EQ(FileStream::Create(PathOf("no-dir/new").c_str()), nullptr);
}

TEST_F(FileStreamTest, SeekFromEachOrigin) {
    Ref<FileStream> stream(FileStream::Open(MakeFile("s", Pattern(100)).c_str()));
    ASSERT_TRUE(stream);
    struct Case {
        int64_t offset;
        DWORD origin;
        HRESULT result;
        uint64_t position;  // from 40
    } cases[] = {
        {10, STREAM_SEEK_SET, S_OK, 10},   {10, STREAM_SEEK_CUR, S_OK, 50},  {-10, STREAM_SEEK_END, S_OK, 90},
        {200, STREAM_SEEK_SET, S_OK, 200}, {-41, STREAM_SEEK_CUR, E_FAIL, 40}, {0, 3, STG_E_INVALIDFUNCTION, 40},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.offset);
        SeekTo(stream.get(), 40);
        EXPECT_EQ(stream->Seek(MakeLargeInteger(c.offset), c.origin, nullptr), c.result);
        EXPECT_EQ(GetPosition(stream.get()), c.position);
    }
    // A failed seek leaves its reason for IStreamInfo.
    EXPECT_FALSE(stream->GetLastErrorText().IsEmpty());
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
        EXPECT_EQ(stream->SetSize(MakeULargeInteger(6)), S_OK);
        EXPECT_EQ(GetPosition(stream.get()), 3u);
        EXPECT_EQ(GetSize(stream.get()), 6u);
        EXPECT_EQ(stream->SetSize(MakeULargeInteger(8)), S_OK);
        EXPECT_EQ(GetPosition(stream.get()), 3u);
        EXPECT_EQ(stream->Commit(STGC_DEFAULT), S_OK);
    }
    Ref<FileStream> reread(FileStream::Open(path.c_str()));
    ASSERT_TRUE(reread);
    char out[10];
    uint64_t got = 0;
    ReadFully(reread.get(), out, sizeof(out), got);
    EXPECT_EQ(std::string(out, got), std::string("012345\0\0", 8));

    // Create truncates what was there.
    Ref<FileStream> again(FileStream::Create(path.c_str()));
    ASSERT_TRUE(again);
    EXPECT_EQ(GetSize(again.get()), 0u);
}

TEST_F(FileStreamTest, WritingToAFileOpenedForReadingFailsWithText) {
    Ref<FileStream> stream(FileStream::Open(MakeFile("ro", Pattern(4)).c_str()));
    ASSERT_TRUE(stream);
    ULONG count = 99;
    const HRESULT hr = stream->Write("x", 1, &count);
    EXPECT_TRUE(hr == STG_E_ACCESSDENIED || hr == E_FAIL) << std::hex << hr;
    EXPECT_EQ(count, 0u);
    EXPECT_FALSE(stream->GetLastErrorText().IsEmpty());
}

TEST_F(FileStreamTest, StatNamesTheFileAndItsSize) {
    const std::wstring path = MakeFile("named.kvd", Pattern(123));
    Ref<FileStream> stream(FileStream::Open(path.c_str()));
    ASSERT_TRUE(stream);
    STATSTG stat{};
    ASSERT_EQ(stream->Stat(&stat, STATFLAG_DEFAULT), S_OK);
    ASSERT_NE(stat.pwcsName, nullptr);
    EXPECT_EQ(std::wstring(stat.pwcsName), path);
    CoTaskMemFree(stat.pwcsName);
    EXPECT_EQ(stat.cbSize.QuadPart, 123u);
    EXPECT_EQ(stat.type, DWORD(STGTY_STREAM));
    EXPECT_NE(FileTimeToUInt64(stat.mtime), 0u);

    ASSERT_EQ(stream->Stat(&stat, STATFLAG_NONAME), S_OK);
    EXPECT_EQ(stat.pwcsName, nullptr);
}

TEST_F(FileStreamTest, CloneReadsTheSameFile) {
    Ref<FileStream> stream(FileStream::Open(MakeFile("c", Pattern(50)).c_str()));
    ASSERT_TRUE(stream);
    IStream* raw = nullptr;
    ASSERT_EQ(stream->Clone(&raw), S_OK);
    Ref<IStream> clone(raw);
    stream.reset();  // the clone has a handle of its own
    SeekTo(clone.get(), 45);
    uint8_t out[10];
    uint64_t got = 0;
    ReadFully(clone.get(), out, sizeof(out), got);
    ASSERT_EQ(got, 5u);
    EXPECT_EQ(out[0], 45);
    EXPECT_EQ(GetSize(clone.get()), 50u);
}

TEST_F(FileStreamTest, DeleteOnCloseRemovesTheFileWithTheLastReference) {
    const std::wstring path = MakeFile("tmp", Pattern(3));
    FileStream* stream = FileStream::Open(path.c_str());
    ASSERT_NE(stream, nullptr);
    stream->SetDeleteOnClose(true);
    stream->AddRef();
    stream->Release();
    EXPECT_TRUE(Exists(path));
    stream->Release();
    EXPECT_FALSE(Exists(path));
}

TEST_F(FileStreamTest, AnswersItsResourceLocator) {
    Ref<FileStream> stream(FileStream::Open(MakeFile("loc file.kvd", Pattern(1)).c_str()));
    ASSERT_TRUE(stream);
    IStreamResourceLocator* locator = nullptr;
    ASSERT_EQ(stream->QueryInterface(IID_IStreamResourceLocator, reinterpret_cast<void**>(&locator)), S_OK);
    const std::wstring url = Str(locator->GetResourceLocator());
    EXPECT_EQ(url.rfind(L"file://", 0), 0u) << url;
    EXPECT_NE(url.find(L"loc%20file.kvd"), std::wstring::npos) << url;
    locator->Release();
}

TEST_F(FileStreamTest, ABorrowedHandleIsLeftOpen) {
    const std::wstring path = MakeFile("borrowed", Pattern(8));
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, INVALID_HANDLE_VALUE);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    (new FileStream(file, path.c_str(), false))->Release();
    uint8_t byte = 0;
    DWORD got = 0;
    EXPECT_TRUE(ReadFile(file, &byte, 1, &got, nullptr));
    EXPECT_EQ(got, 1u);
    CloseHandle(file);
}
