// RiffChunkNormal: reads, seeks and skips within the parent's stream.
#include "riff/RiffChunkNormal.h"

#include <algorithm>

#include "riff/FourCC.h"
#include "utils/streams/StreamHelpers.h"

namespace KvdFileIO {

namespace {
constexpr uint64_t kMaxSeek = uint64_t(INT64_MAX);

uint64_t SaturatingAdd(uint64_t a, uint64_t b) {
    return a + b < a ? UINT64_MAX : a + b;
}
}  // namespace

RiffChunkNormal::RiffChunkNormal(IStream* parent, uint32_t tag, bool list, uint64_t size, bool compressedArea)
    : RiffChunkBase(tag, list, size),
      parent(parent),
      start(BrmUtils::GetPosition(parent)),
      current(start),
      compressedArea(compressedArea),
      unbounded(compressedArea && (tag == kTagBitmap || tag == kTagBitmapT)) {
    if (parent) parent->AddRef();
}

RiffChunkNormal::~RiffChunkNormal() {
    SafeRelease(parent);
}

uint64_t RiffChunkNormal::End() const {
    return SaturatingAdd(start, size);
}

bool RiffChunkNormal::Read(void* buffer, uint64_t count, uint64_t& bytesRead) {
    bytesRead = 0;
    if (!unbounded) {
        uint64_t end = End();
        count = current < end ? std::min(count, end - current) : 0;
    }
    if (count == 0) return true;
    if (!buffer || !BrmUtils::ReadFully(parent, buffer, count, bytesRead)) {
        current = BrmUtils::GetPosition(parent);
        return false;
    }
    current += bytesRead;
    return true;
}

uint64_t RiffChunkNormal::Seek(int64_t offset, uint32_t origin) {
    uint64_t base;
    switch (origin) {
    case STREAM_SEEK_SET: base = start; break;
    case STREAM_SEEK_CUR: base = current; break;
    case STREAM_SEEK_END: base = End(); break;
    default: base = current; offset = 0; break;
    }

    // base + offset, where going below the start (or below 0) stops at the start.
    uint64_t target;
    if (offset < 0) {
        uint64_t back = uint64_t(-(offset + 1)) + 1;
        target = base >= back ? base - back : start;
    } else {
        target = SaturatingAdd(base, uint64_t(offset));
    }
    if (target < start)
        target = start;
    else if (!unbounded)
        target = std::min(target, End());
    target = std::min(target, kMaxSeek);

    if (target != current) target = BrmUtils::SeekTo(parent, target);
    current = target;
    return target >= start ? target - start : target;
}

bool RiffChunkNormal::Skip() {
    uint64_t end = SaturatingAdd(End(), size & 1);
    if (!parent) return end == 0;
    if (unbounded) {
        // The data may have run past the stated size; the next chunk then
        // begins where the reading stopped.
        ULARGE_INTEGER position;
        if (SUCCEEDED(parent->Seek(MakeLargeInteger(0), STREAM_SEEK_CUR, &position)) && position.QuadPart > end)
            return true;
    }
    if (end > kMaxSeek) return false;
    ULARGE_INTEGER position;
    if (FAILED(parent->Seek(MakeLargeInteger(int64_t(end)), STREAM_SEEK_SET, &position))) return false;
    return position.QuadPart == end;
}

}  // namespace KvdFileIO
