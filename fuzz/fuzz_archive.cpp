// Fuzz target for the object-archive reader of exchange metafiles: reads
// the summary and thumbnail of arbitrary bytes, and the same bytes through
// the metafile reader's bitmap path. The archive's one thrown error code is
// expected; anything else escaping is a fault.
#include <cstddef>
#include <cstdint>

#include "fileinfo/IFileInfo.h"
#include "riff/archive/JmvArchive.h"
#include "utils/streams/MemStream.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    IStream* stream = BrmUtils::CreateMemStreamOnBytes(data, size);
    if (!stream) return 0;
    JmvArchiveInfo info;
    stream->AddRef();
    try {
        ReadJmvArchive(info, stream);
    } catch (udi::UDI_RC) {
    }
    if (IFileInfo* reader = IFileInfo::GetInst(stream, FileFormatMetafile)) {
        DeleteObject(reader->GetBitmap(SIZE{32, 32}, 0, false, nullptr));
        reader->Release();
    }
    stream->Release();
    return 0;
}
