// DataContainer::Base: the random-access byte store under a memory stream.
// The stream keeps the position; the container answers reads and writes at
// an offset. Several streams (clones) may share one container.
#pragma once

#include <cstdint>

#include "platform/WinTypes.h"

namespace BrmUtils::DataContainer {

class Base {
public:
    Base() = default;
    Base(const Base&) = delete;
    Base& operator=(const Base&) = delete;

    // Reads up to count bytes at offset; at or beyond the end 0 bytes, S_OK.
    virtual HRESULT Read(void* buffer, ULONG count, uint64_t offset, ULONG* bytesRead) = 0;
    // Writes count bytes at offset, growing the container as needed.
    virtual HRESULT Write(const void* buffer, ULONG count, uint64_t offset, ULONG* bytesWritten) = 0;
    virtual bool SetSize(uint64_t size) = 0;
    virtual uint64_t GetSize() = 0;
    virtual bool IsReadOnly() = 0;

    // Plain counts: a container is used by one thread at a time. One
    // reference on creation; the last Release deletes.
    void AddRef() { ++referenceCount; }
    void Release() {
        if (--referenceCount == 0)
            delete this;
    }

protected:
    virtual ~Base() = default;

private:
    uint32_t referenceCount = 1;
};

}  // namespace BrmUtils::DataContainer
