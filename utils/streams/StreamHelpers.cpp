// Helpers on any IStream.
#include "utils/streams/StreamHelpers.h"

#include <algorithm>
#include <memory>
#include <new>

namespace BrmUtils {

namespace {
constexpr uint64_t kMaxRequest = 0xFFFFFFFFu;
constexpr uint64_t kCopyBufferSize = 65536;
}  // namespace

bool ReadFully(IStream* stream, void* buffer, uint64_t count, uint64_t& bytesRead) {
    bytesRead = 0;
    if (!stream)
        return false;
    auto* out = static_cast<uint8_t*>(buffer);
    while (bytesRead < count) {
        const ULONG want = ULONG(std::min(count - bytesRead, kMaxRequest));
        ULONG got = 0;
        if (FAILED(stream->Read(out + bytesRead, want, &got)))
            return false;
        if (got == 0)
            break;
        bytesRead += std::min<uint64_t>(got, want);
    }
    return true;
}

bool WriteFully(IStream* stream, const void* buffer, uint64_t count, uint64_t& bytesWritten) {
    bytesWritten = 0;
    if (!stream)
        return false;
    const auto* in = static_cast<const uint8_t*>(buffer);
    while (bytesWritten < count) {
        const ULONG want = ULONG(std::min(count - bytesWritten, kMaxRequest));
        ULONG put = 0;
        if (FAILED(stream->Write(in + bytesWritten, want, &put)))
            return false;
        if (put == 0)
            break;
        bytesWritten += std::min<uint64_t>(put, want);
    }
    return true;
}

bool ReadExactly(IStream* stream, void* buffer, uint64_t count) {
    uint64_t got = 0;
    return ReadFully(stream, buffer, count, got) && got == count;
}

bool WriteExactly(IStream* stream, const void* buffer, uint64_t count) {
    uint64_t put = 0;
    return WriteFully(stream, buffer, count, put) && put == count;
}

uint64_t GetPosition(IStream* stream) {
    if (!stream)
        return 0;
    ULARGE_INTEGER position{};
    if (FAILED(stream->Seek(MakeLargeInteger(0), STREAM_SEEK_CUR, &position)))
        return 0;
    return position.QuadPart;
}

uint64_t SeekTo(IStream* stream, uint64_t position) {
    if (!stream)
        return 0;
    ULARGE_INTEGER reached{};
    if (FAILED(stream->Seek(MakeLargeInteger(int64_t(position)), STREAM_SEEK_SET, &reached)))
        return 0;
    return reached.QuadPart;
}

uint64_t GetSize(IStream* stream) {
    if (!stream)
        return 0;
    STATSTG stat{};
    if (FAILED(stream->Stat(&stat, STATFLAG_NONAME)))
        return 0;
    return stat.cbSize.QuadPart;
}

bool CopyStream(IStream* source, IStream* destination, uint64_t count, uint64_t& copied) {
    copied = 0;
    if (!source || !destination)
        return false;
    if (count == 0)
        return true;
    // A small copy needs no large buffer: callers copy page by page.
    const uint64_t bufferSize = std::min(count, kCopyBufferSize);
    std::unique_ptr<uint8_t[]> buffer(new (std::nothrow) uint8_t[bufferSize]);
    if (!buffer)
        return false;
    while (copied < count) {
        const ULONG want = ULONG(std::min(count - copied, bufferSize));
        ULONG got = 0;
        if (FAILED(source->Read(buffer.get(), want, &got)))
            return false;
        if (got == 0)
            break;
        got = std::min(got, want);
        uint64_t put = 0;
        const bool ok = WriteFully(destination, buffer.get(), got, put);
        copied += put;
        if (!ok || put < got)
            return false;
    }
    return true;
}

}  // namespace BrmUtils
