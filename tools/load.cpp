#include "tools/load.h"

#include "facade/files.h"
#include "lmx/reader.h"
#include "model/Zol.h"
#include "tools/document_text.h"
#include "tools/faults.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/text.h"

namespace {

zol_v2::LoadReport load_standard_input(zol_v2::Zol& document) {
  zol_v2::LoadReport report;
  DocumentText text;
  report.code = text.read(k_standard_stream, &report.message);
  if (report.code != lmx::elmx_ok) return report;
  lmx::c_xml_reader_memory reader(text.data(), text.size());
  report.code = document.unmarshal(reader);
  report.line = reader.get_line_no();
  report.item = reader.get_error_item_name();
  return report;
}

zol_v2::LoadReport load(const std::string& path, zol_v2::Zol& document) {
  const Progress progress("Reading " + path);
  if (path == k_standard_stream) return load_standard_input(document);
  zol_v2::LoadReport report;
  (void)zol_v2::openFile(document, wide_path(path), &report);
  return report;
}

}  // namespace

ExitStatus load_document(const std::string& path, zol_v2::Zol& document) {
  const zol_v2::LoadReport report = load(path, document);
  switch (report.code) {
    case lmx::elmx_ok:
      return ExitStatus::ok;
    case lmx::elmx_no_file:
      complain(path, report.message);
      return ExitStatus::trouble;
    case k_archive_error:
      print_faults(path, {{0, report.code, k_archive_message, report.message}});
      return ExitStatus::fault;
    default:
      print_faults(path, {make_fault(report.line, report.code, report.item)});
      return ExitStatus::fault;
  }
}
