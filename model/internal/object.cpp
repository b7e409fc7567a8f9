#include "model/internal/object.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

#include "lmx/internal/lexical.h"
#include "lmx/internal/word.h"
#include "model/internal/bases.h"
#include "model/internal/document_namespace.h"
#include "model/internal/values.h"

namespace zol_v2::internal {

namespace {

template <class T>
void delete_value(void* value) {
  Owned<T>(static_cast<T*>(value)).reset();
}

void delete_enumerated(const EnumTable& table, const std::wstring* text) {
  if (text != nullptr && table.number_at(text) == 0) {
    Owned<const std::wstring>(text).reset();
  }
}

// Lets go of what a slot owns while this row is chosen.
void release_slot(const Row& row, const Slot& slot) {
  switch (row.kind) {
    case Kind::text:
      delete_value<std::wstring>(slot.text);
      break;
    case Kind::enumerated:
      delete_enumerated(*row.enumeration, slot.enumerated);
      break;
    case Kind::object:
      destroy(slot.object);
      break;
    default:
      break;
  }
}

void mark_set(Object& self, const Row& row) { Head::touch(self, row.bit); }

// Stores a value that passed its checks.
template <class T>
lmx::elmx_error keep(Object& self, const Row& row, const T& value) {
  row.field<T>(self) = value;
  mark_set(self, row);
  return lmx::elmx_ok;
}

// The same where it may be one of several.
template <class T>
lmx::elmx_error keep_number(Object& self, const Row& row, T value) {
  if (row.place != Place::alternative) return keep(self, row, value);
  select(self, row, slot_of(value));
  return lmx::elmx_ok;
}

void store_enumerated(Object& self, const Row& row, const std::wstring* text) {
  if (row.place == Place::alternative) {
    Slot slot;
    slot.enumerated = text;
    select(self, row, slot);
    return;
  }
  delete_enumerated(*row.enumeration, std::exchange(row.field<const std::wstring*>(self), text));
  mark_set(self, row);
}

}  // namespace

void make_child(Object*& child, const Class& type) {
  Pool::disturb(&child);
  child = type.make(nullptr);
}

void delete_entry(const Row& row, void* entry) noexcept {
  switch (row.kind) {
    case Kind::object:
    case Kind::member:
      // Most entries are small and end here.
      if (row.type->is(Class::k_owns_nothing)) {
        delete static_cast<Object*>(entry);
      } else {
        destroy(static_cast<Object*>(entry));
      }
      break;
    case Kind::text:
      delete_value<std::wstring>(entry);
      break;
    case Kind::datetime:
      delete_value<lmx::c_datetime>(entry);
      break;
    default:
      delete_value<AnyElement>(entry);
      break;
  }
}

// --- Enumerations and texts -------------------------------------------------------------------

template <>
const std::wstring& empty_value<std::wstring>() {
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

const std::wstring& Text::empty_text() { return empty_value<std::wstring>(); }

void Text::set_narrow(std::string_view utf8, Pool* pool) {
  release();
  if (utf8.empty()) return;
  if (pool == nullptr) Pool::disturb(this);
  if (utf8.size() > std::numeric_limits<std::uint32_t>::max()) {
    lmx::internal::append_wide(&make(pool), utf8);
    return;
  }
  const std::size_t size = sizeof(Narrow) + utf8.size();
  void* const block = pool != nullptr ? pool->allocate(size) : Pool::allocate_alone(size);
  auto* const text = ::new (block) Narrow{static_cast<std::uint32_t>(utf8.size())};
  std::memcpy(text + 1, utf8.data(), utf8.size());
  word_.store(reinterpret_cast<std::uintptr_t>(text) + k_is_narrow, std::memory_order_release);
}

void Text::copy(const Text& other) {
  std::string_view utf8;
  if (!other.get_narrow(&utf8)) return set(other.get());
  set_narrow(utf8, nullptr);
}

std::wstring& Text::make(Pool* pool) {
  std::uintptr_t word = word_.load(std::memory_order_relaxed);
  if (word == 0 || (word & k_is_narrow) != 0) {
    auto made = make_owned_in<Wide>(pool);
    if (word != 0) lmx::internal::append_wide(&made->text, narrow(word).view());
    release();
    if (pool == nullptr) enter(*made);
    word = reinterpret_cast<std::uintptr_t>(made.release());
    word_.store(word, std::memory_order_release);
  }
  return wide(word).text;
}

// A text in a batch gives its wide form, which stands on the heap, to the batch.
void Text::enter(Wide& made) const {
  made.destroy = [](BatchEntry* entry) { Owned<Wide>(static_cast<Wide*>(entry)).reset(); };
  if (!Pool::add_to_batch(this, &made)) made.destroy = nullptr;
}

// Whoever comes first makes the wide text for all.
const std::wstring& Text::widened(std::uintptr_t word) const {
  auto made = make_owned<Wide>();
  lmx::internal::append_wide(&made->text, narrow(word).view());
  made->source = reinterpret_cast<void*>(word - k_is_narrow);
  const auto wide_word = reinterpret_cast<std::uintptr_t>(made.get());
  if (word_.compare_exchange_strong(word, wide_word, std::memory_order_acq_rel)) {
    enter(*made);
    return made.release()->text;
  }
  return wide(word).text;
}

void Text::release() {
  const std::uintptr_t word = word_.exchange(0, std::memory_order_relaxed);
  if (word == 0) return;
  if ((word & k_is_narrow) != 0) {
    return Pool::release_plain(reinterpret_cast<void*>(word - k_is_narrow));
  }
  const Owned<Wide> gone(&wide(word));
  if (gone->destroy != nullptr) Pool::disturb(this);
  Pool::release_plain(gone->source);
}

void Text::release_rest() {
  const std::uintptr_t word = word_.load(std::memory_order_relaxed);
  if (word == 0 || Pool::goes_with_batch(block())) return;
  if ((word & k_is_narrow) == 0 && Pool::goes_with_batch(wide(word).source)) {
    wide(word).source = nullptr;
  }
  release();
}

void Text::swap(Text& other) noexcept {
  const std::uintptr_t word = word_.load(std::memory_order_relaxed);
  word_.store(other.word_.load(std::memory_order_relaxed), std::memory_order_release);
  other.word_.store(word, std::memory_order_release);
}

// --- Lists ------------------------------------------------------------------------------------

void PointerList::reserve(unsigned count) {
  Pool::disturb(this);
  const unsigned capacity = is_array() ? array().capacity : 1;
  if (count <= capacity) return;
  Pool::disturb(block());
  const unsigned room = std::max(
      {count, 4u, capacity > std::numeric_limits<unsigned>::max() / 2 ? 0u : 2 * capacity});
  void* const block = Pool::allocate_alone(sizeof(Array) + room * sizeof(void*));
  auto* const grown = ::new (block) Array{size(), room};
  std::copy(begin(), end(), grown->items());
  if (is_array()) Pool::release(&array());
  set_array(grown);
}

void PointerList::insert(unsigned index, void* pointer) {
  if (!is_array()) {
    word_ = reinterpret_cast<std::uintptr_t>(pointer);
    return;
  }
  void** const items = array().items();
  std::copy_backward(items + index, items + array().size, items + array().size + 1);
  items[index] = pointer;
  ++array().size;
}

void PointerList::erase(unsigned index) {
  if (!is_array()) {
    word_ = 0;
    return;
  }
  void** const items = array().items();
  std::copy(items + index + 1, items + array().size, items + index);
  if (--array().size == 0) release();
}

void PointerList::fill(void* const* pointers, unsigned count, Pool& pool) {
  if (count == 0) return;
  if (count == 1) {
    word_ = reinterpret_cast<std::uintptr_t>(*pointers);
    return;
  }
  void* const block = pool.allocate(sizeof(Array) + count * sizeof(void*));
  auto* const exact = ::new (block) Array{count, count};
  std::copy(pointers, pointers + count, exact->items());
  set_array(exact);
}

void PointerList::release() {
  if (is_array()) Pool::release(&array());
  word_ = 0;
}

Object& append_object(PointerList& list, const Class& type) {
  return insert_object(list, type, list.size());
}

Object& insert_object(PointerList& list, const Class& type, unsigned index) {
  if (list.size() == std::numeric_limits<unsigned>::max()) throw std::bad_alloc();
  list.reserve(list.size() + 1);
  Object* const object = type.make(nullptr);
  list.insert(std::min(index, list.size()), object);
  return *object;
}

Object& grow_to(PointerList& list, const Class& type, unsigned index) {
  if (index == std::numeric_limits<unsigned>::max()) throw std::bad_alloc();
  const unsigned before = list.size();
  list.reserve(index + 1);
  try {
    while (list.size() <= index) append_object(list, type);
  } catch (...) {
    while (list.size() > before) remove_object(list, list.size() - 1);
    throw;
  }
  return *static_cast<Object*>(list[index]);
}

void remove_object(PointerList& list, unsigned index) {
  if (index >= list.size()) return;
  auto* const gone = static_cast<Object*>(list[index]);
  list.erase(index);
  destroy(gone);
}

void clear_objects(PointerList& list) {
  while (!list.empty()) remove_object(list, list.size() - 1);
}

// --- Setters ----------------------------------------------------------------------------------

// Counts UTF-16 units, where a reader counts characters.
lmx::elmx_error set(Object& self, const Row& row, const std::wstring& value) {
  if (row.kind == Kind::enumerated) {
    return set_number(self, row, row.enumeration->number_of(value))
               ? lmx::elmx_ok
               : lmx::elmx_value_not_enumerated;
  }
  if (row.length != 0) {
    if (value.size() > row.length) return lmx::elmx_length_too_long;
    if (value.size() < row.length) return lmx::elmx_length_too_short;
  }
  if (row.place == Place::alternative) {
    Slot slot;
    slot.text = make_owned<std::wstring>(value).release();
    select(self, row, slot);
    return lmx::elmx_ok;
  }
  row.field<Text>(self).set(value);
  mark_set(self, row);
  return lmx::elmx_ok;
}

lmx::elmx_error set(Object& self, const Row& row, double value) {
  if (const lmx::elmx_error error = check(row, value)) return error;
  return keep_number(self, row, value);
}
lmx::elmx_error set(Object& self, const Row& row, int value) {
  if (const lmx::elmx_error error = check_setter(row, value)) return error;
  return keep_number(self, row, value);
}
lmx::elmx_error set(Object& self, const Row& row, unsigned value) {
  if (const lmx::elmx_error error = check_setter(row, value)) return error;
  return keep_number(self, row, value);
}
lmx::elmx_error set(Object& self, const Row& row, unsigned char value) {
  if (const lmx::elmx_error error = check_setter(row, value)) return error;
  return keep(self, row, value);
}
lmx::elmx_error set(Object& self, const Row& row, bool value) { return keep(self, row, value); }
lmx::elmx_error set(Object& self, const Row& row, const lmx::c_datetime& value) {
  return keep(self, row, value);
}
lmx::elmx_error set(Object& self, const Row& row, const lmx::c_binary& value) {
  Pool::disturb(&self);
  return keep(self, row, value);
}

bool set_number(Object& self, const Row& row, int number) {
  const EnumTable& table = *row.enumeration;
  if (number < 1 || number > table.size) return false;
  store_enumerated(self, row, &table[number]);
  return true;
}

// --- Choices ----------------------------------------------------------------------------------

void select(Object& self, const Row& row, Slot slot) {
  Pool::disturb(&self);
  put(self, row, slot);
}

void put(Object& self, const Row& row, Slot slot) {
  const Class& type = Head::class_of(self);
  const Slot before = std::exchange(row.field<Slot>(self), slot);
  const int chosen = std::exchange(Head::chosen(self), row.bit);
  // The old alternative goes last of all: the new value may have come from inside it.
  if (chosen != type.none) release_slot(type.alternatives().first[chosen], before);
}

void deselect(Object& self) {
  const Class& type = Head::class_of(self);
  const int chosen = Head::chosen(self);
  if (chosen != type.none) put(self, type.alternatives().first[chosen], {});
  Head::chosen(self) = static_cast<std::int16_t>(type.none);
}

Object& choose(Object& self, const Row& row) {
  Object* const held = row.field<Slot>(self).object;
  if (Head::chosen(self) == row.bit && held != nullptr) return *held;
  Slot slot;
  slot.object = row.type->make(nullptr);
  select(self, row, slot);
  return *slot.object;
}

Object& choose(Object& self, const Row& row, const Object& value) {
  Object* const held = row.field<Slot>(self).object;
  if (Head::chosen(self) == row.bit && held != nullptr) {
    internal::assign(*held, value, *row.type);
    return *held;
  }
  Slot slot;
  slot.object = row.type->copy(value);
  select(self, row, slot);
  return *slot.object;
}

void adopt(Object& self, const Row& row, Object* value) {
  Slot slot;
  slot.object = value;
  if (Head::chosen(self) == row.bit) {
    Pool::disturb(&self);
    Pool::disturb(row.field<Slot>(self).object);
    row.field<Slot>(self) = slot;
  } else {
    select(self, row, slot);
  }
}

void get_foreign(const Values<AnyElement>& list, unsigned index, std::string* full_name,
                 std::string* namespace_uri, std::string* text) {
  if (index >= list.size()) return;
  const AnyElement& element = list.at(index);
  if (full_name != nullptr) *full_name = element.full_name;
  if (namespace_uri != nullptr) *namespace_uri = element.namespace_uri;
  if (text != nullptr) *text = element.text;
}

// --- Destruction ------------------------------------------------------------------------------

namespace {

// Objects that stand deeper than the stack should follow wait until the outermost destruction of
// the thread has come back.
struct Destruction {
  static constexpr int k_max_depth = 256;

  int depth = 0;
  std::vector<Object*>* waiting = nullptr;
};

thread_local Destruction t_destruction;

bool wait_for_outermost(Object* object) {
  try {
    t_destruction.waiting->push_back(object);
    return true;
  } catch (const std::bad_alloc&) {
    return false;  // rather deep than leaked
  }
}

}  // namespace

void destroy(Object* object) noexcept {
  if (object == nullptr) return;
  Destruction& state = t_destruction;
  if (state.depth != 0) {
    if (state.depth >= Destruction::k_max_depth && wait_for_outermost(object)) return;
    ++state.depth;
    delete object;
    --state.depth;
    return;
  }
  std::vector<Object*> waiting;
  state.waiting = &waiting;
  state.depth = 1;
  delete object;
  while (!waiting.empty()) {
    Object* const next = waiting.back();
    waiting.pop_back();
    delete next;
  }
  state.depth = 0;
}

namespace {

// What stands in a batch that is intact goes with it. Only a document, which stands outside of its
// blocks, comes across one of them here: an object inside goes one by one only after its batch was
// disturbed.
template <bool k_is_outside>
void release_fields(Object& self, const Class& type) {
  const auto stays = [](const void* block) { return k_is_outside && Pool::goes_with_batch(block); };
  if (type.is_choice()) {
    const int chosen = Head::chosen(self);
    const Row* const rows = type.alternatives().first;
    const Slot& slot = rows->field<Slot>(self);
    if (chosen != type.none && !stays(slot.object)) release_slot(rows[chosen], slot);
  }
  for (std::uint32_t left = type.pointers; left != 0; left &= left - 1) {
    const Row& row = type.rows[lmx::internal::lowest_bit(left)];
    if (row.is_list) {
      PointerList& list = row.field<PointerList>(self);
      if (list.empty()) continue;
      for (void* const* at = list.end(); at != list.begin();) {
        if (!stays(*--at)) delete_entry(row, *at);
      }
      if (!stays(list.block())) list.release();
    } else if (row.kind == Kind::text) {
      Text& text = row.field<Text>(self);
      k_is_outside ? text.release_rest() : text.release();
    } else if (row.kind == Kind::enumerated) {
      const std::wstring* const text = row.field<const std::wstring*>(self);
      if (!stays(text)) delete_enumerated(*row.enumeration, text);
    } else if (Object* const child = row.field<Object*>(self); !stays(child)) {
      destroy(child);
    }
  }
}

}  // namespace

void release(Object& self, const Class& type) noexcept {
  Pool::is_in_chunk(&self) ? release_fields<false>(self, type) : release_fields<true>(self, type);
}

// --- Copies -----------------------------------------------------------------------------------

namespace {

void copy_list(PointerList& to, const PointerList& from, const Row& row) {
  for (void* const entry : from) {
    to.reserve(to.size() + 1);
    switch (row.kind) {
      case Kind::object:
      case Kind::member:
        to.push_back(row.type->copy(*static_cast<Object*>(entry)));
        break;
      case Kind::text:
        to.push_back(make_owned<std::wstring>(*static_cast<std::wstring*>(entry)).release());
        break;
      case Kind::datetime:
        to.push_back(make_owned<lmx::c_datetime>(*static_cast<lmx::c_datetime*>(entry)).release());
        break;
      default:
        to.push_back(make_owned<AnyElement>(*static_cast<AnyElement*>(entry)).release());
        break;
    }
  }
}

template <class T>
void copy_value(Object& to, const Object& from, const Row& row) {
  (void)set(to, row, row.field<T>(from));
}

void copy_single(Object& to, const Object& from, const Row& row) {
  const bool is_set = Head::has(from, row.bit);
  if (!row.is_required && !is_set) return;
  switch (row.kind) {
    case Kind::text:
      if (row.length != 0) {
        (void)set(to, row, row.field<Text>(from).get());
      } else {
        row.field<Text>(to).copy(row.field<Text>(from));
        mark_set(to, row);
      }
      break;
    case Kind::enumerated:
      (void)set_number(to, row, row.enumeration->number_at(row.field<const std::wstring*>(from)));
      break;
    case Kind::real:
      copy_value<double>(to, from, row);
      break;
    case Kind::int32:
      copy_value<int>(to, from, row);
      break;
    case Kind::uint32:
      copy_value<unsigned>(to, from, row);
      break;
    case Kind::uint8:
      copy_value<unsigned char>(to, from, row);
      break;
    case Kind::truth:
      copy_value<bool>(to, from, row);
      break;
    case Kind::datetime:
      copy_value<lmx::c_datetime>(to, from, row);
      break;
    case Kind::binary:
      copy_value<lmx::c_binary>(to, from, row);
      break;
    case Kind::object:
    case Kind::group:
      if (row.is_required) {
        // A new object holds nothing in its children, but that a new document is stamped.
        const auto transfer = Head::has(to, row.bit) ? assign : copy;
        transfer(row.field<Object>(to), row.field<Object>(from), *row.type);
        mark_set(to, row);
        break;
      }
      [[fallthrough]];
    case Kind::member:
      // A holder that was never made has nothing to give.
      if (const Object* const child = row.field<Object*>(from)) {
        Object*& field = row.field<Object*>(to);
        destroy(std::exchange(field, row.type->copy(*child)));
        mark_set(to, row);
      } else if (!row.is_required) {
        mark_set(to, row);
      }
      break;
    case Kind::foreign:
    case Kind::mark:
      break;
  }
}

void copy_choice(Object& to, const Object& from, const Class& type) {
  const int chosen = Head::chosen(from);
  if (chosen == type.none) return;
  const Row& row = type.alternatives().first[chosen];
  const Slot& slot = row.field<Slot>(from);
  switch (row.kind) {
    case Kind::object:
      if (type.shape == Shape::holder) {
        adopt(to, row,
              slot.object == nullptr ? nullptr : Head::class_of(*slot.object).copy(*slot.object));
      } else {
        choose(to, row, *slot.object);
      }
      break;
    case Kind::enumerated:
      // The selection is copied in any case: a text that is not listed stays a text of its own.
      store_enumerated(to, row,
                       row.enumeration->number_at(slot.enumerated) != 0
                           ? slot.enumerated
                           : make_owned<const std::wstring>(*slot.enumerated).release());
      break;
    case Kind::text:
      (void)set(to, row, *slot.text);
      break;
    case Kind::real:
      (void)set(to, row, slot.real);
      break;
    case Kind::int32:
      (void)set(to, row, slot.int32);
      break;
    default:
      (void)set(to, row, slot.uint32);
      break;
  }
}

}  // namespace

void copy(Object& to, const Object& from, const Class& type) {
  if (type.base != nullptr) copy(to, from, *type.base);
  for (const Row& row : type.fields()) {
    if (row.is_list) {
      copy_list(row.field<PointerList>(to), row.field<PointerList>(from), row);
    } else {
      copy_single(to, from, row);
    }
  }
  if (type.is_choice()) copy_choice(to, from, type);
  if (Head::is_nil(from, type)) Head::touch(to, type.nil_bit);
}

namespace {

template <class T>
void swap_values(Object& a, Object& b, const Row& row) {
  std::swap(row.field<T>(a), row.field<T>(b));
}

// What the row of an object owns first of all, or null.
const void* block_of(const Object& self, const Row& row) {
  if (row.is_list) return row.field<PointerList>(self).block();
  if (row.kind == Kind::text) return row.field<Text>(self).block();
  return row.is_pointer() ? row.field<Object*>(self) : nullptr;
}

void swap_rows(Object& a, Object& b, const Class& type);

void swap_row(Object& a, Object& b, const Row& row) {
  if (row.is_list) return row.field<PointerList>(a).swap(row.field<PointerList>(b));
  switch (row.kind) {
    case Kind::text:
      return row.field<Text>(a).swap(row.field<Text>(b));
    case Kind::enumerated:
      return swap_values<const std::wstring*>(a, b, row);
    case Kind::real:
      return swap_values<double>(a, b, row);
    case Kind::int32:
      return swap_values<int>(a, b, row);
    case Kind::uint32:
      return swap_values<unsigned>(a, b, row);
    case Kind::uint8:
      return swap_values<unsigned char>(a, b, row);
    case Kind::truth:
      return swap_values<bool>(a, b, row);
    case Kind::datetime:
      return swap_values<lmx::c_datetime>(a, b, row);
    case Kind::binary:
      return row.field<lmx::c_binary>(a).swap(row.field<lmx::c_binary>(b));
    case Kind::object:
    case Kind::group:
      if (row.is_required) return swap_rows(row.field<Object>(a), row.field<Object>(b), *row.type);
      [[fallthrough]];
    case Kind::member:
      return swap_values<Object*>(a, b, row);
    case Kind::foreign:
    case Kind::mark:
      return;
  }
}

void swap_rows(Object& a, Object& b, const Class& type) {
  for (const Class* level = &type; level != nullptr; level = level->base) {
    for (const Row& row : level->fields()) swap_row(a, b, row);
  }
  if (type.is_choice()) {
    swap_values<Slot>(a, b, *type.alternatives().first);
    std::swap(Head::chosen(a), Head::chosen(b));
  }
  const std::uint32_t changed = (Head::flags(a) ^ Head::flags(b)) & type.flags;
  Head::flags(a) ^= changed;
  Head::flags(b) ^= changed;
}

// Something of the object is about to change its owner.
void disturb(const Object& self, const Class& type) {
  Pool::disturb(&self);
  for (const Class* level = &type; level != nullptr; level = level->base) {
    for (const Row& row : level->fields()) {
      if (row.is_in_place()) {
        disturb(row.field<Object>(self), *row.type);
      } else {
        Pool::disturb(block_of(self, row));
      }
    }
  }
  if (type.is_choice()) Pool::disturb(type.alternatives().first->field<Slot>(self).object);
}

}  // namespace

void swap(Object& a, Object& b, const Class& type) noexcept {
  if (&a == &b) return;
  if (type.keeps_batch() && &Head::class_of(a) == &type && &Head::class_of(b) == &type) {
    type.batch_of(a).swap(type.batch_of(b));
  } else {
    disturb(a, type);
    disturb(b, type);
  }
  swap_rows(a, b, type);
}

void assign(Object& to, const Object& from, const Class& type) {
  const std::unique_ptr<Object> copied(type.copy(from));
  swap(*copied, to, type);
}

void reset(Object& self, const Class& type) {
  const std::unique_ptr<Object> fresh(type.make(nullptr));
  swap(*fresh, self, type);
}

bool is_occurs_ok(const Object& self, const Class& type) {
  if (Head::is_nil(self, type)) return true;
  if ((Head::flags(self) & type.required) != type.required) return false;
  if (type.is_choice() && Head::chosen(self) == type.none) return false;
  if (!type.is(Class::k_required_list)) return true;
  for (const Class* level = &type; level != nullptr; level = level->base) {
    for (const Row& row : level->elements()) {
      if (row.is_list && row.is_required && row.field<PointerList>(self).empty()) return false;
    }
  }
  return true;
}

Object* make_named(const Class& type, int ns_id, const std::string& type_name, Pool* pool) {
  if (ns_id != k_document_namespace_id || type.factory == nullptr) return nullptr;
  for (const Class* const* named = type.factory; *named != nullptr; ++named) {
    if (type_name == (*named)->name) return (*named)->make(pool);
  }
  return nullptr;
}

// --- Comparison -------------------------------------------------------------------------------

namespace {

bool is_same_object(const Object* a, const Object* b) {
  if (a == nullptr || b == nullptr) return a == b;
  const Class& type = Head::class_of(*a);
  return &type == &Head::class_of(*b) && is_same(*a, *b, type);
}

// Texts that stand as they were read are left so.
bool is_same_text(const Text& a, const Text& b) {
  std::string_view x;
  std::string_view y;
  return a.get_narrow(&x) && b.get_narrow(&y) ? x == y : a.get() == b.get();
}

bool is_same_text(const std::wstring* a, const std::wstring* b) {
  return a == b || (a != nullptr && b != nullptr && *a == *b);
}

bool is_same_entry(Kind kind, const void* a, const void* b) {
  switch (kind) {
    case Kind::object:
    case Kind::member:
      return is_same_object(static_cast<const Object*>(a), static_cast<const Object*>(b));
    case Kind::text:
      return *static_cast<const std::wstring*>(a) == *static_cast<const std::wstring*>(b);
    case Kind::datetime:
      return is_same_datetime(*static_cast<const lmx::c_datetime*>(a),
                              *static_cast<const lmx::c_datetime*>(b));
    default:
      return static_cast<const AnyElement*>(a)->text == static_cast<const AnyElement*>(b)->text;
  }
}

bool is_same_list(const PointerList& a, const PointerList& b, Kind kind) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [kind](const void* x, const void* y) { return is_same_entry(kind, x, y); });
}

// To the bit, so that a value that is no number is the same as itself.
template <class T>
bool is_same_bits(const Object& a, const Object& b, const Row& row) {
  // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
  return std::memcmp(&row.field<T>(a), &row.field<T>(b), sizeof(T)) == 0;
}

bool is_same_row(const Object& a, const Object& b, const Row& row) {
  if (row.is_list) {
    return is_same_list(row.field<PointerList>(a), row.field<PointerList>(b), row.kind);
  }
  switch (row.kind) {
    case Kind::text:
      return is_same_text(row.field<Text>(a), row.field<Text>(b));
    case Kind::enumerated:
      return is_same_text(row.field<const std::wstring*>(a), row.field<const std::wstring*>(b));
    case Kind::real:
      return is_same_bits<double>(a, b, row);
    case Kind::int32:
    case Kind::uint32:
      return is_same_bits<std::uint32_t>(a, b, row);
    case Kind::uint8:
    case Kind::truth:
      return is_same_bits<unsigned char>(a, b, row);
    case Kind::datetime:
      return is_same_datetime(row.field<lmx::c_datetime>(a), row.field<lmx::c_datetime>(b));
    case Kind::binary:
      return row.field<lmx::c_binary>(a) == row.field<lmx::c_binary>(b);
    case Kind::object:
    case Kind::group:
      if (row.is_required) return is_same(row.field<Object>(a), row.field<Object>(b), *row.type);
      [[fallthrough]];
    case Kind::member:
      return is_same_object(row.field<Object*>(a), row.field<Object*>(b));
    case Kind::foreign:
    case Kind::mark:
      return true;
  }
  return true;
}

bool is_same_choice(const Object& a, const Object& b, const Class& type) {
  const int chosen = Head::chosen(a);
  if (chosen != Head::chosen(b)) return false;
  if (chosen == type.none) return true;
  const Row& row = type.alternatives().first[chosen];
  const Slot& x = row.field<Slot>(a);
  const Slot& y = row.field<Slot>(b);
  switch (row.kind) {
    case Kind::object:
      return is_same_object(x.object, y.object);
    case Kind::text:
      return *x.text == *y.text;
    case Kind::enumerated:
      return is_same_text(x.enumerated, y.enumerated);
    default:
      return x.word == y.word;
  }
}

}  // namespace

bool is_same(const Object& a, const Object& b, const Class& type) {
  if (((Head::flags(a) ^ Head::flags(b)) & type.flags) != 0) return false;
  if (type.base != nullptr && !is_same(a, b, *type.base)) return false;
  if (type.is_choice() && !is_same_choice(a, b, type)) return false;
  const Rows fields = type.fields();
  return std::all_of(fields.begin(), fields.end(),
                     [&](const Row& row) { return is_same_row(a, b, row); });
}

// --- The head ---------------------------------------------------------------------------------

Object::~Object() = default;

const char* Polymorphic::getid() const { return *Head::class_of(*this).identity; }

bool Polymorphic::has_id(const char* identity) const {
  for (const Class* at = &Head::class_of(*this); at != nullptr; at = at->base) {
    if (*at->identity == identity) return true;
  }
  return false;
}

lmx::elmx_error Polymorphic::marshal(lmx::c_xml_writer& writer, const char* name) const {
  return write_element(*this, Head::class_of(*this), writer, name);
}

lmx::elmx_error Polymorphic::unmarshal(lmx::c_xml_reader& reader, const std::string& name) {
  return read_element(*this, Head::class_of(*this), reader, name);
}

}  // namespace zol_v2::internal
