// FountainFillInfo: a gradient fill. Its colour stops are kept by position;
// its placement is a matrix in memory and scale, angle and skew in the file.
// The words for type, spread, blend and the colour models are kept as text:
// only "pad", "simple" and "direct" mean something here (the defaults).
#pragma once

#include <map>

#include "fill/FillInfo.h"
#include "fill/FillText.h"
#include "fill/FountainMatrix.h"

struct FillColorStop {
    FillText::ColorModels color;
    double opacity = 1.0;
    BrmPlatform::BrmStringW blend = L"direct";
    double midpoint = 0.5;
    double position = 0;

    bool operator==(const FillColorStop&) const = default;
};

struct FountainSettings {
    BrmPlatform::BrmStringW type;
    double offsetX = 0, offsetY = 0;
    FillMatrix::Matrix matrix = FillMatrix::kIdentity;
    bool anisotropic = false;
    BrmPlatform::BrmStringW spread;  // "pad" after reading when absent
    BrmPlatform::BrmStringW blend;   // "simple" after reading when absent
    int steps = 0;
    double acceleration = 0;
    int ROP = 0;
    bool reverseColors = false;
    std::map<double, FillColorStop> stops;

    bool operator==(const FountainSettings&) const = default;
};

class FountainFillInfo : public FillInfo {
public:
    int GetKind() const override { return kFountainKind; }
    const char* GetTypeName() const override { return "fountain"; }
    bool IsFountain() const override { return true; }

    // Elements at their default are left out. A matrix that cannot be taken
    // apart into scale, angle and skew fails the write.
    bool Write(Metadata::Container& metadata, XmlNS::Node& node, ZipContainerImpl* context) const override;
    // `fountain` and `colors` are required; a zero scale or a skew that
    // makes no matrix fails.
    bool Read(Metadata::Container& metadata, const XmlNS::Node& node, ZipContainerImpl* context) override;
    std::unique_ptr<SubtypeInfo> Clone() const override { return std::make_unique<FountainFillInfo>(*this); }

    FountainSettings fountain;
};
