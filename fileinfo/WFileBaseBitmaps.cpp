// The bitmap operations of WFileBase: the reader's packed DIB, read once and
// kept, fitted into the size asked for and handed out as a caller-owned
// HBITMAP or HICON. The imaging layer needs no start-up here: no image
// object outlives a call.
#include <cstdlib>
#include <limits>

#include "fileinfo/WFileBase.h"
#include "imaging/NativeBitmap.h"
#include "imaging/Thumbnail.h"

namespace {

constexpr uint32_t kOpaqueWhite = 0xFFFFFFFF;

}  // namespace

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

HBITMAP WFileBase::GetBitmap(SIZE size, uint32_t /*reserved*/, bool allowEnlarge, uint8_t* hasAlpha) {
    try {
        if (!EnsurePreview()) {
            return nullptr;
        }
        auto bitmap = BrmUtils::DibToBitmap(preview.data, preview.size, size, allowEnlarge, true, false);
        if (!bitmap) {
            return nullptr;
        }
        HBITMAP result = BrmUtils::CreateHBITMAP(*bitmap, kOpaqueWhite);
        if (result && hasAlpha) {
            *hasAlpha = 0;
        }
        return result;
    } catch (...) {
        return nullptr;
    }
}

HBITMAP WFileBase::GetPageBitmap(uint32_t page, SIZE size, uint32_t reserved, bool allowEnlarge,
                                 uint8_t* hasAlpha) {
    if (page != 1) {
        return nullptr;
    }
    return GetBitmap(size, reserved, allowEnlarge, hasAlpha);
}

HICON WFileBase::GetIcon(void* /*reserved*/, uint32_t edge) {
    if (edge == 0 || edge > uint32_t(std::numeric_limits<LONG>::max())) {
        return nullptr;
    }
    try {
        if (!EnsurePreview()) {
            return nullptr;
        }
        const SIZE square{LONG(edge), LONG(edge)};
        auto bitmap = BrmUtils::DibToBitmap(preview.data, preview.size, square, false, false, true);
        if (!bitmap) {
            return nullptr;
        }
        return BrmUtils::BitmapToIcon(*bitmap);
    } catch (...) {
        return nullptr;
    }
}
