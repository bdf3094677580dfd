// The chunk as an IStream, and the chunk base that owns it.
#include "riff/ChunkReaderStream.h"

namespace KvdFileIO {

RiffChunkBase::RiffChunkBase(uint32_t tag, bool list, uint64_t size)
    : stream(new ReaderStream(this)), tag(tag), list(list), size(size) {}

RiffChunkBase::~RiffChunkBase() {
    // A caller may still hold the stream; it must not reach a dead chunk.
    stream->Detach();
    stream->Release();
}

IStream* RiffChunkBase::GetStream() const {
    return stream;
}

HRESULT RiffChunkBase::ReaderStream::Read(void* pv, ULONG cb, ULONG* pcbRead) {
    if (pcbRead) *pcbRead = 0;
    if (!chunk) return E_FAIL;
    if (!pv && cb > 0) return STG_E_INVALIDPOINTER;
    uint64_t got = 0;
    if (!chunk->Read(pv, cb, got)) return E_FAIL;
    if (pcbRead) *pcbRead = ULONG(got);
    return S_OK;
}

HRESULT RiffChunkBase::ReaderStream::Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin,
                                          ULARGE_INTEGER* plibNewPosition) {
    if (!chunk) return E_FAIL;
    uint64_t position = chunk->Seek(dlibMove.QuadPart, dwOrigin);
    if (plibNewPosition) plibNewPosition->QuadPart = position;
    return S_OK;
}

HRESULT RiffChunkBase::ReaderStream::Stat(STATSTG* pstatstg, DWORD grfStatFlag) {
    if (!chunk) return E_FAIL;
    HRESULT hr = StreamBase::Stat(pstatstg, grfStatFlag);
    if (FAILED(hr)) return hr;
    pstatstg->cbSize.QuadPart = chunk->GetSize();
    pstatstg->grfMode = STGM_SIMPLE;
    return S_OK;
}

}  // namespace KvdFileIO
