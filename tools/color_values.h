// The colours of a document and their coordinates.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zol_v2 {
class ColorType;
class Zol;
class sg_ColorSpace;
}  // namespace zol_v2

// Where a colour belongs: a palette and a set, a quality-control record and the part in it, or
// nowhere in particular.
struct ColorPlace {
  std::string group;
  std::string part;
};

// Visits every colour in the order of the document.
void for_each_color(
    const zol_v2::Zol& document,
    const std::function<void(const ColorPlace& place, const zol_v2::ColorType& color)>& visit);

struct Coordinate {
  std::string axis;  // "L", a wavelength in nanometres, or the document's own name
  std::string value;
};

// One colour in one colour space.
struct Rendering {
  std::string space;  // the element without "ColorSpace": "CIELab"
  std::vector<Coordinate> coordinates;
};

Rendering rendering_of(const zol_v2::sg_ColorSpace& member);
// "CIELab L=53.2 A=80.1 B=67.2"; of a spectrum its range.
std::string text_of(const zol_v2::sg_ColorSpace& space);
std::string space_name(const zol_v2::sg_ColorSpace& member);

struct SpectralRange {
  double first = 0;  // nanometres
  double last = 0;
  unsigned points = 0;

  bool operator<(const SpectralRange& other) const;
  std::string text() const;  // "400 to 700 nm, 31 points"
};

// Of a space that is measured by wavelength.
std::optional<SpectralRange> spectral_range(const zol_v2::sg_ColorSpace& member);
