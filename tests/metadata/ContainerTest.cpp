// Loading and normalising documents, saving them, and property access
// through the text forms.
#include <gtest/gtest.h>

#include "MetadataDocuments.h"
#include "metadata/Names.h"
#include "metadata/Schema.h"

namespace {

namespace S = ZipContainerSchema;
using Metadata::Container;
using MetadataTest::W;
using BrmUtils::Any;

constexpr const char* kNs =
    " xmlns:x='adobe:ns:meta/' xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'"
    " xmlns:kvdinfo='urn:brimo:namespaces:kvd/metadata/1.0/fileinfo/' xmlns:dc='http://purl.org/dc/elements/1.1/'";

struct LoadCase {
    const char* what;
    std::string xml;
    bool hasDescription;
    int numPages;    // -1: missing
    int numLayers;   // -1: missing
};

TEST(Container, LoadAcceptsEveryFrame) {
    const LoadCase cases[] = {
        {"full frame",
         std::string("<x:xmpmeta") + kNs +
             "><rdf:RDF><rdf:Description><kvdinfo:NumPages>3</kvdinfo:NumPages></rdf:Description></rdf:RDF>"
             "</x:xmpmeta>",
         true, 3, -1},
        {"rdf:RDF as root",
         std::string("<rdf:RDF") + kNs + "><rdf:Description kvdinfo:NumPages='2'/></rdf:RDF>", true, 2, -1},
        {"xmpmeta deeper down",
         std::string("<wrap") + kNs +
             "><other/><x:xmpmeta><rdf:RDF><rdf:Description><kvdinfo:NumPages>4</kvdinfo:NumPages>"
             "</rdf:Description></rdf:RDF></x:xmpmeta></wrap>",
         true, 4, -1},
        {"several descriptions merge",
         std::string("<x:xmpmeta") + kNs +
             "><rdf:RDF><rdf:Description kvdinfo:NumPages='1'/><rdf:Description kvdinfo:NumLayers='9'/>"
             "<rdf:Description><kvdinfo:NumLayers>5</kvdinfo:NumLayers></rdf:Description></rdf:RDF></x:xmpmeta>",
         true, 1, 5},
        {"no rdf:RDF", std::string("<x:xmpmeta") + kNs + "><kvdinfo:NumPages>3</kvdinfo:NumPages></x:xmpmeta>", false,
         -1, -1},
        {"rdf:RDF too deep is not looked for",
         std::string("<x:xmpmeta") + kNs +
             "><a><rdf:RDF><rdf:Description kvdinfo:NumPages='1'/></rdf:RDF></a></x:xmpmeta>",
         false, -1, -1},
    };
    for (const auto& c : cases) {
        Container m = Container::LoadText(c.xml);
        ASSERT_FALSE(m.IsNull()) << c.what;
        EXPECT_FALSE(m.IsModified()) << c.what;
        EXPECT_EQ(m.FindDescription() != nullptr, c.hasDescription) << c.what;
        EXPECT_EQ(m.GetProperty(S::kvdinfo::NumPages).GetValue<int>(-1), c.numPages) << c.what;
        EXPECT_EQ(m.GetProperty(S::kvdinfo::NumLayers).GetValue<int>(-1), c.numLayers) << c.what;
        // The normalised form always has the three levels.
        EXPECT_TRUE(m.Root()->HasName(Metadata::Names::x::xmpmeta)) << c.what;
    }
}

TEST(Container, BrokenOrMissingDocuments) {
    Container broken = Container::LoadText("<x:xmpmeta");
    ASSERT_FALSE(broken.IsNull());
    EXPECT_TRUE(broken.IsModified());  // a fresh empty document
    ASSERT_TRUE(broken.FindDescription());

    Container never;
    EXPECT_TRUE(never.IsNull());
    EXPECT_TRUE(never.GetProperty(S::dc::title).IsEmpty());
    never.SetPropertyText(S::dc::format, W(L"x"));
    EXPECT_EQ(never.GetPropertyText(S::dc::format).StdString(), L"");
    EXPECT_EQ(never.SaveText(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");

    Brm::XmlFile empty;
    EXPECT_TRUE(Container::LoadDocument(empty).IsNull());
}

TEST(Container, CopyFromAndRemoveNamespaceContent) {
    Container m = MetadataTest::Load(
        "<kvdinfo:NumPages>3</kvdinfo:NumPages><dc:format>f</dc:format><kvdinfo:Styles><rdf:Bag/></kvdinfo:Styles>",
        " kvdinfo:NumLayers='2'");
    Container copy;
    copy.CopyFrom(m);
    m.RemoveNamespaceContent(Metadata::Namespaces::kvdinfo);
    EXPECT_TRUE(m.IsModified());
    EXPECT_TRUE(m.GetProperty(S::kvdinfo::NumPages).IsEmpty());
    EXPECT_TRUE(m.GetProperty(S::kvdinfo::NumLayers).IsEmpty());
    EXPECT_EQ(m.GetPropertyText(S::dc::format).StdString(), L"f");
    EXPECT_EQ(m.SaveText().find("xmlns:kvdinfo"), std::string::npos) << m.SaveText();
    // The copy is independent of the original.
    EXPECT_EQ(copy.GetProperty(S::kvdinfo::NumPages).GetValue<int>(), 3);
    EXPECT_EQ(copy.GetProperty(S::kvdinfo::NumLayers).GetValue<int>(), 2);
    EXPECT_FALSE(copy.IsModified());
}

}  // namespace
