// What the accessors of choices, of lists of values and of foreign elements share.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "model/internal/checks.h"
#include "model/internal/fields.h"

namespace zol_v2::internal {

// Puts a new object into the slot of a choice; the old alternative is freed last of all.
template <class T>
T& choose(Slot& slot, int& chosen, int selection, Owned<T> object) {
  T& result = slot.adopt(std::move(object));
  chosen = selection;
  return result;
}

// Chooses an enumerated text by its number; false, with nothing stored, if there is no such number.
inline bool choose_number(Slot& slot, int& chosen, int selection, int number,
                          const EnumTable& table) {
  if (number < 1 || number > table.size) return false;
  slot.refer(table[number]);
  chosen = selection;
  return true;
}

// The selection is copied in any case, the text as it is: one that is not listed stays a copy.
inline void copy_enumerated(Slot& slot, int& chosen, const std::wstring& text, int selection,
                            const EnumTable& table) {
  if (choose_number(slot, chosen, selection, table.number_of(text), table)) return;
  choose(slot, chosen, selection, make_owned<std::wstring>(text));
}

// The setter of a list of values: past the end it appends.
template <class T>
lmx::elmx_error set_value(List<T>& list, unsigned index, const T& value) {
  if (index < list.size()) {
    list.grow_to(index) = value;
  } else {
    list.append(value);
  }
  return lmx::elmx_ok;
}

inline void get_foreign(const List<AnyElement>& list, unsigned index, std::string* full_name,
                        std::string* namespace_uri, std::string* text) {
  if (index >= list.size()) return;
  const AnyElement& element = list.at(index);
  if (full_name != nullptr) *full_name = element.full_name;
  if (namespace_uri != nullptr) *namespace_uri = element.namespace_uri;
  if (text != nullptr) *text = element.text;
}

// Stands where a reference is due and there is no object. It belongs to the thread, and what is
// stored in it is lost.
template <class T>
T& nowhere() {
  static thread_local T object;
  return object;
}

}  // namespace zol_v2::internal
