// Member streams: reading stored and deflated members forwards, backwards
// and at random, raw reads, seeking rules, and how damaged data answer.
#include <gtest/gtest.h>

#include <optional>
#include <random>

#include "tests/support/zip/ZipTestArchive.h"
#include "zipcontainer/ZipFileSet.h"

using namespace ziptest;

namespace {

struct Opened {
    std::vector<uint8_t> bytes;
    Ref<IStream> file;
    ZipFileSetRef set;
};

Opened OpenArchive(const Archive& a) {
    Opened o;
    o.bytes = Build(a);
    o.file = StreamOn(o.bytes);
    o.set = ZipFileSet::OpenFromStream(o.file.get());
    return o;
}

Entry Member(std::string name, std::vector<uint8_t> content, uint16_t method) {
    Entry e;
    e.name = std::move(name);
    e.content = std::move(content);
    e.method = method;
    return e;
}

HRESULT SeekTo(IStream* s, int64_t offset, DWORD origin, uint64_t* at = nullptr) {
    ULARGE_INTEGER pos{};
    HRESULT hr = s->Seek(MakeLargeInteger(offset), origin, &pos);
    if (at)
        *at = pos.QuadPart;
    return hr;
}

std::vector<uint8_t> ReadAt(IStream* s, uint64_t offset, size_t count, HRESULT* result = nullptr) {
    SeekTo(s, int64_t(offset), STREAM_SEEK_SET);
    std::vector<uint8_t> out(count);
    ULONG got = 0;
    HRESULT hr = s->Read(out.data(), ULONG(count), &got);
    if (result)
        *result = hr;
    out.resize(got);
    return out;
}

std::vector<uint8_t> Slice(const std::vector<uint8_t>& v, size_t at, size_t count) {
    at = std::min(at, v.size());
    return std::vector<uint8_t>(v.begin() + long(at), v.begin() + long(std::min(v.size(), at + count)));
}

class ZipReadStreamMethods : public ::testing::TestWithParam<std::tuple<uint16_t, bool>> {};

TEST_P(ZipReadStreamMethods, ForwardBackwardAndRandomReadsAgree) {
    auto [method, randomAccess] = GetParam();
    std::vector<uint8_t> content = Text(300000, 7);
    Archive a;
    a.entries = {Member("lead", Text(1000, 1), 8), Member("m", content, method)};
    Opened o = OpenArchive(a);
    ASSERT_TRUE(o.set);
    Ref<IStream> s(o.set->OpenMember(L"m", false, randomAccess));
    ASSERT_TRUE(s);

    for (size_t chunk : {size_t(1), size_t(4096), size_t(65536), size_t(1) << 20}) {
        SeekTo(s.get(), 0, STREAM_SEEK_SET);
        EXPECT_EQ(ReadAll(s.get(), chunk), content) << "chunk " << chunk;
    }
    // Backwards, in pieces that straddle the input buffer's size.
    for (size_t end = content.size(); end > 0;) {
        size_t at = end > 70000 ? end - 70000 : 0;
        ASSERT_EQ(ReadAt(s.get(), at, end - at), Slice(content, at, end - at)) << at;
        end = at;
    }
    std::mt19937 rng(42);
    for (int i = 0; i < 200; ++i) {
        size_t at = rng() % (content.size() + 100);
        size_t count = rng() % 5000;
        ASSERT_EQ(ReadAt(s.get(), at, count), Slice(content, at, count)) << at << "+" << count;
    }
}

INSTANTIATE_TEST_SUITE_P(All, ZipReadStreamMethods,
                         ::testing::Combine(::testing::Values(uint16_t(0), uint16_t(8)), ::testing::Bool()));

TEST(ZipReadStream, RawServesTheStoredBytes) {
    std::vector<uint8_t> content = Text(20000, 3);
    Archive a;
    a.entries = {Member("d", content, 8), Member("s", content, 0)};
    Opened o = OpenArchive(a);
    ASSERT_TRUE(o.set);
    Ref<IStream> raw(o.set->OpenMember(L"d", true, true));
    ASSERT_TRUE(raw);
    std::vector<uint8_t> deflated = ReadAll(raw.get());
    EXPECT_EQ(deflated, RawDeflate(content));
    STATSTG st{};
    ASSERT_EQ(raw->Stat(&st, STATFLAG_NONAME), S_OK);
    EXPECT_EQ(st.cbSize.QuadPart, deflated.size());

    Ref<IStream> plain(o.set->OpenMember(L"d"));
    ASSERT_EQ(plain->Stat(&st, STATFLAG_NONAME), S_OK);
    EXPECT_EQ(st.cbSize.QuadPart, content.size());
    EXPECT_EQ(st.grfMode, 0x08000000u);

    Ref<IStream> stored(o.set->OpenMember(L"s", true));
    EXPECT_EQ(ReadAll(stored.get()), content);
}

TEST(ZipReadStream, SeekRules) {
    std::vector<uint8_t> content = Text(1000);
    Archive a;
    a.entries = {Member("d", content, 8)};
    Opened o = OpenArchive(a);
    Ref<IStream> s(o.set->OpenMember(L"d"));
    ASSERT_TRUE(s);
    struct Case {
        int64_t offset;
        DWORD origin;
        HRESULT result;
        uint64_t position;
    };
    Case cases[] = {
        {10, STREAM_SEEK_SET, S_OK, 10},   {5, STREAM_SEEK_CUR, S_OK, 15},
        {-20, STREAM_SEEK_CUR, S_OK, 0},   {-1, STREAM_SEEK_END, S_OK, 999},
        {-5000, STREAM_SEEK_END, S_OK, 0}, {50, STREAM_SEEK_END, S_OK, 1050},
        {INT64_MIN, STREAM_SEEK_CUR, S_OK, 0},
    };
    for (const Case& c : cases) {
        uint64_t at = 0;
        EXPECT_EQ(SeekTo(s.get(), c.offset, c.origin, &at), c.result);
        EXPECT_EQ(at, c.position) << c.offset << " from " << c.origin;
    }
    EXPECT_EQ(SeekTo(s.get(), 0, 3), STG_E_INVALIDFUNCTION);

    // Past the end reads nothing, successfully, for both kinds of member.
    HRESULT hr = E_FAIL;
    EXPECT_TRUE(ReadAt(s.get(), 5000, 10, &hr).empty());
    EXPECT_EQ(hr, S_OK);
    // ... and the stream still reads from the start afterwards.
    EXPECT_EQ(ReadAt(s.get(), 0, 1000), content);
}

TEST(ZipReadStream, WrongCrcAndLocalSizesAreNotChecked) {
    Archive a;
    a.entries = {Member("s", Bytes("stored"), 0), Member("d", Text(500), 8)};
    a.entries[0].crc = 0x12345678;
    a.entries[1].crc = 0;
    a.entries[1].dataDescriptor = true;  // local header says 0 for the sizes
    Opened o = OpenArchive(a);
    ASSERT_TRUE(o.set);
    for (const auto& e : a.entries) {
        Ref<IStream> s(o.set->OpenMember(BrmPlatform::BrmStringW(std::wstring(e.name.begin(), e.name.end()))));
        ASSERT_TRUE(s);
        HRESULT hr = E_FAIL;
        EXPECT_EQ(ReadAll(s.get(), 65536, &hr), e.content);
        EXPECT_EQ(hr, S_OK);
    }
}

TEST(ZipReadStream, LocalHeaderMustBeThere) {
    struct Case {
        const char* what;
        uint64_t offset;
    };
    Case cases[] = {
        {"points at the data", 30 + 1},
        {"beyond the file", 1u << 20},
        {"near the end of the file", 0},  // filled in below
        {"past any stream", ~uint64_t(0) - 10},
    };
    for (Case c : cases) {
        Archive a;
        a.entries = {Member("a", Text(100), 0), Member("b", Text(100), 0)};
        if (c.offset == 0)
            c.offset = Build(a).size() - 10;
        a.entries[1].localHeaderOffset = c.offset;
        if (c.offset >= 0xFFFFFFFFu)
            a.entries[1].zip64 = true;
        Opened o = OpenArchive(a);
        ASSERT_TRUE(o.set) << c.what;
        EXPECT_TRUE(o.set->Exists(L"b"));
        EXPECT_EQ(Ref<IStream>(o.set->OpenMember(L"b")), nullptr) << c.what;
        EXPECT_NE(Ref<IStream>(o.set->OpenMember(L"a")), nullptr) << c.what;
    }
}

TEST(ZipReadStream, DamagedDataAnswerReadFault) {
    std::vector<uint8_t> content = Text(200000, 9);
    const size_t deflatedSize = RawDeflate(content).size();
    struct Case {
        const char* what;
        std::optional<uint64_t> compressedSize;
        std::optional<std::vector<uint8_t>> data;  // the deflated bytes, if not the intact ones
        HRESULT expected;
        bool someDataFirst;
    };
    // A block of the reserved type behind the first half of the data.
    std::vector<uint8_t> firstHalf(content.begin(), content.begin() + 100000);
    std::vector<uint8_t> badBlock = RawDeflate(firstHalf, 6, false);
    badBlock.push_back(0x07);
    // Valid blocks that end before the member's size is reached.
    std::vector<uint8_t> unfinished = RawDeflate(firstHalf, 6, false);
    Case cases[] = {
        {"intact", {}, {}, S_OK, true},
        {"compressed size too small", deflatedSize / 2, {}, STG_E_READFAULT, true},
        {"compressed size beyond the file", deflatedSize * 100, {}, STG_E_READFAULT, false},
        {"reserved block type in the middle", {}, badBlock, STG_E_READFAULT, true},
        {"reserved block type at the start", {}, std::vector<uint8_t>{0x07, 0, 0}, STG_E_READFAULT, false},
        {"data end without a final block", {}, unfinished, STG_E_READFAULT, true},
    };
    for (const Case& c : cases) {
        Archive a;
        a.entries = {Member("d", content, 8), Member("after", Text(100), 0)};
        a.entries[0].compressedSize = c.compressedSize;
        a.entries[0].data = c.data;
        std::vector<uint8_t> bytes = Build(a);
        auto file = StreamOn(bytes);
        ZipFileSetRef set = ZipFileSet::OpenFromStream(file.get());
        ASSERT_TRUE(set) << c.what;
        Ref<IStream> s(set->OpenMember(L"d"));
        ASSERT_TRUE(s) << c.what;
        HRESULT hr = S_OK;
        std::vector<uint8_t> got = ReadAll(s.get(), 4096, &hr);
        EXPECT_EQ(hr, c.expected) << c.what;
        EXPECT_LE(got.size(), content.size()) << c.what;
        EXPECT_EQ(got.size() > 0, c.someDataFirst) << c.what;
        // A forward seek over the damage fails the same way.
        if (c.expected != S_OK) {
            HRESULT skip = S_OK;
            ReadAt(s.get(), content.size() - 10, 10, &skip);
            EXPECT_EQ(skip, STG_E_READFAULT) << c.what;
        }
    }
}

TEST(ZipReadStream, UncompressedSizeDecidesHowMuchIsRead) {
    std::vector<uint8_t> content = Text(5000, 2);
    struct Case {
        uint16_t method;
        uint64_t claimed;
        size_t expected;
    };
    Case cases[] = {
        {8, 100, 100},           // less than there is: cut
        {8, 100000, 5000},       // more: the deflated data end first
        {0, 100, 100},
        {0, 1u << 30, 0},        // stored: reads on into what follows, up to the file's end
    };
    for (const Case& c : cases) {
        Archive a;
        a.entries = {Member("m", content, c.method)};
        a.entries[0].uncompressedSize = c.claimed;
        if (c.method == 0)
            a.entries[0].compressedSize = c.claimed;
        Opened o = OpenArchive(a);
        ASSERT_TRUE(o.set);
        Ref<IStream> s(o.set->OpenMember(L"m"));
        ASSERT_TRUE(s);
        HRESULT hr = E_FAIL;
        std::vector<uint8_t> got = ReadAll(s.get(), 4096, &hr);
        EXPECT_EQ(hr, S_OK) << c.claimed;
        if (c.expected) {
            EXPECT_EQ(got, Slice(content, 0, c.expected)) << c.claimed;
        } else {
            // The member's bytes, then the rest of the file, then nothing.
            size_t rest = o.bytes.size() - (30 + 1);
            EXPECT_EQ(got.size(), rest);
            EXPECT_EQ(Slice(got, 0, content.size()), content);
        }
    }
}

TEST(ZipReadStream, StreamsOnOneArchiveInterleave) {
    std::vector<uint8_t> one = Text(150000, 11), two = Noise(150000, 12);
    Archive a;
    a.entries = {Member("one", one, 8), Member("two", two, 8), Member("three", one, 0)};
    Opened o = OpenArchive(a);
    Ref<IStream> s1(o.set->OpenMember(L"one")), s2(o.set->OpenMember(L"two")), s3(o.set->OpenMember(L"three"));
    ASSERT_TRUE(s1 && s2 && s3);
    std::vector<uint8_t> r1, r2, r3;
    std::vector<uint8_t> buffer(3000);
    for (int round = 0; round < 60; ++round) {
        for (auto [s, r] : {std::pair{s1.get(), &r1}, std::pair{s2.get(), &r2}, std::pair{s3.get(), &r3}}) {
            ULONG got = 0;
            ASSERT_EQ(s->Read(buffer.data(), ULONG(buffer.size()), &got), S_OK);
            r->insert(r->end(), buffer.begin(), buffer.begin() + got);
        }
    }
    EXPECT_EQ(r1, one);
    EXPECT_EQ(r2, two);
    EXPECT_EQ(r3, one);
}

TEST(ZipReadStream, StreamKeepsTheSetAlive) {
    Archive a;
    a.entries = {Member("m", Text(10000), 8)};
    std::vector<uint8_t> bytes = Build(a);
    Ref<IStream> s;
    {
        auto file = StreamOn(bytes);
        ZipFileSetRef set = ZipFileSet::OpenFromStream(file.get());
        ASSERT_TRUE(set);
        s.reset(set->OpenMember(L"m", false, true));
    }
    ASSERT_TRUE(s);
    EXPECT_EQ(ReadAll(s.get()), Text(10000));
}

TEST(ZipReadStream, TruncatedArchivesNeverReadOutside) {
    // Every prefix of a small archive: either it doesn't open, or every
    // member answers something without reading past what is there.
    Archive a;
    a.entries = {Member("s", Text(3000, 1), 0), Member("d", Text(3000, 2), 8)};
    a.comment = "comment";
    std::vector<uint8_t> full = Build(a);
    for (size_t length = 0; length <= full.size(); ++length) {
        std::vector<uint8_t> cut(full.begin(), full.begin() + long(length));
        auto file = StreamOn(cut);
        ZipFileSetRef set = ZipFileSet::OpenFromStream(file.get());
        if (!set)
            continue;
        for (const ZipMember* m : set->ListMembers()) {
            Ref<IStream> s(set->OpenMember(m));
            if (s) {
                EXPECT_LE(ReadAll(s.get(), 1000).size(), full.size());
            }
        }
    }
}

}  // namespace
