// Opens arbitrary bytes as a document container, with and without layout
// detection, and reads everything it offers: every part (through the link
// table), the part table, the links, the thumbnail and every preview.
// "file:" references are refused so that a run never reads local files.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "utils/streams/MemStream.h"
#include "zipcontainer/ZipContainerImpl.h"

namespace {

// Bounded, so that a small deflate bomb stays small.
void Drain(IStream* stream) {
    if (!stream) return;
    std::vector<uint8_t> buffer(16384);
    uint64_t total = 0;
    while (total < (4u << 20)) {
        ULONG got = 0;
        if (FAILED(stream->Read(buffer.data(), ULONG(buffer.size()), &got)) || got == 0) break;
        total += got;
    }
    stream->Release();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ContainerOptions options;
    options.refuseFileLinks = true;
    for (bool detect : {true, false}) {
        IStream* file = BrmUtils::CreateMemStreamOnBytes(data, size);
        if (!file) return 0;
        ZipContainerRef container = ZipContainerImpl::OpenFromStream(file, detect, {}, options);
        file->Release();
        if (!container) continue;
        container->GetMimeType();
        container->IsLegacyLayout();
        size_t parts = 0;
        for (const auto& name : container->ListPartNames()) {
            if (++parts > 64) break;
            Drain(container->OpenPart(name, parts % 2 == 0));
        }
        for (const auto& [part, reference] : container->Links().Links()) Drain(container->OpenPart(part));
        container->GetThumbnailImage();
        size_t previews = 0;
        for (const auto& [name, record] : container->GetPartRecords()) {
            if (++previews > 16) break;
            container->GetPreviewImage(record.fileKind, record.width, record.height, record.index);
        }
        container->GetPreviewImage(L"page", 100, 100, 1);
        container->Links().ToDocument();
        container->Parts().ToDocument();
        container->Metadata().SaveText();
    }
    return 0;
}
