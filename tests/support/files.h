// Files, directories and other programs for tests.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zol_test {

// A directory of its own for each test, gone with all it holds at the end.
class TempDir {
 public:
  TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  ~TempDir();

  const std::string& path() const { return path_; }
  // UTF-8, or wide text, of a file inside.
  std::string file(const std::string& name) const { return path_ + "/" + name; }
  std::wstring wide(const std::string& name) const;
  // The names inside, sorted.
  std::vector<std::string> names() const;
  // Whether its file system can hold a file that has no name yet.
  bool takes_nameless_files() const;

 private:
  std::string path_;
};

void write_file(const std::string& path, const std::string& bytes);
std::string read_file(const std::string& path);
bool file_exists(const std::string& path);
void remove_file(const std::string& path);
void make_directory(const std::string& path);

// When a file was last changed, by the local clock: "2001-02-03 04:05:06".
void set_file_time(const std::string& path, const std::string& when);
std::string file_time(const std::string& path);

#if !defined(_WIN32)

struct ProgramResult {
  int status;          // -1 if it did not end by itself
  std::string output;  // standard output and error
};

// Runs a program, looked up in the path, without a shell and with nothing on its standard input.
ProgramResult run(const std::vector<std::string>& arguments, const std::string& directory = ".");
ProgramResult run_shell(const std::string& command, const std::string& directory = ".");
ProgramResult run_python(const std::string& script, const std::vector<std::string>& arguments);

#endif

// Descriptors, or handles of the system, that the process holds.
std::size_t count_open_files();

// Bytes that no compressor makes small.
std::string noise(std::size_t size, unsigned seed = 1);

}  // namespace zol_test
