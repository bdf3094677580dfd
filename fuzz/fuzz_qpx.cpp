// Fuzz target for paint images: arbitrary bytes opened through the factory as
// format 1 on a host stream that offers a destination stream, then every
// property read, the preview as packed DIB, bitmap and icon, the open keys,
// a comment set and a Commit into memory; the rewritten bytes are opened
// and read once more. Seed it with the paint image writer's documents
// (mksamples --qpx-seeds): every generation and TIFF compressions.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "fileinfo/IFileInfo.h"
#include "fileinfo/PropertyKeys.h"
#include "fileinfo/Variants.h"
#include "utils/streams/DataContainerVector.h"
#include "utils/streams/MemStream.h"

namespace {

// A stream on a byte vector whose host asks for the commit to go to a
// second vector rather than over the source.
class HostStream final : public BrmUtils::MemStream, public IDestinationStreamFactory {
public:
    HostStream(std::vector<uint8_t>& bytes, std::vector<uint8_t>& committed)
        : MemStream(new BrmUtils::DataContainer::Vector(bytes)), committed(committed) {
        GetContainer()->Release();  // the stream's reference is the only one
    }
    HRESULT QueryInterface(REFIID riid, void** out) override {
        if (std::memcmp(&riid, &IID_IDestinationStreamFactory, sizeof(IID)) != 0)
            return MemStream::QueryInterface(riid, out);
        *out = static_cast<IDestinationStreamFactory*>(this);
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return MemStream::AddRef(); }
    ULONG Release() override { return MemStream::Release(); }
    HRESULT GetDestinationStream(IStream** out) override {
        committed.clear();
        *out = BrmUtils::CreateMemStream(committed);
        return *out ? S_OK : E_OUTOFMEMORY;
    }

private:
    std::vector<uint8_t>& committed;
};

void ReadAll(IFileInfo* info) {
    const uint32_t count = info->GetCount();
    for (uint32_t i = 0; i < count; ++i) {
        PROPERTYKEY key{};
        if (FAILED(info->GetAt(i, &key))) continue;
        for (bool asText : {false, true}) {
            PROPVARIANT value;
            PropVariantInit(&value);
            if (asText) {
                fi::ReadDisplayValue(info, key, &value);
            } else {
                info->GetValue(&key, &value);
            }
            PropVariantClear(&value);
        }
        info->IsReadOnly(&key);
    }
    std::vector<PROPERTYKEY> open;
    info->GetOpenKeys(open);
    for (const PROPERTYKEY& key : open) {
        PROPVARIANT value;
        PropVariantInit(&value);
        info->GetValue(&key, &value);
        PropVariantClear(&value);
    }
}

void Preview(IFileInfo* info) {
    DibBlock dib = info->ReadPreviewDib();
    std::free(dib.data);
    uint8_t hasAlpha = 0;
    if (HBITMAP bitmap = info->GetBitmap(SIZE{48, 32}, 0, true, &hasAlpha)) DeleteObject(bitmap);
    if (HICON icon = info->GetIcon(nullptr, 16)) DestroyIcon(icon);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<uint8_t> source(data, data + size), committed;
    auto* stream = new HostStream(source, committed);
    if (IFileInfo* info = IFileInfo::GetInst(stream, FileFormatPaint)) {
        ReadAll(info);
        Preview(info);
        PROPVARIANT comment;
        comment.vt = VT_LPWSTR;
        comment.pwszVal = const_cast<wchar_t*>(L"fuzz");
        info->SetValue(&PropertyKeys::kComments, &comment);
        info->Commit();
        info->Release();
    }
    stream->Release();
    if (committed.empty()) return 0;
    IStream* again = BrmUtils::CreateMemStreamOnBytes(committed.data(), committed.size());
    if (!again) return 0;
    if (IFileInfo* info = IFileInfo::GetInst(again, FileFormatPaint)) {
        ReadAll(info);
        info->Release();
    }
    again->Release();
    return 0;
}
