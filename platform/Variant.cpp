// VARIANT lifetime and VariantChangeType between the scalar types and text.
// A value is first read into a small neutral form (integer, real, boolean,
// text, ...) and then written as the wanted type, so that every pair of
// types follows the same range and rounding rules.
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <limits>
#include <string>

#include "platform/OleAuto.h"

namespace {

enum class Kind { Empty, Null, Signed, Unsigned, Real, Bool, Text, Date, Error };

struct Neutral {
    Kind kind = Kind::Empty;
    int64_t i = 0;
    uint64_t u = 0;
    double d = 0;
    bool b = false;
    std::wstring text;
};

bool Read(const VARIANT& v, Neutral& n) {
    switch (v.vt) {
    case VT_EMPTY: n.kind = Kind::Empty; return true;
    case VT_NULL: n.kind = Kind::Null; return true;
    case VT_I1: n.kind = Kind::Signed; n.i = static_cast<signed char>(v.cVal); return true;
    case VT_I2: n.kind = Kind::Signed; n.i = v.iVal; return true;
    case VT_I4: n.kind = Kind::Signed; n.i = v.lVal; return true;
    case VT_INT: n.kind = Kind::Signed; n.i = v.intVal; return true;
    case VT_I8: n.kind = Kind::Signed; n.i = v.llVal; return true;
    case VT_UI1: n.kind = Kind::Unsigned; n.u = v.bVal; return true;
    case VT_UI2: n.kind = Kind::Unsigned; n.u = v.uiVal; return true;
    case VT_UI4: n.kind = Kind::Unsigned; n.u = v.ulVal; return true;
    case VT_UINT: n.kind = Kind::Unsigned; n.u = v.uintVal; return true;
    case VT_UI8: n.kind = Kind::Unsigned; n.u = v.ullVal; return true;
    case VT_R4: n.kind = Kind::Real; n.d = v.fltVal; return true;
    case VT_R8: n.kind = Kind::Real; n.d = v.dblVal; return true;
    case VT_DATE: n.kind = Kind::Date; n.d = v.date; return true;
    case VT_BOOL: n.kind = Kind::Bool; n.b = v.boolVal != VARIANT_FALSE; return true;
    case VT_ERROR: n.kind = Kind::Error; n.i = v.scode; return true;
    case VT_BSTR:
        n.kind = Kind::Text;
        if (v.bstrVal) n.text.assign(v.bstrVal, SysStringLen(v.bstrVal));
        return true;
    default: return false;
    }
}

// Rounds half to even, as the automation conversions do.
double RoundHalfEven(double x) {
    double r = std::nearbyint(x);  // the default rounding mode is to nearest, ties to even
    return r;
}

std::string Narrow(const std::wstring& text) {
    std::string s;
    for (wchar_t c : text) {
        if (c < 0 || c > 0x7F) return std::string("\x01");  // no number has such a character
        s.push_back(char(c));
    }
    return s;
}

std::string Trimmed(const std::string& s) {
    std::size_t a = s.find_first_not_of(" \t\r\n");
    if (a == std::string::npos) return {};
    std::size_t b = s.find_last_not_of(" \t\r\n");
    return s.substr(a, b - a + 1);
}

bool EqualsNoCase(const std::string& a, const char* b) {
    std::size_t n = std::strlen(b);
    if (a.size() != n) return false;
    for (std::size_t k = 0; k < n; ++k) {
        char c = a[k];
        if (c >= 'A' && c <= 'Z') c = char(c - 'A' + 'a');
        if (c != b[k]) return false;
    }
    return true;
}

// Text to a number: decimal, optional sign, fraction and exponent.
HRESULT ParseNumber(const std::wstring& text, double& value) {
    std::string s = Trimmed(Narrow(text));
    if (s.empty()) return DISP_E_TYPEMISMATCH;
    const char* first = s.data();
    if (*first == '+') ++first;
    if (first == s.data() + s.size()) return DISP_E_TYPEMISMATCH;
    auto [end, ec] = std::from_chars(first, s.data() + s.size(), value, std::chars_format::general);
    if (ec == std::errc::result_out_of_range) return DISP_E_OVERFLOW;
    if (ec != std::errc() || end != s.data() + s.size()) return DISP_E_TYPEMISMATCH;
    return S_OK;
}

// A neutral value as a double (used for integers and reals).
HRESULT AsReal(const Neutral& n, double& value) {
    switch (n.kind) {
    case Kind::Empty: value = 0; return S_OK;
    case Kind::Signed: value = double(n.i); return S_OK;
    case Kind::Unsigned: value = double(n.u); return S_OK;
    case Kind::Real:
    case Kind::Date: value = n.d; return S_OK;
    case Kind::Bool: value = n.b ? -1.0 : 0.0; return S_OK;
    case Kind::Text: return ParseNumber(n.text, value);
    default: return DISP_E_TYPEMISMATCH;
    }
}

HRESULT AsSigned(const Neutral& n, int64_t lo, int64_t hi, int64_t& value) {
    if (n.kind == Kind::Signed || n.kind == Kind::Bool || n.kind == Kind::Empty) {
        int64_t v = n.kind == Kind::Signed ? n.i : (n.kind == Kind::Bool && n.b ? -1 : 0);
        if (v < lo || v > hi) return DISP_E_OVERFLOW;
        value = v;
        return S_OK;
    }
    if (n.kind == Kind::Unsigned) {
        if (n.u > uint64_t(hi)) return DISP_E_OVERFLOW;
        value = int64_t(n.u);
        return S_OK;
    }
    double d;
    HRESULT hr = AsReal(n, d);
    if (FAILED(hr)) return hr;
    d = RoundHalfEven(d);
    // 2^63 is exactly representable; anything at or beyond it overflows.
    if (!(d >= -9223372036854775808.0 && d < 9223372036854775808.0)) return DISP_E_OVERFLOW;
    auto v = int64_t(d);
    if (v < lo || v > hi) return DISP_E_OVERFLOW;
    value = v;
    return S_OK;
}

HRESULT AsUnsigned(const Neutral& n, uint64_t hi, uint64_t& value) {
    if (n.kind == Kind::Bool) {
        value = n.b ? hi : 0;  // VARIANT_TRUE is all bits set
        return S_OK;
    }
    if (n.kind == Kind::Unsigned || n.kind == Kind::Empty) {
        uint64_t v = n.kind == Kind::Unsigned ? n.u : 0;
        if (v > hi) return DISP_E_OVERFLOW;
        value = v;
        return S_OK;
    }
    if (n.kind == Kind::Signed) {
        if (n.i < 0 || uint64_t(n.i) > hi) return DISP_E_OVERFLOW;
        value = uint64_t(n.i);
        return S_OK;
    }
    double d;
    HRESULT hr = AsReal(n, d);
    if (FAILED(hr)) return hr;
    d = RoundHalfEven(d);
    if (!(d >= 0 && d < 18446744073709551616.0)) return DISP_E_OVERFLOW;
    auto v = uint64_t(d);
    if (v > hi) return DISP_E_OVERFLOW;
    value = v;
    return S_OK;
}

HRESULT AsBool(const Neutral& n, bool& value) {
    if (n.kind == Kind::Bool) {
        value = n.b;
        return S_OK;
    }
    if (n.kind == Kind::Text) {
        std::string s = Trimmed(Narrow(n.text));
        if (EqualsNoCase(s, "true") || EqualsNoCase(s, "#true#")) {
            value = true;
            return S_OK;
        }
        if (EqualsNoCase(s, "false") || EqualsNoCase(s, "#false#")) {
            value = false;
            return S_OK;
        }
    }
    double d;
    HRESULT hr = AsReal(n, d);
    if (FAILED(hr)) return hr;
    value = d != 0;
    return S_OK;
}

std::wstring Widen(const char* s, std::size_t n) { return std::wstring(s, s + n); }

std::wstring RealText(double value, int digits) {
    if (value == 0) value = 0;  // no "-0"
    char buffer[64];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits);
    if (ec != std::errc()) return L"";
    for (char* p = buffer; p != end; ++p) {
        if (*p >= 'a' && *p <= 'z') *p = char(*p - 'a' + 'A');
    }
    return Widen(buffer, std::size_t(end - buffer));
}

// Days since 1970-01-01 to a civil date (proleptic Gregorian).
void CivilFromDays(int64_t z, int64_t& y, unsigned& m, unsigned& d) {
    z += 719468;
    const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const auto doe = unsigned(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    y = int64_t(yoe) + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = doy - (153 * mp + 2) / 5 + 1;
    m = mp < 10 ? mp + 3 : mp - 9;
    if (m <= 2) ++y;
}

// A date in the invariant short form: "MM/dd/yyyy HH:mm:ss", the date alone
// at midnight, the time alone on day 0.
HRESULT DateText(double date, std::wstring& text) {
    if (!(date > -657435.0 && date < 2958466.0)) return DISP_E_OVERFLOW;  // years 100 to 9999
    double whole = std::trunc(date);
    auto seconds = int64_t(std::llround(std::fabs(date - whole) * 86400.0));
    if (seconds >= 86400) {
        seconds = 0;
        whole += date < 0 ? -1 : 1;
    }
    char buffer[48];
    int len = 0;
    if (whole != 0 || seconds == 0) {
        int64_t y;
        unsigned m, d;
        CivilFromDays(int64_t(whole) - 25569, y, m, d);  // 1899-12-30 is day -25569
        len = std::snprintf(buffer, sizeof buffer, "%02u/%02u/%04lld", m, d, static_cast<long long>(y));
    }
    if (seconds != 0) {
        len += std::snprintf(buffer + len, sizeof buffer - std::size_t(len), "%s%02d:%02d:%02d", len ? " " : "",
                             int(seconds / 3600), int(seconds / 60 % 60), int(seconds % 60));
    }
    text = Widen(buffer, std::size_t(len));
    return S_OK;
}

HRESULT AsText(const Neutral& n, USHORT flags, std::wstring& text) {
    switch (n.kind) {
    case Kind::Empty: text.clear(); return S_OK;
    case Kind::Signed: {
        std::string s = std::to_string(n.i);
        text = Widen(s.data(), s.size());
        return S_OK;
    }
    case Kind::Unsigned: {
        std::string s = std::to_string(n.u);
        text = Widen(s.data(), s.size());
        return S_OK;
    }
    case Kind::Real: text = RealText(n.d, 15); return S_OK;
    case Kind::Bool:
        if (flags & VARIANT_ALPHABOOL) {
            text = n.b ? L"True" : L"False";
        } else {
            text = n.b ? L"-1" : L"0";
        }
        return S_OK;
    case Kind::Date: return DateText(n.d, text);
    case Kind::Text: text = n.text; return S_OK;
    default: return DISP_E_TYPEMISMATCH;
    }
}

HRESULT Write(const Neutral& n, VARTYPE srcType, USHORT flags, VARTYPE vt, VARIANT& out) {
    VariantInit(&out);
    if (n.kind == Kind::Null) {
        if (vt == VT_NULL || vt == VT_EMPTY) {
            out.vt = vt;
            return S_OK;
        }
        return DISP_E_TYPEMISMATCH;
    }
    if (n.kind == Kind::Error && vt != VT_ERROR) return DISP_E_TYPEMISMATCH;
    HRESULT hr = S_OK;
    int64_t i = 0;
    uint64_t u = 0;
    double d = 0;
    bool b = false;
    switch (vt) {
    case VT_EMPTY: break;
    case VT_NULL: return DISP_E_TYPEMISMATCH;
    case VT_ERROR:
        if (n.kind != Kind::Error) return DISP_E_TYPEMISMATCH;
        out.scode = SCODE(n.i);
        break;
    case VT_I1: hr = AsSigned(n, INT8_MIN, INT8_MAX, i); out.cVal = CHAR(i); break;
    case VT_I2: hr = AsSigned(n, INT16_MIN, INT16_MAX, i); out.iVal = SHORT(i); break;
    case VT_I4: hr = AsSigned(n, INT32_MIN, INT32_MAX, i); out.lVal = LONG(i); break;
    case VT_INT: hr = AsSigned(n, INT32_MIN, INT32_MAX, i); out.intVal = INT(i); break;
    case VT_I8: hr = AsSigned(n, INT64_MIN, INT64_MAX, i); out.llVal = i; break;
    case VT_UI1: hr = AsUnsigned(n, UINT8_MAX, u); out.bVal = UCHAR(u); break;
    case VT_UI2: hr = AsUnsigned(n, UINT16_MAX, u); out.uiVal = USHORT(u); break;
    case VT_UI4: hr = AsUnsigned(n, UINT32_MAX, u); out.ulVal = ULONG(u); break;
    case VT_UINT: hr = AsUnsigned(n, UINT32_MAX, u); out.uintVal = UINT(u); break;
    case VT_UI8: hr = AsUnsigned(n, UINT64_MAX, u); out.ullVal = u; break;
    case VT_R4:
        hr = AsReal(n, d);
        if (SUCCEEDED(hr) && std::isfinite(d) && std::fabs(d) > std::numeric_limits<float>::max()) {
            hr = DISP_E_OVERFLOW;
        }
        out.fltVal = FLOAT(d);
        break;
    case VT_R8: hr = AsReal(n, d); out.dblVal = d; break;
    case VT_DATE:
        if (n.kind == Kind::Text) return DISP_E_TYPEMISMATCH;  // no date parsing
        hr = AsReal(n, d);
        out.date = d;
        break;
    case VT_BOOL: hr = AsBool(n, b); out.boolVal = b ? VARIANT_TRUE : VARIANT_FALSE; break;
    case VT_BSTR: {
        std::wstring text;
        if (srcType == VT_R4) {
            text = RealText(n.d, 7);
        } else {
            hr = AsText(n, flags, text);
        }
        if (FAILED(hr)) break;
        out.bstrVal = SysAllocStringLen(text.data(), UINT(text.size()));
        if (!out.bstrVal) return E_OUTOFMEMORY;
        break;
    }
    default: return DISP_E_BADVARTYPE;
    }
    if (FAILED(hr)) return hr;
    out.vt = vt;
    return S_OK;
}

}  // namespace

void VariantInit(VARIANT* v) {
    if (v) std::memset(v, 0, sizeof *v);
}

HRESULT VariantClear(VARIANT* v) {
    if (!v) return E_INVALIDARG;
    if (v->vt == VT_BSTR) SysFreeString(v->bstrVal);
    VariantInit(v);
    return S_OK;
}

HRESULT VariantCopy(VARIANT* dest, const VARIANT* src) {
    if (!dest || !src) return E_INVALIDARG;
    if (dest == src) return S_OK;
    VARIANT copy;
    std::memcpy(&copy, src, sizeof copy);
    if (src->vt == VT_BSTR && src->bstrVal) {
        copy.bstrVal = SysAllocStringLen(src->bstrVal, SysStringLen(src->bstrVal));
        if (!copy.bstrVal) return E_OUTOFMEMORY;
    }
    VariantClear(dest);
    std::memcpy(dest, &copy, sizeof copy);
    return S_OK;
}

HRESULT VariantChangeType(VARIANT* dest, const VARIANT* src, USHORT wFlags, VARTYPE vt) {
    if (!dest || !src) return E_INVALIDARG;
    Neutral n;
    if (!Read(*src, n)) return DISP_E_BADVARTYPE;
    if (src->vt == vt) return VariantCopy(dest, src);
    VARIANT out;
    HRESULT hr = Write(n, src->vt, wFlags, vt, out);
    if (FAILED(hr)) return hr;
    VariantClear(dest);  // src may be dest: its value is already in `n`
    std::memcpy(dest, &out, sizeof out);
    return S_OK;
}

HRESULT VarBstrFromR8(double value, LCID /*lcid*/, ULONG /*dwFlags*/, BSTR* out) {
    if (!out) return E_INVALIDARG;
    std::wstring text = RealText(value, 15);
    *out = SysAllocStringLen(text.data(), UINT(text.size()));
    return *out ? S_OK : E_OUTOFMEMORY;
}
