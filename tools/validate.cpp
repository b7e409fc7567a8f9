// zol validate: every fault of every file.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "tools/batch.h"
#include "tools/commands.h"
#include "tools/judge.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/terminal.h"
#include "tools/text.h"
#include "tools/verdict.h"

namespace {

struct Options : BatchOptions {
  bool first = false;
  bool strict = false;
  std::size_t max = 0;
  bool lint = false;
  bool json = false;
  bool sarif = false;
  bool quiet = false;
  bool brief = false;
  std::string color = "auto";

  JudgeOptions judging() const {
    return {first ? 1 : max, lint, strict, !brief && !json && !sarif};
  }
  bool has_colors() const { return color == "auto" ? wants_colors(stderr) : color == "always"; }
  // What a document is judged by.
  std::string task() const {
    return std::string("validate") + (strict ? " --strict" : "") + (lint ? " --lint" : "");
  }
};

std::unique_ptr<VerdictPrinter> printer_of(const Options& options) {
  if (options.json) return make_json_printer();
  if (options.sarif) return make_sarif_printer();
  return make_text_printer(options.quiet, options.has_colors());
}

struct Counts {
  std::size_t of[3] = {};  // by ExitStatus
  std::size_t known = 0;

  void add(ExitStatus status) { ++of[static_cast<int>(status)]; }
  std::string text() const {
    std::string result = counted(of[0] + of[1] + of[2], "document", "documents") + ": " +
                         std::to_string(of[0]) + " valid, " + std::to_string(of[1]) +
                         " with faults";
    if (of[2] != 0) result += ", " + std::to_string(of[2]) + " that can't be read";
    if (known != 0) result += "; " + std::to_string(known) + " were judged before";
    return result + '\n';
  }
};

ExitStatus run(const Options& options) {
  ExitStatus status = ExitStatus::ok;
  Counts counts;
  const bool is_alone = options.threads() == 1;
  const std::unique_ptr<VerdictPrinter> printer = printer_of(options);
  printer->begin();
  const ExitStatus ended = run_batch<Verdict>(
      options, options.task(),
      [&](const std::string& file) {
        // Several would write over each other.
        std::unique_ptr<Progress> progress;
        if (is_alone) progress = std::make_unique<Progress>("Validating " + file);
        return judge(file, options.judging());
      },
      [&](const Verdict& verdict) {
        printer->print(verdict);
        counts.add(verdict.status);
        status = worse(status, verdict.status);
      },
      [&](ExitStatus known) {
        counts.add(known);
        ++counts.known;
        status = worse(status, known);
      });
  printer->end();
  if (options.recursive && !options.quiet && !options.json && !options.sarif) {
    print(counts.text());
  }
  return worse(status, ended);
}

}  // namespace

void add_validate(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = app.add_subcommand("validate", "Check documents against the format");
  add_batch_options(*command, options.get());
  CLI::Option* const first =
      command->add_flag("--first", options->first, "Stop at the first fault of a document");
  command->add_option("--max", options->max, "Tell N faults of a document")
      ->check(CLI::Range(std::size_t{1}, std::size_t{1000000000}).description("N"))
      ->excludes(first);
  command->add_flag("--strict", options->strict,
                    "Report what the reader lets pass but XML forbids, too");
  command->add_flag("--lint", options->lint, "Warn of what is lawful and seldom meant, too");
  CLI::Option* const json =
      command->add_flag("--json", options->json, "Report as JSON, on standard output");
  command->add_flag("--sarif", options->sarif, "Report as SARIF 2.1.0, on standard output")
      ->excludes(json);
  // A list that was broken off is none.
  add_resume(*command, options.get())->excludes("--json")->excludes("--sarif");
  command->add_flag("-q,--quiet", options->quiet, "Print nothing but the faults");
  command->add_flag("-b,--brief", options->brief, "Print faults without the lines they stand in");
  command->add_option("--color", options->color, "Print faults in colours: auto, always or never")
      ->check(CLI::IsMember({"auto", "always", "never"}).description("WHEN"));
  command->footer(
      "Each fault goes to standard error as FILE:LINE:COLUMN: error CODE: SENTENCE, then the path "
      "of what it concerns, and the line in which it stands.");
  command->callback([options, status] { *status = run(*options); });
}
