// MemManager: the heap is malloc, pages are anonymous mmap, and the pool of
// file mappings is a set of unlinked temporary files of GetFileMapSize bytes.
//
// What the address space can still give is known only when the process has
// an address-space limit (RLIMIT_AS): the limit less what is mapped now.
// Without one, a refused request says nothing about smaller ones, so the
// answer is 0 and the caller goes on to the next source.
#include "utils/memory/Manager.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "utils/Singleton.h"
#include "utils/TempFiles.h"
#include "utils/memory/FileMapBlock.h"

namespace BrmUtils::Memory {

namespace {

// The unit of page-block sizes and file-map slices: 64 KiB, so that slices
// are 1 MiB and a mapping 64 MiB whatever the page size.
constexpr uint64_t kGranularity = 65536;

uint64_t SystemPageSize() {
    long n = sysconf(_SC_PAGESIZE);
    return n > 0 ? uint64_t(n) : 4096;
}

// Bytes mapped by the process now, from the first field of statm.
uint64_t MappedBytes(uint64_t pageSize) {
    std::FILE* f = std::fopen("/proc/self/statm", "r");
    if (!f) return 0;
    unsigned long long pages = 0;
    int n = std::fscanf(f, "%llu", &pages);
    std::fclose(f);
    return n == 1 ? pages * pageSize : 0;
}

}  // namespace

MemManager::MemManager() : granularity_(kGranularity), pageSize_(SystemPageSize()) {}

MemManager::~MemManager() {
    WriteLock guard(*this);
    while (!pool_.empty()) LockedReleaseFileMap(*pool_.begin());
}

uint64_t MemManager::GetLargestFreeBlock() const {
    uint64_t limited = virtualMax_.load(std::memory_order_relaxed);
    if (limited != UINT64_MAX) return limited;
    rlimit lim;
    if (getrlimit(RLIMIT_AS, &lim) != 0 || lim.rlim_cur == RLIM_INFINITY) return 0;
    uint64_t used = MappedBytes(pageSize_);
    return uint64_t(lim.rlim_cur) > used ? uint64_t(lim.rlim_cur) - used : 0;
}

void* MemManager::HeapAlloc(std::size_t size) {
    if (size > heapMax_.load(std::memory_order_relaxed)) return nullptr;
    return std::malloc(size);
}

void* MemManager::HeapReAlloc(void* p, std::size_t size) {
    if (size > heapMax_.load(std::memory_order_relaxed)) return nullptr;
    return std::realloc(p, size);
}

void MemManager::HeapFree(void* p) { std::free(p); }

uint64_t MemManager::HeapCompact() {
    uint64_t limited = heapMax_.load(std::memory_order_relaxed);
    if (limited != UINT64_MAX) return limited;
    malloc_trim(0);
    return GetLargestFreeBlock();
}

void* MemManager::VirtualAlloc(uint64_t size) {
    if (size > virtualMax_.load(std::memory_order_relaxed) || size > SIZE_MAX) return nullptr;
    void* p = mmap(nullptr, std::size_t(size), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return p == MAP_FAILED ? nullptr : p;
}

void MemManager::VirtualFree(void* p, uint64_t size) {
    if (p) munmap(p, std::size_t(size));
}

FileMapBlock* MemManager::AllocFileMapBlock() {
    if (refuseFileMap_.load(std::memory_order_relaxed)) return nullptr;
    WriteLock guard(*this);
    FileMapping* chosen = nullptr;
    for (FileMapping* m : pool_) {
        if (!m->freeSlices.empty()) {
            chosen = m;
            break;
        }
    }
    bool created = false;
    if (!chosen) {
        HANDLE file = CreateTempFile(BrmPlatform::BrmStringW(), BrmPlatform::BrmStringW(),
                                     BrmPlatform::BrmStringW(), true);
        if (file == INVALID_HANDLE_VALUE) return nullptr;
        // Sparse: disk is used only for slices that are written.
        if (ftruncate(int(file), off_t(GetFileMapSize())) != 0) {
            CloseHandle(file);
            return nullptr;
        }
        chosen = new FileMapping();
        chosen->file = file;
        chosen->size = GetFileMapSize();
        int32_t slices = int32_t(GetFileMapSize() / GetFileMapSliceSize());
        for (int32_t i = 0; i < slices; ++i) chosen->freeSlices.insert(chosen->freeSlices.end(), i);
        created = true;
    }
    int32_t slice = *chosen->freeSlices.begin();
    // Disk for the whole slice now: a write to a mapped page that the file
    // system cannot back would end the process.
    if (posix_fallocate(int(chosen->file), off_t(uint64_t(slice) * GetFileMapSliceSize()),
                        off_t(GetFileMapSliceSize())) != 0) {
        if (created) {
            CloseHandle(chosen->file);
            delete chosen;
        }
        return nullptr;
    }
    chosen->freeSlices.erase(chosen->freeSlices.begin());
    chosen->usedSlices.insert(slice);
    if (created) pool_.insert(chosen);
    FileMapBlock* block = new FileMapBlock(*this, chosen, slice);
    block->AddRef();
    return block;
}

void MemManager::ReturnSlice(FileMapping* fileMap, int32_t slice) {
    WriteLock guard(*this);
    if (fileMap->usedSlices.erase(slice) == 0) return;
    fileMap->freeSlices.insert(slice);
    if (fileMap->usedSlices.empty()) LockedReleaseFileMap(fileMap);
}

uint64_t MemManager::GetFileMapRoom() const {
    uint64_t limited = fileMapRoom_.load(std::memory_order_relaxed);
    struct statvfs fs;
    std::string folder = PathToNative(GetTempPathString().c_str());
    uint64_t room = statvfs(folder.c_str(), &fs) == 0 ? uint64_t(fs.f_bavail) * fs.f_frsize : 0;
    return std::min(room, limited);
}

bool MemManager::ReleaseFileMap(FileMapping* fileMap) {
    WriteLock guard(*this);
    return LockedReleaseFileMap(fileMap);
}

bool MemManager::LockedReleaseFileMap(FileMapping* fileMap) {
    if (pool_.erase(fileMap) == 0) return false;
    if (fileMap->file != INVALID_HANDLE_VALUE) CloseHandle(fileMap->file);
    delete fileMap;
    return true;
}

std::size_t MemManager::GetFileMapCount() const {
    WriteLock guard(*this);
    return pool_.size();
}

void MemManager::SetLimits(const Limits& limits) {
    heapMax_ = limits.heapMax;
    virtualMax_ = limits.virtualMax;
    refuseFileMap_ = limits.refuseFileMap;
    fileMapRoom_ = limits.fileMapRoom;
}

MemManager::Limits MemManager::GetLimits() const {
    Limits l;
    l.heapMax = heapMax_;
    l.virtualMax = virtualMax_;
    l.refuseFileMap = refuseFileMap_;
    l.fileMapRoom = fileMapRoom_;
    return l;
}

Manager& GetMemoryManager() { return GetMemManager(); }

MemManager& GetMemManager() { return Singleton<MemManager, kSingletonKeepAtExit>::Instance(); }

}  // namespace BrmUtils::Memory
