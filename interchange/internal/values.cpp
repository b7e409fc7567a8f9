#include "interchange/internal/values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "port/wide_text.h"

namespace zol_v2::interchange::internal {

namespace {

using reflection::Bound;
using reflection::End;
using reflection::Ref;
using reflection::Row;

std::string bounds_of(Row row) {
  std::string text;
  if (const Bound lower = row.lower()) {
    text = (lower.end == End::strict ? "more than " : "at least ") + number_text(lower.value);
  }
  if (const Bound upper = row.upper()) {
    text += text.empty() ? "" : " and ";
    text += (upper.end == End::strict ? "less than " : "at most ") + number_text(upper.value);
  }
  return text;
}

std::string wanted(Row row, lmx::elmx_error error) {
  if (!row.values().empty()) {
    std::string text = "one of";
    for (const std::string_view value : row.values()) text += ' ' + std::string(value);
    return text;
  }
  const std::string bounds = bounds_of(row);
  if (!bounds.empty()) return bounds;
  return lmx::get_error_description(error);
}

}  // namespace

std::string store_text(Ref object, Row row, std::string_view text) {
  const lmx::elmx_error error = object.set_text(row, text);
  if (error == lmx::elmx_ok) return {};
  constexpr std::size_t k_shown = 60;
  std::string shown(text.substr(0, k_shown));
  if (text.size() > k_shown) shown += "...";
  return std::string(row.name()) + " is '" + shown + "', which is refused: " + wanted(row, error);
}

std::string utf8_of(const reflection::Value& value) {
  std::string_view narrow;
  return value.narrow_text(&narrow) ? std::string(narrow) : zol::port::to_utf8(value.text());
}

std::string narrow_text(const std::wstring& text) {
  std::string narrow = zol::port::to_utf8(text);
  for (std::size_t i = 0; i + 2 < narrow.size(); ++i) {
    const bool is_surrogate =
        narrow[i] == '\xED' && static_cast<unsigned char>(narrow[i + 1]) >= 0xA0;
    if (is_surrogate) narrow.replace(i, 3, "\xEF\xBF\xBD");
  }
  return narrow;
}

std::string number_text(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

void set_bytes(const std::array<unsigned, 3>& bytes, char decimal, Rendering* rendering) {
  constexpr std::string_view k_axes[] = {"Red", "Green", "Blue"};
  constexpr double k_most = 255;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    rendering->add(std::string(k_axes[i]), bytes[i] / k_most);
    std::string& text = rendering->coordinates.back().text;
    std::replace(text.begin(), text.end(), '.', decimal);
  }
  Coordinate depth;
  depth.axis = "ColorDepth";
  depth.text = "ColorDepth_8";
  rendering->coordinates.push_back(std::move(depth));
}

}  // namespace zol_v2::interchange::internal
