// The member table: how names are decoded, headers the writer makes read
// back, and which damage fails the directory.
#include <gtest/gtest.h>

#include "platform/Time.h"
#include "tests/support/zip/ZipTestArchive.h"
#include "zipcontainer/ZipCentralDirectory.h"
#include "zipcontainer/ZipFileSet.h"
#include "zipcontainer/ZipHeaders.h"

using namespace ziptest;

namespace {

ZipFileSetRef Open(const Archive& a) {
    auto stream = StreamOn(Build(a));
    return ZipFileSet::OpenFromStream(stream.get());
}

Entry Named(std::string name, std::string content = "data") {
    Entry e;
    e.name = std::move(name);
    e.content = Bytes(content);
    return e;
}

TEST(ZipCentralDirectory, NamesAndComments) {
    struct Case {
        const char* what;
        std::string raw;
        uint16_t flags;
        std::vector<uint8_t> extra;
        std::wstring name;
    };
    const std::string latin = "caf\xE9 \x80.txt";  // Windows-1252: é and the euro sign
    Case cases[] = {
        {"ascii", "plain/name.txt", 0, {}, L"plain/name.txt"},
        {"utf-8 flag", "caf\xC3\xA9.txt", 0x800, {}, L"caf\u00E9.txt"},
        {"utf-8 ends at a NUL", std::string("abc\0def", 7), 0x800, {}, L"abc"},
        {"ansi keeps a NUL", std::string("abc\0d", 5), 0, {}, std::wstring(L"abc\0d", 5)},
        {"ansi code page", latin, 0, {}, L"caf\u00E9 \u20AC.txt"},
        {"unicode path record", latin, 0, UnicodeExtra(0x7075, latin, "\xE2\x82\xAC.txt"), L"\u20AC.txt"},
        {"unicode path with a wrong CRC", latin, 0, UnicodeExtra(0x7075, "other", "\xE2\x82\xAC.txt"),
         L"caf\u00E9 \u20AC.txt"},
        {"unicode path of another version", latin, 0, UnicodeExtra(0x7075, latin, "x", 2), L"caf\u00E9 \u20AC.txt"},
        {"unicode path too short to hold a CRC", latin, 0, ExtraRecord(0x7075, {1, 2, 3, 4}),
         L"caf\u00E9 \u20AC.txt"},
    };
    for (const Case& c : cases) {
        Archive a;
        a.entries = {Named(c.raw)};
        a.entries[0].flags = c.flags;
        a.entries[0].centralExtra = c.extra;
        ZipFileSetRef set = Open(a);
        ASSERT_TRUE(set) << c.what;
        auto members = set->ListMembers();
        ASSERT_EQ(members.size(), 1u) << c.what;
        EXPECT_EQ(members[0]->name.StdString(), c.name) << c.what;
    }
}

TEST(ZipCentralDirectory, WrittenHeadersReadBack) {
    // Every combination of values beyond 32 bits, through the writer's
    // header and the reader's parse.
    for (int big = 0; big < 8; ++big) {
        ZipMember m;
        m.name = L"n\u00E4me";
        m.comment = L"comment";
        m.method = 8;
        m.crc32 = 0x01020304;
        m.uncompressedSize = (big & 1) ? (5ull << 30) : 1000;
        m.compressedSize = (big & 2) ? 0xFFFFFFFFull : 500;
        m.localHeaderOffset = (big & 4) ? (7ull << 32) + 3 : 77;
        m.modified = UInt64ToFileTime(133000000000000000ull);
        m.accessed = UInt64ToFileTime(133000000000000001ull);
        m.created = UInt64ToFileTime(133000000000000002ull);
        m.extras.push_back(ZipExtraRecord{0x4242, {9, 8, 7}});
        std::vector<uint8_t> header = ZipHeaders::Central(m);
        EXPECT_EQ(ZipHeaders::CentralNeedsZip64(m), big != 0);
        std::vector<ZipMember> parsed;
        ASSERT_TRUE(ZipCentralDirectory::Parse(header.data(), header.size(), 1, parsed)) << big;
        ASSERT_EQ(parsed.size(), 1u);
        const ZipMember& p = parsed[0];
        EXPECT_EQ(p.name.StdString(), m.name.StdString());
        EXPECT_EQ(p.comment.StdString(), L"comment");
        EXPECT_EQ(p.uncompressedSize, m.uncompressedSize) << big;
        EXPECT_EQ(p.compressedSize, m.compressedSize) << big;
        EXPECT_EQ(p.localHeaderOffset, m.localHeaderOffset) << big;
        EXPECT_EQ(FileTimeToUInt64(p.created), 133000000000000002ull);
        ASSERT_EQ(p.extras.size(), 1u);
        EXPECT_EQ(p.extras[0].data, (std::vector<uint8_t>{9, 8, 7}));
    }
}

TEST(ZipCentralDirectory, DamageFailsTheWholeDirectory) {
    struct Case {
        const char* what;
        size_t offsetInDirectory;  // of the byte to change
        uint8_t value;
    };
    Case cases[] = {
        {"signature of the first header", 0, 'X'},
        {"name length overruns", 28, 0xF0},
        {"extra length overruns", 30, 0xF0},
        {"comment length overruns", 32, 0xF0},
        {"signature of the second header", 46 + 1, 'X'},
    };
    for (const Case& c : cases) {
        Archive a;
        a.entries = {Named("a"), Named("b")};
        std::vector<uint8_t> bytes = Build(a);
        size_t directory = 2 * (30 + 1 + 4);
        bytes[directory + c.offsetInDirectory] = c.value;
        auto stream = StreamOn(bytes);
        EXPECT_FALSE(ZipFileSet::OpenFromStream(stream.get())) << c.what;
    }
}

TEST(ZipCentralDirectory, HugeCountInASmallDirectoryFailsWithoutAllocating) {
    Archive a;
    a.entries = {Named("a")};
    a.zip64End = true;
    std::vector<uint8_t> bytes = Build(a);
    // Both zip64 counts claim 2^60 entries.
    size_t record = EndRecordOffset(bytes) - 20 - 56;
    for (size_t at : {record + 24, record + 32})
        bytes[at + 7] = 0x10;
    auto stream = StreamOn(bytes);
    EXPECT_FALSE(ZipFileSet::OpenFromStream(stream.get()));
}

}  // namespace
