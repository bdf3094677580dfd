// The in-memory property store: key order, copies in and out, replacement,
// interface queries and reference counting.
#include <gtest/gtest.h>

#include <memory>

#include "utils/props/MemoryPropertyStore.h"

using BrmUtils::MemoryPropertyStore;

namespace {

constexpr FMTID kSet = {0xABCDEF01, 0x2345, 0x6789, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr FMTID kLowSet = {0x00000001, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};

struct StoreRelease {
    void operator()(MemoryPropertyStore* s) const { s->Release(); }
};
using StorePtr = std::unique_ptr<MemoryPropertyStore, StoreRelease>;

PROPVARIANT Text(const wchar_t* s) {
    PROPVARIANT v;
    PropVariantInit(&v);
    v.vt = VT_LPWSTR;
    v.pwszVal = const_cast<wchar_t*>(s);
    return v;
}

}  // namespace

TEST(MemoryPropertyStore, EmptyStore) {
    StorePtr store(MemoryPropertyStore::Create());
    DWORD count = 99;
    EXPECT_EQ(store->GetCount(&count), S_OK);
    EXPECT_EQ(count, 0u);
    PROPERTYKEY key;
    EXPECT_EQ(store->GetAt(0, &key), E_INVALIDARG);
    PROPVARIANT value;
    value.vt = VT_I4;
    EXPECT_EQ(store->GetValue(PROPERTYKEY{kSet, 2}, &value), S_OK);
    EXPECT_EQ(value.vt, VT_EMPTY);
    EXPECT_EQ(store->Commit(), S_OK);
}

TEST(MemoryPropertyStore, KeysInByteOrder) {
    StorePtr store(MemoryPropertyStore::Create());
    PROPVARIANT v = Text(L"x");
    const PROPERTYKEY inserted[] = {{kSet, 100}, {kSet, 2}, {kSet, 256}, {kLowSet, 9}};
    for (const PROPERTYKEY& key : inserted) {
        EXPECT_EQ(store->SetValue(key, v), S_OK);
    }
    const PROPERTYKEY expected[] = {{kLowSet, 9}, {kSet, 256}, {kSet, 2}, {kSet, 100}};
    DWORD count;
    store->GetCount(&count);
    ASSERT_EQ(count, 4u);
    for (DWORD i = 0; i < count; ++i) {
        PROPERTYKEY key;
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
    PROPVARIANT given = Text(buffer);
    ASSERT_EQ(store->SetValue(key, given), S_OK);
    buffer[0] = L'F';  // the caller's memory is not the store's
    PROPVARIANT out;
    ASSERT_EQ(store->GetValue(key, &out), S_OK);
    EXPECT_STREQ(out.pwszVal, L"first");
    out.pwszVal[0] = L'X';  // nor is what it hands out
    PropVariantClear(&out);
    ASSERT_EQ(store->GetValue(key, &out), S_OK);
    EXPECT_STREQ(out.pwszVal, L"first");
    PropVariantClear(&out);

    // The old value is cleared on replacement (LeakSanitizer watches).
    PROPVARIANT number;
    PropVariantInit(&number);
    number.vt = VT_UI4;
    number.ulVal = 7;
    ASSERT_EQ(store->SetValue(key, number), S_OK);
    DWORD count;
    store->GetCount(&count);
    EXPECT_EQ(count, 1u);
    ASSERT_EQ(store->GetValue(key, &out), S_OK);
    EXPECT_EQ(out.vt, VT_UI4);
    EXPECT_EQ(out.ulVal, 7u);
}

TEST(MemoryPropertyStore, InterfacesAndReferences) {
    MemoryPropertyStore* store = MemoryPropertyStore::Create();
    PROPVARIANT v = Text(L"held until the end");
    store->SetValue(PROPERTYKEY{kSet, 3}, v);
    struct Case {
        IID iid;
        HRESULT hr;
    };
    const Case cases[] = {{IID_IUnknown, S_OK}, {IID_IPropertyStore, S_OK}, {IID_IStream, E_NOINTERFACE}};
    for (const Case& c : cases) {
        void* object = reinterpret_cast<void*>(1);
        EXPECT_EQ(store->QueryInterface(c.iid, &object), c.hr);
        if (c.hr == S_OK) {
            EXPECT_EQ(object, static_cast<IPropertyStore*>(store));
            static_cast<IPropertyStore*>(object)->Release();
        } else {
            EXPECT_EQ(object, nullptr);
        }
    }
    EXPECT_EQ(store->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(store->AddRef(), 2u);
    EXPECT_EQ(store->Release(), 1u);
    EXPECT_EQ(store->Release(), 0u);  // the value goes with it
}
