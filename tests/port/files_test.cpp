#include "port/files.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <clocale>

#if !defined(_WIN32)
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <thread>
#endif

#include "support/files.h"

namespace {

using namespace zol::port;
using zol_test::TempDir;

TEST(Files, ReachNamesInAnyLocale) {
  const std::string names[] = {
    "plain",
    "Gr\u00f6\u00dfe \u8272",
    "\U0001F3A8",
#if !defined(_WIN32)
    "a\\b:c*?",
    " ",
#endif
  };
  for (const char* locale : {"C", "C.UTF-8"}) {
    std::setlocale(LC_ALL, locale);
    for (const std::string& name : names) {
      TempDir dir;
      const std::wstring path = dir.wide(name);
      std::FILE* file = open_file(path, "wb");
      ASSERT_NE(file, nullptr) << name;
      std::fputs("x", file);
      std::fclose(file);
      EXPECT_EQ(dir.names(), std::vector<std::string>{name});
      EXPECT_TRUE(rename_file(path, path + L"2"));
      EXPECT_TRUE(remove_file(path + L"2"));
      EXPECT_FALSE(remove_file(path));
      EXPECT_EQ(errno, ENOENT);
    }
  }
  std::setlocale(LC_ALL, "C");
}

TEST(Files, TakeNoPartOfAPath) {
  TempDir dir;
  zol_test::write_file(dir.file("a"), "x");
  const std::wstring path = dir.wide("a") + std::wstring(L"\0.zol", 5);
  std::uint32_t attributes = 0;
  EXPECT_EQ(open_file(path, "rb"), nullptr);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(open_handle(path, {}), k_no_file);
  EXPECT_FALSE(get_attributes(path, attributes));
  EXPECT_FALSE(remove_file(path));
  EXPECT_TRUE(zol_test::file_exists(dir.file("a")));
}

TEST(Files, LeaveDirectoriesAlone) {
  TempDir dir;
  EXPECT_EQ(open_file(dir.wide("."), "rb"), nullptr);
  EXPECT_EQ(errno, EISDIR);
  EXPECT_FALSE(remove_file(dir.wide(".")));
  std::uint32_t attributes = 0;
  EXPECT_TRUE(get_attributes(dir.wide("."), attributes));
  EXPECT_EQ(attributes, k_attribute_directory);
}

TEST(Files, KeepAttributesAndTimes) {
  TempDir dir;
  const std::wstring path = dir.wide("a");
  zol_test::write_file(dir.file("a"), "x");
  std::uint32_t attributes = 0;
  for (const std::uint32_t expected :
       {k_attribute_archive | k_attribute_read_only, k_attribute_archive}) {
    EXPECT_TRUE(set_attributes(path, expected));
    EXPECT_TRUE(get_attributes(path, attributes));
    EXPECT_EQ(attributes, expected);
  }
#if defined(_WIN32)
  EXPECT_TRUE(set_attributes(path, k_attribute_archive | k_attribute_hidden));
#else
  ::chmod(dir.file("a").c_str(), 0200);
#endif
  EXPECT_TRUE(get_attributes(path, attributes));
  EXPECT_EQ(attributes, k_attribute_archive | k_attribute_hidden);
  std::time_t time = 0;
  EXPECT_TRUE(set_modification_time(path, 1'000'000'001));
  EXPECT_TRUE(get_modification_time(path, time));
  EXPECT_EQ(time, 1'000'000'001);
  EXPECT_FALSE(get_modification_time(dir.wide("missing"), time));
}

TEST(Files, ShareAsAsked) {
  TempDir dir;
  const std::wstring path = dir.wide("a");
  zol_test::write_file(dir.file("a"), "kept");
  const OpenOptions reads = {Access::read, Share::deny_write};
  const OpenOptions writes = {Access::read_write, Share::deny_write, true, true};
  const FileHandle first = open_handle(path, reads);
  const FileHandle second = open_handle(path, reads);
  EXPECT_NE(second, k_no_file);
  EXPECT_EQ(open_handle(path, writes), k_no_file);
  EXPECT_EQ(errno, EACCES);
  EXPECT_EQ(zol_test::read_file(dir.file("a")), "kept");
  EXPECT_TRUE(close_handle(first));
  EXPECT_TRUE(close_handle(second));
  const FileHandle writer = open_handle(path, writes);
  EXPECT_NE(writer, k_no_file);
  EXPECT_EQ(open_handle(path, reads), k_no_file);
  const FileHandle anyone = open_handle(path, {});
  EXPECT_NE(anyone, k_no_file);
  close_handle(anyone);
  close_handle(writer);
  OpenOptions fresh = writes;
  fresh.fresh = true;
  EXPECT_EQ(open_handle(path, fresh), k_no_file);
  EXPECT_EQ(errno, EEXIST);
}

TEST(Files, SayHowAReadEnded) {
  TempDir dir;
  zol_test::write_file(dir.file("a"), "0123");
  const FileHandle handle = open_handle(dir.wide("a"), {});
  char buffer[8];
  errno = ENOENT;
  EXPECT_EQ(read_handle(handle, buffer, 8), 4u);
  EXPECT_EQ(errno, 0);
  EXPECT_FALSE(write_handle(handle, "x", 1));
  EXPECT_EQ(errno, EBADF);
  close_handle(handle);
  EXPECT_EQ(read_handle(handle, buffer, 8), 0u);
  EXPECT_EQ(errno, EBADF);
}

#if !defined(_WIN32)

TEST(Files, ReadOnAfterASignal) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  struct sigaction interrupts = {};
  struct sigaction before = {};
  interrupts.sa_handler = [](int) {};  // without SA_RESTART
  ASSERT_EQ(::sigaction(SIGUSR1, &interrupts, &before), 0);
  std::thread writer([pipe = ends[1], reader = ::pthread_self()] {
    for (int i = 0; i < 10; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
      ::pthread_kill(reader, SIGUSR1);
      EXPECT_EQ(::write(pipe, "0123456789", 10), 10);
    }
    ::close(pipe);
  });
  std::FILE* const file = ::fdopen(ends[0], "rb");
  char buffer[200];
  EXPECT_EQ(read_file(file, buffer, sizeof buffer), 100u);
  EXPECT_EQ(std::ferror(file), 0);
  writer.join();
  std::fclose(file);
  ::sigaction(SIGUSR1, &before, nullptr);
}

#endif

TEST(Files, SplitPaths) {
  const std::wstring longest(255, L'n');
  struct Case {
    std::wstring path;
    PathParts parts;
  };
  const Case cases[] = {
      {L"/a.b/c.d.zol", {L"", L"/a.b/", L"c.d", L".zol"}},
      {L"z:\\c", {L"z:", L"\\", L"c", L""}},
      {L"1:c", {L"", L"", L"1:c", L""}},
      {L"a/", {L"", L"a/", L"", L""}},
      {longest + L"." + std::wstring(254, L'x'),
       {L"", L"", longest, L"." + std::wstring(254, L'x')}},
      {longest + L"n", {}},
      {L"a." + longest, {}},
      {std::wstring(32'767, L'/') + L"a", {}},
  };
  for (const Case& each : cases) {
    const PathParts parts = split_path(each.path);
    EXPECT_EQ(parts.drive, each.parts.drive);
    EXPECT_EQ(parts.directory, each.parts.directory);
    EXPECT_EQ(parts.title, each.parts.title);
    EXPECT_EQ(parts.extension, each.parts.extension);
  }
}

}  // namespace
