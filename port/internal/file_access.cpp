#include "port/internal/file_access.h"

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

#if defined(__linux__)
#include <sys/xattr.h>
#endif

namespace zol::port::internal {

#if defined(__linux__)

namespace {

constexpr std::size_t k_most_bytes = 1 << 16;  // of all names, and of a value

constexpr char k_posix_list[] = "system.posix_acl_access";

bool is_list(std::string_view name) {
  return name == k_posix_list || name == "system.nfs4_acl" || name == "system.richacl";
}

bool is_of_users(std::string_view name) { return name.substr(0, 5) == "user."; }

// The policy of the system labels new files, and not everyone may set another label.
bool is_label(std::string_view name) {
  return name == "security.selinux" || name == "security.SMACK64";
}

// A POSIX access list as an attribute: a version of four bytes, then entries of a tag (2 bytes),
// the rights (2) and an id (4), all little-endian.
class PosixList {
 public:
  enum Tag : unsigned char { group = 0x04, mask = 0x10, others = 0x20 };

  explicit PosixList(std::string& bytes) : bytes_(bytes) {}

  // All of them if there is no such entry.
  mode_t rights(Tag tag) const {
    const std::size_t at = find(tag);
    return at < bytes_.size() ? static_cast<unsigned char>(bytes_[at]) : mode_t{07};
  }
  void set_rights(Tag tag, mode_t rights) {
    const std::size_t at = find(tag);
    if (at < bytes_.size()) bytes_[at] = static_cast<char>(rights);
  }

 private:
  std::size_t find(Tag tag) const {
    std::size_t at = 4;
    while (at + 8 <= bytes_.size() && static_cast<unsigned char>(bytes_[at]) != tag) at += 8;
    return at + 8 <= bytes_.size() ? at + 2 : bytes_.size();
  }

  std::string& bytes_;
};

}  // namespace

bool FileAccess::read_attributes(const std::string& path) {
  std::string names(k_most_bytes, '\0');
  const ssize_t size = ::llistxattr(path.c_str(), names.data(), names.size());
  if (size == -1) return errno == ENOTSUP || errno == ENOSYS;
  for (ssize_t at = 0; at < size;) {
    const char* const name = names.c_str() + at;
    at += static_cast<ssize_t>(std::strlen(name)) + 1;
    const bool is_kept = is_of_users(name) || is_list(name) || is_label(name);
    if (is_kept && !read_attribute(path, name)) return false;
  }
  return true;
}

bool FileAccess::read_attribute(const std::string& path, const char* name) {
  std::string value(k_most_bytes, '\0');
  const ssize_t size = ::lgetxattr(path.c_str(), name, value.data(), value.size());
  if (size == -1) return errno == ENODATA || is_label(name);
  value.resize(static_cast<std::size_t>(size));
  if (name == std::string_view(k_posix_list)) {
    list_without_group_ = value;
    PosixList list(list_without_group_);
    const mode_t group = list.rights(PosixList::group) & list.rights(PosixList::mask);
    const mode_t common = group & list.rights(PosixList::others);
    list.set_rights(PosixList::group, common);
    list.set_rights(PosixList::others, common);
  }
  (is_list(name) ? lists_ : attributes_).push_back({name, std::move(value)});
  return true;
}

bool FileAccess::give_attributes(int file) const {
  for (const Attribute& each : attributes_) {
    const char* const name = each.name.c_str();
    const int done = ::fsetxattr(file, name, each.value.data(), each.value.size(), 0);
    if (done != 0 && !is_label(name)) return false;
  }
  // A directory may give a list of its own to every new file.
  return ::fremovexattr(file, k_posix_list) == 0 || errno == ENODATA || errno == ENOTSUP;
}

bool FileAccess::give_lists(int file, bool has_group) const {
  for (const Attribute& each : lists_) {
    if (!has_group && each.name != k_posix_list) {
      errno = EPERM;  // nobody here can cut a list of that kind
      return false;
    }
    const std::string& list = has_group ? each.value : list_without_group_;
    if (::fsetxattr(file, each.name.c_str(), list.data(), list.size(), 0) != 0) return false;
  }
  return true;
}

#else

bool FileAccess::read_attributes(const std::string&) { return true; }
bool FileAccess::give_attributes(int) const { return true; }
bool FileAccess::give_lists(int, bool) const { return true; }

#endif

bool FileAccess::read(const std::string& path, const struct stat& status) {
  status_ = status;
  return read_attributes(path);
}

bool FileAccess::give_to(int file) const {
  struct stat born = {};
  if (::fstat(file, &born) != 0 || !give_attributes(file)) return false;

  // One by one: a process may set the group and not the owner. The owner comes last, since what is
  // given away may not be changed any more.
  constexpr uid_t k_same_owner = static_cast<uid_t>(-1);
  constexpr gid_t k_same_group = static_cast<gid_t>(-1);
  const bool has_group =
      born.st_gid == status_.st_gid || ::fchown(file, k_same_owner, status_.st_gid) == 0;
  const bool has_owner =
      born.st_uid == status_.st_uid || ::fchown(file, status_.st_uid, k_same_group) == 0;

  mode_t mode = status_.st_mode & (has_owner && has_group ? 07777 : 0777);
  if (!has_group) {
    const mode_t common = mode >> 3 & mode & 07;
    mode = (mode & 0700) | common << 3 | common;
  }
  return ::fchmod(file, mode) == 0 && give_lists(file, has_group);
}

}  // namespace zol::port::internal
