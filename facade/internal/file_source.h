// The bytes of a document file on their way to a reader, which knows an end but no failure.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "lmx/input.h"
#include "port/files.h"

namespace zol_v2::internal {

class FileSource : public lmx::c_read {
 public:
  // Ends before a byte that is past `limit`. The reason why a file is not open is in `errno`.
  FileSource(const std::wstring& path, std::uint64_t limit);
  ~FileSource() override;

  bool is_open() const override { return file_ != zol::port::k_no_file; }
  int read() override;
  std::size_t read_block(const char** begin) override;
  void give_back(std::size_t count) override { at_ -= count; }
  bool read_whole(const char** begin, std::size_t* size) override;
  // To the start of a file that can be read twice.
  void rewind() override;

  // False if the end that was met is none: after a failed read, whose `errno` error() gives, or
  // because the limit came first.
  bool is_whole() const { return error_ == 0 && !is_too_large_; }
  int error() const { return error_; }

 private:
  bool fill();

  zol::port::FileHandle file_;
  std::uint64_t left_;  // of the limit
  const std::uint64_t limit_;
  std::size_t capacity_;
  std::unique_ptr<char[]> block_;  // made by the first read
  std::size_t at_ = 0;
  std::size_t end_ = 0;
  int error_ = 0;
  bool is_too_large_ = false;
};

}  // namespace zol_v2::internal
