// Shrinking by whole factors with a box filter: each pixel of the result is
// the mean of a kx x ky block of the source, the blocks at the right and
// bottom edges being the smaller ones that remain. Rows are fed one at a
// time, so a decoder can shrink while it decodes and the full-size image is
// never made. The thumbnail path does the bulk of a large reduction this way
// and leaves pixman a factor below two.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "imaging/NativeBitmap.h"

namespace BrmUtils {

class BoxReducer {
public:
    // Rows of `width` pixels, `height` of them, given top row first as
    // `channels` bytes per pixel: 3 for the B, G, R bytes of an opaque 24-bit
    // row, 4 for premultiplied 0xAARRGGBB words as they lie in memory.
    BoxReducer(int width, int height, int kx, int ky, int channels);

    // Makes the result, of ceil(width / kx) x ceil(height / ky); false for a
    // size NativeBitmap refuses or a failed allocation. Call once, first.
    bool Start(PixelFormat format);
    // The next source row; every `ky` rows (and at the last) one row of the
    // result is written.
    void AddRow(const uint8_t* row);
    // The result once all rows were added; null before.
    std::unique_ptr<NativeBitmap> Finish();

    static int Reduced(int size, int k) { return (size + k - 1) / k; }

private:
    void Flush();

    int width_, height_, kx_, ky_, channels_;
    int rowsIn_ = 0;      // source rows added so far
    int rowsInBlock_ = 0; // of them, since the last result row
    int outRow_ = 0;
    std::vector<uint32_t> sums_;  // per source column and channel, over the rows of the block
    std::unique_ptr<NativeBitmap> result_;
};

// The image shrunk by kx x ky (as BoxReducer), premultiplied alpha kept.
std::unique_ptr<NativeBitmap> ReduceBox(const NativeBitmap& image, int kx, int ky);

}  // namespace BrmUtils
