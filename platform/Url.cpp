// URL parts, combination and file URLs to paths. A URL is split once into
// scheme, authority, path and extra (query and fragment); the operations
// work on that split, so every helper agrees on where a part begins.
#include "platform/Url.h"

#include <cwctype>
#include <string>
#include <vector>

#include "platform/Unicode.h"

namespace {

struct Split {
    bool hasScheme = false;
    bool hasAuthority = false;
    std::wstring_view scheme, authority, path, extra;
};

// A scheme needs two characters at least, so that the drive of a Windows
// path ("C:\x") is never taken for one.
bool IsScheme(std::wstring_view s) {
    if (s.size() < 2 || !std::iswalpha(wint_t(s[0])) || s[0] > 0x7F) return false;
    for (wchar_t c : s)
        if (c > 0x7F || !(std::iswalnum(wint_t(c)) || c == L'+' || c == L'-' || c == L'.')) return false;
    return true;
}

Split SplitUrl(std::wstring_view url) {
    Split out;
    size_t colon = url.find(L':');
    size_t stop = url.find_first_of(L"/?#");
    if (colon != std::wstring_view::npos && colon < stop && IsScheme(url.substr(0, colon))) {
        out.hasScheme = true;
        out.scheme = url.substr(0, colon);
        url.remove_prefix(colon + 1);
    }
    if (url.substr(0, 2) == L"//") {
        out.hasAuthority = true;
        url.remove_prefix(2);
        size_t end = url.find_first_of(L"/?#");
        out.authority = url.substr(0, end);
        url.remove_prefix(end == std::wstring_view::npos ? url.size() : end);
    }
    size_t extra = url.find_first_of(L"?#");
    out.path = url.substr(0, extra);
    if (extra != std::wstring_view::npos) out.extra = url.substr(extra);
    return out;
}

std::wstring_view HostOf(std::wstring_view authority) {
    size_t at = authority.rfind(L'@');
    if (at != std::wstring_view::npos) authority.remove_prefix(at + 1);
    size_t colon = authority.rfind(L':');
    if (colon != std::wstring_view::npos && authority.find(L']', colon) == std::wstring_view::npos)
        authority = authority.substr(0, colon);
    return authority;
}

// RFC 3986 5.2.4: "." and ".." segments removed.
std::wstring RemoveDots(std::wstring_view path) {
    std::vector<std::wstring_view> segments;
    bool absolute = !path.empty() && path[0] == L'/';
    if (absolute) path.remove_prefix(1);
    bool trailing = false;
    while (true) {
        size_t slash = path.find(L'/');
        std::wstring_view seg = path.substr(0, slash);
        bool last = slash == std::wstring_view::npos;
        trailing = last && (seg == L"." || seg == L"..");
        if (seg == L"..") {
            if (!segments.empty()) segments.pop_back();
        } else if (seg != L".") {
            segments.push_back(seg);
        }
        if (last) break;
        path.remove_prefix(slash + 1);
    }
    std::wstring out = absolute ? L"/" : L"";
    for (size_t i = 0; i < segments.size(); ++i) {
        if (i) out += L'/';
        out += segments[i];
    }
    if (trailing && !segments.empty()) out += L'/';
    return out;
}

int HexValue(wchar_t c) {
    if (c >= L'0' && c <= L'9') return c - L'0';
    if (c >= L'a' && c <= L'f') return c - L'a' + 10;
    if (c >= L'A' && c <= L'F') return c - L'A' + 10;
    return -1;
}

bool EqualsNoCase(std::wstring_view a, std::wstring_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::towlower(wint_t(a[i])) != std::towlower(wint_t(b[i]))) return false;
    return true;
}

}  // namespace

std::wstring UrlGetPartW(std::wstring_view url, DWORD part) {
    Split s = SplitUrl(url);
    switch (part) {
    case URL_PART_SCHEME:
        return std::wstring(s.scheme);
    case URL_PART_HOSTNAME:
        return std::wstring(HostOf(s.authority));
    case URL_PART_QUERY: {
        if (s.extra.empty() || s.extra[0] != L'?') return {};
        std::wstring_view q = s.extra.substr(1);
        return std::wstring(q.substr(0, q.find(L'#')));
    }
    case URL_PART_PATH:
        return std::wstring(s.path);
    case URL_PART_EXTRA:
        return std::wstring(s.extra);
    default:
        return {};
    }
}

std::wstring UrlCombineW(std::wstring_view base, std::wstring_view relative) {
    std::wstring rel(relative);
    Split r = SplitUrl(rel);
    std::wstring out;
    if (r.hasScheme) {
        out = rel;
    } else {
        Split b = SplitUrl(base);
        if (!b.hasScheme) return {};
        // Paths written on Windows use '\'; in a URL they mean '/'.
        std::wstring relPath(r.path);
        for (wchar_t& c : relPath)
            if (c == L'\\') c = L'/';
        out.assign(b.scheme).append(L":");
        if (r.hasAuthority) {
            out.append(L"//").append(r.authority).append(RemoveDots(relPath));
        } else {
            if (b.hasAuthority) out.append(L"//").append(b.authority);
            if (relPath.empty()) {
                out.append(b.path);
                if (r.extra.empty()) {
                    out.append(b.extra.substr(0, b.extra.find(L'#')));
                }
            } else if (relPath[0] == L'/') {
                out.append(RemoveDots(relPath));
            } else {
                std::wstring merged;
                size_t slash = b.path.rfind(L'/');
                if (slash != std::wstring_view::npos)
                    merged.assign(b.path.substr(0, slash + 1));
                else if (b.hasAuthority)
                    merged = L"/";
                merged += relPath;
                out.append(RemoveDots(merged));
            }
        }
        out.append(r.extra);
    }
    if (out.size() >= INTERNET_MAX_URL_LENGTH) return {};
    return out;
}

std::wstring PathCreateFromUrlW(std::wstring_view url) {
    Split s = SplitUrl(url);
    if (!s.hasScheme || !EqualsNoCase(s.scheme, L"file")) return {};
    if (s.hasAuthority && !s.authority.empty() && !EqualsNoCase(s.authority, L"localhost")) return {};
    std::wstring_view path = s.path;
    if (path.empty() || path[0] != L'/') return {};
    std::string bytes;
    for (size_t i = 0; i < path.size(); ++i) {
        wchar_t c = path[i];
        if (c == L'%' && i + 2 < path.size() && HexValue(path[i + 1]) >= 0 && HexValue(path[i + 2]) >= 0) {
            bytes.push_back(char(HexValue(path[i + 1]) * 16 + HexValue(path[i + 2])));
            i += 2;
            continue;
        }
        wchar_t one[1] = {c};
        char buffer[8];
        size_t n = Unicode::EncodeUtf8(one, 1, buffer);
        bytes.append(buffer, n);
    }
    if (bytes.find('\0') != std::string::npos) return {};
    bool invalid = false;
    size_t length = Unicode::DecodeUtf8(bytes.data(), bytes.size(), nullptr, Unicode::Invalid::Replace, &invalid);
    if (invalid) return {};
    std::wstring out(length, L'\0');
    Unicode::DecodeUtf8(bytes.data(), bytes.size(), out.data());
    return out;
}
