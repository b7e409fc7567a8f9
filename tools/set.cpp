// zol set: changes values by their paths.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "model/Zol.h"
#include "tools/batch.h"
#include "tools/commands.h"
#include "tools/document_text.h"
#include "tools/edit.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/save.h"

namespace {

struct Options : BatchOptions {
  std::string file;
  std::vector<std::string> changes;
  std::vector<std::string> deletions;
  std::string output;
  bool in_place = false;
  bool force = false;

  std::vector<Assignment> assignments;
};

struct Changed {
  ExitStatus status = ExitStatus::ok;
  Verdict verdict;
  std::vector<std::string> faults;
  std::unique_ptr<zol_v2::Zol> document;  // to be written
};

Changed change(const std::string& file, const Options& options) {
  Changed changed;
  changed.document = std::make_unique<zol_v2::Zol>();
  DocumentSource source(file);
  changed.verdict = try_load(source, *changed.document);
  changed.status = changed.verdict.status;
  if (changed.status != ExitStatus::ok) return changed;
  edit(*changed.document, options.assignments, options.deletions, &changed.faults);
  if (!changed.faults.empty()) changed.status = ExitStatus::fault;
  return changed;
}

ExitStatus run(const Options& options) {
  const SaveTarget target{options.output, options.force};
  if (!options.in_place && is_in_the_way(target)) return ExitStatus::trouble;
  ExitStatus status = ExitStatus::ok;
  const ExitStatus ended = run_batch<Changed>(
      options, "set", [&](const std::string& file) { return change(file, options); },
      [&](const Changed& changed) {
        const std::string& file = changed.verdict.file;
        complain_of(changed.verdict);
        for (const std::string& fault : changed.faults) complain(file, fault);
        ExitStatus result = changed.status;
        if (result == ExitStatus::ok) {
          result = save_document(*changed.document,
                                 options.in_place ? SaveTarget{file, true} : target, file);
        }
        status = worse(status, result);
      },
      [](ExitStatus) {});
  return worse(status, ended);
}

// The rest of the arguments, which the parser can't judge.
void settle(Options* options) {
  options->files = {options->file};
  if (options->changes.empty() && options->deletions.empty()) {
    throw CLI::ValidationError("PATH=VALUE", "is missing, or --delete PATH");
  }
  for (const std::string& change : options->changes) {
    const std::size_t equals = change.find('=');
    if (equals == std::string::npos) {
      throw CLI::ValidationError("PATH=VALUE", "'" + change + "' has no =");
    }
    options->assignments.push_back({change.substr(0, equals), change.substr(equals + 1)});
  }
  if (options->in_place == !options->output.empty()) {
    throw CLI::ValidationError("--output", "or --in-place is required, and one of them alone");
  }
  if (options->in_place && options->file == k_standard_stream) {
    throw CLI::ValidationError("--in-place", "takes no standard input");
  }
  if (options->recursive && !options->in_place) {
    throw CLI::ValidationError("--recursive", "needs --in-place");
  }
}

}  // namespace

void add_set(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = app.add_subcommand("set", "Change values by path");
  command->add_option("FILE", options->file, "Document; - is standard input")->required();
  command->add_option("PATH=VALUE", options->changes,
                      "Such as Zol/Color[3]/ColorSpaceCIELab/L=53.2");
  command->add_option("--delete", options->deletions, "Take away what stands at PATH")
      ->allow_extra_args(false)
      ->option_text("PATH");
  command
      ->add_option("-o,--output", options->output,
                   "File to write; - is standard output, which gets the plain form")
      ->check(CLI::Validator(check_document_name, "OUT"));
  command->add_flag("-i,--in-place", options->in_place, "Write the document where it was");
  command->add_flag("-f,--force", options->force, "Replace OUT if it exists");
  add_recursive(*command, &options->recursive);
  add_jobs(*command, &options->jobs);
  command->footer(
      "Paths mean the document as it was. If one value is refused nothing is written.\n"
      "Exit status: 1 if something is refused.");
  command->callback([options, status] {
    settle(options.get());
    *status = run(*options);
  });
}
