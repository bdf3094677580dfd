// A block of whole pages from an anonymous mapping, for buffers at or above
// the heap block limit. Its capacity is fixed when it is allocated; a buffer
// that needs more adds another block.
#pragma once

#include "utils/memory/Block.h"

namespace BrmUtils::Memory {

class VirtualMemBlock final : public Block {
public:
    explicit VirtualMemBlock(Manager& manager) : manager_(manager) {}
    ~VirtualMemBlock() override;

    int GetKind() const override { return kVirtualMemBlock; }
    uint64_t Allocate(uint64_t size) override;
    Block* NewEmpty() const override;
    uint64_t GetSize() const override { return size_; }
    uint64_t GetCapacity() const override { return capacity_; }
    uint64_t GetMaxCapacity() const override { return capacity_; }
    bool SetSize(Owner owner, uint64_t size) override;
    bool CanGrowTo(uint64_t) const override { return false; }
    bool Grow(Owner, uint64_t size) override { return size <= capacity_; }
    bool Compact(Owner) override { return true; }
    uint8_t* GetData(bool) override { return data_; }

private:
    Manager& manager_;
    uint8_t* data_ = nullptr;
    uint64_t size_ = 0;
    uint64_t capacity_ = 0;
};

}  // namespace BrmUtils::Memory
