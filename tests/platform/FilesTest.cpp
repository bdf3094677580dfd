// Delete-on-close, moves and the atomic replace.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>

#include "platform/Files.h"
#include "platform/LastError.h"
#include "tests/support/zip/ZipTestArchive.h"

namespace {

bool Exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

// A folder of its own; Wide gives the library's form of a path in it.
struct TempDir : ziptest::TempDir {
    std::wstring Wide(const std::string& name) const { return PathFromNative(Native(name).c_str()); }
    std::string Native(const std::string& name) const { return *this / name; }
};

void WriteAll(const std::string& path, const std::string& content) { ziptest::WriteFile(path, ziptest::Bytes(content)); }

std::string ReadAll(const std::string& path) {
    const std::vector<uint8_t> bytes = ziptest::ReadFile(path);
    return Exists(path) ? std::string(bytes.begin(), bytes.end()) : "<missing>";
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

// The replacement on another file system (a memory file system where there
// is one) is copied beside the target and renamed over it; a move across
// file systems copies too. Either way the source name is gone.
TEST(ReplaceFile, AcrossFileSystems) {
    TempDir dir;
    const std::string shm = "/dev/shm/fi-files-" + std::to_string(::getpid());
    WriteAll(dir.Native("doc"), "old");
    for (const char* step : {"replace", "move"}) {
        FILE* probe = std::fopen(shm.c_str(), "wb");
        if (!probe) GTEST_SKIP() << "no second file system to write to";
        std::fputs(step, probe);
        std::fclose(probe);
        const std::wstring from = PathFromNative(shm.c_str());
        if (std::string(step) == "replace") {
            ASSERT_TRUE(ReplaceFileW(dir.Wide("doc").c_str(), from.c_str(), nullptr, 0, nullptr, nullptr));
            EXPECT_EQ(ReadAll(dir.Native("doc")), "replace");
        } else {
            ASSERT_TRUE(MoveFileW(from.c_str(), dir.Wide("moved").c_str()));
            EXPECT_EQ(ReadAll(dir.Native("moved")), "move");
        }
        EXPECT_FALSE(Exists(shm)) << step;
    }
    // What is no regular file on either side, and a file replaced by itself.
    ::mkdir(dir.Native("sub").c_str(), 0700);
    EXPECT_FALSE(ReplaceFileW(dir.Wide("sub").c_str(), dir.Wide("doc").c_str(), nullptr, 0, nullptr, nullptr));
    EXPECT_FALSE(ReplaceFileW(dir.Wide("doc").c_str(), dir.Wide("sub").c_str(), nullptr, 0, nullptr, nullptr));
    EXPECT_TRUE(ReplaceFileW(dir.Wide("doc").c_str(), dir.Wide("doc").c_str(), nullptr, 0, nullptr, nullptr));
    EXPECT_FALSE(ReplaceFileW(nullptr, dir.Wide("doc").c_str(), nullptr, 0, nullptr, nullptr));
    EXPECT_EQ(ReadAll(dir.Native("doc")), "replace");
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
