// ZipContainerImpl: opening, creating and committing a container, and the
// part operations over its set and tables.
#include "zipcontainer/ZipContainerImpl.h"

using BrmPlatform::BrmStringW;

void ZipContainerImplBase::Release() const {
    if (refCount_.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    if (destroying_.exchange(true)) return;
    delete this;
}

ZipContainerImpl::ZipContainerImpl(ZipFileSet* set, const BrmStringW& sourcePath, const ContainerOptions& options)
    : set_(set), sourcePath_(sourcePath), options_(options),
      metadata_(std::make_unique<Metadata::Container>()) {}
ZipContainerImpl::~ZipContainerImpl() = default;

ZipContainerRef ZipContainerImpl::OpenFromPath(const BrmStringW&, bool, const ContainerOptions&, const Factory&) { return {}; }
ZipContainerRef ZipContainerImpl::OpenFromStream(IStream*, bool, const BrmStringW&, const ContainerOptions&, const Factory&) { return {}; }
ZipContainerRef ZipContainerImpl::CreateOnPath(const BrmStringW&, const ContainerOptions&, const Factory&) { return {}; }
ZipContainerRef ZipContainerImpl::CreateOnStream(IStream*, const ContainerOptions&, const Factory&) { return {}; }
bool ZipContainerImpl::Open(bool, bool) { return false; }
bool ZipContainerImpl::InitNew(const BrmStringW&, bool, bool) { return false; }
bool ZipContainerImpl::Commit() { return false; }
bool ZipContainerImpl::IsModified() const { return modified_; }
bool ZipContainerImpl::WriteXmlPart(const BrmStringW&, const Brm::XmlFile&, int) { return false; }
bool ZipContainerImpl::AddFilePart(const BrmStringW&, const BrmStringW&, int) { return false; }
std::unique_ptr<Brm::XmlFile> ZipContainerImpl::ReadXmlPart(const BrmStringW&) { return nullptr; }
std::set<int32_t> ZipContainerImpl::GetKindIndices(const BrmStringW&) const { return {}; }
std::vector<NamedPartRecord> ZipContainerImpl::FindParts(const wchar_t*, int32_t) const { return {}; }
NamedPartRecord ZipContainerImpl::FindBestPart(const BrmStringW&, int32_t, int32_t, int32_t) const { return {}; }
NamedPartRecord ZipContainerImpl::GetPreviewRecord(const BrmStringW&, int32_t, int32_t, int32_t) const { return {}; }
NamedPartRecord ZipContainerImpl::GetThumbnailRecord() const { return {}; }
bool ZipContainerImpl::WriteImagePart(const BrmStringW&, const Bitmap&, const BrmStringW&, const BrmStringW&,
                                      const Metadata::MultiLanguageString&, int32_t) { return false; }
ZipContainerImpl::BitmapPtr ZipContainerImpl::ReadImagePart(const BrmStringW&) { return nullptr; }
bool ZipContainerImpl::AddPreview(const Bitmap&, const BrmStringW&, const Metadata::MultiLanguageString&, int32_t, bool) { return false; }
ZipContainerImpl::BitmapPtr ZipContainerImpl::GetPreviewImage(const BrmStringW&, int32_t, int32_t, int32_t) { return nullptr; }
bool ZipContainerImpl::AddThumbnail(const Bitmap&) { return false; }
ZipContainerImpl::BitmapPtr ZipContainerImpl::GetThumbnailImage() { return nullptr; }
void ZipContainerImpl::SetPartRecord(const BrmStringW&, const PartRecord*) {}
void ZipContainerImpl::RemovePartRecord(const BrmStringW&) {}
std::vector<NamedPartRecord> ZipContainerImpl::GetPartRecords() const { return {}; }
bool ZipContainerImpl::RemoveFile(const BrmStringW&) { return false; }
bool ZipContainerImpl::RemoveFolder(const BrmStringW&) { return false; }
int ZipContainerImpl::RemoveMatching(const BrmStringW&) { return 0; }
bool ZipContainerImpl::Exists(const BrmStringW&) const { return false; }
bool ZipContainerImpl::CopyPartsTo(ZipContainerImplBase&, const std::vector<BrmStringW>&, std::vector<BrmStringW>*) { return false; }
IStream* ZipContainerImpl::OpenPart(const BrmStringW&, bool) { return nullptr; }
IStream* ZipContainerImpl::CreatePart(const BrmStringW&, bool, bool, const PartRecord*) { return nullptr; }
std::vector<BrmStringW> ZipContainerImpl::ListPartNames(const wchar_t*) const { return {}; }
std::vector<PartListing> ZipContainerImpl::ListParts(const wchar_t*) const { return {}; }
void ZipContainerImpl::SetLink(const BrmStringW&, const BrmStringW&) {}
bool ZipContainerImpl::RemoveLink(const BrmStringW&) { return false; }
bool ZipContainerImpl::CopyLinksTo(ZipContainerImplBase&) const { return false; }
bool ZipContainerImpl::CopyPartRecordsTo(ZipContainerImplBase&) const { return false; }
ZipContainerRef ZipContainerImpl::CloneTo(ZipFileSet*, const BrmStringW&, const SearchPaths&) { return {}; }
void ZipContainerImpl::ResetStandardMetadata() {}
void ZipContainerImpl::RefreshStandardMetadata() {}
BrmStringW ZipContainerImpl::LinksName() const { return {}; }
BrmStringW ZipContainerImpl::MetadataName() const { return {}; }
BrmStringW ZipContainerImpl::PreviewFolder() const { return {}; }
BrmStringW ZipContainerImpl::PreviewName(const BrmStringW&, int32_t, const BrmStringW&) const { return {}; }
BrmStringW ZipContainerImpl::PreviewMediaType(const Bitmap&, bool) const { return {}; }
bool ZipContainerImpl::WriteMimeType() { return false; }
