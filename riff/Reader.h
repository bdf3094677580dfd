// KvdFileIO::Reader: the walk over the chunk tree of an older document file,
// as the format readers see it. RiffReader is the implementation.
//
// The walk stands on a current chunk (or on none, at the start of a list or
// after a failed step). Next steps to the following chunk of the same list,
// Descend enters the current list, Ascend goes back to the list itself.
// Operations on the current chunk answer 0, false or null when there is none.
// Nothing throws.
#pragma once

#include <cstdint>

#include "platform/ObjIdl.h"

namespace BrmUtils::Memory {
class Buffer;
}

namespace KvdFileIO {

class Reader {
public:
    Reader() = default;
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    virtual ~Reader() = default;

    // Leaves every chunk and releases the source stream. Always true.
    virtual bool Close() = 0;
    // Deletes the reader. Always true.
    virtual bool Destroy() = 0;
    // Back to the start of the root's children, with no current chunk.
    virtual bool Rewind() = 0;
    // Holds a place in the interface; answers 0.
    virtual uint32_t ReservedA() = 0;
    // The source stream, without a new reference.
    virtual IStream* GetStream() = 0;
    // Holds a place in the interface; answers 0.
    virtual uint32_t ReservedB() = 0;

    // The form type of the file, and what the form table says of it (0 for
    // a form that stands in no row).
    virtual uint32_t GetFormType() = 0;
    virtual uint16_t GetFormVersion() = 0;
    virtual uint16_t GetDocumentKind() = 0;
    virtual uint32_t GetFileVersion() = 0;

    // Steps to the next chunk of the present list; false at its end.
    virtual bool Next() = 0;
    // Steps on until a chunk with this id; the current chunk is never matched.
    virtual bool FindChunk(uint32_t id) = 0;
    // The current chunk's tag (a list's list type); 0 if none.
    virtual uint32_t GetChunkId() = 0;
    virtual bool IsList() = 0;
    // Enters the current list; false if the current chunk is no list.
    virtual bool Descend() = 0;
    // Leaves the present list: the list becomes the current chunk again.
    virtual bool Ascend() = 0;
    // The current chunk's data size (a list's without its list type); 0 if none.
    virtual int64_t GetChunkSize() = 0;
    // The current chunk as a read-only stream with a new reference, or null.
    // Not to be used once the walk has left the chunk.
    virtual IStream* GetChunkStream() = 0;
    // Replaces the buffer's contents by the current chunk's first size bytes,
    // zero-filled beyond what the chunk holds: after success the buffer
    // holds exactly size bytes.
    virtual bool ReadChunkToBuffer(BrmUtils::Memory::Buffer& buffer, uint64_t size) = 0;
    // Reads up to size bytes of the current chunk into destination and fills
    // any shortfall with zero bytes. False if there is no current chunk or a
    // read fails; a short chunk is no failure.
    virtual bool ReadChunkData(void* destination, uint64_t size) = 0;
    // Opens the current `cmpr` section: the walk then goes on inside it.
    virtual bool OpenCompressed() = 0;
    // Overrides the current chunk's list flag (for chunks that hold
    // sub-chunks without being a LIST); false if there is no current chunk.
    virtual bool SetIsList(bool flag) = 0;
    // How the chunks read from now on take a size field of 0: by default as
    // "to the end of the parent" (what a writer that did not know the size
    // left); with the flag set, as empty. Readers set it while they walk
    // lists of small records, where 0 is an empty record.
    virtual void SetZeroSizeIsEmpty(bool flag) = 0;
    // Size and position of the source stream; 0 on failure.
    virtual uint64_t GetStreamSize() = 0;
    virtual uint64_t GetStreamPosition() = 0;
};

}  // namespace KvdFileIO
