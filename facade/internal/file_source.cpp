#include "facade/internal/file_source.h"

#include <cerrno>
#include <limits>
#include <new>

#include "port/large_block.h"

namespace zol_v2::internal {

namespace port = zol::port;

namespace {

constexpr std::size_t k_block_size = 1 << 16;

}  // namespace

FileSource::FileSource(const std::wstring& path, std::uint64_t limit)
    : file_(port::open_handle(path, {})), left_(limit), limit_(limit), capacity_(k_block_size) {}

FileSource::~FileSource() {
  if (is_open()) port::close_handle(file_);
}

bool FileSource::fill() {
  if (!is_open() || !is_whole()) return false;
  if (block_ == nullptr) block_.reset(new char[capacity_]);
  at_ = 0;
  end_ = port::read_handle(file_, block_.get(), capacity_);
  if (end_ < capacity_) error_ = errno;
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

bool FileSource::read_whole(const char** begin, std::size_t* size) {
  std::uint64_t length = 0;
  if (block_ != nullptr || !is_open() || !port::regular_file_size(file_, &length) ||
      length > left_ || length >= std::numeric_limits<std::size_t>::max()) {
    return false;
  }
  // One byte more, so that a file that grows while it is read is noticed.
  const auto whole = static_cast<std::size_t>(length);
  block_.reset(new (std::nothrow) char[whole + 1]);
  if (block_ == nullptr) return false;
  port::expect_use(block_.get(), whole + 1);
  capacity_ = whole + 1;
  const bool is_all = fill() && is_whole() && end_ == whole;
  if (is_all) at_ = end_;
  *begin = block_.get();
  *size = end_;
  return is_all;
}

void FileSource::rewind() {
  at_ = 0;
  end_ = 0;
  left_ = limit_;
  if (port::seek_handle(file_, 0, port::Origin::begin) == -1) error_ = errno;
}

}  // namespace zol_v2::internal
