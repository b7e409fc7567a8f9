// zol convert: between the plain and the zipped form.
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "facade/files.h"
#include "lmx/writer.h"
#include "model/Zol.h"
#include "port/files.h"
#include "tools/commands.h"
#include "tools/document_text.h"
#include "tools/faults.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/text.h"
#include "tools/unwritable.h"

namespace {

struct Options {
  std::string input;
  std::string output;
  bool force = false;
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

lmx::elmx_error save(const zol_v2::Zol& document, const std::string& path) {
  const Progress progress("Writing " + path);
  return zol_v2::saveFile(document, wide_path(path));
}

lmx::elmx_error write_standard_output(const zol_v2::Zol& document) {
  const zol_v2::XMLDocumentResult result = document.writeString();
  if (result.getElmxError() == lmx::elmx_ok) print(utf8(result.getXmlDocument()));
  return result.getElmxError();
}

// What can't be written, with its lines if the input can be read once more.
void explain(const zol_v2::Zol& document, const std::string& input) {
  DocumentText text;
  std::string reason;
  if (input != k_standard_stream) (void)text.read(input, &reason);
  print_faults(input, find_unwritable(document, text));
}

ExitStatus write(const zol_v2::Zol& document, const Options& options) {
  const lmx::elmx_error code = options.output == k_standard_stream ? write_standard_output(document)
                                                                   : save(document, options.output);
  switch (code) {
    case lmx::elmx_ok:
      return ExitStatus::ok;
    case lmx::elmx_no_file:
      complain(options.output, "can't be written");
      return ExitStatus::trouble;
    case k_archive_error:
      complain(options.output, "the archive can't be written");
      return ExitStatus::trouble;
    default:
      explain(document, options.input);
      return ExitStatus::fault;
  }
}

ExitStatus run(const Options& options) {
  if (!options.force && options.output != k_standard_stream && exists(options.output)) {
    complain(options.output, "exists; --force replaces it");
    return ExitStatus::trouble;
  }
  zol_v2::Zol document;
  const ExitStatus status = load_document(options.input, document);
  return status == ExitStatus::ok ? write(document, options) : status;
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
  command->footer("OUT is replaced when the new file is complete, and not before.");
  command->callback([options, status] { *status = run(*options); });
}
