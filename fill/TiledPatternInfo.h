// TiledPatternInfo: a fill that repeats one tile (a bitmap or a vector
// drawing stored as a part of the container) over the area, with its size,
// offset, rotation, skew, row or column shift and mirroring.
#pragma once

#include "fill/FillInfo.h"
#include "utils/strings/BrmString.h"

struct TileLayout {
    enum Units { kPixels = 0, kTenthMicrons = 1 };
    int units = kPixels;
    double width = 1.0, height = 1.0;
    double offsetX = 0, offsetY = 0;
    double angle = 0;
    double skew = 0;
    bool byColumns = false;  // the shift applies to columns, not rows
    double amount = 0;
    bool mirrorHorizontal = false, mirrorVertical = false;
    BrmPlatform::BrmStringW tile;  // part name of the tile
    BrmPlatform::BrmStringW tileMediaType;
    int tileIndex = -1;  // not stored in the file

    bool operator==(const TileLayout&) const = default;
};

class TiledPatternInfo : public FillInfo {
public:
    bool IsTiled() const override { return true; }

    // "pixels" or "tmicrons"; any other word is refused.
    virtual bool SetUnits(std::string_view text);

    bool Write(Metadata::Container& metadata, XmlNS::Node& node, ZipContainerImpl* context) const override;
    // Every tilingInfo element and `tile` are required.
    bool Read(Metadata::Container& metadata, const XmlNS::Node& node, ZipContainerImpl* context) override;

    TileLayout layout;
};
