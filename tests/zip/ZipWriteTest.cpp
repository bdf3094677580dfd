// Writing: members of every kind read back byte for byte, the header fields
// that say how they were written, replacing and removing members, merging,
// and the commit with its rules on open streams and on the user's file.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <map>
#include <random>

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

TEST(ZipWrite, MembersOfEveryKindReadBack) {
    struct Case {
        int level;
        bool randomAccess;
        uint16_t method;
        uint16_t levelBits;
    };
    Case cases[] = {{0, false, 0, 0}, {0, true, 0, 0}, {1, false, 8, 3}, {2, false, 8, 2},
                    {3, false, 8, 0}, {4, false, 8, 1}, {5, false, 8, 0}, {3, true, 8, 0}};
    std::vector<std::vector<uint8_t>> contents = {{}, Bytes("x"), Text(4095), Text(4096, 1), Text(4097, 2),
                                                  Noise(100000, 3), Text(300000, 4)};
    for (const Case& c : cases) {
        auto out = EmptyStream();
        {
            ZipFileSetRef set = ZipFileSet::CreateOnStream(out.get());
            ASSERT_TRUE(set);
            EXPECT_EQ(set->GetMode(), ZipFileSet::kCreated);
            for (size_t i = 0; i < contents.size(); ++i) {
                Ref<IStream> s(set->CreateMember(L"m" + BrmStringW(std::to_wstring(i)), c.level, c.randomAccess));
                ASSERT_TRUE(s);
                // In pieces of varying size, as callers write.
                for (size_t at = 0, step = 1; at < contents[i].size(); at += step, step = step * 3 + 1) {
                    size_t n = std::min(step, contents[i].size() - at);
                    ULONG written = 0;
                    ASSERT_EQ(s->Write(contents[i].data() + at, ULONG(n), &written), S_OK);
                    ASSERT_EQ(written, n);
                }
            }
            ASSERT_TRUE(set->CommitSet());
        }
        std::vector<uint8_t> bytes = Contents(out.get());
        Content back = ReadBack(bytes);
        ASSERT_EQ(back.size(), contents.size()) << "level " << c.level;
        auto file = StreamOn(bytes);
        ZipFileSetRef set = ZipFileSet::OpenFromStream(file.get());
        for (size_t i = 0; i < contents.size(); ++i) {
            EXPECT_EQ(back[i].second, contents[i]) << "level " << c.level << " member " << i;
            const ZipMember* m = set->FindMember(L"m" + BrmStringW(std::to_wstring(i)));
            ASSERT_TRUE(m);
            EXPECT_EQ(m->method, c.method);
            EXPECT_EQ((m->flags >> 1) & 3, c.levelBits);
            EXPECT_EQ(m->flags & 0x800, 0x800);
            EXPECT_EQ(m->crc32, Crc32(contents[i]));
            EXPECT_EQ(m->uncompressedSize, contents[i].size());
            EXPECT_EQ(m->versionNeeded, 20);
        }
    }
}

TEST(ZipWrite, FasterLevelsMakeLargerMembers) {
    std::vector<uint8_t> content = Text(200000, 5);
    std::map<int, uint64_t> sizes;
    auto out = EmptyStream();
    {
        ZipFileSetRef set = ZipFileSet::CreateOnStream(out.get());
        for (int level : {1, 2, 3, 4})
            ASSERT_TRUE(Put(*set, (L"l" + std::to_wstring(level)).c_str(), content, level));
        ASSERT_TRUE(set->CommitSet());
    }
    auto file = StreamOn(Contents(out.get()));
    ZipFileSetRef set = ZipFileSet::OpenFromStream(file.get());
    for (int level : {1, 2, 3, 4})
        sizes[level] = set->FindMember((L"l" + std::to_wstring(level)).c_str())->compressedSize;
    // 1 asks for speed (deflate 1), 2 for 2, 3 for the default 6, 4 for 9.
    EXPECT_GT(sizes[1], sizes[3]);
    EXPECT_GT(sizes[2], sizes[3]);
    EXPECT_GE(sizes[3], sizes[4]);
}

TEST(ZipWrite, TimesAndNameOfANewMember) {
    FILETIME before{}, after{};
    GetSystemTimeAsFileTime(&before);
    auto out = EmptyStream();
    {
        ZipFileSetRef set = ZipFileSet::CreateOnStream(out.get());
        ASSERT_TRUE(Put(*set, L"dir\\sub\\file.txt", Bytes("x")));
        ASSERT_TRUE(Put(*set, L"caf\u00E9/\u20AC.txt", Bytes("y")));
        ASSERT_TRUE(set->CommitSet());
    }
    GetSystemTimeAsFileTime(&after);
    auto file = StreamOn(Contents(out.get()));
    ZipFileSetRef set = ZipFileSet::OpenFromStream(file.get());
    ASSERT_TRUE(set);
    const ZipMember* m = set->FindMember(L"dir/sub/file.txt");
    ASSERT_TRUE(m);
    EXPECT_TRUE(set->Exists(L"caf\u00E9/\u20AC.txt"));
    for (const FILETIME& t : {m->modified, m->accessed, m->created}) {
        EXPECT_GE(FileTimeToUInt64(t), FileTimeToUInt64(before));
        EXPECT_LE(FileTimeToUInt64(t), FileTimeToUInt64(after));
    }
}

TEST(ZipWrite, StoredMemberWrittenOutOfOrderHasTheRightCrc) {
    // Writes in the order given; the content is what the last write of each
    // byte left, and gaps read as zeros.
    struct Case {
        const char* what;
        size_t size;
        std::vector<std::pair<size_t, size_t>> writes;  // offset, length
    };
    std::vector<std::pair<size_t, size_t>> backwards, shuffled, overlapping;
    for (size_t end = 120000; end > 0; end -= std::min<size_t>(end, 1000))
        backwards.emplace_back(end - std::min<size_t>(end, 1000), std::min<size_t>(end, 1000));
    for (size_t at = 0; at < 60000; at += 777)
        shuffled.emplace_back(at, std::min<size_t>(777, 60000 - at));
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(1));
    std::mt19937 rng(2);
    for (int i = 0; i < 300; ++i)
        overlapping.emplace_back(rng() % 50000, rng() % 9000 + 1);
    Case cases[] = {
        {"in order", 10000, {{0, 5000}, {5000, 5000}}},
        {"backwards", 120000, backwards},
        {"shuffled pages", 60000, shuffled},
        {"overlapping", 0, overlapping},
        {"with a gap", 70000, {{0, 100}, {65000, 5000}}},
        {"rewritten start", 9000, {{0, 9000}, {10, 20}}},
    };
    for (const Case& c : cases) {
        std::vector<uint8_t> expected;
        auto out = EmptyStream();
        {
            ZipFileSetRef set = ZipFileSet::CreateOnStream(out.get());
            Ref<IStream> s(set->CreateMember(L"r", 0, true));
            ASSERT_TRUE(s);
            uint32_t seed = 0;
            for (auto [at, length] : c.writes) {
                std::vector<uint8_t> piece = Noise(length, ++seed);
                if (expected.size() < at + length)
                    expected.resize(at + length);
                std::copy(piece.begin(), piece.end(), expected.begin() + long(at));
                ULARGE_INTEGER pos{};
                ASSERT_EQ(s->Seek(MakeLargeInteger(int64_t(at)), STREAM_SEEK_SET, &pos), S_OK);
                ASSERT_TRUE(PutBytes(s.get(), piece));
            }
            if (c.size) {
                ASSERT_EQ(expected.size(), c.size) << c.what;
            }
            STATSTG st{};
            ASSERT_EQ(s->Stat(&st, STATFLAG_NONAME), S_OK);
            EXPECT_EQ(st.cbSize.QuadPart, expected.size());
            s.reset();
            ASSERT_TRUE(set->CommitSet());
        }
        auto file = StreamOn(Contents(out.get()));
        ZipFileSetRef set = ZipFileSet::OpenFromStream(file.get());
        ASSERT_TRUE(set) << c.what;
        const ZipMember* m = set->FindMember(L"r");
        ASSERT_TRUE(m);
        EXPECT_EQ(m->crc32, Crc32(expected)) << c.what;
        Ref<IStream> in(set->OpenMember(m));
        EXPECT_EQ(ReadAll(in.get()), expected) << c.what;
    }
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

TEST(ZipWrite, ReplacingAMemberKeepsMimeTypeFirst) {
    MimeSet m;
    ASSERT_TRUE(Put(*m.set, L"content/a.xml", Bytes("old a")));
    ASSERT_TRUE(Put(*m.set, L"content/b.xml", Bytes("b")));
    ASSERT_TRUE(Put(*m.set, L"CONTENT/A.XML", Bytes("new a")));  // same name, other case
    EXPECT_GE(m.targets, 1);
    auto file = StreamOn(Contents(m.out.get()));
    Content back = m.Commit();
    ASSERT_EQ(NamesOf(back), (std::vector<std::wstring>{L"mimetype", L"content/b.xml", L"CONTENT/A.XML"}));
    EXPECT_EQ(back[0].second, Bytes("application/x-test"));
    EXPECT_EQ(back[2].second, Bytes("new a"));
    auto bytes = Contents(m.out.get());
    auto stream = StreamOn(bytes);
    ZipFileSetRef set = ZipFileSet::OpenFromStream(stream.get());
    EXPECT_EQ(set->FindMember(L"mimetype")->method, 0);
    EXPECT_EQ(set->FindMember(L"mimetype")->localHeaderOffset, 0u);
}

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

TEST(ZipWrite, SeveralMembersOpenAtOnce) {
    MimeSet m;
    std::vector<Ref<IStream>> streams;
    for (int i = 0; i < 4; ++i) {
        streams.emplace_back(m.set->CreateMember((L"open" + std::to_wstring(i)).c_str(), i % 2 ? 0 : 3));
        ASSERT_TRUE(streams.back());
    }
    for (int round = 0; round < 50; ++round)
        for (int i = 0; i < 4; ++i)
            ASSERT_TRUE(PutBytes(streams[size_t(i)].get(), Text(1000, uint32_t(i * 100 + round))));
    EXPECT_FALSE(m.set->CommitSet());  // streams are open
    streams.clear();
    Content back = m.Commit();
    ASSERT_EQ(back.size(), 5u);
    EXPECT_EQ(back[0].first, L"mimetype");
    for (int i = 0; i < 4; ++i) {
        std::vector<uint8_t> expected;
        for (int round = 0; round < 50; ++round) {
            auto piece = Text(1000, uint32_t(i * 100 + round));
            expected.insert(expected.end(), piece.begin(), piece.end());
        }
        EXPECT_EQ(back[size_t(i) + 1].second, expected);
    }
}

TEST(ZipWrite, CommitWaitsForReadersToo) {
    MimeSet m;
    ASSERT_TRUE(Put(*m.set, L"a", Bytes("a")));
    Ref<IStream> reader(m.set->OpenMember(L"a"));
    ASSERT_TRUE(reader);
    EXPECT_FALSE(m.set->CommitSet());
    EXPECT_FALSE(m.set->CommitSet());
    reader.reset();
    EXPECT_EQ(NamesOf(m.Commit()), (std::vector<std::wstring>{L"mimetype", L"a"}));
}

TEST(ZipWrite, LastReleaseCommits) {
    auto out = EmptyStream();
    {
        ZipFileSetRef set = ZipFileSet::CreateOnStream(out.get());
        Ref<IStream> s(set->CreateMember(L"late", 0));
        set.Reset();  // the stream still holds the set
        ASSERT_TRUE(PutBytes(s.get(), Bytes("written after the owner let go")));
    }
    Content back = ReadBack(Contents(out.get()));
    ASSERT_EQ(back.size(), 1u);
    EXPECT_EQ(back[0].second, Bytes("written after the owner let go"));
}

TEST(ZipWrite, EmptySetMakesAnEmptyArchive) {
    auto out = EmptyStream();
    ZipFileSet::CreateOnStream(out.get());
    std::vector<uint8_t> bytes = Contents(out.get());
    EXPECT_EQ(bytes.size(), 22u);
    EXPECT_TRUE(ReadBack(bytes).empty());
}

TEST(ZipWrite, InPlaceResultIsCutToItsLength) {
    // A destination without a path already holds longer bytes.
    auto out = EmptyStream();
    ASSERT_TRUE(PutBytes(out.get(), Noise(200000)));
    {
        ZipFileSetRef set = ZipFileSet::CreateOnStream(out.get());
        ASSERT_TRUE(Put(*set, L"small", Bytes("small")));
        ASSERT_TRUE(set->CommitSet());
    }
    std::vector<uint8_t> bytes = Contents(out.get());
    EXPECT_LT(bytes.size(), 200u);
    EXPECT_EQ(NamesOf(ReadBack(bytes)), (std::vector<std::wstring>{L"small"}));
}

TEST(ZipWrite, ArchiveCommentIsFollowedByEightBytes) {
    struct Case {
        std::wstring comment;
        size_t lengthField;
        size_t tail;
    };
    Case cases[] = {{L"", 0, 0}, {L"hello, zip", 10, 8}, {L"x", 1, 8}, {L"caf\u00E9", 4, 8}};
    for (const Case& c : cases) {
        auto out = EmptyStream();
        {
            ZipFileSetRef set = ZipFileSet::CreateOnStream(out.get());
            set->SetComment(c.comment);
            ASSERT_TRUE(Put(*set, L"a", Bytes("a")));
        }
        std::vector<uint8_t> bytes = Contents(out.get());
        size_t end = EndRecordOffset(bytes);
        ASSERT_NE(end, SIZE_MAX);
        EXPECT_EQ(bytes[end + 20] | (bytes[end + 21] << 8), int(c.lengthField));
        EXPECT_EQ(bytes.size() - end - 22, c.tail);
        EXPECT_EQ(ReadBack(bytes).size(), 1u);
    }
}

TEST(ZipWrite, RawMemberKeepsItsValuesAndGetsZip64Records) {
    // A raw copy of a member too large for 32-bit sizes: the values are the
    // model's, so the records can be checked without 4 GiB of data.
    std::vector<uint8_t> stored = Bytes("pretend deflated bytes");
    ZipMember model;
    model.name = L"big";
    model.method = 8;
    model.versionNeeded = 45;
    model.crc32 = 0xDEADBEEF;
    model.compressedSize = stored.size();
    model.uncompressedSize = 5ull << 30;
    model.extras.push_back(ZipExtraRecord{0x5455, {1, 2, 3, 4, 5}});
    auto out = EmptyStream();
    {
        ZipFileSetRef set = ZipFileSet::CreateOnStream(out.get());
        Ref<IStream> s(set->CreateRawMember(model));
        ASSERT_TRUE(s);
        ASSERT_TRUE(PutBytes(s.get(), stored));
    }
    auto file = StreamOn(Contents(out.get()));
    ZipFileSetRef set = ZipFileSet::OpenFromStream(file.get());
    ASSERT_TRUE(set);
    const ZipMember* m = set->FindMember(L"big");
    ASSERT_TRUE(m);
    EXPECT_EQ(m->uncompressedSize, 5ull << 30);
    EXPECT_EQ(m->compressedSize, stored.size());
    EXPECT_EQ(m->crc32, 0xDEADBEEFu);
    EXPECT_EQ(m->versionNeeded, 45);
    EXPECT_EQ(m->flags & 8, 0);
    ASSERT_EQ(m->extras.size(), 1u);
    EXPECT_EQ(m->extras[0].id, 0x5455);
    Ref<IStream> raw(set->OpenMember(m, true));
    EXPECT_EQ(ReadAll(raw.get()), stored);
}

TEST(ZipWrite, MergeCopiesRawExceptExcluded) {
    Archive a;
    a.comment = "source comment";
    a.entries = {MakeEntry("mimetype", Bytes("application/x-source")),
                 MakeEntry("content/x.xml", Text(5000), 8),
                 MakeEntry("Content/X.XML", Bytes("shadowed duplicate")),
                 MakeEntry("meta/one", Bytes("1")),
                 MakeEntry("meta/two", Bytes("2")),
                 MakeEntry("keep", Noise(3000), 8)};
    a.entries[1].centralExtra = NtfsExtra(133000000000000000ull, 133000000000000001ull, 133000000000000002ull);
    auto file = StreamOn(Build(a));
    ZipFileSetRef source = ZipFileSet::OpenFromStream(file.get());
    ASSERT_TRUE(source);

    MimeSet m;
    std::vector<BrmStringW> copied;
    ASSERT_TRUE(source->MergeMembersTo(m.set.Get(), {L"MIMETYPE", L"meta/"}, &copied));
    std::vector<std::wstring> copiedNames;
    for (const BrmStringW& n : copied)
        copiedNames.push_back(n.StdString());
    EXPECT_EQ(copiedNames, (std::vector<std::wstring>{L"content/x.xml", L"keep"}));
    EXPECT_EQ(m.set->GetComment().StdString(), L"source comment");
    EXPECT_FALSE(ZipFileSet::OpenFromStream(file.get())->MergeMembersTo(nullptr, {}, nullptr));

    std::vector<uint8_t> bytes;
    Content back = m.Commit();
    bytes = Contents(m.out.get());
    EXPECT_EQ(NamesOf(back), (std::vector<std::wstring>{L"mimetype", L"content/x.xml", L"keep"}));
    EXPECT_EQ(back[0].second, Bytes("application/x-test"));
    EXPECT_EQ(back[1].second, Text(5000));
    EXPECT_EQ(back[2].second, Noise(3000));
    auto result = StreamOn(bytes);
    ZipFileSetRef merged = ZipFileSet::OpenFromStream(result.get());
    const ZipMember* x = merged->FindMember(L"content/x.xml");
    EXPECT_EQ(x->method, 8);
    EXPECT_EQ(FileTimeToUInt64(x->accessed), 133000000000000001ull);
    EXPECT_EQ(x->compressedSize, source->FindMember(L"content/x.xml")->compressedSize);
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

class ZipWriteFiles : public ::testing::Test {
protected:
    TempDir dir;
    std::string path = dir / "doc.zip";
    BrmStringW wpath = BrmStringW(std::wstring(path.begin(), path.end()));
};

TEST_F(ZipWriteFiles, CommitRenamesTheResultOverTheFile) {
    ZipFileSetRef set = ZipFileSet::CreateOnPath(wpath);
    ASSERT_TRUE(set);
    ASSERT_TRUE(Put(*set, L"first", Text(10000)));
    ASSERT_TRUE(Put(*set, L"second", Text(10000, 1), 0));
    struct stat before {};
    ASSERT_EQ(stat(path.c_str(), &before), 0);
    // A reader that has the file open keeps what it had: the file was
    // replaced by a rename, not written over.
    FILE* old = fopen(path.c_str(), "rb");
    ASSERT_TRUE(old);
    ASSERT_TRUE(set->CommitSet());
    set.Reset();
    struct stat after {};
    ASSERT_EQ(stat(path.c_str(), &after), 0);
    EXPECT_NE(before.st_ino, after.st_ino);
    fseek(old, 0, SEEK_END);
    EXPECT_NE(uint64_t(ftell(old)), uint64_t(after.st_size));
    fclose(old);
    EXPECT_EQ(NamesOf(ReadBack(ReadFile(path))), (std::vector<std::wstring>{L"first", L"second"}));
    EXPECT_EQ(dir.List(), (std::vector<std::string>{"doc.zip"}));
}

TEST_F(ZipWriteFiles, TemporaryTargetsGoWithTheSet) {
    {
        ZipFileSetRef set = ZipFileSet::CreateOnPath(wpath);
        ASSERT_TRUE(Put(*set, L"a", Bytes("a")));
        ASSERT_TRUE(Put(*set, L"a", Bytes("b")));  // a temporary target beside the file
        Ref<IStream> open(set->CreateMember(L"c", 0));
        EXPECT_EQ(dir.List().size(), 2u);
        EXPECT_FALSE(set->CommitSet());
        // `open` goes first, then the set, whose last reference commits.
    }
    EXPECT_EQ(dir.List(), (std::vector<std::string>{"doc.zip"}));
    EXPECT_EQ(NamesOf(ReadBack(ReadFile(path))), (std::vector<std::wstring>{L"a", L"c"}));
}

TEST_F(ZipWriteFiles, OpenFromPath) {
    Archive a;
    a.entries.push_back(MakeEntry("p", Bytes("on disk")));
    WriteFile(path, Build(a));
    ZipFileSetRef set = ZipFileSet::OpenFromPath(wpath);
    ASSERT_TRUE(set);
    Ref<IStream> s(set->OpenMember(L"p"));
    EXPECT_EQ(ReadAll(s.get()), Bytes("on disk"));
    EXPECT_FALSE(ZipFileSet::OpenFromPath(wpath + L".missing"));
    WriteFile(path, Bytes("not a zip at all"));
    EXPECT_FALSE(ZipFileSet::OpenFromPath(wpath));
}

}  // namespace
