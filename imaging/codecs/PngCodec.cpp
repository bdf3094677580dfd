// PNG through libpng. libpng reports errors by longjmp, so everything between
// setjmp and the end of a run is plain C: the run functions below hold no
// object with a destructor, and what they allocate lives in a job record that
// the C++ caller releases whatever happened.
#include <csetjmp>
#include <cstdlib>
#include <cstring>

#include <pixman.h>
#include <png.h>

#include "imaging/PixelOps.h"
#include "imaging/codecs/Codecs.h"

namespace BrmUtils::Codecs {
namespace {

struct PngReadJob {
    const uint8_t* data;
    size_t size;
    size_t pos;
    pixman_image_t* image;  // the result, straight alpha until the caller premultiplies
    png_bytep* rows;
    bool alpha;
};

void PngRead(png_structp png, png_bytep out, size_t count) {
    auto* job = static_cast<PngReadJob*>(png_get_io_ptr(png));
    if (count > job->size - job->pos) png_error(png, "truncated");
    std::memcpy(out, job->data + job->pos, count);
    job->pos += count;
}

void PngFail(png_structp png, png_const_charp) { png_longjmp(png, 1); }
void PngIgnore(png_structp, png_const_charp) {}

bool RunPngRead(PngReadJob* job) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, PngFail, PngIgnore);
    if (!png) return false;
    png_infop info = png_create_info_struct(png);
    if (!info) {
        png_destroy_read_struct(&png, nullptr, nullptr);
        return false;
    }
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_read_struct(&png, &info, nullptr);
        return false;
    }
    png_set_read_fn(png, job, PngRead);
    png_set_user_limits(png, NativeBitmap::kMaxEdge, NativeBitmap::kMaxEdge);
    png_set_chunk_malloc_max(png, 8u << 20);
    png_read_info(png, info);

    const png_uint_32 width = png_get_image_width(png, info), height = png_get_image_height(png, info);
    if (!DecodedSizeAllowed(width, height, job->size)) png_error(png, "too large");
    const int colourType = png_get_color_type(png, info);
    job->alpha = (colourType & PNG_COLOR_MASK_ALPHA) || png_get_valid(png, info, PNG_INFO_tRNS);

    // Everything becomes 8-bit B, G, R, A.
    png_set_expand(png);
    png_set_scale_16(png);
    if (!(colourType & PNG_COLOR_MASK_COLOR)) png_set_gray_to_rgb(png);
    png_set_bgr(png);
    if (!job->alpha) png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    if (png_get_rowbytes(png, info) != size_t(width) * 4) png_error(png, "unexpected layout");

    job->image = pixman_image_create_bits(PIXMAN_a8r8g8b8, int(width), int(height), nullptr, 0);
    job->rows = static_cast<png_bytep*>(std::malloc(sizeof(png_bytep) * height));
    if (!job->image || !job->rows) png_error(png, "out of memory");
    auto* base = reinterpret_cast<png_bytep>(pixman_image_get_data(job->image));
    const int stride = pixman_image_get_stride(job->image);
    for (png_uint_32 y = 0; y < height; ++y) job->rows[y] = base + size_t(y) * size_t(stride);
    png_read_image(png, job->rows);
    png_destroy_read_struct(&png, &info, nullptr);
    return true;
}

// A growing malloc'd buffer that libpng writes into.
struct PngWriteJob {
    int width;
    int height;
    bool alpha;
    png_bytep* rows;  // straight B, G, R, A rows
    uint8_t* out;
    size_t used;
    size_t capacity;
};

void PngWrite(png_structp png, png_bytep data, size_t count) {
    auto* job = static_cast<PngWriteJob*>(png_get_io_ptr(png));
    if (count > job->capacity - job->used) {
        size_t capacity = job->capacity ? job->capacity : 65536;
        while (count > capacity - job->used) capacity *= 2;
        auto* grown = static_cast<uint8_t*>(std::realloc(job->out, capacity));
        if (!grown) png_error(png, "out of memory");
        job->out = grown;
        job->capacity = capacity;
    }
    std::memcpy(job->out + job->used, data, count);
    job->used += count;
}

void PngFlush(png_structp) {}

bool RunPngWrite(PngWriteJob* job) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, PngFail, PngIgnore);
    if (!png) return false;
    png_infop info = png_create_info_struct(png);
    if (!info) {
        png_destroy_write_struct(&png, nullptr);
        return false;
    }
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_set_write_fn(png, job, PngWrite, PngFlush);
    png_set_IHDR(png, info, png_uint_32(job->width), png_uint_32(job->height), 8,
                 job->alpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_set_bgr(png);
    if (!job->alpha) png_set_filler(png, 0, PNG_FILLER_AFTER);  // drops the fourth byte
    png_write_image(png, job->rows);
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return true;
}

}  // namespace

std::unique_ptr<NativeBitmap> DecodePng(const uint8_t* data, size_t size) {
    if (!data || size < 8 || png_sig_cmp(data, 0, 8) != 0) return nullptr;
    PngReadJob job = {data, size, 0, nullptr, nullptr, false};
    const bool ok = RunPngRead(&job);
    std::free(job.rows);
    if (!ok) {
        if (job.image) pixman_image_unref(job.image);
        return nullptr;
    }
    auto* px = pixman_image_get_data(job.image);
    const size_t count = size_t(pixman_image_get_width(job.image)) * size_t(pixman_image_get_height(job.image));
    if (job.alpha)
        for (size_t i = 0; i < count; ++i) px[i] = Pixels::Premultiply(px[i]);
    return std::make_unique<NativeBitmap>(job.image, job.alpha ? PixelFormat::Argb32 : PixelFormat::Rgb24);
}

bool EncodePng(const NativeBitmap& bitmap, const EncoderParams&, Bytes& out) {
    const int w = bitmap.Width(), h = bitmap.Height();
    if (w <= 0 || h <= 0) return false;
    Bytes pixels = StraightBgra(bitmap);
    std::vector<png_bytep> rows(static_cast<size_t>(h));
    for (int y = 0; y < h; ++y) rows[size_t(y)] = pixels.data() + size_t(y) * size_t(w) * 4;
    PngWriteJob job = {w, h, bitmap.HasAlpha(), rows.data(), nullptr, 0, 0};
    const bool ok = RunPngWrite(&job);
    if (ok) out.assign(job.out, job.out + job.used);
    std::free(job.out);
    return ok;
}

}  // namespace BrmUtils::Codecs
