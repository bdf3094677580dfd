// MemoryPropertyStore: an IPropertyStore held in memory, the home of a
// document's open properties. It owns copies of the values it is given and
// clears them when the last reference goes.
#pragma once

#include <map>

#include "platform/PropIdl.h"
#include "utils/props/PropertyKeyOrder.h"

namespace BrmUtils {

class MemoryPropertyStore final : public IPropertyStore {
public:
    // A new empty store with one reference, or null when memory is short.
    static MemoryPropertyStore* Create();

    HRESULT QueryInterface(REFIID riid, void** object) override;
    ULONG AddRef() override;
    ULONG Release() override;

    HRESULT GetCount(DWORD* cProps) override;
    // The key at `iProp` in key order; E_INVALIDARG past the end or for a null output.
    HRESULT GetAt(DWORD iProp, PROPERTYKEY* pkey) override;
    // A copy of the value; a key that is not there gives VT_EMPTY and S_OK.
    HRESULT GetValue(REFPROPERTYKEY key, PROPVARIANT* pv) override;
    // Stores a copy, replacing (and clearing) a value held under the key.
    HRESULT SetValue(REFPROPERTYKEY key, REFPROPVARIANT propvar) override;
    HRESULT Commit() override;

private:
    MemoryPropertyStore() = default;
    ~MemoryPropertyStore();
    MemoryPropertyStore(const MemoryPropertyStore&) = delete;
    MemoryPropertyStore& operator=(const MemoryPropertyStore&) = delete;

    int32_t refCount = 1;  // one thread at a time: a plain count
    std::map<PROPERTYKEY, PROPVARIANT, PropertyKeyLess> values;
};

}  // namespace BrmUtils
