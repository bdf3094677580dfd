// LinkTable: look-ups and the links document.
#include "zipcontainer/LinkTable.h"

using BrmPlatform::BrmStringW;

const BrmStringW* LinkTable::Find(const BrmStringW& part) const {
    auto it = links_.find(part);
    return it == links_.end() ? nullptr : &it->second;
}
void LinkTable::Set(const BrmStringW& part, const BrmStringW& reference) { links_[part] = reference; }
bool LinkTable::Remove(const BrmStringW& part) { return links_.erase(part) > 0; }
bool LinkTable::Load(const Brm::XmlFile&) { return false; }
std::unique_ptr<Brm::XmlFile> LinkTable::ToDocument() const { return nullptr; }
