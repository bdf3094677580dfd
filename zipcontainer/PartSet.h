// The part table of a container: part name to PartRecord, stored as
// "META-INF/container.xml" (a `container` / `rootfiles` / `rootfile` tree with
// the records in attributes of the container namespace).
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "metadata/xml/XmlFile.h"
#include "utils/strings/BrmString.h"
#include "zipcontainer/PartRecord.h"

class PartSet {
public:
    using BrmStringW = BrmPlatform::BrmStringW;
    struct NameLess {
        bool operator()(const BrmStringW& a, const BrmStringW& b) const { return a.Compare(b) < 0; }
    };
    using Map = std::map<BrmStringW, PartRecord, NameLess>;

    const PartRecord* Find(const BrmStringW& name) const;
    void Set(const BrmStringW& name, const PartRecord& record) { parts_[name] = record; }
    bool Remove(const BrmStringW& name) { return parts_.erase(name) > 0; }
    void Clear() { parts_.clear(); }

    const Map& Parts() const { return parts_; }
    bool IsLoaded() const { return loaded_; }
    void SetLoaded(bool loaded) { loaded_ = loaded; }

    // Adds the `rootfile` entries of the document (the first record of a
    // name wins) and marks the table loaded. True.
    bool Load(const Brm::XmlFile& document);
    // The document, records in writing order (SortedForWriting).
    std::unique_ptr<Brm::XmlFile> ToDocument() const;
    // The records in the order they are written: "main" (and an empty
    // kind) first, then by kind without regard to case, then by index.
    std::vector<NamedPartRecord> SortedForWriting() const;

    // The caption attribute's form: a lone default entry as its text, else
    // `language:[text]` entries joined by ";", with '\' before '\' and ']'.
    // Empty for no captions or one empty text.
    static BrmStringW CaptionsToText(const Metadata::MultiLanguageString& captions);
    static Metadata::MultiLanguageString CaptionsFromText(const BrmStringW& text);

    friend bool operator==(const PartSet&, const PartSet&) = default;

private:
    Map parts_;
    bool loaded_ = false;
};
