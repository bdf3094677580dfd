// File URLs, escaping and environment expansion over std::wstring, turned
// into UTF-8 wherever bytes are escaped.
#include "utils/FileUrl.h"

#include <unistd.h>

#include <cstdlib>
#include <cwctype>
#include <string>
#include <vector>

#include "platform/CodePage.h"
#include "platform/Files.h"

namespace BrmUtils {

using BrmPlatform::BrmStringW;

namespace {

std::wstring ToStd(const BrmStringW& s) { return std::wstring(s.GetString(), std::size_t(s.GetLength())); }
BrmStringW FromStd(const std::wstring& s) { return BrmStringW(s.c_str(), int(s.size())); }

bool ToUtf8(const std::wstring& text, std::string* out) {
    out->clear();
    if (text.empty()) return true;
    int n = WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()), nullptr, 0, nullptr, nullptr);
    if (n <= 0) return false;
    out->resize(std::size_t(n));
    return WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()), out->data(), n, nullptr, nullptr) == n;
}

// Strict: bytes that are not UTF-8 fail rather than turn into U+FFFD.
bool FromUtf8(const std::string& bytes, std::wstring* out) {
    out->clear();
    std::size_t i = 0, n = bytes.size();
    while (i < n) {
        unsigned char c = static_cast<unsigned char>(bytes[i]);
        uint32_t cp;
        int extra;
        if (c < 0x80) {
            cp = c, extra = 0;
        } else if ((c & 0xE0) == 0xC0) {
            cp = c & 0x1F, extra = 1;
        } else if ((c & 0xF0) == 0xE0) {
            cp = c & 0x0F, extra = 2;
        } else if ((c & 0xF8) == 0xF0) {
            cp = c & 0x07, extra = 3;
        } else {
            return false;
        }
        if (i + std::size_t(extra) >= n) return false;
        for (int k = 1; k <= extra; ++k) {
            unsigned char d = static_cast<unsigned char>(bytes[i + std::size_t(k)]);
            if ((d & 0xC0) != 0x80) return false;
            cp = (cp << 6) | (d & 0x3F);
        }
        static const uint32_t kMin[4] = {0, 0x80, 0x800, 0x10000};
        if (cp < kMin[extra] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return false;
        out->push_back(wchar_t(cp));
        i += std::size_t(extra) + 1;
    }
    return true;
}

int HexValue(wchar_t c) {
    if (c >= L'0' && c <= L'9') return c - L'0';
    if (c >= L'a' && c <= L'f') return c - L'a' + 10;
    if (c >= L'A' && c <= L'F') return c - L'A' + 10;
    return -1;
}

void AppendEscaped(std::wstring* out, unsigned char byte) {
    static const wchar_t kHex[] = L"0123456789ABCDEF";
    *out += L'%';
    *out += kHex[byte >> 4];
    *out += kHex[byte & 15];
}

// Characters a path keeps in a file URL: the unreserved ones and those of
// the path grammar; everything else is escaped.
bool IsPathSafe(unsigned char c) {
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) return true;
    switch (c) {
        case '-': case '.': case '_': case '~': case '/': case ':': case '@': case '!': case '$':
        case '&': case '\'': case '(': case ')': case '*': case '+': case ',': case ';': case '=':
            return true;
        default:
            return false;
    }
}

bool IsNeverSafe(unsigned char c) {
    if (c <= 0x20 || c >= 0x7F) return true;
    switch (c) {
        case '%': case '<': case '>': case '"': case '{': case '}': case '|': case '\\': case '^': case '`':
            return true;
        default:
            return false;
    }
}

// Escapes bytes of text for which mustEscape holds; false if the result
// would not fit in kMaxUrlLength - 1 characters.
template <typename Pred>
bool Escape(const std::wstring& prefix, const std::wstring& text, Pred mustEscape, std::wstring* out) {
    std::string bytes;
    if (!ToUtf8(text, &bytes)) return false;
    *out = prefix;
    for (char ch : bytes) {
        unsigned char c = static_cast<unsigned char>(ch);
        if (mustEscape(c))
            AppendEscaped(out, c);
        else
            *out += wchar_t(c);
        if (out->size() >= std::size_t(kMaxUrlLength)) return false;
    }
    return true;
}

bool Unescape(const std::wstring& text, std::wstring* out) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        wchar_t c = text[i];
        if (c == L'%' && i + 2 < text.size() && HexValue(text[i + 1]) >= 0 && HexValue(text[i + 2]) >= 0) {
            bytes += char(HexValue(text[i + 1]) * 16 + HexValue(text[i + 2]));
            i += 2;
        } else if (c < 0x80) {
            bytes += char(c);
        } else {
            std::string enc;
            if (!ToUtf8(std::wstring(1, c), &enc)) return false;
            bytes += enc;
        }
    }
    return FromUtf8(bytes, out);
}

bool StartsWithNoCase(const std::wstring& text, const wchar_t* prefix) {
    std::size_t i = 0;
    for (; prefix[i]; ++i) {
        if (i >= text.size() || std::towlower(text[i]) != std::towlower(prefix[i])) return false;
    }
    return true;
}

// Resolves "." and ".." steps and repeated separators of an absolute path
// by name, as the URL form needs; ".." at the root stays at the root.
std::wstring NormalPath(const std::wstring& path) {
    std::vector<std::wstring> steps;
    std::size_t i = 0;
    while (i < path.size()) {
        std::size_t next = path.find(L'/', i);
        if (next == std::wstring::npos) next = path.size();
        std::wstring step = path.substr(i, next - i);
        if (step == L"..") {
            if (!steps.empty()) steps.pop_back();
        } else if (!step.empty() && step != L".") {
            steps.push_back(step);
        }
        i = next + 1;
    }
    std::wstring out;
    for (const std::wstring& step : steps) out += L"/" + step;
    bool trailing = !path.empty() && path.back() == L'/' && !steps.empty();
    if (out.empty() || trailing) out += L'/';
    return out;
}

}  // namespace

BrmStringW UrlFromPath(const BrmStringW& path) {
    std::wstring p = ToStd(path);
    if (p.empty() || p.find(L'\0') != std::wstring::npos) return BrmStringW();
    if (p[0] != L'/') {
        char cwd[kMaxPathLength];
        if (!::getcwd(cwd, sizeof cwd)) return BrmStringW();
        p = PathFromNative(cwd) + L"/" + p;
    }
    std::wstring url;
    if (!Escape(L"file://", NormalPath(p), [](unsigned char c) { return !IsPathSafe(c); }, &url))
        return BrmStringW();
    return FromStd(url);
}

BrmStringW PathFromUrl(const BrmStringW& url) {
    std::wstring u = ToStd(url);
    if (!StartsWithNoCase(u, L"file:")) return BrmStringW();
    std::wstring rest = u.substr(5);
    if (rest.compare(0, 2, L"//") == 0) {
        std::size_t slash = rest.find(L'/', 2);
        std::wstring host = rest.substr(2, slash == std::wstring::npos ? std::wstring::npos : slash - 2);
        if (!host.empty() && !(host.size() == 9 && StartsWithNoCase(host, L"localhost"))) return BrmStringW();
        if (slash == std::wstring::npos) return BrmStringW();
        rest = rest.substr(slash);
    }
    if (rest.empty() || rest[0] != L'/') return BrmStringW();
    // A query or fragment is not part of the path.
    std::size_t cut = rest.find_first_of(L"?#");
    if (cut != std::wstring::npos) rest.resize(cut);
    std::wstring path;
    if (!Unescape(rest, &path)) return BrmStringW();
    if (path.find(L'\0') != std::wstring::npos || path.size() >= std::size_t(kMaxPathLength)) return BrmStringW();
    return FromStd(path);
}

BrmStringW UrlEscape(const BrmStringW& text) {
    std::wstring out;
    if (!Escape(L"", ToStd(text), IsNeverSafe, &out)) return BrmStringW();
    return FromStd(out);
}

BrmStringW UrlUnescape(const BrmStringW& text) {
    std::wstring out;
    if (!Unescape(ToStd(text), &out)) return BrmStringW();
    return FromStd(out);
}

bool CrackUrl(const BrmStringW& url, UrlParts* parts) {
    std::wstring u = ToStd(url);
    std::size_t colon = u.find(L':');
    if (colon == 0 || colon == std::wstring::npos || !std::iswalpha(u[0])) return false;
    for (std::size_t i = 1; i < colon; ++i) {
        wchar_t c = u[i];
        if (!(std::iswalnum(c) || c == L'+' || c == L'-' || c == L'.')) return false;
    }
    UrlParts result;
    result.scheme = FromStd(u.substr(0, colon));
    std::wstring rest = u.substr(colon + 1);
    std::size_t extraAt = rest.find_first_of(L"?#");
    if (extraAt != std::wstring::npos) {
        result.extra = FromStd(rest.substr(extraAt));
        rest.resize(extraAt);
    }
    if (rest.compare(0, 2, L"//") == 0) {
        std::size_t slash = rest.find(L'/', 2);
        std::wstring authority = rest.substr(2, slash == std::wstring::npos ? std::wstring::npos : slash - 2);
        rest = slash == std::wstring::npos ? std::wstring() : rest.substr(slash);
        std::size_t at = authority.rfind(L'@');
        if (at != std::wstring::npos) {
            std::wstring userInfo = authority.substr(0, at);
            authority = authority.substr(at + 1);
            std::size_t pw = userInfo.find(L':');
            result.user = FromStd(userInfo.substr(0, pw));
            if (pw != std::wstring::npos) result.password = FromStd(userInfo.substr(pw + 1));
        }
        std::size_t portAt = authority.rfind(L':');
        if (portAt != std::wstring::npos && authority.find(L']', portAt) == std::wstring::npos) {
            std::wstring digits = authority.substr(portAt + 1);
            authority.resize(portAt);
            if (digits.empty() || digits.size() > 5) return false;
            int port = 0;
            for (wchar_t c : digits) {
                if (c < L'0' || c > L'9') return false;
                port = port * 10 + (c - L'0');
            }
            if (port > 65535) return false;
            result.port = port;
        }
        result.host = FromStd(authority);
    }
    result.path = FromStd(rest);
    *parts = result;
    return true;
}

BrmStringW ExpandEnvironmentStrings(const BrmStringW& text) {
    std::wstring in = ToStd(text), out;
    std::size_t i = 0;
    while (i < in.size()) {
        std::size_t close = in[i] == L'%' ? in.find(L'%', i + 1) : std::wstring::npos;
        if (close == std::wstring::npos || close == i + 1) {
            out += in[i++];
            continue;
        }
        std::wstring name = in.substr(i + 1, close - i - 1);
        std::string nativeName;
        const char* value = nullptr;
        if (ToUtf8(name, &nativeName) && nativeName.find('=') == std::string::npos)
            value = std::getenv(nativeName.c_str());
        std::wstring wideValue;
        if (value && FromUtf8(value, &wideValue)) {
            out += wideValue;
            i = close + 1;
        } else {
            // An unknown name stays as written, its closing % included.
            out.append(in, i, close - i + 1);
            i = close + 1;
        }
    }
    return FromStd(out);
}

}  // namespace BrmUtils
