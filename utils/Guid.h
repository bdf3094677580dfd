// BrmUtils::Guid: a 16-byte identifier in the byte order of the GUID
// structure, with its text forms: lower-case without braces from ToString,
// with braces from ToBracedString. Text that does not parse gives the zero
// value; nothing is reported.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>

#include "platform/WinTypes.h"
#include "utils/strings/BrmString.h"

namespace BrmUtils {

class Guid {
public:
    Guid() : value_(GUID_NULL) {}
    Guid(const GUID& value) : value_(value) {}
    // Parses "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx", with or without braces
    // around it (runs of { at the front and } at the end are cut off).
    explicit Guid(const wchar_t* text);
    explicit Guid(const BrmPlatform::BrmStringW& text);
    // Narrow text is converted with the ANSI code page first.
    explicit Guid(const char* text);
    explicit Guid(const BrmPlatform::BrmStringA& text);

    // A new random identifier.
    static Guid Create();

    const GUID& Get() const { return value_; }
    operator const GUID&() const { return value_; }
    const uint8_t* Bytes() const { return reinterpret_cast<const uint8_t*>(&value_); }
    bool IsNull() const { return *this == Guid(); }

    // Lower case without braces; empty on failure.
    BrmPlatform::BrmStringW ToString() const;
    // The same inside { and }.
    BrmPlatform::BrmStringW ToBracedString() const;

    // Equality by two 64-bit words, order by the bytes in memory.
    friend bool operator==(const Guid& a, const Guid& b) {
        uint64_t wa[2], wb[2];
        std::memcpy(wa, &a.value_, 16);
        std::memcpy(wb, &b.value_, 16);
        return wa[0] == wb[0] && wa[1] == wb[1];
    }
    friend bool operator!=(const Guid& a, const Guid& b) { return !(a == b); }
    friend bool operator<(const Guid& a, const Guid& b) { return std::memcmp(&a.value_, &b.value_, 16) < 0; }
    friend bool operator>(const Guid& a, const Guid& b) { return b < a; }
    friend bool operator<=(const Guid& a, const Guid& b) { return !(b < a); }
    friend bool operator>=(const Guid& a, const Guid& b) { return !(a < b); }

    std::size_t Hash() const {
        uint64_t w[2];
        std::memcpy(w, &value_, 16);
        return std::hash<uint64_t>()(w[0] ^ (w[1] * 0x9E3779B97F4A7C15ull));
    }

private:
    GUID value_;
};
static_assert(sizeof(Guid) == 16);

}  // namespace BrmUtils

template <>
struct std::hash<BrmUtils::Guid> {
    std::size_t operator()(const BrmUtils::Guid& g) const noexcept { return g.Hash(); }
};
