// Load, read every row of, and save a metadata document: a typical one of
// about 8 KiB and a large one of about 1 MiB (long font and style lists and
// many extended properties, as a big drawing has).
#include <benchmark/benchmark.h>

#include <string>

#include "metadata/LegacySchema.h"
#include "metadata/Schema.h"

namespace {

namespace S = ZipContainerSchema;
namespace CT = Metadata::ComplexTypes;
using BrmPlatform::BrmStringW;
using Metadata::Container;

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
};

BrmStringW Numbered(const wchar_t* stem, int i) {
    BrmStringW s(stem);
    s += BrmStringW(std::to_wstring(i));
    return s;
}

// A document with every row set; `scale` repeats the list entries.
std::string MakeDocument(int scale) {
    Container m = Container::CreateEmpty();
    for (const wchar_t* lang : {L"en", L"de", L"fr"}) {
        m.SetLocalizedText(S::dc::title, lang, Numbered(L"A drawing title ", 1));
        m.SetLocalizedText(S::dc::description, lang, L"A longer description of what the drawing shows.");
        m.SetLocalizedText(S::brm::Keywords, lang, L"plan, floor, building, draft");
        m.SetLocalizedText(S::brm::Notes, lang, L"Checked by the second reviewer.");
    }
    for (const auto* row : {&S::dc::rights, &S::brm::Subject, &S::brm::Category}) m.SetPropertyText(*row, L"Text");
    m.SetPropertyText(S::dc::creator, L"Ann Author, Bob Builder");
    for (const auto* row : {&S::dc::format, &S::xmp::CreatorTool, &S::brm::LastAuthor, &S::brm::SubFormat,
                            &S::brm::Version, &S::kvt::Sided, &S::kvt::Folds, &S::kvt::Type, &S::kvt::Industry,
                            &S::kvd::ProductName, &S::kvdinfo::PageDimensions, &S::kvdinfo::PageSizeName}) {
        m.SetPropertyText(*row, L"some text value");
    }
    const SYSTEMTIME now{2024, 3, 0, 14, 9, 26, 53, 0};
    for (const auto* row : {&S::xmp::CreateDate, &S::xmp::ModifyDate, &S::xmp::MetadataDate}) m.SetProperty(*row, now);
    m.SetProperty(S::xmpMM::InstanceID, BrmUtils::Guid("0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9"));
    m.SetProperty(S::xmpMM::DocumentID, BrmUtils::Guid("0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8fa"));
    for (const auto* row : {&S::brm::Revision, &S::brm::Language, &S::kvd::Platform, &S::kvd::ProductId,
                            &S::kvd::CoreVersion, &S::kvd::AppVersion, &S::kvd::BuildNumber, &S::kvd::Locale,
                            &S::kvdinfo::NumPages, &S::kvdinfo::NumLayers, &S::kvdinfo::PageOrientation}) {
        m.SetProperty(*row, 1033);
    }
    for (const auto* row : {&S::kvdinfo::PageWidth, &S::kvdinfo::PageHeight, &S::kvdinfo::ResolutionX,
                            &S::kvdinfo::ResolutionY}) {
        m.SetProperty(*row, 210.25);
    }
    m.SetProperty(S::kvdinfo::EmbeddedOleObjects, true);
    m.SetProperty(S::kvdinfo::FontsEmbedded, false);
    m.SetProperty(S::kvd::ClipRect, RECT{0, 0, 210000, 297000});

    std::vector<BrmStringW> fonts, styles, colors;
    std::vector<BrmUtils::Guid> derived;
    std::vector<S::OpenMetadataProperty> extended;
    for (int i = 0; i < 6 * scale; ++i) {
        fonts.push_back(Numbered(L"Font Family Name ", i));
        styles.push_back(Numbered(L"Paragraph Style ", i));
        colors.push_back(Numbered(L"CMYK 0,0,0,", i));
    }
    for (int i = 0; i < 2 * scale; ++i) {
        derived.push_back(BrmUtils::Guid("11111111-2222-3333-4444-555555555555"));
        S::OpenMetadataProperty p;
        p.formatId = BrmUtils::Guid("d5cdd502-2e9c-101b-9397-08002b2cf9ae");
        p.propertyId = i;
        p.type = L"lpwstr";
        p.value = Numbered(L"extended value ", i);
        extended.push_back(p);
    }
    m.SetProperty(S::kvdinfo::FontsUsed, fonts);
    m.SetProperty(S::kvdinfo::Styles, styles);
    m.SetProperty(S::brm::DerivedFrom, derived);
    m.SetProperty(S::brm::OpenMetadata, extended);
    m.SetProperty(S::kvdinfo::Effects, CT::EffectInfo{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    m.SetProperty(S::kvdinfo::Objects, CT::ObjectInfo{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14});
    m.SetProperty(S::kvdinfo::CurveInfo, CT::CurveInfo{10, 200, 30});
    m.SetProperty(S::kvdinfo::BitmapInfo, CT::BitmapInfo{{1, 2}, {L"images/a.png", L"images/b.jpg"}});
    m.SetProperty(S::kvdinfo::TextInfo, CT::TextInfo{1, 2, 3, 4, 5, 6, 700, 4000, 9, {1033, 1031}});
    m.SetProperty(S::kvdinfo::FillInfo, CT::FillInfo{1, 2, 3, 4, 5, 6, 7, colors, {L"Default"}, {}});
    m.SetProperty(S::kvdinfo::OutlineInfo, CT::OutlineInfo{1, 2, 3, 4, 5, 6, 7, colors, {L"Default"}, {}});
    m.SetProperty(S::kvdinfo::ColorInfo, CT::ColorInfo{L"sRGB IEC61966-2.1", L"Coated", L"Dot Gain 20%", 1, 0});
    return m.SaveText();
}

void LoadReadSave(benchmark::State& state, const std::string& document) {
    for (auto _ : state) {
        Container m = Container::LoadText(document);
        for (const auto* row : kRows) benchmark::DoNotOptimize(m.GetProperty(*row));
        std::string saved = m.SaveText();
        benchmark::DoNotOptimize(saved.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(document.size()));
    state.counters["bytes"] = static_cast<double>(document.size());
}

void BM_Metadata_Typical8K(benchmark::State& state) {
    static const std::string document = MakeDocument(1);
    LoadReadSave(state, document);
}
BENCHMARK(BM_Metadata_Typical8K);

void BM_Metadata_Large1M(benchmark::State& state) {
    static const std::string document = MakeDocument(780);
    LoadReadSave(state, document);
}
BENCHMARK(BM_Metadata_Large1M)->Unit(benchmark::kMillisecond);

}  // namespace
