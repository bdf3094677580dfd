// The rules that decide what an RDF property node means, whichever of the
// accepted spellings a document used: its plain value, whether it is a
// structure, where its fields stand; and the choice of the written form of
// a structure. There is no general RDF parser behind them: no triples, no
// rdf:nodeID, no rdf:datatype.
#pragma once

#include <string>

#include "metadata/xml/Node.h"

namespace Metadata {

class Container;

namespace Rdf {

// The plain value of a property node, UTF-8: rdf:value or rdf:resource in
// an attribute, else the element's text; for a node with children the first
// rdf:value element found (itself, a direct child, or depth-first below).
std::string GetText(const XmlNS::Node* node);

// Whether the node holds fields (attribute form, rdf:parseType="Resource",
// or a nested rdf:Description) rather than a value.
bool IsStructure(const XmlNS::Node* node);

// The node whose attributes and children are the fields, or null.
XmlNS::Node* GetStructureNode(XmlNS::Node* node);

// Called after the fields of a structure were written as children: up to
// five plain fields become attributes of the node, anything else keeps the
// children and marks the node rdf:parseType="Resource".
void CompactStructure(Container& container, XmlNS::Node* node);

}  // namespace Rdf
}  // namespace Metadata
