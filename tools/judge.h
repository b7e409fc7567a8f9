// Judges one document.
#pragma once

#include <cstddef>
#include <string>

#include "tools/verdict.h"

class DocumentSource;

struct JudgeOptions {
  std::size_t most_faults = 0;  // 0 is no limit
  bool lints = false;           // warnings too
  bool is_strict = false;       // XML by the book
  bool excerpts = false;        // the lines in which the faults stand
};

// Of a source that the caller wants to read again.
Verdict judge(DocumentSource& source, const JudgeOptions& options);
// Never asks for a terminal and shares nothing, so that several may run at once.
Verdict judge(const std::string& file, const JudgeOptions& options);
