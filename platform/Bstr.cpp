// BSTR: a block of a 32-bit byte count followed by the characters and a
// terminating zero; the BSTR points at the characters. The count stands
// directly in front of them, as callers that read it expect, and the block
// starts 8 bytes before so that the characters stay 8-aligned.
#include <cstdlib>
#include <cwchar>

#include "platform/OleAuto.h"

namespace {

constexpr std::size_t kHeader = 8;
// The byte count must fit the 32-bit prefix.
constexpr UINT kMaxChars = (0xFFFFFFFFu - kHeader) / sizeof(wchar_t) - 1;

char* BlockOf(BSTR bstr) { return reinterpret_cast<char*>(bstr) - kHeader; }

BSTR Allocate(UINT cch) {
    if (cch > kMaxChars) return nullptr;
    auto* block = static_cast<char*>(std::malloc(kHeader + (std::size_t(cch) + 1) * sizeof(wchar_t)));
    if (!block) return nullptr;
    const uint32_t bytes = cch * uint32_t(sizeof(wchar_t));
    std::memset(block, 0, kHeader);
    std::memcpy(block + kHeader - sizeof(uint32_t), &bytes, sizeof bytes);
    return reinterpret_cast<BSTR>(block + kHeader);
}

}  // namespace

BSTR SysAllocStringLen(const wchar_t* pch, UINT cch) {
    BSTR bstr = Allocate(cch);
    if (!bstr) return nullptr;
    if (pch) {
        std::memcpy(bstr, pch, std::size_t(cch) * sizeof(wchar_t));
    } else {
        std::memset(bstr, 0, std::size_t(cch) * sizeof(wchar_t));
    }
    bstr[cch] = L'\0';
    return bstr;
}

BSTR SysAllocString(const wchar_t* psz) {
    if (!psz) return nullptr;
    std::size_t length = std::wcslen(psz);
    if (length > kMaxChars) return nullptr;
    return SysAllocStringLen(psz, UINT(length));
}

int SysReAllocStringLen(BSTR* pbstr, const wchar_t* psz, UINT cch) {
    if (!pbstr) return FALSE;
    // psz may point into the old string, so the old block goes last.
    BSTR fresh = SysAllocStringLen(psz, cch);
    if (!fresh) return FALSE;
    SysFreeString(*pbstr);
    *pbstr = fresh;
    return TRUE;
}

void SysFreeString(BSTR bstr) {
    if (bstr) std::free(BlockOf(bstr));
}

UINT SysStringByteLen(BSTR bstr) {
    if (!bstr) return 0;
    uint32_t bytes;
    std::memcpy(&bytes, reinterpret_cast<char*>(bstr) - sizeof bytes, sizeof bytes);
    return bytes;
}

UINT SysStringLen(BSTR bstr) { return SysStringByteLen(bstr) / UINT(sizeof(wchar_t)); }
