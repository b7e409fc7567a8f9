#include "facade/files.h"

#include <cerrno>
#include <exception>
#include <memory>
#include <new>
#include <ostream>
#include <string_view>
#include <utility>

#include "facade/internal/block_sink.h"
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

// The document in the first entry of an archive.
class ZippedDocument {
 public:
  // Leaves the entry open, and room for it. False if there is none, or if the archive is too short
  // for what the entry claims, which then nobody needs to allocate.
  bool open(const std::wstring& path) {
    archive_.Open(path, CZipArchive::modeReadOnly, 0);
    archive_.OpenEntry(0);
    const CZipFileHeader* const entry = archive_.EntryAt(0);
    if (entry == nullptr || !archive_.CanHold(*entry)) return false;
    text_.Allocate(entry->uncompressed_size, false);
    return true;
  }

  // Everything, and the archive is closed. The entry must end exactly at its size.
  void read() {
    char more = 0;
    const bool is_whole = archive_.ReadEntry(text_, text_.GetSize()) == text_.GetSize() &&
                          archive_.ReadEntry(&more, 1) == 0 &&
                          archive_.CloseEntry(nullptr, false) == 1;
    if (!is_whole) throw CZipException(CZipException::generic, archive_.GetArchivePath());
    archive_.Close(CZipArchive::closeNormal, false);
  }

  // Good as long as the object.
  const char* text() const { return text_.GetBuffer(); }
  std::size_t size() const { return text_.GetSize(); }

 private:
  CZipArchive archive_;
  CZipAutoBuffer text_;
};

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
    ZippedDocument zipped;
    if (!zipped.open(path)) return k_archive_error;
    try {
      zipped.read();
      lmx::c_xml_reader_memory reader(zipped.text(), zipped.size());
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

// A cause that is an `errno` value is about the file, any other one about the archive.
elmx_error code_of(const CZipException& exception) {
  return exception.GetCause() < CZipException::generic ? lmx::elmx_no_file : k_archive_error;
}

std::string message_of(const CZipException& exception) {
  if (exception.GetCause() == CZipException::generic) {
    return "The document in the archive can't be unpacked, or has not the size it claims.";
  }
  return port::to_utf8(exception.ErrorText());
}

LoadReport failure(elmx_error code, std::string message) {
  LoadReport report;
  report.code = code;
  report.message = std::move(message);
  return report;
}

// Reads the text, and reports on it.
LoadReport read_document(Zol& document, lmx::c_xml_reader& reader) {
  LoadReport report;
  report.code = document.unmarshal(reader);
  if (report.code == lmx::elmx_ok) return report;
  report.line = reader.get_line_no();
  report.item = reader.get_error_item_name();
  reader.get_error_message(&report.message);
  return report;
}

LoadReport load(Zol& document, const std::wstring& path) {
  if (has_suffix(path, k_zipped_suffix)) {
    ZippedDocument zipped;
    if (!zipped.open(path)) {
      throw CZipException(CZipException::generic, path);
    }
    zipped.read();
    lmx::c_xml_reader_memory reader(zipped.text(), zipped.size());
    return read_document(document, reader);
  }
  errno = 0;
  lmx::c_xml_reader_file reader(plain_name(path));
  if (reader.is_open()) return read_document(document, reader);
  return failure(lmx::elmx_no_file, port::to_utf8(port::system_error_text(errno)));
}

}  // namespace

elmx_error openFile(Zol& document, const std::wstring& path, LoadReport* report) noexcept {
  LoadReport outcome;
  try {
    try {
      Zol loaded;
      outcome = load(loaded, path);
      if (outcome.code == lmx::elmx_ok) document.swap(loaded);
    } catch (const CZipException& exception) {
      outcome = failure(code_of(exception), message_of(exception));
      outcome.archive_cause = exception.GetCause();
    } catch (const std::bad_alloc&) {
      outcome = failure(k_archive_error, "Not enough memory.");
    }
  } catch (...) {
    outcome = LoadReport();
    outcome.code = k_archive_error;
  }
  const elmx_error code = outcome.code;
  if (report != nullptr) *report = std::move(outcome);
  return code;
}

namespace {

elmx_error save_plain(const Zol& document, port::ReplacementFile& file) {
  internal::BlockSink sink([&file](const char* bytes, std::uint32_t size) {
    return port::write_handle(file.handle(), bytes, size);
  });
  if (const elmx_error error = marshal_stamped(document, sink)) return error;
  return sink.finish() ? lmx::elmx_ok : lmx::elmx_no_file;
}

// Straight into the archive, so that no plain file is needed beside it.
elmx_error save_zipped(const Zol& document, port::ReplacementFile& file, const std::wstring& name) {
  CZipFile borrowed(file.handle(), file.working_path());
  CZipArchive archive;
  archive.Open(borrowed, CZipArchive::modeCreate);
  auto header = std::make_unique<CZipFileHeader>();
  header->SetFileName(CZipPathComponent(name).GetFileName());
  header->SetSystemAttributes(port::k_attribute_archive);
  if (!archive.OpenNewEntry(std::move(header), -1)) return k_archive_error;

  std::exception_ptr fault;
  internal::BlockSink sink([&](const char* bytes, std::uint32_t size) {
    try {
      return archive.WriteNewEntry(bytes, size);
    } catch (...) {
      fault = std::current_exception();
      return false;
    }
  });
  const elmx_error error = marshal_stamped(document, sink);
  const bool is_written = sink.finish();
  if (fault != nullptr) std::rethrow_exception(fault);
  if (error != lmx::elmx_ok) return error;
  if (!is_written) return k_archive_error;
  archive.Close(CZipArchive::closeNormal, false);
  return lmx::elmx_ok;
}

}  // namespace

elmx_error saveFile(const Zol& document, const std::wstring& path) noexcept {
  bool is_zipped = false;
  try {
    const Target target = target_of(path);
    if (!target.is_valid) return k_suffix_error;
    is_zipped = target.is_zipped;
    port::ReplacementFile file(path);
    if (!file.is_open()) return lmx::elmx_no_file;
    const elmx_error error =
        is_zipped ? save_zipped(document, file, target.xml_path) : save_plain(document, file);
    if (error != lmx::elmx_ok) return error;
    return file.commit() ? lmx::elmx_ok : lmx::elmx_no_file;
  } catch (const CZipException& exception) {
    return code_of(exception);
  } catch (...) {
    return k_archive_error;
  }
}

}  // namespace zol_v2
