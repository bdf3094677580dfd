// The shared state of the decompressors, and DecompressorNone, which copies.
#include "riff/Decompressor.h"

#include <algorithm>

namespace KvdCpr {

namespace {
// IStream::Read takes a 32-bit count.
constexpr uint64_t kMaxRequest = 0xFFFFFFFFu;
// Skipped bytes go through a scratch buffer of this size on the stack.
constexpr uint64_t kSkipStep = 1024;
}  // namespace

DecompressorBase::~DecompressorBase() {
    SafeRelease(stream);
}

bool DecompressorBase::Open(IStream* source, BrmUtils::Any params) {
    return Open(source, kUnlimited, kUnlimited, std::move(params));
}

bool DecompressorBase::Open(IStream* source, uint64_t compressedSize, uint64_t uncompressedSize,
                            BrmUtils::Any) {
    if (open) {
        // The reference was handed over: drop it, keep the first stream.
        if (source) source->Release();
        return false;
    }
    SafeRelease(stream);
    stream = source;
    compressedPosition = 0;
    uncompressedPosition = 0;
    compressedRemaining = compressedSize;
    uncompressedRemaining = uncompressedSize;
    open = true;
    return true;
}

bool DecompressorBase::Close() {
    if (!open) return false;
    SafeRelease(stream);
    open = false;
    return true;
}

bool DecompressorBase::ReadSource(void* buffer, uint64_t count, uint64_t& bytesRead) {
    bytesRead = 0;
    if (!stream) return false;
    count = std::min(count, compressedRemaining);
    auto* out = static_cast<uint8_t*>(buffer);
    while (bytesRead < count) {
        ULONG request = ULONG(std::min(count - bytesRead, kMaxRequest));
        ULONG got = 0;
        if (FAILED(stream->Read(out + bytesRead, request, &got))) return false;
        if (got == 0) break;
        bytesRead += std::min<uint64_t>(got, request);
    }
    compressedPosition += bytesRead;
    compressedRemaining -= bytesRead;
    return true;
}

void DecompressorBase::Deliver(uint64_t count) {
    uncompressedPosition += count;
    uncompressedRemaining -= std::min(count, uncompressedRemaining);
}

bool DecompressorNone::Read(void* buffer, uint64_t count, uint64_t& bytesRead) {
    bytesRead = 0;
    if (!open) return false;
    uint64_t wanted = std::min(uncompressedRemaining, count);
    if (wanted == 0) return true;
    if (!ReadSource(buffer, wanted, bytesRead)) return false;
    Deliver(bytesRead);
    return true;
}

bool DecompressorNone::Skip(uint64_t count) {
    if (count == 0) return true;
    if (!open) return false;
    uint8_t scratch[kSkipStep];
    while (count > 0) {
        uint64_t step = std::min({count, kSkipStep, uncompressedRemaining});
        uint64_t got = 0;
        if (step == 0 || !Read(scratch, step, got) || got < step) return false;
        count -= got;
    }
    return true;
}

}  // namespace KvdCpr
