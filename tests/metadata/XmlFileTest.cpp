// Parsing limits, the element <-> node conversions, printing, and path
// selection of the XML layer.
#include <gtest/gtest.h>

#include <string>

#include "metadata/xml/XPath.h"
#include "metadata/xml/XmlFile.h"

namespace {

using XmlNS::Node;
using XmlNS::NamespaceDef;
using XmlNS::QualifiedName;

constexpr NamespaceDef kA{"a", "urn:test:a"};
constexpr NamespaceDef kB{"b", "urn:test:b"};

std::unique_ptr<Node> Load(const std::string& text) {
    Brm::XmlFile file(text);
    if (file.Error()) return nullptr;
    return XmlNS::FromElement(file.RootElement(), nullptr);
}

std::string Print(const Node& root) { return Brm::XmlFile::FromTree(&root)->ToText(); }

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

TEST(XmlFile, EntitiesAndLineEnds) {
    const struct { const char* xml; const char* text; const char* attribute; } cases[] = {
        // Entities are never expanded beyond the predefined ones.
        {"<r a='&lt;&amp;&#65;&#x42;'>&gt;&quot;&apos;&undefined;</r>", ">\"'&undefined;", "<&AB"},
        {"<r a='x\r\ny'>1\r\n2\r3</r>", "1\n2\n3", nullptr},  // line ends are normalised
    };
    for (const auto& c : cases) {
        auto root = Load(c.xml);
        ASSERT_TRUE(root) << c.xml;
        EXPECT_EQ(root->Text(), c.text);
        ASSERT_EQ(root->Attributes().size(), 1u);
        if (c.attribute) {
            EXPECT_EQ(root->Attributes().begin()->second, c.attribute);
        }
    }
}

TEST(FromElement, ResolvesNamesAgainstDeclarations) {
    auto root = Load(
        "<a:r xmlns:a='urn:test:a' b:x='1' y='2' xmlns='urn:test:default' xmlns:b='urn:test:b'>"
        "<b:c/><d/><q:e/><f:g:h/><c xmlns:a='urn:test:other'><a:i/></c></a:r>");
    ASSERT_TRUE(root);
    ASSERT_TRUE(root->GetNamespace());
    EXPECT_EQ(root->GetNamespace()->uri, "urn:test:a");
    EXPECT_EQ(root->Name(), "r");
    // Declarations after the attribute in the text still apply to it.
    ASSERT_TRUE(root->GetAttribute({&kB, "x"}));
    EXPECT_EQ(*root->GetAttribute({&kB, "x"}), "1");
    // An unprefixed attribute is under the default namespace.
    constexpr NamespaceDef kDefault{"", "urn:test:default"};
    ASSERT_TRUE(root->GetAttribute({&kDefault, "y"}));

    const auto& ch = root->Children();
    ASSERT_EQ(ch.size(), 5u);
    EXPECT_TRUE(ch[0]->HasName({&kB, "c"}));
    EXPECT_TRUE(ch[1]->HasName({&kDefault, "d"}));
    // An unknown prefix leaves a null namespace and the part behind the colon.
    EXPECT_EQ(ch[2]->GetNamespace(), nullptr);
    EXPECT_EQ(ch[2]->Name(), "e");
    // More than one colon keeps the whole text as the local name.
    EXPECT_EQ(ch[3]->GetNamespace(), nullptr);
    EXPECT_EQ(ch[3]->Name(), "f:g:h");
    // An inner declaration shadows the outer one for its subtree.
    ASSERT_EQ(ch[4]->Children().size(), 1u);
    EXPECT_EQ(ch[4]->Children()[0]->GetNamespace()->uri, "urn:test:other");
    EXPECT_FALSE(ch[4]->Children()[0]->HasName({&kA, "i"}));
}

TEST(FromElement, TextIsWhatOpensTheElement) {
    struct Case { const char* xml; const char* text; size_t children; };
    const Case cases[] = {
        {"<r>abc</r>", "abc", 0},
        {"<r>abc<c/>def</r>", "abc", 1},
        {"<r><c/>def</r>", "", 1},
        {"<r><![CDATA[a<b]]></r>", "a<b", 0},
        {"<r> </r>", " ", 0},
        {"<r>\n  <c/>\n</r>", "", 1},
        {"<r><!-- note -->abc</r>", "abc", 0},
    };
    for (const auto& c : cases) {
        auto root = Load(c.xml);
        ASSERT_TRUE(root) << c.xml;
        EXPECT_EQ(root->Text(), c.text) << c.xml;
        EXPECT_EQ(root->Children().size(), c.children) << c.xml;
    }
}

TEST(ToElement, PrintsAttributesThenDeclarationsAndNoBuiltIns) {
    auto root = Load("<a:r xmlns:a='urn:test:a' xmlns:b='urn:test:b' b:z='1' a:y='2' xml:lang='de' plain='3'/>");
    ASSERT_TRUE(root);
    const std::string text = Print(*root);
    // Map order: no namespace first, then by URI ("dummy:ns:xml/" < "urn:...").
    EXPECT_NE(text.find("<a:r plain=\"3\" xml:lang=\"de\" a:y=\"2\" b:z=\"1\" xmlns:a=\"urn:test:a\" "
                        "xmlns:b=\"urn:test:b\""),
              std::string::npos)
        << text;
    EXPECT_EQ(text.find("xmlns:xml"), std::string::npos);
    EXPECT_EQ(text.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>", 0), 0u) << text;
}

TEST(ToElement, WhatIsNotPrinted) {
    auto root = Load("<r><kvd:a>1</kvd:a></r>");  // an unknown prefix is printed without it
    ASSERT_TRUE(root);
    EXPECT_NE(Print(*root).find("<a>1</a>"), std::string::npos);
    Node parent;  // the text of a node with children is not written
    parent.SetName("r");
    parent.SetText("lost");
    parent.AddChild({&kA, "c"}, "kept");
    const std::string text = Print(parent);
    EXPECT_EQ(text.find("lost"), std::string::npos);
    EXPECT_NE(text.find("kept"), std::string::npos);
    EXPECT_EQ(Brm::XmlFile::FromTree(nullptr)->ToText(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
}

TEST(XmlFile, PrintAndParseRoundTrip) {
    const char* docs[] = {
        "<a:r xmlns:a='urn:test:a'><a:c a:k='v'>t&lt;&amp;</a:c><a:d/><a:e> lead and trail </a:e></a:r>",
        "<r xmlns='urn:test:default' a='1'><c>x</c></r>",
        "<r q='line1&#10;line2' t='tab&#9;x'>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</r>",
    };
    for (const char* doc : docs) {
        auto first = Load(doc);
        ASSERT_TRUE(first) << doc;
        const std::string once = Print(*first);
        auto second = Load(once);
        ASSERT_TRUE(second) << once;
        EXPECT_EQ(Print(*second), once);
    }
    auto r = Load(docs[2]);
    auto again = Load(Print(*r));
    EXPECT_EQ(again->Attributes().begin()->second, "line1\nline2");
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
