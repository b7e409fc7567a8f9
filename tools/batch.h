// One task for many documents: in folders, by several threads, told in order, and taken up again
// where a run before was broken off. No more is kept than a few results a thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/exit_status.h"
#include "tools/file_walk.h"
#include "tools/journal.h"
#include "tools/ordered_jobs.h"
#include "tools/output.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

struct BatchOptions {
  std::vector<std::string> files;
  bool recursive = false;
  unsigned jobs = 1;
  std::string journal;
  std::vector<std::string> suffixes = {".zol", ".zolz"};  // of files in folders
  std::string left_out;                                   // a folder in them

  unsigned threads() const;
  // Whether what is printed must say which file it is about.
  bool is_single() const { return files.size() == 1 && !recursive; }
  // Standard input is read once, so that it can't be two of the files.
  bool has_standard_input_twice() const;
};

void add_recursive(CLI::App& command, bool* recursive);
void add_jobs(CLI::App& command, unsigned* jobs);
// FILE..., -r, -j.
void add_batch_options(CLI::App& command, BatchOptions* options);
// --resume FILE.
CLI::Option* add_resume(CLI::App& command, BatchOptions* options);

// work(file) runs on the threads and gives a Result with a `status`; take(result) and skip(status),
// for a document that the journal knows as done, run on this one, in the order of the files. A
// result that is no trouble is in the journal as soon as what take() printed is out. `task` tells
// apart the journals of different tasks. Gives trouble if the run could not begin or ended early.
template <class Result, class Work, class Take, class Skip>
ExitStatus run_batch(const BatchOptions& options, const std::string& task, const Work& work,
                     const Take& take, const Skip& skip) {
  struct Thing {
    std::string file;
    FileStamp stamp;
    std::optional<ExitStatus> known;
  };
  struct Entry {
    Thing thing;
    std::optional<Result> result;
  };
  if (options.has_standard_input_twice()) {
    complain("-", "standard input can be read once only");
    return ExitStatus::trouble;
  }
  Journal journal;
  if (!options.journal.empty() && !journal.open(options.journal, task)) return ExitStatus::trouble;
  ExitStatus status = ExitStatus::ok;
  FileWalk walk(options.files, {options.recursive, options.suffixes, options.left_out});
  run_in_order<Thing, Entry>(
      options.threads(),
      [&](Thing* thing) {
        if (has_output_failed() || !walk.next(&thing->file)) return false;
        if (journal.is_open()) {
          thing->stamp = stamp_of(thing->file);
          thing->known = journal.find(thing->file, thing->stamp);
        }
        return true;
      },
      [&](const Thing& thing) {
        Entry entry{thing, std::nullopt};
        if (!thing.known) entry.result.emplace(work(thing.file));
        return entry;
      },
      [&](const Entry& entry) {
        if (!entry.result) return skip(*entry.thing.known);
        take(*entry.result);
        const ExitStatus result = entry.result->status;
        if (!journal.is_open() || result == ExitStatus::trouble || !flush_output()) return;
        if (!journal.add(entry.thing.file, entry.thing.stamp, result)) {
          status = ExitStatus::trouble;
        }
      });
  return status;
}
