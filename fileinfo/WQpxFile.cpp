// The paint image reader: catalogue, getters, preview and write-back.
#include "fileinfo/WQpxFile.h"

#include <algorithm>

#include "fileinfo/PropertyKeys.h"
#include "fileinfo/ResourceManager.h"
#include "platform/Files.h"
#include "platform/LastError.h"
#include "utils/TempFiles.h"
#include "utils/props/PropVariantConvert.h"
#include "utils/streams/FileStream.h"

namespace {

constexpr uint32_t kTextApplication = 1002;
constexpr uint32_t kTextFirstIntent = 1051;
constexpr uint32_t kTextFirstColourMode = 1057;
constexpr uint32_t kLastNamedColourMode = 19;
constexpr uint32_t kLastNamedIntent = 3;

HRESULT Empty(PROPVARIANT* value) {
    value->vt = VT_EMPTY;
    return S_FALSE;
}

HRESULT Text(const BrmPlatform::BrmStringW& text, PROPVARIANT* value) {
    return BrmUtils::StringToPropVariant(text.GetString(), value);
}

HRESULT Unsigned(uint32_t number, PROPVARIANT* value) {
    value->vt = VT_UI4;
    value->ulVal = number;
    return S_OK;
}

HRESULT Real(double number, PROPVARIANT* value) {
    value->vt = VT_R8;
    value->dblVal = number;
    return S_OK;
}

// A number, or as text the string of `firstText` + number up to `last`.
HRESULT NumberOrText(uint32_t number, VARTYPE type, uint32_t firstText, uint32_t last, PROPVARIANT* value) {
    if (type != VT_LPWSTR) return Unsigned(number, value);
    BrmPlatform::BrmStringW text;
    if (number <= last) text = ShellExt::ResourceManager::Instance().LoadStringW(firstText + number);
    return Text(text, value);
}

bool SameKey(const PROPERTYKEY& a, const PROPERTYKEY& b) { return a.pid == b.pid && a.fmtid == b.fmtid; }

}  // namespace

uint32_t QpxBitDepth(uint32_t mode) {
    switch (mode) {
        case 6: return 1;
        case 9: return 4;
        case 5: case 8: case 10: case 16: case 19: case 99: return 8;
        case 14: return 16;
        case 1: case 2: case 4: case 7: case 11: case 18: return 24;
        case 3: case 17: return 32;
        case 12: return 48;
        case 13: return 64;
        case 15: return 96;
        default: return 0;
    }
}

WQpxFile::WQpxFile() : info(std::make_unique<QpxDocumentInfo>()) {}

WQpxFile::~WQpxFile() = default;

void WQpxFile::BuildCatalogue() {
    using namespace PropertyKeys;
    OpenGroup(kGroupGeneral);
    AddProperty(kResolutionX, PropTypesR8, &WQpxFile::GetResolutionX);
    AddProperty(kResolutionY, PropTypesR8, &WQpxFile::GetResolutionY);
    AddProperty(kResolutionUnit, PropTypesI2, &WQpxFile::GetResolutionUnit);
    AddProperty(kImageWidth, PropTypesUI4, &WQpxFile::GetWidth);
    AddProperty(kImageHeight, PropTypesUI4, &WQpxFile::GetHeight);
    AddProperty(kDimensions, PropTypesText, &WQpxFile::GetDimensions);
    CloseGroup();

    OpenGroup(kGroupDescription);
    AddProperty(kComments, PropTypesText, &WQpxFile::GetComments, &WQpxFile::SetComments);
    AddProperty(kColourMode, PropTypesNumberText, &WQpxFile::GetColourMode);
    AddProperty(kColourProfile, PropTypesText, &WQpxFile::GetProfile);
    AddProperty(kRenderingIntent, PropTypesNumberText, &WQpxFile::GetRenderingIntent);
    AddProperty(kBitDepth, PropTypesUI4, &WQpxFile::GetBitDepth);
    AddProperty(kImageFonts, PropTypesList, &WQpxFile::GetFonts);
    CloseGroup();

    OpenGroup(kGroupOrigin);
    AddProperty(kApplication, PropTypesText, &WQpxFile::GetApplication);
    AddProperty(kFormatVersion, PropTypesText, &WQpxFile::GetFormatVersion);
    CloseGroup();
}

bool WQpxFile::Scanned() { return info && stream && info->Scan(stream); }

bool WQpxFile::OpenFile(const wchar_t* newPath) {
    info = std::make_unique<QpxDocumentInfo>();
    return WFileBase::OpenFile(newPath);
}

bool WQpxFile::OpenStream(IStream* newStream) {
    info = std::make_unique<QpxDocumentInfo>();
    return WFileBase::OpenStream(newStream);
}

void WQpxFile::CloseFile() {
    info = std::make_unique<QpxDocumentInfo>();
    WFileBase::CloseFile();
}

DibBlock WQpxFile::ReadPreviewDib() {
    if (!info || !stream) return {};
    return info->ReadThumbnail(stream);
}

bool WQpxFile::HasOpenProperties() { return Scanned() && info->hasStore; }

bool WQpxFile::IsReadOnly(const PROPERTYKEY* key) {
    if (!info) return true;  // no document: E_FAIL, which a caller taking a bool reads as true
    if (key && SameKey(*key, PropertyKeys::kComments) && !(Scanned() && info->hasStore)) return true;
    return WFileBase::IsReadOnly(key);
}

std::vector<PROPERTYKEY>& WQpxFile::GetOpenKeys(std::vector<PROPERTYKEY>& keys) {
    if (!Scanned() || !info->store) return keys;
    DWORD count = 0;
    info->store->GetCount(&count);
    for (DWORD i = 0; i < count; ++i) {
        PROPERTYKEY key;
        if (SUCCEEDED(info->store->GetAt(i, &key)) && !Catalogue().Contains(key)) keys.push_back(key);
    }
    return keys;
}

HRESULT WQpxFile::GetOpenValue(const PROPERTYKEY* key, PROPVARIANT* value) {
    if (!key || !value) return E_POINTER;
    PropVariantInit(value);
    if (!Scanned()) return S_FALSE;
    BrmUtils::MemoryPropertyStore* store = info->Store();
    if (!store) return E_FAIL;
    const HRESULT hr = store->GetValue(*key, value);
    if (SUCCEEDED(hr) && value->vt == VT_EMPTY) return S_FALSE;
    return hr;
}

HRESULT WQpxFile::SetOpenValue(const PROPERTYKEY* key, const PROPVARIANT* value) {
    if (!key || !value) return E_POINTER;
    if (!info) return E_FAIL;
    Scanned();  // the file's own values first, so that this one is not overwritten by them
    BrmUtils::MemoryPropertyStore* store = info->Store();
    if (!store) return E_FAIL;
    return store->SetValue(*key, *value);
}

// ---- Commit ------------------------------------------------------------

HRESULT WQpxFile::CommitDocument() {
    if (!stream || !info) return E_FAIL;
    if (FAILED(stream->Seek(MakeLargeInteger(0), STREAM_SEEK_SET, nullptr))) return E_FAIL;
    // A file that could not be read is never rewritten: its tail is unknown.
    if (!info->Scan(stream) || !info->IsBinary()) return info->ScanResult() ? STG_E_ACCESSDENIED : E_FAIL;
    IDestinationStreamFactory* factory = nullptr;
    if (SUCCEEDED(stream->QueryInterface(IID_IDestinationStreamFactory, reinterpret_cast<void**>(&factory))) &&
        factory) {
        const HRESULT hr = CommitToFactory(factory);
        factory->Release();
        return hr;
    }
    if (path.IsEmpty()) return E_FAIL;
    return CommitToPath();
}

HRESULT WQpxFile::CommitToFactory(IDestinationStreamFactory* factory) {
    IStream* destination = nullptr;
    HRESULT hr = factory->GetDestinationStream(&destination);
    if (FAILED(hr) || !destination) return FAILED(hr) ? hr : E_FAIL;
    if (info->Rewrite(stream, destination)) {
        hr = destination->Commit(STGC_DEFAULT);
        if (SUCCEEDED(hr)) hr = stream->Commit(STGC_DEFAULT);
    } else {
        destination->Revert();
        hr = E_FAIL;
    }
    destination->Release();
    return hr;
}

HRESULT WQpxFile::CommitToPath() {
    // The temporary goes beside the file, so that the replace is a rename.
    const BrmPlatform::BrmStringW target = path;
    const int slash = target.ReverseFind(L'/');
    const BrmPlatform::BrmStringW folder = slash >= 0 ? target.Left(slash + 1) : BrmPlatform::BrmStringW(L"./");
    BrmPlatform::BrmStringW temporary;
    HANDLE handle = BrmUtils::CreateTempFile(folder, L"qpx", L"tmp", false, &temporary);
    if (handle == INVALID_HANDLE_VALUE) return E_FAIL;
    auto* written = new (std::nothrow) BrmUtils::FileStream(handle, temporary.GetString());
    if (!written) {
        CloseHandle(handle);
        DeleteFileW(temporary.GetString());
        return E_FAIL;
    }
    const bool ok = info->Rewrite(stream, written);
    written->Release();
    HRESULT hr = E_FAIL;
    if (ok) {
        SafeRelease(stream);
        hr = ReplaceFileW(target.GetString(), temporary.GetString(), nullptr, 0, nullptr, nullptr)
                 ? S_OK
                 : HRESULT(0x80070000u | (GetLastError() & 0xFFFF));
        // Open again whatever the replace did: the path holds the old or the new file whole.
        OpenFile(target.GetString());
    }
    DeleteFileW(temporary.GetString());
    return hr;
}

// ---- Getters -------------------------------------------------------------

HRESULT WQpxFile::GetResolutionX(VARTYPE, PROPVARIANT* value) {
    return Scanned() ? Real(info->resolutionX, value) : Empty(value);
}

HRESULT WQpxFile::GetResolutionY(VARTYPE, PROPVARIANT* value) {
    return Scanned() ? Real(info->resolutionY, value) : Empty(value);
}

HRESULT WQpxFile::GetResolutionUnit(VARTYPE, PROPVARIANT* value) {
    if (!Scanned()) return Empty(value);
    value->vt = VT_I2;
    value->iVal = 2;  // inches
    return S_OK;
}

HRESULT WQpxFile::GetWidth(VARTYPE, PROPVARIANT* value) {
    return Scanned() ? Unsigned(uint32_t(info->width), value) : Empty(value);
}

HRESULT WQpxFile::GetHeight(VARTYPE, PROPVARIANT* value) {
    return Scanned() ? Unsigned(uint32_t(info->height), value) : Empty(value);
}

HRESULT WQpxFile::GetDimensions(VARTYPE, PROPVARIANT* value) {
    if (!Scanned()) return Empty(value);
    BrmPlatform::BrmStringW text;
    text.Format(L"%d x %d", info->width, info->height);
    return Text(text, value);
}

HRESULT WQpxFile::GetComments(VARTYPE, PROPVARIANT* value) {
    const HRESULT hr = GetOpenValue(&PropertyKeys::kComments, value);
    return hr == S_OK ? hr : Empty(value);
}

HRESULT WQpxFile::SetComments(VARTYPE, const PROPVARIANT* value) {
    return SetOpenValue(&PropertyKeys::kComments, value);
}

HRESULT WQpxFile::GetColourMode(VARTYPE type, PROPVARIANT* value) {
    if (!Scanned()) return Empty(value);
    return NumberOrText(info->colourMode, type, kTextFirstColourMode, kLastNamedColourMode, value);
}

HRESULT WQpxFile::GetProfile(VARTYPE, PROPVARIANT* value) {
    return Scanned() ? Text(info->profileName, value) : Empty(value);
}

HRESULT WQpxFile::GetRenderingIntent(VARTYPE type, PROPVARIANT* value) {
    if (!Scanned()) return Empty(value);
    return NumberOrText(info->renderingIntent, type, kTextFirstIntent, kLastNamedIntent, value);
}

HRESULT WQpxFile::GetBitDepth(VARTYPE, PROPVARIANT* value) {
    return Scanned() ? Unsigned(QpxBitDepth(info->colourMode), value) : Empty(value);
}

HRESULT WQpxFile::GetFonts(VARTYPE type, PROPVARIANT* value) {
    if (!Scanned()) return Empty(value);
    return BrmUtils::ListToPropVariant(info->fonts, type, value);
}

HRESULT WQpxFile::GetApplication(VARTYPE, PROPVARIANT* value) {
    if (!Scanned()) return Empty(value);
    return Text(ShellExt::ResourceManager::Instance().LoadStringW(kTextApplication), value);
}

HRESULT WQpxFile::GetFormatVersion(VARTYPE, PROPVARIANT* value) {
    return Scanned() ? Text(info->formatName, value) : Empty(value);
}
