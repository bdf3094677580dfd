// RiffChunkBase::ReaderStream: a read-only IStream view of one chunk's data.
// Read and Seek go to the chunk; Stat reports the chunk's size. The stream
// does not keep its chunk alive: when the chunk goes, the stream is cut off
// and answers E_FAIL to everything.
#pragma once

#include "riff/RiffChunkBase.h"
#include "utils/streams/StreamBase.h"

namespace KvdFileIO {

class RiffChunkBase::ReaderStream : public BrmUtils::StreamBase {
public:
    explicit ReaderStream(RiffChunkBase* chunk) : chunk(chunk) {}

    HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override;
    HRESULT Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) override;
    HRESULT Stat(STATSTG* pstatstg, DWORD grfStatFlag) override;

    // Called by the chunk as it goes.
    void Detach() { chunk = nullptr; }

protected:
    ~ReaderStream() override = default;

private:
    RiffChunkBase* chunk;
};

}  // namespace KvdFileIO
