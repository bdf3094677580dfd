// UTF-8 and UTF-16 coding of wide text. Written by hand rather than through
// ICU because these run on every file name and every UTF-8 property value,
// and because the ill-formed cases need exact, documented answers.
#include "platform/Unicode.h"

namespace Unicode {
namespace {

// The range the byte after a lead byte must lie in; later continuation bytes
// are always 0x80..0xBF. Answers the sequence length, 0 for a bad lead.
int SequenceInfo(uint8_t lead, uint8_t& lo, uint8_t& hi) {
    lo = 0x80;
    hi = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead == 0xE0) { lo = 0xA0; return 3; }
    if (lead >= 0xE1 && lead <= 0xEC) return 3;
    if (lead == 0xED) { hi = 0x9F; return 3; }  // no surrogates
    if (lead == 0xEE || lead == 0xEF) return 3;
    if (lead == 0xF0) { lo = 0x90; return 4; }
    if (lead >= 0xF1 && lead <= 0xF3) return 4;
    if (lead == 0xF4) { hi = 0x8F; return 4; }  // nothing above U+10FFFF
    return 0;
}

inline void Put(wchar_t* out, std::size_t& n, char32_t c) {
    if (out) out[n] = wchar_t(c);
    ++n;
}

inline void PutByte(char* out, std::size_t& n, uint8_t b) {
    if (out) out[n] = char(b);
    ++n;
}

inline void PutUnit(uint8_t* out, std::size_t& n, uint16_t unit, bool bigEndian) {
    if (out) {
        out[n] = uint8_t(bigEndian ? unit >> 8 : unit & 0xFF);
        out[n + 1] = uint8_t(bigEndian ? unit & 0xFF : unit >> 8);
    }
    n += 2;
}

}  // namespace

std::size_t DecodeUtf8(const char* bytes, std::size_t count, wchar_t* out, Invalid mode, bool* sawInvalid) {
    const auto* s = reinterpret_cast<const uint8_t*>(bytes);
    std::size_t n = 0;
    std::size_t i = 0;
    while (i < count) {
        uint8_t lead = s[i];
        if (lead < 0x80) {
            Put(out, n, lead);
            ++i;
            continue;
        }
        uint8_t lo, hi;
        int length = SequenceInfo(lead, lo, hi);
        std::size_t used = 1;
        char32_t c = 0;
        bool good = length > 0;
        if (good) {
            c = lead & (length == 2 ? 0x1F : length == 3 ? 0x0F : 0x07);
            for (int k = 1; k < length; ++k) {
                if (i + used >= count) { good = false; break; }
                uint8_t b = s[i + used];
                if (b < lo || b > hi) { good = false; break; }
                c = (c << 6) | (b & 0x3F);
                ++used;
                lo = 0x80;
                hi = 0xBF;
            }
        }
        if (good) {
            Put(out, n, c);
        } else {
            if (sawInvalid) *sawInvalid = true;
            if (mode == Invalid::Escape) {
                for (std::size_t k = 0; k < used; ++k) Put(out, n, 0xDC00 + s[i + k]);
            } else {
                Put(out, n, kReplacement);
            }
        }
        i += used;
    }
    return n;
}

std::size_t EncodeUtf8(const wchar_t* text, std::size_t count, char* out, bool unescape, bool* sawInvalid) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < count; ++i) {
        auto c = char32_t(text[i]);
        if (unescape && c >= 0xDC80 && c <= 0xDCFF) {
            PutByte(out, n, uint8_t(c - 0xDC00));
            continue;
        }
        if (!IsScalar(c)) {
            if (sawInvalid) *sawInvalid = true;
            c = kReplacement;
        }
        if (c < 0x80) {
            PutByte(out, n, uint8_t(c));
        } else if (c < 0x800) {
            PutByte(out, n, uint8_t(0xC0 | (c >> 6)));
            PutByte(out, n, uint8_t(0x80 | (c & 0x3F)));
        } else if (c < 0x10000) {
            PutByte(out, n, uint8_t(0xE0 | (c >> 12)));
            PutByte(out, n, uint8_t(0x80 | ((c >> 6) & 0x3F)));
            PutByte(out, n, uint8_t(0x80 | (c & 0x3F)));
        } else {
            PutByte(out, n, uint8_t(0xF0 | (c >> 18)));
            PutByte(out, n, uint8_t(0x80 | ((c >> 12) & 0x3F)));
            PutByte(out, n, uint8_t(0x80 | ((c >> 6) & 0x3F)));
            PutByte(out, n, uint8_t(0x80 | (c & 0x3F)));
        }
    }
    return n;
}

std::size_t DecodeUtf16(const uint8_t* bytes, std::size_t byteCount, bool bigEndian, wchar_t* out,
                        bool* sawInvalid) {
    auto unit = [&](std::size_t i) -> char32_t {
        return bigEndian ? char32_t((bytes[i] << 8) | bytes[i + 1]) : char32_t(bytes[i] | (bytes[i + 1] << 8));
    };
    std::size_t units = byteCount / 2;
    std::size_t n = 0;
    for (std::size_t u = 0; u < units; ++u) {
        char32_t c = unit(u * 2);
        if (c >= 0xD800 && c <= 0xDBFF && u + 1 < units) {
            char32_t low = unit((u + 1) * 2);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                Put(out, n, 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00));
                ++u;
                continue;
            }
        }
        if (c >= 0xD800 && c <= 0xDFFF) {
            if (sawInvalid) *sawInvalid = true;
            c = kReplacement;
        }
        Put(out, n, c);
    }
    return n;
}

std::size_t EncodeUtf16(const wchar_t* text, std::size_t count, bool bigEndian, uint8_t* out, bool* sawInvalid) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < count; ++i) {
        auto c = char32_t(text[i]);
        if (!IsScalar(c)) {
            if (sawInvalid) *sawInvalid = true;
            c = kReplacement;
        }
        if (c >= 0x10000) {
            c -= 0x10000;
            PutUnit(out, n, uint16_t(0xD800 + (c >> 10)), bigEndian);
            PutUnit(out, n, uint16_t(0xDC00 + (c & 0x3FF)), bigEndian);
        } else {
            PutUnit(out, n, uint16_t(c), bigEndian);
        }
    }
    return n;
}

}  // namespace Unicode
