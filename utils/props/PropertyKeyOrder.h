// The order of property keys and format identifiers used throughout: a byte
// comparison of the structures as they lie in memory (FMTID as stored, then
// the PID in little-endian), so PID 256 sorts before PID 100.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "platform/PropIdl.h"

namespace BrmUtils {

namespace details {
// Bytes p[0..7] as a number whose order is that of memcmp on them.
inline uint64_t BytesInOrder(const void* p) {
    uint64_t v;
    std::memcpy(&v, p, sizeof v);
    if constexpr (std::endian::native == std::endian::little) v = __builtin_bswap64(v);
    return v;
}
}  // namespace details

// memcmp's order, in three comparisons of whole words: catalogues search
// keys for every property read, and a call to memcmp per step costs more
// than the comparison.
struct PropertyKeyLess {
    bool operator()(const PROPERTYKEY& a, const PROPERTYKEY& b) const {
        const auto* x = reinterpret_cast<const unsigned char*>(&a);
        const auto* y = reinterpret_cast<const unsigned char*>(&b);
        for (int at = 0; at < 16; at += 8) {
            const uint64_t u = details::BytesInOrder(x + at), v = details::BytesInOrder(y + at);
            if (u != v) return u < v;
        }
        uint32_t u, v;
        std::memcpy(&u, x + 16, 4);
        std::memcpy(&v, y + 16, 4);
        if constexpr (std::endian::native == std::endian::little) {
            u = __builtin_bswap32(u);
            v = __builtin_bswap32(v);
        }
        return u < v;
    }
};

struct FmtidLess {
    bool operator()(const FMTID& a, const FMTID& b) const { return std::memcmp(&a, &b, sizeof(FMTID)) < 0; }
};

}  // namespace BrmUtils
