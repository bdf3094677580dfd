// Finding the end record: the tail of the file is read backwards in growing
// chunks, and the highest signature with room for a whole record wins. The
// chunk sizes fix how far back the search reaches (a comment of at most
// 32789 bytes in a file of 64 KiB or more); that reach is deliberate.
#include "zipcontainer/ZipEndRecord.h"

#include <algorithm>
#include <cstring>

#include "zipcontainer/ZipFormat.h"
#include "zipcontainer/ZipIo.h"

using namespace ZipFormat;

namespace {

constexpr size_t kFirstChunk = 42;
constexpr size_t kSecondChunk = 4096;

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

// Searches the tail. On success `buffer` holds the last `filled` bytes of the
// file at its end and `found` is the record's index in those bytes.
bool FindRecord(IStream* stream, uint64_t length, std::vector<uint8_t>& buffer, size_t& filled, size_t& found) {
    size_t capacity = size_t(std::min<uint64_t>(length, ZipEndRecord::kSearchLimit));
    buffer.assign(capacity, 0);
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
        if (!ZipIo::ReadAt(stream, length - filled - chunk, buffer.data() + start, chunk))
            return false;
        filled += chunk;
        if (!first)
            addedAfterFirst += chunk;
        first = false;
        // Buffer positions are counted from `start`; the new chunk's bytes
        // are tested from its last one down.
        for (size_t q = chunk; q-- > 0;) {
            if (q + kEndRecordSize <= filled && Get32(buffer.data() + start + q) == kEndRecordSignature) {
                found = start + q;
                return true;
            }
            if (filled >= ZipEndRecord::kSearchLimit)
                return false;
        }
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
    std::vector<uint8_t> buffer;
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
