// How a name given by a caller matches a member name: in full and without
// regard to case, or, for a name ending in '/', as a folder prefix.
#pragma once

#include <cwctype>
#include <string>

#include "utils/strings/BrmString.h"

namespace ZipMatch {

inline bool IsFolder(const BrmPlatform::BrmStringW& name) {
    int length = name.GetLength();
    return length > 0 && name[length - 1] == L'/';
}

inline bool Matches(const BrmPlatform::BrmStringW& memberName, const BrmPlatform::BrmStringW& name) {
    if (IsFolder(name))
        return memberName.StartsWith(name, BrmPlatform::CompareCase::IgnoreCase);
    return memberName.CompareNoCase(name) == 0;
}

// A key under which names that match each other in full are equal.
inline std::wstring Key(const BrmPlatform::BrmStringW& name) {
    std::wstring key(name.GetString(), size_t(name.GetLength()));
    for (wchar_t& c : key)
        c = wchar_t(std::towlower(wint_t(c)));
    return key;
}

}  // namespace ZipMatch
