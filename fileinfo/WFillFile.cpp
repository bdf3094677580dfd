// WFillFile: thumbnail, properties and write-back of fill files.
#include "fileinfo/WFillFile.h"

#include <cwctype>

#include "fileinfo/PropertyKeys.h"
#include "fill/FillSubtype.h"
#include "imaging/Thumbnail.h"
#include "metadata/Schema.h"
#include "platform/Files.h"
#include "platform/LastError.h"
#include "platform/Locale.h"
#include "platform/Time.h"
#include "utils/TempFiles.h"
#include "utils/props/PropVariantConvert.h"

namespace {

namespace S = ZipContainerSchema;
using BrmPlatform::BrmStringW;

constexpr uint32_t kOpaqueWhite = 0xFFFFFFFF;
constexpr IID kIidDestinationStreamFactory = {
    0x8A87781B, 0x39A7, 0x4A1F, {0xAA, 0xB3, 0xA3, 0x9B, 0x9C, 0x34, 0xA7, 0xD9}};

HRESULT Empty(PROPVARIANT* value) {
    PropVariantInit(value);
    return S_FALSE;
}

// The language multilingual values are read and written in: the lower-case
// code of the system's UI language ("de"), "x-default" when it has none.
BrmStringW UiLanguage() {
    char name[32];
    if (!LocaleNameFromLangId(GetSystemDefaultUILanguage(), name, sizeof name)) return L"x-default";
    std::wstring code;
    for (const char* p = name; *p && *p != '-' && *p != '_'; ++p) code += wchar_t(std::towlower(wchar_t(*p)));
    return code.empty() ? BrmStringW(L"x-default") : BrmStringW(code);
}

SYSTEMTIME LocalNow() {
    FILETIME utc, local;
    GetSystemTimeAsFileTime(&utc);
    FileTimeToLocalFileTime(&utc, &local);
    SYSTEMTIME now{};
    FileTimeToSystemTime(&local, &now);
    return now;
}

}  // namespace

WFillFile::~WFillFile() { container.Reset(); }

void WFillFile::BuildCatalogue() {
    using namespace PropertyKeys;
    OpenGroup(kGroupDescription);
    AddProperty(kKeywords, PropTypesList, &WFillFile::GetKeywords, &WFillFile::SetKeywords);
    AddProperty(kTitle, PropTypesText, &WFillFile::GetTitle, &WFillFile::SetTitle);
    AddProperty(kComments, PropTypesText, &WFillFile::GetComments, &WFillFile::SetComments);
    AddProperty(kCategory, PropTypesList, &WFillFile::GetCategory, &WFillFile::SetCategory);
    AddProperty(kContentType, PropTypesList, &WFillFile::GetContentType, &WFillFile::SetContentType);
    CloseGroup();
    OpenGroup(kGroupOrigin);
    AddProperty(kCreatorTool, PropTypesText, &WFillFile::GetApplication);
    CloseGroup();
}

bool WFillFile::Open() {
    if (!stream) return false;
    if (!opened) {
        opened = true;
        container = FillSubtype::Open(stream, path);
        if (container) metadata.CopyFrom(container->Metadata());
    }
    return opened;
}

HBITMAP WFillFile::GetBitmap(SIZE size, uint32_t, bool allowEnlarge, uint8_t* hasAlpha) {
    try {
        if (!Open() || !container) return nullptr;
        auto image = container->GetThumbnailImage();
        if (!image || image->Width() <= 0 || image->Height() <= 0) return nullptr;
        auto fitted = BrmUtils::ScaleImage(*image, size, allowEnlarge, true, false);
        if (!fitted) return nullptr;
        HBITMAP result = BrmUtils::CreateHBITMAP(*fitted, kOpaqueWhite);
        if (result && hasAlpha) *hasAlpha = 0;
        return result;
    } catch (...) {
        return nullptr;
    }
}

HICON WFillFile::GetIcon(void*, uint32_t edge) {
    if (edge == 0 || edge > uint32_t(BrmUtils::NativeBitmap::kMaxEdge)) return nullptr;
    try {
        if (!Open() || !container) return nullptr;
        auto image = container->GetThumbnailImage();
        return image ? BrmUtils::ImageToIcon(*image, int(edge)) : nullptr;
    } catch (...) {
        return nullptr;
    }
}

void WFillFile::CloseFile() {
    opened = false;
    container.Reset();
    WFileBase::CloseFile();
}

// --- Properties ---------------------------------------------------------------

HRESULT WFillFile::GetLocalized(const Metadata::PropertyDescriptor& row, bool list, VARTYPE type,
                                PROPVARIANT* value) {
    if (!Open()) return Empty(value);
    const BrmStringW text = metadata.GetLocalizedText(row, UiLanguage(), false);
    if (list) return BrmUtils::SplitListToPropVariant(text.GetString(), type, value);
    return BrmUtils::StringToPropVariant(text.GetString(), value);
}

HRESULT WFillFile::SetLocalized(const Metadata::PropertyDescriptor& row, const PROPVARIANT* value) {
    BrmStringW text;
    if (!value || !BrmUtils::PropVariantToString(*value, text)) return E_INVALIDARG;
    Open();  // a later first open would copy the file's metadata over this value
    metadata.SetLocalizedText(row, UiLanguage(), text);
    return S_OK;
}

HRESULT WFillFile::GetTitle(VARTYPE type, PROPVARIANT* value) { return GetLocalized(S::dc::title, false, type, value); }
HRESULT WFillFile::SetTitle(VARTYPE, const PROPVARIANT* value) { return SetLocalized(S::dc::title, value); }
HRESULT WFillFile::GetKeywords(VARTYPE type, PROPVARIANT* value) {
    return GetLocalized(S::brm::Keywords, true, type, value);
}
HRESULT WFillFile::SetKeywords(VARTYPE, const PROPVARIANT* value) { return SetLocalized(S::brm::Keywords, value); }
HRESULT WFillFile::GetComments(VARTYPE type, PROPVARIANT* value) { return GetLocalized(S::brm::Notes, false, type, value); }
HRESULT WFillFile::SetComments(VARTYPE, const PROPVARIANT* value) { return SetLocalized(S::brm::Notes, value); }
HRESULT WFillFile::GetCategory(VARTYPE type, PROPVARIANT* value) {
    return GetLocalized(S::brm::Category, true, type, value);
}
HRESULT WFillFile::SetCategory(VARTYPE, const PROPVARIANT* value) { return SetLocalized(S::brm::Category, value); }
HRESULT WFillFile::GetApplication(VARTYPE type, PROPVARIANT* value) {
    return GetLocalized(S::xmp::CreatorTool, false, type, value);
}

HRESULT WFillFile::GetContentType(VARTYPE type, PROPVARIANT* value) {
    if (!Open()) return Empty(value);
    return BrmUtils::SplitListToPropVariant(metadata.GetPropertyText(S::brm::SubFormat).GetString(), type, value);
}

HRESULT WFillFile::SetContentType(VARTYPE, const PROPVARIANT* value) {
    BrmStringW text;
    if (!value || !BrmUtils::PropVariantToString(*value, text)) return E_INVALIDARG;
    Open();
    metadata.SetPropertyText(S::brm::SubFormat, text);
    return S_OK;
}

// --- Commit -----------------------------------------------------------------

bool WFillFile::WriteTo(ZipContainerImplBase& target) {
    ZipContainerSubtypeImpl* source = FillSubtype::AsFill(container.Get());
    ZipContainerSubtypeImpl* fill = FillSubtype::AsFill(&target);
    if (!source || !fill || !source->Object()) return false;
    // A new container starts without a media type; a fill file is only
    // recognised by the "mimetype" member in front, so it is given one
    // before anything else is written.
    if (target.GetMimeType().IsEmpty() && !target.InitNew(FillSubtype::kMediaType, false, false)) return false;
    // fill.xml is not copied: the new container writes it from the object.
    const std::vector<BrmStringW> excluded = {FillSubtype::Spec().MainPartName()};
    if (!source->CopyPartsTo(target, excluded, nullptr)) return false;
    std::unique_ptr<SubtypeInfo> object = source->Object()->Clone();
    if (!object) return false;
    fill->SetObject(std::move(object));
    metadata.SetProperty(S::xmp::MetadataDate, BrmUtils::Any(LocalNow()));
    target.Metadata().CopyFrom(metadata);
    return target.Commit();
}

HRESULT WFillFile::CommitDocument() {
    try {
        if (!Open() || !container) return E_FAIL;
        return path.IsEmpty() ? CommitToStream() : CommitToPath();
    } catch (...) {
        return E_FAIL;
    }
}

HRESULT WFillFile::CommitToStream() {
    HRESULT hr = stream->Seek(MakeLargeInteger(0), STREAM_SEEK_SET, nullptr);
    if (FAILED(hr)) return hr;
    IDestinationStreamFactory* factory = nullptr;
    hr = stream->QueryInterface(kIidDestinationStreamFactory, reinterpret_cast<void**>(&factory));
    if (FAILED(hr) || !factory) return FAILED(hr) ? hr : E_FAIL;
    IStream* destination = nullptr;
    hr = factory->GetDestinationStream(&destination);
    factory->Release();
    if (FAILED(hr) || !destination) return FAILED(hr) ? hr : E_FAIL;
    bool ok = false;
    {
        ZipContainerRef target = FillSubtype::Create(destination);
        ok = target && WriteTo(*target);
    }
    if (ok) ok = SUCCEEDED(destination->Commit(STGC_DEFAULT)) && SUCCEEDED(stream->Commit(STGC_DEFAULT));
    if (!ok) destination->Revert();
    destination->Release();
    return ok ? S_OK : E_FAIL;
}

HRESULT WFillFile::CommitToPath() {
    const BrmStringW directory = [&] {
        const int slash = path.ReverseFind(L'/');
        return slash < 0 ? BrmStringW(L".") : path.Left(slash);
    }();
    const BrmStringW temporary = BrmUtils::MakeTempFileName(directory);
    if (temporary.IsEmpty()) return E_FAIL;
    bool ok = false;
    {
        ZipContainerRef target = FillSubtype::Create(temporary);
        ok = target && WriteTo(*target);
    }
    if (ok && ReplaceFileW(path, temporary, nullptr, 0, nullptr, nullptr)) {
        // The source stream still reads the replaced file: start again on
        // the new one, keeping the metadata as set.
        Metadata::Container kept;
        kept.CopyFrom(metadata);
        const BrmStringW file = path;
        CloseFile();
        WFileBase::OpenFile(file);
        metadata = std::move(kept);
        return S_OK;
    }
    const DWORD error = GetLastError();
    DeleteFileW(temporary);
    return ok ? HRESULT(0x80070000u | (error & 0xFFFF)) : E_FAIL;
}
