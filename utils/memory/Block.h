// Buffer blocks: a run of bytes of one kind of memory (heap, anonymous
// pages, a slice of a mapped file) with a reference count, shared between
// buffers until one of them writes. A block knows its accessors so that it
// can keep them right when its memory moves, shrinks or goes.
#pragma once

#include <cstdint>
#include <map>

#include "utils/RefCounted.h"
#include "utils/memory/DataAccessor.h"

namespace BrmUtils::Memory {

class Manager;

enum BlockKind : int {
    kHeapBlock = 0,
    kVirtualMemBlock = 1,
    kFileMapBlock = 2,
};

class Block : public RefCounted<Block> {
public:
    // Registers an accessor; the first stands inline, others in a map.
    virtual void AddAccessor(DataAccessor* accessor, Owner owner);
    virtual void RemoveAccessor(DataAccessor* accessor);
    virtual int GetKind() const = 0;
    // Gets memory for a new block: the size granted, which may be below size.
    virtual uint64_t Allocate(uint64_t size) = 0;
    // A new empty block of the same kind (reference count 1).
    virtual Block* NewEmpty() const = 0;
    virtual uint64_t GetSize() const = 0;
    virtual uint64_t GetCapacity() const = 0;
    virtual uint64_t GetMaxCapacity() const = 0;
    // False if size exceeds the capacity.
    virtual bool SetSize(Owner owner, uint64_t size) = 0;
    virtual bool CanGrowTo(uint64_t size) const = 0;
    virtual bool Grow(Owner owner, uint64_t size) = 0;
    // Gives back unused capacity.
    virtual bool Compact(Owner owner) = 0;
    // The address of the bytes; null if there are none.
    virtual uint8_t* GetData(bool readOnly) = 0;
    // An accessor on [offset, offset + length) clamped to the size; false if
    // offset is at or beyond the size (for length 0: beyond it).
    virtual bool GetReadAccessor(ReadDataAccessor& out, Owner owner, uint64_t offset, uint64_t length);
    virtual bool GetWriteAccessor(WriteDataAccessor& out, Owner owner, uint64_t offset, uint64_t length);
    virtual ~Block();

    // Counts the accessors (for tests and checks).
    std::size_t GetAccessorCount() const { return (firstAccessor_ ? 1 : 0) + otherAccessors_.size(); }
    // Accessors of one owner now belong to another (the buffer handle moved).
    void ReplaceOwner(Owner from, Owner to);
    // Moves the accessors of owner to target, keeping their ranges.
    void MoveAccessorsTo(Block* target, Owner owner);

protected:
    Block() = default;
    // Tells every accessor the block's present address and size.
    void RebaseAccessors(uint8_t* base, uint64_t size);
    void ZeroAccessors();

private:
    bool MakeAccessor(DataAccessor& out, Owner owner, uint64_t offset, uint64_t length, bool readOnly);
    template <typename F>
    void ForEachAccessor(F f);

    DataAccessor* firstAccessor_ = nullptr;
    Owner firstOwner_ = nullptr;
    std::map<DataAccessor*, Owner> otherAccessors_;
};

// A new block for size bytes, holding no memory yet, reference count 1:
// heap below the heap block limit, else pages, else a file-map slice.
Block* MakeBlock(Manager& manager, uint64_t size, bool forceFileMap);

// The block to write through for owner: the block itself if nobody else
// holds it, otherwise a private copy that owner's accessors move to (the
// reference to the old block is given up). Null if no copy could be made,
// the old block untouched.
Block* Unshare(Manager& manager, Block* block, Owner owner);

// Copies count bytes from the start of source to offset 0 of target; both
// must hold them.
bool CopyBlockBytes(Block* source, Block* target, uint64_t count);

}  // namespace BrmUtils::Memory
