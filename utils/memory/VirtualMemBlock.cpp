// Page blocks: sizes rounded up to the allocation granularity; when the
// address space refuses, the largest block it still has is taken instead.
#include "utils/memory/VirtualMemBlock.h"

#include "utils/memory/Manager.h"

namespace BrmUtils::Memory {

VirtualMemBlock::~VirtualMemBlock() {
    ZeroAccessors();
    if (data_) manager_.VirtualFree(data_, capacity_);
}

uint64_t VirtualMemBlock::Allocate(uint64_t size) {
    if (data_ || size == 0) return capacity_;
    const uint64_t granularity = manager_.GetAllocationGranularity();
    const uint64_t largestRounded = UINT64_MAX - UINT64_MAX % granularity;
    size = size > largestRounded ? largestRounded : (size + granularity - 1) / granularity * granularity;
    void* p = manager_.VirtualAlloc(size);
    if (!p) {
        uint64_t largest = manager_.GetLargestFreeBlock() / granularity * granularity;
        if (largest >= granularity && largest < size) {
            size = largest;
            p = manager_.VirtualAlloc(size);
        }
    }
    if (!p) return 0;
    data_ = static_cast<uint8_t*>(p);
    capacity_ = size;
    return capacity_;
}

Block* VirtualMemBlock::NewEmpty() const {
    Block* b = new VirtualMemBlock(manager_);
    b->AddRef();
    return b;
}

bool VirtualMemBlock::SetSize(Owner, uint64_t size) {
    if (size > capacity_) return false;
    size_ = size;
    RebaseAccessors(data_, size_);
    return true;
}

}  // namespace BrmUtils::Memory
