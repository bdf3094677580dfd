// The property catalogue of the container drawing reader: which metadata
// tag answers each key, in either layout, and how its value is shown.
//
// Unlike the RIFF reader, a missing text here reads as an empty string with
// success, and a missing number as 0: hosts of these documents have always
// seen the rows filled.
#include <algorithm>
#include <cwctype>

#include "fileinfo/CategoryTables.h"
#include "fileinfo/KvdContainerInfo.h"
#include "fileinfo/LanguageTable.h"
#include "fileinfo/PropertyKeys.h"
#include "fileinfo/ResourceManager.h"
#include "metadata/LegacySchema.h"
#include "metadata/Schema.h"
#include "platform/Locale.h"
#include "utils/props/PropVariantConvert.h"

namespace {

using BrmPlatform::BrmStringW;
using StringList = std::vector<BrmStringW>;
namespace Current = ZipContainerSchema;
namespace Legacy = ZipContainerSchema::legacykvd;
namespace Types = Metadata::ComplexTypes;
namespace Keys = PropertyKeys;

// String numbers of the display texts.
constexpr uint32_t kTextColourModes[] = {1048, 1049, 1050};
constexpr uint32_t kTextIntents[] = {1051, 1052, 1053, 1054};
constexpr uint32_t kTextPortrait = 1055;
constexpr uint32_t kTextLandscape = 1056;
constexpr uint32_t kTextOle = 1018;

HRESULT Empty(PROPVARIANT* value) {
    value->vt = VT_EMPTY;
    return S_FALSE;
}

HRESULT Text(const BrmStringW& text, PROPVARIANT* value) { return BrmUtils::StringToPropVariant(text.GetString(), value); }

HRESULT Int(int number, PROPVARIANT* value) {
    value->vt = VT_I4;
    value->lVal = number;
    return S_OK;
}

// The lower-case two-letter code of the system's UI language ("en").
BrmStringW UiLanguage() {
    char name[32] = {};
    if (!LocaleNameFromLangId(GetSystemDefaultUILanguage(), name, sizeof name)) return L"en";
    BrmStringW code;
    for (const char* c = name; *c && *c != '-' && *c != '_'; ++c) code.AppendChar(wchar_t(std::towlower(wint_t(*c))));
    return code;
}

BrmStringW LoadText(uint32_t id) { return ShellExt::ResourceManager::Instance().LoadStringW(id); }

// A list sorted by text, as a list or joined.
HRESULT SortedList(StringList items, VARTYPE type, PROPVARIANT* value) {
    std::sort(items.begin(), items.end(), [](const BrmStringW& a, const BrmStringW& b) { return a.Compare(b) < 0; });
    return BrmUtils::ListToPropVariant(items, type, value);
}

// One row of a kinds table: a count and the text that names the kind.
struct Kind {
    int count;
    uint32_t textId;
};

HRESULT KindsList(std::initializer_list<Kind> kinds, VARTYPE type, PROPVARIANT* value) {
    StringList names;
    for (const Kind& kind : kinds) {
        if (kind.count > 0) names.push_back(LoadText(kind.textId));
    }
    return SortedList(std::move(names), type, value);
}

// The fill's list, then what the outline's adds; whole strings, case-sensitive.
HRESULT Union(const StringList& fill, const StringList& outline, VARTYPE type, PROPVARIANT* value) {
    if (type != VT_LPWSTR && type != (VT_VECTOR | VT_LPWSTR)) {
        value->vt = VT_EMPTY;
        return E_INVALIDARG;
    }
    StringList items = fill;
    for (const BrmStringW& item : outline) {
        if (std::none_of(items.begin(), items.end(), [&](const BrmStringW& have) { return have == item; })) {
            items.push_back(item);
        }
    }
    return SortedList(std::move(items), type, value);
}

bool VariantText(const PROPVARIANT* value, BrmStringW& text) { return value && BrmUtils::PropVariantToString(*value, text); }

}  // namespace

void KvdContainerInfo::BuildCatalogue() {
    OpenGroup(kGroupDescription);
    AddProperty(Keys::kTitle, PropTypesText, &KvdContainerInfo::GetTitle, &KvdContainerInfo::SetTitle);
    AddProperty(Keys::kSubject, PropTypesText, &KvdContainerInfo::GetSubject, &KvdContainerInfo::SetSubject);
    AddProperty(Keys::kKeywords, PropTypesList, &KvdContainerInfo::GetKeywords, &KvdContainerInfo::SetKeywords);
    AddProperty(Keys::kComments, PropTypesText, &KvdContainerInfo::GetComments, &KvdContainerInfo::SetComments);
    AddProperty(Keys::kCategory, PropTypesText, &KvdContainerInfo::GetCategory, &KvdContainerInfo::SetCategory);
    CloseGroup();

    OpenGroup(kGroupOrigin);
    AddProperty(Keys::kAuthor, PropTypesList, &KvdContainerInfo::GetAuthor, &KvdContainerInfo::SetAuthor);
    AddProperty(Keys::kLastAuthor, PropTypesText, &KvdContainerInfo::GetLastAuthor);
    AddProperty(Keys::kApplication, PropTypesText, &KvdContainerInfo::GetApplication);
    AddProperty(Keys::kAppVersion, PropTypesText, &KvdContainerInfo::GetAppVersion);
    AddProperty(Keys::kFormatVersion, PropTypesText, &KvdContainerInfo::GetFormatVersion);
    AddProperty(Keys::kRevision, PropTypesText, &KvdContainerInfo::GetRevision, &KvdContainerInfo::SetRevision);
    AddProperty(Keys::kCopyright, PropTypesText, &KvdContainerInfo::GetCopyright, &KvdContainerInfo::SetCopyright);
    CloseGroup();

    OpenGroup(kGroupGeneral);
    AddProperty(Keys::kPageCount, PropTypesI4, &KvdContainerInfo::GetPages);
    AddProperty(Keys::kParagraphCount, PropTypesI4, &KvdContainerInfo::GetParagraphs);
    AddProperty(Keys::kLineCount, PropTypesI4, &KvdContainerInfo::GetLines);
    AddProperty(Keys::kWordCount, PropTypesI4, &KvdContainerInfo::GetWords);
    AddProperty(Keys::kCharCount, PropTypesI4, &KvdContainerInfo::GetCharacters);
    AddProperty(Keys::kResolutionX, PropTypesR8, &KvdContainerInfo::GetResolutionX);
    AddProperty(Keys::kResolutionY, PropTypesR8, &KvdContainerInfo::GetResolutionY);
    AddProperty(Keys::kDimensions, PropTypesText, &KvdContainerInfo::GetDimensions);
    AddProperty(Keys::kFonts, PropTypesList, &KvdContainerInfo::GetFonts);
    AddProperty(Keys::kLanguages, PropTypesList, &KvdContainerInfo::GetLanguages);
    AddProperty(Keys::kPageSize, PropTypesText, &KvdContainerInfo::GetPageSize);
    AddProperty(Keys::kOrientation, PropTypesNumberText, &KvdContainerInfo::GetOrientation);
    AddProperty(Keys::kFontsEmbedded, PropTypesBool, &KvdContainerInfo::GetFontsEmbedded);
    CloseGroup();

    OpenGroup(kGroupContents);
    AddProperty(Keys::kObjectCount, PropTypesI4, &KvdContainerInfo::GetObjectCount);
    AddProperty(Keys::kLinks, PropTypesList, &KvdContainerInfo::GetLinks);
    AddProperty(Keys::kPageNames, PropTypesList, &KvdContainerInfo::GetPageNames);
    AddProperty(Keys::kLayerNames, PropTypesList, &KvdContainerInfo::GetLayerNames);
    AddProperty(Keys::kObjectNames, PropTypesList, &KvdContainerInfo::GetObjectNames);
    AddProperty(Keys::kObjectKinds, PropTypesList, &KvdContainerInfo::GetObjectKinds);
    AddProperty(Keys::kFills, PropTypesList, &KvdContainerInfo::GetFills);
    AddProperty(Keys::kOutlines, PropTypesList, &KvdContainerInfo::GetOutlines);
    AddProperty(Keys::kEffects, PropTypesList, &KvdContainerInfo::GetEffects);
    AddProperty(Keys::kStyles, PropTypesList, &KvdContainerInfo::GetStyles);
    CloseGroup();

    OpenGroup(kGroupFontsColours);
    AddProperty(Keys::kPalettes, PropTypesList, &KvdContainerInfo::GetPalettes);
    AddProperty(Keys::kColours, PropTypesList, &KvdContainerInfo::GetColours);
    AddProperty(Keys::kSpotColours, PropTypesList, &KvdContainerInfo::GetSpotColours);
    AddProperty(Keys::kRgbProfile, PropTypesText, &KvdContainerInfo::GetRgbProfile);
    AddProperty(Keys::kCmykProfile, PropTypesText, &KvdContainerInfo::GetCmykProfile);
    AddProperty(Keys::kGreyProfile, PropTypesText, &KvdContainerInfo::GetGreyProfile);
    AddProperty(Keys::kDocumentColourMode, PropTypesNumberText, &KvdContainerInfo::GetColourMode);
    AddProperty(Keys::kRenderingIntent, PropTypesNumberText, &KvdContainerInfo::GetRenderingIntent);
    CloseGroup();

    AddProperty(Keys::kResolutionUnit, PropTypesI2, &KvdContainerInfo::GetResolutionUnit);
    AddProperty(Keys::kTemplateSides, PropTypesText, &KvdContainerInfo::GetSides);
    AddProperty(Keys::kTemplateFolds, PropTypesText, &KvdContainerInfo::GetFolds);
    AddProperty(Keys::kTemplateType, PropTypesText, &KvdContainerInfo::GetTemplateType);
    AddProperty(Keys::kTemplateIndustry, PropTypesText, &KvdContainerInfo::GetIndustry);
}

// ---- Shared forms ----------------------------------------------------------

// The legacy title is multilingual too, spread over one tag per language;
// the metadata layer's localized access knows only the XMP form, so the
// title's value is taken and put back whole here.
HRESULT KvdContainerInfo::LocalizedText(const Row& row, PROPVARIANT* value) {
    if (row.HasType<Metadata::DataType::Legacy::TitleArray>()) {
        const auto title = BrmUtils::AnyCast<Metadata::MultiLanguageString>(metadata.GetProperty(row), {});
        return Text(title.GetBest(UiLanguage()), value);
    }
    return Text(metadata.GetLocalizedText(row, UiLanguage(), false), value);
}

HRESULT KvdContainerInfo::StoreLocalizedText(const Row& row, const PROPVARIANT* value) {
    BrmStringW text;
    if (!VariantText(value, text)) return E_INVALIDARG;
    if (row.HasType<Metadata::DataType::Legacy::TitleArray>()) {
        auto title = BrmUtils::AnyCast<Metadata::MultiLanguageString>(metadata.GetProperty(row), {});
        title.Set(UiLanguage(), text);
        metadata.SetProperty(row, BrmUtils::Any(title));
        return S_OK;
    }
    metadata.SetLocalizedText(row, UiLanguage(), text);
    return S_OK;
}

HRESULT KvdContainerInfo::PlainText(const Row& row, PROPVARIANT* value) { return Text(metadata.GetPropertyText(row), value); }

HRESULT KvdContainerInfo::Integer(const Row& row, PROPVARIANT* value) {
    return Int(BrmUtils::AnyCast<int>(metadata.GetProperty(row), 0), value);
}

HRESULT KvdContainerInfo::List(Metadata::Container& from, const Row& row, VARTYPE type, PROPVARIANT* value) {
    return BrmUtils::ListToPropVariant(BrmUtils::AnyCast<StringList>(from.GetProperty(row), StringList()), type, value);
}

template <typename Info>
Info KvdContainerInfo::Structure(const Row& current, const Row& legacy) {
    return BrmUtils::AnyCast<Info>(metadata.GetProperty(Pick(current, legacy)), Info());
}

// ---- Description -----------------------------------------------------------

HRESULT KvdContainerInfo::GetTitle(VARTYPE, PROPVARIANT* value) {
    return LocalizedText(Pick(Current::dc::title, Legacy::Title), value);
}
HRESULT KvdContainerInfo::SetTitle(VARTYPE, const PROPVARIANT* value) {
    return StoreLocalizedText(Pick(Current::dc::title, Legacy::Title), value);
}
HRESULT KvdContainerInfo::GetSubject(VARTYPE, PROPVARIANT* value) {
    return LocalizedText(Pick(Current::brm::Subject, Legacy::Subject), value);
}
HRESULT KvdContainerInfo::SetSubject(VARTYPE, const PROPVARIANT* value) {
    return StoreLocalizedText(Pick(Current::brm::Subject, Legacy::Subject), value);
}
HRESULT KvdContainerInfo::GetComments(VARTYPE, PROPVARIANT* value) {
    return LocalizedText(Pick(Current::brm::Notes, Legacy::Notes), value);
}
HRESULT KvdContainerInfo::SetComments(VARTYPE, const PROPVARIANT* value) {
    return StoreLocalizedText(Pick(Current::brm::Notes, Legacy::Notes), value);
}
HRESULT KvdContainerInfo::GetCopyright(VARTYPE, PROPVARIANT* value) {
    return LocalizedText(Pick(Current::dc::rights, Legacy::Copyright), value);
}
HRESULT KvdContainerInfo::SetCopyright(VARTYPE, const PROPVARIANT* value) {
    return StoreLocalizedText(Pick(Current::dc::rights, Legacy::Copyright), value);
}

// Every language's keywords in one text, in the order of the language table.
HRESULT KvdContainerInfo::GetKeywords(VARTYPE type, PROPVARIANT* value) {
    BrmStringW all;
    if (IsLegacy()) {
        all = metadata.GetLocalizedText(Legacy::Keywords, UiLanguage(), false);
    } else {
        for (const ShellExt::LanguageRow& row : ShellExt::kLanguageTable) {
            BrmStringW text = metadata.GetLocalizedText(Current::brm::Keywords, row.code, true);
            if (text.IsEmpty()) continue;
            if (!all.IsEmpty()) all += L", ";
            all += text;
        }
    }
    return BrmUtils::SplitListToPropVariant(all.GetString(), type, value);
}
HRESULT KvdContainerInfo::SetKeywords(VARTYPE, const PROPVARIANT* value) {
    return StoreLocalizedText(Pick(Current::brm::Keywords, Legacy::Keywords), value);
}

HRESULT KvdContainerInfo::GetCategory(VARTYPE, PROPVARIANT* value) {
    BrmStringW text = IsLegacy() ? BrmStringW() : metadata.GetLocalizedText(Current::brm::Category, UiLanguage(), false);
    BrmStringW type = metadata.GetPropertyText(Pick(Current::kvt::Type, Legacy::Type));
    return Text(CategoryTables::TranslateCategory(text, type, UiLanguage()), value);
}
HRESULT KvdContainerInfo::SetCategory(VARTYPE, const PROPVARIANT* value) {
    return StoreLocalizedText(Pick(Current::brm::Category, Legacy::Type), value);
}

// ---- Origin ----------------------------------------------------------------

HRESULT KvdContainerInfo::GetAuthor(VARTYPE type, PROPVARIANT* value) {
    return BrmUtils::SplitListToPropVariant(metadata.GetPropertyText(Pick(Current::dc::creator, Legacy::Author)), type,
                                            value);
}
// The current form keeps one list entry per author; the legacy form one text.
HRESULT KvdContainerInfo::SetAuthor(VARTYPE, const PROPVARIANT* value) {
    StringList authors;
    if (!value || !BrmUtils::PropVariantToList(*value, authors)) return E_INVALIDARG;
    if (!IsLegacy()) {
        metadata.SetProperty(Current::dc::creator, BrmUtils::Any(authors));
        return S_OK;
    }
    BrmStringW joined;
    for (const BrmStringW& author : authors) {
        if (!joined.IsEmpty()) joined += L"; ";
        joined += author;
    }
    metadata.SetPropertyText(Legacy::Author, joined);
    return S_OK;
}

HRESULT KvdContainerInfo::GetLastAuthor(VARTYPE, PROPVARIANT* value) {
    return PlainText(Pick(Current::brm::LastAuthor, Legacy::LastAuthor), value);
}
HRESULT KvdContainerInfo::GetApplication(VARTYPE, PROPVARIANT* value) {
    return PlainText(Pick(Current::kvd::ProductName, Legacy::ProductName), value);
}

HRESULT KvdContainerInfo::GetAppVersion(VARTYPE, PROPVARIANT* value) {
    const int version = BrmUtils::AnyCast<int>(metadata.GetProperty(Pick(Current::kvd::AppVersion, Legacy::AppVersion)), 0);
    const int build = BrmUtils::AnyCast<int>(metadata.GetProperty(Pick(Current::kvd::BuildNumber, Legacy::BuildNumber)), 0);
    BrmStringW text;
    if (version > 0) text.Format(L"%d.%d.%d.%d", version / 100, version % 100, 0, build);
    return Text(text, value);
}

HRESULT KvdContainerInfo::GetFormatVersion(VARTYPE, PROPVARIANT* value) {
    const int version = BrmUtils::AnyCast<int>(metadata.GetProperty(Pick(Current::kvd::CoreVersion, Legacy::CoreVersion)), 0);
    BrmStringW text;
    if (version > 0) text.Format(L"%d.%02d", version / 100, version % 100);
    return Text(text, value);
}

HRESULT KvdContainerInfo::GetRevision(VARTYPE, PROPVARIANT* value) {
    BrmStringW text;
    text.Format(L"%d", BrmUtils::AnyCast<int>(metadata.GetProperty(Pick(Current::brm::Revision, Legacy::Revision)), 0));
    return Text(text, value);
}
// Decimal text; what does not read as a number stores 0.
HRESULT KvdContainerInfo::SetRevision(VARTYPE, const PROPVARIANT* value) {
    BrmStringW text;
    if (!VariantText(value, text)) return E_INVALIDARG;
    const int number = int(std::wcstol(text.GetString(), nullptr, 10));
    metadata.SetProperty(Pick(Current::brm::Revision, Legacy::Revision), BrmUtils::Any(number));
    return S_OK;
}

// ---- General ---------------------------------------------------------------

HRESULT KvdContainerInfo::GetPages(VARTYPE, PROPVARIANT* value) {
    return Integer(Pick(Current::kvdinfo::NumPages, Legacy::NumPages), value);
}
HRESULT KvdContainerInfo::GetParagraphs(VARTYPE, PROPVARIANT* value) {
    return Int(Structure<Types::TextInfo>(Current::kvdinfo::TextInfo, Legacy::TextInfo).Paragraphs, value);
}
HRESULT KvdContainerInfo::GetLines(VARTYPE, PROPVARIANT* value) {
    return Int(Structure<Types::TextInfo>(Current::kvdinfo::TextInfo, Legacy::TextInfo).Lines, value);
}
HRESULT KvdContainerInfo::GetWords(VARTYPE, PROPVARIANT* value) {
    return Int(Structure<Types::TextInfo>(Current::kvdinfo::TextInfo, Legacy::TextInfo).Words, value);
}
HRESULT KvdContainerInfo::GetCharacters(VARTYPE, PROPVARIANT* value) {
    return Int(Structure<Types::TextInfo>(Current::kvdinfo::TextInfo, Legacy::TextInfo).Characters, value);
}

HRESULT KvdContainerInfo::GetResolutionX(VARTYPE, PROPVARIANT* value) {
    const double dpi = BrmUtils::AnyCast<double>(metadata.GetProperty(Pick(Current::kvdinfo::ResolutionX, Legacy::ResolutionX)), 0.0);
    if (!(dpi > 0.0)) return Empty(value);
    value->vt = VT_R8;
    value->dblVal = dpi;
    return S_OK;
}
HRESULT KvdContainerInfo::GetResolutionY(VARTYPE, PROPVARIANT* value) {
    const double dpi = BrmUtils::AnyCast<double>(metadata.GetProperty(Pick(Current::kvdinfo::ResolutionY, Legacy::ResolutionY)), 0.0);
    if (!(dpi > 0.0)) return Empty(value);
    value->vt = VT_R8;
    value->dblVal = dpi;
    return S_OK;
}

HRESULT KvdContainerInfo::GetDimensions(VARTYPE, PROPVARIANT* value) {
    return PlainText(Pick(Current::kvdinfo::PageDimensions, Legacy::PageDimensions), value);
}
HRESULT KvdContainerInfo::GetFonts(VARTYPE type, PROPVARIANT* value) {
    return List(metadata, Pick(Current::kvdinfo::FontsUsed, Legacy::FontsUsed), type, value);
}

// The names of the text's languages in the user's language, sorted.
HRESULT KvdContainerInfo::GetLanguages(VARTYPE type, PROPVARIANT* value) {
    StringList names;
    for (int locale : Structure<Types::TextInfo>(Current::kvdinfo::TextInfo, Legacy::TextInfo).Languages) {
        wchar_t name[256] = {};
        if (locale > 0 && GetLocaleInfoW(LCID(locale), LOCALE_SLANGUAGE, name, 256) > 1) names.emplace_back(name);
    }
    return SortedList(std::move(names), type, value);
}

HRESULT KvdContainerInfo::GetPageSize(VARTYPE, PROPVARIANT* value) {
    return PlainText(Pick(Current::kvdinfo::PageSizeName, Legacy::PageSizeName), value);
}

HRESULT KvdContainerInfo::GetOrientation(VARTYPE type, PROPVARIANT* value) {
    const int orientation =
        BrmUtils::AnyCast<int>(metadata.GetProperty(Pick(Current::kvdinfo::PageOrientation, Legacy::PageOrientation)), 0);
    if (orientation != 1 && orientation != 2) return Empty(value);
    if (type == VT_LPWSTR) return Text(LoadText(orientation == 1 ? kTextPortrait : kTextLandscape), value);
    value->vt = VT_UI4;
    value->ulVal = ULONG(orientation);
    return S_OK;
}

HRESULT KvdContainerInfo::GetFontsEmbedded(VARTYPE, PROPVARIANT* value) {
    const BrmUtils::Any held = metadata.GetProperty(Pick(Current::kvdinfo::FontsEmbedded, Legacy::FontsEmbedded));
    const bool embedded = IsLegacy() ? BrmUtils::AnyCast<int>(held, 0) != 0 : BrmUtils::AnyCast<bool>(held, false);
    value->vt = VT_BOOL;
    value->boolVal = embedded ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

// ---- Contents --------------------------------------------------------------

HRESULT KvdContainerInfo::GetObjectCount(VARTYPE, PROPVARIANT* value) {
    return Int(Structure<Types::ObjectInfo>(Current::kvdinfo::Objects, Legacy::Objects).Total, value);
}

HRESULT KvdContainerInfo::GetLinks(VARTYPE type, PROPVARIANT* value) {
    return BrmUtils::ListToPropVariant(Structure<Types::BitmapInfo>(Current::kvdinfo::BitmapInfo, Legacy::BitmapInfo).LinkPaths,
                                       type, value);
}

HRESULT KvdContainerInfo::GetPageNames(VARTYPE type, PROPVARIANT* value) {
    EnsureTextInfo();
    return List(textInfo, Legacy::PageNames, type, value);
}
HRESULT KvdContainerInfo::GetLayerNames(VARTYPE type, PROPVARIANT* value) {
    EnsureTextInfo();
    return List(textInfo, Legacy::LayerNames, type, value);
}
HRESULT KvdContainerInfo::GetObjectNames(VARTYPE type, PROPVARIANT* value) {
    EnsureTextInfo();
    return List(textInfo, Legacy::ObjectNames, type, value);
}

HRESULT KvdContainerInfo::GetObjectKinds(VARTYPE type, PROPVARIANT* value) {
    const auto o = Structure<Types::ObjectInfo>(Current::kvdinfo::Objects, Legacy::Objects);
    return KindsList({{o.Group, 1006}, {o.Curve, 1007}, {o.Rect, 1008}, {o.Bitmap, 1009}, {o.Ellipse, 1010},
                      {o.MeshFill, 1011}, {o.Polygon, 1012}, {o.Guideline, 1015}, {o.SymbolInstances, 1016},
                      {o.Text, 1017}, {o.OLELinked + o.OLEEmbedded, kTextOle}},
                     type, value);
}

HRESULT KvdContainerInfo::GetFills(VARTYPE type, PROPVARIANT* value) {
    const auto f = Structure<Types::FillInfo>(Current::kvdinfo::FillInfo, Legacy::Fills);
    return KindsList({{f.None, 1019}, {f.Uniform, 1020}, {f.Fountain, 1021}, {f.Texture, 1022}, {f.Postscript, 1023},
                      {f.Hatch, 1024}, {f.Pattern, 1025}},
                     type, value);
}

HRESULT KvdContainerInfo::GetOutlines(VARTYPE type, PROPVARIANT* value) {
    const auto o = Structure<Types::OutlineInfo>(Current::kvdinfo::OutlineInfo, Legacy::Outlines);
    return KindsList({{o.None, 1019}, {o.Solid, 1026}, {o.Dashed, 1027}, {o.Enhanced, 1028}}, type, value);
}

HRESULT KvdContainerInfo::GetEffects(VARTYPE type, PROPVARIANT* value) {
    const auto e = Structure<Types::EffectInfo>(Current::kvdinfo::Effects, Legacy::Effects);
    return KindsList({{e.Perspective, 1029}, {e.Envelope, 1030}, {e.DropShadow, 1031}, {e.Blend, 1032},
                      {e.Extrude, 1033}, {e.Bevel, 1034}, {e.Contour, 1035}, {e.PowerClip, 1036}, {e.Clone, 1037},
                      {e.Lens, 1038}, {e.Transparency, 1039}, {e.Distortion, 1040}},
                     type, value);
}

HRESULT KvdContainerInfo::GetStyles(VARTYPE type, PROPVARIANT* value) {
    return List(metadata, Pick(Current::kvdinfo::Styles, Legacy::Styles), type, value);
}

// ---- Fonts and colours -------------------------------------------------------

HRESULT KvdContainerInfo::GetPalettes(VARTYPE type, PROPVARIANT* value) {
    return Union(Structure<Types::FillInfo>(Current::kvdinfo::FillInfo, Legacy::Fills).Palettes,
                 Structure<Types::OutlineInfo>(Current::kvdinfo::OutlineInfo, Legacy::Outlines).Palettes, type, value);
}
HRESULT KvdContainerInfo::GetColours(VARTYPE type, PROPVARIANT* value) {
    return Union(Structure<Types::FillInfo>(Current::kvdinfo::FillInfo, Legacy::Fills).Colors,
                 Structure<Types::OutlineInfo>(Current::kvdinfo::OutlineInfo, Legacy::Outlines).Colors, type, value);
}
HRESULT KvdContainerInfo::GetSpotColours(VARTYPE type, PROPVARIANT* value) {
    return Union(Structure<Types::FillInfo>(Current::kvdinfo::FillInfo, Legacy::Fills).SpotColors,
                 Structure<Types::OutlineInfo>(Current::kvdinfo::OutlineInfo, Legacy::Outlines).SpotColors, type, value);
}

HRESULT KvdContainerInfo::GetRgbProfile(VARTYPE, PROPVARIANT* value) {
    return Text(Structure<Types::ColorInfo>(Current::kvdinfo::ColorInfo, Legacy::Color).RgbProfileName, value);
}
HRESULT KvdContainerInfo::GetCmykProfile(VARTYPE, PROPVARIANT* value) {
    return Text(Structure<Types::ColorInfo>(Current::kvdinfo::ColorInfo, Legacy::Color).CmykProfileName, value);
}
HRESULT KvdContainerInfo::GetGreyProfile(VARTYPE, PROPVARIANT* value) {
    return Text(Structure<Types::ColorInfo>(Current::kvdinfo::ColorInfo, Legacy::Color).GrayscaleProfileName, value);
}

namespace {

// A numbered setting: the number, or as text the name of the number (an
// empty text outside the named range).
template <size_t N>
HRESULT NamedNumber(int number, const uint32_t (&names)[N], VARTYPE type, PROPVARIANT* value) {
    if (type == VT_LPWSTR) {
        return Text(number >= 0 && size_t(number) < N ? LoadText(names[number]) : BrmStringW(), value);
    }
    value->vt = VT_UI4;
    value->ulVal = ULONG(number);
    return S_OK;
}

}  // namespace

HRESULT KvdContainerInfo::GetColourMode(VARTYPE type, PROPVARIANT* value) {
    return NamedNumber(Structure<Types::ColorInfo>(Current::kvdinfo::ColorInfo, Legacy::Color).ColorMode,
                       kTextColourModes, type, value);
}
HRESULT KvdContainerInfo::GetRenderingIntent(VARTYPE type, PROPVARIANT* value) {
    return NamedNumber(Structure<Types::ColorInfo>(Current::kvdinfo::ColorInfo, Legacy::Color).RenderingIntent,
                       kTextIntents, type, value);
}

// ---- Not shown ----------------------------------------------------------------

HRESULT KvdContainerInfo::GetResolutionUnit(VARTYPE, PROPVARIANT* value) {
    value->vt = VT_I2;
    value->iVal = 2;  // inches
    return S_OK;
}
HRESULT KvdContainerInfo::GetSides(VARTYPE, PROPVARIANT* value) { return PlainText(Pick(Current::kvt::Sided, Legacy::Sided), value); }
HRESULT KvdContainerInfo::GetFolds(VARTYPE, PROPVARIANT* value) { return PlainText(Pick(Current::kvt::Folds, Legacy::Folds), value); }
HRESULT KvdContainerInfo::GetTemplateType(VARTYPE, PROPVARIANT* value) {
    return PlainText(Pick(Current::kvt::Type, Legacy::Type), value);
}
HRESULT KvdContainerInfo::GetIndustry(VARTYPE, PROPVARIANT* value) {
    return PlainText(Pick(Current::kvt::Industry, Legacy::Industry), value);
}
