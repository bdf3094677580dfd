// Path selection over XML parts. The system asks for exactly one kind of
// path, an absolute chain of child steps by element name such as
// "/linkInfo"; this serves that by direct tests of element names instead of
// a general path evaluator. Names are compared as written ("prefix:local"),
// without namespaces, as the path language does for unprefixed steps.
// Anything else (relative paths, axes, predicates, functions, an empty
// path) selects nothing, which callers treat as "no such element".
#pragma once

#include <string_view>

#include <pugixml.hpp>

#include "metadata/xml/Node.h"

namespace XmlNS {

// The first element the path selects in the document of `root` (the root
// element of a tree), or null.
const Node* SelectFirstElement(const Node* root, std::string_view path);

// The same on a parsed document.
pugi::xml_node SelectFirstElement(const pugi::xml_document& document, std::string_view path);

}  // namespace XmlNS
