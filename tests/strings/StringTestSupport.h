// Helpers for the string tests: ASCII literals in either width, the block
// header of a string, and the typed-test list of both widths.
#pragma once

#include "utils/strings/BrmString.h"

#include <gtest/gtest.h>

#include <string>

namespace StringTest {

using BrmPlatform::BrmStringT;
using BrmPlatform::BrmStringViewT;

// An ASCII literal in width T (embedded zeros need the length form).
template <typename T>
std::basic_string<T> Lit(const char* ascii, std::size_t length) {
    return std::basic_string<T>(ascii, ascii + length);
}
template <typename T>
std::basic_string<T> Lit(const char* ascii) {
    return Lit<T>(ascii, std::char_traits<char>::length(ascii));
}

template <typename T>
BrmStringT<T> Str(const char* ascii) {
    return BrmStringT<T>(Lit<T>(ascii));
}

template <typename T>
std::string Ascii(BrmStringViewT<T> v) {
    std::string out;
    for (int i = 0; i < v.GetLength(); ++i)
        out += char(v[i]);
    return out;
}
template <typename T>
std::string Ascii(const BrmStringT<T>& s) { return Ascii(BrmStringViewT<T>(s)); }

template <typename T>
const BrmPlatform::details::StringDataHeader* HeaderOf(const BrmStringT<T>& s) {
    return BrmPlatform::details::StringDataHeader::FromData(s.GetString());
}
template <typename T>
int RefCount(const BrmStringT<T>& s) {
    return HeaderOf(s)->refCount.load();
}
template <typename T>
bool IsNil(const BrmStringT<T>& s) {
    return HeaderOf(s) == HeaderOf(BrmStringT<wchar_t>());
}

using Widths = ::testing::Types<char, wchar_t>;

struct WidthNames {
    template <typename T>
    static std::string GetName(int) {
        return std::is_same_v<T, char> ? "Narrow" : "Wide";
    }
};

}  // namespace StringTest
