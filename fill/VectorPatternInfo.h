// VectorPatternInfo: a tiled fill whose tile is a vector drawing part, shown
// through a crop rectangle.
#pragma once

#include <cstdint>

#include "fill/TiledPatternInfo.h"

struct TileCrop {
    int32_t left = 0, top = 0, right = 0, bottom = 0;

    bool operator==(const TileCrop&) const = default;
};

class VectorPatternInfo : public TiledPatternInfo {
public:
    int GetKind() const override { return kVectorKind; }
    const char* GetTypeName() const override { return "vector-tiles"; }
    bool IsVectorPattern() const override { return true; }

    // A drawing's tile is measured in tenths of a micron unless the file
    // says otherwise.
    bool SetUnits(std::string_view text) override;

    bool Write(Metadata::Container& metadata, XmlNS::Node& node, ZipContainerImpl* context) const override;
    // vectorTileInfo and its crop are required.
    bool Read(Metadata::Container& metadata, const XmlNS::Node& node, ZipContainerImpl* context) override;
    std::unique_ptr<SubtypeInfo> Clone() const override { return std::make_unique<VectorPatternInfo>(*this); }

    TileCrop crop;
};
