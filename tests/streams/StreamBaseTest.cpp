// The defaults every stream inherits: interface table, reference counts,
// results of unsupported operations, Stat and CopyTo.
#include <gtest/gtest.h>

#include "platform/PropIdl.h"
#include "tests/streams/TestStreams.h"
#include "utils/streams/StreamHelpers.h"

using namespace BrmUtils;
using namespace streamtest;

namespace {

class BareStream : public StreamBase {
public:
    BrmPlatform::BrmStringW GetName() override { return L"name.kvd"; }

protected:
    ~BareStream() override = default;
};

constexpr IID kOtherIid = {0x12345678, 0x1234, 0x1234, {1, 2, 3, 4, 5, 6, 7, 8}};

}  // namespace

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

TEST(StreamBase, QueryInterfaceAnswersItsInterfacesAndCountsReferences) {
    Ref<BareStream> stream(new BareStream);
    struct Case {
        const IID* iid;
        void* expected;
    } cases[] = {
        {&IID_IUnknown, static_cast<IStream*>(stream.get())},
        {&IID_ISequentialStream, static_cast<IStream*>(stream.get())},
        {&IID_IStream, static_cast<IStream*>(stream.get())},
        {&IID_IStreamInfo, static_cast<IStreamInfo*>(stream.get())}, {&IID_IStreamResourceLocator, nullptr},
        {&IID_IMemBufferStream, nullptr}, {&kOtherIid, nullptr},
    };
    for (const Case& c : cases) {
        void* object = reinterpret_cast<void*>(1);
        EXPECT_EQ(stream->QueryInterface(*c.iid, &object), c.expected ? S_OK : E_NOINTERFACE);
        EXPECT_EQ(object, c.expected);
        // Each answer holds a reference of its own, on the same object.
        if (object) {
            EXPECT_EQ(static_cast<IUnknown*>(object)->Release(), 1u);
        }
    }
    EXPECT_EQ(stream->QueryInterface(IID_IStream, nullptr), E_POINTER);

    IStreamInfo* info = stream.get();
    EXPECT_TRUE(info->IsAvailable());
    EXPECT_TRUE(info->GetLastErrorText().IsEmpty());
    stream->SetLastErrorText(L"broken");
    EXPECT_EQ(Str(info->GetLastErrorText()), L"broken");
}
