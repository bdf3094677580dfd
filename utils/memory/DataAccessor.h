// Accessors: a caller's window on a range of one block of a buffer, which
// stays right while the block's memory moves. The block keeps a list of its
// accessors; when its memory moves it rewrites their addresses, when it
// shrinks it clamps their ranges, and when it goes it zeroes them. A zeroed
// accessor has no block and length 0, and its user treats that as failure.
#pragma once

#include <cstdint>

namespace BrmUtils::Memory {

class Block;
// Who asked for an accessor: the buffer handle. When a shared block is
// copied for writing, the accessors of the writing owner move with it.
using Owner = const void*;

class DataAccessor {
public:
    DataAccessor() = default;
    DataAccessor(const DataAccessor& other);
    DataAccessor(DataAccessor&& other);
    DataAccessor& operator=(const DataAccessor& other);
    DataAccessor& operator=(DataAccessor&& other);
    ~DataAccessor();

    bool IsValid() const { return block_ != nullptr; }
    uint64_t GetLength() const { return length_; }
    // The range's offset within its block.
    uint64_t GetOffset() const { return offset_; }
    Block* GetBlock() const { return block_; }
    Owner GetOwner() const { return owner_; }
    bool IsReadOnly() const { return readOnly_; }
    // Leaves the block and becomes zeroed.
    void Reset();

    // Used by blocks only.
    void Attach(Block* block, Owner owner, uint8_t* base, uint64_t blockSize, uint64_t offset, uint64_t length,
                bool readOnly);
    // The block's memory moved or changed size: clamp the range to it.
    void Rebase(uint8_t* base, uint64_t blockSize);
    // The block went.
    void Zero();
    void SetOwner(Owner owner) { owner_ = owner; }

protected:
    uint8_t* Address() const { return base_ && length_ ? base_ + offset_ : nullptr; }

private:
    void CopyFrom(const DataAccessor& other);

    uint8_t* base_ = nullptr;
    uint64_t blockSize_ = 0;
    uint64_t offset_ = 0;
    uint64_t length_ = 0;
    Block* block_ = nullptr;
    Owner owner_ = nullptr;
    bool readOnly_ = true;
};

class ReadDataAccessor : public DataAccessor {
public:
    // The first byte of the range; null when zeroed or empty.
    const uint8_t* GetData() const { return Address(); }
};

class WriteDataAccessor : public DataAccessor {
public:
    uint8_t* GetData() const { return Address(); }
};

}  // namespace BrmUtils::Memory
