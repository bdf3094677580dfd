// WJmvFile: the thumbnail of an exchange metafile, from the object archive
// or, when the file is none, from the RIFF form.
#include "fileinfo/WJmvFile.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include "fileinfo/KvdDocumentInfo.h"
#include "riff/FourCC.h"
#include "riff/RiffReader.h"
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
    // A failed archive read may leave the stream anywhere.
    if (!Rewind(stream)) return {};
    auto reader = std::make_unique<KvdFileIO::RiffReader>(stream);
    uint32_t form = 0;
    if (!reader->Open(form)) return {};
    if (form != KvdFileIO::FourCC("JMV1")) {
        reader->Close();
        return {};
    }
    // The form has no row in the form table, so its version is 0 and the
    // scan takes a `vrsn` of 0 only.
    KvdDocumentInfo document(reader.release(), form);
    if (!document.Scan(KvdDocumentInfo::kScanThumbnail) || document.dibHeader.biSize == 0) return {};
    return document.PackedDib();
}
