// Vector patterns: tiling plus the crop of the drawing (see VectorPatternInfo.h).
#include "fill/VectorPatternInfo.h"

#include "fill/FillNames.h"
#include "fill/FillNodes.h"

namespace X = FillXml;
using namespace FillNodes;

namespace {

// The file holds 64-bit text; the model keeps the low 32 bits.
int32_t CropValue(const Node& crop, const QualifiedName& name) {
    return static_cast<int32_t>(static_cast<uint32_t>(FillText::ParseInt64(Attribute(crop, name))));
}

}  // namespace

bool VectorPatternInfo::SetUnits(std::string_view text) {
    return TiledPatternInfo::SetUnits(text.empty() ? "tmicrons" : text);
}

bool VectorPatternInfo::Write(Metadata::Container& metadata, XmlNS::Node& node, ZipContainerImpl* context) const {
    if (!TiledPatternInfo::Write(metadata, node, context)) return false;
    Node* info = node.AddChild(X::vectorTileInfo);
    Node* rect = info ? info->AddChild(X::crop) : nullptr;
    if (!rect) return false;
    rect->SetAttribute(X::attr::left, FillText::FormatInt(crop.left));
    rect->SetAttribute(X::attr::right, FillText::FormatInt(crop.right));
    rect->SetAttribute(X::attr::top, FillText::FormatInt(crop.top));
    rect->SetAttribute(X::attr::bottom, FillText::FormatInt(crop.bottom));
    return true;
}

bool VectorPatternInfo::Read(Metadata::Container& metadata, const XmlNS::Node& node, ZipContainerImpl* context) {
    if (!TiledPatternInfo::Read(metadata, node, context)) return false;
    const Node* info = SelfOrChild(node, X::vectorTileInfo);
    const Node* rect = info ? SelfOrBelow(*info, X::crop) : nullptr;
    if (!rect) return false;
    crop.left = CropValue(*rect, X::attr::left);
    crop.top = CropValue(*rect, X::attr::top);
    crop.right = CropValue(*rect, X::attr::right);
    crop.bottom = CropValue(*rect, X::attr::bottom);
    return true;
}
