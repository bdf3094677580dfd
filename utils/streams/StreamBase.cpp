// Defaults of StreamBase. Derived streams override what they support; the
// rest answers as an unsupported operation does for any IStream.
#include "utils/streams/StreamBase.h"

#include <algorithm>
#include <memory>
#include <new>

#include "platform/LastError.h"
#include "platform/PropIdl.h"
#include "utils/streams/ErrorText.h"

namespace BrmUtils {

namespace {
constexpr ULONG kCopyBufferSize = 65536;
}

StreamBase::~StreamBase() = default;

HRESULT StreamBase::QueryInterface(REFIID riid, void** object) {
    if (!object)
        return E_POINTER;
    if (riid == IID_IUnknown || riid == IID_ISequentialStream || riid == IID_IStream) {
        *object = static_cast<IStream*>(this);
    } else if (riid == IID_IStreamInfo) {
        *object = static_cast<IStreamInfo*>(this);
    } else {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG StreamBase::AddRef() {
    return ++referenceCount;
}

ULONG StreamBase::Release() {
    const ULONG count = --referenceCount;
    if (count == 0)
        delete this;
    return count;
}

HRESULT StreamBase::Read(void*, ULONG, ULONG* pcbRead) {
    if (pcbRead)
        *pcbRead = 0;
    return STG_E_ACCESSDENIED;
}

HRESULT StreamBase::Write(const void*, ULONG, ULONG* pcbWritten) {
    if (pcbWritten)
        *pcbWritten = 0;
    return STG_E_ACCESSDENIED;
}

HRESULT StreamBase::Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) {
    return E_FAIL;
}

HRESULT StreamBase::SetSize(ULARGE_INTEGER) {
    return E_FAIL;
}

// Copies through a buffer of its own, so that it works for every pair of
// streams; it stops at the first failure, empty read or short write.
HRESULT StreamBase::CopyTo(IStream* pstm, ULARGE_INTEGER cb, ULARGE_INTEGER* pcbRead, ULARGE_INTEGER* pcbWritten) {
    if (!pstm)
        return STG_E_INVALIDPOINTER;
    if (pcbRead)
        pcbRead->QuadPart = 0;
    if (pcbWritten)
        pcbWritten->QuadPart = 0;

    std::unique_ptr<uint8_t[]> buffer(new (std::nothrow) uint8_t[kCopyBufferSize]());
    if (!buffer)
        return E_OUTOFMEMORY;

    uint64_t remaining = cb.QuadPart;
    uint64_t written = 0;
    HRESULT hr = S_OK;
    for (;;) {
        const ULONG want = ULONG(std::min<uint64_t>(remaining, kCopyBufferSize));
        ULONG got = 0;
        hr = Read(buffer.get(), want, &got);
        if (FAILED(hr) || got == 0)
            break;
        if (pcbRead)
            pcbRead->QuadPart += got;
        ULONG put = 0;
        hr = pstm->Write(buffer.get(), got, &put);
        written += put;
        if (FAILED(hr) || put < got)
            break;
        if (got >= remaining)
            break;
        remaining -= got;
    }
    if (pcbWritten)
        pcbWritten->QuadPart += written;
    return hr;
}

HRESULT StreamBase::Commit(DWORD) {
    return S_OK;
}

HRESULT StreamBase::Revert() {
    return E_FAIL;
}

HRESULT StreamBase::LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) {
    return E_FAIL;
}

HRESULT StreamBase::UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) {
    return E_FAIL;
}

HRESULT StreamBase::Stat(STATSTG* pstatstg, DWORD grfStatFlag) {
    if (!pstatstg)
        return STG_E_INVALIDPOINTER;
    std::memset(pstatstg, 0, sizeof(*pstatstg));
    if (!(grfStatFlag & STATFLAG_NONAME)) {
        const BrmPlatform::BrmStringW name = GetName();
        if (FAILED(SHStrDupW(name.GetString(), &pstatstg->pwcsName))) {
            pstatstg->pwcsName = nullptr;
            return STG_E_INSUFFICIENTMEMORY;
        }
    }
    pstatstg->type = STGTY_STREAM;
    pstatstg->grfMode = STGM_SIMPLE | STGM_READWRITE;
    return S_OK;
}

HRESULT StreamBase::Clone(IStream** ppstm) {
    if (ppstm)
        *ppstm = nullptr;
    return E_FAIL;
}

bool StreamBase::IsAvailable() {
    return true;
}

BrmPlatform::BrmStringW StreamBase::GetLastErrorText() {
    return lastErrorText;
}

BrmPlatform::BrmStringW StreamBase::GetName() {
    return BrmPlatform::BrmStringW();
}

void StreamBase::SetLastErrorText(const BrmPlatform::BrmStringW& text) {
    lastErrorText = text;
}

DWORD StreamBase::StoreLastError() {
    const DWORD error = GetLastError();
    SetLastErrorText(FormatLastError(error));
    SetLastError(error);
    return error;
}

}  // namespace BrmUtils
