// Editing the namespace-aware tree: declarations and prefixes, attributes,
// searching, clearing, copying and pruning.
#include <gtest/gtest.h>

#include "metadata/xml/XmlFile.h"

namespace {

using XmlNS::Node;
using XmlNS::NamespaceDef;

constexpr NamespaceDef kDc{"dc", "http://purl.org/dc/elements/1.1/"};
constexpr NamespaceDef kOtherDc{"dc", "urn:test:not-dc"};
constexpr NamespaceDef kThirdDc{"dc", "urn:test:third"};
constexpr NamespaceDef kNoPrefix{"", "urn:test:noprefix"};
constexpr NamespaceDef kNoPrefix2{"", "urn:test:noprefix2"};
constexpr NamespaceDef kA{"a", "urn:test:a"};
constexpr NamespaceDef kB{"b", "urn:test:b"};

std::unique_ptr<Node> Load(const char* text) {
    Brm::XmlFile file(text);
    return file.Error() ? nullptr : XmlNS::FromElement(file.RootElement(), nullptr);
}

std::string Print(const Node& root) { return Brm::XmlFile::FromTree(&root)->ToText(); }

TEST(DeclareNamespace, ReusesInScopeAndRenamesClashes) {
    struct Case {
        const NamespaceDef* first;
        const NamespaceDef* second;
        const NamespaceDef* third;
        const char* secondPrefix;
        const char* thirdPrefix;
    };
    const Case cases[] = {
        {&kDc, &kOtherDc, &kThirdDc, "dc1", "dc2"},
        {&kNoPrefix, &kNoPrefix2, nullptr, "ns1", nullptr},
        {&kA, &kB, nullptr, "b", nullptr},
        {&kDc, &kDc, nullptr, "dc", nullptr},
    };
    for (const auto& c : cases) {
        Node n;
        n.SetName("r");
        const XmlNS::Namespace* first = n.DeclareNamespace(*c.first);
        const XmlNS::Namespace* second = n.DeclareNamespace(*c.second);
        EXPECT_EQ(second->prefix, c.secondPrefix);
        EXPECT_EQ(second->uri, c.second->uri);
        if (c.second == c.first) {
            EXPECT_EQ(first, second);
        }
        if (c.third) {
            EXPECT_EQ(n.DeclareNamespace(*c.third)->prefix, c.thirdPrefix);
        }
    }
}

TEST(DeclareNamespace, AClashWithAnAncestorIsRenamedToo) {
    Node root;
    root.SetName("r");
    root.DeclareNamespace(kOtherDc);
    Node* child = root.AddChild({&kA, "c"});
    child->SetAttribute({&kOtherDc, "old"}, "1");
    child->SetAttribute({&kDc, "title"}, "2");
    EXPECT_EQ(child->FindNamespaceByUri(kDc.uri)->prefix, "dc1");
    auto reread = Load(Print(root).c_str());
    ASSERT_TRUE(reread);
    const Node* c = reread->Children()[0].get();
    ASSERT_TRUE(c->GetAttribute({&kOtherDc, "old"}));
    EXPECT_EQ(*c->GetAttribute({&kOtherDc, "old"}), "1");
    ASSERT_TRUE(c->GetAttribute({&kDc, "title"}));
    EXPECT_EQ(*c->GetAttribute({&kDc, "title"}), "2");
}

TEST(Attributes, SetGetRemoveByUri) {
    auto root = Load("<r xmlns:x='urn:test:a' x:k='1'/>");
    ASSERT_TRUE(root);
    // The document's prefix differs from the constant's; the URI decides.
    ASSERT_TRUE(root->GetAttribute({&kA, "k"}));
    root->SetAttribute({&kA, "k"}, "2");
    EXPECT_EQ(root->Attributes().size(), 1u);
    EXPECT_EQ(*root->GetAttribute({&kA, "k"}), "2");
    EXPECT_FALSE(root->GetAttribute({&kB, "k"}));
    EXPECT_FALSE(root->RemoveAttribute({&kB, "k"}));
    EXPECT_TRUE(root->RemoveAttribute({&kA, "k"}));
    EXPECT_FALSE(root->RemoveAttribute({&kA, "k"}));
    // Setting declares the namespace on the node when nothing has it.
    root->SetAttribute({&kB, "n"}, "v");
    EXPECT_NE(Print(*root).find("b:n=\"v\" xmlns:x=\"urn:test:a\" xmlns:b=\"urn:test:b\""), std::string::npos)
        << Print(*root);
}

TEST(Attributes, OrderIsByUriThenLocalName) {
    Node n;
    n.SetName("r");
    n.SetAttribute({&kB, "a"}, "");
    n.SetAttribute({&kA, "z"}, "");
    n.SetAttribute({&kA, "b"}, "");
    n.SetAttribute({nullptr, "plain"}, "");
    std::vector<std::string> order;
    for (const auto& [key, value] : n.Attributes()) order.push_back(Node::QualifiedText(key.ns, key.local));
    EXPECT_EQ(order, (std::vector<std::string>{"plain", "a:b", "a:z", "b:a"}));
}

TEST(Search, FindNodeAndFindChildOrSelf) {
    auto root = Load(
        "<a:r xmlns:a='urn:test:a'><a:x id='1'><a:y id='deep'/></a:x><a:y id='2'/><a:y id='3'/></a:r>");
    ASSERT_TRUE(root);
    auto id = [](const Node* n) { return n ? *n->GetAttribute({nullptr, "id"}) : std::string("none"); };
    // The attribute "id" has no namespace; a null-namespace name finds it.
    EXPECT_EQ(id(root->FindNode({&kA, "y"}, false)), "2");
    EXPECT_EQ(id(root->FindNode({&kA, "y"}, true)), "deep");
    EXPECT_EQ(root->FindNode({&kA, "r"}, true), root.get());
    EXPECT_EQ(root->FindChildOrSelf({&kA, "r"}), root.get());
    EXPECT_EQ(id(root->FindChildOrSelf({&kA, "x"})), "1");
    EXPECT_EQ(root->FindNode({&kB, "y"}, true), nullptr);
    // A node without namespace never has a name.
    Node bare;
    bare.SetName("y");
    EXPECT_FALSE(bare.HasName({nullptr, "y"}));
}

TEST(Clear, KeepsTextAndTheDeclarationOfItsOwnName) {
    auto root = Load("<a:r xmlns:a='urn:test:a' xmlns:b='urn:test:b' b:k='1'>t<b:c/></a:r>");
    ASSERT_TRUE(root);
    root->Clear();
    EXPECT_TRUE(root->Children().empty());
    EXPECT_TRUE(root->Attributes().empty());
    ASSERT_EQ(root->Declarations().size(), 1u);
    EXPECT_EQ(root->Declarations()[0]->uri, "urn:test:a");
    EXPECT_EQ(root->Text(), "t");
}

TEST(Clone, CopiesDeeplyAndDeclaresWhatIsOutOfScope) {
    auto source = Load(
        "<a:r xmlns:a='urn:test:a' xmlns:b='urn:test:b'><a:d xmlns:c='urn:test:c' b:k='1' xml:lang='en'>"
        "<c:e>x</c:e></a:d></a:r>");
    ASSERT_TRUE(source);
    const Node* d = source->Children()[0].get();

    Node target;
    target.SetName("t");
    Node* owner = target.AddChild({&kA, "holder"});
    Node* copy = d->Clone(*owner, &target);
    EXPECT_EQ(copy->Parent(), owner);
    // "a" is in scope through the holder; "b" is declared on the owner
    // given; "c" is the copy's own declaration.
    ASSERT_EQ(target.Declarations().size(), 1u);
    EXPECT_EQ(target.Declarations()[0]->uri, "urn:test:b");
    ASSERT_EQ(copy->Declarations().size(), 1u);
    EXPECT_EQ(copy->Declarations()[0]->uri, "urn:test:c");
    EXPECT_TRUE(copy->HasName({&kA, "d"}));
    EXPECT_EQ(*copy->GetAttribute({&kB, "k"}), "1");

    // The copy stands alone: deleting the source leaves it intact.
    source.reset();
    const std::string text = Print(target);
    EXPECT_NE(text.find("<c:e>x</c:e>"), std::string::npos) << text;
    EXPECT_NE(text.find("xml:lang=\"en\""), std::string::npos) << text;

    auto tree = Load(text.c_str())->CloneTree();
    EXPECT_EQ(Print(*tree), text);
}

TEST(PruneNamespaces, DeletesOnlyUnusedDeclarations) {
    auto root = Load(
        "<a:r xmlns:a='urn:test:a' xmlns:b='urn:test:b' xmlns:u='urn:test:unused'>"
        "<c xmlns:v='urn:test:v' xmlns:w='urn:test:w' w:k='1'><b:deep/></c></a:r>");
    ASSERT_TRUE(root);
    root->PruneNamespaces();
    std::vector<std::string> left;
    for (const auto& d : root->Declarations()) left.push_back(d->prefix);
    for (const auto& d : root->Children()[0]->Declarations()) left.push_back(d->prefix);
    EXPECT_EQ(left, (std::vector<std::string>{"a", "b", "w"}));
    EXPECT_TRUE(root->UsesNamespace(root->Declarations()[1].get()));
}

TEST(ParseName, Forms) {
    auto root = Load("<r xmlns='urn:test:default' xmlns:p='urn:test:p'/>");
    ASSERT_TRUE(root);
    struct Case {
        const char* text;
        const char* uri;  // null: no namespace
        const char* local;
    };
    const Case cases[] = {
        {"local", "urn:test:default", "local"},
        {"p:local", "urn:test:p", "local"},
        {"q:local", nullptr, "local"},
        {"xml:lang", "dummy:ns:xml/", "lang"},
        {"a:b:c", nullptr, "a:b:c"},
    };
    for (const auto& c : cases) {
        auto [ns, local] = root->ParseName(c.text);
        EXPECT_EQ(local, c.local) << c.text;
        if (c.uri) {
            ASSERT_TRUE(ns) << c.text;
            EXPECT_EQ(ns->uri, c.uri) << c.text;
        } else {
            EXPECT_EQ(ns, nullptr) << c.text;
        }
    }
}

}  // namespace
