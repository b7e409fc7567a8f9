// Illuminants, observers and what a document may say of the light.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "colorimetry/export.h"
#include "colorimetry/outcome.h"
#include "colorimetry/spaces.h"

namespace zol_v2 {
class IlluminationOptionsType;
}

namespace zol_v2::colorimetry {

// The standard observers of the CIE: of 1931 for a field of 2 degrees, of 1964 for 10. The numbers
// are those of the format's enumeration.
enum class Observer : unsigned char { degree_2 = 1, degree_10 = 2 };

// "2" or "10".
ZOL_COLORIMETRY_API std::string_view name_of(Observer observer);
// Colour matching functions at a whole wavelength in nm, 360 to 830; 0 elsewhere.
ZOL_COLORIMETRY_API Xyz matching_functions(Observer observer, int wavelength);

// The illuminants that the format has a name for; the numbers are those of its enumeration.
// `monitor_9300` is a chromaticity alone: no spectrum stands behind it.
enum class StandardIlluminant : unsigned char {
  A = 1,
  B,
  C,
  D50,
  D55,
  D65,
  D75,
  E,
  F2,
  F3,
  F7,
  F11,
  F12,
  monitor_9300
};
// How many there are.
constexpr int k_standard_illuminants = 14;

// "D50", "9300".
ZOL_COLORIMETRY_API std::string_view name_of(StandardIlluminant illuminant);
// By that name, with or without "Illuminant_" before it.
ZOL_COLORIMETRY_API bool find_illuminant(std::string_view name, StandardIlluminant* found);

// The light that colours are seen under, or that coordinates refer to.
class ZOL_COLORIMETRY_API Light {
 public:
  // What is known of a light.
  enum class Kind : unsigned char {
    standard,      // an illuminant of the list
    chromaticity,  // the chromaticity of a white, for whatever observer goes with it
    temperature,   // a correlated colour temperature
    unknown        // nothing, or a name that nobody has published numbers for
  };

  Light() = default;
  // An illuminant of the list.
  Light(StandardIlluminant illuminant) : kind_(Kind::standard), illuminant_(illuminant) {}
  // A white by its chromaticity coordinates, each from 0 to 1.
  static Light of_chromaticity(double x, double y);
  // By a correlated colour temperature in kelvin.
  static Light of_temperature(double kelvin);
  // By a name of its own, in UTF-8.
  static Light custom(std::string name);
  // As a specification has it; unknown where it has none.
  static Light of(const IlluminationOptionsType& options);
  // By the name of an illuminant, "D50" or "Illuminant_D50".
  static Outcome<Light> named(std::string_view name);

  // What is known of it.
  Kind kind() const { return kind_; }
  // Of a standard one.
  StandardIlluminant illuminant() const { return illuminant_; }
  // In kelvin, of a temperature.
  double kelvin() const { return first_; }
  // "D50", "x 0.3457, y 0.3585", "6504 K", or the custom name.
  std::string name() const;
  // Two that a number tells apart are different lights, and so are all that are unknown, but for
  // custom ones of one name.
  bool operator==(const Light& other) const;
  bool operator!=(const Light& other) const { return !(*this == other); }

  // Whether spectra can be seen under it.
  bool has_spectrum() const;
  // Relative spectral power at a whole wavelength in nm; 0 outside of the published table and for
  // what has no spectrum.
  double power(int wavelength) const;

  // The white, Y = 1. Of an illuminant with a spectrum the sum of its power by 1 nm over what was
  // published, from 360 nm on, so that the perfect diffuser has exactly these values. A colour
  // temperature is taken as daylight from 4,000 to 25,000 K (CIE 15, clause 4.1: the locus, known
  // for 2 degrees) and as a black body below (Planck's law, either observer). Refused: unknown
  // lights, and 9300 and daylight by temperature for 10 degrees.
  Outcome<Xyz> white(Observer observer) const;

 private:
  Kind kind_ = Kind::unknown;
  StandardIlluminant illuminant_ = StandardIlluminant::E;
  double first_ = 0;  // x or kelvin
  double second_ = 0;
  std::shared_ptr<const std::string> custom_name_;  // null for none
};

}  // namespace zol_v2::colorimetry
