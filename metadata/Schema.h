// The schema rows of the current metadata form, one constant per property,
// named as written: ZipContainerSchema::dc::title is dc:title. Rows of the
// fields of complex properties stand in ComplexSchema.h, those of the legacy
// form in LegacySchema.h.
#pragma once

#include "metadata/ComplexDataTypes.h"
#include "metadata/ComplexSchema.h"

namespace ZipContainerSchema {

namespace dc {
inline constexpr PropertyDescriptor title = Row<DataType::AltLangStringArray>(Namespaces::dc, "title");
inline constexpr PropertyDescriptor description = Row<DataType::AltLangStringArray>(Namespaces::dc, "description");
inline constexpr PropertyDescriptor rights = Row<DataType::AltLangStringArray>(Namespaces::dc, "rights");
inline constexpr PropertyDescriptor creator = Row<DataType::OrderedStringArray>(Namespaces::dc, "creator");
inline constexpr PropertyDescriptor format = Row<DataType::String>(Namespaces::dc, "format");
}  // namespace dc

namespace xmp {
inline constexpr PropertyDescriptor CreateDate = Row<DataType::Date>(Namespaces::xmp, "CreateDate");
inline constexpr PropertyDescriptor ModifyDate = Row<DataType::Date>(Namespaces::xmp, "ModifyDate");
inline constexpr PropertyDescriptor MetadataDate = Row<DataType::Date>(Namespaces::xmp, "MetadataDate");
inline constexpr PropertyDescriptor CreatorTool = Row<DataType::String>(Namespaces::xmp, "CreatorTool");
}  // namespace xmp

namespace xmpMM {
inline constexpr PropertyDescriptor InstanceID = Row<DataType::Guid>(Namespaces::xmpMM, "InstanceID");
inline constexpr PropertyDescriptor DocumentID = Row<DataType::Guid>(Namespaces::xmpMM, "DocumentID");
}  // namespace xmpMM

namespace brm {
inline constexpr PropertyDescriptor Subject = Row<DataType::AltLangStringArray>(Namespaces::brm, "Subject");
inline constexpr PropertyDescriptor Keywords = Row<DataType::AltLangStringArray>(Namespaces::brm, "Keywords");
inline constexpr PropertyDescriptor Notes = Row<DataType::AltLangStringArray>(Namespaces::brm, "Notes");
inline constexpr PropertyDescriptor Category = Row<DataType::AltLangStringArray>(Namespaces::brm, "Category");
inline constexpr PropertyDescriptor LastAuthor = Row<DataType::String>(Namespaces::brm, "LastAuthor");
inline constexpr PropertyDescriptor Revision = Row<DataType::Int>(Namespaces::brm, "Revision");
inline constexpr PropertyDescriptor Language = Row<DataType::Int>(Namespaces::brm, "Language");
inline constexpr PropertyDescriptor SubFormat = Row<DataType::String>(Namespaces::brm, "SubFormat");
inline constexpr PropertyDescriptor Version = Row<DataType::String>(Namespaces::brm, "Version");
inline constexpr PropertyDescriptor DerivedFrom = Row<DataType::OrderedGuidArray>(Namespaces::brm, "DerivedFrom");
inline constexpr PropertyDescriptor OpenMetadata = Row<DataType::UnorderedOMPArray>(Namespaces::brm, "OpenMetadata");
}  // namespace brm

namespace kvt {
inline constexpr PropertyDescriptor Sided = Row<DataType::String>(Namespaces::kvt, "Sided");
inline constexpr PropertyDescriptor Folds = Row<DataType::String>(Namespaces::kvt, "Folds");
inline constexpr PropertyDescriptor Type = Row<DataType::String>(Namespaces::kvt, "Type");
inline constexpr PropertyDescriptor Industry = Row<DataType::String>(Namespaces::kvt, "Industry");
}  // namespace kvt

namespace kvd {
inline constexpr PropertyDescriptor Platform = Row<DataType::Int>(Namespaces::kvd, "Platform");
inline constexpr PropertyDescriptor ClipRect = Row<DataType::CgiRect>(Namespaces::kvd, "ClipRect");
inline constexpr PropertyDescriptor ProductId = Row<DataType::Int>(Namespaces::kvd, "ProductId");
inline constexpr PropertyDescriptor ProductName = Row<DataType::String>(Namespaces::kvd, "ProductName");
inline constexpr PropertyDescriptor CoreVersion = Row<DataType::Int>(Namespaces::kvd, "CoreVersion");
inline constexpr PropertyDescriptor AppVersion = Row<DataType::Int>(Namespaces::kvd, "AppVersion");
inline constexpr PropertyDescriptor BuildNumber = Row<DataType::Int>(Namespaces::kvd, "BuildNumber");
inline constexpr PropertyDescriptor Locale = Row<DataType::Int>(Namespaces::kvd, "Locale");
}  // namespace kvd

namespace kvdinfo {
inline constexpr PropertyDescriptor NumPages = Row<DataType::Int>(Namespaces::kvdinfo, "NumPages");
inline constexpr PropertyDescriptor NumLayers = Row<DataType::Int>(Namespaces::kvdinfo, "NumLayers");
inline constexpr PropertyDescriptor PageWidth = Row<DataType::Double>(Namespaces::kvdinfo, "PageWidth");
inline constexpr PropertyDescriptor PageHeight = Row<DataType::Double>(Namespaces::kvdinfo, "PageHeight");
inline constexpr PropertyDescriptor PageDimensions = Row<DataType::String>(Namespaces::kvdinfo, "PageDimensions");
inline constexpr PropertyDescriptor PageSizeName = Row<DataType::String>(Namespaces::kvdinfo, "PageSizeName");
inline constexpr PropertyDescriptor PageOrientation = Row<DataType::Int>(Namespaces::kvdinfo, "PageOrientation");
inline constexpr PropertyDescriptor ResolutionX = Row<DataType::Double>(Namespaces::kvdinfo, "ResolutionX");
inline constexpr PropertyDescriptor ResolutionY = Row<DataType::Double>(Namespaces::kvdinfo, "ResolutionY");
inline constexpr PropertyDescriptor EmbeddedOleObjects = Row<DataType::Bool>(Namespaces::kvdinfo, "EmbeddedOleObjects");
inline constexpr PropertyDescriptor FontsEmbedded = Row<DataType::Bool>(Namespaces::kvdinfo, "FontsEmbedded");
inline constexpr PropertyDescriptor FontsUsed = Row<DataType::UnorderedStringArray>(Namespaces::kvdinfo, "FontsUsed");
inline constexpr PropertyDescriptor Styles = Row<DataType::UnorderedStringArray>(Namespaces::kvdinfo, "Styles");
inline constexpr PropertyDescriptor Effects = Row<DataType::EffectInfo>(Namespaces::kvdinfo, "Effects");
inline constexpr PropertyDescriptor Objects = Row<DataType::ObjectInfo>(Namespaces::kvdinfo, "Objects");
inline constexpr PropertyDescriptor CurveInfo = Row<DataType::CurveInfo>(Namespaces::kvdinfo, "CurveInfo");
inline constexpr PropertyDescriptor BitmapInfo = Row<DataType::BitmapInfo>(Namespaces::kvdinfo, "BitmapInfo");
inline constexpr PropertyDescriptor TextInfo = Row<DataType::TextInfo>(Namespaces::kvdinfo, "TextInfo");
inline constexpr PropertyDescriptor FillInfo = Row<DataType::FillInfo>(Namespaces::kvdinfo, "FillInfo");
inline constexpr PropertyDescriptor OutlineInfo = Row<DataType::OutlineInfo>(Namespaces::kvdinfo, "OutlineInfo");
inline constexpr PropertyDescriptor ColorInfo = Row<DataType::ColorInfo>(Namespaces::kvdinfo, "ColorInfo");
}  // namespace kvdinfo

// Names without a row of their own.
namespace names {
inline constexpr Metadata::QualifiedName ColorSpace{&Namespaces::kvdinfo, "ColorSpace"};
inline constexpr Metadata::QualifiedName ContentVersion{&Namespaces::brm, "ContentVersion"};
inline constexpr Metadata::QualifiedName TextStream{&Namespaces::legacykvd, "TextStream"};
inline constexpr Metadata::QualifiedName TextRun{&Namespaces::legacykvd, "TextRun"};
}  // namespace names

}  // namespace ZipContainerSchema
