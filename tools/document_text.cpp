#include "tools/document_text.h"

#include <cerrno>
#include <cstring>

#include "model/Zol.h"
#include "port/files.h"
#include "port/wide_text.h"
#include "tools/file_walk.h"
#include "tools/text.h"

namespace {

constexpr std::string_view k_archive_magic = "PK\x03\x04";
constexpr zol::port::FileHandle k_standard_input = 0;

// False with the reason in `errno`.
bool read_standard_input(std::string* bytes) {
  constexpr std::size_t k_block = 1 << 18;
  while (true) {
    const std::size_t begin = bytes->size();
    bytes->resize(begin + k_block);
    const std::size_t count = zol::port::read_handle(k_standard_input, &(*bytes)[begin], k_block);
    bytes->resize(begin + count);
    if (count < k_block) return errno == 0;
  }
}

}  // namespace

bool read_bytes(const std::string& path, std::string* bytes) {
  return path == k_standard_stream ? read_standard_input(bytes) : read_named_file(path, bytes);
}

bool is_trouble(const zol_v2::LoadReport& report) {
  return report.code == lmx::elmx_no_file ||
         (report.code == lmx::elmx_user_defined_1 && report.archive_cause == 0);
}

bool DocumentSource::has_name() const {
  return path_ != k_standard_stream && zol::port::is_utf8(path_.data(), path_.size()) &&
         !is_stream(path_);
}

zol_v2::LoadReport DocumentSource::read_input() {
  zol_v2::LoadReport report;
  if (is_read_) return report;
  is_read_ = true;
  if (has_name()) {
    (void)zol_v2::readText(bytes_, wide_path(path_), &report);
    return report;
  }
  if (read_bytes(path_, &bytes_)) return report;
  report.code = lmx::elmx_no_file;
  report.message = std::strerror(errno);
  return report;
}

zol_v2::LoadReport DocumentSource::load(zol_v2::Zol& document, const zol_v2::LoadOptions& options) {
  zol_v2::LoadReport report;
  if (!is_in_memory()) {
    (void)zol_v2::openFile(document, wide_path(path_), &report, options);
    return report;
  }
  report = read_input();
  if (report.code == lmx::elmx_ok) (void)zol_v2::openText(document, bytes_, &report, options);
  return report;
}

zol_v2::LoadReport DocumentSource::check(const zol_v2::LoadOptions& options,
                                         zol_v2::CheckLevel level) {
  zol_v2::LoadReport report;
  if (!is_in_memory()) {
    (void)zol_v2::judgeFile(wide_path(path_), &report, options, level);
    return report;
  }
  report = read_input();
  if (report.code == lmx::elmx_ok) (void)zol_v2::judgeText(bytes_, &report, options, level);
  return report;
}

zol_v2::LoadReport DocumentSource::read(std::string* text) {
  zol_v2::LoadReport report;
  if (!is_in_memory()) {
    (void)zol_v2::readText(*text, wide_path(path_), &report);
    return report;
  }
  report = read_input();
  if (report.code != lmx::elmx_ok) return report;
  if (bytes_.compare(0, k_archive_magic.size(), k_archive_magic) == 0) {
    (void)zol_v2::unpackText(*text, bytes_, &report);
  } else {
    *text = bytes_;
  }
  return report;
}
