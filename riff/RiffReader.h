// KvdFileIO::RiffReader: walks the chunk tree of a RIFF file. It knows
// nothing of what a chunk means; it keeps a stack of the chunks entered, the
// block table of an open compressed section, and the form type.
//
//   RiffReader reader(stream);           // takes its own reference
//   uint32_t form;
//   if (reader.Open(form)) {             // "RIFF", size, form type
//       while (reader.Next()) {          // the root's children, in order
//           if (reader.GetChunkId() == FourCC("cmpr")) reader.OpenCompressed();
//           if (reader.IsList() && reader.Descend()) { ...; reader.Ascend(); }
//       }
//   }
//   reader.Close();
//
// Layout read: "RIFF", u32 size, u32 form, then chunks (u32 tag, u32 size,
// data, a pad byte after odd data). A `LIST` chunk carries a u32 list type,
// by which it is known, and child chunks. A chunk's size is clamped to what
// its parent still holds, so GetChunkSize never promises more than the file
// has. Nesting is limited to kMaxDepth levels, and compressed sections do
// not nest.
#pragma once

#include <deque>
#include <memory>
#include <vector>

#include "riff/Reader.h"
#include "riff/RiffChunkBase.h"

namespace KvdFileIO {

class RiffReader final : public Reader {
public:
    // Adds a reference on stream (which may be null: Open then fails).
    explicit RiffReader(IStream* stream);
    // Leaves any chunks still entered and releases the stream.
    ~RiffReader() override;

    // Reads the RIFF header from the stream's present position and stands at
    // the start of the root's children. False if the stream is no RIFF file.
    // The form type is not checked: unknown forms are for the caller to judge.
    bool Open(uint32_t& formType);

    bool Close() override;
    bool Destroy() override;
    bool Rewind() override;
    uint32_t ReservedA() override { return 0; }
    IStream* GetStream() override { return source; }
    uint32_t ReservedB() override { return 0; }

    uint32_t GetFormType() override { return formType; }
    uint16_t GetFormVersion() override;
    uint16_t GetDocumentKind() override;
    uint32_t GetFileVersion() override;

    bool Next() override;
    bool FindChunk(uint32_t id) override;
    uint32_t GetChunkId() override;
    bool IsList() override;
    bool Descend() override;
    bool Ascend() override;
    int64_t GetChunkSize() override;
    IStream* GetChunkStream() override;
    bool ReadChunkToBuffer(BrmUtils::Memory::Buffer& buffer, uint64_t size) override;
    bool ReadChunkData(void* destination, uint64_t size) override;
    bool OpenCompressed() override;
    bool SetIsList(bool flag) override;
    void SetZeroSizeIsEmpty(bool flag) override { zeroSizeIsEmpty = flag; }
    uint64_t GetStreamSize() override;
    uint64_t GetStreamPosition() override;

    // The stream of the list the current chunk belongs to, with a new
    // reference; null above the root's children.
    IStream* GetParentStream();

    // Levels of lists entered (the stack's depth) beyond which Descend and
    // OpenCompressed refuse: each level reads through the one above.
    static constexpr size_t kMaxDepth = 256;

private:
    RiffChunkBase* Current() const;
    // Leaves the top entry, deleting its chunk.
    void Pop();
    bool HasRoomFor(size_t entries) const;
    // Reads the next chunk header through parent's stream and pushes the
    // chunk (or a null entry on failure). Retry is set when a compressed
    // section ended and the walk must go on below it.
    bool ReadHeader(RiffChunkBase* parent, bool& retry);

    IStream* source;
    std::deque<std::unique_ptr<RiffChunkBase>> stack;
    std::vector<uint32_t> blockTable;
    uint32_t formType = 0;
    bool zeroSizeIsEmpty = false;
};

}  // namespace KvdFileIO
