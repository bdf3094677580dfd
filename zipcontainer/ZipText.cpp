// Byte-to-wide conversions for zip names and comments, over the platform's
// code-page calls.
#include "zipcontainer/ZipText.h"

using BrmPlatform::BrmStringW;

#include <climits>
#include <cstring>
#include <vector>

#include "platform/CodePage.h"

namespace ZipText {
namespace {

BrmStringW Decode(UINT codePage, const uint8_t* bytes, size_t length) {
    if (length == 0 || length > size_t(INT_MAX))
        return BrmStringW();
    const char* src = reinterpret_cast<const char*>(bytes);
    int needed = MultiByteToWideChar(codePage, 0, src, int(length), nullptr, 0);
    if (needed <= 0)
        return BrmStringW();
    std::vector<wchar_t> wide(static_cast<size_t>(needed));
    int got = MultiByteToWideChar(codePage, 0, src, int(length), wide.data(), needed);
    if (got <= 0)
        return BrmStringW();
    return BrmStringW(wide.data(), got);
}

std::string Encode(UINT codePage, const BrmStringW& text) {
    int length = text.GetLength();
    if (length == 0)
        return std::string();
    int needed = WideCharToMultiByte(codePage, 0, text.GetString(), length, nullptr, 0, nullptr, nullptr);
    if (needed <= 0)
        return std::string();
    std::string out(size_t(needed), '\0');
    int got = WideCharToMultiByte(codePage, 0, text.GetString(), length, out.data(), needed, nullptr, nullptr);
    out.resize(got > 0 ? size_t(got) : 0);
    return out;
}

}  // namespace

BrmStringW FromUtf8UpToNul(const uint8_t* bytes, size_t length) {
    const void* nul = length ? std::memchr(bytes, 0, length) : nullptr;
    if (nul)
        length = size_t(static_cast<const uint8_t*>(nul) - bytes);
    return Decode(CP_UTF8, bytes, length);
}

BrmStringW FromUtf8(const uint8_t* bytes, size_t length) { return Decode(CP_UTF8, bytes, length); }

BrmStringW FromAnsi(const uint8_t* bytes, size_t length) { return Decode(CP_ACP, bytes, length); }

std::string ToUtf8(const BrmStringW& text) { return Encode(CP_UTF8, text); }

std::string ToAnsi(const BrmStringW& text) { return Encode(CP_ACP, text); }

}  // namespace ZipText
