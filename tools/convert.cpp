// zol convert: between the plain and the zipped form, and into the form of this library.
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "facade/check.h"
#include "facade/files.h"
#include "model/Zol.h"
#include "port/files.h"
#include "tools/commands.h"
#include "tools/document_text.h"
#include "tools/judge.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/terminal.h"
#include "tools/text.h"
#include "tools/verdict.h"

namespace {

struct Options {
  std::string input;
  std::string output;
  bool force = false;
  bool rewrite = false;
  bool exact = false;
};

// A fault of the argument OUT, or an empty text.
std::string check_output(const std::string& path) {
  const std::size_t dot = path.rfind('.');
  const std::string suffix = dot == std::string::npos ? "" : path.substr(dot);
  if (path == k_standard_stream || suffix == ".zol" || suffix == ".zolz") return "";
  return "the name must end in .zol or .zolz, or be -";
}

bool exists(const std::string& path) {
  std::uint32_t attributes = 0;
  return zol::port::get_attributes(wide_path(path), attributes);
}

// Prints what a report says beyond success, too: how safe the new file is.
ExitStatus judge(const std::string& path, const zol_v2::SaveReport& report) {
  if (!report.message.empty()) complain(path, report.message);
  return report.code == lmx::elmx_ok ? ExitStatus::ok : ExitStatus::trouble;
}

// The text as it stands, of a document that could be written as well.
ExitStatus copy(const Options& options) {
  DocumentSource source(options.input);
  source.hold();
  const Verdict verdict = judge(source, JudgeOptions());
  if (verdict.status != ExitStatus::ok) {
    make_text_printer(true, wants_colors(stderr))->print(verdict);
    return verdict.status;
  }
  std::string text;
  const zol_v2::LoadReport read = source.read(&text);
  if (read.code != lmx::elmx_ok) {
    complain(options.input, read.message);
    return ExitStatus::trouble;
  }
  if (options.output == k_standard_stream) {
    print(text);
    return ExitStatus::ok;
  }
  const Progress progress("Writing " + options.output);
  zol_v2::SaveReport report;
  (void)zol_v2::saveText(text, wide_path(options.output), &report);
  return judge(options.output, report);
}

zol_v2::SaveReport save_anew(const zol_v2::Zol& document, const Options& options) {
  const Progress progress("Writing " + options.output);
  zol_v2::SaveReport report;
  zol_v2::SaveOptions saving;
  saving.is_exact = options.exact;
  if (options.output != k_standard_stream) {
    (void)zol_v2::saveFile(document, wide_path(options.output), &report, saving);
    return report;
  }
  std::string text;
  if (zol_v2::saveString(document, text, &report, saving) == lmx::elmx_ok) print(text);
  return report;
}

// The document as this library writes it.
ExitStatus rewrite(const Options& options) {
  zol_v2::Zol document;
  DocumentSource source(options.input);
  const ExitStatus status = load_document(options.input, document, source);
  if (status != ExitStatus::ok) return status;
  zol_v2::SaveReport report = save_anew(document, options);
  if (report.faults.empty()) return judge(options.output, report);

  Verdict verdict;
  verdict.file = options.input;
  verdict.status = ExitStatus::fault;
  verdict.report.faults = std::move(report.faults);
  std::string text;
  if (source.read(&text).code == lmx::elmx_ok) zol_v2::locate(verdict.report.faults, text);
  make_text_printer(true, wants_colors(stderr))->print(verdict);
  return ExitStatus::fault;
}

ExitStatus run(const Options& options) {
  if (!options.force && options.output != k_standard_stream && exists(options.output)) {
    complain(options.output, "exists; --force replaces it");
    return ExitStatus::trouble;
  }
  return options.rewrite ? rewrite(options) : copy(options);
}

}  // namespace

void add_convert(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      app.add_subcommand("convert", "Convert between .zol and .zolz, by the name of OUT");
  command->add_option("IN", options->input, "Document; - is standard input")->required();
  command
      ->add_option("OUT", options->output,
                   "File to write; - is standard output, which gets the plain form")
      ->required()
      ->check(CLI::Validator(check_output, "FILE"));
  command->add_flag("-f,--force", options->force, "Replace OUT if it exists");
  CLI::Option* const rewrite = command->add_flag(
      "-w,--rewrite", options->rewrite, "Write the document anew instead of copying its text");
  command->add_flag("--exact", options->exact, "With --rewrite, keep all digits of numbers")
      ->needs(rewrite);
  command->footer("OUT is replaced when the new file is complete, and not before.");
  command->callback([options, status] { *status = run(*options); });
}
