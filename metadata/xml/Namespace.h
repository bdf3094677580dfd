// A namespace as a tree holds it: a prefix and a URI, owned by the node that
// declares it. Nodes and attribute keys point at these objects, so a name
// keeps meaning the same URI when prefixes are renamed.
#pragma once

#include <string>

#include "metadata/xml/QualifiedName.h"

namespace XmlNS {

struct Namespace {
    std::string prefix;
    std::string uri;

    Namespace() = default;
    Namespace(std::string p, std::string u) : prefix(std::move(p)), uri(std::move(u)) {}
    explicit Namespace(const NamespaceDef& def) : prefix(def.prefix ? def.prefix : ""), uri(def.uri ? def.uri : "") {}
};

// The two namespaces every tree knows without a declaration. "xml" has an
// internal URI of its own, so xml:lang never needs (and never gets) an
// xmlns:xml declaration in a written document.
inline constexpr NamespaceDef kXmlNamespaceDef{"xml", "dummy:ns:xml/"};
inline constexpr NamespaceDef kXmlnsNamespaceDef{"xmlns", "http://www.w3.org/2000/xmlns/"};

const Namespace& XmlNamespace();
const Namespace& XmlnsNamespace();
bool IsBuiltInNamespace(const Namespace* ns);

}  // namespace XmlNS
