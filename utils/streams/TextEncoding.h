// The encodings of the text stream reader and writer, and the code page
// that each is converted with.
#pragma once

#include <cstdint>

#include "platform/CodePage.h"

namespace BrmUtils {

enum class TextEncoding : uint32_t {
    CodePage = 0,  // the code page given beside the encoding
    Utf16LE = 1,
    Utf16BE = 2,
    Utf8 = 3,
    Utf7 = 4,
};

// True for the two UTF-16 forms, which are read in 16-bit units.
inline bool IsUtf16(TextEncoding encoding) {
    return encoding == TextEncoding::Utf16LE || encoding == TextEncoding::Utf16BE;
}

// The code page that bytes of `encoding` convert with; UTF-16 converts as
// little-endian, big-endian text being swapped first. 0xFFFFFFFF for a value
// that is no encoding.
inline UINT CodePageOf(TextEncoding encoding, UINT codePage) {
    switch (encoding) {
    case TextEncoding::CodePage: return codePage;
    case TextEncoding::Utf16LE:
    case TextEncoding::Utf16BE: return CP_UTF16LE;
    case TextEncoding::Utf8: return CP_UTF8;
    case TextEncoding::Utf7: return CP_UTF7;
    }
    return 0xFFFFFFFFu;
}

}  // namespace BrmUtils
