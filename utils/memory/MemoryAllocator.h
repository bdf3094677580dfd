// PMemoryAllocator: the allocator the property serialisers are given, so
// that what they allocate can be freed by the caller with the matching call.
#pragma once

#include <cstddef>

namespace BrmUtils::Memory {

class PMemoryAllocator {
public:
    virtual void* Allocate(std::size_t size) = 0;
    virtual void Free(void* pointer) = 0;

protected:
    ~PMemoryAllocator() = default;
};

// Forwards to the COM task allocator (CoTaskMemAlloc, CoTaskMemFree).
class TaskMemoryAllocator final : public PMemoryAllocator {
public:
    void* Allocate(std::size_t size) override;
    void Free(void* pointer) override;
};

// The process's task allocator.
PMemoryAllocator& GetTaskMemoryAllocator();

}  // namespace BrmUtils::Memory
