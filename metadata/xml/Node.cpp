// The namespace-aware element tree: lookup, editing, copying and pruning.
#include "metadata/xml/Node.h"

#include <algorithm>
#include <cstdio>

namespace XmlNS {

const Namespace& XmlNamespace() {
    static const Namespace ns(kXmlNamespaceDef);
    return ns;
}

const Namespace& XmlnsNamespace() {
    static const Namespace ns(kXmlnsNamespaceDef);
    return ns;
}

bool IsBuiltInNamespace(const Namespace* ns) {
    return ns == &XmlNamespace() || ns == &XmlnsNamespace();
}

bool AttributeKeyLess::operator()(const AttributeKey& a, const AttributeKey& b) const {
    if (a.ns && b.ns) {
        if (int c = a.ns->uri.compare(b.ns->uri); c != 0) return c < 0;
    } else if (a.ns != b.ns) {
        return a.ns == nullptr;
    }
    return a.local < b.local;
}

Node::~Node() {
    // Children first: their attribute keys point at our declarations.
    children_.clear();
    attributes_.clear();
}

const Namespace* Node::FindNamespaceByUri(std::string_view uri) const {
    if (uri == XmlNamespace().uri) return &XmlNamespace();
    if (uri == XmlnsNamespace().uri) return &XmlnsNamespace();
    for (const Node* n = this; n; n = n->parent_) {
        for (const auto& d : n->declarations_) {
            if (d->uri == uri) return d.get();
        }
    }
    return nullptr;
}

const Namespace* Node::FindNamespaceByPrefix(std::string_view prefix, bool recursive) const {
    if (prefix == XmlNamespace().prefix) return &XmlNamespace();
    if (prefix == XmlnsNamespace().prefix) return &XmlnsNamespace();
    for (const Node* n = this; n; n = recursive ? n->parent_ : nullptr) {
        for (const auto& d : n->declarations_) {
            if (d->prefix == prefix) return d.get();
        }
    }
    return nullptr;
}

std::pair<const Namespace*, std::string> Node::ParseName(std::string_view text) const {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos) {
        return {FindNamespaceByPrefix("", true), std::string(text)};
    }
    if (text.find(':', colon + 1) != std::string_view::npos) {
        return {nullptr, std::string(text)};
    }
    return {FindNamespaceByPrefix(text.substr(0, colon), true), std::string(text.substr(colon + 1))};
}

bool Node::HasName(const QualifiedName& name) const {
    return namespace_ && name.ns && namespace_->uri == name.Uri() && name_ == name.Local();
}

Node* Node::FindChild(const QualifiedName& name) const {
    for (const auto& c : children_) {
        if (c->HasName(name)) return c.get();
    }
    return nullptr;
}

Node* Node::FindChildOrSelf(const QualifiedName& name) {
    return HasName(name) ? this : FindChild(name);
}

Node* Node::FindNode(const QualifiedName& name, bool recursive) {
    if (HasName(name)) return this;
    if (!recursive) return FindChild(name);
    // Depth-first without recursion: documents may be deep.
    std::vector<std::pair<Node*, std::size_t>> stack{{this, 0}};
    while (!stack.empty()) {
        auto& [node, next] = stack.back();
        if (next == node->children_.size()) {
            stack.pop_back();
            continue;
        }
        Node* child = node->children_[next++].get();
        if (child->HasName(name)) return child;
        stack.emplace_back(child, 0);
    }
    return nullptr;
}

const std::string* Node::GetAttribute(const QualifiedName& name) const {
    const Namespace* ns = name.ns ? FindNamespaceByUri(name.Uri()) : nullptr;
    if (name.ns && !ns) return nullptr;
    auto it = attributes_.find(AttributeKey{ns, std::string(name.Local())});
    return it == attributes_.end() ? nullptr : &it->second;
}

void Node::SetAttribute(const QualifiedName& name, std::string value) {
    const Namespace* ns = name.ns ? DeclareNamespace(*name.ns) : nullptr;
    attributes_.insert_or_assign(AttributeKey{ns, std::string(name.Local())}, std::move(value));
}

bool Node::RemoveAttribute(const QualifiedName& name) {
    const Namespace* ns = name.ns ? FindNamespaceByUri(name.Uri()) : nullptr;
    if (name.ns && !ns) return false;
    return attributes_.erase(AttributeKey{ns, std::string(name.Local())}) != 0;
}

const Namespace* Node::DeclareNamespace(const NamespaceDef& def) {
    return DeclareNamespace(Namespace(def));
}

const Namespace* Node::DeclareNamespace(const Namespace& ns) {
    if (const Namespace* found = FindNamespaceByUri(ns.uri)) return found;
    auto decl = std::make_unique<Namespace>(ns);
    MakePrefixUnique(*decl);
    declarations_.push_back(std::move(decl));
    return declarations_.back().get();
}

Namespace* Node::AddDeclaration(std::string prefix, std::string uri) {
    declarations_.push_back(std::make_unique<Namespace>(std::move(prefix), std::move(uri)));
    return declarations_.back().get();
}

void Node::MakePrefixUnique(Namespace& ns) const {
    // The whole scope is checked, not only this node: a prefix that shadowed
    // an ancestor's would silently move that ancestor's names to our URI in
    // the printed document.
    auto clashes = [&](const std::string& prefix) {
        const Namespace* other = FindNamespaceByPrefix(prefix, true);
        return other && other != &ns && other->uri != ns.uri;
    };
    if (!clashes(ns.prefix)) return;
    const std::string base = ns.prefix.empty() ? "ns" : ns.prefix;
    for (unsigned counter = 1;; ++counter) {
        std::string candidate = base + std::to_string(counter);
        if (!clashes(candidate)) {
            ns.prefix = std::move(candidate);
            return;
        }
    }
}

Node* Node::AddChild(const QualifiedName& name, std::string text) {
    auto child = std::make_unique<Node>(this);
    child->namespace_ = name.ns ? child->DeclareNamespace(*name.ns) : nullptr;
    child->name_ = std::string(name.Local());
    child->text_ = std::move(text);
    children_.push_back(std::move(child));
    return children_.back().get();
}

Node* Node::AppendChild(std::unique_ptr<Node> child) {
    if (!child) return nullptr;
    child->parent_ = this;
    children_.push_back(std::move(child));
    return children_.back().get();
}

bool Node::RemoveChild(const Node* child) {
    auto it = std::find_if(children_.begin(), children_.end(), [&](const auto& c) { return c.get() == child; });
    if (it == children_.end()) return false;
    children_.erase(it);
    return true;
}

void Node::ClearChildren() { children_.clear(); }

void Node::Clear() {
    children_.clear();
    attributes_.clear();
    std::erase_if(declarations_, [&](const auto& d) { return d.get() != namespace_; });
}

const Namespace* Node::ResolveForCopy(const Namespace* ns, Node* owner) {
    if (!ns || IsBuiltInNamespace(ns)) return ns;
    if (const Namespace* found = FindNamespaceByUri(ns->uri)) return found;
    return (owner ? owner : this)->DeclareNamespace(*ns);
}

void Node::CopyInto(Node& c, Node* owner) const {
    for (const auto& d : declarations_) c.DeclareNamespace(*d);
    c.name_ = name_;
    c.text_ = text_;
    c.namespace_ = c.ResolveForCopy(namespace_, owner);
    for (const auto& [key, value] : attributes_) {
        c.attributes_.emplace(AttributeKey{c.ResolveForCopy(key.ns, owner), key.local}, value);
    }
    // Depth is bounded by the parser's limit, so recursion is safe here.
    for (const auto& child : children_) child->Clone(c, owner);
}

Node* Node::Clone(Node& parent, Node* namespaceOwner) const {
    parent.children_.push_back(std::make_unique<Node>(&parent));
    Node* c = parent.children_.back().get();
    CopyInto(*c, namespaceOwner);
    return c;
}

std::unique_ptr<Node> Node::CloneTree() const {
    auto copy = std::make_unique<Node>(nullptr);
    CopyInto(*copy, nullptr);
    return copy;
}

bool Node::UsesNamespace(const Namespace* ns) const {
    std::vector<const Namespace*> used;
    CollectUsed(used);
    return std::find(used.begin(), used.end(), ns) != used.end();
}

void Node::CollectUsed(std::vector<const Namespace*>& used) const {
    std::vector<const Node*> stack{this};
    while (!stack.empty()) {
        const Node* n = stack.back();
        stack.pop_back();
        if (n->namespace_) used.push_back(n->namespace_);
        for (const auto& [key, value] : n->attributes_) {
            if (key.ns) used.push_back(key.ns);
        }
        for (const auto& c : n->children_) stack.push_back(c.get());
    }
    std::sort(used.begin(), used.end());
    used.erase(std::unique(used.begin(), used.end()), used.end());
}

void Node::PruneUnused(const std::vector<const Namespace*>& used) {
    std::vector<Node*> stack{this};
    while (!stack.empty()) {
        Node* n = stack.back();
        stack.pop_back();
        std::erase_if(n->declarations_,
                      [&](const auto& d) { return !std::binary_search(used.begin(), used.end(), d.get()); });
        for (const auto& c : n->children_) stack.push_back(c.get());
    }
}

void Node::PruneNamespaces() {
    std::vector<const Namespace*> used;
    CollectUsed(used);
    PruneUnused(used);
}

std::string Node::QualifiedText(const Namespace* ns, const std::string& local) {
    if (!ns || ns->prefix.empty() || local.empty()) return local;
    return ns->prefix + ":" + local;
}

std::string Node::QualifiedText() const { return QualifiedText(namespace_, name_); }

}  // namespace XmlNS
