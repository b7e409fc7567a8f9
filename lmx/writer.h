// The way of a document out of the library: c_xml_writer owns indentation, prolog and namespace
// attributes of one marshalling run, and the manipulators turn values into XML text.
#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "lmx/errors.h"
#include "port/export.h"

namespace lmx {

struct s_ns_map;

namespace internal {
class WriterState;
}

// One object for one marshalling run on one thread. It knows no elements: the model prints tags and
// values, either on the stream that operator() hands out.
// The writer never looks at the stream's state; a stream's exceptions pass through.
class ZOL_API c_xml_writer {
 public:
  // Bits of the constructor's flags; each of them makes it write the whole XML declaration.
  static constexpr int include_xml_decl = 1;
  // With standalone="yes".
  static constexpr int include_standalone = 2;

  // The stream gets the classic locale for good. Stream, tab (one level of indentation) and newline
  // stay the caller's and must outlive the writer.
  c_xml_writer(std::ostream& os, const char* tab, const char* nl);
  // The same, with the declaration that the flags ask for written at once.
  c_xml_writer(std::ostream& os, int flags, const char* tab, const char* nl);
  c_xml_writer(const c_xml_writer&) = delete;
  c_xml_writer& operator=(const c_xml_writer&) = delete;
  virtual ~c_xml_writer();

  // Called by handle_error. The result replaces the error: 0 lets the run go on. The first form
  // forwards to the second, which returns its argument.
  virtual elmx_error user_handle_error(elmx_error error, const std::string& item_name,
                                       const char* file, int line);
  // The short form: gives its argument back.
  virtual elmx_error user_handle_error(elmx_error error);

  // "'item'-description" of the last error, or the description of code 0. Returns *out.
  virtual std::string& get_error_message(std::string* out) const;

  // endl() gives the end of a line and writes nothing; nest() writes one level of indentation.
  virtual const char* endl();
  // See endl.
  virtual void nest();

  // The stream, with every byte written so far in it; with true, after one nest() for each level.
  std::ostream& operator()(bool nest);
  // One level deeper.
  void indent();
  // One level up; nothing happens at the outermost.
  void undent();

  // Neither looks for duplicates. What is added after the namespace attributes were written is not
  // written unless reenable_ns_map_output() is called. Texts go out without escapes.
  void add_namespace(const std::string& prefix, const std::string& uri);
  // See add_namespace.
  void add_default_namespace(const std::string& uri);
  // See add_namespace.
  void add_schema_location(const std::string& ns, const std::string& location);
  // See add_namespace.
  void add_no_namespace_schema_location(const std::string& location);

  // The first map offered wins. It is not copied.
  void conditionally_select_ns_map(const s_ns_map* map);
  // Writes the namespace attributes of a start tag, once. A first schema location with an empty
  // namespace becomes xsi:noNamespaceSchemaLocation, and the other locations are left out.
  void conditionally_write_ns_attrs(bool need_xsi);
  // Forgets the map, and that the attributes were written: the next start tag has them again.
  void reenable_ns_map_output();
  // The selected map is asked first, then the added namespaces. Null if none has the URI. The text
  // lives as long as the map, or until a namespace is added.
  const char* get_namespace_prefix(const std::string& uri) const;

  // The class that a reader will expect of the next element without xsi:type. The pointer's target
  // is never looked at.
  const char* get_expected_class_identity() const;
  // Borrows the pointer.
  void set_expected_class_identity(const char* identity);
  // Null again.
  void clear_expected_class_identity();

  // From now on the model is written so that nothing is lost: numbers with as many digits as they
  // need, carriage returns in texts and all white space but blanks in attributes as references.
  void set_exact(bool is_exact);

  // Records the error, asks user_handle_error and records and returns its answer.
  elmx_error handle_error(elmx_error error, const std::string& item_name, const char* file,
                          int line);
  // The item of the last error.
  const std::string& get_error_item_name() const;
  // What was reported to the writer's tally; false, with nothing stored, if nothing was.
  bool get_error_info(elmx_error_type* type, elmx_error* error, int* line);

 private:
  friend class internal::WriterState;

  std::unique_ptr<internal::WriterState> state_;
};

namespace internal {

// The reference that a manipulator holds; it lives for one stream expression.
template <class T>
class ValueReference {
 public:
  explicit ValueReference(const T& value) : value_(value) {}
  const T& get() const { return value_; }

 private:
  const T& value_;
};

}  // namespace internal

// XML text, in elements and attributes alike: `"`, `'`, `&` and `<` are escaped, a wide text ends
// silently at a broken surrogate pair, a narrow one must be UTF-8. Numbers are written in 7
// (float) or 14 significant digits with the stream's flags, but for NaN, INF, -INF, 0.0 and -0.0.
template <class T>
class c_as_xml : public internal::ValueReference<T> {
 public:
  using internal::ValueReference<T>::ValueReference;
};

// The same as c_as_xml of a narrow text.
template <class T>
class c_as_escaped : public internal::ValueReference<T> {
 public:
  using internal::ValueReference<T>::ValueReference;
};

// "1" or "0".
template <class T>
class c_as_bool_digit : public internal::ValueReference<T> {
 public:
  using internal::ValueReference<T>::ValueReference;
};

// For diagnostics: a byte for each unit, "." for those above 127, no escapes.
template <class T>
class c_as_ascii : public internal::ValueReference<T> {
 public:
  using internal::ValueReference<T>::ValueReference;
};

// Each writes its value as the class of the manipulator says.
ZOL_API std::ostream& operator<<(std::ostream& os, const c_as_xml<std::wstring>& text);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_as_xml<std::string>& text);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_as_xml<bool>& value);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_as_xml<float>& value);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_as_xml<double>& value);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_as_escaped<std::string>& text);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_as_bool_digit<bool>& value);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_as_ascii<std::wstring>& text);

}  // namespace lmx
