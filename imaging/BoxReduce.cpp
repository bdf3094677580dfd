// BoxReducer (see BoxReduce.h). The rows of a block are summed byte by byte
// into one counter per column and channel, a loop the compiler vectorises;
// the columns are then summed block by block and divided once per result
// pixel.
#include "imaging/BoxReduce.h"

#include <algorithm>
#include <bit>

#include <pixman.h>

#include "imaging/PixelOps.h"

namespace BrmUtils {

// Four channels are taken as the bytes B, G, R, A of a word in memory.
static_assert(std::endian::native == std::endian::little, "ARGB words are read as bytes B, G, R, A");

BoxReducer::BoxReducer(int width, int height, int kx, int ky, int channels)
    : width_(width), height_(height), kx_(std::max(kx, 1)), ky_(std::max(ky, 1)), channels_(channels) {}

bool BoxReducer::Start(PixelFormat format) {
    if (width_ <= 0 || height_ <= 0 || (channels_ != 3 && channels_ != 4)) return false;
    result_ = NativeBitmap::Create(Reduced(width_, kx_), Reduced(height_, ky_), format);
    if (!result_) return false;
    sums_.assign(size_t(width_) * size_t(channels_), 0);
    return true;
}

void BoxReducer::AddRow(const uint8_t* row) {
    if (!result_ || rowsIn_ >= height_) return;
    uint32_t* sums = sums_.data();
    for (size_t i = 0, n = sums_.size(); i < n; ++i) sums[i] += row[i];
    ++rowsIn_;
    if (++rowsInBlock_ == ky_ || rowsIn_ == height_) Flush();
}

void BoxReducer::Flush() {
    auto* out = reinterpret_cast<uint32_t*>(reinterpret_cast<uint8_t*>(pixman_image_get_data(result_->Image())) +
                                            ptrdiff_t(outRow_) * pixman_image_get_stride(result_->Image()));
    const int c = channels_;
    const uint32_t* sums = sums_.data();
    // One reciprocal for all the full blocks, another for the last column's.
    const int lastWidth = width_ - (Reduced(width_, kx_) - 1) * kx_;
    const double full = 1.0 / (double(kx_) * rowsInBlock_), last = 1.0 / (double(lastWidth) * rowsInBlock_);
    for (int x0 = 0, ox = 0; x0 < width_; x0 += kx_, ++ox) {
        const int x1 = std::min(x0 + kx_, width_);
        uint64_t total[4] = {0, 0, 0, 0};
        for (int x = x0; x < x1; ++x)
            for (int k = 0; k < c; ++k) total[k] += sums[size_t(x) * size_t(c) + size_t(k)];
        const double scale = x1 - x0 == kx_ ? full : last;
        auto mean = [scale](uint64_t sum) { return uint32_t(double(sum) * scale + 0.5); };
        const uint32_t alpha = c == 4 ? mean(total[3]) : 0xFF;
        out[ox] = Pixels::Pack(alpha, mean(total[2]), mean(total[1]), mean(total[0]));
    }
    std::fill(sums_.begin(), sums_.end(), 0u);
    rowsInBlock_ = 0;
    ++outRow_;
}

std::unique_ptr<NativeBitmap> BoxReducer::Finish() {
    if (rowsIn_ < height_) return nullptr;
    return std::move(result_);
}

std::unique_ptr<NativeBitmap> ReduceBox(const NativeBitmap& image, int kx, int ky) {
    const int w = image.Width(), h = image.Height();
    BoxReducer reducer(w, h, kx, ky, 4);
    if (!reducer.Start(image.Format())) return nullptr;
    const auto* base = reinterpret_cast<const uint8_t*>(pixman_image_get_data(image.Image()));
    const int stride = pixman_image_get_stride(image.Image());
    for (int y = 0; y < h; ++y) reducer.AddRow(base + ptrdiff_t(y) * stride);
    return reducer.Finish();
}

}  // namespace BrmUtils
