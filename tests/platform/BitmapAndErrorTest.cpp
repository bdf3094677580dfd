// Bitmap size limits, and the last error with its message texts.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <thread>

#include "platform/Bitmap.h"
#include "platform/LastError.h"

namespace {

TEST(LastError, MessageIntoCallerBuffer) {
    wchar_t buffer[64];
    DWORD n = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, ERROR_ACCESS_DENIED, 0, buffer, 64, nullptr);
    EXPECT_EQ(n, 17u);
    EXPECT_STREQ(buffer, L"Permission denied");
    EXPECT_EQ(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, ERROR_ACCESS_DENIED, 0, buffer, 17, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
}

}  // namespace
