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

}  // namespace
