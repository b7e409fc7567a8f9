// A file that takes the place of another one when it is complete, and not before.
#pragma once

#include <string>

#include "port/files.h"

namespace zol::port {

// Until `commit` the file at `path` stays as it was, and afterwards it is whole, also after a loss
// of power. The work is done on a file beside it, under a name that nobody can foresee, which is
// gone if the object dies first. Failures leave their number in `errno`.
class ZOL_API ReplacementFile {
 public:
  // A symbolic link stays one: the file that it leads to is replaced. The new file gets the
  // permissions of the old one. An old one that is no plain file (EINVAL), or may not be written
  // (EACCES), is not replaced.
  explicit ReplacementFile(const std::wstring& path);
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;
  ~ReplacementFile();

  bool is_open() const { return handle_ != k_no_file; }
  FileHandle handle() const { return handle_; }
  // Where the work is done.
  const std::wstring& working_path() const { return working_path_; }

  // Writes through to the disk, and puts the file in its place. The file is closed in any case.
  bool commit();

 private:
  bool prepare(const std::wstring& path);

  std::wstring target_;
  std::wstring working_path_;  // empty: there is none, or none any more
  FileHandle handle_ = k_no_file;
};

}  // namespace zol::port
