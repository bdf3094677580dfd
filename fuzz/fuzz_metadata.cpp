// Loads arbitrary bytes as a metadata document, reads every schema row and
// the text streams, writes a few rows, and saves and loads the result again.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "metadata/LegacyConversion.h"
#include "metadata/LegacySchema.h"
#include "metadata/Schema.h"
#include "metadata/TextStreams.h"

namespace {

namespace S = ZipContainerSchema;
namespace L = ZipContainerSchema::legacykvd;

const Metadata::PropertyDescriptor* const kRows[] = {
    &S::dc::title, &S::dc::description, &S::dc::rights, &S::dc::creator, &S::dc::format, &S::xmp::CreateDate,
    &S::xmp::ModifyDate, &S::xmp::MetadataDate, &S::xmp::CreatorTool, &S::xmpMM::InstanceID, &S::xmpMM::DocumentID,
    &S::brm::Subject, &S::brm::Keywords, &S::brm::Notes, &S::brm::Category, &S::brm::LastAuthor, &S::brm::Revision,
    &S::brm::Language, &S::brm::SubFormat, &S::brm::Version, &S::brm::DerivedFrom, &S::brm::OpenMetadata,
    &S::kvt::Sided, &S::kvt::Folds, &S::kvt::Type, &S::kvt::Industry, &S::kvd::Platform, &S::kvd::ClipRect,
    &S::kvd::ProductId, &S::kvd::ProductName, &S::kvd::CoreVersion, &S::kvd::AppVersion, &S::kvd::BuildNumber,
    &S::kvd::Locale, &S::kvdinfo::NumPages, &S::kvdinfo::NumLayers, &S::kvdinfo::PageWidth, &S::kvdinfo::PageHeight,
    &S::kvdinfo::PageDimensions, &S::kvdinfo::PageSizeName, &S::kvdinfo::PageOrientation, &S::kvdinfo::ResolutionX,
    &S::kvdinfo::ResolutionY, &S::kvdinfo::EmbeddedOleObjects, &S::kvdinfo::FontsEmbedded, &S::kvdinfo::FontsUsed,
    &S::kvdinfo::Styles, &S::kvdinfo::Effects, &S::kvdinfo::Objects, &S::kvdinfo::CurveInfo, &S::kvdinfo::BitmapInfo,
    &S::kvdinfo::TextInfo, &S::kvdinfo::FillInfo, &S::kvdinfo::OutlineInfo, &S::kvdinfo::ColorInfo,
    &L::Title, &L::Author, &L::Objects, &L::Color, &L::ClipRect, &L::Properties, &L::Fills, &L::DocID,
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    Metadata::Container m = Metadata::Container::LoadText(text);
    for (const auto* row : kRows) {
        BrmUtils::Any value = m.GetProperty(*row);
        m.GetPropertyText(*row);
        m.GetLocalizedText(*row, L"de", false);
        // Writing back what was read must not fail either.
        if (!value.IsEmpty()) m.SetProperty(*row, value);
    }
    Metadata::ReadTextStreams(m);
    m.SetLocalizedText(S::dc::title, L"en", L"fuzz");
    m.SetPropertyText(S::dc::creator, L"a, b");
    Metadata::Container current = Metadata::ConvertLegacyToCurrent(m);
    Metadata::Container legacy = Metadata::ConvertCurrentToLegacy(current);
    Metadata::Container again = Metadata::Container::LoadText(m.SaveText());
    again.GetProperty(S::kvdinfo::Effects);
    return 0;
}
