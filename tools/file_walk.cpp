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

fs::path native(const std::string& path) {
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

bool has_document_name(const fs::path& path) {
  std::string suffix = spelled(path.extension());
  std::transform(suffix.begin(), suffix.end(), suffix.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return suffix == ".zol" || suffix == ".zolz";
}

}  // namespace

FileWalk::FileWalk(std::vector<std::string> arguments, bool is_recursive)
    : is_recursive_(is_recursive) {
  std::reverse(arguments.begin(), arguments.end());
  folders_.push_back({std::move(arguments)});
}

bool FileWalk::next(std::string* path) {
  while (!folders_.empty()) {
    std::vector<std::string>& files = folders_.back().files;
    if (files.empty()) {
      folders_.pop_back();
      continue;
    }
    *path = std::move(files.back());
    files.pop_back();
    if (!is_recursive_ || !is_folder(*path) || !enter(*path)) return true;
  }
  return false;
}

bool FileWalk::enter(const std::string& path) {
  std::error_code error;
  Folder folder;
  for (fs::directory_iterator at(native(path), error), end; !error && at != end;
       at.increment(error)) {
    std::error_code unknown;
    const bool is_inner = at->is_directory(unknown) && !at->is_symlink(unknown);
    if (is_inner || (has_document_name(at->path()) && !at->is_directory(unknown))) {
      folder.files.push_back(spelled(at->path()));
    }
  }
  if (error) return false;
  std::sort(folder.files.begin(), folder.files.end(), std::greater<>());
  folders_.push_back(std::move(folder));
  return true;
}

bool is_folder(const std::string& path) {
  std::error_code error;
  return fs::is_directory(native(path), error);
}

bool is_stream(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(native(path), error);
  return fs::is_fifo(status) || fs::is_character_file(status) || fs::is_socket(status);
}

bool read_named_file(const std::string& path, std::string* bytes) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
      zol::port::open_file(native(path).c_str(), "rb"), std::fclose);
  if (file == nullptr) return false;
  char block[1 << 16];
  errno = 0;
  while (const std::size_t size = std::fread(block, 1, sizeof block, file.get())) {
    bytes->append(block, size);
  }
  return std::ferror(file.get()) == 0;
}
