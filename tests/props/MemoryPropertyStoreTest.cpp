// The in-memory property store: key order, copies in and out, replacement,
// interface queries and reference counting.
#include <gtest/gtest.h>

#include <memory>

#include "tests/props/VariantText.h"
#include "utils/props/MemoryPropertyStore.h"

using BrmUtils::MemoryPropertyStore;
using fitest::Owned;
using fitest::Text;

namespace {

constexpr FMTID kSet = {0xABCDEF01, 0x2345, 0x6789, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr FMTID kLowSet = {0x00000001, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};

struct StoreRelease {
    void operator()(MemoryPropertyStore* s) const { s->Release(); }
};
using StorePtr = std::unique_ptr<MemoryPropertyStore, StoreRelease>;

}  // namespace

TEST(MemoryPropertyStore, InterfacesAndReferences) {
    MemoryPropertyStore* store = MemoryPropertyStore::Create();
    store->SetValue(PROPERTYKEY{kSet, 3}, Text(L"held until the end"));
    const struct { IID iid; HRESULT hr; } cases[] = {
        {IID_IUnknown, S_OK}, {IID_IPropertyStore, S_OK}, {IID_IStream, E_NOINTERFACE}};
    for (const auto& c : cases) {
        void* object = reinterpret_cast<void*>(1);
        EXPECT_EQ(store->QueryInterface(c.iid, &object), c.hr);
        EXPECT_EQ(object, c.hr == S_OK ? static_cast<IPropertyStore*>(store) : nullptr);
        if (object) static_cast<IPropertyStore*>(object)->Release();
    }
    EXPECT_EQ(store->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(store->AddRef(), 2u);
    EXPECT_EQ(store->Release(), 1u);
    EXPECT_EQ(store->Release(), 0u);  // the value goes with it
}
