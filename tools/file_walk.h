// The files that a command is given, those in folders too. The one place of the command that looks
// into folders.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Gives one file after the other, and remembers no more than the folders on the way to it.
class FileWalk {
 public:
  struct Options {
    bool is_recursive;
    std::vector<std::string> suffixes;
    std::string left_out;  // a folder that is not entered where it lies in another one
  };

  // Of a folder, if they are walked through, every file in it and below whose name ends in one of
  // the suffixes, in whatever letters, in the order of their names; what else is named is given as
  // it is. Links to folders are not followed.
  FileWalk(std::vector<std::string> arguments, Options options);
  // Documents.
  FileWalk(std::vector<std::string> arguments, bool is_recursive)
      : FileWalk(std::move(arguments), Options{is_recursive, {".zol", ".zolz"}, {}}) {}

  // False at the end. A folder that can't be read is given itself, for whoever tries to open it.
  bool next(std::string* path);

 private:
  // What is left of a folder, the next one last. A folder may hold a million names, so they stand
  // in one text.
  struct Folder {
    std::string path;  // before each name
    std::string names;
    std::vector<std::size_t> ends;

    void add(std::string_view name);
    std::string take_last();
    void sort();
  };
  bool enter(const std::string& path);

  std::vector<Folder> folders_;
  Options options_;
};

// A file in a folder, as the walk names it; the folder's own with nothing for the file.
std::string inner_path(const std::string& folder, const std::string& file);
std::string file_name(const std::string& path);
// The one of the suffixes that a name ends in, in whatever letters, as it stands there; the longest
// of several, empty if it is none.
std::string_view suffix_in(std::string_view name, const std::vector<std::string>& suffixes);
// Whatever it is.
bool is_there(const std::string& path);
// Those on the way to a file; false with the reason in `errno`.
bool make_folders_of(const std::string& path);
// Wherever the command was started.
std::string absolute_path(const std::string& path);
bool is_folder(const std::string& path);
// Of a folder that is there, or of one to be made: it ends in a slash.
bool is_folder_name(const std::string& path);
// A pipe, a device, a socket: what can be read once.
bool is_stream(const std::string& path);

// By which a change of a file is noticed.
struct FileStamp {
  std::uint64_t size = 0;
  std::int64_t time = 0;  // of the last change, as fine as the system counts
  bool is_known = false;  // not of a pipe, a folder, or what is not there

  bool operator==(const FileStamp& other) const {
    return is_known && other.is_known && size == other.size && time == other.time;
  }
};
FileStamp stamp_of(const std::string& path);

// A file by a name in whatever bytes; false with the reason in `errno`.
bool read_named_file(const std::string& path, std::string* bytes);
