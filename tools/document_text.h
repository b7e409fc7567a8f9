// The text of a document, wherever it comes from.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "facade/files.h"

// The argument that stands for standard input or output.
constexpr char k_standard_stream[] = "-";

// What an archive that can't be used is called.
constexpr char k_archive_message[] = "Unusable archive";

// Whether a file could not be read at all: nothing is said about a document then.
bool is_trouble(const zol_v2::LoadReport& report);
// Whether it is an archive that can't be used.
bool is_unusable(const zol_v2::LoadReport& report);

class DocumentText {
 public:
  // Reads a file, or standard input for "-", and unpacks the first entry of an archive: a file is
  // one if its name ends in ".zolz", standard input if it begins like one.
  zol_v2::LoadReport read(const std::string& path);

  std::string_view view() const { return text_; }
  const char* data() const { return text_.data(); }
  std::size_t size() const { return text_.size(); }

 private:
  std::string text_;
};
