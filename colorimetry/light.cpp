#include "colorimetry/light.h"

#include <array>
#include <cmath>
#include <utility>

#include "colorimetry/internal/tables.h"
#include "colorimetry/internal/text.h"
#include "model/Zol.h"
#include "port/wide_text.h"

namespace zol_v2::colorimetry {

using internal::IlluminantTable;
using internal::k_first_nm;
using internal::k_last_nm;
using internal::number_text;
using zol::port::to_utf8;

namespace {

// In the order of the format's enumeration, from 1.
constexpr std::string_view k_names[] = {"A", "B",  "C",  "D50", "D55", "D65", "D75",
                                        "E", "F2", "F3", "F7",  "F11", "F12", "9300"};
static_assert(std::size(k_names) == k_standard_illuminants);
static_assert(int(StandardIlluminant::D50) == int(Illuminant::Illuminant_D50));
static_assert(int(StandardIlluminant::F12) == int(Illuminant::Illuminant_F12));
static_assert(int(StandardIlluminant::monitor_9300) == int(Illuminant::Illuminant_9300));

constexpr double k_monitor_9300[] = {0.2848, 0.2932};

const IlluminantTable* find_table(StandardIlluminant illuminant) {
  for (int i = 0; i < internal::k_illuminant_count; ++i) {
    if (internal::k_illuminants[i].name == name_of(illuminant)) return &internal::k_illuminants[i];
  }
  return nullptr;
}

// By the number of the illuminant; null for what has no table.
const IlluminantTable* table_of(StandardIlluminant illuminant) {
  static const auto tables = [] {
    std::array<const IlluminantTable*, k_standard_illuminants + 1> result{};
    for (int i = 1; i <= k_standard_illuminants; ++i) {
      result[std::size_t(i)] = find_table(StandardIlluminant(i));
    }
    return result;
  }();
  return tables[static_cast<std::size_t>(illuminant)];
}

// Planck's law, relative to 560 nm, with the second radiation constant that CIE 15 uses.
double black_body(double wavelength, double kelvin) {
  constexpr double k_second = 1.4388e7;  // nm K
  const auto factor = [&](double nm) {
    return 1 / (std::pow(nm, 5) * std::expm1(k_second / (nm * kelvin)));
  };
  return factor(wavelength) / factor(560);
}

Xyz xyz_of_white(double x, double y) { return {x / y, 1, (1 - x - y) / y}; }

Xyz summed_white(const Light& light, Observer observer) {
  Xyz sum;
  for (int nm = k_first_nm; nm <= k_last_nm; ++nm) {
    const double power = light.power(nm);
    const Xyz response = matching_functions(observer, nm);
    sum = {sum.x + power * response.x, sum.y + power * response.y, sum.z + power * response.z};
  }
  return {sum.x / sum.y, 1, sum.z / sum.y};
}

// Of each standard illuminant with a spectrum and each observer.
const Xyz& white_of_table(StandardIlluminant illuminant, Observer observer) {
  using Whites = std::array<std::array<Xyz, 3>, k_standard_illuminants + 1>;
  static const Whites whites = [] {
    Whites result{};
    for (int i = 1; i <= k_standard_illuminants; ++i) {
      const Light light = StandardIlluminant(i);
      if (!light.has_spectrum()) continue;
      for (const Observer o : {Observer::degree_2, Observer::degree_10}) {
        result[std::size_t(i)][std::size_t(o)] = summed_white(light, o);
      }
    }
    return result;
  }();
  return whites[static_cast<std::size_t>(illuminant)][static_cast<std::size_t>(observer)];
}

constexpr double k_daylight_from = 4000, k_daylight_to = 25000;

// CIE 15:2004, clause 4.1.
Xyz daylight_white(double kelvin) {
  const double t = 1000 / kelvin;
  const double x = kelvin <= 7000 ? ((-4.6070 * t + 2.9678) * t + 0.09911) * t + 0.244063
                                  : ((-2.0064 * t + 1.9018) * t + 0.24748) * t + 0.237040;
  return xyz_of_white(x, (-3.000 * x + 2.870) * x - 0.275);
}

}  // namespace

std::string_view name_of(Observer observer) { return observer == Observer::degree_10 ? "10" : "2"; }

Xyz matching_functions(Observer observer, int wavelength) {
  if (wavelength < k_first_nm || wavelength > k_last_nm) return {};
  const int first = observer == Observer::degree_10 ? 3 : 0;
  const int at = wavelength - k_first_nm;
  return {internal::k_observers[first][at], internal::k_observers[first + 1][at],
          internal::k_observers[first + 2][at]};
}

std::string_view name_of(StandardIlluminant illuminant) {
  return k_names[static_cast<int>(illuminant) - 1];
}

bool find_illuminant(std::string_view name, StandardIlluminant* found) {
  constexpr std::string_view k_prefix = "Illuminant_";
  if (name.substr(0, k_prefix.size()) == k_prefix) name.remove_prefix(k_prefix.size());
  for (int i = 1; i <= k_standard_illuminants; ++i) {
    if (k_names[i - 1] == name) {
      *found = StandardIlluminant(i);
      return true;
    }
  }
  return false;
}

Light Light::of_chromaticity(double x, double y) {
  Light light;
  light.kind_ = Kind::chromaticity;
  light.first_ = x;
  light.second_ = y;
  return light;
}

Light Light::of_temperature(double kelvin) {
  Light light;
  light.kind_ = Kind::temperature;
  light.first_ = kelvin;
  return light;
}

Light Light::custom(std::string name) {
  Light light;
  if (!name.empty()) light.custom_name_ = std::make_shared<const std::string>(std::move(name));
  return light;
}

Light Light::of(const IlluminationOptionsType& options) {
  switch (options.getchosen()) {
    case IlluminationOptionsType::chosen_Illuminant: {
      const zol_v2::Illuminant& illuminant = options.get_Illuminant();
      const int number = illuminant.getenum_Illuminant();
      if (number >= 1 && number <= k_standard_illuminants) return StandardIlluminant(number);
      return custom(to_utf8(illuminant.get_CustomName()));
    }
    case IlluminationOptionsType::chosen_WhitePointChromaticity: {
      const WhitePointChromaticity& white = options.get_WhitePointChromaticity();
      return of_chromaticity(white.get_CoordinateX(), white.get_CoordinateY());
    }
    case IlluminationOptionsType::chosen_ColorTemperature:
      return of_temperature(options.get_ColorTemperature());
    default:
      return {};
  }
}

Outcome<Light> Light::named(std::string_view name) {
  StandardIlluminant illuminant{};
  if (find_illuminant(name, &illuminant)) return Light(illuminant);
  return Refusal{"there is no illuminant \"" + std::string(name) + "\""};
}

std::string Light::name() const {
  switch (kind_) {
    case Kind::standard:
      return std::string(name_of(illuminant_));
    case Kind::chromaticity:
      return "x " + number_text(first_) + ", y " + number_text(second_);
    case Kind::temperature:
      return number_text(first_) + " K";
    default:
      return custom_name_ == nullptr ? "unknown light" : *custom_name_;
  }
}

bool Light::operator==(const Light& other) const {
  if (kind_ != other.kind_) return false;
  if (kind_ == Kind::standard) return illuminant_ == other.illuminant_;
  if (kind_ == Kind::unknown)
    return custom_name_ != nullptr && other.custom_name_ != nullptr &&
           *custom_name_ == *other.custom_name_;
  return first_ == other.first_ && second_ == other.second_;
}

bool Light::has_spectrum() const {
  if (kind_ == Kind::temperature) return first_ > 0 && first_ < k_daylight_from;
  if (kind_ != Kind::standard) return false;
  return illuminant_ == StandardIlluminant::E || table_of(illuminant_) != nullptr;
}

double Light::power(int wavelength) const {
  if (wavelength < k_first_nm || wavelength > k_last_nm || !has_spectrum()) return 0;
  if (kind_ == Kind::temperature) return black_body(wavelength, first_);
  if (illuminant_ == StandardIlluminant::E) return 1;
  return table_of(illuminant_)->power[wavelength - k_first_nm];
}

Outcome<Xyz> Light::white(Observer observer) const {
  switch (kind_) {
    case Kind::standard:
      if (has_spectrum()) return white_of_table(illuminant_, observer);
      if (observer == Observer::degree_2) {
        return xyz_of_white(k_monitor_9300[0], k_monitor_9300[1]);
      }
      return Refusal{"the white of 9300 is known for 2 degrees alone"};
    case Kind::chromaticity:
      if (!(first_ > 0 && second_ > 0 && first_ + second_ <= 1)) {
        return Refusal{"the chromaticity " + name() + " is that of no white"};
      }
      return xyz_of_white(first_, second_);
    case Kind::temperature:
      if (has_spectrum()) return summed_white(*this, observer);
      if (!(first_ >= k_daylight_from && first_ <= k_daylight_to)) {
        return Refusal{"no white is defined for a light of " + name()};
      }
      if (observer == Observer::degree_2) return daylight_white(first_);
      return Refusal{"the white of daylight of " + name() + " is defined for 2 degrees alone"};
    default:
      return Refusal{custom_name_ == nullptr
                         ? std::string("the light is not given")
                         : "no white is known for the light \"" + *custom_name_ + '"'};
  }
}

}  // namespace zol_v2::colorimetry
