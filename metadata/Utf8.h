// UTF-8 text of the XML tree to and from the program's wide strings.
// Malformed bytes become U+FFFD, as the platform's conversion does.
#pragma once

#include <string>
#include <string_view>

#include "utils/strings/BrmString.h"

namespace Metadata {

BrmPlatform::BrmStringW Utf8ToWide(std::string_view text);
std::string WideToUtf8(std::wstring_view text);
inline std::string WideToUtf8(const BrmPlatform::BrmStringW& text) { return WideToUtf8(text.StdView()); }

}  // namespace Metadata
