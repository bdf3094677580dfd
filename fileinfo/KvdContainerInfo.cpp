// The container drawing reader: opening, previews, text chunks, open
// properties and writing back. The catalogue is in KvdContainerCatalogue.cpp.
#include "fileinfo/KvdContainerInfo.h"

#include <limits>

#include "imaging/NativeBitmap.h"
#include "imaging/Thumbnail.h"
#include "metadata/LegacySchema.h"
#include "metadata/Schema.h"
#include "metadata/TextStreams.h"
#include "platform/Files.h"
#include "platform/LastError.h"
#include "platform/Time.h"
#include "utils/TempFiles.h"
#include "utils/props/MemoryPropertyStore.h"
#include "utils/props/PropVariantText.h"
#include "zipcontainer/ZipContainerImpl.h"

namespace {

using BrmPlatform::BrmStringW;
using OpenList = std::vector<ZipContainerSchema::OpenMetadataProperty>;

constexpr uint32_t kOpaqueWhite = 0xFFFFFFFF;
constexpr uint32_t kUnknownPageCount = 0xFFFFFFFF;

const wchar_t* MetadataPartName(bool legacy) { return legacy ? L"metadata/metadata.xml" : L"META-INF/metadata.xml"; }
const wchar_t* TextPartName(bool legacy) { return legacy ? L"metadata/textinfo.xml" : L"META-INF/textinfo.xml"; }

// The present moment as the metadata's dates hold it: local time, written
// with the local zone.
SYSTEMTIME Now() {
    FILETIME utc{}, local{};
    GetSystemTimeAsFileTime(&utc);
    SYSTEMTIME now{};
    if (!FileTimeToLocalFileTime(&utc, &local) || !FileTimeToSystemTime(&local, &now)) FileTimeToSystemTime(&utc, &now);
    return now;
}

const Metadata::PropertyDescriptor& OpenPropertiesRow(bool legacy) {
    return legacy ? ZipContainerSchema::legacykvd::Properties : ZipContainerSchema::brm::OpenMetadata;
}

// The container on the source, or none: nothing a damaged source throws
// gets out of the constructor.
template <typename Open>
ZipContainerRef OpenContainer(Open open) {
    try {
        return open();
    } catch (...) {
        return ZipContainerRef();
    }
}

}  // namespace

KvdContainerInfo::KvdContainerInfo(IStream* stream) {
    if (stream) {
        source = stream;
        source->AddRef();
        container = OpenContainer([&] { return ZipContainerImpl::OpenFromStream(stream); });
    }
    if (container) metadata.CopyFrom(container->Metadata());
}

KvdContainerInfo::KvdContainerInfo(const wchar_t* path) {
    if (path) {
        sourcePath = path;
        container = OpenContainer([&] { return ZipContainerImpl::OpenFromPath(sourcePath); });
    }
    if (container) metadata.CopyFrom(container->Metadata());
}

KvdContainerInfo::~KvdContainerInfo() {
    if (openProperties) openProperties->Release();
    SafeRelease(source);
    textInfo = Metadata::Container();
    metadata = Metadata::Container();
    container.Reset();
}

bool KvdContainerInfo::IsLegacy() const { return container && container->IsLegacyLayout(); }

// The source was attached by the constructor; the factory's attach step has
// nothing left to do.
bool KvdContainerInfo::OpenFile(const wchar_t*) { return true; }
bool KvdContainerInfo::OpenStream(IStream*) { return true; }
DibBlock KvdContainerInfo::ReadPreviewDib() { return {}; }
bool KvdContainerInfo::HasOpenProperties() { return true; }

// The pages are tried one by one: the document does not say how many
// previews it holds.
uint32_t KvdContainerInfo::GetPageCount() { return kUnknownPageCount; }

// ---- Previews ----------------------------------------------------------------

HBITMAP KvdContainerInfo::FitBitmap(std::unique_ptr<BrmUtils::NativeBitmap> image, SIZE size, bool allowEnlarge,
                                    uint8_t* hasAlpha) {
    if (!image || image->Width() <= 0 || image->Height() <= 0) return nullptr;
    auto fitted = BrmUtils::ScaleImage(*image, size, allowEnlarge, true, false);
    if (!fitted) return nullptr;
    HBITMAP result = BrmUtils::CreateHBITMAP(*fitted, kOpaqueWhite);
    if (result && hasAlpha) *hasAlpha = 0;
    return result;
}

HBITMAP KvdContainerInfo::GetBitmap(SIZE size, uint32_t, bool allowEnlarge, uint8_t* hasAlpha) {
    if (!container) return nullptr;
    try {
        return FitBitmap(container->GetThumbnailImage(), size, allowEnlarge, hasAlpha);
    } catch (...) {
        return nullptr;
    }
}

HBITMAP KvdContainerInfo::GetPageBitmap(uint32_t page, SIZE size, uint32_t, bool allowEnlarge, uint8_t* hasAlpha) {
    if (!container || page > uint32_t(std::numeric_limits<int32_t>::max())) return nullptr;
    try {
        return FitBitmap(container->GetPreviewImage(L"page", -1, -1, int32_t(page)), size, allowEnlarge, hasAlpha);
    } catch (...) {
        return nullptr;
    }
}

HICON KvdContainerInfo::GetIcon(void*, uint32_t edge) {
    if (!container || edge == 0 || edge > uint32_t(BrmUtils::NativeBitmap::kMaxEdge)) return nullptr;
    try {
        auto image = container->GetThumbnailImage();
        if (!image || image->Width() <= 0 || image->Height() <= 0) return nullptr;
        return BrmUtils::ImageToIcon(*image, int(edge));
    } catch (...) {
        return nullptr;
    }
}

// ---- Text ----------------------------------------------------------------------

bool KvdContainerInfo::EnsureTextInfo() {
    if (!textInfo.IsNull()) return true;
    if (!container) return false;
    IStream* part = container->OpenPart(TextPartName(IsLegacy()), false);
    if (!part) return false;  // tried again on the next use
    textInfo = Metadata::Container::LoadStream(part);
    part->Release();
    return !textInfo.IsNull();
}

HRESULT KvdContainerInfo::EnumTextChunks(PropertyVisitor& visitor) {
    if (!EnsureTextInfo()) return E_OUTOFMEMORY;
    for (const Metadata::TextRunEntry& run : Metadata::ReadTextStreams(textInfo)) {
        TextChunk chunk;
        chunk.text = run.text.GetString();
        chunk.length = run.text.GetLength();
        chunk.language = uint16_t(run.language);
        switch (run.breakKind) {
            case Metadata::BreakNone: chunk.chunkBreak = CHUNK_NO_BREAK; break;
            case Metadata::BreakStream: chunk.chunkBreak = CHUNK_EOC; break;
            default: chunk.chunkBreak = CHUNK_EOP; break;
        }
        visitor.Visit(&chunk);
    }
    return S_OK;
}

// ---- Open properties -----------------------------------------------------------

BrmUtils::MemoryPropertyStore* KvdContainerInfo::EnsureOpenProperties() {
    if (openProperties) return openProperties;
    BrmUtils::MemoryPropertyStore* store = BrmUtils::MemoryPropertyStore::Create();
    if (!store) return nullptr;
    const OpenList properties = BrmUtils::AnyCast<OpenList>(metadata.GetProperty(OpenPropertiesRow(IsLegacy())), OpenList());
    for (const auto& property : properties) {
        PROPVARIANT value;
        PropVariantInit(&value);
        // A value whose type or text does not parse is left out.
        if (BrmUtils::ParsePropVariant(property.type, property.array, property.value, &value)) {
            const PROPERTYKEY key{property.formatId.Get(), PROPID(property.propertyId)};
            store->SetValue(key, value);
        }
        PropVariantClear(&value);
    }
    openProperties = store;
    return openProperties;
}

std::vector<PROPERTYKEY>& KvdContainerInfo::GetOpenKeys(std::vector<PROPERTYKEY>& keys) {
    BrmUtils::MemoryPropertyStore* store = EnsureOpenProperties();
    DWORD count = 0;
    if (!store || FAILED(store->GetCount(&count))) return keys;
    for (DWORD i = 0; i < count; ++i) {
        PROPERTYKEY key;
        if (SUCCEEDED(store->GetAt(i, &key))) keys.push_back(key);
    }
    return keys;
}

HRESULT KvdContainerInfo::GetOpenValue(const PROPERTYKEY* key, PROPVARIANT* value) {
    if (!key || !value) return E_POINTER;
    BrmUtils::MemoryPropertyStore* store = EnsureOpenProperties();
    if (!store) return E_FAIL;
    return store->GetValue(*key, value);
}

HRESULT KvdContainerInfo::SetOpenValue(const PROPERTYKEY* key, const PROPVARIANT* value) {
    if (!key || !value) return E_POINTER;
    BrmUtils::MemoryPropertyStore* store = EnsureOpenProperties();
    if (!store) return E_FAIL;
    return store->SetValue(*key, *value);
}

// ---- Commit ----------------------------------------------------------------------

bool KvdContainerInfo::WriteTo(const ZipContainerRef& target) {
    BrmUtils::MemoryPropertyStore* store = EnsureOpenProperties();
    if (!store || !container || !target) return false;
    const bool legacy = IsLegacy();
    // The new container takes the layout and media type of the old one; the
    // copy brings every part but the metadata, which is written below.
    if (!target->InitNew(container->GetMimeType(), legacy, false)) return false;
    if (!container->CopyPartsTo(*target, {MetadataPartName(legacy)}, nullptr)) return false;

    // The metadata date says when the metadata last changed: now.
    metadata.SetProperty(ZipContainerSchema::xmp::MetadataDate, BrmUtils::Any(Now()));
    Metadata::Container& written = target->Metadata();
    written.CopyFrom(metadata);

    OpenList properties;
    DWORD count = 0;
    store->GetCount(&count);
    for (DWORD i = 0; i < count; ++i) {
        PROPERTYKEY key;
        PROPVARIANT value;
        PropVariantInit(&value);
        if (SUCCEEDED(store->GetAt(i, &key)) && SUCCEEDED(store->GetValue(key, &value))) {
            ZipContainerSchema::OpenMetadataProperty property;
            if (BrmUtils::FormatPropVariant(value, property.type, property.array, property.value)) {
                property.formatId = BrmUtils::Guid(key.fmtid);
                property.propertyId = int(key.pid);
                properties.push_back(std::move(property));
            }
        }
        PropVariantClear(&value);
    }
    written.SetProperty(OpenPropertiesRow(legacy), BrmUtils::Any(properties));
    written.SetModified(true);
    return target->Commit();
}

HRESULT KvdContainerInfo::CommitToStream(IStream* stream) {
    HRESULT hr = stream->Seek(MakeLargeInteger(0), STREAM_SEEK_SET, nullptr);
    if (FAILED(hr)) return hr;
    IDestinationStreamFactory* factory = nullptr;
    hr = stream->QueryInterface(IID_IDestinationStreamFactory, reinterpret_cast<void**>(&factory));
    if (FAILED(hr) || !factory) return FAILED(hr) ? hr : E_FAIL;
    IStream* destination = nullptr;
    hr = factory->GetDestinationStream(&destination);
    factory->Release();
    if (FAILED(hr) || !destination) return FAILED(hr) ? hr : E_FAIL;
    bool written = false;
    try {
        written = WriteTo(ZipContainerImpl::CreateOnStream(destination));
    } catch (...) {
        written = false;
    }
    if (written) {
        hr = destination->Commit(STGC_DEFAULT);
        if (SUCCEEDED(hr)) hr = stream->Commit(STGC_DEFAULT);
    } else {
        destination->Revert();
        hr = E_FAIL;
    }
    destination->Release();
    return hr;
}

HRESULT KvdContainerInfo::CommitToPath(const wchar_t* target) {
    const BrmStringW targetPath(target);
    const int slash = targetPath.ReverseFind(L'/');
    const BrmStringW folder = slash >= 0 ? targetPath.Left(slash + 1) : BrmStringW(L"./");
    const BrmStringW temporary = BrmUtils::MakeTempFileName(folder, L"kvd", L"tmp");
    if (temporary.IsEmpty()) return E_FAIL;
    bool written = false;
    try {
        written = WriteTo(ZipContainerImpl::CreateOnPath(temporary));
    } catch (...) {
        written = false;
    }
    if (!written) {
        DeleteFileW(temporary);
        return E_FAIL;
    }
    if (!ReplaceFileW(target, temporary, nullptr, 0, nullptr, nullptr)) {
        const HRESULT hr = HRESULT_FROM_WIN32(GetLastError());
        DeleteFileW(temporary);
        return hr;
    }
    return S_OK;
}

HRESULT KvdContainerInfo::CommitDocument() {
    if (!container) return E_FAIL;
    if (source) return CommitToStream(source);
    if (stream) return CommitToStream(stream);
    if (!sourcePath.IsEmpty()) return CommitToPath(sourcePath);
    return E_FAIL;
}
