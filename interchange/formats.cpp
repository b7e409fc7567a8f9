#include "interchange/formats.h"

#include <algorithm>
#include <cctype>

#include "interchange/internal/palettes.h"
#include "interchange/json.h"
#include "model/Zol.h"

namespace zol_v2::interchange {

namespace {

std::string lower(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return result;
}

class JsonDocumentWriter : public Writer {
 public:
  void add(const Zol& document, std::string_view) override {
    if (!report_) return;
    if (!text_.empty()) {
      report_.fail("several-documents", "JSON holds one document, and not several");
      return;
    }
    report_ = write_json(document, &text_);
  }
  Report finish(std::string* bytes) override {
    if (report_) *bytes += text_;
    return report_;
  }

 private:
  Report report_;
  std::string text_;
};

}  // namespace

Writer::~Writer() = default;

const std::vector<FormatInfo>& formats() {
  static const std::vector<FormatInfo> table = {
    {Format::json, "json", {".json"}, true, true, "everything"},
    {Format::csv, "csv", {".csv"}, true, true, "all values of colours, with their conditions"},
    {Format::tsv, "tsv", {".tsv", ".tab"}, true, true, "the same, between tabs"},
    {Format::cgats,
     "cgats",
     {".cgats", ".ti3", ".ti2", ".ti1", ".cie", ".sp", ".it8"},
     true,
     true,
     "spectra, Lab, LCh, XYZ, xyY, CMYK, RGB and densities"},
    {Format::gpl, "gpl", {".gpl"}, true, true, "names and sRGB of eight bits"},
    {Format::kpl, "kpl", {".kpl"}, true, true, "names, groups and sRGB"},
    {Format::css, "css", {".css"}, false, true, "names and sRGB of eight bits"},
    {Format::ase, "ase", {".ase"}, true, true, "names, groups and sRGB"},
#if defined(ZOL_WITH_SQLITE)
    {Format::sqlite,
     "sqlite",
     {".sqlite", ".db", ".sqlite3"},
     false,
     true,
     "colours, values, spectra, tolerances and verdicts, to be asked"},
#endif
  };
  return table;
}

const FormatInfo* find_format(std::string_view name) {
  const std::string wanted = lower(name);
  for (const FormatInfo& info : formats()) {
    if (info.name == wanted) return &info;
  }
  return nullptr;
}

const FormatInfo* format_of_path(std::string_view path) {
  const std::string wanted = lower(path);
  for (const FormatInfo& info : formats()) {
    for (const std::string_view suffix : info.suffixes) {
      if (wanted.size() > suffix.size() &&
          wanted.compare(wanted.size() - suffix.size(), suffix.size(), suffix) == 0) {
        return &info;
      }
    }
  }
  return nullptr;
}

std::unique_ptr<Writer> make_writer(Format format, const WriteOptions& options) {
  switch (format) {
    case Format::json:
      return std::make_unique<JsonDocumentWriter>();
    case Format::csv:
    case Format::tsv:
      return internal::make_table_writer(format, options);
    case Format::cgats:
      return internal::make_cgats_writer();
    case Format::gpl:
      return internal::make_gpl_writer();
    case Format::kpl:
      return internal::make_kpl_writer();
    case Format::css:
      return internal::make_css_writer();
    case Format::ase:
      return internal::make_ase_writer();
    case Format::sqlite:
#if defined(ZOL_WITH_SQLITE)
      return internal::make_sqlite_writer(options);
#else
      break;
#endif
  }
  return nullptr;
}

Report read(std::string_view bytes, Format format, const ReadOptions& options, Zol* document) {
  switch (format) {
    case Format::json:
      return internal::read_whole_json(bytes, document);
    case Format::csv:
    case Format::tsv:
      return internal::read_table(bytes, options, document);
    case Format::cgats:
      return internal::read_cgats(bytes, options, document);
    case Format::gpl:
      return internal::read_gpl(bytes, options, document);
    case Format::kpl:
      return internal::read_kpl(bytes, options, document);
    case Format::ase:
      return internal::read_ase(bytes, options, document);
    case Format::css:
    case Format::sqlite:
      break;
  }
  Report report;
  report.fail("not-read", "The format is written alone, and not read");
  return report;
}

namespace internal {

void RecordWriter::add_document(const Zol&, std::string_view) {}

void RecordWriter::end_document(const Zol&) {}

void RecordWriter::hand_over(std::string* bytes) {
  constexpr std::size_t k_block = std::size_t{1} << 16;
  if (!sink_ || bytes->size() < k_block) return;
  if (!is_refused_ && !sink_(*bytes)) {
    is_refused_ = true;
    report_.fail("not-taken", "What was written could not be stored");
  }
  bytes->clear();
}

void RecordWriter::add(const Zol& document, std::string_view name) {
  add_document(document, name);
  for_each_record(
      document, [&](const ColorRecord& record) { add_record(record, name); }, &losses());
  end_document(document);
}

Report RecordWriter::finish(std::string* bytes) {
  std::string text;
  finish_records(&text);
  if (report_) *bytes += text;
  return report_;
}

}  // namespace internal

}  // namespace zol_v2::interchange
