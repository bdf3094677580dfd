// RiffChunkNormal: a chunk that is a byte range of its parent's stream.
//
// It keeps its own idea of the parent's position, so that a seek to where
// it already stands costs nothing. Reads and seeks stop at start + size,
// except for the two bitmap chunks inside a compressed area (`bmp `,
// `bmpt`), whose size field is no limit: older writers stored less than the
// data there, and the next chunk begins where the reading stopped.
#pragma once

#include "riff/RiffChunkBase.h"

namespace KvdFileIO {

class RiffChunkNormal : public RiffChunkBase {
public:
    // Takes a reference on parent; the data start at parent's present position.
    RiffChunkNormal(IStream* parent, uint32_t tag, bool list, uint64_t size, bool compressedArea);
    ~RiffChunkNormal() override;

    bool Read(void* buffer, uint64_t count, uint64_t& bytesRead) override;
    uint64_t Seek(int64_t offset, uint32_t origin) override;
    bool Skip() override;
    bool IsCompressed() override { return false; }
    bool IsInCompressedArea() override { return compressedArea; }

    // Where the data start, in the parent's coordinates.
    uint64_t GetStart() const { return start; }
    // True for a bitmap chunk in a compressed area: its size does not bound it.
    bool IsUnbounded() const { return unbounded; }

private:
    uint64_t End() const;

    IStream* parent;
    uint64_t start;
    uint64_t current;
    bool compressedArea;
    bool unbounded;
};

}  // namespace KvdFileIO
