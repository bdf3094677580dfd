// NativeBitmap: ownership of a pixman image and whole-image copies.
#include "imaging/NativeBitmap.h"

#include <pixman.h>

#include "imaging/NativePixelAccess.h"

namespace BrmUtils {

std::unique_ptr<NativeBitmap> NativeBitmap::Create(int width, int height, PixelFormat format) {
    if (width <= 0 || height <= 0 || width > kMaxEdge || height > kMaxEdge) return nullptr;
    // pixman allocates zeroed rows: transparent black.
    pixman_image_t* image = pixman_image_create_bits(PIXMAN_a8r8g8b8, width, height, nullptr, width * 4);
    if (!image) return nullptr;
    if (format != PixelFormat::Argb32) {
        pixman_color_t black = {0, 0, 0, 0xFFFF};
        pixman_box32_t box = {0, 0, width, height};
        pixman_image_fill_boxes(PIXMAN_OP_SRC, image, &black, 1, &box);
    }
    return std::make_unique<NativeBitmap>(image, format);
}

NativeBitmap::NativeBitmap(pixman_image_t* image, PixelFormat format, bool borrowed)
    : image_(image), format_(format), borrowed_(borrowed) {}

NativeBitmap::~NativeBitmap() {
    if (image_ && !borrowed_) pixman_image_unref(image_);
}

int NativeBitmap::Width() const { return image_ ? pixman_image_get_width(image_) : 0; }

int NativeBitmap::Height() const { return image_ ? pixman_image_get_height(image_) : 0; }

std::unique_ptr<NativeBitmap::PixelAccess> NativeBitmap::LockBits() {
    return std::make_unique<NativePixelAccess>(this);
}

std::unique_ptr<NativeBitmap> NativeBitmap::Clone(PixelFormat format) const {
    auto copy = Create(Width(), Height(), format);
    if (!copy) return nullptr;
    // The copy of an opaque format starts opaque black, so OVER drops alpha by
    // compositing onto black; an ARGB copy starts transparent and OVER is a copy.
    pixman_image_composite32(PIXMAN_OP_OVER, image_, nullptr, copy->image_, 0, 0, 0, 0, 0, 0, Width(), Height());
    return copy;
}

}  // namespace BrmUtils
