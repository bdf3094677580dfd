// The common part of every fill: version and identity (see FillInfo.h).
#include "fill/FillInfo.h"

#include "fill/FillNames.h"
#include "fill/FillNodes.h"
#include "metadata/Container.h"
#include "metadata/Schema.h"

namespace S = ZipContainerSchema;
using BrmPlatform::BrmStringW;

std::string FillInfo::GetVersionText() const { return FillText::FormatVersion(identity.version); }

bool FillInfo::Write(Metadata::Container& metadata, XmlNS::Node& node, ZipContainerImpl*) const {
    const std::string version = GetVersionText();
    node.SetAttribute(FillXml::attr::version, version);
    node.SetAttribute(FillXml::attr::type, GetTypeName());
    // The kind is written into the metadata on every save, so whatever a
    // user put into the content type before does not outlive a commit.
    metadata.SetProperty(S::brm::SubFormat, BrmUtils::Any(Metadata::Utf8ToWide(GetTypeName())));
    metadata.SetProperty(S::brm::Version, BrmUtils::Any(Metadata::Utf8ToWide(version)));
    metadata.SetProperty(S::xmpMM::DocumentID, BrmUtils::Any(identity.documentId));
    metadata.SetProperty(S::xmpMM::InstanceID, BrmUtils::Any(identity.instanceId));
    metadata.SetProperty(S::brm::DerivedFrom, BrmUtils::Any(identity.derivedFrom));
    return true;
}

bool FillInfo::Read(Metadata::Container& metadata, const XmlNS::Node& node, ZipContainerImpl*) {
    const std::string* version = node.GetAttribute(FillXml::attr::version);
    if (!version) return false;
    identity.version = FillText::ParseVersion(*version);
    if (identity.version != kVersion) return false;
    identity.documentId = metadata.GetProperty(S::xmpMM::DocumentID).GetValue<BrmUtils::Guid>();
    identity.instanceId = metadata.GetProperty(S::xmpMM::InstanceID).GetValue<BrmUtils::Guid>();
    identity.derivedFrom = metadata.GetProperty(S::brm::DerivedFrom).GetValue<std::vector<BrmUtils::Guid>>();
    return true;
}

std::unique_ptr<XmlNS::Node> NewFillElement() {
    auto root = std::make_unique<XmlNS::Node>();
    root->SetNamespace(root->DeclareNamespace(FillXml::kNamespace));
    root->SetName(FillXml::fill.local);
    return root;
}
