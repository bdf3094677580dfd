// The complex data types of the current form: structures of named fields
// in their own namespaces, written compactly as attributes when they are up
// to five plain fields and with rdf:parseType="Resource" otherwise, and
// read in any of the accepted RDF spellings. Also the list of extended
// properties.
#pragma once

#include <span>

#include "metadata/ComplexTypes.h"
#include "metadata/StructureType.h"
#include "platform/WinTypes.h"

namespace Metadata::DataType {

#define FI_STRUCTURE_TYPE(Name, Value)                                   \
    class Name : public StructureType<Name, Value, true> {               \
    public:                                                              \
        static std::span<const FieldSpec<Value>> Fields();               \
    }

// RECT; fields written left, right, top, bottom through Anys of long.
FI_STRUCTURE_TYPE(CgiRect, RECT);
FI_STRUCTURE_TYPE(EffectInfo, ComplexTypes::EffectInfo);
FI_STRUCTURE_TYPE(ObjectInfo, ComplexTypes::ObjectInfo);
FI_STRUCTURE_TYPE(CurveInfo, ComplexTypes::CurveInfo);
FI_STRUCTURE_TYPE(BitmapInfo, ComplexTypes::BitmapInfo);
FI_STRUCTURE_TYPE(TextInfo, ComplexTypes::TextInfo);
FI_STRUCTURE_TYPE(FillInfo, ComplexTypes::FillInfo);
// Hairline is written before ScalePen, unlike the structure's order.
FI_STRUCTURE_TYPE(OutlineInfo, ComplexTypes::OutlineInfo);
FI_STRUCTURE_TYPE(ColorInfo, ComplexTypes::ColorInfo);

}  // namespace Metadata::DataType

namespace Metadata::ComplexTypes {

// One extended property as a structure of brm:fmtid, brm:propid,
// brm:type, brm:array and brm:value.
FI_STRUCTURE_TYPE(OpenMetadataProperty, ZipContainerSchema::OpenMetadataProperty);

}  // namespace Metadata::ComplexTypes

#undef FI_STRUCTURE_TYPE

namespace Metadata::DataType {

// rdf:Bag of extended properties.
class UnorderedOMPArray : public UnorderedArrayBase<UnorderedOMPArray, ZipContainerSchema::OpenMetadataProperty,
                                                    ComplexTypes::OpenMetadataProperty> {};

}  // namespace Metadata::DataType
