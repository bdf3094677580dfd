// What both implementations share: copying a range to another buffer and
// handing accessors to a new owner.
#include "utils/memory/BufferImpl.h"

#include <algorithm>
#include <cstring>

#include "utils/memory/Buffer.h"

namespace BrmUtils::Memory {

bool BufferImpl::CopyTo(Owner owner, uint64_t offset, uint64_t count, Buffer& destination,
                        uint64_t destinationOffset) {
    const uint64_t size = GetSize();
    if (offset > size || count > size - offset) return false;
    const uint64_t destinationSize = destination.GetSize();
    if (destinationOffset > destinationSize || count > destinationSize - destinationOffset) return false;
    while (count > 0) {
        ReadDataAccessor from;
        if (!GetReadAccessor(from, owner, offset, count, true) || from.GetLength() == 0) return false;
        WriteDataAccessor to;
        if (!destination.GetWriteAccessor(to, destinationOffset, std::min(count, from.GetLength())) ||
            to.GetLength() == 0 || !from.IsValid())
            return false;
        uint64_t n = std::min(from.GetLength(), to.GetLength());
        std::memmove(to.GetData(), from.GetData(), n);
        offset += n;
        destinationOffset += n;
        count -= n;
    }
    return true;
}

bool BufferImpl::CopyContentsFrom(Owner owner, BufferImpl& source, uint64_t size) {
    uint64_t offset = 0;
    while (offset < size) {
        ReadDataAccessor from;
        WriteDataAccessor to;
        if (!source.GetReadAccessor(from, nullptr, offset, size - offset, true) ||
            !GetWriteAccessor(to, owner, offset, from.GetLength(), true))
            return false;
        uint64_t n = std::min(from.GetLength(), to.GetLength());
        if (n == 0) return false;
        std::memcpy(to.GetData(), from.GetData(), n);
        offset += n;
    }
    return true;
}

void BufferImpl::ReplaceOwner(Owner from, Owner to) {
    for (Block* b : GetBlocks()) b->ReplaceOwner(from, to);
}

}  // namespace BrmUtils::Memory
