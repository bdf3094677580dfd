// Compressed sections in the walk: block tables, several sections, sizes
// without a table, bitmap chunks read past their size, damaged blocks, and
// sections that would inflate without end.
#include <gtest/gtest.h>

#include <string>

#include "riff/CompressedSection.h"
#include "riff/FourCC.h"
#include "riff/RiffReader.h"
#include "tests/riff/RiffTestSupport.h"
#include "tests/support/riff/DrawingChunks.h"

using namespace rifftest;
using namespace TestDocs;
using KvdFileIO::RiffReader;

namespace {

Bytes Filled(size_t size, uint8_t seed) {
    Bytes out(size);
    for (size_t i = 0; i < size; ++i) out[i] = uint8_t(seed + i * 3);
    return out;
}

}  // namespace

TEST(CompressedSection, WalkGoesIntoTheSectionAndOnAfterIt) {
    SectionOptions noTable;
    noTable.table = false;
    for (const SectionOptions& options : {SectionOptions{}, noTable}) {
        SCOPED_TRACE(options.table ? "with table" : "without table");
        Bytes file = Riff(Tag("KVDC"), {
            DataChunk(Tag("head"), {1}),
            CompressedSection({DataChunk(Tag("in01"), Filled(301, 1)),
                               ListChunk(Tag("page"), {DataChunk(Tag("obj1"), Filled(7, 2)), DataChunk(Tag("obj2"), {})}),
                               DataChunk(Tag("in02"), Filled(70000, 3))},
                              options),
            DataChunk(Tag("tail"), {2}),
        });
        Opened o(file);
        ASSERT_TRUE(o.opened);
        EXPECT_EQ(Walk(o.reader), "head {in01 page* [obj1 obj2 ]in02 tail ");

        // The same walk reading data: every byte as written.
        RiffReader& r = o.reader;
        ASSERT_TRUE(r.Rewind());
        ASSERT_TRUE(r.FindChunk(Tag("cmpr")));
        ASSERT_TRUE(r.OpenCompressed());
        ASSERT_TRUE(r.Next());
        EXPECT_EQ(r.GetChunkSize(), 301);
        EXPECT_EQ(ChunkBytes(r), Filled(301, 1));
        ASSERT_TRUE(r.Next());
        ASSERT_TRUE(r.Descend());
        ASSERT_TRUE(r.Next());
        EXPECT_EQ(ChunkBytes(r), Filled(7, 2));
        ASSERT_TRUE(r.Ascend());
        ASSERT_TRUE(r.Next());
        EXPECT_EQ(ChunkBytes(r), Filled(70000, 3));
        ASSERT_TRUE(r.Next());  // the section ends; the same call goes on behind it
        EXPECT_EQ(r.GetChunkId(), Tag("tail"));
        EXPECT_EQ(ChunkBytes(r), Bytes({2}));
    }
}

TEST(CompressedSection, SeveralSectionsAndAscendOutOfOne) {
    Bytes file = Riff(Tag("KVDC"), {
        CompressedSection({DataChunk(Tag("a001"), {1}), DataChunk(Tag("a002"), {2})}),
        CompressedSection({DataChunk(Tag("b001"), {3})}),
        DataChunk(Tag("tail"), {4}),
    });
    Opened o(file);
    EXPECT_EQ(Walk(o.reader), "{a001 a002 {b001 tail ");
    // Sections do not nest: an inner one is stepped over like data.
    Opened nested(Riff(Tag("KVDC"), {CompressedSection({CompressedSection({DataChunk(Tag("deep"), {1})}),
                                                        DataChunk(Tag("in02"), {2})})}));
    EXPECT_EQ(Walk(nested.reader), "{! in02 ");

    RiffReader& r = o.reader;
    ASSERT_TRUE(r.Rewind());
    ASSERT_TRUE(r.Next());
    ASSERT_TRUE(r.OpenCompressed());
    ASSERT_TRUE(r.Next());
    EXPECT_EQ(r.GetChunkId(), Tag("a001"));
    ASSERT_TRUE(r.Ascend());  // out of the section: stands on the plain `cmpr`
    EXPECT_EQ(r.GetChunkId(), Tag("cmpr"));
    EXPECT_FALSE(r.IsList());
    ASSERT_TRUE(r.Next());  // steps over the rest of the section
    EXPECT_EQ(r.GetChunkId(), Tag("cmpr"));
    ASSERT_TRUE(r.OpenCompressed());
    ASSERT_TRUE(r.Next());
    EXPECT_EQ(ChunkBytes(r), Bytes({3}));
    ASSERT_TRUE(r.Next());
    EXPECT_EQ(r.GetChunkId(), Tag("tail"));
}

TEST(CompressedSection, SizesInsideTheSection) {
    // Without a table an inner size of 0 takes the section's size; with a
    // table an index out of range stands as the size.
    Chunk zero = DataChunk(Tag("zero"), Filled(10, 5));
    zero.sizeField = 0;
    SectionOptions noTable;
    noTable.table = false;
    Opened plain(Riff(Tag("KVDC"), {CompressedSection({zero}, noTable)}));
    ASSERT_TRUE(plain.reader.Next());
    ASSERT_TRUE(plain.reader.OpenCompressed());
    ASSERT_TRUE(plain.reader.Next());
    EXPECT_EQ(plain.reader.GetChunkSize(), 10);  // what the section holds after the header
    EXPECT_FALSE(plain.reader.Next());          // the only chunk took everything

    ByteWriter stream;
    stream.U32(Tag("idx0")).U32(0).U8(9).U8(0);    // index 0: the table says 1
    stream.U32(Tag("idx9")).U32(4).Append({1, 2, 3, 4});  // index 4 of 1: the size is 4
    Opened tabled(Riff(Tag("KVDC"), {CompressedSectionRaw(stream.Get(), {1})}));
    ASSERT_TRUE(tabled.reader.Next());
    ASSERT_TRUE(tabled.reader.OpenCompressed());
    ASSERT_TRUE(tabled.reader.Next());
    EXPECT_EQ(ChunkBytes(tabled.reader), Bytes({9}));
    ASSERT_TRUE(tabled.reader.Next());
    EXPECT_EQ(ChunkBytes(tabled.reader), Bytes({1, 2, 3, 4}));
}

TEST(CompressedSection, BitmapChunkReadsPastItsSize) {
    // Writers stored a bitmap's size short of its data; the reader reads the
    // whole bitmap and the next chunk begins where the bitmap ended.
    Bytes bitmap = Filled(1000, 7);
    Chunk bmp = DataChunk(Tag("bmp "), bitmap);
    bmp.sizeField = 100;
    Opened o(Riff(Tag("KVDC"), {CompressedSection({bmp, DataChunk(Tag("next"), {5, 6})}), DataChunk(Tag("tail"), {})}));
    RiffReader& r = o.reader;
    ASSERT_TRUE(r.Next());
    ASSERT_TRUE(r.OpenCompressed());
    ASSERT_TRUE(r.Next());
    EXPECT_EQ(r.GetChunkId(), Tag("bmp "));
    EXPECT_EQ(r.GetChunkSize(), 100);
    StreamPtr s(r.GetChunkStream());
    Bytes got(bitmap.size());
    ULONG n = 0;
    ASSERT_EQ(s->Read(got.data(), ULONG(got.size()), &n), S_OK);
    EXPECT_EQ(n, bitmap.size());
    EXPECT_EQ(got, bitmap);
    ASSERT_TRUE(r.Next());
    EXPECT_EQ(r.GetChunkId(), Tag("next"));
    EXPECT_EQ(ChunkBytes(r), Bytes({5, 6}));
    ASSERT_TRUE(r.Next());
    EXPECT_EQ(r.GetChunkId(), Tag("tail"));

    // Not read at all, the same bitmap is stepped over by its stated size,
    // and the walk lands inside its data: whatever it finds there is no fault.
    Opened again(Riff(Tag("KVDC"), {CompressedSection({bmp, DataChunk(Tag("next"), {5, 6})})}));
    ASSERT_TRUE(again.reader.Next());
    ASSERT_TRUE(again.reader.OpenCompressed());
    Walk(again.reader);
}

TEST(CompressedSection, DamagedSectionsDoNotOpenAndAreSteppedOver) {
    auto options = [](auto change) {
        SectionOptions o;
        change(o);
        return o;
    };
    struct Case { const char* what; SectionOptions options; } cases[] = {
        {"magic", options([](SectionOptions& o) { o.magic = Tag("CPnG"); })},
        {"first word", options([](SectionOptions& o) { o.headerWord1 = 2; })},
        {"second word", options([](SectionOptions& o) { o.headerWord2 = 5; })},
        {"short table", options([](SectionOptions& o) { o.truncateTable = true; })},
        {"table size beyond", options([](SectionOptions& o) { o.uncompressedTableSize = 0xFFFFFFF0u; })},
        {"data block size 4", options([](SectionOptions& o) { o.compressedDataSize = 4; })},
        {"table block past the end", options([](SectionOptions& o) { o.compressedDataSize = 0x7FFFFFFF; })},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Bytes file = Riff(Tag("KVDC"), {CompressedSection({DataChunk(Tag("in01"), {1})}, c.options),
                                        DataChunk(Tag("tail"), {2})});
        Opened o(file);
        ASSERT_TRUE(o.reader.Next());
        EXPECT_FALSE(o.reader.OpenCompressed());
        EXPECT_EQ(o.reader.GetChunkId(), Tag("cmpr"));  // the stack is as it was
        ASSERT_TRUE(o.reader.Next());
        EXPECT_EQ(o.reader.GetChunkId(), Tag("tail"));
    }
    // Too short for its header at all.
    Chunk stub = DataChunk(Tag("cmpr"), {1, 2, 3});
    stub.list = true;
    Opened o(Riff(Tag("KVDC"), {stub, DataChunk(Tag("tail"), {})}));
    EXPECT_EQ(Walk(o.reader), "! tail ");
    // OpenCompressed on anything but `cmpr`.
    Opened other(Riff(Tag("KVDC"), {DataChunk(Tag("data"), Bytes(40))}));
    EXPECT_FALSE(other.reader.OpenCompressed());  // no current chunk
    ASSERT_TRUE(other.reader.Next());
    EXPECT_FALSE(other.reader.OpenCompressed());
}

TEST(CompressedSection, DamageInsideTheDataEndsTheWalkOfTheSection) {
    for (Damage damage : {Damage::BadBlockType, Damage::BadChecksum}) {
        SectionOptions options;
        options.damage = damage;
        Bytes file = Riff(Tag("KVDC"), {
            CompressedSection({DataChunk(Tag("in01"), Filled(50, 1)), DataChunk(Tag("in02"), Filled(50, 2))}, options),
            DataChunk(Tag("tail"), {2}),
        });
        Opened o(file);
        RiffReader& r = o.reader;
        ASSERT_TRUE(r.Next());
        ASSERT_TRUE(r.OpenCompressed());  // the block header is sound
        std::string seen;
        while (r.Next()) seen += Id(r.GetChunkId());
        EXPECT_EQ(seen, damage == Damage::BadBlockType ? "" : "in01in02");
        ASSERT_TRUE(r.Ascend());  // out of the section, and on
        ASSERT_TRUE(r.Next());
        EXPECT_EQ(r.GetChunkId(), Tag("tail"));
    }
}

TEST(CompressedSection, SectionsThatInflateWithoutEndAreBounded) {
    // 64 MiB of zeros compress to some 64 KiB. Whatever the header and the
    // chunk sizes claim, the walk ends, and reads stop at the stated size.
    Bytes zeros(64u << 20, 0);
    ByteWriter inner;
    inner.U32(Tag("fill")).U32(0xFFFFFFF0u).Append(zeros);
    struct Case { const char* what; std::optional<uint32_t> stated; int64_t expectedSize; } cases[] = {
        {"stated small", 1000, 1000 - 8},
        {"stated as the truth", uint32_t(zeros.size() + 8), int64_t(zeros.size())},
        // No statement: the absolute cap governs, and the chunk claims more
        // than the section delivers.
        {"stated zero", 0, int64_t(KvdFileIO::kMaxSectionOutput - 8)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        SectionOptions options;
        options.table = false;
        options.level = 1;
        options.uncompressedDataSize = c.stated;
        Bytes file = Riff(Tag("KVDC"), {CompressedSectionRaw(inner.Get(), {}, options), DataChunk(Tag("tail"), {})});
        EXPECT_LT(file.size(), 1u << 20);
        Opened o(file);
        RiffReader& r = o.reader;
        ASSERT_TRUE(r.Next());
        ASSERT_TRUE(r.OpenCompressed());
        ASSERT_TRUE(r.Next());
        EXPECT_EQ(r.GetChunkSize(), c.expectedSize);
        StreamPtr s(r.GetChunkStream());
        STATSTG stat{};
        s->Stat(&stat, STATFLAG_NONAME);
        EXPECT_EQ(int64_t(stat.cbSize.QuadPart), r.GetChunkSize());
        if (!r.Next()) {
            // The chunk could not be stepped over to its stated end: leave
            // the section instead.
            EXPECT_EQ(r.GetChunkId(), Tag("fill"));
            ASSERT_TRUE(r.Ascend());
            ASSERT_TRUE(r.Next());
        }
        EXPECT_EQ(r.GetChunkId(), Tag("tail"));
    }
    EXPECT_GE(KvdFileIO::kMaxSectionOutput, uint64_t(64) << 20);
}

