// The placement of a fountain fill: a 2x3 matrix in memory, and in the file
// the parts a user thinks in (scale, rotation, skew, translation). A matrix
// M = R(angle) * [[sx, sy*skew], [0, sy]] plus (tx, ty); a negative sx marks
// a horizontal flip and a negative sy a vertical one.
#pragma once

#include <array>
#include <optional>

namespace FillMatrix {

// a, c, tx, b, d, ty: x' = a*x + c*y + tx, y' = b*x + d*y + ty.
using Matrix = std::array<double, 6>;
inline constexpr Matrix kIdentity{1, 0, 0, 0, 1, 0};

struct Parts {
    double sx = 1, sy = 1;
    double skew = 0;   // tangent of the skew angle
    double angle = 0;  // radians
    double tx = 0, ty = 0;
};

// Beyond this skew angle (89.1 degrees) the matrix is taken as degenerate.
inline constexpr double kMaxSkewAngle = 1.5550883635269477;

// Nothing for a matrix without a usable scale in either direction or with
// a skew of 89.1 degrees or more.
std::optional<Parts> Decompose(const Matrix& m);
// The matrix the parts describe; nothing for parts Decompose would never
// give (a zero scale, a skew at or beyond the limit, values that are no
// numbers).
std::optional<Matrix> Compose(const Parts& p);

}  // namespace FillMatrix
