// Conversions between the values readers hold (strings, lists of strings)
// and the PROPVARIANTs their getters answer and their setters receive. A
// list is asked for in one of two forms: VT_VECTOR | VT_LPWSTR, or VT_LPWSTR
// with the items joined by "; ".
#pragma once

#include <vector>

#include "platform/PropIdl.h"
#include "utils/strings/BrmString.h"

namespace BrmUtils {

// VT_LPWSTR holding a task-allocated copy of `text` (null is taken as "").
// E_OUTOFMEMORY leaves VT_EMPTY.
HRESULT StringToPropVariant(const wchar_t* text, PROPVARIANT* value);

// `items` in the `requested` form: VT_LPWSTR (joined by "; ") or
// VT_VECTOR | VT_LPWSTR. Any other request answers E_INVALIDARG, VT_EMPTY.
HRESULT ListToPropVariant(const std::vector<BrmPlatform::BrmStringW>& items, VARTYPE requested,
                          PROPVARIANT* value);

// The items of one string that holds several, separated by ',' or ';', each
// trimmed of space, CR, LF and tab; items that trim to nothing are dropped.
std::vector<BrmPlatform::BrmStringW> SplitList(const wchar_t* text);

// SplitList, then ListToPropVariant.
HRESULT SplitListToPropVariant(const wchar_t* text, VARTYPE requested, PROPVARIANT* value);

// The text a setter stores: VT_LPWSTR, VT_BSTR and VT_LPSTR as they are,
// VT_VECTOR | VT_LPWSTR joined by "; ", VT_EMPTY as "". False for other types.
bool PropVariantToString(const PROPVARIANT& value, BrmPlatform::BrmStringW& text);

// The list a setter stores: the items of a VT_VECTOR | VT_LPWSTR, or a text
// type split by SplitList. False for other types.
bool PropVariantToList(const PROPVARIANT& value, std::vector<BrmPlatform::BrmStringW>& items);

}  // namespace BrmUtils
