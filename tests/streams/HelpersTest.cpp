// Helpers on any IStream, code-page conversion and error texts.
#include <gtest/gtest.h>

#include "tests/streams/TestStreams.h"
#include "utils/streams/ErrorText.h"
#include "utils/streams/MemStream.h"
#include "utils/streams/StreamHelpers.h"
#include "utils/streams/TextConversion.h"

using namespace BrmUtils;
using namespace streamtest;

TEST(StreamHelpers, FailuresAndNullStreams) {
    Ref<ScriptedStream> failing(new ScriptedStream(Pattern(10)));
    failing->maxChunk = 4;
    failing->failReadsAfter = 1;
    uint8_t out[10];
    uint64_t count = 0;
    EXPECT_FALSE(ReadFully(failing.get(), out, 10, count));
    EXPECT_EQ(count, 4u);
    EXPECT_FALSE(ReadFully(nullptr, out, 10, count));
    EXPECT_FALSE(WriteFully(nullptr, out, 10, count));
    EXPECT_FALSE(ReadExactly(nullptr, out, 0));
    EXPECT_EQ(GetPosition(nullptr), 0u);
    EXPECT_EQ(SeekTo(nullptr, 3), 0u);
    EXPECT_EQ(GetSize(nullptr), 0u);
    EXPECT_FALSE(CopyStream(nullptr, failing.get(), 1, count));

    Ref<ScriptedStream> full(new ScriptedStream({}));
    full->writeLimit = 5;
    EXPECT_TRUE(WriteFully(full.get(), out, 10, count));
    EXPECT_EQ(count, 5u);
    EXPECT_FALSE(WriteExactly(full.get(), out, 1));
    full->failWrites = true;
    EXPECT_FALSE(WriteFully(full.get(), out, 10, count));

    // A destination that takes less than the source has is a failure.
    Ref<ScriptedStream> source(new ScriptedStream(Pattern(100)));
    full->failWrites = false;
    full->writeLimit = 30;
    full->written.clear();
    EXPECT_FALSE(CopyStream(source.get(), full.get(), 100, count));
    EXPECT_EQ(count, 30u);
}
