// The older drawing document reader: catalogue, getters and thumbnail.
#include "fileinfo/WKvdFile.h"

#include <algorithm>

#include "fileinfo/PropertyKeys.h"
#include "fileinfo/ResourceManager.h"
#include "platform/Locale.h"
#include "platform/OleAuto.h"
#include "riff/FormTable.h"
#include "riff/FourCC.h"
#include "riff/RiffReader.h"
#include "utils/props/PropVariantConvert.h"

namespace {

// The form of a document whose form type no row names but which is read.
constexpr uint32_t kFormExtended = KvdFileIO::FourCC("KVDX");
// Product names by product id; any other id is the generic name.
constexpr uint32_t kTextProductOther = 1000;
constexpr uint32_t kTextProductTwo = 1001;
constexpr uint32_t kTextProductOne = 1003;

HRESULT Empty(PROPVARIANT* value) {
    value->vt = VT_EMPTY;
    return S_FALSE;
}

HRESULT Text(const BrmPlatform::BrmStringW& text, PROPVARIANT* value) {
    return BrmUtils::StringToPropVariant(text.GetString(), value);
}

HRESULT Bool(bool flag, PROPVARIANT* value) {
    value->vt = VT_BOOL;
    value->boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

HRESULT Real(double number, PROPVARIANT* value) {
    value->vt = VT_R8;
    value->dblVal = number;
    return S_OK;
}

// A number in the invariant form the platform gives a double.
BrmPlatform::BrmStringW InvariantNumber(double number) {
    BSTR text = nullptr;
    BrmPlatform::BrmStringW result;
    if (SUCCEEDED(VarBstrFromR8(number, LOCALE_INVARIANT, LOCALE_NOUSEROVERRIDE, &text)) && text) {
        result = BrmPlatform::BrmStringW(text);
    }
    SysFreeString(text);
    return result;
}

}  // namespace

const PROPERTYKEY WKvdFile::kKeywords = PropertyKeys::kKeywords;
const PROPERTYKEY WKvdFile::kComments = PropertyKeys::kComments;
const PROPERTYKEY WKvdFile::kApplication = PropertyKeys::kApplication;
const PROPERTYKEY WKvdFile::kAppVersion = PropertyKeys::kAppVersion;
const PROPERTYKEY WKvdFile::kFormatVersion = PropertyKeys::kFormatVersion;
const PROPERTYKEY WKvdFile::kPageCount = PropertyKeys::kPageCount;
const PROPERTYKEY WKvdFile::kResolutionX = PropertyKeys::kResolutionX;
const PROPERTYKEY WKvdFile::kResolutionY = PropertyKeys::kResolutionY;
const PROPERTYKEY WKvdFile::kResolutionUnit = PropertyKeys::kResolutionUnit;
const PROPERTYKEY WKvdFile::kDimensions = PropertyKeys::kDimensions;
const PROPERTYKEY WKvdFile::kFonts = PropertyKeys::kFonts;
const PROPERTYKEY WKvdFile::kOrientation = PropertyKeys::kOrientation;
const PROPERTYKEY WKvdFile::kSecondFlag = PropertyKeys::kSecondFlag;
const PROPERTYKEY WKvdFile::kFirstFlag = PropertyKeys::kFirstFlag;
const PROPERTYKEY WKvdFile::kCompressionRatio = PropertyKeys::kCompressionRatio;
const PROPERTYKEY WKvdFile::kLinks = PropertyKeys::kLinks;
const PROPERTYKEY WKvdFile::kTextDefaults = PropertyKeys::kTextDefaults;

void WKvdFile::BuildCatalogue() {
    OpenGroup(kGroupDescription);
    AddProperty(kKeywords, PropTypesList, &WKvdFile::GetKeywords);
    AddProperty(kComments, PropTypesText, &WKvdFile::GetComments);
    CloseGroup();

    OpenGroup(kGroupOrigin);
    AddProperty(kApplication, PropTypesText, &WKvdFile::GetApplication);
    AddProperty(kAppVersion, PropTypesText, &WKvdFile::GetAppVersion);
    AddProperty(kFormatVersion, PropTypesText, &WKvdFile::GetFormatVersion);
    CloseGroup();

    OpenGroup(kGroupGeneral);
    AddProperty(kPageCount, PropTypesI4, &WKvdFile::GetPages);
    AddProperty(kResolutionX, PropTypesR8, &WKvdFile::GetResolutionX);
    AddProperty(kResolutionY, PropTypesR8, &WKvdFile::GetResolutionY);
    AddProperty(kResolutionUnit, PropTypesI2, &WKvdFile::GetResolutionUnit);
    AddProperty(kDimensions, PropTypesText, &WKvdFile::GetDimensions);
    AddProperty(kFonts, PropTypesList, &WKvdFile::GetFonts);
    AddProperty(kOrientation, PropTypesUI4, &WKvdFile::GetOrientation);
    AddProperty(kSecondFlag, PropTypesBool, &WKvdFile::GetSecondFlag);
    AddProperty(kFirstFlag, PropTypesBool, &WKvdFile::GetFirstFlag);
    // Declared a real, delivered as text: clients look at the variant.
    AddProperty(kCompressionRatio, PropTypesR8, &WKvdFile::GetCompressionRatio);
    AddProperty(kLinks, PropTypesList, &WKvdFile::GetLinks);
    AddProperty(kTextDefaults, PropTypesBool, &WKvdFile::GetTextDefaults);
    CloseGroup();
}

std::unique_ptr<KvdDocumentInfo> WKvdFile::Scan(uint32_t thumbnail) {
    if (!stream) return nullptr;
    auto reader = std::make_unique<KvdFileIO::RiffReader>(stream);
    uint32_t formType = 0;
    if (!reader->Open(formType)) return nullptr;
    if (!KvdFileIO::FindForm(formType) && formType != kFormExtended) return nullptr;
    auto scanning = std::make_unique<KvdDocumentInfo>(reader.release(), formType);
    // A failed scan throws away everything it found.
    if (!scanning->Scan(KvdDocumentInfo::kScanSummary | thumbnail)) return nullptr;
    return scanning;
}

bool WKvdFile::EnsureScanned(uint32_t thumbnail) {
    if (scanned) return info != nullptr;
    scanned = true;
    // The document starts where the stream stands now; a second scan for the
    // preview starts there again.
    ULARGE_INTEGER at{};
    scanStart = stream && SUCCEEDED(stream->Seek(MakeLargeInteger(0), STREAM_SEEK_CUR, &at)) ? at.QuadPart : 0;
    info = Scan(thumbnail);
    return info != nullptr;
}

bool WKvdFile::OpenFile(const wchar_t* newPath) {
    info.reset();
    scanned = false;
    return WFileBase::OpenFile(newPath);
}

bool WKvdFile::OpenStream(IStream* newStream) {
    info.reset();
    scanned = false;
    return WFileBase::OpenStream(newStream);
}

void WKvdFile::CloseFile() {
    scanned = false;
    info.reset();
    WFileBase::CloseFile();
}

DibBlock WKvdFile::ReadPreviewDib() {
    // A preview asked for before any property: the one scan reads it.
    if (!EnsureScanned(KvdDocumentInfo::kScanThumbnail)) return {};
    // The scan's block goes to the caller as it is: a preview of some
    // megabytes is not copied. When the scan for the properties only checked
    // the thumbnail, or a later call (rare: the base class keeps the preview)
    // finds the block handed out, the document is read again for it.
    DibBlock block = info->TakePackedDib();
    if (block.data || info->dibHeader.biSize == 0) return block;
    if (FAILED(stream->Seek(MakeLargeInteger(int64_t(scanStart)), STREAM_SEEK_SET, nullptr))) return {};
    auto again = Scan(KvdDocumentInfo::kScanThumbnail);
    return again ? again->TakePackedDib() : DibBlock{};
}

HRESULT WKvdFile::GetKeywords(VARTYPE type, PROPVARIANT* value) {
    if (!EnsureScanned()) return Empty(value);
    return BrmUtils::SplitListToPropVariant(info->keywords.GetBest(L"").GetString(), type, value);
}

HRESULT WKvdFile::GetComments(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned()) return Empty(value);
    return Text(info->comments.GetBest(L""), value);
}

HRESULT WKvdFile::GetApplication(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned()) return Empty(value);
    uint32_t id = info->productId == 1   ? kTextProductOne
                  : info->productId == 2 ? kTextProductTwo
                                         : kTextProductOther;
    return Text(ShellExt::ResourceManager::Instance().LoadStringW(id), value);
}

HRESULT WKvdFile::GetAppVersion(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned() || info->appVersion <= 0) return Empty(value);
    BrmPlatform::BrmStringW text;
    text.Format(L"%d.%d.%d.%d", info->appVersion / 100, info->appVersion % 100, 0, int(info->buildNumber));
    return Text(text, value);
}

HRESULT WKvdFile::GetFormatVersion(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned() || info->Version() == 0) return Empty(value);
    BrmPlatform::BrmStringW text;
    text.Format(L"%d.%02d", info->Version() / 100, info->Version() % 100);
    return Text(text, value);
}

HRESULT WKvdFile::GetPages(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned()) return Empty(value);
    value->vt = VT_I4;
    value->lVal = info->pageCount;
    return S_OK;
}

// The horizontal key answers the field read first from the file, and the
// vertical the second: the document stores them that way round.
HRESULT WKvdFile::GetResolutionX(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned() || !(info->resolutionY > 0.0)) return Empty(value);
    return Real(info->resolutionY, value);
}

HRESULT WKvdFile::GetResolutionY(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned() || !(info->resolutionX > 0.0)) return Empty(value);
    return Real(info->resolutionX, value);
}

HRESULT WKvdFile::GetResolutionUnit(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned()) return Empty(value);
    value->vt = VT_I2;
    value->iVal = 2;  // inches
    return S_OK;
}

HRESULT WKvdFile::GetDimensions(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned()) return Empty(value);
    double larger = std::max(info->pageWidth, info->pageHeight);
    double smaller = std::min(info->pageWidth, info->pageHeight);
    BrmPlatform::BrmStringW text;
    text.Format(L"%s x %s\"", InvariantNumber(larger).GetString(), InvariantNumber(smaller).GetString());
    return Text(text, value);
}

HRESULT WKvdFile::GetFonts(VARTYPE type, PROPVARIANT* value) {
    if (!EnsureScanned()) return Empty(value);
    return BrmUtils::SplitListToPropVariant(info->fontNames.GetString(), type, value);
}

HRESULT WKvdFile::GetOrientation(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned()) return Empty(value);
    value->vt = VT_UI4;
    value->ulVal = info->pageWidth > info->pageHeight ? 2 : 1;
    return S_OK;
}

HRESULT WKvdFile::GetSecondFlag(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned()) return Empty(value);
    return Bool(info->secondFlag, value);
}

HRESULT WKvdFile::GetFirstFlag(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned()) return Empty(value);
    return Bool(info->firstFlag, value);
}

HRESULT WKvdFile::GetCompressionRatio(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned()) return Empty(value);
    BrmPlatform::BrmStringW text;
    text.Format(L"%.02f", info->compressionRatio);
    return Text(text, value);
}

HRESULT WKvdFile::GetLinks(VARTYPE type, PROPVARIANT* value) {
    if (!EnsureScanned()) return Empty(value);
    return BrmUtils::SplitListToPropVariant(info->linkPaths.GetString(), type, value);
}

HRESULT WKvdFile::GetTextDefaults(VARTYPE, PROPVARIANT* value) {
    if (!EnsureScanned()) return Empty(value);
    return Bool(info->hasTextDefaults, value);
}
