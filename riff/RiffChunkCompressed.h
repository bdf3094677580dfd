// RiffChunkCompressed: the chunk stream of an opened compressed section, read
// through its own decompressor. It runs once from start to end: a seek
// forward decompresses and drops, a seek backward does nothing.
#pragma once

#include <memory>

#include "riff/Decompressor.h"
#include "riff/RiffChunkBase.h"

namespace KvdFileIO {

class RiffChunkCompressed : public RiffChunkBase {
public:
    // size is the section's uncompressed size as the file states it.
    RiffChunkCompressed(std::unique_ptr<KvdCpr::Decompressor> decompressor, uint64_t size);
    // Closes the decompressor, then deletes it.
    ~RiffChunkCompressed() override;

    bool Read(void* buffer, uint64_t count, uint64_t& bytesRead) override;
    uint64_t Seek(int64_t offset, uint32_t origin) override;
    // Nothing to do: the plain `cmpr` chunk below steps over the section.
    bool Skip() override { return true; }
    bool IsCompressed() override { return true; }
    bool IsInCompressedArea() override { return true; }

private:
    std::unique_ptr<KvdCpr::Decompressor> decompressor;
};

}  // namespace KvdFileIO
