// What a run over many documents has done, in a file that outlives it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "port/files.h"
#include "tools/exit_status.h"
#include "tools/file_walk.h"

// A text file: a line that names the task, and a line for each document that is done, which is
// written at once. So a process that is killed loses no more than the line it was writing, and that
// one is cut off when the file is opened again. In memory are two words a document.
//
// find() and add() may be called by different threads.
class Journal {
 public:
  Journal() = default;
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;
  ~Journal();

  // Makes the file, or takes it up. False, with the reason told, if it can't be had, is in use by
  // another run, belongs to another task, or is no journal.
  bool open(const std::string& path, const std::string& task);
  bool is_open() const { return file_ != zol::port::k_no_file; }

  // How the file was judged, if it is still as it was then.
  std::optional<ExitStatus> find(const std::string& path, const FileStamp& stamp);
  // False, with the reason told once, if it can't be written.
  bool add(const std::string& path, const FileStamp& stamp, ExitStatus status);

 private:
  struct Place {
    std::uint64_t key;
    std::uint64_t offset;  // of the line
  };

  bool complain_of(const std::string& reason);
  bool read(const std::string& header);
  bool read_line(std::uint64_t offset, std::string* line) const;

  std::string path_;
  zol::port::FileHandle file_ = zol::port::k_no_file;
  std::vector<Place> places_;  // of the runs before, by key and offset
  std::mutex mutex_;
  bool has_failed_ = false;
};

// Whether a run takes up a journal that is there.
bool has_journal(const std::string& path);
