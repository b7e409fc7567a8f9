// zol convert: between the plain and the zipped form, into the form of this library, and from and
// to the formats of other programs.
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
#include "tools/commands.h"
#include "tools/document_text.h"
#include "tools/exchange.h"
#include "tools/judge.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/save.h"
#include "tools/terminal.h"
#include "tools/text.h"
#include "tools/verdict.h"

namespace interchange = zol_v2::interchange;
using interchange::FormatInfo;

namespace {

constexpr char k_document[] = "zol";

struct Options {
  std::vector<std::string> files;  // OUT is the last
  std::string input;
  std::string output;
  std::string from;
  std::string to;
  bool force = false;
  bool rewrite = false;
  bool exact = false;
  std::string illuminant;
  std::string observer;
  std::string separator;
  bool decimal_comma = false;
  ExchangeOptions exchange;
};

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

ExitStatus misuse(std::string_view subject, std::string_view message) {
  complain(subject, message);
  return ExitStatus::trouble;
}

std::string format_names(bool FormatInfo::*is_able) {
  std::string names = k_document;
  for (const FormatInfo& info : interchange::formats()) {
    if (info.*is_able) names += ", " + std::string(info.name);
  }
  return names;
}

// The format by its name or, without one, by the name of the file; false if neither tells.
bool choose_format(const std::string& name, const std::string& path, bool FormatInfo::*is_able,
                   const FormatInfo** format) {
  *format = nullptr;
  if (name == k_document || (name.empty() && is_document_name(path))) return true;
  *format = name.empty() ? interchange::format_of_path(path) : interchange::find_format(name);
  return *format != nullptr && (*format)->*is_able;
}

ExitStatus run(Options& options) {
  if (options.files.size() < 2) return misuse("OUT", "the file to write is not named");
  options.output = options.files.back();
  options.files.pop_back();
  options.input = options.files.front();
  ExchangeOptions& exchanging = options.exchange;
  if (!choose_format(options.to, options.output, &FormatInfo::is_written, &exchanging.to)) {
    return misuse("OUT",
                  "the name must end in .zol, .zolz or a suffix of another format, or --to "
                  "be one of " +
                      format_names(&FormatInfo::is_written));
  }
  // Documents may have any name.
  const bool is_known =
      choose_format(options.from, options.input, &FormatInfo::is_read, &exchanging.from);
  if (!is_known && (!options.from.empty() || exchanging.from != nullptr)) {
    return misuse("IN", "--from must be one of " + format_names(&FormatInfo::is_read));
  }
  if (exchanging.to == nullptr && (options.files.size() > 1 || exchanging.is_recursive)) {
    return misuse("OUT", "a document is made of one file, and not of several");
  }
  if (exchanging.to == nullptr && !is_document_name(options.output)) {
    return misuse("OUT", "the name of a document must end in .zol or .zolz, or be -");
  }
  if (is_in_the_way({options.output, options.force})) return ExitStatus::trouble;
  if (exchanging.to == nullptr && exchanging.from == nullptr) {
    return options.rewrite ? rewrite(options) : copy(options);
  }
  exchanging.inputs = options.files;
  exchanging.output = options.output;
  const char decimal = options.decimal_comma ? ',' : '.';
  const char separator = options.separator.empty()    ? '\0'
                         : options.separator == "\\t" ? '\t'
                                                      : options.separator.front();
  exchanging.writing.decimal = decimal;
  exchanging.writing.separator = separator == '\0' && options.decimal_comma ? ';' : separator;
  exchanging.reading.decimal = options.decimal_comma ? ',' : '\0';
  exchanging.reading.separator = separator;
  exchanging.reading.conditions[interchange::Condition::illuminant] = options.illuminant;
  exchanging.reading.conditions[interchange::Condition::observer] = options.observer;
  return exchange(exchanging);
}

// One character, or "\\t".
std::string check_separator(const std::string& text) {
  const bool is_good = text == "\\t" || (text.size() == 1 && text != "\"" && text != ".");
  return is_good ? "" : "must be one character";
}

}  // namespace

void add_convert(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = app.add_subcommand(
      "convert",
      "Convert between .zol, .zolz and the formats of other programs, by the name of OUT");
  command
      ->add_option("IN", options->files,
                   "What to convert, a document or a file of another format, or several for a "
                   "table or database; - is standard input. Behind it OUT, the file to write; - is "
                   "standard output, which gets a document in the plain form")
      ->required()
      ->type_name("... OUT");
  command->add_flag("-f,--force", options->force, "Replace OUT if it exists");
  CLI::Option* const rewrite = command->add_flag(
      "-w,--rewrite", options->rewrite, "Write the document anew instead of copying its text");
  command->add_flag("--exact", options->exact, "With --rewrite, keep all digits of numbers")
      ->needs(rewrite);
  command->add_option("--to", options->to,
                      "Format of OUT: " + format_names(&FormatInfo::is_written));
  command->add_option("--from", options->from,
                      "Format of IN: " + format_names(&FormatInfo::is_read));
  command->add_flag("-r,--recursive", options->exchange.is_recursive,
                    "Walk through folders, to every .zol and .zolz");
  CLI::Option* const wide = command->add_flag(
      "--wide", options->exchange.writing.is_wide,
      "Of tables: a line for each colour in one space, instead of one for each value");
  command
      ->add_option("--space", options->exchange.writing.space,
                   "The space of a wide table, CIELab or another")
      ->needs(wide);
  command->add_option("--separator", options->separator, "Of tables: between cells")
      ->check(CLI::Validator(check_separator, "CHARACTER"));
  command->add_flag("--decimal-comma", options->decimal_comma,
                    "Of tables: numbers as 1,5, and semicolons between cells");
  command->add_option("--mapping", options->exchange.mapping_file,
                      "What the columns of a table mean, a line each: COLUMN = TARGET");
  command->add_option("--illuminant", options->illuminant,
                      "Illuminant of values that come without one");
  command->add_option("--observer", options->observer, "2 or 10, the same");
  command->footer(
      "OUT is replaced when the new file is complete, and not before. What a format can't hold is "
      "told on standard error.");
  command->callback([options, status] { *status = run(*options); });
}
