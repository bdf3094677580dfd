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

uint64_t Seek(IStream* stream, int64_t offset, DWORD origin, HRESULT* result = nullptr) {
    ULARGE_INTEGER position = MakeULargeInteger(12345);
    const HRESULT hr = stream->Seek(MakeLargeInteger(offset), origin, &position);
    if (result) *result = hr;
    return position.QuadPart;
}

}  // namespace

TEST(MemStream, SeekFollowsItsOriginAndClampsBeforeTheStart) {
    struct Case {
        int64_t offset;
        DWORD origin;
        HRESULT result;
        uint64_t position;  // from position 4 in a stream of 10 bytes
    } cases[] = {
        {0, STREAM_SEEK_SET, S_OK, 0}, {7, STREAM_SEEK_SET, S_OK, 7}, {100, STREAM_SEEK_SET, S_OK, 100},
        {-1, STREAM_SEEK_SET, S_OK, UINT64_MAX},  // taken as it is
        {3, STREAM_SEEK_CUR, S_OK, 7},
        {-4, STREAM_SEEK_CUR, S_OK, 0},
        {-5, STREAM_SEEK_CUR, S_OK, 0},
        {INT64_MIN, STREAM_SEEK_CUR, S_OK, 0},
        {0, STREAM_SEEK_END, S_OK, 10},
        {-3, STREAM_SEEK_END, S_OK, 7},
        {-11, STREAM_SEEK_END, S_OK, 0},
        {5, STREAM_SEEK_END, S_OK, 15},
        {0, 3, STG_E_INVALIDFUNCTION, 12345},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.offset);
        SCOPED_TRACE(c.origin);
        std::vector<uint8_t> bytes = Pattern(10);
        Ref<MemStream> stream(CreateMemStream(bytes));
        ASSERT_EQ(SeekTo(stream.get(), 4), 4u);
        HRESULT hr = S_OK;
        EXPECT_EQ(Seek(stream.get(), c.offset, c.origin, &hr), c.position);
        EXPECT_EQ(hr, c.result);
    }
}

TEST(MemStream, ReadDeliversWhatIsThereAndNothingBeyond) {
    struct Case {
        uint64_t position;
        ULONG count;
        ULONG expected;
    } cases[] = {
        {0, 0, 0}, {0, 4, 4}, {6, 4, 4}, {8, 4, 2}, {10, 4, 0}, {11, 4, 0}, {UINT64_MAX, 4, 0},
    };
    std::vector<uint8_t> bytes = Pattern(10);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.position);
        Ref<MemStream> stream(CreateMemStream(bytes));
        const std::vector<uint8_t> got = ReadAt(stream.get(), c.position, c.count);
        EXPECT_EQ(got, Slice(bytes, size_t(std::min<uint64_t>(c.position, 10)), c.position + c.expected));
        EXPECT_EQ(got.size(), c.expected);
        EXPECT_EQ(GetPosition(stream.get()), c.position + got.size());
    }
}

TEST(MemStream, WritesAndSetSizeChangeTheCallersVector) {
    std::vector<uint8_t> bytes = Bytes("abc");
    Ref<MemStream> stream(CreateMemStream(bytes));
    // Beyond the end a read gives nothing and a write grows the vector with zeros.
    EXPECT_EQ(ReadAt(stream.get(), 6, 4).size(), 0u);
    ULONG count = 99;
    EXPECT_EQ(stream->Write("xy", 2, &count), S_OK);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(bytes, (std::vector<uint8_t>{'a', 'b', 'c', 0, 0, 0, 'x', 'y'}));
    EXPECT_EQ(GetPosition(stream.get()), 8u);
    // A write of nothing is no failure and moves nothing, even with no buffer.
    EXPECT_EQ(stream->Write(nullptr, 0, &count), S_OK);
    EXPECT_EQ(GetPosition(stream.get()), 8u);
    // SetSize cuts and grows but leaves the position.
    EXPECT_EQ(stream->SetSize(MakeULargeInteger(2)), S_OK);
    EXPECT_EQ(stream->SetSize(MakeULargeInteger(4)), S_OK);
    EXPECT_EQ(bytes, (std::vector<uint8_t>{'a', 'b', 0, 0}));
    EXPECT_EQ(GetPosition(stream.get()), 8u);
    // Positions no vector can reach fail without allocating.
    for (int64_t position : {int64_t(-1), INT64_MAX}) {
        Seek(stream.get(), position, STREAM_SEEK_SET);
        EXPECT_EQ(stream->Write("x", 1, &count), STG_E_MEDIUMFULL);
        EXPECT_EQ(count, 0u);
    }
    EXPECT_EQ(stream->SetSize(MakeULargeInteger(uint64_t(INT64_MAX) + 1)), STG_E_MEDIUMFULL);
    EXPECT_EQ(bytes.size(), 4u);
}

TEST(MemStream, StatReportsSizeKindAndAccess) {
    std::vector<uint8_t> bytes = Pattern(10);
    Ref<MemStream> writable(CreateMemStream(bytes));
    const uint8_t data[3] = {1, 2, 3};
    Ref<MemStream> readOnly(CreateMemStreamOnBytes(data, sizeof(data)));
    struct Case {
        IStream* stream;
        uint64_t size;
        DWORD mode;
    } cases[] = {
        {writable.get(), 10, STGM_SIMPLE | STGM_READWRITE}, {readOnly.get(), 3, STGM_SIMPLE},
    };
    for (const Case& c : cases) {
        STATSTG stat;
        std::memset(&stat, 0xCD, sizeof(stat));
        ASSERT_EQ(c.stream->Stat(&stat, STATFLAG_NONAME), S_OK);
        EXPECT_EQ(stat.pwcsName, nullptr);
        EXPECT_EQ(stat.type, DWORD(STGTY_LOCKBYTES));
        EXPECT_EQ(stat.cbSize.QuadPart, c.size);
        EXPECT_EQ(stat.grfMode, c.mode);
        // With a name: memory streams have none, so an empty one is made.
        ASSERT_EQ(c.stream->Stat(&stat, STATFLAG_DEFAULT), S_OK);
        ASSERT_NE(stat.pwcsName, nullptr);
        EXPECT_EQ(stat.pwcsName[0], L'\0');
        CoTaskMemFree(stat.pwcsName);
    }
}

TEST(MemStream, ReadOnlyCopyRefusesChangesAndIsIndependentOfTheSource) {
    std::vector<uint8_t> source = Bytes("hello");
    Ref<MemStream> stream(CreateMemStreamOnBytes(source.data(), source.size()));
    source[0] = 'J';
    ULONG count = 99;
    EXPECT_EQ(stream->Write("x", 1, &count), STG_E_ACCESSDENIED);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(stream->Write("x", 0, &count), STG_E_ACCESSDENIED);
    EXPECT_EQ(stream->SetSize(MakeULargeInteger(1)), STG_E_ACCESSDENIED);
    EXPECT_EQ(ReadAt(stream.get(), 0, 8), Bytes("hello"));
    Ref<MemStream> empty(CreateMemStreamOnBytes(nullptr, 0));
    ASSERT_TRUE(empty);
    EXPECT_EQ(ReadAt(empty.get(), 0, 1).size(), 0u);
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

TEST(VectorContainer, PointersAndLimits) {
    std::vector<uint8_t> bytes;
    auto* container = new DataContainer::Vector(bytes);
    EXPECT_EQ(container->GetPointer(0), nullptr);
    EXPECT_FALSE(container->IsReadOnly());
    EXPECT_FALSE(container->SetSize(uint64_t(INT64_MAX) + 1));
    ULONG count = 99;
    EXPECT_EQ(container->Write("abc", 3, 2, &count), S_OK);
    EXPECT_EQ(count, 3u);
    ASSERT_NE(container->GetPointer(2), nullptr);
    EXPECT_EQ(*container->GetPointer(2), 'a');
    EXPECT_EQ(container->GetPointer(5), nullptr);
    EXPECT_EQ(container->Read(nullptr, 4, 5, &count), S_OK);
    EXPECT_EQ(count, 0u);
    container->Release();
    EXPECT_EQ(bytes.size(), 5u);
}
