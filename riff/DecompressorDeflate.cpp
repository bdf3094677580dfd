// DecompressorDeflate: zlib's inflate over a bounded IStream source.
#include "riff/DecompressorDeflate.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace KvdCpr {

namespace {
constexpr uint64_t kSkipStep = 1024;
}  // namespace

DecompressorDeflate::DecompressorDeflate() {
    std::memset(&zstream, 0, sizeof zstream);
}

DecompressorDeflate::~DecompressorDeflate() {
    // Owners are meant to Close first; ending zlib here as well costs nothing
    // and keeps an owner's slip from leaking zlib's state.
    if (zlibReady) inflateEnd(&zstream);
}

bool DecompressorDeflate::Open(IStream* source, uint64_t compressedSize, uint64_t uncompressedSize,
                               BrmUtils::Any params) {
    DeflateParams settings;
    if (const DeflateParams* given = params.GetPtr<DeflateParams>()) settings = *given;

    if (!DecompressorBase::Open(source, compressedSize, uncompressedSize, std::move(params))) return false;
    std::memset(&zstream, 0, sizeof zstream);
    finished = false;
    inputPosition = 0;
    inputEnd = 0;
    int windowBits = settings.raw ? -settings.windowBits : settings.windowBits;
    if (inflateInit2(&zstream, windowBits) != Z_OK) return false;  // stays open; Close ends it
    zlibReady = true;
    // A block, or the whole input when that is smaller (a section of a few
    // hundred bytes needs no 64 KiB).
    const uint64_t capacity = std::max<uint64_t>(std::min(compressedSize, kInputBlockSize), 1);
    if (inputCapacity < capacity) {
        input.reset(new uint8_t[capacity]);
        inputCapacity = capacity;
    }
    return true;
}

bool DecompressorDeflate::Close() {
    if (open && zlibReady) {
        inflateEnd(&zstream);
        zlibReady = false;
    }
    return DecompressorBase::Close();
}

bool DecompressorDeflate::Refill() {
    inputPosition = 0;
    inputEnd = 0;
    uint64_t ask = std::min(compressedRemaining, inputCapacity);
    if (ask == 0) return true;
    uint64_t got = 0;
    if (!ReadSource(input.get(), ask, got)) return false;
    // Only the bytes that came go to zlib: a source that ends before the
    // deflate data do is a truncated file, and gives a short read.
    inputEnd = got;
    return true;
}

bool DecompressorDeflate::Inflate(uint8_t* buffer, uint64_t count, uint64_t& delivered) {
    while (delivered < count && !finished) {
        if (inputPosition == inputEnd) {
            if (!Refill()) return false;
            if (inputEnd == 0) {
                finished = true;  // the source is exhausted
                break;
            }
        }
        zstream.next_in = input.get() + inputPosition;
        zstream.avail_in = uInt(inputEnd - inputPosition);
        while (zstream.avail_in > 0 && delivered < count && !finished) {
            uInt room = uInt(std::min<uint64_t>(count - delivered, UINT_MAX));
            uInt inBefore = zstream.avail_in;
            zstream.next_out = buffer + delivered;
            zstream.avail_out = room;
            zstream.total_in = 0;
            zstream.total_out = 0;
            int rc = inflate(&zstream, Z_SYNC_FLUSH);
            // Anything but progress or the end is a failure: a negative code,
            // a message, or a request for a dictionary the format never has.
            if ((rc != Z_OK && rc != Z_STREAM_END) || zstream.msg != nullptr) return false;
            uint64_t produced = room - zstream.avail_out;
            uint64_t consumed = inBefore - zstream.avail_in;
            delivered += produced;
            Deliver(produced);
            inputPosition += consumed;
            if (rc == Z_STREAM_END) {
                finished = true;
            } else if (produced == 0 && consumed == 0) {
                return false;  // zlib made no progress with room on both sides
            }
        }
    }
    return true;
}

bool DecompressorDeflate::Read(void* buffer, uint64_t count, uint64_t& bytesRead) {
    bytesRead = 0;
    if (!open || !zlibReady) return false;
    uint64_t wanted = std::min(uncompressedRemaining, count);
    if (wanted == 0) return true;
    return Inflate(static_cast<uint8_t*>(buffer), wanted, bytesRead);
}

bool DecompressorDeflate::Skip(uint64_t count) {
    if (count == 0) return true;
    if (!open || !zlibReady) return false;
    uint8_t scratch[kSkipStep];
    while (count > 0) {
        uint64_t step = std::min(count, kSkipStep);
        uint64_t got = 0;
        uint64_t wanted = std::min(step, uncompressedRemaining);
        if (!Inflate(scratch, wanted, got) || got < step) return false;
        count -= step;
    }
    return true;
}

}  // namespace KvdCpr
