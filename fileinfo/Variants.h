// PROPVARIANT values in the tool's output forms (JSON, one line of text)
// and back from the text a user types for `set`.
#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "fileinfo/IFileInfo.h"
#include "platform/PropIdl.h"

namespace fi {

// "VT_LPWSTR", "VT_VECTOR|VT_LPWSTR", "VT_0x0049" for a type without a name.
std::string VtName(VARTYPE vt);
// The same name written into `buf`, without an allocation.
std::string_view VtNameChars(VARTYPE vt, char (&buf)[64]);

// VT_EMPTY null, VT_BOOL true/false, numbers, strings, vectors as arrays.
nlohmann::ordered_json VariantToJson(const PROPVARIANT& value);

// One line for the table: vectors joined by "; ", empty for VT_EMPTY.
std::string VariantToText(const PROPVARIANT& value);

// Fills `value` (which must be cleared by the caller afterwards) with the
// text turned into `type`; a list type splits on ";" and ",". False when the
// text does not fit the type.
bool TextToVariant(const std::string& text, VARTYPE type, PROPVARIANT* value);

// The display form of a property (ReadValue addressed by the key's pid), in
// `value`, which the caller clears.
HRESULT ReadDisplayValue(IFileInfo* info, const PROPERTYKEY& key, PROPVARIANT* value);

// Owns a PROPVARIANT and clears it at the end of its life.
struct Variant {
    PROPVARIANT pv;
    Variant() { PropVariantInit(&pv); }
    ~Variant() { PropVariantClear(&pv); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    void Clear() { PropVariantClear(&pv); PropVariantInit(&pv); }
};

}  // namespace fi
