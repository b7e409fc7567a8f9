// The bytes of a fuzzer as a row of choices. Past the end all of them are zero.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace zol_fuzz {

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  bool is_empty() const { return rest_.empty(); }

  unsigned byte() {
    if (rest_.empty()) return 0;
    const auto value = static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(1);
    return value;
  }

  // Less than `count`, which is not 0.
  std::size_t below(std::size_t count) {
    std::size_t value = byte();
    if (count > 0x100) value = value << 8 | byte();
    return value % count;
  }

  // Any bytes that can be an integer or a number.
  template <class T>
  T raw() {
    T value{};
    const std::string_view bytes = take(sizeof value);
    std::memcpy(&value, bytes.data(), bytes.size());
    return value;
  }

  // A text whose length stands before it.
  std::string text(std::size_t longest) {
    const std::size_t size = below(longest + 1);
    return std::string(take(size));
  }

  // What is left, up to the first line feed, which goes too.
  std::string line() {
    const std::size_t end = rest_.find('\n');
    std::string line(take(end));
    (void)byte();
    return line;
  }

 private:
  std::string_view take(std::size_t size) {
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(taken.size());
    return taken;
  }

  std::string_view rest_;
};

}  // namespace zol_fuzz
