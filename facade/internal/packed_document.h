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
  // The names of the entry, and of the first further one that is called like a document; empty if
  // there is none. In UTF-8.
  const std::string& entry_name() const { return entry_name_; }
  const std::string& other_name() const { return other_name_; }
  // For people, once something was false.
  const std::string& complaint() const { return complaint_; }

 private:
  bool open_entry(std::uint64_t limit);
  void note_names();

  CZipArchive archive_;
  CZipAutoBuffer text_;
  std::string entry_name_;
  std::string other_name_;
  std::string complaint_;
};

}  // namespace zol_v2::internal
