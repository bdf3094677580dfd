// Field tables of the complex data types of the current form.
#include "metadata/ComplexDataTypes.h"

#include "metadata/ComplexSchema.h"

namespace Metadata {

namespace S = ZipContainerSchema;
namespace CT = ComplexTypes;

namespace DataType {

std::span<const FieldSpec<RECT>> CgiRect::Fields() {
    static const FieldSpec<RECT> kFields[] = {
        LongField(S::rect::left, &RECT::left),
        LongField(S::rect::right, &RECT::right),
        LongField(S::rect::top, &RECT::top),
        LongField(S::rect::bottom, &RECT::bottom),
    };
    return kFields;
}

std::span<const FieldSpec<CT::EffectInfo>> EffectInfo::Fields() {
    using V = CT::EffectInfo;
    static const FieldSpec<V> kFields[] = {
        IntField(S::inEff::Perspective, &V::Perspective),
        IntField(S::inEff::Envelope, &V::Envelope),
        IntField(S::inEff::DropShadow, &V::DropShadow),
        IntField(S::inEff::Blend, &V::Blend),
        IntField(S::inEff::Extrude, &V::Extrude),
        IntField(S::inEff::Bevel, &V::Bevel),
        IntField(S::inEff::Contour, &V::Contour),
        IntField(S::inEff::PowerClip, &V::PowerClip),
        IntField(S::inEff::Clone, &V::Clone),
        IntField(S::inEff::Lens, &V::Lens),
        IntField(S::inEff::Transparency, &V::Transparency),
        IntField(S::inEff::Distortion, &V::Distortion),
    };
    return kFields;
}

std::span<const FieldSpec<CT::ObjectInfo>> ObjectInfo::Fields() {
    using V = CT::ObjectInfo;
    static const FieldSpec<V> kFields[] = {
        IntField(S::inObj::Total, &V::Total),
        IntField(S::inObj::Group, &V::Group),
        IntField(S::inObj::Curve, &V::Curve),
        IntField(S::inObj::Rect, &V::Rect),
        IntField(S::inObj::Bitmap, &V::Bitmap),
        IntField(S::inObj::Ellipse, &V::Ellipse),
        IntField(S::inObj::MeshFill, &V::MeshFill),
        IntField(S::inObj::Polygon, &V::Polygon),
        IntField(S::inObj::OLELinked, &V::OLELinked),
        IntField(S::inObj::OLEEmbedded, &V::OLEEmbedded),
        IntField(S::inObj::Guideline, &V::Guideline),
        IntField(S::inObj::SymbolDefinitions, &V::SymbolDefinitions),
        IntField(S::inObj::SymbolInstances, &V::SymbolInstances),
        IntField(S::inObj::Text, &V::Text),
    };
    return kFields;
}

std::span<const FieldSpec<CT::CurveInfo>> CurveInfo::Fields() {
    using V = CT::CurveInfo;
    static const FieldSpec<V> kFields[] = {
        IntField(S::inCrv::Subpaths, &V::Subpaths),
        IntField(S::inCrv::Nodes, &V::Nodes),
        IntField(S::inCrv::MaxNodes, &V::MaxNodes),
    };
    return kFields;
}

std::span<const FieldSpec<CT::BitmapInfo>> BitmapInfo::Fields() {
    using V = CT::BitmapInfo;
    static const FieldSpec<V> kFields[] = {
        IntListField(S::kvdinfo::Types, &V::Types),
        StringListField(S::kvdinfo::LinkPaths, &V::LinkPaths),
    };
    return kFields;
}

std::span<const FieldSpec<CT::TextInfo>> TextInfo::Fields() {
    using V = CT::TextInfo;
    static const FieldSpec<V> kFields[] = {
        IntField(S::inTxt::ParagraphText, &V::ParagraphText),
        IntField(S::inTxt::ArtisticText, &V::ArtisticText),
        IntField(S::inTxt::Frames, &V::Frames),
        IntField(S::inTxt::EmptyFrames, &V::EmptyFrames),
        IntField(S::inTxt::Paragraphs, &V::Paragraphs),
        IntField(S::inTxt::Lines, &V::Lines),
        IntField(S::inTxt::Words, &V::Words),
        IntField(S::inTxt::Characters, &V::Characters),
        IntField(S::inTxt::DocFormatterId, &V::DocFormatterId),
        IntListField(S::inTxt::Languages, &V::Languages),
    };
    return kFields;
}

std::span<const FieldSpec<CT::FillInfo>> FillInfo::Fields() {
    using V = CT::FillInfo;
    static const FieldSpec<V> kFields[] = {
        IntField(S::inFill::None, &V::None),
        IntField(S::inFill::Uniform, &V::Uniform),
        IntField(S::inFill::Fountain, &V::Fountain),
        IntField(S::inFill::Texture, &V::Texture),
        IntField(S::inFill::Postscript, &V::Postscript),
        IntField(S::inFill::Hatch, &V::Hatch),
        IntField(S::inFill::Pattern, &V::Pattern),
        StringListField(S::inFill::Colors, &V::Colors),
        StringListField(S::inFill::Palettes, &V::Palettes),
        StringListField(S::inFill::SpotColors, &V::SpotColors),
    };
    return kFields;
}

std::span<const FieldSpec<CT::OutlineInfo>> OutlineInfo::Fields() {
    using V = CT::OutlineInfo;
    static const FieldSpec<V> kFields[] = {
        IntField(S::inOtl::None, &V::None),
        IntField(S::inOtl::Solid, &V::Solid),
        IntField(S::inOtl::Dashed, &V::Dashed),
        IntField(S::inOtl::Enhanced, &V::Enhanced),
        IntField(S::inOtl::BehindFill, &V::BehindFill),
        IntField(S::inOtl::Hairline, &V::Hairline),
        IntField(S::inOtl::ScalePen, &V::ScalePen),
        StringListField(S::inOtl::Colors, &V::Colors),
        StringListField(S::inOtl::Palettes, &V::Palettes),
        StringListField(S::inOtl::SpotColors, &V::SpotColors),
    };
    return kFields;
}

std::span<const FieldSpec<CT::ColorInfo>> ColorInfo::Fields() {
    using V = CT::ColorInfo;
    static const FieldSpec<V> kFields[] = {
        StringField(S::inClr::RgbProfileName, &V::RgbProfileName),
        StringField(S::inClr::CmykProfileName, &V::CmykProfileName),
        StringField(S::inClr::GrayscaleProfileName, &V::GrayscaleProfileName),
        IntField(S::inClr::ColorMode, &V::ColorMode),
        IntField(S::inClr::RenderingIntent, &V::RenderingIntent),
    };
    return kFields;
}

}  // namespace DataType

namespace ComplexTypes {

std::span<const FieldSpec<ZipContainerSchema::OpenMetadataProperty>> OpenMetadataProperty::Fields() {
    using V = ZipContainerSchema::OpenMetadataProperty;
    static const FieldSpec<V> kFields[] = {
        GuidField(S::brm::fmtid, &V::formatId),
        IntField(S::brm::propid, &V::propertyId),
        StringField(S::brm::type, &V::type),
        BoolField(S::brm::array, &V::array),
        StringField(S::brm::value, &V::value),
    };
    return kFields;
}

}  // namespace ComplexTypes
}  // namespace Metadata
