// VariantChangeType between numbers, booleans and text, and VarBstrFromR8.
#include <gtest/gtest.h>

#include <cmath>

#include <string>

#include "platform/OleAuto.h"

namespace {

VARIANT Make(VARTYPE vt) {
    VARIANT v;
    VariantInit(&v);
    v.vt = vt;
    return v;
}

VARIANT Text(const wchar_t* s) {
    VARIANT v = Make(VT_BSTR);
    v.bstrVal = SysAllocString(s);
    return v;
}

std::wstring ToText(VARIANT v, USHORT flags = 0) {
    VARIANT out;
    VariantInit(&out);
    HRESULT hr = VariantChangeType(&out, &v, flags, VT_BSTR);
    std::wstring text = SUCCEEDED(hr) ? std::wstring(out.bstrVal, SysStringLen(out.bstrVal)) : L"<failed>";
    VariantClear(&out);
    VariantClear(&v);
    return text;
}

struct TextCase {
    const char* name;
    VARIANT value;
    std::wstring text;
    USHORT flags = 0;
};

VARIANT I4(LONG x) { VARIANT v = Make(VT_I4); v.lVal = x; return v; }
VARIANT UI8(ULONGLONG x) { VARIANT v = Make(VT_UI8); v.ullVal = x; return v; }
VARIANT I8(LONGLONG x) { VARIANT v = Make(VT_I8); v.llVal = x; return v; }
VARIANT R8(double x) { VARIANT v = Make(VT_R8); v.dblVal = x; return v; }
VARIANT R4(float x) { VARIANT v = Make(VT_R4); v.fltVal = x; return v; }
VARIANT Bool(bool b) { VARIANT v = Make(VT_BOOL); v.boolVal = b ? VARIANT_TRUE : VARIANT_FALSE; return v; }
VARIANT Date(double d) { VARIANT v = Make(VT_DATE); v.date = d; return v; }
VARIANT I1(signed char x) { VARIANT v = Make(VT_I1); v.cVal = CHAR(x); return v; }

TEST(VariantChangeType, ToText) {
    const TextCase cases[] = {
        {"Negative", I4(-42), L"-42"}, {"LargeUnsigned", UI8(18446744073709551615ull), L"18446744073709551615"},
        {"SmallestSigned", I8(INT64_MIN), L"-9223372036854775808"}, {"SignedChar", I1(-5), L"-5"},
        {"Fraction", R8(2.5), L"2.5"}, {"FifteenDigits", R8(0.1 + 0.2), L"0.3"},
        {"Third", R8(1.0 / 3.0), L"0.333333333333333"}, {"Exponent", R8(1e20), L"1E+20"},
        {"SmallExponent", R8(1.5e-7), L"1.5E-07"}, {"NegativeZero", R8(-0.0), L"0"},
        {"FloatSevenDigits", R4(0.1f), L"0.1"}, {"BoolNumeric", Bool(true), L"-1"},
        {"BoolFalseNumeric", Bool(false), L"0"}, {"BoolAlpha", Bool(true), L"True", VARIANT_ALPHABOOL},
        {"BoolAlphaFalse", Bool(false), L"False", VARIANT_ALPHABOOL}, {"Empty", Make(VT_EMPTY), L""},
        {"DateOnly", Date(43831.0), L"01/01/2020"}, {"DateAndTime", Date(43831.75), L"01/01/2020 18:00:00"},
        {"TimeOnly", Date(0.5), L"12:00:00"}, {"Null", Make(VT_NULL), L"<failed>"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(ToText(c.value, c.flags), c.text);
    }
}

double FieldOf(const VARIANT& v) {
    switch (v.vt) {
    case VT_I1: return static_cast<signed char>(v.cVal);
    case VT_UI1: return v.bVal;
    case VT_I2: return v.iVal;
    case VT_UI2: return v.uiVal;
    case VT_I4: return v.lVal;
    case VT_UI4: return v.ulVal;
    case VT_I8: return double(v.llVal);
    case VT_UI8: return double(v.ullVal);
    case VT_R4: return v.fltVal;
    case VT_R8: return v.dblVal;
    case VT_BOOL: return v.boolVal;
    default: return -12345;
    }
}

// From text and between numbers: rounding, range and type errors.
TEST(VariantChangeType, ToNumbers) {
    const struct {
        const char* name;
        VARIANT src;
        VARTYPE vt;
        HRESULT hr;
        double value;  // compared after reading the target field
    } cases[] = {
        {"Integer", Text(L"42"), VT_I4, S_OK, 42}, {"Spaces", Text(L"  -7 "), VT_I2, S_OK, -7},
        {"RoundsHalfToEven", Text(L"2.5"), VT_I4, S_OK, 2}, {"RoundsHalfToEvenUp", Text(L"3.5"), VT_I4, S_OK, 4},
        {"Real", Text(L"1.25"), VT_R8, S_OK, 1.25}, {"Exponent", Text(L"1e3"), VT_R8, S_OK, 1000},
        {"PlusSign", Text(L"+8"), VT_UI1, S_OK, 8}, {"ByteOverflow", Text(L"256"), VT_UI1, DISP_E_OVERFLOW, 0},
        {"NegativeUnsigned", Text(L"-1"), VT_UI4, DISP_E_OVERFLOW, 0},
        {"ShortOverflow", Text(L"40000"), VT_I2, DISP_E_OVERFLOW, 0},
        {"NotANumber", Text(L"abc"), VT_I4, DISP_E_TYPEMISMATCH, 0},
        {"TrailingGarbage", Text(L"12x"), VT_I4, DISP_E_TYPEMISMATCH, 0},
        {"EmptyText", Text(L""), VT_R8, DISP_E_TYPEMISMATCH, 0},
        {"Comma", Text(L"1,5"), VT_R8, DISP_E_TYPEMISMATCH, 0},
        {"NonAscii", Text(L"\u0661"), VT_I4, DISP_E_TYPEMISMATCH, 0}, {"BoolWord", Text(L"TRUE"), VT_BOOL, S_OK, -1},
        {"BoolFalseWord", Text(L"false"), VT_BOOL, S_OK, 0}, {"BoolNumber", Text(L"3"), VT_BOOL, S_OK, -1},
        {"FloatOverflow", Text(L"1e300"), VT_R4, DISP_E_OVERFLOW, 0}, {"WidenSigned", I1(-3), VT_I8, S_OK, -3},
        {"NarrowInRange", I4(255), VT_UI1, S_OK, 255}, {"NarrowOutOfRange", I4(-1), VT_UI2, DISP_E_OVERFLOW, 0},
        {"DoubleToInt", R8(-2.5), VT_I4, S_OK, -2}, {"HugeDoubleToInt", R8(1e19), VT_I8, DISP_E_OVERFLOW, 0},
        {"NaNToInt", R8(std::nan("")), VT_I4, DISP_E_OVERFLOW, 0},
        {"UnsignedToSignedOverflow", UI8(1ull << 63), VT_I8, DISP_E_OVERFLOW, 0},
        {"TrueIsMinusOne", Bool(true), VT_I4, S_OK, -1}, {"TrueIsAllBitsUnsigned", Bool(true), VT_UI1, S_OK, 255},
        {"NumberToBool", R8(0.25), VT_BOOL, S_OK, -1}, {"ZeroToBool", I4(0), VT_BOOL, S_OK, 0},
        {"EmptyToInt", Make(VT_EMPTY), VT_I4, S_OK, 0}, {"NullToInt", Make(VT_NULL), VT_I4, DISP_E_TYPEMISMATCH, 0},
        {"ErrorToInt", Make(VT_ERROR), VT_I4, DISP_E_TYPEMISMATCH, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        VARIANT out;
        VariantInit(&out);
        EXPECT_EQ(VariantChangeType(&out, &c.src, 0, c.vt), c.hr);
        EXPECT_EQ(out.vt, c.hr == S_OK ? c.vt : VARTYPE(VT_EMPTY));
        if (c.hr == S_OK) {
            EXPECT_EQ(FieldOf(out), c.value);
        }
        VariantClear(&out);
        VariantClear(const_cast<VARIANT*>(&c.src));
    }
}

}  // namespace
