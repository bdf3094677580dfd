// DataContainer::MemBuffer: a container on a Memory::Buffer, which grows by
// adding blocks rather than by copying. It owns its buffer (a copy of a
// Buffer shares the bytes until either side writes) or refers to a buffer
// of the caller's, and it may be read-only.
#pragma once

#include "utils/memory/Buffer.h"
#include "utils/streams/DataContainer.h"

namespace BrmUtils::DataContainer {

class MemBuffer : public Base {
public:
    // An empty buffer of its own.
    explicit MemBuffer(bool readOnly = false) : buffer(&owned), readOnly(readOnly) {}
    // Shares the bytes of `bytes`; writes here do not reach the caller's.
    MemBuffer(const Memory::Buffer& bytes, bool readOnly) : owned(bytes), buffer(&owned), readOnly(readOnly) {}
    // Works on the caller's buffer, which must outlive the container.
    MemBuffer(Memory::Buffer* external, bool readOnly) : buffer(external), readOnly(readOnly) {}

    HRESULT Read(void* destination, ULONG count, uint64_t offset, ULONG* bytesRead) override;
    HRESULT Write(const void* source, ULONG count, uint64_t offset, ULONG* bytesWritten) override;
    bool SetSize(uint64_t size) override;
    uint64_t GetSize() override;
    bool IsReadOnly() override;

    Memory::Buffer& GetBuffer() { return *buffer; }

private:
    Memory::Buffer owned;
    Memory::Buffer* buffer;
    bool readOnly;
};

}  // namespace BrmUtils::DataContainer
