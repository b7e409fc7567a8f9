#include "tools/load.h"

#include "facade/files.h"
#include "model/Zol.h"
#include "tools/document_text.h"
#include "tools/faults.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/text.h"

namespace {

ExitStatus judge(const std::string& path, const zol_v2::LoadReport& report) {
  if (report.code == lmx::elmx_ok) return ExitStatus::ok;
  if (is_trouble(report)) {
    complain(path, report.message);
    return ExitStatus::trouble;
  }
  const Fault fault = is_unusable(report) ? Fault{0, report.code, k_archive_message, report.message}
                                          : make_fault(report.line, report.code, report.item);
  print_faults(path, {fault});
  return ExitStatus::fault;
}

zol_v2::LoadReport load_file(const std::string& path, zol_v2::Zol& document) {
  const Progress progress("Reading " + path);
  zol_v2::LoadReport report;
  (void)zol_v2::openFile(document, wide_path(path), &report);
  return report;
}

zol_v2::LoadReport load_text(const std::string& path, zol_v2::Zol& document, DocumentText* text) {
  const Progress progress("Reading " + path);
  zol_v2::LoadReport report = text->read(path);
  if (report.code == lmx::elmx_ok) (void)zol_v2::openText(document, text->view(), &report);
  return report;
}

}  // namespace

ExitStatus load_document(const std::string& path, zol_v2::Zol& document) {
  if (path != k_standard_stream) return judge(path, load_file(path, document));
  DocumentText text;
  return load_document(path, document, &text);
}

ExitStatus load_document(const std::string& path, zol_v2::Zol& document, DocumentText* text) {
  return judge(path, load_text(path, document, text));
}
