#include "model/internal/fields.h"

#include <algorithm>
#include <limits>
#include <new>

#include "lmx/text.h"

namespace zol_v2::internal {

const std::wstring& empty_text() {
  static const std::wstring text;
  return text;
}

int EnumTable::number_of(const std::wstring& text) const {
  const std::wstring* found = std::find(first, first + size, text);
  return found == first + size ? 0 : static_cast<int>(found - first) + 1;
}

int EnumTable::number_of(std::string_view utf8) const {
  for (int i = 0; i < size; ++i) {
    if (narrow[i] == utf8) return i + 1;
  }
  return 0;
}

int EnumTable::number_of_converted(const std::string& utf8) const {
  std::wstring text;
  lmx::convert(&text, utf8);
  return number_of(text);
}

void Enumerated::store_foreign(const std::string& utf8) {
  auto text = std::make_unique<std::wstring>();
  lmx::convert(text.get(), utf8);
  replace(text.release(), true);
}

void PointerList::grow() {
  if (capacity_ > std::numeric_limits<std::uint32_t>::max() / 2) throw std::bad_alloc();
  const std::uint32_t capacity = capacity_ == 1 ? 4 : capacity_ * 2;
  void** grown = new void*[capacity];
  std::copy(data(), data() + size_, grown);
  if (capacity_ > 1) delete[] data();
  storage_ = grown;
  capacity_ = capacity;
}

void PointerList::insert(unsigned index, void* pointer) {
  void** begin = data();
  std::copy_backward(begin + index, begin + size_, begin + size_ + 1);
  begin[index] = pointer;
  ++size_;
}

void PointerList::erase(unsigned index) {
  void** begin = data();
  std::copy(begin + index + 1, begin + size_, begin + index);
  --size_;
}

}  // namespace zol_v2::internal
