// Metadata::Container: a document's metadata held as one XMP tree
// (x:xmpmeta / rdf:RDF / rdf:Description). Nothing is decoded on load: a
// value is read from the tree each time it is asked for, by the data type
// its schema row names, and comes back as a BrmUtils::Any that is empty when
// the property is missing. Writes change the tree and set the modified flag.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "metadata/PropertyDescriptor.h"
#include "metadata/xml/XmlFile.h"
#include "platform/ObjIdl.h"
#include "utils/Any.h"
#include "utils/strings/BrmString.h"

namespace Metadata {

using BrmPlatform::BrmStringW;
using BrmUtils::Any;

class Container {
public:
    // A container that was never loaded: reads are empty, writes do nothing.
    Container();
    ~Container();
    Container(Container&&) noexcept;
    Container& operator=(Container&&) noexcept;
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    // x:xmpmeta / rdf:RDF / rdf:Description rdf:about="". Modified.
    static Container CreateEmpty();
    // The first element of the document, normalised to the three levels:
    // the rdf:Description children of rdf:RDF merge into one. A document
    // without an element gives a null container. Not modified.
    static Container LoadDocument(const Brm::XmlFile& document);
    // The first element as it stands, for XML parts that are not XMP.
    static Container WrapElement(const Brm::XmlFile& document);
    // Parses UTF-8 text and loads it; text that does not parse gives
    // CreateEmpty(), the answer for a damaged metadata part.
    static Container LoadText(std::string_view utf8Text);
    // Reads the whole stream (up to the parser's size limit) and loads it
    // as LoadText does; a read failure also gives CreateEmpty().
    static Container LoadStream(IStream* stream);

    // A new document: the declaration and the tree (declaration only for a
    // null container).
    std::unique_ptr<Brm::XmlFile> SaveDocument() const;
    // The printed document, UTF-8.
    std::string SaveText() const;
    // Writes SaveText() to the stream; false when the stream fails.
    bool SaveStream(IStream* stream) const;

    // Deep copy of other's tree and flag.
    void CopyFrom(const Container& other);

    bool IsNull() const { return !state_; }
    bool IsModified() const { return state_ && state_->modified; }
    void SetModified(bool modified = true) {
        if (state_) state_->modified = modified;
    }
    XmlNS::Node* Root() const { return state_ ? state_->root.get() : nullptr; }

    // The root if it is rdf:Description, else the first one depth-first.
    XmlNS::Node* FindDescription() const;
    // Removes from the description every child and attribute in the
    // namespace, then prunes declarations nothing uses.
    void RemoveNamespaceContent(const NamespaceDef& ns);

    // Property access on a node (normally FindDescription(); complex types
    // use their own nodes). A null node reads empty and writes nothing.
    void GetProperty(Any& out, XmlNS::Node* node, const PropertyDescriptor& row);
    Any GetProperty(const PropertyDescriptor& row);
    // A non-empty value is written by the row's data type; an empty one
    // deletes the first direct child of the name (an attribute stays).
    void SetProperty(XmlNS::Node* node, const PropertyDescriptor& row, const Any& value);
    void SetProperty(const PropertyDescriptor& row, const Any& value);

    // The property as one wide string: the default text of a multilingual
    // value, the list joined by "," (the first entry for alternative
    // lists), a string as it is; any other type gives "".
    BrmStringW GetPropertyText(const PropertyDescriptor& row);
    // Sets from one wide string by the row's type: a multilingual value
    // with one default entry, a list split at "," (tokens trimmed), a
    // string; other types are left alone.
    void SetPropertyText(const PropertyDescriptor& row, const BrmStringW& text);
    // For multilingual rows; "x-default" (exactly) names the default entry.
    // Other rows fall back to the text forms.
    BrmStringW GetLocalizedText(const PropertyDescriptor& row, const BrmStringW& language, bool exact);
    void SetLocalizedText(const PropertyDescriptor& row, const BrmStringW& language, const BrmStringW& text);

private:
    struct State {
        std::unique_ptr<XmlNS::Node> root;
        bool modified = false;
    };
    explicit Container(std::unique_ptr<XmlNS::Node> root, bool modified);

    std::unique_ptr<State> state_;
};

// Tree edits that data types make. Both declare the name's namespace on
// `parent` when nothing in scope has it, and set the modified flag.
//
// The child `name` of parent, emptied for new content (an attribute of the
// same name is removed), or a new child. Null for a null parent.
XmlNS::Node* EnsureChild(Container& container, XmlNS::Node* parent, const QualifiedName& name);
// Puts text where the value already stands: the attribute `name` if there
// is one, else the first child `name` (emptied), else a new child.
void SetValue(Container& container, XmlNS::Node* node, const QualifiedName& name, std::string text);

}  // namespace Metadata
