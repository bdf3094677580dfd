// The test picture of the thumbnail benchmarks (bench/thumb_time and
// bench/scaler_compare): 1024 x 768, as the 24-bit rows of a DIB.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace thumbbench {

constexpr int kWidth = 1024, kHeight = 768, kEdge = 256;

using Bytes = std::vector<uint8_t>;

// 24-bit DIB rows, bottom-up, of a picture with what photographs and
// drawings have: smooth gradients, hard edges of shapes, fine texture and
// text-like detail. Deterministic, so every run scales the same pixels.
inline Bytes Pixels() {
    const size_t stride = (size_t(kWidth) * 3 + 3) & ~size_t(3);
    Bytes rows(stride * kHeight, 0);
    uint32_t noise = 12345;
    for (int y = 0; y < kHeight; ++y) {
        uint8_t* row = rows.data() + size_t(kHeight - 1 - y) * stride;
        for (int x = 0; x < kWidth; ++x) {
            double r = 255.0 * x / kWidth, g = 255.0 * y / kHeight, b = 128 + 100 * std::sin(x * 0.02) * std::cos(y * 0.03);
            const double dx = x - 600, dy = y - 350;
            if (dx * dx + dy * dy < 200.0 * 200.0) r = 230, g = 60, b = 40;          // a disc
            if (x > 100 && x < 400 && y > 450 && y < 700) r = g = b = 30 + (x / 8 % 2) * 200;  // stripes
            if (x > 120 && x < 380 && y > 80 && y < 300) {                          // texture
                const double t = 127 + 120 * std::sin(x * 0.35 + y * 0.21);
                r = t, g = 255 - t, b = 90;
            }
            noise = noise * 1103515245u + 12345u;
            const int grain = int((noise >> 16) & 15) - 8;
            auto clamp = [grain](double v) { return uint8_t(std::clamp(int(v) + grain, 0, 255)); };
            row[3 * x] = clamp(b), row[3 * x + 1] = clamp(g), row[3 * x + 2] = clamp(r);
        }
    }
    return rows;
}

}  // namespace thumbbench
