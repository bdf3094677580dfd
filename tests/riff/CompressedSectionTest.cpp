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

