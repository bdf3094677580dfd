// The licence statement subtypes put into their documents' metadata: an RDF
// description of the Creative Commons Attribution 3.0 licence.
#pragma once

#include <string_view>

#include "metadata/xml/QualifiedName.h"

namespace ContainerLicense {

// The Creative Commons vocabulary, prefix "cc".
extern const XmlNS::NamespaceDef kCcNamespace;
// cc:License, the element the document holds.
extern const XmlNS::QualifiedName kLicenseElement;
// The whole RDF document, UTF-8.
std::string_view Document();

}  // namespace ContainerLicense
