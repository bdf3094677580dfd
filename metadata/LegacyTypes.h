// The data types of the legacy metadata form: the same value structures as
// the current form, written without RDF structure into the one flat
// legacykvd namespace, plus the two forms that only the legacy documents
// have: a title spread over one property per language, and extended
// properties as legacykvd:Property elements.
#pragma once

#include <span>

#include "metadata/ComplexTypes.h"
#include "metadata/MultiLanguageString.h"
#include "metadata/StructureType.h"
#include "platform/WinTypes.h"

namespace Metadata::DataType::Legacy {

#define FI_LEGACY_STRUCTURE_TYPE(Name, Value)                            \
    class Name : public StructureType<Name, Value, false> {              \
    public:                                                              \
        static std::span<const FieldSpec<Value>> Fields();               \
    }

FI_LEGACY_STRUCTURE_TYPE(EffectInfo, ComplexTypes::EffectInfo);
// OLE and Symbol counts stand in the child groups OLE and Symbol.
FI_LEGACY_STRUCTURE_TYPE(ObjectInfo, ComplexTypes::ObjectInfo);
FI_LEGACY_STRUCTURE_TYPE(CurveInfo, ComplexTypes::CurveInfo);
FI_LEGACY_STRUCTURE_TYPE(BitmapInfo, ComplexTypes::BitmapInfo);
FI_LEGACY_STRUCTURE_TYPE(TextInfo, ComplexTypes::TextInfo);
FI_LEGACY_STRUCTURE_TYPE(FillInfo, ComplexTypes::FillInfo);
// ScalePen before Hairline, the structure's order.
FI_LEGACY_STRUCTURE_TYPE(OutlineInfo, ComplexTypes::OutlineInfo);

#undef FI_LEGACY_STRUCTURE_TYPE

// Profiles / Rgb, Cmyk, Grayscale / Name under the property; colorMode and
// renderingIntent on the document's rdf:Description, wherever the property
// stands.
class ColorInfo : public StructureType<ColorInfo, ComplexTypes::ColorInfo, false> {
public:
    static std::span<const FieldSpec<ComplexTypes::ColorInfo>> Fields() { return {}; }
    static void WriteExtra(Container& container, XmlNS::Node* node, const ComplexTypes::ColorInfo& value);
    static void ReadExtra(Container& container, XmlNS::Node* node, ComplexTypes::ColorInfo& value);
};

// RECT as the attributes left, right, top, bottom of the element.
class CgiRect : public TypeBase<CgiRect> {
public:
    using ValueType = RECT;
    bool IsCompatible(const Any& value) const override;
    void Write(Container& container, XmlNS::Node* node, const Any& value) const override;
    void WriteNamed(Container& container, XmlNS::Node* parent, const QualifiedName& name,
                    const Any& value) const override;
    void Read(Any& out, Container& container, XmlNS::Node* node) const override;
    void ReadNamed(Any& out, Container& container, XmlNS::Node* node, const QualifiedName& name) const override;
};

// A MultiLanguageString as the properties Title (default) and
// Title_<language>, siblings under the same parent. Only the named forms
// mean anything: Write does nothing and Read is empty.
class TitleArray : public TypeBase<TitleArray> {
public:
    using ValueType = MultiLanguageString;
    bool IsCompatible(const Any& value) const override;
    void Write(Container& container, XmlNS::Node* node, const Any& value) const override;
    void WriteNamed(Container& container, XmlNS::Node* parent, const QualifiedName& name,
                    const Any& value) const override;
    void Read(Any& out, Container& container, XmlNS::Node* node) const override;
    void ReadNamed(Any& out, Container& container, XmlNS::Node* node, const QualifiedName& name) const override;
};

// A vector of extended properties as legacykvd:Property elements with
// fmtid, propid, type and array attributes and the value as text.
class OpenMetadataProperties : public TypeBase<OpenMetadataProperties> {
public:
    using ValueType = std::vector<ZipContainerSchema::OpenMetadataProperty>;
    bool IsCompatible(const Any& value) const override;
    void Write(Container& container, XmlNS::Node* node, const Any& value) const override;
    void WriteNamed(Container& container, XmlNS::Node* parent, const QualifiedName& name,
                    const Any& value) const override;
    void Read(Any& out, Container& container, XmlNS::Node* node) const override;
    void ReadNamed(Any& out, Container& container, XmlNS::Node* node, const QualifiedName& name) const override;
};

}  // namespace Metadata::DataType::Legacy
