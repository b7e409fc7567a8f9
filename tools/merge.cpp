// zol merge: joins documents.
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "model/Zol.h"
#include "tools/batch.h"
#include "tools/commands.h"
#include "tools/document_text.h"
#include "tools/join.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/save.h"
#include "tools/text.h"

namespace {

const std::map<std::string, OnConflict> k_rules = {
    {"keep", OnConflict::keep}, {"rename", OnConflict::rename}, {"fail", OnConflict::fail}};

struct Options : BatchOptions {
  std::string output;
  bool force = false;
  bool quiet = false;
  std::string rule = "fail";
};

struct Loaded {
  ExitStatus status = ExitStatus::ok;
  Verdict verdict;
  std::unique_ptr<zol_v2::Zol> document = std::make_unique<zol_v2::Zol>();
};

// Standard output may be taken by the document.
void tell(const Options& options, const std::string& line) {
  if (options.output == k_standard_stream) {
    std::fputs(line.c_str(), stderr);
  } else {
    print(line);
  }
}

void tell(const Options& options, const Joiner& joiner) {
  for (const std::string& note : joiner.notes()) tell(options, note + '\n');
  const Joiner::Counts& counts = joiner.counts();
  std::string line = one_line(options.output) + ": " + counted(counts.taken, "entry", "entries") +
                     " of " + counted(joiner.documents(), "document", "documents");
  if (counts.known != 0) line += ", " + std::to_string(counts.known) + " were there already";
  if (counts.left_out != 0) line += ", " + std::to_string(counts.left_out) + " left out";
  if (counts.renamed != 0) line += ", " + std::to_string(counts.renamed) + " renamed";
  tell(options, line + '\n');
}

ExitStatus run(const Options& options) {
  const SaveTarget target{options.output, options.force};
  if (is_in_the_way(target)) return ExitStatus::trouble;
  Joiner joiner(k_rules.at(options.rule));
  ExitStatus status = ExitStatus::ok;
  const ExitStatus ended = run_batch<Loaded>(
      options, "merge",
      [](const std::string& file) {
        Loaded loaded;
        DocumentSource source(file);
        loaded.verdict = try_load(source, *loaded.document);
        loaded.status = loaded.verdict.status;
        return loaded;
      },
      [&](const Loaded& loaded) {
        complain_of(loaded.verdict);
        status = worse(status, loaded.status);
        if (loaded.status == ExitStatus::ok) joiner.add(loaded.verdict.file, *loaded.document);
      },
      [](ExitStatus) {});
  status = worse(status, ended);
  // Part of what was asked for is nothing that anybody asked for.
  if (status != ExitStatus::ok) return status;
  if (joiner.documents() == 0) {
    complain(options.files.front(), "no document in it");
    return ExitStatus::trouble;
  }
  if (!joiner.faults().empty()) {
    for (const std::string& fault : joiner.faults()) complain("merge", fault);
    return ExitStatus::fault;
  }
  status = save_document(joiner.document(), target, options.output);
  if (status == ExitStatus::ok && !options.quiet) tell(options, joiner);
  return status;
}

}  // namespace

void add_merge(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      app.add_subcommand("merge", "Join the colours, palettes and records of documents");
  add_batch_options(*command, options.get());
  command
      ->add_option("-o,--output", options->output,
                   "File to write; - is standard output, which gets the plain form")
      ->required()
      ->check(CLI::Validator(check_document_name, "OUT"));
  command->add_flag("-f,--force", options->force, "Replace OUT if it exists");
  command
      ->add_option("--on-conflict", options->rule,
                   "Of two with one name or unique id: keep the first, rename the second, or fail "
                   "(if not given)")
      ->check(CLI::IsMember(k_rules).description("RULE"));
  command->add_flag("-q,--quiet", options->quiet, "Do not say what was done");
  command->footer(
      "The preamble is that of the first document. What is the same is taken once.\n"
      "Exit status: 1 for a conflict, and nothing is written.");
  command->callback([options, status] { *status = run(*options); });
}
