// Helpers for the drawing reader tests: open generated documents through
// the factory and show property values as short texts that compare easily.
#pragma once
#include <memory>
#include <string>

#include "fileinfo/IFileInfo.h"
#include "fileinfo/Variants.h"
#include "fileinfo/WKvdFile.h"
#include "tests/support/riff/DrawingChunks.h"
#include "tests/support/riff/StreamOnBytes.h"

namespace KvdTest {

struct InfoReleaser {
    void operator()(IFileInfo* p) const {
        if (p) p->Release();
    }
};
using InfoPtr = std::unique_ptr<IFileInfo, InfoReleaser>;

// The reader the factory gives for a format on these bytes.
inline InfoPtr Open(const TestDocs::Bytes& bytes, EFileFormat format = FileFormatDrawing) {
    TestDocs::StreamPtr stream = TestDocs::StreamOnBytes(bytes);
    return InfoPtr(IFileInfo::GetInst(stream.get(), format));
}

inline HRESULT SetText(IFileInfo* info, const PROPERTYKEY& key, const wchar_t* text) {
    PROPVARIANT value{};
    value.vt = VT_LPWSTR;
    value.pwszVal = const_cast<wchar_t*>(text);
    return info->SetValue(&key, &value);
}

// "empty", "i4:5", "r8:300", "bool:1", "text:abc", "list:a|b".
inline std::wstring Show(const PROPVARIANT& value) {
    switch (value.vt) {
        case VT_EMPTY: return L"empty";
        case VT_I4: return L"i4:" + std::to_wstring(value.lVal);
        case VT_UI4: return L"ui4:" + std::to_wstring(value.ulVal);
        case VT_I2: return L"i2:" + std::to_wstring(value.iVal);
        case VT_R8: {
            wchar_t text[64];
            swprintf(text, 64, L"r8:%g", value.dblVal);
            return text;
        }
        case VT_BOOL: return value.boolVal == VARIANT_TRUE ? L"bool:1" : value.boolVal == 0 ? L"bool:0" : L"bool:?";
        case VT_LPWSTR: return std::wstring(L"text:") + (value.pwszVal ? value.pwszVal : L"(null)");
        case VT_VECTOR | VT_LPWSTR: {
            std::wstring text = L"list:";
            for (ULONG i = 0; i < value.calpwstr.cElems; ++i) {
                if (i) text += L"|";
                text += value.calpwstr.pElems[i];
            }
            return text;
        }
        default: return L"vt:" + std::to_wstring(value.vt);
    }
}

// The value of GetValue (primary type), or of ReadValue (display type).
inline std::wstring Get(IFileInfo* info, const PROPERTYKEY& key, bool display = false) {
    PROPVARIANT value;
    value.vt = VT_EMPTY;
    if (display) {
        fi::ReadDisplayValue(info, key, &value);
    } else {
        info->GetValue(&key, &value);
    }
    std::wstring shown = Show(value);
    PropVariantClear(&value);
    return shown;
}

}  // namespace KvdTest
