// NativeBitmap: the image wrapper passed between the container classes, the
// readers and the codecs. Pixels always live in a pixman image of 32-bit
// premultiplied ARGB, so that scaling and compositing keep alpha right; the
// pixel format is a notion of what the image was (it decides the encoder a
// preview is stored with and whether a JPEG save must drop alpha first).
#pragma once

#include <cstdint>
#include <memory>

typedef union pixman_image pixman_image_t;

namespace BrmUtils {

// Pixel format notions, numbered as the design's image library numbers them.
enum class PixelFormat : uint32_t {
    Argb32 = 0x26200A,  // colour with alpha
    Rgb24 = 0x21808,    // opaque colour
    Cmyk32 = 0x200F,    // decoded from CMYK separations (stored as RGB)
};

class NativeBitmap {
public:
    // Edge limit of any bitmap this library makes: larger ones are refused.
    static constexpr int kMaxEdge = 16384;

    // Row access to the pixels. Each pixel is one premultiplied 0xAARRGGBB
    // word; an opaque image has 0xFF in every alpha byte.
    class PixelAccess {
    public:
        virtual ~PixelAccess() = default;
        // The row's first pixel; null for a row out of range or no bitmap.
        virtual uint32_t* GetRow(int row) = 0;
    };

    // A new bitmap of the size, transparent black for Argb32 and opaque black
    // otherwise; null for a size not in 1..kMaxEdge or a failed allocation.
    static std::unique_ptr<NativeBitmap> Create(int width, int height, PixelFormat format = PixelFormat::Argb32);

    // Wraps a PIXMAN_a8r8g8b8 image. Unless `borrowed`, the wrapper owns the
    // caller's reference and drops it when destroyed.
    NativeBitmap(pixman_image_t* image, PixelFormat format, bool borrowed = false);
    ~NativeBitmap();
    NativeBitmap(const NativeBitmap&) = delete;
    NativeBitmap& operator=(const NativeBitmap&) = delete;

    int Width() const;
    int Height() const;
    PixelFormat Format() const { return format_; }
    void SetFormat(PixelFormat format) { format_ = format; }
    bool HasAlpha() const { return format_ == PixelFormat::Argb32; }
    bool IsBorrowed() const { return borrowed_; }
    pixman_image_t* Image() const { return image_; }

    // Row access; the rows stay valid while the bitmap lives.
    std::unique_ptr<PixelAccess> LockBits();

    // A copy of the whole image in another format. To an opaque format the
    // alpha is dropped by compositing over black, as a 24-bit copy must.
    std::unique_ptr<NativeBitmap> Clone(PixelFormat format) const;

private:
    pixman_image_t* image_;
    PixelFormat format_;
    bool borrowed_;
};

}  // namespace BrmUtils
