// zol grep: looks for values.
#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <re2/re2.h>
#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "model/Zol.h"
#include "tools/batch.h"
#include "tools/commands.h"
#include "tools/document_text.h"
#include "tools/json.h"
#include "tools/load.h"
#include "tools/number_condition.h"
#include "tools/output.h"
#include "tools/path_glob.h"
#include "tools/text.h"
#include "tools/tree.h"

namespace {

using zol_v2::reflection::Item;

struct Options : BatchOptions {
  std::string pattern;
  std::vector<std::string> paths;
  std::vector<std::string> conditions;
  bool ignore_case = false;
  bool list = false;
  bool count = false;
  bool json = false;

  // Journals of other searches are none of this one.
  std::string task() const {
    std::string task =
        "grep " + pattern + (ignore_case ? " -i" : "") + (list ? " -l" : "") + (count ? " -c" : "");
    for (const std::string& path : paths) task += " --path " + path;
    for (const std::string& condition : conditions) task += " --where " + condition;
    return task;
  }
};

// What is looked for. Good for any number of threads at once.
class Search {
 public:
  explicit Search(const Options& options) : pattern_(options.pattern, settings(options)) {
    for (const std::string& path : options.paths) paths_.emplace_back(path);
    for (const std::string& text : options.conditions) conditions_.emplace_back(text);
  }

  // What is wrong with an option, thrown for the command line.
  void check() const {
    if (!pattern_.ok()) throw CLI::ValidationError("PATTERN", pattern_.error());
    for (const PathGlob& path : paths_) refuse("--path", path.fault());
    for (const NumberCondition& condition : conditions_) refuse("--where", condition.fault());
  }

  bool finds(const std::string& path, const Item& item, std::string* text) const {
    if (!paths_.empty() && std::none_of(paths_.begin(), paths_.end(),
                                        [&](const PathGlob& glob) { return glob.matches(path); })) {
      return false;
    }
    if (!conditions_.empty() && !holds(path, item)) return false;
    *text = exact_text(item.value());
    return RE2::PartialMatch(*text, pattern_);
  }

 private:
  static RE2::Options settings(const Options& options) {
    RE2::Options settings;
    settings.set_log_errors(false);
    settings.set_case_sensitive(!options.ignore_case);
    return settings;
  }

  static void refuse(const char* option, const std::string& fault) {
    if (!fault.empty()) throw CLI::ValidationError(option, fault);
  }

  // One condition at least is about the value, and all that are hold.
  bool holds(const std::string& path, const Item& item) const {
    bool is_concerned = false;
    for (const NumberCondition& condition : conditions_) {
      if (!condition.is_about(path)) continue;
      if (!condition.holds(item.value())) return false;
      is_concerned = true;
    }
    return is_concerned;
  }

  RE2 pattern_;
  std::vector<PathGlob> paths_;
  std::vector<NumberCondition> conditions_;
};

struct Hits {
  ExitStatus status = ExitStatus::fault;  // ok if there is one
  Verdict verdict;
  std::string text;
  std::vector<Json> entries;
};

Hits search_in(const std::string& file, const Options& options, const Search& search) {
  Hits hits;
  zol_v2::Zol document;
  DocumentSource source(file);
  hits.verdict = try_load(source, document);
  if (hits.verdict.status != ExitStatus::ok) {
    hits.status = ExitStatus::trouble;
    return hits;
  }
  const std::string name = one_line(file);
  std::size_t count = 0;
  std::string text;
  for_each_value(
      item_of(document), std::string(zol_v2::Zol::k_class.name),
      [&](const std::string& path, const Item& item) {
        if (!search.finds(path, item, &text)) return true;
        ++count;
        if (options.list) return false;
        if (options.json && !options.count) {
          hits.entries.push_back({{"file", file}, {"path", path}, {"value", json_of(item)}});
        } else if (!options.count) {
          hits.text += name + ':' + path + ": " + one_line(text) + '\n';
        }
        return true;
      });
  if (count != 0) hits.status = ExitStatus::ok;
  if (options.json && (options.count || (options.list && count != 0))) {
    hits.entries.push_back({{"file", file}});
    if (options.count) hits.entries.back()["count"] = count;
  } else if (options.count) {
    hits.text = name + ':' + std::to_string(count) + '\n';
  } else if (options.list && count != 0) {
    hits.text = name + '\n';
  }
  return hits;
}

ExitStatus run(const Options& options) {
  const Search search(options);
  search.check();
  bool has_hit = false, has_trouble = false;
  const auto note = [&](ExitStatus status) {
    has_hit = has_hit || status == ExitStatus::ok;
    has_trouble = has_trouble || status == ExitStatus::trouble;
  };
  JsonArrayOutput entries(0);
  if (options.json) entries.begin();
  note(run_batch<Hits>(
           options, options.task(),
           [&](const std::string& file) { return search_in(file, options, search); },
           [&](const Hits& hits) {
             complain_of(hits.verdict);
             print(hits.text);
             for (const Json& entry : hits.entries) entries.print(entry);
             note(hits.status);
           },
           note) == ExitStatus::trouble
           ? ExitStatus::trouble
           : ExitStatus::fault);
  if (options.json) {
    entries.end();
    print("\n");
  }
  return has_trouble ? ExitStatus::trouble : has_hit ? ExitStatus::ok : ExitStatus::fault;
}

}  // namespace

void add_grep(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = app.add_subcommand("grep", "Look for values in documents");
  command
      ->add_option("PATTERN", options->pattern,
                   "Regular expression, by the syntax of RE2; an empty one finds every value")
      ->required();
  add_batch_options(*command, options.get());
  command->add_option("--path", options->paths, "Look at paths such as Color/*/L alone")
      ->allow_extra_args(false)
      ->option_text("GLOB");
  command
      ->add_option("--where", options->conditions,
                   "Find numbers for which that is true, as 'L>50' or '*/L<=50.5'")
      ->allow_extra_args(false)
      ->option_text("CONDITION");
  command->add_flag("-i,--ignore-case", options->ignore_case, "Take a letter in either case");
  CLI::Option* const list =
      command->add_flag("-l,--list", options->list, "Print the names of the files alone");
  command->add_flag("-c,--count", options->count, "Print the number of values for each file")
      ->excludes(list);
  CLI::Option* const json = command->add_flag("--json", options->json,
                                              "Print a JSON array with an object for each value");
  add_resume(*command, options.get())->excludes(json);
  command->footer(
      "Values are printed as FILE:PATH: VALUE.\n"
      "Exit status: 0 if something is found, 1 if nothing is, 2 for trouble.");
  command->callback([options, status] { *status = run(*options); });
}
