// The in-memory property store.
#include "utils/props/MemoryPropertyStore.h"

#include <iterator>
#include <new>

namespace BrmUtils {

MemoryPropertyStore* MemoryPropertyStore::Create() { return new (std::nothrow) MemoryPropertyStore(); }

MemoryPropertyStore::~MemoryPropertyStore() {
    for (auto& entry : values) {
        PropVariantClear(&entry.second);
    }
}

HRESULT MemoryPropertyStore::QueryInterface(REFIID riid, void** object) {
    if (!object) {
        return E_POINTER;
    }
    if (riid == IID_IUnknown || riid == IID_IPropertyStore) {
        *object = static_cast<IPropertyStore*>(this);
        AddRef();
        return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
}

ULONG MemoryPropertyStore::AddRef() { return ULONG(++refCount); }

ULONG MemoryPropertyStore::Release() {
    const int32_t count = --refCount;
    if (count == 0) {
        delete this;
    }
    return ULONG(count);
}

HRESULT MemoryPropertyStore::GetCount(DWORD* cProps) {
    if (!cProps) {
        return E_POINTER;
    }
    *cProps = DWORD(values.size());
    return S_OK;
}

HRESULT MemoryPropertyStore::GetAt(DWORD iProp, PROPERTYKEY* pkey) {
    if (!pkey || iProp >= values.size()) {
        return E_INVALIDARG;
    }
    *pkey = std::next(values.begin(), iProp)->first;
    return S_OK;
}

HRESULT MemoryPropertyStore::GetValue(REFPROPERTYKEY key, PROPVARIANT* pv) {
    if (!pv) {
        return E_POINTER;
    }
    PropVariantInit(pv);
    auto it = values.find(key);
    if (it == values.end()) {
        return S_OK;
    }
    return PropVariantCopy(pv, &it->second);
}

HRESULT MemoryPropertyStore::SetValue(REFPROPERTYKEY key, REFPROPVARIANT propvar) {
    PROPVARIANT copy;
    PropVariantInit(&copy);
    const HRESULT hr = PropVariantCopy(&copy, &propvar);
    if (FAILED(hr)) {
        return hr;
    }
    try {
        auto [it, inserted] = values.try_emplace(key, copy);
        if (!inserted) {
            PropVariantClear(&it->second);
            it->second = copy;
        }
    } catch (const std::bad_alloc&) {
        PropVariantClear(&copy);
        return E_OUTOFMEMORY;
    }
    return S_OK;
}

HRESULT MemoryPropertyStore::Commit() { return S_OK; }

}  // namespace BrmUtils
