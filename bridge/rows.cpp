// Objects and rows of every class, by number: what a client needs one function for where the flat
// interface has one for each row.

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "bridge/bridge.h"
#include "bridge/zol_helpers.h"
#include "bridge/zol_model.h"
#include "facade/version.h"
#include "lmx/internal/number_text.h"
#include "model/Zol.h"
#include "model/internal/footprint.h"
#include "model/internal/values.h"
#include "model/reflection.h"
#include "port/returned_text.h"

namespace {

using lmx::elmx_error;
using zol::bridge::as;
using zol_v2::internal::End;
using zol_v2::internal::Head;
using zol_v2::internal::Kind;
using zol_v2::internal::Object;
using zol_v2::internal::Place;
using zol_v2::internal::PointerList;
using zol_v2::internal::Shape;
using zol_v2::internal::Values;
using zol_v2::reflection::ConstRef;
using zol_v2::reflection::Ref;
using zol_v2::reflection::Row;
using zol_v2::reflection::Type;
using zol_v2::reflection::Value;
using Dates = Values<lmx::c_datetime>;

constexpr elmx_error k_other_type = lmx::elmx_bad_choice;
constexpr elmx_error k_no_memory = lmx::elmx_user_defined_1;

// A row by its number: that of its class, and its place among the rows of the class.
constexpr unsigned k_rows_of_a_class = 256;

const zol_v2::internal::Row& table_of(unsigned row) {
  return zol_v2::internal::k_classes[row / k_rows_of_a_class]->rows[row % k_rows_of_a_class];
}

Row row_of(unsigned row) { return table_of(row); }

int number_of(Type type, Row row) {
  const auto place = &row.table() - type.table().rows;
  return static_cast<int>(type.table().number * k_rows_of_a_class + static_cast<unsigned>(place));
}

Type type_numbered(unsigned number) {
  const auto types = zol_v2::reflection::all_types();
  return number < types.size() ? Type(*zol_v2::internal::k_classes[number]) : Type();
}

Value value_of(void* self, unsigned row, unsigned index) {
  return ConstRef(as<Object>(self)).value(row_of(row), index);
}

bool is_there(void* self, unsigned row) { return ConstRef(as<Object>(self)).has(row_of(row)); }

// No exception may reach the caller; what they all tell is that memory ran out.
template <class Result, class Operation>
Result guarded(Result otherwise, Operation operation) noexcept {
  try {
    return operation();
  } catch (...) {
    return otherwise;
  }
}

char* given(std::string_view text) { return zol::port::give_narrow(std::string(text)); }

// --- Children -----------------------------------------------------------------------------------

// The element that an object stands for: itself, or what a holder holds.
ConstRef seen_through(ConstRef child) {
  if (!child || child.type().shape() != Shape::holder) return child;
  const Row chosen = child.chosen();
  return chosen ? child.value(chosen).child() : ConstRef();
}

// Whether an object of the type is all that the class can hold.
bool is_alike(Type a, Type b) { return &a.table().content_class() == &b.table().content_class(); }

bool may_name(Row alternative, Type type) {
  if (alternative.named_type() == zol_v2::internal::NamedType::no) return false;
  for (const Type named : alternative.type().named_types()) {
    if (named == type) return true;
  }
  return false;
}

// The alternative of a holder for an object of the type; of two, the one that is made for it.
Row alternative_for(Type holder, Type type) {
  for (const Row row : holder.elements()) {
    if (is_alike(row.type(), type)) return row;
  }
  for (const Row row : holder.elements()) {
    if (may_name(row, type)) return row;
  }
  return {};
}

// The child of an alternative as an object of the type, null if it can't be that.
Object* chosen_as(Ref choice, Row alternative, Type type) {
  const bool is_own = is_alike(alternative.type(), type);
  if (!is_own && !may_name(alternative, type)) return nullptr;
  const ConstRef held = ConstRef(choice).value(alternative).child();
  if (held && is_alike(held.type(), type)) return const_cast<Object*>(&held.object());
  if (held) choice.unset(alternative);
  const Ref made = is_own ? choice.choose(alternative) : choice.choose(alternative, type);
  return made ? &made.object() : nullptr;
}

// What the row may stand for as an object of the type.
bool may_hold(Row row, Type type) {
  if (!type || !row.type()) return false;
  if (row.type().shape() == Shape::holder) return bool(alternative_for(row.type(), type));
  return is_alike(row.type(), type) || (row.place() == Place::alternative && may_name(row, type));
}

// The holder's or the row's own child.
Object* filled(Ref child, Type type) {
  if (child.type().shape() != Shape::holder) return &child.object();
  return chosen_as(child, alternative_for(child.type(), type), type);
}

elmx_error assign(Object& to, const Object& from) {
  const Type type = zol_v2::reflection::type_of(to);
  const ConstRef source(from);
  if (!is_alike(type, source.type())) return k_other_type;
  if (&to == &from) return lmx::elmx_ok;
  zol_v2::internal::assign(to, from, type.table().content_class());
  Ref(to).set_nil(source.is_nil());
  return lmx::elmx_ok;
}

// The same for a source that may be a part of the target, which loses its parts on the way.
elmx_error replace(Object& to, const Object& from) {
  const Type type = zol_v2::reflection::type_of(to);
  const ConstRef source(from);
  if (!is_alike(type, source.type())) return k_other_type;
  if (&to == &from) return lmx::elmx_ok;
  const auto copy = source.type().make();
  const elmx_error error = assign(*copy, from);
  if (error != lmx::elmx_ok) return error;
  const bool is_nil = source.is_nil();
  zol_v2::internal::swap(to, *copy, type.table().content_class());
  Ref(to).set_nil(is_nil);
  return lmx::elmx_ok;
}

// --- Values --------------------------------------------------------------------------------------

std::string words(double number) {
  if (number == 0) return "0";  // a document has it with a point
  char buffer[lmx::internal::k_number_room];
  return std::string(buffer, lmx::internal::format_double(number, buffer));
}

// What may stand in a row.
std::string expected(Row row) {
  if (!row.values().empty()) {
    std::string text = "one of ";
    for (const std::string_view value : row.values()) {
      if (text.back() != ' ') text += ", ";
      text += value;
    }
    return text;
  }
  if (row.length() != 0) {
    return "exactly " + std::to_string(row.length()) +
           (row.length() == 1 ? " character" : " characters");
  }
  std::string text;
  if (const auto lower = row.lower()) {
    text = (lower.end == End::strict ? "more than " : "at least ") + words(lower.value);
  }
  if (const auto upper = row.upper()) {
    if (!text.empty()) text += " and ";
    text += (upper.end == End::strict ? "less than " : "at most ") + words(upper.value);
  }
  if (!text.empty() && !row.unit().empty()) text.append(" ").append(row.unit());
  return text;
}

template <class T>
elmx_error set_integer(Object& self, Row row, long long value) {
  using Limits = std::numeric_limits<T>;
  if (value < static_cast<long long>(Limits::min())) return lmx::elmx_value_too_small;
  if (value > static_cast<long long>(Limits::max())) return lmx::elmx_value_too_big;
  // As a reader does, which knows bounds that setters don't.
  const elmx_error error = zol_v2::internal::check(row.table(), static_cast<double>(value));
  return error != lmx::elmx_ok ? error : set(self, row.table(), static_cast<T>(value));
}

// A list of texts grows at its end alone.
void move_last(PointerList& list, unsigned index) {
  const unsigned last = list.size() - 1;
  if (index >= last) return;
  void* const entry = list[last];
  list.erase(last);
  list.insert(index, entry);
}

zol_moment moment_of(const lmx::c_datetime& date) {
  return {date.get_year(),
          date.get_month(),
          date.get_day(),
          date.get_hours(),
          date.get_mins(),
          date.get_secs(),
          date.get_total_offset_mins(),
          date.get_is_utc() ? 1u : 0u};
}

// False if no document can hold it.
bool read_moment(const zol_moment& moment, lmx::c_datetime* date) {
  if (moment.is_utc != 0 && moment.offset_mins != 0) return false;
  date->set_year(moment.year);
  date->set_month(moment.month);
  date->set_day(moment.day);
  date->set_hours(moment.hours);
  date->set_mins(moment.mins);
  date->set_secs(moment.secs);
  date->set_total_offset_mins(moment.offset_mins);
  // A zone of zero that is not UTC would be written as no zone.
  date->set_is_utc(moment.offset_mins == 0);
  return lmx::c_datetime::is_valid(date->get_as_string());
}

// --- Spectra -------------------------------------------------------------------------------------

// The list of points of a spectral class, and where a point has its numbers.
struct Points {
  Row list;
  Row wavelength;
  Row value;
};

Points points_of(Type type) {
  for (const Row row : type.elements()) {
    if (!row.is_list() || !row.type() || row.type().shape() != Shape::simple) continue;
    const Row wavelength = row.type().row("Wavelength");
    if (wavelength) return {row, wavelength, row.type().content()};
  }
  return {};
}

}  // namespace

// --- Does an assembly fit the library? -----------------------------------------------------------

unsigned ZOL_CALL zol_version() { return zol_v2::version(); }
unsigned ZOL_CALL zol_model() { return ZOL_MODEL_NUMBER; }

// --- Objects -------------------------------------------------------------------------------------

unsigned ZOL_CALL zol_type_of(void* object) { return Head::class_of(as<Object>(object)).number; }

int ZOL_CALL zol_type(const char* name) {
  const Type type = zol_v2::reflection::find_type(name);
  return type ? type.table().number : -1;
}

unsigned long long ZOL_CALL zol_memory(void* object) {
  return zol_v2::internal::footprint(as<Object>(object));
}

void* ZOL_CALL zol_new(unsigned type) {
  return guarded<void*>(nullptr, [=]() -> void* {
    const Type made = type_numbered(type);
    return made ? made.make().release() : nullptr;
  });
}

void* ZOL_CALL zol_copy(void* object) {
  return guarded<void*>(nullptr, [=]() -> void* {
    const ConstRef source(as<Object>(object));
    auto copy = source.type().make();
    if (assign(*copy, source.object()) != lmx::elmx_ok) return nullptr;
    return copy.release();
  });
}

void ZOL_CALL zol_delete(void* object) { delete static_cast<Object*>(object); }

int ZOL_CALL zol_assign(void* to, void* from) {
  return guarded(k_no_memory, [=] { return replace(as<Object>(to), as<Object>(from)); });
}

unsigned ZOL_CALL zol_is_nil(void* object) { return ConstRef(as<Object>(object)).is_nil() ? 1 : 0; }

unsigned ZOL_CALL zol_set_nil(void* object, unsigned is_nil) {
  return Ref(as<Object>(object)).set_nil(is_nil != 0) ? 1 : 0;
}

char* ZOL_CALL zol_path(void* root, void* object, int row, unsigned index) {
  return guarded<char*>(nullptr, [=]() -> char* {
    const ConstRef top(as<Object>(root)), at(as<Object>(object));
    std::string path;
    const bool is_found =
        row < 0 ? append_path(top, at, &path)
                : append_path(top, at, row_of(static_cast<unsigned>(row)), index, &path);
    return is_found ? given(path) : nullptr;
  });
}

// --- Rows ----------------------------------------------------------------------------------------

int ZOL_CALL zol_row(const char* type, const char* row) {
  const Type owner = zol_v2::reflection::find_type(type);
  if (!owner) return -1;
  for (const auto& table : owner.table().all()) {
    if (Row(table).name() == row) return number_of(owner, table);
  }
  return -1;
}

char* ZOL_CALL zol_expected(unsigned row) {
  return guarded<char*>(nullptr, [=]() -> char* {
    const std::string text = expected(row_of(row));
    return text.empty() ? nullptr : given(text);
  });
}

unsigned ZOL_CALL zol_count(void* self, unsigned row) {
  return ConstRef(as<Object>(self)).count(row_of(row));
}

unsigned ZOL_CALL zol_unset(void* self, unsigned row) {
  return guarded(0u, [=] {
    const Ref object(as<Object>(self));
    const zol_v2::internal::Row& table = table_of(row);
    // What is not there any more keeps nothing for the next one who sets it.
    const bool is_kept = table.type != nullptr && !table.is_list &&
                         table.place != Place::alternative && !table.is_required;
    if (is_kept && is_there(self, row)) {
      zol_v2::internal::reset(object.child(table).object(), *table.type);
    }
    return object.unset(table) ? 1u : 0u;
  });
}

unsigned ZOL_CALL zol_remove(void* self, unsigned row, unsigned index) {
  return Ref(as<Object>(self)).remove(row_of(row), index) ? 1 : 0;
}

int ZOL_CALL zol_chosen(void* self) {
  const ConstRef choice(as<Object>(self));
  const Row chosen = choice.chosen();
  return chosen ? number_of(choice.type().table().content_class(), chosen) : -1;
}

unsigned ZOL_CALL zol_get_number(void* self, unsigned row, double* value) {
  const zol_v2::internal::Row& table = table_of(row);
  if (table.place != Place::alternative && table.kind == Kind::real) {
    *value = table.field<double>(as<Object>(self));
    return Head::has(as<Object>(self), table.bit) ? 1 : 0;
  }
  *value = value_of(self, row, 0).number();
  return is_there(self, row) ? 1 : 0;
}

unsigned ZOL_CALL zol_get_integer(void* self, unsigned row, long long* value) {
  const Object& object = as<Object>(self);
  const zol_v2::internal::Row& table = table_of(row);
  const bool is_field = table.place != Place::alternative;
  if (is_field && table.kind == Kind::enumerated) {
    *value = table.enumeration->number_at(table.field<const std::wstring*>(object));
  } else if (is_field && table.kind == Kind::truth) {
    *value = table.field<bool>(object) ? 1 : 0;
  } else {
    const Value held = value_of(self, row, 0);
    *value = table.kind == Kind::enumerated ? held.number_in_enumeration() : held.integer();
  }
  return is_field ? Head::has(object, table.bit) : is_there(self, row);
}

int ZOL_CALL zol_set_number(void* self, unsigned row, double value) {
  return guarded(k_no_memory, [=] { return set(as<Object>(self), table_of(row), value); });
}

int ZOL_CALL zol_set_integer(void* self, unsigned row, long long value) {
  return guarded(k_no_memory, [=] {
    Object& object = as<Object>(self);
    const Row target = row_of(row);
    switch (target.kind()) {
      case Kind::int32:
        return set_integer<int>(object, target, value);
      case Kind::uint32:
        return set_integer<unsigned>(object, target, value);
      case Kind::uint8:
        return set_integer<unsigned char>(object, target, value);
      case Kind::truth:
        return set(object, target.table(), value != 0);
      case Kind::enumerated: {
        const bool is_listed = value > 0 &&
                               value <= static_cast<long long>(target.values().size()) &&
                               set_number(object, target.table(), static_cast<int>(value));
        return is_listed ? lmx::elmx_ok : lmx::elmx_value_not_enumerated;
      }
      default:
        return lmx::elmx_undefined;
    }
  });
}

unsigned ZOL_CALL zol_get_text(void* self, unsigned row, unsigned index, zol_text_view* view) {
  *view = {};
  return guarded(0u, [=] {
    const Value held = value_of(self, row, index);
    std::string_view utf8;
    if (held.narrow_text(&utf8)) {
      view->utf8 = utf8.data();
      view->size = utf8.size();
    } else {
      view->wide = zol::port::give_wide(held.text());
      view->size = zol::port::given_bytes(view->wide);
    }
    return table_of(row).is_list ? held ? 1u : 0u : is_there(self, row) ? 1u : 0u;
  });
}

int ZOL_CALL zol_set_text(void* self, unsigned row, unsigned index, const char* utf8,
                          unsigned size) {
  return guarded(k_no_memory, [=] {
    const Ref object(as<Object>(self));
    const std::string_view text(utf8, size);
    const Row target = row_of(row);
    return target.is_list() ? object.set_text(target, index, text) : object.set_text(target, text);
  });
}

int ZOL_CALL zol_insert_text(void* self, unsigned row, unsigned index, const char* utf8,
                             unsigned size) {
  return guarded(k_no_memory, [=] {
    const Row list = row_of(row);
    if (!list.is_list()) return lmx::elmx_undefined;
    Object& object = as<Object>(self);
    const elmx_error error = Ref(object).set_text(list, std::string_view(utf8, size));
    if (error == lmx::elmx_ok) move_last(list.table().field<PointerList>(object), index);
    return error;
  });
}

char* ZOL_CALL zol_texts(void* self, unsigned row) {
  return guarded<char*>(nullptr, [=] {
    const ConstRef object(as<Object>(self));
    const Row list = row_of(row);
    const unsigned count = object.count(list);
    std::string all;
    for (unsigned i = 0; i < count; ++i) {
      object.value(list, i).append_text(&all);
      all += '\0';
    }
    return given(all);
  });
}

unsigned ZOL_CALL zol_get_moment(void* self, unsigned row, unsigned index, zol_moment* value) {
  const Value held = value_of(self, row, index);
  *value = moment_of(held.date());
  return table_of(row).is_list ? held ? 1 : 0 : is_there(self, row) ? 1 : 0;
}

int ZOL_CALL zol_set_moment(void* self, unsigned row, unsigned index, const zol_moment* value) {
  return guarded(k_no_memory, [=] {
    Object& object = as<Object>(self);
    const zol_v2::internal::Row& table = table_of(row);
    lmx::c_datetime date;
    if (!read_moment(*value, &date)) return lmx::elmx_bad_value_format;
    if (!table.is_list) return set(object, table, date);
    Dates& list = table.field<Dates>(object);
    return index < list.size() ? list.set(index, date) : lmx::elmx_undefined;
  });
}

int ZOL_CALL zol_insert_moment(void* self, unsigned row, unsigned index, const zol_moment* value) {
  return guarded(k_no_memory, [=] {
    lmx::c_datetime date;
    if (!read_moment(*value, &date)) return lmx::elmx_bad_value_format;
    return table_of(row).field<Dates>(as<Object>(self)).insert(index, date);
  });
}

unsigned ZOL_CALL zol_moments(void* self, unsigned row, zol_moment* values, unsigned max) {
  const Dates& list = table_of(row).field<Dates>(as<Object>(self));
  const unsigned count = list.size();
  for (unsigned i = 0; i < std::min(count, max); ++i) values[i] = moment_of(list.at(i));
  return count;
}

void ZOL_CALL zol_datetime_get(void* datetime, zol_moment* value) {
  *value = moment_of(as<lmx::c_datetime>(datetime));
}

int ZOL_CALL zol_datetime_set(void* datetime, const zol_moment* value) {
  return guarded(k_no_memory, [=] {
    lmx::c_datetime date;
    if (!read_moment(*value, &date)) return lmx::elmx_bad_value_format;
    as<lmx::c_datetime>(datetime) = date;
    return lmx::elmx_ok;
  });
}

const unsigned char* ZOL_CALL zol_get_bytes(void* self, unsigned row, unsigned* size) {
  const lmx::c_binary& bytes = value_of(self, row, 0).bytes();
  *size = bytes.size();
  // Contiguous, as a vector is.
  return bytes.size() != 0 ? &const_cast<lmx::c_binary&>(bytes)[0] : nullptr;
}

int ZOL_CALL zol_set_bytes(void* self, unsigned row, const unsigned char* bytes, unsigned size) {
  return guarded(k_no_memory, [=] {
    return set(as<Object>(self), table_of(row),
               lmx::c_binary(bytes, zol::bridge::size_of(bytes, size)));
  });
}

unsigned ZOL_CALL zol_binary_bytes(void* binary, unsigned char* bytes, unsigned max) {
  const lmx::c_binary& value = as<lmx::c_binary>(binary);
  if (bytes != nullptr) value.get(bytes, max);
  return value.size();
}

char* ZOL_CALL zol_any_text(void* revision, unsigned index, char** full_name,
                            char** namespace_uri) {
  return guarded<char*>(nullptr, [=]() -> char* {
    const zol_v2::Revision& owner = as<zol_v2::Revision>(revision);
    if (index >= owner.size_any()) return nullptr;
    std::string name, space, text;
    owner.get_any(index, &name, &space, &text);
    if (full_name != nullptr) *full_name = given(name);
    if (namespace_uri != nullptr) *namespace_uri = given(space);
    return given(text);
  });
}

void* ZOL_CALL zol_child(void* self, unsigned row, unsigned index, unsigned* type) {
  const ConstRef object(as<Object>(self));
  const Row target = row_of(row);
  if (index >= object.count(target)) return nullptr;
  const ConstRef child = seen_through(object.value(target, index).child());
  if (!child) return nullptr;
  *type = child.type().table().number;
  return const_cast<Object*>(&child.object());
}

void* ZOL_CALL zol_make_child(void* self, unsigned row, unsigned type) {
  return guarded<void*>(nullptr, [=]() -> void* {
    const Ref object(as<Object>(self));
    const Row target = row_of(row);
    const Type wanted = type_numbered(type);
    if (target.is_list() || !may_hold(target, wanted)) return nullptr;
    if (target.place() == Place::alternative) return chosen_as(object, target, wanted);
    return filled(object.child(target), wanted);
  });
}

void* ZOL_CALL zol_insert_child(void* self, unsigned row, unsigned index, unsigned type) {
  return guarded<void*>(nullptr, [=]() -> void* {
    Object& object = as<Object>(self);
    const Row list = row_of(row);
    const Type wanted = type_numbered(type);
    if (!list.is_list() || !may_hold(list, wanted)) return nullptr;
    PointerList& entries = list.table().field<PointerList>(object);
    const unsigned at = std::min(index, entries.size());
    const Ref entry = insert_object(entries, *list.table().type, at);
    try {
      return filled(entry, wanted);
    } catch (...) {
      Ref(object).remove(list, at);
      return nullptr;
    }
  });
}

void* ZOL_CALL zol_insert_copy(void* self, unsigned row, unsigned index, void* value) {
  return guarded<void*>(nullptr, [=]() -> void* {
    const Object& source = as<Object>(value);
    const unsigned at = std::min(index, ConstRef(as<Object>(self)).count(row_of(row)));
    void* const entry = zol_insert_child(self, row, at, Head::class_of(source).number);
    if (entry == nullptr) return nullptr;
    try {
      static_cast<void>(assign(as<Object>(entry), source));
    } catch (...) {
      zol_remove(self, row, at);
      return nullptr;
    }
    return entry;
  });
}

int ZOL_CALL zol_put_child(void* self, unsigned row, void* value) {
  return guarded(k_no_memory, [=] {
    const ConstRef source(as<Object>(value));
    const Row target = row_of(row);
    if (target.is_list() || !may_hold(target, source.type())) return k_other_type;
    // Copied first: the value may be a part of what is replaced.
    const auto copy = source.type().make();
    const elmx_error error = assign(*copy, source.object());
    if (error != lmx::elmx_ok) return error;
    void* const child = zol_make_child(self, row, source.type().table().number);
    return child == nullptr ? k_no_memory : replace(as<Object>(child), *copy);
  });
}

// --- Spectra -------------------------------------------------------------------------------------

unsigned ZOL_CALL zol_spectrum_points(void* spectrum, double* wavelengths, double* values,
                                      unsigned max) {
  const ConstRef object(as<Object>(spectrum));
  const Points points = points_of(object.type());
  if (!points.list) return 0;
  const PointerList& list = points.list.table().field<PointerList>(object.object());
  const unsigned count = list.size();
  for (unsigned i = 0; i < std::min(count, max); ++i) {
    const Object& point = *static_cast<const Object*>(list[i]);
    if (wavelengths != nullptr) wavelengths[i] = points.wavelength.table().field<double>(point);
    if (values != nullptr) values[i] = points.value.table().field<double>(point);
  }
  return count;
}

int ZOL_CALL zol_set_spectrum(void* spectrum, const double* wavelengths, const double* values,
                              unsigned count, unsigned* wrong) {
  return guarded(k_no_memory, [=] {
    Object& object = as<Object>(spectrum);
    const Points points = points_of(zol_v2::reflection::type_of(object));
    if (!points.list) return lmx::elmx_undefined;
    const zol_v2::internal::Row& wavelength = points.wavelength.table();
    const zol_v2::internal::Row& value = points.value.table();
    for (*wrong = 0; *wrong < count; ++*wrong) {
      elmx_error error = zol_v2::internal::check(wavelength, wavelengths[*wrong]);
      if (error == lmx::elmx_ok) error = zol_v2::internal::check(value, values[*wrong]);
      if (error != lmx::elmx_ok) return error;
    }
    PointerList& list = points.list.table().field<PointerList>(object);
    const unsigned before = list.size();
    try {
      while (list.size() < count) append_object(list, *points.list.table().type);
    } catch (...) {
      while (list.size() > before) remove_object(list, list.size() - 1);
      throw;
    }
    while (list.size() > count) remove_object(list, list.size() - 1);
    for (unsigned i = 0; i < count; ++i) {
      Object& point = *static_cast<Object*>(list[i]);
      static_cast<void>(set(point, wavelength, wavelengths[i]));
      static_cast<void>(set(point, value, values[i]));
    }
    return lmx::elmx_ok;
  });
}
