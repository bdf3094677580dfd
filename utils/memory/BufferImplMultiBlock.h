// The implementation of a large buffer: a list of blocks whose sizes add up
// to the buffer's size, every block but the last in use full. Growth adds
// blocks; nothing is copied.
#pragma once

#include "utils/memory/BufferImpl.h"

namespace BrmUtils::Memory {

class Buffer_Impl_MultiBlock final : public BufferImpl {
public:
    // Takes a reference to each of blocks.
    Buffer_Impl_MultiBlock(Manager& manager, const std::vector<Block*>& blocks);
    ~Buffer_Impl_MultiBlock() override;

    uint64_t GetSize() const override;
    uint64_t GetCapacity() const override;
    bool IsEmpty() const override { return GetSize() == 0; }
    bool SetSize(Owner owner, uint64_t size) override;
    bool Reserve(Owner owner, uint64_t capacity) override;
    void Clear() override;
    void Compact(Owner owner) override;
    bool GetReadAccessors(std::vector<ReadDataAccessor>& out, Owner owner) override;
    bool GetReadAccessor(ReadDataAccessor& out, Owner owner, uint64_t offset, uint64_t length,
                         bool mayBeShort) override;
    bool GetWriteAccessors(std::vector<WriteDataAccessor>& out, Owner owner) override;
    bool GetWriteAccessor(WriteDataAccessor& out, Owner owner, uint64_t offset, uint64_t length,
                          bool mayBeShort) override;
    BufferImpl* Prepare(Owner owner, uint64_t sizeHint, bool discardEmpty) override;
    bool IsKind(int kind) const override { return kind == kMultiBlockImpl; }
    std::vector<Block*> GetBlocks() const override { return blocks_; }
    bool CopyFrom(Owner owner, BufferImpl& source, uint64_t sizeHint) override;

private:
    // The index of the block holding offset and the offset within it;
    // false if offset is at or beyond the size.
    bool Locate(uint64_t offset, std::size_t* index, uint64_t* inBlock) const;
    bool UnshareAt(Owner owner, std::size_t index);
    void DropBlocksFrom(std::size_t count);

    std::vector<Block*> blocks_;
};

}  // namespace BrmUtils::Memory
