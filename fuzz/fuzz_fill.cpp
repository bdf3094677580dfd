// Fuzz target for fill files. An even first byte: the rest is fill.xml,
// read by the fill objects, written back and read again. An odd one: the
// rest is a whole file opened through the factory as format 3, every
// property read, thumbnail and icon made, a commit tried.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fileinfo/IFileInfo.h"
#include "fill/FillInfo.h"
#include "metadata/Container.h"
#include "utils/streams/MemStream.h"

namespace {

void ReadDescription(std::string_view text) {
    Brm::XmlFile file(text);
    Metadata::Container tree = Metadata::Container::WrapElement(file);
    if (!tree.Root()) return;
    Metadata::Container metadata = Metadata::Container::CreateEmpty();
    auto info = CreateFillInfo(metadata, *tree.Root());
    if (!info || !info->Read(metadata, *tree.Root(), nullptr)) return;
    auto root = NewFillElement();
    if (!info->Clone()->Write(metadata, *root, nullptr)) return;
    auto again = CreateFillInfo(metadata, *root);
    if (again) again->Read(metadata, *root, nullptr);
}

void OpenFile(const uint8_t* data, size_t size) {
    IStream* stream = BrmUtils::CreateMemStreamOnBytes(data, size);
    if (!stream) return;
    if (IFileInfo* info = IFileInfo::GetInst(stream, FileFormatFill)) {
        for (uint32_t i = 0; i < info->GetCount(); ++i) {
            PROPERTYKEY key{};
            if (FAILED(info->GetAt(i, &key))) continue;
            PROPVARIANT value;
            value.vt = VT_EMPTY;
            info->GetValue(&key, &value);
            PropVariantClear(&value);
        }
        uint8_t hasAlpha = 0;
        if (HBITMAP bitmap = info->GetBitmap(SIZE{48, 32}, 0, true, &hasAlpha)) DeleteObject(bitmap);
        if (HICON icon = info->GetIcon(nullptr, 16)) DestroyIcon(icon);
        info->Commit();
        info->Release();
    }
    stream->Release();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    if (data[0] % 2 == 0) {
        ReadDescription(std::string_view(reinterpret_cast<const char*>(data + 1), size - 1));
    } else {
        OpenFile(data + 1, size - 1);
    }
    return 0;
}
