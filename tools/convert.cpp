// zol convert: between the plain and the zipped form, into the form of this library, and from and
// to the formats of other programs.
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "tools/batch.h"
#include "tools/commands.h"
#include "tools/document_text.h"
#include "tools/exchange.h"
#include "tools/file_walk.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/save.h"
#include "tools/text.h"

namespace interchange = zol_v2::interchange;
using interchange::FormatInfo;

namespace {

constexpr char k_document[] = "zol";
constexpr char k_zipped_document[] = "zolz";

struct Options : BatchOptions {
  std::string output;
  std::string from;
  std::string to;
  std::string mapping_file;
  std::string illuminant;
  std::string observer;
  std::string separator;
  bool decimal_comma = false;
  Conversion conversion;
};

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
  if (name == k_document || name == k_zipped_document || (name.empty() && is_document_name(path)))
    return true;
  *format = name.empty() ? interchange::format_of_path(path) : interchange::find_format(name);
  return *format != nullptr && (*format)->*is_able;
}

// Whether files of the format hold one document each, and no more.
bool holds_one(const std::string& format) {
  return format == k_document || format == k_zipped_document || format == "json";
}

bool has_suffix(const std::string& path) {
  return is_document_name(path) || interchange::format_of_path(path) != nullptr;
}

// What all files are read and written by, from what the command line says.
ExitStatus settle(Options& options) {
  Conversion& conversion = options.conversion;
  const char decimal = options.decimal_comma ? ',' : '.';
  const char separator = options.separator.empty()    ? '\0'
                         : options.separator == "\\t" ? '\t'
                                                      : options.separator.front();
  conversion.writing.decimal = decimal;
  conversion.writing.separator = separator == '\0' && options.decimal_comma ? ';' : separator;
  conversion.reading.decimal = options.decimal_comma ? ',' : '\0';
  conversion.reading.separator = separator;
  conversion.reading.conditions[interchange::Condition::illuminant] = options.illuminant;
  conversion.reading.conditions[interchange::Condition::observer] = options.observer;
  if (options.mapping_file.empty() ||
      read_bytes(options.mapping_file, &conversion.reading.mapping)) {
    return ExitStatus::ok;
  }
  return misuse(options.mapping_file, std::strerror(errno));
}

// With --resume an older run may have been cut off behind a file and before its note.
ExitStatus run_into_folder(Options& options) {
  Conversion& conversion = options.conversion;
  if (options.to.empty()) return misuse("OUT", "is a folder: --to says what its files are to be");
  for (const std::string& file : options.files) {
    if (file == k_standard_stream) return misuse("IN", "standard input has no name to write it by");
  }
  const bool is_zipped = options.to == k_zipped_document;
  conversion.suffix = conversion.to != nullptr ? std::string(conversion.to->suffixes.front())
                      : is_zipped              ? ".zolz"
                                               : ".zol";
  if (conversion.from != nullptr) {
    const auto& suffixes = conversion.from->suffixes;
    options.suffixes.assign(suffixes.begin(), suffixes.end());
  }
  options.left_out = options.output;
  conversion.replaces |= !options.journal.empty() && is_there(options.journal);
  std::string task = "convert " + options.from + " to " + options.to + " in " +
                     absolute_path(options.output) + ' ' + options.separator + ' ' +
                     options.mapping_file + ' ' + options.illuminant + ' ' + options.observer +
                     ' ' + conversion.writing.space;
  for (const bool flag : {conversion.rewrites, conversion.is_exact, options.decimal_comma,
                          conversion.writing.is_wide}) {
    task += flag ? '1' : '0';
  }
  return convert_each(conversion, options, one_line(task), options.output);
}

ExitStatus run(Options& options) {
  if (options.files.size() < 2) return misuse("OUT", "the file to write is not named");
  options.output = options.files.back();
  options.files.pop_back();
  const std::string& input = options.files.front();
  Conversion& conversion = options.conversion;
  const bool are_several = options.files.size() > 1 || options.recursive;
  const bool is_folder_wanted =
      is_folder_name(options.output) ||
      ((!options.journal.empty() || (are_several && holds_one(options.to))) &&
       !has_suffix(options.output));
  if (!choose_format(options.to, is_folder_wanted ? "-" : options.output, &FormatInfo::is_written,
                     &conversion.to)) {
    return misuse("OUT",
                  "the name must end in .zol, .zolz or a suffix of another format, or --to "
                  "be one of " +
                      format_names(&FormatInfo::is_written));
  }
  // Documents may have any name.
  const bool is_known = choose_format(options.from, input, &FormatInfo::is_read, &conversion.from);
  if (!is_known && (!options.from.empty() || conversion.from != nullptr)) {
    return misuse("IN", "--from must be one of " + format_names(&FormatInfo::is_read));
  }
  if (const ExitStatus settled = settle(options); settled != ExitStatus::ok) return settled;
  if (is_folder_wanted) return run_into_folder(options);
  if (!options.journal.empty()) return misuse("--resume", "goes with a folder as OUT alone");
  if (conversion.to == nullptr && are_several) {
    return misuse("OUT",
                  "a document is made of one file, and not of several; a folder gets one of each");
  }
  if (conversion.to == nullptr && !is_document_name(options.output)) {
    return misuse("OUT", "the name of a document must end in .zol or .zolz, or be -");
  }
  if (is_in_the_way({options.output, conversion.replaces})) return ExitStatus::trouble;
  if (are_several) return collect(conversion, options, options.output);
  Notice notice;
  {
    const Progress progress("Converting " + input);
    notice = convert_file(conversion, input, options.output);
  }
  notice.print();
  return notice.status;
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
                   "table or database; - is standard input. Behind it OUT, the file to write, or a "
                   "folder, which gets one of each; - is standard output, which gets a document in "
                   "the plain form")
      ->required()
      ->type_name("... OUT");
  command->add_flag("-f,--force", options->conversion.replaces, "Replace OUT if it exists");
  CLI::Option* const rewrite =
      command->add_flag("-w,--rewrite", options->conversion.rewrites,
                        "Write the document anew instead of copying its text");
  command
      ->add_flag("--exact", options->conversion.is_exact,
                 "With --rewrite, keep all digits of numbers")
      ->needs(rewrite);
  command->add_option("--to", options->to,
                      "Format of OUT: " + format_names(&FormatInfo::is_written));
  command->add_option("--from", options->from,
                      "Format of IN: " + format_names(&FormatInfo::is_read));
  command->add_flag("-r,--recursive", options->recursive,
                    "Walk through folders, to every .zol and .zolz, or to every file whose name is "
                    "one of the format of --from");
  add_jobs(*command, &options->jobs);
  command->add_flag("-k,--keep-going", options->conversion.keeps_going,
                    "Make a table or database of what has no faults, and tell the rest");
  add_resume(*command, options.get());
  CLI::Option* const wide = command->add_flag(
      "--wide", options->conversion.writing.is_wide,
      "Of tables: a line for each colour in one space, instead of one for each value");
  command
      ->add_option("--space", options->conversion.writing.space,
                   "The space of a wide table, CIELab or another")
      ->needs(wide);
  command->add_option("--separator", options->separator, "Of tables: between cells")
      ->check(CLI::Validator(check_separator, "CHARACTER"));
  command->add_flag("--decimal-comma", options->decimal_comma,
                    "Of tables: numbers as 1,5, and semicolons between cells");
  command->add_option("--mapping", options->mapping_file,
                      "What the columns of a table mean, a line each: COLUMN = TARGET");
  command->add_option("--illuminant", options->illuminant,
                      "Illuminant of values that come without one");
  command->add_option("--observer", options->observer, "2 or 10, the same");
  command->footer(
      "OUT is replaced when the new file is complete, and not before. Into a folder each file goes "
      "by itself, and a summary ends the run. What a format can't hold is told on standard error.");
  command->callback([options, status] { *status = run(*options); });
}
