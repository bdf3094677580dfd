// The test writer's drawing chunks, read back through RiffReader at the
// offsets the drawing reader uses: a layout slip here would mislead every
// test built on the writer.
#include <gtest/gtest.h>

#include "tests/riff/RiffTestSupport.h"
#include "tests/support/riff/DrawingChunks.h"

using namespace rifftest;
using namespace TestDocs;

namespace {
uint32_t U32(const Bytes& b, size_t at) {
    return uint32_t(b[at]) | uint32_t(b[at + 1]) << 8 | uint32_t(b[at + 2]) << 16 | uint32_t(b[at + 3]) << 24;
}
}  // namespace

TEST(WriterLayout, DrawingChunksStandWhereTheReaderLooks) {
    Summary sum;
    sum.appVersion = 1150;
    sum.productId = 2;
    sum.locale = 0x409;
    DibParams dib;
    dib.bitCount = 4;
    dib.width = 5;
    dib.headerSize = 124;
    Bytes file = Riff(Tag("KVDC"), {SumiChunk(sum), VrsnChunk(1200), FontTable(1200, {L"Serif"}),
                                    FontTable(800, {L"Sans\u00e9"}), PageConfigChunk(1300, PageConfig{}),
                                    DispChunk(dib)});
    Opened o(file);
    ASSERT_TRUE(o.opened);
    ASSERT_TRUE(o.reader.Next());
    Bytes s = ChunkBytes(o.reader);
    ASSERT_EQ(s.size(), 54u);
    EXPECT_EQ(U32(s, 36), 1150u);
    EXPECT_EQ(U32(s, 48), 0x409u);
    EXPECT_EQ(s[52], 2);
    ASSERT_TRUE(o.reader.Next());
    EXPECT_EQ(ChunkBytes(o.reader), Bytes({0xB0, 0x04}));

    for (size_t size : {160u, 18u + 6 + 1}) {  // UTF-16 in 160 bytes; UTF-8 and a zero
        ASSERT_TRUE(o.reader.Next());
        ASSERT_TRUE(o.reader.Descend());
        ASSERT_TRUE(o.reader.FindChunk(Tag("font")));
        Bytes f = ChunkBytes(o.reader);
        EXPECT_EQ(f.size(), size);
        EXPECT_EQ(f[18], 'S');
        EXPECT_EQ(size == 160 ? f[20] : f[22], size == 160 ? 'e' : 0xC3);
        o.reader.Ascend();
    }
    ASSERT_TRUE(o.reader.Next());
    Bytes m = ChunkBytes(o.reader);
    ASSERT_EQ(m.size(), 12u + 8 + 696 + 8);
    EXPECT_EQ(U32(m, 12), 2159000u);
    EXPECT_EQ(U32(m, 12 + 8 + 696), 11811024u);

    ASSERT_TRUE(o.reader.Next());
    Bytes d = ChunkBytes(o.reader);
    EXPECT_EQ(U32(d, 0), 8u);
    EXPECT_EQ(U32(d, 4), 124u);
    EXPECT_EQ(DibColourCount(dib), 16u);
    EXPECT_EQ(DibImageSize(dib), 4u * 3);  // 5 pixels of 4 bits round up to one 32-bit word
    EXPECT_EQ(d.size(), 4 + 124 + 16 * 4 + 12u);
    Bytes packed = PackedDib(dib);
    ASSERT_EQ(packed.size(), 40 + 16 * 4 + 12u);
    EXPECT_EQ(U32(packed, 0), 40u);
    EXPECT_EQ(U32(packed, 20), 12u);  // biSizeImage recomputed
    EXPECT_EQ(U32(packed, 32), 16u);  // biClrUsed filled in
    EXPECT_TRUE(std::equal(packed.begin() + 40, packed.end(), d.begin() + 4 + 124));
}
