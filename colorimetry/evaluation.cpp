#include "colorimetry/evaluation.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <map>
#include <utility>

#include "colorimetry/internal/function_task.h"
#include "colorimetry/internal/instrument.h"
#include "colorimetry/internal/text.h"
#include "model/Zol.h"
#include "model/reflection.h"
#include "port/wide_text.h"

namespace zol_v2::colorimetry {

using internal::FunctionTask;
using internal::number_text;
using internal::Part;
using internal::PartLimits;

namespace {

// --- Conditions ----------------------------------------------------------------------------------

std::optional<Light> light_of(int number) {
  if (number == 0) return std::nullopt;
  if (number <= k_standard_illuminants) return Light(StandardIlluminant(number));
  return Light::custom("custom illuminant of the tolerance");
}

Demands demands_of(const ToleranceType& tolerance) {
  Demands demands;
  demands.light = light_of(tolerance.getenum_PrimaryIlluminant());
  const int observer = tolerance.getenum_FieldOfView();
  if (observer != 0) demands.observer = Observer(observer);
  if (tolerance.isset_Geometry()) demands.geometry = Geometry::of(tolerance.get_Geometry());
  return demands;
}

// --- Statistics ----------------------------------------------------------------------------------

// Of a sample of the values (ISO 3534-1); there are two at least.
double standard_deviation(const std::vector<double>& values) {
  double mean = 0;
  for (const double value : values) mean += value / double(values.size());
  double sum = 0;
  for (const double value : values) sum += (value - mean) * (value - mean);
  return std::sqrt(sum / double(values.size() - 1));
}

// Hues count from the mean direction, so that 359 and 1 degree are 2 apart.
void unwrap_hues(std::vector<double>* hues) {
  Lab sum;
  for (const double hue : *hues) {
    const Lab direction = lab_of(Lch{0, 1, hue});
    sum = {0, sum.a + direction.a, sum.b + direction.b};
  }
  const double mean = lch_of(sum).h;
  for (double& hue : *hues) hue = std::remainder(hue - mean, 360);
}

double coordinate_of(const Stimulus& stimulus, Formula formula) {
  switch (formula) {
    case Formula::std_dev_x:
      return stimulus.xyz.x;
    case Formula::std_dev_y:
      return stimulus.xyz.y;
    case Formula::std_dev_z:
      return stimulus.xyz.z;
    case Formula::std_dev_l:
    case Formula::average_std_dev_l:
      return stimulus.lab().l;
    case Formula::std_dev_a:
    case Formula::average_std_dev_a:
      return stimulus.lab().a;
    case Formula::std_dev_b:
    case Formula::average_std_dev_b:
      return stimulus.lab().b;
    case Formula::std_dev_c:
      return lch_of(stimulus.lab()).c;
    default:
      return lch_of(stimulus.lab()).h;
  }
}

// --- Values --------------------------------------------------------------------------------------

HunterLab hunter_of(const Stimulus& stimulus) {
  return colorimetry::hunter_of(stimulus.xyz, stimulus.white);
}

bool is_of_hunter(Formula formula) {
  return formula == Formula::hunter_de || formula == Formula::hunter_parts ||
         formula == Formula::hunter_parts_signed;
}

bool is_of_magnitudes(Formula formula) {
  return formula == Formula::lab_parts || formula == Formula::lch_parts ||
         formula == Formula::hunter_parts;
}

Outcome<double> difference(const FunctionTask& task, const Stimulus& standard,
                           const Stimulus& sample) {
  Outcome<double> result = difference_by(task.formula, task.factors, standard, sample);
  if (result) *result /= task.commercial_factor;
  return result;
}

double part_of(const Parts& parts, Part part) {
  switch (part) {
    case Part::l:
      return parts.l;
    case Part::a:
      return parts.a;
    case Part::b:
      return parts.b;
    case Part::c:
      return parts.c;
    default:
      return parts.h;
  }
}

std::string_view part_name(Part part, bool is_hunter) {
  switch (part) {
    case Part::value:
      return "value";
    case Part::difference:
      return "difference";
    case Part::l:
      return is_hunter ? "dL" : "dL*";
    case Part::a:
      return is_hunter ? "da" : "da*";
    case Part::b:
      return is_hunter ? "db" : "db*";
    case Part::c:
      return is_hunter ? "dC" : "dC*";
    default:
      return is_hunter ? "dH" : "dH*";
  }
}

// What was measured of a colour by itself, without a light, and how.
template <class Value>
struct Reading {
  Value value;
  Stimulus instrument;
};

Outcome<Reading<Spectrum>> reflectance_of(const ColorType& color) {
  for (const sg_ColorSpace& space : color.each_ColorSpace()) {
    if (space.getchosen() != sg_ColorSpace::chosen_ColorSpaceSpectral) continue;
    const ColorSpaceSpectralType& spectral = space.get_ColorSpaceSpectral();
    Outcome<Spectrum> spectrum = Spectrum::of(spectral);
    if (!spectrum) return spectrum.refusal();
    Reading<Spectrum> reading = {std::move(*spectrum), {}};
    const auto& specification = spectral.get_ColorSpaceSpecificationSpectrumSpectral();
    if (!specification.isnil_ColorSpaceSpecificationSpectrumSpectral()) {
      internal::read_instrument(specification, &reading.instrument);
    }
    return reading;
  }
  return Refusal{"the colour has no spectrum"};
}

// By status and filter.
using Densities = std::map<std::pair<int, int>, Reading<double>>;

Densities densities_of(const ColorType& color) {
  Densities found;
  for (const sg_ColorSpace& space : color.each_ColorSpace()) {
    if (space.getchosen() != sg_ColorSpace::chosen_ColorSpaceDensity) continue;
    const ColorSpaceDensityType& densities = space.get_ColorSpaceDensity();
    Stimulus instrument;
    const auto& specification = densities.get_ColorSpaceSpecificationSpectrumGeneric();
    if (!specification.isnil_ColorSpaceSpecificationSpectrumGeneric()) {
      internal::read_instrument(specification, &instrument);
    }
    for (const DensityType& density : densities.each_Density()) {
      found[{density.getenum_DensityStatus(), density.getenum_DensityFilter()}] = {
          density.get_DensityType(), instrument};
    }
  }
  return found;
}

// Judges the difference of two indices where the task limits it.
void add_difference(const FunctionTask& task, double amount, std::vector<PartVerdict>* parts) {
  for (const PartLimits& limits : task.parts) {
    if (limits.part != Part::difference) continue;
    parts->push_back(
        {part_name(limits.part, false), amount, limits.limits, limits.limits.hold(amount)});
  }
}

// Why two readings can't be judged together; empty if they can.
std::string fault_of(const Stimulus& standard, const Stimulus& sample, const Demands& demands) {
  std::string fault = internal::fault_of_geometry(standard, demands);
  if (!fault.empty()) return "the standard: " + fault;
  fault = internal::fault_of_geometry(sample, demands);
  if (fault.empty()) fault = internal::difference_of_instruments(standard, sample);
  return fault.empty() ? fault : "the measurement: " + fault;
}

// --- Stored results ------------------------------------------------------------------------------

// Half a step of the last digit that the number has when it is written as short as can be.
double half_of_last_digit(double value) {
  char buffer[40];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
  if (end.ec != std::errc()) return 0;
  const char* const point = std::find(buffer, end.ptr, '.');
  const auto decimals = point == end.ptr ? 0 : end.ptr - point - 1;
  return 0.5 * std::pow(10, -double(decimals));
}

// A result that another program stored comes from coordinates with more digits than the document
// has, and may be rounded itself.
bool is_beyond_rounding(double stored, double value, Formula formula) {
  const bool is_of_xyz = formula >= Formula::std_dev_x && formula <= Formula::std_dev_z;
  const double slack = is_of_xyz ? 0.00005 : 0.005;
  const double allowed = std::max(slack, std::min(half_of_last_digit(stored), 10 * slack));
  return !(std::fabs(stored - value) <= allowed * (1 + 1e-9));
}

constexpr std::size_t k_most_verdicts = 500000;

// --- A record ------------------------------------------------------------------------------------

class RecordEvaluator {
 public:
  RecordEvaluator(const ColorQualityControlType& record, unsigned number, Colorimeter* meter,
                  Evaluation* out)
      : record_(record), number_(number), meter_(*meter), out_(*out) {}

  void evaluate();

 private:
  // A tolerance with what its function asks for.
  struct Rule {
    const ToleranceType* tolerance;
    bool is_of_standard;
    unsigned index;
    FunctionTask task;
    Demands demands;
  };
  using Rules = std::vector<Rule>;
  using RuleLists = std::initializer_list<const Rules*>;

  static void add_rule(const ToleranceType& tolerance, bool is_of_standard, unsigned index,
                       Rules* rules);
  Rules rules_of(unsigned pair) const;

  void evaluate_pair(unsigned pair);
  void evaluate_averages();
  void judge(const Rule& rule, const FunctionPlace& place);
  void note_result(const FunctionType& function, const FunctionPlace& place);
  void note_stored(const FunctionType& function, Computed* computed) const;

  void compute(const FunctionTask& task, const Demands& demands, const Rule* rule, Computed* result,
               std::vector<PartVerdict>* parts);
  void compute_pair(const FunctionTask& task, const Demands& demands, Computed* result,
                    std::vector<PartVerdict>* parts);
  void compute_metamerism(const Rule* rule, const Demands& demands, Computed* result);
  void compute_from_spectra(const FunctionTask& task, const Demands& demands, Computed* result,
                            std::vector<PartVerdict>* parts);
  void compute_density(const FunctionTask& task, const Demands& demands, Computed* result,
                       std::vector<PartVerdict>* parts);
  Outcome<double> over_pair(Formula formula, unsigned pair, const Demands& demands,
                            Computed* result);
  Outcome<double> over_record(Formula formula, const Demands& demands, Computed* result);
  Outcome<double> average_over_record(Formula formula, const Demands& demands, Computed* result);

  Outcome<Comparable> see(const std::vector<PlacedColor>& colors, const Demands& demands,
                          bool has_standard = true);

  const ColorType* standard_of(unsigned pair) const {
    const Standard& standard = record_.get_StandardAndMeasurement(pair).get_Standard();
    return standard.isnil_Standard() ? nullptr : &standard.get_Color();
  }
  const ColorType& measured(const FunctionPlace& place) const {
    return record_.get_StandardAndMeasurement(place.pair)
        .get_Measurement(place.measurement)
        .get_Color();
  }
  std::vector<PlacedColor> compared(const FunctionPlace& place) const {
    return {{standard_of(place.pair), {}}, {&measured(place), {}}};
  }
  // Whether the tolerance is judged once, so that its function's own result is that one.
  bool is_alone(const Verdict& verdict) const;

  const ColorQualityControlType& record_;
  unsigned number_;
  Colorimeter& meter_;
  Evaluation& out_;
  Rules record_rules_;
  Rules global_rules_;
  // Statistics by formula that were asked for by measurements of the pair at hand.
  std::map<Formula, Computed> statistics_;
  // Averages over the standards, by formula and demands.
  std::map<std::string, Computed> averages_;
};

void RecordEvaluator::add_rule(const ToleranceType& tolerance, bool is_of_standard, unsigned index,
                               Rules* rules) {
  const FunctionType* const function = internal::function_in(tolerance.get_Function());
  Rule rule = {&tolerance, is_of_standard, index, {}, demands_of(tolerance)};
  if (function != nullptr) {
    rule.task = internal::task_of(*function);
  } else {
    rule.task.reason = "the tolerance has no function";
  }
  rules->push_back(std::move(rule));
}

// Own tolerances of the standard, global ones of the others, and those of the record.
RecordEvaluator::Rules RecordEvaluator::rules_of(unsigned pair) const {
  Rules rules;
  const Standard& standard = record_.get_StandardAndMeasurement(pair).get_Standard();
  unsigned index = 0;
  if (!standard.isnil_Standard()) {
    for (const ToleranceType& tolerance : standard.each_Tolerance()) {
      if (!(tolerance.isset_Global() && tolerance.get_Global())) {
        add_rule(tolerance, true, index, &rules);
      }
      ++index;
    }
  }
  return rules;
}

void RecordEvaluator::evaluate() {
  unsigned index = 0;
  for (const ToleranceType& tolerance : record_.each_Tolerance()) {
    add_rule(tolerance, false, index++, &record_rules_);
  }
  for (const StandardAndMeasurementType& pair : record_.each_StandardAndMeasurement()) {
    if (pair.get_Standard().isnil_Standard()) continue;
    index = 0;
    for (const ToleranceType& tolerance : pair.get_Standard().each_Tolerance()) {
      if (tolerance.isset_Global() && tolerance.get_Global()) {
        add_rule(tolerance, true, index, &global_rules_);
      }
      ++index;
    }
  }
  for (unsigned i = 0; i < record_.size_StandardAndMeasurement() && !out_.is_cut; ++i) {
    evaluate_pair(i);
  }
  evaluate_averages();
}

void RecordEvaluator::evaluate_pair(unsigned number) {
  const StandardAndMeasurementType& pair = record_.get_StandardAndMeasurement(number);
  statistics_.clear();
  const Rules own = rules_of(number);
  FunctionPlace place;
  place.record = number_;
  place.pair = number;
  for (unsigned i = 0; i < pair.size_Measurement() && !out_.is_cut; ++i) {
    place.measurement = i;
    for (const Rules* rules : RuleLists{&own, &global_rules_, &record_rules_}) {
      for (const Rule& rule : *rules) {
        const Formula formula = rule.task.formula;
        if (internal::is_over_measurements(formula) || internal::is_over_standards(formula)) {
          continue;
        }
        judge(rule, place);
      }
    }
    for (const sg_Function& holder : pair.get_Measurement(i).each_Function()) {
      const FunctionType* const function = internal::function_in(holder);
      if (function != nullptr) note_result(*function, place);
    }
  }
  place.measurement = FunctionPlace::k_all;
  for (const Rules* rules : RuleLists{&own, &global_rules_, &record_rules_}) {
    for (const Rule& rule : *rules) {
      if (internal::is_over_measurements(rule.task.formula)) judge(rule, place);
    }
  }
}

void RecordEvaluator::evaluate_averages() {
  FunctionPlace place;
  place.record = number_;
  for (const Rules* rules : RuleLists{&global_rules_, &record_rules_}) {
    for (const Rule& rule : *rules) {
      if (internal::is_over_standards(rule.task.formula)) judge(rule, place);
    }
  }
  for (unsigned i = 0; i < record_.size_StandardAndMeasurement(); ++i) {
    for (const Rule& rule : rules_of(i)) {
      if (!internal::is_over_standards(rule.task.formula)) continue;
      place.pair = i;
      judge(rule, place);
    }
  }
}

bool RecordEvaluator::is_alone(const Verdict& verdict) const {
  if (internal::is_over_standards(verdict.formula)) return true;
  const bool is_for_pair = verdict.is_of_standard && !verdict.tolerance->get_Global();
  if (!is_for_pair && record_.size_StandardAndMeasurement() != 1) return false;
  return internal::is_over_measurements(verdict.formula) ||
         record_.get_StandardAndMeasurement(verdict.place.pair).size_Measurement() == 1;
}

void RecordEvaluator::note_stored(const FunctionType& function, Computed* computed) const {
  if (!function.isset_Result()) return;
  computed->stored = function.get_Result();
  if (computed->value) {
    computed->is_stored_wrong =
        is_beyond_rounding(*computed->stored, *computed->value, computed->formula);
  }
}

void RecordEvaluator::judge(const Rule& rule, const FunctionPlace& place) {
  if (out_.verdicts.size() == k_most_verdicts) out_.is_cut = true;
  if (out_.is_cut) return;
  out_.verdicts.emplace_back();
  Verdict& verdict = out_.verdicts.back();
  verdict.place = place;
  verdict.tolerance = rule.tolerance;
  verdict.is_of_standard = rule.is_of_standard;
  verdict.tolerance_index = rule.index;
  verdict.function = internal::function_in(rule.tolerance->get_Function());
  if (rule.tolerance->isset_Limits()) {
    const LimitsType& limits = rule.tolerance->get_Limits();
    verdict.limits.high = limits.get_HighTolerance();
    if (limits.isset_LowTolerance()) verdict.limits.low = limits.get_LowTolerance();
  }
  if (rule.tolerance->isset_WarningLevel()) {
    verdict.warning_level = rule.tolerance->get_WarningLevel();
  }
  compute(rule.task, rule.demands, &rule, &verdict, &verdict.parts);
  if (!verdict.value) return;
  if (verdict.function != nullptr && is_alone(verdict)) note_stored(*verdict.function, &verdict);
  if (!verdict.limits.has_any() && !verdict.warning_level && verdict.parts.empty()) {
    verdict.reason = "the tolerance has no limits";
    return;
  }
  if (!verdict.limits.is_sound() || (verdict.warning_level && std::isnan(*verdict.warning_level)) ||
      !std::all_of(verdict.parts.begin(), verdict.parts.end(),
                   [](const PartVerdict& part) { return part.limits.is_sound(); })) {
    verdict.reason = "a limit of the tolerance is no number";
    return;
  }
  const bool is_held = verdict.limits.hold(*verdict.value) &&
                       std::all_of(verdict.parts.begin(), verdict.parts.end(),
                                   [](const PartVerdict& part) { return part.is_held; });
  const bool is_warning = verdict.warning_level && !(*verdict.value < *verdict.warning_level);
  verdict.status = !is_held ? Status::failed : is_warning ? Status::warning : Status::passed;
}

void RecordEvaluator::note_result(const FunctionType& function, const FunctionPlace& place) {
  const FunctionTask task = internal::task_of(function);
  Computed result;
  const bool is_statistic =
      internal::is_over_measurements(task.formula) || internal::is_over_standards(task.formula);
  const auto known = is_statistic ? statistics_.find(task.formula) : statistics_.end();
  if (known != statistics_.end()) {
    result = known->second;
  } else {
    result.place = place;
    std::vector<PartVerdict> parts;
    compute(task, {}, nullptr, &result, &parts);
    if (is_statistic) statistics_[task.formula] = result;
  }
  result.place = place;
  result.function = &function;
  note_stored(function, &result);
  out_.results.push_back(std::move(result));
}

// --- Computing -----------------------------------------------------------------------------------

void RecordEvaluator::compute(const FunctionTask& task, const Demands& demands, const Rule* rule,
                              Computed* result, std::vector<PartVerdict>* parts) {
  result->formula = task.formula;
  result->factors = task.factors;
  if (!task.reason.empty()) {
    result->reason = task.reason;
    return;
  }
  const bool is_over_pair = internal::is_over_measurements(task.formula);
  if (is_over_pair || internal::is_over_standards(task.formula)) {
    const Outcome<double> value = is_over_pair
                                      ? over_pair(task.formula, result->place.pair, demands, result)
                                      : over_record(task.formula, demands, result);
    if (value) {
      result->value = *value;
    } else {
      result->reason = value.reason();
    }
  } else if (standard_of(result->place.pair) == nullptr) {
    result->reason = "there is no standard";
  } else if (task.formula == Formula::metamerism) {
    compute_metamerism(rule, demands, result);
  } else if (task.formula == Formula::brightness || task.formula == Formula::strength) {
    compute_from_spectra(task, demands, result, parts);
  } else if (task.formula == Formula::density) {
    compute_density(task, demands, result, parts);
  } else {
    compute_pair(task, demands, result, parts);
  }
  if (result->value && !std::isfinite(*result->value)) {
    result->value.reset();
    result->reason = "the numbers of the colours give no result";
  }
  if (!result->value) {
    parts->clear();
    return;
  }
  for (const PartLimits& limits : task.parts) {
    if (limits.part != Part::value) continue;
    parts->push_back({part_name(Part::value, false), *result->value, limits.limits,
                      limits.limits.hold(*result->value)});
  }
}

void RecordEvaluator::compute_pair(const FunctionTask& task, const Demands& demands,
                                   Computed* result, std::vector<PartVerdict>* parts) {
  const Outcome<Comparable> seen = see(compared(result->place), demands);
  if (!seen) {
    result->reason = seen.reason();
    return;
  }
  const Stimulus& standard = seen->stimuli[0];
  const Stimulus& sample = seen->stimuli[1];
  result->conditions = seen->conditions;
  result->has_default_conditions = seen->has_default_conditions;
  result->standard_source = standard.source;
  result->measurement_source = sample.source;
  const Outcome<double> value = difference(task, standard, sample);
  if (!value) {
    result->reason = value.reason();
    return;
  }
  result->value = *value;
  const bool is_hunter = is_of_hunter(task.formula);
  const Parts all = is_hunter ? parts_of(hunter_of(standard), hunter_of(sample))
                              : parts_of(standard.lab(), sample.lab());
  for (const PartLimits& limits : task.parts) {
    if (limits.part == Part::value) continue;
    double amount = 0;
    if (limits.part == Part::difference) {
      const Outcome<double> other = difference(task, standard, standard);
      if (!other) {
        result->value.reset();
        result->reason = other.reason();
        return;
      }
      amount = *value - *other;
    } else {
      amount = part_of(all, limits.part);
      if (is_of_magnitudes(task.formula)) amount = std::fabs(amount);
    }
    parts->push_back(
        {part_name(limits.part, is_hunter), amount, limits.limits, limits.limits.hold(amount)});
  }
}

void RecordEvaluator::compute_metamerism(const Rule* rule, const Demands& demands,
                                         Computed* result) {
  if (rule == nullptr) {
    result->reason = "the function does not name the second illuminant";
    return;
  }
  const std::vector<PlacedColor> colors = compared(result->place);
  const Outcome<Comparable> reference = see(colors, demands);
  if (!reference) {
    result->reason = reference.reason();
    return;
  }
  result->conditions = reference->conditions;
  result->has_default_conditions = reference->has_default_conditions;
  result->reason = "the tolerance does not name the second illuminant";
  for (const int number : {int(rule->tolerance->getenum_SecondaryIlluminant()),
                           int(rule->tolerance->getenum_TertiaryIlluminant())}) {
    const std::optional<Light> light = light_of(number);
    if (!light) continue;
    const Outcome<Comparable> test =
        see(colors, {light, reference->conditions.observer, demands.geometry});
    if (!test) {
      result->value.reset();
      result->reason = test.reason();
      return;
    }
    result->standard_source = test->stimuli[0].source;
    result->measurement_source = test->stimuli[1].source;
    const double value =
        metamerism(reference->stimuli[0].xyz, reference->stimuli[1].xyz, test->stimuli[0].xyz,
                   test->stimuli[1].xyz, test->stimuli[0].white);
    result->reason.clear();
    if (result->value && !(value > *result->value)) continue;
    result->value = value;
    result->test_light = light;
  }
}

void RecordEvaluator::compute_from_spectra(const FunctionTask& task, const Demands& demands,
                                           Computed* result, std::vector<PartVerdict>* parts) {
  const auto standard = reflectance_of(*standard_of(result->place.pair));
  const auto sample = reflectance_of(measured(result->place));
  result->standard_source = result->measurement_source = Source::spectrum;
  if (!standard || !sample) {
    result->reason =
        standard ? "the measurement: " + sample.reason() : "the standard: " + standard.reason();
    return;
  }
  result->reason = fault_of(standard->instrument, sample->instrument, demands);
  if (!result->reason.empty()) return;
  if (task.formula == Formula::strength) {
    const Outcome<double> wavelength =
        task.wavelength ? Outcome<double>(*task.wavelength) : strongest_wavelength(standard->value);
    const Outcome<double> value =
        wavelength ? strength(standard->value, sample->value, *wavelength) : wavelength;
    if (value) result->value = *value;
    result->reason = value.reason();
    return;
  }
  const Outcome<double> value = brightness(sample->value), other = brightness(standard->value);
  if (!value || !other) {
    result->reason = value ? other.reason() : value.reason();
    return;
  }
  result->value = *value;
  add_difference(task, *value - *other, parts);
}

void RecordEvaluator::compute_density(const FunctionTask& task, const Demands& demands,
                                      Computed* result, std::vector<PartVerdict>* parts) {
  const Densities standard = densities_of(*standard_of(result->place.pair));
  const Densities sample = densities_of(measured(result->place));
  const Reading<double>* pair[2] = {};
  for (const auto& [key, density] : sample) {
    const auto found = standard.find(key);
    if (found == standard.end()) continue;
    if (pair[0] != nullptr) {
      result->reason = "the colours have several densities, and the tolerance names none";
      return;
    }
    pair[0] = &found->second;
    pair[1] = &density;
  }
  if (pair[0] == nullptr) {
    result->reason = "the colours have no measured density of one status and filter";
    return;
  }
  result->reason = fault_of(pair[0]->instrument, pair[1]->instrument, demands);
  if (!result->reason.empty()) return;
  result->value = pair[1]->value;
  add_difference(task, pair[1]->value - pair[0]->value, parts);
}

Outcome<double> RecordEvaluator::over_pair(Formula formula, unsigned number, const Demands& demands,
                                           Computed* result) {
  const StandardAndMeasurementType& pair = record_.get_StandardAndMeasurement(number);
  const bool has_mean = formula == Formula::mean_de76;
  const ColorType* const standard = standard_of(number);
  if (pair.size_Measurement() == 0) return Refusal{"there are no measurements"};
  if (!has_mean && pair.size_Measurement() == 1) return Refusal{"there is one measurement alone"};
  if (has_mean && standard == nullptr) return Refusal{"there is no standard"};
  std::vector<PlacedColor> colors;
  if (has_mean) colors.push_back({standard, {}});
  for (const Measurement& measurement : pair.each_Measurement()) {
    colors.push_back({&measurement.get_Color(), {}});
  }
  const Outcome<Comparable> seen = see(colors, demands, has_mean);
  if (!seen) return seen.refusal();
  result->conditions = seen->conditions;
  result->has_default_conditions = seen->has_default_conditions;
  result->standard_source = seen->stimuli.front().source;
  result->measurement_source = seen->stimuli.back().source;
  std::vector<double> values;
  for (std::size_t i = has_mean ? 1 : 0; i < seen->stimuli.size(); ++i) {
    values.push_back(has_mean ? de76(seen->stimuli[0].lab(), seen->stimuli[i].lab())
                              : coordinate_of(seen->stimuli[i], formula));
  }
  if (has_mean) {
    double mean = 0;
    for (const double value : values) mean += value / double(values.size());
    return mean;
  }
  if (formula == Formula::std_dev_h) unwrap_hues(&values);
  return standard_deviation(values);
}

// What a tolerance of each standard may ask for is summed once.
Outcome<double> RecordEvaluator::over_record(Formula formula, const Demands& demands,
                                             Computed* result) {
  const std::string key = std::string(name_of(formula)) + '|' +
                          (demands.light ? demands.light->name() : "") + '|' +
                          (demands.observer ? std::string(name_of(*demands.observer)) : "") + '|' +
                          (demands.geometry ? demands.geometry.text() : "");
  const auto known = averages_.find(key);
  if (known == averages_.end()) {
    Computed average;
    const Outcome<double> value = average_over_record(formula, demands, &average);
    if (value) average.value = *value;
    average.reason = value.reason();
    averages_.emplace(key, average);
  }
  const Computed& average = averages_.at(key);
  result->conditions = average.conditions;
  result->has_default_conditions = average.has_default_conditions;
  result->standard_source = average.standard_source;
  result->measurement_source = average.measurement_source;
  if (average.value) return *average.value;
  return Refusal{average.reason};
}

Outcome<double> RecordEvaluator::average_over_record(Formula formula, const Demands& demands,
                                                     Computed* result) {
  double sum = 0;
  unsigned count = 0;
  for (unsigned i = 0; i < record_.size_StandardAndMeasurement(); ++i) {
    if (record_.get_StandardAndMeasurement(i).size_Measurement() < 2) continue;
    const Outcome<double> deviation = over_pair(formula, i, demands, result);
    if (!deviation) return deviation;
    sum += *deviation;
    ++count;
  }
  if (count == 0) return Refusal{"no standard has two measurements"};
  return sum / count;
}

Outcome<Comparable> RecordEvaluator::see(const std::vector<PlacedColor>& colors,
                                         const Demands& demands, bool has_standard) {
  Incomparable why;
  std::optional<Comparable> seen = measure_alike(meter_, colors, demands, &why);
  if (seen) return std::move(*seen);
  const bool is_standard = has_standard && why.index == 0;
  return Refusal{(is_standard ? "the standard: " : "the measurement: ") + why.reason};
}

Colorimeter strict_colorimeter() {
  Colorimeter::Options options;
  options.adaptation = Adaptation::none;
  options.assume_srgb = false;
  return Colorimeter(options);
}

}  // namespace

std::string_view name_of(Status status) {
  switch (status) {
    case Status::passed:
      return "pass";
    case Status::warning:
      return "warning";
    case Status::failed:
      return "fail";
    default:
      return "not judged";
  }
}

Outcome<double> difference_by(Formula formula, const Factors& k, const Stimulus& standard,
                              const Stimulus& sample) {
  switch (formula) {
    case Formula::de76:
    case Formula::lab_parts:
    case Formula::lab_parts_signed:
    case Formula::lch_parts:
      return de76(standard.lab(), sample.lab());
    case Formula::de94:
      return de94(standard.lab(), sample.lab(), k);
    case Formula::de2000:
      return de2000(standard.lab(), sample.lab(), k);
    case Formula::cmc:
      return de_cmc(standard.lab(), sample.lab(), k.l, k.c);
    case Formula::din99:
      return de99(standard.lab(), sample.lab(), k.l, k.c);
    case Formula::fmc2:
      return de_fmc2(standard.xyz, sample.xyz);
    case Formula::hunter_de:
    case Formula::hunter_parts:
    case Formula::hunter_parts_signed:
      return de_hunter(hunter_of(standard), hunter_of(sample));
    case Formula::whiteness:
      return whiteness(sample);
    case Formula::yellowness:
      return yellowness(sample);
    default:
      return Refusal{std::string(name_of(formula)) + " is not of two colours alone"};
  }
}

std::size_t Evaluation::count(Status status) const {
  return static_cast<std::size_t>(
      std::count_if(verdicts.begin(), verdicts.end(),
                    [&](const Verdict& verdict) { return verdict.status == status; }));
}

std::size_t Evaluation::wrong_count() const {
  const auto is_wrong = [](const Computed& computed) { return computed.is_stored_wrong; };
  return static_cast<std::size_t>(std::count_if(verdicts.begin(), verdicts.end(), is_wrong) +
                                  std::count_if(results.begin(), results.end(), is_wrong));
}

Evaluation evaluate(const Zol& document) {
  Evaluation evaluation;
  std::size_t pairs = 0;
  for (const ColorQualityControlType& record : document.each_ColorQualityControl()) {
    pairs += record.size_StandardAndMeasurement();
  }
  evaluation.verdicts.reserve(std::min(pairs, k_most_verdicts));
  Colorimeter meter = strict_colorimeter();
  for (unsigned i = 0; i < document.size_ColorQualityControl(); ++i) {
    RecordEvaluator(document.get_ColorQualityControl(i), i, &meter, &evaluation).evaluate();
  }
  return evaluation;
}

Evaluation evaluate(const ColorQualityControlType& record) {
  Evaluation evaluation;
  Colorimeter meter = strict_colorimeter();
  RecordEvaluator(record, 0, &meter, &evaluation).evaluate();
  return evaluation;
}

// --- Storing -------------------------------------------------------------------------------------

namespace {

// Whether two functions ask for the same, whatever result they have.
bool is_same_function(const FunctionType& a, const FunctionType& b) {
  const FunctionTask one = internal::task_of(a), other = internal::task_of(b);
  return one.formula == other.formula && one.factors.l == other.factors.l &&
         one.factors.c == other.factors.c && one.factors.h == other.factors.h &&
         one.commercial_factor == other.commercial_factor && one.wavelength == other.wavelength &&
         reflection::type_of(a) == reflection::type_of(b);
}

// The number of results that changed: 1 or 0. Documents are written with 14 digits.
std::size_t store(FunctionType* function, double value) {
  const bool is_there = function->isset_Result() &&
                        std::fabs(function->get_Result() - value) <= 1e-13 * std::fabs(value);
  if (is_there) return 0;
  return function->set_Result(value) == lmx::elmx_ok ? 1 : 0;
}

// What store() is to be called with, found while the evaluation's pointers are good.
struct Storing {
  FunctionType* function;
  double value;
};
struct Addition {
  Measurement* measurement;
  const sg_Function* function;
  double value;
};

}  // namespace

std::size_t store_results(Zol& document, const Evaluation& evaluation) {
  std::vector<Storing> storings;
  std::vector<Addition> additions;
  const auto measurement_at = [&](const FunctionPlace& place) -> Measurement& {
    return document.get_ColorQualityControl(place.record)
        .get_StandardAndMeasurement(place.pair)
        .get_Measurement(place.measurement);
  };
  for (const Computed& result : evaluation.results) {
    if (!result.value) continue;
    Measurement& measurement = measurement_at(result.place);
    for (sg_Function& holder : measurement.each_Function()) {
      FunctionType* const function = internal::function_in(holder);
      if (function == result.function) storings.push_back({function, *result.value});
    }
  }
  for (const Verdict& verdict : evaluation.verdicts) {
    if (!verdict.value || verdict.place.measurement == FunctionPlace::k_all) continue;
    Measurement& measurement = measurement_at(verdict.place);
    const auto is_there = [&](const sg_Function& holder) {
      const FunctionType* const function = internal::function_in(holder);
      return function != nullptr && is_same_function(*function, *verdict.function);
    };
    const auto is_coming = [&](const Addition& addition) {
      return addition.measurement == &measurement && is_there(*addition.function);
    };
    const auto functions = measurement.each_Function();
    const auto first = additions.rbegin();
    if (std::any_of(functions.begin(), functions.end(), is_there)) continue;
    // Verdicts of one measurement follow each other.
    const auto last = std::find_if(first, additions.rend(), [&](const Addition& addition) {
      return addition.measurement != &measurement;
    });
    if (std::any_of(first, last, is_coming)) continue;
    additions.push_back({&measurement, &verdict.tolerance->get_Function(), *verdict.value});
  }
  std::size_t count = 0;
  for (const Storing& storing : storings) count += store(storing.function, storing.value);
  for (const Addition& addition : additions) {
    if (addition.measurement->append_Function() != lmx::elmx_ok) continue;
    sg_Function& holder = addition.measurement->back_Function();
    holder = *addition.function;
    count += store(internal::function_in(holder), addition.value);
  }
  return count;
}

}  // namespace zol_v2::colorimetry
