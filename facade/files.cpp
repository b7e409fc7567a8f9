#include "facade/files.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <functional>
#include <istream>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "facade/check.h"
#include "facade/internal/block_sink.h"
#include "facade/internal/diagnosis.h"
#include "facade/internal/file_kind.h"
#include "facade/internal/file_source.h"
#include "facade/internal/memory_file.h"
#include "facade/internal/packed_document.h"
#include "facade/internal/source_text.h"
#include "facade/internal/well_formed.h"
#include "lmx/internal/string_sink.h"
#include "lmx/reader.h"
#include "lmx/writer.h"
#include "model/Zol.h"
#include "model/internal/walkers.h"
#include "model/sdk_stamp.h"
#include "port/files.h"
#include "port/replacement_file.h"
#include "port/wide_text.h"
#include "zip/archive.h"
#include "zip/path_component.h"

namespace zol_v2 {

using internal::Object;
using lmx::elmx_error;

namespace {

namespace port = zol::port;

constexpr elmx_error k_archive_error = lmx::elmx_user_defined_1;
constexpr elmx_error k_suffix_error = lmx::elmx_user_defined_2;

constexpr std::wstring_view k_plain_suffix = L".zol";
constexpr std::wstring_view k_zipped_suffix = L".zolz";

bool has_suffix(const std::wstring& path, std::wstring_view suffix) {
  return path.size() >= suffix.size() &&
         path.compare(path.size() - suffix.size(), suffix.size(), suffix) == 0;
}

// What a path says of the file to write.
struct Target {
  bool is_valid = false;
  bool is_zipped = false;
  std::wstring xml_path;  // with the suffix of the plain form
};

Target target_of(const std::wstring& path) {
  for (const std::wstring_view suffix : {k_zipped_suffix, k_plain_suffix}) {
    if (!has_suffix(path, suffix)) continue;
    std::wstring xml_path = path.substr(0, path.size() - suffix.size());
    xml_path += k_plain_suffix;
    return {true, suffix == k_zipped_suffix, std::move(xml_path)};
  }
  return {};
}

// For a reader, which takes a path up to its first null character; what stands before it would be
// the name of another file.
const wchar_t* plain_name(const std::wstring& path) {
  return path.find(L'\0') == std::wstring::npos ? path.c_str() : L"";
}

elmx_error marshal_document(const Object& document, std::streambuf& sink,
                            const SaveOptions& options = {}) {
  std::ostream stream(&sink);
  lmx::c_xml_writer writer(stream, lmx::c_xml_writer::include_xml_decl,
                           options.is_indented ? "\t" : "", options.is_indented ? "\n" : "");
  writer.set_exact(options.is_exact);
  const internal::Class& type = internal::Head::class_of(document);
  if (options.is_stamped && type.is_a(Zol::k_class)) {
    // Writing leaves its mark in the document by design.
    SdkStamp().stampWrite(static_cast<Zol&>(const_cast<Object&>(document)));
  }
  return internal::marshal_root(document, type, writer);
}

// Closes at the end of its scope.
struct OutputFile {
  explicit OutputFile(const std::wstring& path) {
    port::OpenOptions options;
    options.access = port::Access::write;
    options.create = true;
    options.truncate = true;
    options.mode = 0666;
    handle = port::open_handle(path, options);
  }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile() {
    if (handle != port::k_no_file) port::close_handle(handle);
  }

  port::FileHandle handle;
};

// A file that can't be opened or written shows nowhere but on the disk.
elmx_error write_xml_file(const Zol& document, const std::wstring& path) {
  elmx_error error;
  {
    const OutputFile file(path);
    internal::BlockSink sink([&file](const char* bytes, std::uint32_t size) {
      return file.handle != port::k_no_file && port::write_handle(file.handle, bytes, size);
    });
    error = marshal_document(document, sink);
    static_cast<void>(sink.finish());
  }
  if (error != lmx::elmx_ok) port::remove_file(path);
  return error;
}

}  // namespace

elmx_error Zol::loadFile(const std::wstring& path) {
  if (has_suffix(path, k_zipped_suffix)) {
    internal::PackedDocument packed;
    if (!packed.open(path)) return k_archive_error;
    try {
      if (!packed.read()) return k_archive_error;
      lmx::c_xml_reader_memory reader(packed.text().data(), packed.text().size());
      return unmarshal(reader);
    } catch (...) {
      return k_archive_error;
    }
  }
  lmx::c_xml_reader_file reader(plain_name(path));
  return reader.is_open() ? unmarshal(reader) : lmx::elmx_no_file;
}

elmx_error Zol::writeFile(const std::wstring& path) const {
  const Target target = target_of(path);
  if (!target.is_valid) return k_suffix_error;
  const elmx_error error = write_xml_file(*this, target.xml_path);
  if (!target.is_zipped || error != lmx::elmx_ok) return error;

  CZipArchive archive;
  archive.Open(path, CZipArchive::modeCreate, 0);
  try {
    archive.SetCompressionMethod(k_zip_deflated);
    if (!archive.AddFile(target.xml_path, -1, false, CZipArchive::smartDefault,
                         CZipArchive::k_default_buffer_size)) {
      throw CZipException(CZipException::generic, path);
    }
    archive.Close(CZipArchive::closeNormal, false);
  } catch (...) {
    archive.Close(CZipArchive::closeAfterException, false);
    return k_archive_error;
  }
  port::remove_file(target.xml_path);
  return error;
}

namespace {

template <class Report>  // NOLINTNEXTLINE(performance-unnecessary-value-param): it is moved
Report failure(elmx_error code, std::string message, std::int32_t archive_cause = 0) {
  Report report;
  report.code = code;
  report.message = std::move(message);
  report.archive_cause = archive_cause;
  return report;
}

std::string system_text(int error) { return port::to_utf8(port::system_error_text(error)); }

// A cause that is an `errno` value is about the file, any other one about the archive. But where a
// file of another name is missing, the archive's end asked for another part of it, as that of a cut
// one may do by chance.
template <class Report>
Report failure(const CZipException& exception, const std::wstring& path) {
  const std::int32_t cause = exception.GetCause();
  if (cause == ENOENT && exception.GetFileName() != path) {
    return failure<Report>(k_archive_error,
                           "The archive is cut or damaged, or one part of several.", cause);
  }
  return failure<Report>(cause < CZipException::generic ? lmx::elmx_no_file : k_archive_error,
                         port::to_utf8(exception.ErrorText()), cause);
}

// A message as part of a sentence.
std::string as_clause(elmx_error code, std::string text) {
  if (!text.empty() && text.back() == '.') text.pop_back();
  if (text.compare(0, 4, "The ") == 0 || text.compare(0, 4, "Not ") == 0) return text;
  return (code == lmx::elmx_no_file ? "The file can't be read: " : "The archive can't be read: ") +
         text;
}

// What could not be read at all is a fault, too, and the only one.
void complete(LoadReport& report) {
  if (report.code != lmx::elmx_ok && report.faults.empty()) {
    Fault& fault = report.faults.emplace_back();
    fault.code = report.code;
    fault.rule = report.code == lmx::elmx_no_file ? "bad-file" : "bad-archive";
    fault.expected = as_clause(report.code, report.message);
    report.is_complete = false;
  }
  report.fault_count = std::max<std::uint64_t>(report.fault_count, report.faults.size());
}
void complete(SaveReport&) {}

// Runs an operation on a file, which gives a report or throws, and hands over what it says.
template <class Report, class Operation>
elmx_error guarded(Report* report, const std::wstring& path, Operation operation) noexcept {
  Report outcome;
  try {
    try {
      outcome = operation();
    } catch (const CZipException& exception) {
      outcome = failure<Report>(exception, path);
    } catch (const std::bad_alloc&) {
      outcome = failure<Report>(k_archive_error, "Not enough memory.");
    }
    if (report != nullptr) complete(outcome);
  } catch (...) {
    outcome = Report();
    outcome.code = k_archive_error;
  }
  const elmx_error code = outcome.code;
  if (report != nullptr) *report = std::move(outcome);
  return code;
}

// The same on the wide form of a path, which may take memory that is not there.
template <class Report, class Operation>
elmx_error on_wide_path(port::FilePath path, Report* report, Operation operation) noexcept {
  std::wstring wide;
  const elmx_error error = guarded(report, {}, [&] {
    wide = path.wide();
    return Report();
  });
  return error != lmx::elmx_ok ? error : operation(wide);
}

LoadReport unusable(const internal::PackedDocument& packed) {
  LoadReport report =
      failure<LoadReport>(k_archive_error, packed.complaint(), CZipException::generic);
  complete(report);
  report.faults.front().entry = packed.entry_name();
  return report;
}

LoadReport too_large(const LoadOptions& options) {
  return failure<LoadReport>(k_archive_error, "The document is larger than the limit of " +
                                                  std::to_string(options.largest_document) +
                                                  " bytes.");
}

std::string no_document_text(const internal::Class& type) {
  return std::string("A document can't begin with ") + type.name + ".";
}

// Of a source that is not whole.
LoadReport failure_of(const internal::FileSource& source, const LoadOptions& options) {
  return source.error() != 0 ? failure<LoadReport>(lmx::elmx_no_file, system_text(source.error()))
                             : too_large(options);
}

// --- Reading a document -------------------------------------------------------------------------

// Loads one document for a client.
class Loading {
 public:
  Loading(Object& document, const LoadOptions& options, bool is_reported)
      : document_(document),
        type_(internal::Head::class_of(document)),
        options_(options),
        is_reported_(is_reported) {}

  LoadReport read_file(const std::wstring& path);
  // A document or an archive.
  LoadReport read_bytes(std::string_view bytes);

  // From now on nothing is kept, and what loads is checked.
  void check_only(CheckLevel level) { checked_ = level; }

 private:
  LoadReport read_packed(internal::PackedDocument& packed, bool is_open);
  LoadReport read_text(std::string_view text, const internal::PackedDocument* packed);
  void diagnose(std::string_view text, const internal::PackedDocument* packed, LoadReport* report);
  LoadReport check_tree(const Object& tree, std::string_view text);

  std::unique_ptr<Object> made() const { return std::unique_ptr<Object>(type_.make(nullptr)); }

  Object& document_;
  const internal::Class& type_;
  const LoadOptions& options_;
  const bool is_reported_;
  std::optional<CheckLevel> checked_;
};

// All bytes of a file. They stand in the source or, if it had not all of them at hand, in `own`.
// What begins like nothing that can be read is left alone from there.
std::string_view read_all(internal::FileSource& source, std::string* own) {
  const char* begin = nullptr;
  std::size_t size = 0;
  if (source.read_whole(&begin, &size)) return {begin, size};
  while ((size = source.read_block(&begin)) != 0) {
    own->append(begin, size);
    if (!internal::begins_document(*own) && !internal::begins_archive(*own)) break;
  }
  return *own;
}

bool is_plain_document(const std::wstring& path) {
  internal::FileSource source(path, std::numeric_limits<std::uint64_t>::max());
  const char* begin = nullptr;
  const std::size_t size = source.is_open() ? source.read_block(&begin) : 0;
  return internal::begins_document({begin, size});
}

LoadReport Loading::read_file(const std::wstring& path) {
  if (has_suffix(path, k_zipped_suffix)) {
    internal::PackedDocument packed;
    try {
      return read_packed(packed, packed.open(path, options_.largest_document));
    } catch (const CZipException&) {
      // Something may stand in front of an archive, so that is asked for first.
      if (!is_plain_document(path)) throw;
    }
  }
  internal::FileSource source(path, options_.largest_document);
  if (!source.is_open()) return failure<LoadReport>(lmx::elmx_no_file, system_text(errno));
  std::string own;
  const std::string_view bytes = read_all(source, &own);
  if (!source.is_whole()) return failure_of(source, options_);
  return read_bytes(bytes);
}

LoadReport Loading::read_bytes(std::string_view bytes) {
  if (!internal::begins_archive(bytes)) return read_text(bytes, nullptr);
  internal::MemoryFile file(bytes);
  internal::PackedDocument packed;
  return read_packed(packed, packed.open(file, options_.largest_document));
}

LoadReport Loading::read_packed(internal::PackedDocument& packed, bool is_open) {
  if (!is_open || !packed.read()) return unusable(packed);
  return read_text(packed.text(), &packed);
}

// What a strict parser has to say.
std::vector<Fault> faults_by_the_book(std::string_view text, std::size_t limit) {
  std::vector<Fault> faults;
  std::vector<SourcePlace*> places;
  for (internal::XmlFault& found :
       internal::find_xml_faults(text, std::max<std::size_t>(limit, 1))) {
    Fault& fault = faults.emplace_back();
    fault.code = lmx::elmx_not_well_formed;
    fault.rule = found.rule;
    fault.item = std::move(found.item);
    fault.expected = std::move(found.sentence);
    if (fault.expected[0] >= 'a')
      fault.expected[0] = static_cast<char>(fault.expected[0] - 'a' + 'A');
    fault.place = {1, 0, found.offset};
  }
  places.reserve(faults.size());
  for (Fault& fault : faults) places.push_back(&fault.place);
  internal::SourceText(text).find_lines(places);
  return faults;
}

// Whether a fault of the reader may be one of the XML itself.
bool is_of_markup(elmx_error code) {
  switch (code) {
    case lmx::elmx_attribute_already_read:
    case lmx::elmx_bad_char_encoding:
    case lmx::elmx_bad_dtd:
    case lmx::elmx_bad_end_of_element:
    case lmx::elmx_bad_start_tag_end:
    case lmx::elmx_bad_end_tag:
    case lmx::elmx_bad_xml_decl:
    case lmx::elmx_bad_xml_version:
    case lmx::elmx_encoding_mismatch:
    case lmx::elmx_not_well_formed:
    case lmx::elmx_bad_attribute_value:
    case lmx::elmx_bad_element_value:
    case lmx::elmx_unexpected_end:
      return true;
    default:
      return false;
  }
}

// Beside the faults that were found already, and unless one of them says the same.
void add_faults_by_the_book(std::string_view text, std::size_t limit, LoadReport* report) {
  for (Fault& fault : faults_by_the_book(text, limit)) {
    const bool is_known =
        std::any_of(report->faults.begin(), report->faults.end(), [&](const Fault& other) {
          return other.place.line == fault.place.line && is_of_markup(other.code);
        });
    if (is_known) continue;
    if (report->code == lmx::elmx_ok) {
      report->code = fault.code;
      report->line = static_cast<int>(fault.place.line);
      report->item = fault.item;
      report->message = "line:" + std::to_string(fault.place.line) + "-'" + fault.item + "'-" +
                        lmx::get_error_description(fault.code) + ": " + fault.expected;
    }
    ++report->fault_count;
    if (report->faults.size() >= std::max<std::size_t>(limit, 1)) continue;
    const auto behind =
        std::find_if(report->faults.begin(), report->faults.end(),
                     [&](const Fault& other) { return other.place.offset > fault.place.offset; });
    report->faults.insert(behind, std::move(fault));
  }
}

LoadReport check_text(std::string_view text) {
  LoadReport report;
  add_faults_by_the_book(text, LoadOptions().most_faults, &report);
  return report;
}

void name_entry(const internal::PackedDocument* packed, LoadReport* report) {
  if (packed == nullptr) return;
  for (Fault& fault : report->faults) fault.entry = packed->entry_name();
}

// Most documents are in order, and then a piece is enough at a time.
constexpr auto can_be_written = [](const Object& piece) {
  CheckOptions options;
  options.level = CheckLevel::writing;
  options.limit = 0;
  return check(piece, options).is_ok();
};

LoadReport Loading::read_text(std::string_view text, const internal::PackedDocument* packed) {
  LoadReport report;
  if (checked_ == CheckLevel::writing && internal::walk_document(type_, text, can_be_written)) {
    if (options_.strict) add_faults_by_the_book(text, options_.most_faults, &report);
    name_entry(packed, &report);
    return report;
  }
  {
    const std::unique_ptr<Object> loaded = made();
    lmx::c_xml_reader_memory reader(text.data(), text.size());
    report.code = internal::unmarshal_document(*loaded, type_, reader);
    if (report.code == lmx::elmx_ok) {
      if (checked_) report = check_tree(*loaded, text);
      if (options_.strict) add_faults_by_the_book(text, options_.most_faults, &report);
      const bool is_taken = report.code == lmx::elmx_ok || options_.best_effort;
      if (is_taken && !checked_) internal::swap(document_, *loaded, type_);
      name_entry(packed, &report);
      return report;
    }
    report.line = reader.get_line_no();
    report.item = reader.get_error_item_name();
    reader.get_error_message(&report.message);
    if (report.message == lmx::get_error_description(lmx::elmx_ok)) {
      // No handler was asked, which would have noted these: the fault is in the element at hand.
      report.item = reader.get_full_name();
      report.message = "line:" + std::to_string(report.line) + "-'" + report.item + "'-" +
                       lmx::get_error_description(report.code);
    }
  }
  diagnose(text, packed, &report);
  return report;
}

// The document is good. Only what would be written from it may not be, which is an error where
// nothing can be written, and else a warning.
LoadReport Loading::check_tree(const Object& tree, std::string_view text) {
  CheckOptions checking;
  checking.level = *checked_;
  checking.limit = options_.most_faults;
  CheckReport found = check(tree, checking);
  LoadReport report;
  report.faults = std::move(found.faults);
  report.fault_count = found.errors + found.warnings;
  locate(report.faults, text);
  for (Fault& fault : report.faults) {
    if (fault.code != lmx::elmx_occurs_on_marshal) fault.severity = Severity::warning;
  }
  if (!report.faults.empty() && report.faults.front().severity == Severity::error) {
    report.code = report.faults.front().code;
    report.line = static_cast<int>(report.faults.front().place.line);
    report.item = report.faults.front().item;
    report.message = report.faults.front().path + ": " + report.faults.front().text();
  }
  return report;
}

// A few characters, of those that ASCII has.
std::string valid_beginning(std::string_view text) {
  std::string words(text.substr(0, 16));
  std::replace_if(
      words.begin(), words.end(), [](char c) { return static_cast<signed char>(c) < ' '; }, '?');
  return words;
}

// What is no document by its beginning is told as what it is.
void explain_beginning(std::string_view text, const internal::PackedDocument* packed,
                       LoadReport* report) {
  const std::string_view kind = internal::kind_of(text);
  std::string words;
  if (text.empty()) {
    words = "empty";
  } else if (!kind.empty()) {
    words = std::string(kind) + ", not a colour-data document";
  } else if (!internal::begins_document(text)) {
    words = "not a colour-data document: it begins with '" +
            internal::excerpt(valid_beginning(text)) + "', and a document begins with <";
  } else {
    return;
  }
  const bool is_entry = packed != nullptr;
  Fault fault;
  fault.code = report->code;
  fault.rule = "no-document";
  fault.item = report->item;
  fault.place = {1, 1, 0};
  fault.found = words;
  fault.expected = is_entry ? "The first entry of the archive, '" +
                                  internal::excerpt(packed->entry_name()) + "', is " + words
                            : (text.empty() ? "The document is " : "This is ") + words;
  report->faults.clear();
  report->faults.push_back(std::move(fault));
  report->fault_count = 1;
  report->is_complete = false;
}

void Loading::diagnose(std::string_view text, const internal::PackedDocument* packed,
                       LoadReport* report) {
  const bool is_asked = is_reported_ && options_.most_faults != 0;
  if (!is_asked && !options_.best_effort) return;
  const std::unique_ptr<Object> tree = options_.best_effort ? made() : nullptr;
  internal::Diagnosis diagnosis = internal::diagnose(text, type_, options_.most_faults, tree.get());
  if (tree != nullptr && diagnosis.has_root) internal::swap(document_, *tree, type_);
  report->faults = std::move(diagnosis.faults);
  report->fault_count = diagnosis.count;
  report->is_complete = diagnosis.is_complete;
  if (diagnosis.has_root) {
    if (options_.strict) add_faults_by_the_book(text, options_.most_faults, report);
  } else {
    explain_beginning(text, packed, report);
  }
  if (packed == nullptr) return;
  name_entry(packed, report);
  const std::string& other = packed->other_name();
  if (diagnosis.has_root || other.empty() || report->faults.empty()) return;
  report->faults.front().expected +=
      ": the document must be the first entry, which '" + internal::excerpt(other) + "' is not";
}

LoadReport unpack(std::string& text, std::string_view archive, const LoadOptions& options) {
  internal::MemoryFile file(archive);
  internal::PackedDocument packed;
  if (!packed.open(file, options.largest_document) || !packed.read()) return unusable(packed);
  text = packed.text();
  return {};
}

LoadReport take_text(std::string& text, const std::wstring& path, const LoadOptions& options) {
  if (has_suffix(path, k_zipped_suffix)) {
    internal::PackedDocument packed;
    try {
      if (!packed.open(path, options.largest_document) || !packed.read()) return unusable(packed);
      text = packed.text();
      return {};
    } catch (const CZipException&) {
      if (!is_plain_document(path)) throw;
    }
  }
  internal::FileSource source(path, options.largest_document);
  if (!source.is_open()) return failure<LoadReport>(lmx::elmx_no_file, system_text(errno));
  std::string bytes;
  const char* block = nullptr;
  while (const std::size_t size = source.read_block(&block)) bytes.append(block, size);
  if (!source.is_whole()) return failure_of(source, options);
  if (internal::begins_archive(bytes)) return unpack(text, bytes, options);
  text = std::move(bytes);
  return {};
}

// The bytes of a stream, whose buffer throws if it fails.
LoadReport take_stream(std::string* bytes, std::istream& stream, const LoadOptions& options) {
  constexpr std::size_t k_block = 1 << 16;
  const auto refused = [] {
    return failure<LoadReport>(lmx::elmx_no_file, "The stream can't be read.");
  };
  if (!stream.good() || stream.rdbuf() == nullptr) return refused();
  try {
    for (std::size_t taken = k_block; taken == k_block;) {
      const std::size_t size = bytes->size();
      bytes->resize(size + k_block);
      taken = static_cast<std::size_t>(
          stream.rdbuf()->sgetn(&(*bytes)[size], static_cast<std::streamsize>(k_block)));
      bytes->resize(size + taken);
      if (bytes->size() > options.largest_document) return too_large(options);
    }
    // What it throws of its end is no failure.
    try {
      stream.setstate(std::ios_base::eofbit);
    } catch (const std::ios_base::failure&) {
    }
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    return refused();
  }
  return {};
}

}  // namespace

namespace {

// Loads an object whose class is an element that a document may begin with.
template <class Read>
elmx_error load_guarded(Object& document, const std::wstring& path, LoadReport* report,
                        const LoadOptions& options, Read read) noexcept {
  return guarded(report, path, [&] {
    const internal::Class& type = internal::Head::class_of(document);
    if (!type.is(internal::Class::k_document)) {
      return failure<LoadReport>(lmx::elmx_element_not_found, no_document_text(type));
    }
    return read(Loading(document, options, report != nullptr));
  });
}

}  // namespace

elmx_error openFile(Object& document, const std::wstring& path, LoadReport* report,
                    const LoadOptions& options) noexcept {
  return load_guarded(document, path, report, options,
                      [&](Loading loading) { return loading.read_file(path); });
}

elmx_error openFile(Object& document, port::FilePath path, LoadReport* report,
                    const LoadOptions& options) noexcept {
  return on_wide_path(path, report, [&](const std::wstring& wide) {
    return openFile(document, wide, report, options);
  });
}

elmx_error openText(Object& document, std::string_view bytes, LoadReport* report,
                    const LoadOptions& options) noexcept {
  return load_guarded(document, {}, report, options,
                      [&](Loading loading) { return loading.read_bytes(bytes); });
}

elmx_error judgeFile(const std::wstring& path, LoadReport* report, const LoadOptions& options,
                     CheckLevel level) noexcept {
  return guarded(report, path, [&] {
    Zol none;
    Loading loading(none, options, true);
    loading.check_only(level);
    return loading.read_file(path);
  });
}

elmx_error judgeFile(port::FilePath path, LoadReport* report, const LoadOptions& options,
                     CheckLevel level) noexcept {
  return on_wide_path(path, report, [&](const std::wstring& wide) {
    return judgeFile(wide, report, options, level);
  });
}

elmx_error judgeText(std::string_view bytes, LoadReport* report, const LoadOptions& options,
                     CheckLevel level) noexcept {
  return guarded(report, {}, [&] {
    Zol none;
    Loading loading(none, options, true);
    loading.check_only(level);
    return loading.read_bytes(bytes);
  });
}

elmx_error openStream(Object& document, std::istream& stream, LoadReport* report,
                      const LoadOptions& options) noexcept {
  return load_guarded(document, {}, report, options, [&](Loading loading) {
    std::string bytes;
    const LoadReport taken = take_stream(&bytes, stream, options);
    return taken.code != lmx::elmx_ok ? taken : loading.read_bytes(bytes);
  });
}

elmx_error checkText(std::string_view text, LoadReport* report) noexcept {
  return guarded(report, {}, [&] { return check_text(text); });
}

elmx_error readText(std::string& text, const std::wstring& path, LoadReport* report,
                    const LoadOptions& options) noexcept {
  return guarded(report, path, [&] { return take_text(text, path, options); });
}

elmx_error readText(std::string& text, port::FilePath path, LoadReport* report,
                    const LoadOptions& options) noexcept {
  return on_wide_path(path, report, [&](const std::wstring& wide) {
    return readText(text, wide, report, options);
  });
}

elmx_error unpackText(std::string& text, std::string_view archive, LoadReport* report,
                      const LoadOptions& options) noexcept {
  return guarded(report, {}, [&] { return unpack(text, archive, options); });
}

namespace {

using Taker = internal::BlockSink::Target;
// Hands a document to a taker, until that refuses a block, and gives the code of marshal.
using Giver = std::function<elmx_error(const Taker& take)>;

SaveReport save_plain(const Giver& give, port::ReplacementFile& file) {
  int error = 0;
  const elmx_error code = give([&](const char* bytes, std::uint32_t size) {
    if (port::write_handle(file.handle(), bytes, size)) return true;
    error = errno;
    return false;
  });
  if (code != lmx::elmx_ok) return failure<SaveReport>(code, "");
  if (error != 0) return failure<SaveReport>(lmx::elmx_no_file, system_text(error));
  return {};
}

// Synced when it takes its place, and not before.
class WorkingFile : public CZipFile {
 public:
  using CZipFile::CZipFile;
  void Flush() override {}
};

// Straight into the archive, so that no plain file is needed beside it.
SaveReport save_zipped(const Giver& give, port::ReplacementFile& file, const std::wstring& path,
                       const std::wstring& xml_path) {
  WorkingFile borrowed(file.handle(), path);
  CZipArchive archive;
  archive.Open(borrowed, CZipArchive::modeCreate);
  auto header = std::make_unique<CZipFileHeader>();
  header->SetFileName(CZipPathComponent(xml_path).GetFileName());
  header->SetSystemAttributes(port::k_attribute_archive);
  archive.OpenNewEntry(std::move(header), -1);

  std::exception_ptr fault;
  const elmx_error code = give([&](const char* bytes, std::uint32_t size) {
    try {
      return archive.WriteNewEntry(bytes, size);
    } catch (...) {
      fault = std::current_exception();
      return false;
    }
  });
  if (fault != nullptr) std::rethrow_exception(fault);
  if (code != lmx::elmx_ok) return failure<SaveReport>(code, "");
  archive.Close(CZipArchive::closeNormal, false);
  return {};
}

// Puts the file in its place. What is said of it beyond the code may be lost for want of memory.
void commit(port::ReplacementFile& file, SaveReport& report) {
  using Outcome = port::ReplacementFile::Outcome;
  const Outcome outcome = file.commit();
  const int error = errno;
  const bool is_failed = outcome == Outcome::kept || outcome == Outcome::broken;
  report.code = is_failed ? lmx::elmx_no_file : lmx::elmx_ok;
  report.is_durable = outcome != Outcome::not_durable;
  report.is_overwritten = outcome == Outcome::overwritten || outcome == Outcome::broken;
  try {
    switch (outcome) {
      case Outcome::replaced:
        break;
      case Outcome::kept:
        report.message = system_text(error);
        break;
      case Outcome::not_durable:
        report.message = "Saved, but a loss of power may bring back what was there before: " +
                         system_text(error);
        break;
      case Outcome::overwritten:
        report.message = "The file could not be replaced, so it was written over.";
        break;
      case Outcome::broken:
        report.message =
            "The file could not be replaced, and is incomplete since writing over it failed: " +
            system_text(error);
    }
  } catch (const std::bad_alloc&) {
  }
}

SaveReport save(const Giver& give, const std::wstring& path) {
  const Target target = target_of(path);
  if (!target.is_valid) {
    return failure<SaveReport>(k_suffix_error, "The name must end in .zol or .zolz.");
  }
  port::ReplacementFile file(path);
  if (!file.is_open()) return failure<SaveReport>(lmx::elmx_no_file, system_text(errno));
  SaveReport report =
      target.is_zipped ? save_zipped(give, file, path, target.xml_path) : save_plain(give, file);
  if (report.code == lmx::elmx_ok) commit(file, report);
  return report;
}

}  // namespace

namespace {

// Which rows of which objects kept an object from being written. It is not written all the same
// if there is no memory to say so.
void explain(const Object& document, SaveReport& report) {
  constexpr std::size_t k_most_faults = 100;
  try {
    CheckOptions options;
    options.level = CheckLevel::writing;
    options.limit = k_most_faults;
    report.faults = check(document, options).faults;
    report.message = report.faults.empty()
                         ? lmx::get_error_description(report.code)
                         : report.faults.front().path + ": " + report.faults.front().text();
  } catch (const std::bad_alloc&) {
  }
}

// What is to be refused before anything is touched.
SaveReport judge(const Object& document, const SaveOptions& options) {
  const internal::Class& type = internal::Head::class_of(document);
  if (!type.is(internal::Class::k_document)) {
    return failure<SaveReport>(lmx::elmx_element_not_found, no_document_text(type));
  }
  SaveReport report;
  if (!options.is_checked) return report;
  CheckOptions wanted;
  wanted.level = CheckLevel::reading;
  wanted.is_exact = options.is_exact;
  report.faults = check(document, wanted).faults;
  if (report.faults.empty()) return report;
  report.code = report.faults.front().code;
  report.message = report.faults.front().path + ": " + report.faults.front().text();
  return report;
}

// A document on its way to a taker, which knows what became of it.
Giver giver_of(const Object& document, const SaveOptions& options) {
  return [&](const Taker& take) {
    internal::BlockSink sink(take);
    const elmx_error code = marshal_document(document, sink, options);
    static_cast<void>(sink.finish());
    return code;
  };
}

template <class Operation>
elmx_error save_guarded(const Object& document, const std::wstring& path, SaveReport* report,
                        const SaveOptions& options, Operation operation) noexcept {
  return guarded(report, path, [&] {
    SaveReport outcome = judge(document, options);
    if (outcome.code != lmx::elmx_ok) return outcome;
    outcome = operation();
    if (outcome.code != lmx::elmx_ok && outcome.message.empty()) explain(document, outcome);
    return outcome;
  });
}

SaveReport write_stream(const Giver& give, std::ostream& stream) {
  bool is_good = true;
  // An exception that the stream is told to throw says what its state says.
  const auto attempt = [&](auto write) {
    try {
      write();
      is_good = is_good && stream.good();
    } catch (...) {
      is_good = false;
    }
    return is_good;
  };
  const elmx_error code = give([&](const char* bytes, std::uint32_t size) {
    return attempt([&] { stream.write(bytes, size); });
  });
  if (code != lmx::elmx_ok) return failure<SaveReport>(code, "");
  if (!attempt([&] { stream.flush(); })) {
    return failure<SaveReport>(lmx::elmx_no_file, "The stream failed.");
  }
  return {};
}

}  // namespace

elmx_error saveFile(const Object& document, const std::wstring& path, SaveReport* report,
                    const SaveOptions& options) noexcept {
  return save_guarded(document, path, report, options,
                      [&] { return save(giver_of(document, options), path); });
}

elmx_error saveFile(const Object& document, port::FilePath path, SaveReport* report,
                    const SaveOptions& options) noexcept {
  return on_wide_path(path, report, [&](const std::wstring& wide) {
    return saveFile(document, wide, report, options);
  });
}

elmx_error saveStream(const Object& document, std::ostream& stream, SaveReport* report,
                      const SaveOptions& options) noexcept {
  return save_guarded(document, {}, report, options,
                      [&] { return write_stream(giver_of(document, options), stream); });
}

elmx_error saveString(const Object& document, std::string& text, SaveReport* report,
                      const SaveOptions& options) noexcept {
  return save_guarded(document, {}, report, options, [&] {
    lmx::internal::StringSink sink;
    const elmx_error code = marshal_document(document, sink, options);
    if (code != lmx::elmx_ok) return failure<SaveReport>(code, "");
    sink.move_to(&text);
    return SaveReport();
  });
}

#if !defined(_WIN32)
void removeWorkingFiles() noexcept { port::remove_working_files(); }
#endif

elmx_error saveText(std::string_view text, const std::wstring& path, SaveReport* report) noexcept {
  const auto give = [text](const Taker& take) {
    constexpr std::size_t k_block_size = 0x10000;
    for (std::size_t at = 0; at < text.size(); at += k_block_size) {
      const std::string_view block = text.substr(at, k_block_size);
      if (!take(block.data(), static_cast<std::uint32_t>(block.size()))) break;
    }
    return lmx::elmx_ok;
  };
  return guarded(report, path, [&] { return save(give, path); });
}

elmx_error saveText(std::string_view text, port::FilePath path, SaveReport* report) noexcept {
  return on_wide_path(path, report,
                      [&](const std::wstring& wide) { return saveText(text, wide, report); });
}

}  // namespace zol_v2
