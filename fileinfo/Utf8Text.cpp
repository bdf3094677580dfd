// UTF-8 and wide text at the library's edges: paths and names typed by a
// user, values printed for one. Bad sequences become U+FFFD both ways rather
// than failing, since a name that cannot be shown must still be listed.
#include "fileinfo/Utf8Text.h"

namespace fi {

std::wstring Widen(const std::string& s) {
    std::wstring out;
    out.reserve(s.size());
    for (size_t i = 0; i < s.size();) {
        auto c = static_cast<unsigned char>(s[i]);
        uint32_t cp = 0xFFFD;
        size_t n = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 0;
        if (n == 0 || i + n > s.size()) {
            ++i;
        } else {
            cp = n == 1 ? c : c & (0x7F >> n);
            bool ok = true;
            for (size_t k = 1; k < n; ++k) {
                auto d = static_cast<unsigned char>(s[i + k]);
                if ((d & 0xC0) != 0x80) ok = false;
                cp = (cp << 6) | (d & 0x3F);
            }
            if (!ok || cp > 0x10FFFF || (cp >= 0xD800 && cp < 0xE000)) cp = 0xFFFD;
            i += ok ? n : 1;
        }
        out.push_back(static_cast<wchar_t>(cp));
    }
    return out;
}

std::string Narrow(const wchar_t* text, size_t length) {
    // Most text is ASCII: its leading run is copied in one pass, without a
    // capacity check per character.
    size_t ascii = 0;
    while (ascii < length && static_cast<uint32_t>(text[ascii]) < 0x80) ++ascii;
    std::string out(ascii, '\0');
    for (size_t i = 0; i < ascii; ++i) out[i] = char(text[i]);
    if (ascii == length) return out;
    out.reserve(length + (length - ascii) * 3);
    for (size_t i = ascii; i < length; ++i) {
        auto cp = static_cast<uint32_t>(text[i]);
        if (cp > 0x10FFFF || (cp >= 0xD800 && cp < 0xE000)) cp = 0xFFFD;
        if (cp < 0x80) {
            out.push_back(char(cp));
        } else if (cp < 0x800) {
            out.push_back(char(0xC0 | (cp >> 6)));
            out.push_back(char(0x80 | (cp & 0x3F)));
        } else if (cp < 0x10000) {
            out.push_back(char(0xE0 | (cp >> 12)));
            out.push_back(char(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(char(0x80 | (cp & 0x3F)));
        } else {
            out.push_back(char(0xF0 | (cp >> 18)));
            out.push_back(char(0x80 | ((cp >> 12) & 0x3F)));
            out.push_back(char(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(char(0x80 | (cp & 0x3F)));
        }
    }
    return out;
}

std::string Narrow(const std::wstring& text) { return Narrow(text.data(), text.size()); }

}  // namespace fi
