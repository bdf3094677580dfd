// The evidence for the thumbnail scaler: the 1024 x 768 test picture, decoded
// once, scaled to 256 x 192 by each candidate; prints "NAME BEST_MS" per
// candidate and writes NAME.ppm (RGB) for the SSIM in bench/thumb_bench.sh.
// Candidates are pixman's separable convolution with several kernels, in
// one pass (pixman then applies the whole 2-D footprint per pixel) or in
// two (one axis each), a 2 x 2 box pre-reduction then pixman's cubic, and
// what imaging does (DibToBitmap: a box reduction by whole factors while the
// DIB is decoded, then pixman's bilinear filter for the rest); that one's
// time includes decoding the DIB, the others' do not.
// Usage: scaler_compare FOLDER [RUNS]
#include <pixman.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>

#include "ThumbPicture.h"
#include "imaging/NativeBitmap.h"
#include "imaging/Thumbnail.h"
#include "platform/Bitmap.h"

using namespace thumbbench;

namespace {

using Image = pixman_image_t*;

Image NewImage(int w, int h) { return pixman_image_create_bits(PIXMAN_a8r8g8b8, w, h, nullptr, w * 4); }

// The picture as opaque ARGB words, top row first.
Image Decode(const Bytes& rows) {
    const size_t stride = (size_t(kWidth) * 3 + 3) & ~size_t(3);
    Image image = NewImage(kWidth, kHeight);
    auto* px = pixman_image_get_data(image);
    for (int y = 0; y < kHeight; ++y) {
        const uint8_t* src = rows.data() + size_t(kHeight - 1 - y) * stride;
        for (int x = 0; x < kWidth; ++x)
            px[size_t(y) * kWidth + size_t(x)] =
                0xFF000000u | uint32_t(src[3 * x + 2]) << 16 | uint32_t(src[3 * x + 1]) << 8 | src[3 * x];
    }
    return image;
}

// `source` scaled into a new w x h image by one separable-convolution composite.
Image Scale(Image source, int w, int h, pixman_kernel_t reconstructX, pixman_kernel_t reconstructY,
            pixman_kernel_t sampleX, pixman_kernel_t sampleY, int bits) {
    const int iw = pixman_image_get_width(source), ih = pixman_image_get_height(source);
    Image src = pixman_image_create_bits(PIXMAN_a8r8g8b8, iw, ih, pixman_image_get_data(source), iw * 4);
    const double sx = double(iw) / w, sy = double(ih) / h;
    pixman_transform_t t;
    pixman_transform_init_scale(&t, pixman_double_to_fixed(sx), pixman_double_to_fixed(sy));
    pixman_image_set_transform(src, &t);
    int n = 0;
    pixman_fixed_t* params = pixman_filter_create_separable_convolution(
        &n, pixman_double_to_fixed(sx), pixman_double_to_fixed(sy), reconstructX, reconstructY, sampleX, sampleY,
        bits, bits);
    pixman_image_set_filter(src, PIXMAN_FILTER_SEPARABLE_CONVOLUTION, params, n);
    std::free(params);
    pixman_image_set_repeat(src, PIXMAN_REPEAT_PAD);
    Image out = NewImage(w, h);
    pixman_image_composite32(PIXMAN_OP_SRC, src, nullptr, out, 0, 0, 0, 0, 0, 0, w, h);
    pixman_image_unref(src);
    return out;
}

Image OnePass(Image source, pixman_kernel_t reconstruct, pixman_kernel_t sample) {
    return Scale(source, kEdge, kEdge * 3 / 4, reconstruct, reconstruct, sample, sample, 4);
}

// Width first (the y filter is one tap), then height.
Image TwoPass(Image source, pixman_kernel_t reconstruct, pixman_kernel_t sample) {
    Image across = Scale(source, kEdge, kHeight, reconstruct, PIXMAN_KERNEL_IMPULSE, sample, PIXMAN_KERNEL_BOX, 4);
    Image out = Scale(across, kEdge, kEdge * 3 / 4, PIXMAN_KERNEL_IMPULSE, reconstruct, PIXMAN_KERNEL_BOX, sample, 4);
    pixman_image_unref(across);
    return out;
}

// Averages of 2 x 2 pixels straight from the DIB rows (as a decoder can do
// while it decodes), then the cubic on the quarter-size picture.
Image HalfThenCubic(const Bytes& rows) {
    const size_t stride = (size_t(kWidth) * 3 + 3) & ~size_t(3);
    const int hw = kWidth / 2, hh = kHeight / 2;
    Image half = NewImage(hw, hh);
    auto* px = pixman_image_get_data(half);
    for (int y = 0; y < hh; ++y) {
        const uint8_t* a = rows.data() + size_t(kHeight - 1 - 2 * y) * stride;
        const uint8_t* b = a - stride;
        for (int x = 0; x < hw; ++x) {
            uint32_t c[3];
            for (int k = 0; k < 3; ++k)
                c[k] = (a[6 * x + k] + a[6 * x + 3 + k] + b[6 * x + k] + b[6 * x + 3 + k] + 2) / 4;
            px[size_t(y) * hw + size_t(x)] = 0xFF000000u | c[2] << 16 | c[1] << 8 | c[0];
        }
    }
    Image out = OnePass(half, PIXMAN_KERNEL_CUBIC, PIXMAN_KERNEL_BOX);
    pixman_image_unref(half);
    return out;
}

// What the thumbnail path does, from the packed DIB; the result is copied
// to an image of its own so that it outlives the bitmap.
Image ImagingThumbnail(const Bytes& dib) {
    auto bitmap = BrmUtils::DibToBitmap(dib.data(), dib.size(), {kEdge, kEdge}, false, true, false);
    if (!bitmap) return NewImage(1, 1);
    const int w = bitmap->Width(), h = bitmap->Height();
    Image out = NewImage(w, h);
    pixman_image_composite32(PIXMAN_OP_SRC, bitmap->Image(), nullptr, out, 0, 0, 0, 0, 0, 0, w, h);
    return out;
}

void WritePpm(const std::string& path, Image image) {
    const int w = pixman_image_get_width(image), h = pixman_image_get_height(image);
    const auto* px = pixman_image_get_data(image);
    std::ofstream out(path, std::ios::binary);
    out << "P6\n" << w << ' ' << h << "\n255\n";
    for (size_t i = 0; i < size_t(w) * size_t(h); ++i) {
        const char rgb[3] = {char(px[i] >> 16), char(px[i] >> 8), char(px[i])};
        out.write(rgb, 3);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: scaler_compare FOLDER [RUNS]\n");
        return 2;
    }
    const std::string dir = argv[1];
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 20;
    const Bytes rows = Pixels();
    Image decoded = Decode(rows);
    // The packed DIB: header (1024 x 768, one plane, 24 bits), then the rows.
    Bytes dib(40 + rows.size(), 0);
    dib[0] = 40, dib[5] = 4, dib[9] = 3, dib[12] = 1, dib[14] = 24;
    std::copy(rows.begin(), rows.end(), dib.begin() + 40);
    const std::pair<const char*, std::function<Image()>> candidates[] = {
        {"cubic-box-1pass", [&] { return OnePass(decoded, PIXMAN_KERNEL_CUBIC, PIXMAN_KERNEL_BOX); }},
        {"cubic-box-2pass", [&] { return TwoPass(decoded, PIXMAN_KERNEL_CUBIC, PIXMAN_KERNEL_BOX); }},
        {"lanczos3-box-2pass", [&] { return TwoPass(decoded, PIXMAN_KERNEL_LANCZOS3, PIXMAN_KERNEL_BOX); }},
        {"linear-box-1pass", [&] { return OnePass(decoded, PIXMAN_KERNEL_LINEAR, PIXMAN_KERNEL_BOX); }},
        {"linear-box-2pass", [&] { return TwoPass(decoded, PIXMAN_KERNEL_LINEAR, PIXMAN_KERNEL_BOX); }},
        {"box-1pass", [&] { return OnePass(decoded, PIXMAN_KERNEL_IMPULSE, PIXMAN_KERNEL_BOX); }},
        {"box-2pass", [&] { return TwoPass(decoded, PIXMAN_KERNEL_IMPULSE, PIXMAN_KERNEL_BOX); }},
        {"half-then-cubic-box", [&] { return HalfThenCubic(rows); }},
        {"decode-box-then-bilinear", [&] { return ImagingThumbnail(dib); }},
    };
    for (const auto& [name, scale] : candidates) {
        double best = 1e9;
        Image last = nullptr;
        for (int run = 0; run < runs; ++run) {
            auto start = std::chrono::steady_clock::now();
            Image out = scale();
            best = std::min(best, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
            if (last) pixman_image_unref(last);
            last = out;
        }
        WritePpm(dir + "/" + name + ".ppm", last);
        pixman_image_unref(last);
        std::printf("%s %.3f\n", name, best);
    }
    pixman_image_unref(decoded);
    return 0;
}
