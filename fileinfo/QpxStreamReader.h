// QpxStreamReader: absolute, bounded reads from the source of a paint image.
// It knows how many bytes the stream holds, so every count or size taken
// from the file can be checked against what is left before anything is
// allocated by it.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "platform/ObjIdl.h"
#include "utils/streams/StreamHelpers.h"

class QpxStreamReader {
public:
    explicit QpxStreamReader(IStream* source) : stream(source) {
        if (!stream) return;
        ULARGE_INTEGER end{};
        if (SUCCEEDED(stream->Seek(MakeLargeInteger(0), STREAM_SEEK_END, &end))) size = end.QuadPart;
        Seek(0);
    }

    uint64_t Size() const { return size; }
    uint64_t Position() const { return position; }
    uint64_t Left() const { return position < size ? size - position : 0; }

    bool Seek(uint64_t to) {
        if (!stream || to > size) return false;
        if (FAILED(stream->Seek(MakeLargeInteger(int64_t(to)), STREAM_SEEK_SET, nullptr))) return false;
        position = to;
        return true;
    }
    bool Skip(uint64_t count) { return count <= Left() && Seek(position + count); }

    bool Read(void* buffer, uint64_t count) {
        if (count > Left()) return false;
        if (!BrmUtils::ReadExactly(stream, buffer, count)) return false;
        position += count;
        return true;
    }
    // `count` bytes into `bytes`, refused before allocating when the stream
    // cannot deliver them.
    bool Read(std::vector<uint8_t>& bytes, uint64_t count) {
        if (count > Left()) return false;
        bytes.resize(size_t(count));
        return Read(bytes.data(), count);
    }
    bool ReadU32(uint32_t& value) {
        uint8_t b[4];
        if (!Read(b, 4)) return false;
        value = Get32(b, 0);
        return true;
    }

    static uint32_t Get32(const uint8_t* bytes, size_t at) {
        return uint32_t(bytes[at]) | uint32_t(bytes[at + 1]) << 8 | uint32_t(bytes[at + 2]) << 16 |
               uint32_t(bytes[at + 3]) << 24;
    }
    static uint16_t Get16(const uint8_t* bytes, size_t at) { return uint16_t(bytes[at] | bytes[at + 1] << 8); }
    static uint64_t Get64(const uint8_t* bytes, size_t at) {
        return uint64_t(Get32(bytes, at)) | uint64_t(Get32(bytes, at + 4)) << 32;
    }

private:
    IStream* stream;
    uint64_t size = 0;
    uint64_t position = 0;
};
