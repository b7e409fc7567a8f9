// Writes documents for the commands that change them, and pictures for those that draw them.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "port/replacement_file.h"
#include "tools/exit_status.h"

namespace zol_v2 {
class Zol;
}

// What a document is written to: a file, or standard output for "-".
struct SaveTarget {
  std::string path;
  bool replaces = false;  // an older file
};

// By its suffix; standard output may be one, too.
bool is_document_name(const std::string& path);

// A fault of an argument that names a file to write, or an empty text.
std::string check_document_name(const std::string& path);

// A fault of an argument that names a picture or a page to write, which must never take the place
// of a document; or an empty text.
std::string check_picture_name(const std::string& path);

// Tells that the file is there and may not be replaced; false if there is no such obstacle.
bool is_in_the_way(const SaveTarget& target);

// Bytes that come bit by bit, and are in their file, or on standard output for "-", when they are
// whole.
class WholeOutput {
 public:
  explicit WholeOutput(const std::string& path);

  // False if not all was taken so far.
  bool is_good() const { return error_ == 0; }
  bool write(std::string_view bytes);
  // Afterwards nothing more is written. The message, if there is one, is to be told.
  ExitStatus commit(std::string* message);

 private:
  bool fail();

  std::unique_ptr<zol::port::ReplacementFile> file_;  // null for standard output
  std::string waiting_;                               // for standard output
  int error_ = 0;                                     // `errno` of the first failure
};

// With all digits, judged before; the older file stays until the new one is whole. What keeps the
// document from being written is told by paths, as faults of the document `name`.
ExitStatus save_document(const zol_v2::Zol& document, const SaveTarget& target,
                         const std::string& name);

// To a file, which replaces an older one when it is complete, or to standard output for "-".
ExitStatus save_picture(const std::string& text, const std::string& path);
