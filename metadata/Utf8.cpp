// UTF-8 conversions through the platform's code page functions.
#include "metadata/Utf8.h"

#include <climits>

#include "platform/CodePage.h"

namespace Metadata {

BrmPlatform::BrmStringW Utf8ToWide(std::string_view text) {
    if (text.empty() || text.size() > INT_MAX) return {};
    const int length = static_cast<int>(text.size());
    const int needed = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
    if (needed <= 0) return {};
    BrmPlatform::BrmStringW out;
    wchar_t* buffer = out.GetBufferSetLength(needed);
    const int written = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, buffer, needed);
    out.ReleaseBufferSetLength(written > 0 ? written : 0);
    return out;
}

std::string WideToUtf8(std::wstring_view text) {
    if (text.empty() || text.size() > INT_MAX / 4) return {};
    const int length = static_cast<int>(text.size());
    const int needed = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    if (needed <= 0) return {};
    std::string out(static_cast<std::size_t>(needed), '\0');
    const int written = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, out.data(), needed, nullptr, nullptr);
    out.resize(written > 0 ? static_cast<std::size_t>(written) : 0);
    return out;
}

}  // namespace Metadata
