// XmlNS::Node: a namespace-aware element tree. Every element knows its
// namespace (a pointer to a declaration in scope, or null), its local name,
// the declarations made on it, its text, its child elements and its
// attributes. The metadata model and the container's XML parts work on this
// tree; the parser and printer underneath only move text in and out.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "metadata/xml/Namespace.h"
#include "metadata/xml/QualifiedName.h"

namespace XmlNS {

// Key of an attribute. Keys with a namespace compare by URI (so two
// declarations of one URI name the same attribute), a key without one orders
// by pointer (before all others), then by local name.
struct AttributeKey {
    const Namespace* ns = nullptr;
    std::string local;
};

struct AttributeKeyLess {
    bool operator()(const AttributeKey& a, const AttributeKey& b) const;
};

using AttributeMap = std::map<AttributeKey, std::string, AttributeKeyLess>;

class Node {
public:
    using NodeList = std::vector<std::unique_ptr<Node>>;
    using DeclarationList = std::vector<std::unique_ptr<Namespace>>;

    // A node that is not linked into any parent; `parent` only sets the scope
    // in which names are resolved. Use AddChild or AppendChild to link.
    explicit Node(Node* parent = nullptr) : parent_(parent) {}
    ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    // Fields.
    const Namespace* GetNamespace() const { return namespace_; }
    void SetNamespace(const Namespace* ns) { namespace_ = ns; }
    const std::string& Name() const { return name_; }
    void SetName(std::string name) { name_ = std::move(name); }
    Node* Parent() const { return parent_; }
    const std::string& Text() const { return text_; }
    void SetText(std::string text) { text_ = std::move(text); }
    const NodeList& Children() const { return children_; }
    const AttributeMap& Attributes() const { return attributes_; }
    AttributeMap& MutableAttributes() { return attributes_; }
    const DeclarationList& Declarations() const { return declarations_; }

    // Namespace lookup: the two built-ins first, then this node's
    // declarations, then the parent's, up to the root.
    const Namespace* FindNamespaceByUri(std::string_view uri) const;
    const Namespace* FindNamespaceByPrefix(std::string_view prefix, bool recursive = true) const;

    // "local" is under the default namespace (empty prefix), "p:local" under
    // the namespace of p in scope; an unknown prefix gives a null namespace
    // and the part behind the colon; more than one colon gives a null
    // namespace and the whole text.
    std::pair<const Namespace*, std::string> ParseName(std::string_view text) const;

    // Same URI and local name. A node with a null namespace has no name.
    bool HasName(const QualifiedName& name) const;
    // This node if it has the name, else its first direct child with it.
    Node* FindChildOrSelf(const QualifiedName& name);
    // This node if it has the name; else the first direct child with it, or
    // with `recursive` the first such node depth-first.
    Node* FindNode(const QualifiedName& name, bool recursive);
    // The first direct child with the name, never this node.
    Node* FindChild(const QualifiedName& name) const;

    // Attributes. A name whose URI is not in scope has no attribute; a name
    // without namespace finds an attribute that has none (as "id" in an
    // element without a default namespace).
    const std::string* GetAttribute(const QualifiedName& name) const;
    void SetAttribute(const QualifiedName& name, std::string value);
    bool RemoveAttribute(const QualifiedName& name);

    // The namespace in scope with this URI, or a new declaration on this node
    // (with a prefix made unique first).
    const Namespace* DeclareNamespace(const NamespaceDef& def);
    const Namespace* DeclareNamespace(const Namespace& ns);
    // Appends a declaration as it stands (the parser's way in).
    Namespace* AddDeclaration(std::string prefix, std::string uri);
    // Renames `ns` while its prefix stands for another URI in scope here:
    // the original prefix (or "ns" if it was empty) followed by 1, 2, ...
    void MakePrefixUnique(Namespace& ns) const;

    // Children.
    Node* AddChild(const QualifiedName& name, std::string text = {});
    Node* AppendChild(std::unique_ptr<Node> child);
    bool RemoveChild(const Node* child);
    void ClearChildren();
    // Deletes children, attributes and every declaration except the one the
    // node's own name uses. The text stays.
    void Clear();

    // Deep copy appended to `parent`. A namespace used by the copy and not
    // in its scope is declared on `namespaceOwner`, or on the copy when there
    // is none.
    Node* Clone(Node& parent, Node* namespaceOwner = nullptr) const;
    // Deep copy as a new root; the declarations it needs are made on it.
    std::unique_ptr<Node> CloneTree() const;

    // Deletes, here and below, each declaration that nothing uses.
    void PruneNamespaces();
    bool UsesNamespace(const Namespace* ns) const;

    // "prefix:local", or "local" when either part is empty.
    std::string QualifiedText() const;
    static std::string QualifiedText(const Namespace* ns, const std::string& local);

private:
    const Namespace* ResolveForCopy(const Namespace* ns, Node* owner);
    void CopyInto(Node& copy, Node* owner) const;
    void CollectUsed(std::vector<const Namespace*>& used) const;
    void PruneUnused(const std::vector<const Namespace*>& used);

    const Namespace* namespace_ = nullptr;
    std::string name_;
    DeclarationList declarations_;
    Node* parent_ = nullptr;
    std::string text_;
    NodeList children_;
    AttributeMap attributes_;
};

}  // namespace XmlNS
