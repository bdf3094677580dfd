// Seeking over a forward-only source: the source is read once, in order,
// and as far as reads need.
#include <gtest/gtest.h>

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

