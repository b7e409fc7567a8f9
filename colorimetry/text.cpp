#include "colorimetry/internal/text.h"

#include <charconv>
#include <cmath>
#include <string>

namespace zol_v2::colorimetry::internal {

std::string number_text(double value) {
  if (!std::isfinite(value)) return std::isnan(value) ? "NaN" : value > 0 ? "INF" : "-INF";
  char buffer[40];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 6);
  return std::string(buffer, result.ptr);
}

}  // namespace zol_v2::colorimetry::internal
