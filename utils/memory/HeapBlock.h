// A block on the C heap, for buffers below the heap block limit. It grows in
// place (realloc) and tells its accessors when its memory moves.
#pragma once

#include "utils/memory/Block.h"

namespace BrmUtils::Memory {

class HeapBlock final : public Block {
public:
    explicit HeapBlock(Manager& manager) : manager_(manager) {}
    ~HeapBlock() override;

    int GetKind() const override { return kHeapBlock; }
    uint64_t Allocate(uint64_t size) override;
    Block* NewEmpty() const override;
    uint64_t GetSize() const override { return size_; }
    uint64_t GetCapacity() const override { return capacity_; }
    uint64_t GetMaxCapacity() const override { return capacity_; }
    bool SetSize(Owner owner, uint64_t size) override;
    bool CanGrowTo(uint64_t size) const override;
    bool Grow(Owner owner, uint64_t size) override;
    bool Compact(Owner owner) override;
    uint8_t* GetData(bool) override { return data_; }

private:
    bool Reallocate(uint64_t size);

    Manager& manager_;
    uint8_t* data_ = nullptr;
    uint64_t size_ = 0;
    uint64_t capacity_ = 0;
};

}  // namespace BrmUtils::Memory
