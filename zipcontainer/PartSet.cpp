// PartSet: look-ups, the part table document and its writing order.
#include "zipcontainer/PartSet.h"

using BrmPlatform::BrmStringW;

const PartRecord* PartSet::Find(const BrmStringW& name) const {
    auto it = parts_.find(name);
    return it == parts_.end() ? nullptr : &it->second;
}
bool PartSet::Load(const Brm::XmlFile&) { return false; }
std::unique_ptr<Brm::XmlFile> PartSet::ToDocument() const { return nullptr; }
std::vector<NamedPartRecord> PartSet::SortedForWriting() const { return {}; }
BrmStringW PartSet::CaptionsToText(const Metadata::MultiLanguageString&) { return {}; }
Metadata::MultiLanguageString PartSet::CaptionsFromText(const BrmStringW&) { return {}; }
