#include "colorimetry/spectrum.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <mutex>
#include <numeric>
#include <shared_mutex>
#include <string>
#include <utility>

#include "colorimetry/internal/interpolation.h"
#include "colorimetry/internal/tables.h"
#include "colorimetry/internal/text.h"
#include "model/Zol.h"

namespace zol_v2::colorimetry {

using internal::k_first_nm;
using internal::k_last_nm;
using internal::number_text;
using internal::WeightCollector;

namespace {

constexpr std::size_t k_most_points = 100000;
constexpr double k_most_extrapolated = 0.1;
constexpr double k_widest_step = 50;         // nm
constexpr double k_luminous_efficacy = 683;  // lm/W, CIE 15:2004, clause 7.2

// Power by wavelength that spectra are summed under.
using Power = std::array<double, k_last_nm - k_first_nm + 1>;

Power power_of(const Light& light) {
  Power result{};
  for (int nm = k_first_nm; nm <= k_last_nm; ++nm) {
    result[std::size_t(nm - k_first_nm)] = light.power(nm);
  }
  return result;
}

}  // namespace

struct WeightMaker {
  // `scale` is 0 for a perfect diffuser at Y = 1.
  static Outcome<std::shared_ptr<const Weights>> make(const Grid& grid, const Power& power,
                                                      Observer observer, double scale);
};

Outcome<std::shared_ptr<const Weights>> WeightMaker::make(const Grid& grid, const Power& power,
                                                          Observer observer, double scale) {
  Weights result;
  SpectralMethod& method = result.method_;
  WeightCollector collector(grid);
  WeightCollector::Amounts total{}, outside{};
  for (int nm = k_first_nm; nm <= k_last_nm; ++nm) {
    const double light = power[std::size_t(nm - k_first_nm)];
    if (light == 0) continue;
    if (method.summed_first == 0) method.summed_first = nm;
    method.summed_last = nm;
    const Xyz response = matching_functions(observer, nm);
    const WeightCollector::Amounts amounts = {light * response.x, light * response.y,
                                              light * response.z};
    collector.add(nm, amounts);
    const bool is_outside = nm < grid.first() || nm > grid.last();
    for (std::size_t c = 0; c < amounts.size(); ++c) {
      total[c] += amounts[c];
      if (is_outside) outside[c] += amounts[c];
    }
  }
  for (std::size_t c = 0; c < total.size(); ++c) {
    method.extrapolated = std::max(method.extrapolated, outside[c] / total[c]);
  }
  if (method.extrapolated > k_most_extrapolated) {
    return Refusal{"a spectrum from " + number_text(grid.first()) + " to " +
                   number_text(grid.last()) + " nm leaves too much of the visible range out"};
  }
  method.first = grid.first();
  method.last = grid.last();
  method.interpolation =
      collector.is_on_points() ? Interpolation::none : internal::interpolation_of(grid);
  for (std::size_t i = 0; i + 1 < grid.size(); ++i) {
    const bool is_summed = grid[i] < method.summed_last && grid[i + 1] > method.summed_first;
    if (is_summed) method.widest_step = std::max(method.widest_step, grid[i + 1] - grid[i]);
  }
  if (method.widest_step > k_widest_step) {
    return Refusal{"a spectrum in steps of " + number_text(method.widest_step) +
                   " nm is too coarse"};
  }
  result.size_ = grid.size();
  result.weights_ = collector.take();
  const double factor = scale != 0 ? scale : 1 / total[1];
  for (double& weight : result.weights_) weight *= factor;
  return std::shared_ptr<const Weights>(std::make_shared<Weights>(std::move(result)));
}

namespace {

// Tables in use. A document has a handful of grids; the oldest goes when there are too many.
class WeightShelf {
 public:
  struct Key {
    const Grid& grid;
    const Light& light;
    Observer observer;
    bool is_emission;
  };

  std::shared_ptr<const Weights> find(const Key& key) const {
    const std::shared_lock<std::shared_mutex> lock(mutex_);
    for (const Entry& entry : entries_) {
      if (entry.is(key)) return entry.weights;
    }
    return nullptr;
  }

  void put(const Key& key, const std::shared_ptr<const Weights>& weights) {
    if (key.grid.size() > k_most_kept_points) return;
    const std::unique_lock<std::shared_mutex> lock(mutex_);
    for (const Entry& entry : entries_) {
      if (entry.is(key)) return;
    }
    Entry entry = {key.grid, key.light, key.observer, key.is_emission, weights};
    if (entries_.size() < k_most_entries) {
      entries_.push_back(std::move(entry));
    } else {
      entries_[next_] = std::move(entry);
      next_ = (next_ + 1) % k_most_entries;
    }
  }

 private:
  static constexpr std::size_t k_most_entries = 64;
  static constexpr std::size_t k_most_kept_points = 4096;

  struct Entry {
    Grid grid;
    Light light;
    Observer observer;
    bool is_emission;
    std::shared_ptr<const Weights> weights;

    bool is(const Key& key) const {
      return observer == key.observer && is_emission == key.is_emission && light == key.light &&
             grid == key.grid;
    }
  };

  mutable std::shared_mutex mutex_;
  std::vector<Entry> entries_;
  std::size_t next_ = 0;
};

WeightShelf& shelf() {
  static WeightShelf shelf;
  return shelf;
}

// Points of a document as a grid and its values.
template <class Each, class Number>
Outcome<Spectrum> spectrum_of(std::size_t size, const Each& each, const Number& number) {
  std::vector<double> wavelengths, values;
  wavelengths.reserve(size);
  values.reserve(size);
  bool is_ascending = true;
  for (const auto& point : each) {
    const double wavelength = point.get_Wavelength();
    is_ascending = is_ascending && (wavelengths.empty() || wavelengths.back() < wavelength);
    wavelengths.push_back(wavelength);
    values.push_back(number(point));
    if (!std::isfinite(values.back()) || !std::isfinite(wavelength)) {
      return Refusal{"the spectrum has a point that is no number"};
    }
  }
  if (!is_ascending) {
    std::vector<std::size_t> order(wavelengths.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return wavelengths[a] < wavelengths[b]; });
    std::vector<double> sorted_wavelengths, sorted_values;
    for (const std::size_t i : order) {
      sorted_wavelengths.push_back(wavelengths[i]);
      sorted_values.push_back(values[i]);
    }
    wavelengths.swap(sorted_wavelengths);
    values.swap(sorted_values);
  }
  Outcome<Grid> grid = Grid::of(std::move(wavelengths));
  if (!grid) return grid.refusal();
  return Spectrum(std::move(*grid), std::move(values));
}

}  // namespace

// --- Grids ---------------------------------------------------------------------------------------

Outcome<Grid> Grid::even(double first, double step, std::size_t count) {
  if (count < 2) return Refusal{"a spectrum of fewer than two points has no colour"};
  if (count > k_most_points) return Refusal{"the spectrum has too many points"};
  if (!std::isfinite(first) || !std::isfinite(step) || !(first > 0) || !(step > 0)) {
    return Refusal{"the wavelengths of the spectrum are no ascending positive numbers"};
  }
  Grid grid;
  grid.first_ = first;
  grid.step_ = step;
  grid.count_ = count;
  return grid;
}

Outcome<Grid> Grid::of(std::vector<double> wavelengths) {
  const std::size_t count = wavelengths.size();
  if (count < 2) return even(0, 0, count);
  const double first = wavelengths.front();
  const double step = (wavelengths.back() - first) / double(count - 1);
  bool is_even = true;
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0 && wavelengths[i] == wavelengths[i - 1]) {
      return Refusal{"the spectrum has two points at " + number_text(wavelengths[i]) + " nm"};
    }
    if (i > 0 && !(wavelengths[i] > wavelengths[i - 1])) return even(0, 0, count);
    is_even = is_even && std::fabs(wavelengths[i] - (first + step * double(i))) < 1e-6 * step;
  }
  Outcome<Grid> grid = even(first, step, count);
  if (grid && !is_even) {
    grid->step_ = 0;
    grid->uneven_ = std::move(wavelengths);
  }
  return grid;
}

// --- Weights -------------------------------------------------------------------------------------

Outcome<std::shared_ptr<const Weights>> Weights::of(const Grid& grid, const Light& light,
                                                    Observer observer) {
  const WeightShelf::Key key = {grid, light, observer, false};
  if (auto kept = shelf().find(key)) return kept;
  if (!light.has_spectrum()) {
    return Refusal{"no spectrum is known for the light \"" + light.name() + '"'};
  }
  auto made = WeightMaker::make(grid, power_of(light), observer, 0);
  if (made) shelf().put(key, *made);
  return made;
}

Outcome<std::shared_ptr<const Weights>> Weights::of_emission(const Grid& grid, Observer observer) {
  const Light equal_energy = StandardIlluminant::E;
  const WeightShelf::Key key = {grid, equal_energy, observer, true};
  if (auto kept = shelf().find(key)) return kept;
  auto made = WeightMaker::make(grid, power_of(equal_energy), observer, k_luminous_efficacy);
  if (made) shelf().put(key, *made);
  return made;
}

std::string description_of(const SpectralMethod& method) {
  std::string text = "CIE 15 sum at 1 nm from " + std::to_string(method.summed_first) + " to " +
                     std::to_string(method.summed_last) + " nm";
  switch (method.interpolation) {
    case Interpolation::linear:
      text += ", linear interpolation";
      break;
    case Interpolation::spline:
      text += ", cubic spline";
      break;
    case Interpolation::sprague:
      text += ", Sprague interpolation (CIE 167)";
      break;
    case Interpolation::none:
      break;
  }
  const bool is_below = method.first > method.summed_first;
  const bool is_above = method.last < method.summed_last;
  if (is_below || is_above) text += ", end value repeated";
  if (is_below) text += " below " + number_text(method.first);
  if (is_above) text += std::string(is_below ? " and" : "") + " above " + number_text(method.last);
  if (is_below || is_above) text += " nm";
  if (method.is_too_coarse()) {
    text += ", steps of up to " + number_text(method.widest_step) + " nm where CIE 15 allows 20";
  }
  return text;
}

// --- Spectra -------------------------------------------------------------------------------------

Outcome<Spectrum> Spectrum::of(const ColorSpaceSpectralType& space) {
  return spectrum_of(
      space.size_ReflectancePoint(), space.each_ReflectancePoint(),
      [](const ReflectancePointType& point) { return point.get_ReflectancePointType(); });
}

Outcome<Spectrum> Spectrum::of(const ColorSpaceEmissiveSpectralType& space) {
  return spectrum_of(
      space.size_EmissiveSpectralPoint(), space.each_EmissiveSpectralPoint(),
      [](const EmissiveSpectralPointType& point) { return point.get_EmissiveSpectralPointType(); });
}

double Spectrum::at(double wavelength) const {
  WeightCollector collector(grid_);
  collector.add(wavelength, {1, 0, 0});
  const std::vector<double> weights = collector.take();
  return std::inner_product(values_.begin(), values_.end(), weights.begin(), 0.0);
}

}  // namespace zol_v2::colorimetry
