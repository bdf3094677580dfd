// The memory manager: where buffer blocks get their memory and the limits
// that choose between the three kinds of block. Blocks below the heap block
// limit come from the C heap, larger ones from page-granular anonymous
// mappings; when both refuse, a block is a slice of a pool of temporary
// files mapped into memory a slice at a time.
//
// MemManager is the one implementation, a process-wide singleton kept alive
// to the end of the process (buffers in static objects may outlive others).
// Its pool of file mappings is guarded by its exclusive lock; the rest is
// read-only after creation, apart from the test limits.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <set>

#include "platform/Files.h"
#include "utils/Lock.h"

namespace BrmUtils::Memory {

class FileMapBlock;

// One temporary file of the pool, cut into equal slices.
struct FileMapping {
    std::set<int32_t> freeSlices;
    std::set<int32_t> usedSlices;
    HANDLE file = INVALID_HANDLE_VALUE;  // unlinked: it goes with its last handle
    uint64_t size = 0;
};

class Manager {
public:
    virtual ~Manager() = default;

    virtual uint64_t GetAllocationGranularity() const = 0;
    virtual uint64_t GetPageSize() const = 0;
    // The largest block that the address space can still give, or 0 when
    // that is not known.
    virtual uint64_t GetLargestFreeBlock() const = 0;
    virtual uint64_t GetHeapBlockLimit() const = 0;
    virtual uint64_t GetVirtualBlockLimit() const = 0;
    // A block on the lowest free slice of the pool, or null.
    virtual FileMapBlock* AllocFileMapBlock() = 0;
    virtual uint64_t GetFileMapSliceSize() const = 0;
    virtual uint64_t GetFileMapSize() const = 0;
    // Removes the mapping from the pool and closes it; true if it was there.
    virtual bool ReleaseFileMap(FileMapping* fileMap) = 0;
    // Gives a slice back; the mapping goes when its last slice does.
    virtual void ReturnSlice(FileMapping* fileMap, int32_t slice) = 0;
    // The most that file-map blocks can still be given: the free space of
    // the file system that holds the temporary files.
    virtual uint64_t GetFileMapRoom() const = 0;

    // The sources of memory. Each answers null (0) on failure.
    virtual void* HeapAlloc(std::size_t size) = 0;
    virtual void* HeapReAlloc(void* p, std::size_t size) = 0;
    virtual void HeapFree(void* p) = 0;
    // Gives unused heap memory back; answers the largest block the heap can
    // still be expected to give, 0 if unknown.
    virtual uint64_t HeapCompact() = 0;
    virtual void* VirtualAlloc(uint64_t size) = 0;
    virtual void VirtualFree(void* p, uint64_t size) = 0;
};

class MemManager : public Manager, public Lockable {
public:
    MemManager();
    ~MemManager() override;

    uint64_t GetAllocationGranularity() const override { return granularity_; }
    uint64_t GetPageSize() const override { return pageSize_; }
    uint64_t GetLargestFreeBlock() const override;
    uint64_t GetHeapBlockLimit() const override { return kHeapBlockLimit; }
    uint64_t GetVirtualBlockLimit() const override { return UINT64_MAX; }
    FileMapBlock* AllocFileMapBlock() override;
    uint64_t GetFileMapSliceSize() const override { return granularity_ * 16; }
    uint64_t GetFileMapSize() const override { return granularity_ * 1024; }
    bool ReleaseFileMap(FileMapping* fileMap) override;
    void ReturnSlice(FileMapping* fileMap, int32_t slice) override;
    uint64_t GetFileMapRoom() const override;

    void* HeapAlloc(std::size_t size) override;
    void* HeapReAlloc(void* p, std::size_t size) override;
    void HeapFree(void* p) override;
    uint64_t HeapCompact() override;
    void* VirtualAlloc(uint64_t size) override;
    void VirtualFree(void* p, uint64_t size) override;

    // The number of mappings in the pool.
    std::size_t GetFileMapCount() const;

    // Test hook: make the sources refuse, so that the fallbacks can be seen
    // at work. Requests above heapMax (virtualMax) fail, and then
    // HeapCompact (GetLargestFreeBlock) answers heapMax (virtualMax).
    struct Limits {
        uint64_t heapMax = UINT64_MAX;
        uint64_t virtualMax = UINT64_MAX;
        bool refuseFileMap = false;
        uint64_t fileMapRoom = UINT64_MAX;  // below it, GetFileMapRoom answers this
    };
    void SetLimits(const Limits& limits);
    Limits GetLimits() const;

    static constexpr uint64_t kHeapBlockLimit = 32768;

private:
    bool LockedReleaseFileMap(FileMapping* fileMap);

    const uint64_t granularity_;
    const uint64_t pageSize_;
    std::set<FileMapping*> pool_;
    std::atomic<uint64_t> heapMax_{UINT64_MAX};
    std::atomic<uint64_t> virtualMax_{UINT64_MAX};
    std::atomic<bool> refuseFileMap_{false};
    std::atomic<uint64_t> fileMapRoom_{UINT64_MAX};
};

// The process's manager.
Manager& GetMemoryManager();
MemManager& GetMemManager();

}  // namespace BrmUtils::Memory
