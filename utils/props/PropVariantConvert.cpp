// String and list conversions of the property catalogue.
#include "utils/props/PropVariantConvert.h"

#include <cstring>

#include "platform/CodePage.h"
#include "platform/OleAuto.h"

namespace BrmUtils {

using BrmPlatform::BrmStringW;

namespace {

constexpr wchar_t kJoin[] = L"; ";

BrmStringW Join(const std::vector<BrmStringW>& items) {
    BrmStringW joined;
    for (size_t i = 0; i < items.size(); ++i) {
        if (i) {
            joined += kJoin;
        }
        joined += items[i];
    }
    return joined;
}

}  // namespace

HRESULT StringToPropVariant(const wchar_t* text, PROPVARIANT* value) {
    if (!value) {
        return E_POINTER;
    }
    PropVariantInit(value);
    LPWSTR copy = nullptr;
    const HRESULT hr = SHStrDupW(text ? text : L"", &copy);
    if (FAILED(hr)) {
        return hr;
    }
    value->vt = VT_LPWSTR;
    value->pwszVal = copy;
    return S_OK;
}

HRESULT ListToPropVariant(const std::vector<BrmStringW>& items, VARTYPE requested, PROPVARIANT* value) {
    if (!value) {
        return E_POINTER;
    }
    PropVariantInit(value);
    if (requested == VT_LPWSTR) {
        return StringToPropVariant(Join(items), value);
    }
    if (requested != (VT_VECTOR | VT_LPWSTR)) {
        return E_INVALIDARG;
    }
    LPWSTR* array = nullptr;
    if (!items.empty()) {
        array = static_cast<LPWSTR*>(CoTaskMemAlloc(items.size() * sizeof(LPWSTR)));
        if (!array) {
            return E_OUTOFMEMORY;
        }
        std::memset(static_cast<void*>(array), 0, items.size() * sizeof(LPWSTR));
    }
    value->vt = VT_VECTOR | VT_LPWSTR;
    value->calpwstr.cElems = ULONG(items.size());
    value->calpwstr.pElems = array;
    for (size_t i = 0; i < items.size(); ++i) {
        if (FAILED(SHStrDupW(items[i], &array[i]))) {
            PropVariantClear(value);
            PropVariantInit(value);
            return E_OUTOFMEMORY;
        }
    }
    return S_OK;
}

std::vector<BrmStringW> SplitList(const wchar_t* text) {
    std::vector<BrmStringW> items;
    const BrmStringW whole(text);
    int pos = 0;
    while (pos >= 0) {
        BrmStringW item = whole.Tokenize(L",;", pos);
        item.Trim();
        if (!item.IsEmpty()) {
            items.push_back(item);
        }
    }
    return items;
}

HRESULT SplitListToPropVariant(const wchar_t* text, VARTYPE requested, PROPVARIANT* value) {
    return ListToPropVariant(SplitList(text), requested, value);
}

bool PropVariantToString(const PROPVARIANT& value, BrmStringW& text) {
    switch (value.vt) {
        case VT_EMPTY: text.Empty(); return true;
        case VT_LPWSTR: text = value.pwszVal; return true;
        case VT_BSTR:
            text = value.bstrVal ? BrmStringW(value.bstrVal, int(SysStringLen(value.bstrVal))) : BrmStringW();
            return true;
        case VT_LPSTR: text = BrmPlatform::BrmStringA(value.pszVal); return true;
        case VT_VECTOR | VT_LPWSTR: {
            std::vector<BrmStringW> items;
            PropVariantToList(value, items);
            text = Join(items);
            return true;
        }
        default: return false;
    }
}

bool PropVariantToList(const PROPVARIANT& value, std::vector<BrmStringW>& items) {
    items.clear();
    if (value.vt == (VT_VECTOR | VT_LPWSTR)) {
        if (value.calpwstr.pElems) {
            for (ULONG i = 0; i < value.calpwstr.cElems; ++i) {
                items.emplace_back(value.calpwstr.pElems[i]);
            }
        }
        return true;
    }
    BrmStringW text;
    if (!PropVariantToString(value, text)) {
        return false;
    }
    items = SplitList(text);
    return true;
}

}  // namespace BrmUtils
