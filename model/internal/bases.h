// The operations that classes of one shape share, for the class that an object is of.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>

#include "lmx/errors.h"
#include "model/internal/object.h"
#include "model/internal/walkers.h"
#include "port/export.h"
#include "port/narrow_text.h"

namespace zol_v2::internal {

// An element that is always of one class.
class ZOL_API Plain : public Object {
 public:
  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const {
    return write_element(*this, Head::class_of(*this), writer, name);
  }
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string& name) {
    return read_element(*this, Head::class_of(*this), reader, name);
  }
};

// The root of a family. Each class of it has an `id`, the name of its type, compared by address.
class ZOL_API Polymorphic : public Object {
 public:
  virtual const char* getid() const;
  // Is it the id of the object's class or of one that this is derived from?
  virtual bool has_id(const char* identity) const;
  virtual lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const;
  virtual lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string& name);
};

template <class T>
using IfPath = std::enable_if_t<zol::port::IsPath<T>::value, int>;

// An element as a document of its own.
template <class T>
class Document {
 public:
  static const lmx::s_ns_map* ns_map() { return document_ns_map(); }

  // A path is in the encoding of the system's own calls, or a std::filesystem::path.
  // 1: the file cannot be opened. A failed marshal leaves no file and the string as it was; a
  // stream keeps the partial text.
  lmx::elmx_error marshal(const char* file) const {
    return marshal_document(self(), T::k_class, file);
  }
  template <class Path, IfPath<Path> = 0>
  lmx::elmx_error marshal(const Path& path) const {
    return marshal(path.string().c_str());
  }
  lmx::elmx_error marshal(std::string* out) const {
    return marshal_document(self(), T::k_class, out);
  }
  lmx::elmx_error marshal(std::ostream& stream) const {
    return marshal_document(self(), T::k_class, stream);
  }

  // 1: the file cannot be opened; 16: the document has another root. What was read before the first
  // failure stays. A second reading appends to lists and overwrites elements; an attribute that is
  // set gives 3.
  lmx::elmx_error unmarshal(const char* file) { return unmarshal_file(self(), T::k_class, file); }
  lmx::elmx_error unmarshal(const char* buffer, std::size_t size) {
    return unmarshal_memory(self(), T::k_class, buffer, size);
  }
  lmx::elmx_error unmarshal(const std::string& text) { return unmarshal(text.data(), text.size()); }
  template <class Text, std::enable_if_t<std::is_same_v<Text, std::string_view>, int> = 0>
  lmx::elmx_error unmarshal(Text text) {
    return unmarshal(text.data(), text.size());
  }
  template <class Path, IfPath<Path> = 0>
  lmx::elmx_error unmarshal(const Path& path) {
    return unmarshal(path.string().c_str());
  }
  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader) {
    return unmarshal_document(self(), T::k_class, reader);
  }

 protected:
  // What a constructor from a document does.
  template <class... Source>
  void construct(lmx::elmx_error* error, const Source&... source) {
    *error = lmx::elmx_undefined;
    *error = unmarshal(source...);
  }

 private:
  T& self() { return static_cast<T&>(*this); }
  const T& self() const { return static_cast<const T&>(*this); }
};

}  // namespace zol_v2::internal
