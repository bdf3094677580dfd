// The value structures of complex metadata properties: the document
// statistics the drawing application stores, and one extended property.
// Counts are 32-bit with default 0; the meaning of codes (formatter ids,
// bitmap types, languages, colour modes) is the application's.
#pragma once

#include <vector>

#include "utils/Guid.h"
#include "utils/strings/BrmString.h"

namespace Metadata::ComplexTypes {

using BrmPlatform::BrmStringW;

struct EffectInfo {
    int Perspective = 0;
    int Envelope = 0;
    int DropShadow = 0;
    int Blend = 0;
    int Extrude = 0;
    int Bevel = 0;
    int Contour = 0;
    int PowerClip = 0;
    int Clone = 0;
    int Lens = 0;
    int Transparency = 0;
    int Distortion = 0;

    friend bool operator==(const EffectInfo&, const EffectInfo&) = default;
};

struct ObjectInfo {
    int Total = 0;
    int Group = 0;
    int Curve = 0;
    int Rect = 0;
    int Bitmap = 0;
    int Ellipse = 0;
    int MeshFill = 0;
    int Polygon = 0;
    int OLELinked = 0;
    int OLEEmbedded = 0;
    int Guideline = 0;
    int SymbolDefinitions = 0;
    int SymbolInstances = 0;
    int Text = 0;

    friend bool operator==(const ObjectInfo&, const ObjectInfo&) = default;
};

struct CurveInfo {
    int Subpaths = 0;
    int Nodes = 0;
    int MaxNodes = 0;

    friend bool operator==(const CurveInfo&, const CurveInfo&) = default;
};

struct BitmapInfo {
    std::vector<int> Types;
    std::vector<BrmStringW> LinkPaths;

    friend bool operator==(const BitmapInfo&, const BitmapInfo&) = default;
};

struct TextInfo {
    int ParagraphText = 0;
    int ArtisticText = 0;
    int Frames = 0;
    int EmptyFrames = 0;
    int Paragraphs = 0;
    int Lines = 0;
    int Words = 0;
    int Characters = 0;
    int DocFormatterId = 0;
    std::vector<int> Languages;

    friend bool operator==(const TextInfo&, const TextInfo&) = default;
};

struct FillInfo {
    int None = 0;
    int Uniform = 0;
    int Fountain = 0;
    int Texture = 0;
    int Postscript = 0;
    int Hatch = 0;
    int Pattern = 0;
    std::vector<BrmStringW> Colors;
    std::vector<BrmStringW> Palettes;
    std::vector<BrmStringW> SpotColors;

    friend bool operator==(const FillInfo&, const FillInfo&) = default;
};

struct OutlineInfo {
    int None = 0;
    int Solid = 0;
    int Dashed = 0;
    int Enhanced = 0;
    int BehindFill = 0;
    int ScalePen = 0;
    int Hairline = 0;
    std::vector<BrmStringW> Colors;
    std::vector<BrmStringW> Palettes;
    std::vector<BrmStringW> SpotColors;

    friend bool operator==(const OutlineInfo&, const OutlineInfo&) = default;
};

struct ColorInfo {
    BrmStringW RgbProfileName;
    BrmStringW CmykProfileName;
    BrmStringW GrayscaleProfileName;
    int ColorMode = 0;
    int RenderingIntent = 0;

    friend bool operator==(const ColorInfo&, const ColorInfo&) = default;
};

}  // namespace Metadata::ComplexTypes

namespace ZipContainerSchema {

// One extended property: a property key and the text form of its value
// (type word such as "ushort", array flag, value text).
struct OpenMetadataProperty {
    BrmUtils::Guid formatId;
    int propertyId = 0;
    BrmPlatform::BrmStringW type;
    bool array = false;
    BrmPlatform::BrmStringW value;

    friend bool operator==(const OpenMetadataProperty&, const OpenMetadataProperty&) = default;
};

}  // namespace ZipContainerSchema
