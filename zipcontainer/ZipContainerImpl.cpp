// ZipContainerImpl: how a container comes to be (factories, Open, InitNew),
// how it is written (Commit, SaveToFile), its standard metadata, and the
// table operations. Part resolution is in ZipContainerParts.cpp, images in
// ZipContainerImages.cpp.
#include "zipcontainer/ZipContainerImpl.h"

#include <cwctype>

#include "metadata/LegacyConversion.h"
#include "metadata/Schema.h"
#include "platform/Files.h"
#include "platform/Time.h"
#include "utils/FileUrl.h"
#include "utils/TempFiles.h"
#include "utils/streams/FileStream.h"
#include "metadata/Utf8.h"
#include "zipcontainer/ZipIo.h"
#include "zipcontainer/ZipMatch.h"

using BrmPlatform::BrmStringW;
namespace CN = ContainerNames;

namespace {

// The longest "mimetype" line read; a media type is a short token.
constexpr size_t kMaxMimeTypeBytes = 1024;
constexpr size_t kCopyBlock = 65536;

bool SameNoCase(const BrmStringW& a, const wchar_t* b) { return a.CompareNoCase(b) == 0; }

bool WriteAll(IStream* stream, const void* data, size_t size) {
    return ZipIo::Write(stream, static_cast<const uint8_t*>(data), size);
}

}  // namespace

namespace {
std::atomic<bool> refuseFileLinksDefault{false};
}  // namespace

void ContainerOptions::SetRefuseFileLinksDefault(bool refuse) { refuseFileLinksDefault.store(refuse); }
bool ContainerOptions::RefuseFileLinksDefault() { return refuseFileLinksDefault.load(); }

void ZipContainerImplBase::Release() const {
    if (refCount_.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    if (destroying_.exchange(true)) return;
    delete this;
}

// --- Construction ------------------------------------------------------------

ZipContainerImpl::ZipContainerImpl(ZipFileSet* set, const BrmStringW& sourcePath, const ContainerOptions& options)
    : set_(set), sourcePath_(sourcePath), options_(options),
      metadata_(std::make_unique<Metadata::Container>()) {
    if (set_)
        set_->SetNewTargetCallback(
            [](void* self, ZipFileSet&) { return static_cast<ZipContainerImpl*>(self)->WriteMimeType(); }, this);
}

ZipContainerImpl::~ZipContainerImpl() {
    // Streams on the set may outlive this object; they must not call back.
    if (set_) set_->SetNewTargetCallback(nullptr, nullptr);
}

ZipContainerRef ZipContainerImpl::MakeOn(ZipFileSetRef set, const BrmStringW& sourcePath, bool detectLayout,
                                         const ContainerOptions& options, const Factory& factory) {
    if (!set) return {};
    ZipContainerImpl* object =
        factory ? factory(set.Get(), sourcePath, options) : new ZipContainerImpl(set.Get(), sourcePath, options);
    return Start(object, set.Get(), detectLayout);
}

ZipContainerRef ZipContainerImpl::Start(ZipContainerImpl* object, ZipFileSet* set, bool detectLayout) {
    if (!object) return {};
    ZipContainerRef ref(object);
    bool ok = set->IsCreatedNew() ? object->InitNew({}, false, false) : object->Open(detectLayout, false);
    if (!ok) return {};
    return ref;
}

ZipContainerRef ZipContainerImpl::OpenFromPath(const BrmStringW& path, bool detectLayout,
                                               const ContainerOptions& options, const Factory& factory) {
    if (options.nesting > ContainerOptions::kMaxNesting) return {};
    return MakeOn(ZipFileSet::OpenFromPath(path), BrmUtils::UrlFromPath(path), detectLayout, options, factory);
}

ZipContainerRef ZipContainerImpl::OpenFromStream(IStream* stream, bool detectLayout, const BrmStringW& path,
                                                 const ContainerOptions& options, const Factory& factory) {
    if (!stream || options.nesting > ContainerOptions::kMaxNesting) return {};
    BrmStringW source = path.IsEmpty() ? BrmStringW() : BrmUtils::UrlFromPath(path);
    return MakeOn(ZipFileSet::OpenFromStream(stream, path), source, detectLayout, options, factory);
}

ZipContainerRef ZipContainerImpl::CreateOnPath(const BrmStringW& path, const ContainerOptions& options,
                                               const Factory& factory) {
    return MakeOn(ZipFileSet::CreateOnPath(path), BrmUtils::UrlFromPath(path), false, options, factory);
}

ZipContainerRef ZipContainerImpl::CreateOnStream(IStream* stream, const ContainerOptions& options,
                                                 const Factory& factory) {
    return MakeOn(ZipFileSet::CreateOnStream(stream), {}, false, options, factory);
}

// --- Layout --------------------------------------------------------------------

bool ZipContainerImpl::DetectLegacyLayout(const ZipFileSet& set) {
    if (set.Exists(CN::kLegacyLinks) && !set.Exists(CN::kLinks)) return true;
    return set.Exists(CN::kLegacyMetadata) && !set.Exists(CN::kMetadata);
}

BrmStringW ZipContainerImpl::LinksName() const { return legacyLayout_ ? CN::kLegacyLinks : CN::kLinks; }
BrmStringW ZipContainerImpl::MetadataName() const { return legacyLayout_ ? CN::kLegacyMetadata : CN::kMetadata; }
BrmStringW ZipContainerImpl::PreviewFolder() const { return legacyLayout_ ? CN::kLegacyPreviews : CN::kPreviews; }

// --- Opening and creating -------------------------------------------------------

bool ZipContainerImpl::Open(bool detectLayout, bool convertMetadata) {
    if (!set_) return false;
    convertMetadata_ = convertMetadata;
    // Without detection the layout stays what it is, the current one for a
    // new object (see docs/decisions.md).
    if (detectLayout) legacyLayout_ = DetectLegacyLayout(*set_);

    if (auto links = ReadXmlPart(LinksName())) {
        if (!links_.Load(*links)) return false;
    } else {
        links_.Clear();
        links_.SetLoaded(true);
    }

    mimeType_.Empty();
    if (IStream* stream = OpenPart(CN::kMimeType)) {
        std::string line(kMaxMimeTypeBytes, '\0');
        size_t got = 0;
        ZipIo::Read(stream, reinterpret_cast<uint8_t*>(line.data()), line.size(), got);
        stream->Release();
        line.resize(got);
        line = line.substr(0, line.find_first_of("\r\n"));
        mimeType_ = Metadata::Utf8ToWide(line);
    }

    auto document = ReadXmlPart(MetadataName());
    Metadata::Container loaded = document ? Metadata::Container::LoadDocument(*document) : Metadata::Container();
    if (!loaded.IsNull()) {
        *metadata_ = std::move(loaded);
        if (!legacyLayout_ && convertMetadata_) {
            *metadata_ = Metadata::ConvertLegacyToCurrent(*metadata_);
            RefreshStandardMetadata();
        }
    } else {
        *metadata_ = Metadata::Container::CreateEmpty();
        if (!legacyLayout_) RefreshStandardMetadata();
    }
    metadata_->SetModified(false);

    parts_.Clear();
    bool ok = true;
    if (!legacyLayout_) {
        if (auto table = ReadXmlPart(CN::kPartTable)) ok = parts_.Load(*table);
    }
    parts_.SetLoaded(true);
    modified_ = false;
    return ok;
}

bool ZipContainerImpl::InitNew(const BrmStringW& mimeType, bool legacyLayout, bool convertMetadata) {
    mimeType_ = mimeType;
    legacyLayout_ = legacyLayout;
    convertMetadata_ = convertMetadata;
    links_.SetLoaded(true);
    parts_.SetLoaded(true);
    *metadata_ = Metadata::Container::CreateEmpty();
    if (!legacyLayout_) RefreshStandardMetadata();
    modified_ = true;
    return WriteMimeType();
}

bool ZipContainerImpl::WriteMimeType() {
    if (mimeType_.IsEmpty()) return true;
    if (!set_) return false;
    IStream* stream = set_->CreateMember(CN::kMimeType, 0, false);
    if (!stream) return false;
    std::string text = Metadata::WideToUtf8(mimeType_);
    bool ok = WriteAll(stream, text.data(), text.size());
    stream->Release();
    return ok;
}

// --- Writing ----------------------------------------------------------------------

bool ZipContainerImpl::IsModified() const {
    if (modified_ || (metadata_ && metadata_->IsModified())) return true;
    if (set_)
        for (const auto& archive : set_->Archives())
            if (archive->modified) return true;
    return false;
}

bool ZipContainerImpl::Commit() {
    bool ok = true;
    if (IsModified() && set_ && set_->GetMode() != ZipFileSet::kOpened) {
        if (metadata_ && !metadata_->IsNull()) {
            std::unique_ptr<Brm::XmlFile> document;
            if (legacyLayout_ && convertMetadata_)
                document = Metadata::ConvertCurrentToLegacy(*metadata_).SaveDocument();
            else
                document = metadata_->SaveDocument();
            ok = WriteXmlPart(MetadataName(), *document);
            *metadata_ = Metadata::Container::CreateEmpty();
        }
        if (ok) ok = WriteXmlPart(LinksName(), *links_.ToDocument());
        if (ok && !legacyLayout_) ok = WriteXmlPart(CN::kPartTable, *parts_.ToDocument());
    }
    if (!set_) return false;
    if (!set_->CommitSet()) return false;
    set_->SetNewTargetCallback(nullptr, nullptr);
    set_.Reset();
    return ok;
}

bool ZipContainerImpl::SaveToFile(const BrmStringW& path, const std::function<IStream*(IStream*)>& wrapTarget) {
    if (!set_ || path.IsEmpty()) return false;
    int slash = path.ReverseFind(L'/');
    BrmStringW folder = slash < 0 ? BrmStringW(L".") : path.Left(slash + 1);
    BrmStringW temp;
    HANDLE handle = BrmUtils::CreateTempFile(folder, BrmStringW(), BrmStringW(), false, &temp);
    if (handle == INVALID_HANDLE_VALUE) return false;
    IStream* target = new BrmUtils::FileStream(handle, temp.GetString());
    if (wrapTarget) {
        IStream* wrapped = wrapTarget(target);
        target->Release();
        target = wrapped;
    }
    bool ok = false;
    if (target) {
        ZipFileSetRef set = ZipFileSet::CreateOnStream(target, temp);
        target->Release();
        ZipContainerRef clone = set ? CloneTo(set.Get(), BrmUtils::UrlFromPath(path), options_.searchPaths)
                                    : ZipContainerRef();
        set.Reset();
        if (clone) {
            if (!metadata_->IsNull()) {
                clone->Metadata().CopyFrom(*metadata_);
                clone->Metadata().SetModified(true);
            }
            ok = clone->Commit();
        }
    }
    // The clone and its set are gone here, so no handle holds the new file.
    if (ok)
        ok = GetFileAttributesW(path.GetString()) == INVALID_FILE_ATTRIBUTES
                 ? MoveFileW(temp.GetString(), path.GetString())
                 : ReplaceFileW(path.GetString(), temp.GetString(), nullptr, 0, nullptr, nullptr);
    if (!ok) DeleteFileW(temp.GetString());
    return ok;
}

bool ZipContainerImpl::WriteXmlPart(const BrmStringW& name, const Brm::XmlFile& document, int) {
    IStream* stream = CreatePart(name, false);
    if (!stream) return false;
    std::string text = document.ToText();
    bool ok = WriteAll(stream, text.data(), text.size());
    stream->Release();
    return ok;
}

bool ZipContainerImpl::AddFilePart(const BrmStringW& name, const BrmStringW& path, int) {
    IStream* source = BrmUtils::FileStream::Open(path.GetString());
    if (!source) return false;
    IStream* target = CreatePart(name, false);
    bool ok = target != nullptr;
    std::vector<uint8_t> block(kCopyBlock);
    while (ok) {
        size_t got = 0;
        ok = ZipIo::Read(source, block.data(), block.size(), got);
        if (!ok || got == 0) break;
        ok = WriteAll(target, block.data(), got);
    }
    source->Release();
    if (target) target->Release();
    return ok;
}

std::unique_ptr<Brm::XmlFile> ZipContainerImpl::ReadXmlPart(const BrmStringW& name) {
    IStream* stream = OpenPart(name, false);
    if (!stream) return nullptr;
    // One byte beyond the parser's limit tells a part that is too large.
    std::string text;
    std::vector<uint8_t> block(kCopyBlock);
    bool ok = true;
    while (ok && text.size() <= Brm::XmlLimits::kMaxDocumentBytes) {
        size_t got = 0;
        ok = ZipIo::Read(stream, block.data(), block.size(), got);
        if (!ok || got == 0) break;
        text.append(reinterpret_cast<const char*>(block.data()), got);
    }
    stream->Release();
    if (!ok || text.size() > Brm::XmlLimits::kMaxDocumentBytes) return nullptr;
    auto document = std::make_unique<Brm::XmlFile>(text);
    if (document->Error() || !document->RootElement()) return nullptr;
    document->SetName(name);
    return document;
}

// --- Standard metadata ---------------------------------------------------------------

void ZipContainerImpl::RefreshStandardMetadata() {
    namespace S = ZipContainerSchema;
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    SYSTEMTIME time{};
    FileTimeToSystemTime(&now, &time);
    for (const auto* row : {&S::xmp::CreateDate, &S::xmp::ModifyDate, &S::xmp::MetadataDate})
        metadata_->SetProperty(*row, BrmUtils::Any(time));
    if (!mimeType_.IsEmpty()) metadata_->SetProperty(S::dc::format, BrmUtils::Any(mimeType_));
}

void ZipContainerImpl::ResetStandardMetadata() {
    namespace S = ZipContainerSchema;
    const SYSTEMTIME fixed{2001, 1, 1, 1, 1, 1, 1, 0};  // Monday 2001-01-01 01:01:01
    for (const auto* row : {&S::xmp::CreateDate, &S::xmp::ModifyDate, &S::xmp::MetadataDate})
        metadata_->SetProperty(*row, BrmUtils::Any(fixed));
}

// --- Tables ---------------------------------------------------------------------------

std::set<int32_t> ZipContainerImpl::GetKindIndices(const BrmStringW& fileKind) const {
    std::set<int32_t> out;
    for (const auto& [name, record] : parts_.Parts())
        if (record.fileKind.CompareNoCase(fileKind) == 0) out.insert(record.index);
    return out;
}

std::vector<NamedPartRecord> ZipContainerImpl::FindParts(const wchar_t* fileKind, int32_t index) const {
    std::vector<NamedPartRecord> out;
    for (const auto& [name, record] : parts_.Parts()) {
        if (fileKind && !SameNoCase(record.fileKind, fileKind)) continue;
        if (index >= 0 && record.index != index) continue;
        out.emplace_back(name, record);
    }
    return out;
}

void ZipContainerImpl::SetPartRecord(const BrmStringW& name, const PartRecord* record) {
    if (record) parts_.Set(name, *record);
    modified_ = true;
}

void ZipContainerImpl::RemovePartRecord(const BrmStringW& name) {
    parts_.Remove(name);
    modified_ = true;
}

std::vector<NamedPartRecord> ZipContainerImpl::GetPartRecords() const {
    return {parts_.Parts().begin(), parts_.Parts().end()};
}

void ZipContainerImpl::SetLink(const BrmStringW& part, const BrmStringW& reference) { links_.Set(part, reference); }

bool ZipContainerImpl::RemoveLink(const BrmStringW& part) { return links_.Remove(part); }

bool ZipContainerImpl::CopyLinksTo(ZipContainerImplBase& target) const {
    target.Links() = links_;
    return true;
}

bool ZipContainerImpl::CopyPartRecordsTo(ZipContainerImplBase& target) const {
    for (const auto& [name, record] : parts_.Parts()) target.SetPartRecord(name, &record);
    return true;
}

// --- Members --------------------------------------------------------------------------

bool ZipContainerImpl::RemoveFile(const BrmStringW& name) {
    if (!set_ || ZipMatch::IsFolder(name)) return false;
    return set_->RemoveMembers(name);
}

bool ZipContainerImpl::RemoveFolder(const BrmStringW& name) {
    if (!set_ || !ZipMatch::IsFolder(name)) return false;
    return set_->RemoveMembers(name);
}

int ZipContainerImpl::RemoveMatching(const BrmStringW& expression) {
    return set_ ? set_->RemoveMatching(expression) : 0;
}

bool ZipContainerImpl::Exists(const BrmStringW& name) const {
    return (set_ && set_->Exists(name)) || links_.Find(name) != nullptr;
}

bool ZipContainerImpl::CopyPartsTo(ZipContainerImplBase& target, const std::vector<BrmStringW>& excluded,
                                   std::vector<BrmStringW>* copied) {
    if (!set_ || !target.ZipSet()) return false;
    std::vector<BrmStringW> names = excluded;
    names.insert(names.end(), {CN::kMimeType, LinksName(), CN::kPartTable, MetadataName()});
    if (!set_->MergeMembersTo(target.ZipSet().Get(), names, copied)) return false;
    return CopyLinksTo(target) && CopyPartRecordsTo(target);
}

ZipContainerRef ZipContainerImpl::CloneTo(ZipFileSet* set, const BrmStringW& path, const SearchPaths& searchPaths) {
    if (!set) return {};
    ContainerOptions options = options_;
    options.searchPaths = searchPaths;
    ZipContainerRef clone(new ZipContainerImpl(set, path, options));
    if (!clone->InitNew(mimeType_, legacyLayout_, false)) return {};
    if (!CopyPartsTo(*clone, {}, nullptr)) return {};
    return clone;
}
