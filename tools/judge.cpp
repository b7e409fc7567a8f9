#include "tools/judge.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "facade/check.h"
#include "tools/document_text.h"

namespace {

std::size_t limit_of(const JudgeOptions& options) {
  return options.most_faults != 0 ? options.most_faults : std::numeric_limits<std::size_t>::max();
}

void add_excerpts(DocumentSource& source, Verdict* verdict) {
  const std::vector<zol_v2::Fault>& faults = verdict->report.faults;
  const auto has_line = [](const zol_v2::Fault& fault) {
    return fault.place && fault.rule != "no-document";
  };
  std::string text;
  if (std::none_of(faults.begin(), faults.end(), has_line) ||
      source.read(&text).code != lmx::elmx_ok) {
    return;
  }
  for (const zol_v2::Fault& fault : faults) {
    verdict->excerpts.push_back(has_line(fault) ? zol_v2::excerptOf(text, fault)
                                                : zol_v2::Excerpt());
  }
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
  loading.strict = options.is_strict;
  verdict.report = source.check(
      loading, options.lints ? zol_v2::CheckLevel::warnings : zol_v2::CheckLevel::writing);
  if (is_trouble(verdict.report)) {
    verdict.status = ExitStatus::trouble;
  } else if (verdict.report.code != lmx::elmx_ok) {
    verdict.status = ExitStatus::fault;
  }
  if (options.excerpts) add_excerpts(source, &verdict);
  return verdict;
}
