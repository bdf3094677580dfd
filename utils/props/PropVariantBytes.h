// The byte form of a PROPVARIANT: the typed property value of the public
// property-set format (u16 type, u16 zero, then the value, padded to four
// bytes), with strings in UTF-16LE as for a property set of code page 1200.
// Values written by other implementations of that format read here, and
// values written here read there. Numbers are little-endian.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/PropIdl.h"

namespace BrmUtils {

// Replaces `bytes` with the byte form of `value`. False for a type the format
// cannot carry here (VT_UNKNOWN, VT_ARRAY, ...) or a damaged value (a vector
// with elements but no array), leaving `bytes` empty.
bool SerializePropVariant(const PROPVARIANT& value, std::vector<uint8_t>& bytes);

// Reads one value from the first `size` bytes; bytes after the value are
// ignored. False for an unknown type or a value that does not fit in `size`;
// `value` is then VT_EMPTY. Memory comes from the task allocator (SysAlloc
// for VT_BSTR): release it with PropVariantClear.
bool DeserializePropVariant(const void* bytes, size_t size, PROPVARIANT* value);

}  // namespace BrmUtils
