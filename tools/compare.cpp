// zol compare: the colours of two documents, pair by pair.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <nlohmann/json.hpp>

#include "colorimetry/evaluation.h"
#include "model/Zol.h"
#include "port/files.h"
#include "tools/colour_text.h"
#include "tools/commands.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/placed_colors.h"
#include "tools/table.h"
#include "tools/text.h"

namespace {

using zol_v2::colorimetry::Colorimeter;
using zol_v2::colorimetry::Comparable;
using zol_v2::colorimetry::Demands;
using zol_v2::colorimetry::Factors;
using zol_v2::colorimetry::Formula;
using zol_v2::colorimetry::Incomparable;
using zol_v2::colorimetry::Observer;
using zol_v2::colorimetry::Outcome;
using zol_v2::colorimetry::Parts;
using zol_v2::colorimetry::PlacedColor;
using zol_v2::colorimetry::StandardIlluminant;
using zol_v2::colorimetry::Stimulus;
using Json = nlohmann::ordered_json;

struct Options {
  std::string first, second;
  std::string formula = "2000";
  std::vector<double> factors;
  std::string illuminant;
  int observer = 0;
  bool adapt = false;
  bool json = false;
  bool csv = false;
};

// --- Matching ----------------------------------------------------------------------------------

std::string id_of(const zol_v2::ColorType& color) { return utf8(color.get_UniqueID()); }
std::string number_of(const zol_v2::ColorType& color) { return utf8(color.get_ColorNumber()); }
std::string color_name_of(const zol_v2::ColorType& color) { return utf8(color.get_ColorName()); }

struct Key {
  const char* name;
  std::string (*of)(const zol_v2::ColorType&);
};
constexpr Key k_keys[] = {{"id", id_of}, {"number", number_of}, {"name", color_name_of}};

struct Match {
  std::size_t first, second;
  const char* by;
};

// Each colour goes with one of the other side alone. The id counts most, then the number, then the
// name; of several that share one, the first goes with the first.
std::vector<Match> matches_of(const std::vector<PlacedColor>& first,
                              const std::vector<PlacedColor>& second) {
  std::vector<Match> matches;
  std::vector<bool> is_taken(first.size(), false), is_given(second.size(), false);
  for (const Key& key : k_keys) {
    std::map<std::string, std::vector<std::size_t>> waiting;
    // Backwards, so that the first one is at the end of its list.
    for (std::size_t i = second.size(); i-- > 0;) {
      const std::string text = key.of(*second[i].color);
      if (!is_given[i] && !text.empty()) waiting[text].push_back(i);
    }
    for (std::size_t i = 0; i < first.size(); ++i) {
      if (is_taken[i]) continue;
      const auto found = waiting.find(key.of(*first[i].color));
      if (found == waiting.end() || found->second.empty()) continue;
      matches.push_back({i, found->second.back(), key.name});
      is_taken[i] = is_given[found->second.back()] = true;
      found->second.pop_back();
    }
  }
  std::sort(matches.begin(), matches.end(),
            [](const Match& a, const Match& b) { return a.first < b.first; });
  return matches;
}

// --- Comparing ---------------------------------------------------------------------------------

struct Pair {
  Match match;
  std::optional<double> value;
  Parts parts;
  std::string conditions;
  std::string basis;
  std::string reason;  // where there is no value
};

struct Statistics {
  std::size_t count = 0;
  double mean = 0, median = 0, percentile_95 = 0, greatest = 0, deviation = 0;
};

struct Comparison {
  std::vector<Pair> pairs;  // greatest difference first, then those without one
  std::vector<std::size_t> only_first, only_second;
  Statistics statistics;
};

Pair compare_pair(const Match& match, const PlacedColor& first, const PlacedColor& second,
                  Formula formula, const Factors& factors, const Demands& demands,
                  Colorimeter& meter) {
  Pair pair;
  pair.match = match;
  Incomparable why;
  const std::optional<Comparable> seen = measure_alike(meter, {first, second}, demands, &why);
  if (!seen) {
    pair.reason = std::string(why.index == 0 ? "A: " : "B: ") + why.reason;
    return pair;
  }
  const Stimulus& a = seen->stimuli[0];
  const Stimulus& b = seen->stimuli[1];
  pair.conditions = text_of(seen->conditions) + (seen->has_default_conditions ? " by default" : "");
  const std::string basis_a = basis_of(a), basis_b = basis_of(b);
  pair.basis = basis_a == basis_b ? basis_a : basis_a + " and " + basis_b;
  const Outcome<double> value = difference_by(formula, factors, a, b);
  if (!value || !std::isfinite(*value)) {
    pair.reason = value ? "the numbers of the colours give no result" : value.reason();
    return pair;
  }
  pair.value = *value;
  pair.parts = parts_of(a.lab(), b.lab());
  return pair;
}

// The value below which a share of the sorted values lies, linear between two of them.
double quantile(const std::vector<double>& sorted, double share) {
  const double at = share * double(sorted.size() - 1);
  const auto below = static_cast<std::size_t>(at);
  const std::size_t above = std::min(below + 1, sorted.size() - 1);
  return sorted[below] + (sorted[above] - sorted[below]) * (at - double(below));
}

Statistics statistics_of(const std::vector<Pair>& pairs) {
  std::vector<double> values;
  for (const Pair& pair : pairs) {
    if (pair.value) values.push_back(*pair.value);
  }
  Statistics result;
  result.count = values.size();
  if (values.empty()) return result;
  std::sort(values.begin(), values.end());
  for (const double value : values) result.mean += value / double(values.size());
  for (const double value : values) {
    result.deviation += (value - result.mean) * (value - result.mean);
  }
  result.deviation =
      values.size() > 1 ? std::sqrt(result.deviation / double(values.size() - 1)) : 0;
  result.median = quantile(values, 0.5);
  result.percentile_95 = quantile(values, 0.95);
  result.greatest = values.back();
  return result;
}

Comparison compare(const std::vector<PlacedColor>& first, const std::vector<PlacedColor>& second,
                   Formula formula, const Factors& factors, const Demands& demands,
                   Colorimeter& meter) {
  Comparison result;
  std::vector<bool> is_taken(first.size(), false), is_given(second.size(), false);
  for (const Match& match : matches_of(first, second)) {
    is_taken[match.first] = is_given[match.second] = true;
    result.pairs.push_back(compare_pair(match, first[match.first], second[match.second], formula,
                                        factors, demands, meter));
  }
  for (std::size_t i = 0; i < first.size(); ++i) {
    if (!is_taken[i]) result.only_first.push_back(i);
  }
  for (std::size_t i = 0; i < second.size(); ++i) {
    if (!is_given[i]) result.only_second.push_back(i);
  }
  std::stable_sort(result.pairs.begin(), result.pairs.end(), [](const Pair& a, const Pair& b) {
    return a.value.value_or(-1) > b.value.value_or(-1);
  });
  result.statistics = statistics_of(result.pairs);
  return result;
}

// --- Output ------------------------------------------------------------------------------------

// One side of the comparison.
struct Side {
  std::string file;
  std::string part;  // palette, colour set or record; empty for the whole document
  zol_v2::Zol document;
  std::vector<PlacedColor> colors;

  std::string name(std::size_t index) const {
    const zol_v2::ColorType& color = *colors[index].color;
    return first_text({utf8(color.get_ColorName()), id_of(color), number_of(color)});
  }
};

std::string both_names(const Side& first, const Side& second, const Match& match) {
  const std::string a = first.name(match.first), b = second.name(match.second);
  return a == b ? a : a + " / " + b;
}

void print_text(const Side& first, const Side& second, const Comparison& comparison,
                const std::string& formula) {
  TextTable table({{formula, true},
                   {"dL*", true},
                   {"da*", true},
                   {"db*", true},
                   {"dC*", true},
                   {"dH*", true},
                   {"Colour"},
                   {"By"},
                   {"Conditions"},
                   {"Remarks"}});
  for (const Pair& pair : comparison.pairs) {
    const bool has_value = pair.value.has_value();
    const auto part = [&](double value) { return has_value ? rounded(value) : std::string(); };
    table.add({has_value ? rounded(*pair.value) : "-", part(pair.parts.l), part(pair.parts.a),
               part(pair.parts.b), part(pair.parts.c), part(pair.parts.h),
               one_line(both_names(first, second, pair.match)), pair.match.by,
               one_line(pair.conditions), one_line(pair.reason)});
  }
  if (!table.empty()) print(table.text());
  const Statistics& s = comparison.statistics;
  print(counted(s.count, "pair", "pairs") + " compared");
  if (s.count != 0) {
    print(": mean " + rounded(s.mean) + ", median " + rounded(s.median) + ", 95 % below " +
          rounded(s.percentile_95) + ", greatest " + rounded(s.greatest) + ", standard deviation " +
          rounded(s.deviation));
  }
  print("\n");
  const auto print_rest = [](const Side& side, const std::vector<std::size_t>& indices) {
    if (indices.empty()) return;
    std::string line =
        counted(indices.size(), "colour", "colours") + " of " + side.file + " alone:";
    for (const std::size_t i : indices) line += (i == indices.front() ? " " : ", ") + side.name(i);
    print(one_line(line) + '\n');
  };
  print_rest(first, comparison.only_first);
  print_rest(second, comparison.only_second);
}

void print_csv(const Side& first, const Side& second, const Comparison& comparison) {
  print(comma_separated({"Difference", "dL", "da", "db", "dC", "dH", "A", "B", "By", "Conditions",
                         "Basis", "Reason"}));
  for (const Pair& pair : comparison.pairs) {
    const bool has_value = pair.value.has_value();
    const auto part = [&](double value) { return has_value ? number_text(value) : std::string(); };
    print(comma_separated(
        {has_value ? number_text(*pair.value) : "", part(pair.parts.l), part(pair.parts.a),
         part(pair.parts.b), part(pair.parts.c), part(pair.parts.h), first.name(pair.match.first),
         second.name(pair.match.second), pair.match.by, pair.conditions, pair.basis, pair.reason}));
  }
}

void print_json(const Side& first, const Side& second, const Comparison& comparison,
                const std::string& formula) {
  Json all = {{"a", first.file}, {"b", second.file}, {"formula", formula}};
  const Statistics& s = comparison.statistics;
  all["statistics"] = {{"count", s.count},
                       {"mean", json_number(s.mean)},
                       {"median", json_number(s.median)},
                       {"percentile95", json_number(s.percentile_95)},
                       {"greatest", json_number(s.greatest)},
                       {"standardDeviation", json_number(s.deviation)}};
  all["pairs"] = Json::array();
  for (const Pair& pair : comparison.pairs) {
    Json object = {{"difference", json_number(pair.value)},
                   {"a", first.name(pair.match.first)},
                   {"b", second.name(pair.match.second)},
                   {"by", pair.match.by}};
    if (pair.value) {
      object["dL"] = json_number(pair.parts.l);
      object["da"] = json_number(pair.parts.a);
      object["db"] = json_number(pair.parts.b);
      object["dC"] = json_number(pair.parts.c);
      object["dH"] = json_number(pair.parts.h);
    }
    if (!pair.conditions.empty()) object["conditions"] = pair.conditions;
    if (!pair.basis.empty()) object["basis"] = pair.basis;
    if (!pair.reason.empty()) object["reason"] = pair.reason;
    all["pairs"].push_back(std::move(object));
  }
  const auto rest = [](const Side& side, const std::vector<std::size_t>& indices) {
    Json names = Json::array();
    for (const std::size_t i : indices) names.push_back(side.name(i));
    return names;
  };
  all["onlyA"] = rest(first, comparison.only_first);
  all["onlyB"] = rest(second, comparison.only_second);
  print(all.dump(2, ' ', false, Json::error_handler_t::replace) + '\n');
}

// --- The command -------------------------------------------------------------------------------

// "FILE#NAME" is a part of a file, unless a file has that name.
ExitStatus load_side(const std::string& argument, Side* side) {
  side->file = argument;
  std::uint32_t attributes = 0;
  const std::size_t mark = argument.rfind('#');
  if (mark != std::string::npos && !zol::port::get_attributes(wide_path(argument), attributes)) {
    side->file = argument.substr(0, mark);
    side->part = argument.substr(mark + 1);
  }
  const ExitStatus status = load_document(side->file, side->document);
  if (status != ExitStatus::ok) return status;
  side->colors = placed_colors(side->document, side->part);
  if (!side->part.empty() && side->colors.empty()) {
    complain(side->file,
             "has no palette, colour set or record \"" + side->part + "\" with colours");
    return ExitStatus::trouble;
  }
  return ExitStatus::ok;
}

Factors factors_of(const Options& options, Formula formula) {
  Factors factors;
  if (formula == Formula::cmc) factors.l = 2;
  double* const places[] = {&factors.l, &factors.c, &factors.h};
  for (std::size_t i = 0; i < options.factors.size(); ++i) *places[i] = options.factors[i];
  return factors;
}

ExitStatus run(const Options& options) {
  Side first, second;
  const ExitStatus status =
      worse(load_side(options.first, &first), load_side(options.second, &second));
  if (status != ExitStatus::ok) return status;
  Demands demands;
  StandardIlluminant illuminant{};
  if (find_illuminant(options.illuminant, &illuminant)) demands.light = illuminant;
  if (options.observer != 0) {
    demands.observer = options.observer == 10 ? Observer::degree_10 : Observer::degree_2;
  }
  Colorimeter::Options meter_options;
  meter_options.assume_srgb = false;
  if (!options.adapt) meter_options.adaptation = zol_v2::colorimetry::Adaptation::none;
  Colorimeter meter(meter_options);
  const Formula formula = difference_formulas().at(options.formula);
  const Factors factors = factors_of(options, formula);
  const Comparison comparison =
      compare(first.colors, second.colors, formula, factors, demands, meter);
  const std::string name = formula_with_factors(formula, factors);
  if (options.json) {
    print_json(first, second, comparison, name);
  } else if (options.csv) {
    print_csv(first, second, comparison);
  } else {
    print_text(first, second, comparison, name);
  }
  return ExitStatus::ok;
}

std::string check_illuminant(const std::string& name) {
  StandardIlluminant illuminant{};
  return find_illuminant(name, &illuminant) ? "" : "there is no illuminant " + name;
}

}  // namespace

void add_compare(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = app.add_subcommand("compare", "Compare the colours of two documents");
  command
      ->add_option(
          "A", options->first,
          "Document with the standards; FILE#NAME is a palette, colour set or record in it")
      ->required();
  command->add_option("B", options->second, "Document with the samples, alike")->required();
  command->add_option("--formula", options->formula, "Colour difference, 2000 if not given")
      ->check(CLI::IsMember(difference_formulas()));
  command
      ->add_option("--factors", options->factors,
                   "Parametric factors kL kC kH; l c of cmc; kE kCH of din99")
      ->expected(1, 3)
      ->check(CLI::PositiveNumber);
  command->add_option("--illuminant", options->illuminant, "Such as D50, instead of that of A")
      ->check(CLI::Validator(check_illuminant, "NAME"));
  command->add_option("--observer", options->observer, "2 or 10 degrees, instead of that of A")
      ->check(CLI::IsMember({2, 10}));
  command->add_flag("--adapt", options->adapt,
                    "Adapt coordinates of other illuminants by Bradford, instead of leaving them");
  auto* const json = command->add_flag("--json", options->json, "Print JSON");
  command->add_flag("--csv", options->csv, "Print comma-separated values")->excludes(json);
  command->footer("Colours are matched by unique id, number and name, in this order.");
  command->callback([options, status] { *status = run(*options); });
}
