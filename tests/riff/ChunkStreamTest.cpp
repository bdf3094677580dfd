// Chunks and their streams: reads and seeks bounded by the chunk, pad bytes,
// the unbounded bitmap chunks of a compressed area, and a stream that
// outlives its chunk.
#include <gtest/gtest.h>

#include <memory>

#include "riff/ChunkReaderStream.h"
#include "riff/DecompressorDeflate.h"
#include "riff/FourCC.h"
#include "riff/RiffChunkCompressed.h"
#include "riff/RiffChunkNormal.h"
#include "tests/riff/RiffTestSupport.h"

using namespace rifftest;
using KvdFileIO::FourCC;
using KvdFileIO::RiffChunkNormal;

namespace {

// Bytes 0, 1, 2, ... so that a position error shows in the data.
Bytes Counting(size_t size) {
    Bytes out(size);
    for (size_t i = 0; i < size; ++i) out[i] = uint8_t(i);
    return out;
}

// A chunk of `size` bytes starting at offset 10 of a 100-byte parent.
struct Fixture {
    explicit Fixture(uint64_t size, uint32_t tag = FourCC("data"), bool compressedArea = false)
        : probe(Counting(100)) {
        probe.stream->position = 10;
        chunk = std::make_unique<RiffChunkNormal>(probe.stream, tag, false, size, compressedArea);
    }
    uint64_t Read(uint64_t count, uint8_t* first = nullptr) {
        Bytes buffer(count);
        uint64_t got = 0;
        EXPECT_TRUE(chunk->Read(buffer.data(), count, got));
        if (first && got) *first = buffer[0];
        return got;
    }
    Probe probe;
    std::unique_ptr<RiffChunkNormal> chunk;
};

}  // namespace

TEST(ChunkStream, BitmapInCompressedAreaReadsPastItsSize) {
    struct Case {
        uint32_t tag;
        bool area;
        uint64_t readable;
    } cases[] = {{FourCC("bmp "), true, 30}, {FourCC("bmpt"), true, 30}, {FourCC("bmp "), false, 4},
                 {FourCC("DISP"), true, 4}};
    for (const Case& c : cases) {
        Fixture f(4, c.tag, c.area);
        EXPECT_EQ(f.Read(30), c.readable);
        if (c.readable == 4) continue;
        EXPECT_EQ(f.chunk->Seek(50, STREAM_SEEK_SET), 50u);
        // The reading went beyond the stated end: the next chunk begins here.
        EXPECT_TRUE(f.chunk->Skip());
        EXPECT_EQ(f.probe.stream->position, 60u);
    }
}
