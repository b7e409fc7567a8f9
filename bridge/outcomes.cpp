// Opening and saving with all that is to be said about it.

#include <deque>
#include <exception>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bridge/bridge.h"
#include "bridge/zol_helpers.h"
#include "facade/files.h"
#include "lmx/internal/string_sink.h"
#include "lmx/writer.h"
#include "model/Zol.h"
#include "model/sdk_stamp.h"

namespace {

using zol::bridge::as;
using zol::bridge::wide;
using zol_v2::LoadReport;
using zol_v2::SaveReport;
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

  void take(const LoadReport& report) {
    take(report.code, report.message, report.archive_cause);
    if (report.code == lmx::elmx_ok || report.line == 0) return;
    zol_fault fault{};
    fault.code = report.code;
    fault.line = static_cast<unsigned>(report.line);
    fault.item = kept(report.item);
    fault.message = kept(report.message);
    all_faults.push_back(fault);
  }

  void take(const SaveReport& report) { take(report.code, report.message, report.archive_cause); }

  zol_outcome* give() {
    faults = all_faults.data();
    fault_count = static_cast<unsigned>(all_faults.size());
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

// By the signature of an entry, or of the end of an archive that has none.
bool is_archive(std::string_view bytes) {
  return bytes.substr(0, 4) == std::string_view("PK\3\4", 4) ||
         bytes.substr(0, 4) == std::string_view("PK\5\6", 4);
}

LoadReport open(Zol& document, std::string_view bytes) {
  LoadReport report;
  if (!is_archive(bytes)) {
    openText(document, bytes, &report);
    return report;
  }
  std::string text;
  if (unpackText(text, bytes, &report) == lmx::elmx_ok) openText(document, text, &report);
  return report;
}

// The bytes that saveFile writes into a plain file.
lmx::elmx_error write(const Zol& document, std::string* bytes) {
  lmx::internal::StringSink sink;
  std::ostream stream(&sink);
  lmx::c_xml_writer writer(stream, lmx::c_xml_writer::include_xml_decl, "\t", "\n");
  zol_v2::SdkStamp().stampWrite(const_cast<Zol&>(document));
  const lmx::elmx_error error = document.marshal(writer, Zol::k_element_name);
  if (error == lmx::elmx_ok) sink.move_to(bytes);
  return error;
}

}  // namespace

zol_outcome* ZOL_CALL zol_open(void* zol, const char16_t* path, const void* bytes,
                               unsigned long long size) {
  return outcome_of([=](Outcome& outcome) {
    LoadReport report;
    if (path != nullptr) {
      openFile(as<Zol>(zol), wide(path), &report);
    } else {
      const auto first = static_cast<const char*>(bytes);
      report = open(as<Zol>(zol), std::string_view(first, static_cast<std::size_t>(size)));
    }
    outcome.take(report);
  });
}

zol_outcome* ZOL_CALL zol_save(void* zol, const char16_t* path) {
  return outcome_of([=](Outcome& outcome) {
    SaveReport report;
    if (path != nullptr) {
      saveFile(as<Zol>(zol), wide(path), &report);
    } else {
      report.code = write(as<Zol>(zol), &outcome.text_bytes);
    }
    outcome.take(report);
  });
}

void ZOL_CALL zol_outcome_free(zol_outcome* outcome) { delete static_cast<Outcome*>(outcome); }
