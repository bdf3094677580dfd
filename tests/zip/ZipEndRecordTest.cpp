// Finding and reading the end record: the reach of the search, the zip64
// locator and record, and the values that fail an archive.
#include <gtest/gtest.h>

#include "tests/support/zip/ZipTestArchive.h"
#include "zipcontainer/ZipEndRecord.h"
#include "zipcontainer/ZipFileSet.h"

using namespace ziptest;

namespace {

bool Opens(const std::vector<uint8_t>& bytes) {
    auto stream = StreamOn(bytes);
    return bool(ZipFileSet::OpenFromStream(stream.get()));
}

size_t MemberCount(const std::vector<uint8_t>& bytes) {
    auto stream = StreamOn(bytes);
    ZipFileSetRef set = ZipFileSet::OpenFromStream(stream.get());
    return set ? set->ListMembers().size() : size_t(-1);
}

Archive OneMember(size_t size = 100) {
    Archive a;
    a.entries.push_back(MakeEntry("a.txt", Text(size)));
    return a;
}

std::vector<uint8_t> WithComment(size_t commentLength, size_t memberSize) {
    Archive a;
    if (memberSize)
        a.entries.push_back(MakeEntry("big.bin", Noise(memberSize)));
    a.comment.assign(commentLength, 'c');
    return Build(a);
}

TEST(ZipEndRecord, SizesAtTheEdge) {
    struct Case {
        const char* what;
        std::vector<uint8_t> bytes;
        bool opens;
    };
    std::vector<uint8_t> empty = Build(Archive{});
    std::vector<uint8_t> cut = empty;
    cut.pop_back();
    Case cases[] = {
        {"nothing", {}, false},
        {"three bytes", {'P', 'K', 5}, false},
        {"a bare end record", empty, true},
        {"one byte short of a record", cut, false},
        {"record behind junk", [] {
             std::vector<uint8_t> b = Bytes("junk in front of the record");
             auto e = Build(Archive{});
             b.insert(b.end(), e.begin(), e.end());
             return b;
         }(), true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Opens(c.bytes), c.opens) << c.what;
    EXPECT_EQ(empty.size(), 22u);
    EXPECT_EQ(MemberCount(empty), 0u);
}

TEST(ZipEndRecord, ReachOfTheSearch) {
    // In a file of 64 KiB or more the search reaches back 32811 bytes: a
    // comment of 32789 bytes is found, one byte more is not. A shorter file
    // is searched to its start.
    struct Case {
        size_t comment;
        size_t member;
        bool opens;
    };
    Case cases[] = {
        {32789, 40000, true},
        {32790, 40000, false},
        {65535, 40000, false},
        {40000, 0, true},
        {0, 70000, true},
        {1000, 70000, true},
    };
    for (const Case& c : cases) {
        std::vector<uint8_t> bytes = WithComment(c.comment, c.member);
        if (c.member) {
            ASSERT_GE(bytes.size(), ZipEndRecord::kSearchLimit);
        }
        EXPECT_EQ(Opens(bytes), c.opens) << "comment " << c.comment << " member " << c.member;
    }
}

TEST(ZipEndRecord, CommentIsCutToTheFile) {
    Archive a;
    a.comment = "short";
    a.commentLength = 500;
    auto stream = StreamOn(Build(a));
    ZipEndRecord record;
    ASSERT_TRUE(record.Read(stream.get()));
    EXPECT_EQ(std::string(record.comment.begin(), record.comment.end()), "short");

    ZipFileSetRef set = ZipFileSet::OpenFromStream(stream.get());
    ASSERT_TRUE(set);
    EXPECT_EQ(set->GetComment().StdString(), L"short");
}

TEST(ZipEndRecord, HighestSignatureWins) {
    // A comment that holds a whole end record of an empty archive hides the
    // real record in front of it.
    std::vector<uint8_t> fake = Build(Archive{});
    Archive a = OneMember();
    a.comment = std::string(fake.begin(), fake.end());
    EXPECT_EQ(MemberCount(Build(a)), 0u);
    // A signature too near the end for a whole record doesn't count.
    a.comment = "xxPK\x05\x06";
    EXPECT_EQ(MemberCount(Build(a)), 1u);
}

TEST(ZipEndRecord, ValuesThatFailTheArchive) {
    struct Case {
        const char* what;
        Archive archive;
        bool opens;
    };
    auto with = [](auto change) {
        Archive a = OneMember();
        a.entries.push_back(MakeEntry("b.txt", Text(50, 1), 8));
        change(a);
        return a;
    };
    Case cases[] = {
        {"plain", with([](Archive&) {}), true},
        {"another disk", with([](Archive& a) { a.diskNumber = 1; }), false},
        {"counts differ", with([](Archive& a) { a.entriesOnDisk = 1; }), false},
        {"more entries than the directory holds", with([](Archive& a) { a.entriesOnDisk = a.entriesTotal = 3; }),
         false},
        {"fewer entries than the directory holds", with([](Archive& a) { a.entriesOnDisk = a.entriesTotal = 1; }),
         true},
        {"directory beyond the file", with([](Archive& a) { a.directoryOffset = 1u << 30; }), false},
        {"directory overruns the file", with([](Archive& a) { a.directorySize = 1u << 30; }), false},
        {"directory offset one too far", with([](Archive& a) { a.directoryOffset = 1; }), false},
        {"zip64", with([](Archive& a) { a.zip64End = true; }), true},
        {"zip64 locator on another disk", with([](Archive& a) {
             a.zip64End = true;
             a.locatorDisk = 1;
         }), false},
        {"zip64 record beyond the file", with([](Archive& a) {
             a.zip64End = true;
             a.zip64RecordOffset = uint64_t(1) << 40;
         }), false},  // the plain values are markers then, and they can't be used
        {"zip64 record at an offset past any stream", with([](Archive& a) {
             a.zip64End = true;
             a.zip64RecordOffset = ~uint64_t(0);
         }), false},
        {"zip64 record with a compressed directory", with([](Archive& a) {
             a.zip64End = true;
             a.zip64VersionNeeded = 62;
             a.zip64DirectoryMethod = 8;
         }), false},
        {"zip64 version 62 with a plain directory", with([](Archive& a) {
             a.zip64End = true;
             a.zip64VersionNeeded = 62;
         }), true},
        {"compression field ignored below version 62", with([](Archive& a) {
             a.zip64End = true;
             a.zip64VersionNeeded = 61;
             a.zip64DirectoryMethod = 8;
         }), true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Opens(Build(c.archive)), c.opens) << c.what;
}

TEST(ZipEndRecord, Zip64RecordThatIsNotThere) {
    // A locator that names no zip64 record: its fields count as zero, so the
    // plain record decides as long as it holds no markers.
    Archive a = OneMember();
    a.entries.push_back(MakeEntry("z", Text(10)));
    std::vector<uint8_t> bytes = Build(a);
    size_t end = EndRecordOffset(bytes);
    std::vector<uint8_t> locator = {0x50, 0x4B, 0x06, 0x07, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0};
    // Offset 0 names the first local header: a signature, but the wrong one.
    bytes.insert(bytes.begin() + long(end), locator.begin(), locator.end());
    auto stream = StreamOn(bytes);
    ZipFileSetRef set = ZipFileSet::OpenFromStream(stream.get());
    // The directory offset is now 20 bytes before the record, where it was.
    ASSERT_TRUE(set);
    EXPECT_EQ(set->ListMembers().size(), 2u);
}

}  // namespace
