// The link table of a container: part name to reference, where a reference
// is one or more URIs separated by ";" ("self:///content/a.xml",
// "file:///shared/lib.zip#content/b.xml", "pictures/c.png" ...). Read from and
// written to the links part ("links.xml" or "META-INF/links.xml").
#pragma once

#include <map>
#include <memory>

#include "metadata/xml/XmlFile.h"
#include "utils/strings/BrmString.h"

class LinkTable {
public:
    using BrmStringW = BrmPlatform::BrmStringW;
    // Names compare exactly, code unit by code unit, shorter first.
    struct NameLess {
        bool operator()(const BrmStringW& a, const BrmStringW& b) const { return a.Compare(b) < 0; }
    };
    using Map = std::map<BrmStringW, BrmStringW, NameLess>;

    // The reference for the part, or null.
    const BrmStringW* Find(const BrmStringW& part) const;
    void Set(const BrmStringW& part, const BrmStringW& reference);
    bool Remove(const BrmStringW& part);
    void Clear() { links_.clear(); }

    const Map& Links() const { return links_; }
    bool IsLoaded() const { return loaded_; }
    void SetLoaded(bool loaded) { loaded_ = loaded; }

    // Replaces the table by the `link` elements under the root `linkInfo`.
    // A document without that root gives an empty table; links lacking a
    // part or reference are skipped; a repeated part keeps its last
    // reference. Marks the table loaded. True (kept for the caller's check).
    bool Load(const Brm::XmlFile& document);
    // The links document: declaration, `linkInfo`, one `link` per entry in
    // table order with `part` then `ref`.
    std::unique_ptr<Brm::XmlFile> ToDocument() const;

    friend bool operator==(const LinkTable&, const LinkTable&) = default;

private:
    Map links_;
    bool loaded_ = false;
};
