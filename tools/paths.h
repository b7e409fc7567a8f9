// Paths as people type them: what they lead to, what may stand there, and what is wrong with them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/reflection.h"

// The step to the mark of an object that is nil, which no row stands for.
constexpr std::string_view k_nil_step = "@xsi:nil";

// A row of a type by the name that a step has; `way` is the row of the type that leads there,
// itself or that of the holder in between.
struct RowPlace {
  zol_v2::reflection::Row way, row;

  explicit operator bool() const { return static_cast<bool>(row); }
};
RowPlace find_row(zol_v2::reflection::Type type, const zol_v2::reflection::Step& step);

// The steps that may stand below an object of the type, in the order of a document.
std::vector<std::string> steps_below(zol_v2::reflection::Type type);
std::string step_of(zol_v2::reflection::Row row);

// "ColorSpaceCIELab has no 'l', L is probably meant".
std::string unknown_step(zol_v2::reflection::Type parent, std::string_view step);
// Why a path leads to nothing.
std::string path_fault(zol_v2::reflection::ConstRef root, std::string_view path,
                       const zol_v2::reflection::Found& found);
