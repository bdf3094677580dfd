// Row access to a NativeBitmap. pixman keeps its rows in memory for the
// image's life, so "locking" only takes the base and the stride once.
#include "imaging/NativePixelAccess.h"

#include <pixman.h>

namespace BrmUtils {

NativePixelAccess::~NativePixelAccess() {
    // Nothing to hand back: the rows were never copied.
    locked_ = false;
}

uint32_t* NativePixelAccess::GetRow(int row) {
    if (!bitmap_ || !bitmap_->Image() || row < 0 || row >= bitmap_->Height()) return nullptr;
    if (!locked_) {
        scan0_ = reinterpret_cast<uint8_t*>(pixman_image_get_data(bitmap_->Image()));
        stride_ = pixman_image_get_stride(bitmap_->Image());
        if (!scan0_) return nullptr;
        locked_ = true;
    }
    // A negative stride counts from the image's last row.
    if (stride_ >= 0) return reinterpret_cast<uint32_t*>(scan0_ + ptrdiff_t(row) * stride_);
    return reinterpret_cast<uint32_t*>(scan0_ + ptrdiff_t(bitmap_->Height() - 1 - row) * stride_);
}

}  // namespace BrmUtils
