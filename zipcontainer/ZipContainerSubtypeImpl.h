// A container whose payload is one known XML part under "content/" (a fill
// description, say): the part is read into a SubtypeInfo object when the
// container opens and written back from it, with the licence statement in
// the metadata, when it commits.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "metadata/xml/QualifiedName.h"
#include "zipcontainer/SubtypeInfo.h"
#include "zipcontainer/ZipContainerImpl.h"

struct SubtypeSpec {
    std::vector<BrmPlatform::BrmStringW> mediaTypes;  // the first is the one written
    BrmPlatform::BrmStringW mainPart;                 // below "content/", e.g. "fill.xml"
    // An XML text holding extraElement; a copy of that element goes into the
    // metadata at every commit (the licence statement).
    std::string_view extraDocument;
    const XmlNS::NamespaceDef* extraNamespace = nullptr;
    XmlNS::QualifiedName extraElement{nullptr, nullptr};
    XmlNS::QualifiedName rootElement{nullptr, nullptr};
    BrmPlatform::BrmStringW partMediaType;
    SubtypeFactory factory = nullptr;

    // rootElement and factory set; first media type, main part and part
    // media type not empty.
    bool IsValid() const;
    // "content/" + mainPart.
    BrmPlatform::BrmStringW MainPartName() const;
};

class ZipContainerSubtypeImpl : public ZipContainerImpl {
public:
    // The factory for ZipContainerImpl's Open*/Create* functions: each object
    // it makes keeps its own copy of the SubtypeSpec given here.
    static Factory MakeFactory(const SubtypeSpec& spec);

    ZipContainerSubtypeImpl(ZipFileSet* set, const BrmStringW& sourcePath, const ContainerOptions& options,
                            std::optional<SubtypeSpec> spec);
    ~ZipContainerSubtypeImpl() override;

    bool Open(bool detectLayout, bool convertMetadata) override;
    bool Commit() override;
    ZipContainerRef CloneTo(ZipFileSet* set, const BrmStringW& path, const SearchPaths& searchPaths) override;

    const std::optional<SubtypeSpec>& Spec() const { return spec_; }
    // The object read from the main part (null before Open or on failure).
    SubtypeInfo* Object() const { return object_.get(); }
    // Sets the object a new container commits.
    void SetObject(std::unique_ptr<SubtypeInfo> object) { object_ = std::move(object); }

private:
    bool AddExtraElement();

    std::optional<SubtypeSpec> spec_;
    std::unique_ptr<SubtypeInfo> object_;
};
