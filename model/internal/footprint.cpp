#include "model/internal/footprint.h"

#include <new>
#include <vector>

namespace zol_v2::internal {

namespace {

constexpr std::uint64_t k_head = 8;  // of a block

std::uint64_t block(std::uint64_t size) { return k_head + (size + 7) / 8 * 8; }

// What a string has beside itself; a short one has nothing.
template <class String>
std::uint64_t beside(const String& text) {
  static const std::size_t in_place = String().capacity();
  return text.capacity() > in_place ? (text.capacity() + 1) * sizeof(text[0]) : 0;
}

std::uint64_t of(const Text& text) {
  std::string_view narrow;
  if (text.get_narrow(&narrow)) return block(sizeof(std::uint32_t) + narrow.size());
  const std::wstring& wide = text.get();
  return wide.empty() ? 0 : block(sizeof(std::wstring) + sizeof(void*)) + beside(wide);
}

// An entry of a list of values, or what a choice keeps.
std::uint64_t of(Kind kind, const void* value) {
  if (value == nullptr) return 0;
  switch (kind) {
    case Kind::text:
      return block(sizeof(std::wstring)) + beside(*static_cast<const std::wstring*>(value));
    case Kind::datetime:
      return block(sizeof(lmx::c_datetime));
    case Kind::foreign: {
      const AnyElement& element = *static_cast<const AnyElement*>(value);
      return block(sizeof element) + beside(element.full_name) + beside(element.namespace_uri) +
             beside(element.text);
    }
    default:
      return 0;
  }
}

// Keeps the objects that are still to be looked into, so that depth costs no stack.
class Counter {
 public:
  std::uint64_t count(const Object& root) {
    add_block(&root);
    while (!open_.empty()) {
      const Object& object = *open_.back();
      open_.pop_back();
      const Class& type = Head::class_of(object);
      for (const Class* level = &type; level != nullptr; level = level->base) {
        for (const Row& row : level->fields()) add(object, row);
      }
      const Class& content = type.content_class();
      const int chosen = Head::chosen(object);
      if (content.is_choice() && chosen != content.none) {
        add_chosen(object, content.alternatives().first[chosen]);
      }
    }
    return total_;
  }
  std::uint64_t total() const { return total_; }

 private:
  void add_block(const Object* object) {
    if (object == nullptr) return;
    total_ += block(Head::class_of(*object).making.size);
    open_.push_back(object);
  }

  void add(const Object& object, const Row& row) {
    const bool holds_objects = row.type != nullptr;
    if (row.kind == Kind::mark) return;
    if (row.is_list) {
      const PointerList& list = row.field<PointerList>(object);
      if (list.size() > 1) total_ += block(sizeof(std::uint64_t) + list.size() * sizeof(void*));
      for (void* const entry : list) {
        if (holds_objects) {
          add_block(static_cast<const Object*>(entry));
        } else {
          total_ += of(row.kind, entry);
        }
      }
    } else if (holds_objects) {
      if (row.is_in_place()) {
        open_.push_back(&row.field<Object>(object));
      } else {
        add_block(row.field<Object*>(object));
      }
    } else if (row.kind == Kind::text) {
      total_ += of(row.field<Text>(object));
    } else if (row.kind == Kind::binary) {
      total_ += row.field<lmx::c_binary>(object).size();
    }
  }

  void add_chosen(const Object& object, const Row& row) {
    const Slot& slot = row.field<Slot>(object);
    if (row.type != nullptr) {
      add_block(slot.object);
    } else if (row.kind == Kind::text) {
      total_ += of(row.kind, slot.text);
    }
  }

  std::vector<const Object*> open_;
  std::uint64_t total_ = 0;
};

}  // namespace

std::uint64_t footprint(const Object& object) noexcept {
  Counter counter;
  try {
    return counter.count(object);
  } catch (const std::bad_alloc&) {
    return counter.total();
  }
}

}  // namespace zol_v2::internal
