#include "tools/save.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <utility>

#include "facade/files.h"
#include "model/Zol.h"
#include "port/files.h"
#include "port/replacement_file.h"
#include "port/wide_text.h"
#include "tools/document_text.h"
#include "tools/output.h"
#include "tools/terminal.h"
#include "tools/text.h"
#include "tools/verdict.h"

bool is_document_name(const std::string& path) {
  const std::size_t dot = path.rfind('.');
  const std::string suffix = dot == std::string::npos ? "" : path.substr(dot);
  return path == k_standard_stream || suffix == ".zol" || suffix == ".zolz";
}

std::string check_document_name(const std::string& path) {
  if (is_document_name(path)) return "";
  return "the name must end in .zol or .zolz, or be -";
}

std::string check_picture_name(const std::string& path) {
  if (path == k_standard_stream || !is_document_name(path)) return "";
  return "a picture is no document: the name must not end in .zol or .zolz";
}

bool is_in_the_way(const SaveTarget& target) {
  std::uint32_t attributes = 0;
  if (target.replaces || target.path == k_standard_stream ||
      !zol::port::get_attributes(wide_path(target.path), attributes)) {
    return false;
  }
  complain(target.path, "exists; --force replaces it");
  return true;
}

WholeOutput::WholeOutput(const std::string& path) {
  if (path == k_standard_stream) return;
  file_ = std::make_unique<zol::port::ReplacementFile>(wide_path(path));
  if (!file_->is_open()) fail();
}

bool WholeOutput::fail() {
  error_ = errno != 0 ? errno : EIO;
  return false;
}

bool WholeOutput::write(std::string_view bytes) {
  if (!is_good()) return false;
  if (file_ == nullptr) {
    waiting_.append(bytes);  // since standard output can't be taken back
    return true;
  }
  return zol::port::write_handle(file_->handle(), bytes.data(), bytes.size()) || fail();
}

ExitStatus WholeOutput::commit(std::string* message) {
  using zol::port::ReplacementFile;
  if (file_ == nullptr) {
    print(waiting_);
    return ExitStatus::ok;  // of a failure there finish_output() tells
  }
  const ReplacementFile::Outcome outcome =
      is_good() ? file_->commit() : ReplacementFile::Outcome::kept;
  switch (outcome) {
    case ReplacementFile::Outcome::kept:
      *message = std::strerror(is_good() ? errno : error_);
      return ExitStatus::trouble;
    case ReplacementFile::Outcome::broken:
      *message = "could not be written to its end";
      return ExitStatus::trouble;
    case ReplacementFile::Outcome::not_durable:
      *message = "is there, but may not outlive a loss of power";
      return ExitStatus::ok;
    default:
      return ExitStatus::ok;
  }
}

ExitStatus save_document(const zol_v2::Zol& document, const SaveTarget& target,
                         const std::string& name) {
  if (!zol::port::is_utf8(target.path.data(), target.path.size())) {
    complain(target.path, "can't be written: the name is no UTF-8");
    return ExitStatus::trouble;
  }
  zol_v2::SaveOptions options;
  options.is_exact = true;
  options.is_checked = true;
  zol_v2::SaveReport report;
  if (target.path == k_standard_stream) {
    std::string text;
    if (zol_v2::saveString(document, text, &report, options) == lmx::elmx_ok) print(text);
  } else {
    (void)zol_v2::saveFile(document, wide_path(target.path), &report, options);
  }
  if (report.faults.empty()) {
    if (!report.message.empty()) complain(target.path, report.message);
    return report.code == lmx::elmx_ok ? ExitStatus::ok : ExitStatus::trouble;
  }
  Verdict verdict;
  verdict.file = name;
  verdict.status = ExitStatus::fault;
  verdict.report.faults = std::move(report.faults);
  make_text_printer(true, wants_colors(stderr))->print(verdict);
  return ExitStatus::fault;
}

ExitStatus save_picture(const std::string& text, const std::string& path) {
  WholeOutput output(path);
  output.write(text);
  std::string message;
  const ExitStatus status = output.commit(&message);
  if (!message.empty()) complain(path, message);
  return status;
}
