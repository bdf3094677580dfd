// The byte source under an object archive, and the one kind the program
// uses: DecompressIO, which reads a stream either as it stands or as raw
// deflate data, and starts a fresh decompressor after every absolute seek
// (a deflate stream cannot be entered in the middle).
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/ObjIdl.h"
#include "riff/Decompressor.h"

namespace BrmUtils::Serialization {

// An abstract byte source. The write operations exist for output archives;
// input sources answer false.
class IBaseIO {
public:
    virtual ~IBaseIO() = default;
    virtual bool Read(void* buffer, uint64_t count, uint64_t& bytesRead) = 0;
    // True only if exactly count bytes came.
    virtual bool ReadExact(void* buffer, uint64_t count) = 0;
    virtual bool Write(const void* buffer, uint64_t count) = 0;
    virtual bool WriteExact(const void* buffer, uint64_t count) = 0;
    virtual uint64_t GetPosition() = 0;
    // origin as STREAM_SEEK_SET / CUR / END.
    virtual uint64_t Seek(int64_t offset, uint32_t origin) = 0;
    virtual bool Skip(uint64_t count) = 0;
};

}  // namespace BrmUtils::Serialization

namespace udi {

class DecompressIO final : public BrmUtils::Serialization::IBaseIO {
public:
    // Takes its own reference on stream and opens a plain decompressor at
    // the stream's present position.
    explicit DecompressIO(IStream* stream);
    ~DecompressIO() override;
    DecompressIO(const DecompressIO&) = delete;
    DecompressIO& operator=(const DecompressIO&) = delete;

    bool Read(void* buffer, uint64_t count, uint64_t& bytesRead) override;
    bool ReadExact(void* buffer, uint64_t count) override;
    bool Write(const void*, uint64_t) override { return false; }
    bool WriteExact(const void*, uint64_t) override { return false; }
    uint64_t GetPosition() override { return 0; }
    // Forward from the current position: skips plain bytes and answers 0.
    // Anything else: a fresh decompressor and a seek of the raw stream;
    // answers the position the stream reports, 0 on failure.
    uint64_t Seek(int64_t offset, uint32_t origin) override;
    bool Skip(uint64_t count) override;

    // Closes the decompressor and opens a new one of the kind selected by
    // `compressed` at the stream's present position.
    void Restart();
    // Seeks the raw stream and restarts; the new position, 0 on failure.
    uint64_t SeekRaw(int64_t offset, uint32_t origin);
    void SetCompressed(bool value) { compressed = value; }
    bool IsCompressed() const { return compressed; }
    uint64_t PlainPosition() const { return position; }
    void AddToPosition(uint64_t count) { position += count; }

private:
    IStream* stream;
    std::unique_ptr<KvdCpr::Decompressor> decompressor;
    bool compressed = false;
    uint64_t position = 0;
};

}  // namespace udi
