// A stream over a DataContainer: the bytes live in memory, the stream keeps
// only its position. Clones share the container and have positions of their
// own.
#pragma once

#include <cstddef>
#include <vector>

#include "utils/memory/Buffer.h"
#include "utils/streams/DataContainer.h"
#include "utils/streams/StreamBase.h"

namespace BrmUtils {

class MemStream : public StreamBase, public IMemBufferStream {
public:
    // Adds a reference to the container (which may be null: a stream with
    // no container refuses every operation). One reference.
    explicit MemStream(DataContainer::Base* container, uint64_t position = 0);

    HRESULT QueryInterface(REFIID riid, void** object) override;
    ULONG AddRef() override;
    ULONG Release() override;

    HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override;
    HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) override;
    HRESULT Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) override;
    HRESULT SetSize(ULARGE_INTEGER libNewSize) override;
    HRESULT Stat(STATSTG* pstatstg, DWORD grfStatFlag) override;
    HRESULT Clone(IStream** ppstm) override;

    Memory::Buffer* GetBuffer() override;

    DataContainer::Base* GetContainer() const { return container; }

protected:
    ~MemStream() override;

private:
    DataContainer::Base* container;
    uint64_t position;
};

// A writable stream on the caller's vector, which must outlive the stream;
// writes change the vector. Null only when memory runs out.
MemStream* CreateMemStream(std::vector<uint8_t>& bytes);
// A read-only stream on a copy of the bytes.
MemStream* CreateMemStreamOnBytes(const void* bytes, size_t size);
// A stream that owns the vector it is given; writable unless readOnly.
MemStream* CreateMemStreamOwning(std::vector<uint8_t> bytes, bool readOnly = false);
// An empty writable stream on a fresh Memory::Buffer reserving capacity
// bytes; it grows by blocks and offers IMemBufferStream. Null if the
// reservation fails.
MemStream* CreateMemStream(uint64_t capacity);
// A stream on the bytes of a Memory::Buffer, shared until either side
// writes; writable unless readOnly.
MemStream* CreateMemStreamOnBuffer(const Memory::Buffer& bytes, bool readOnly = true);

}  // namespace BrmUtils
