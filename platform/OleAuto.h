// BSTR and VARIANT: length-prefixed strings and the automation value type.
// A BSTR here holds wchar_t (32-bit) characters; its length prefix counts
// bytes, as on Windows, so SysStringByteLen / sizeof(wchar_t) == SysStringLen.
#pragma once

#include "platform/Locale.h"
#include "platform/PropIdl.h"

BSTR SysAllocString(const wchar_t* psz);
BSTR SysAllocStringLen(const wchar_t* pch, UINT cch);
int SysReAllocStringLen(BSTR* pbstr, const wchar_t* psz, UINT cch);
void SysFreeString(BSTR bstr);
UINT SysStringLen(BSTR bstr);
UINT SysStringByteLen(BSTR bstr);

struct VARIANT {
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        CHAR cVal;
        UCHAR bVal;
        SHORT iVal;
        USHORT uiVal;
        LONG lVal;
        ULONG ulVal;
        INT intVal;
        UINT uintVal;
        LONGLONG llVal;
        ULONGLONG ullVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        DATE date;
        BSTR bstrVal;
    };
};
using VARIANTARG = VARIANT;

void VariantInit(VARIANT* v);
HRESULT VariantClear(VARIANT* v);
HRESULT VariantCopy(VARIANT* dest, const VARIANT* src);
// Converts between the scalar types and VT_BSTR, in place when dest == src.
// Numbers are written and read in the invariant form ("." as decimal point);
// integers out of range answer DISP_E_OVERFLOW, text that is no number
// DISP_E_TYPEMISMATCH. VT_BOOL becomes "-1" or "0", or "True" or "False"
// with VARIANT_ALPHABOOL; other flags are accepted and ignored.
constexpr USHORT VARIANT_NOVALUEPROP = 0x01;
constexpr USHORT VARIANT_ALPHABOOL = 0x02;
HRESULT VariantChangeType(VARIANT* dest, const VARIANT* src, USHORT wFlags, VARTYPE vt);
// At most 15 significant digits, "." as decimal point whatever the locale,
// exponent form beyond 15 digits ("1E+20"). lcid and dwFlags are ignored.
HRESULT VarBstrFromR8(double value, LCID lcid, ULONG dwFlags, BSTR* out);
