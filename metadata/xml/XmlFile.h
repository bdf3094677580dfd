// Brm::XmlFile owns one parsed or printable XML document, and the two
// conversions between the parser's elements and XmlNS::Node trees.
// Parsing is for UTF-8 and deliberately narrow: only the predefined entities
// and character references are expanded, a document type declaration makes
// the document an error (so no DTD, no entity of its own, nothing external is
// ever read), and size, nesting depth and namespace declarations are capped,
// so a hostile part cannot exhaust memory, stack or time.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include <pugixml.hpp>

#include "metadata/xml/Node.h"
#include "utils/strings/BrmString.h"

namespace Brm {

struct XmlLimits {
    static constexpr std::size_t kMaxDocumentBytes = 16u << 20;
    static constexpr int kMaxDepth = 256;
    static constexpr int kMaxDeclarations = 256;
};

class XmlFile {
public:
    // An empty document without error.
    XmlFile();
    // Parses UTF-8 text. Line ends CR LF and CR are read as LF. Test Error()
    // afterwards: a document in error counts as no document.
    explicit XmlFile(std::string_view utf8Text);
    virtual ~XmlFile();
    XmlFile(const XmlFile&) = delete;
    XmlFile& operator=(const XmlFile&) = delete;

    bool Parse(std::string_view utf8Text);
    bool Error() const { return error_; }

    // The first element of the document, or a null node.
    pugi::xml_node RootElement() const { return document_.document_element(); }
    pugi::xml_document& Document() { return document_; }
    const pugi::xml_document& Document() const { return document_; }

    // A document for writing: the declaration (version "1.0", encoding
    // "UTF-8", no standalone) and the tree as root element, if there is one.
    static std::unique_ptr<XmlFile> FromTree(const XmlNS::Node* root);

    // The printed document, UTF-8.
    std::string ToText() const;

    // The part name the document came from or goes to; empty by default.
    const BrmPlatform::BrmStringW& Name() const { return name_; }
    void SetName(const BrmPlatform::BrmStringW& name) { name_ = name; }

private:
    void Reset();

    pugi::xml_document document_;
    BrmPlatform::BrmStringW name_;
    bool error_ = false;
};

}  // namespace Brm

namespace XmlNS {

// Builds a node for `element` whose names resolve in the scope of `parent`;
// the node is not linked into `parent`. Null for a node that is no element.
std::unique_ptr<Node> FromElement(pugi::xml_node element, Node* parent);

// Appends the printed form of `node` to `parent` and answers it.
pugi::xml_node ToElement(const Node& node, pugi::xml_node parent);

}  // namespace XmlNS
