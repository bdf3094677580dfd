// RandomAccessStream: reads fill the memory cache from the source as far as
// they need, then are answered from the cache.
#include "utils/streams/RandomAccessStream.h"

#include <new>

#include "utils/streams/MemStream.h"
#include "utils/streams/StreamHelpers.h"

namespace BrmUtils {

namespace {

constexpr uint64_t kPageSize = 4096;

uint64_t AddSaturated(uint64_t a, uint64_t b) {
    return b > UINT64_MAX - a ? UINT64_MAX : a + b;
}

uint64_t RoundUpToPage(uint64_t value) {
    const uint64_t rest = value % kPageSize;
    return rest == 0 ? value : AddSaturated(value, kPageSize - rest);
}

}  // namespace

RandomAccessStream* RandomAccessStream::Create(IStream* source) {
    if (!source)
        return nullptr;
    IStream* cache = CreateMemStream(uint64_t(0));
    if (!cache)
        return nullptr;
    auto* stream = new (std::nothrow) RandomAccessStream(source, cache);
    cache->Release();
    return stream;
}

RandomAccessStream::RandomAccessStream(IStream* source, IStream* cache) : source(source), cache(cache) {
    source->AddRef();
    cache->AddRef();
}

RandomAccessStream::~RandomAccessStream() {
    cache->Release();
    source->Release();
}

HRESULT RandomAccessStream::Fill(uint64_t target) {
    ULARGE_INTEGER oldPosition{};
    if (FAILED(cache->Seek(MakeLargeInteger(0), STREAM_SEEK_CUR, &oldPosition)))
        return E_FAIL;
    ULARGE_INTEGER reached{};
    if (FAILED(cache->Seek(MakeLargeInteger(int64_t(cachedBytes)), STREAM_SEEK_SET, &reached)) ||
        reached.QuadPart != cachedBytes)
        return E_FAIL;

    const uint64_t wanted = target - cachedBytes;
    uint64_t copied = 0;
    const bool ok = CopyStream(source, cache, wanted, copied);
    cachedBytes += copied;
    if (ok && copied < wanted)
        sourceEnded = true;

    const bool restored =
        SUCCEEDED(cache->Seek(MakeLargeInteger(int64_t(oldPosition.QuadPart)), STREAM_SEEK_SET, nullptr));
    return ok && restored ? S_OK : E_FAIL;
}

HRESULT RandomAccessStream::Read(void* pv, ULONG cb, ULONG* pcbRead) {
    if (pcbRead)
        *pcbRead = 0;
    const uint64_t needed = AddSaturated(GetPosition(cache), cb);
    if (needed > cachedBytes && !sourceEnded) {
        const HRESULT hr = Fill(pageRounding ? RoundUpToPage(needed) : needed);
        if (FAILED(hr))
            return hr;
    }
    return cache->Read(pv, cb, pcbRead);
}

HRESULT RandomAccessStream::Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) {
    return cache->Seek(dlibMove, dwOrigin, plibNewPosition);
}

HRESULT RandomAccessStream::Stat(STATSTG* pstatstg, DWORD grfStatFlag) {
    return cache->Stat(pstatstg, grfStatFlag);
}

}  // namespace BrmUtils
