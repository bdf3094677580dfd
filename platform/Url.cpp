// URL parts, combination and file URLs to paths.
#include "platform/Url.h"

std::wstring UrlGetPartW(std::wstring_view, DWORD) { return {}; }
std::wstring UrlCombineW(std::wstring_view, std::wstring_view) { return {}; }
std::wstring PathCreateFromUrlW(std::wstring_view) { return {}; }
