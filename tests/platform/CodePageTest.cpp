// Code-page conversions: the byte and size rules callers depend on.
#include <gtest/gtest.h>

#include <string>

#include "platform/CodePage.h"
#include "platform/LastError.h"

namespace {

struct FailureCase {
    const char* name;
    int (*call)();
    DWORD error;
};

wchar_t g_small[2];
char g_narrow[2];

const FailureCase kFailures[] = {
    {"TooSmallWide", [] { return MultiByteToWideChar(CP_UTF8, 0, "abc", 3, g_small, 2); }, ERROR_INSUFFICIENT_BUFFER},
    {"TooSmallNarrow", [] { return WideCharToMultiByte(CP_UTF8, 0, L"\u20AC", 1, g_narrow, 2, nullptr, nullptr); },
     ERROR_INSUFFICIENT_BUFFER},
    {"TooSmallIcu", [] { return MultiByteToWideChar(1251, 0, "abc", 3, g_small, 2); }, ERROR_INSUFFICIENT_BUFFER},
    {"ZeroLength", [] { return MultiByteToWideChar(CP_UTF8, 0, "abc", 0, nullptr, 0); }, ERROR_INVALID_PARAMETER},
    {"NullSource", [] { return MultiByteToWideChar(CP_UTF8, 0, nullptr, 3, nullptr, 0); }, ERROR_INVALID_PARAMETER},
    {"NullOutputWithSize", [] { return MultiByteToWideChar(CP_UTF8, 0, "a", 1, nullptr, 4); },
     ERROR_INVALID_PARAMETER},
    {"UnknownCodePage", [] { return MultiByteToWideChar(4711, 0, "a", 1, nullptr, 0); }, ERROR_INVALID_PARAMETER},
    {"StrictUtf8", [] { return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, "a\xFF", 2, nullptr, 0); },
     ERROR_NO_UNICODE_TRANSLATION},
    {"StrictUtf16", [] { return MultiByteToWideChar(CP_UTF16LE, MB_ERR_INVALID_CHARS, "\x00\xDC", 2, nullptr, 0); },
     ERROR_NO_UNICODE_TRANSLATION},
    {"StrictUtf8Out",
     [] { return WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, L"\xDC00", 1, nullptr, 0, nullptr, nullptr); },
     ERROR_NO_UNICODE_TRANSLATION},
};

TEST(CodePage, FailuresAnswerZeroWithTheWindowsError) {
    for (const auto& c : kFailures) {
        SCOPED_TRACE(c.name);
        SetLastError(0);
        EXPECT_EQ(c.call(), 0);
        EXPECT_EQ(GetLastError(), c.error);
    }
}

TEST(CodePage, Utf16LeHelpersRoundTripAndBoundTheOutput) {
    const std::wstring text = L"A\U0001F600\u00E9";
    std::string bytes = WideToUtf16LeString(text.data(), text.size());
    EXPECT_EQ(bytes.size(), 8u);
    auto* raw = reinterpret_cast<const uint8_t*>(bytes.data());
    EXPECT_EQ(Utf16LeToWideString(raw, bytes.size()), text);
    wchar_t two[2] = {0, 0};
    EXPECT_EQ(Utf16LeToWide(raw, bytes.size(), two, 2), 3u);  // full length, partial write
    EXPECT_EQ(two[0], L'A');
    EXPECT_EQ(two[1], wchar_t(0x1F600));
    uint8_t out[3] = {9, 9, 9};
    EXPECT_EQ(WideToUtf16Le(L"AB", 2, out, 3), 4u);
    EXPECT_EQ(out[2], 'B');
}

}  // namespace
