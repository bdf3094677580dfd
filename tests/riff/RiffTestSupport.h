// Helpers of the RIFF tests: a stream that can be told to fail, a reader
// opened on bytes, and a walk that writes down what it meets.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "riff/RiffReader.h"
#include "tests/support/riff/RiffWriter.h"
#include "tests/support/riff/StreamOnBytes.h"
#include "utils/streams/StreamBase.h"

namespace rifftest {

using TestDocs::Bytes;
using TestDocs::StreamPtr;

class ProbeStream : public BrmUtils::StreamBase {
public:
    explicit ProbeStream(Bytes bytes) : bytes(std::move(bytes)) {}

    HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override {
        if (pcbRead) *pcbRead = 0;
        if (position >= failFrom && cb > 0) return E_FAIL;
        uint64_t left = position < bytes.size() ? bytes.size() - position : 0;
        uint64_t n = std::min<uint64_t>({cb, left, failFrom - position});
        if (n) std::memcpy(pv, bytes.data() + position, n);
        position += n;
        if (pcbRead) *pcbRead = ULONG(n);
        return S_OK;
    }

    HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPosition) override {
        int64_t base = origin == STREAM_SEEK_SET ? 0
                     : origin == STREAM_SEEK_CUR ? int64_t(position)
                     : origin == STREAM_SEEK_END ? int64_t(bytes.size())
                                                 : -1;
        if (base < 0 || base + move.QuadPart < 0) return STG_E_INVALIDFUNCTION;
        position = uint64_t(base + move.QuadPart);
        if (newPosition) newPosition->QuadPart = position;
        return S_OK;
    }

    HRESULT Stat(STATSTG* stat, DWORD flags) override {
        HRESULT hr = StreamBase::Stat(stat, flags);
        if (SUCCEEDED(hr)) stat->cbSize.QuadPart = bytes.size();
        return hr;
    }

    Bytes bytes;
    uint64_t position = 0;
    uint64_t failFrom = UINT64_MAX;  // reads at or beyond this position fail

protected:
    ~ProbeStream() override = default;
};

// A probe with one reference, held by the caller, and a plain pointer to
// set it up.
struct Probe {
    explicit Probe(Bytes bytes) : stream(new ProbeStream(std::move(bytes))), ref(stream) {}
    ProbeStream* stream;
    StreamPtr ref;
};

// A reader on a memory stream of the bytes, opened.
struct Opened {
    explicit Opened(const Bytes& bytes) : stream(TestDocs::StreamOnBytes(bytes)), reader(stream.get()) {
        opened = reader.Open(form);
    }
    StreamPtr stream;
    KvdFileIO::RiffReader reader;
    uint32_t form = 0;
    bool opened = false;
};

inline std::string Id(uint32_t id) {
    return std::string(reinterpret_cast<const char*>(&id), 4);
}

// Walks the rest of the present list, entering lists and opening sections,
// and writes what it meets: "id " per chunk, "*" after a list's id, "[...]"
// around its children, "{" where a section opens (the walk goes on inside
// it and, at its end, behind it), "! " for a section that does not open.
inline std::string Walk(KvdFileIO::RiffReader& r, bool enter = true) {
    std::string out;
    while (r.Next()) {
        uint32_t id = r.GetChunkId();
        if (enter && id == TestDocs::Tag("cmpr")) {
            out += r.OpenCompressed() ? "{" : "! ";
            continue;
        }
        out += Id(id) + (r.IsList() ? "* " : " ");
        if (enter && r.IsList() && r.Descend()) {
            // Appended piece by piece: "[" + a temporary trips a false
            // -Wrestrict of GCC 12 at -O3.
            out += '[';
            out += Walk(r);
            out += ']';
            r.Ascend();
        }
    }
    return out;
}

}  // namespace rifftest
