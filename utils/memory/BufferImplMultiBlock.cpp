// The block-list implementation of large buffers.
#include "utils/memory/BufferImplMultiBlock.h"

#include <algorithm>

#include "utils/memory/FileMapBlock.h"
#include "utils/memory/Manager.h"

namespace BrmUtils::Memory {

Buffer_Impl_MultiBlock::Buffer_Impl_MultiBlock(Manager& manager, const std::vector<Block*>& blocks)
    : BufferImpl(manager), blocks_(blocks) {
    for (Block* b : blocks_) b->AddRef();
}

Buffer_Impl_MultiBlock::~Buffer_Impl_MultiBlock() { DropBlocksFrom(0); }

uint64_t Buffer_Impl_MultiBlock::GetSize() const {
    uint64_t total = 0;
    for (const Block* b : blocks_) total += b->GetSize();
    return total;
}

uint64_t Buffer_Impl_MultiBlock::GetCapacity() const {
    uint64_t total = 0;
    for (const Block* b : blocks_) total += b->GetCapacity();
    return total;
}

void Buffer_Impl_MultiBlock::DropBlocksFrom(std::size_t count) {
    while (blocks_.size() > count) {
        blocks_.back()->Release();
        blocks_.pop_back();
    }
}

bool Buffer_Impl_MultiBlock::UnshareAt(Owner owner, std::size_t index) {
    Block* b = Unshare(manager_, blocks_[index], owner);
    if (!b) return false;
    blocks_[index] = b;
    return true;
}

bool Buffer_Impl_MultiBlock::Locate(uint64_t offset, std::size_t* index, uint64_t* inBlock) const {
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
        uint64_t size = blocks_[i]->GetSize();
        if (offset < size) {
            *index = i;
            *inBlock = offset;
            return true;
        }
        offset -= size;
    }
    return false;
}

bool Buffer_Impl_MultiBlock::SetSize(Owner owner, uint64_t size) {
    uint64_t capacity = GetCapacity();
    if (capacity < size && !Reserve(owner, std::max(capacity + capacity / 2, size))) return false;
    uint64_t remaining = size;
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
        uint64_t target = std::min(remaining, blocks_[i]->GetCapacity());
        if (blocks_[i]->GetSize() != target) {
            if (!UnshareAt(owner, i) || !blocks_[i]->SetSize(owner, target)) return false;
        }
        remaining -= target;
    }
    return remaining == 0;
}

bool Buffer_Impl_MultiBlock::Reserve(Owner owner, uint64_t capacity) {
    const uint64_t want = std::max(GetSize(), capacity);
    uint64_t rest = capacity;
    for (const Block* b : blocks_) {
        if (b->GetCapacity() >= rest) return true;
        rest -= b->GetCapacity();
    }
    if (rest == 0) return true;

    // A small last block may still grow in place.
    if (!blocks_.empty()) {
        Block* last = blocks_.back();
        uint64_t grown = last->GetCapacity() + rest;
        if (last->CanGrowTo(grown) && UnshareAt(owner, blocks_.size() - 1) && blocks_.back()->Grow(owner, grown))
            return true;
    }

    // New blocks, of the kind the buffer's total calls for; the mapped file
    // when the heap and the address space refuse.
    const std::size_t before = blocks_.size();
    bool triedRoom = false;
    while (rest > 0) {
        Block* b = MakeBlock(manager_, want, false);
        uint64_t granted = b ? b->Allocate(rest) : 0;
        if (granted == 0) {
            bool wasFileMap = b && b->GetKind() == kFileMapBlock;
            if (b) b->Release();
            // A request the disk cannot back fails now, not one slice later.
            if (!triedRoom && rest > manager_.GetFileMapRoom()) wasFileMap = true;
            triedRoom = true;
            b = wasFileMap ? nullptr : manager_.AllocFileMapBlock();
            granted = b ? b->Allocate(rest) : 0;
            if (granted == 0) {
                if (b) b->Release();
                DropBlocksFrom(before);
                return false;
            }
        }
        blocks_.push_back(b);
        if (granted >= rest) return true;
        rest -= granted;
    }
    return true;
}

void Buffer_Impl_MultiBlock::Clear() { DropBlocksFrom(0); }

void Buffer_Impl_MultiBlock::Compact(Owner owner) {
    while (!blocks_.empty() && blocks_.back()->GetSize() == 0) {
        blocks_.back()->Release();
        blocks_.pop_back();
    }
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
        if (blocks_[i]->GetCapacity() > blocks_[i]->GetSize() && UnshareAt(owner, i)) blocks_[i]->Compact(owner);
    }
}

bool Buffer_Impl_MultiBlock::GetReadAccessors(std::vector<ReadDataAccessor>& out, Owner owner) {
    out.clear();
    for (Block* b : blocks_) {
        if (b->GetSize() == 0) continue;
        out.emplace_back();
        if (!b->GetReadAccessor(out.back(), owner, 0, b->GetSize())) return false;
    }
    return true;
}

bool Buffer_Impl_MultiBlock::GetReadAccessor(ReadDataAccessor& out, Owner owner, uint64_t offset, uint64_t length,
                                             bool mayBeShort) {
    std::size_t index;
    uint64_t inBlock;
    if (!Locate(offset, &index, &inBlock)) {
        out.Reset();
        return false;
    }
    if (!blocks_[index]->GetReadAccessor(out, owner, inBlock, length)) return false;
    if (!mayBeShort && out.GetLength() < length) {
        out.Reset();
        return false;
    }
    return true;
}

bool Buffer_Impl_MultiBlock::GetWriteAccessors(std::vector<WriteDataAccessor>& out, Owner owner) {
    out.clear();
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
        if (blocks_[i]->GetSize() == 0) continue;
        if (!UnshareAt(owner, i)) return false;
        out.emplace_back();
        if (!blocks_[i]->GetWriteAccessor(out.back(), owner, 0, blocks_[i]->GetSize())) return false;
    }
    return true;
}

bool Buffer_Impl_MultiBlock::GetWriteAccessor(WriteDataAccessor& out, Owner owner, uint64_t offset,
                                              uint64_t length, bool mayBeShort) {
    std::size_t index;
    uint64_t inBlock;
    if (!Locate(offset, &index, &inBlock) || !UnshareAt(owner, index)) {
        out.Reset();
        return false;
    }
    if (!blocks_[index]->GetWriteAccessor(out, owner, inBlock, length)) return false;
    if (!mayBeShort && out.GetLength() < length) {
        out.Reset();
        return false;
    }
    return true;
}

BufferImpl* Buffer_Impl_MultiBlock::Prepare(Owner, uint64_t, bool) {
    if (HasOneRef()) return this;
    BufferImpl* next = new Buffer_Impl_MultiBlock(manager_, blocks_);
    next->AddRef();
    Release();
    return next;
}

bool Buffer_Impl_MultiBlock::CopyFrom(Owner owner, BufferImpl& source, uint64_t sizeHint) {
    const uint64_t size = source.GetSize();
    Clear();
    if (!Reserve(owner, std::max(size, sizeHint)) || !SetSize(owner, size)) return false;
    return CopyContentsFrom(owner, source, size);
}

}  // namespace BrmUtils::Memory
