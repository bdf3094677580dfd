// Memory streams and the vector container: positions, growth, sharing
// between clones, and read-only streams.
#include <gtest/gtest.h>

#include "platform/PropIdl.h"
#include "tests/streams/TestStreams.h"
#include "utils/streams/DataContainerVector.h"
#include "utils/streams/MemStream.h"
#include "utils/streams/StreamHelpers.h"

using namespace BrmUtils;
using namespace streamtest;

namespace {

}  // namespace

TEST(MemStream, WithoutContainerEverythingIsRefused) {
    Ref<MemStream> stream(new MemStream(nullptr));
    uint8_t byte = 0;
    STATSTG stat{};
    IStream* clone = nullptr;
    const HRESULT results[] = {
        stream->Read(&byte, 1, nullptr),
        stream->Write(&byte, 1, nullptr),
        stream->Seek(MakeLargeInteger(0), STREAM_SEEK_SET, nullptr),
        stream->SetSize(MakeULargeInteger(0)),
        stream->Stat(&stat, STATFLAG_NONAME),
        stream->Clone(&clone),
    };
    for (HRESULT hr : results)
        EXPECT_EQ(hr, STG_E_ACCESSDENIED);
}

TEST(MemStream, CloneSharesTheBytesButHasItsOwnPosition) {
    std::vector<uint8_t> bytes = Bytes("0123456789");
    Ref<MemStream> stream(CreateMemStream(bytes));
    SeekTo(stream.get(), 3);
    IStream* raw = nullptr;
    ASSERT_EQ(stream->Clone(&raw), S_OK);
    Ref<IStream> clone(raw);
    EXPECT_EQ(GetPosition(clone.get()), 3u);

    EXPECT_EQ(ReadAt(clone.get(), 3, 2), Bytes("34"));
    EXPECT_EQ(GetPosition(stream.get()), 3u);
    // A write through one is seen by the other.
    SeekTo(clone.get(), 0);
    EXPECT_TRUE(WriteExactly(clone.get(), "AB", 2));
    EXPECT_EQ(ReadAt(stream.get(), 0, 2), Bytes("AB"));

    // The container outlives the first stream while the clone holds it.
    stream.reset();
    EXPECT_EQ(GetSize(clone.get()), 10u);
    EXPECT_EQ(stream.get(), nullptr);
    EXPECT_EQ(clone->Clone(nullptr), STG_E_INVALIDPOINTER);
}
