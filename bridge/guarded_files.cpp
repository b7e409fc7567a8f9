// The file operations that let no exception out.

#include <exception>
#include <string_view>
#include <utility>

#include "bridge/bridge.h"
#include "bridge/zol_helpers.h"
#include "facade/files.h"
#include "model/Zol.h"
#include "port/returned_text.h"
#include "port/wide_text.h"

namespace {

using zol::bridge::as;
using zol::bridge::wide;
using zol_v2::LoadReport;
using zol_v2::Zol;

constexpr lmx::elmx_error k_exception = lmx::elmx_user_defined_1;

// Null for no text, or without memory.
char16_t* given(std::string_view utf8) noexcept {
  if (utf8.empty()) return nullptr;
  try {
    return zol::port::give_wide(zol::port::from_utf8(utf8.data(), utf8.size()));
  } catch (...) {
    return nullptr;
  }
}

int reported(zol_report* report, lmx::elmx_error code, std::string_view message,
             const LoadReport& found = LoadReport()) noexcept {
  if (report != nullptr) {
    *report = {code, found.line, found.archive_cause, given(found.item), given(message)};
  }
  return code;
}

// Runs an operation, which gives its code and may fill in what else it knows.
template <class Operation>
int guarded(zol_report* report, Operation operation) noexcept {
  try {
    LoadReport found;
    const lmx::elmx_error code = operation(&found);
    if (code != lmx::elmx_ok && found.message.empty()) {
      return reported(report, code, lmx::get_error_description(code), found);
    }
    return reported(report, code, found.message, found);
  } catch (const std::exception& exception) {
    return reported(report, k_exception, exception.what());
  } catch (...) {
    return reported(report, k_exception, lmx::get_error_description(k_exception));
  }
}

}  // namespace

int ZOL_CALL zol_open_file(void* zol, const char16_t* path, zol_report* report) {
  return guarded(
      report, [=](LoadReport* found) { return zol_v2::openFile(as<Zol>(zol), wide(path), found); });
}

int ZOL_CALL zol_save_file(void* zol, const char16_t* path, zol_report* report) {
  return guarded(report, [=](LoadReport* found) {
    zol_v2::SaveReport saved;
    const lmx::elmx_error code = zol_v2::saveFile(as<Zol>(zol), wide(path), &saved);
    found->message = std::move(saved.message);
    found->archive_cause = saved.archive_cause;
    if (!saved.faults.empty()) found->item = saved.faults.front().path;
    return code;
  });
}

int ZOL_CALL zol_load_file(void* zol, const char16_t* path, zol_report* report) {
  return guarded(report, [=](LoadReport*) { return as<Zol>(zol).loadFile(wide(path)); });
}

int ZOL_CALL zol_write_file(void* zol, const char16_t* path, zol_report* report) {
  return guarded(report, [=](LoadReport*) { return as<Zol>(zol).writeFile(wide(path)); });
}

void ZOL_CALL zol_report_clear(zol_report* report) {
  zol_text_free(report->item);
  zol_text_free(report->message);
  *report = {};
}
