// The implementation of a small buffer: one block, or none while empty.
#pragma once

#include "utils/memory/BufferImpl.h"

namespace BrmUtils::Memory {

class Buffer_Impl_Simple final : public BufferImpl {
public:
    explicit Buffer_Impl_Simple(Manager& manager, Block* block = nullptr);
    ~Buffer_Impl_Simple() override;

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
    bool IsKind(int kind) const override { return kind == kSimpleImpl; }
    std::vector<Block*> GetBlocks() const override;
    bool CopyFrom(Owner owner, BufferImpl& source, uint64_t sizeHint) override;

private:
    bool MakeWritable(Owner owner);

    Block* block_;
};

}  // namespace BrmUtils::Memory
