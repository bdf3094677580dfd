// The stream interfaces of this library's own, beside IStream: error text and
// availability of a stream, the origin of a file stream, bytes seen in place,
// and the buffer under a memory stream. Objects answer them through
// QueryInterface.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/Unknown.h"
#include "utils/strings/BrmString.h"

namespace BrmUtils {

namespace Memory {
class Buffer;
}

constexpr IID IID_IStreamInfo = {0x48921603, 0x22C9, 0x37A2, {0x4C, 0xB0, 0xFB, 0xDF, 0x0F, 0xB0, 0x3E, 0x49}};
constexpr IID IID_IStreamResourceLocator = {
    0x06720455, 0xB578, 0x0FA6, {0x46, 0x78, 0x0E, 0xFE, 0x61, 0x37, 0xF1, 0x68}};
constexpr IID IID_IStreamView = {0x5B0E8C41, 0x7A2D, 0x4F63, {0x9C, 0x1E, 0x3D, 0x84, 0xA6, 0x27, 0x5F, 0x90}};
constexpr IID IID_IMemBufferStream = {0x8E7D1EFE, 0xBB5A, 0x6492, {0x4E, 0xB3, 0x66, 0x22, 0xF3, 0x93, 0x8A, 0x52}};

// Offered by every stream of this library.
struct IStreamInfo : IUnknown {
    // True in every stream that has the interface at all.
    virtual bool IsAvailable() = 0;
    // The system's text of the stream's last failure; empty if none failed.
    virtual BrmPlatform::BrmStringW GetLastErrorText() = 0;

protected:
    ~IStreamInfo() = default;
};

// Offered by file streams: where the bytes come from, as a file URL.
struct IStreamResourceLocator : IUnknown {
    virtual BrmPlatform::BrmStringW GetResourceLocator() = 0;

protected:
    ~IStreamResourceLocator() = default;
};

// Offered by streams that hold the bytes they read in memory: a range seen
// where it lies, without a copy, for a reader that only looks at it (the
// search for a zip trailer through a document's tail). Null when the range
// is not held in one piece; the caller then reads it. The bytes stay valid
// until the next read, write or seek of the stream.
struct IStreamView : IUnknown {
    virtual const uint8_t* View(uint64_t offset, size_t length) = 0;

protected:
    ~IStreamView() = default;
};

// Offered by memory streams that stand on a Memory::Buffer. The buffer
// belongs to the stream and lives as long as the stream does.
struct IMemBufferStream : IUnknown {
    virtual Memory::Buffer* GetBuffer() = 0;

protected:
    ~IMemBufferStream() = default;
};

}  // namespace BrmUtils
