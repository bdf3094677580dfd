// Positioned reads and writes on an archive's byte stream. Offsets come from
// the file and may be anything: a position the stream can't represent is a
// failed seek, never a wrapped one.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/ObjIdl.h"

namespace ZipIo {

constexpr uint64_t kMaxPosition = uint64_t(INT64_MAX);

// The stream's length, by a seek to its end. False if the stream can't seek.
bool Length(IStream* stream, uint64_t& length);
// Where the stream stands now; false if it can't tell.
bool Position(IStream* stream, uint64_t& position);
bool SeekTo(IStream* stream, uint64_t position);
// Reads until `count` bytes are in or the stream delivers nothing more.
// False only on a failed read; `got` says how much arrived.
bool Read(IStream* stream, void* buffer, size_t count, size_t& got);
// Seek and read exactly `count` bytes; a short read is false.
bool ReadAt(IStream* stream, uint64_t position, void* buffer, size_t count);
// Writes all of `count` bytes; false on a failed or short write.
bool Write(IStream* stream, const void* buffer, size_t count);

// Adds without wrapping: false when the sum leaves the stream's range.
inline bool Add(uint64_t a, uint64_t b, uint64_t& sum) {
    if (a > kMaxPosition || b > kMaxPosition - a)
        return false;
    sum = a + b;
    return true;
}

}  // namespace ZipIo
