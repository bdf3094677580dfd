// The block base: the accessor list, block choice, unsharing and copying.
#include "utils/memory/Block.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "utils/memory/FileMapBlock.h"
#include "utils/memory/HeapBlock.h"
#include "utils/memory/Manager.h"
#include "utils/memory/VirtualMemBlock.h"

namespace BrmUtils::Memory {

Block::~Block() { ZeroAccessors(); }

void Block::AddAccessor(DataAccessor* accessor, Owner owner) {
    if (!firstAccessor_) {
        firstAccessor_ = accessor;
        firstOwner_ = owner;
    } else {
        otherAccessors_[accessor] = owner;
    }
}

void Block::RemoveAccessor(DataAccessor* accessor) {
    if (firstAccessor_ == accessor) {
        firstAccessor_ = nullptr;
        firstOwner_ = nullptr;
        if (!otherAccessors_.empty()) {
            auto it = otherAccessors_.begin();
            firstAccessor_ = it->first;
            firstOwner_ = it->second;
            otherAccessors_.erase(it);
        }
    } else {
        otherAccessors_.erase(accessor);
    }
}

template <typename F>
void Block::ForEachAccessor(F f) {
    if (firstAccessor_) f(firstAccessor_, firstOwner_);
    for (auto& [accessor, owner] : otherAccessors_) f(accessor, owner);
}

void Block::RebaseAccessors(uint8_t* base, uint64_t size) {
    ForEachAccessor([&](DataAccessor* a, Owner) { a->Rebase(base, size); });
}

void Block::ZeroAccessors() {
    ForEachAccessor([](DataAccessor* a, Owner) { a->Zero(); });
    firstAccessor_ = nullptr;
    firstOwner_ = nullptr;
    otherAccessors_.clear();
}

void Block::ReplaceOwner(Owner from, Owner to) {
    if (firstAccessor_ && firstOwner_ == from) {
        firstOwner_ = to;
        firstAccessor_->SetOwner(to);
    }
    for (auto& [accessor, owner] : otherAccessors_) {
        if (owner == from) {
            owner = to;
            accessor->SetOwner(to);
        }
    }
}

void Block::MoveAccessorsTo(Block* target, Owner owner) {
    std::vector<DataAccessor*> moving;
    ForEachAccessor([&](DataAccessor* a, Owner o) {
        if (o == owner) moving.push_back(a);
    });
    for (DataAccessor* a : moving) {
        uint64_t offset = a->GetOffset(), length = a->GetLength();
        bool readOnly = a->IsReadOnly();
        RemoveAccessor(a);
        a->Zero();
        a->Attach(target, owner, target->GetData(readOnly), target->GetSize(), offset, length, readOnly);
    }
}

bool Block::MakeAccessor(DataAccessor& out, Owner owner, uint64_t offset, uint64_t length, bool readOnly) {
    // Leave the old block first: for a mapped slice that may close a view
    // that GetData is about to open again.
    out.Reset();
    uint64_t size = GetSize();
    if (offset > size || (offset == size && length > 0)) return false;
    uint8_t* base = GetData(readOnly);
    if (!base && size > 0) return false;
    out.Attach(this, owner, base, size, offset, std::min(length, size - offset), readOnly);
    return true;
}

bool Block::GetReadAccessor(ReadDataAccessor& out, Owner owner, uint64_t offset, uint64_t length) {
    return MakeAccessor(out, owner, offset, length, true);
}

bool Block::GetWriteAccessor(WriteDataAccessor& out, Owner owner, uint64_t offset, uint64_t length) {
    return MakeAccessor(out, owner, offset, length, false);
}

Block* MakeBlock(Manager& manager, uint64_t size, bool forceFileMap) {
    Block* block = nullptr;
    if (!forceFileMap && size < manager.GetHeapBlockLimit())
        block = new HeapBlock(manager);
    else if (!forceFileMap && size < manager.GetVirtualBlockLimit())
        block = new VirtualMemBlock(manager);
    else
        return manager.AllocFileMapBlock();
    block->AddRef();
    return block;
}

bool CopyBlockBytes(Block* source, Block* target, uint64_t count) {
    if (count == 0) return true;
    ReadDataAccessor from;
    WriteDataAccessor to;
    if (!source->GetReadAccessor(from, nullptr, 0, count) || from.GetLength() < count) return false;
    if (!target->GetWriteAccessor(to, nullptr, 0, count) || to.GetLength() < count) return false;
    std::memcpy(to.GetData(), from.GetData(), count);
    return true;
}

Block* Unshare(Manager& manager, Block* block, Owner owner) {
    if (block->HasOneRef()) return block;
    // The copy gets the old capacity, so that what the buffer reserved
    // stays reserved.
    uint64_t size = block->GetSize();
    uint64_t capacity = std::max(size, block->GetCapacity());
    Block* copy = MakeBlock(manager, capacity, false);
    if (!copy) return nullptr;
    if (copy->Allocate(capacity) < capacity || !copy->SetSize(owner, size) || !CopyBlockBytes(block, copy, size)) {
        copy->Release();
        return nullptr;
    }
    block->MoveAccessorsTo(copy, owner);
    block->Release();
    return copy;
}

}  // namespace BrmUtils::Memory
