// Small helpers shared by the variant tests.
#pragma once

#include <string>

#include "platform/PropIdl.h"

namespace fitest {

// ASCII of a wide text for test messages; other characters become '?'.
inline std::string Narrow(const wchar_t* text) {
    std::string out;
    for (; text && *text; ++text) out.push_back(*text > 0 && *text < 128 ? char(*text) : '?');
    return out;
}

struct TextCase {
    const wchar_t* type;
    bool vector;
    const wchar_t* text;
    VARTYPE vt;
    const wchar_t* formatted;  // null: the same as `text`
};

// Every type name, as scalar and as vector.
inline const TextCase kTextRoundTrips[] = {
    {L"byte", false, L"200", VT_UI1, nullptr}, {L"char", false, L"-128", VT_I1, nullptr},
    {L"short", false, L"-32768", VT_I2, nullptr}, {L"ushort", false, L"65535", VT_UI2, nullptr},
    {L"int", false, L"-2147483648", VT_I4, nullptr}, {L"uint", false, L"4294967295", VT_UI4, nullptr},
    {L"int64", false, L"-9223372036854775808", VT_I8, nullptr},
    {L"uint64", false, L"18446744073709551615", VT_UI8, nullptr},
    {L"bool", false, L"true", VT_BOOL, nullptr}, {L"bool", false, L"false", VT_BOOL, nullptr},
    {L"float", false, L"1.5", VT_R4, nullptr}, {L"float", false, L"0.1", VT_R4, nullptr},
    {L"double", false, L"0.1", VT_R8, nullptr}, {L"double", false, L"-1.5e+300", VT_R8, nullptr},
    {L"double", false, L"1234567", VT_R8, nullptr},  // more digits than "%g" keeps
    {L"bstr", false, L"semi;colon\\back", VT_BSTR, nullptr}, {L"cstr", false, L"caf\u00e9", VT_LPSTR, nullptr},
    {L"string", false, L"\u4e2d\U0001F600;\\", VT_LPWSTR, nullptr}, {L"string", false, L"", VT_LPWSTR, nullptr},
    {L"binary", false, L"00ff10a5", VT_BLOB, nullptr}, {L"binary", false, L"", VT_BLOB, nullptr},
    {L"byte", true, L"0;255", VT_VECTOR | VT_UI1, nullptr}, {L"char", true, L"-1;1", VT_VECTOR | VT_I1, nullptr},
    {L"short", true, L"1;-2;3", VT_VECTOR | VT_I2, nullptr}, {L"ushort", true, L"7", VT_VECTOR | VT_UI2, nullptr},
    {L"int", true, L"1;-2;3", VT_VECTOR | VT_I4, nullptr},
    {L"uint", true, L"4000000000;0", VT_VECTOR | VT_UI4, nullptr},
    {L"int64", true, L"-1;9223372036854775807", VT_VECTOR | VT_I8, nullptr},
    {L"uint64", true, L"18446744073709551615;1", VT_VECTOR | VT_UI8, nullptr},
    {L"bool", true, L"true;false;true", VT_VECTOR | VT_BOOL, nullptr},
    {L"float", true, L"0.5;-2", VT_VECTOR | VT_R4, nullptr}, {L"double", true, L"0.5;1e-300", VT_VECTOR | VT_R8, nullptr},
    {L"bstr", true, L"a\\;b;c", VT_VECTOR | VT_BSTR, nullptr}, {L"cstr", true, L"x;\u00fc", VT_VECTOR | VT_LPSTR, nullptr},
    {L"string", true, L"a\\;b;c\\\\d;", VT_VECTOR | VT_LPWSTR, nullptr},
    {L"string", true, L";", VT_VECTOR | VT_LPWSTR, nullptr},  // two empty elements
    {L"int", true, L"", VT_VECTOR | VT_I4, nullptr},          // the empty vector
};

// A PROPVARIANT cleared when it goes out of scope.
struct Owned {
    Owned() { PropVariantInit(&v); }
    ~Owned() { PropVariantClear(&v); }
    PROPVARIANT v;
};

// A borrowed wide string as a value (not to be cleared).
inline PROPVARIANT Text(const wchar_t* s) {
    PROPVARIANT v;
    PropVariantInit(&v);
    v.vt = VT_LPWSTR;
    v.pwszVal = const_cast<wchar_t*>(s);
    return v;
}

}  // namespace fitest
