// Decomposition of a fountain's matrix into scale, rotation, skew and
// translation, and its exact inverse (see FountainMatrix.h).
#include "fill/FountainMatrix.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace FillMatrix {

std::optional<Parts> Decompose(const Matrix& m) {
    const double a = m[0], c = m[1], b = m[3], d = m[4];
    Parts p;
    p.tx = m[2];
    p.ty = m[5];
    // A flip is only taken out of the x axis when the matrix mirrors and x
    // points backwards; otherwise the rotation absorbs the sign.
    const bool flip = a < 0 && a * d - c * b < 0;
    const double ra = flip ? -a : a, rb = flip ? -b : b;
    p.angle = std::atan2(rb, ra);
    p.sx = std::sqrt(ra * ra + rb * rb);
    if (flip) p.sx = -p.sx;
    const double h = std::sqrt(c * c + d * d);
    if (!(h > 0) || !(p.sx != 0) || !std::isfinite(h) || !std::isfinite(p.sx)) return std::nullopt;
    // Rounding can push the cosine a hair past 1 for perpendicular columns
    // of very different length.
    const double cosT = std::clamp((c * a + d * b) / (h * p.sx), -1.0, 1.0);
    const double t = std::acos(cosT);
    p.sy = std::fabs(std::sin(t)) * h;
    if (!(p.sy > 0)) return std::nullopt;
    const double u = std::numbers::pi / 2 - t;
    if (!(std::fabs(u) < kMaxSkewAngle)) return std::nullopt;
    p.skew = std::tan(u);
    if (std::sin(-p.angle) * c + std::cos(-p.angle) * d < 0) {
        p.sy = -p.sy;
        p.skew = -p.skew;
    }
    if (!std::isfinite(p.tx) || !std::isfinite(p.ty)) return std::nullopt;
    return p;
}

std::optional<Matrix> Compose(const Parts& p) {
    for (double v : {p.sx, p.sy, p.skew, p.angle, p.tx, p.ty}) {
        if (!std::isfinite(v)) return std::nullopt;
    }
    if (p.sx == 0 || p.sy == 0 || !(std::fabs(std::atan(p.skew)) < kMaxSkewAngle)) return std::nullopt;
    const double cosA = std::cos(p.angle), sinA = std::sin(p.angle);
    const double c0 = p.sy * p.skew;  // second column before the rotation: (sy*skew, sy)
    return Matrix{p.sx * cosA, cosA * c0 - sinA * p.sy, p.tx, p.sx * sinA, sinA * c0 + cosA * p.sy, p.ty};
}

}  // namespace FillMatrix
