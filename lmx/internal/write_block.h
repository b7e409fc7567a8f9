// The bytes of a document between the model and the stream: a block that is filled in place and
// handed to the stream in one piece, instead of a stream call for every tag and value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>
#include <string_view>

#include "lmx/internal/byte_buffer.h"

namespace lmx::internal {

class WriteBlock {
 public:
  // The stream stays the caller's and must outlive the block. Nobody flushes for a block that is
  // destroyed: its owner decides when the stream must have the bytes.
  explicit WriteBlock(std::ostream& stream) : stream_(stream) {}
  WriteBlock(const WriteBlock&) = delete;
  WriteBlock& operator=(const WriteBlock&) = delete;

  void append(char byte) {
    if (room() == 0) flush();
    bytes_[size_++] = byte;
  }
  void append(std::string_view text) {
    if (text.size() > room()) return append_beyond_room(text);
    copy_short(bytes_ + size_, text.data(), text.size());
    size_ += text.size();
  }

  // The first `size` bytes of `source`, of which k_stamp bytes can be read: a copy of a fixed size
  // costs less than one of a size that is known only at run time.
  static constexpr std::size_t k_stamp = 32;
  void append_stamp(const char (&source)[k_stamp], std::size_t size) {
    if (room() < k_stamp) flush();
    std::memcpy(bytes_ + size_, source, k_stamp);
    size_ += size;
  }

  // What c_as_xml writes for the same value.
  void append_escaped(const std::wstring& text);
  void append_escaped(std::string_view text);
  void append_number(double value);
  void append_number(float value);
  void append_bool(bool value) { append(value ? std::string_view("true") : "false"); }

  // Text with references where readers would take a carriage return for a line feed, white space in
  // an attribute for a blank, or "]]>" for a fault; and numbers that read back as the same value.
  void append_exact_text(std::string_view text, bool is_attribute);
  void append_exact_number(double value);
  // Which of the two the model is to ask for.
  bool is_exact() const { return is_exact_; }
  void set_exact(bool is_exact) { is_exact_ = is_exact; }

  // What the stream writes for an integer.
  void append_integer(std::int64_t value);

  // Hands what is held to the stream. If the stream throws, the bytes are gone all the same, so
  // that no later flush repeats them.
  void flush();

 private:
  static constexpr std::size_t k_capacity = 8192;

  std::size_t room() const { return k_capacity - size_; }
  void append_beyond_room(std::string_view text);
  char* reserve(std::size_t count);
  void advance_to(const char* end) { size_ = static_cast<std::size_t>(end - bytes_); }

  std::ostream& stream_;
  std::size_t size_ = 0;
  bool is_exact_ = false;
  char bytes_[k_capacity];
};

}  // namespace lmx::internal
