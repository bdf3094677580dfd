// What a property node means in each RDF spelling, and which form a written
// structure takes.
#include <gtest/gtest.h>

#include "metadata/Names.h"
#include "metadata/Container.h"
#include "metadata/Rdf.h"
#include "metadata/xml/XmlFile.h"

namespace {

using XmlNS::Node;

constexpr const char* kDecl =
    " xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#' xmlns:p='urn:test:p' xmlns:f='urn:test:f'";

std::unique_ptr<Node> Property(const std::string& open, const std::string& inner = "") {
    // open is the start tag without '<' and '>', e.g. "p:x a='1'".
    const std::string name = open.substr(0, open.find(' '));
    const std::string text = "<" + open + kDecl + ">" + inner + "</" + name + ">";
    Brm::XmlFile file(text);
    EXPECT_FALSE(file.Error()) << text;
    return XmlNS::FromElement(file.RootElement(), nullptr);
}

struct MeaningCase {
    const char* what;
    const char* open;
    const char* inner;
    const char* text;          // GetText
    bool structure;            // IsStructure
    const char* fieldsNode;    // qualified name of GetStructureNode, or null
};

TEST(Rdf, MeaningOfEachSpelling) {
    const MeaningCase cases[] = {
        {"plain text", "p:x", "abc", "abc", false, nullptr},
        {"rdf:value attribute", "p:x rdf:value='v'", "ignored", "v", false, nullptr},
        {"rdf:resource attribute", "p:x rdf:resource='urn:r'", "", "urn:r", false, nullptr},
        {"resource wins over fields", "p:x rdf:resource='r' f:a='1' f:b='2' f:c='3' f:d='4'", "", "r", false,
         nullptr},
        {"value wins over four attributes", "p:x rdf:value='v' xml:lang='en' f:a='1' f:b='2'", "", "v", false,
         nullptr},
        {"four attributes are fields", "p:x xml:lang='en' rdf:ID='i' f:a='1' f:b='2'", "", "", true, "p:x"},
        {"one field attribute", "p:x f:a='1'", "", "", true, "p:x"},
        {"only lang and id", "p:x xml:lang='en' rdf:ID='i'", "t", "t", false, nullptr},
        {"parseType Resource", "p:x rdf:parseType='Resource'", "<f:a>1</f:a>", "", true, "p:x"},
        {"parseType Literal with children", "p:x rdf:parseType='Literal'", "<f:a>1</f:a>", "", false, nullptr},
        {"parseType is case-sensitive", "p:x rdf:parseType='resource'", "<f:a>1</f:a>", "", false, nullptr},
        {"nested description", "p:x", "<rdf:Description><f:a>1</f:a></rdf:Description>", "", true,
         "rdf:Description"},
        {"nested description with rdf:value", "p:x", "<rdf:Description><rdf:value>v</rdf:value></rdf:Description>",
         "v", false, nullptr},
        {"children without description", "p:x", "<f:a>1</f:a>", "", true, "p:x"},
        {"rdf:value two levels down", "p:x", "<f:a><f:b><rdf:value>deep</rdf:value></f:b></f:a>", "deep", true,
         "p:x"},
        {"first rdf:value in document order", "p:x", "<f:a><rdf:value>1</rdf:value></f:a><rdf:value>2</rdf:value>",
         "1", true, "p:x"},
    };
    for (const auto& c : cases) {
        auto node = Property(c.open, c.inner);
        ASSERT_TRUE(node) << c.what;
        EXPECT_EQ(Metadata::Rdf::GetText(node.get()), c.text) << c.what;
        EXPECT_EQ(Metadata::Rdf::IsStructure(node.get()), c.structure) << c.what;
        Node* fields = Metadata::Rdf::GetStructureNode(node.get());
        if (c.fieldsNode) {
            ASSERT_TRUE(fields) << c.what;
            EXPECT_EQ(fields->QualifiedText(), c.fieldsNode) << c.what;
        } else {
            EXPECT_EQ(fields, nullptr) << c.what;
        }
    }
    EXPECT_FALSE(Metadata::Rdf::IsStructure(nullptr));
    EXPECT_EQ(Metadata::Rdf::GetText(nullptr), "");
}

}  // namespace
