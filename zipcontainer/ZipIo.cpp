// Positioned access to an archive's byte stream, on the stream helpers.
#include "zipcontainer/ZipIo.h"

#include "utils/streams/StreamHelpers.h"

namespace ZipIo {

bool Length(IStream* stream, uint64_t& length) {
    ULARGE_INTEGER end{};
    if (!stream || FAILED(stream->Seek(MakeLargeInteger(0), STREAM_SEEK_END, &end)))
        return false;
    length = end.QuadPart;
    return true;
}

bool Position(IStream* stream, uint64_t& position) {
    ULARGE_INTEGER at{};
    if (!stream || FAILED(stream->Seek(MakeLargeInteger(0), STREAM_SEEK_CUR, &at)))
        return false;
    position = at.QuadPart;
    return true;
}

bool SeekTo(IStream* stream, uint64_t position) {
    if (!stream || position > kMaxPosition)
        return false;
    ULARGE_INTEGER at{};
    return SUCCEEDED(stream->Seek(MakeLargeInteger(int64_t(position)), STREAM_SEEK_SET, &at)) &&
           at.QuadPart == position;
}

bool Read(IStream* stream, void* buffer, size_t count, size_t& got) {
    uint64_t n = 0;
    bool ok = BrmUtils::ReadFully(stream, buffer, count, n);
    got = size_t(n);
    return ok;
}

bool ReadAt(IStream* stream, uint64_t position, void* buffer, size_t count) {
    return SeekTo(stream, position) && BrmUtils::ReadExactly(stream, buffer, count);
}

bool Write(IStream* stream, const void* buffer, size_t count) { return BrmUtils::WriteExactly(stream, buffer, count); }

}  // namespace ZipIo
