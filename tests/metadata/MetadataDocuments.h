// Small helpers that make metadata documents for the tests: an XMP frame
// with the usual namespace declarations around the given description
// content, and a shortcut for wide strings.
#pragma once

#include <string>

#include "metadata/Container.h"
#include "metadata/Namespaces.h"

namespace MetadataTest {

inline std::string Declarations() {
    using namespace Metadata::Namespaces;
    std::string s;
    for (const auto* ns : {&rdf, &dc, &xmp, &xmpMM, &kvd, &kvdinfo, &kvt, &brm, &legacykvd, &rect, &inEff, &inObj,
                           &inCrv, &inTxt, &inFill, &inOtl, &inClr}) {
        s += std::string(" xmlns:") + ns->prefix + "=\"" + ns->uri + "\"";
    }
    return s;
}

// x:xmpmeta / rdf:RDF / rdf:Description(attributes) with `content` inside.
inline std::string Document(const std::string& content, const std::string& descriptionAttributes = "") {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"" + Declarations() +
           "><rdf:RDF><rdf:Description rdf:about=\"\"" + descriptionAttributes + ">" + content +
           "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

inline Metadata::Container Load(const std::string& content, const std::string& descriptionAttributes = "") {
    return Metadata::Container::LoadText(Document(content, descriptionAttributes));
}

// Saves and loads again, as a document passes through a file.
inline Metadata::Container Reload(const Metadata::Container& c) { return Metadata::Container::LoadText(c.SaveText()); }

inline BrmPlatform::BrmStringW W(const wchar_t* s) { return BrmPlatform::BrmStringW(s); }

}  // namespace MetadataTest
