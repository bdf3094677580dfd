// The implementation behind a Buffer handle, shared by copies of the handle
// until one of them writes (Prepare then gives the writer its own). Two
// kinds: Buffer_Impl_Simple with at most one block while the buffer is
// small, Buffer_Impl_MultiBlock with a list of blocks once it is not.
#pragma once

#include <cstdint>
#include <vector>

#include "utils/RefCounted.h"
#include "utils/memory/Block.h"
#include "utils/memory/DataAccessor.h"

namespace BrmUtils::Memory {

class Buffer;
class Manager;

enum BufferImplKind : int {
    kSimpleImpl = 0,
    kMultiBlockImpl = 1,
};

class BufferImpl : public RefCounted<BufferImpl> {
public:
    virtual uint64_t GetSize() const = 0;
    virtual uint64_t GetCapacity() const = 0;
    virtual bool IsEmpty() const = 0;
    // Grows the capacity by half at least when it is short.
    virtual bool SetSize(Owner owner, uint64_t size) = 0;
    // After a failure the buffer keeps what it had.
    virtual bool Reserve(Owner owner, uint64_t capacity) = 0;
    // Drops every block.
    virtual void Clear() = 0;
    virtual void Compact(Owner owner) = 0;
    // One accessor per block that holds bytes, in order.
    virtual bool GetReadAccessors(std::vector<ReadDataAccessor>& out, Owner owner) = 0;
    // An accessor from offset within the block that holds it; with
    // mayBeShort it may end at the block's end before length.
    virtual bool GetReadAccessor(ReadDataAccessor& out, Owner owner, uint64_t offset, uint64_t length,
                                 bool mayBeShort) = 0;
    virtual bool GetWriteAccessors(std::vector<WriteDataAccessor>& out, Owner owner) = 0;
    virtual bool GetWriteAccessor(WriteDataAccessor& out, Owner owner, uint64_t offset, uint64_t length,
                                  bool mayBeShort) = 0;
    // The impl to write through for a buffer that will hold about sizeHint
    // bytes: this one, or a new one that takes over the caller's reference
    // to this one. Null (nothing changed) on failure.
    virtual BufferImpl* Prepare(Owner owner, uint64_t sizeHint, bool discardEmpty) = 0;
    // Copies count bytes from offset to destination at destinationOffset;
    // both must hold the range.
    virtual bool CopyTo(Owner owner, uint64_t offset, uint64_t count, Buffer& destination,
                        uint64_t destinationOffset);
    virtual bool IsKind(int kind) const = 0;
    virtual std::vector<Block*> GetBlocks() const = 0;
    // Takes a copy of source's bytes, with room for sizeHint.
    virtual bool CopyFrom(Owner owner, BufferImpl& source, uint64_t sizeHint) = 0;
    virtual ~BufferImpl() = default;

    // The accessors of one owner now belong to another.
    void ReplaceOwner(Owner from, Owner to);

protected:
    explicit BufferImpl(Manager& manager) : manager_(manager) {}
    // Copies the first size bytes of source over this one's (which holds them).
    bool CopyContentsFrom(Owner owner, BufferImpl& source, uint64_t size);

    Manager& manager_;
};

}  // namespace BrmUtils::Memory
