#include "support/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "port/wide_text.h"

#if defined(_WIN32)
#include <sys/utime.h>

#include "port/internal/windows_calls.h"
#else
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utime.h>

extern char** environ;
#endif

namespace fs = std::filesystem;

namespace zol_test {

TempDir::~TempDir() {
  std::error_code ignored;
  fs::remove_all(fs::u8path(path_), ignored);
}

std::wstring TempDir::wide(const std::string& name) const {
  const std::string path = file(name);
  return zol::port::from_utf8(path.data(), path.size());
}

std::vector<std::string> TempDir::names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(fs::u8path(path_))) {
    names.push_back(entry.path().filename().u8string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

void write_file(const std::string& path, const std::string& bytes) {
  std::ofstream out(fs::u8path(path), std::ios::binary);
  out << bytes;
  out.close();
  ASSERT_TRUE(out) << path;
}

std::string read_file(const std::string& path) {
  std::ifstream in(fs::u8path(path), std::ios::binary);
  EXPECT_TRUE(in) << path;
  return std::string(std::istreambuf_iterator<char>(in), {});
}

bool file_exists(const std::string& path) {
  return fs::exists(fs::symlink_status(fs::u8path(path)));
}

void remove_file(const std::string& path) { fs::remove(fs::u8path(path)); }

void make_directory(const std::string& path) { fs::create_directories(fs::u8path(path)); }

void set_file_time(const std::string& path, const std::string& when) {
  std::tm fields = {};
  ASSERT_EQ(std::sscanf(when.c_str(), "%d-%d-%d %d:%d:%d", &fields.tm_year, &fields.tm_mon,
                        &fields.tm_mday, &fields.tm_hour, &fields.tm_min, &fields.tm_sec),
            6);
  fields.tm_year -= 1900;
  fields.tm_mon -= 1;
  fields.tm_isdst = -1;
  const std::time_t time = std::mktime(&fields);
#if defined(_WIN32)
  __utimbuf64 times = {time, time};
  ASSERT_EQ(_wutime64(fs::u8path(path).c_str(), &times), 0) << path;
#else
  const utimbuf times = {time, time};
  ASSERT_EQ(::utime(path.c_str(), &times), 0) << path;
#endif
}

std::string file_time(const std::string& path) {
#if defined(_WIN32)
  struct _stat64 status = {};
  const int failure = _wstat64(fs::u8path(path).c_str(), &status);
#else
  struct stat status = {};
  const int failure = ::stat(path.c_str(), &status);
#endif
  if (failure != 0) return "no file";
  const std::time_t time = status.st_mtime;
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", std::localtime(&time));
  return text;
}

#if defined(_WIN32)

TempDir::TempDir() {
  std::random_device chance;
  path_ = (fs::temp_directory_path() / "zol-test-").generic_u8string() + std::to_string(chance());
  if (!fs::create_directory(fs::u8path(path_))) throw std::runtime_error("no temporary directory");
}

bool TempDir::takes_nameless_files() const { return false; }

std::size_t count_open_files() {
  DWORD count = 0;
  GetProcessHandleCount(GetCurrentProcess(), &count);
  return count;
}

#else

TempDir::TempDir() {
  path_ = (fs::temp_directory_path() / "zol-test-XXXXXX").string();
  if (::mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary directory");
}

bool TempDir::takes_nameless_files() const {
#if defined(O_TMPFILE)
  const int file = ::open(path_.c_str(), O_TMPFILE | O_RDWR, 0600);
  if (file != -1) ::close(file);
  return file != -1;
#else
  return false;
#endif
}

ProgramResult run(const std::vector<std::string>& arguments, const std::string& directory) {
  int ends[2];
  if (::pipe(ends) != 0) return {-1, "no pipe"};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", 0, 0);
  posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
  posix_spawn_file_actions_adddup2(&actions, ends[1], 2);
  posix_spawn_file_actions_addclose(&actions, ends[0]);
  posix_spawn_file_actions_addclose(&actions, ends[1]);
  posix_spawn_file_actions_addchdir_np(&actions, directory.c_str());

  std::vector<char*> list;
  for (const std::string& argument : arguments) list.push_back(const_cast<char*>(argument.c_str()));
  list.push_back(nullptr);
  pid_t child = 0;
  const int error = ::posix_spawnp(&child, list[0], &actions, nullptr, list.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);

  ProgramResult result = {-1, {}};
  char block[4096];
  for (ssize_t got; error == 0 && (got = ::read(ends[0], block, sizeof block)) > 0;) {
    result.output.append(block, static_cast<std::size_t>(got));
  }
  ::close(ends[0]);
  if (error != 0) {
    result.output = "can't run " + arguments[0];
    return result;
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
  return result;
}

ProgramResult run_shell(const std::string& command, const std::string& directory) {
  return run({"sh", "-c", command}, directory);
}

ProgramResult run_python(const std::string& script, const std::vector<std::string>& arguments) {
  std::vector<std::string> all = {"python3", "-c", script};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return run(all);
}

std::size_t count_open_files() {
  std::size_t count = 0;
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    static_cast<void>(entry);
    ++count;
  }
  return count;
}

#endif

std::string noise(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

}  // namespace zol_test
