// FillInfo: the root object of a fill description (content/fill.xml), the
// common part of the three kinds of fill. It carries the format version and
// the document identity, which live in the container's metadata rather than
// in fill.xml, and the factory that picks the kind from the root element.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "utils/Guid.h"
#include "zipcontainer/SubtypeInfo.h"

namespace XmlNS {
class Node;
}

// The identity every fill carries; GUIDs are fresh for a new object.
struct FillIdentity {
    int version = 100;  // version times 100
    BrmUtils::Guid instanceId = BrmUtils::Guid::Create();
    BrmUtils::Guid documentId = BrmUtils::Guid::Create();
    std::vector<BrmUtils::Guid> derivedFrom;

    bool operator==(const FillIdentity&) const = default;
};

class FillInfo : public SubtypeInfo {
public:
    enum Kind { kBitmapKind = 0, kVectorKind = 1, kFountainKind = 2 };
    // The only version this code reads and writes.
    static constexpr int kVersion = 100;

    virtual int GetKind() const = 0;
    // The root's `type` attribute: "bitmap-tiles", "vector-tiles", "fountain".
    virtual const char* GetTypeName() const = 0;
    int GetVersion() const { return identity.version; }
    std::string GetVersionText() const;

    virtual bool IsBitmapPattern() const { return false; }
    virtual bool IsVectorPattern() const { return false; }
    virtual bool IsFountain() const { return false; }
    virtual bool IsTiled() const { return false; }

    // Root attributes and the identity in the metadata; always true.
    bool Write(Metadata::Container& metadata, XmlNS::Node& node, ZipContainerImpl* context) const override;
    // The root's version (only 1.0 is read) and the identity from the
    // metadata, where missing values are no failure.
    bool Read(Metadata::Container& metadata, const XmlNS::Node& node, ZipContainerImpl* context) override;

    FillIdentity identity;
};

// The object for a fill.xml root element by its `type` attribute, with
// defaults and fresh identifiers; null for a type this code does not know.
std::unique_ptr<SubtypeInfo> CreateFillInfo(Metadata::Container& metadata, const XmlNS::Node& root);

// An empty `fill` element in the fill namespace, ready for Write.
std::unique_ptr<XmlNS::Node> NewFillElement();
