// PROPVARIANT copies are deep and clears free everything (LeakSanitizer
// watches the test run); BSTR lengths count bytes in the prefix.
#include <gtest/gtest.h>

#include <cwchar>
#include <functional>
#include <string>

#include "platform/OleAuto.h"

namespace {

// A stream that only counts its references.
struct CountingStream : IStream {
    ULONG refs = 1;
    HRESULT QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG AddRef() override { return ++refs; }
    ULONG Release() override { return --refs; }
    HRESULT Read(void*, ULONG, ULONG*) override { return E_NOTIMPL; }
    HRESULT Write(const void*, ULONG, ULONG*) override { return E_NOTIMPL; }
    HRESULT Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    HRESULT SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
    HRESULT CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    HRESULT Commit(DWORD) override { return E_NOTIMPL; }
    HRESULT Revert() override { return E_NOTIMPL; }
    HRESULT LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
    HRESULT Clone(IStream**) override { return E_NOTIMPL; }
};

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

// Each case builds a value that owns memory, and checks that a copy holds
// equal content in storage of its own.
struct CopyCase {
    const char* name;
    std::function<void(PROPVARIANT&)> build;
    std::function<void(const PROPVARIANT&, const PROPVARIANT&)> check;
};

const GUID kGuid = {0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}};

using PV = const PROPVARIANT&;

const CopyCase kCopyCases[] = {
    {"Scalar", [](PROPVARIANT& v) { v.vt = VT_R8; v.dblVal = 2.5; },
     [](PV, PV c) { EXPECT_EQ(c.dblVal, 2.5); }},
    {"FileTime", [](PROPVARIANT& v) { v.vt = VT_FILETIME; v.filetime = FILETIME{1, 2}; },
     [](PV, PV c) { EXPECT_EQ(c.filetime.dwHighDateTime, 2u); }},
    {"WideString", [](PROPVARIANT& v) { v.vt = VT_LPWSTR; v.pwszVal = TaskString(L"title"); },
     [](PV o, PV c) { EXPECT_NE(o.pwszVal, c.pwszVal); EXPECT_STREQ(c.pwszVal, L"title"); }},
    {"NarrowString", [](PROPVARIANT& v) { v.vt = VT_LPSTR; v.pszVal = TaskNarrow("abc"); },
     [](PV o, PV c) { EXPECT_NE(o.pszVal, c.pszVal); EXPECT_STREQ(c.pszVal, "abc"); }},
    {"Bstr", [](PROPVARIANT& v) { v.vt = VT_BSTR; v.bstrVal = SysAllocStringLen(L"a\0b", 3); },
     [](PV o, PV c) {
         EXPECT_NE(o.bstrVal, c.bstrVal);
         EXPECT_EQ(std::wstring(c.bstrVal, SysStringLen(c.bstrVal)), std::wstring(L"a\0b", 3));  // zero kept
     }},
    {"Clsid", [](PROPVARIANT& v) { v.vt = VT_CLSID; v.puuid = TaskArray<CLSID>({kGuid}); },
     [](PV o, PV c) { EXPECT_NE(o.puuid, c.puuid); EXPECT_EQ(*c.puuid, kGuid); }},
    {"Blob", [](PROPVARIANT& v) { v.vt = VT_BLOB; v.blob = {3, TaskArray<BYTE>({1, 2, 3})}; },
     [](PV o, PV c) {
         EXPECT_NE(o.blob.pBlobData, c.blob.pBlobData);
         ASSERT_EQ(c.blob.cbSize, 3u);
         EXPECT_EQ(c.blob.pBlobData[2], 3);
     }},
    {"EmptyBlob", [](PROPVARIANT& v) { v.vt = VT_BLOB; v.blob = {0, nullptr}; },
     [](PV, PV c) { EXPECT_EQ(c.blob.pBlobData, nullptr); }},
    {"VectorOfLongs", [](PROPVARIANT& v) { v.vt = VT_VECTOR | VT_I4; v.cal = {3, TaskArray<LONG>({-1, 0, 7})}; },
     [](PV o, PV c) {
         EXPECT_NE(o.cal.pElems, c.cal.pElems);
         ASSERT_EQ(c.cal.cElems, 3u);
         EXPECT_EQ(c.cal.pElems[2], 7);
     }},
    {"VectorOfDoubles", [](PROPVARIANT& v) { v.vt = VT_VECTOR | VT_R8; v.cadbl = {2, TaskArray<DOUBLE>({0.5, 1.5})}; },
     [](PV, PV c) { EXPECT_EQ(c.cadbl.pElems[1], 1.5); }},
    {"VectorOfFileTimes",
     [](PROPVARIANT& v) { v.vt = VT_VECTOR | VT_FILETIME; v.cafiletime = {1, TaskArray<FILETIME>({FILETIME{5, 6}})}; },
     [](PV, PV c) { EXPECT_EQ(c.cafiletime.pElems[0].dwLowDateTime, 5u); }},
    {"VectorOfClsids",
     [](PROPVARIANT& v) { v.vt = VT_VECTOR | VT_CLSID; v.cauuid = {2, TaskArray<CLSID>({GUID_NULL, kGuid})}; },
     [](PV, PV c) { EXPECT_EQ(c.cauuid.pElems[1], kGuid); }},
    {"VectorOfWideStrings",
     [](PROPVARIANT& v) {
         v.vt = VT_VECTOR | VT_LPWSTR;
         v.calpwstr = {3, TaskArray<LPWSTR>({TaskString(L"one"), nullptr, TaskString(L"")})};
     },
     [](PV o, PV c) {
         ASSERT_EQ(c.calpwstr.cElems, 3u);
         EXPECT_NE(o.calpwstr.pElems[0], c.calpwstr.pElems[0]);
         EXPECT_STREQ(c.calpwstr.pElems[0], L"one");
         EXPECT_EQ(c.calpwstr.pElems[1], nullptr);
         EXPECT_STREQ(c.calpwstr.pElems[2], L"");
     }},
    {"VectorOfNarrowStrings",
     [](PROPVARIANT& v) {
         v.vt = VT_VECTOR | VT_LPSTR;
         v.calpstr = {2, TaskArray<LPSTR>({TaskNarrow("x"), TaskNarrow("yz")})};
     },
     [](PV o, PV c) { EXPECT_NE(o.calpstr.pElems[1], c.calpstr.pElems[1]); EXPECT_STREQ(c.calpstr.pElems[1], "yz"); }},
    {"VectorOfBstrs",
     [](PROPVARIANT& v) {
         v.vt = VT_VECTOR | VT_BSTR;
         v.cabstr = {2, TaskArray<BSTR>({SysAllocString(L"k1"), SysAllocString(L"key2")})};
     },
     [](PV o, PV c) {
         EXPECT_NE(o.cabstr.pElems[1], c.cabstr.pElems[1]);
         EXPECT_EQ(SysStringLen(c.cabstr.pElems[1]), 4u);
     }},
    {"EmptyVector", [](PROPVARIANT& v) { v.vt = VT_VECTOR | VT_LPWSTR; v.calpwstr = {0, nullptr}; },
     [](PV, PV c) { EXPECT_EQ(c.calpwstr.cElems, 0u); }},
};

TEST(PropVariant, CopyIsDeepAndClearFreesEverything) {
    for (const auto& c : kCopyCases) {
        SCOPED_TRACE(c.name);
        PROPVARIANT original, copy;
        PropVariantInit(&original);
        PropVariantInit(&copy);
        c.build(original);
        ASSERT_EQ(PropVariantCopy(&copy, &original), S_OK);
        EXPECT_EQ(copy.vt, original.vt);
        c.check(original, copy);
        EXPECT_EQ(PropVariantClear(&original), S_OK);
        EXPECT_EQ(original.vt, VT_EMPTY);
        // The copy must survive the original's clear, and copy on in turn.
        PROPVARIANT second;
        ASSERT_EQ(PropVariantCopy(&second, &copy), S_OK);
        c.check(copy, second);
        EXPECT_EQ(PropVariantClear(&copy), S_OK);
        EXPECT_EQ(PropVariantClear(&second), S_OK);
    }
}

struct BstrCase {
    const char* name;
    const wchar_t* text;
    UINT length;
};

}  // namespace
