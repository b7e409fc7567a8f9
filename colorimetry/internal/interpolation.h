// Interpolation over a grid, read backwards: how much of each measured value is in a sum of
// interpolated ones.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "colorimetry/spectrum.h"

namespace zol_v2::colorimetry::internal {

// Interpolation that a grid calls for.
Interpolation interpolation_of(const Grid& grid);

// Collects weights at any wavelengths and gives them to the points of a grid. With the amounts
// w(l) that were added, the sum of w(l) s(l) over the interpolated spectrum s equals the sum of the
// weights times the measured values.
class WeightCollector {
 public:
  static constexpr std::size_t k_channels = 3;
  using Amounts = std::array<double, k_channels>;

  explicit WeightCollector(const Grid& grid);

  // Beyond the ends of the grid the amount goes to the end.
  void add(double wavelength, const Amounts& amounts);
  // One row of grid.size() weights for each channel.
  std::vector<double> take();

  // Whether all that was added lay on points of the grid.
  bool is_on_points() const { return is_on_points_; }

 private:
  using Rows = std::array<std::vector<double>, k_channels>;

  void add_linear(std::size_t interval, double t, const Amounts& amounts);
  void add_spline(std::size_t interval, double t, const Amounts& amounts);
  void add_sprague(std::size_t interval, double t, const Amounts& amounts);
  void fold_padding();
  void fold_curvature();

  const Grid& grid_;
  Interpolation interpolation_;
  bool is_on_points_ = true;
  // Of Sprague's formula with two more points before the grid and two behind it.
  Rows values_;
  // Of the spline: amounts of the second derivatives at the points.
  Rows curvatures_;
};

}  // namespace zol_v2::colorimetry::internal
