// Memory streams on a Memory::Buffer: growth across blocks, the buffer
// interface, and sharing bytes with a caller's buffer.
#include <gtest/gtest.h>

#include "tests/streams/TestStreams.h"
#include "utils/streams/MemStream.h"
#include "utils/streams/StreamHelpers.h"

using namespace BrmUtils;
using namespace streamtest;

TEST(MemBufferStream, SeekBeyondTheEndThenWriteLeavesZeros) {
    Ref<MemStream> stream(CreateMemStream(uint64_t(16)));
    EXPECT_EQ(ReadAt(stream.get(), 40000, 1).size(), 0u);
    ULONG count = 99;
    EXPECT_EQ(stream->Write("z", 1, &count), S_OK);
    EXPECT_EQ(GetSize(stream.get()), 40001u);
    EXPECT_EQ(ReadAt(stream.get(), 39999, 2), (std::vector<uint8_t>{0, 'z'}));
    // Positions no buffer can reach fail without allocating.
    for (int64_t position : {int64_t(-1), INT64_MAX}) {
        stream->Seek(MakeLargeInteger(position), STREAM_SEEK_SET, nullptr);
        EXPECT_EQ(stream->Write("x", 1, &count), E_FAIL);
    }
    EXPECT_EQ(stream->SetSize(MakeULargeInteger(UINT64_MAX)), STG_E_MEDIUMFULL);
    EXPECT_EQ(GetSize(stream.get()), 40001u);
}

TEST(MemBufferStream, OffersItsBuffer) {
    Ref<MemStream> stream(CreateMemStream(uint64_t(0)));
    WriteExactly(stream.get(), "abc", 3);
    IMemBufferStream* withBuffer = nullptr;
    ASSERT_EQ(stream->QueryInterface(IID_IMemBufferStream, reinterpret_cast<void**>(&withBuffer)), S_OK);
    Memory::Buffer* buffer = withBuffer->GetBuffer();
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(buffer->GetSize(), 3u);
    EXPECT_TRUE(buffer->Append("d", 1));
    withBuffer->Release();
    EXPECT_EQ(GetSize(stream.get()), 4u);

    // A vector stream has no buffer to offer.
    std::vector<uint8_t> bytes;
    Ref<MemStream> onVector(CreateMemStream(bytes));
    void* object = reinterpret_cast<void*>(1);
    EXPECT_EQ(onVector->QueryInterface(IID_IMemBufferStream, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(onVector->GetBuffer(), nullptr);
}

TEST(MemBufferStream, StreamOnABufferSharesItsBytesUntilAWrite) {
    Memory::Buffer source;
    ASSERT_TRUE(source.Append("hello", 5));
    Ref<MemStream> readOnly(CreateMemStreamOnBuffer(source));
    Ref<MemStream> writable(CreateMemStreamOnBuffer(source, false));
    EXPECT_EQ(readOnly->Write("J", 1, nullptr), STG_E_ACCESSDENIED);
    EXPECT_TRUE(WriteExactly(writable.get(), "J", 1));

    EXPECT_EQ(ReadAt(readOnly.get(), 0, 5), Bytes("hello"));
    EXPECT_EQ(ReadAt(writable.get(), 0, 5), Bytes("Jello"));
    char out[1];
    uint64_t got = 0;
    EXPECT_TRUE(source.Read(0, out, 1, &got));
    EXPECT_EQ(out[0], 'h');
}
