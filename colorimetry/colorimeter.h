// The colour of a document's colour: under given conditions, or under its own, and on a display.
//
//   Colorimeter meter;
//   const Outcome<Stimulus> stimulus = meter.measure(color, place);
//   if (stimulus) show(stimulus->lab(), display_of(*stimulus).bytes, basis_of(*stimulus));
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "colorimetry/export.h"
#include "colorimetry/light.h"
#include "colorimetry/outcome.h"
#include "colorimetry/spaces.h"
#include "colorimetry/spectrum.h"

namespace zol_v2 {
class ColorSetType;
class ColorType;
class GeometryChoiceType;
class PaletteType;
class sg_ColorSpace;
}  // namespace zol_v2

namespace zol_v2::colorimetry {

namespace internal {
struct Meter;
}

// How a sample was lit and read.
class ZOL_COLORIMETRY_API Geometry {
 public:
  // How a geometry is given.
  enum class Kind : unsigned char {
    unknown,          // nothing is said
    sphere_included,  // of the specular component
    sphere_excluded,  // the same without it
    angle,            // degrees against the normal
    named,            // in free words
    angles            // illumination and aspecular, in degrees
  };

  Geometry() = default;
  // As a document has it.
  static Geometry of(const GeometryChoiceType& choice);

  // How it is given.
  Kind kind() const { return kind_; }
  // Whether anything is said.
  explicit operator bool() const { return kind_ != Kind::unknown; }
  // "45 degrees", "sphere, specular included".
  std::string text() const;
  bool operator==(const Geometry& other) const;
  bool operator!=(const Geometry& other) const { return !(*this == other); }

 private:
  Kind kind_ = Kind::unknown;
  double first_ = 0, second_ = 0;
  std::shared_ptr<const std::wstring> words_;  // of a named one
};

// Light and observer that tristimulus values are for.
struct Conditions {
  Light light = StandardIlluminant::D50;   // what the colour is seen under
  Observer observer = Observer::degree_2;  // by whom
};

// "D50, 2 degrees".
ZOL_COLORIMETRY_API std::string text_of(const Conditions& conditions);

// What a stimulus was computed from.
enum class Source : unsigned char {
  tristimulus,  // coordinates of the document, under just these conditions
  spectrum,     // a spectrum, weighted for the conditions
  adapted,      // coordinates under other conditions, by chromatic adaptation
  profile,      // device values by the document's profile
  rgb           // a standard RGB space, or what is defined by it
};

// A colour as its tristimulus values, with all that they rest on.
struct Stimulus {
  Xyz xyz;    // the perfect diffuser at Y = 1; of a light source in cd/m2, as the document has it
  Xyz white;  // of the conditions, Y = 1; of a light source of unknown reference all zero
  // What the values are for.
  Conditions conditions;
  // How it was measured, as far as the document says: geometry, filter and spectral quantity by
  // their numbers in the format's enumerations, from 1, and polarisers.
  Geometry geometry;
  int filter = 0;
  int quantity = 0;
  std::optional<bool> is_polarised;

  // How the values came about.
  Source source = Source::tristimulus;
  // The rendering that it was computed from, by its number in the colour.
  unsigned space_index = 0;
  const sg_ColorSpace* space = nullptr;

  // A light source, whose values are absolute.
  bool is_emissive = false;
  // The conditions were neither asked for nor in the document: D50 and 2 degrees (ISO 13655).
  bool has_default_conditions = false;
  // Device values without a profile were read as sRGB: good for a look, no colorimetry.
  bool is_assumed_srgb = false;
  // The spectrum is said to be without a correction for the bandpass, and none was made.
  bool is_without_bandpass_correction = false;
  // How, and from where; none unless the source is `adapted` or `profile`, or an RGB space was
  // asked for under another white.
  Adaptation adaptation = Adaptation::none;
  std::optional<Conditions> adapted_from;
  // Of a spectrum.
  SpectralMethod method;

  // Whether coordinates relative to a white can be had.
  bool has_white() const { return white.y > 0; }
  // Relative to the white of the conditions; NaN where has_white() is false.
  ZOL_COLORIMETRY_API Lab lab() const;
};

// "CIELab of the document", "spectrum, CIE 15 sum at 1 nm ...", with everything that a reader of
// the numbers has to know, as one line of UTF-8.
ZOL_COLORIMETRY_API std::string basis_of(const Stimulus& stimulus);

// What a display shows for it, in sRGB.
struct Display {
  Rgb rgb;                             // as it comes out, not clipped
  std::array<unsigned char, 3> bytes;  // eight bits a channel, clipped
  bool is_in_gamut = false;            // as judged by is_in_gamut()
  bool is_adapted = false;             // by Bradford, from a white that is not D65's
  bool is_scaled = false;              // a light source, shown with its brightest channel full

  // "#rrggbb".
  ZOL_COLORIMETRY_API std::string hex() const;
};

// For a display in sRGB; never refused.
ZOL_COLORIMETRY_API Display display_of(const Stimulus& stimulus);

// Where a colour stands: what is nilled in its own specifications holds from the set or the
// palette.
struct ColorPlace {
  const ColorSetType* set = nullptr;     // null if it is in none
  const PaletteType* palette = nullptr;  // null if it is in none
};

// Measures the colours of documents. Remembers the profiles of the document at hand, so that one
// serves for many colours: it is for one thread and for a document that stays as it is.
class ZOL_COLORIMETRY_API Colorimeter {
 public:
  // What may be done where a document says too little.
  struct Options {
    // For colours that have no spectrum and no coordinates under the conditions asked for; none for
    // a refusal instead.
    Adaptation adaptation = Adaptation::bradford;
    // Whether device values without a profile are shown as if they were sRGB.
    bool assume_srgb = true;
  };

  // With the options as they stand, or others. One that was moved from can only be assigned to and
  // die.
  Colorimeter();
  explicit Colorimeter(const Options& options);
  ~Colorimeter();
  Colorimeter(Colorimeter&& other) noexcept;
  Colorimeter& operator=(Colorimeter&& other) noexcept;

  // The colour as the document has it: its coordinates, by preference Lab, LCh, XYZ, xyY, Luv, then
  // its spectrum under D50 and 2 degrees or what the set or the palette has for coordinates, then a
  // standard RGB, then device values by their profile, then RGB of unknown primaries as sRGB, then
  // a light source. Refused, with the reason, where there is none of these.
  Outcome<Stimulus> measure(const ColorType& color, const ColorPlace& place = {});
  // The colour under other conditions: coordinates that the document has for just these, else the
  // spectrum, else what measure() gives with chromatic adaptation. Adaptation cannot bring values
  // to another observer: the result says from which ones it came.
  Outcome<Stimulus> measure(const ColorType& color, const Conditions& conditions,
                            const ColorPlace& place = {});
  // One rendering alone, under its own conditions or, for a spectrum, under those given.
  Outcome<Stimulus> measure(const sg_ColorSpace& space, const Conditions& conditions,
                            const ColorPlace& place = {});

  // The conditions under which the colour has coordinates of the document's own, best first.
  std::vector<Conditions> conditions_of(const ColorType& color, const ColorPlace& place = {});

  // The spectrum of the colour, if it has one.
  static Outcome<Spectrum> spectrum(const ColorType& color);

 private:
  std::unique_ptr<internal::Meter> meter_;
};

}  // namespace zol_v2::colorimetry
