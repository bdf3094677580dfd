// PropVariantClear and PropVariantCopy: the ownership rules of PROPVARIANT.
// Strings, blobs, CLSIDs and vector arrays are CoTaskMem blocks, BSTRs come
// from SysAllocString, streams hold a reference. A copy is always deep.
#include <cstdlib>
#include <cwchar>
#include <limits>

#include "platform/OleAuto.h"

namespace {

// Every counted array of the union has this layout: count, then pointer.
struct __attribute__((may_alias)) CountedArray {
    ULONG cElems;
    void* pElems;
};
static_assert(sizeof(CountedArray) == sizeof(CAUB));

CountedArray* ArrayOf(PROPVARIANT* pv) { return reinterpret_cast<CountedArray*>(&pv->cac); }
const CountedArray* ArrayOf(const PROPVARIANT* pv) { return reinterpret_cast<const CountedArray*>(&pv->cac); }

// Size of one element of a vector of `type`; 0 for a type that has no vector
// form here.
std::size_t VectorElementSize(VARTYPE type) {
    switch (type) {
    case VT_I1:
    case VT_UI1: return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL: return 2;
    case VT_I4:
    case VT_UI4:
    case VT_R4:
    case VT_ERROR: return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_FILETIME: return 8;
    case VT_CLSID: return sizeof(CLSID);
    case VT_BSTR:
    case VT_LPSTR:
    case VT_LPWSTR: return sizeof(void*);
    default: return 0;
    }
}

bool IsScalar(VARTYPE vt) {
    switch (vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BOOL:
    case VT_ERROR:
    case VT_DECIMAL:
    case VT_FILETIME: return true;
    default: return false;
    }
}

void* CopyBlock(const void* src, std::size_t bytes) {
    void* copy = CoTaskMemAlloc(bytes);
    if (copy && bytes) std::memcpy(copy, src, bytes);
    return copy;
}

char* CopyNarrow(const char* s) { return static_cast<char*>(CopyBlock(s, std::strlen(s) + 1)); }

wchar_t* CopyWide(const wchar_t* s) {
    return static_cast<wchar_t*>(CopyBlock(s, (std::wcslen(s) + 1) * sizeof(wchar_t)));
}

BSTR CopyBstr(BSTR s) { return SysAllocStringLen(s, SysStringLen(s)); }

void FreeVectorElements(VARTYPE type, CountedArray& array) {
    if (!array.pElems) return;
    auto** items = static_cast<void**>(array.pElems);
    for (ULONG i = 0; i < array.cElems; ++i) {
        if (type == VT_BSTR) {
            SysFreeString(static_cast<BSTR>(items[i]));
        } else {
            CoTaskMemFree(items[i]);
        }
    }
}

}  // namespace

HRESULT PropVariantClear(PROPVARIANT* pv) {
    if (!pv) return S_OK;
    const VARTYPE vt = pv->vt;
    if (IsScalar(vt)) {
        // nothing owned
    } else if (vt == VT_BSTR) {
        SysFreeString(pv->bstrVal);
    } else if (vt == VT_LPSTR || vt == VT_LPWSTR) {
        CoTaskMemFree(vt == VT_LPSTR ? static_cast<void*>(pv->pszVal) : static_cast<void*>(pv->pwszVal));
    } else if (vt == VT_CLSID) {
        CoTaskMemFree(pv->puuid);
    } else if (vt == VT_BLOB) {
        CoTaskMemFree(pv->blob.pBlobData);
    } else if (vt == VT_STREAM) {
        if (pv->pStream) pv->pStream->Release();
    } else if ((vt & VT_VECTOR) && VectorElementSize(VARTYPE(vt & VT_TYPEMASK)) && !(vt & (VT_ARRAY | VT_BYREF))) {
        CountedArray* array = ArrayOf(pv);
        VARTYPE type = VARTYPE(vt & VT_TYPEMASK);
        if (type == VT_BSTR || type == VT_LPSTR || type == VT_LPWSTR) FreeVectorElements(type, *array);
        CoTaskMemFree(array->pElems);
    } else {
        return DISP_E_BADVARTYPE;
    }
    PropVariantInit(pv);
    return S_OK;
}

HRESULT PropVariantCopy(PROPVARIANT* dest, const PROPVARIANT* src) {
    if (!dest || !src) return E_INVALIDARG;
    if (dest == src) return S_OK;
    const VARTYPE vt = src->vt;
    PROPVARIANT out;
    std::memcpy(&out, src, sizeof out);
    bool ok = true;

    if (IsScalar(vt)) {
        // the bit copy is the copy
    } else if (vt == VT_BSTR) {
        out.bstrVal = src->bstrVal ? CopyBstr(src->bstrVal) : nullptr;
        ok = !src->bstrVal || out.bstrVal;
    } else if (vt == VT_LPSTR) {
        out.pszVal = src->pszVal ? CopyNarrow(src->pszVal) : nullptr;
        ok = !src->pszVal || out.pszVal;
    } else if (vt == VT_LPWSTR) {
        out.pwszVal = src->pwszVal ? CopyWide(src->pwszVal) : nullptr;
        ok = !src->pwszVal || out.pwszVal;
    } else if (vt == VT_CLSID) {
        out.puuid = src->puuid ? static_cast<CLSID*>(CopyBlock(src->puuid, sizeof(CLSID))) : nullptr;
        ok = !src->puuid || out.puuid;
    } else if (vt == VT_BLOB) {
        out.blob.pBlobData = nullptr;
        if (src->blob.pBlobData) {
            out.blob.pBlobData = static_cast<BYTE*>(CopyBlock(src->blob.pBlobData, src->blob.cbSize));
            ok = out.blob.pBlobData != nullptr;
        } else {
            out.blob.cbSize = 0;
        }
    } else if (vt == VT_STREAM) {
        if (out.pStream) out.pStream->AddRef();
    } else if ((vt & VT_VECTOR) && VectorElementSize(VARTYPE(vt & VT_TYPEMASK)) && !(vt & (VT_ARRAY | VT_BYREF))) {
        const VARTYPE type = VARTYPE(vt & VT_TYPEMASK);
        const std::size_t size = VectorElementSize(type);
        const CountedArray* from = ArrayOf(src);
        CountedArray* to = ArrayOf(&out);
        to->pElems = nullptr;
        if (!from->pElems || from->cElems == 0) {
            to->cElems = 0;
        } else if (from->cElems > std::numeric_limits<std::size_t>::max() / size) {
            ok = false;
        } else if (type == VT_BSTR || type == VT_LPSTR || type == VT_LPWSTR) {
            to->pElems = CoTaskMemAlloc(from->cElems * size);
            ok = to->pElems != nullptr;
            if (ok) std::memset(to->pElems, 0, from->cElems * size);
            auto* const* items = static_cast<void* const*>(from->pElems);
            auto** copies = static_cast<void**>(to->pElems);
            for (ULONG i = 0; ok && i < from->cElems; ++i) {
                if (!items[i]) continue;
                if (type == VT_BSTR) {
                    copies[i] = CopyBstr(static_cast<BSTR>(items[i]));
                } else if (type == VT_LPSTR) {
                    copies[i] = CopyNarrow(static_cast<const char*>(items[i]));
                } else {
                    copies[i] = CopyWide(static_cast<const wchar_t*>(items[i]));
                }
                ok = copies[i] != nullptr;
            }
        } else {
            to->pElems = CopyBlock(from->pElems, from->cElems * size);
            ok = to->pElems != nullptr;
        }
    } else {
        PropVariantInit(dest);
        return DISP_E_BADVARTYPE;
    }

    if (!ok) {
        PropVariantClear(&out);
        PropVariantInit(dest);
        return E_OUTOFMEMORY;
    }
    std::memcpy(dest, &out, sizeof out);
    return S_OK;
}
