// Fitting a preview image to a requested size, and turning it into the
// bitmaps handed to callers (HBITMAP, HICON). Shrinking is a box reduction
// by whole factors followed by pixman's bilinear filter; enlarging is
// pixman's cubic.
#pragma once

#include <memory>

#include "platform/Bitmap.h"

namespace BrmUtils {

class NativeBitmap;

// The fitted size of an image of `image` in a box of `requested`, keeping
// the aspect; without allowEnlarge an image smaller than the box keeps its size.
SIZE FitSize(SIZE requested, SIZE image, bool allowEnlarge);

// A new 32-bit ARGB bitmap: the image fitted into `requested` (area averages
// when shrinking, bicubic when enlarging), centred on a canvas of the fitted size (shrinkCanvas) or of the
// requested size, cleared to transparent or to opaque white. Null if the
// image has no size.
std::unique_ptr<NativeBitmap> ScaleImage(const NativeBitmap& image, SIZE requested, bool allowEnlarge,
                                         bool shrinkCanvas, bool transparent);

// The same from a packed DIB of `size` bytes; null for a damaged DIB.
std::unique_ptr<NativeBitmap> DibToBitmap(const void* dib, size_t size, SIZE requested, bool allowEnlarge,
                                          bool shrinkCanvas, bool transparent);

// A caller-owned HBITMAP of the bitmap composited over `background`
// (0xAARRGGBB; 0xFFFFFFFF is opaque white).
HBITMAP CreateHBITMAP(const NativeBitmap& bitmap, uint32_t background);

// A caller-owned icon of the bitmap, alpha kept, hot spot in the centre.
HICON BitmapToIcon(const NativeBitmap& bitmap);

// ScaleImage with the edge as both requested sizes (transparent, canvas kept), then BitmapToIcon.
HICON ImageToIcon(const NativeBitmap& image, int edge);

}  // namespace BrmUtils
