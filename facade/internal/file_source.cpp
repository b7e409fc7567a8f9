#include "facade/internal/file_source.h"

#include <cerrno>

namespace zol_v2::internal {

namespace port = zol::port;

namespace {

constexpr std::size_t k_block_size = 1 << 16;

}  // namespace

FileSource::FileSource(const std::wstring& path, std::uint64_t limit)
    : file_(port::k_no_file), left_(limit), limit_(limit), block_(new char[k_block_size]) {
  file_ = port::open_handle(path, {});
}

FileSource::~FileSource() {
  if (is_open()) port::close_handle(file_);
}

bool FileSource::fill() {
  if (!is_open() || !is_whole()) return false;
  at_ = 0;
  end_ = port::read_handle(file_, block_.get(), k_block_size);
  if (end_ < k_block_size) error_ = errno;
  if (end_ > left_) {
    is_too_large_ = true;
    end_ = static_cast<std::size_t>(left_);
  }
  left_ -= end_;
  return end_ != 0;
}

int FileSource::read() {
  if (at_ == end_ && !fill()) return -1;
  return static_cast<unsigned char>(block_[at_++]);
}

std::size_t FileSource::read_block(const char** begin) {
  if (at_ == end_ && !fill()) return 0;
  *begin = block_.get() + at_;
  const std::size_t size = end_ - at_;
  at_ = end_;
  return size;
}

void FileSource::rewind() {
  at_ = 0;
  end_ = 0;
  left_ = limit_;
  if (port::seek_handle(file_, 0, port::Origin::begin) == -1) error_ = errno;
}

}  // namespace zol_v2::internal
