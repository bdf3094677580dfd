// The text conversions of zip records: names and comments are bytes in the
// file, UTF-8 when the member says so and the ANSI code page otherwise.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "utils/strings/BrmString.h"

namespace ZipText {

// UTF-8 bytes, up to the first NUL byte if there is one.
BrmPlatform::BrmStringW FromUtf8UpToNul(const uint8_t* bytes, size_t length);
// UTF-8 bytes at full length.
BrmPlatform::BrmStringW FromUtf8(const uint8_t* bytes, size_t length);
// Bytes in the ANSI code page, at full length (NUL bytes included).
BrmPlatform::BrmStringW FromAnsi(const uint8_t* bytes, size_t length);

std::string ToUtf8(const BrmPlatform::BrmStringW& text);
std::string ToAnsi(const BrmPlatform::BrmStringW& text);

}  // namespace ZipText
