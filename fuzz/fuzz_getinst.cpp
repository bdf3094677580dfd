// Fuzz target for the readers behind the factory: arbitrary bytes opened as
// a drawing document and as an exchange metafile, then every property read
// in both types, the thumbnail as packed DIB, bitmap and icon.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "fileinfo/IFileInfo.h"
#include "utils/streams/MemStream.h"

namespace {

void Exercise(IFileInfo* info) {
    const uint32_t count = info->GetCount();
    for (uint32_t i = 0; i < count + 1; ++i) {
        PROPERTYKEY key{};
        if (FAILED(info->GetAt(i, &key))) continue;
        PROPVARIANT value;
        value.vt = VT_EMPTY;
        info->GetValue(&key, &value);
        PropVariantClear(&value);
        PROPSPEC spec;
        spec.ulKind = PRSPEC_PROPID;
        spec.propid = key.pid;
        value.vt = VT_EMPTY;
        info->ReadValue(&key.fmtid, &spec, &value);
        PropVariantClear(&value);
    }
    DibBlock dib = info->ReadPreviewDib();
    std::free(dib.data);
    uint8_t hasAlpha = 0;
    if (HBITMAP bitmap = info->GetBitmap(SIZE{48, 32}, 0, true, &hasAlpha)) DeleteObject(bitmap);
    if (HICON icon = info->GetIcon(nullptr, 16)) DestroyIcon(icon);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    for (EFileFormat format : {FileFormatDrawing, FileFormatMetafile}) {
        IStream* stream = BrmUtils::CreateMemStreamOnBytes(data, size);
        if (!stream) return 0;
        if (IFileInfo* info = IFileInfo::GetInst(stream, format)) {
            Exercise(info);
            info->Release();
        }
        stream->Release();
    }
    return 0;
}
