// Small helpers that make metadata documents for the tests: an XMP frame
// with the usual namespace declarations around the given description
// content, and shortcuts for wide strings.
#pragma once

#include <cstdlib>
#include <ctime>
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

// Runs a block with the process's zone set to a POSIX TZ value ("XST-2"
// is two hours east of UTC), and puts the old zone back.
class ZoneScope {
public:
    explicit ZoneScope(const char* tz) {
        if (const char* old = std::getenv("TZ")) {
            saved_ = old;
            hadOld_ = true;
        }
        setenv("TZ", tz, 1);
        tzset();
    }
    ~ZoneScope() {
        if (hadOld_) {
            setenv("TZ", saved_.c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }
    ZoneScope(const ZoneScope&) = delete;
    ZoneScope& operator=(const ZoneScope&) = delete;

private:
    std::string saved_;
    bool hadOld_ = false;
};

inline BrmPlatform::BrmStringW W(const wchar_t* s) { return BrmPlatform::BrmStringW(s); }

}  // namespace MetadataTest
