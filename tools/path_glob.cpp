#include "tools/path_glob.h"

#include <algorithm>
#include <cstddef>

#include "facade/faults.h"
#include "model/Zol.h"
#include "model/reflection.h"
#include "tools/paths.h"
#include "tools/text.h"

namespace {

constexpr std::string_view k_any_steps = "**";

std::vector<std::string_view> split(std::string_view path) {
  std::vector<std::string_view> steps;
  for (std::size_t begin = 0; begin <= path.size();) {
    const std::size_t end = std::min(path.find('/', begin), path.size());
    steps.push_back(path.substr(begin, end - begin));
    begin = end + 1;
  }
  return steps;
}

// Matches a sequence with wild places: is_wild(p) says whether the p-th of the pattern stands for
// any number of things, is_match(p, t) whether it stands for one. To go back to the last wild place
// is enough, since whatever an earlier one could take the last one can take, too.
template <class IsWild, class IsMatch>
bool matches_sequence(std::size_t pattern_size, std::size_t text_size, const IsWild& is_wild,
                      const IsMatch& is_match) {
  constexpr std::size_t k_none = static_cast<std::size_t>(-1);
  std::size_t p = 0, t = 0, wild = k_none, taken = 0;
  while (t < text_size) {
    if (p < pattern_size && is_wild(p)) {
      wild = p++;
      taken = t;
    } else if (p < pattern_size && is_match(p, t)) {
      ++p;
      ++t;
    } else if (wild != k_none) {
      p = wild + 1;
      t = ++taken;
    } else {
      return false;
    }
  }
  while (p < pattern_size && is_wild(p)) ++p;
  return p == pattern_size;
}

bool matches_step(std::string_view pattern, std::string_view step) {
  if (pattern.find('[') == std::string_view::npos) step = step.substr(0, step.find('['));
  return matches_sequence(
      pattern.size(), step.size(), [&](std::size_t p) { return pattern[p] == '*'; },
      [&](std::size_t p, std::size_t t) { return pattern[p] == '?' || pattern[p] == step[t]; });
}

std::vector<std::string> all_names() {
  std::vector<std::string> names{
      std::string(zol_v2::reflection::Type(zol_v2::Zol::k_class).name())};
  for (const zol_v2::reflection::Type type : zol_v2::reflection::all_types()) {
    for (std::string& step : steps_below(type)) names.push_back(std::move(step));
  }
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

}  // namespace

PathGlob::PathGlob(std::string_view pattern) {
  const std::string_view root = zol_v2::reflection::Type(zol_v2::Zol::k_class).name();
  if (pattern.substr(0, 1) == "/") {
    pattern.remove_prefix(1);
  } else if (pattern.substr(0, pattern.find('/')) != root) {
    steps_.emplace_back(k_any_steps);
  }
  for (const std::string_view step : split(pattern)) steps_.emplace_back(step);
}

bool PathGlob::matches(std::string_view path) const {
  const std::vector<std::string_view> steps = split(path);
  return matches_sequence(
      steps_.size(), steps.size(), [&](std::size_t p) { return steps_[p] == k_any_steps; },
      [&](std::size_t p, std::size_t t) { return matches_step(steps_[p], steps[t]); });
}

std::string PathGlob::fault() const {
  std::vector<std::string> names;
  for (const std::string& step : steps_) {
    if (step.find_first_of("*?") != std::string::npos) continue;
    if (names.empty()) names = all_names();
    const std::string name = step.substr(0, step.find('['));
    if (std::binary_search(names.begin(), names.end(), name)) continue;
    const std::string nearest = zol_v2::nearestName(name, names);
    return "no path has the step '" + one_line(step) + '\'' +
           (nearest.empty() ? "" : ", " + nearest + " is probably meant");
  }
  return "";
}
