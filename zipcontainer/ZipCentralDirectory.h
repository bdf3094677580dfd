// The central directory of an archive, turned into its table of members.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "zipcontainer/ZipMember.h"

namespace ZipCentralDirectory {

// Parses `entries` central headers from `data`. Members this layer can't
// read (encrypted, patched, an unknown method) are left out. False on a bad
// signature or a header that overruns the buffer; `members` is then
// incomplete and must not be used.
bool Parse(const uint8_t* data, size_t size, uint64_t entries, std::vector<ZipMember>& members);

}  // namespace ZipCentralDirectory
