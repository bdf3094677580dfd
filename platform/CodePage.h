// Code-page conversions between bytes and wide (UTF-32 wchar_t) text, through
// ICU. CP_ACP is the "ANSI" code page: Windows-1252 unless configured with
// SetAnsiCodePage (or the FILEINFO_ACP environment variable at start-up).
#pragma once

#include <string>

#include "platform/WinTypes.h"

constexpr UINT CP_ACP = 0;
constexpr UINT CP_OEMCP = 1;
constexpr UINT CP_MACCP = 2;
constexpr UINT CP_THREAD_ACP = 3;
constexpr UINT CP_UTF16LE = 1200;
constexpr UINT CP_UTF16BE = 1201;
constexpr UINT CP_WINDOWS_1252 = 1252;
constexpr UINT CP_UTF7 = 65000;
constexpr UINT CP_UTF8 = 65001;

// The Windows calls: a length of -1 means zero-terminated (the terminator is
// converted and counted); an output size of 0 asks for the needed length.
// A too-small output answers 0 with ERROR_INSUFFICIENT_BUFFER as last error.
// Wide counts are in wchar_t; for CP_UTF16LE the byte side is UTF-16LE.
constexpr DWORD MB_PRECOMPOSED = 0x00000001;
constexpr DWORD MB_ERR_INVALID_CHARS = 0x00000008;  // fail on ill-formed input instead of U+FFFD
constexpr DWORD WC_ERR_INVALID_CHARS = 0x00000080;  // UTF-8 only: fail on surrogates
constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x00000400;  // always the case here: no best-fit mapping
int MultiByteToWideChar(UINT codePage, DWORD flags, const char* src, int srcLength, wchar_t* dst, int dstLength);
int WideCharToMultiByte(UINT codePage, DWORD flags, const wchar_t* src, int srcLength, char* dst, int dstLength,
                        const char* defaultChar, BOOL* usedDefaultChar);

UINT GetACP();
void SetAnsiCodePage(UINT codePage);

// Turns UTF-16LE bytes (file boundary) into wide text and back. Surrogate
// pairs become one character; a lone surrogate becomes U+FFFD; an odd last
// byte is dropped. Each answers the full length of the result and writes at
// most outCount characters (outBytes bytes) of it; out may be null.
std::size_t Utf16LeToWide(const uint8_t* bytes, std::size_t byteCount, wchar_t* out, std::size_t outCount);
std::size_t WideToUtf16Le(const wchar_t* text, std::size_t count, uint8_t* out, std::size_t outBytes);
std::wstring Utf16LeToWideString(const uint8_t* bytes, std::size_t byteCount);
std::string WideToUtf16LeString(const wchar_t* text, std::size_t count);
