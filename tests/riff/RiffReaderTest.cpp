// The walk over plain RIFF files: opening, Next, FindChunk, Descend, Ascend,
// Rewind, Close, chunk data, and files whose sizes do not add up.
#include <gtest/gtest.h>

#include <string>

#include "riff/FourCC.h"
#include "riff/RiffReader.h"
#include "utils/memory/Buffer.h"
#include "tests/riff/RiffTestSupport.h"
#include "tests/support/riff/DrawingChunks.h"

using namespace rifftest;
using namespace TestDocs;
using KvdFileIO::RiffReader;

namespace {

// The ids of the chunks from here to the end of the list, without entering.
std::string Ids(RiffReader& r) {
    return Walk(r, false);
}

Bytes Text(const char* s) {
    return Bytes(s, s + std::strlen(s));
}

}  // namespace

TEST(RiffReader, OpenRefusesWhatIsNoRiffFile) {
    Bytes good = Riff(Tag("KVD8"), {});
    struct Case { const char* what; Bytes bytes; } cases[] = {
        {"empty", {}},
        {"header only", Bytes(good.begin(), good.begin() + 8)},
        {"eleven bytes", Bytes(good.begin(), good.begin() + 11)},
        {"other magic", Text("RIFXxxxxKVD8")},
        {"lower case", Text("riff\4\0\0\0KVD8")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Opened o(c.bytes);
        EXPECT_FALSE(o.opened);
        EXPECT_FALSE(o.reader.Next());
        EXPECT_EQ(o.reader.GetChunkStream(), nullptr);
    }
    RiffReader none(nullptr);
    uint32_t form = 0;
    EXPECT_FALSE(none.Open(form));
    EXPECT_EQ(none.GetStreamSize(), 0u);

    Opened empty(good);  // a RIFF without children opens and has nothing
    EXPECT_TRUE(empty.opened);
    EXPECT_EQ(empty.form, Tag("KVD8"));
    EXPECT_FALSE(empty.reader.Next());
    EXPECT_FALSE(empty.reader.Open(empty.form));  // once only
}

TEST(RiffReader, SizesThatDoNotAddUp) {
    // Odd chunks with and without pad bytes, a zero size, a LIST too small
    // for its list type, sizes beyond the file.
    Chunk oddUnpadded = DataChunk(Tag("odd2"), {1, 2, 3});
    oddUnpadded.pad = false;
    Chunk tinyList = ListChunk(Tag("tiny"), {});
    tinyList.sizeField = 2;
    Chunk huge = DataChunk(Tag("huge"), {7, 7});
    huge.sizeField = 0xFFFFFFF0u;

    struct Case { const char* what; std::vector<Chunk> chunks; std::string ids; } cases[] = {
        {"odd with pad", {DataChunk(Tag("odd1"), {1, 2, 3}), DataChunk(Tag("next"), {})}, "odd1 next "},
        {"odd at the end without pad", {DataChunk(Tag("frst"), {1, 1}), oddUnpadded}, "frst odd2 "},
        {"list size 2", {tinyList, DataChunk(Tag("next"), {})}, "tiny* next "},
        {"size beyond the file", {DataChunk(Tag("frst"), {1, 1}), huge}, "frst huge "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Opened o(Riff(Tag("KVD8"), c.chunks));
        EXPECT_EQ(Ids(o.reader), c.ids);
    }

    {  // a list whose size field is 2 has data size 0
        Opened o(Riff(Tag("KVD8"), {tinyList}));
        ASSERT_TRUE(o.reader.Next());
        EXPECT_EQ(o.reader.GetChunkSize(), 0);
        ASSERT_TRUE(o.reader.Descend());
        EXPECT_FALSE(o.reader.Next());
    }
    {  // a size beyond the file is clamped to what is there
        Opened o(Riff(Tag("KVD8"), {huge}));
        ASSERT_TRUE(o.reader.Next());
        EXPECT_EQ(o.reader.GetChunkSize(), 2);
        Bytes data(16, 0xAA);
        EXPECT_TRUE(o.reader.ReadChunkData(data.data(), data.size()));
        EXPECT_EQ(data, Bytes({7, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));  // the rest zero-filled
        o.reader.Rewind();
        ASSERT_TRUE(o.reader.Next());
        BrmUtils::Memory::Buffer buffer;
        ASSERT_TRUE(buffer.Append("old", 3));
        ASSERT_TRUE(o.reader.ReadChunkToBuffer(buffer, 5));
        Bytes got(8, 0xAA);
        uint64_t n = 0;
        ASSERT_TRUE(buffer.Read(0, got.data(), got.size(), &n));
        EXPECT_EQ(n, 5u);
        EXPECT_EQ(got, Bytes({7, 7, 0, 0, 0, 0xAA, 0xAA, 0xAA}));
    }
    {  // a zero size outside a compressed section takes the parent's size
        Chunk zero = DataChunk(Tag("zero"), Bytes(6, 1));
        zero.sizeField = 0;
        Opened o(Riff(Tag("KVD8"), {zero, DataChunk(Tag("gone"), {})}));
        ASSERT_TRUE(o.reader.Next());
        EXPECT_EQ(o.reader.GetChunkSize(), 6 + 8);  // the rest of the root
        EXPECT_FALSE(o.reader.Next());            // its Skip reached the root's end
    }
    {  // a RIFF size beyond the file, and one shorter than the children
        Bytes file = Riff(Tag("KVD8"), {DataChunk(Tag("aaaa"), {1}), DataChunk(Tag("bbbb"), {2})}, 0x7FFFFFFF);
        Opened big(file);
        EXPECT_EQ(Ids(big.reader), "aaaa bbbb ");
        file = Riff(Tag("KVD8"), {DataChunk(Tag("aaaa"), {1}), DataChunk(Tag("bbbb"), {2})}, 4 + 10);
        Opened small(file);
        EXPECT_EQ(Ids(small.reader), "aaaa ");
    }
}

TEST(RiffReader, TruncatedAnywhere) {
    // Every prefix of a file opens or not, and walks to an end without a fault.
    Bytes file = Riff(Tag("KVDC"), {
        SumiChunk(Summary{}), VrsnChunk(1200),
        ListChunk(Tag("doc "), {FontTable(1200, {L"Serif"}), PageConfigChunk(1200, PageConfig{})}),
        PageList({DataChunk(Tag("objs"), Bytes(33, 3))}), DispChunk(DibParams{}),
    });
    for (size_t cut = 0; cut <= file.size(); ++cut) {
        Opened o(Bytes(file.begin(), file.begin() + cut));
        EXPECT_EQ(o.opened, cut >= 12);
        int steps = 0;
        while (o.reader.Next() && steps < 100) {
            ++steps;
            Bytes data(size_t(o.reader.GetChunkSize()));
            o.reader.ReadChunkData(data.data(), data.size());
            EXPECT_LE(data.size(), cut);
            if (o.reader.Descend()) {
                while (o.reader.Next()) ++steps;
                o.reader.Ascend();
            }
        }
    }
}

TEST(RiffReader, NestingIsBounded) {
    // Lists nested far deeper than the reader follows: it stops, in bounded
    // stack depth, and still walks back out.
    const uint32_t levels = 5000;
    ByteWriter nested;
    for (uint32_t i = levels; i-- > 0;) nested.U32(Tag("LIST")).U32(4 + 12 * i + 10).U32(Tag("nest"));
    nested.Append(Serialize(DataChunk(Tag("core"), {1})));
    ByteWriter file;
    file.U32(Tag("RIFF")).U32(uint32_t(nested.Get().size() + 4)).U32(Tag("KVDC")).Append(nested.Get());
    Opened o(file.Get());
    RiffReader& r = o.reader;
    size_t depth = 0;
    while (r.Next() && r.Descend()) ++depth;
    EXPECT_LT(depth, RiffReader::kMaxDepth);
    EXPECT_GT(depth, RiffReader::kMaxDepth - 4);
    EXPECT_EQ(r.GetChunkId(), Tag("nest"));
    Bytes data(16);
    EXPECT_TRUE(r.ReadChunkData(data.data(), data.size()));
    while (r.Ascend()) {}
    EXPECT_TRUE(r.Rewind());
    EXPECT_EQ(Ids(r), "nest* ");
}

TEST(RiffReader, ReadFailureLeavesNoCurrentChunkAndNextTriesAgain) {
    Bytes file = Riff(Tag("KVDC"), {DataChunk(Tag("aaaa"), Bytes(20, 1)), DataChunk(Tag("bbbb"), Bytes(20, 2))});
    Probe probe(file);
    RiffReader r(probe.stream);
    uint32_t form = 0;
    ASSERT_TRUE(r.Open(form));
    ASSERT_TRUE(r.Next());
    probe.stream->failFrom = 12 + 28 + 4;  // inside the second header
    EXPECT_FALSE(r.Next());
    EXPECT_EQ(r.GetChunkId(), 0u);
    uint8_t byte = 0;
    EXPECT_FALSE(r.ReadChunkData(&byte, 1));
    probe.stream->failFrom = UINT64_MAX;
    r.Rewind();
    EXPECT_EQ(Ids(r), "aaaa bbbb ");
}
