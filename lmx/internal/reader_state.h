// What stands behind c_xml_reader, and what reading code of the library does with it.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lmx/internal/pool.h"
#include "lmx/names.h"
#include "lmx/reader.h"

namespace lmx::internal {

struct ReaderState {
  c_xml_reader_local root_local;
  elmx_error handled_error = elmx_ok;
  std::string error_item_name;
  c_string_stack element_names;
  c_cracked_name cracked_name;
  std::vector<std::pair<std::string, std::string>> namespace_mappings;
  const s_known_elements* known_elements = nullptr;
  int open_elements = 0;
  Pool pool;
};

// What reading a whole document through events would leave in a reader.
struct WholeDocument {
  SourceBytes bytes;       // up to behind the root's end tag
  std::string_view name;   // of the root
  std::string_view value;  // the last that was read, in this mode
  elmx_whitespace mode;
  std::string_view last_name;  // of an element or attribute, with the id of its namespace
  int last_name_ns_id;
  const std::vector<std::string>* declared;  // the URIs that the document declares, in its order
};

// Counts an element that is read into another for as long as it lives. Documents may nest such
// elements 512 deep; beyond that ok() is false, and a fatal 23 was reported.
class ElementDepthGuard {
 public:
  explicit ElementDepthGuard(c_xml_reader& reader) : reader_(&reader) {
    if (++reader.state_->open_elements > k_max_depth) report();
  }
  ElementDepthGuard(const ElementDepthGuard&) = delete;
  ElementDepthGuard& operator=(const ElementDepthGuard&) = delete;
  ~ElementDepthGuard() { --reader_->state_->open_elements; }

  bool ok() const { return reader_->state_->open_elements <= k_max_depth; }

  static constexpr int k_max_depth = 512;

 private:
  void report();

  c_xml_reader* reader_;
};

}  // namespace lmx::internal
