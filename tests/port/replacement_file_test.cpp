// What a replaced file keeps, and what stands in its directory meanwhile.
#include "port/replacement_file.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

#include "support/failing_calls.h"
#include "support/files.h"

namespace {

using namespace zol_test;
using zol::port::ReplacementFile;
using Names = std::vector<std::string>;
using Outcome = ReplacementFile::Outcome;

Outcome replace(const std::wstring& path, const std::string& bytes = "newer") {
  ReplacementFile file(path);
  if (!file.is_open()) return Outcome::kept;
  EXPECT_TRUE(zol::port::write_handle(file.handle(), bytes.data(), bytes.size()));
  return file.commit();
}

struct stat status_of(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status;
}

unsigned mode_of(const std::string& path) { return status_of(path).st_mode & 07777; }

// No file without a name, as on a file system that has none of them.
class NamedOnly {
 public:
  NamedOnly() { fail_call({1, false, EOPNOTSUPP, "openat"}); }
  NamedOnly(const NamedOnly&) = delete;
  NamedOnly& operator=(const NamedOnly&) = delete;
  ~NamedOnly() { end_failing_calls(); }
};

TEST(ReplacementFile, FollowsLinks) {
  struct Case {
    const char* what;
    const char* link;  // of "a.zol"
    const char* made;  // null: none
  };
  const Case cases[] = {
      {"a file", "there.zol", "there.zol"},
      {"no file yet", "missing.zol", "missing.zol"},
      {"no file yet, in another directory", "sub/missing.zol", "sub/missing.zol"},
      {"a link to no file yet", "sub/link.zol", "sub/far.zol"},
      {"no directory", "no/missing.zol", nullptr},
      {"a directory", "sub", nullptr},
      {"itself", "a.zol", nullptr},
      {"a device", "/dev/null", nullptr},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    TempDir dir;
    write_file(dir.file("there.zol"), "older");
    ASSERT_EQ(::mkdir(dir.file("sub").c_str(), 0755), 0);
    ASSERT_EQ(::symlink("far.zol", dir.file("sub/link.zol").c_str()), 0);
    ASSERT_EQ(::symlink(each.link, dir.file("a.zol").c_str()), 0);
    EXPECT_EQ(replace(dir.wide("a.zol")), each.made ? Outcome::replaced : Outcome::kept);
    EXPECT_TRUE(S_ISLNK(status_of(dir.file("a.zol")).st_mode));
    if (each.made != nullptr) {
      EXPECT_EQ(read_file(dir.file(each.made)), "newer");
    }
    for (const std::string& name : dir.names()) EXPECT_NE(name.rfind(".zol-", 0), 0u) << name;
  }
}

TEST(ReplacementFile, LeavesNothingBeside) {
  for (const bool is_named : {false, true}) {
    TempDir dir;
    if (!is_named && !dir.takes_nameless_files()) continue;
    write_file(dir.file("a.zol"), "older");
    ASSERT_EQ(::chmod(dir.file("a.zol").c_str(), 0600), 0);
    std::optional<NamedOnly> named;
    if (is_named) named.emplace();
    {
      const ReplacementFile file(dir.wide("a.zol"));
      ASSERT_TRUE(file.is_open());
      const Names names = dir.names();
      ASSERT_EQ(names.size(), is_named ? 2u : 1u);
      if (is_named) {
        EXPECT_EQ(names[0].substr(0, 5), ".zol-");
        EXPECT_EQ(mode_of(dir.file(names[0])), 0600u) << "the older file is closed to others";
      }
    }
    EXPECT_EQ(dir.names(), Names{"a.zol"});
    EXPECT_EQ(read_file(dir.file("a.zol")), "older");
  }
}

TEST(ReplacementFile, IsBornClosedToOthers) {
  TempDir dir;
  write_file(dir.file("a.zol"), "older");
  const mode_t old_mask = ::umask(0);
  // A file that gets no rights of the older one, and can't be removed, has those of its birth.
  fail_calls(
      {{1, false, EOPNOTSUPP, "openat"}, {1, true, EIO, "fstat"}, {1, true, EIO, "unlinkat"}});
  EXPECT_FALSE(ReplacementFile(dir.wide("a.zol")).is_open());
  end_failing_calls();
  ::umask(old_mask);
  ASSERT_EQ(dir.names().size(), 2u);
  EXPECT_EQ(mode_of(dir.file(dir.names()[0])), 0600u);
}

// There is no moment at which a kill would leave a file of another name.
TEST(ReplacementFile, GetsItsNameAtOnceWhereNothingStands) {
  TempDir dir;
  if (!dir.takes_nameless_files()) GTEST_SKIP() << "this needs a file system with nameless files";
  ReplacementFile file(dir.wide("a.zol"));
  fail_call({1, true, EIO, "renameat"});
  EXPECT_EQ(file.commit(), Outcome::replaced);
  end_failing_calls();
  EXPECT_EQ(dir.names(), Names{"a.zol"});
}

TEST(ReplacementFile, GoesWithASignal) {
  TempDir dir;
  const NamedOnly named;
  ReplacementFile first(dir.wide("a.zol"));
  ReplacementFile second(dir.wide("b.zol"));
  ASSERT_FALSE(dir.names().empty());
  zol::port::remove_working_files();
  EXPECT_TRUE(dir.names().empty());
  EXPECT_EQ(first.commit(), Outcome::kept);
  EXPECT_EQ(replace(dir.wide("c.zol")), Outcome::replaced);
  zol::port::remove_working_files();
  EXPECT_EQ(dir.names(), Names{"c.zol"});
}

TEST(ReplacementFile, IsWrittenOverWhereItIsAMount) {
  struct Case {
    const char* what;
    CallFault fault;
    Outcome outcome;
  };
  const Case cases[] = {
      {"there is room", {9, false, EIO, "fallocate"}, Outcome::overwritten},
      {"nobody can say", {1, false, EOPNOTSUPP, "fallocate"}, Outcome::overwritten},
      {"there is no room", {1, false, ENOSPC, "fallocate"}, Outcome::kept},
      {"it can't be written", {2, true, EIO, "openat"}, Outcome::kept},
      {"writing fails", {2, true, EIO, "write"}, Outcome::broken},
      {"cutting fails", {1, true, EIO, "ftruncate"}, Outcome::broken},
  };
  for (const std::string& older :
       {std::string("older and longer than the newer one"), std::string()}) {
    for (const Case& each : cases) {
      SCOPED_TRACE(each.what);
      TempDir dir;
      write_file(dir.file("a.zol"), older);
      const ino_t inode = status_of(dir.file("a.zol")).st_ino;
      fail_calls({{1, true, EBUSY, "renameat"}, each.fault});
      const Outcome outcome = replace(dir.wide("a.zol"));
      end_failing_calls();
      EXPECT_EQ(outcome, each.outcome);
      EXPECT_EQ(dir.names(), Names{"a.zol"});
      EXPECT_EQ(status_of(dir.file("a.zol")).st_ino, inode);
      if (outcome == Outcome::overwritten) {
        EXPECT_EQ(read_file(dir.file("a.zol")), "newer");
      } else if (outcome == Outcome::kept) {
        EXPECT_EQ(read_file(dir.file("a.zol")), older);
      }
    }
  }
}

// --- Who may do what --------------------------------------------------------------------------

constexpr uid_t k_nobody = 65534;
constexpr gid_t k_joint = 4242;   // a group that the process is in, if it is nobody
constexpr gid_t k_closed = 4343;  // one that it is not in

// For a moment the process is nobody; only the superuser can do that.
class AsNobody {
 public:
  AsNobody() {
    EXPECT_EQ(::setgroups(1, &k_joint), 0);
    EXPECT_EQ(::setegid(k_nobody), 0);
    EXPECT_EQ(::seteuid(k_nobody), 0);
  }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;
  ~AsNobody() {
    EXPECT_EQ(::seteuid(0), 0);
    EXPECT_EQ(::setegid(0), 0);
    EXPECT_EQ(::setgroups(0, nullptr), 0);
  }
};

TEST(ReplacementFile, NeverWidensAccess) {
  if (::geteuid() != 0) GTEST_SKIP() << "this needs the right to give files away";
  struct Rights {
    uid_t owner;
    gid_t group;
    unsigned mode;
  };
  struct Case {
    const char* what;
    bool as_nobody;
    Rights older;
    Rights newer;
  };
  const Case cases[] = {
      {"all", false, {7, 8, 0640}, {7, 8, 0640}},
      {"all, with set-id bits", false, {7, 8, 06755}, {7, 8, 06755}},
      {"own file", true, {k_nobody, k_nobody, 0600}, {k_nobody, k_nobody, 0600}},
      {"the group without the owner", true, {7, k_joint, 0664}, {k_nobody, k_joint, 0664}},
      {"neither", true, {7, k_closed, 0666}, {k_nobody, k_nobody, 0666}},
      {"a closed group", true, {k_nobody, k_closed, 0660}, {k_nobody, k_nobody, 0600}},
      {"a group that may write", true, {k_nobody, k_closed, 0664}, {k_nobody, k_nobody, 0644}},
      {"a group shut out", true, {k_nobody, k_closed, 0604}, {k_nobody, k_nobody, 0600}},
      {"set-id bits", true, {k_nobody, k_closed, 06755}, {k_nobody, k_nobody, 0755}},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    TempDir dir;
    ASSERT_EQ(::chmod(dir.path().c_str(), 0777), 0);
    const std::string path = dir.file("a.zol");
    write_file(path, "older");
    ASSERT_EQ(::chown(path.c_str(), each.older.owner, each.older.group), 0);
    ASSERT_EQ(::chmod(path.c_str(), each.older.mode), 0);
    std::optional<AsNobody> nobody;
    if (each.as_nobody) nobody.emplace();
    EXPECT_EQ(replace(dir.wide("a.zol")), Outcome::replaced);
    nobody.reset();
    const struct stat status = status_of(path);
    EXPECT_EQ(status.st_uid, each.newer.owner);
    EXPECT_EQ(status.st_gid, each.newer.group);
    EXPECT_EQ(status.st_mode & 07777, each.newer.mode);
  }
}

constexpr char k_list[] = "system.posix_acl_access";
constexpr char k_list_for_new_files[] = "system.posix_acl_default";

// The rights of owner, group and others, and of user 7 under a mask.
std::string access_list(int owner, int group, int others, int user, int mask) {
  struct Entry {
    int tag;
    int rights;
    int id;
  };
  std::string list("\2\0\0\0", 4);
  for (const Entry& each : {Entry{1, owner, -1}, Entry{2, user, 7}, Entry{4, group, -1},
                            Entry{16, mask, -1}, Entry{32, others, -1}}) {
    for (int i = 0; i < 2; ++i) list += static_cast<char>(each.tag >> 8 * i);
    for (int i = 0; i < 2; ++i) list += static_cast<char>(each.rights >> 8 * i);
    for (int i = 0; i < 4; ++i) list += static_cast<char>(each.id >> 8 * i);
  }
  return list;
}

// Empty: there is none.
std::string attribute_of(const std::string& path, const char* name) {
  std::string value(4096, '\0');
  const ssize_t size = ::getxattr(path.c_str(), name, value.data(), value.size());
  return size == -1 ? std::string() : value.substr(0, static_cast<std::size_t>(size));
}

bool set_attribute(const std::string& path, const char* name, const std::string& value) {
  return ::setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
}

TEST(ReplacementFile, KeepsAccessListsAndAttributes) {
  TempDir dir;
  const std::string path = dir.file("a.zol");
  write_file(path, "older");
  const std::string list = access_list(6, 0, 0, 4, 4);
  if (!set_attribute(path, k_list, list) || !set_attribute(path, "user.origin", "somewhere")) {
    GTEST_SKIP() << "this needs a file system with access lists and attributes";
  }
  EXPECT_EQ(replace(dir.wide("a.zol")), Outcome::replaced);
  EXPECT_EQ(attribute_of(path, k_list), list);
  EXPECT_EQ(attribute_of(path, "user.origin"), "somewhere");
  EXPECT_EQ(mode_of(path), 0640u);

  // What can't be carried over keeps the old file in its place.
  for (const unsigned number : {1u, 2u}) {
    fail_call({number, false, ENOSPC, "fsetxattr"});
    EXPECT_EQ(replace(dir.wide("a.zol"), "other"), Outcome::kept);
    EXPECT_EQ(end_failing_calls(), number);
    EXPECT_EQ(read_file(path), "newer");
  }
}

TEST(ReplacementFile, TakesNoAccessListFromItsDirectory) {
  TempDir dir;
  const std::string path = dir.file("a.zol");
  write_file(path, "older");
  ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
  if (!set_attribute(dir.path(), k_list_for_new_files, access_list(7, 5, 0, 7, 7))) {
    GTEST_SKIP() << "this needs a file system with access lists";
  }
  EXPECT_EQ(replace(dir.wide("a.zol")), Outcome::replaced);
  EXPECT_EQ(attribute_of(path, k_list), "");
  EXPECT_EQ(mode_of(path), 0640u);
  // A new file is like any other.
  EXPECT_EQ(replace(dir.wide("b.zol")), Outcome::replaced);
  EXPECT_EQ(attribute_of(dir.file("b.zol"), k_list), access_list(6, 5, 0, 7, 6));
}

TEST(ReplacementFile, CutsAnAccessListWithoutItsGroup) {
  if (::geteuid() != 0) GTEST_SKIP() << "this needs the right to give files away";
  TempDir dir;
  ASSERT_EQ(::chmod(dir.path().c_str(), 0777), 0);
  const std::string path = dir.file("a.zol");
  write_file(path, "older");
  ASSERT_EQ(::chown(path.c_str(), k_nobody, k_closed), 0);
  if (!set_attribute(path, k_list, access_list(6, 6, 4, 6, 6))) {
    GTEST_SKIP() << "this needs a file system with access lists";
  }
  {
    const AsNobody nobody;
    EXPECT_EQ(replace(dir.wide("a.zol")), Outcome::replaced);
  }
  EXPECT_EQ(attribute_of(path, k_list), access_list(6, 4, 4, 6, 6));
}

}  // namespace
