// What the library knows of the format and of an object, for programs that treat every class alike:
// reports, differences, tables, bindings.
//
//   using namespace zol_v2;
//   for (const reflection::Item& item : reflection::ConstRef(document).children()) ...
//
// Everything here is a small value over constant tables and over objects that stay their owner's:
// cheap to copy, good for as long as the object is. Asking allocates nothing and copies no value.
// Names, units and notes live as long as the library.
//
// A holder of one of several elements and a group of values have no element of their own. They are
// objects with a type and rows like any other, but children(), paths and find() look through them
// to what they hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "lmx/binary.h"
#include "lmx/dates.h"
#include "lmx/errors.h"
#include "model/internal/object.h"
#include "model/internal/tables.h"
#include "port/export.h"

namespace lmx {
class c_xml_reader;
}

namespace zol_v2::reflection {

using internal::AnyElement;
using internal::End;
using internal::Kind;
using internal::NamedType;
using internal::Object;
using internal::Place;
using internal::Shape;

class Row;
class RowRange;
class Ref;
class ConstRef;
class Items;

// --- Types ---------------------------------------------------------------------------------------

class TypeRange;

// A class of the model, or none.
class Type {
 public:
  Type() = default;
  // That of a table, as T::k_class of a class T of the model.
  Type(const internal::Class& table) : table_(&table) {}

  // Whether it is one. Nothing else may be asked of none, but whether it is another.
  explicit operator bool() const { return table_ != nullptr; }
  // Whether both are the same class, or none.
  bool operator==(Type other) const { return table_ == other.table_; }
  bool operator!=(Type other) const { return table_ != other.table_; }

  // As in C++: "ColorType".
  std::string_view name() const { return table_->name; }
  // What objects of it are, in a sentence or two; no class is without.
  std::string_view note() const { return table_->note; }
  // How it is built.
  Shape shape() const { return table_->shape; }
  // What it is derived from; none for a root. `is_a` counts the type itself and all bases.
  Type base() const { return of(table_->base); }
  bool is_a(Type other) const { return table_->is_a(*other.table_); }
  // May an element of it be marked as nil?
  bool is_nillable() const { return table_->is_nillable(); }
  // Is it an element that a document may begin with?
  bool is_document() const { return table_->is(internal::Class::k_document); }
  // An element may say by xsi:type which type of its family it is, with this name; of others empty.
  std::string_view type_name() const { return is_polymorphic() ? table_->type_name : ""; }
  // Does it belong to a family, so that it has such a name?
  bool is_polymorphic() const { return table_->type_name != nullptr; }
  // Stands for what it holds, with no element around it.
  bool is_transparent() const { return shape() == Shape::holder || shape() == Shape::anonymous; }
  // Holds one of its alternatives.
  bool is_choice() const { return table_->content_class().is_choice(); }

  // In the order of a document: attributes, elements, and then the content or the alternatives,
  // each with those of the bases first.
  inline RowRange rows() const;
  // The attributes alone.
  inline RowRange attributes() const;
  // All but the attributes.
  inline RowRange elements() const;
  // The row of that name, which an attribute has without a mark; none if there is none. No two rows
  // of a type share a name.
  ZOL_API Row row(std::string_view name) const;
  // What stands between the tags of a type with a simple value; none for others.
  ZOL_API Row content() const;

  // What xsi:type may name where this type stands. A holder holds the types of its alternatives
  // and, where one of those may name its type, what that type knows here.
  inline TypeRange named_types() const;

  // An object that was never touched, whose values are the defaults of the rows.
  inline ConstRef untouched() const;
  // A new object, which the caller owns; std::bad_alloc if memory runs out.
  ZOL_API std::unique_ptr<Object> make() const;

  // The table itself, for the library's own walkers.
  const internal::Class& table() const { return *table_; }

 private:
  friend class Row;
  static Type of(const internal::Class* table) { return table != nullptr ? Type(*table) : Type(); }

  const internal::Class* table_ = nullptr;
};

// Types to go over in a loop.
class TypeRange {
 public:
  class Iterator {
   public:
    using value_type = Type;
    using reference = Type;
    using pointer = void;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::input_iterator_tag;

    explicit Iterator(const internal::Class* const* at) : at_(at) {}
    Type operator*() const { return **at_; }
    Iterator& operator++() {
      ++at_;
      return *this;
    }
    bool operator==(const Iterator& other) const { return at_ == other.at_; }
    bool operator!=(const Iterator& other) const { return at_ != other.at_; }

   private:
    const internal::Class* const* at_;
  };

  // Of so many tables, which must outlive it.
  TypeRange(const internal::Class* const* first, std::size_t size) : first_(first), size_(size) {}
  // In the order of the tables.
  Iterator begin() const { return Iterator(first_); }
  Iterator end() const { return Iterator(first_ + size_); }
  // How many there are.
  std::size_t size() const { return size_; }

 private:
  const internal::Class* const* first_;
  std::size_t size_;
};

// Every class of the model, in the order of the schema.
ZOL_API TypeRange all_types();
// None if no class has that name.
ZOL_API Type find_type(std::string_view name);
// The class that the object was made as; one that a client derived counts as its base in the model.
inline Type type_of(const Object& object) { return internal::Head::class_of(object); }

// --- Rows ----------------------------------------------------------------------------------------

// The values of an enumeration, which are numbered from 1.
class EnumValues {
 public:
  // Those of no enumeration, or of a table.
  EnumValues() = default;
  explicit EnumValues(const internal::EnumTable& table)
      : first_(table.narrow), notes_(table.notes), size_(static_cast<std::size_t>(table.size)) {}
  // As they stand in documents, in the order of their numbers.
  const std::string_view* begin() const { return first_; }
  const std::string_view* end() const { return first_ + size_; }
  // How many there are.
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  // The value whose number is the index plus 1.
  std::string_view operator[](std::size_t index) const { return first_[index]; }
  // What the value of that index means, in one sentence.
  std::string_view note(std::size_t index) const { return notes_[index]; }

 private:
  const std::string_view* first_ = nullptr;
  const char* const* notes_ = nullptr;
  std::size_t size_ = 0;
};

// `end` is none where there is no bound.
struct Bound {
  double value = 0;     // in the unit of the row
  End end = End::none;  // whether the value itself is allowed

  // Whether there is a bound.
  explicit operator bool() const { return end != End::none; }
};

// An attribute, element, content or alternative of a type, or none.
class Row {
 public:
  Row() = default;
  // That of a table.
  Row(const internal::Row& table) : table_(&table) {}

  // Whether it is one. Nothing else may be asked of none, but whether it is another.
  explicit operator bool() const { return table_ != nullptr; }
  // Whether both are the same row, or none.
  bool operator==(Row other) const { return table_ == other.table_; }
  bool operator!=(Row other) const { return table_ != other.table_; }

  // As in the accessors. In documents elements have it with a prefix; content, holders and groups
  // have no name there.
  ZOL_API std::string_view name() const;
  // Where it stands in an element, and what it holds.
  Place place() const { return table_->place; }
  Kind kind() const { return table_->kind; }
  // Must there be one, or one at least? May there be any number?
  bool is_required() const { return table_->is_required; }
  bool is_list() const { return table_->is_list; }
  // Holds a value that has a text.
  bool is_simple() const { return table_->is_simple(); }
  // Is it an attribute?
  bool is_attribute() const { return place() == Place::attribute; }
  // What it holds is written without an element of its own around it.
  bool is_transparent() const { return kind() == Kind::member || kind() == Kind::group; }
  // Of a child, a holder or a group.
  Type type() const { return Type::of(table_->type); }

  // The values that an enumerated text may have; none for others.
  EnumValues values() const {
    return table_->enumeration != nullptr ? EnumValues(*table_->enumeration) : EnumValues();
  }
  // The least and the greatest number.
  Bound lower() const { return {table_->lower, table_->lower_end}; }
  Bound upper() const { return {table_->upper, table_->upper_end}; }
  // Setters of C++ let pass what lies below the lower bound; reading and set_text() do not.
  bool is_lower_on_reading_only() const { return table_->lower_on_read; }
  // Exactly so many characters; 0 for any number.
  unsigned length() const { return table_->length; }
  // Whether runs of white space count as one blank, and none at either end.
  ZOL_API bool collapses() const;
  // Whether the element may, or must, name its type.
  NamedType named_type() const { return table_->named_type; }
  // What a number counts, as in "nm"; empty if it is a ratio, a coordinate or a mark on a scale.
  std::string_view unit() const {
    return table_->unit != nullptr ? std::string_view(table_->unit) : std::string_view();
  }
  // What the row means, in one sentence; no row is without.
  std::string_view note() const { return table_->note; }

  // The table itself, for the library's own walkers.
  const internal::Row& table() const { return *table_; }

 private:
  const internal::Row* table_ = nullptr;
};

// Rows to go over in a loop, those of the bases first.
class RowRange {
 public:
  // What of a type it goes over, in this order.
  enum Part : unsigned char { attributes, elements, rest, none };

  class Iterator {
   public:
    using value_type = Row;
    using reference = Row;
    using pointer = void;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::input_iterator_tag;

    Iterator() = default;
    Iterator(const internal::Class* type, Part first, Part last)
        : type_(type), part_(first), last_(last) {
      enter(root());
      settle();
    }
    Row operator*() const { return *at_; }
    Iterator& operator++() {
      ++at_;
      settle();
      return *this;
    }
    bool operator==(const Iterator& other) const { return at_ == other.at_; }
    bool operator!=(const Iterator& other) const { return at_ != other.at_; }

   private:
    void settle() {
      if (at_ == end_) advance();
    }
    const internal::Class* root() const;
    void enter(const internal::Class* level);
    ZOL_API void advance();

    const internal::Class* type_ = nullptr;
    const internal::Class* level_ = nullptr;
    const internal::Row* at_ = nullptr;
    const internal::Row* end_ = nullptr;
    Part part_ = none;
    Part last_ = none;
  };

  // From the first of these parts to the last.
  RowRange(const internal::Class& type, Part first, Part last) : begin_(&type, first, last) {}
  // In the order of a document.
  Iterator begin() const { return begin_; }
  Iterator end() const { return {}; }

 private:
  Iterator begin_;
};

inline const internal::Class* RowRange::Iterator::root() const {
  const internal::Class* level = type_;
  while (level->base != nullptr) level = level->base;
  return level;
}
inline void RowRange::Iterator::enter(const internal::Class* level) {
  level_ = level;
  const internal::Rows rows = part_ == attributes ? level->attributes()
                              : part_ == elements ? level->elements()
                                                  : level->alternatives();
  at_ = rows.first;
  end_ = rows.last;
}

RowRange Type::rows() const { return {*table_, RowRange::attributes, RowRange::rest}; }
RowRange Type::attributes() const { return {*table_, RowRange::attributes, RowRange::attributes}; }
RowRange Type::elements() const { return {*table_, RowRange::elements, RowRange::rest}; }
TypeRange Type::named_types() const {
  std::size_t size = 0;
  while (table_->factory != nullptr && table_->factory[size] != nullptr) ++size;
  return {table_->factory, size};
}

// --- Values --------------------------------------------------------------------------------------

// What a row of an object holds, where it stands, or nothing. To ask it for another kind of value
// than its own gives 0, false, an empty text, or no object.
class Value {
 public:
  Value() = default;
  // `at` is where the row keeps the value: in an object, a list or the slot of a choice.
  Value(const internal::Row& row, const void* at) : row_(&row), at_(at) {}

  // Whether it is one.
  explicit operator bool() const { return row_ != nullptr; }
  // Only of what is not nothing.
  Kind kind() const { return row_->kind; }

  // Integers count as numbers, numbers are no integers.
  ZOL_API double number() const;
  // Of an integer.
  ZOL_API std::int64_t integer() const;
  // Of a truth value.
  ZOL_API bool truth() const;
  // UTF-16, one unit a wchar_t; of enumerated texts too. The first time that it is asked of a text
  // that was read, that takes memory for the wide one.
  ZOL_API const std::wstring& text() const;
  // A text that still stands as it was read, without that; false for any other. Good until somebody
  // changes the text.
  ZOL_API bool narrow_text(std::string_view* utf8) const;
  // Of an enumerated text, from 1; 0 for one that the enumeration does not have.
  ZOL_API int number_in_enumeration() const;
  // Where it stands, good as long as the object is not changed.
  ZOL_API const lmx::c_datetime& date() const;
  ZOL_API const lmx::c_binary& bytes() const;
  ZOL_API const AnyElement& foreign() const;
  // A child, holder or group.
  inline ConstRef child() const;

  // Appends what a document has for the value, in UTF-8 and without the escapes of XML. Nothing for
  // what has no text.
  ZOL_API void append_text(std::string* out) const;
  // The same without a loss: numbers in the shortest text that reads back equal instead of 14
  // digits, as many decimals of seconds as they need, +00:00 for a date without a zone.
  ZOL_API void append_exact_text(std::string* out) const;

 private:
  ZOL_API const Object* object() const;
  const internal::Text* text_field() const;

  const internal::Row* row_ = nullptr;
  const void* at_ = nullptr;
};

// --- Objects -------------------------------------------------------------------------------------

// An object to look at, or none. Rows that are asked for must be of the object's type.
class ConstRef {
 public:
  ConstRef() = default;
  // Of an object, which must outlive it.
  ConstRef(const Object& object) : object_(&object) {}

  // Whether it is one. Nothing else may be asked of none, but whether it is another.
  explicit operator bool() const { return object_ != nullptr; }
  // Whether both are the same object, not like ones.
  bool operator==(ConstRef other) const { return object_ == other.object_; }
  bool operator!=(ConstRef other) const { return object_ != other.object_; }

  // The object itself, and the class that it was made as.
  const Object& object() const { return *object_; }
  Type type() const { return type_of(*object_); }
  // The object as a class of the model; null if it is of another.
  template <class T>
  const T* as() const {
    return object_ != nullptr && type().is_a(T::k_class) ? static_cast<const T*>(object_) : nullptr;
  }

  // Is its element marked as nil?
  bool is_nil() const { return internal::Head::is_nil(*object_, type().table()); }
  // Is all there that is required? What is not can't be written. Children answer for themselves.
  bool is_complete() const { return internal::is_occurs_ok(*object_, type().table()); }

  // Is it set, chosen, or a list with entries?
  bool has(Row row) const { return count(row) != 0; }
  // Of entries; of a single row 1 or 0.
  ZOL_API unsigned count(Row row) const;
  // Nothing past the end of a list and of an alternative that is not chosen. A single row that is
  // not set gives its default or what it had before, a child that is not there an untouched one.
  ZOL_API Value value(Row row, unsigned index = 0) const;
  // The alternative that a choice or holder holds; none if it is empty or no choice.
  ZOL_API Row chosen() const;

  // What stands between its tags in a document, in that order; nothing in a nilled one.
  inline Items children() const;

 private:
  const Object* object_ = nullptr;
};

inline ConstRef Value::child() const {
  const Object* const held = object();
  return held != nullptr ? ConstRef(*held) : ConstRef();
}
ConstRef Type::untouched() const { return table_->empty(); }

// An object to change. Where the functions give a code, it is 0 or that of the first facet that
// fails, as a reader of documents judges the text, and a failure stores nothing: 6 for a text that
// is no UTF-8 or has a zero; 42 for a row without a text or an index past the end.
class Ref {
 public:
  Ref() = default;
  // Of an object, which must outlive it.
  Ref(Object& object) : object_(&object) {}

  // Whether it is one. Nothing else may be asked of none.
  explicit operator bool() const { return object_ != nullptr; }
  // The same, to be looked at.
  operator ConstRef() const { return object_ != nullptr ? ConstRef(*object_) : ConstRef(); }
  // The object itself, and the class that it was made as.
  Object& object() const { return *object_; }
  Type type() const { return type_of(*object_); }
  // The object as a class of the model; null if it is of another.
  template <class T>
  T* as() const {
    return object_ != nullptr && type().is_a(T::k_class) ? static_cast<T*>(object_) : nullptr;
  }

  // A value from its text in UTF-8, as a document has it between tags, without references. An
  // alternative becomes the chosen one, a list gets an entry more.
  ZOL_API lmx::elmx_error set_text(Row row, std::string_view text) const;
  // An entry of a list that is there.
  ZOL_API lmx::elmx_error set_text(Row row, unsigned index, std::string_view text) const;

  // The child, holder or group of a single row, which counts as present from now on; the entry of a
  // list, none past its end.
  ZOL_API Ref child(Row row, unsigned index = 0) const;
  // A new child or holder at the end of a list; none if the row is no list of those.
  ZOL_API Ref append(Row row) const;
  // The child that an alternative stands for, which becomes the chosen one; a holder takes another
  // type where the alternative may name one that its own type knows. None if that is not so, or if
  // the alternative is a value.
  ZOL_API Ref choose(Row alternative) const;
  ZOL_API Ref choose(Row alternative, Type type) const;

  // Takes away what is optional, all entries of a list, the alternative of a choice. False, with
  // nothing done, for a single row that is required.
  ZOL_API bool unset(Row row) const;
  // An entry of a list; false past its end.
  ZOL_API bool remove(Row row, unsigned index) const;
  // False if the type is not nillable.
  ZOL_API bool set_nil(bool is_nil) const;

  // Reads the element at hand, which is called `name` there; 0, or the code that stands. Its end
  // tag is then the last event.
  ZOL_API lmx::elmx_error read(lmx::c_xml_reader& reader, const std::string& name) const;
  // The same for a holder or group, if the element at hand is one of theirs: false if it is not, or
  // with *error set after a failure. What follows the element is then at hand, with its name.
  ZOL_API bool read_member(lmx::c_xml_reader& reader, std::string* name,
                           lmx::elmx_error* error) const;

 private:
  Object* object_ = nullptr;
};

// --- Children and paths --------------------------------------------------------------------------

// One thing in an object: an attribute, an element, foreign or not, or the content.
struct Item {
  ConstRef owner;      // whose row it is: the parent, or the holder or group in it
  Row row;             // none for the root of a tree, which is its own owner
  unsigned index = 0;  // in the row's list
  ConstRef parent;     // whose element is around it
  Row way;             // from the parent to it: `row`, or that of the holder or group
  unsigned entry = 0;  // in that row's list

  // As in the accessors; of the root that of its type.
  std::string_view name() const { return row ? row.name() : owner.type().name(); }
  // What it holds.
  Value value() const { return owner.value(row, index); }
  // The child, or the root itself; none if it is a value.
  ConstRef object() const { return row ? value().child() : owner; }
  // Among the parent's elements of that name, from 1.
  ZOL_API unsigned number() const;
  // Appends the step from the parent: "/Color[3]".
  ZOL_API void append_step(std::string* out) const;
};

// The items of an object between its tags.
class Items {
 public:
  class Iterator {
   public:
    using value_type = Item;
    using reference = const Item&;
    using pointer = const Item*;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::input_iterator_tag;

    Iterator() = default;
    explicit Iterator(ConstRef parent);
    const Item& operator*() const { return item_; }
    const Item* operator->() const { return &item_; }
    Iterator& operator++() {
      ++item_.entry;
      settle();
      return *this;
    }
    bool operator==(const Iterator& other) const {
      return rows_ == other.rows_ && item_.entry == other.item_.entry;
    }
    bool operator!=(const Iterator& other) const { return !(*this == other); }
    bool is_at_end() const { return rows_ == RowRange::Iterator(); }

   private:
    ZOL_API void settle();

    RowRange::Iterator rows_;
    unsigned count_ = 0;  // of entries in the row at hand
    Item item_;
  };

  // Of an object, which must outlive it and stay as it is.
  explicit Items(ConstRef parent) : parent_(parent) {}
  // In the order of a document.
  Iterator begin() const { return Iterator(parent_); }
  Iterator end() const { return {}; }

 private:
  ConstRef parent_;
};

inline Items::Iterator::Iterator(ConstRef parent) {
  if (parent.is_nil()) return;
  item_.parent = parent;
  rows_ = parent.type().elements().begin();
  if (!is_at_end()) count_ = parent.count(*rows_);
  settle();
}
Items ConstRef::children() const { return Items(*this); }

// A path leads from a root to what a document has below it, as XPath would: the name of the root's
// type, then the names of elements, numbered from 1 among those of their name, at the end perhaps
// "@" and an attribute, or "text()" for the content:
//
//   Zol/Color[3]/ColorSpaceCIELab/L
//
// The number is written for rows that are lists, and from the second on for members of a list of
// holders; a path without one means the first. A foreign element goes by the name of its row.
struct Step {
  std::string_view name;      // within the text that was parsed; empty for the content
  unsigned number = 1;        // from 1, which is also what a step without one means
  bool is_numbered = false;   // the number was written
  bool is_attribute = false;  // it began with "@"
  bool is_content = false;    // it was "text()"
};

// One step of a path: "NAME", "NAME[NUMBER]", "@NAME" or "text()". False for anything else.
ZOL_API bool parse_step(std::string_view text, Step* step);

// Why a path leads nowhere.
enum class PathError {
  none,
  malformed,
  other_root,   // the path begins with another type
  no_such_row,  // the type has no row of that name, or it is a value with nothing below
  not_there     // the row is not set, or has fewer entries
};

// Where a path leads.
struct Found {
  PathError error = PathError::none;  // why it leads nowhere
  std::size_t at = 0;                 // where the faulty step begins
  Item item;                          // what it leads to; none after an error

  // Whether it leads to something.
  explicit operator bool() const { return error == PathError::none; }
};

// What a path leads to, from the root that it begins with.
ZOL_API Found find(ConstRef root, std::string_view path);
// The object that a path leads to, to be changed; none if it leads to nothing or to a value.
ZOL_API Ref find_object(Ref root, std::string_view path);

// Appends the path of an object below the root, or of one of its rows; false, with nothing
// appended, if the root does not hold it. Searches the whole tree: whoever walks it has
// Item::append_step. A holder or group has the path of its parent.
ZOL_API bool append_path(ConstRef root, ConstRef object, std::string* out);
ZOL_API bool append_path(ConstRef root, ConstRef object, Row row, unsigned index, std::string* out);

}  // namespace zol_v2::reflection
