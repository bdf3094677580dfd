// A member of an archive as a read-only, seekable stream. Deflated members
// are inflated lazily: a forward seek inflates and discards, a backward seek
// starts again from the beginning (wrap the stream in a RandomAccessStream
// when seeking back is common). Several member streams share the archive's
// byte stream; each one seeks it to its own place before reading.
#pragma once

#include <zlib.h>

#include <memory>

#include "utils/streams/StreamBase.h"
#include "zipcontainer/ZipFileSet.h"
#include "zipcontainer/ZipMember.h"

class ZipReadStream : public BrmUtils::StreamBase {
public:
    // Checks the local header of `member` in `archive` and sets up the
    // stream, holding a reference to `set` and to `archive`. Null if the
    // local header is missing or wrong, or the inflater can't start.
    static ZipReadStream* Open(ZipFileSet& set, IStream* archive, const ZipMember& member, bool raw);

    HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override;
    HRESULT Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) override;
    HRESULT Stat(STATSTG* pstatstg, DWORD grfStatFlag) override;

protected:
    ~ZipReadStream() override;

private:
    ZipReadStream(ZipFileSet& set, IStream* archive, const ZipMember& member, bool raw, uint64_t dataStart);

    HRESULT ReadStored(uint8_t* out, ULONG count, ULONG& done);
    HRESULT ReadDeflated(uint8_t* out, ULONG count, ULONG& done);
    // Inflates up to `count` bytes into `out`; `produced` says how many came.
    // Fewer than asked means the deflated data ended.
    HRESULT Inflate(uint8_t* out, size_t count, size_t& produced);
    bool SeekArchiveTo(uint64_t rawPosition);
    uint64_t Size() const { return raw_ ? member_.compressedSize : member_.uncompressedSize; }

    ZipMember member_;
    ZipFileSetRef set_;
    IStream* archive_ = nullptr;
    uint64_t dataStart_ = 0;
    bool raw_ = false;
    bool inflating_ = false;
    z_stream z_{};
    std::unique_ptr<uint8_t[]> input_;
    uint64_t rawPos_ = 0;       // next byte to fetch, from the data start
    uint64_t pos_ = 0;          // the stream's position
    uint64_t inflatedPos_ = 0;  // how far the inflater has come
};
