// UTF-8 <-> wide text for names and values that cross the library's edge
// (paths from a command line, JSON output, the C interface).
#pragma once

#include <string>

namespace fi {

std::wstring Widen(const std::string& utf8);
std::string Narrow(const wchar_t* text, size_t length);
std::string Narrow(const std::wstring& text);

}  // namespace fi
