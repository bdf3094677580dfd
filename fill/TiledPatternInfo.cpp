// Tiling of bitmap and vector patterns in fill.xml (see TiledPatternInfo.h).
#include "fill/TiledPatternInfo.h"

#include "fill/FillNames.h"
#include "fill/FillNodes.h"

namespace X = FillXml;
using namespace FillNodes;

bool TiledPatternInfo::SetUnits(std::string_view text) {
    if (text == "pixels") {
        layout.units = TileLayout::kPixels;
    } else if (text == "tmicrons") {
        layout.units = TileLayout::kTenthMicrons;
    } else {
        return false;
    }
    return true;
}

bool TiledPatternInfo::Write(Metadata::Container& metadata, XmlNS::Node& node, ZipContainerImpl* context) const {
    if (!FillInfo::Write(metadata, node, context)) return false;
    Node* tiling = node.AddChild(X::tilingInfo);
    if (!tiling) return false;
    tiling->SetAttribute(X::attr::units, layout.units == TileLayout::kTenthMicrons ? "tmicrons" : "pixels");
    Node* size = tiling->AddChild(X::size);
    Node* offset = tiling->AddChild(X::offset);
    const bool angle = AddNumberChild(*tiling, X::angle, layout.angle);
    const bool skew = AddNumberChild(*tiling, X::skew, layout.skew);
    Node* shift = tiling->AddChild(X::rowColumnOffset);
    Node* mirror = tiling->AddChild(X::mirror);
    Node* tile = node.AddChild(X::tile, Metadata::WideToUtf8(layout.tile));
    if (!size || !offset || !angle || !skew || !shift || !mirror || !tile) return false;
    SetNumber(*size, X::attr::width, layout.width);
    SetNumber(*size, X::attr::height, layout.height);
    SetNumber(*offset, X::attr::x, layout.offsetX);
    SetNumber(*offset, X::attr::y, layout.offsetY);
    shift->SetAttribute(X::attr::type, layout.byColumns ? "columns" : "rows");
    SetNumber(*shift, X::attr::amount, layout.amount);
    mirror->SetAttribute(X::attr::horizontal, FillText::FormatBool(layout.mirrorHorizontal));
    mirror->SetAttribute(X::attr::vertical, FillText::FormatBool(layout.mirrorVertical));
    tile->SetAttribute(X::attr::mediaType, Metadata::WideToUtf8(layout.tileMediaType));
    return true;
}

bool TiledPatternInfo::Read(Metadata::Container& metadata, const XmlNS::Node& node, ZipContainerImpl* context) {
    if (!FillInfo::Read(metadata, node, context)) return false;
    const Node* tiling = SelfOrChild(node, X::tilingInfo);
    if (!tiling || !SetUnits(Attribute(*tiling, X::attr::units))) return false;
    const Node* size = SelfOrBelow(*tiling, X::size);
    const Node* offset = SelfOrBelow(*tiling, X::offset);
    const Node* angle = SelfOrBelow(*tiling, X::angle);
    const Node* skew = SelfOrBelow(*tiling, X::skew);
    const Node* shift = SelfOrBelow(*tiling, X::rowColumnOffset);
    const Node* mirror = SelfOrBelow(*tiling, X::mirror);
    if (!size || !offset || !angle || !skew || !shift || !mirror) return false;
    layout.width = NumberAttribute(*size, X::attr::width);
    layout.height = NumberAttribute(*size, X::attr::height);
    layout.offsetX = NumberAttribute(*offset, X::attr::x);
    layout.offsetY = NumberAttribute(*offset, X::attr::y);
    layout.angle = FillText::ParseNumber(angle->Text());
    layout.skew = FillText::ParseNumber(skew->Text());
    const std::string_view shiftType = Attribute(*shift, X::attr::type);
    if (shiftType != "rows" && shiftType != "columns") return false;
    layout.byColumns = shiftType == "columns";
    layout.amount = NumberAttribute(*shift, X::attr::amount);
    layout.mirrorHorizontal = FillText::ParseBool(Attribute(*mirror, X::attr::horizontal));
    layout.mirrorVertical = FillText::ParseBool(Attribute(*mirror, X::attr::vertical));
    const Node* tile = SelfOrChild(node, X::tile);
    if (!tile) return false;
    layout.tile = Metadata::Utf8ToWide(tile->Text());
    layout.tileMediaType = WideAttribute(*tile, X::attr::mediaType);
    return true;
}
