// Products and inverses of three by three matrices, which the linear colour spaces are made of.
#pragma once

#include <array>

namespace zol_v2::colorimetry::internal {

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>;

constexpr Vector operator*(const Matrix& m, const Vector& v) {
  return {m[0][0] * v[0] + m[0][1] * v[1] + m[0][2] * v[2],
          m[1][0] * v[0] + m[1][1] * v[1] + m[1][2] * v[2],
          m[2][0] * v[0] + m[2][1] * v[1] + m[2][2] * v[2]};
}

// By cofactors; the determinant must not be 0.
constexpr Matrix inverse(const Matrix& m) {
  const auto minor = [&m](int r0, int r1, int c0, int c1) {
    return m[r0][c0] * m[r1][c1] - m[r0][c1] * m[r1][c0];
  };
  const double determinant =
      m[0][0] * minor(1, 2, 1, 2) - m[0][1] * minor(1, 2, 0, 2) + m[0][2] * minor(1, 2, 0, 1);
  const double scale = 1 / determinant;
  return {{{minor(1, 2, 1, 2) * scale, -minor(0, 2, 1, 2) * scale, minor(0, 1, 1, 2) * scale},
           {-minor(1, 2, 0, 2) * scale, minor(0, 2, 0, 2) * scale, -minor(0, 1, 0, 2) * scale},
           {minor(1, 2, 0, 1) * scale, -minor(0, 2, 0, 1) * scale, minor(0, 1, 0, 1) * scale}}};
}

// With each column multiplied by the number of that place.
constexpr Matrix scaled_columns(Matrix m, const Vector& by) {
  for (Vector& row : m) {
    for (int i = 0; i < 3; ++i) row[i] *= by[i];
  }
  return m;
}

}  // namespace zol_v2::colorimetry::internal
