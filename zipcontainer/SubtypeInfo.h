// SubtypeInfo: the object model of a container subtype's main XML part (a
// fill description, say). The container reads the part into a tree and hands
// it to the subtype's factory; at commit the object writes itself back into a
// fresh root element and into the document's metadata. The container itself
// is passed as context so that an object can read or write further parts.
#pragma once

#include <memory>

namespace Metadata {
class Container;
}
namespace XmlNS {
class Node;
}

class ZipContainerImpl;

class SubtypeInfo {
public:
    virtual ~SubtypeInfo() = default;
    // Fills `node` (an empty root element) and the metadata from this object.
    virtual bool Write(Metadata::Container& metadata, XmlNS::Node& node, ZipContainerImpl* context) const = 0;
    // Reads this object from the root element of the main part.
    virtual bool Read(Metadata::Container& metadata, const XmlNS::Node& node, ZipContainerImpl* context) = 0;
    // A deep copy that keeps every identifier; null when it cannot be made.
    virtual std::unique_ptr<SubtypeInfo> Clone() const = 0;
};

// Makes the object for a main part's root element; null when the root is not
// one this subtype knows.
using SubtypeFactory = std::unique_ptr<SubtypeInfo> (*)(Metadata::Container& metadata, const XmlNS::Node& root);
