// The form types of the RIFF documents this library knows: for each form the
// program version, the kind of document, the file version, the MIME type and
// the version's display label. Looked up by form type, first row first.
#pragma once

#include <cstddef>
#include <cstdint>

namespace KvdFileIO {

enum DocumentKind : uint16_t {
    kDrawing = 1,
    kTechnicalDrawing = 2,
    kMotionDocument = 3,
    kTemplate = 4,
    kSymbolLibrary = 5,
    kPattern = 6,
};

struct FormDescriptor {
    uint32_t form;           // as it stands in the RIFF header
    uint16_t version;        // program version times 100
    uint16_t kind;           // a DocumentKind
    uint32_t fileVersion;    // major << 16 | minor << 8 | sub-version
    const wchar_t* mimeType;
    const wchar_t* versionLabel;  // empty for the older versions
};

constexpr size_t kFormCount = 82;
extern const FormDescriptor kFormTable[kFormCount];

// The first row of the form, or null.
const FormDescriptor* FindForm(uint32_t form);

}  // namespace KvdFileIO
