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

DWORD Count(MemoryPropertyStore& store) {
    DWORD count = 99;
    EXPECT_EQ(store.GetCount(&count), S_OK);
    return count;
}

}  // namespace

TEST(MemoryPropertyStore, KeysInByteOrder) {
    StorePtr store(MemoryPropertyStore::Create());
    PROPERTYKEY key;
    EXPECT_EQ(Count(*store), 0u);
    EXPECT_EQ(store->GetAt(0, &key), E_INVALIDARG);
    Owned missing;
    missing.v.vt = VT_I4;
    EXPECT_EQ(store->GetValue(PROPERTYKEY{kSet, 2}, &missing.v), S_OK);
    EXPECT_EQ(missing.v.vt, VT_EMPTY);
    EXPECT_EQ(store->Commit(), S_OK);

    for (const PROPERTYKEY& k : {PROPERTYKEY{kSet, 100}, {kSet, 2}, {kSet, 256}, {kLowSet, 9}}) {
        EXPECT_EQ(store->SetValue(k, Text(L"x")), S_OK);
    }
    const PROPERTYKEY expected[] = {{kLowSet, 9}, {kSet, 256}, {kSet, 2}, {kSet, 100}};
    ASSERT_EQ(Count(*store), 4u);
    for (DWORD i = 0; i < 4; ++i) {
        ASSERT_EQ(store->GetAt(i, &key), S_OK);
        EXPECT_TRUE(key == expected[i]) << i;
    }
    EXPECT_EQ(store->GetAt(4, nullptr), E_INVALIDARG);
    EXPECT_EQ(store->GetAt(0, nullptr), E_INVALIDARG);
}

TEST(MemoryPropertyStore, ValuesAreCopiesAndReplaced) {
    StorePtr store(MemoryPropertyStore::Create());
    const PROPERTYKEY key{kSet, 2};
    wchar_t buffer[] = L"first";
    ASSERT_EQ(store->SetValue(key, Text(buffer)), S_OK);
    buffer[0] = L'F';  // the caller's memory is not the store's
    {
        Owned out, again;
        ASSERT_EQ(store->GetValue(key, &out.v), S_OK);
        EXPECT_STREQ(out.v.pwszVal, L"first");
        out.v.pwszVal[0] = L'X';  // nor is what it hands out
        ASSERT_EQ(store->GetValue(key, &again.v), S_OK);
        EXPECT_STREQ(again.v.pwszVal, L"first");
    }
    // The old value is cleared on replacement (LeakSanitizer watches).
    PROPVARIANT number;
    PropVariantInit(&number);
    number.vt = VT_UI4, number.ulVal = 7;
    ASSERT_EQ(store->SetValue(key, number), S_OK);
    EXPECT_EQ(Count(*store), 1u);
    Owned out;
    ASSERT_EQ(store->GetValue(key, &out.v), S_OK);
    EXPECT_EQ(out.v.vt, VT_UI4);
    EXPECT_EQ(out.v.ulVal, 7u);
}

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
