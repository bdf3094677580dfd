// Parsing limits, the element <-> node conversions, printing, and path
// selection of the XML layer.
#include <gtest/gtest.h>

#include <string>

#include "metadata/xml/XPath.h"
#include "metadata/xml/XmlFile.h"

namespace {

using XmlNS::Node;

std::string Nest(int depth) {
    std::string s;
    for (int i = 0; i < depth; ++i) s += "<e>";
    for (int i = 0; i < depth; ++i) s += "</e>";
    return s;
}

std::string ManyDeclarations(int count) {
    std::string s = "<r";
    for (int i = 0; i < count; ++i) s += " xmlns:p" + std::to_string(i) + "='urn:" + std::to_string(i) + "'";
    return s + "/>";
}

struct ParseCase { const char* what; std::string text; bool ok; };

TEST(XmlFile, AcceptsAndRefuses) {
    const ParseCase cases[] = {
        {"plain", "<r/>", true},
        {"declaration", "<?xml version='1.0' encoding='UTF-8'?><r/>", true},
        {"byte order mark", "\xEF\xBB\xBF<r>x</r>", true},
        {"doctype", "<!DOCTYPE r><r/>", false},
        {"internal subset", "<!DOCTYPE r [<!ENTITY e 'zz'>]><r>&e;</r>", false},
        {"external entity", "<!DOCTYPE r SYSTEM 'file:///etc/passwd'><r/>", false},
        {"unclosed", "<r><a></r>", false},
        {"empty", "", false},
        {"text only", "hello", false},
        {"depth at limit", Nest(Brm::XmlLimits::kMaxDepth), true},
        {"depth over limit", Nest(Brm::XmlLimits::kMaxDepth + 1), false},
        {"declarations at limit", ManyDeclarations(Brm::XmlLimits::kMaxDeclarations), true},
        {"declarations over limit", ManyDeclarations(Brm::XmlLimits::kMaxDeclarations + 1), false},
        {"over size", "<r>" + std::string(Brm::XmlLimits::kMaxDocumentBytes, 'x') + "</r>", false},
    };
    for (const auto& c : cases) {
        Brm::XmlFile file(c.text);
        EXPECT_EQ(!file.Error(), c.ok) << c.what;
        if (!c.ok) {
            EXPECT_FALSE(file.RootElement()) << c.what;
        }
    }
}

TEST(XPath, SelectsByAbsoluteChildSteps) {
    struct Case {
        const char* xml;
        const char* path;
        const char* found;  // the name of the selected element, or null
    };
    const Case cases[] = {
        {"<linkInfo><link/></linkInfo>", "/linkInfo", "linkInfo"},
        {"<other><linkInfo/></other>", "/linkInfo", nullptr},
        {"<linkInfo/>", "", nullptr},
        {"<linkInfo/>", "linkInfo", nullptr},
        {"<linkInfo/>", "/", nullptr},
        {"<linkInfo/>", "//linkInfo", nullptr},
        {"<linkInfo/>", "/linkInfo[1]", nullptr},
        {"<linkInfo><a/><b><c/></b></linkInfo>", "/linkInfo/b/c", "c"},
        {"<x:linkInfo xmlns:x='urn:x'/>", "/linkInfo", nullptr},
        {"<x:linkInfo xmlns:x='urn:x'/>", "/x:linkInfo", "x:linkInfo"},
    };
    for (const auto& c : cases) {
        Brm::XmlFile file(c.xml);
        ASSERT_FALSE(file.Error()) << c.xml;
        pugi::xml_node e = XmlNS::SelectFirstElement(file.Document(), c.path);
        auto tree = XmlNS::FromElement(file.RootElement(), nullptr);
        const Node* n = XmlNS::SelectFirstElement(tree.get(), c.path);
        if (c.found) {
            EXPECT_STREQ(e.name(), c.found) << c.xml << " " << c.path;
            ASSERT_TRUE(n) << c.xml << " " << c.path;
            EXPECT_EQ(n->QualifiedText(), c.found);
        } else {
            EXPECT_FALSE(e) << c.xml << " " << c.path;
            EXPECT_FALSE(n) << c.xml << " " << c.path;
        }
    }
}

}  // namespace
