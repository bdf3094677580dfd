// Owned 32-bit BGRA bitmaps and icons handed to callers.
#include "platform/Bitmap.h"

#include <cstdlib>
#include <new>

HBITMAP CreateBitmap32(int32_t width, int32_t height) {
    if (width <= 0 || height <= 0 || width > kMaxBitmapSide || height > kMaxBitmapSide) return nullptr;
    const uint64_t pixels = uint64_t(width) * uint64_t(height);
    if (pixels > kMaxBitmapPixels) return nullptr;
    auto* bits = static_cast<uint8_t*>(std::calloc(std::size_t(pixels), 4));
    if (!bits) return nullptr;
    auto* bitmap = new (std::nothrow) FiBitmap{width, height, bits};
    if (!bitmap) std::free(bits);
    return bitmap;
}

BOOL DeleteObject(HBITMAP bitmap) {
    if (!bitmap) return FALSE;
    std::free(bitmap->bits);
    delete bitmap;
    return TRUE;
}

HICON CreateIcon32(HBITMAP color, int32_t hotspotX, int32_t hotspotY) {
    if (!color) return nullptr;
    auto* icon = new (std::nothrow) FiIcon{color, hotspotX, hotspotY};
    if (!icon) DeleteObject(color);
    return icon;
}

BOOL DestroyIcon(HICON icon) {
    if (!icon) return FALSE;
    DeleteObject(icon->color);
    delete icon;
    return TRUE;
}
