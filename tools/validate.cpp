// zol validate: every fault of every file.
#include <memory>
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

void check_text(const DocumentText& text, std::size_t limit, Verdict* verdict) {
  zol_v2::Zol document;
  FaultReader reader(text.data(), text.size(), limit);
  reader.finish(document.unmarshal(reader));
  verdict->faults = reader.faults();
  verdict->is_complete = reader.is_complete();
  if (verdict->faults.empty()) {
    verdict->faults = find_unwritable(document, text);
    cut(&verdict->faults, limit, &verdict->is_complete);
  }
  if (!verdict->faults.empty()) verdict->status = ExitStatus::fault;
}

Verdict check(const std::string& file, std::size_t limit) {
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
    check_text(text, limit, &verdict);
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
    const Verdict verdict = check(file, options.limit());
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
  command->add_flag("--json", options->json, "Report as JSON, on standard output");
  command->add_flag("-q,--quiet", options->quiet, "Print nothing but the faults");
  command->footer("Each fault goes to standard error as FILE:LINE: error CODE: MESSAGE ('ITEM').");
  command->callback([options, status] { *status = run(*options); });
}
