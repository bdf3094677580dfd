// Seeking over a forward-only source: what has been read from the source is
// kept in a memory stream, so that the source is read once and in order and
// every seek happens in memory. A seek past what is cached costs nothing
// until the next read.
#pragma once

#include "utils/streams/StreamBase.h"

namespace BrmUtils {

class RandomAccessStream : public StreamBase {
public:
    // Reads the source from its present position on; adds a reference to
    // it. Null if the source is null or memory runs out.
    static RandomAccessStream* Create(IStream* source);

    // Reads run ahead of the caller to the next multiple of 4096 bytes
    // unless this is turned off.
    void SetPageRounding(bool value) { pageRounding = value; }
    // How much of the source has been copied so far.
    uint64_t GetCachedBytes() const { return cachedBytes; }

    HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override;
    HRESULT Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) override;
    HRESULT Stat(STATSTG* pstatstg, DWORD grfStatFlag) override;

protected:
    RandomAccessStream(IStream* source, IStream* cache);
    ~RandomAccessStream() override;

private:
    // Copies the source into the cache up to `target` bytes.
    HRESULT Fill(uint64_t target);

    IStream* source;
    IStream* cache;
    uint64_t cachedBytes = 0;
    bool pageRounding = true;
    // The source delivered less than asked: it has nothing more.
    bool sourceEnded = false;
};

}  // namespace BrmUtils
