// Streams for the tests: a forward-only source that counts its reads and
// can be told to deliver in small pieces or to fail, and a holder that
// releases a reference at the end of a scope.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/zip/ZipTestArchive.h"
#include "utils/streams/StreamBase.h"
#include "utils/streams/StreamHelpers.h"
#include "utils/strings/BrmString.h"

namespace streamtest {

using ziptest::Bytes;
using ziptest::Ref;

inline std::wstring Str(const BrmPlatform::BrmStringW& s) {
    return std::wstring(s.GetString(), size_t(s.GetLength()));
}

// Bytes 0, 1, 2, ... wrapping at 251, so that an offset error shows.
inline std::vector<uint8_t> Pattern(size_t size) {
    std::vector<uint8_t> bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = uint8_t(i % 251);
    return bytes;
}

// Bytes from..to of a vector (to clamped to its end).
inline std::vector<uint8_t> Slice(const std::vector<uint8_t>& bytes, size_t from, size_t to = SIZE_MAX) {
    to = std::min(to, bytes.size());
    return from < to ? std::vector<uint8_t>(bytes.begin() + std::ptrdiff_t(from), bytes.begin() + std::ptrdiff_t(to))
                     : std::vector<uint8_t>();
}

// Reads up to count bytes at position; answers what came. A read that does
// not set its count shows as a wrong length.
inline std::vector<uint8_t> ReadAt(IStream* stream, uint64_t position, ULONG count) {
    BrmUtils::SeekTo(stream, position);
    std::vector<uint8_t> out(count);
    ULONG got = count + 1;
    EXPECT_EQ(stream->Read(out.data(), count, &got), S_OK);
    out.resize(got);
    return out;
}

// Reads deliver the bytes in order and cannot seek. Writes collect bytes,
// up to writeLimit of them in all.
class ScriptedStream : public BrmUtils::StreamBase {
public:
    explicit ScriptedStream(std::vector<uint8_t> bytes) : bytes(std::move(bytes)) {}

    HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override {
        ++reads;
        if (pcbRead) *pcbRead = 0;
        if (failReadsAfter >= 0 && reads > failReadsAfter)
            return STG_E_READFAULT;
        size_t n = std::min<size_t>(cb, bytes.size() - position);
        n = std::min<size_t>(n, maxChunk);
        if (n) std::memcpy(pv, bytes.data() + position, n);
        position += n;
        if (pcbRead) *pcbRead = ULONG(n);
        return S_OK;
    }

    HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) override {
        if (pcbWritten) *pcbWritten = 0;
        if (failWrites)
            return STG_E_WRITEFAULT;
        const size_t n = std::min<size_t>(cb, writeLimit - written.size());
        const auto* p = static_cast<const uint8_t*>(pv);
        written.insert(written.end(), p, p + n);
        if (pcbWritten) *pcbWritten = ULONG(n);
        return S_OK;
    }

    std::vector<uint8_t> bytes;
    size_t position = 0;
    size_t maxChunk = SIZE_MAX;
    int failReadsAfter = -1;
    int reads = 0;

    std::vector<uint8_t> written;
    size_t writeLimit = SIZE_MAX;
    bool failWrites = false;

protected:
    ~ScriptedStream() override = default;
};

}  // namespace streamtest
