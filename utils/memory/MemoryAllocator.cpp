// The task allocator behind PMemoryAllocator.
#include "utils/memory/MemoryAllocator.h"

#include "platform/PropIdl.h"

namespace BrmUtils::Memory {

void* TaskMemoryAllocator::Allocate(std::size_t size) { return CoTaskMemAlloc(size); }

void TaskMemoryAllocator::Free(void* pointer) { CoTaskMemFree(pointer); }

PMemoryAllocator& GetTaskMemoryAllocator() {
    static TaskMemoryAllocator allocator;
    return allocator;
}

}  // namespace BrmUtils::Memory
