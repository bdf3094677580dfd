// WJmvFile: the thumbnail of an exchange metafile, from the object archive
// or, when the file is none, from the RIFF form.
#include "fileinfo/WJmvFile.h"

#include <cstdlib>
#include <cstring>

#include "riff/archive/JmvArchive.h"

namespace {

DibBlock CopyToBlock(const std::vector<uint8_t>& bytes) {
    DibBlock block;
    if (bytes.empty()) return block;
    block.data = std::malloc(bytes.size());
    if (!block.data) return block;
    std::memcpy(block.data, bytes.data(), bytes.size());
    block.size = bytes.size();
    return block;
}

bool Rewind(IStream* stream) { return SUCCEEDED(stream->Seek(MakeLargeInteger(0), STREAM_SEEK_SET, nullptr)); }

}  // namespace

DibBlock WJmvFile::ReadPreviewDib() {
    if (!stream || !Rewind(stream)) return {};
    JmvArchiveInfo info;
    stream->AddRef();  // ReadJmvArchive takes this reference over
    // A thrown UDI_RC goes on to the guard around this call.
    ReadJmvArchive(info, stream);
    if (info.valid) {
        // The thumbnail bytes are a packed DIB already. An archive without
        // one has no preview: the RIFF form is not looked for.
        return CopyToBlock(info.thumbnail);
    }
    return ReadRiffPreview();
}

DibBlock WJmvFile::ReadRiffPreview() {
    // The RIFF scanner of the drawing documents reads this form; it is not
    // part of the library yet.
    return {};
}
