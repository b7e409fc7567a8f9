// A document, wherever it comes from.
#pragma once

#include <string>
#include <utility>

#include "facade/check.h"
#include "facade/files.h"

namespace zol_v2 {
class Zol;
}

// The argument that stands for standard input or output.
constexpr char k_standard_stream[] = "-";

// Whether a file could not be read at all: nothing is said about a document then.
bool is_trouble(const zol_v2::LoadReport& report);

// What a file holds, whatever it is, or standard input for "-"; false with the reason in `errno`.
bool read_bytes(const std::string& path, std::string* bytes);

// A file, a plain document or an archive, or standard input for "-", which is read once.
class DocumentSource {
 public:
  explicit DocumentSource(std::string path) : path_(std::move(path)) {}

  const std::string& path() const { return path_; }
  // Has the text in memory from now on, for a caller that loads the document and reads the text.
  void hold() { is_held_ = true; }

  zol_v2::LoadReport load(zol_v2::Zol& document, const zol_v2::LoadOptions& options = {});
  // Judges without keeping anything.
  zol_v2::LoadReport check(const zol_v2::LoadOptions& options, zol_v2::CheckLevel level);
  // The text as it stands, out of the archive if it is in one.
  zol_v2::LoadReport read(std::string* text);

 private:
  zol_v2::LoadReport read_input();
  // Whether the name is one that the library takes, of something that can be read again.
  bool has_name() const;
  bool is_in_memory() const { return is_held_ || !has_name(); }

  std::string path_;
  std::string bytes_;
  bool is_held_ = false;
  bool is_read_ = false;
};
