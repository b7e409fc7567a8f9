// What is said of one document, and the ways of saying it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "facade/files.h"
#include "tools/exit_status.h"

struct Verdict {
  std::string file;  // as it was named
  ExitStatus status = ExitStatus::ok;
  // Its faults are all that is wrong, and warnings if they were asked for; with trouble, which
  // keeps a file from being read at all, its message tells why.
  zol_v2::LoadReport report;
  std::vector<zol_v2::Excerpt> excerpts;  // one for each fault, or none at all
};

// Prints verdicts in order, each as soon as it has it.
class VerdictPrinter {
 public:
  virtual ~VerdictPrinter() = default;
  virtual void begin() {}
  virtual void print(const Verdict& verdict) = 0;
  virtual void end() {}
};

// Faults on standard error for people, with the excerpts that are there; a line for each file on
// standard output unless `is_quiet`.
std::unique_ptr<VerdictPrinter> make_text_printer(bool is_quiet, bool has_colors);
// An array on standard output, with an object for each file.
std::unique_ptr<VerdictPrinter> make_json_printer();
// A log of SARIF 2.1.0 (OASIS) on standard output, for continuous integration.
std::unique_ptr<VerdictPrinter> make_sarif_printer();
