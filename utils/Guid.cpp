// Text forms of BrmUtils::Guid over the platform's identifier functions.
#include "utils/Guid.h"

#include <cwchar>
#include <string>

#include "platform/Uuid.h"

namespace BrmUtils {

using BrmPlatform::BrmStringA;
using BrmPlatform::BrmStringW;

namespace {

bool IsBrace(wchar_t c) { return c == L'{' || c == L'}'; }

// Parses text of length n; a failure leaves the zero value.
GUID ParseText(const wchar_t* text, std::size_t n) {
    GUID value = GUID_NULL;
    if (!text || n == 0) return value;
    std::size_t first = 0, end = n;
    if (text[0] == L'{' || text[n - 1] == L'}') {
        while (end > 0 && IsBrace(text[end - 1])) --end;
        while (first < end && IsBrace(text[first])) ++first;
    }
    std::wstring rest(text + first, end - first);
    if (UuidFromStringW(rest.c_str(), &value) != RPC_S_OK) value = GUID_NULL;
    return value;
}

}  // namespace

Guid::Guid(const wchar_t* text) : value_(ParseText(text, text ? std::wcslen(text) : 0)) {}

Guid::Guid(const BrmStringW& text) : value_(ParseText(text.GetString(), std::size_t(text.GetLength()))) {}

Guid::Guid(const char* text) : Guid(BrmStringW(BrmStringA(text))) {}

Guid::Guid(const BrmStringA& text) : Guid(BrmStringW(text)) {}

Guid Guid::Create() {
    GUID value = GUID_NULL;
    if (UuidCreate(&value) != RPC_S_OK) value = GUID_NULL;
    return Guid(value);
}

BrmStringW Guid::ToString() const {
    wchar_t* text = nullptr;
    if (UuidToStringW(&value_, &text) != RPC_S_OK || !text) return BrmStringW();
    BrmStringW result(text);
    RpcStringFreeW(&text);
    return result;
}

BrmStringW Guid::ToBracedString() const {
    BrmStringW inner = ToString();
    if (inner.IsEmpty()) return inner;
    BrmStringW result(L"{");
    result += inner;
    result += L"}";
    return result;
}

}  // namespace BrmUtils
