// Heap blocks: malloc and realloc through the manager, which may refuse.
#include "utils/memory/HeapBlock.h"

#include <cstddef>

#include "utils/memory/Manager.h"

namespace BrmUtils::Memory {

HeapBlock::~HeapBlock() {
    ZeroAccessors();
    if (data_) manager_.HeapFree(data_);
}

uint64_t HeapBlock::Allocate(uint64_t size) {
    if (data_ || size == 0) return capacity_;
    if (size > SIZE_MAX) return 0;
    void* p = manager_.HeapAlloc(std::size_t(size));
    if (!p) {
        // Less than asked is still worth having: the caller decides.
        uint64_t largest = manager_.HeapCompact();
        if (largest != 0 && largest < size) {
            size = largest;
            p = manager_.HeapAlloc(std::size_t(size));
        }
    }
    if (!p) return 0;
    data_ = static_cast<uint8_t*>(p);
    capacity_ = size;
    return capacity_;
}

Block* HeapBlock::NewEmpty() const {
    Block* b = new HeapBlock(manager_);
    b->AddRef();
    return b;
}

bool HeapBlock::SetSize(Owner, uint64_t size) {
    if (size > capacity_) return false;
    bool shrinks = size < size_;
    size_ = size;
    // Accessors only need telling when their range may now lie past the end.
    if (shrinks) RebaseAccessors(data_, size_);
    return true;
}

bool HeapBlock::CanGrowTo(uint64_t size) const { return size < manager_.GetHeapBlockLimit(); }

bool HeapBlock::Reallocate(uint64_t size) {
    if (size > SIZE_MAX) return false;
    void* p = data_ ? manager_.HeapReAlloc(data_, std::size_t(size)) : manager_.HeapAlloc(std::size_t(size));
    if (!p) return false;
    bool moved = p != data_;
    data_ = static_cast<uint8_t*>(p);
    capacity_ = size;
    if (moved) RebaseAccessors(data_, size_);
    return true;
}

bool HeapBlock::Grow(Owner, uint64_t size) {
    if (size <= capacity_) return true;
    return Reallocate(size);
}

bool HeapBlock::Compact(Owner) {
    if (capacity_ == size_) return true;
    if (size_ == 0) {
        manager_.HeapFree(data_);
        data_ = nullptr;
        capacity_ = 0;
        RebaseAccessors(nullptr, 0);
        return true;
    }
    return Reallocate(size_);
}

}  // namespace BrmUtils::Memory
