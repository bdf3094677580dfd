// Names of property keys: the platform's canonical names where one exists
// (System.Title, ...) and this system's own ("fileinfo.Fonts") otherwise,
// with the primary type the readers give each known key.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/PropIdl.h"

namespace fi {

// "{F29F85E0-4FF9-1068-AB91-08002B27B3D9}/5": FMTID upper case, decimal PID.
std::string KeyText(const PROPERTYKEY& key);
// The same written into `buf`, without an allocation.
std::string_view KeyChars(const PROPERTYKEY& key, char (&buf)[64]);
// "{F29F85E0-4FF9-1068-AB91-08002B27B3D9}": a GUID as KeyText writes an FMTID.
std::string GuidText(const GUID& id);
// Parses the form above (braces optional, any case); nullopt when malformed.
std::optional<PROPERTYKEY> ParseKeyText(const std::string& text);

// The key's name: a known name, else "fileinfo.{FMTID}/PID".
std::string KeyName(const PROPERTYKEY& key);
// The known name of the key, without a copy; empty when it has none.
std::string_view KnownKeyName(const PROPERTYKEY& key);
// A key given as a known name or in the KeyText form.
std::optional<PROPERTYKEY> ResolveKey(const std::string& nameOrKey);
// The primary type the readers use for a known key; VT_EMPTY when unknown.
VARTYPE KnownPrimaryType(const PROPERTYKEY& key);

// The display name of a group key (description, origin, ...).
std::string GroupName(const PROPERTYKEY& key);

}  // namespace fi
