// JPEG through libjpeg. Its fatal errors longjmp, so the run functions are
// plain C with no object that has a destructor, and their allocations live in
// job records that the C++ callers release. A file that ends before its last
// row counts as damaged, not as an image padded with grey.
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <pixman.h>
#include <jpeglib.h>
#include <jerror.h>

#include "imaging/PixelOps.h"
#include "imaging/codecs/Codecs.h"

namespace BrmUtils::Codecs {
namespace {

constexpr long kMaxWorkMemory = 512L << 20;

struct JpegErrors {
    jpeg_error_mgr mgr;
    jmp_buf jump;
    bool truncated;
};

void JpegFail(j_common_ptr cinfo) {
    longjmp(reinterpret_cast<JpegErrors*>(cinfo->err)->jump, 1);
}

void JpegMessage(j_common_ptr cinfo, int level) {
    if (level < 0 && cinfo->err->msg_code == JWRN_JPEG_EOF) reinterpret_cast<JpegErrors*>(cinfo->err)->truncated = true;
}

void InitErrors(JpegErrors* errors) {
    jpeg_std_error(&errors->mgr);
    errors->mgr.error_exit = JpegFail;
    errors->mgr.emit_message = JpegMessage;
    errors->truncated = false;
}

struct JpegReadJob {
    const uint8_t* data;
    size_t size;
    pixman_image_t* image;
    uint8_t* cmykRow;
    bool cmyk;
};

// CMYK (Adobe's inverted form when the file says so) to opaque RGB.
void CmykRowToArgb(const uint8_t* src, uint32_t* dst, unsigned width, bool inverted) {
    for (unsigned x = 0; x < width; ++x) {
        uint32_t c = src[4 * x], m = src[4 * x + 1], y = src[4 * x + 2], k = src[4 * x + 3];
        if (!inverted) {
            c = 255 - c, m = 255 - m, y = 255 - y, k = 255 - k;
        }
        dst[x] = Pixels::Pack(0xFF, Pixels::MulDiv255(c, k), Pixels::MulDiv255(m, k), Pixels::MulDiv255(y, k));
    }
}

bool RunJpegRead(JpegReadJob* job) {
    jpeg_decompress_struct cinfo;
    JpegErrors errors;
    std::memset(&cinfo, 0, sizeof cinfo);
    InitErrors(&errors);
    cinfo.err = &errors.mgr;
    if (setjmp(errors.jump)) {
        jpeg_destroy_decompress(&cinfo);
        return false;
    }
    jpeg_create_decompress(&cinfo);
    cinfo.mem->max_memory_to_use = kMaxWorkMemory;
    jpeg_mem_src(&cinfo, job->data, static_cast<unsigned long>(job->size));
    if (jpeg_read_header(&cinfo, TRUE) != JPEG_HEADER_OK ||
        !DecodedSizeAllowed(cinfo.image_width, cinfo.image_height, job->size)) {
        jpeg_destroy_decompress(&cinfo);
        return false;
    }
    job->cmyk = cinfo.jpeg_color_space == JCS_CMYK || cinfo.jpeg_color_space == JCS_YCCK;
    cinfo.out_color_space = job->cmyk ? JCS_CMYK : JCS_EXT_BGRA;
    jpeg_start_decompress(&cinfo);
    const unsigned width = cinfo.output_width, height = cinfo.output_height;
    if (cinfo.output_components != 4 || !DecodedSizeAllowed(width, height, job->size)) {
        jpeg_destroy_decompress(&cinfo);
        return false;
    }
    job->image = pixman_image_create_bits(PIXMAN_a8r8g8b8, int(width), int(height), nullptr, 0);
    if (job->cmyk) job->cmykRow = static_cast<uint8_t*>(std::malloc(size_t(width) * 4));
    if (!job->image || (job->cmyk && !job->cmykRow)) {
        jpeg_destroy_decompress(&cinfo);
        return false;
    }
    auto* base = reinterpret_cast<uint8_t*>(pixman_image_get_data(job->image));
    const int stride = pixman_image_get_stride(job->image);
    while (cinfo.output_scanline < height && !errors.truncated) {
        uint8_t* dst = base + size_t(cinfo.output_scanline) * size_t(stride);
        JSAMPROW row = job->cmyk ? job->cmykRow : dst;
        if (jpeg_read_scanlines(&cinfo, &row, 1) != 1) break;
        if (job->cmyk) CmykRowToArgb(job->cmykRow, reinterpret_cast<uint32_t*>(dst), width, cinfo.saw_Adobe_marker);
    }
    const bool complete = cinfo.output_scanline == height && !errors.truncated;
    jpeg_destroy_decompress(&cinfo);
    return complete;
}

// A destination that grows a malloc'd buffer kept in the job.
struct JpegSink {
    jpeg_destination_mgr pub;
    uint8_t* buffer;
    size_t capacity;
    size_t used;
};

boolean SinkGrow(j_compress_ptr cinfo) {
    auto* sink = reinterpret_cast<JpegSink*>(cinfo->dest);
    const size_t capacity = sink->capacity ? sink->capacity * 2 : 65536;
    auto* grown = static_cast<uint8_t*>(std::realloc(sink->buffer, capacity));
    if (!grown) ERREXIT(cinfo, JERR_OUT_OF_MEMORY);
    // The whole old buffer is full when libjpeg asks for more.
    sink->pub.next_output_byte = grown + sink->capacity;
    sink->pub.free_in_buffer = capacity - sink->capacity;
    sink->buffer = grown;
    sink->capacity = capacity;
    return TRUE;
}

// libjpeg writes a byte before it looks for room, so there must be room from the start.
void SinkInit(j_compress_ptr cinfo) { SinkGrow(cinfo); }

void SinkTerm(j_compress_ptr cinfo) {
    auto* sink = reinterpret_cast<JpegSink*>(cinfo->dest);
    sink->used = sink->capacity - sink->pub.free_in_buffer;
}

struct JpegWriteJob {
    unsigned width;
    unsigned height;
    int quality;
    const uint8_t* pixels;  // opaque B, G, R, x rows
    JpegSink sink;
};

bool RunJpegWrite(JpegWriteJob* job) {
    jpeg_compress_struct cinfo;
    JpegErrors errors;
    std::memset(&cinfo, 0, sizeof cinfo);
    InitErrors(&errors);
    cinfo.err = &errors.mgr;
    if (setjmp(errors.jump)) {
        jpeg_destroy_compress(&cinfo);
        return false;
    }
    jpeg_create_compress(&cinfo);
    job->sink.pub.init_destination = SinkInit;
    job->sink.pub.empty_output_buffer = SinkGrow;
    job->sink.pub.term_destination = SinkTerm;
    job->sink.pub.next_output_byte = nullptr;
    job->sink.pub.free_in_buffer = 0;
    cinfo.dest = &job->sink.pub;
    cinfo.image_width = job->width;
    cinfo.image_height = job->height;
    cinfo.input_components = 4;
    cinfo.in_color_space = JCS_EXT_BGRX;
    jpeg_set_defaults(&cinfo);
    jpeg_set_quality(&cinfo, job->quality, TRUE);
    jpeg_start_compress(&cinfo, TRUE);
    while (cinfo.next_scanline < cinfo.image_height) {
        auto row = const_cast<JSAMPROW>(job->pixels + size_t(cinfo.next_scanline) * job->width * 4);
        jpeg_write_scanlines(&cinfo, &row, 1);
    }
    jpeg_finish_compress(&cinfo);
    jpeg_destroy_compress(&cinfo);
    return true;
}

}  // namespace

std::unique_ptr<NativeBitmap> DecodeJpeg(const uint8_t* data, size_t size) {
    if (!data || size < 3 || data[0] != 0xFF || data[1] != 0xD8) return nullptr;
    JpegReadJob job = {data, size, nullptr, nullptr, false};
    const bool ok = RunJpegRead(&job);
    std::free(job.cmykRow);
    if (!ok) {
        if (job.image) pixman_image_unref(job.image);
        return nullptr;
    }
    return std::make_unique<NativeBitmap>(job.image, job.cmyk ? PixelFormat::Cmyk32 : PixelFormat::Rgb24);
}

bool EncodeJpeg(const NativeBitmap& bitmap, const EncoderParams& params, Bytes& out) {
    const int w = bitmap.Width(), h = bitmap.Height();
    if (w <= 0 || h <= 0 || bitmap.HasAlpha()) return false;
    // An opaque bitmap's premultiplied words are its colours.
    const auto* base = reinterpret_cast<const uint8_t*>(pixman_image_get_data(bitmap.Image()));
    const int stride = pixman_image_get_stride(bitmap.Image());
    Bytes packed;
    if (stride != w * 4) {
        packed.resize(size_t(w) * size_t(h) * 4);
        for (int y = 0; y < h; ++y) std::memcpy(&packed[size_t(y) * size_t(w) * 4], base + size_t(y) * size_t(stride), size_t(w) * 4);
        base = packed.data();
    }
    JpegWriteJob job = {unsigned(w), unsigned(h), params.quality > 0 ? params.quality : 75, base, {}};
    const bool ok = RunJpegWrite(&job);
    if (ok) out.assign(job.sink.buffer, job.sink.buffer + job.sink.used);
    std::free(job.sink.buffer);
    return ok;
}

}  // namespace BrmUtils::Codecs
