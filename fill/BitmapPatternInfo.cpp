// Bitmap patterns: tiling plus filters (see BitmapPatternInfo.h).
#include "fill/BitmapPatternInfo.h"

#include "fill/FillNames.h"
#include "fill/FillNodes.h"

namespace X = FillXml;
using namespace FillNodes;

bool BitmapPatternInfo::SetUnits(std::string_view text) {
    return TiledPatternInfo::SetUnits(text.empty() ? "pixels" : text);
}

bool BitmapPatternInfo::Write(Metadata::Container& metadata, XmlNS::Node& node, ZipContainerImpl* context) const {
    if (!TiledPatternInfo::Write(metadata, node, context)) return false;
    if (filters.empty()) return true;
    Node* info = node.AddChild(X::filterInfo);
    if (!info) return false;
    for (const auto& [name, value] : filters) {
        Node* filter = info->AddChild(X::filter, Metadata::WideToUtf8(value));
        if (!filter) return false;
        filter->SetAttribute(X::attr::name, Metadata::WideToUtf8(name));
    }
    return true;
}

bool BitmapPatternInfo::Read(Metadata::Container& metadata, const XmlNS::Node& node, ZipContainerImpl* context) {
    if (!TiledPatternInfo::Read(metadata, node, context)) return false;
    filters.clear();
    const Node* info = SelfOrChild(node, X::filterInfo);
    if (!info) return true;
    for (const auto& child : info->Children()) {
        if (!child->HasName(X::filter)) continue;
        const std::string* name = child->GetAttribute(X::attr::name);
        if (!name) return false;
        filters.emplace_back(Metadata::Utf8ToWide(*name), Metadata::Utf8ToWide(child->Text()));
    }
    return true;
}
