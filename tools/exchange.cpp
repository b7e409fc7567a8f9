#include "tools/exchange.h"

#include <cerrno>
#include <cstring>
#include <memory>

#include "facade/files.h"
#include "model/Zol.h"
#include "port/replacement_file.h"
#include "tools/document_text.h"
#include "tools/file_walk.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/terminal.h"
#include "tools/text.h"
#include "tools/verdict.h"

using zol_v2::interchange::Report;

namespace {

ExitStatus trouble(const std::string& path) {
  complain(path, std::strerror(errno));
  return ExitStatus::trouble;
}

void tell(const std::string& file, std::vector<zol_v2::Fault> faults) {
  Verdict verdict;
  verdict.file = file;
  verdict.status = ExitStatus::fault;
  verdict.report.faults = std::move(faults);
  make_text_printer(true, wants_colors(stderr))->print(verdict);
}

void tell_rest(const std::string& file, const Report& report) {
  for (const std::string& note : report.notes) complain(file, "assumed that " + note);
  std::string lost;
  for (const auto& loss : report.losses.all()) {
    lost += (lost.empty() ? "" : ", ") + std::to_string(loss.count) + ' ' + loss.kind;
  }
  if (!lost.empty()) complain(file, "left out " + lost);
}

ExitStatus save_bytes(const std::string& path, const std::string& bytes) {
  using zol::port::ReplacementFile;
  if (path == k_standard_stream) {
    print(bytes);
    return ExitStatus::ok;
  }
  const Progress progress("Writing " + path);
  ReplacementFile file(wide_path(path));
  if (!file.is_open() || !zol::port::write_handle(file.handle(), bytes.data(), bytes.size())) {
    return trouble(path);
  }
  switch (file.commit()) {
    case ReplacementFile::Outcome::kept:
      return trouble(path);
    case ReplacementFile::Outcome::broken:
      complain(path, "could not be written to its end");
      return ExitStatus::trouble;
    case ReplacementFile::Outcome::not_durable:
      complain(path, "is there, but may not outlive a loss of power");
      return ExitStatus::ok;
    default:
      return ExitStatus::ok;
  }
}

// What is read says all of it, numbers with all digits; a table has no stamp to keep.
ExitStatus save_document(const zol_v2::Zol& document, const ExchangeOptions& options) {
  const bool is_whole = options.from->format == zol_v2::interchange::Format::json;
  zol_v2::SaveOptions saving;
  saving.is_exact = true;
  saving.is_checked = true;
  saving.is_stamped = !is_whole;
  zol_v2::SaveReport report;
  std::string text;
  if (options.output == k_standard_stream) {
    if (saveString(document, text, &report, saving) == lmx::elmx_ok) print(text);
  } else {
    const Progress progress("Writing " + options.output);
    (void)saveFile(document, wide_path(options.output), &report, saving);
  }
  if (!report.faults.empty()) {
    tell(options.inputs.front(), std::move(report.faults));
    return ExitStatus::fault;
  }
  if (!report.message.empty()) complain(options.output, report.message);
  return report.code == lmx::elmx_ok ? ExitStatus::ok : ExitStatus::trouble;
}

// Into a document, whatever the file is.
ExitStatus load(const std::string& path, const ExchangeOptions& options, zol_v2::Zol* document) {
  if (options.from == nullptr) return load_document(path, *document);
  std::string bytes;
  if (!read_bytes(path, &bytes)) return trouble(path);
  zol_v2::interchange::ReadOptions reading = options.reading;
  reading.source = path == k_standard_stream ? "standard input" : valid_utf8(path);
  if (!options.mapping_file.empty() && !read_bytes(options.mapping_file, &reading.mapping)) {
    return trouble(options.mapping_file);
  }
  Report report;
  {
    const Progress progress("Reading " + path);
    report = read(bytes, options.from->format, reading, document);
  }
  if (!report) {
    tell(path, std::move(report.faults));
    return ExitStatus::fault;
  }
  tell_rest(path, report);
  return ExitStatus::ok;
}

ExitStatus write(const ExchangeOptions& options) {
  const auto writer = make_writer(options.to->format, options.writing);
  FileWalk walk(options.inputs, options.is_recursive);
  ExitStatus status = ExitStatus::ok;
  for (std::string path; walk.next(&path);) {
    zol_v2::Zol document;
    const ExitStatus loaded = load(path, options, &document);
    status = worse(status, loaded);
    if (loaded == ExitStatus::ok) writer->add(document, valid_utf8(path));
  }
  if (status != ExitStatus::ok) return status;
  std::string bytes;
  Report report = writer->finish(&bytes);
  if (!report) {
    tell(options.output, std::move(report.faults));
    return ExitStatus::fault;
  }
  status = save_bytes(options.output, bytes);
  if (status == ExitStatus::ok) tell_rest(options.output, report);
  return status;
}

}  // namespace

ExitStatus exchange(const ExchangeOptions& options) {
  if (options.to != nullptr) return write(options);
  zol_v2::Zol document;
  const ExitStatus status = load(options.inputs.front(), options, &document);
  return status == ExitStatus::ok ? save_document(document, options) : status;
}
