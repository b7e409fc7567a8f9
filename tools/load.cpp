#include "tools/load.h"

#include <cstdio>

#include "model/Zol.h"
#include "tools/document_text.h"
#include "tools/file_walk.h"
#include "tools/progress.h"
#include "tools/terminal.h"
#include "tools/verdict.h"

Verdict try_load(DocumentSource& source, zol_v2::Zol& document) {
  Verdict verdict;
  verdict.file = source.path();
  zol_v2::LoadOptions options;
  options.most_faults = 1;
  verdict.report = source.load(document, options);
  if (verdict.report.code != lmx::elmx_ok) {
    verdict.status = is_trouble(verdict.report) ? ExitStatus::trouble : ExitStatus::fault;
  }
  return verdict;
}

void complain_of(const Verdict& verdict) {
  if (verdict.status == ExitStatus::ok) return;
  make_text_printer(true, wants_colors(stderr))->print(verdict);
}

ExitStatus load_document(const std::string& path, zol_v2::Zol& document, DocumentSource& source) {
  Verdict verdict;
  {
    const Progress progress("Reading " + path);
    verdict = try_load(source, document);
  }
  complain_of(verdict);
  return verdict.status;
}

ExitStatus load_document(const std::string& path, zol_v2::Zol& document) {
  DocumentSource source(path);
  return load_document(path, document, source);
}

ExitStatus for_each_document(
    const std::vector<std::string>& files, bool is_recursive,
    const std::function<void(const std::string& path, const zol_v2::Zol& document)>& show) {
  ExitStatus status = ExitStatus::ok;
  FileWalk walk(files, is_recursive);
  for (std::string path; walk.next(&path);) {
    zol_v2::Zol document;
    const ExitStatus loaded = load_document(path, document);
    if (loaded == ExitStatus::ok) show(path, document);
    status = worse(status, loaded);
  }
  return status;
}
