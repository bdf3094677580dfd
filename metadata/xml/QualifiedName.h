// Constant names of XML vocabularies: a namespace definition (prefix, URI)
// and a qualified name (namespace, local name). Both are plain constants that
// the schema tables and the RDF rules share; a name is identified by URI and
// local name, never by its prefix.
#pragma once

#include <cstring>
#include <string_view>

namespace XmlNS {

struct NamespaceDef {
    const char* prefix;
    const char* uri;
};

struct QualifiedName {
    const NamespaceDef* ns;
    const char* local;

    std::string_view Uri() const { return ns ? std::string_view(ns->uri) : std::string_view(); }
    std::string_view Local() const { return local ? std::string_view(local) : std::string_view(); }
};

inline bool operator==(const QualifiedName& a, const QualifiedName& b) {
    return a.Uri() == b.Uri() && a.Local() == b.Local();
}

}  // namespace XmlNS
