// Writing: members of every kind read back byte for byte, the header fields
// that say how they were written, replacing and removing members, merging,
// and the commit with its rules on open streams and on the user's file.
#include <gtest/gtest.h>

#include "platform/Time.h"
#include "tests/support/zip/ZipTestArchive.h"
#include "zipcontainer/ZipFileSet.h"

using namespace ziptest;
using BrmPlatform::BrmStringW;

namespace {

using Content = std::vector<std::pair<std::wstring, std::vector<uint8_t>>>;

bool PutBytes(IStream* s, const std::vector<uint8_t>& bytes) {
    ULONG n = 0;
    return bytes.empty() || (s->Write(bytes.data(), ULONG(bytes.size()), &n) == S_OK && n == bytes.size());
}

bool Put(ZipFileSet& set, const wchar_t* name, const std::vector<uint8_t>& bytes, int level = 3) {
    Ref<IStream> s(set.CreateMember(name, level));
    return s && PutBytes(s.get(), bytes);
}

bool WriteMimeType(void* context, ZipFileSet& set) {
    ++*static_cast<int*>(context);
    return Put(set, L"mimetype", Bytes("application/x-test"), 0);
}

// Every live member of the archive in the bytes, in order, read whole.
Content ReadBack(const std::vector<uint8_t>& bytes) {
    Content out;
    auto file = StreamOn(bytes);
    ZipFileSetRef set = ZipFileSet::OpenFromStream(file.get());
    if (!set)
        return out;
    for (const ZipMember* m : set->ListMembers()) {
        Ref<IStream> s(set->OpenMember(m));
        out.emplace_back(m->name.StdString(), s ? ReadAll(s.get()) : Bytes("<can't open>"));
    }
    return out;
}

std::vector<std::wstring> NamesOf(const Content& c) {
    std::vector<std::wstring> names;
    for (const auto& [name, bytes] : c)
        names.push_back(name);
    return names;
}

TEST(ZipWrite, OpenedSetRefusesEverything) {
    Archive a;
    a.entries.push_back(MakeEntry("a", Bytes("a")));
    auto file = StreamOn(Build(a));
    ZipFileSetRef set = ZipFileSet::OpenFromStream(file.get());
    ASSERT_TRUE(set);
    EXPECT_EQ(set->GetMode(), ZipFileSet::kOpened);
    EXPECT_FALSE(set->IsCreatedNew());
    EXPECT_EQ(set->CreateMember(L"b", 0), nullptr);
    EXPECT_FALSE(set->RemoveMembers(L"a"));
    EXPECT_EQ(set->RemoveMatching(L".*"), 0);
    set->SetComment(L"no");
    EXPECT_TRUE(set->GetComment().IsEmpty());
    EXPECT_TRUE(set->Exists(L"a"));
    EXPECT_TRUE(set->CommitSet());
}

struct MimeSet {
    Ref<IStream> out = EmptyStream();
    int targets = 0;
    ZipFileSetRef set = ZipFileSet::CreateOnStream(out.get());
    MimeSet() {
        set->SetNewTargetCallback(WriteMimeType, &targets);
        Put(*set, L"mimetype", Bytes("application/x-test"), 0);
    }
    Content Commit() {
        EXPECT_TRUE(set->CommitSet());
        set.Reset();
        return ReadBack(Contents(out.get()));
    }
};

TEST(ZipWrite, RemovingMembers) {
    struct Case {
        const char* what;
        std::function<int(ZipFileSet&)> remove;
        int result;
        std::vector<std::wstring> left;
    };
    Case cases[] = {
        {"one name", [](ZipFileSet& s) { return int(s.RemoveMembers(L"Content/A.txt")); }, 1,
         {L"mimetype", L"content/b.txt", L"content/sub/c.txt", L"contentx", L"other.txt"}},
        {"a folder", [](ZipFileSet& s) { return int(s.RemoveMembers(L"CONTENT/")); }, 1,
         {L"mimetype", L"contentx", L"other.txt"}},
        {"a folder name without its slash", [](ZipFileSet& s) { return int(s.RemoveMembers(L"content")); }, 0,
         {L"mimetype", L"content/a.txt", L"content/b.txt", L"content/sub/c.txt", L"contentx", L"other.txt"}},
        {"nothing", [](ZipFileSet& s) { return int(s.RemoveMembers(L"missing")); }, 0,
         {L"mimetype", L"content/a.txt", L"content/b.txt", L"content/sub/c.txt", L"contentx", L"other.txt"}},
        {"an expression", [](ZipFileSet& s) { return s.RemoveMatching(L"content/.*\\.TXT"); }, 3,
         {L"mimetype", L"contentx", L"other.txt"}},
        {"an expression matches whole names", [](ZipFileSet& s) { return s.RemoveMatching(L"content"); }, 0,
         {L"mimetype", L"content/a.txt", L"content/b.txt", L"content/sub/c.txt", L"contentx", L"other.txt"}},
        {"a bad expression", [](ZipFileSet& s) { return s.RemoveMatching(L"(["); }, 0,
         {L"mimetype", L"content/a.txt", L"content/b.txt", L"content/sub/c.txt", L"contentx", L"other.txt"}},
    };
    for (const Case& c : cases) {
        MimeSet m;
        for (const wchar_t* name : {L"content/a.txt", L"content/b.txt", L"content/sub/c.txt", L"contentx",
                                    L"other.txt"})
            ASSERT_TRUE(Put(*m.set, name, Bytes("x")));
        EXPECT_EQ(c.remove(*m.set), c.result) << c.what;
        EXPECT_EQ(NamesOf(m.Commit()), c.left) << c.what;
    }
}

TEST(ZipWrite, AMemberBeingWrittenCantBeRemovedOrWrittenAgain) {
    MimeSet m;
    Ref<IStream> open(m.set->CreateMember(L"busy", 3));
    ASSERT_TRUE(open);
    EXPECT_EQ(m.set->CreateMember(L"BUSY", 3), nullptr);
    EXPECT_FALSE(m.set->RemoveMembers(L"busy"));
    EXPECT_EQ(m.set->OpenMember(L"busy"), nullptr);
    ASSERT_TRUE(PutBytes(open.get(), Bytes("done")));
    open.reset();
    Ref<IStream> again(m.set->OpenMember(L"busy"));
    ASSERT_TRUE(again);
    EXPECT_EQ(ReadAll(again.get()), Bytes("done"));
}

TEST(ZipWrite, MergeOfADamagedMemberFails) {
    Archive a;
    a.entries = {MakeEntry("good", Bytes("good")), MakeEntry("short", Text(1000))};
    a.entries[1].compressedSize = 100000;  // runs past the end of the file
    auto file = StreamOn(Build(a));
    ZipFileSetRef source = ZipFileSet::OpenFromStream(file.get());
    ASSERT_TRUE(source);
    auto out = EmptyStream();
    ZipFileSetRef target = ZipFileSet::CreateOnStream(out.get());
    std::vector<BrmStringW> copied;
    EXPECT_FALSE(source->MergeMembersTo(target.Get(), {}, &copied));
    EXPECT_EQ(copied.size(), 1u);
}

}  // namespace
