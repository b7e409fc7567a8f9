#include "tools/file_walk.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <system_error>
#include <utility>

#include "port/files.h"
#include "tools/text.h"

namespace {

namespace fs = std::filesystem;

fs::path native_path(const std::string& path) {
#if defined(_WIN32)
  return fs::path(wide_path(path));
#else
  return fs::path(path);
#endif
}

std::string spelled(const fs::path& path) {
#if defined(_WIN32)
  return utf8(path.wstring());
#else
  return path.string();
#endif
}

char small(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

void FileWalk::Folder::add(std::string_view name) {
  names.append(name);
  ends.push_back(names.size());
}

std::string FileWalk::Folder::take_last() {
  ends.pop_back();
  const std::size_t begin = ends.empty() ? 0 : ends.back();
  std::string last = path + names.substr(begin);
  names.resize(begin);
  return last;
}

// The last name first.
void FileWalk::Folder::sort() {
  std::vector<std::string_view> sorted;
  sorted.reserve(ends.size());
  std::size_t begin = 0;
  for (const std::size_t end : ends) {
    sorted.push_back(std::string_view(names).substr(begin, end - begin));
    begin = end;
  }
  std::sort(sorted.begin(), sorted.end(), std::greater<>());
  Folder result;
  result.names.reserve(names.size());
  result.ends.reserve(ends.size());
  for (const std::string_view name : sorted) result.add(name);
  names = std::move(result.names);
  ends = std::move(result.ends);
}

FileWalk::FileWalk(std::vector<std::string> arguments, Options options)
    : options_(std::move(options)) {
  Folder folder;
  for (auto at = arguments.rbegin(); at != arguments.rend(); ++at) folder.add(*at);
  folders_.push_back(std::move(folder));
}

bool FileWalk::next(std::string* path) {
  while (!folders_.empty()) {
    if (folders_.back().ends.empty()) {
      folders_.pop_back();
      continue;
    }
    *path = folders_.back().take_last();
    if (!options_.is_recursive || !is_folder(*path) || !enter(*path)) return true;
  }
  return false;
}

bool FileWalk::enter(const std::string& path) {
  std::error_code error;
  Folder folder;
  folder.path = spelled(native_path(path) / "");
  for (fs::directory_iterator at(native_path(path), error), end; !error && at != end;
       at.increment(error)) {
    std::error_code unknown;
    const bool is_inner = at->is_directory(unknown) && !at->is_symlink(unknown);
    const std::string name = spelled(at->path().filename());
    const bool is_left_out = is_inner && !options_.left_out.empty() &&
                             fs::equivalent(at->path(), native_path(options_.left_out), unknown);
    const bool is_wanted =
        !suffix_in(name, options_.suffixes).empty() && !at->is_directory(unknown);
    if ((is_inner && !is_left_out) || is_wanted) folder.add(name);
  }
  if (error) return false;
  folder.sort();
  folders_.push_back(std::move(folder));
  return true;
}

std::string inner_path(const std::string& folder, const std::string& file) {
  return spelled(native_path(folder) / "") + file;
}

std::string file_name(const std::string& path) { return spelled(native_path(path).filename()); }

std::string_view suffix_in(std::string_view name, const std::vector<std::string>& suffixes) {
  std::string_view longest;
  for (const std::string& suffix : suffixes) {
    if (name.size() < suffix.size() || suffix.size() <= longest.size()) continue;
    const std::string_view end = name.substr(name.size() - suffix.size());
    if (std::equal(end.begin(), end.end(), suffix.begin(),
                   [](char a, char b) { return small(a) == b; })) {
      longest = end;
    }
  }
  return longest;
}

bool is_there(const std::string& path) {
  std::error_code error;
  return fs::exists(fs::symlink_status(native_path(path), error));
}

bool make_folders_of(const std::string& path) {
  std::error_code error;
  fs::create_directories(native_path(path).parent_path(), error);
  if (error) errno = error.default_error_condition().value();
  return !error;
}

std::string absolute_path(const std::string& path) {
  std::error_code error;
  const fs::path result = fs::absolute(native_path(path), error);
  return error ? path : spelled(result);
}

bool is_folder(const std::string& path) {
  std::error_code error;
  return fs::is_directory(native_path(path), error);
}

bool is_folder_name(const std::string& path) {
  return is_folder(path) || (!path.empty() && native_path(path).filename().empty());
}

bool is_stream(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(native_path(path), error);
  return fs::is_fifo(status) || fs::is_character_file(status) || fs::is_socket(status);
}

FileStamp stamp_of(const std::string& path) {
  FileStamp stamp;
  std::error_code error;
  const fs::path native = native_path(path);
  if (!fs::is_regular_file(native, error)) return stamp;
  stamp.size = fs::file_size(native, error);
  if (error) return stamp;
  stamp.time = fs::last_write_time(native, error).time_since_epoch().count();
  stamp.is_known = !error;
  return stamp;
}

bool read_named_file(const std::string& path, std::string* bytes) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
      zol::port::open_file(native_path(path).c_str(), "rb"), std::fclose);
  if (file == nullptr) return false;
  char block[1 << 16];
  errno = 0;
  while (const std::size_t size = std::fread(block, 1, sizeof block, file.get())) {
    bytes->append(block, size);
  }
  return std::ferror(file.get()) == 0;
}
