// The data type interface: a stateless class that knows how one kind of
// value looks in the XMP tree and which BrmUtils::Any stands for it. The
// same class reads and writes. Simple types hold one text; arrays hold an
// RDF container of items, each handled by the item's data type.
#pragma once

#include <string>
#include <vector>

#include "metadata/Container.h"
#include "metadata/Names.h"
#include "metadata/Rdf.h"

namespace Metadata {

class DataSerializer {
public:
    virtual ~DataSerializer() = default;
    // This type can write the value.
    virtual bool IsCompatible(const Any& value) const = 0;
    // Puts the value into the node itself.
    virtual void Write(Container& container, XmlNS::Node* node, const Any& value) const = 0;
    // Puts the value into the child or attribute `name` of parent.
    virtual void WriteNamed(Container& container, XmlNS::Node* parent, const QualifiedName& name,
                            const Any& value) const = 0;
    // The value the node itself holds; empty when there is none.
    virtual void Read(Any& out, Container& container, XmlNS::Node* node) const = 0;
    // The value `name` under the node (attribute, the node itself, or a
    // direct child); empty when there is none.
    virtual void ReadNamed(Any& out, Container& container, XmlNS::Node* node, const QualifiedName& name) const = 0;
};

// Base of every concrete data type T.
template <typename T>
class TypeBase : public DataSerializer {};

// A type of one text value held as V in the Any.
template <typename T, typename V>
class SimpleType : public TypeBase<T> {
public:
    using ValueType = V;

    // Text is the UTF-8 of the tree; FromText consumes its argument.
    virtual void FromText(Any& out, std::string text) const = 0;
    virtual void ToText(std::string& out, const Any& value) const = 0;

    void Write(Container& container, XmlNS::Node* node, const Any& value) const override;
    void WriteNamed(Container& container, XmlNS::Node* parent, const QualifiedName& name,
                    const Any& value) const override;
    void Read(Any& out, Container& container, XmlNS::Node* node) const override;
    void ReadNamed(Any& out, Container& container, XmlNS::Node* node, const QualifiedName& name) const override;
};

// The two list operations every array shares.
class ArrayImpl {
public:
    virtual ~ArrayImpl() = default;
    // One rdf:li per item inside the container element `containerName`
    // of parent (made or emptied).
    virtual void WriteItems(Container& container, XmlNS::Node* parent, const std::vector<Any>& items,
                            const QualifiedName& containerName, const DataSerializer& itemType) const;
    // The items of the container `containerName`, which is the node or its
    // first direct child; false when it is neither. Empty items are skipped.
    virtual bool ReadItems(Container& container, XmlNS::Node* node, const QualifiedName& containerName,
                           const DataSerializer& itemType, std::vector<Any>& items) const;
};

// An array of items V, each handled by the data type I; the Any holds a
// std::vector<V>.
template <typename T, typename V, typename I>
class ArrayBase : public TypeBase<T>, public ArrayImpl {
public:
    using ValueType = std::vector<V>;

    virtual QualifiedName GetContainerName() const = 0;

    bool IsCompatible(const Any& value) const override { return value.Is<ValueType>(); }
    void Write(Container& container, XmlNS::Node* node, const Any& value) const override {
        const ValueType* v = value.GetPtr<ValueType>();
        if (!node || !v) return;
        std::vector<Any> items;
        items.reserve(v->size());
        for (const V& item : *v) items.emplace_back(item);
        I itemType;
        WriteItems(container, node, items, GetContainerName(), itemType);
    }
    void WriteNamed(Container& container, XmlNS::Node* parent, const QualifiedName& name,
                    const Any& value) const override {
        if (!IsCompatible(value)) return;
        if (XmlNS::Node* node = EnsureChild(container, parent, name)) Write(container, node, value);
    }
    void Read(Any& out, Container& container, XmlNS::Node* node) const override {
        out.Clear();
        std::vector<Any> items;
        I itemType;
        if (!ReadItems(container, node, GetContainerName(), itemType, items)) return;
        ValueType result;
        result.reserve(items.size());
        // An item of another type than expected is taken as the default.
        for (const Any& item : items) result.push_back(item.GetValue<V>());
        out = std::move(result);
    }
    void ReadNamed(Any& out, Container& container, XmlNS::Node* node, const QualifiedName& name) const override {
        Read(out, container, node ? node->FindChildOrSelf(name) : nullptr);
    }
};

template <typename T, typename V, typename I>
class OrderedArrayBase : public ArrayBase<T, V, I> {
public:
    QualifiedName GetContainerName() const override { return Names::rdf::Seq; }
};

template <typename T, typename V, typename I>
class UnorderedArrayBase : public OrderedArrayBase<T, V, I> {
public:
    QualifiedName GetContainerName() const override { return Names::rdf::Bag; }
};

// ---------------------------------------------------------------------------
// The shared steps of simple types.

std::string ReadNamedText(XmlNS::Node* node, const QualifiedName& name, bool& found);

template <typename T, typename V>
void SimpleType<T, V>::Write(Container& container, XmlNS::Node* node, const Any& value) const {
    if (!node) return;
    std::string text;
    ToText(text, value);
    node->SetText(std::move(text));
    container.SetModified();
}

template <typename T, typename V>
void SimpleType<T, V>::WriteNamed(Container& container, XmlNS::Node* parent, const QualifiedName& name,
                                  const Any& value) const {
    if (!parent || !this->IsCompatible(value)) return;
    std::string text;
    ToText(text, value);
    SetValue(container, parent, name, std::move(text));
}

template <typename T, typename V>
void SimpleType<T, V>::Read(Any& out, Container&, XmlNS::Node* node) const {
    out.Clear();
    // The plain value in any spelling, so that list items given as
    // rdf:value or rdf:resource read like the named properties do.
    if (node) FromText(out, Rdf::GetText(node));
}

template <typename T, typename V>
void SimpleType<T, V>::ReadNamed(Any& out, Container&, XmlNS::Node* node, const QualifiedName& name) const {
    out.Clear();
    bool found = false;
    std::string text = ReadNamedText(node, name, found);
    if (found) FromText(out, std::move(text));
}

}  // namespace Metadata
