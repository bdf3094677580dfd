// ZipContainerSubtypeImpl: the main part read into the subtype's object
// model on Open and written back from it, with the licence statement, on
// Commit.
#include "zipcontainer/ZipContainerSubtypeImpl.h"

#include "metadata/Container.h"
#include "metadata/xml/Node.h"
#include "zipcontainer/ZipIo.h"

using BrmPlatform::BrmStringW;

bool SubtypeSpec::IsValid() const {
    return rootElement.ns && rootElement.local && factory && !mediaTypes.empty() && !mediaTypes.front().IsEmpty() &&
           !mainPart.IsEmpty() && !partMediaType.IsEmpty();
}

BrmStringW SubtypeSpec::MainPartName() const {
    BrmStringW name(ContainerNames::kContent);
    name.Append(mainPart);
    return name;
}

ZipContainerImpl::Factory ZipContainerSubtypeImpl::MakeFactory(const SubtypeSpec& spec) {
    return [spec](ZipFileSet* set, const BrmStringW& path, const ContainerOptions& options) -> ZipContainerImpl* {
        return new ZipContainerSubtypeImpl(set, path, options, spec);
    };
}

ZipContainerSubtypeImpl::ZipContainerSubtypeImpl(ZipFileSet* set, const BrmStringW& sourcePath,
                                                 const ContainerOptions& options, std::optional<SubtypeSpec> spec)
    : ZipContainerImpl(set, sourcePath, options), spec_(std::move(spec)) {}

ZipContainerSubtypeImpl::~ZipContainerSubtypeImpl() = default;

bool ZipContainerSubtypeImpl::Open(bool detectLayout, bool convertMetadata) {
    if (!spec_ || !spec_->IsValid()) return false;
    if (!ZipContainerImpl::Open(detectLayout, convertMetadata)) return false;
    auto document = ReadXmlPart(spec_->MainPartName());
    if (!document) return false;
    Metadata::Container tree = Metadata::Container::WrapElement(*document);
    if (!tree.Root()) return false;
    object_ = spec_->factory(*metadata_, *tree.Root());
    if (!object_) return false;
    return object_->Read(*metadata_, *tree.Root(), this);
}

bool ZipContainerSubtypeImpl::Commit() {
    if (!spec_ || !spec_->IsValid()) return false;
    if (!object_ || !set_ || set_->GetMode() == ZipFileSet::kOpened) return ZipContainerImpl::Commit();

    XmlNS::Node root;
    root.SetNamespace(root.DeclareNamespace(*spec_->rootElement.ns));
    root.SetName(spec_->rootElement.local);
    if (!object_->Write(*metadata_, root, this)) return false;

    const BrmStringW name = spec_->MainPartName();
    PartRecord main;
    main.fileKind = ContainerNames::kMainKind;
    main.mediaType = spec_->partMediaType;
    std::string text = Brm::XmlFile::FromTree(&root)->ToText();
    IStream* stream = CreatePart(name, false, false, parts_.Find(name) ? nullptr : &main);
    bool ok = stream && ZipIo::Write(stream, text.data(), text.size());
    if (stream) stream->Release();

    AddExtraElement();
    return ZipContainerImpl::Commit() && ok;
}

bool ZipContainerSubtypeImpl::AddExtraElement() {
    if (spec_->extraDocument.empty() || !spec_->extraNamespace || !spec_->extraElement.ns) return false;
    Brm::XmlFile document(spec_->extraDocument);
    if (document.Error()) return false;
    std::unique_ptr<XmlNS::Node> tree = XmlNS::FromElement(document.RootElement(), nullptr);
    XmlNS::Node* element = tree ? tree->FindNode(spec_->extraElement, true) : nullptr;
    XmlNS::Node* description = metadata_->FindDescription();
    if (!element || !description) return false;
    // A document opened and committed again already carries the statement;
    // it stays there once.
    while (XmlNS::Node* old = description->FindChild(spec_->extraElement)) description->RemoveChild(old);
    description->DeclareNamespace(*spec_->extraNamespace);
    element->Clone(*description, description);
    metadata_->SetModified(true);
    return true;
}

ZipContainerRef ZipContainerSubtypeImpl::CloneTo(ZipFileSet* set, const BrmStringW& path,
                                                 const SearchPaths& searchPaths) {
    if (!set) return {};
    ContainerOptions options = options_;
    options.searchPaths = searchPaths;
    auto* clone = new ZipContainerSubtypeImpl(set, path, options, spec_);
    ZipContainerRef ref(clone);
    if (!clone->InitNew(mimeType_, legacyLayout_, false)) return {};
    if (!CopyPartsTo(*clone, {}, nullptr)) return {};
    if (object_) {
        clone->object_ = object_->Clone();
        if (!clone->object_) return {};
    }
    return ref;
}
