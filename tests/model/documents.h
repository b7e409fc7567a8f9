// Documents, whole and in pieces, for tests of the model: reading says where it stopped, writing
// gives text.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "lmx/lmxparse.h"
#include "model/Zol.h"
#include "model/outcome.h"

namespace zol_test {

constexpr char k_uri[] = "http://example.org/zol/v2";
constexpr char k_xsi_uri[] = "http://www.w3.org/2001/XMLSchema-instance";

// Reads one element, of any class, whose prefixes Zol and xsi need no declaration.
template <class T>
lmx::elmx_error read_element(lmx::c_xml_reader& reader, T& object) {
  reader.add_namespace_mapping("Zol", k_uri);
  reader.add_namespace_mapping("xsi", k_xsi_uri);
  reader.set_ns_map(zol_v2::Zol::ns_map());
  const lmx::c_xml_reader_local scope(reader);
  lmx::elmx_error error = lmx::elmx_ok;
  reader.get_element_event(nullptr, &error, &reader.name);
  return error != lmx::elmx_ok ? error : object.unmarshal(reader, reader.name);
}

template <class T>
Outcome read(T& object, const std::string& text) {
  lmx::c_xml_reader_memory reader(text.data(), text.size());
  const lmx::elmx_error error = read_element(reader, object);
  if (error == lmx::elmx_ok) return {};
  return {error, reader.get_error_item_name(), reader.get_line_no()};
}

template <class T>
Outcome outcome_of(const std::string& text) {
  T object;
  return read(object, text);
}

// The object from text that must be in order.
template <class T>
T made(const std::string& text) {
  T object;
  EXPECT_EQ(read(object, text), Outcome()) << text;
  return object;
}

// One element as it is written, each line ended, without the declarations of the namespaces.
template <class T>
std::string written(const T& object, const char* name, lmx::elmx_error expected = lmx::elmx_ok) {
  std::ostringstream out;
  lmx::c_xml_writer writer(out, "\t", "\n");
  EXPECT_EQ(object.marshal(writer, name), expected);
  std::string text = out.str();
  const std::string declared =
      std::string(" xmlns:Zol=\"") + k_uri + "\" xmlns:xsi=\"" + k_xsi_uri + "\"";
  if (const auto at = text.find(declared); at != std::string::npos) text.erase(at, declared.size());
  return text;
}

// A whole document around what stands behind the preamble.
inline std::string document(const std::string& body) {
  return std::string("<Zol:Zol xmlns:Zol=\"") + k_uri + "\" xmlns:xsi=\"" + k_xsi_uri +
         "\"><Zol:Preamble><Zol:Header><Zol:Creator>c</Zol:Creator>"
         "<Zol:CreatorVersion>1</Zol:CreatorVersion>"
         "<Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>"
         "<Zol:Purpose>p</Zol:Purpose></Zol:Header></Zol:Preamble>" +
         body + "</Zol:Zol>";
}

inline std::string sample_path(const std::string& name) {
  return std::string(ZOL_SOURCE_DIR "/examples/documents/") + name + ".zol";
}

inline std::string sample_bytes(const std::string& name) {
  std::ifstream in(sample_path(name), std::ios::binary);
  EXPECT_TRUE(in) << name;
  return std::string(std::istreambuf_iterator<char>(in), {});
}

inline const std::vector<std::string>& sample_names() {
  static const std::vector<std::string> names = {"coverage-frame",  "coverage-functions",
                                                 "coverage-spaces", "named-colours",
                                                 "quality-control", "spectra"};
  return names;
}

template <class T>
T loaded(const std::string& bytes) {
  lmx::elmx_error error = lmx::elmx_ok;
  T object(bytes, &error);
  EXPECT_EQ(error, lmx::elmx_ok);
  return object;
}

template <class T>
std::string saved(const T& object) {
  std::string text;
  EXPECT_EQ(object.marshal(&text), lmx::elmx_ok);
  return text;
}

}  // namespace zol_test
