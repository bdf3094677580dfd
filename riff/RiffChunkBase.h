// RiffChunkBase: one entry on the RiffReader's stack, a chunk whose data can
// be read and sought. Each chunk owns a ReaderStream, the IStream through
// which its children and the format readers read it; since every level reads
// through the level above, a read is bounded by all enclosing chunks and a
// position is always relative to the parent's data.
#pragma once

#include <cstdint>

#include "platform/ObjIdl.h"

namespace KvdFileIO {

class RiffChunkBase {
public:
    class ReaderStream;

    RiffChunkBase(uint32_t tag, bool list, uint64_t size);
    RiffChunkBase(const RiffChunkBase&) = delete;
    RiffChunkBase& operator=(const RiffChunkBase&) = delete;
    // Cuts the stream off from the chunk (it then answers E_FAIL) and drops
    // the chunk's reference on it.
    virtual ~RiffChunkBase();

    // Reads up to count bytes of the chunk's data; at the end 0 bytes and true.
    virtual bool Read(void* buffer, uint64_t count, uint64_t& bytesRead) = 0;
    // Moves within the data (origin 0 start, 1 current, 2 end; a negative
    // offset goes back) and answers the new position relative to the data.
    virtual uint64_t Seek(int64_t offset, uint32_t origin) = 0;
    // Leaves the parent's position just past this chunk and its pad byte.
    virtual bool Skip() = 0;
    virtual bool IsCompressed() = 0;
    virtual bool IsInCompressedArea() = 0;

    uint32_t GetTag() const { return tag; }
    bool IsList() const { return list; }
    void SetIsList(bool flag) { list = flag; }
    uint64_t GetSize() const { return size; }
    // The chunk's stream, without a new reference.
    IStream* GetStream() const;

protected:
    ReaderStream* stream;
    uint32_t tag;
    bool list;
    uint64_t size;
};

}  // namespace KvdFileIO
