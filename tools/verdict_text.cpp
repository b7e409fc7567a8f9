// Verdicts for people.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "tools/output.h"
#include "tools/text.h"
#include "tools/verdict.h"

namespace {

class TextPrinter final : public VerdictPrinter {
 public:
  TextPrinter(bool is_quiet, bool has_colors) : is_quiet_(is_quiet), has_colors_(has_colors) {}

  void print(const Verdict& verdict) override {
    if (verdict.status == ExitStatus::trouble) {
      complain(verdict.file, verdict.report.message);
      return;
    }
    const std::string name = one_line(verdict.file);
    std::size_t warnings = 0;
    const std::vector<zol_v2::Fault>& faults = verdict.report.faults;
    for (std::size_t i = 0; i < faults.size(); ++i) {
      print_fault(name, faults[i], i < verdict.excerpts.size() ? &verdict.excerpts[i] : nullptr);
      if (faults[i].severity == zol_v2::Severity::warning) ++warnings;
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
  enum class Color { none, strong, error, warning, path };

  std::string colored(Color color, const std::string& text) const {
    static constexpr const char* k_codes[] = {"", "\x1B[1m", "\x1B[1;31m", "\x1B[1;35m",
                                              "\x1B[36m"};
    return has_colors_ ? k_codes[static_cast<int>(color)] + text + "\x1B[0m" : text;
  }

  void print_fault(const std::string& name, const zol_v2::Fault& fault,
                   const zol_v2::Excerpt* excerpt) const {
    // What was printed before comes before it also where both end in one file.
    std::fflush(stdout);
    const bool is_warning = fault.severity == zol_v2::Severity::warning;
    const Color color = is_warning ? Color::warning : Color::error;
    std::string place = name;
    if (!fault.entry.empty()) place += '(' + one_line(fault.entry) + ')';
    if (fault.place) {
      place += ':' + std::to_string(fault.place.line) + ':' + std::to_string(fault.place.column);
    }
    std::string kind = is_warning ? "warning" : "error";
    if (fault.code != lmx::elmx_ok) kind += ' ' + std::to_string(fault.code);
    std::string lines = colored(Color::strong, place + ':') + ' ' + colored(color, kind + ':') +
                        ' ' + one_line(fault.text()) + '\n';
    if (!fault.path.empty()) {
      std::string path = fault.path.substr(0, fault.object_at);
      if (!fault.object.empty()) path += " \"" + one_line(fault.object) + '"';
      lines += "  " + colored(Color::path, path + fault.path.substr(fault.object_at)) + '\n';
    }
    if (excerpt != nullptr && !excerpt->text.empty()) {
      const std::string number = std::to_string(fault.place.line);
      lines += "  " + number + " | " + excerpt->text + "\n  " + std::string(number.size(), ' ') +
               " | " + std::string(excerpt->begin, ' ') +
               colored(color, '^' + std::string(excerpt->width - 1, '~')) + '\n';
    }
    std::fputs(lines.c_str(), stderr);
  }

  const bool is_quiet_;
  const bool has_colors_;
};

}  // namespace

std::unique_ptr<VerdictPrinter> make_text_printer(bool is_quiet, bool has_colors) {
  return std::make_unique<TextPrinter>(is_quiet, has_colors);
}
