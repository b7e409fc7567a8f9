// The text of a document, wherever it comes from.
#pragma once

#include <cstddef>
#include <string>

#include "lmx/errors.h"

// The argument that stands for standard input or output.
constexpr char k_standard_stream[] = "-";

// What an archive that can't be used is called; its code is the one of the library.
constexpr lmx::elmx_error k_archive_error = lmx::elmx_user_defined_1;
constexpr char k_archive_message[] = "Unusable archive";

class DocumentText {
 public:
  // Reads a file, or standard input for "-", and unpacks the first entry of an archive: a file is
  // one if its name ends in ".zolz", standard input if it begins like one. Gives 0, 1 if the bytes
  // can't be read, or k_archive_error; *reason then says why.
  lmx::elmx_error read(const std::string& path, std::string* reason);

  const char* data() const { return text_.data(); }
  std::size_t size() const { return text_.size(); }

 private:
  std::string text_;
};
