// zol validate: every fault of every file.
#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "model/Zol.h"
#include "tools/commands.h"
#include "tools/document_text.h"
#include "tools/fault_reader.h"
#include "tools/faults.h"
#include "tools/json.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/text.h"
#include "tools/unwritable.h"

namespace {

struct Options {
  std::vector<std::string> files;
  bool first = false;
  bool strict = false;
  std::size_t max = 0;
  bool json = false;
  bool quiet = false;

  std::size_t limit() const { return first ? 1 : max; }
};

struct Verdict {
  std::string file;
  ExitStatus status = ExitStatus::ok;
  std::vector<Fault> faults;
  bool is_complete = true;  // nothing was left unread
  std::string trouble;      // why the file can't be read
};

void cut(std::vector<Fault>* faults, std::size_t limit, bool* is_complete) {
  if (limit == 0 || faults->size() <= limit) return;
  faults->resize(limit);
  *is_complete = false;
}

// Whether a fault of the reader may be one of the XML itself.
bool is_of_markup(lmx::elmx_error code) {
  switch (code) {
    case lmx::elmx_attribute_already_read:
    case lmx::elmx_bad_char_encoding:
    case lmx::elmx_bad_dtd:
    case lmx::elmx_bad_end_of_element:
    case lmx::elmx_bad_start_tag_end:
    case lmx::elmx_bad_end_tag:
    case lmx::elmx_bad_xml_decl:
    case lmx::elmx_bad_xml_version:
    case lmx::elmx_encoding_mismatch:
    case lmx::elmx_not_well_formed:
    case lmx::elmx_bad_attribute_value:
    case lmx::elmx_bad_element_value:
    case lmx::elmx_unexpected_end:
      return true;
    default:
      return false;
  }
}

// What a strict parser has to say, among the faults of the reader and unless that said so already.
void add_strict_fault(const DocumentText& text, std::vector<Fault>* faults) {
  zol_v2::LoadReport report;
  const lmx::elmx_error code = zol_v2::checkText(text.view(), &report);
  if (code == lmx::elmx_user_defined_1) throw std::bad_alloc();
  if (code == lmx::elmx_ok) return;
  const auto is_same = [&](const Fault& fault) {
    return fault.line == report.line && is_of_markup(fault.code);
  };
  if (std::any_of(faults->begin(), faults->end(), is_same)) return;
  const auto is_behind = [&](const Fault& fault) { return fault.line > report.line; };
  const std::size_t text_begin = report.message.find(lmx::get_error_description(code));
  faults->insert(std::find_if(faults->begin(), faults->end(), is_behind),
                 {report.line, code, report.message.substr(text_begin), report.item});
}

void check_text(const DocumentText& text, const Options& options, Verdict* verdict) {
  const std::size_t limit = options.limit();
  zol_v2::Zol document;
  FaultReader reader(text.data(), text.size(), limit);
  reader.finish(document.unmarshal(reader));
  verdict->faults = reader.faults();
  verdict->is_complete = reader.is_complete();
  if (verdict->faults.empty()) {
    verdict->faults = find_unwritable(document, text);
  }
  if (options.strict) add_strict_fault(text, &verdict->faults);
  cut(&verdict->faults, limit, &verdict->is_complete);
  if (!verdict->faults.empty()) verdict->status = ExitStatus::fault;
}

Verdict check(const std::string& file, const Options& options) {
  const Progress progress("Validating " + file);
  Verdict verdict;
  verdict.file = file;
  DocumentText text;
  const zol_v2::LoadReport read = text.read(file);
  if (is_trouble(read)) {
    verdict.status = ExitStatus::trouble;
    verdict.trouble = read.message;
  } else if (is_unusable(read)) {
    verdict.status = ExitStatus::fault;
    verdict.faults.push_back({0, read.code, k_archive_message, read.message});
  } else {
    check_text(text, options, &verdict);
  }
  return verdict;
}

void report(const Verdict& verdict, bool is_quiet) {
  if (verdict.status == ExitStatus::trouble) {
    complain(verdict.file, verdict.trouble);
    return;
  }
  print_faults(verdict.file, verdict.faults);
  if (is_quiet) return;
  std::string line = one_line(verdict.file) + ": ";
  line += verdict.faults.empty() ? "valid" : counted(verdict.faults.size(), "fault", "faults");
  if (!verdict.is_complete) line += ", not read to its end";
  print(line + '\n');
}

void report(const Verdict& verdict, JsonWriter& json) {
  json.begin_object();
  json.member("file", verdict.file);
  if (verdict.status == ExitStatus::trouble) {
    complain(verdict.file, verdict.trouble);
    json.member("trouble", verdict.trouble);
  } else {
    json.member("valid", verdict.status == ExitStatus::ok);
    json.member("complete", verdict.is_complete);
    json.key("faults");
    json.begin_array();
    for (const Fault& fault : verdict.faults) write_json(json, fault);
    json.end_array();
  }
  json.end_object();
}

ExitStatus run(const Options& options) {
  ExitStatus status = ExitStatus::ok;
  JsonWriter json;
  json.begin_array();
  for (const std::string& file : options.files) {
    const Verdict verdict = check(file, options);
    if (options.json) {
      report(verdict, json);
    } else {
      report(verdict, options.quiet);
    }
    status = worse(status, verdict.status);
  }
  json.end_array();
  if (options.json) print(json.text());
  return status;
}

}  // namespace

void add_validate(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = app.add_subcommand("validate", "Check documents against the format");
  command->add_option("FILE", options->files, "Documents; - is standard input")->required();
  CLI::Option* const first =
      command->add_flag("--first", options->first, "Stop at the first fault of a document");
  command->add_option("--max", options->max, "Stop at N faults of a document")
      ->check(CLI::Range(std::size_t{1}, std::size_t{1000000000}).description("N"))
      ->excludes(first);
  command->add_flag("--strict", options->strict,
                    "Report what the reader lets pass but XML forbids, too");
  command->add_flag("--json", options->json, "Report as JSON, on standard output");
  command->add_flag("-q,--quiet", options->quiet, "Print nothing but the faults");
  command->footer("Each fault goes to standard error as FILE:LINE: error CODE: MESSAGE ('ITEM').");
  command->callback([options, status] { *status = run(*options); });
}
