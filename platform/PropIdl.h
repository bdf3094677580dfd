// PROPVARIANT, PROPERTYKEY, PROPSPEC, STATPROPSTG, IPropertyStore and
// IDestinationStreamFactory: the property-system vocabulary of the readers.
// Memory inside a PROPVARIANT comes from CoTaskMemAlloc (strings, arrays) or
// SysAllocString (BSTR) and is released by PropVariantClear.
#pragma once

#include "platform/ObjIdl.h"

enum VARENUM : VARTYPE {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_DECIMAL = 14,
    VT_I1 = 16,
    VT_UI1 = 17,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
    VT_INT = 22,
    VT_UINT = 23,
    VT_LPSTR = 30,
    VT_LPWSTR = 31,
    VT_FILETIME = 64,
    VT_BLOB = 65,
    VT_STREAM = 66,
    VT_CLSID = 72,
    VT_VECTOR = 0x1000,
    VT_ARRAY = 0x2000,
    VT_BYREF = 0x4000,
    VT_TYPEMASK = 0x0FFF,
};

struct BLOB {
    ULONG cbSize;
    BYTE* pBlobData;
};

// Counted arrays of the vector types (VT_VECTOR | X).
#define FI_COUNTED_ARRAY(Name, T) \
    struct Name {                 \
        ULONG cElems;             \
        T* pElems;                \
    }
FI_COUNTED_ARRAY(CAC, CHAR);
FI_COUNTED_ARRAY(CAUB, UCHAR);
FI_COUNTED_ARRAY(CAI, SHORT);
FI_COUNTED_ARRAY(CAUI, USHORT);
FI_COUNTED_ARRAY(CAL, LONG);
FI_COUNTED_ARRAY(CAUL, ULONG);
FI_COUNTED_ARRAY(CAH, LARGE_INTEGER);
FI_COUNTED_ARRAY(CAUH, ULARGE_INTEGER);
FI_COUNTED_ARRAY(CAFLT, FLOAT);
FI_COUNTED_ARRAY(CADBL, DOUBLE);
FI_COUNTED_ARRAY(CABOOL, VARIANT_BOOL);
FI_COUNTED_ARRAY(CASCODE, SCODE);
FI_COUNTED_ARRAY(CADATE, DATE);
FI_COUNTED_ARRAY(CAFILETIME, FILETIME);
FI_COUNTED_ARRAY(CACLSID, CLSID);
FI_COUNTED_ARRAY(CABSTR, wchar_t*);
FI_COUNTED_ARRAY(CALPSTR, LPSTR);
FI_COUNTED_ARRAY(CALPWSTR, LPWSTR);
#undef FI_COUNTED_ARRAY

using BSTR = wchar_t*;

struct PROPVARIANT {
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
        LARGE_INTEGER hVal;
        ULARGE_INTEGER uhVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        DATE date;
        FILETIME filetime;
        CLSID* puuid;
        BLOB blob;
        BSTR bstrVal;
        LPSTR pszVal;
        LPWSTR pwszVal;
        IStream* pStream;
        CAC cac;
        CAUB caub;
        CAI cai;
        CAUI caui;
        CAL cal;
        CAUL caul;
        CAH cah;
        CAUH cauh;
        CAFLT caflt;
        CADBL cadbl;
        CABOOL cabool;
        CASCODE cascode;
        CADATE cadate;
        CAFILETIME cafiletime;
        CACLSID cauuid;
        CABSTR cabstr;
        CALPSTR calpstr;
        CALPWSTR calpwstr;
    };
};
using REFPROPVARIANT = const PROPVARIANT&;

inline void PropVariantInit(PROPVARIANT* pv) { std::memset(pv, 0, sizeof(PROPVARIANT)); }

// FMTID followed by the PID: 20 bytes in memory, compared as bytes.
struct PROPERTYKEY {
    FMTID fmtid;
    DWORD pid;
};
static_assert(sizeof(PROPERTYKEY) == 20);
using REFPROPERTYKEY = const PROPERTYKEY&;

inline bool operator==(const PROPERTYKEY& a, const PROPERTYKEY& b) {
    return std::memcmp(&a, &b, sizeof(PROPERTYKEY)) == 0;
}

constexpr ULONG PRSPEC_LPWSTR = 0;
constexpr ULONG PRSPEC_PROPID = 1;

struct PROPSPEC {
    ULONG ulKind;
    union {
        PROPID propid;
        LPWSTR lpwstr;
    };
};

struct STATPROPSTG {
    LPWSTR lpwstrName;
    PROPID propid;
    VARTYPE vt;
};

constexpr PROPID PID_DICTIONARY = 0;
constexpr PROPID PID_CODEPAGE = 1;
constexpr PROPID PID_LOCALE = 0x80000000u;

constexpr IID IID_IPropertyStore = {0x886D8EEB, 0x8CF2, 0x4446, {0x8D, 0x02, 0xCD, 0xBA, 0x1D, 0xBD, 0xCF, 0x99}};

struct IPropertyStore : IUnknown {
    virtual HRESULT GetCount(DWORD* cProps) = 0;
    virtual HRESULT GetAt(DWORD iProp, PROPERTYKEY* pkey) = 0;
    virtual HRESULT GetValue(REFPROPERTYKEY key, PROPVARIANT* pv) = 0;
    virtual HRESULT SetValue(REFPROPERTYKEY key, REFPROPVARIANT propvar) = 0;
    virtual HRESULT Commit() = 0;

protected:
    ~IPropertyStore() = default;
};

// Given by a host that wants a committed document written to a stream of its
// own choosing rather than over the source file.
constexpr IID IID_IDestinationStreamFactory = {
    0x8A87781B, 0x39A7, 0x4A1F, {0xAA, 0xB3, 0xA3, 0x9B, 0x9C, 0x34, 0xA7, 0xD9}};
struct IDestinationStreamFactory : IUnknown {
    virtual HRESULT GetDestinationStream(IStream** ppstmDestination) = 0;

protected:
    ~IDestinationStreamFactory() = default;
};

// Task allocator and the variant helpers.
void* CoTaskMemAlloc(size_t cb);
void* CoTaskMemRealloc(void* pv, size_t cb);
void CoTaskMemFree(void* pv);
HRESULT SHStrDupW(LPCWSTR src, LPWSTR* dest);
HRESULT PropVariantClear(PROPVARIANT* pv);
HRESULT PropVariantCopy(PROPVARIANT* dest, const PROPVARIANT* src);
