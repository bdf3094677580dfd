// The order of property keys and format identifiers used throughout: a byte
// comparison of the structures as they lie in memory (FMTID as stored, then
// the PID in little-endian), so PID 256 sorts before PID 100.
#pragma once

#include <cstring>

#include "platform/PropIdl.h"

namespace BrmUtils {

struct PropertyKeyLess {
    bool operator()(const PROPERTYKEY& a, const PROPERTYKEY& b) const {
        return std::memcmp(&a, &b, sizeof(PROPERTYKEY)) < 0;
    }
};

struct FmtidLess {
    bool operator()(const FMTID& a, const FMTID& b) const { return std::memcmp(&a, &b, sizeof(FMTID)) < 0; }
};

}  // namespace BrmUtils
