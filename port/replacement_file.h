// A file that takes the place of another one when it is complete, and not before.
#pragma once

#include <memory>
#include <string>

#include "port/files.h"

namespace zol::port {

// Until `commit` the file at `path` stays as it was, and afterwards it is whole, also after a loss
// of power. The work is done on a file beside it, which has no name where the system allows that,
// or one that nobody can foresee, and which is gone if the object dies first. Once the object is
// made, nothing here takes memory. Failures leave their number in `errno`.
class ZOL_API ReplacementFile {
 public:
  // A symbolic link stays one: the file that it leads to is replaced, or made (not on Windows,
  // where a link that leads to nothing is ENOENT). The new file gets the mode, access lists and
  // attributes of the old one, its group and its owner as far as the process may set them, and
  // never more rights for anybody. An old one that is no plain file (EINVAL, EISDIR), or may not be
  // written (EACCES), is not replaced.
  explicit ReplacementFile(const std::wstring& path);
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;
  ~ReplacementFile();

  // Whether the work can be done; if not, the reason is in `errno`.
  bool is_open() const { return handle() != k_no_file; }
  // The working file, to be written to; still the object's. k_no_file if it is not open.
  FileHandle handle() const;

  // How it ended.
  enum class Outcome {
    kept,         // a failure: what stood there is as it was
    replaced,     // all is well
    not_durable,  // the new file is there, but a loss of power may bring the old one back
    overwritten,  // the old file could not be replaced (one on which another is mounted can't), so
                  // it was written over, and a failure would have left it incomplete
    broken        // that failure happened
  };
  // Writes through to the disk, and puts the file in its place. Afterwards the object is closed.
  Outcome commit();

 private:
  class Work;
  std::unique_ptr<Work> work_;  // null: it could not be opened, or is closed
};

#if !defined(_WIN32)
// Removes the named working files of the process, for a signal handler that ends it: makes no calls
// but those that such a handler may make. Of more than 16 at a time some stay.
ZOL_API void remove_working_files() noexcept;
#endif

}  // namespace zol::port
