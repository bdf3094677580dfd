// A container subtype with a small object model of its own: the main part
// read on Open, written back with the licence statement on Commit.
#include <gtest/gtest.h>

#include "metadata/xml/Node.h"
#include "tests/zipcontainer/ContainerTestSupport.h"
#include "zipcontainer/LicenseDocument.h"
#include "zipcontainer/ZipContainerSubtypeImpl.h"

using namespace ctest;

namespace {

constexpr XmlNS::NamespaceDef kNote{"n", "urn:test:note"};

// The whole model: the text of the root's "value" attribute.
class Note : public SubtypeInfo {
public:
    std::string value;
    bool Write(Metadata::Container&, XmlNS::Node& node, ZipContainerImpl*) const override {
        node.SetAttribute({nullptr, "value"}, value);
        return true;
    }
    bool Read(Metadata::Container&, const XmlNS::Node& node, ZipContainerImpl*) override {
        const std::string* v = node.GetAttribute({nullptr, "value"});
        if (v) value = *v;
        return v != nullptr;
    }
    std::unique_ptr<SubtypeInfo> Clone() const override { return std::make_unique<Note>(*this); }
};

std::unique_ptr<SubtypeInfo> MakeNote(Metadata::Container&, const XmlNS::Node& root) {
    return root.HasName({&kNote, "note"}) ? std::make_unique<Note>() : nullptr;
}

SubtypeSpec Spec() {
    SubtypeSpec spec;
    spec.mediaTypes = {L"application/x-note+zip"};
    spec.mainPart = L"note.xml";
    spec.extraDocument = ContainerLicense::Document();
    spec.extraNamespace = &ContainerLicense::kCcNamespace;
    spec.extraElement = ContainerLicense::kLicenseElement;
    spec.rootElement = {&kNote, "note"};
    spec.partMediaType = L"application/x-note";
    spec.factory = &MakeNote;
    return spec;
}

ZipContainerRef OpenNote(const std::vector<uint8_t>& zip, const SubtypeSpec& spec = Spec()) {
    auto stream = ziptest::StreamOn(zip);
    return ZipContainerImpl::OpenFromStream(stream.get(), true, {}, {}, ZipContainerSubtypeImpl::MakeFactory(spec));
}

int Count(const std::string& text, const std::string& what) {
    int n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

TEST(Subtype, WriteOpenAndCommitAgain) {
    auto stream = ziptest::EmptyStream();
    {
        auto c = ZipContainerImpl::CreateOnStream(stream.get(), {}, ZipContainerSubtypeImpl::MakeFactory(Spec()));
        ASSERT_TRUE(c);
        auto* subtype = static_cast<ZipContainerSubtypeImpl*>(c.Get());
        ASSERT_TRUE(c->InitNew(Spec().mediaTypes[0], false, false));
        auto note = std::make_unique<Note>();
        note->value = "hello";
        subtype->SetObject(std::move(note));
        ASSERT_TRUE(c->Commit());
    }
    auto first = ziptest::Contents(stream.get());
    auto c = OpenNote(first);
    ASSERT_TRUE(c);
    auto* subtype = static_cast<ZipContainerSubtypeImpl*>(c.Get());
    EXPECT_EQ(static_cast<Note*>(subtype->Object())->value, "hello");
    EXPECT_EQ(c->FindParts(L"main", -1).at(0).first, L"content/note.xml");
    EXPECT_EQ(Count(Read(*c, "META-INF/metadata.xml"), "cc:License "), 1);
    // An opened container commits nothing and answers as the base does.
    EXPECT_TRUE(c->Commit());

    // A clone carries the object; its commit keeps one licence element.
    auto again = ziptest::EmptyStream();
    ZipFileSetRef set = ZipFileSet::CreateOnStream(again.get());
    auto reopened = OpenNote(first);
    auto clone = reopened->CloneTo(set.Get(), {}, {});
    set.Reset();
    ASSERT_TRUE(clone);
    clone->Metadata().CopyFrom(reopened->Metadata());
    ASSERT_TRUE(clone->Commit());
    clone.Reset();
    auto second = OpenNote(ziptest::Contents(again.get()));
    ASSERT_TRUE(second);
    EXPECT_EQ(Count(Read(*second, "META-INF/metadata.xml"), "cc:License "), 1);
}

TEST(Subtype, Failures) {
    auto good = Zip({{"mimetype", "application/x-note+zip"}, {"content/note.xml", "<n:note xmlns:n=\"urn:test:note\" value=\"v\"/>"}});
    EXPECT_TRUE(OpenNote(good));
    SubtypeSpec noMain = Spec();
    noMain.mainPart = L"";
    EXPECT_FALSE(OpenNote(good, noMain));
    EXPECT_FALSE(OpenNote(Zip({{"mimetype", "application/x-note+zip"}})));
    EXPECT_TRUE(Open(Zip({{"mimetype", "application/x-note+zip"}})));  // fine as a plain container
    EXPECT_FALSE(OpenNote(Zip({{"content/note.xml", "<other/>"}})));
    EXPECT_FALSE(OpenNote(Zip({{"content/note.xml", "<n:note xmlns:n=\"urn:test:note\"/>"}})));

    ZipContainerSubtypeImpl invalid(nullptr, {}, {}, noMain);
    EXPECT_FALSE(invalid.Commit());
}

}  // namespace
