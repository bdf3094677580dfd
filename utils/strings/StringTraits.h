// The C library calls behind the string classes, one set per character width:
// lengths, case folding and comparisons. Case folding is the C library's
// (towlower / tolower), so it follows no locale of the program's own.
#pragma once

#include <cctype>
#include <climits>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <new>
#include <strings.h>

namespace BrmPlatform {

// How two texts are compared: exactly, or with both sides folded to lower case.
enum class CompareCase : int { Exact = 0, IgnoreCase = 1 };

namespace details {

template <typename T>
struct StringTraits;

template <>
struct StringTraits<char> {
    static int Length(const char* s) noexcept { return s ? int(std::strlen(s)) : 0; }
    static char Lower(char c) noexcept { return char(std::tolower(static_cast<unsigned char>(c))); }
    static char Upper(char c) noexcept { return char(std::toupper(static_cast<unsigned char>(c))); }
    static int Code(char c) noexcept { return static_cast<unsigned char>(c); }
    static int CompareN(const char* a, const char* b, int n) noexcept
    {
        const int r = std::strncmp(a, b, std::size_t(n));
        return (r > 0) - (r < 0);
    }
    static int CompareNNoCase(const char* a, const char* b, int n) noexcept
    {
        const int r = ::strncasecmp(a, b, std::size_t(n));
        return (r > 0) - (r < 0);
    }
    static int CollateNoCase(const char* a, const char* b) noexcept
    {
        const int r = ::strcasecmp(a, b);
        return (r > 0) - (r < 0);
    }
};

template <>
struct StringTraits<wchar_t> {
    static int Length(const wchar_t* s) noexcept { return s ? int(std::wcslen(s)) : 0; }
    static wchar_t Lower(wchar_t c) noexcept { return wchar_t(std::towlower(wint_t(c))); }
    static wchar_t Upper(wchar_t c) noexcept { return wchar_t(std::towupper(wint_t(c))); }
    static int Code(wchar_t c) noexcept { return int(c); }
    static int CompareN(const wchar_t* a, const wchar_t* b, int n) noexcept
    {
        const int r = std::wcsncmp(a, b, std::size_t(n));
        return (r > 0) - (r < 0);
    }
    static int CompareNNoCase(const wchar_t* a, const wchar_t* b, int n) noexcept
    {
        const int r = ::wcsncasecmp(a, b, std::size_t(n));
        return (r > 0) - (r < 0);
    }
    static int CollateNoCase(const wchar_t* a, const wchar_t* b) noexcept
    {
        const int r = ::wcscasecmp(a, b);
        return (r > 0) - (r < 0);
    }
};

template <typename T>
inline void CopyChars(T* dst, const T* src, int count) noexcept
{
    if (count > 0)
        std::memcpy(dst, src, std::size_t(count) * sizeof(T));
}

template <typename T>
inline void MoveChars(T* dst, const T* src, int count) noexcept
{
    if (count > 0)
        std::memmove(dst, src, std::size_t(count) * sizeof(T));
}

// a + b as a string length; a length past int is treated like a full heap.
inline int CheckedSum(int a, long long b)
{
    const long long sum = (long long)a + b;
    if (sum > INT_MAX || sum < 0)
        throw std::bad_alloc();
    return int(sum);
}

template <typename T>
inline bool SameChar(T a, T b, CompareCase cc) noexcept
{
    return a == b || (cc == CompareCase::IgnoreCase && StringTraits<T>::Lower(a) == StringTraits<T>::Lower(b));
}

}  // namespace details
}  // namespace BrmPlatform
