// Plain values, structures and the written form of structures in RDF.
#include "metadata/Rdf.h"

#include <vector>

#include "metadata/Container.h"
#include "metadata/Names.h"

namespace Metadata::Rdf {

namespace rdf = Names::rdf;
using XmlNS::Node;

namespace {

// The first rdf:value element depth-first in the subtree of `node`,
// including the node itself.
const Node* FindValueNode(const Node* node) {
    std::vector<const Node*> stack{node};
    while (!stack.empty()) {
        const Node* n = stack.back();
        stack.pop_back();
        if (n->HasName(rdf::value)) return n;
        const auto& ch = n->Children();
        for (auto it = ch.rbegin(); it != ch.rend(); ++it) stack.push_back(it->get());
    }
    return nullptr;
}

bool HasOnlyIdOrLang(const Node& node) {
    for (const auto& [key, value] : node.Attributes()) {
        const bool isId = key.ns && key.ns->uri == rdf::ID.Uri() && key.local == rdf::ID.Local();
        const bool isLang = key.ns && key.ns->uri == Names::xml::lang.Uri() && key.local == Names::xml::lang.Local();
        if (!isId && !isLang) return false;
    }
    return true;
}

}  // namespace

std::string GetText(const Node* node) {
    if (!node) return {};
    if (node->Children().empty()) {
        if (const std::string* v = node->GetAttribute(rdf::value)) return *v;
        if (const std::string* r = node->GetAttribute(rdf::resource)) return *r;
        return node->Text();
    }
    if (node->HasName(rdf::value)) return node->Text();
    for (const auto& child : node->Children()) {
        if (const Node* v = FindValueNode(child.get())) return v->Text();
    }
    return {};
}

bool IsStructure(const Node* node) {
    if (!node || node->GetAttribute(rdf::value) || node->GetAttribute(rdf::resource)) return false;
    if (node->Attributes().size() > 3) return true;
    if (const std::string* parseType = node->GetAttribute(rdf::parseType)) return *parseType == "Resource";
    if (!HasOnlyIdOrLang(*node)) return true;
    if (node->Children().empty()) return false;
    const Node* d = node->HasName(rdf::Description) ? node : node->FindChild(rdf::Description);
    if (!d) return true;
    return !(d->HasName(rdf::value) || d->FindChild(rdf::value));
}

Node* GetStructureNode(Node* node) {
    if (!node || !IsStructure(node)) return nullptr;
    if (node->Children().empty() || node->HasName(rdf::Description)) return node;
    if (Node* d = node->FindChild(rdf::Description)) return d;
    return node;
}

void CompactStructure(Container& container, Node* node) {
    if (!node) return;
    const auto& children = node->Children();
    bool compact = !children.empty() && children.size() < 6;
    for (const auto& c : children) {
        if (!compact) break;
        if (!c->Attributes().empty() || !c->Children().empty()) compact = false;
    }
    if (!compact) {
        node->SetAttribute(rdf::parseType, "Resource");
    } else {
        // Keys must point at declarations that outlive the children: the
        // node's scope has the fields' namespaces (they are declared on the
        // structure node when written), else they are declared here now.
        XmlNS::AttributeMap fields;
        for (const auto& c : children) {
            const XmlNS::Namespace* ns = c->GetNamespace();
            if (ns && !XmlNS::IsBuiltInNamespace(ns)) ns = node->DeclareNamespace(*ns);
            fields.insert_or_assign(XmlNS::AttributeKey{ns, c->Name()}, c->Text());
        }
        node->MutableAttributes() = std::move(fields);
        node->ClearChildren();
    }
    container.SetModified();
}

}  // namespace Metadata::Rdf
