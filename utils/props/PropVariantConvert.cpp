// String and list conversions of the property catalogue.
#include "utils/props/PropVariantConvert.h"

#include <cstring>
#include <string>

#include "platform/CodePage.h"
#include "platform/OleAuto.h"

namespace BrmUtils {

using BrmPlatform::BrmStringW;

namespace {

constexpr wchar_t kJoin[] = L"; ";

using ViewW = BrmPlatform::BrmStringViewW;

// Calls `visit` with each item of a list written as text: the parts between
// ',' and ';', white space trimmed, empty ones left out. Works on views of
// the text: a document's keywords and fonts are split for every read.
template <class Visit>
void ForEachListItem(const wchar_t* text, Visit&& visit) {
    if (!text) {
        return;
    }
    for (const wchar_t* p = text;;) {
        const wchar_t* end = p;
        while (*end && *end != L',' && *end != L';') {
            ++end;
        }
        ViewW item(p, int(end - p));
        item.Trim();
        if (!item.IsEmpty()) {
            visit(item);
        }
        if (!*end) {
            return;
        }
        p = end + 1;
    }
}

// A CoTaskMemAlloc'd copy of `item` with its terminating zero.
LPWSTR DupItem(ViewW item) {
    const size_t length = size_t(item.GetLength());
    auto* copy = static_cast<LPWSTR>(CoTaskMemAlloc((length + 1) * sizeof(wchar_t)));
    if (copy) {
        std::wmemcpy(copy, item.GetString(), length);
        copy[length] = 0;
    }
    return copy;
}

BrmStringW Join(const std::vector<ViewW>& items) {
    BrmStringW joined;
    for (size_t i = 0; i < items.size(); ++i) {
        if (i) {
            joined += kJoin;
        }
        joined += items[i];
    }
    return joined;
}

// The list as the type asked for: VT_VECTOR | VT_LPWSTR, or the items
// joined by "; " as VT_LPWSTR.
HRESULT ViewsToPropVariant(const std::vector<ViewW>& items, VARTYPE requested, PROPVARIANT* value) {
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
        if (!(array[i] = DupItem(items[i]))) {
            PropVariantClear(value);
            PropVariantInit(value);
            return E_OUTOFMEMORY;
        }
    }
    return S_OK;
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
    std::vector<ViewW> views(items.begin(), items.end());
    return ViewsToPropVariant(views, requested, value);
}

std::vector<BrmStringW> SplitList(const wchar_t* text) {
    std::vector<BrmStringW> items;
    ForEachListItem(text, [&](ViewW item) { items.emplace_back(item); });
    return items;
}

HRESULT SplitListToPropVariant(const wchar_t* text, VARTYPE requested, PROPVARIANT* value) {
    size_t count = 0;
    ForEachListItem(text, [&](ViewW) { ++count; });
    std::vector<ViewW> items;
    items.reserve(count);
    ForEachListItem(text, [&](ViewW item) { items.push_back(item); });
    return ViewsToPropVariant(items, requested, value);
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
            text = Join(std::vector<ViewW>(items.begin(), items.end()));
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
