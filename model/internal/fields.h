// How a row of the schema is stored in an object of the model.
//
// A field knows its value and whether it was set; what may be stored in it is checked before
// (checks.h), and how it is read and written is told elsewhere (reading.h, writing.h). Every field
// has `set`, and swap() exchanges two of them without copying; none is copied as such, since a copy
// of an object follows rules of its own (copying.h).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "lmx/internal/pool.h"
#include "port/export.h"

namespace zol_v2::internal {

using lmx::internal::make_owned;
using lmx::internal::make_owned_in;
using lmx::internal::Owned;
using lmx::internal::Pool;

ZOL_API const std::wstring& empty_text();

// What the const getter of an absent child gives: an object in the state of its construction.
template <class T>
const T& empty_object() {
  static const T object{};
  return object;
}

// A number, a truth value, a date and time, bytes.
template <class T>
struct Value {
  T value{};
  bool set = false;

  void swap(Value& other) {
    std::swap(value, other.value);
    std::swap(set, other.set);
  }
};

// The text of a required row.
struct Text {
  std::wstring value;
  bool set = false;

  const std::wstring& get() const { return value; }
  std::wstring& make() { return value; }
  void swap(Text& other) {
    value.swap(other.value);
    std::swap(set, other.set);
  }
};

// The text of an optional row, which most objects do not have: a pointer until it is wanted.
struct OptionalText {
  Owned<std::wstring> value;
  bool set = false;

  const std::wstring& get() const { return value ? *value : empty_text(); }
  std::wstring& make(Pool* pool = nullptr) {
    if (!value) value = make_owned_in<std::wstring>(pool);
    return *value;
  }
  void swap(OptionalText& other) {
    value.swap(other.value);
    std::swap(set, other.set);
  }
};

// The values of one enumeration, in the order in which they are numbered from 1. They are ASCII,
// and stand here in both widths: a reader compares bytes, an object keeps a pointer to the wide
// text.
struct EnumTable {
  const std::wstring* first;
  const std::string_view* narrow;
  int size;

  // 0 if the text is none of the values.
  ZOL_API int number_of(const std::wstring& text) const;
  int number_of(std::string_view utf8) const;
  // The same for UTF-8 that is not ASCII, which ends for this purpose where its conversion would.
  int number_of_converted(const std::string& utf8) const;
  const std::wstring& operator[](int number) const { return first[number - 1]; }
};

// An enumerated text: a pointer into the table of its values. A text outside the table is owned;
// only a reader whose handler passed over code 38 stores one.
class Enumerated {
 public:
  Enumerated() = default;
  explicit Enumerated(const std::wstring& initial) : text_(&initial) {}
  Enumerated(const Enumerated&) = delete;
  Enumerated& operator=(const Enumerated&) = delete;
  ~Enumerated() {
    if (is_owned_) delete text_;
  }

  bool set = false;

  const std::wstring& get() const { return text_ ? *text_ : empty_text(); }
  int number(const EnumTable& table) const {
    if (text_ == nullptr || is_owned_) return 0;
    return static_cast<int>(text_ - table.first) + 1;
  }
  void store(const EnumTable& table, int number) { replace(&table[number], false); }
  ZOL_API void store_foreign(const std::string& utf8);
  void swap(Enumerated& other) {
    std::swap(text_, other.text_);
    std::swap(is_owned_, other.is_owned_);
    std::swap(set, other.set);
  }

 private:
  void replace(const std::wstring* text, bool is_owned) {
    if (is_owned_) delete text_;
    text_ = text;
    is_owned_ = is_owned;
  }

  const std::wstring* text_ = nullptr;
  bool is_owned_ = false;
};

// A required child, held in place. `set` means touched: handed out for change, assigned or read.
template <class T>
struct Child {
  T value;
  bool set = false;

  const T& get() const { return value; }
  T& touch() {
    set = true;
    return value;
  }
  T& make(Pool* = nullptr) { return value; }
  void swap(Child& other) {
    value.swap(other.value);
    std::swap(set, other.set);
  }
};

// An optional child, or the holder of a substitution group: on the heap from the first touch on.
// Clearing `set` leaves the child's contents in place.
template <class T>
struct OptionalChild {
  Owned<T> value;
  bool set = false;

  const T& get() const { return value ? *value : empty_object<T>(); }
  T& touch() {
    T& object = make();
    set = true;
    return object;
  }
  T& make(Pool* pool = nullptr) {
    if (!value) value = make_owned_in<T>(pool);
    return *value;
  }
  void swap(OptionalChild& other) {
    value.swap(other.value);
    std::swap(set, other.set);
  }
};

// The untyped part of a list: pointers in order, one of them in place. Does not own them.
class PointerList {
 public:
  PointerList() = default;
  PointerList(const PointerList&) = delete;
  PointerList& operator=(const PointerList&) = delete;
  ~PointerList() {
    if (capacity_ > 1) delete[] data();
  }

  unsigned size() const { return size_; }
  bool empty() const { return size_ == 0; }
  void* operator[](unsigned index) const { return data()[index]; }
  void** data() { return capacity_ > 1 ? static_cast<void**>(storage_) : &storage_; }
  void* const* data() const {
    return capacity_ > 1 ? static_cast<void* const*>(storage_) : &storage_;
  }

  // Room for one more, so that the next insertion cannot throw.
  void reserve_one() {
    if (size_ == capacity_) grow();
  }
  void push_back(void* pointer) { data()[size_++] = pointer; }
  ZOL_API void insert(unsigned index, void* pointer);
  ZOL_API void erase(unsigned index);
  void pop_back() { --size_; }
  void swap(PointerList& other) {
    std::swap(storage_, other.storage_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
  }

 private:
  ZOL_API void grow();

  void* storage_ = nullptr;  // the one pointer itself, or the array
  std::uint32_t size_ = 0;
  std::uint32_t capacity_ = 1;
};

// An ordered list of owned objects: children, or the values of a simple row. A reference to an
// element lives until the element is deleted.
template <class T>
class List {
 public:
  List() = default;
  List(const List&) = delete;
  List& operator=(const List&) = delete;
  ~List() { clear(); }

  unsigned size() const { return pointers_.size(); }
  bool empty() const { return pointers_.empty(); }
  // Past the end an empty object, for a client that has lost count.
  const T& at(unsigned index) const {
    return index < size() ? *static_cast<const T*>(pointers_[index]) : empty_object<T>();
  }
  // Appends default elements until there is one with this index.
  T& grow_to(unsigned index) {
    while (size() <= index) append();
    return *static_cast<T*>(pointers_[index]);
  }
  T& back() { return grow_to(empty() ? 0 : size() - 1); }

  template <class... Args>
  T& append(Args&&... args) {
    return append_in(nullptr, std::forward<Args>(args)...);
  }
  template <class... Args>
  T& append_in(Pool* pool, Args&&... args) {
    pointers_.reserve_one();
    T* object = make_owned_in<T>(pool, std::forward<Args>(args)...).release();
    pointers_.push_back(object);
    return *object;
  }
  // Before the element with this index, or at the end if there is none.
  template <class... Args>
  T& insert(unsigned index, Args&&... args) {
    if (index >= size()) return append(std::forward<Args>(args)...);
    pointers_.reserve_one();
    T* object = make_owned<T>(std::forward<Args>(args)...).release();
    pointers_.insert(index, object);
    return *object;
  }
  // Past the end nothing is removed.
  void remove(unsigned index) {
    if (index >= size()) return;
    const Owned<T> object(static_cast<T*>(pointers_[index]));
    pointers_.erase(index);
  }
  void clear() {
    while (!empty()) {
      const Owned<T> last(&back());
      pointers_.pop_back();
    }
  }
  void swap(List& other) { pointers_.swap(other.pointers_); }

 private:
  PointerList pointers_;
};

// What a choice holds: a number in place, or an object, owned or from a table of values. It does
// not know which; the selection beside it does.
class Slot {
 public:
  Slot() = default;
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;
  ~Slot() { clear(); }

  // What is not of the asked type reads as its default.
  double number() const { return kind_ == Kind::number ? number_ : 0.0; }
  std::int64_t integer() const { return kind_ == Kind::integer ? integer_ : 0; }
  template <class T>
  const T& object() const {
    return has_object() ? *static_cast<const T*>(object_) : empty_object<T>();
  }
  template <class T>
  T& object() {
    return *static_cast<T*>(const_cast<void*>(object_));
  }
  bool has_object() const { return kind_ == Kind::object; }

  void store(double number) {
    clear();
    kind_ = Kind::number;
    number_ = number;
  }
  void store(std::int64_t integer) {
    clear();
    kind_ = Kind::integer;
    integer_ = integer;
  }
  // Takes ownership.
  template <class T>
  T& adopt(Owned<T> object) {
    clear();
    kind_ = Kind::object;
    destroy_ = [](const void* old) { Owned<const T>(static_cast<const T*>(old)).reset(); };
    T& result = *object;
    object_ = object.release();
    return result;
  }
  // The object stays whose it is and must outlive the slot.
  template <class T>
  void refer(const T& object) {
    clear();
    kind_ = Kind::object;
    object_ = &object;
  }
  void clear() {
    if (destroy_ != nullptr) destroy_(object_);
    destroy_ = nullptr;
    kind_ = Kind::nothing;
  }
  void swap(Slot& other) {
    std::swap(bits_, other.bits_);
    std::swap(destroy_, other.destroy_);
    std::swap(kind_, other.kind_);
  }

 private:
  enum class Kind : unsigned char { nothing, number, integer, object };

  union {
    std::uint64_t bits_ = 0;
    double number_;
    std::int64_t integer_;
    const void* object_;
  };
  void (*destroy_)(const void*) = nullptr;
  Kind kind_ = Kind::nothing;
};

// One foreign element, kept whole.
struct AnyElement {
  std::string full_name;
  std::string namespace_uri;
  std::string text;
};

}  // namespace zol_v2::internal
