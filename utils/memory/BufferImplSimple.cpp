// The one-block implementation of small buffers.
#include "utils/memory/BufferImplSimple.h"

#include <algorithm>

#include "utils/memory/BufferImplMultiBlock.h"
#include "utils/memory/Manager.h"

namespace BrmUtils::Memory {

Buffer_Impl_Simple::Buffer_Impl_Simple(Manager& manager, Block* block) : BufferImpl(manager), block_(block) {
    if (block_) block_->AddRef();
}

Buffer_Impl_Simple::~Buffer_Impl_Simple() {
    if (block_) block_->Release();
}

uint64_t Buffer_Impl_Simple::GetSize() const { return block_ ? block_->GetSize() : 0; }

uint64_t Buffer_Impl_Simple::GetCapacity() const { return block_ ? block_->GetCapacity() : 0; }

bool Buffer_Impl_Simple::MakeWritable(Owner owner) {
    Block* b = Unshare(manager_, block_, owner);
    if (!b) return false;
    block_ = b;
    return true;
}

bool Buffer_Impl_Simple::SetSize(Owner owner, uint64_t size) {
    if (!block_ && size == 0) return true;
    uint64_t capacity = GetCapacity();
    if (capacity < size && !Reserve(owner, std::max(capacity + capacity / 2, size))) return false;
    return MakeWritable(owner) && block_->SetSize(owner, size);
}

bool Buffer_Impl_Simple::Reserve(Owner owner, uint64_t capacity) {
    if (!block_) {
        if (capacity == 0) return true;
        Block* b = MakeBlock(manager_, capacity, false);
        if (!b) return false;
        if (b->Allocate(capacity) < capacity) {
            b->Release();
            return false;
        }
        block_ = b;
        return true;
    }
    if (!MakeWritable(owner)) return false;
    return block_->GetCapacity() >= capacity || block_->Grow(owner, capacity);
}

void Buffer_Impl_Simple::Clear() {
    if (block_) block_->Release();
    block_ = nullptr;
}

void Buffer_Impl_Simple::Compact(Owner owner) {
    if (block_ && MakeWritable(owner)) block_->Compact(owner);
}

bool Buffer_Impl_Simple::GetReadAccessors(std::vector<ReadDataAccessor>& out, Owner owner) {
    out.clear();
    if (!block_ || block_->GetSize() == 0) return true;
    out.emplace_back();
    return block_->GetReadAccessor(out.back(), owner, 0, block_->GetSize());
}

bool Buffer_Impl_Simple::GetReadAccessor(ReadDataAccessor& out, Owner owner, uint64_t offset, uint64_t length,
                                         bool mayBeShort) {
    if (!block_ || offset >= block_->GetSize()) {
        out.Reset();
        return false;
    }
    if (!block_->GetReadAccessor(out, owner, offset, length)) return false;
    if (!mayBeShort && out.GetLength() < length) {
        out.Reset();
        return false;
    }
    return true;
}

bool Buffer_Impl_Simple::GetWriteAccessors(std::vector<WriteDataAccessor>& out, Owner owner) {
    out.clear();
    if (!block_ || block_->GetSize() == 0) return true;
    if (!MakeWritable(owner)) return false;
    out.emplace_back();
    return block_->GetWriteAccessor(out.back(), owner, 0, block_->GetSize());
}

bool Buffer_Impl_Simple::GetWriteAccessor(WriteDataAccessor& out, Owner owner, uint64_t offset, uint64_t length,
                                          bool mayBeShort) {
    if (!block_ || offset >= block_->GetSize() || !MakeWritable(owner)) {
        out.Reset();
        return false;
    }
    if (!block_->GetWriteAccessor(out, owner, offset, length)) return false;
    if (!mayBeShort && out.GetLength() < length) {
        out.Reset();
        return false;
    }
    return true;
}

BufferImpl* Buffer_Impl_Simple::Prepare(Owner owner, uint64_t sizeHint, bool discardEmpty) {
    const uint64_t limit = manager_.GetHeapBlockLimit();
    BufferImpl* next;
    if (sizeHint <= limit) {
        if (HasOneRef()) return this;
        next = new Buffer_Impl_Simple(manager_, block_);
        next->AddRef();
    } else if (sizeHint <= 4 * limit) {
        // A small present block becomes the first of the list.
        std::vector<Block*> blocks;
        if (block_ && (block_->GetSize() > 0 || (block_->GetCapacity() > 0 && !discardEmpty))) blocks.push_back(block_);
        next = new Buffer_Impl_MultiBlock(manager_, blocks);
        next->AddRef();
    } else {
        // Large from the start: better blocks of the final size than a
        // small first block.
        next = new Buffer_Impl_MultiBlock(manager_, {});
        next->AddRef();
        if (!next->CopyFrom(owner, *this, sizeHint)) {
            next->Release();
            return nullptr;
        }
    }
    Release();
    return next;
}

std::vector<Block*> Buffer_Impl_Simple::GetBlocks() const {
    return block_ ? std::vector<Block*>{block_} : std::vector<Block*>{};
}

bool Buffer_Impl_Simple::CopyFrom(Owner owner, BufferImpl& source, uint64_t sizeHint) {
    const uint64_t size = source.GetSize();
    Clear();
    if (!Reserve(owner, std::max(size, sizeHint)) || !SetSize(owner, size)) return false;
    return CopyContentsFrom(owner, source, size);
}

}  // namespace BrmUtils::Memory
