// The defaults every stream inherits: CopyTo.
#include <gtest/gtest.h>

#include "platform/PropIdl.h"
#include "tests/streams/TestStreams.h"
#include "utils/streams/StreamHelpers.h"

using namespace BrmUtils;
using namespace streamtest;

TEST(StreamBase, CopyToStopsAtShortWritesAndFailures) {
    Ref<ScriptedStream> source(new ScriptedStream(Pattern(100000)));
    Ref<ScriptedStream> destination(new ScriptedStream({}));
    destination->writeLimit = 70000;
    ULARGE_INTEGER read{}, written{};
    source->CopyTo(destination.get(), MakeULargeInteger(100000), &read, &written);
    EXPECT_EQ(read.QuadPart, 100000u);
    EXPECT_EQ(written.QuadPart, 70000u);

    source->failReadsAfter = 0;
    EXPECT_EQ(source->CopyTo(destination.get(), MakeULargeInteger(10), &read, &written), STG_E_READFAULT);
    EXPECT_EQ(read.QuadPart, 0u);

    Ref<ScriptedStream> good(new ScriptedStream(Pattern(100)));
    destination->failWrites = true;
    EXPECT_EQ(good->CopyTo(destination.get(), MakeULargeInteger(10), &read, &written), STG_E_WRITEFAULT);
    EXPECT_EQ(written.QuadPart, 0u);
    EXPECT_EQ(good->CopyTo(nullptr, MakeULargeInteger(10), nullptr, nullptr), STG_E_INVALIDPOINTER);
}
