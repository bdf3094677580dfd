// Parsing and formatting the text form of PROPVARIANT values.
#include "utils/props/PropVariantText.h"

#include <charconv>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <string>
#include <vector>

#include "platform/CodePage.h"
#include "platform/OleAuto.h"

namespace BrmUtils {
namespace {

using BrmPlatform::BrmStringW;

struct TypeName {
    const wchar_t* name;
    VARTYPE vt;
};

// In the order in which names are compared.
constexpr TypeName kTypeNames[] = {
    {L"byte", VT_UI1},   {L"char", VT_I1},    {L"short", VT_I2},   {L"ushort", VT_UI2},  {L"int", VT_I4},
    {L"uint", VT_UI4},   {L"int64", VT_I8},   {L"uint64", VT_UI8}, {L"bool", VT_BOOL},   {L"float", VT_R4},
    {L"double", VT_R8},  {L"bstr", VT_BSTR},  {L"cstr", VT_LPSTR}, {L"string", VT_LPWSTR}, {L"binary", VT_BLOB},
};

const wchar_t* NameOf(VARTYPE vt) {
    for (const TypeName& t : kTypeNames) {
        if (t.vt == vt) {
            return t.name;
        }
    }
    return nullptr;
}

// ---- Parsing one element -------------------------------------------------

int64_t ToSigned(const std::wstring& text) { return std::wcstoll(text.c_str(), nullptr, 10); }
uint64_t ToUnsigned(const std::wstring& text) { return std::wcstoull(text.c_str(), nullptr, 10); }

// Reals without the C library's locale: whatever decimal point the host
// process has chosen, the text form uses '.'.
template <typename Real>
Real ToReal(const std::wstring& text) {
    size_t i = 0;
    while (i < text.size() && std::iswspace(wint_t(text[i]))) {
        ++i;
    }
    if (i < text.size() && text[i] == L'+') {
        ++i;
    }
    std::string ascii;
    for (; i < text.size() && text[i] > 0 && text[i] < 0x80; ++i) {
        ascii.push_back(char(text[i]));
    }
    Real value = 0;
    std::from_chars(ascii.data(), ascii.data() + ascii.size(), value);
    return value;
}

bool ToBool(const std::wstring& text) { return ::wcscasecmp(text.c_str(), L"true") == 0; }

LPWSTR ToTaskWide(const std::wstring& text) {
    LPWSTR out = nullptr;
    return SUCCEEDED(SHStrDupW(text.c_str(), &out)) ? out : nullptr;
}

LPSTR ToTaskAnsi(const std::wstring& text) {
    const int needed = WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
    if (needed <= 0) {
        return nullptr;
    }
    auto* out = static_cast<char*>(CoTaskMemAlloc(size_t(needed)));
    if (out && WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, out, needed, nullptr, nullptr) != needed) {
        CoTaskMemFree(out);
        out = nullptr;
    }
    return out;
}

int HexDigit(wchar_t c) {
    if (c >= L'0' && c <= L'9') {
        return c - L'0';
    }
    if (c >= L'a' && c <= L'f') {
        return c - L'a' + 10;
    }
    if (c >= L'A' && c <= L'F') {
        return c - L'A' + 10;
    }
    return -1;
}

bool ParseBinary(const std::wstring& text, BLOB& blob) {
    if (text.size() % 2 != 0) {
        return false;
    }
    const size_t count = text.size() / 2;
    std::vector<BYTE> bytes(count);
    for (size_t i = 0; i < count; ++i) {
        const int high = HexDigit(text[2 * i]);
        const int low = HexDigit(text[2 * i + 1]);
        if (high < 0 || low < 0) {
            return false;
        }
        bytes[i] = BYTE(high * 16 + low);
    }
    blob.cbSize = 0;
    blob.pBlobData = nullptr;
    if (count) {
        blob.pBlobData = static_cast<BYTE*>(CoTaskMemAlloc(count));
        if (!blob.pBlobData) {
            return false;
        }
        std::memcpy(blob.pBlobData, bytes.data(), count);
        blob.cbSize = ULONG(count);
    }
    return true;
}

// Fills one element of type `vt` at `out`: the union member for a scalar,
// the array slot for a vector. False only when memory is short.
bool ParseElement(VARTYPE vt, const std::wstring& text, void* out) {
    switch (vt) {
        case VT_I1: *static_cast<CHAR*>(out) = CHAR(ToSigned(text)); return true;
        case VT_UI1: *static_cast<UCHAR*>(out) = UCHAR(ToUnsigned(text)); return true;
        case VT_I2: *static_cast<SHORT*>(out) = SHORT(ToSigned(text)); return true;
        case VT_UI2: *static_cast<USHORT*>(out) = USHORT(ToUnsigned(text)); return true;
        case VT_I4: *static_cast<LONG*>(out) = LONG(ToSigned(text)); return true;
        case VT_UI4: *static_cast<ULONG*>(out) = ULONG(ToUnsigned(text)); return true;
        case VT_I8: static_cast<LARGE_INTEGER*>(out)->QuadPart = ToSigned(text); return true;
        case VT_UI8: static_cast<ULARGE_INTEGER*>(out)->QuadPart = ToUnsigned(text); return true;
        case VT_BOOL: *static_cast<VARIANT_BOOL*>(out) = ToBool(text) ? VARIANT_TRUE : VARIANT_FALSE; return true;
        case VT_R4: *static_cast<FLOAT*>(out) = ToReal<float>(text); return true;
        case VT_R8: *static_cast<DOUBLE*>(out) = ToReal<double>(text); return true;
        case VT_BSTR:
            *static_cast<BSTR*>(out) = SysAllocStringLen(text.c_str(), UINT(text.size()));
            return *static_cast<BSTR*>(out) != nullptr;
        case VT_LPSTR: return (*static_cast<LPSTR*>(out) = ToTaskAnsi(text)) != nullptr;
        case VT_LPWSTR: return (*static_cast<LPWSTR*>(out) = ToTaskWide(text)) != nullptr;
        default: return false;
    }
}

size_t ElementSize(VARTYPE vt) {
    switch (vt) {
        case VT_I1:
        case VT_UI1: return 1;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL: return 2;
        case VT_I4:
        case VT_UI4:
        case VT_R4: return 4;
        case VT_I8:
        case VT_UI8:
        case VT_R8: return 8;
        default: return sizeof(void*);  // the string types
    }
}

// Elements separated by ';'; a backslash takes the next character as it
// stands, and a lone backslash at the very end is dropped.
std::vector<std::wstring> SplitElements(std::wstring_view text) {
    std::vector<std::wstring> elements;
    if (text.empty()) {
        return elements;
    }
    std::wstring current;
    for (size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        if (c == L'\\') {
            if (i + 1 < text.size()) {
                current.push_back(text[++i]);
            }
        } else if (c == L';') {
            elements.push_back(std::move(current));
            current.clear();
        } else {
            current.push_back(c);
        }
    }
    elements.push_back(std::move(current));
    return elements;
}

// All counted arrays share one layout: a count, then the pointer.
struct CountedArray {
    ULONG cElems;
    void* pElems;
};
static_assert(sizeof(CountedArray) == sizeof(CALPWSTR));

bool ParseVector(VARTYPE vt, std::wstring_view text, PROPVARIANT* value) {
    const std::vector<std::wstring> elements = SplitElements(text);
    const size_t size = ElementSize(vt);
    void* array = nullptr;
    if (!elements.empty()) {
        array = CoTaskMemAlloc(elements.size() * size);
        if (!array) {
            return false;
        }
        std::memset(array, 0, elements.size() * size);
    }
    // In the variant before the elements are made, so a clear releases a half-made vector.
    value->vt = VARTYPE(VT_VECTOR | vt);
    CountedArray counted{ULONG(elements.size()), array};
    std::memcpy(&value->cac, &counted, sizeof counted);
    for (size_t i = 0; i < elements.size(); ++i) {
        if (!ParseElement(vt, elements[i], static_cast<char*>(array) + i * size)) {
            return false;
        }
    }
    return true;
}

// ---- Formatting ------------------------------------------------------------

template <typename Number>
std::wstring NumberText(Number n) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, n);
    return std::wstring(buffer, result.ptr);
}

std::wstring AnsiText(const char* text) {
    if (!text || !*text) {
        return {};
    }
    const int needed = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    if (needed <= 1) {
        return {};
    }
    std::wstring wide(size_t(needed), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), needed);
    wide.resize(size_t(needed) - 1);
    return wide;
}

std::wstring HexText(const BLOB& blob) {
    static const wchar_t digits[] = L"0123456789abcdef";
    std::wstring text;
    if (!blob.pBlobData) {
        return text;
    }
    text.reserve(size_t(blob.cbSize) * 2);
    for (ULONG i = 0; i < blob.cbSize; ++i) {
        text.push_back(digits[blob.pBlobData[i] >> 4]);
        text.push_back(digits[blob.pBlobData[i] & 15]);
    }
    return text;
}

// The text of one element of type `vt` at `in`.
std::wstring FormatElement(VARTYPE vt, const void* in) {
    switch (vt) {
        case VT_I1: return NumberText(int(int8_t(*static_cast<const CHAR*>(in))));
        case VT_UI1: return NumberText(unsigned(*static_cast<const UCHAR*>(in)));
        case VT_I2: return NumberText(int(*static_cast<const SHORT*>(in)));
        case VT_UI2: return NumberText(unsigned(*static_cast<const USHORT*>(in)));
        case VT_I4: return NumberText(*static_cast<const LONG*>(in));
        case VT_UI4: return NumberText(*static_cast<const ULONG*>(in));
        case VT_I8: return NumberText(static_cast<const LARGE_INTEGER*>(in)->QuadPart);
        case VT_UI8: return NumberText(static_cast<const ULARGE_INTEGER*>(in)->QuadPart);
        case VT_BOOL: return *static_cast<const VARIANT_BOOL*>(in) ? L"true" : L"false";
        case VT_R4: return NumberText(*static_cast<const FLOAT*>(in));
        case VT_R8: return NumberText(*static_cast<const DOUBLE*>(in));
        case VT_BSTR: {
            const BSTR s = *static_cast<const BSTR*>(in);
            return s ? std::wstring(s, SysStringLen(s)) : std::wstring();
        }
        case VT_LPSTR: return AnsiText(*static_cast<const LPSTR*>(in));
        case VT_LPWSTR: {
            const LPWSTR s = *static_cast<const LPWSTR*>(in);
            return s ? std::wstring(s) : std::wstring();
        }
        default: return {};
    }
}

void AppendEscaped(std::wstring& out, const std::wstring& element) {
    for (wchar_t c : element) {
        if (c == L'\\' || c == L';') {
            out.push_back(L'\\');
        }
        out.push_back(c);
    }
}

}  // namespace

bool ParsePropVariant(const BrmStringW& typeName, bool isVector, const BrmStringW& text, PROPVARIANT* value) {
    if (!value) {
        return false;
    }
    PropVariantInit(value);
    VARTYPE vt = VT_EMPTY;
    bool found = false;
    for (const TypeName& t : kTypeNames) {
        if (typeName.StdView() == t.name) {
            vt = t.vt;
            found = true;
            break;
        }
    }
    if (!found) {
        return false;
    }
    bool ok;
    if (vt == VT_BLOB) {
        ok = !isVector && ParseBinary(text.StdString(), value->blob);
        if (ok) {
            value->vt = VT_BLOB;
        }
    } else if (isVector) {
        ok = ParseVector(vt, text.StdView(), value);
    } else {
        ok = ParseElement(vt, text.StdString(), &value->cVal);
        if (ok) {
            value->vt = vt;
        }
    }
    if (!ok) {
        PropVariantClear(value);
        PropVariantInit(value);
    }
    return ok;
}

bool FormatPropVariant(const PROPVARIANT& value, BrmStringW& typeName, bool& isVector, BrmStringW& text) {
    typeName.Empty();
    text.Empty();
    isVector = (value.vt & VT_VECTOR) != 0;
    const VARTYPE vt = VARTYPE(value.vt & ~VT_VECTOR);
    const wchar_t* name = NameOf(vt);
    if (!name || (value.vt & ~(VT_VECTOR | VT_TYPEMASK)) != 0 || (isVector && vt == VT_BLOB)) {
        isVector = false;
        return false;
    }
    std::wstring out;
    if (vt == VT_BLOB) {
        out = HexText(value.blob);
    } else if (!isVector) {
        out = FormatElement(vt, &value.cVal);
    } else {
        CountedArray counted;
        std::memcpy(&counted, &value.cac, sizeof counted);
        if (counted.cElems && !counted.pElems) {
            isVector = false;
            return false;
        }
        const size_t size = ElementSize(vt);
        for (ULONG i = 0; i < counted.cElems; ++i) {
            if (i) {
                out.push_back(L';');
            }
            AppendEscaped(out, FormatElement(vt, static_cast<const char*>(counted.pElems) + size_t(i) * size));
        }
    }
    typeName = name;
    text = BrmStringW(std::wstring_view(out));
    return true;
}

}  // namespace BrmUtils
