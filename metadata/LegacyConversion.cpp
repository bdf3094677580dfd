// The two whole-document conversions between the legacy and the current
// metadata form, row by row through one table.
#include "metadata/LegacyConversion.h"

#include "metadata/LegacySchema.h"
#include "metadata/Schema.h"

namespace Metadata {

namespace {

namespace L = ZipContainerSchema::legacykvd;
namespace S = ZipContainerSchema;

// "value" rows carry the Any as it is; "text" rows go through the text
// forms, so a legacy string becomes a default entry or a split list.
enum class Kind { Value, Text };

struct Mapping {
    const PropertyDescriptor* legacy;
    const PropertyDescriptor* current;
    Kind kind;
};

// In conversion order. The Boolean rows, the identifier and the
// compression ratio are handled apart.
constexpr Mapping kTable[] = {
    {&L::FontsUsed, &S::kvdinfo::FontsUsed, Kind::Value},
    {&L::CoreVersion, &S::kvd::CoreVersion, Kind::Value},
    {&L::Keywords, &S::brm::Keywords, Kind::Text},
    {&L::Notes, &S::brm::Notes, Kind::Text},
    {&L::Title, &S::dc::title, Kind::Value},
    {&L::Author, &S::dc::creator, Kind::Text},
    {&L::Subject, &S::brm::Subject, Kind::Text},
    {&L::Copyright, &S::dc::rights, Kind::Text},
    {&L::Revision, &S::brm::Revision, Kind::Value},
    {&L::LastAuthor, &S::brm::LastAuthor, Kind::Text},
    {&L::Sided, &S::kvt::Sided, Kind::Text},
    {&L::Folds, &S::kvt::Folds, Kind::Text},
    {&L::Type, &S::kvt::Type, Kind::Text},
    {&L::Industry, &S::kvt::Industry, Kind::Text},
    {&L::ProductId, &S::kvd::ProductId, Kind::Value},
    {&L::ProductName, &S::kvd::ProductName, Kind::Text},
    {&L::AppVersion, &S::kvd::AppVersion, Kind::Value},
    {&L::BuildNumber, &S::kvd::BuildNumber, Kind::Value},
    {&L::Platform, &S::kvd::Platform, Kind::Value},
    {&L::Locale, &S::kvd::Locale, Kind::Value},
    {&L::NumPages, &S::kvdinfo::NumPages, Kind::Value},
    {&L::NumLayers, &S::kvdinfo::NumLayers, Kind::Value},
    {&L::Language, &S::brm::Language, Kind::Value},
    {&L::PageWidth, &S::kvdinfo::PageWidth, Kind::Value},
    {&L::PageHeight, &S::kvdinfo::PageHeight, Kind::Value},
    {&L::PageDimensions, &S::kvdinfo::PageDimensions, Kind::Text},
    {&L::PageSizeName, &S::kvdinfo::PageSizeName, Kind::Text},
    {&L::PageOrientation, &S::kvdinfo::PageOrientation, Kind::Value},
    {&L::ResolutionX, &S::kvdinfo::ResolutionX, Kind::Value},
    {&L::ResolutionY, &S::kvdinfo::ResolutionY, Kind::Value},
    {&L::Effects, &S::kvdinfo::Effects, Kind::Value},
    {&L::Objects, &S::kvdinfo::Objects, Kind::Value},
    {&L::CurveInfo, &S::kvdinfo::CurveInfo, Kind::Value},
    {&L::BitmapInfo, &S::kvdinfo::BitmapInfo, Kind::Value},
    {&L::TextInfo, &S::kvdinfo::TextInfo, Kind::Value},
    {&L::Styles, &S::kvdinfo::Styles, Kind::Value},
    {&L::Fills, &S::kvdinfo::FillInfo, Kind::Value},
    {&L::Outlines, &S::kvdinfo::OutlineInfo, Kind::Value},
    {&L::ClipRect, &S::kvd::ClipRect, Kind::Value},
    {&L::Color, &S::kvdinfo::ColorInfo, Kind::Value},
    {&L::Properties, &S::brm::OpenMetadata, Kind::Value},
};

// Index of the first row after Locale, where the backward conversion
// inserts its special rows.
constexpr std::size_t kAfterLocale = 20;
static_assert(kTable[kAfterLocale - 1].legacy == &L::Locale);

void Copy(Container& from, Container& to, const PropertyDescriptor& source, const PropertyDescriptor& target,
          Kind kind) {
    if (kind == Kind::Text) {
        to.SetPropertyText(target, from.GetPropertyText(source));
    } else {
        to.SetProperty(target, from.GetProperty(source));
    }
}

}  // namespace

Container ConvertLegacyToCurrent(Container& source) {
    Container result = Container::CreateEmpty();
    for (const Mapping& m : kTable) Copy(source, result, *m.legacy, *m.current, m.kind);

    // Missing flags become false.
    result.SetProperty(S::kvdinfo::EmbeddedOleObjects,
                       Any(source.GetProperty(L::EmbeddedOleObjects).GetValue<int>(0) != 0));
    result.SetProperty(S::kvdinfo::FontsEmbedded, Any(source.GetProperty(L::FontsEmbedded).GetValue<int>(0) != 0));

    const Any id(source.GetProperty(L::DocID).GetValue<BrmUtils::Guid>());
    result.SetProperty(S::xmpMM::InstanceID, id);
    result.SetProperty(S::xmpMM::DocumentID, id);
    return result;
}

Container ConvertCurrentToLegacy(Container& source) {
    Container result = Container::CreateEmpty();
    for (std::size_t i = 0; i < kAfterLocale; ++i) {
        Copy(source, result, *kTable[i].current, *kTable[i].legacy, kTable[i].kind);
    }

    result.SetProperty(L::RiffCompressionRatio, Any(0.0));
    result.SetProperty(L::EmbeddedOleObjects,
                       Any(source.GetProperty(S::kvdinfo::EmbeddedOleObjects).GetValue<bool>(false) ? 1 : 0));
    result.SetProperty(L::FontsEmbedded,
                       Any(source.GetProperty(S::kvdinfo::FontsEmbedded).GetValue<bool>(false) ? 1 : 0));
    Copy(source, result, S::brm::Language, L::Language, Kind::Value);
    // The instance identifier becomes the document's; the current form's
    // document identifier has no legacy place.
    result.SetProperty(L::DocID, source.GetProperty(S::xmpMM::InstanceID));

    for (std::size_t i = kAfterLocale; i < std::size(kTable); ++i) {
        if (kTable[i].legacy == &L::Language) continue;
        Copy(source, result, *kTable[i].current, *kTable[i].legacy, kTable[i].kind);
    }
    return result;
}

}  // namespace Metadata
