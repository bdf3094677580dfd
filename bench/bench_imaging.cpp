// Thumbnail cost: a 1024 x 768 24-bit DIB fitted into 256 x 256 on white and
// turned into an HBITMAP, as a reader's GetBitmap does; and the encoders.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "imaging/Thumbnail.h"
#include "imaging/NativeBitmap.h"
#include "imaging/codecs/ImageCodecs.h"

namespace {

std::vector<uint8_t> MakeDib(int width, int height) {
    const size_t stride = (size_t(width) * 3 + 3) & ~size_t(3);
    std::vector<uint8_t> dib(40 + stride * size_t(height));
    BITMAPINFOHEADER h{};
    h.biSize = 40;
    h.biWidth = width;
    h.biHeight = height;
    h.biPlanes = 1;
    h.biBitCount = 24;
    h.biSizeImage = DWORD(stride * size_t(height));
    std::memcpy(dib.data(), &h, 40);
    for (int y = 0; y < height; ++y) {
        uint8_t* row = dib.data() + 40 + size_t(y) * stride;
        for (int x = 0; x < width; ++x) {
            row[3 * x] = uint8_t(x);
            row[3 * x + 1] = uint8_t(y);
            row[3 * x + 2] = uint8_t((x ^ y) * 7);
        }
    }
    return dib;
}

void BM_DibThumbnail256(benchmark::State& state) {
    const auto dib = MakeDib(1024, 768);
    for (auto _ : state) {
        auto bitmap = BrmUtils::DibToBitmap(dib.data(), dib.size(), {256, 256}, false, true, false);
        HBITMAP out = BrmUtils::CreateHBITMAP(*bitmap, 0xFFFFFFFF);
        benchmark::DoNotOptimize(out->bits);
        DeleteObject(out);
    }
}
BENCHMARK(BM_DibThumbnail256)->Unit(benchmark::kMillisecond);

void BM_DibIcon48(benchmark::State& state) {
    const auto dib = MakeDib(1024, 768);
    for (auto _ : state) {
        auto bitmap = BrmUtils::DibToBitmap(dib.data(), dib.size(), {48, 48}, false, false, true);
        HICON icon = BrmUtils::BitmapToIcon(*bitmap);
        benchmark::DoNotOptimize(icon);
        DestroyIcon(icon);
    }
}
BENCHMARK(BM_DibIcon48)->Unit(benchmark::kMillisecond);

}  // namespace
