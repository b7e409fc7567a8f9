// Conversion of documents, and from and to the formats of other programs.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "interchange/formats.h"
#include "tools/batch.h"
#include "tools/exit_status.h"
#include "tools/verdict.h"

// What is done, alike with all files.
struct Conversion {
  const zol_v2::interchange::FormatInfo* from = nullptr;  // null: documents
  const zol_v2::interchange::FormatInfo* to = nullptr;    // null: documents
  std::string suffix;                                     // of the files that are made in a folder
  bool rewrites = false;  // of documents from documents: not the text as it stands
  bool is_exact = false;
  bool replaces = false;     // older files
  bool keeps_going = false;  // leaves out what has faults
  zol_v2::interchange::ReadOptions reading;
  zol_v2::interchange::WriteOptions writing;
};

// What is to be said of a file when its turn comes.
struct Notice {
  ExitStatus status = ExitStatus::ok;
  std::vector<Verdict> verdicts;
  std::vector<std::pair<std::string, std::string>> complaints;  // subject, message

  void add(const std::string& subject, std::string message);
  void fail(const std::string& subject, std::string message);
  void fail(const std::string& file, std::vector<zol_v2::Fault> faults);
  void print() const;
};

// All of them give no half a file: the output is there when all is well, and not before. A document
// that does not load, and what is no good input, give none.

// One file into another; "-" is standard input and output.
Notice convert_file(const Conversion& conversion, const std::string& input,
                    const std::string& output);

// Several into one table, palette or database.
ExitStatus collect(const Conversion& conversion, const BatchOptions& inputs,
                   const std::string& output);

// Each into a file of its own in a folder, below it where it stood below a folder that was walked
// through.
ExitStatus convert_each(const Conversion& conversion, const BatchOptions& inputs,
                        const std::string& task, const std::string& folder);
