#include "colorimetry/comparison.h"

#include <utility>

#include "colorimetry/internal/instrument.h"

namespace zol_v2::colorimetry {

namespace {

// Why the coordinates are no good for a comparison; empty if they are.
std::string weakness_of(const Stimulus& stimulus, const Demands& demands) {
  if (stimulus.is_emissive) return "differences are for samples, and this is a light source";
  if (stimulus.source != Source::spectrum && stimulus.has_default_conditions) {
    return "the illuminant or the observer of the coordinates is not known";
  }
  return internal::fault_of_geometry(stimulus, demands);
}

std::vector<Conditions> candidates(Colorimeter& meter, const PlacedColor& first,
                                   const Demands& demands) {
  std::vector<Conditions> result;
  if (!demands.light || !demands.observer) {
    for (Conditions& conditions : meter.conditions_of(*first.color, first.place)) {
      if (demands.light && conditions.light != *demands.light) continue;
      if (demands.observer && conditions.observer != *demands.observer) continue;
      result.push_back(std::move(conditions));
    }
  }
  const Conditions standard;
  result.push_back(
      {demands.light.value_or(standard.light), demands.observer.value_or(standard.observer)});
  return result;
}

bool measure_under(Colorimeter& meter, const std::vector<PlacedColor>& colors,
                   const Demands& demands, Comparable* result, Incomparable* why) {
  result->stimuli.clear();
  result->stimuli.reserve(colors.size());
  for (const PlacedColor& color : colors) {
    Outcome<Stimulus> stimulus = meter.measure(*color.color, result->conditions, color.place);
    std::string reason = stimulus ? weakness_of(*stimulus, demands) : stimulus.reason();
    if (reason.empty() && !result->stimuli.empty()) {
      reason = internal::difference_of_instruments(result->stimuli.front(), *stimulus);
    }
    if (!reason.empty()) {
      *why = {result->stimuli.size(), std::move(reason)};
      return false;
    }
    result->stimuli.push_back(std::move(*stimulus));
  }
  return true;
}

}  // namespace

std::optional<Comparable> measure_alike(Colorimeter& meter, const std::vector<PlacedColor>& colors,
                                        const Demands& demands, Incomparable* why) {
  const std::vector<Conditions> conditions = candidates(meter, colors.front(), demands);
  std::optional<Comparable> result(std::in_place);
  for (std::size_t i = 0; i < conditions.size(); ++i) {
    result->conditions = conditions[i];
    // The reason that counts is that of the first conditions.
    Incomparable later;
    if (!measure_under(meter, colors, demands, &*result, i == 0 ? why : &later)) continue;
    const bool is_free = !demands.light || !demands.observer;
    result->has_default_conditions = is_free && i + 1 == conditions.size();
    return result;
  }
  return std::nullopt;
}

}  // namespace zol_v2::colorimetry
