// Code-page conversions between bytes and wide (UTF-32 wchar_t) text, through
// ICU. CP_ACP is the "ANSI" code page: Windows-1252 unless configured with
// SetAnsiCodePage (or the FILEINFO_ACP environment variable at start-up).
#pragma once

#include "platform/WinTypes.h"

constexpr UINT CP_ACP = 0;
constexpr UINT CP_OEMCP = 1;
constexpr UINT CP_UTF16LE = 1200;
constexpr UINT CP_UTF16BE = 1201;
constexpr UINT CP_WINDOWS_1252 = 1252;
constexpr UINT CP_UTF7 = 65000;
constexpr UINT CP_UTF8 = 65001;

// The Windows calls: a length of -1 means zero-terminated (the terminator is
// converted and counted); an output size of 0 asks for the needed length.
// A too-small output answers 0 with ERROR_INSUFFICIENT_BUFFER as last error.
// Wide counts are in wchar_t; for CP_UTF16LE the byte side is UTF-16LE.
int MultiByteToWideChar(UINT codePage, DWORD flags, const char* src, int srcLength, wchar_t* dst, int dstLength);
int WideCharToMultiByte(UINT codePage, DWORD flags, const wchar_t* src, int srcLength, char* dst, int dstLength,
                        const char* defaultChar, BOOL* usedDefaultChar);

UINT GetACP();
void SetAnsiCodePage(UINT codePage);

// Turns UTF-16LE bytes (file boundary) into wide text and back.
std::size_t Utf16LeToWide(const uint8_t* bytes, std::size_t byteCount, wchar_t* out, std::size_t outCount);
