#include "tools/batch.h"

#include <algorithm>
#include <thread>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "tools/document_text.h"

unsigned BatchOptions::threads() const {
  return jobs != 0 ? jobs : std::max(1u, std::thread::hardware_concurrency());
}

bool BatchOptions::has_standard_input_twice() const {
  return std::count(files.begin(), files.end(), k_standard_stream) > 1;
}

void add_recursive(CLI::App& command, bool* recursive) {
  command.add_flag("-r,--recursive", *recursive, "Walk through folders, to every .zol and .zolz");
}

void add_jobs(CLI::App& command, unsigned* jobs) {
  command.add_option("-j,--jobs", *jobs, "Work on N files at once; 0 is one a processor")
      ->check(CLI::Range(0u, 1024u).description("N"));
}

void add_batch_options(CLI::App& command, BatchOptions* options) {
  command.add_option("FILE", options->files, "Documents; - is standard input")->required();
  add_recursive(command, &options->recursive);
  add_jobs(command, &options->jobs);
}

CLI::Option* add_resume(CLI::App& command, BatchOptions* options) {
  return command
      .add_option("--resume", options->journal,
                  "Note in JOURNAL what is done, and pass over what is noted there and unchanged")
      ->option_text("JOURNAL");
}
