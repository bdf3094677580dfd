// Bitmap size limits, and the last error with its message texts.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <thread>

#include "platform/Bitmap.h"
#include "platform/LastError.h"

namespace {

TEST(Bitmap, SizesAreBounded) {
    const struct {
        int32_t width, height;
        bool made;
    } cases[] = {
        {1, 1, true},        {640, 480, true},     {0, 10, false},      {10, -1, false},
        {32769, 1, false},   {1, 32769, false},    {32768, 8192, true}, {32768, 8193, false}, {INT32_MIN, 1, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.width) + "x" + std::to_string(c.height));
        HBITMAP bitmap = CreateBitmap32(c.width, c.height);
        EXPECT_EQ(bitmap != nullptr, c.made);
        if (bitmap) {
            EXPECT_EQ(bitmap->width, c.width);
            EXPECT_EQ(bitmap->height, c.height);
            EXPECT_EQ(bitmap->bits[0], 0);  // zeroed
            EXPECT_EQ(bitmap->bits[std::size_t(c.width) * std::size_t(c.height) * 4 - 1], 0);
            EXPECT_TRUE(DeleteObject(bitmap));
        }
    }
    EXPECT_FALSE(DeleteObject(nullptr));
}

std::wstring Message(DWORD id) {
    wchar_t* text = nullptr;
    DWORD n = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS |
                                 FORMAT_MESSAGE_FROM_SYSTEM,
                             nullptr, id, 1024, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::wstring out = n ? std::wstring(text, n) : L"<none>";
    LocalFree(text);
    return out;
}

TEST(LastError, ErrnoMappingAndMessages) {
    const struct {
        int err;
        DWORD win32;
        const wchar_t* text;
    } cases[] = {
        {ENOENT, ERROR_FILE_NOT_FOUND, L"No such file or directory"},
        {EACCES, ERROR_ACCESS_DENIED, L"Permission denied"}, {ENOSPC, ERROR_DISK_FULL, L"No space left on device"},
        {EEXIST, ERROR_FILE_EXISTS, L"File exists"}, {ENOTDIR, ERROR_PATH_NOT_FOUND, L"Not a directory"},
        {EPIPE, ERROR_FROM_ERRNO_BASE | EPIPE, L"Broken pipe"},  // no Win32 twin: kept as it is
    };
    for (const auto& c : cases) {
        EXPECT_EQ(SetLastErrorFromErrno(c.err), c.win32);
        EXPECT_EQ(GetLastError(), c.win32);
        EXPECT_EQ(Message(c.win32), c.text);
    }
    EXPECT_EQ(Message(0x80070002u), L"No such file or directory");  // HRESULT of a Win32 error
    EXPECT_EQ(Message(ERROR_INSUFFICIENT_BUFFER), L"The data area passed to a system call is too small");
    EXPECT_EQ(Message(4242), L"<none>");
    EXPECT_EQ(GetLastError(), ERROR_MR_MID_NOT_FOUND);
}

TEST(LastError, MessageIntoCallerBuffer) {
    wchar_t buffer[64];
    DWORD n = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, ERROR_ACCESS_DENIED, 0, buffer, 64, nullptr);
    EXPECT_EQ(n, 17u);
    EXPECT_STREQ(buffer, L"Permission denied");
    EXPECT_EQ(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, ERROR_ACCESS_DENIED, 0, buffer, 17, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
}

}  // namespace
