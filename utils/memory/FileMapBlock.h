// A block on one slice of a mapped temporary file: the fallback when heap
// and address space refuse. Only a slice's view is mapped, and only while
// accessors use it, so a buffer of many slices needs little address space.
#pragma once

#include "utils/memory/Block.h"

namespace BrmUtils::Memory {

struct FileMapping;

class FileMapBlock final : public Block {
public:
    // Takes the slice; it goes back to the mapping when the block goes.
    FileMapBlock(Manager& manager, FileMapping* fileMapping, int32_t slice);
    ~FileMapBlock() override;

    void AddAccessor(DataAccessor* accessor, Owner owner) override;
    void RemoveAccessor(DataAccessor* accessor) override;
    int GetKind() const override { return kFileMapBlock; }
    uint64_t Allocate(uint64_t) override { return sliceSize_; }
    Block* NewEmpty() const override;
    uint64_t GetSize() const override { return size_; }
    uint64_t GetCapacity() const override { return sliceSize_; }
    uint64_t GetMaxCapacity() const override { return sliceSize_; }
    bool SetSize(Owner owner, uint64_t size) override;
    bool CanGrowTo(uint64_t) const override { return false; }
    bool Grow(Owner, uint64_t size) override { return size <= sliceSize_; }
    bool Compact(Owner) override { return true; }
    // Maps the slice's view if it is not mapped; a read-only view is made
    // writable in place when writing is asked for.
    uint8_t* GetData(bool readOnly) override;

    FileMapping* GetFileMapping() const { return fileMapping_; }
    int32_t GetSlice() const { return slice_; }
    bool HasView() const { return view_ != nullptr; }

private:
    void Unmap();

    Manager& manager_;
    FileMapping* fileMapping_;
    int32_t slice_;
    uint64_t sliceSize_;
    uint8_t* view_ = nullptr;
    bool viewWritable_ = false;
    uint32_t viewUsers_ = 0;
    uint64_t size_ = 0;
};

}  // namespace BrmUtils::Memory
