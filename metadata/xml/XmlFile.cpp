// Parsing with limits, printing, and the element <-> node conversions.
#include "metadata/xml/XmlFile.h"

#include <new>
#include <utility>
#include <vector>

namespace Brm {

namespace {

constexpr unsigned kParseOptions =
    (pugi::parse_default | pugi::parse_doctype | pugi::parse_ws_pcdata_single) & ~pugi::parse_comments &
    ~pugi::parse_pi;

bool IsDeclarationName(std::string_view name) {
    return name == "xmlns" || name.starts_with("xmlns:");
}

// Walks the parsed document without recursion and tells whether it stays
// inside the limits: no doctype, bounded depth and declarations.
bool WithinLimits(const pugi::xml_document& doc) {
    int declarations = 0;
    std::vector<std::pair<pugi::xml_node, int>> stack;
    for (pugi::xml_node n = doc.first_child(); n; n = n.next_sibling()) {
        if (n.type() == pugi::node_doctype) return false;
        if (n.type() == pugi::node_element) stack.emplace_back(n, 1);
    }
    while (!stack.empty()) {
        auto [node, depth] = stack.back();
        stack.pop_back();
        if (depth > XmlLimits::kMaxDepth) return false;
        for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
            if (IsDeclarationName(a.name()) && ++declarations > XmlLimits::kMaxDeclarations) return false;
        }
        for (pugi::xml_node c = node.first_child(); c; c = c.next_sibling()) {
            if (c.type() == pugi::node_element) stack.emplace_back(c, depth + 1);
        }
    }
    return true;
}

struct StringWriter : pugi::xml_writer {
    std::string out;
    void write(const void* data, size_t size) override { out.append(static_cast<const char*>(data), size); }
};

}  // namespace

XmlFile::XmlFile() = default;

XmlFile::XmlFile(std::string_view utf8Text) { Parse(utf8Text); }

XmlFile::~XmlFile() = default;

void XmlFile::Reset() { document_.reset(); }

bool XmlFile::Parse(std::string_view utf8Text) {
    Reset();
    error_ = true;
    if (utf8Text.size() > XmlLimits::kMaxDocumentBytes) return false;
    try {
        pugi::xml_parse_result result =
            document_.load_buffer(utf8Text.data(), utf8Text.size(), kParseOptions, pugi::encoding_utf8);
        if (!result || !WithinLimits(document_)) {
            Reset();
            return false;
        }
    } catch (const std::bad_alloc&) {
        Reset();
        return false;
    }
    error_ = false;
    return true;
}

std::unique_ptr<XmlFile> XmlFile::FromTree(const XmlNS::Node* root) {
    auto file = std::make_unique<XmlFile>();
    pugi::xml_node decl = file->document_.append_child(pugi::node_declaration);
    decl.append_attribute("version") = "1.0";
    decl.append_attribute("encoding") = "UTF-8";
    if (root) XmlNS::ToElement(*root, file->document_);
    return file;
}

std::string XmlFile::ToText() const {
    StringWriter writer;
    document_.save(writer, "\t", pugi::format_default, pugi::encoding_utf8);
    return std::move(writer.out);
}

}  // namespace Brm

namespace XmlNS {

namespace {

std::unique_ptr<Node> FromElementAt(pugi::xml_node element, Node* parent, int depth) {
    if (element.type() != pugi::node_element || depth > Brm::XmlLimits::kMaxDepth) return nullptr;
    auto node = std::make_unique<Node>(parent);

    // Declarations first, so that every name of the element resolves in the
    // scope it declares, whatever the order of its attributes.
    std::vector<pugi::xml_attribute> kept;
    for (pugi::xml_attribute a = element.first_attribute(); a; a = a.next_attribute()) {
        std::string_view name = a.name();
        if (name == "xmlns") {
            node->AddDeclaration("", a.value());
        } else if (name.starts_with("xmlns:")) {
            node->AddDeclaration(std::string(name.substr(6)), a.value());
        } else {
            kept.push_back(a);
        }
    }
    for (pugi::xml_attribute a : kept) {
        auto [ns, local] = node->ParseName(a.name());
        node->MutableAttributes().emplace(AttributeKey{ns, std::move(local)}, a.value());
    }
    auto [ns, local] = node->ParseName(element.name());
    node->SetNamespace(ns);
    node->SetName(std::move(local));

    for (pugi::xml_node c = element.first_child(); c; c = c.next_sibling()) {
        if (c.type() == pugi::node_element) {
            node->AppendChild(FromElementAt(c, node.get(), depth + 1));
        }
    }
    // Only text that opens the element counts; text behind a child is lost.
    pugi::xml_node first = element.first_child();
    if (first && (first.type() == pugi::node_pcdata || first.type() == pugi::node_cdata)) {
        node->SetText(first.value());
    }
    return node;
}

}  // namespace

std::unique_ptr<Node> FromElement(pugi::xml_node element, Node* parent) {
    int depth = 1;
    for (Node* p = parent; p; p = p->Parent()) ++depth;
    return FromElementAt(element, parent, depth);
}

pugi::xml_node ToElement(const Node& node, pugi::xml_node parent) {
    pugi::xml_node element = parent.append_child(node.QualifiedText().c_str());
    for (const auto& [key, value] : node.Attributes()) {
        element.append_attribute(Node::QualifiedText(key.ns, key.local).c_str()) = value.c_str();
    }
    for (const auto& d : node.Declarations()) {
        std::string name = d->prefix.empty() ? std::string("xmlns") : "xmlns:" + d->prefix;
        element.append_attribute(name.c_str()) = d->uri.c_str();
    }
    if (node.Children().empty()) {
        if (!node.Text().empty()) element.append_child(pugi::node_pcdata).set_value(node.Text().c_str());
    } else {
        for (const auto& child : node.Children()) ToElement(*child, element);
    }
    return element;
}

}  // namespace XmlNS
