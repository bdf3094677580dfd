// File-map blocks: views of one slice, mapped on demand with mmap.
#include "utils/memory/FileMapBlock.h"

#include <sys/mman.h>

#include "utils/memory/Manager.h"

namespace BrmUtils::Memory {

FileMapBlock::FileMapBlock(Manager& manager, FileMapping* fileMapping, int32_t slice)
    : manager_(manager), fileMapping_(fileMapping), slice_(slice), sliceSize_(manager.GetFileMapSliceSize()) {}

FileMapBlock::~FileMapBlock() {
    ZeroAccessors();
    Unmap();
    manager_.ReturnSlice(fileMapping_, slice_);
}

Block* FileMapBlock::NewEmpty() const { return manager_.AllocFileMapBlock(); }

void FileMapBlock::AddAccessor(DataAccessor* accessor, Owner owner) {
    Block::AddAccessor(accessor, owner);
    ++viewUsers_;
}

void FileMapBlock::RemoveAccessor(DataAccessor* accessor) {
    std::size_t before = GetAccessorCount();
    Block::RemoveAccessor(accessor);
    if (GetAccessorCount() < before && viewUsers_ > 0 && --viewUsers_ == 0) Unmap();
}

bool FileMapBlock::SetSize(Owner, uint64_t size) {
    if (size > sliceSize_) return false;
    size_ = size;
    RebaseAccessors(view_, size_);
    return true;
}

uint8_t* FileMapBlock::GetData(bool readOnly) {
    if (view_ && !readOnly && !viewWritable_) {
        if (mprotect(view_, sliceSize_, PROT_READ | PROT_WRITE) != 0) return nullptr;
        viewWritable_ = true;
    }
    if (!view_) {
        int prot = readOnly ? PROT_READ : PROT_READ | PROT_WRITE;
        void* p = mmap(nullptr, sliceSize_, prot, MAP_SHARED, int(fileMapping_->file),
                       off_t(uint64_t(slice_) * sliceSize_));
        if (p == MAP_FAILED) return nullptr;
        view_ = static_cast<uint8_t*>(p);
        viewWritable_ = !readOnly;
    }
    return view_;
}

void FileMapBlock::Unmap() {
    if (view_) munmap(view_, sliceSize_);
    view_ = nullptr;
    viewWritable_ = false;
}

}  // namespace BrmUtils::Memory
