// Message notation (%1, %2!d!, %n, %r, %t, %., %!, "% ") to the positional
// printf notation (%1$s, %2$d) that BrmStringT::FormatV prints. Used by
// BrmStringT::FormatMessage.
#pragma once

#include <string>

namespace BrmUtils {

// The zero-terminated format rewritten by seven fixed regular-expression
// replacements; a null format gives an empty result. A format that matches
// none of them passes unchanged.
std::string ConvertMessageFormat(const char* format);
std::wstring ConvertMessageFormat(const wchar_t* format);

}  // namespace BrmUtils
