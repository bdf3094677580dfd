// The text form of a PROPVARIANT: a type name ("byte", "char", "short",
// "ushort", "int", "uint", "int64", "uint64", "bool", "float", "double",
// "bstr", "cstr", "string", "binary"), a vector flag and the value as text.
// Documents keep their open properties in this form.
//
// Vectors are written as their elements joined by ';', each with every '\'
// doubled and every ';' written "\;". A "binary" value (VT_BLOB, no vector
// form) is written as lower-case hexadecimal, two digits a byte.
#pragma once

#include "platform/PropIdl.h"
#include "utils/strings/BrmString.h"

namespace BrmUtils {

// Makes `value` from a type name, compared exactly, and its text. Numbers
// are read as the C library reads them (leading blanks, sign; what does not
// read is 0; too large a number is cut to the type), "bool" is true for
// "true" in any case. False for an unknown type name, a vector of "binary"
// or a "binary" text that is no even run of hex digits; `value` is then
// VT_EMPTY. The empty text of a vector is the empty vector.
bool ParsePropVariant(const BrmPlatform::BrmStringW& typeName, bool isVector, const BrmPlatform::BrmStringW& text,
                      PROPVARIANT* value);

// The reverse. False for a type outside the table above, leaving the three
// outputs empty. Reals are written in the shortest text that reads back to
// the same number.
bool FormatPropVariant(const PROPVARIANT& value, BrmPlatform::BrmStringW& typeName, bool& isVector,
                       BrmPlatform::BrmStringW& text);

}  // namespace BrmUtils
