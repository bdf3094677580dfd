// Finding the end record: the tail of the file is read backwards in growing
// chunks, and the highest signature with room for a whole record wins. The
// chunk sizes fix how far back the search reaches (a comment of at most
// 32789 bytes in a file of 64 KiB or more); that reach is deliberate.
#include "zipcontainer/ZipEndRecord.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>

#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#endif

#include "utils/streams/StreamInterfaces.h"
#include "zipcontainer/ZipFormat.h"
#include "zipcontainer/ZipIo.h"

using namespace ZipFormat;

namespace {

constexpr size_t kFirstChunk = 42;
constexpr size_t kSecondChunk = 4096;

// The tail of the file as the search reads it: the stream's own bytes when
// it holds the whole tail in memory, seen in place (a document that is no
// archive has all of its tail searched, and a copy of it would cost more than
// the search); else a block of its own, left uninitialised, that the search
// reads into chunk by chunk.
class TailBuffer {
public:
    // True when `stream` shows the tail in place; the bytes then stay valid
    // until the stream is next read or sought.
    bool View(IStream* stream, uint64_t offset, size_t size) {
        BrmUtils::IStreamView* view = nullptr;
        if (FAILED(stream->QueryInterface(BrmUtils::IID_IStreamView, reinterpret_cast<void**>(&view))) || !view)
            return false;
        view_ = view->View(offset, size);
        view->Release();
        size_ = size;
        return view_ != nullptr;
    }
    void Allocate(size_t size) {
        bytes_ = std::make_unique_for_overwrite<uint8_t[]>(size);
        size_ = size;
    }
    const uint8_t* data() const { return view_ ? view_ : bytes_.get(); }
    uint8_t* writable() { return bytes_.get(); }
    size_t size() const { return size_; }

private:
    const uint8_t* view_ = nullptr;
    std::unique_ptr<uint8_t[]> bytes_;
    size_t size_ = 0;
};

// The fields of a zip64 end record that this layer uses; those that lie
// beyond the record as stored count as zero.
struct Zip64Values {
    uint64_t entriesOnDisk = 0;
    uint64_t entries = 0;
    uint64_t directorySize = 0;
    uint64_t directoryOffset = 0;
    uint16_t directoryMethod = 0;
    uint16_t directoryEncryption = 0;
};

// The highest position below `end` in `bytes` where the end record's
// signature starts, or `none`; the three bytes after `end` can be read. A
// document that is no archive has all of its tail searched, so blocks of 64
// positions are tested at once for the signature's first two bytes ("PK",
// which random data holds once in 64 KiB) before any is looked at closer.
size_t LastSignatureBytewise(const uint8_t* bytes, size_t end, size_t none) {
    while (end > 0) {
        const void* hit = memrchr(bytes, 'P', end);
        if (!hit)
            return none;
        size_t at = size_t(static_cast<const uint8_t*>(hit) - bytes);
        if (Get32(bytes + at) == kEndRecordSignature)
            return at;
        end = at;
    }
    return none;
}

#if defined(__x86_64__) && defined(__GNUC__)
// Positions at..at+31 whose byte is 'P' and whose next byte is 'K', as bits.
__attribute__((target("avx2"))) inline uint32_t PairMask32(const uint8_t* at) {
    const __m256i first = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
    const __m256i second = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at + 1));
    const __m256i pairs = _mm256_and_si256(_mm256_cmpeq_epi8(first, _mm256_set1_epi8('P')),
                                           _mm256_cmpeq_epi8(second, _mm256_set1_epi8('K')));
    return uint32_t(_mm256_movemask_epi8(pairs));
}

__attribute__((target("avx2"))) size_t LastSignatureWide(const uint8_t* bytes, size_t end, size_t none) {
    while (end >= 64) {
        const size_t block = end - 64;
        for (uint64_t mask = PairMask32(bytes + block) | (uint64_t(PairMask32(bytes + block + 32)) << 32); mask; mask &= ~(uint64_t(1) << (63 - __builtin_clzll(mask)))) {
            const size_t at = block + size_t(63 - __builtin_clzll(mask));
            if (Get32(bytes + at) == kEndRecordSignature)
                return at;
        }
        end = block;
    }
    return LastSignatureBytewise(bytes, end, none);
}

size_t LastSignature(const uint8_t* bytes, size_t end, size_t none) {
    static const bool wide = __builtin_cpu_supports("avx2");
    return wide ? LastSignatureWide(bytes, end, none) : LastSignatureBytewise(bytes, end, none);
}
#else
size_t LastSignature(const uint8_t* bytes, size_t end, size_t none) { return LastSignatureBytewise(bytes, end, none); }
#endif

// Searches the tail. On success `buffer` holds the last `filled` bytes of the
// file at its end and `found` is the record's index in those bytes. A buffer
// of its own is not cleared first: every byte that is looked at has been
// read. The chunks are the same whether the tail is read or seen in place,
// so the reach of the search is the same.
bool FindRecord(IStream* stream, uint64_t length, TailBuffer& buffer, size_t& filled, size_t& found) {
    const size_t capacity = size_t(std::min<uint64_t>(length, ZipEndRecord::kSearchLimit));
    const bool viewed = buffer.View(stream, length - capacity, capacity);
    if (!viewed)
        buffer.Allocate(capacity);
    filled = 0;
    size_t addedAfterFirst = 0;
    bool first = true;
    while (filled < length) {
        size_t chunk = first ? kFirstChunk : (addedAfterFirst == 0 ? kSecondChunk : addedAfterFirst);
        chunk = size_t(std::min<uint64_t>(chunk, length - filled));
        chunk = std::min(chunk, capacity - filled);
        if (chunk == 0)
            return false;
        size_t start = capacity - filled - chunk;
        const uint8_t* bytes = buffer.data() + start;
        if (!viewed && !ZipIo::ReadAt(stream, length - filled - chunk, buffer.writable() + start, chunk))
            return false;
        filled += chunk;
        if (!first)
            addedAfterFirst += chunk;
        first = false;
        // Positions q of the new chunk, from its last one down, that leave
        // room for a whole record before the file's end; once the buffer is
        // full only the chunk's last byte is still tried.
        size_t end = filled >= kEndRecordSize ? std::min(chunk, filled - kEndRecordSize + 1) : 0;
        size_t lowest = filled >= ZipEndRecord::kSearchLimit ? chunk - 1 : 0;
        if (end > lowest) {
            size_t q = LastSignature(bytes + lowest, end - lowest, SIZE_MAX);
            if (q != SIZE_MAX) {
                found = start + lowest + q;
                return true;
            }
        }
        if (filled >= ZipEndRecord::kSearchLimit)
            return false;
    }
    return false;
}

// Follows the locator in front of the end record. False only for what fails
// the whole read; a missing or unreadable record just leaves zip64 off.
bool ReadZip64(IStream* stream, uint64_t length, const uint8_t* locator, bool& present, Zip64Values& values) {
    present = false;
    if (Get32(locator) != kZip64LocatorSignature)
        return true;
    if (Get32(locator + 4) != 0)
        return false;
    uint64_t offset = Get64(locator + 8);
    uint8_t record[76] = {};
    uint64_t afterHead = 0;
    if (!ZipIo::Add(offset, 12, afterHead) || afterHead > length || !ZipIo::ReadAt(stream, offset, record, 12))
        return true;
    if (Get32(record) == kZip64EndRecordSignature) {
        uint64_t rest = Get64(record + 4);
        uint64_t end = 0;
        if (!ZipIo::Add(afterHead, rest, end) || end > length)
            return true;
        size_t wanted = size_t(std::min<uint64_t>(rest, sizeof(record) - 12));
        if (!ZipIo::ReadAt(stream, afterHead, record + 12, wanted))
            return true;
    } else {
        // A locator that names no record: the fields count as zero, so the
        // plain record's values decide unless they point to zip64.
        std::memset(record, 0, sizeof(record));
    }
    present = true;
    values.entriesOnDisk = Get64(record + 24);
    values.entries = Get64(record + 32);
    values.directorySize = Get64(record + 40);
    values.directoryOffset = Get64(record + 48);
    if (record[14] >= 62) {
        values.directoryMethod = Get16(record + 56);
        values.directoryEncryption = Get16(record + 74);
    }
    return true;
}

}  // namespace

bool ZipEndRecord::Read(IStream* stream) {
    uint64_t length = 0;
    if (!ZipIo::Length(stream, length) || length < 4)
        return false;
    TailBuffer buffer;
    size_t filled = 0;
    size_t at = 0;
    if (!FindRecord(stream, length, buffer, filled, at))
        return false;
    const uint8_t* rec = buffer.data() + at;
    size_t bufferStart = buffer.size() - filled;
    position = length - (buffer.size() - at);

    if (Get16(rec + 4) != 0 || Get16(rec + 6) != 0)
        return false;
    uint16_t plainOnDisk = Get16(rec + 8);
    uint16_t plainEntries = Get16(rec + 10);
    uint32_t plainSize = Get32(rec + 12);
    uint32_t plainOffset = Get32(rec + 16);
    size_t commentLength = std::min<size_t>(Get16(rec + 20), buffer.size() - at - kEndRecordSize);
    comment.assign(rec + kEndRecordSize, rec + kEndRecordSize + commentLength);

    Zip64Values z;
    zip64 = false;
    if (position >= 21) {
        uint8_t locator[kZip64LocatorSize];
        if (at - bufferStart >= kZip64LocatorSize)
            std::memcpy(locator, rec - kZip64LocatorSize, kZip64LocatorSize);
        else if (!ZipIo::ReadAt(stream, position - kZip64LocatorSize, locator, kZip64LocatorSize))
            return false;
        if (!ReadZip64(stream, length, locator, zip64, z))
            return false;
        if (zip64 && (z.directoryMethod != 0 || z.directoryEncryption != 0))
            return false;
    }

    uint64_t onDisk = (plainOnDisk > 65534 && zip64) ? z.entriesOnDisk : plainOnDisk;
    entries = (plainEntries == 65535 && zip64) ? z.entries : plainEntries;
    if (onDisk != entries)
        return false;
    directorySize = (plainSize == kMax32 && zip64) ? z.directorySize : plainSize;
    directoryOffset = (plainOffset == kMax32 && zip64) ? z.directoryOffset : plainOffset;
    return true;
}
