// Reading a member: stored bytes straight from the archive, deflated ones
// through zlib's raw inflate with a 64 KiB input buffer. Neither the CRC nor
// the local sizes are checked; a damaged member shows itself by an inflate
// error or by data that end early.
#include "zipcontainer/ZipReadStream.h"

#include <algorithm>
#include <new>

#include "zipcontainer/ZipFormat.h"
#include "zipcontainer/ZipIo.h"

using namespace ZipFormat;

namespace {

constexpr size_t kInputSize = 65536;
constexpr size_t kSkipSize = 1024;
constexpr DWORD kReadOnlyMode = 0x08000000;  // STGM_SIMPLE, read

}  // namespace

ZipReadStream* ZipReadStream::Open(ZipFileSet& set, IStream* archive, const ZipMember& member, bool raw) {
    uint8_t header[kLocalHeaderSize];
    if (!archive || !ZipIo::ReadAt(archive, member.localHeaderOffset, header, sizeof(header)) ||
        Get32(header) != kLocalHeaderSignature)
        return nullptr;
    uint64_t dataStart = 0;
    if (!ZipIo::Add(member.localHeaderOffset, kLocalHeaderSize + uint64_t(Get16(header + 26)) + Get16(header + 28),
                    dataStart))
        return nullptr;
    auto* stream = new ZipReadStream(set, archive, member, raw, dataStart);
    if (!raw && member.method == kMethodDeflated) {
        if (inflateInit2(&stream->z_, -MAX_WBITS) != Z_OK) {
            stream->Release();
            return nullptr;
        }
        stream->inflating_ = true;
        stream->input_.reset(new (std::nothrow) uint8_t[kInputSize]);
    }
    return stream;
}

ZipReadStream::ZipReadStream(ZipFileSet& set, IStream* archive, const ZipMember& member, bool raw,
                             uint64_t dataStart)
    : member_(member), set_(&set), archive_(archive), dataStart_(dataStart), raw_(raw) {
    archive_->AddRef();
}

ZipReadStream::~ZipReadStream() {
    if (inflating_)
        inflateEnd(&z_);
    SafeRelease(archive_);
}

bool ZipReadStream::SeekArchiveTo(uint64_t rawPosition) {
    uint64_t wanted = 0;
    if (!ZipIo::Add(dataStart_, rawPosition, wanted))
        return false;
    uint64_t at = 0;
    if (ZipIo::Position(archive_, at) && at == wanted)
        return true;
    return ZipIo::SeekTo(archive_, wanted);
}

HRESULT ZipReadStream::Read(void* pv, ULONG cb, ULONG* pcbRead) {
    ULONG done = 0;
    HRESULT hr = S_OK;
    if (!pv && cb)
        hr = STG_E_INVALIDPOINTER;
    else if (raw_ || member_.method == kMethodStored)
        hr = ReadStored(static_cast<uint8_t*>(pv), cb, done);
    else
        hr = ReadDeflated(static_cast<uint8_t*>(pv), cb, done);
    if (pcbRead)
        *pcbRead = done;
    return hr;
}

HRESULT ZipReadStream::ReadStored(uint8_t* out, ULONG count, ULONG& done) {
    uint64_t limit = Size();
    if (pos_ >= limit || count == 0)
        return S_OK;
    rawPos_ = pos_;
    if (!SeekArchiveTo(rawPos_))
        return STG_E_READFAULT;
    ULONG want = ULONG(std::min<uint64_t>(count, limit - rawPos_));
    HRESULT hr = archive_->Read(out, want, &done);
    done = std::min(done, want);
    rawPos_ += done;
    pos_ += done;
    inflatedPos_ = pos_;
    return hr;
}

HRESULT ZipReadStream::ReadDeflated(uint8_t* out, ULONG count, ULONG& done) {
    if (!input_)
        return STG_E_INSUFFICIENTMEMORY;
    pos_ = std::min(pos_, member_.uncompressedSize);
    if (inflatedPos_ > pos_) {
        inflatedPos_ = 0;
        rawPos_ = 0;
        inflateReset(&z_);
        z_.avail_in = 0;
        z_.next_in = nullptr;
    }
    uint8_t scratch[kSkipSize];
    while (inflatedPos_ < pos_) {
        size_t produced = 0;
        HRESULT hr = Inflate(scratch, size_t(std::min<uint64_t>(kSkipSize, pos_ - inflatedPos_)), produced);
        inflatedPos_ += produced;
        if (FAILED(hr))
            return hr;
        if (produced == 0)
            return STG_E_READFAULT;
    }
    size_t want = size_t(std::min<uint64_t>(count, member_.uncompressedSize - pos_));
    size_t produced = 0;
    HRESULT hr = want ? Inflate(out, want, produced) : S_OK;
    pos_ += produced;
    inflatedPos_ = pos_;
    done = ULONG(produced);
    return hr;
}

HRESULT ZipReadStream::Inflate(uint8_t* out, size_t count, size_t& produced) {
    produced = 0;
    while (produced < count) {
        if (z_.avail_in == 0) {
            size_t fill = size_t(std::min<uint64_t>(kInputSize, member_.compressedSize - std::min(rawPos_, member_.compressedSize)));
            size_t got = 0;
            if (fill > 0 && (!SeekArchiveTo(rawPos_) || !ZipIo::Read(archive_, input_.get(), fill, got) || got != fill))
                return STG_E_READFAULT;
            rawPos_ += fill;
            z_.next_in = input_.get();
            z_.avail_in = uInt(fill);
        }
        z_.next_out = out + produced;
        z_.avail_out = uInt(std::min<size_t>(count - produced, 0x40000000u));
        uInt before = z_.avail_out;
        int result = inflate(&z_, Z_SYNC_FLUSH);
        produced += before - z_.avail_out;
        if (result == Z_STREAM_END)
            break;
        if (result < 0 || z_.msg != nullptr)
            return STG_E_READFAULT;
    }
    return S_OK;
}

HRESULT ZipReadStream::Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) {
    int64_t move = dlibMove.QuadPart;
    if (dwOrigin == STREAM_SEEK_SET) {
        pos_ = uint64_t(move);
    } else if (dwOrigin == STREAM_SEEK_CUR || dwOrigin == STREAM_SEEK_END) {
        uint64_t base = dwOrigin == STREAM_SEEK_CUR ? pos_ : Size();
        if (move < 0) {
            uint64_t back = uint64_t(-(move + 1)) + 1;
            pos_ = back > base ? 0 : base - back;
        } else {
            pos_ = base + uint64_t(move);
        }
    } else {
        return STG_E_INVALIDFUNCTION;
    }
    if (plibNewPosition)
        plibNewPosition->QuadPart = pos_;
    return S_OK;
}

HRESULT ZipReadStream::Stat(STATSTG* pstatstg, DWORD grfStatFlag) {
    HRESULT hr = StreamBase::Stat(pstatstg, grfStatFlag);
    if (FAILED(hr))
        return hr;
    pstatstg->cbSize.QuadPart = Size();
    pstatstg->grfMode = kReadOnlyMode;
    return hr;
}
