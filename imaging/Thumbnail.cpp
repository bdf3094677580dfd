// Fitting and scaling of preview images, and their conversion to the bitmaps
// and icons handed to callers. A shrinking image is first reduced by whole
// factors with a box filter (while decoding, for a DIB), then pixman scales
// what is left: bilinear for the factor below two that remains when
// shrinking, a separable cubic convolution when enlarging.
#include "imaging/Thumbnail.h"

#include <algorithm>
#include <cstdlib>

#include <pixman.h>

#include "imaging/BoxReduce.h"
#include "imaging/DibDecoder.h"
#include "imaging/NativeBitmap.h"
#include "imaging/PixelOps.h"

namespace BrmUtils {
namespace {

pixman_color_t ToPixmanColor(uint32_t argb) {
    // pixman colours are premultiplied 16-bit channels.
    uint32_t p = Pixels::Premultiply(argb);
    auto wide = [](uint32_t c) { return uint16_t(c * 0x101); };
    return {wide((p >> 16) & 0xFF), wide((p >> 8) & 0xFF), wide(p & 0xFF), wide(p >> 24)};
}

// Draws `image` into the rectangle (x, y, w, h) of `canvas` over what is there.
// Works on a second pixman image over the same pixels, so that the caller's
// image keeps no transform or filter. A shrinking image comes here already
// reduced by whole factors (ReduceBox), so that what is left is a factor
// below two, which pixman's bilinear filter covers; an enlarged one gets
// pixman's separable cubic convolution.
bool DrawScaled(const NativeBitmap& image, NativeBitmap& canvas, int x, int y, int w, int h) {
    const int iw = image.Width(), ih = image.Height();
    pixman_image_t* src = pixman_image_create_bits(PIXMAN_a8r8g8b8, iw, ih, pixman_image_get_data(image.Image()),
                                                   pixman_image_get_stride(image.Image()));
    if (!src) return false;
    bool ok = true;
    if (w != iw || h != ih) {
        const double sx = double(iw) / w, sy = double(ih) / h;
        pixman_transform_t transform;
        pixman_transform_init_scale(&transform, pixman_double_to_fixed(sx), pixman_double_to_fixed(sy));
        pixman_image_set_transform(src, &transform);
        if (w <= iw && h <= ih) {
            ok = pixman_image_set_filter(src, PIXMAN_FILTER_BILINEAR, nullptr, 0);
        } else {
            // Cubic reconstruction, box sampling over the footprint of one
            // destination pixel.
            int count = 0;
            pixman_fixed_t* params = pixman_filter_create_separable_convolution(
                &count, pixman_double_to_fixed(sx), pixman_double_to_fixed(sy), PIXMAN_KERNEL_CUBIC,
                PIXMAN_KERNEL_CUBIC, PIXMAN_KERNEL_BOX, PIXMAN_KERNEL_BOX, 4, 4);
            ok = params && pixman_image_set_filter(src, PIXMAN_FILTER_SEPARABLE_CONVOLUTION, params, count);
            std::free(params);
        }
        // The edges continue outward, so the rectangle's border is not faded.
        pixman_image_set_repeat(src, PIXMAN_REPEAT_PAD);
    }
    if (ok) pixman_image_composite32(PIXMAN_OP_OVER, src, nullptr, canvas.Image(), 0, 0, 0, 0, x, y, w, h);
    pixman_image_unref(src);
    return ok;
}

// The whole factors by which an image is first shrunk on its way to
// `fitted`: the largest that still leave at least the fitted size. Pillow's
// thumbnail does the same (a reduction, then a filter over the rest); a
// box over whole blocks is what an exact area average of them is, and costs
// a few additions per source pixel instead of a filter's dozens.
void BoxFactors(SIZE image, SIZE fitted, int& kx, int& ky) {
    kx = fitted.cx > 0 ? std::max<int>(1, int(image.cx / fitted.cx)) : 1;
    ky = fitted.cy > 0 ? std::max<int>(1, int(image.cy / fitted.cy)) : 1;
}

// The canvas with `image` (the source, perhaps already reduced) drawn fitted
// and centred.
std::unique_ptr<NativeBitmap> Compose(const NativeBitmap& image, SIZE fitted, SIZE canvasSize, bool transparent) {
    auto canvas = NativeBitmap::Create(canvasSize.cx, canvasSize.cy, PixelFormat::Argb32);
    if (!canvas) return nullptr;
    if (!transparent) {
        pixman_color_t white = ToPixmanColor(0xFFFFFFFFu);
        pixman_box32_t box = {0, 0, canvasSize.cx, canvasSize.cy};
        pixman_image_fill_boxes(PIXMAN_OP_SRC, canvas->Image(), &white, 1, &box);
    }
    if (fitted.cx > 0 && fitted.cy > 0) {
        const int x = (canvasSize.cx - fitted.cx) / 2, y = (canvasSize.cy - fitted.cy) / 2;
        if (!DrawScaled(image, *canvas, x, y, fitted.cx, fitted.cy)) return nullptr;
    }
    return canvas;
}

}  // namespace

SIZE FitSize(SIZE requested, SIZE image, bool allowEnlarge) {
    if (image.cx <= 0 || image.cy <= 0) return {0, 0};
    // Products in 64 bits so that no size can overflow; the results fit in 32.
    const int64_t rw = requested.cx, rh = requested.cy, iw = image.cx, ih = image.cy;
    int64_t w = iw * rh / ih;
    int64_t width, height;
    if (w > rw) {
        width = rw;
        height = ih * rw / iw;
    } else {
        width = w;
        height = rh;
    }
    if (!allowEnlarge && (width > iw || height > ih)) return image;
    return {LONG(width), LONG(height)};
}

std::unique_ptr<NativeBitmap> ScaleImage(const NativeBitmap& image, SIZE requested, bool allowEnlarge,
                                         bool shrinkCanvas, bool transparent) {
    const int iw = image.Width(), ih = image.Height();
    if (iw <= 0 || ih <= 0) return nullptr;
    const SIZE fitted = FitSize(requested, {iw, ih}, allowEnlarge);
    const SIZE canvasSize = shrinkCanvas ? fitted : requested;
    int kx = 1, ky = 1;
    BoxFactors({iw, ih}, fitted, kx, ky);
    if (kx == 1 && ky == 1) return Compose(image, fitted, canvasSize, transparent);
    auto reduced = ReduceBox(image, kx, ky);
    return reduced ? Compose(*reduced, fitted, canvasSize, transparent) : nullptr;
}

std::unique_ptr<NativeBitmap> DibToBitmap(const void* dib, size_t size, SIZE requested, bool allowEnlarge,
                                          bool shrinkCanvas, bool transparent) {
    if (!dib) return nullptr;
    DibSource source;
    source.block = static_cast<const uint8_t*>(dib);
    source.size = size;
    int iw = 0, ih = 0;
    if (!PackedDibSize(source, iw, ih)) return nullptr;
    // The reduction happens while decoding: a large preview is never
    // expanded to full-size ARGB only to be shrunk.
    const SIZE fitted = FitSize(requested, {iw, ih}, allowEnlarge);
    int kx = 1, ky = 1;
    BoxFactors({iw, ih}, fitted, kx, ky);
    auto image = DecodePackedDibReduced(source, kx, ky);
    if (!image) return nullptr;
    return Compose(*image, fitted, shrinkCanvas ? fitted : requested, transparent);
}

HBITMAP CreateHBITMAP(const NativeBitmap& bitmap, uint32_t background) {
    const int w = bitmap.Width(), h = bitmap.Height();
    if (w <= 0 || h <= 0) return nullptr;
    HBITMAP out = CreateBitmap32(w, h);
    if (!out) return nullptr;
    // Composite in place in the caller's buffer, then turn it to straight alpha.
    pixman_image_t* dst =
        pixman_image_create_bits(PIXMAN_a8r8g8b8, w, h, reinterpret_cast<uint32_t*>(out->bits), w * 4);
    if (!dst) {
        DeleteObject(out);
        return nullptr;
    }
    pixman_color_t bg = ToPixmanColor(background);
    pixman_box32_t box = {0, 0, w, h};
    pixman_image_fill_boxes(PIXMAN_OP_SRC, dst, &bg, 1, &box);
    pixman_image_composite32(PIXMAN_OP_OVER, bitmap.Image(), nullptr, dst, 0, 0, 0, 0, 0, 0, w, h);
    pixman_image_unref(dst);
    auto* px = reinterpret_cast<uint32_t*>(out->bits);
    for (size_t i = 0, n = size_t(w) * size_t(h); i < n; ++i) px[i] = Pixels::Unpremultiply(px[i]);
    return out;
}

HICON BitmapToIcon(const NativeBitmap& bitmap) {
    const int w = bitmap.Width(), h = bitmap.Height();
    if (w <= 0 || h <= 0) return nullptr;
    HBITMAP colour = CreateBitmap32(w, h);
    if (!colour) return nullptr;
    auto* base = reinterpret_cast<const uint8_t*>(pixman_image_get_data(bitmap.Image()));
    const int stride = pixman_image_get_stride(bitmap.Image());
    auto* dst = reinterpret_cast<uint32_t*>(colour->bits);
    for (int y = 0; y < h; ++y) {
        auto* src = reinterpret_cast<const uint32_t*>(base + ptrdiff_t(y) * stride);
        for (int x = 0; x < w; ++x) dst[size_t(y) * size_t(w) + size_t(x)] = Pixels::Unpremultiply(src[x]);
    }
    // The icon owns the colour bitmap from here on.
    return CreateIcon32(colour, w / 2, h / 2);
}

HICON ImageToIcon(const NativeBitmap& image, int edge) {
    auto square = ScaleImage(image, {edge, edge}, false, false, true);
    if (!square) return nullptr;
    return BitmapToIcon(*square);
}

}  // namespace BrmUtils
