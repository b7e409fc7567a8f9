// What every object of the model is made of, and what its accessors call.
//
// The fields of a class are plain: a number stands as it is, a required child in place, what is
// optional is a pointer until it is wanted, a text and a list are one word. Which of them are
// present is a bit each in the object's head. What may be stored is said by the row of the class's
// table, which the functions here walk.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "lmx/binary.h"
#include "lmx/dates.h"
#include "lmx/errors.h"
#include "lmx/internal/pool.h"
#include "model/internal/tables.h"
#include "port/export.h"

namespace zol_v2::internal {

using lmx::internal::Batch;
using lmx::internal::BatchEntry;
using lmx::internal::make_owned;
using lmx::internal::make_owned_in;
using lmx::internal::Owned;
using lmx::internal::Pool;

struct Head;
class Object;

// The object of a choice, which becomes the chosen one.
ZOL_API Object& choose(Object& self, const Row& row);
ZOL_API Object& choose(Object& self, const Row& row, const Object& value);
// Takes ownership of the value, which may be null; a member that is chosen already is not freed.
ZOL_API void adopt(Object& self, const Row& row, Object* value);

// Stands where a reference is due and there is no object. It belongs to the thread, and what is
// stored in it is lost.
template <class T>
T& nowhere() {
  static thread_local T object;
  return object;
}

// The head of every object of the model: its class, what is present in it, and the selection of a
// choice. A class that a client derives from one of the model counts as that one.
class ZOL_API Object : public lmx::internal::Pooled {
 public:
  virtual ~Object();

 protected:
  Object() = default;
  // Presence belongs to what was copied, and copying is done row by row.
  Object(const Object&) noexcept {}
  Object& operator=(const Object&) noexcept { return *this; }

  // What a constructor says of the object.
  void become(const Class& type, int none = 0) {
    class_ = type.number;
    chosen_ = static_cast<std::int16_t>(none);
  }
  bool has(unsigned bit) const { return (flags_ >> bit & 1) != 0; }
  void touch(unsigned bit) { flags_ |= std::uint32_t{1} << bit; }
  void drop(unsigned bit) { flags_ &= ~(std::uint32_t{1} << bit); }

  // The object of an alternative, which becomes the chosen one.
  template <class T>
  T& choose_as(const Row& row) {
    return static_cast<T&>(choose(*this, row));
  }
  template <class T>
  T& choose_as(const Row& row, const T& value) {
    return static_cast<T&>(choose(*this, row, value));
  }
  template <class T>
  T& adopt_as(const Row& row, T* value) {
    adopt(*this, row, value);
    return value != nullptr ? *value : nowhere<T>();
  }

  std::uint32_t flags_ = 0;
  std::uint16_t class_ = 0;
  std::int16_t chosen_ = 0;

 private:
  friend struct Head;
};

// The head of an object, for the walkers.
struct Head {
  static const Class& class_of(const Object& self) { return *k_classes[self.class_]; }
  static std::uint32_t& flags(Object& self) { return self.flags_; }
  static std::uint32_t flags(const Object& self) { return self.flags_; }
  static std::int16_t& chosen(Object& self) { return self.chosen_; }
  static int chosen(const Object& self) { return self.chosen_; }
  static bool has(const Object& self, unsigned bit) { return self.has(bit); }
  static void touch(Object& self, unsigned bit) { self.touch(bit); }
  static bool is_nil(const Object& self, const Class& type) {
    return type.is_nillable() && self.has(type.nil_bit);
  }
};

// --- Fields -------------------------------------------------------------------------------------

// One foreign element, kept whole.
struct AnyElement {
  std::string full_name;
  std::string namespace_uri;
  std::string text;
};

// A text in one word. What a reader stores is kept in UTF-8 until somebody asks for the wide text,
// which most texts of most documents are never asked for; two threads may ask at once.
class ZOL_API Text {
 public:
  Text() = default;
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  const std::wstring& get() const {
    const std::uintptr_t word = word_.load(std::memory_order_acquire);
    if (word == 0) return empty_text();
    return (word & k_is_narrow) == 0 ? wide(word).text : widened(word);
  }
  // Does the text still stand as it was read?
  bool get_narrow(std::string_view* utf8) const {
    const std::uintptr_t word = word_.load(std::memory_order_acquire);
    if ((word & k_is_narrow) == 0) return false;
    *utf8 = narrow(word).view();
    return true;
  }

  void set(const std::wstring& text) { make(nullptr) = text; }
  // Well-formed UTF-8.
  void set_narrow(std::string_view utf8, Pool* pool);
  void copy(const Text& other);
  // The wide text, to be changed by one who has the object for himself.
  std::wstring& make(Pool* pool);
  void release();
  // The same, but for what goes with its batch.
  void release_rest();
  void swap(Text& other) noexcept;
  // The block that it owns first of all, or null.
  const void* block() const {
    return reinterpret_cast<const void*>(word_.load(std::memory_order_relaxed) & ~k_is_narrow);
  }

 private:
  struct Narrow {
    std::uint32_t size;

    std::string_view view() const { return {reinterpret_cast<const char*>(this + 1), size}; }
  };
  // With what it was made from, which others may be reading still.
  struct Wide : BatchEntry {
    std::wstring text;
    void* source = nullptr;
  };
  static constexpr std::uintptr_t k_is_narrow = 1;

  static const std::wstring& empty_text();
  void enter(Wide& made) const;
  static Wide& wide(std::uintptr_t word) { return *reinterpret_cast<Wide*>(word); }
  static const Narrow& narrow(std::uintptr_t word) {
    return *reinterpret_cast<const Narrow*>(word - k_is_narrow);
  }
  const std::wstring& widened(std::uintptr_t word) const;

  mutable std::atomic<std::uintptr_t> word_{0};
};

// Pointers in order, in one word: none, the only one itself, or an array. Does not own what they
// point to, and is let go of by release().
class ZOL_API PointerList {
 public:
  PointerList() = default;
  PointerList(const PointerList&) = delete;
  PointerList& operator=(const PointerList&) = delete;

  unsigned size() const {
    if (!is_array()) return word_ == 0 ? 0 : 1;
    return array().size;
  }
  bool empty() const { return word_ == 0; }
  void* operator[](unsigned index) const { return begin()[index]; }
  void* const* begin() const {
    return is_array() ? array().items() : reinterpret_cast<void* const*>(&word_);
  }
  void* const* end() const { return begin() + size(); }

  // Room for so many in all, so that adding up to there cannot throw.
  void reserve(unsigned count);
  void push_back(void* pointer) { insert(size(), pointer); }
  // Needs room.
  void insert(unsigned index, void* pointer);
  void erase(unsigned index);
  // Instead of nothing: pointers in an array of just their number, from the pool.
  void fill(void* const* pointers, unsigned count, Pool& pool);
  void release();
  void swap(PointerList& other) noexcept { std::swap(word_, other.word_); }
  // The array, or the only one, or null.
  const void* block() const { return reinterpret_cast<const void*>(word_ & ~k_is_array); }

 private:
  struct Array {
    std::uint32_t size;
    std::uint32_t capacity;

    void** items() { return reinterpret_cast<void**>(this + 1); }
  };
  static constexpr std::uintptr_t k_is_array = 1;

  bool is_array() const { return (word_ & k_is_array) != 0; }
  Array& array() const { return *reinterpret_cast<Array*>(word_ - k_is_array); }
  void set_array(Array* array) { word_ = reinterpret_cast<std::uintptr_t>(array) + k_is_array; }

  std::uintptr_t word_ = 0;
};

// What an object that was never touched reads as.
template <class T>
const T& empty_object() {
  return static_cast<const T&>(T::k_class.empty());
}
template <class T>
const T& empty_value() {
  static const T value{};
  return value;
}
template <>
ZOL_API const std::wstring& empty_value<std::wstring>();

// What the accessors hand out for a list of children. Good for as long as the list is not changed.
template <class T>
class Each {
 public:
  class Iterator {
   public:
    using value_type = T;
    using reference = T&;
    using pointer = T*;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::forward_iterator_tag;

    Iterator() = default;
    explicit Iterator(void* const* at) : at_(at) {}
    T& operator*() const { return static_cast<T&>(*static_cast<Object*>(*at_)); }
    T* operator->() const { return &**this; }
    Iterator& operator++() {
      ++at_;
      return *this;
    }
    Iterator operator++(int) { return Iterator(at_++); }
    bool operator==(const Iterator& other) const { return at_ == other.at_; }
    bool operator!=(const Iterator& other) const { return at_ != other.at_; }

   private:
    void* const* at_ = nullptr;
  };

  explicit Each(const PointerList& list) : list_(&list) {}
  Iterator begin() const { return Iterator(list_->begin()); }
  Iterator end() const { return Iterator(list_->end()); }
  std::size_t size() const { return list_->size(); }
  bool empty() const { return list_->empty(); }

 private:
  const PointerList* list_;
};

// The untyped half of a list of children; `type` makes them.
ZOL_API Object& append_object(PointerList& list, const Class& type);
ZOL_API Object& insert_object(PointerList& list, const Class& type, unsigned index);
// Appends until the index exists; if memory runs out, the list is as long as it was.
ZOL_API Object& grow_to(PointerList& list, const Class& type, unsigned index);
ZOL_API void remove_object(PointerList& list, unsigned index);
ZOL_API void clear_objects(PointerList& list);

// An ordered list of owned children. A reference to one lives until it is deleted.
template <class T>
class List {
 public:
  unsigned size() const { return pointers_.size(); }
  // Past the end an empty object, for a client that has lost count.
  const T& at(unsigned index) const {
    return index < size() ? static_cast<const T&>(*static_cast<Object*>(pointers_[index]))
                          : empty_object<T>();
  }
  T& grow_to(unsigned index) {
    if (index < size()) return static_cast<T&>(*static_cast<Object*>(pointers_[index]));
    return static_cast<T&>(internal::grow_to(pointers_, T::k_class, index));
  }
  T& back() { return grow_to(size() == 0 ? 0 : size() - 1); }
  lmx::elmx_error append() {
    append_object(pointers_, T::k_class);
    return lmx::elmx_ok;
  }
  lmx::elmx_error insert(unsigned index) {
    insert_object(pointers_, T::k_class, index);
    return lmx::elmx_ok;
  }
  void remove(unsigned index) { remove_object(pointers_, index); }
  void clear() { clear_objects(pointers_); }
  Each<T> each() { return Each<T>(pointers_); }
  Each<const T> each() const { return Each<const T>(pointers_); }

 private:
  PointerList pointers_;
};

// An ordered list of owned values: texts, dates, foreign elements.
template <class T>
class Values {
 public:
  unsigned size() const { return pointers_.size(); }
  const T& at(unsigned index) const {
    return index < size() ? *static_cast<const T*>(pointers_[index]) : empty_value<T>();
  }
  lmx::elmx_error set(unsigned index, const T& value) {
    if (index >= size()) return append(value);
    *static_cast<T*>(pointers_[index]) = value;
    return lmx::elmx_ok;
  }
  lmx::elmx_error append(const T& value) { return insert(size(), value); }
  lmx::elmx_error insert(unsigned index, const T& value) {
    pointers_.reserve(size() + 1);
    pointers_.insert(index < size() ? index : size(), make_owned<T>(value).release());
    return lmx::elmx_ok;
  }
  void remove(unsigned index) {
    if (index >= size()) return;
    const Owned<T> gone(static_cast<T*>(pointers_[index]));
    pointers_.erase(index);
  }
  void clear() {
    while (size() != 0) remove(size() - 1);
  }

 private:
  PointerList pointers_;
};

// What a choice holds. Its selection says which.
union Slot {
  std::uint64_t word = 0;
  double real;
  int int32;
  unsigned uint32;
  std::wstring* text;
  const std::wstring* enumerated;
  Object* object;
};
inline Slot slot_of(double value) {
  Slot slot;
  slot.real = value;
  return slot;
}
inline Slot slot_of(int value) {
  Slot slot;
  slot.int32 = value;
  return slot;
}
inline Slot slot_of(unsigned value) {
  Slot slot;
  slot.uint32 = value;
  return slot;
}

// --- What the accessors call ------------------------------------------------------------------

inline const std::wstring& text_of(const std::wstring* text) {
  return text != nullptr ? *text : empty_value<std::wstring>();
}

// Checks the facets of the row, in their order, and stores the value if they hold: 0, or the code
// of the first that fails. An alternative becomes the chosen one.
ZOL_API lmx::elmx_error set(Object& self, const Row& row, const std::wstring& value);
ZOL_API lmx::elmx_error set(Object& self, const Row& row, double value);
ZOL_API lmx::elmx_error set(Object& self, const Row& row, int value);
ZOL_API lmx::elmx_error set(Object& self, const Row& row, unsigned value);
ZOL_API lmx::elmx_error set(Object& self, const Row& row, unsigned char value);
ZOL_API lmx::elmx_error set(Object& self, const Row& row, bool value);
ZOL_API lmx::elmx_error set(Object& self, const Row& row, const lmx::c_datetime& value);
ZOL_API lmx::elmx_error set(Object& self, const Row& row, const lmx::c_binary& value);
// By its number in the enumeration; false, with nothing stored, if there is no such number.
ZOL_API bool set_number(Object& self, const Row& row, int number);

// An optional child or a holder, made when it is first wanted.
template <class T>
const T& child_of(const Object* child) {
  return child != nullptr ? static_cast<const T&>(*child) : empty_object<T>();
}
ZOL_API void make_child(Object*& child, const Class& type);
template <class T>
T& made(Object*& child) {
  if (child == nullptr) make_child(child, T::k_class);
  return static_cast<T&>(*child);
}
template <class T>
T& assigned(T& child, const T& value) {
  return child = value;
}

// Puts a value into the slot of a choice, whatever held it before, and makes it the chosen one. A
// reader may put into an object of its own without ado.
void select(Object& self, const Row& row, Slot slot);
void put(Object& self, const Row& row, Slot slot);
// Then nothing is chosen.
void deselect(Object& self);

// Each output is left alone if its pointer is null, all of them if there is no such element.
ZOL_API void get_foreign(const Values<AnyElement>& list, unsigned index, std::string* full_name,
                         std::string* namespace_uri, std::string* text);

// --- Walkers ----------------------------------------------------------------------------------

// As if through the accessors: what is optional is copied if it is set, what is required is stored
// and so counts as set afterwards, unless its facets refuse the value.
ZOL_API void copy(Object& to, const Object& from, const Class& type);
ZOL_API void swap(Object& a, Object& b, const Class& type) noexcept;
ZOL_API void assign(Object& to, const Object& from, const Class& type);
ZOL_API void reset(Object& self, const Class& type);
ZOL_API bool is_occurs_ok(const Object& self, const Class& type);
// Lets go of what the rows of this class, not of its bases, own on the heap.
ZOL_API void release(Object& self, const Class& type) noexcept;
// Deletes an object that stands on the heap; null is let pass. Depth costs no stack.
void destroy(Object* object) noexcept;
// An entry of a list: a child, a holder, or what a simple or a foreign row keeps.
void delete_entry(const Row& row, void* entry) noexcept;
// Whether two objects of the class hold the same, in every row and flag.
bool is_same(const Object& a, const Object& b, const Class& type);

// A new object of the named type, null if the namespace is not that of the format or the class's
// factory does not have it.
ZOL_API Object* make_named(const Class& type, int ns_id, const std::string& type_name, Pool* pool);

template <class T>
T& assigned(T& to, const T& from, const Class& type) {
  assign(to, from, type);
  return to;
}

// By way of a third, so that what stood there goes at once, and an object may be moved to itself.
template <class T>
T& moved(T& to, T& from) noexcept {
  T taken(std::move(from));
  to.swap(taken);
  return to;
}

// What a class's table says of making it.
template <class T>
constexpr Making making() {
  return {[](Pool* pool) -> Object* { return pool != nullptr ? new (*pool) T : new T; },
          [](const Object& other) -> Object* { return new T(static_cast<const T&>(other)); },
          []() -> const Object& {
            static const T object;
            return object;
          },
          sizeof(T)};
}

template <class Root>
constexpr Family k_family{[](const Object& self, lmx::c_xml_writer& writer, const char* name) {
                            return static_cast<const Root&>(self).marshal(writer, name);
                          },
                          [](Object& self, lmx::c_xml_reader& reader, const std::string& name) {
                            return static_cast<Root&>(self).unmarshal(reader, name);
                          }};

}  // namespace zol_v2::internal
