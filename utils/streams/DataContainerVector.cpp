// DataContainer::Vector: reads and writes at an offset of a byte vector.
#include "utils/streams/DataContainerVector.h"

#include <cstring>
#include <new>
#include <stdexcept>

namespace BrmUtils::DataContainer {

HRESULT Vector::Read(void* buffer, ULONG count, uint64_t offset, ULONG* bytesRead) {
    if (bytesRead)
        *bytesRead = 0;
    const uint64_t size = bytes->size();
    if (offset >= size || count == 0)
        return S_OK;
    if (!buffer)
        return STG_E_INVALIDPOINTER;
    const ULONG n = ULONG(std::min<uint64_t>(count, size - offset));
    std::memcpy(buffer, bytes->data() + offset, n);
    if (bytesRead)
        *bytesRead = n;
    return S_OK;
}

HRESULT Vector::Write(const void* buffer, ULONG count, uint64_t offset, ULONG* bytesWritten) {
    if (bytesWritten)
        *bytesWritten = 0;
    if (count == 0)
        return S_OK;
    if (!buffer)
        return STG_E_INVALIDPOINTER;
    if (offset > uint64_t(INT64_MAX) - count)
        return STG_E_MEDIUMFULL;
    const uint64_t end = offset + count;
    if (end > bytes->size() && !SetSize(end))
        return STG_E_MEDIUMFULL;
    std::memcpy(bytes->data() + offset, buffer, count);
    if (bytesWritten)
        *bytesWritten = count;
    return S_OK;
}

bool Vector::SetSize(uint64_t size) {
    if (size > uint64_t(INT64_MAX) || size > bytes->max_size())
        return false;
    try {
        bytes->resize(size_t(size));
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
    return true;
}

uint64_t Vector::GetSize() {
    return bytes->size();
}

bool Vector::IsReadOnly() {
    return false;
}

uint8_t* Vector::GetPointer(uint64_t offset) {
    return offset < bytes->size() ? bytes->data() + offset : nullptr;
}

const uint8_t* Vector::GetPointer(uint64_t offset) const {
    return offset < bytes->size() ? bytes->data() + offset : nullptr;
}

}  // namespace BrmUtils::DataContainer
