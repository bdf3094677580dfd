// LinkTable: look-ups and the links document.
#include "zipcontainer/LinkTable.h"

#include "metadata/Utf8.h"

using BrmPlatform::BrmStringW;

const BrmStringW* LinkTable::Find(const BrmStringW& part) const {
    auto it = links_.find(part);
    return it == links_.end() ? nullptr : &it->second;
}

void LinkTable::Set(const BrmStringW& part, const BrmStringW& reference) { links_[part] = reference; }

bool LinkTable::Remove(const BrmStringW& part) { return links_.erase(part) > 0; }

bool LinkTable::Load(const Brm::XmlFile& document) {
    links_.clear();
    pugi::xml_node root = document.Document().child("linkInfo");
    for (pugi::xml_node link = root.child("link"); link; link = link.next_sibling("link")) {
        const char* part = link.attribute("part").value();
        const char* ref = link.attribute("ref").value();
        if (*part && *ref) links_[Metadata::Utf8ToWide(part)] = Metadata::Utf8ToWide(ref);
    }
    loaded_ = true;
    return true;
}

std::unique_ptr<Brm::XmlFile> LinkTable::ToDocument() const {
    auto document = Brm::XmlFile::FromTree(nullptr);
    pugi::xml_node root = document->Document().append_child("linkInfo");
    for (const auto& [part, ref] : links_) {
        pugi::xml_node link = root.append_child("link");
        link.append_attribute("part") = Metadata::WideToUtf8(part).c_str();
        link.append_attribute("ref") = Metadata::WideToUtf8(ref).c_str();
    }
    return document;
}
