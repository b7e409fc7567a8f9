#include "tools/document_text.h"

#include <cerrno>
#include <cstring>

#include "port/files.h"
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

bool is_trouble(const zol_v2::LoadReport& report) {
  return report.code == lmx::elmx_no_file ||
         (report.code == lmx::elmx_user_defined_1 && report.archive_cause == 0);
}

bool is_unusable(const zol_v2::LoadReport& report) {
  return report.code == lmx::elmx_user_defined_1 && report.archive_cause != 0;
}

zol_v2::LoadReport DocumentText::read(const std::string& path) {
  zol_v2::LoadReport report;
  if (path != k_standard_stream) {
    (void)zol_v2::readText(text_, wide_path(path), &report);
    return report;
  }
  text_.clear();
  if (!read_standard_input(&text_)) {
    report.code = lmx::elmx_no_file;
    report.message = std::strerror(errno);
  } else if (text_.compare(0, k_archive_magic.size(), k_archive_magic) == 0) {
    (void)zol_v2::unpackText(text_, text_, &report);
  }
  return report;
}
