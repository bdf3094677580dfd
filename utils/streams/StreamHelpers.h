// Small helpers on any IStream: whole reads and writes, position and size,
// and copying between streams. A null stream is a failure everywhere.
#pragma once

#include <cstdint>

#include "platform/ObjIdl.h"

namespace BrmUtils {

// Reads until `count` bytes have come or a read delivers nothing. Count 0
// succeeds. False only when a read fails; a short result at the end of the
// stream is no failure, so compare bytesRead with count.
bool ReadFully(IStream* stream, void* buffer, uint64_t count, uint64_t& bytesRead);
// The same for writing.
bool WriteFully(IStream* stream, const void* buffer, uint64_t count, uint64_t& bytesWritten);

// True only if all `count` bytes were read: the common need of a parser.
bool ReadExactly(IStream* stream, void* buffer, uint64_t count);
// True only if all `count` bytes were written.
bool WriteExactly(IStream* stream, const void* buffer, uint64_t count);

// The current position; 0 on failure.
uint64_t GetPosition(IStream* stream);
// Seeks from the start and answers the new position; 0 on failure.
uint64_t SeekTo(IStream* stream, uint64_t position);
// The size from Stat (without a name); 0 on failure.
uint64_t GetSize(IStream* stream);

// Copies up to `count` bytes from the source's position to the destination's,
// in rounds through a buffer, until count is met or the source ends. False on
// a failed read or write or a short write; `copied` counts the bytes that
// reached the destination.
bool CopyStream(IStream* source, IStream* destination, uint64_t count, uint64_t& copied);

}  // namespace BrmUtils
