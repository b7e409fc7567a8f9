#include "tools/paths.h"

#include <algorithm>

#include "facade/faults.h"
#include "tools/text.h"

using zol_v2::reflection::ConstRef;
using zol_v2::reflection::Found;
using zol_v2::reflection::PathError;
using zol_v2::reflection::Place;
using zol_v2::reflection::Row;
using zol_v2::reflection::Step;
using zol_v2::reflection::Type;

namespace {

constexpr std::string_view k_content = "text()";

std::string quoted(std::string_view step) {
  constexpr std::size_t k_longest = 80;
  return '\'' + one_line(step.substr(0, k_longest)) + (step.size() > k_longest ? "..." : "") + '\'';
}

std::string_view name_in(std::string_view step) { return step.substr(0, step.find('[')); }

}  // namespace

RowPlace find_row(Type type, const Step& step) {
  if (step.is_content) return {type.content(), type.content()};
  for (const Row row : type.rows()) {
    if (row.place() == Place::content || row.is_attribute() != step.is_attribute) continue;
    if (!row.is_transparent()) {
      if (row.name() == step.name) return {row, row};
    } else if (const Row alternative = row.type().row(step.name)) {
      return {row, alternative};
    }
  }
  return {};
}

std::string step_of(Row row) {
  if (row.place() == Place::content) return std::string(k_content);
  return (row.is_attribute() ? "@" : "") + std::string(row.name());
}

std::vector<std::string> steps_below(Type type) {
  std::vector<std::string> steps;
  for (const Row row : type.rows()) {
    if (!row.is_transparent()) {
      steps.push_back(step_of(row));
      continue;
    }
    for (const Row alternative : row.type().rows()) steps.push_back(step_of(alternative));
  }
  return steps;
}

std::string unknown_step(Type parent, std::string_view step) {
  const std::vector<std::string> steps = steps_below(parent);
  std::string text = std::string(parent.name()) + " has no " + quoted(step);
  const std::string nearest = zol_v2::nearestName(name_in(step), steps);
  if (!nearest.empty()) return text + ", " + nearest + " is probably meant";
  // An attribute without its mark, or an element with one.
  std::string other(name_in(step));
  other = other.substr(0, 1) == "@" ? other.substr(1) : '@' + other;
  if (std::find(steps.begin(), steps.end(), other) != steps.end()) {
    text += ", " + other + " is probably meant";
  }
  return text;
}

std::string path_fault(ConstRef root, std::string_view path, const Found& found) {
  const std::string_view step = path.substr(found.at, path.find('/', found.at) - found.at);
  const std::string root_name(root.type().name());
  if (found.error == PathError::malformed) {
    return quoted(step) + " is no step of a path: NAME, NAME[NUMBER], @NAME or text(), by slashes";
  }
  if (found.error == PathError::other_root) {
    return "A path begins with " + root_name + ", not with " + quoted(step);
  }
  const std::string_view above = path.substr(0, found.at - 1);
  const ConstRef parent = find(root, above).item.object();
  if (!parent) return std::string(above) + " is a value with nothing below it";
  if (found.error == PathError::no_such_row) return unknown_step(parent.type(), step);
  if (parent.is_nil()) return "It is not there: " + std::string(above) + " is nil";
  Step parsed;
  const RowPlace place = parse_step(step, &parsed) ? find_row(parent.type(), parsed) : RowPlace();
  if (!place || !place.way.is_list()) return quoted(step) + " is not there";
  std::size_t count = 0;
  for (unsigned i = 0; i < parent.count(place.way); ++i) {
    if (!place.way.is_transparent() || parent.value(place.way, i).child().chosen() == place.row) {
      ++count;
    }
  }
  return quoted(step) + " is not there: " + std::string(above) + " has " +
         (count == 0 ? "none" : std::to_string(count));
}
