// BitmapPatternInfo: a tiled fill whose tile is a bitmap part, with the
// named image filters applied to it.
#pragma once

#include <utility>
#include <vector>

#include "fill/TiledPatternInfo.h"

class BitmapPatternInfo : public TiledPatternInfo {
public:
    using Filter = std::pair<BrmPlatform::BrmStringW, BrmPlatform::BrmStringW>;  // name, value

    int GetKind() const override { return kBitmapKind; }
    const char* GetTypeName() const override { return "bitmap-tiles"; }
    bool IsBitmapPattern() const override { return true; }

    // A bitmap's tile is measured in pixels unless the file says otherwise.
    bool SetUnits(std::string_view text) override;

    // filterInfo only when there are filters.
    bool Write(Metadata::Container& metadata, XmlNS::Node& node, ZipContainerImpl* context) const override;
    bool Read(Metadata::Container& metadata, const XmlNS::Node& node, ZipContainerImpl* context) override;
    std::unique_ptr<SubtypeInfo> Clone() const override { return std::make_unique<BitmapPatternInfo>(*this); }

    std::vector<Filter> filters;
};
