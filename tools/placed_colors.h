// The colours of a document, or of a part of it, with the places that they stand in.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "colorimetry/comparison.h"

namespace zol_v2 {
class Zol;
}

// In the order of the document: its own colours, those of palettes, and of each record the
// standards and then the measurements. A name that is not empty picks the palettes, colour sets and
// records that have it as their name or unique id.
std::vector<zol_v2::colorimetry::PlacedColor> placed_colors(const zol_v2::Zol& document,
                                                            std::string_view name);
