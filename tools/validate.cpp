// zol validate: every fault of every file.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "tools/commands.h"
#include "tools/file_walk.h"
#include "tools/judge.h"
#include "tools/ordered_jobs.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/terminal.h"
#include "tools/verdict.h"

namespace {

struct Options {
  std::vector<std::string> files;
  bool first = false;
  bool strict = false;
  std::size_t max = 0;
  bool lint = false;
  bool json = false;
  bool sarif = false;
  bool quiet = false;
  bool brief = false;
  std::string color = "auto";
  bool recursive = false;
  unsigned jobs = 1;

  JudgeOptions judging() const {
    return {first ? 1 : max, lint, strict, !brief && !json && !sarif};
  }
  bool has_colors() const { return color == "auto" ? wants_colors(stderr) : color == "always"; }
  unsigned threads() const {
    return jobs != 0 ? jobs : std::max(1u, std::thread::hardware_concurrency());
  }
};

std::unique_ptr<VerdictPrinter> printer_of(const Options& options) {
  if (options.json) return make_json_printer();
  if (options.sarif) return make_sarif_printer();
  return make_text_printer(options.quiet, options.has_colors());
}

ExitStatus run(const Options& options) {
  ExitStatus status = ExitStatus::ok;
  const unsigned threads = options.threads();
  const std::unique_ptr<VerdictPrinter> printer = printer_of(options);
  FileWalk walk(options.files, options.recursive);
  printer->begin();
  run_in_order<std::string, Verdict>(
      threads, [&walk](std::string* file) { return walk.next(file); },
      [&](const std::string& file) {
        // Several would write over each other.
        std::unique_ptr<Progress> progress;
        if (threads == 1) progress = std::make_unique<Progress>("Validating " + file);
        return judge(file, options.judging());
      },
      [&](const Verdict& verdict) {
        printer->print(verdict);
        status = worse(status, verdict.status);
      });
  printer->end();
  return status;
}

}  // namespace

void add_validate(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = app.add_subcommand("validate", "Check documents against the format");
  command->add_option("FILE", options->files, "Documents; - is standard input")->required();
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
  command->add_flag("-r,--recursive", options->recursive,
                    "Walk through folders, to every .zol and .zolz");
  command->add_option("-j,--jobs", options->jobs, "Judge N files at once; 0 is one a processor")
      ->check(CLI::Range(0u, 1024u).description("N"));
  command->add_flag("-q,--quiet", options->quiet, "Print nothing but the faults");
  command->add_flag("-b,--brief", options->brief, "Print faults without the lines they stand in");
  command->add_option("--color", options->color, "Print faults in colours: auto, always or never")
      ->check(CLI::IsMember({"auto", "always", "never"}).description("WHEN"));
  command->footer(
      "Each fault goes to standard error as FILE:LINE:COLUMN: error CODE: SENTENCE, then the path "
      "of what it concerns, and the line in which it stands.");
  command->callback([options, status] { *status = run(*options); });
}
