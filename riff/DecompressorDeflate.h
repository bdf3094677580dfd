// DecompressorDeflate: inflates a zlib stream (or, with DeflateParams::raw,
// a bare deflate stream) from an IStream, in input blocks of 64 KiB.
//
// The end of the deflate data, not the compressed size, ends the output;
// the two sizes given to Open only bound how far the source and the output
// may go. Skipped output goes through a small scratch buffer on the stack.
#pragma once

#include <zlib.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "riff/Decompressor.h"

namespace KvdCpr {

class DecompressorDeflate : public DecompressorBase {
public:
    DecompressorDeflate();
    // Owners call Close first; the destructor still ends a running inflate.
    ~DecompressorDeflate() override;

    using DecompressorBase::Open;
    // Fails if already open; the first stream stays. A stream that is no
    // deflate data is not noticed here but at the first Read.
    bool Open(IStream* stream, uint64_t compressedSize, uint64_t uncompressedSize,
              BrmUtils::Any params) override;
    bool Read(void* buffer, uint64_t count, uint64_t& bytesRead) override;
    bool Skip(uint64_t count) override;
    bool Close() override;

    // Input is taken from the source in blocks of this size.
    static constexpr uint64_t kInputBlockSize = 65536;

private:
    // Inflates into buffer until count bytes came, the data ended or a
    // failure; adds what came to delivered.
    bool Inflate(uint8_t* buffer, uint64_t count, uint64_t& delivered);
    // Fetches the next input block; false on a read failure.
    bool Refill();

    z_stream zstream;
    bool zlibReady = false;  // inflateInit2 succeeded and inflateEnd is due
    bool finished = false;   // the deflate data ended, or the source did
    // Never cleared: only the bytes a read delivered are handed to zlib.
    std::unique_ptr<uint8_t[]> input;
    uint64_t inputCapacity = 0;
    uint64_t inputPosition = 0;
    uint64_t inputEnd = 0;
};

}  // namespace KvdCpr
