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

}  // namespace
