// The machinery shared by the complex data types of both serial forms: a
// table of fields (schema row plus the member of the value structure) that
// is written field by field through the rows' own data types and read back
// the same way. The current form then compacts the written structure and
// finds fields through the RDF structure rules; the legacy form uses the
// node as it stands.
#pragma once

#include <span>
#include <vector>

#include "metadata/DataSerializer.h"
#include "metadata/Rdf.h"
#include "utils/Guid.h"

namespace Metadata {

template <typename V>
struct FieldSpec {
    enum class Kind { Int, Long, IntList, StringList, String, Guid, Bool };

    const PropertyDescriptor* row = nullptr;
    Kind kind = Kind::Int;
    int V::*intMember = nullptr;
    std::vector<int> V::*intList = nullptr;
    std::vector<BrmStringW> V::*stringList = nullptr;
    BrmStringW V::*string = nullptr;
    BrmUtils::Guid V::*guid = nullptr;
    bool V::*flag = nullptr;
    // Legacy nesting: the field stands in this child of the structure node.
    const QualifiedName* group = nullptr;
};

template <typename V>
FieldSpec<V> IntField(const PropertyDescriptor& row, int V::*m, const QualifiedName* group = nullptr) {
    FieldSpec<V> f;
    f.row = &row;
    f.kind = FieldSpec<V>::Kind::Int;
    f.intMember = m;
    f.group = group;
    return f;
}
// An int member written through an Any of long (the rectangle's way).
template <typename V>
FieldSpec<V> LongField(const PropertyDescriptor& row, int V::*m) {
    FieldSpec<V> f = IntField(row, m);
    f.kind = FieldSpec<V>::Kind::Long;
    return f;
}
template <typename V>
FieldSpec<V> IntListField(const PropertyDescriptor& row, std::vector<int> V::*m) {
    FieldSpec<V> f;
    f.row = &row;
    f.kind = FieldSpec<V>::Kind::IntList;
    f.intList = m;
    return f;
}
template <typename V>
FieldSpec<V> StringListField(const PropertyDescriptor& row, std::vector<BrmStringW> V::*m) {
    FieldSpec<V> f;
    f.row = &row;
    f.kind = FieldSpec<V>::Kind::StringList;
    f.stringList = m;
    return f;
}
template <typename V>
FieldSpec<V> StringField(const PropertyDescriptor& row, BrmStringW V::*m) {
    FieldSpec<V> f;
    f.row = &row;
    f.kind = FieldSpec<V>::Kind::String;
    f.string = m;
    return f;
}
template <typename V>
FieldSpec<V> GuidField(const PropertyDescriptor& row, BrmUtils::Guid V::*m) {
    FieldSpec<V> f;
    f.row = &row;
    f.kind = FieldSpec<V>::Kind::Guid;
    f.guid = m;
    return f;
}
template <typename V>
FieldSpec<V> BoolField(const PropertyDescriptor& row, bool V::*m) {
    FieldSpec<V> f;
    f.row = &row;
    f.kind = FieldSpec<V>::Kind::Bool;
    f.flag = m;
    return f;
}

// Writes every field of `value` under `node`, in table order; grouped
// fields go into one child per run of the same group.
template <typename V>
void WriteFields(Container& container, XmlNS::Node* node, const V& value, std::span<const FieldSpec<V>> fields) {
    using Kind = typename FieldSpec<V>::Kind;
    const QualifiedName* currentGroup = nullptr;
    XmlNS::Node* target = node;
    for (const FieldSpec<V>& f : fields) {
        if (f.group != currentGroup) {
            currentGroup = f.group;
            target = f.group ? EnsureChild(container, node, *f.group) : node;
        }
        Any any;
        switch (f.kind) {
            case Kind::Int: any = value.*f.intMember; break;
            case Kind::Long: any = static_cast<long>(value.*f.intMember); break;
            case Kind::IntList: any = value.*f.intList; break;
            case Kind::StringList: any = value.*f.stringList; break;
            case Kind::String: any = value.*f.string; break;
            case Kind::Guid: any = value.*f.guid; break;
            case Kind::Bool: any = value.*f.flag; break;
        }
        container.SetProperty(target, *f.row, any);
    }
}

// Reads every field from `node`; a field that is missing or of another
// type keeps its default.
template <typename V>
void ReadFields(Container& container, XmlNS::Node* node, V& value, std::span<const FieldSpec<V>> fields) {
    using Kind = typename FieldSpec<V>::Kind;
    for (const FieldSpec<V>& f : fields) {
        XmlNS::Node* source = f.group ? node->FindChild(*f.group) : node;
        Any any;
        container.GetProperty(any, source, *f.row);
        switch (f.kind) {
            case Kind::Int:
            case Kind::Long: value.*f.intMember = any.GetValue<int>(0); break;
            case Kind::IntList: value.*f.intList = any.GetValue<std::vector<int>>(); break;
            case Kind::StringList: value.*f.stringList = any.GetValue<std::vector<BrmStringW>>(); break;
            case Kind::String: value.*f.string = any.GetValue<BrmStringW>(); break;
            case Kind::Guid: value.*f.guid = any.GetValue<BrmUtils::Guid>(); break;
            case Kind::Bool: value.*f.flag = any.GetValue<bool>(false); break;
        }
    }
}

// A complex data type T of value V whose fields T::Fields() lists. With
// IsRdf true it is the current form: compacted on write, found through the
// structure rules on read. Otherwise the node is used as it stands.
template <typename T, typename V, bool IsRdf>
class StructureType : public TypeBase<T> {
public:
    using ValueType = V;

    bool IsCompatible(const Any& value) const override { return value.Is<V>(); }

    void Write(Container& container, XmlNS::Node* node, const Any& value) const override {
        const V* v = value.GetPtr<V>();
        if (!v || !node) return;
        const V copy = *v;
        WriteFields<V>(container, node, copy, T::Fields());
        T::WriteExtra(container, node, copy);
        if constexpr (IsRdf) Rdf::CompactStructure(container, node);
    }

    void WriteNamed(Container& container, XmlNS::Node* parent, const QualifiedName& name,
                    const Any& value) const override {
        if (!IsCompatible(value)) return;
        if (XmlNS::Node* node = EnsureChild(container, parent, name)) Write(container, node, value);
    }

    void Read(Any& out, Container& container, XmlNS::Node* node) const override {
        out.Clear();
        XmlNS::Node* source = IsRdf ? Rdf::GetStructureNode(node) : node;
        if (!source) return;
        V value;
        ReadFields<V>(container, source, value, T::Fields());
        T::ReadExtra(container, source, value);
        out = std::move(value);
    }

    void ReadNamed(Any& out, Container& container, XmlNS::Node* node, const QualifiedName& name) const override {
        Read(out, container, node ? node->FindChildOrSelf(name) : nullptr);
    }

    // Hooks for fields that do not stand under the node (legacy colour).
    static void WriteExtra(Container&, XmlNS::Node*, const V&) {}
    static void ReadExtra(Container&, XmlNS::Node*, V&) {}
};

}  // namespace Metadata
