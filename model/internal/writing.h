// How an object of the model writes itself: the element around it, and a line for each kind of row.
//
// Generated code lists the rows of a class in schema order on a BodyWriter or an AttributeWriter;
// what one row looks like in the document is said here, once.
#pragma once

#include <string>
#include <string_view>

#include "lmx/binary.h"
#include "lmx/dates.h"
#include "lmx/writer.h"
#include "model/internal/fields.h"

namespace zol_v2::internal {

// A value as text, in elements and attributes alike.
void write_value(lmx::internal::WriteBlock& block, const std::wstring& value);
void write_value(lmx::internal::WriteBlock& block, double value);
void write_value(lmx::internal::WriteBlock& block, bool value);
void write_value(lmx::internal::WriteBlock& block, int value);
void write_value(lmx::internal::WriteBlock& block, unsigned value);
void write_value(lmx::internal::WriteBlock& block, unsigned char value);
void write_value(lmx::internal::WriteBlock& block, const lmx::c_datetime& value);
void write_value(lmx::internal::WriteBlock& block, const lmx::c_binary& value);

inline void write_field(lmx::internal::WriteBlock& block, const Text& field) {
  write_value(block, field.value);
}
inline void write_field(lmx::internal::WriteBlock& block, const OptionalText& field) {
  write_value(block, field.get());
}
inline void write_field(lmx::internal::WriteBlock& block, const Enumerated& field) {
  write_value(block, field.get());
}
template <class T>
void write_field(lmx::internal::WriteBlock& block, const Value<T>& field) {
  write_value(block, field.value);
}

// The attributes of a start tag.
class AttributeWriter {
 public:
  explicit AttributeWriter(lmx::c_xml_writer& writer) : block_(writer.block()) {}

  template <class Field>
  void required(std::string_view name, const Field& field) {
    block_.append(' ');
    block_.append(name);
    block_.append(std::string_view("=\""));
    write_field(block_, field);
    block_.append('"');
  }
  template <class Field>
  void optional(std::string_view name, const Field& field) {
    if (field.set) required(name, field);
  }

 private:
  lmx::internal::WriteBlock& block_;
};

// The child elements, each named with its prefix. The first code that a child gives ends the
// writing: what follows is silent, and error() is that code.
class BodyWriter {
 public:
  explicit BodyWriter(lmx::c_xml_writer& writer) : writer_(writer) {}

  lmx::elmx_error error() const { return error_; }

  template <class T>
  void element(std::string_view name, const T& value) {
    if (error_ != lmx::elmx_ok) return;
    open(name);
    write_value(writer_.block(), value);
    close(name);
  }
  template <class Field>
  void required(std::string_view name, const Field& field) {
    if (error_ != lmx::elmx_ok) return;
    open(name);
    write_field(writer_.block(), field);
    close(name);
  }
  template <class Field>
  void optional(std::string_view name, const Field& field) {
    if (field.set) required(name, field);
  }
  template <class T>
  void values(std::string_view name, const List<T>& list) {
    for (unsigned i = 0; i < list.size(); ++i) element(name, list.at(i));
  }

  template <class T>
  void object(const char* name, const T& object) {
    if (error_ == lmx::elmx_ok) error_ = object.marshal(writer_, name);
  }
  template <class T>
  void child(const char* name, const T& field) {
    object(name, field.get());
  }
  template <class T>
  void optional_child(const char* name, const T& field) {
    if (field.set) object(name, field.get());
  }
  template <class T>
  void children(const char* name, const List<T>& list) {
    for (unsigned i = 0; i < list.size() && error_ == lmx::elmx_ok; ++i) object(name, list.at(i));
  }

  // An element with nothing in it.
  void mark(std::string_view name);
  // Foreign elements as they were kept, each on a line of its own.
  void foreign(const List<AnyElement>& list);

 private:
  void open(std::string_view name);
  void close(std::string_view name);

  lmx::c_xml_writer& writer_;
  lmx::elmx_error error_ = lmx::elmx_ok;
};

// What is special about the element of one class.
struct WriteSteps {
  bool (*is_occurs_ok)(const void* self);
  void (*attributes)(const void* self, lmx::c_xml_writer& writer);
  lmx::elmx_error (*children)(const void* self, lmx::c_xml_writer& writer);
  bool (*is_nil)(const void* self);  // null for a class that is not nillable
  bool names_namespaces;             // carries the namespaces when it comes first in a document
  bool is_blank;                     // has neither children nor content
  bool is_simple;                    // its content is a value on the line of its tags
};

// One element with its start and end tag. `type_name` and `identity` belong to polymorphic classes,
// which name their type if it is not the one that the writer was told to expect; else null.
// 46 with nothing written if a required row is missing, or the code of a child.
lmx::elmx_error write_element(const void* self, const WriteSteps& steps, lmx::c_xml_writer& writer,
                              const char* name, const char* type_name = nullptr,
                              const char* identity = nullptr);

// 7 through the writer's handler: a choice that cannot be written.
lmx::elmx_error bad_choice(lmx::c_xml_writer& writer, const char* item, int line);

// A document as its targets want it: declaration, one tab for a level, line feeds.
struct DocumentSource {
  const void* self;
  lmx::elmx_error (*marshal)(const void* self, lmx::c_xml_writer& writer);
};

// 1 if the file cannot be opened; it is removed again if the object cannot be written.
lmx::elmx_error marshal_to_file(DocumentSource source, const char* file);
// Leaves *out alone unless the result is 0.
lmx::elmx_error marshal_to_string(DocumentSource source, std::string* out);
lmx::elmx_error marshal_to_stream(DocumentSource source, std::ostream& stream);

}  // namespace zol_v2::internal
