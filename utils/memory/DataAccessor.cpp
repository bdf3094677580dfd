// Accessors register at their block on creation and copy, and leave it on
// destruction; the block calls Rebase and Zero on them.
#include "utils/memory/DataAccessor.h"

#include <algorithm>

#include "utils/memory/Block.h"

namespace BrmUtils::Memory {

DataAccessor::DataAccessor(const DataAccessor& other) { CopyFrom(other); }

DataAccessor::DataAccessor(DataAccessor&& other) {
    CopyFrom(other);
    other.Reset();
}

DataAccessor& DataAccessor::operator=(const DataAccessor& other) {
    if (this != &other) {
        Reset();
        CopyFrom(other);
    }
    return *this;
}

DataAccessor& DataAccessor::operator=(DataAccessor&& other) {
    if (this != &other) {
        Reset();
        CopyFrom(other);
        other.Reset();
    }
    return *this;
}

DataAccessor::~DataAccessor() { Reset(); }

void DataAccessor::CopyFrom(const DataAccessor& other) {
    if (other.block_)
        Attach(other.block_, other.owner_, other.base_, other.blockSize_, other.offset_, other.length_,
               other.readOnly_);
}

void DataAccessor::Reset() {
    if (block_) block_->RemoveAccessor(this);
    Zero();
}

void DataAccessor::Attach(Block* block, Owner owner, uint8_t* base, uint64_t blockSize, uint64_t offset,
                          uint64_t length, bool readOnly) {
    Reset();
    owner_ = owner;
    readOnly_ = readOnly;
    offset_ = offset;
    length_ = length;
    Rebase(base, blockSize);
    block_ = block;
    if (block_) block_->AddAccessor(this, owner);
}

void DataAccessor::Rebase(uint8_t* base, uint64_t blockSize) {
    base_ = base;
    blockSize_ = blockSize;
    offset_ = std::min(offset_, blockSize);
    length_ = std::min(length_, blockSize - offset_);
    if (!base_) length_ = 0;
}

void DataAccessor::Zero() {
    base_ = nullptr;
    blockSize_ = 0;
    offset_ = 0;
    length_ = 0;
    block_ = nullptr;
    owner_ = nullptr;
}

}  // namespace BrmUtils::Memory
