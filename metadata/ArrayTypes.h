// Multilingual text (rdf:Alt with xml:lang) and the arrays of simple items
// (rdf:Seq, rdf:Bag, rdf:Alt of rdf:li).
#pragma once

#include "metadata/MultiLanguageString.h"
#include "metadata/SimpleTypes.h"

namespace Metadata::DataType {

// rdf:Alt of rdf:li with xml:lang ("x-default" for the default entry);
// the Any holds a MultiLanguageString.
class AltLangStringArray : public TypeBase<AltLangStringArray> {
public:
    using ValueType = MultiLanguageString;

    bool IsCompatible(const Any& value) const override;
    void Write(Container& container, XmlNS::Node* node, const Any& value) const override;
    void WriteNamed(Container& container, XmlNS::Node* parent, const QualifiedName& name,
                    const Any& value) const override;
    void Read(Any& out, Container& container, XmlNS::Node* node) const override;
    void ReadNamed(Any& out, Container& container, XmlNS::Node* node, const QualifiedName& name) const override;
};

class OrderedStringArray : public OrderedArrayBase<OrderedStringArray, BrmStringW, String> {};
class UnorderedStringArray : public UnorderedArrayBase<UnorderedStringArray, BrmStringW, String> {};
class UnorderedIntArray : public UnorderedArrayBase<UnorderedIntArray, int, Int> {};
class OrderedGuidArray : public OrderedArrayBase<OrderedGuidArray, BrmUtils::Guid, Guid> {};

// A list of alternatives, of which the first counts. No schema row uses
// it; it is written as rdf:Alt.
class AlternativeStringArray : public ArrayBase<AlternativeStringArray, BrmStringW, String> {
public:
    QualifiedName GetContainerName() const override { return Names::rdf::Alt; }
};

}  // namespace Metadata::DataType
