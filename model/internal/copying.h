// The steps of a copy constructor, one for each kind of field.
//
// A copy is made as if through the accessors: what is optional is copied if it is set, what is
// required is always stored and so counts as set afterwards, unless its facets refuse the value.
// An enumerated text goes by its number, and stays unset if it has none.
#pragma once

#include <memory>

#include "model/internal/checks.h"
#include "model/internal/fields.h"

namespace zol_v2::internal {

template <class T, class... Facet>
void copy_required(Value<T>& to, const Value<T>& from, const Facet&... facet) {
  (void)store(to, from.value, facet...);
}

template <class... Facet>
void copy_required(Text& to, const Text& from, const Facet&... facet) {
  (void)store(to, from.value, facet...);
}

inline void copy_required(Enumerated& to, const Enumerated& from, const EnumTable& table) {
  (void)store_number(to, from.number(table), table);
}

template <class T>
void copy_required(Child<T>& to, const Child<T>& from) {
  to.touch() = from.value;
}

// A holder that was never made has nothing to give.
template <class T>
void copy_required(OptionalChild<T>& to, const OptionalChild<T>& from) {
  if (from.value) to.touch() = *from.value;
}

template <class T, class... Facet>
void copy_optional(Value<T>& to, const Value<T>& from, const Facet&... facet) {
  if (from.set) copy_required(to, from, facet...);
}

inline void copy_optional(OptionalText& to, const OptionalText& from) {
  if (from.set) (void)store(to, from.get());
}

inline void copy_optional(Enumerated& to, const Enumerated& from, const EnumTable& table) {
  if (from.set) copy_required(to, from, table);
}

template <class T>
void copy_optional(OptionalChild<T>& to, const OptionalChild<T>& from) {
  if (!from.set) return;
  to.value = make_owned<T>(from.get());
  to.set = true;
}

template <class T>
void copy_list(List<T>& to, const List<T>& from) {
  for (unsigned i = 0; i < from.size(); ++i) to.append(from.at(i));
}

}  // namespace zol_v2::internal
