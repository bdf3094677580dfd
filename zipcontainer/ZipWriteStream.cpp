// Writing a member. The local header goes out first with what is known;
// once the data are complete it is rewritten in place with the CRC and the
// sizes, or, for a member too large for 32-bit sizes, it says "data
// descriptor" and the values follow the data with 64-bit sizes.
#include "zipcontainer/ZipWriteStream.h"

#include <algorithm>

#include "zipcontainer/ZipFormat.h"
#include "zipcontainer/ZipHeaders.h"
#include "zipcontainer/ZipIo.h"

using namespace ZipFormat;

namespace {

constexpr size_t kOutputSize = 65536;
constexpr uint64_t kPageSize = 4096;
constexpr size_t kKeptPages = 10;
constexpr DWORD kWriteMode = 0x08000001;  // STGM_SIMPLE, write

// Flag bits 1-2 of a deflated member say how hard it was compressed.
int DeflateLevel(uint16_t flags) {
    switch ((flags >> 1) & 3) {
        case 1: return 9;
        case 2: return 2;
        case 3: return 1;
        default: return 6;
    }
}

uint32_t EmptyCrc() { return uint32_t(crc32(0L, Z_NULL, 0)); }

}  // namespace

ZipWriteStream* ZipWriteStream::Create(ZipFileSet& set, ZipArchive& target, ZipMember member, bool raw,
                                       bool randomAccess) {
    IStream* archive = target.Stream();
    if (!archive)
        return nullptr;
    auto* stream = new ZipWriteStream(set, target, std::move(member), raw, randomAccess);
    // Until it is on the table the stream has nothing to complete; it is
    // dropped without Close.
    auto fail = [&]() -> ZipWriteStream* {
        if (stream->deflating_)
            deflateEnd(&stream->z_);
        stream->deflating_ = false;
        stream->index_ = SIZE_MAX;
        stream->Release();
        return nullptr;
    };
    if (stream->deflating_ &&
        deflateInit2(&stream->z_, DeflateLevel(stream->member_.flags), Z_DEFLATED, -MAX_WBITS, 8,
                     Z_DEFAULT_STRATEGY) != Z_OK) {
        stream->deflating_ = false;
        return fail();
    }
    ZipMember& m = stream->member_;
    m.localHeaderOffset = target.end;
    std::vector<uint8_t> header = ZipHeaders::Local(m, true);
    stream->localExtraLength_ = ZipHeaders::LocalExtraLength(m);
    if (!ZipIo::SeekTo(archive, target.end) || !ZipIo::Write(archive, header.data(), header.size()))
        return fail();
    stream->dataStart_ = target.end + header.size();
    m.openForWrite = true;
    stream->index_ = target.AddMember(m);
    target.modified = true;
    return stream;
}

ZipWriteStream::ZipWriteStream(ZipFileSet& set, ZipArchive& target, ZipMember member, bool raw, bool randomAccess)
    : member_(std::move(member)), set_(&set), target_(target), raw_(raw), randomAccess_(randomAccess) {
    deflating_ = !raw_ && member_.method == kMethodDeflated;
    crc_ = EmptyCrc();
    index_ = SIZE_MAX;
}

ZipWriteStream::~ZipWriteStream() {
    if (index_ != SIZE_MAX)
        Close();
    if (deflating_)
        deflateEnd(&z_);
}

HRESULT ZipWriteStream::Write(const void* pv, ULONG cb, ULONG* pcbWritten) {
    ULONG done = 0;
    HRESULT hr = S_OK;
    if (!pv && cb)
        hr = STG_E_INVALIDPOINTER;
    else if (cb == 0)
        hr = S_OK;
    else if (deflating_)
        hr = WriteDeflated(static_cast<const uint8_t*>(pv), cb, done);
    else
        hr = WriteStored(static_cast<const uint8_t*>(pv), cb, done);
    if (pcbWritten)
        *pcbWritten = done;
    return hr;
}

HRESULT ZipWriteStream::FlushOutput() {
    if (outputFill_ == 0)
        return S_OK;
    IStream* archive = target_.Stream();
    // Other streams may have moved the archive's position meanwhile.
    if (!ZipIo::SeekTo(archive, dataStart_ + rawPos_) || !ZipIo::Write(archive, output_.data(), outputFill_))
        return STG_E_WRITEFAULT;
    rawPos_ += outputFill_;
    outputFill_ = 0;
    return S_OK;
}

HRESULT ZipWriteStream::WriteDeflated(const uint8_t* data, ULONG count, ULONG& done) {
    if (output_.empty())
        output_.resize(kOutputSize);
    crc_ = uint32_t(crc32(crc_, data, count));
    z_.next_in = const_cast<Bytef*>(data);
    z_.avail_in = count;
    while (z_.avail_in > 0) {
        z_.next_out = output_.data() + outputFill_;
        z_.avail_out = uInt(kOutputSize - outputFill_);
        int result = deflate(&z_, Z_NO_FLUSH);
        outputFill_ = kOutputSize - z_.avail_out;
        if (result != Z_OK)
            return E_FAIL;
        if (outputFill_ == kOutputSize) {
            HRESULT hr = FlushOutput();
            if (FAILED(hr))
                return hr;
        }
    }
    done = count;
    pos_ += count;
    size_ = std::max(size_, pos_);
    return S_OK;
}

HRESULT ZipWriteStream::WriteStored(const uint8_t* data, ULONG count, ULONG& done) {
    IStream* archive = target_.Stream();
    uint64_t at = pos_;
    uint64_t where = 0;
    if (!archive || !ZipIo::Add(dataStart_, at, where) || !ZipIo::SeekTo(archive, where))
        return STG_E_WRITEFAULT;
    HRESULT hr = archive->Write(data, count, &done);
    done = std::min(done, count);
    if (!raw_) {
        if (randomAccess_)
            UpdatePageCrcs(at, data, done);
        else
            crc_ = uint32_t(crc32(crc_, data, done));
    }
    pos_ += done;
    rawPos_ = pos_;
    size_ = std::max(size_, pos_);
    if (FAILED(hr))
        return hr;
    return done == count ? S_OK : STG_E_WRITEFAULT;
}

void ZipWriteStream::UpdatePageCrcs(uint64_t at, const uint8_t* data, size_t count) {
    if (count == 0)
        return;
    uint64_t end = at + count;
    for (uint64_t page = at / kPageSize; page * kPageSize < end; ++page) {
        if (pages_.size() <= page)
            pages_.resize(size_t(page) + 1);
        ZipPageCrc& p = pages_[size_t(page)];
        uint64_t pageStart = page * kPageSize;
        uint32_t from = uint32_t(std::max(at, pageStart) - pageStart);
        uint32_t to = uint32_t(std::min(end, pageStart + kPageSize) - pageStart);
        const uint8_t* bytes = data + (pageStart + from - at);
        if (p.crcLength == from) {
            p.crc = uint32_t(crc32(from == 0 ? EmptyCrc() : p.crc, bytes, to - from));
            p.crcLength = to;
        } else {
            p.crcLength = ZipPageCrc::kOutOfOrder;
        }
        if (page < kKeptPages) {
            if (p.bytes.empty())
                p.bytes.resize(kPageSize);
            std::copy(bytes, bytes + (to - from), p.bytes.begin() + from);
        }
    }
}

uint32_t ZipWriteStream::PagedCrc() {
    uint32_t crc = EmptyCrc();
    std::vector<uint8_t> page;
    for (uint64_t start = 0, index = 0; start < size_; start += kPageSize, ++index) {
        uint32_t length = uint32_t(std::min(kPageSize, size_ - start));
        const ZipPageCrc* p = index < pages_.size() ? &pages_[size_t(index)] : nullptr;
        if (p && p->crcLength == length) {
            crc = uint32_t(crc32_combine(crc, p->crc, length));
        } else if (p && !p->bytes.empty()) {
            crc = uint32_t(crc32(crc, p->bytes.data(), length));
        } else {
            page.resize(length);
            if (!ZipIo::ReadAt(target_.Stream(), dataStart_ + start, page.data(), length))
                return 0;
            crc = uint32_t(crc32(crc, page.data(), length));
        }
    }
    return crc;
}

HRESULT ZipWriteStream::Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) {
    int64_t move = dlibMove.QuadPart;
    uint64_t base = 0;
    if (dwOrigin == STREAM_SEEK_SET)
        base = 0;
    else if (dwOrigin == STREAM_SEEK_CUR)
        base = pos_;
    else if (dwOrigin == STREAM_SEEK_END)
        base = size_;
    else
        return STG_E_INVALIDFUNCTION;
    if (move < 0) {
        uint64_t back = uint64_t(-(move + 1)) + 1;
        pos_ = back > base ? 0 : base - back;
    } else {
        pos_ = base + uint64_t(move);
    }
    if (plibNewPosition)
        plibNewPosition->QuadPart = pos_;
    return S_OK;
}

HRESULT ZipWriteStream::Stat(STATSTG* pstatstg, DWORD grfStatFlag) {
    HRESULT hr = StreamBase::Stat(pstatstg, grfStatFlag);
    if (FAILED(hr))
        return hr;
    pstatstg->cbSize.QuadPart = size_;
    pstatstg->grfMode = kWriteMode;
    return hr;
}

void ZipWriteStream::Close() {
    IStream* archive = target_.Stream();
    if (deflating_) {
        if (output_.empty())
            output_.resize(kOutputSize);
        z_.next_in = nullptr;
        z_.avail_in = 0;
        // With room in the buffer every call makes progress; Z_OK means the
        // buffer is full and has to go out before the next round.
        for (;;) {
            z_.next_out = output_.data() + outputFill_;
            z_.avail_out = uInt(kOutputSize - outputFill_);
            int result = deflate(&z_, Z_FINISH);
            outputFill_ = kOutputSize - z_.avail_out;
            if (result != Z_OK || FAILED(FlushOutput()))
                break;
        }
        FlushOutput();
    } else if (!raw_ && randomAccess_ && size_ > 0) {
        crc_ = PagedCrc();
    }

    ZipMember& m = member_;
    if (!raw_) {
        m.crc32 = crc_;
        m.uncompressedSize = size_;
    }
    m.compressedSize = deflating_ ? rawPos_ : size_;
    if (m.versionNeeded < kVersionZip64) {
        if (dataStart_ + m.compressedSize > kMax32 || m.uncompressedSize >= kMax32)
            m.versionNeeded = kVersionZip64;
        else
            m.versionNeeded = m.compressedSize >= kMax32 ? kVersionZip64 : kVersionDefault;
    }
    if (!raw_ && (m.uncompressedSize >= kMax32 || m.compressedSize >= kMax32))
        m.flags |= kFlagDataDescriptor;
    m.openForWrite = false;

    uint64_t end = dataStart_ + m.compressedSize;
    bool ok = archive && ZipIo::SeekTo(archive, end);
    if (ok && (m.flags & kFlagDataDescriptor)) {
        std::vector<uint8_t> descriptor = ZipHeaders::DataDescriptor(m);
        ok = ZipIo::Write(archive, descriptor.data(), descriptor.size());
        end += ok ? descriptor.size() : 0;
    }
    target_.UpdateMember(index_, m);
    target_.end = end;
    if (ok) {
        std::vector<uint8_t> header = ZipHeaders::Local(m, false, localExtraLength_);
        if (ZipIo::SeekTo(archive, m.localHeaderOffset))
            ZipIo::Write(archive, header.data(), header.size());
        ZipIo::SeekTo(archive, end);
    }
    index_ = SIZE_MAX;
}
