// DataContainer::Vector: a container on a byte vector that the caller owns
// and keeps alive; writes go straight into the caller's vector.
// DataContainer::OwnedVector holds a vector of its own and may be read-only.
#pragma once

#include <vector>

#include "utils/streams/DataContainer.h"

namespace BrmUtils::DataContainer {

class Vector : public Base {
public:
    explicit Vector(std::vector<uint8_t>& bytes) : bytes(&bytes) {}

    HRESULT Read(void* buffer, ULONG count, uint64_t offset, ULONG* bytesRead) override;
    HRESULT Write(const void* buffer, ULONG count, uint64_t offset, ULONG* bytesWritten) override;
    bool SetSize(uint64_t size) override;
    uint64_t GetSize() override;
    bool IsReadOnly() override;

    // The bytes from offset on; null for an empty vector or an offset at or
    // beyond the end. Valid until the next write or SetSize.
    uint8_t* GetPointer(uint64_t offset);
    const uint8_t* GetPointer(uint64_t offset) const;

private:
    std::vector<uint8_t>* bytes;
};

namespace detail {
// Constructed before the Vector base that refers to it.
struct VectorStorage {
    std::vector<uint8_t> storage;
};
}  // namespace detail

class OwnedVector : private detail::VectorStorage, public Vector {
public:
    OwnedVector(std::vector<uint8_t> bytes, bool readOnly)
        : detail::VectorStorage{std::move(bytes)}, Vector(storage), readOnly(readOnly) {}

    bool IsReadOnly() override { return readOnly; }

private:
    bool readOnly;
};

}  // namespace BrmUtils::DataContainer
