// Seeking over a forward-only source: the source is read once, in order,
// and as far as reads need.
#include <gtest/gtest.h>

#include <random>

#include "tests/streams/TestStreams.h"
#include "utils/streams/MemStream.h"
#include "utils/streams/RandomAccessStream.h"
#include "utils/streams/StreamHelpers.h"

using namespace BrmUtils;
using namespace streamtest;

namespace {

struct Fixture {
    explicit Fixture(std::vector<uint8_t> bytes) : source(new ScriptedStream(std::move(bytes))) {
        stream.reset(RandomAccessStream::Create(source.get()));
    }
    Ref<ScriptedStream> source;
    Ref<RandomAccessStream> stream;
};

}  // namespace

TEST(RandomAccessStream, ShortSourceIsReadOnce) {
    Fixture f(Pattern(10));
    ASSERT_TRUE(f.stream);
    EXPECT_EQ(ReadAt(f.stream.get(), 0, 100), Pattern(10));
    const int reads = f.source->reads;
    EXPECT_EQ(ReadAt(f.stream.get(), 0, 100), Pattern(10));
    EXPECT_EQ(ReadAt(f.stream.get(), 4, 3), (std::vector<uint8_t>{4, 5, 6}));
    EXPECT_EQ(ReadAt(f.stream.get(), 50, 3).size(), 0u);
    EXPECT_EQ(f.source->reads, reads);
    EXPECT_EQ(f.stream->GetCachedBytes(), 10u);
}

TEST(RandomAccessStream, ReadsRunAheadToWholePages) {
    struct Case {
        bool rounding;
        uint64_t position;
        ULONG count;
        uint64_t cached;
    } cases[] = {
        {true, 0, 1, 4096},       {true, 0, 4096, 4096},     {true, 0, 4097, 8192},
        {true, 10000, 10, 12288}, {false, 0, 1, 1},          {false, 10000, 10, 10010},
        {true, 20000, 1, 20000},  // the source has only 20000 bytes
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.position);
        SCOPED_TRACE(c.count);
        Fixture f(Pattern(20000));
        f.stream->SetPageRounding(c.rounding);
        ReadAt(f.stream.get(), c.position, c.count);
        EXPECT_EQ(f.stream->GetCachedBytes(), c.cached);
        EXPECT_EQ(f.source->position, c.cached);
        EXPECT_EQ(GetPosition(f.stream.get()), std::min<uint64_t>(c.position + c.count, std::max<uint64_t>(c.position, 20000)));
    }
}

TEST(RandomAccessStream, RandomReadsMatchTheSource) {
    const std::vector<uint8_t> bytes = Pattern(300000);
    Fixture f(bytes);
    f.source->maxChunk = 1000;  // a source that delivers in pieces
    std::mt19937 random(7);
    for (int i = 0; i < 300; ++i) {
        const uint64_t position = random() % 310000;
        const ULONG count = ULONG(random() % 9000);
        const std::vector<uint8_t> got = ReadAt(f.stream.get(), position, count);
        ASSERT_EQ(got, Slice(bytes, position, position + count)) << position << " " << count;
    }
    EXPECT_EQ(f.stream->GetCachedBytes(), bytes.size());
}

TEST(RandomAccessStream, SeekingBeyondWhatIsCachedCostsNothingUntilRead) {
    Fixture f(Pattern(100000));
    EXPECT_EQ(SeekTo(f.stream.get(), 50000), 50000u);
    EXPECT_EQ(f.source->reads, 0);
    // Seek and Stat are those of the cache: its end is what has been read.
    EXPECT_EQ(GetSize(f.stream.get()), 0u);
    ReadAt(f.stream.get(), 50000, 1);
    EXPECT_EQ(GetSize(f.stream.get()), 53248u);
    ULARGE_INTEGER end{};
    f.stream->Seek(MakeLargeInteger(0), STREAM_SEEK_END, &end);
    EXPECT_EQ(end.QuadPart, 53248u);
}

TEST(RandomAccessStream, AFailingSourceFailsTheReadAndKeepsThePosition) {
    Fixture f(Pattern(10000));
    f.source->maxChunk = 4096;
    f.source->failReadsAfter = 1;
    EXPECT_EQ(ReadAt(f.stream.get(), 0, 10).size(), 10u);
    SeekTo(f.stream.get(), 5000);
    uint8_t out[10];
    ULONG got = 99;
    EXPECT_EQ(f.stream->Read(out, 10, &got), E_FAIL);
    EXPECT_EQ(got, 0u);
    EXPECT_EQ(GetPosition(f.stream.get()), 5000u);
    // What was cached before the failure is still served.
    EXPECT_EQ(ReadAt(f.stream.get(), 100, 10), Slice(Pattern(110), 100));
}

TEST(RandomAccessStream, HugePositionsDoNotOverflow) {
    Fixture f(Pattern(100));
    for (uint64_t position : {UINT64_MAX, uint64_t(INT64_MAX), uint64_t(INT64_MAX - 4000)})
        EXPECT_EQ(ReadAt(f.stream.get(), position, 16).size(), 0u);
    EXPECT_EQ(f.stream->GetCachedBytes(), 100u);
}

TEST(RandomAccessStream, HoldsItsSourceAndRefusesWrites) {
    EXPECT_EQ(RandomAccessStream::Create(nullptr), nullptr);
    auto* source = new ScriptedStream(Pattern(10));
    Ref<RandomAccessStream> stream(RandomAccessStream::Create(source));
    ASSERT_TRUE(stream);
    EXPECT_EQ(source->Release(), 1u);  // the stream's reference remains
    EXPECT_EQ(ReadAt(stream.get(), 0, 10), Pattern(10));
    EXPECT_EQ(stream->Write("x", 1, nullptr), STG_E_ACCESSDENIED);
}
