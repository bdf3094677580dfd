// The JSON form of a document's properties: one object with the file, its
// type, every property in the reader's order (key, name, typed value, display
// text, read-only flag) and the display groups. The tool's `props --json`
// and `scan --jsonl`, and the C and Python interfaces, all give this form.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "fileinfo/IFileInfo.h"

namespace fi {

nlohmann::ordered_json PropsJson(IFileInfo* info, const std::string& file, EFileFormat format);
// The same object written straight to the end of `out`, byte for byte what
// DumpJson(PropsJson(...)) gives, without building the tree: for the scan,
// which writes one per document.
void AppendPropsJson(std::string& out, IFileInfo* info, const std::string& file, EFileFormat format);

// The scan's line for a file that should have been a document and cannot be
// read as one: {"file":...,"type":...,"error":...}, appended to `out`.
void AppendScanErrorJson(std::string& out, const std::string& file, EFileFormat format, const std::string& why);

// The display groups of a reader: each group key with its member keys.
std::vector<std::pair<PROPERTYKEY, std::vector<PROPERTYKEY>>> PropertyGroups(IFileInfo* info);

// Dumps JSON as UTF-8, replacing bytes that are not.
std::string DumpJson(const nlohmann::ordered_json& j, int indent = -1);

// "0x80004005".
std::string HexHresult(HRESULT hr);

}  // namespace fi
