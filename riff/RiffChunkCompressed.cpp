// RiffChunkCompressed: reads and forward seeks through the decompressor.
#include "riff/RiffChunkCompressed.h"

#include "riff/FourCC.h"

namespace KvdFileIO {

RiffChunkCompressed::RiffChunkCompressed(std::unique_ptr<KvdCpr::Decompressor> decompressor, uint64_t size)
    : RiffChunkBase(kTagCompressed, false, size), decompressor(std::move(decompressor)) {}

RiffChunkCompressed::~RiffChunkCompressed() {
    if (decompressor) decompressor->Close();
}

bool RiffChunkCompressed::Read(void* buffer, uint64_t count, uint64_t& bytesRead) {
    bytesRead = 0;
    if (!decompressor) return false;
    if (!buffer && count > 0) return false;
    return decompressor->Read(buffer, count, bytesRead);
}

uint64_t RiffChunkCompressed::Seek(int64_t offset, uint32_t origin) {
    if (!decompressor) return 0;
    uint64_t position = decompressor->GetPosition();
    uint64_t base;
    switch (origin) {
    case STREAM_SEEK_SET: base = 0; break;
    case STREAM_SEEK_CUR: base = position; break;
    case STREAM_SEEK_END: base = size; break;
    default: return position;
    }
    // Backward, including below 0, cannot be done and changes nothing.
    if (offset < 0) {
        uint64_t back = uint64_t(-(offset + 1)) + 1;
        if (base < back || base - back < position) return position;
        base -= back;
    } else {
        base = base + uint64_t(offset) < base ? UINT64_MAX : base + uint64_t(offset);
    }
    if (base > position) decompressor->Skip(base - position);
    return decompressor->GetPosition();
}

}  // namespace KvdFileIO
