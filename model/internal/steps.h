// What read_element and write_element need to know of one class, gathered from the class itself.
//
// The steps of a class are protected; Steps<T> is their friend, and hands them on as plain
// functions, so that the sequence of an element is compiled once and not for each class.
#pragma once

#include "model/internal/reading.h"
#include "model/internal/writing.h"

namespace zol_v2::internal {

enum Trait : unsigned {
  k_no_trait = 0,
  k_wants_content = 1,     // an empty element is a fault
  k_names_namespaces = 2,  // carries the namespaces when it comes first in a document
  k_blank = 4,             // has neither children nor content
  k_simple = 8,            // its content is a value
  k_nillable = 16,
  k_choice = 32  // its content is one of several elements
};

template <class T, unsigned traits>
struct Steps {
  static bool read_attributes(void* self, lmx::c_xml_reader& reader, const std::string& name,
                              lmx::elmx_error* err) {
    return static_cast<T*>(self)->T::unmarshal_attributes(reader, name, err);
  }
  static bool read_plain_attributes([[maybe_unused]] void* self, [[maybe_unused]] PlainReader& in) {
    if constexpr ((traits & k_simple) != 0) {
      return false;
    } else {
      static_cast<T*>(self)->T::unmarshal_plain_attributes(in);
      return in.finish();
    }
  }
  static lmx::elmx_error check_attributes(void* self, lmx::c_xml_reader& reader) {
    return static_cast<T*>(self)->T::unmarshal_attributes_check(reader);
  }
  static bool read_body(void* self, lmx::c_xml_reader& reader, std::string* name,
                        lmx::elmx_error* err, [[maybe_unused]] bool has_text) {
    if constexpr ((traits & k_simple) != 0) {
      return static_cast<T*>(self)->T::unmarshal_body(reader, name, err, has_text);
    } else {
      return static_cast<T*>(self)->T::unmarshal_body(reader, name, err);
    }
  }
  static bool is_occurs_ok(const void* self) {
    return static_cast<const T*>(self)->T::is_occurs_ok();
  }
  static void write_attributes(const void* self, lmx::c_xml_writer& writer) {
    static_cast<const T*>(self)->T::marshal_attributes(writer);
  }
  static lmx::elmx_error write_children(const void* self, lmx::c_xml_writer& writer) {
    return static_cast<const T*>(self)->T::marshal_child_elements(writer);
  }
  static constexpr bool (*nil_test())(const void*) {
    if constexpr ((traits & k_nillable) != 0) {
      return [](const void* self) { return static_cast<const T*>(self)->nil_; };
    } else {
      return nullptr;
    }
  }

  static constexpr ReadSteps k_reading = {
      read_attributes, read_plain_attributes,           check_attributes,        read_body,
      nil_test(),      (traits & k_wants_content) != 0, (traits & k_simple) != 0};
  static constexpr WriteSteps k_writing = {is_occurs_ok,
                                           write_attributes,
                                           write_children,
                                           nil_test(),
                                           (traits & k_names_namespaces) != 0,
                                           (traits & k_blank) != 0,
                                           (traits & k_simple) != 0};
};

// A class as a document, for the entry points from and to files, buffers and streams.
template <class T>
DocumentSource source_of(const T& object) {
  return {&object, [](const void* self, lmx::c_xml_writer& writer) {
            return static_cast<const T*>(self)->marshal(writer, T::k_element_name);
          }};
}

template <class T>
DocumentTarget target_of(T& object) {
  return {&object, [](void* self, lmx::c_xml_reader& reader) {
            return static_cast<T*>(self)->unmarshal(reader);
          }};
}

}  // namespace zol_v2::internal
