// The constant table of file name extensions and media types, and lookups
// in both directions. Extensions carry their leading point (".pdf"); the
// first row is the default ".txt", the others ascend by extension.
#pragma once

#include <cstddef>
#include <span>

namespace BrmUtils {

struct MimeTypeRow {
    const wchar_t* extension;  // with the leading point, lower case
    const wchar_t* mimeType;
};

extern const MimeTypeRow kMimeTypeRows[];
extern const std::size_t kMimeTypeRowCount;

// All rows, in table order.
std::span<const MimeTypeRow> MimeTypeRows();

// The type of an extension, ignoring ASCII case; the leading point may be
// left out ("PDF", ".pdf"). Null for an unknown, empty or null extension.
const wchar_t* MimeTypeFromExtension(const wchar_t* extension);

// The extension of the first row with this type, ignoring ASCII case and
// any parameters (";charset=..."). Null if no row has the type.
const wchar_t* ExtensionFromMimeType(const wchar_t* mimeType);

}  // namespace BrmUtils
