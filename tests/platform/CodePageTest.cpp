// Code-page conversions: the byte and size rules callers depend on.
#include <gtest/gtest.h>

#include <string>

#include "platform/CodePage.h"
#include "platform/LastError.h"

namespace {

std::wstring ToWide(UINT cp, const std::string& bytes, DWORD flags = 0) {
    int n = MultiByteToWideChar(cp, flags, bytes.data(), int(bytes.size()), nullptr, 0);
    std::wstring out(std::size_t(n), L'\0');
    if (n) {
        EXPECT_EQ(n, MultiByteToWideChar(cp, flags, bytes.data(), int(bytes.size()), out.data(), n));
    }
    return out;
}

std::string FromWide(UINT cp, const std::wstring& text, BOOL* used = nullptr) {
    int n = WideCharToMultiByte(cp, 0, text.data(), int(text.size()), nullptr, 0, nullptr, used);
    std::string out(std::size_t(n), '\0');
    if (n) {
        EXPECT_EQ(n, WideCharToMultiByte(cp, 0, text.data(), int(text.size()), out.data(), n, nullptr, used));
    }
    return out;
}

struct DecodeCase {
    const char* name;
    UINT codePage;
    std::string bytes;
    std::wstring text;
};

struct EncodeCase {
    const char* name;
    UINT codePage;
    std::wstring text;
    std::string bytes;
    bool usedDefault;
};

TEST(CodePage, Encode) {
    const EncodeCase cases[] = {EncodeCase{"Cp1252Euro", 1252, L"\u20AC\u00E9", "\x80\xE9", false},
                    EncodeCase{"Cp1252Unmappable", 1252, L"a\u4E00b", "a?b", true},
                    EncodeCase{"Cp1252AboveBmp", 1252, L"\U0001F600", "?", true},
                    EncodeCase{"Utf8", CP_UTF8, L"\u00E9\u20AC\U0001F600", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", false},
                    EncodeCase{"Utf8LoneSurrogate", CP_UTF8, std::wstring(1, wchar_t(0xD800)), "\xEF\xBF\xBD", false},
                    EncodeCase{"Utf8OutOfRange", CP_UTF8, std::wstring(1, wchar_t(0x110000)), "\xEF\xBF\xBD", false},
                    EncodeCase{"Utf16LeSurrogates", CP_UTF16LE, L"A\U0001F600", std::string("A\0\x3D\xD8\x00\xDE", 6), false},
                    EncodeCase{"Utf16Be", CP_UTF16BE, L"A", std::string("\0A", 2), false},
                    EncodeCase{"ShiftJis", 932, L"\u65E5\u672C", "\x93\xFA\x96\x7B", false}};
    for (const auto& c : cases) {
        BOOL used = 7;
        EXPECT_EQ(FromWide(c.codePage, c.text, &used), c.bytes) << c.name;
        EXPECT_EQ(used, c.usedDefault ? TRUE : FALSE) << c.name;
    }
}

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

TEST(CodePage, AnsiCodePageCanBeChanged) {
    EXPECT_EQ(GetACP(), 1252u);
    SetAnsiCodePage(1251);
    EXPECT_EQ(GetACP(), 1251u);
    EXPECT_EQ(ToWide(CP_ACP, "\xC0"), L"\u0410");
    SetAnsiCodePage(1252);
    EXPECT_EQ(ToWide(CP_ACP, "\xC0"), L"\u00C0");
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
