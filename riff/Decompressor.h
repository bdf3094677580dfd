// KvdCpr::Decompressor: turns an IStream of compressed bytes into a
// sequential source of plain bytes, with running counts on both sides so
// that a caller can bound what is taken and what is delivered.
//
// There is no registry of methods: the caller picks the class.
// DecompressorNone copies, DecompressorDeflate inflates (zlib or raw
// deflate, chosen by DeflateParams passed in an Any). No operation throws;
// failures answer false, and a decompressor that failed stays open until its
// owner calls Close.
#pragma once

#include <cstdint>

#include "platform/ObjIdl.h"
#include "utils/Any.h"

namespace KvdCpr {

// "No limit" for the two sizes of Open.
constexpr uint64_t kUnlimited = UINT64_MAX;

// Parameters of deflate and inflate, passed as a value inside an Any.
// Only windowBits and raw matter when decompressing: raw selects a bare
// deflate stream, otherwise the data carry the zlib header and checksum.
struct DeflateParams {
    int32_t level = -1;
    int32_t memLevel = 8;
    int32_t windowBits = 15;
    bool raw = false;
};

class Decompressor {
public:
    Decompressor() = default;
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;
    virtual ~Decompressor() = default;

    // Both Open take over the caller's reference on the stream in every case,
    // also when they fail. Open(stream, params) has no limits.
    virtual bool Open(IStream* stream, BrmUtils::Any params) = 0;
    // Takes at most compressedSize bytes from the stream and delivers at most
    // uncompressedSize bytes (kUnlimited: no limit).
    virtual bool Open(IStream* stream, uint64_t compressedSize, uint64_t uncompressedSize,
                      BrmUtils::Any params) = 0;
    // Delivers up to count bytes. Reaching the end of the data early is
    // success with a short bytesRead; a count of 0 succeeds at once.
    virtual bool Read(void* buffer, uint64_t count, uint64_t& bytesRead) = 0;
    // Releases the stream; false if the object is not open.
    virtual bool Close() = 0;
    // The count of plain bytes delivered so far (read or skipped).
    virtual uint64_t GetPosition() = 0;
    // Decompresses and drops count bytes; false unless all of them came.
    virtual bool Skip(uint64_t count) = 0;
};

// The state both kinds share: the stream, the two positions and the two
// remaining allowances.
class DecompressorBase : public Decompressor {
public:
    ~DecompressorBase() override;

    bool Open(IStream* stream, BrmUtils::Any params) override;
    bool Open(IStream* stream, uint64_t compressedSize, uint64_t uncompressedSize,
              BrmUtils::Any params) override;
    bool Close() override;
    uint64_t GetPosition() override { return uncompressedPosition; }

    bool IsOpen() const { return open; }

protected:
    // Reads up to count bytes from the stream, at most compressedRemaining,
    // looping over short reads; counts what came on the compressed side.
    // False on a read failure or when there is no stream.
    bool ReadSource(void* buffer, uint64_t count, uint64_t& bytesRead);
    // Counts delivered bytes on the plain side.
    void Deliver(uint64_t count);

    IStream* stream = nullptr;
    uint64_t compressedPosition = 0;
    uint64_t uncompressedPosition = 0;
    uint64_t compressedRemaining = 0;
    uint64_t uncompressedRemaining = 0;
    bool open = false;
};

// Copies the source as it stands.
class DecompressorNone : public DecompressorBase {
public:
    bool Read(void* buffer, uint64_t count, uint64_t& bytesRead) override;
    bool Skip(uint64_t count) override;
};

}  // namespace KvdCpr
