// Schema rows of the fields of complex properties, each in the namespace
// of its structure (the bitmap lists stand in kvdinfo itself), and of the
// fields of an extended property in brm.
#pragma once

#include "metadata/ArrayTypes.h"
#include "metadata/PropertyDescriptor.h"

namespace ZipContainerSchema {

using Metadata::PropertyDescriptor;
using Metadata::Row;
namespace Namespaces = Metadata::Namespaces;
namespace DataType = Metadata::DataType;

namespace rect {
inline constexpr PropertyDescriptor left = Row<DataType::Int>(Namespaces::rect, "left");
inline constexpr PropertyDescriptor right = Row<DataType::Int>(Namespaces::rect, "right");
inline constexpr PropertyDescriptor top = Row<DataType::Int>(Namespaces::rect, "top");
inline constexpr PropertyDescriptor bottom = Row<DataType::Int>(Namespaces::rect, "bottom");
}  // namespace rect

namespace inEff {
inline constexpr PropertyDescriptor Perspective = Row<DataType::Int>(Namespaces::inEff, "Perspective");
inline constexpr PropertyDescriptor Envelope = Row<DataType::Int>(Namespaces::inEff, "Envelope");
inline constexpr PropertyDescriptor DropShadow = Row<DataType::Int>(Namespaces::inEff, "DropShadow");
inline constexpr PropertyDescriptor Blend = Row<DataType::Int>(Namespaces::inEff, "Blend");
inline constexpr PropertyDescriptor Extrude = Row<DataType::Int>(Namespaces::inEff, "Extrude");
inline constexpr PropertyDescriptor Bevel = Row<DataType::Int>(Namespaces::inEff, "Bevel");
inline constexpr PropertyDescriptor Contour = Row<DataType::Int>(Namespaces::inEff, "Contour");
inline constexpr PropertyDescriptor PowerClip = Row<DataType::Int>(Namespaces::inEff, "PowerClip");
inline constexpr PropertyDescriptor Clone = Row<DataType::Int>(Namespaces::inEff, "Clone");
inline constexpr PropertyDescriptor Lens = Row<DataType::Int>(Namespaces::inEff, "Lens");
inline constexpr PropertyDescriptor Transparency = Row<DataType::Int>(Namespaces::inEff, "Transparency");
inline constexpr PropertyDescriptor Distortion = Row<DataType::Int>(Namespaces::inEff, "Distortion");
}  // namespace inEff

namespace inObj {
inline constexpr PropertyDescriptor Total = Row<DataType::Int>(Namespaces::inObj, "Total");
inline constexpr PropertyDescriptor Group = Row<DataType::Int>(Namespaces::inObj, "Group");
inline constexpr PropertyDescriptor Curve = Row<DataType::Int>(Namespaces::inObj, "Curve");
inline constexpr PropertyDescriptor Rect = Row<DataType::Int>(Namespaces::inObj, "Rect");
inline constexpr PropertyDescriptor Bitmap = Row<DataType::Int>(Namespaces::inObj, "Bitmap");
inline constexpr PropertyDescriptor Ellipse = Row<DataType::Int>(Namespaces::inObj, "Ellipse");
inline constexpr PropertyDescriptor MeshFill = Row<DataType::Int>(Namespaces::inObj, "MeshFill");
inline constexpr PropertyDescriptor Polygon = Row<DataType::Int>(Namespaces::inObj, "Polygon");
inline constexpr PropertyDescriptor OLELinked = Row<DataType::Int>(Namespaces::inObj, "OLELinked");
inline constexpr PropertyDescriptor OLEEmbedded = Row<DataType::Int>(Namespaces::inObj, "OLEEmbedded");
inline constexpr PropertyDescriptor Guideline = Row<DataType::Int>(Namespaces::inObj, "Guideline");
inline constexpr PropertyDescriptor SymbolDefinitions = Row<DataType::Int>(Namespaces::inObj, "SymbolDefinitions");
inline constexpr PropertyDescriptor SymbolInstances = Row<DataType::Int>(Namespaces::inObj, "SymbolInstances");
inline constexpr PropertyDescriptor Text = Row<DataType::Int>(Namespaces::inObj, "Text");
}  // namespace inObj

namespace inCrv {
inline constexpr PropertyDescriptor Subpaths = Row<DataType::Int>(Namespaces::inCrv, "Subpaths");
inline constexpr PropertyDescriptor Nodes = Row<DataType::Int>(Namespaces::inCrv, "Nodes");
inline constexpr PropertyDescriptor MaxNodes = Row<DataType::Int>(Namespaces::inCrv, "MaxNodes");
}  // namespace inCrv

namespace inTxt {
inline constexpr PropertyDescriptor ParagraphText = Row<DataType::Int>(Namespaces::inTxt, "ParagraphText");
inline constexpr PropertyDescriptor ArtisticText = Row<DataType::Int>(Namespaces::inTxt, "ArtisticText");
inline constexpr PropertyDescriptor Frames = Row<DataType::Int>(Namespaces::inTxt, "Frames");
inline constexpr PropertyDescriptor EmptyFrames = Row<DataType::Int>(Namespaces::inTxt, "EmptyFrames");
inline constexpr PropertyDescriptor Paragraphs = Row<DataType::Int>(Namespaces::inTxt, "Paragraphs");
inline constexpr PropertyDescriptor Lines = Row<DataType::Int>(Namespaces::inTxt, "Lines");
inline constexpr PropertyDescriptor Words = Row<DataType::Int>(Namespaces::inTxt, "Words");
inline constexpr PropertyDescriptor Characters = Row<DataType::Int>(Namespaces::inTxt, "Characters");
inline constexpr PropertyDescriptor DocFormatterId = Row<DataType::Int>(Namespaces::inTxt, "DocFormatterId");
inline constexpr PropertyDescriptor Languages = Row<DataType::UnorderedIntArray>(Namespaces::inTxt, "Languages");
}  // namespace inTxt

namespace inFill {
inline constexpr PropertyDescriptor None = Row<DataType::Int>(Namespaces::inFill, "None");
inline constexpr PropertyDescriptor Uniform = Row<DataType::Int>(Namespaces::inFill, "Uniform");
inline constexpr PropertyDescriptor Fountain = Row<DataType::Int>(Namespaces::inFill, "Fountain");
inline constexpr PropertyDescriptor Texture = Row<DataType::Int>(Namespaces::inFill, "Texture");
inline constexpr PropertyDescriptor Postscript = Row<DataType::Int>(Namespaces::inFill, "Postscript");
inline constexpr PropertyDescriptor Hatch = Row<DataType::Int>(Namespaces::inFill, "Hatch");
inline constexpr PropertyDescriptor Pattern = Row<DataType::Int>(Namespaces::inFill, "Pattern");
inline constexpr PropertyDescriptor Colors = Row<DataType::UnorderedStringArray>(Namespaces::inFill, "Colors");
inline constexpr PropertyDescriptor Palettes = Row<DataType::UnorderedStringArray>(Namespaces::inFill, "Palettes");
inline constexpr PropertyDescriptor SpotColors = Row<DataType::UnorderedStringArray>(Namespaces::inFill, "SpotColors");
}  // namespace inFill

namespace inOtl {
inline constexpr PropertyDescriptor None = Row<DataType::Int>(Namespaces::inOtl, "None");
inline constexpr PropertyDescriptor Solid = Row<DataType::Int>(Namespaces::inOtl, "Solid");
inline constexpr PropertyDescriptor Dashed = Row<DataType::Int>(Namespaces::inOtl, "Dashed");
inline constexpr PropertyDescriptor Enhanced = Row<DataType::Int>(Namespaces::inOtl, "Enhanced");
inline constexpr PropertyDescriptor BehindFill = Row<DataType::Int>(Namespaces::inOtl, "BehindFill");
inline constexpr PropertyDescriptor ScalePen = Row<DataType::Int>(Namespaces::inOtl, "ScalePen");
inline constexpr PropertyDescriptor Hairline = Row<DataType::Int>(Namespaces::inOtl, "Hairline");
inline constexpr PropertyDescriptor Colors = Row<DataType::UnorderedStringArray>(Namespaces::inOtl, "Colors");
inline constexpr PropertyDescriptor Palettes = Row<DataType::UnorderedStringArray>(Namespaces::inOtl, "Palettes");
inline constexpr PropertyDescriptor SpotColors = Row<DataType::UnorderedStringArray>(Namespaces::inOtl, "SpotColors");
}  // namespace inOtl

namespace inClr {
inline constexpr PropertyDescriptor RgbProfileName = Row<DataType::String>(Namespaces::inClr, "RgbProfileName");
inline constexpr PropertyDescriptor CmykProfileName = Row<DataType::String>(Namespaces::inClr, "CmykProfileName");
inline constexpr PropertyDescriptor GrayscaleProfileName = Row<DataType::String>(Namespaces::inClr, "GrayscaleProfileName");
inline constexpr PropertyDescriptor ColorMode = Row<DataType::Int>(Namespaces::inClr, "ColorMode");
inline constexpr PropertyDescriptor RenderingIntent = Row<DataType::Int>(Namespaces::inClr, "RenderingIntent");
}  // namespace inClr

// The two lists of the bitmap statistics.
namespace kvdinfo {
inline constexpr PropertyDescriptor Types = Row<DataType::UnorderedIntArray>(Namespaces::kvdinfo, "Types");
inline constexpr PropertyDescriptor LinkPaths = Row<DataType::UnorderedStringArray>(Namespaces::kvdinfo, "LinkPaths");
}  // namespace kvdinfo

// The fields of an extended property.
namespace brm {
inline constexpr PropertyDescriptor fmtid = Row<DataType::Guid>(Namespaces::brm, "fmtid");
inline constexpr PropertyDescriptor propid = Row<DataType::Int>(Namespaces::brm, "propid");
inline constexpr PropertyDescriptor type = Row<DataType::String>(Namespaces::brm, "type");
inline constexpr PropertyDescriptor array = Row<DataType::Bool>(Namespaces::brm, "array");
inline constexpr PropertyDescriptor value = Row<DataType::String>(Namespaces::brm, "value");
}  // namespace brm

}  // namespace ZipContainerSchema
