// What the library knows of each class of the model: one constant table a class, which every walker
// reads (reading, writing, copying, checking, reflection) and nobody writes down a second time.
//
// The tables are made by the generator from model/schema. A class lists its own rows; those of its
// base come before them in documents.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "lmx/errors.h"
#include "port/export.h"

namespace lmx {
class c_xml_reader;
class c_xml_writer;
}  // namespace lmx

namespace lmx::internal {
class Batch;
class Pool;
}  // namespace lmx::internal

namespace zol_v2::internal {

class Object;
struct Class;

// The values of one enumeration, in the order in which they are numbered from 1. They are ASCII,
// and stand here in both widths: a reader compares bytes, an object keeps a pointer to the wide
// text.
struct EnumTable {
  const std::wstring* first;
  const std::string_view* narrow;
  const char* const* notes;  // what each value means
  int size;

  // 0 if the text is none of the values.
  ZOL_API int number_of(const std::wstring& text) const;
  int number_of(std::string_view utf8) const;
  // 0 for a text that is not one of those in the table, though it may read the same.
  int number_at(const std::wstring* text) const {
    return text >= first && text < first + size ? static_cast<int>(text - first) + 1 : 0;
  }
  const std::wstring& operator[](int number) const { return first[number - 1]; }
};

// What a row holds, and so how it is stored. A list stores pointers to values of these types.
enum class Kind : unsigned char {
  text,        // Text; in a list and an alternative std::wstring
  enumerated,  // const std::wstring*, into the table or to a text of its own
  real,        // double
  int32,       // int
  uint32,      // unsigned
  uint8,       // unsigned char
  truth,       // bool
  datetime,    // lmx::c_datetime
  binary,      // lmx::c_binary
  object,      // a child; in place where a single one is required, else a pointer
  member,      // a pointer to the holder of a substitution group's member
  group,       // a value with no element around it, in place
  foreign,     // AnyElement
  mark         // nothing: an empty element that is written and not asked for
};

enum class Place : unsigned char { attribute, element, content, alternative };

enum class End : unsigned char { none, inclusive, strict };

// Whether the element of an alternative names the type to build.
enum class NamedType : unsigned char { no, optional, required };

// A word of a table: a copy with one thing more.
template <class T, class Change>
constexpr T changed(T copy, const Change& change) {
  change(copy);
  return copy;
}

struct Row {
  const char* tag;  // as it is written: "Zol:Red", an attribute without the prefix
  // The first eight bytes of the name, those of them that it fills, and the last eight of a longer
  // one. A row that has no element of its own fills none, so that anything begins like it.
  std::uint64_t head = 0;
  std::uint64_t filled = 0;
  std::uint64_t tail = 0;
  const Class* type = nullptr;  // of objects, members and groups
  const EnumTable* enumeration = nullptr;
  double lower = 0;
  double upper = 0;
  const char* unit = nullptr;  // as in "nm", null for none
  const char* note = nullptr;  // what the row is for, if its name does not say it
  std::uint16_t offset = 0;    // of the field in the object
  std::uint16_t event = 0;
  std::uint16_t line = 0;  // of this row in the source, for error handlers
  Place place;
  Kind kind;
  std::uint8_t name_length = 0;
  std::uint8_t bit = 0;     // its flag in the object, from 1; the selection of an alternative
  std::uint8_t length = 0;  // exactly so many characters, 0 for any number
  End lower_end = End::none;
  End upper_end = End::none;
  NamedType named_type = NamedType::no;
  bool lower_on_read = false;  // a setter lets pass what lies below
  bool is_list = false;
  bool is_required = false;
  bool collapses = false;  // white space of the text
  bool is_adopting = false;
  std::uint8_t initial = 0;  // the number of the enumeration's value that an unset row has

  constexpr Row(Place at, Kind what, const char* written_as, std::size_t field, unsigned number,
                unsigned source_line)
      : tag(written_as),
        offset(static_cast<std::uint16_t>(field)),
        event(static_cast<std::uint16_t>(number)),
        line(static_cast<std::uint16_t>(source_line)),
        place(at),
        kind(what) {
    const std::string_view text = name_of(tag, at);
    name_length = static_cast<std::uint8_t>(text.size());
    for (std::size_t i = 0; i < text.size() && i < 8 && is_named(); ++i) {
      head |= byte(text[i]) << (8 * i);
      filled |= std::uint64_t{0xFF} << (8 * i);
    }
    for (std::size_t i = 0; i < 8 && text.size() > 8; ++i) {
      tail |= byte(text[text.size() - 8 + i]) << (8 * i);
    }
  }

  // The words of a table, each a row with one thing more.
  constexpr Row required() const {
    return changed(*this, [](Row& row) { row.is_required = true; });
  }
  constexpr Row list() const {
    return changed(*this, [](Row& row) { row.is_list = true; });
  }
  constexpr Row number(unsigned value) const {
    return changed(*this, [=](Row& row) { row.bit = static_cast<std::uint8_t>(value); });
  }
  constexpr Row of(const Class& value) const {
    return changed(*this, [&](Row& row) { row.type = &value; });
  }
  constexpr Row of(const EnumTable& value) const {
    return changed(*this, [&](Row& row) { row.enumeration = &value; });
  }
  constexpr Row from(double value, End end = End::inclusive) const {
    return changed(*this, [=](Row& row) {
      row.lower = value;
      row.lower_end = end;
    });
  }
  constexpr Row to(double value, End end = End::inclusive) const {
    return changed(*this, [=](Row& row) {
      row.upper = value;
      row.upper_end = end;
    });
  }
  constexpr Row on_read() const {
    return changed(*this, [](Row& row) { row.lower_on_read = true; });
  }
  constexpr Row characters(unsigned value) const {
    return changed(*this, [=](Row& row) { row.length = static_cast<std::uint8_t>(value); });
  }
  constexpr Row collapsed() const {
    return changed(*this, [](Row& row) { row.collapses = true; });
  }
  constexpr Row named(NamedType value) const {
    return changed(*this, [=](Row& row) { row.named_type = value; });
  }
  constexpr Row adopting() const {
    return changed(*this, [](Row& row) { row.is_adopting = true; });
  }
  constexpr Row starts_at(unsigned value) const {
    return changed(*this, [=](Row& row) { row.initial = static_cast<std::uint8_t>(value); });
  }
  constexpr Row in(const char* value) const {
    return changed(*this, [=](Row& row) { row.unit = value; });
  }
  constexpr Row about(const char* value) const {
    return changed(*this, [=](Row& row) { row.note = value; });
  }

  constexpr std::string_view name() const { return name_of(tag, place); }
  // The name of an element as it is written.
  constexpr std::string_view full_name() const { return {tag, k_prefix + name_length}; }
  constexpr bool is_simple() const { return kind < Kind::object; }
  // Whether its field is a pointer or a list of them, and so owns what stands on the heap.
  constexpr bool is_pointer() const {
    if (place == Place::alternative || kind == Kind::mark) return false;
    if (is_list || kind == Kind::enumerated || kind == Kind::text) return true;
    return !is_in_place() && (kind == Kind::object || kind == Kind::member);
  }
  // Groups and members of substitution groups have no element of their own, content no name.
  constexpr bool is_named() const {
    const bool is_transparent = kind > Kind::object && kind < Kind::mark;
    return !is_transparent && place != Place::content;
  }
  constexpr bool is_in_place() const {
    return !is_list && is_required && place != Place::alternative &&
           (kind == Kind::object || kind == Kind::group);
  }
  template <class T>
  T& field(Object& self) const {
    return *reinterpret_cast<T*>(reinterpret_cast<char*>(&self) + offset);
  }
  template <class T>
  const T& field(const Object& self) const {
    return *reinterpret_cast<const T*>(reinterpret_cast<const char*>(&self) + offset);
  }

 private:
  static constexpr std::size_t k_prefix = 4;  // "Zol:"

  static constexpr std::uint64_t byte(char c) { return static_cast<unsigned char>(c); }
  static constexpr std::string_view name_of(const char* tag, Place place) {
    const std::string_view text(tag);
    return place == Place::element || place == Place::alternative ? text.substr(k_prefix) : text;
  }
};

// A stretch of the rows of a class.
struct Rows {
  const Row* first;
  const Row* last;

  const Row* begin() const { return first; }
  const Row* end() const { return last; }
  bool empty() const { return first == last; }
};

// What is done with the members of a polymorphic family through their virtual functions.
struct Family {
  lmx::elmx_error (*marshal)(const Object& self, lmx::c_xml_writer& writer, const char* name);
  lmx::elmx_error (*unmarshal)(Object& self, lmx::c_xml_reader& reader, const std::string& name);
};

enum class Shape : unsigned char {
  plain,      // rows, and perhaps a base
  simple,     // attributes and one value
  choice,     // an element that holds one of its alternatives
  holder,     // a member of a substitution group, with no element around it
  anonymous,  // one of some simple values, with no element around it
  wrapper     // the element of a type, or the head of its family
};

// The functions of one class that a table points to.
struct Making {
  Object* (*make)(lmx::internal::Pool* pool);  // in the pool unless it is null
  Object* (*copy)(const Object& other);        // as this class, whatever the other is
  const Object& (*empty)();  // one that was never touched; it lives as long as the library
  std::size_t size;          // of an object, without what it points to
};

struct Class {
  enum Mark : unsigned {
    k_required_list = 1,     // or a base has one
    k_wants_content = 2,     // an empty element is a fault
    k_names_namespaces = 4,  // carries the namespaces when it comes first in a document
    k_blank = 8,             // has neither children nor content
    k_owns_nothing = 16,     // on the heap, whatever it holds
    k_document = 32          // an element that a document may begin with
  };

  const char* name;
  Making making;
  const Class* base = nullptr;
  const Row* rows = nullptr;
  std::uint16_t number;  // its place in k_classes
  std::uint8_t attribute_count = 0;
  std::uint8_t element_count = 0;
  std::uint8_t rest_count = 0;  // content, or alternatives
  Shape shape;
  std::uint8_t nil_bit = 0;  // the flag of a nilled object; 0, which is no row's, if there is none
  std::uint8_t none = 0;     // the selection of a choice that holds nothing
  // Bits of rows, those of the bases too: what is_occurs_ok wants, what a document must have (where
  // a list counts, and the member of a group does not), of that the attributes, and every flag.
  std::uint32_t required = 0;
  std::uint32_t required_to_read = 0;
  std::uint32_t required_attributes = 0;
  std::uint32_t flags = 0;
  std::uint32_t pointers = 0;  // a bit for each row of its own, in order, that is_pointer()
  std::uint16_t batch = 0;     // the field of what was read as a whole, 0 if there is none
  unsigned marks = 0;
  const char* type_name = nullptr;        // of a polymorphic class, as xsi:type has it
  const char* const* identity = nullptr;  // where such a class keeps its id
  const Class* const* factory = nullptr;  // what xsi:type may name, up to a null
  const Family* family = nullptr;         // of a polymorphic class, and of a holder's members
  const char* note = "";                  // what the class is for

  constexpr Class(const char* is_called, Shape built, unsigned at, Making made)
      : name(is_called), making(made), number(static_cast<std::uint16_t>(at)), shape(built) {}

  // The words of a table, each a class with one thing more.
  constexpr Class derived_from(const Class& value) const {
    return changed(*this, [&](Class& type) { type.base = &value; });
  }
  constexpr Class with(const Row* first, unsigned attributes, unsigned elements,
                       unsigned rest) const {
    return changed(*this, [=](Class& type) {
      type.rows = first;
      type.attribute_count = static_cast<std::uint8_t>(attributes);
      type.element_count = static_cast<std::uint8_t>(elements);
      type.rest_count = static_cast<std::uint8_t>(rest);
      for (unsigned i = 0; i < attributes + elements + rest; ++i) {
        if (first[i].is_pointer()) type.pointers |= std::uint32_t{1} << i;
      }
    });
  }
  constexpr Class wants(std::uint32_t set, std::uint32_t read, std::uint32_t attributes,
                        std::uint32_t all) const {
    return changed(*this, [=](Class& type) {
      type.required = set;
      type.required_to_read = read;
      type.required_attributes = attributes;
      type.flags = all;
    });
  }
  constexpr Class nilled_by(unsigned bit) const {
    return changed(*this, [=](Class& type) { type.nil_bit = static_cast<std::uint8_t>(bit); });
  }
  constexpr Class unless(unsigned selection) const {
    return changed(*this, [=](Class& type) { type.none = static_cast<std::uint8_t>(selection); });
  }
  constexpr Class keeping(std::size_t field) const {
    return changed(*this, [=](Class& type) { type.batch = static_cast<std::uint16_t>(field); });
  }
  constexpr Class typed(const char* text, const char* const& id) const {
    return changed(*this, [&](Class& type) {
      type.type_name = text;
      type.identity = &id;
    });
  }
  constexpr Class of(const Family& value) const {
    return changed(*this, [&](Class& type) { type.family = &value; });
  }
  constexpr Class building(const Class* const* types) const {
    return changed(*this, [=](Class& type) { type.factory = types; });
  }
  constexpr Class marked(unsigned value) const {
    return changed(*this, [=](Class& type) { type.marks = value; });
  }
  constexpr Class about(const char* text) const {
    return changed(*this, [=](Class& type) { type.note = text; });
  }

  Rows attributes() const { return {rows, rows + attribute_count}; }
  Rows elements() const { return {rows + attribute_count, rows + attribute_count + element_count}; }
  Rows alternatives() const {
    return {rows + attribute_count + element_count,
            rows + attribute_count + element_count + rest_count};
  }
  // The rows that have a field each: all but the alternatives, which share one.
  Rows fields() const { return {rows, is_choice() ? alternatives().first : alternatives().last}; }
  Rows all() const { return {rows, alternatives().last}; }
  const Row& content() const { return rows[attribute_count + element_count]; }

  bool is(Mark mark) const { return (marks & mark) != 0; }
  bool is_choice() const {
    return shape == Shape::choice || shape == Shape::holder || shape == Shape::anonymous;
  }
  bool is_nillable() const { return nil_bit != 0; }
  bool keeps_batch() const { return batch != 0; }
  lmx::internal::Batch& batch_of(Object& self) const {
    return *reinterpret_cast<lmx::internal::Batch*>(reinterpret_cast<char*>(&self) + batch);
  }
  const Object& empty() const { return making.empty(); }
  Object* make(lmx::internal::Pool* pool) const { return making.make(pool); }
  Object* copy(const Object& other) const { return making.copy(other); }
  // The class whose rows its elements hold: of an element or head its type.
  const Class& content_class() const { return shape == Shape::wrapper ? *base : *this; }
  // Is it the given class or derived from it?
  bool is_a(const Class& other) const {
    const Class* at = this;
    while (at != nullptr && at != &other) at = at->base;
    return at != nullptr;
  }
};

// Every class of the model, by number.
extern ZOL_API const Class* const k_classes[];
extern const unsigned k_class_count;

}  // namespace zol_v2::internal
