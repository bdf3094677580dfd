// Conversion between bytes in a code page and wide text. Callers that read or
// write UTF-8 use these, not the string class's width conversion, which
// assumes the ANSI code page.
#pragma once

#include <cstddef>

#include "platform/CodePage.h"
#include "utils/strings/BrmString.h"

namespace BrmUtils {

// Bytes in `codePage` to wide text. Empty input, or input the code page
// cannot take, gives an empty string.
BrmPlatform::BrmStringW ConvertToWide(const char* bytes, size_t length, UINT codePage = CP_UTF8);
BrmPlatform::BrmStringW ConvertToWide(const BrmPlatform::BrmStringA& bytes, UINT codePage = CP_UTF8);

// Wide text to bytes in `codePage`; the counterpart of ConvertToWide.
BrmPlatform::BrmStringA ConvertFromWide(const wchar_t* text, size_t length, UINT codePage = CP_UTF8);
BrmPlatform::BrmStringA ConvertFromWide(const BrmPlatform::BrmStringW& text, UINT codePage = CP_UTF8);

}  // namespace BrmUtils
