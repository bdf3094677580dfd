// URL helpers with the names of the platform calls the container's link
// resolution is written against: the parts of a URL, a reference combined
// with a base, and the local path of a file URL. They work on generic
// "scheme://host/path?query#fragment" URLs and never fail by exception; a
// part that is absent (or a result that would exceed the limit) is empty.
#pragma once

#include <string>
#include <string_view>

#include "platform/WinTypes.h"

// The room allowed for a URL, terminator included.
constexpr DWORD INTERNET_MAX_URL_LENGTH = 2084;

constexpr DWORD URL_PART_SCHEME = 1;    // "file", as written
constexpr DWORD URL_PART_HOSTNAME = 2;  // between "//" and the next '/', '?' or '#'
constexpr DWORD URL_PART_QUERY = 6;     // "?a=b" without its mark
constexpr DWORD URL_PART_PATH = 100;    // the path, from its '/' on (no query, no fragment)
constexpr DWORD URL_PART_EXTRA = 101;   // query and fragment, with their leading '?' or '#'

// The part of the URL, or empty.
std::wstring UrlGetPartW(std::wstring_view url, DWORD part);

// `relative` taken against `base` as a browser would (a reference with a
// scheme stands as it is; "." and ".." steps are resolved). Empty when
// the base has no scheme or the result exceeds INTERNET_MAX_URL_LENGTH - 1.
std::wstring UrlCombineW(std::wstring_view base, std::wstring_view relative);

// The local path of a "file:" URL ("file:///p", "file://localhost/p",
// "file:/p"), percent escapes decoded as UTF-8; the query and fragment are
// not part of it. Empty for another scheme or host, or bad escapes.
std::wstring PathCreateFromUrlW(std::wstring_view url);
