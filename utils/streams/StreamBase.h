// The common base of this library's streams: reference counting, the
// interface table, the stored error text, and the defaults a stream that
// does not support an operation answers with (see the .cpp for each).
#pragma once

#include "platform/ObjIdl.h"
#include "utils/streams/StreamInterfaces.h"
#include "utils/strings/BrmString.h"

namespace BrmUtils {

class StreamBase : public IStream, public IStreamInfo {
public:
    StreamBase() = default;
    StreamBase(const StreamBase&) = delete;
    StreamBase& operator=(const StreamBase&) = delete;

    // IUnknown. The count is plain: a stream is used by one thread at a time.
    HRESULT QueryInterface(REFIID riid, void** object) override;
    ULONG AddRef() override;
    ULONG Release() override;

    // ISequentialStream and IStream.
    HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override;
    HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) override;
    HRESULT Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) override;
    HRESULT SetSize(ULARGE_INTEGER libNewSize) override;
    HRESULT CopyTo(IStream* pstm, ULARGE_INTEGER cb, ULARGE_INTEGER* pcbRead, ULARGE_INTEGER* pcbWritten) override;
    HRESULT Commit(DWORD grfCommitFlags) override;
    HRESULT Revert() override;
    HRESULT LockRegion(ULARGE_INTEGER libOffset, ULARGE_INTEGER cb, DWORD dwLockType) override;
    HRESULT UnlockRegion(ULARGE_INTEGER libOffset, ULARGE_INTEGER cb, DWORD dwLockType) override;
    HRESULT Stat(STATSTG* pstatstg, DWORD grfStatFlag) override;
    HRESULT Clone(IStream** ppstm) override;

    // IStreamInfo.
    bool IsAvailable() override;
    BrmPlatform::BrmStringW GetLastErrorText() override;

    // The name Stat reports; empty unless a stream has one.
    virtual BrmPlatform::BrmStringW GetName();
    virtual void SetLastErrorText(const BrmPlatform::BrmStringW& text);

protected:
    // Streams are destroyed by their last Release only.
    virtual ~StreamBase();

    // Stores the text of the last error number and answers it, so that
    // a failing operation can do both in one line.
    DWORD StoreLastError();

private:
    BrmPlatform::BrmStringW lastErrorText;
    ULONG referenceCount = 1;
};

}  // namespace BrmUtils
