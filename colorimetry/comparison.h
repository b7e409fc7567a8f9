// Colours of documents brought under like conditions, so that they may be compared.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "colorimetry/colorimeter.h"
#include "colorimetry/difference.h"
#include "colorimetry/export.h"
#include "colorimetry/outcome.h"

namespace zol_v2::colorimetry {

// What the conditions have to be; what is left out is free.
struct Demands {
  std::optional<Light> light;        // none for any
  std::optional<Observer> observer;  // none for any
  Geometry geometry;                 // unknown for any
};

// A colour and where it stands.
struct PlacedColor {
  const ColorType* color = nullptr;  // stays its owner's
  ColorPlace place;                  // for specifications that are nilled in it
};

// Stimuli that may be compared with each other.
struct Comparable {
  std::vector<Stimulus> stimuli;  // one for each colour
  Conditions conditions;          // of all of them
  // Light or observer were neither demanded nor in the first colour's coordinates.
  bool has_default_conditions = false;
};

// Why colours can't be compared.
struct Incomparable {
  std::size_t index = 0;  // of the colour that the reason is about
  std::string reason;     // UTF-8, without a full stop
};

// The colours under one light and observer: those that are demanded, else the first for which the
// first colour has coordinates and under which all can be measured, else D50 and 2 degrees
// (ISO 13655). Refused, with the number of the colour and the reason, where one can't be measured
// by the colorimeter, has coordinates of unknown conditions, or is a light source; where geometry,
// filter, polarisers or quantity are known of two and differ; and where the geometry is not the one
// demanded. Whether the colorimeter may adapt is a choice of its owner.
ZOL_COLORIMETRY_API std::optional<Comparable> measure_alike(Colorimeter& meter,
                                                            const std::vector<PlacedColor>& colors,
                                                            const Demands& demands,
                                                            Incomparable* why);

}  // namespace zol_v2::colorimetry
