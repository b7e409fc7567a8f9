// What a function of a document asks for, with its factors and the limits that it has of its own.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "colorimetry/evaluation.h"

namespace zol_v2 {
class FunctionType;
class sg_Function;
}  // namespace zol_v2

namespace zol_v2::colorimetry::internal {

// The numbers that a function may limit by itself.
enum class Part : unsigned char { value, difference, l, a, b, c, h };

struct PartLimits {
  Part part = Part::value;
  Limits limits;
};

struct FunctionTask {
  Formula formula = Formula::none;
  std::string reason;  // why it can't be computed; always there for none
  Factors factors;
  double commercial_factor = 1;
  std::optional<double> wavelength;  // of strength, in nm
  std::vector<PartLimits> parts;
};

FunctionTask task_of(const FunctionType& function);
// The function that a holder holds; null if it holds none.
const FunctionType* function_in(const sg_Function& holder);
FunctionType* function_in(sg_Function& holder);

// What is computed over the measurements of one standard, and over those of all of a record.
bool is_over_measurements(Formula formula);
bool is_over_standards(Formula formula);

}  // namespace zol_v2::colorimetry::internal
