// File handles, dispositions, delete-on-close, paths and the atomic replace.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "platform/Files.h"
#include "platform/LastError.h"

namespace {

class TempDir {
public:
    TempDir() {
        std::string pattern = PathToNative(GetTempPathString().c_str()) + "fi-files-XXXXXX";
        char* made = mkdtemp(pattern.data());
        EXPECT_NE(made, nullptr);
        path_ = pattern;
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    std::wstring Wide(const std::string& name) const { return PathFromNative((path_ + "/" + name).c_str()); }
    std::string Native(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

void WriteAll(const std::string& path, const std::string& content) {
    FILE* f = std::fopen(path.c_str(), "wb");
    ASSERT_NE(f, nullptr);
    std::fwrite(content.data(), 1, content.size(), f);
    std::fclose(f);
}

std::string ReadAll(const std::string& path) {
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return "<missing>";
    std::string content;
    char buffer[4096];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) content.append(buffer, n);
    std::fclose(f);
    return content;
}

bool Exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

struct DispositionCase {
    const char* name;
    bool exists;
    DWORD disposition;
    bool opens;
    DWORD error;
    const char* contentAfter;  // after the open, before any write
};

TEST(Files, Dispositions) {
    const DispositionCase cases[] = {
        {"CreateNewAbsent", false, CREATE_NEW, true, ERROR_SUCCESS, ""},
        {"CreateNewPresent", true, CREATE_NEW, false, ERROR_FILE_EXISTS, "old"},
        {"CreateAlwaysAbsent", false, CREATE_ALWAYS, true, ERROR_SUCCESS, ""},
        {"CreateAlwaysPresent", true, CREATE_ALWAYS, true, ERROR_ALREADY_EXISTS, ""},
        {"OpenExistingAbsent", false, OPEN_EXISTING, false, ERROR_FILE_NOT_FOUND, "<missing>"},
        {"OpenExistingPresent", true, OPEN_EXISTING, true, ERROR_SUCCESS, "old"},
        {"OpenAlwaysAbsent", false, OPEN_ALWAYS, true, ERROR_SUCCESS, ""},
        {"OpenAlwaysPresent", true, OPEN_ALWAYS, true, ERROR_ALREADY_EXISTS, "old"},
        {"TruncateAbsent", false, TRUNCATE_EXISTING, false, ERROR_FILE_NOT_FOUND, "<missing>"},
        {"TruncatePresent", true, TRUNCATE_EXISTING, true, ERROR_SUCCESS, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TempDir dir;
        if (c.exists) WriteAll(dir.Native("f"), "old");
        HANDLE h = CreateFileW(dir.Wide("f").c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, c.disposition,
                               FILE_ATTRIBUTE_NORMAL, 0);
        EXPECT_EQ(GetLastError(), c.error);
        EXPECT_EQ(h != INVALID_HANDLE_VALUE, c.opens);
        EXPECT_EQ(ReadAll(dir.Native("f")), c.contentAfter);
        if (h != INVALID_HANDLE_VALUE) {
            EXPECT_TRUE(CloseHandle(h));
        }
    }
}

TEST(Files, ReadWriteSeekAndSize) {
    TempDir dir;
    HANDLE h = CreateFileW(dir.Wide("data").c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                           FILE_ATTRIBUTE_NORMAL, 0);
    ASSERT_NE(h, INVALID_HANDLE_VALUE);
    DWORD n = 0;
    ASSERT_TRUE(WriteFile(h, "0123456789", 10, &n, nullptr));
    EXPECT_EQ(n, 10u);
    LARGE_INTEGER pos;
    ASSERT_TRUE(SetFilePointerEx(h, MakeLargeInteger(-4), &pos, FILE_END));
    EXPECT_EQ(pos.QuadPart, 6);
    char buffer[16] = {};
    ASSERT_TRUE(ReadFile(h, buffer, 16, &n, nullptr));  // short read at the end is success
    EXPECT_EQ(n, 4u);
    EXPECT_STREQ(buffer, "6789");
    ASSERT_TRUE(ReadFile(h, buffer, 16, &n, nullptr));
    EXPECT_EQ(n, 0u);
    EXPECT_FALSE(SetFilePointerEx(h, MakeLargeInteger(-1), nullptr, FILE_BEGIN));
    EXPECT_EQ(GetLastError(), ERROR_NEGATIVE_SEEK);
    ASSERT_TRUE(SetFilePointerEx(h, MakeLargeInteger(3), nullptr, FILE_BEGIN));
    ASSERT_TRUE(SetEndOfFile(h));
    LARGE_INTEGER size;
    ASSERT_TRUE(GetFileSizeEx(h, &size));
    EXPECT_EQ(size.QuadPart, 3);
    ASSERT_TRUE(FlushFileBuffers(h));
    FILETIME created, accessed, written;
    ASSERT_TRUE(GetFileTime(h, &created, &accessed, &written));
    EXPECT_GT(FileTimeToUInt64(written), 116444736000000000ull);
    HANDLE dup;
    ASSERT_TRUE(DuplicateHandle(h, &dup));
    ASSERT_TRUE(CloseHandle(h));
    ASSERT_TRUE(GetFileSizeEx(dup, &size));  // the duplicate lives on its own
    ASSERT_TRUE(CloseHandle(dup));
    EXPECT_FALSE(CloseHandle(INVALID_HANDLE_VALUE));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
}

TEST(Files, OnlyRegularFilesOpen) {
    TempDir dir;
    ASSERT_EQ(::mkfifo(dir.Native("pipe").c_str(), 0600), 0);
    ::mkdir(dir.Native("sub").c_str(), 0700);
    for (const char* name : {"pipe", "sub"}) {
        HANDLE h = CreateFileW(dir.Wide(name).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                               FILE_ATTRIBUTE_NORMAL, 0);
        EXPECT_EQ(h, INVALID_HANDLE_VALUE) << name;  // and above all: no hang on the pipe
        EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    }
    EXPECT_EQ(GetFileAttributesW(dir.Wide("sub").c_str()), FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(GetFileAttributesW(dir.Wide("none").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(DeleteFileW(dir.Wide("sub").c_str()));
}

TEST(Files, DeleteOnCloseRemovesTheFileAtCloseOnly) {
    TempDir dir;
    HANDLE h = CreateFileW(dir.Wide("scratch").c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                           FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, 0);
    ASSERT_NE(h, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(Exists(dir.Native("scratch")));
    ASSERT_TRUE(CloseHandle(h));
    EXPECT_FALSE(Exists(dir.Native("scratch")));
    // A descriptor number used again must not inherit the flag.
    HANDLE plain = CreateFileW(dir.Wide("kept").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, 0);
    ASSERT_NE(plain, INVALID_HANDLE_VALUE);
    ASSERT_TRUE(CloseHandle(plain));
    EXPECT_TRUE(Exists(dir.Native("kept")));
}

TEST(Files, PathsRoundTripEvenWhenNotUtf8) {
    const std::string names[] = {"plain", "caf\xC3\xA9", "bad\xFF\xFEname", "\xE2\x82"};
    for (const auto& name : names) {
        std::wstring wide = PathFromNative(name.c_str());
        EXPECT_EQ(PathToNative(wide.c_str()), name);
    }
    EXPECT_EQ(PathFromNative("caf\xC3\xA9"), L"caf\u00E9");
    EXPECT_EQ(PathFromNative("a\xFF"), std::wstring(L"a") + wchar_t(0xDCFF));
    TempDir dir;
    std::wstring odd = dir.Wide("x\xFFy");
    HANDLE h = CreateFileW(odd.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, 0);
    ASSERT_NE(h, INVALID_HANDLE_VALUE);
    CloseHandle(h);
    EXPECT_TRUE(Exists(dir.Native("x\xFFy")));
}

TEST(Files, TempAndModulePaths) {
    std::wstring temp = GetTempPathString();
    ASSERT_FALSE(temp.empty());
    EXPECT_EQ(temp.back(), L'/');
    std::wstring module = GetModulePathOf(reinterpret_cast<const void*>(&CreateFileW));
    EXPECT_NE(module.find(L"libfileinfo.so"), std::wstring::npos) << PathToNative(module.c_str());
    std::wstring program = GetModulePathOf(reinterpret_cast<const void*>(&WriteAll));
    EXPECT_EQ(program.front(), L'/');
    EXPECT_NE(program.find(L"test_platform"), std::wstring::npos);
}

TEST(Files, MoveRefusesToOverwrite) {
    TempDir dir;
    WriteAll(dir.Native("a"), "A");
    WriteAll(dir.Native("b"), "B");
    EXPECT_FALSE(MoveFileW(dir.Wide("a").c_str(), dir.Wide("b").c_str()));
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
    EXPECT_TRUE(MoveFileW(dir.Wide("a").c_str(), dir.Wide("c").c_str()));
    EXPECT_EQ(ReadAll(dir.Native("c")), "A");
    EXPECT_FALSE(Exists(dir.Native("a")));
    EXPECT_TRUE(DeleteFileW(dir.Wide("c").c_str()));
    EXPECT_FALSE(DeleteFileW(dir.Wide("c").c_str()));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
}

// The content is replaced, the mode kept and the replacement removed; through
// a symbolic link the link stays and its target changes.
TEST(ReplaceFile, ReplacesContentKeepsModeAndLinks) {
    TempDir dir;
    WriteAll(dir.Native("doc"), "old content");
    ::chmod(dir.Native("doc").c_str(), 0640);
    WriteAll(dir.Native("new"), "new content, longer than before");
    ASSERT_TRUE(ReplaceFileW(dir.Wide("doc").c_str(), dir.Wide("new").c_str(), nullptr, 0, nullptr, nullptr));
    EXPECT_EQ(ReadAll(dir.Native("doc")), "new content, longer than before");
    EXPECT_FALSE(Exists(dir.Native("new")));
    struct stat st{};
    ASSERT_EQ(::stat(dir.Native("doc").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);
    WriteAll(dir.Native("target"), "old");
    ASSERT_EQ(::symlink(dir.Native("target").c_str(), dir.Native("link").c_str()), 0);
    WriteAll(dir.Native("new"), "new");
    ASSERT_TRUE(ReplaceFileW(dir.Wide("link").c_str(), dir.Wide("new").c_str(), nullptr, 0, nullptr, nullptr));
    ASSERT_EQ(::lstat(dir.Native("link").c_str(), &st), 0);
    EXPECT_TRUE(S_ISLNK(st.st_mode));
    EXPECT_EQ(ReadAll(dir.Native("target")), "new");
}

TEST(ReplaceFile, FailuresLeaveBothFilesAlone) {
    TempDir dir;
    WriteAll(dir.Native("new"), "new");
    EXPECT_FALSE(ReplaceFileW(dir.Wide("absent").c_str(), dir.Wide("new").c_str(), nullptr, 0, nullptr, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(ReadAll(dir.Native("new")), "new");
    WriteAll(dir.Native("doc"), "old");
    EXPECT_FALSE(ReplaceFileW(dir.Wide("doc").c_str(), dir.Wide("gone").c_str(), nullptr, 0, nullptr, nullptr));
    EXPECT_EQ(ReadAll(dir.Native("doc")), "old");
}

// A reader that keeps opening the file while it is replaced again and again
// must only ever see one of the two whole contents.
TEST(ReplaceFile, ReadersSeeOldOrNewNeverAMix) {
    TempDir dir;
    const std::string a(256 * 1024, 'a');
    const std::string b(300 * 1024, 'b');
    WriteAll(dir.Native("doc"), a);
    std::atomic<bool> done{false};
    std::atomic<int> mixed{0}, reads{0};
    std::thread reader([&] {
        while (!done) {
            std::string seen = ReadAll(dir.Native("doc"));
            ++reads;
            if (seen != a && seen != b) ++mixed;
        }
    });
    for (int round = 0; round < 40; ++round) {
        WriteAll(dir.Native("next"), round % 2 ? a : b);
        ASSERT_TRUE(ReplaceFileW(dir.Wide("doc").c_str(), dir.Wide("next").c_str(), nullptr, 0, nullptr, nullptr));
    }
    done = true;
    reader.join();
    EXPECT_GT(reads.load(), 0);
    EXPECT_EQ(mixed.load(), 0);
    EXPECT_FALSE(Exists(dir.Native("next")));
}

}  // namespace
