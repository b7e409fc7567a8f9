// Byte vectors that hold strings one after another and keep their storage from use to use, and
// copies and comparisons of short texts without a call.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lmx::internal {

// std::memcpy for what is mostly the length of a name or a number: two moves that may overlap.
inline void copy_short(char* to, const char* from, std::size_t size) {
  const auto move_ends = [&](auto word) {
    auto tail = word;
    std::memcpy(&word, from, sizeof word);
    std::memcpy(&tail, from + size - sizeof tail, sizeof tail);
    std::memcpy(to, &word, sizeof word);
    std::memcpy(to + size - sizeof tail, &tail, sizeof tail);
  };
  struct Sixteen {
    std::uint64_t low, high;
  };
  if (size > 32) {
    std::memcpy(to, from, size);
  } else if (size >= 16) {
    move_ends(Sixteen());
  } else if (size >= 8) {
    move_ends(std::uint64_t());
  } else if (size >= 4) {
    move_ends(std::uint32_t());
  } else if (size >= 2) {
    move_ends(std::uint16_t());
  } else if (size == 1) {
    *to = *from;
  }
}

inline bool is_equal_short(const char* a, const char* b, std::size_t size) {
  const auto is_equal_at = [&](std::size_t at, auto x) {
    auto y = x;
    std::memcpy(&x, a + at, sizeof x);
    std::memcpy(&y, b + at, sizeof y);
    return x == y;
  };
  const auto is_equal = [&](auto word) {
    return is_equal_at(0, word) && is_equal_at(size - sizeof word, word);
  };
  if (size > 32) return std::memcmp(a, b, size) == 0;
  if (size > 16) {
    if (!is_equal_at(8, std::uint64_t()) || !is_equal_at(size - 16, std::uint64_t())) return false;
  }
  if (size >= 8) return is_equal(std::uint64_t());
  if (size >= 4) return is_equal(std::uint32_t());
  if (size >= 2) return is_equal(std::uint16_t());
  return size == 0 || *a == *b;
}

// std::string::assign, without a call unless the string grows.
inline void store(std::string* out, const char* data, std::size_t size) {
  if (size > out->size()) {
    out->clear();
    out->append(data, size);  // a shorter way than that of assign
    return;
  }
  if (size < out->size()) out->erase(size);
  copy_short(out->data(), data, size);
}

// A byte vector whose growth leaves the new bytes to the caller.
class ByteBuffer {
 public:
  explicit ByteBuffer(std::size_t capacity)
      : bytes_(capacity == 0 ? nullptr : new char[capacity]), capacity_(capacity) {}
  ByteBuffer(const ByteBuffer& other) : ByteBuffer(other.size_) {
    append(other.data(), other.size_);
  }
  ByteBuffer& operator=(const ByteBuffer& other) {
    if (this != &other) {
      clear();
      append(other.data(), other.size_);
    }
    return *this;
  }

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
  void append(const char* data, std::size_t size) { copy_short(extend(size), data, size); }
  void append(std::string_view text) { append(text.data(), text.size()); }
  // The text and a zero.
  void append_string(std::string_view text) {
    char* const to = extend(text.size() + 1);
    copy_short(to, text.data(), text.size());
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

// The attributes of one start tag: name, value, name, value and so on, up to an empty name. A value
// begins with the quote that delimited it and holds its source text, in which a zero is a byte like
// others. A zero stands behind each string too.
class AttributeList {
 public:
  AttributeList() : bytes_(150) {}

  void clear() {
    if (bytes_.size() == 0) return;
    bytes_.clear();
    ends_.clear();
    rewind();
  }
  // One character of the string at the end of the list.
  void push_back(char c) { bytes_.push_back(c); }
  void end_string() {
    const std::size_t begin = ends_.empty() ? 0 : ends_.back().end + 1;
    const std::string_view text(bytes_.data() + begin, bytes_.size() - begin);
    ends_.push_back({bytes_.size(), text.find(':') + 1});
    bytes_.push_back('\0');
  }
  // A name and a value; `local_at` is one past the first colon of the name, 0 if
  // there is none.
  void append(std::string_view name, std::size_t local_at, std::string_view value) {
    char* const to = bytes_.extend(name.size() + value.size() + 2);
    const std::size_t name_end = bytes_.size() - value.size() - 2;
    copy_short(to, name.data(), name.size());
    to[name.size()] = '\0';
    copy_short(to + name.size() + 1, value.data(), value.size());
    to[name.size() + 1 + value.size()] = '\0';
    ends_.push_back({name_end, local_at});
    ends_.push_back({bytes_.size() - 1, 0});
  }
  std::size_t size() const { return bytes_.size(); }
  // The text from an offset in the last string to its end.
  std::string_view last_from(std::size_t offset) const {
    return {bytes_.data() + offset, ends_.back().end - offset};
  }

  // --- Reading ---
  void rewind() {
    at_ = 0;
    current_ = 0;
  }
  bool has_entry() const { return current_ < ends_.size() && at_ < ends_[current_].end; }
  // What is left of the string being read.
  std::string_view rest() const {
    if (current_ >= ends_.size()) return {};
    return {bytes_.data() + at_, ends_[current_].end - at_};
  }
  // Where the local name begins in the string being read, if that is a name.
  std::size_t local_at() const { return ends_[current_].local_at; }
  // Passes characters of the string being read.
  void skip(std::size_t count) { at_ += count; }
  // Passes what is left of the string.
  void next() {
    if (current_ >= ends_.size()) return;
    at_ = ends_[current_++].end + 1;
  }
  // The next byte of the string, -1 at its end.
  int get() { return has_entry() ? static_cast<unsigned char>(bytes_.data()[at_++]) : -1; }
  void unget(int value) {
    if (value != -1 && at_ > 0) --at_;
  }

 private:
  struct End {
    std::size_t end;  // where the zero stands
    std::size_t local_at;
  };

  ByteBuffer bytes_;
  std::vector<End> ends_;
  std::size_t at_ = 0;
  std::size_t current_ = 0;
};

}  // namespace lmx::internal
