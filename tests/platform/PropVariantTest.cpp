// PROPVARIANT copies are deep and clears free everything: a copy must read
// the same after its original is cleared (AddressSanitizer catches a copy
// that shares storage, LeakSanitizer a clear that forgets some).
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>

#include "fileinfo/Variants.h"
#include "platform/OleAuto.h"

namespace {

wchar_t* TaskString(const wchar_t* s) {
    wchar_t* copy = nullptr;
    EXPECT_EQ(SHStrDupW(s, &copy), S_OK);
    return copy;
}

char* TaskNarrow(const char* s) {
    auto* copy = static_cast<char*>(CoTaskMemAlloc(std::strlen(s) + 1));
    std::strcpy(copy, s);
    return copy;
}

template <typename T>
T* TaskArray(std::initializer_list<T> items) {
    auto* block = static_cast<T*>(CoTaskMemAlloc(items.size() * sizeof(T)));
    std::size_t i = 0;
    for (const T& item : items) block[i++] = item;
    return block;
}

const GUID kGuid = {0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}};

// The contents as text, and the bytes of blobs and BSTRs, which the text
// form leaves out.
std::string Contents(const PROPVARIANT& v) {
    std::string text = fi::VariantToText(v);
    if (v.vt == VT_BLOB && v.blob.pBlobData) text.append(reinterpret_cast<char*>(v.blob.pBlobData), v.blob.cbSize);
    if (v.vt == VT_BSTR) text += std::to_string(SysStringLen(v.bstrVal));
    if (v.vt == (VT_VECTOR | VT_CLSID)) text += std::to_string(std::memcmp(&v.cauuid.pElems[1], &kGuid, sizeof kGuid));
    return text;
}

TEST(PropVariant, CopyIsDeepAndClearFreesEverything) {
    const std::function<void(PROPVARIANT&)> builds[] = {
        [](PROPVARIANT& v) { v.vt = VT_R8, v.dblVal = 2.5; },
        [](PROPVARIANT& v) { v.vt = VT_FILETIME, v.filetime = FILETIME{1, 2}; },
        [](PROPVARIANT& v) { v.vt = VT_LPWSTR, v.pwszVal = TaskString(L"title"); },
        [](PROPVARIANT& v) { v.vt = VT_LPSTR, v.pszVal = TaskNarrow("abc"); },
        [](PROPVARIANT& v) { v.vt = VT_BSTR, v.bstrVal = SysAllocStringLen(L"a\0b", 3); },  // the zero is kept
        [](PROPVARIANT& v) { v.vt = VT_CLSID, v.puuid = TaskArray<CLSID>({kGuid}); },
        [](PROPVARIANT& v) { v.vt = VT_BLOB, v.blob = {3, TaskArray<BYTE>({1, 2, 3})}; },
        [](PROPVARIANT& v) { v.vt = VT_BLOB, v.blob = {0, nullptr}; },
        [](PROPVARIANT& v) { v.vt = VT_VECTOR | VT_I4, v.cal = {3, TaskArray<LONG>({-1, 0, 7})}; },
        [](PROPVARIANT& v) { v.vt = VT_VECTOR | VT_R8, v.cadbl = {2, TaskArray<DOUBLE>({0.5, 1.5})}; },
        [](PROPVARIANT& v) { v.vt = VT_VECTOR | VT_FILETIME, v.cafiletime = {1, TaskArray<FILETIME>({{5, 6}})}; },
        [](PROPVARIANT& v) { v.vt = VT_VECTOR | VT_CLSID, v.cauuid = {2, TaskArray<CLSID>({GUID_NULL, kGuid})}; },
        [](PROPVARIANT& v) {
            v.vt = VT_VECTOR | VT_LPWSTR;
            v.calpwstr = {3, TaskArray<LPWSTR>({TaskString(L"one"), nullptr, TaskString(L"")})};
        },
        [](PROPVARIANT& v) { v.vt = VT_VECTOR | VT_LPSTR, v.calpstr = {2, TaskArray<LPSTR>({TaskNarrow("x"), TaskNarrow("yz")})}; },
        [](PROPVARIANT& v) {
            v.vt = VT_VECTOR | VT_BSTR;
            v.cabstr = {2, TaskArray<BSTR>({SysAllocString(L"k1"), SysAllocString(L"key2")})};
        },
        [](PROPVARIANT& v) { v.vt = VT_VECTOR | VT_LPWSTR, v.calpwstr = {0, nullptr}; },
    };
    for (const auto& build : builds) {
        PROPVARIANT original, copy, second;
        PropVariantInit(&original);
        build(original);
        const std::string contents = Contents(original);
        SCOPED_TRACE(fi::VtName(original.vt) + " " + contents);
        ASSERT_EQ(PropVariantCopy(&copy, &original), S_OK);
        EXPECT_EQ(PropVariantClear(&original), S_OK);
        EXPECT_EQ(original.vt, VT_EMPTY);
        // The copy survives the original's clear, and copies on in turn.
        EXPECT_EQ(Contents(copy), contents);
        ASSERT_EQ(PropVariantCopy(&second, &copy), S_OK);
        EXPECT_EQ(PropVariantClear(&copy), S_OK);
        EXPECT_EQ(Contents(second), contents);
        EXPECT_EQ(PropVariantClear(&second), S_OK);
    }
}

}  // namespace
