// What is different between two objects of one type, by paths.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "model/reflection.h"

namespace zol_v2 {
class ColorSetType;
class ColorType;
class PaletteType;
}  // namespace zol_v2

// One side of a difference.
struct DiffSide {
  std::string path;  // empty where there is nothing
  zol_v2::reflection::Item item;

  explicit operator bool() const { return !path.empty(); }
};

// A colour on both sides, with what it stands in.
struct DiffColor {
  const zol_v2::ColorType* color = nullptr;
  const zol_v2::ColorSetType* set = nullptr;
  const zol_v2::PaletteType* palette = nullptr;
};

struct Difference {
  enum class Kind { changed, removed, added, moved };

  Kind kind = Kind::changed;
  DiffSide a, b;
  // The colour around it, or else the object: of both sides where both have it.
  DiffSide around_a, around_b;
  // Of the colour around it, if it stands in one on both sides.
  DiffColor color_a, color_b;
};

// Are they the same to the last digit?
bool is_same(zol_v2::reflection::ConstRef a, zol_v2::reflection::ConstRef b);

// In the order of a; what b has alone stands where it would be. Entries of lists go together by
// their unique ids, then by numbers, names and wavelengths, then by what is in them. What
// is_ignored says of a path is passed over.
std::vector<Difference> differences(zol_v2::reflection::ConstRef a, zol_v2::reflection::ConstRef b,
                                    const std::function<bool(const std::string& path)>& is_ignored);
