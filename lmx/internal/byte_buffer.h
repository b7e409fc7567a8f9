// Byte vectors that hold strings one after another, each ended by a zero, and keep their storage
// from use to use.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace lmx::internal {

// A byte vector whose growth leaves the new bytes to the caller.
class ByteBuffer {
 public:
  explicit ByteBuffer(std::size_t capacity)
      : bytes_(capacity == 0 ? nullptr : new char[capacity]), capacity_(capacity) {}

  char* data() { return bytes_.get(); }
  const char* data() const { return bytes_.get(); }
  std::size_t size() const { return size_; }
  void clear() { size_ = 0; }
  void truncate(std::size_t size) { size_ = size; }

  // Room for `count` more bytes, which belong to the vector from now on.
  char* extend(std::size_t count) {
    if (capacity_ - size_ < count) grow(count);
    char* const result = bytes_.get() + size_;
    size_ += count;
    return result;
  }
  void push_back(char c) { *extend(1) = c; }
  void append(const char* data, std::size_t size) {
    if (size != 0) std::memcpy(extend(size), data, size);
  }
  void append(std::string_view text) { append(text.data(), text.size()); }
  // The text and a zero.
  void append_string(std::string_view text) {
    char* const to = extend(text.size() + 1);
    if (!text.empty()) std::memcpy(to, text.data(), text.size());
    to[text.size()] = '\0';
  }

 private:
  void grow(std::size_t count) {
    const std::size_t capacity = std::max(size_ + count, 2 * capacity_);
    std::unique_ptr<char[]> bytes(new char[capacity]);
    if (size_ != 0) std::memcpy(bytes.get(), bytes_.get(), size_);
    bytes_ = std::move(bytes);
    capacity_ = capacity;
  }

  std::unique_ptr<char[]> bytes_;
  std::size_t capacity_;
  std::size_t size_ = 0;
};

// The attributes of one start tag: name, value, name, value and so on, and a further zero ends the
// list. A value begins with the quote that delimited it and holds its source text.
//
// A zero byte in the document shifts every later entry, so no reading trusts the terminators.
class AttributeList {
 public:
  AttributeList() : bytes_(150) {}

  void clear() {
    bytes_.clear();
    at_ = 0;
  }
  ByteBuffer& bytes() { return bytes_; }
  std::size_t size() const { return bytes_.size(); }
  // The string that begins at an offset, where it has been ended.
  const char* text_at(std::size_t offset) const { return bytes_.data() + offset; }

  // --- Reading ---
  void rewind() { at_ = 0; }
  std::size_t position() const { return at_; }
  void set_position(std::size_t at) { at_ = at; }
  bool has_entry() const { return at_ < bytes_.size() && bytes_.data()[at_] != '\0'; }
  // What is left of the string being read.
  std::string_view rest() const {
    if (at_ >= bytes_.size()) return {};
    const char* const begin = bytes_.data() + at_;
    const void* const zero = std::memchr(begin, '\0', bytes_.size() - at_);
    const char* const end =
        zero != nullptr ? static_cast<const char*>(zero) : bytes_.data() + bytes_.size();
    return {begin, static_cast<std::size_t>(end - begin)};
  }
  void skip(std::size_t count) { at_ = std::min(at_ + count, bytes_.size()); }
  // Passes what is left of the string and its zero.
  void next() { skip(rest().size() + 1); }
  // The next byte of the string, -1 at its end.
  int get() { return has_entry() ? static_cast<unsigned char>(bytes_.data()[at_++]) : -1; }
  void unget(int value) {
    if (value != -1 && at_ > 0) --at_;
  }

 private:
  ByteBuffer bytes_;
  std::size_t at_ = 0;
};

}  // namespace lmx::internal
