// Verdicts for people.
#include <algorithm>
#include <cstdio>
#include <string>

#include "tools/output.h"
#include "tools/text.h"
#include "tools/verdict.h"

namespace {

class TextPrinter final : public VerdictPrinter {
 public:
  explicit TextPrinter(bool is_quiet) : is_quiet_(is_quiet) {}

  void print(const Verdict& verdict) override {
    if (verdict.status == ExitStatus::trouble) {
      complain(verdict.file, verdict.report.message);
      return;
    }
    const std::string name = one_line(verdict.file);
    std::size_t warnings = 0;
    for (const zol_v2::Fault& fault : verdict.report.faults) {
      print_fault(name, fault);
      if (fault.severity == zol_v2::Severity::warning) ++warnings;
    }
    if (is_quiet_) return;
    const std::size_t all = static_cast<std::size_t>(verdict.report.fault_count);
    const std::size_t errors = all - std::min(all, warnings);
    std::string line = name + ": ";
    line += verdict.status == ExitStatus::ok ? "valid" : counted(errors, "fault", "faults");
    if (warnings != 0) line += ", " + counted(warnings, "warning", "warnings");
    if (all > verdict.report.faults.size()) {
      line += ", " + std::to_string(verdict.report.faults.size()) + " of them shown";
    }
    if (!verdict.report.is_complete) line += ", not read to its end";
    ::print(line + '\n');
  }

 private:
  static void print_fault(const std::string& name, const zol_v2::Fault& fault) {
    // What was printed before comes before it also where both end in one file.
    std::fflush(stdout);
    std::string line = name;
    if (!fault.entry.empty()) line += '(' + one_line(fault.entry) + ')';
    if (fault.place) {
      line += ':' + std::to_string(fault.place.line) + ':' + std::to_string(fault.place.column);
    }
    line += fault.severity == zol_v2::Severity::warning ? ": warning" : ": error";
    if (fault.code != lmx::elmx_ok) line += ' ' + std::to_string(fault.code);
    line += ": " + one_line(fault.text()) + '\n';
    if (!fault.path.empty()) {
      line += "  " + fault.path.substr(0, fault.object_at);
      if (!fault.object.empty()) line += " \"" + one_line(fault.object) + '"';
      line += fault.path.substr(fault.object_at) + '\n';
    }
    std::fputs(line.c_str(), stderr);
  }

  const bool is_quiet_;
};

}  // namespace

std::unique_ptr<VerdictPrinter> make_text_printer(bool is_quiet) {
  return std::make_unique<TextPrinter>(is_quiet);
}
