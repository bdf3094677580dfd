// Constant names of the RDF syntax and of the published XMP schemas. The
// RDF names are the whole vocabulary the structure rules know; the schema
// names beyond the property rows are declared for completeness.
#pragma once

#include "metadata/Namespaces.h"

namespace Metadata::Names {

namespace rdf {
inline constexpr QualifiedName RDF{&Namespaces::rdf, "RDF"};
inline constexpr QualifiedName ID{&Namespaces::rdf, "ID"};
inline constexpr QualifiedName about{&Namespaces::rdf, "about"};
inline constexpr QualifiedName parseType{&Namespaces::rdf, "parseType"};
inline constexpr QualifiedName resource{&Namespaces::rdf, "resource"};
inline constexpr QualifiedName value{&Namespaces::rdf, "value"};
inline constexpr QualifiedName Description{&Namespaces::rdf, "Description"};
inline constexpr QualifiedName Seq{&Namespaces::rdf, "Seq"};
inline constexpr QualifiedName Bag{&Namespaces::rdf, "Bag"};
inline constexpr QualifiedName li{&Namespaces::rdf, "li"};
inline constexpr QualifiedName Alt{&Namespaces::rdf, "Alt"};
inline constexpr QualifiedName nodeID{&Namespaces::rdf, "nodeID"};
inline constexpr QualifiedName datatype{&Namespaces::rdf, "datatype"};
}  // namespace rdf

namespace xml {
inline constexpr QualifiedName lang{&Namespaces::xml, "lang"};
}  // namespace xml

namespace x {
inline constexpr QualifiedName xmpmeta{&Namespaces::x, "xmpmeta"};
}  // namespace x

namespace dc {
inline constexpr QualifiedName title{&Namespaces::dc, "title"};
inline constexpr QualifiedName description{&Namespaces::dc, "description"};
inline constexpr QualifiedName creator{&Namespaces::dc, "creator"};
inline constexpr QualifiedName rights{&Namespaces::dc, "rights"};
inline constexpr QualifiedName identifier{&Namespaces::dc, "identifier"};
inline constexpr QualifiedName format{&Namespaces::dc, "format"};
inline constexpr QualifiedName contributor{&Namespaces::dc, "contributor"};
inline constexpr QualifiedName coverage{&Namespaces::dc, "coverage"};
inline constexpr QualifiedName date{&Namespaces::dc, "date"};
inline constexpr QualifiedName language{&Namespaces::dc, "language"};
inline constexpr QualifiedName publisher{&Namespaces::dc, "publisher"};
inline constexpr QualifiedName relation{&Namespaces::dc, "relation"};
inline constexpr QualifiedName source{&Namespaces::dc, "source"};
inline constexpr QualifiedName subject{&Namespaces::dc, "subject"};
inline constexpr QualifiedName type{&Namespaces::dc, "type"};
}  // namespace dc

namespace xmp {
inline constexpr QualifiedName CreatorTool{&Namespaces::xmp, "CreatorTool"};
inline constexpr QualifiedName CreateDate{&Namespaces::xmp, "CreateDate"};
inline constexpr QualifiedName ModifyDate{&Namespaces::xmp, "ModifyDate"};
inline constexpr QualifiedName MetadataDate{&Namespaces::xmp, "MetadataDate"};
inline constexpr QualifiedName Rating{&Namespaces::xmp, "Rating"};
inline constexpr QualifiedName BaseURL{&Namespaces::xmp, "BaseURL"};
inline constexpr QualifiedName Identifier{&Namespaces::xmp, "Identifier"};
inline constexpr QualifiedName Label{&Namespaces::xmp, "Label"};
inline constexpr QualifiedName Nickname{&Namespaces::xmp, "Nickname"};
inline constexpr QualifiedName Thumbnails{&Namespaces::xmp, "Thumbnails"};
}  // namespace xmp

namespace xmpMM {
inline constexpr QualifiedName DocumentID{&Namespaces::xmpMM, "DocumentID"};
inline constexpr QualifiedName InstanceID{&Namespaces::xmpMM, "InstanceID"};
inline constexpr QualifiedName DerivedFrom{&Namespaces::xmpMM, "DerivedFrom"};
inline constexpr QualifiedName Ingredients{&Namespaces::xmpMM, "Ingredients"};
inline constexpr QualifiedName OriginalDocumentID{&Namespaces::xmpMM, "OriginalDocumentID"};
inline constexpr QualifiedName Pantry{&Namespaces::xmpMM, "Pantry"};
inline constexpr QualifiedName RenditionClass{&Namespaces::xmpMM, "RenditionClass"};
inline constexpr QualifiedName RenditionParams{&Namespaces::xmpMM, "RenditionParams"};
inline constexpr QualifiedName VersionID{&Namespaces::xmpMM, "VersionID"};
inline constexpr QualifiedName Versions{&Namespaces::xmpMM, "Versions"};
}  // namespace xmpMM

namespace xmpRights {
inline constexpr QualifiedName Certificate{&Namespaces::xmpRights, "Certificate"};
inline constexpr QualifiedName Marked{&Namespaces::xmpRights, "Marked"};
inline constexpr QualifiedName Owner{&Namespaces::xmpRights, "Owner"};
inline constexpr QualifiedName UsageTerms{&Namespaces::xmpRights, "UsageTerms"};
inline constexpr QualifiedName WebStatement{&Namespaces::xmpRights, "WebStatement"};
}  // namespace xmpRights

namespace xmpidq {
inline constexpr QualifiedName Scheme{&Namespaces::xmpidq, "Scheme"};
}  // namespace xmpidq

namespace xmpTPg {
inline constexpr QualifiedName Colorants{&Namespaces::xmpTPg, "Colorants"};
inline constexpr QualifiedName Fonts{&Namespaces::xmpTPg, "Fonts"};
inline constexpr QualifiedName MaxPageSize{&Namespaces::xmpTPg, "MaxPageSize"};
inline constexpr QualifiedName NPages{&Namespaces::xmpTPg, "NPages"};
inline constexpr QualifiedName PlateNames{&Namespaces::xmpTPg, "PlateNames"};
}  // namespace xmpTPg

namespace Iptc4xmpCore {
inline constexpr QualifiedName Location{&Namespaces::Iptc4xmpCore, "Location"};
}  // namespace Iptc4xmpCore

namespace stRef {
inline constexpr QualifiedName documentID{&Namespaces::stRef, "documentID"};
inline constexpr QualifiedName filePath{&Namespaces::stRef, "filePath"};
inline constexpr QualifiedName instanceID{&Namespaces::stRef, "instanceID"};
inline constexpr QualifiedName renditionClass{&Namespaces::stRef, "renditionClass"};
inline constexpr QualifiedName renditionParams{&Namespaces::stRef, "renditionParams"};
}  // namespace stRef

namespace stDim {
inline constexpr QualifiedName w{&Namespaces::stDim, "w"};
inline constexpr QualifiedName h{&Namespaces::stDim, "h"};
inline constexpr QualifiedName unit{&Namespaces::stDim, "unit"};
}  // namespace stDim

namespace xmpG {
inline constexpr QualifiedName A{&Namespaces::xmpG, "A"};
inline constexpr QualifiedName B{&Namespaces::xmpG, "B"};
inline constexpr QualifiedName L{&Namespaces::xmpG, "L"};
inline constexpr QualifiedName black{&Namespaces::xmpG, "black"};
inline constexpr QualifiedName cyan{&Namespaces::xmpG, "cyan"};
inline constexpr QualifiedName magenta{&Namespaces::xmpG, "magenta"};
inline constexpr QualifiedName yellow{&Namespaces::xmpG, "yellow"};
inline constexpr QualifiedName blue{&Namespaces::xmpG, "blue"};
inline constexpr QualifiedName green{&Namespaces::xmpG, "green"};
inline constexpr QualifiedName red{&Namespaces::xmpG, "red"};
inline constexpr QualifiedName mode{&Namespaces::xmpG, "mode"};
inline constexpr QualifiedName swatchName{&Namespaces::xmpG, "swatchName"};
inline constexpr QualifiedName type{&Namespaces::xmpG, "type"};
}  // namespace xmpG

namespace stFnt {
inline constexpr QualifiedName childFontFiles{&Namespaces::stFnt, "childFontFiles"};
inline constexpr QualifiedName composite{&Namespaces::stFnt, "composite"};
inline constexpr QualifiedName fontFace{&Namespaces::stFnt, "fontFace"};
inline constexpr QualifiedName fontFamily{&Namespaces::stFnt, "fontFamily"};
inline constexpr QualifiedName fontFileName{&Namespaces::stFnt, "fontFileName"};
inline constexpr QualifiedName fontName{&Namespaces::stFnt, "fontName"};
inline constexpr QualifiedName fontType{&Namespaces::stFnt, "fontType"};
inline constexpr QualifiedName versionString{&Namespaces::stFnt, "versionString"};
}  // namespace stFnt

namespace xmpGImg {
inline constexpr QualifiedName format{&Namespaces::xmpGImg, "format"};
inline constexpr QualifiedName height{&Namespaces::xmpGImg, "height"};
inline constexpr QualifiedName width{&Namespaces::xmpGImg, "width"};
inline constexpr QualifiedName image{&Namespaces::xmpGImg, "image"};
}  // namespace xmpGImg

namespace cc {
inline constexpr QualifiedName License{&Namespaces::cc, "License"};
}  // namespace cc

}  // namespace Metadata::Names
