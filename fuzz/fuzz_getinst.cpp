// Fuzz target for the readers behind the factory: arbitrary bytes opened as
// a drawing document (a zip container first, then RIFF) and as an exchange
// metafile, then every property read in both types, the thumbnail as packed
// DIB, bitmap and icon, the first page previews and the text chunks. Seed it
// with the writers' documents (mksamples), the container ones included.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "fileinfo/IFileInfo.h"
#include "fileinfo/Variants.h"
#include "utils/streams/MemStream.h"

namespace {

struct CountingVisitor : PropertyVisitor {
    size_t characters = 0;
    void Visit(const void* record) override { characters += size_t(static_cast<const TextChunk*>(record)->length); }
};

void Exercise(IFileInfo* info) {
    const uint32_t count = info->GetCount();
    for (uint32_t i = 0; i < count + 1; ++i) {
        PROPERTYKEY key{};
        if (FAILED(info->GetAt(i, &key))) continue;
        PROPVARIANT value;
        value.vt = VT_EMPTY;
        info->GetValue(&key, &value);
        PropVariantClear(&value);
        value.vt = VT_EMPTY;
        fi::ReadDisplayValue(info, key, &value);
        PropVariantClear(&value);
    }
    DibBlock dib = info->ReadPreviewDib();
    std::free(dib.data);
    uint8_t hasAlpha = 0;
    if (HBITMAP bitmap = info->GetBitmap(SIZE{48, 32}, 0, true, &hasAlpha)) DeleteObject(bitmap);
    if (HICON icon = info->GetIcon(nullptr, 16)) DestroyIcon(icon);
    for (uint32_t page = 1; page <= 2; ++page) {
        if (HBITMAP bitmap = info->GetPageBitmap(page, SIZE{32, 32}, 0, false, nullptr)) DeleteObject(bitmap);
    }
    CountingVisitor text;
    info->EnumTextChunks(text);
    std::vector<PROPERTYKEY> open;
    info->GetOpenKeys(open);
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
