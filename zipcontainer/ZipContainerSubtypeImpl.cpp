// ZipContainerSubtypeImpl: the main part read into and written from the
// subtype's object model.
#include "zipcontainer/ZipContainerSubtypeImpl.h"

using BrmPlatform::BrmStringW;

bool SubtypeSpec::IsValid() const { return false; }
BrmStringW SubtypeSpec::MainPartName() const { return BrmStringW(L"content/") + mainPart; }

ZipContainerImpl::Factory ZipContainerSubtypeImpl::MakeFactory(const SubtypeSpec& spec) {
    return [spec](ZipFileSet* set, const BrmStringW& path, const ContainerOptions& options) -> ZipContainerImpl* {
        return new ZipContainerSubtypeImpl(set, path, options, spec);
    };
}
ZipContainerSubtypeImpl::ZipContainerSubtypeImpl(ZipFileSet* set, const BrmStringW& sourcePath,
                                                 const ContainerOptions& options, std::optional<SubtypeSpec> spec)
    : ZipContainerImpl(set, sourcePath, options), spec_(std::move(spec)) {}
ZipContainerSubtypeImpl::~ZipContainerSubtypeImpl() = default;
bool ZipContainerSubtypeImpl::Open(bool, bool) { return false; }
bool ZipContainerSubtypeImpl::Commit() { return false; }
ZipContainerRef ZipContainerSubtypeImpl::CloneTo(ZipFileSet*, const BrmStringW&, const SearchPaths&) { return {}; }
bool ZipContainerSubtypeImpl::AddExtraElement() { return false; }
