// The format of a file from its first bytes or its extension, and the names
// of the formats ("drawing", "paint", "metafile", "fill").
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "fileinfo/IFileInfo.h"

namespace fi {

const char* FormatName(EFileFormat format);
std::optional<EFileFormat> ParseFormatName(const std::string& name);

// The format told by the file's first bytes (RIFF form, zip "mimetype",
// magics), else by its extension; nullopt when neither says. `readable`
// becomes false when the file cannot be read at all or is not a regular
// file (a FIFO, a device, a folder), with the reason in `why`.
std::optional<EFileFormat> DetectFormat(const std::string& path, bool* readable, std::string* why);

// The format told by the first bytes of a file alone (the first 512 are read).
std::optional<EFileFormat> DetectFormatOfBytes(const uint8_t* data, size_t size);

}  // namespace fi
