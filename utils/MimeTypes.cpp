// Lookups in the table of extensions and media types. The table is small
// and read rarely, so a straight scan in table order keeps "first row wins"
// obvious.
#include "utils/MimeTypes.h"

#include <cwchar>

namespace BrmUtils {
namespace {

wchar_t FoldAscii(wchar_t c) { return c >= L'A' && c <= L'Z' ? wchar_t(c - L'A' + L'a') : c; }

// Compares `text` (of `length` characters) with a zero-terminated row value.
bool EqualsNoCase(const wchar_t* text, std::size_t length, const wchar_t* value) {
    for (std::size_t i = 0; i < length; ++i) {
        if (value[i] == L'\0' || FoldAscii(text[i]) != FoldAscii(value[i])) return false;
    }
    return value[length] == L'\0';
}

bool IsSpace(wchar_t c) { return c == L' ' || c == L'\t'; }

}  // namespace

std::span<const MimeTypeRow> MimeTypeRows() { return {kMimeTypeRows, kMimeTypeRowCount}; }

const wchar_t* MimeTypeFromExtension(const wchar_t* extension) {
    if (!extension) return nullptr;
    if (*extension == L'.') ++extension;
    const std::size_t length = std::wcslen(extension);
    if (length == 0) return nullptr;
    for (const MimeTypeRow& row : MimeTypeRows()) {
        if (EqualsNoCase(extension, length, row.extension + 1)) return row.mimeType;
    }
    return nullptr;
}

const wchar_t* ExtensionFromMimeType(const wchar_t* mimeType) {
    if (!mimeType) return nullptr;
    while (IsSpace(*mimeType)) ++mimeType;
    std::size_t length = 0;
    while (mimeType[length] != L'\0' && mimeType[length] != L';') ++length;
    while (length > 0 && IsSpace(mimeType[length - 1])) --length;
    if (length == 0) return nullptr;
    for (const MimeTypeRow& row : MimeTypeRows()) {
        if (EqualsNoCase(mimeType, length, row.mimeType)) return row.extension;
    }
    return nullptr;
}

}  // namespace BrmUtils
