// zol diff: what is different between two documents, by path.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "model/Zol.h"
#include "tools/batch.h"
#include "tools/commands.h"
#include "tools/document_text.h"
#include "tools/file_walk.h"
#include "tools/json.h"
#include "tools/load.h"
#include "tools/ordered_jobs.h"
#include "tools/output.h"
#include "tools/path_glob.h"
#include "tools/text.h"
#include "tools/tree.h"
#include "tools/tree_diff.h"
#if defined(ZOL_WITH_COLORIMETRY)
#include <cmath>

#include "tools/colour_text.h"
#endif

namespace {

using zol_v2::reflection::ConstRef;
using zol_v2::reflection::Item;

struct Options {
  std::string first, second;
  std::vector<std::string> ignored;
  bool json = false;
  bool brief = false;
  bool recursive = false;
  unsigned jobs = 1;
  std::string formula = "2000";

  std::vector<PathGlob> globs;
};

// Two documents to be compared, or one that has no partner.
struct Pair {
  std::string first, second;
};

struct Told {  // NOLINT(bugprone-exception-escape): to move JSON throws nothing
  ExitStatus status = ExitStatus::ok;
  std::vector<Verdict> verdicts;
  std::string text;
  Json json;
};

// --- How far two colours are apart ---------------------------------------------------------------

struct ColorDistance {
  std::string formula;
  std::optional<double> value;
  std::string reason;  // where there is no value
};

#if defined(ZOL_WITH_COLORIMETRY)
ColorDistance distance_of(const Difference& difference, const std::string& formula_name) {
  namespace cm = zol_v2::colorimetry;
  const cm::Formula formula = difference_formulas().at(formula_name);
  cm::Factors factors;
  if (formula == cm::Formula::cmc) factors.l = 2;
  ColorDistance distance;
  distance.formula = formula_with_factors(formula, factors);
  cm::Colorimeter::Options options;
  options.assume_srgb = false;
  options.adaptation = cm::Adaptation::none;
  cm::Colorimeter meter(options);
  const auto placed = [](const DiffColor& color) {
    return cm::PlacedColor{color.color, {color.set, color.palette}};
  };
  cm::Incomparable why;
  const auto seen = cm::measure_alike(
      meter, {placed(difference.color_a), placed(difference.color_b)}, cm::Demands(), &why);
  if (!seen) {
    distance.reason = (why.index == 0 ? "A: " : "B: ") + why.reason;
    return distance;
  }
  const cm::Outcome<double> value =
      cm::difference_by(formula, factors, seen->stimuli[0], seen->stimuli[1]);
  if (value && std::isfinite(*value)) {
    distance.value = *value;
  } else {
    distance.reason = value ? "the numbers of the colours give no result" : value.reason();
  }
  return distance;
}
#else
ColorDistance distance_of(const Difference&, const std::string&) { return {}; }
#endif

// --- For people ----------------------------------------------------------------------------------

std::string named(const std::string& path, const Item& item) {
  const ConstRef object = item.object();
  const std::string label = object ? label_of(object) : "";
  return path + (label.empty() ? "" : " \"" + one_line(label) + '"');
}

std::string value_text(const std::string& path, const Item& item) {
  const ConstRef object = item.object();
  if (!object) return path + ": " + one_line(exact_text(item.value()));
  if (object.is_nil()) return named(path, item) + ": nil";
  std::size_t count = 0;
  for_each_value(item, "", [&count](const std::string&, const Item&) { return ++count != 0; });
  return named(path, item) + ": " + counted(count, "value", "values");
}

// Blocks of lines, each under the colour or object that it is about.
class UnifiedText {
 public:
  UnifiedText(std::string* out, const Options& options) : out_(*out), options_(options) {}

  void add(const Difference& difference) {
    if (difference.around_a.path != around_a_ || difference.around_b.path != around_b_) {
      begin_block(difference);
    }
    const std::string a = below(difference.a.path, around_a_);
    const std::string b = below(difference.b.path, around_b_);
    if (difference.kind == Difference::Kind::moved) {
      out_ += "> " + named(a, difference.a.item) + ": moved to " + b + '\n';
      return;
    }
    if (difference.a) out_ += "- " + value_text(a, difference.a.item) + '\n';
    if (difference.b) out_ += "+ " + value_text(b, difference.b.item) + '\n';
  }

 private:
  static std::string below(const std::string& path, const std::string& around) {
    return path.size() > around.size() ? path.substr(around.size() + 1) : path;
  }

  void begin_block(const Difference& difference) {
    around_a_ = difference.around_a.path;
    around_b_ = difference.around_b.path;
    std::string title = named(around_a_, difference.around_a.item);
    if (around_a_ != around_b_) title += " -> " + named(around_b_, difference.around_b.item);
    if (difference.color_a.color != nullptr) {
      const ColorDistance distance = distance_of(difference, options_.formula);
      if (distance.value) title += ", " + distance.formula + ' ' + text_of(*distance.value);
    }
    out_ += "@@ " + title + '\n';
  }

  static std::string text_of(double value) {
#if defined(ZOL_WITH_COLORIMETRY)
    return rounded(value);
#else
    return number_text(value);
#endif
  }

  std::string& out_;
  const Options& options_;
  std::string around_a_, around_b_;
};

// --- For programs --------------------------------------------------------------------------------

Json json_of(const DiffSide& side) {
  return {{"path", side.path}, {"value", ::json_of(side.item)}};
}

Json json_of(const std::vector<Difference>& differences, const Options& options) {
  static constexpr const char* k_kinds[] = {"changed", "removed", "added", "moved"};
  Json changes = Json::array();
  std::string color;
  Json distance_json;
  for (const Difference& difference : differences) {
    Json change = {{"change", k_kinds[static_cast<int>(difference.kind)]}};
    if (difference.kind == Difference::Kind::moved) {
      change["a"] = {{"path", difference.a.path}};
      change["b"] = {{"path", difference.b.path}};
    } else {
      if (difference.a) change["a"] = json_of(difference.a);
      if (difference.b) change["b"] = json_of(difference.b);
    }
    if (difference.color_a.color != nullptr) {
      if (difference.around_a.path != color) {
        color = difference.around_a.path;
        const ColorDistance distance = distance_of(difference, options.formula);
        distance_json = {{"a", color},
                         {"b", difference.around_b.path},
                         {"name", valid_utf8(label_of(difference.around_a.item.object()))}};
        if (distance.value) {
          distance_json["formula"] = distance.formula;
          distance_json["difference"] = *distance.value;
        } else if (!distance.reason.empty()) {
          distance_json["reason"] = distance.reason;
        }
      }
      change["color"] = distance_json;
    }
    changes.push_back(std::move(change));
  }
  return changes;
}

// --- The command ---------------------------------------------------------------------------------

bool load(const std::string& file, zol_v2::Zol& document, Told* told) {
  DocumentSource source(file);
  Verdict verdict = try_load(source, document);
  if (verdict.status == ExitStatus::ok) return true;
  told->verdicts.push_back(std::move(verdict));
  told->status = ExitStatus::trouble;
  return false;
}

Told compare_files(const Pair& pair, const Options& options) {
  Told told;
  told.json = {{"a", pair.first}, {"b", pair.second}};
  zol_v2::Zol first, second;
  const bool is_first = load(pair.first, first, &told);
  if (!load(pair.second, second, &told) || !is_first) {
    told.json["trouble"] = told.verdicts.front().report.message;
    return told;
  }
  const std::vector<Difference> found = differences(first, second, [&](const std::string& path) {
    for (const PathGlob& glob : options.globs) {
      if (glob.matches(path)) return true;
    }
    return false;
  });
  if (!found.empty()) told.status = ExitStatus::fault;
  told.json["same"] = found.empty();
  if (options.json) {
    if (!options.brief) told.json["changes"] = json_of(found, options);
  } else if (options.brief) {
    if (!found.empty()) {
      told.text = one_line(pair.first) + " and " + one_line(pair.second) + " differ\n";
    }
  } else if (!found.empty()) {
    told.text = "--- " + one_line(pair.first) + "\n+++ " + one_line(pair.second) + '\n';
    UnifiedText text(&told.text, options);
    for (const Difference& difference : found) text.add(difference);
  }
  return told;
}

Told tell(const Pair& pair, const Options& options) {
  if (!pair.first.empty() && !pair.second.empty()) return compare_files(pair, options);
  Told told;
  told.status = ExitStatus::fault;
  const bool is_first = !pair.first.empty();
  const std::string& file = is_first ? pair.first : pair.second;
  told.json = {{is_first ? "a" : "b", file}, {"same", false}};
  told.text = "Only in " + std::string(is_first ? "A: " : "B: ") + one_line(file) + '\n';
  return told;
}

// The documents of two folders, side by side by their names.
class PairWalk {
 public:
  PairWalk(const std::string& first, const std::string& second)
      : roots_{first, second}, walks_{FileWalk({first}, true), FileWalk({second}, true)} {
    advance(0);
    advance(1);
  }

  bool next(Pair* pair) {
    if (!has_[0] && !has_[1]) return false;
    const int order = !has_[0] ? 1 : !has_[1] ? -1 : compare(name(0), name(1));
    *pair = {order <= 0 ? files_[0] : "", order >= 0 ? files_[1] : ""};
    if (order <= 0) advance(0);
    if (order >= 0) advance(1);
    return true;
  }

 private:
  void advance(int side) { has_[side] = walks_[side].next(&files_[side]); }

  std::string name(int side) const {
    const std::string name = files_[side].substr(roots_[side].size());
    return name.substr(std::min(name.find_first_not_of('/'), name.size()));
  }

  // As folders are walked through: name by name.
  static int compare(const std::string& a, const std::string& b) {
    for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
      if (a[i] == b[i]) continue;
      if (a[i] == '/' || b[i] == '/') return a[i] == '/' ? -1 : 1;
      return static_cast<unsigned char>(a[i]) < static_cast<unsigned char>(b[i]) ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
  }

  std::string roots_[2];
  FileWalk walks_[2];
  std::string files_[2];
  bool has_[2] = {};
};

ExitStatus run_folders(const Options& options) {
  ExitStatus status = ExitStatus::ok;
  JsonArrayOutput entries(0);
  if (options.json) entries.begin();
  PairWalk walk(options.first, options.second);
  BatchOptions batch;
  batch.jobs = options.jobs;
  run_in_order<Pair, Told>(
      batch.threads(), [&](Pair* pair) { return !has_output_failed() && walk.next(pair); },
      [&](const Pair& pair) { return tell(pair, options); },
      [&](const Told& told) {
        for (const Verdict& verdict : told.verdicts) complain_of(verdict);
        if (options.json) {
          entries.print(told.json);
        } else {
          print(told.text);
        }
        status = worse(status, told.status);
      });
  if (options.json) {
    entries.end();
    print("\n");
  }
  return status;
}

ExitStatus run(const Options& options) {
  if (options.first == k_standard_stream && options.second == k_standard_stream) {
    complain("-", "standard input can be read once only");
    return ExitStatus::trouble;
  }
  if (options.recursive) {
    for (const std::string& folder : {options.first, options.second}) {
      if (is_folder(folder)) continue;
      complain(folder, "is no folder");
      return ExitStatus::trouble;
    }
    return run_folders(options);
  }
  const Told told = compare_files({options.first, options.second}, options);
  for (const Verdict& verdict : told.verdicts) complain_of(verdict);
  print(options.json ? text_of(told.json) + '\n' : told.text);
  return told.status;
}

}  // namespace

void add_diff(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      app.add_subcommand("diff", "Tell what is different between two documents");
  command->add_option("A", options->first, "Document, or folder; - is standard input")->required();
  command->add_option("B", options->second, "The other one")->required();
  command->add_flag("--json", options->json, "Print JSON");
  command->add_flag("-b,--brief", options->brief, "Tell only whether they differ");
  command
      ->add_option("--ignore", options->ignored,
                   "Pass over what has such a path, as */ChangeHistory")
      ->allow_extra_args(false)
      ->option_text("GLOB");
#if defined(ZOL_WITH_COLORIMETRY)
  command->add_option("--formula", options->formula, "Colour difference, 2000 if not given")
      ->check(CLI::IsMember(difference_formulas()));
#endif
  add_recursive(*command, &options->recursive);
  add_jobs(*command, &options->jobs);
  command->footer(
      "Entries of lists go together by unique id, number and name, or else by what is in them.\n"
      "Exit status: 0 if there is no difference, 1 if there is one, 2 for trouble.");
  command->callback([options, status] {
    for (const std::string& pattern : options->ignored) {
      options->globs.emplace_back(pattern);
      const std::string fault = options->globs.back().fault();
      if (!fault.empty()) throw CLI::ValidationError("--ignore", fault);
    }
    *status = run(*options);
  });
}
