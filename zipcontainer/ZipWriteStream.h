// A new member being written into a target archive: stored, deflated, or
// raw (bytes copied from another archive as they are). Closing the stream
// (its last Release) completes the member: sizes, CRC, the local header
// rewritten in place, and a data descriptor when zip64 needs one.
#pragma once

#include <zlib.h>

#include <vector>

#include "utils/streams/StreamBase.h"
#include "zipcontainer/ZipFileSet.h"
#include "zipcontainer/ZipMember.h"

// The CRC of one 4096-byte page of a stored member written out of order.
struct ZipPageCrc {
    static constexpr uint32_t kOutOfOrder = 0xFFFFFFFFu;
    uint32_t crc = 0;
    uint32_t crcLength = 0;      // bytes of the page the CRC covers, in order
    std::vector<uint8_t> bytes;  // the page itself, kept for the first pages
};

class ZipWriteStream : public BrmUtils::StreamBase {
public:
    // Writes the local header of `member` at the end of `target`, appends
    // the member to its table (open for writing) and answers the stream with
    // one reference, which also holds `set`. Null on failure.
    static ZipWriteStream* Create(ZipFileSet& set, ZipArchive& target, ZipMember member, bool raw,
                                  bool randomAccess);

    HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) override;
    HRESULT Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) override;
    HRESULT Stat(STATSTG* pstatstg, DWORD grfStatFlag) override;

protected:
    ~ZipWriteStream() override;

private:
    ZipWriteStream(ZipFileSet& set, ZipArchive& target, ZipMember member, bool raw, bool randomAccess);

    HRESULT WriteDeflated(const uint8_t* data, ULONG count, ULONG& done);
    HRESULT WriteStored(const uint8_t* data, ULONG count, ULONG& done);
    HRESULT FlushOutput();
    void UpdatePageCrcs(uint64_t at, const uint8_t* data, size_t count);
    uint32_t PagedCrc();
    void Close();

    ZipMember member_;
    ZipFileSetRef set_;
    ZipArchive& target_;
    size_t index_ = 0;  // of the member in the target's table
    uint16_t localExtraLength_ = 0;
    bool raw_ = false;
    bool randomAccess_ = false;
    bool deflating_ = false;
    uint64_t dataStart_ = 0;
    uint64_t rawPos_ = 0;  // bytes written to the archive
    uint64_t pos_ = 0;
    uint64_t size_ = 0;
    uint32_t crc_ = 0;
    std::vector<ZipPageCrc> pages_;
    z_stream z_{};
    std::vector<uint8_t> output_;
    size_t outputFill_ = 0;
};
