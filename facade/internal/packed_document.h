// The document in the first entry of an archive.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "zip/archive.h"

namespace zol_v2::internal {

// What the archive itself complains of is a CZipException.
class PackedDocument {
 public:
  static constexpr std::uint64_t k_no_limit = std::numeric_limits<std::uint64_t>::max();

  // Opens the entry, and makes room for it. False if there is none or it can't be read here, and if
  // it claims more than the limit or than the archive is long enough for: memory that nobody needs.
  bool open(const std::wstring& path, std::uint64_t limit = k_no_limit);
  bool open(CZipAbstractFile& file, std::uint64_t limit);
  // Takes everything, and closes the archive. False if the entry does not end exactly at its size.
  bool read();

  // Good as long as the object.
  std::string_view text() const { return {text_.GetBuffer(), text_.GetSize()}; }
  // For people, once something was false.
  const std::string& complaint() const { return complaint_; }

 private:
  bool open_entry(std::uint64_t limit);

  CZipArchive archive_;
  CZipAutoBuffer text_;
  std::string complaint_;
};

}  // namespace zol_v2::internal
