// Member streams: reading stored and deflated members forwards, backwards
// and at random, raw reads, seeking rules, and how damaged data answer.
#include <gtest/gtest.h>

#include <optional>

#include "tests/support/zip/ZipTestArchive.h"
#include "zipcontainer/ZipFileSet.h"

using namespace ziptest;

namespace {

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
