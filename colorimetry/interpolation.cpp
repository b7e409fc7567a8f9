#include "colorimetry/internal/interpolation.h"

#include <algorithm>
#include <cmath>

namespace zol_v2::colorimetry::internal {

namespace {

constexpr std::size_t k_padding = 2;
constexpr std::size_t k_sprague_points = 6;

// CIE 167:2005: the point two steps before the first one, and the one between, from the six first
// measured ones; at the other end mirrored.
constexpr double k_before[k_padding][k_sprague_points] = {
    {884. / 209, -1960. / 209, 3033. / 209, -2648. / 209, 1080. / 209, -180. / 209},
    {508. / 209, -540. / 209, 488. / 209, -367. / 209, 144. / 209, -24. / 209}};

// Sprague's polynomial between the third and the fourth of six points, by powers of t from 0.
constexpr double k_sprague[k_sprague_points][k_sprague_points] = {
    {0, 0, 1, 0, 0, 0},
    {2. / 24, -16. / 24, 0, 16. / 24, -2. / 24, 0},
    {-1. / 24, 16. / 24, -30. / 24, 16. / 24, -1. / 24, 0},
    {-9. / 24, 39. / 24, -70. / 24, 66. / 24, -33. / 24, 7. / 24},
    {13. / 24, -64. / 24, 126. / 24, -124. / 24, 61. / 24, -12. / 24},
    {-5. / 24, 25. / 24, -50. / 24, 50. / 24, -25. / 24, 5. / 24}};

// The interval that has the wavelength, which lies within the grid.
std::size_t interval_of(const Grid& grid, double wavelength) {
  const std::size_t last = grid.size() - 2;
  if (grid.is_even()) {
    const double steps = std::floor((wavelength - grid.first()) / grid.step() + 1e-9);
    return std::min(static_cast<std::size_t>(std::max(steps, 0.0)), last);
  }
  std::size_t low = 0, high = last;
  while (low < high) {
    const std::size_t middle = (low + high + 1) / 2;
    if (grid[middle] <= wavelength) {
      low = middle;
    } else {
      high = middle - 1;
    }
  }
  return low;
}

}  // namespace

Interpolation interpolation_of(const Grid& grid) {
  if (grid.size() == 2) return Interpolation::linear;
  return grid.is_even() && grid.size() >= k_sprague_points ? Interpolation::sprague
                                                           : Interpolation::spline;
}

WeightCollector::WeightCollector(const Grid& grid)
    : grid_(grid), interpolation_(interpolation_of(grid)) {
  for (std::vector<double>& row : values_) row.resize(grid.size() + 2 * k_padding);
  if (interpolation_ == Interpolation::spline) {
    for (std::vector<double>& row : curvatures_) row.resize(grid.size());
  }
}

void WeightCollector::add(double wavelength, const Amounts& amounts) {
  constexpr double k_same = 1e-9;  // nm
  const double at = std::clamp(wavelength, grid_.first(), grid_.last());
  const std::size_t interval = interval_of(grid_, at);
  const double left = grid_[interval], width = grid_[interval + 1] - left;
  const double from_left = at - left;
  if (std::fabs(from_left) <= k_same || std::fabs(from_left - width) <= k_same) {
    const std::size_t point = interval + (std::fabs(from_left) <= k_same ? 0 : 1);
    for (std::size_t c = 0; c < k_channels; ++c) values_[c][k_padding + point] += amounts[c];
    return;
  }
  is_on_points_ = false;
  const double t = from_left / width;
  switch (interpolation_) {
    case Interpolation::sprague:
      add_sprague(interval, t, amounts);
      break;
    case Interpolation::spline:
      add_spline(interval, t, amounts);
      break;
    default:
      add_linear(interval, t, amounts);
      break;
  }
}

void WeightCollector::add_linear(std::size_t interval, double t, const Amounts& amounts) {
  for (std::size_t c = 0; c < k_channels; ++c) {
    values_[c][k_padding + interval] += (1 - t) * amounts[c];
    values_[c][k_padding + interval + 1] += t * amounts[c];
  }
}

// The cubic between two points from their values and second derivatives.
void WeightCollector::add_spline(std::size_t interval, double t, const Amounts& amounts) {
  add_linear(interval, t, amounts);
  const double width = grid_[interval + 1] - grid_[interval];
  const double left = 1 - t, scale = width * width / 6;
  for (std::size_t c = 0; c < k_channels; ++c) {
    curvatures_[c][interval] += (left * left * left - left) * scale * amounts[c];
    curvatures_[c][interval + 1] += (t * t * t - t) * scale * amounts[c];
  }
}

void WeightCollector::add_sprague(std::size_t interval, double t, const Amounts& amounts) {
  for (std::size_t i = 0; i < k_sprague_points; ++i) {
    double share = 0;
    for (std::size_t power = k_sprague_points; power-- > 0;) {
      share = share * t + k_sprague[power][i];
    }
    for (std::size_t c = 0; c < k_channels; ++c) values_[c][interval + i] += share * amounts[c];
  }
}

std::vector<double> WeightCollector::take() {
  if (interpolation_ == Interpolation::sprague) fold_padding();
  if (interpolation_ == Interpolation::spline) fold_curvature();
  std::vector<double> result;
  result.reserve(k_channels * grid_.size());
  for (const std::vector<double>& row : values_) {
    result.insert(result.end(), row.begin() + k_padding, row.end() - k_padding);
  }
  return result;
}

void WeightCollector::fold_padding() {
  for (std::vector<double>& row : values_) {
    const std::size_t last = row.size() - 1;
    for (std::size_t p = 0; p < k_padding; ++p) {
      for (std::size_t i = 0; i < k_sprague_points; ++i) {
        row[k_padding + i] += k_before[p][i] * row[p];
        row[last - k_padding - i] += k_before[p][i] * row[last - p];
      }
    }
  }
}

// The second derivatives m of a natural spline solve T m = K y, with T symmetric and of three
// diagonals. Amounts c of m are amounts K' T^-1 c of the values y.
void WeightCollector::fold_curvature() {
  const std::size_t inner = grid_.size() - 2;
  std::vector<double> width(grid_.size() - 1), diagonal(inner);
  for (std::size_t i = 0; i < width.size(); ++i) width[i] = grid_[i + 1] - grid_[i];
  for (std::vector<double>& amounts : curvatures_) {
    // Thomas' algorithm; T is dominated by its diagonal.
    for (std::size_t i = 0; i < inner; ++i) {
      diagonal[i] = 2 * (width[i] + width[i + 1]);
      if (i == 0) continue;
      const double factor = width[i] / diagonal[i - 1];
      diagonal[i] -= factor * width[i];
      amounts[i + 1] -= factor * amounts[i];
    }
    for (std::size_t i = inner; i-- > 0;) {
      const double above = i + 1 < inner ? width[i + 1] * amounts[i + 2] : 0;
      amounts[i + 1] = (amounts[i + 1] - above) / diagonal[i];
    }
  }
  for (std::size_t c = 0; c < k_channels; ++c) {
    std::vector<double>& row = values_[c];
    for (std::size_t i = 1; i <= inner; ++i) {
      const double solved = 6 * curvatures_[c][i];
      const double before = solved / width[i - 1], behind = solved / width[i];
      row[k_padding + i - 1] += before;
      row[k_padding + i] -= before + behind;
      row[k_padding + i + 1] += behind;
    }
  }
}

}  // namespace zol_v2::colorimetry::internal
