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
  enum class Kind : unsigned char {
    unknown,
    sphere_included,  // of the specular component
    sphere_excluded,
    angle,  // degrees against the normal
    named,  // in free words
    angles  // illumination and aspecular, in degrees
  };

  Geometry() = default;
  static Geometry of(const GeometryChoiceType& choice);

  Kind kind() const { return kind_; }
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

struct Conditions {
  Light light = StandardIlluminant::D50;
  Observer observer = Observer::degree_2;
};

// "D50, 2 degrees".
ZOL_COLORIMETRY_API std::string text_of(const Conditions& conditions);

// What a stimulus was computed from.
enum class Source : unsigned char {
  tristimulus,  // coordinates of the document, under just these conditions
  spectrum,
  adapted,  // coordinates under other conditions, by chromatic adaptation
  profile,  // device values by the document's profile
  rgb       // a standard RGB space, or what is defined by it
};

// A colour as its tristimulus values, with all that they rest on.
struct Stimulus {
  Xyz xyz;    // the perfect diffuser at Y = 1; of a light source in cd/m2, as the document has it
  Xyz white;  // of the conditions, Y = 1; of a light source of unknown reference all zero
  Conditions conditions;
  // How it was measured, as far as the document says: geometry, filter and spectral quantity by
  // their numbers in the format's enumerations, from 1, and polarisers.
  Geometry geometry;
  int filter = 0;
  int quantity = 0;
  std::optional<bool> is_polarised;

  Source source = Source::tristimulus;
  // The rendering that it was computed from, by its number in the colour.
  unsigned space_index = 0;
  const sg_ColorSpace* space = nullptr;

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
  bool is_in_gamut = false;
  bool is_adapted = false;  // by Bradford, from a white that is not D65's
  bool is_scaled = false;   // a light source, shown with its brightest channel full

  // "#rrggbb".
  ZOL_COLORIMETRY_API std::string hex() const;
};

ZOL_COLORIMETRY_API Display display_of(const Stimulus& stimulus);

// Where a colour stands: what is nilled in its own specifications holds from the set or the
// palette.
struct ColorPlace {
  const ColorSetType* set = nullptr;
  const PaletteType* palette = nullptr;
};

// Measures the colours of documents. Remembers the profiles of the document at hand, so that one
// serves for many colours: it is for one thread and for a document that stays as it is.
class ZOL_COLORIMETRY_API Colorimeter {
 public:
  struct Options {
    // For colours that have no spectrum and no coordinates under the conditions asked for; none for
    // a refusal instead.
    Adaptation adaptation = Adaptation::bradford;
    // Whether device values without a profile are shown as if they were sRGB.
    bool assume_srgb = true;
  };

  Colorimeter();
  explicit Colorimeter(const Options& options);
  ~Colorimeter();
  Colorimeter(Colorimeter&& other) noexcept;
  Colorimeter& operator=(Colorimeter&& other) noexcept;

  // The colour as the document has it: its coordinates, by preference Lab, LCh, XYZ, xyY, Luv, then
  // its spectrum under D50 and 2 degrees, then a standard RGB, then device values by their profile,
  // then RGB of unknown primaries as sRGB. Refused, with the reason, where there is none of these.
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
