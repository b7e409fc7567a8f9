#include "facade/files.h"

#include <cerrno>
#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "facade/internal/block_sink.h"
#include "facade/internal/file_source.h"
#include "facade/internal/memory_file.h"
#include "facade/internal/packed_document.h"
#include "facade/internal/well_formed.h"
#include "lmx/reader.h"
#include "lmx/writer.h"
#include "model/Zol.h"
#include "model/sdk_stamp.h"
#include "port/files.h"
#include "port/replacement_file.h"
#include "port/wide_text.h"
#include "zip/archive.h"
#include "zip/path_component.h"

namespace zol_v2 {

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

elmx_error marshal_stamped(const Zol& document, std::streambuf& sink) {
  std::ostream stream(&sink);
  lmx::c_xml_writer writer(stream, lmx::c_xml_writer::include_xml_decl, "\t", "\n");
  // Writing leaves its mark in the document by design.
  SdkStamp().stampWrite(const_cast<Zol&>(document));
  return document.marshal(writer, Zol::k_element_name);
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
    error = marshal_stamped(document, sink);
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

template <class Report>
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
  } catch (...) {
    outcome = Report();
    outcome.code = k_archive_error;
  }
  const elmx_error code = outcome.code;
  if (report != nullptr) *report = std::move(outcome);
  return code;
}

LoadReport unusable(const internal::PackedDocument& packed) {
  return failure<LoadReport>(k_archive_error, packed.complaint(), CZipException::generic);
}

// Of a source that is not whole.
LoadReport failure_of(const internal::FileSource& source, const LoadOptions& options) {
  if (source.error() != 0) {
    return failure<LoadReport>(lmx::elmx_no_file, system_text(source.error()));
  }
  return failure<LoadReport>(k_archive_error, "The document is larger than the limit of " +
                                                  std::to_string(options.largest_document) +
                                                  " bytes.");
}

LoadReport read_document(Zol& document, lmx::c_xml_reader& reader) {
  LoadReport report;
  report.code = document.unmarshal(reader);
  if (report.code == lmx::elmx_ok) return report;
  report.line = reader.get_line_no();
  report.item = reader.get_error_item_name();
  reader.get_error_message(&report.message);
  if (report.message == lmx::get_error_description(lmx::elmx_ok)) {
    // No handler was asked, which would have noted these: the fault is in the element at hand.
    report.item = reader.get_full_name();
    report.message = "line:" + std::to_string(report.line) + "-'" + report.item + "'-" +
                     lmx::get_error_description(report.code);
  }
  return report;
}

LoadReport check_text(std::string_view text) {
  LoadReport report;
  const std::vector<internal::XmlFault> faults = internal::find_xml_faults(text, 1);
  if (faults.empty()) return report;
  const internal::XmlFault& fault = faults.front();
  report.code = lmx::elmx_not_well_formed;
  report.line = static_cast<int>(fault.line);
  report.column = static_cast<int>(fault.column);
  report.item = fault.item;
  report.message = "line:" + std::to_string(fault.line) + "-'" + fault.item + "'-" +
                   lmx::get_error_description(report.code) + " at column " +
                   std::to_string(fault.column) + ": " + fault.sentence;
  return report;
}

LoadReport read_document(Zol& document, std::string_view text, const LoadOptions& options) {
  lmx::c_xml_reader_memory reader(text.data(), text.size());
  LoadReport report = read_document(document, reader);
  return options.strict && report.code == lmx::elmx_ok ? check_text(text) : report;
}

LoadReport read_text(std::string& text, const std::wstring& path, const LoadOptions& options) {
  if (has_suffix(path, k_zipped_suffix)) {
    internal::PackedDocument packed;
    if (!packed.open(path, options.largest_document) || !packed.read()) return unusable(packed);
    text = packed.text();
    return {};
  }
  internal::FileSource source(path, options.largest_document);
  if (!source.is_open()) return failure<LoadReport>(lmx::elmx_no_file, system_text(errno));
  const char* block = nullptr;
  while (const std::size_t size = source.read_block(&block)) text.append(block, size);
  return source.is_whole() ? LoadReport() : failure_of(source, options);
}

LoadReport load(Zol& document, const std::wstring& path, const LoadOptions& options) {
  if (has_suffix(path, k_zipped_suffix)) {
    internal::PackedDocument packed;
    if (!packed.open(path, options.largest_document) || !packed.read()) return unusable(packed);
    return read_document(document, packed.text(), options);
  }
  if (options.strict) {
    std::string text;
    const LoadReport report = read_text(text, path, options);
    return report.code == lmx::elmx_ok ? read_document(document, text, options) : report;
  }
  internal::FileSource source(path, options.largest_document);
  if (!source.is_open()) return failure<LoadReport>(lmx::elmx_no_file, system_text(errno));
  lmx::c_xml_reader reader(source);
  LoadReport report = read_document(document, reader);
  if (source.is_whole()) return report;
  return failure_of(source, options);
}

// Runs an operation on something new, which takes the place of what stands there if all is well.
template <class T, class Operation>
LoadReport replacing(T& old, Operation operation) {
  T fresh;
  LoadReport report = operation(fresh);
  if (report.code == lmx::elmx_ok) old.swap(fresh);
  return report;
}

}  // namespace

elmx_error openFile(Zol& document, const std::wstring& path, LoadReport* report,
                    const LoadOptions& options) noexcept {
  return guarded(report, path, [&] {
    return replacing(document, [&](Zol& loaded) { return load(loaded, path, options); });
  });
}

elmx_error openText(Zol& document, std::string_view text, LoadReport* report,
                    const LoadOptions& options) noexcept {
  return guarded(report, {}, [&] {
    return replacing(document, [&](Zol& loaded) { return read_document(loaded, text, options); });
  });
}

elmx_error checkText(std::string_view text, LoadReport* report) noexcept {
  return guarded(report, {}, [&] { return check_text(text); });
}

elmx_error readText(std::string& text, const std::wstring& path, LoadReport* report,
                    const LoadOptions& options) noexcept {
  return guarded(report, path, [&] {
    return replacing(text, [&](std::string& bytes) { return read_text(bytes, path, options); });
  });
}

elmx_error unpackText(std::string& text, std::string_view archive, LoadReport* report,
                      const LoadOptions& options) noexcept {
  return guarded(report, {}, [&] {
    internal::MemoryFile file(archive);
    internal::PackedDocument packed;
    if (!packed.open(file, options.largest_document) || !packed.read()) return unusable(packed);
    text = packed.text();
    return LoadReport();
  });
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
  if (code != lmx::elmx_ok) return failure<SaveReport>(code, lmx::get_error_description(code));
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
  if (code != lmx::elmx_ok) return failure<SaveReport>(code, lmx::get_error_description(code));
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

elmx_error saveFile(const Zol& document, const std::wstring& path, SaveReport* report) noexcept {
  const auto give = [&document](const Taker& take) {
    internal::BlockSink sink(take);
    const elmx_error code = marshal_stamped(document, sink);
    static_cast<void>(sink.finish());  // the taker knows what became of it
    return code;
  };
  return guarded(report, path, [&] { return save(give, path); });
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

}  // namespace zol_v2
