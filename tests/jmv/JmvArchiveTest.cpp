// The object-archive reader: both section forms, the failure table, the
// hand-back of FindRecord and hostile sizes.
#include <gtest/gtest.h>

#include <functional>

#include "riff/archive/JmvArchive.h"
#include "tests/support/archive/ArchiveWriter.h"
#include "tests/support/riff/DrawingChunks.h"
#include "tests/support/riff/StreamOnBytes.h"

using namespace TestDocs;

namespace {

enum class Outcome { Valid, Invalid, Throws257 };

struct ReadResult {
    Outcome outcome = Outcome::Invalid;
    JmvArchiveInfo info;
    uint64_t positionAfter = 0;
};

ReadResult ReadBytes(const Bytes& file) {
    ReadResult r;
    StreamPtr stream = StreamOnBytes(file);
    stream->AddRef();  // taken over by the read
    try {
        r.outcome = ReadJmvArchive(r.info, stream.get()) ? Outcome::Valid : Outcome::Invalid;
    } catch (udi::UDI_RC rc) {
        EXPECT_EQ(rc, 257);
        r.outcome = Outcome::Throws257;
    }
    ULARGE_INTEGER at;
    at.QuadPart = 99;
    stream->Seek(MakeLargeInteger(0), STREAM_SEEK_CUR, &at);
    r.positionAfter = at.QuadPart;
    return r;
}

ArchiveOptions FullArchive(bool compressed) {
    ArchiveOptions o;
    o.compressed = compressed;
    o.headerRecords = {{7, Bytes(5, 1)}, {Tag("objs"), Bytes(3, 2)}};
    o.meta = {
        U32Record(Tag("text"), 11),
        {Tag("zzzz"), Bytes(13, 0xEE), {}},  // unknown: skipped by its size
        U32Record(Tag("vect"), 22),
        U32Record(Tag("targ"), 33),
        BboxRecord(-5, 6, 700, -800),
        PageRecord(4),
        StringRecord(Tag("note"), "Gr\xC3\xBC\xC3\x9F" "e"),
        StringRecord(Tag("keyw"), "a;b"),
    };
    o.thumbnail = PackedDib(DibParams{});
    return o;
}

}  // namespace

// Each row damages a sound archive and names the answer.
TEST(JmvArchive, FailureTable) {
    struct Case {
        const char* name;
        bool compressed;
        std::function<Bytes()> make;
        Outcome outcome;
        bool hasThumbnail;
    };
    auto with = [](bool compressed, std::function<void(ArchiveOptions&)> change) {
        return [=] {
            ArchiveOptions o = FullArchive(compressed);
            change(o);
            return JmvArchive(o);
        };
    };
    auto cut = [](bool compressed, size_t drop) {
        return [=] {
            Bytes b = JmvArchive(FullArchive(compressed));
            b.resize(b.size() - drop);
            return b;
        };
    };
    const Case cases[] = {
        {"sound", false, with(false, [](auto&) {}), Outcome::Valid, true},
        {"riff magic", false, [] { return ExchangeMetafile(DibParams{}); }, Outcome::Invalid, false},
        {"bad magic", false, with(false, [](auto& o) { o.magic = Tag("JMV2"); }), Outcome::Invalid, false},
        {"shorter than a header", false, [] { return Bytes{'J', 'M', 'V', '3', 1}; }, Outcome::Invalid, false},
        {"magic only, no tail", false, [] { return Bytes{'J', 'M', 'V', '3', 1, 0, 0, 0}; }, Outcome::Invalid, false},
        {"tail cut off", false, cut(false, 3), Outcome::Invalid, false},
        {"meta offset past the end", false, with(false, [](auto& o) { o.metaOffset = 1u << 30; }), Outcome::Invalid, false},
        {"meta offset 0", false, with(false, [](auto& o) { o.metaOffset = 0; }), Outcome::Invalid, false},
        {"meta offset huge", false, with(false, [](auto& o) { o.metaOffset = ~0ull; }), Outcome::Invalid, false},
        {"section not META", true, with(true, [](auto& o) { o.metaTag = Tag("ATEM"); }), Outcome::Invalid, false},
        {"no indx", false, with(false, [](auto& o) { o.index = std::vector<uint64_t>{}; }), Outcome::Throws257, false},
        {"one index entry", true, with(true, [](auto& o) { o.index = std::vector<uint64_t>{0}; }), Outcome::Throws257, false},
        {"empty indx table", false,
         with(false, [](auto& o) { o.meta.push_back(IndexRecord({}, 0)); }), Outcome::Throws257, false},
        {"lying indx count", true,
         with(true, [](auto& o) {
             o.index = std::vector<uint64_t>{};
             o.closeMeta = false;
             o.meta.push_back(IndexRecord({0}, 0x7FFFFFFF));
         }), Outcome::Throws257, false},
        {"index[1] is 0", false, with(false, [](auto& o) { o.index = std::vector<uint64_t>{5, 0}; }), Outcome::Valid, false},
        {"index[1] past the end", true,
         with(true, [](auto& o) { o.index = std::vector<uint64_t>{0, 1u << 30}; }), Outcome::Valid, false},
        {"thumbnail tag not 0", false, with(false, [](auto& o) { o.thumbnailTag = 9; }), Outcome::Valid, false},
        {"thumbnail size 0", true, with(true, [](auto& o) { o.thumbnailSize = 0; }), Outcome::Valid, false},
        {"thumbnail cut short", false,
         with(false, [](auto& o) { o.thumbnailSize = 0x7FFFFFF0; }), Outcome::Invalid, false},
        // The section ends with its data, which fails the archive: the
        // thumbnail record is then not read.
        {"no closing record, plain", false, with(false, [](auto& o) { o.closeMeta = false; }), Outcome::Valid, false},
        {"no closing record, deflated", true, with(true, [](auto& o) { o.closeMeta = false; }), Outcome::Valid, false},
        {"huge string length", false,
         with(false, [](auto& o) { o.meta.push_back({Tag("note"), {0xF0, 0xFF, 0xFF, 0x7F}, {}}); }),
         Outcome::Throws257, false},
        {"negative string length", false,
         with(false, [](auto& o) { o.meta.insert(o.meta.begin(), {Tag("note"), {0xFF, 0xFF, 0xFF, 0xFF}, {}}); }),
         Outcome::Valid, true},
        {"negative header tag", false,
         with(false, [](auto& o) { o.headerRecords.push_back({-3, Bytes(4, 0)}); }), Outcome::Invalid, false},
        {"lying header record size", false,
         with(false, [](auto& o) { o.headerRecords = {{5, Bytes{}}}; o.objects.clear(); }), Outcome::Valid, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ReadResult r = ReadBytes(c.make());
        EXPECT_EQ(r.outcome, c.outcome);
        EXPECT_EQ(!r.info.thumbnail.empty(), c.hasThumbnail);
    }
}

TEST(JmvArchive, CorruptDeflateIsNoArchive) {
    ArchiveLayout layout;
    Bytes file = JmvArchive(FullArchive(true), &layout);
    for (size_t i = layout.metaOffset; i < file.size() - 8; ++i) file[i] = 0xFF;  // block type 3
    EXPECT_EQ(ReadBytes(file).outcome, Outcome::Invalid);
}

