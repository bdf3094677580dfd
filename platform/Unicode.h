// UTF-8 and UTF-16 coding of wide (UTF-32) text, shared by the code-page
// conversions, the file-name conversions and the file-boundary helpers.
// Every function counts first: with a null output it only answers the
// length, so callers can size a buffer and convert in a second pass.
#pragma once

#include <cstddef>
#include <cstdint>

namespace Unicode {

constexpr char32_t kReplacement = 0xFFFD;

// How bytes that are no UTF-8 are decoded.
enum class Invalid {
    Replace,  // each maximal ill-formed subpart becomes U+FFFD
    Escape,   // each bad byte b becomes the lone surrogate U+DC00 + b (file names)
};

// Decodes `count` UTF-8 bytes; answers the wide characters produced. Writes
// them to `out` unless it is null. `sawInvalid` (optional) is set when an
// ill-formed sequence was met.
std::size_t DecodeUtf8(const char* bytes, std::size_t count, wchar_t* out, Invalid mode = Invalid::Replace,
                       bool* sawInvalid = nullptr);

// Encodes `count` wide characters as UTF-8; answers the bytes produced.
// Surrogates and values above U+10FFFF become U+FFFD, except that with
// `unescape` a lone U+DC80..U+DCFF gives back the byte it stands for.
std::size_t EncodeUtf8(const wchar_t* text, std::size_t count, char* out, bool unescape = false,
                       bool* sawInvalid = nullptr);

// Decodes UTF-16 bytes (little- or big-endian); pairs are joined, lone
// surrogates become U+FFFD, an odd last byte is dropped.
std::size_t DecodeUtf16(const uint8_t* bytes, std::size_t byteCount, bool bigEndian, wchar_t* out,
                        bool* sawInvalid = nullptr);

// Encodes wide characters as UTF-16 bytes; answers the byte count.
std::size_t EncodeUtf16(const wchar_t* text, std::size_t count, bool bigEndian, uint8_t* out,
                        bool* sawInvalid = nullptr);

// Whether a wide character is a Unicode scalar value (no surrogate, not
// above U+10FFFF).
constexpr bool IsScalar(char32_t c) { return c < 0xD800 || (c > 0xDFFF && c <= 0x10FFFF); }

}  // namespace Unicode
