// Opening, saving and judging, with all that is to be said about it.

#include <deque>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bridge/bridge.h"
#include "bridge/zol_helpers.h"
#include "facade/check.h"
#include "facade/files.h"
#include "model/Zol.h"

namespace {

using zol::bridge::as;
using zol::bridge::wide;
using zol_v2::CheckReport;
using zol_v2::Fault;
using zol_v2::LoadReport;
using zol_v2::SaveReport;
using zol_v2::Severity;
using zol_v2::Zol;

// What a client holds is the base of this.
struct Outcome : zol_outcome {
  Outcome() : zol_outcome{} {}

  std::vector<zol_fault> all_faults;
  std::deque<std::string> texts;  // which stay where they are
  std::string text_bytes;

  const char* kept(std::string text) {
    if (text.empty()) return nullptr;
    texts.push_back(std::move(text));
    return texts.back().c_str();
  }

  void take(lmx::elmx_error outcome, std::string text, int cause) {
    code = outcome;
    archive_cause = cause;
    if (outcome != lmx::elmx_ok && text.empty()) text = lmx::get_error_description(outcome);
    message = kept(std::move(text));
  }

  void take(const std::vector<Fault>& found) {
    all_faults.reserve(found.size());
    for (const Fault& fault : found) {
      all_faults.push_back({fault.code, fault.severity == Severity::warning ? 1u : 0u,
                            fault.place.line, fault.place.column, fault.place.offset, fault.length,
                            kept(std::string(fault.rule)), kept(fault.path), kept(fault.item),
                            kept(fault.found), kept(fault.expected), kept(fault.text())});
    }
  }

  template <class Report>
  void take(const Report& report) {
    take(report.code, report.message, report.archive_cause);
    if (report.code != lmx::elmx_ok) take(report.faults);
  }

  zol_outcome* give() {
    faults = all_faults.data();
    fault_count = all_faults.size();
    bytes = text_bytes.data();
    size = text_bytes.size();
    return this;
  }
};

template <class Operation>
zol_outcome* outcome_of(Operation operation) noexcept {
  try {
    auto outcome = std::make_unique<Outcome>();
    try {
      operation(*outcome);
    } catch (const std::exception& exception) {
      outcome->take(lmx::elmx_user_defined_1, exception.what(), 0);
    }
    return outcome.release()->give();
  } catch (...) {
    return nullptr;
  }
}

}  // namespace

zol_outcome* ZOL_CALL zol_open(void* zol, const char16_t* path, const void* bytes,
                               unsigned long long size) {
  return outcome_of([=](Outcome& outcome) {
    LoadReport report;
    if (path != nullptr) {
      (void)openFile(as<Zol>(zol), wide(path), &report);
    } else {
      const auto first = static_cast<const char*>(bytes);
      (void)openText(as<Zol>(zol), std::string_view(first, static_cast<std::size_t>(size)),
                     &report);
    }
    outcome.take(report);
  });
}

zol_outcome* ZOL_CALL zol_save(void* zol, const char16_t* path) {
  return outcome_of([=](Outcome& outcome) {
    SaveReport report;
    if (path != nullptr) {
      (void)saveFile(as<Zol>(zol), wide(path), &report);
    } else {
      (void)saveString(as<Zol>(zol), outcome.text_bytes, &report);
    }
    outcome.take(report);
  });
}

zol_outcome* ZOL_CALL zol_check(void* object) {
  return outcome_of([=](Outcome& outcome) {
    const CheckReport report = zol_v2::check(as<zol_v2::internal::Object>(object));
    outcome.code = report.is_ok() ? lmx::elmx_ok : report.faults.front().code;
    outcome.take(report.faults);
  });
}

void ZOL_CALL zol_outcome_free(zol_outcome* outcome) { delete static_cast<Outcome*>(outcome); }
