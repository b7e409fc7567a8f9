// Who may do what with a file: owner, group, mode, access list and attributes, on their way to the
// file that takes its place.
#pragma once

#include <sys/stat.h>

#include <string>
#include <vector>

namespace zol::port::internal {

// Nobody gets to a file by its replacement who could not get to the file itself: what can't be
// carried over is taken away, or the replacement is refused.
class FileAccess {
 public:
  // Notes what `path` has, whose status is at hand. False if a part that must be carried over can't
  // be read; the reason is in `errno`.
  bool read(const std::string& path, const struct stat& status);

  // Gives it to a file that was created for its owner alone, and is still empty. The owner and the
  // group are those of the old file where the process may set them; where it may not, set-id bits
  // go, and without the group its members and all others get what both had. Takes no memory. False
  // with the reason in `errno`.
  bool give_to(int file) const;

 private:
  struct Attribute {
    std::string name;
    std::string value;
  };

  bool read_attributes(const std::string& path);
  bool read_attribute(const std::string& path, const char* name);
  bool give_attributes(int file) const;
  bool give_lists(int file, bool has_group) const;

  struct stat status_ = {};
  std::vector<Attribute> attributes_;
  std::vector<Attribute> lists_;  // of access
  std::string list_without_group_;
};

}  // namespace zol::port::internal
