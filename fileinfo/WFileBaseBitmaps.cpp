// The bitmap operations of WFileBase. Until the imaging layer is part of the
// library, the preview is read and kept but no bitmap is made from it.
#include <cstdlib>

#include "fileinfo/WFileBase.h"

bool WFileBase::EnsurePreview() {
    if (preview.data) {
        return true;
    }
    DibBlock block;
    try {
        block = ReadPreviewDib();
    } catch (...) {
        block = DibBlock{};
    }
    if (block.data && block.size < sizeof(BITMAPINFOHEADER)) {
        std::free(block.data);
        block = DibBlock{};
    }
    // A missing preview is not remembered: the next call reads again.
    preview = block;
    return preview.data != nullptr;
}

HBITMAP WFileBase::GetBitmap(SIZE, uint32_t, bool, uint8_t*) {
    EnsurePreview();
    return nullptr;
}

HBITMAP WFileBase::GetPageBitmap(uint32_t page, SIZE size, uint32_t reserved, bool allowEnlarge,
                                 uint8_t* hasAlpha) {
    if (page != 1) {
        return nullptr;
    }
    return GetBitmap(size, reserved, allowEnlarge, hasAlpha);
}

HICON WFileBase::GetIcon(void*, uint32_t) {
    EnsurePreview();
    return nullptr;
}
