// The schema rows of the legacy metadata form, all in legacykvd:
// ZipContainerSchema::legacykvd::Title is legacykvd:Title.
#pragma once

#include "metadata/ArrayTypes.h"
#include "metadata/LegacyTypes.h"
#include "metadata/PropertyDescriptor.h"

namespace ZipContainerSchema::legacykvd {

using Metadata::PropertyDescriptor;
using Metadata::Row;
namespace DataType = Metadata::DataType;
namespace Namespaces = Metadata::Namespaces;

inline constexpr PropertyDescriptor FontsUsed = Row<DataType::UnorderedStringArray>(Namespaces::legacykvd, "FontsUsed");
inline constexpr PropertyDescriptor CoreVersion = Row<DataType::Int>(Namespaces::legacykvd, "CoreVersion");
inline constexpr PropertyDescriptor Keywords = Row<DataType::String>(Namespaces::legacykvd, "Keywords");
inline constexpr PropertyDescriptor Notes = Row<DataType::String>(Namespaces::legacykvd, "Notes");
inline constexpr PropertyDescriptor Title = Row<DataType::Legacy::TitleArray>(Namespaces::legacykvd, "Title");
inline constexpr PropertyDescriptor Author = Row<DataType::String>(Namespaces::legacykvd, "Author");
inline constexpr PropertyDescriptor Subject = Row<DataType::String>(Namespaces::legacykvd, "Subject");
inline constexpr PropertyDescriptor Copyright = Row<DataType::String>(Namespaces::legacykvd, "Copyright");
inline constexpr PropertyDescriptor Revision = Row<DataType::Int>(Namespaces::legacykvd, "Revision");
inline constexpr PropertyDescriptor LastAuthor = Row<DataType::String>(Namespaces::legacykvd, "LastAuthor");
inline constexpr PropertyDescriptor Sided = Row<DataType::String>(Namespaces::legacykvd, "Sided");
inline constexpr PropertyDescriptor Folds = Row<DataType::String>(Namespaces::legacykvd, "Folds");
inline constexpr PropertyDescriptor Type = Row<DataType::String>(Namespaces::legacykvd, "Type");
inline constexpr PropertyDescriptor Industry = Row<DataType::String>(Namespaces::legacykvd, "Industry");
inline constexpr PropertyDescriptor ProductId = Row<DataType::Int>(Namespaces::legacykvd, "ProductId");
inline constexpr PropertyDescriptor ProductName = Row<DataType::String>(Namespaces::legacykvd, "ProductName");
inline constexpr PropertyDescriptor AppVersion = Row<DataType::Int>(Namespaces::legacykvd, "AppVersion");
inline constexpr PropertyDescriptor BuildNumber = Row<DataType::Int>(Namespaces::legacykvd, "BuildNumber");
inline constexpr PropertyDescriptor Platform = Row<DataType::Int>(Namespaces::legacykvd, "Platform");
inline constexpr PropertyDescriptor Locale = Row<DataType::Int>(Namespaces::legacykvd, "Locale");
inline constexpr PropertyDescriptor NumPages = Row<DataType::Int>(Namespaces::legacykvd, "NumPages");
inline constexpr PropertyDescriptor NumLayers = Row<DataType::Int>(Namespaces::legacykvd, "NumLayers");
inline constexpr PropertyDescriptor Language = Row<DataType::Int>(Namespaces::legacykvd, "Language");
inline constexpr PropertyDescriptor PageWidth = Row<DataType::Double>(Namespaces::legacykvd, "PageWidth");
inline constexpr PropertyDescriptor PageHeight = Row<DataType::Double>(Namespaces::legacykvd, "PageHeight");
inline constexpr PropertyDescriptor PageDimensions = Row<DataType::String>(Namespaces::legacykvd, "PageDimensions");
inline constexpr PropertyDescriptor PageSizeName = Row<DataType::String>(Namespaces::legacykvd, "PageSizeName");
inline constexpr PropertyDescriptor PageOrientation = Row<DataType::Int>(Namespaces::legacykvd, "PageOrientation");
inline constexpr PropertyDescriptor ResolutionX = Row<DataType::Double>(Namespaces::legacykvd, "ResolutionX");
inline constexpr PropertyDescriptor ResolutionY = Row<DataType::Double>(Namespaces::legacykvd, "ResolutionY");
inline constexpr PropertyDescriptor Effects = Row<DataType::Legacy::EffectInfo>(Namespaces::legacykvd, "Effects");
inline constexpr PropertyDescriptor Objects = Row<DataType::Legacy::ObjectInfo>(Namespaces::legacykvd, "Objects");
inline constexpr PropertyDescriptor CurveInfo = Row<DataType::Legacy::CurveInfo>(Namespaces::legacykvd, "CurveInfo");
inline constexpr PropertyDescriptor BitmapInfo = Row<DataType::Legacy::BitmapInfo>(Namespaces::legacykvd, "BitmapInfo");
inline constexpr PropertyDescriptor TextInfo = Row<DataType::Legacy::TextInfo>(Namespaces::legacykvd, "TextInfo");
inline constexpr PropertyDescriptor Styles = Row<DataType::UnorderedStringArray>(Namespaces::legacykvd, "Styles");
inline constexpr PropertyDescriptor Fills = Row<DataType::Legacy::FillInfo>(Namespaces::legacykvd, "Fills");
inline constexpr PropertyDescriptor Outlines = Row<DataType::Legacy::OutlineInfo>(Namespaces::legacykvd, "Outlines");
inline constexpr PropertyDescriptor ClipRect = Row<DataType::Legacy::CgiRect>(Namespaces::legacykvd, "ClipRect");
inline constexpr PropertyDescriptor Color = Row<DataType::Legacy::ColorInfo>(Namespaces::legacykvd, "Color");
inline constexpr PropertyDescriptor Properties = Row<DataType::Legacy::OpenMetadataProperties>(Namespaces::legacykvd, "Properties");
inline constexpr PropertyDescriptor EmbeddedOleObjects = Row<DataType::Int>(Namespaces::legacykvd, "EmbeddedOleObjects");
inline constexpr PropertyDescriptor FontsEmbedded = Row<DataType::Int>(Namespaces::legacykvd, "FontsEmbedded");
inline constexpr PropertyDescriptor DocID = Row<DataType::Guid>(Namespaces::legacykvd, "DocID");
inline constexpr PropertyDescriptor RiffCompressionRatio = Row<DataType::Double>(Namespaces::legacykvd, "RiffCompressionRatio");
inline constexpr PropertyDescriptor ObjectNames = Row<DataType::UnorderedStringArray>(Namespaces::legacykvd, "ObjectNames");
inline constexpr PropertyDescriptor LayerNames = Row<DataType::UnorderedStringArray>(Namespaces::legacykvd, "LayerNames");
inline constexpr PropertyDescriptor PageNames = Row<DataType::UnorderedStringArray>(Namespaces::legacykvd, "PageNames");

}  // namespace ZipContainerSchema::legacykvd
