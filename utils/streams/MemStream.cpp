// MemStream: position handling over a DataContainer, and its factories.
#include "utils/streams/MemStream.h"

#include <new>

#include "utils/streams/DataContainerMemBuffer.h"
#include "utils/streams/DataContainerVector.h"

namespace BrmUtils {

MemStream::MemStream(DataContainer::Base* container, uint64_t position) : container(container), position(position) {
    if (container)
        container->AddRef();
}

MemStream::~MemStream() {
    if (container)
        container->Release();
}

HRESULT MemStream::QueryInterface(REFIID riid, void** object) {
    if (object && riid == IID_IMemBufferStream) {
        if (!GetBuffer()) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<IMemBufferStream*>(this);
        AddRef();
        return S_OK;
    }
    return StreamBase::QueryInterface(riid, object);
}

ULONG MemStream::AddRef() {
    return StreamBase::AddRef();
}

ULONG MemStream::Release() {
    return StreamBase::Release();
}

HRESULT MemStream::Read(void* pv, ULONG cb, ULONG* pcbRead) {
    if (pcbRead)
        *pcbRead = 0;
    if (!container)
        return STG_E_ACCESSDENIED;
    ULONG got = 0;
    const HRESULT hr = container->Read(pv, cb, position, &got);
    position += got;
    if (pcbRead)
        *pcbRead = got;
    return hr;
}

HRESULT MemStream::Write(const void* pv, ULONG cb, ULONG* pcbWritten) {
    if (pcbWritten)
        *pcbWritten = 0;
    if (!container || container->IsReadOnly())
        return STG_E_ACCESSDENIED;
    if (cb == 0)
        return S_OK;
    ULONG put = 0;
    const HRESULT hr = container->Write(pv, cb, position, &put);
    position += put;
    if (pcbWritten)
        *pcbWritten = put;
    return hr;
}

namespace {

// base + offset, kept within 0 and the largest position.
uint64_t MovePosition(uint64_t base, int64_t offset) {
    if (offset < 0) {
        const uint64_t back = uint64_t(-(offset + 1)) + 1;
        return back > base ? 0 : base - back;
    }
    const uint64_t forward = uint64_t(offset);
    return forward > UINT64_MAX - base ? UINT64_MAX : base + forward;
}

}  // namespace

HRESULT MemStream::Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) {
    if (!container)
        return STG_E_ACCESSDENIED;
    switch (dwOrigin) {
    case STREAM_SEEK_SET:
        // Taken as it is: a position beyond the end reads nothing and a
        // write there grows the container.
        position = uint64_t(dlibMove.QuadPart);
        break;
    case STREAM_SEEK_CUR:
        position = MovePosition(position, dlibMove.QuadPart);
        break;
    case STREAM_SEEK_END:
        position = MovePosition(container->GetSize(), dlibMove.QuadPart);
        break;
    default:
        return STG_E_INVALIDFUNCTION;
    }
    if (plibNewPosition)
        plibNewPosition->QuadPart = position;
    return S_OK;
}

HRESULT MemStream::SetSize(ULARGE_INTEGER libNewSize) {
    if (!container || container->IsReadOnly())
        return STG_E_ACCESSDENIED;
    return container->SetSize(libNewSize.QuadPart) ? S_OK : STG_E_MEDIUMFULL;
}

HRESULT MemStream::Stat(STATSTG* pstatstg, DWORD grfStatFlag) {
    if (!container)
        return STG_E_ACCESSDENIED;
    const HRESULT hr = StreamBase::Stat(pstatstg, grfStatFlag);
    if (FAILED(hr))
        return hr;
    pstatstg->type = STGTY_LOCKBYTES;
    pstatstg->cbSize.QuadPart = container->GetSize();
    pstatstg->grfMode = STGM_SIMPLE | (container->IsReadOnly() ? 0 : STGM_READWRITE);
    return hr;
}

HRESULT MemStream::Clone(IStream** ppstm) {
    if (!container)
        return STG_E_ACCESSDENIED;
    if (!ppstm)
        return STG_E_INVALIDPOINTER;
    *ppstm = new (std::nothrow) MemStream(container, position);
    return *ppstm ? S_OK : E_OUTOFMEMORY;
}

Memory::Buffer* MemStream::GetBuffer() {
    auto* memBuffer = dynamic_cast<DataContainer::MemBuffer*>(container);
    return memBuffer ? &memBuffer->GetBuffer() : nullptr;
}

namespace {

MemStream* StreamOn(DataContainer::Base* container) {
    if (!container)
        return nullptr;
    auto* stream = new (std::nothrow) MemStream(container);
    container->Release();
    return stream;
}

}  // namespace

MemStream* CreateMemStream(std::vector<uint8_t>& bytes) {
    return StreamOn(new (std::nothrow) DataContainer::Vector(bytes));
}

MemStream* CreateMemStreamOnBytes(const void* bytes, size_t size) {
    std::vector<uint8_t> copy;
    try {
        if (bytes && size)
            copy.assign(static_cast<const uint8_t*>(bytes), static_cast<const uint8_t*>(bytes) + size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    return CreateMemStreamOwning(std::move(copy), true);
}

MemStream* CreateMemStreamOwning(std::vector<uint8_t> bytes, bool readOnly) {
    return StreamOn(new (std::nothrow) DataContainer::OwnedVector(std::move(bytes), readOnly));
}

MemStream* CreateMemStream(uint64_t capacity) {
    auto* container = new (std::nothrow) DataContainer::MemBuffer(false);
    if (container && !container->GetBuffer().Reserve(capacity)) {
        container->Release();
        return nullptr;
    }
    return StreamOn(container);
}

MemStream* CreateMemStreamOnBuffer(const Memory::Buffer& bytes, bool readOnly) {
    return StreamOn(new (std::nothrow) DataContainer::MemBuffer(bytes, readOnly));
}

}  // namespace BrmUtils
