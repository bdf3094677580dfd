// DataContainer::MemBuffer: reads and writes at an offset of a Buffer.
#include "utils/streams/DataContainerMemBuffer.h"

namespace BrmUtils::DataContainer {

HRESULT MemBuffer::Read(void* destination, ULONG count, uint64_t offset, ULONG* bytesRead) {
    if (bytesRead)
        *bytesRead = 0;
    if (count == 0 || offset >= buffer->GetSize())
        return S_OK;
    if (!destination)
        return STG_E_INVALIDPOINTER;
    uint64_t got = 0;
    if (!buffer->Read(offset, destination, count, &got))
        return E_FAIL;
    if (bytesRead)
        *bytesRead = ULONG(got);
    return S_OK;
}

HRESULT MemBuffer::Write(const void* source, ULONG count, uint64_t offset, ULONG* bytesWritten) {
    if (bytesWritten)
        *bytesWritten = 0;
    if (count == 0)
        return S_OK;
    if (!source)
        return STG_E_INVALIDPOINTER;
    if (offset > uint64_t(INT64_MAX) - count)
        return E_FAIL;
    uint64_t put = 0;
    if (!buffer->Write(offset, source, count, &put, true))
        return E_FAIL;
    if (bytesWritten)
        *bytesWritten = ULONG(put);
    return S_OK;
}

bool MemBuffer::SetSize(uint64_t size) {
    return size <= uint64_t(INT64_MAX) && buffer->SetSize(size);
}

uint64_t MemBuffer::GetSize() {
    return buffer->GetSize();
}

bool MemBuffer::IsReadOnly() {
    return readOnly;
}

}  // namespace BrmUtils::DataContainer
