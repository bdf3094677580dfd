// Small helpers of the fill descriptions for reading and writing fill.xml
// nodes: attribute text, element lookup on a const tree, numbers as text.
#pragma once

#include <string>
#include <string_view>

#include "fill/FillText.h"
#include "metadata/Utf8.h"
#include "metadata/xml/Node.h"

namespace FillNodes {

using XmlNS::Node;
using XmlNS::QualifiedName;

// The attribute's text, empty when it is missing.
inline std::string_view Attribute(const Node& node, const QualifiedName& name) {
    const std::string* value = node.GetAttribute(name);
    return value ? std::string_view(*value) : std::string_view();
}
inline double NumberAttribute(const Node& node, const QualifiedName& name) {
    return FillText::ParseNumber(Attribute(node, name));
}
inline BrmPlatform::BrmStringW WideAttribute(const Node& node, const QualifiedName& name) {
    return Metadata::Utf8ToWide(Attribute(node, name));
}

// Lookups never change the tree; the node's finders are non-const only
// because they hand out a mutable node.
inline const Node* SelfOrChild(const Node& node, const QualifiedName& name) {
    return const_cast<Node&>(node).FindChildOrSelf(name);
}
inline const Node* SelfOrBelow(const Node& node, const QualifiedName& name) {
    return const_cast<Node&>(node).FindNode(name, true);
}

inline void SetNumber(Node& node, const QualifiedName& name, double value) {
    node.SetAttribute(name, FillText::FormatNumber(value));
}
inline Node* AddNumberChild(Node& parent, const QualifiedName& name, double value) {
    return parent.AddChild(name, FillText::FormatNumber(value));
}

}  // namespace FillNodes
