// The list of colours with what they look like and the conditions that they hold for.
#pragma once

#include <optional>

#include "colorimetry/colorimeter.h"

namespace zol_v2 {
class Zol;
}

// A line for each colour on standard output, in the order of the document: name, UniqueID, colour
// spaces, conditions, ColorNumber, place in a record, and the tolerances that it is held to,
// separated by tabs. On a terminal these stand under headings, with a swatch before each line if
// it has colours, and "!" in that where the colour is outside of sRGB. With `conditions` there is
// CIELAB under these instead of the document's own spaces.
void print_color_list(const zol_v2::Zol& document,
                      const std::optional<zol_v2::colorimetry::Conditions>& conditions);
