// The decompressors: round trips in several read sizes, the limits on both
// sides, the end of the data and damaged input.
#include <gtest/gtest.h>
#include <zlib.h>

#include "riff/DecompressorDeflate.h"
#include "tests/riff/RiffTestSupport.h"
#include "tests/support/archive/ArchiveWriter.h"

using namespace rifftest;
using TestDocs::RawDeflate;
using KvdCpr::kUnlimited;

namespace {

// Bytes that compress somewhat but not to nothing.
Bytes Sample(size_t size) {
    Bytes out(size);
    uint32_t x = 12345;
    for (size_t i = 0; i < size; ++i) {
        x = x * 1103515245u + 12345u;
        out[i] = uint8_t(i % 7 == 0 ? x >> 24 : 'a' + i % 13);
    }
    return out;
}

BrmUtils::Any Params(bool raw) {
    if (!raw) return {};
    KvdCpr::DeflateParams params;
    params.raw = true;
    return BrmUtils::Any(params);
}

// Opens d on its own reference to the probe.
bool OpenOn(KvdCpr::Decompressor& d, Probe& probe, uint64_t in = kUnlimited, uint64_t out = kUnlimited,
            bool raw = false) {
    probe.stream->AddRef();
    return d.Open(probe.stream, in, out, Params(raw));
}

Bytes ReadAll(KvdCpr::Decompressor& d, uint64_t step, bool& ok) {
    Bytes out, buffer(step);
    for (uint64_t got = 1; got > 0;) {
        if (!(ok = d.Read(buffer.data(), step, got))) break;
        out.insert(out.end(), buffer.begin(), buffer.begin() + got);
    }
    return out;
}

}  // namespace

TEST(Decompressor, WrongOrDamagedInputFailsAtRead) {
    Bytes plain = Sample(200000);
    Bytes badCheck = TestDocs::Deflate(plain);
    badCheck.back() ^= 1;
    struct Case { const char* what; Bytes input; bool raw; uint64_t failFrom; } cases[] = {
        {"raw read as wrapped", RawDeflate(plain), false, UINT64_MAX},
        {"no deflate", Bytes(300, 0xEE), false, UINT64_MAX},
        {"bad block type", Bytes(300, 0xFF), true, UINT64_MAX},
        {"bad checksum", badCheck, false, UINT64_MAX},
        {"source fails", TestDocs::Deflate(plain), false, 5000},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Probe probe(c.input);
        probe.stream->failFrom = c.failFrom;
        KvdCpr::DecompressorDeflate d;
        EXPECT_TRUE(OpenOn(d, probe, kUnlimited, kUnlimited, c.raw));  // nothing is read yet
        bool ok = true;
        ReadAll(d, 65536, ok);
        EXPECT_FALSE(ok);
        EXPECT_TRUE(d.Close());  // a failed decompressor still closes
    }
}
