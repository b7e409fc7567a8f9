// From spectra to tristimulus values.
//
// The method is that of CIE 15:2004, clause 7.1: a sum at 1 nm of the spectrum, the power of the
// illuminant and the colour matching functions, over the range for which both are published: 360 to
// 780 nm, 380 to 780 for fluorescent lamps, 360 to 830 for equal energy and for light sources.
// Between measured points an evenly spaced spectrum is interpolated by Sprague's formula of the
// fifth degree (CIE 167:2005) and an uneven one, or one of three to five points, by the natural
// cubic spline; two points by the straight line. Beyond the ends the value of the end counts. All
// of that is linear in the measured values: a grid of wavelengths, a light and an observer give one
// table of weights, which is made once and kept.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "colorimetry/export.h"
#include "colorimetry/light.h"
#include "colorimetry/outcome.h"
#include "colorimetry/spaces.h"

namespace zol_v2 {
class ColorSpaceEmissiveSpectralType;
class ColorSpaceSpectralType;
}  // namespace zol_v2

namespace zol_v2::colorimetry {

// How values between measured points were found.
enum class Interpolation : unsigned char { none, linear, spline, sprague };

// What was done to a spectrum that did not have a value at each wavelength that is summed.
struct SpectralMethod {
  Interpolation interpolation =
      Interpolation::none;                // none for a step of 1 nm at whole wavelengths
  double first = 0, last = 0;             // of the measured points, in nm
  int summed_first = 0, summed_last = 0;  // in nm
  // The greatest share of X, Y or Z of the white that rests on the values repeated at the ends.
  double extrapolated = 0;
  double widest_step = 0;  // in nm

  // CIE 15 has interpolation for steps of up to 20 nm.
  bool is_too_coarse() const { return widest_step > 20; }
};

// "CIE 15 sum at 1 nm, 360 to 780 nm; Sprague interpolation (CIE 167); ends repeated below 400 and
// above 700 nm".
ZOL_COLORIMETRY_API std::string description_of(const SpectralMethod& method);

// Wavelengths in nm, ascending.
class ZOL_COLORIMETRY_API Grid {
 public:
  // Refused: less than two points, wavelengths that are no positive numbers or the same, a step or
  // a number of points that no instrument has (more than 100,000).
  static Outcome<Grid> even(double first, double step, std::size_t count);
  // In ascending order; counts as even where the steps differ by less than 1e-6 of one.
  static Outcome<Grid> of(std::vector<double> wavelengths);

  // How many wavelengths there are.
  std::size_t size() const { return count_; }
  // The least wavelength, and the greatest, in nm.
  double first() const { return first_; }
  double last() const {
    return uneven_.empty() ? first_ + step_ * (double(count_) - 1) : uneven_.back();
  }
  // Whether all steps are equal.
  bool is_even() const { return uneven_.empty(); }
  // In nm, of an even one; 0 of others.
  double step() const { return step_; }
  // In nm, by a number below size().
  double operator[](std::size_t i) const {
    return uneven_.empty() ? first_ + step_ * double(i) : uneven_[i];
  }
  // Whether all wavelengths are exactly equal.
  bool operator==(const Grid& other) const {
    return count_ == other.count_ && first_ == other.first_ && step_ == other.step_ &&
           uneven_ == other.uneven_;
  }

 private:
  Grid() = default;

  double first_ = 0, step_ = 0;
  std::size_t count_ = 0;
  std::vector<double> uneven_;
};

// The table of weights for one grid, light and observer. Safe to use from many threads at once.
class ZOL_COLORIMETRY_API Weights {
 public:
  // The perfect diffuser is at Y = 1. Refused: a light without a spectrum, a grid that leaves more
  // than a tenth of X, Y or Z to its end values, and one with steps of more than 50 nm. A bounded
  // number of tables is kept.
  static Outcome<std::shared_ptr<const Weights>> of(const Grid& grid, const Light& light,
                                                    Observer observer);
  // For the power of a source itself: 683 lm/W times the sum by 1 nm, so that spectral radiance in
  // W/(sr m2 nm) gives luminance in cd/m2. Refused as above, the shares being those of equal
  // energy.
  static Outcome<std::shared_ptr<const Weights>> of_emission(const Grid& grid, Observer observer);

  // `values` has as many as the grid has.
  Xyz apply(const double* values) const {
    double x = 0, y = 0, z = 0;
    const double* const weights = weights_.data();
    for (std::size_t i = 0; i < size_; ++i) {
      x += weights[i] * values[i];
      y += weights[size_ + i] * values[i];
      z += weights[2 * size_ + i] * values[i];
    }
    return {x, y, z};
  }
  // Of the grid.
  std::size_t size() const { return size_; }
  // What the table does.
  const SpectralMethod& method() const { return method_; }

 private:
  friend struct WeightMaker;
  Weights() = default;

  std::size_t size_ = 0;
  std::vector<double> weights_;  // of X, then of Y, then of Z
  SpectralMethod method_;
};

// Measured values over a grid.
class ZOL_COLORIMETRY_API Spectrum {
 public:
  // One value for each wavelength: reflectance or transmittance factors, or powers of a source.
  // What is too much is dropped, what is missing 0.
  Spectrum(Grid grid, std::vector<double> values)
      : grid_(std::move(grid)), values_(std::move(values)) {
    values_.resize(grid_.size());
  }
  // The points of a document, in whatever order. Refused: what Grid refuses, and values that are no
  // numbers.
  static Outcome<Spectrum> of(const ColorSpaceSpectralType& space);
  static Outcome<Spectrum> of(const ColorSpaceEmissiveSpectralType& space);

  // Where the values were measured.
  const Grid& grid() const { return grid_; }
  // As many as the grid has wavelengths.
  const std::vector<double>& values() const { return values_; }
  // At any wavelength in nm, by the interpolation that the grid has, the end values beyond its
  // ends.
  double at(double wavelength) const;

 private:
  Grid grid_;
  std::vector<double> values_;
};

}  // namespace zol_v2::colorimetry
