// BrmUtils::Memory::Buffer: a growable byte store that may hold more than
// one allocation can. Small buffers live in one heap block; from the heap
// block limit (32 KiB) on, in a list of page blocks, and when memory runs
// short in slices of a mapped temporary file. Growth adds blocks and never
// copies what is there.
//
// Copies of a Buffer share their bytes until one of them writes. Bytes are
// reached through accessors, which stay right while blocks move and are
// zeroed when their block goes; or copied with Read and Write. Failures
// answer false (or an HRESULT for streams); nothing throws but the
// language's own allocation failure.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/ObjIdl.h"
#include "utils/memory/Block.h"
#include "utils/memory/BufferImpl.h"
#include "utils/memory/DataAccessor.h"

namespace BrmUtils::Memory {

class Buffer {
public:
    using Block = Memory::Block;
    using Impl = BufferImpl;
    using DataAccessor = Memory::DataAccessor;
    using ReadDataAccessor = Memory::ReadDataAccessor;
    using WriteDataAccessor = Memory::WriteDataAccessor;

    Buffer() = default;
    // Shares other's bytes until either writes.
    Buffer(const Buffer& other);
    Buffer(Buffer&& other) noexcept;
    Buffer& operator=(const Buffer& other);
    Buffer& operator=(Buffer&& other) noexcept;
    ~Buffer();

    uint64_t GetSize() const;
    uint64_t GetCapacity() const;
    bool IsEmpty() const { return GetSize() == 0; }
    // New bytes read as zero.
    bool SetSize(uint64_t size);
    bool Reserve(uint64_t capacity);
    // Drops all bytes and blocks.
    void Clear();
    void Compact();

    // Copies up to length bytes from offset; count receives what was copied
    // (0 at or beyond the end). False if nothing could be read.
    bool Read(uint64_t offset, void* destination, uint64_t length, uint64_t* count) const;
    // Copies length bytes to offset. With extend the buffer grows to hold
    // them (a gap before offset reads as zero); without, only what fits in
    // the present size is written.
    bool Write(uint64_t offset, const void* source, uint64_t length, uint64_t* count, bool extend = true);
    // Appends length bytes.
    bool Append(const void* source, uint64_t length);
    // Copies count bytes from offset to destination at destinationOffset;
    // false unless both hold the range.
    bool CopyTo(uint64_t offset, uint64_t count, Buffer& destination, uint64_t destinationOffset) const;
    // Appends up to count bytes read from the stream's present position;
    // copied receives the bytes appended. A stream whose length is known
    // is read straight into the buffer; one whose length is not, through a
    // small temporary. Answers the stream's failure, E_OUTOFMEMORY, or S_OK.
    HRESULT Append(IStream* stream, uint64_t count, uint64_t* copied);

    // An accessor on the range from offset, within the block that holds
    // offset; it may be shorter than length where that block ends.
    bool GetReadAccessor(ReadDataAccessor& out, uint64_t offset, uint64_t length) const;
    bool GetWriteAccessor(WriteDataAccessor& out, uint64_t offset, uint64_t length);
    // Accessors on the whole buffer, one per block, in order.
    bool GetReadAccessors(std::vector<ReadDataAccessor>& out) const;
    bool GetWriteAccessors(std::vector<WriteDataAccessor>& out);

    // The implementation (null while nothing was ever stored), for tests.
    const Impl* GetImpl() const { return impl_; }

private:
    // The impl to write through, made private to this handle; null on failure.
    Impl* PrepareForWrite(uint64_t sizeHint, bool discardEmpty);
    bool Resize(uint64_t size, bool zeroNewBytes);
    bool ZeroRange(uint64_t offset, uint64_t length);
    Owner Me() const { return this; }

    Impl* impl_ = nullptr;
};

}  // namespace BrmUtils::Memory
