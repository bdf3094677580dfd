// The vocabulary of fill.xml: its namespace (the document's default, so
// every element and attribute is written without prefix) and the element and
// attribute names the fill descriptions read and write.
#pragma once

#include "metadata/xml/QualifiedName.h"

namespace FillXml {

using XmlNS::QualifiedName;

inline constexpr XmlNS::NamespaceDef kNamespace{"", "urn:brimo:namespaces:zcf:xmlns:fill"};

// Elements.
inline constexpr QualifiedName fill{&kNamespace, "fill"};
inline constexpr QualifiedName tilingInfo{&kNamespace, "tilingInfo"};
inline constexpr QualifiedName size{&kNamespace, "size"};
inline constexpr QualifiedName offset{&kNamespace, "offset"};
inline constexpr QualifiedName angle{&kNamespace, "angle"};
inline constexpr QualifiedName skew{&kNamespace, "skew"};
inline constexpr QualifiedName rowColumnOffset{&kNamespace, "rowColumnOffset"};
inline constexpr QualifiedName mirror{&kNamespace, "mirror"};
inline constexpr QualifiedName tile{&kNamespace, "tile"};
inline constexpr QualifiedName filterInfo{&kNamespace, "filterInfo"};
inline constexpr QualifiedName filter{&kNamespace, "filter"};
inline constexpr QualifiedName vectorTileInfo{&kNamespace, "vectorTileInfo"};
inline constexpr QualifiedName crop{&kNamespace, "crop"};
inline constexpr QualifiedName fountain{&kNamespace, "fountain"};
inline constexpr QualifiedName scale{&kNamespace, "scale"};
inline constexpr QualifiedName anisotropic{&kNamespace, "anisotropic"};
inline constexpr QualifiedName spread{&kNamespace, "spread"};
inline constexpr QualifiedName blend{&kNamespace, "blend"};
inline constexpr QualifiedName steps{&kNamespace, "steps"};
inline constexpr QualifiedName acceleration{&kNamespace, "acceleration"};
inline constexpr QualifiedName ROP{&kNamespace, "ROP"};
inline constexpr QualifiedName reverseColors{&kNamespace, "reverse_colors"};
inline constexpr QualifiedName colors{&kNamespace, "colors"};
inline constexpr QualifiedName color{&kNamespace, "color"};

// Attributes (unprefixed, so in the default namespace as this tree reads them).
namespace attr {
inline constexpr QualifiedName version{&kNamespace, "version"};
inline constexpr QualifiedName type{&kNamespace, "type"};
inline constexpr QualifiedName units{&kNamespace, "units"};
inline constexpr QualifiedName width{&kNamespace, "width"};
inline constexpr QualifiedName height{&kNamespace, "height"};
inline constexpr QualifiedName x{&kNamespace, "x"};
inline constexpr QualifiedName y{&kNamespace, "y"};
inline constexpr QualifiedName amount{&kNamespace, "amount"};
inline constexpr QualifiedName horizontal{&kNamespace, "horizontal"};
inline constexpr QualifiedName vertical{&kNamespace, "vertical"};
inline constexpr QualifiedName mediaType{&kNamespace, "media-type"};
inline constexpr QualifiedName name{&kNamespace, "name"};
inline constexpr QualifiedName left{&kNamespace, "left"};
inline constexpr QualifiedName right{&kNamespace, "right"};
inline constexpr QualifiedName top{&kNamespace, "top"};
inline constexpr QualifiedName bottom{&kNamespace, "bottom"};
inline constexpr QualifiedName position{&kNamespace, "position"};
inline constexpr QualifiedName opacity{&kNamespace, "opacity"};
inline constexpr QualifiedName blend{&kNamespace, "blend"};
inline constexpr QualifiedName midpoint{&kNamespace, "midpoint"};
}  // namespace attr

}  // namespace FillXml
