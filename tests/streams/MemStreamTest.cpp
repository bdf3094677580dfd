// Memory streams and the vector container: positions, growth and read-only
// streams.
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
