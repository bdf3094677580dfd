// The task allocator: the heap that memory handed across interfaces comes
// from (strings and arrays inside PROPVARIANTs, STATSTG names). It is the C
// heap, so CoTaskMemFree and free are interchangeable here.
#include <cstdlib>
#include <cwchar>

#include "platform/PropIdl.h"

void* CoTaskMemAlloc(size_t cb) { return std::malloc(cb ? cb : 1); }

void* CoTaskMemRealloc(void* pv, size_t cb) { return std::realloc(pv, cb ? cb : 1); }

void CoTaskMemFree(void* pv) { std::free(pv); }

HRESULT SHStrDupW(LPCWSTR src, LPWSTR* dest) {
    if (!dest) return E_INVALIDARG;
    *dest = nullptr;
    if (!src) return E_INVALIDARG;
    std::size_t bytes = (std::wcslen(src) + 1) * sizeof(wchar_t);
    auto* copy = static_cast<wchar_t*>(CoTaskMemAlloc(bytes));
    if (!copy) return E_OUTOFMEMORY;
    std::memcpy(copy, src, bytes);
    *dest = copy;
    return S_OK;
}
