#include "tools/judge.h"

#include <iterator>
#include <limits>
#include <utility>
#include <vector>

#include "facade/check.h"
#include "model/Zol.h"
#include "tools/document_text.h"

namespace {

using zol_v2::Fault;

std::size_t limit_of(const JudgeOptions& options) {
  return options.most_faults != 0 ? options.most_faults : std::numeric_limits<std::size_t>::max();
}

// What a document that loads lacks to be written again and, if they are wanted, warnings.
void check_tree(const zol_v2::Zol& document, const JudgeOptions& options,
                zol_v2::LoadReport& report) {
  zol_v2::CheckOptions checking;
  checking.level = options.lints ? zol_v2::CheckLevel::warnings : zol_v2::CheckLevel::writing;
  checking.limit = limit_of(options);
  zol_v2::CheckReport found = zol_v2::check(document, checking);
  report.faults = std::move(found.faults);
  report.fault_count = found.errors + found.warnings;
  for (Fault& fault : report.faults) {
    // The document itself is good: only what would be written from it is not.
    if (fault.code != lmx::elmx_occurs_on_marshal) fault.severity = zol_v2::Severity::warning;
  }
}

bool has_errors(const zol_v2::LoadReport& report) {
  for (const Fault& fault : report.faults) {
    if (fault.severity == zol_v2::Severity::error) return true;
  }
  return false;
}

}  // namespace

Verdict judge(const std::string& file, const JudgeOptions& options) {
  DocumentSource source(file);
  return judge(source, options);
}

Verdict judge(DocumentSource& source, const JudgeOptions& options) {
  Verdict verdict;
  verdict.file = source.path();
  zol_v2::LoadOptions loading;
  loading.most_faults = limit_of(options);
  {
    zol_v2::Zol document;
    verdict.report = source.load(document, loading);
    if (is_trouble(verdict.report)) {
      verdict.status = ExitStatus::trouble;
      return verdict;
    }
    if (verdict.report.code == lmx::elmx_ok) check_tree(document, options, verdict.report);
  }
  const bool is_loaded = verdict.report.code == lmx::elmx_ok;
  std::vector<Fault>& faults = verdict.report.faults;
  if (!faults.empty() && (is_loaded || options.excerpts)) {
    std::string text;
    if (source.read(&text).code == lmx::elmx_ok) {
      if (is_loaded) zol_v2::locate(faults, text);
      if (options.excerpts) {
        for (const Fault& fault : faults) {
          const bool has_lines = fault.rule != "no-document";
          verdict.excerpts.push_back(has_lines ? zol_v2::excerptOf(text, fault)
                                               : zol_v2::Excerpt());
        }
      }
    }
  }
  if (verdict.report.code != lmx::elmx_ok || has_errors(verdict.report)) {
    verdict.status = ExitStatus::fault;
  }
  return verdict;
}
