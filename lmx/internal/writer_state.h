// What stands behind c_xml_writer, and the library's own road to it: the model is printed on the
// block, with the same bytes as by streaming through operator(), and both may alternate, since
// operator() flushes the block.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lmx/errors.h"
#include "lmx/internal/write_block.h"
#include "lmx/writer.h"

namespace lmx::internal {

class WriterState {
 public:
  static WriterState& of(c_xml_writer& writer) { return *writer.state_; }

  WriterState(c_xml_writer& face, std::ostream& os, const char* tab, const char* newline);
  WriterState(const WriterState&) = delete;
  WriterState& operator=(const WriterState&) = delete;

  // With the hooks, which a client may override.
  c_xml_writer& face() { return face_; }
  // For use while a MarshalScope lives.
  WriteBlock& block() { return block_; }
  // The indentation of a line, as from operator()(true), and its end.
  void begin_line() {
    if (depth_ > indentation_depth_) return begin_deep_line();
    block_.append_stamp(indentation_, static_cast<std::size_t>(depth_) * tab_size_);
  }
  void end_line() {
    if (calls_hooks_) return end_line_through_hook();
    block_.append({newline_, newline_size_});
  }
  void indent() { ++depth_; }
  void undent() {
    if (depth_ > 0) --depth_;
  }

  void conditionally_select_ns_map(const s_ns_map* map) {
    if (ns_map_ == nullptr) ns_map_ = map;
  }
  void conditionally_write_ns_attrs(bool need_xsi) {
    if (!ns_attrs_written_) write_ns_attrs(need_xsi);
  }
  const char* expected_class_identity() const { return expected_class_identity_; }
  void set_expected_class_identity(const char* identity) { expected_class_identity_ = identity; }

 private:
  friend class lmx::c_xml_writer;
  friend class MarshalScope;

  using StringPairs = std::vector<std::pair<std::string, std::string>>;

  void enter_scope();
  void leave_scope();
  void begin_deep_line();
  void end_line_through_hook();
  void write_ns_attrs(bool need_xsi);
  void append_ns_attr(std::string_view prefix, std::string_view uri);
  void append_schema_locations();

  c_xml_writer& face_;
  std::ostream& os_;
  int depth_ = 0;
  const char* tab_;
  const char* newline_;
  bool ns_attrs_written_ = false;
  c_error error_;
  elmx_error last_error_ = elmx_ok;
  std::string error_item_name_;
  const s_ns_map* ns_map_ = nullptr;
  StringPairs namespaces_;
  StringPairs schema_locations_;
  const char* expected_class_identity_ = nullptr;

  // False inside a scope if no hook can be overridden; see enter_scope().
  bool calls_hooks_ = true;
  int indentation_depth_ = -1;  // the levels that fit in indentation_
  int scope_depth_ = 0;
  int exceptions_at_entry_ = 0;
  std::size_t tab_size_ = 0;
  std::size_t newline_size_ = 0;
  char indentation_[WriteBlock::k_stamp] = {};
  WriteBlock block_;
};

// Stands in every marshal function that writes on block(). When the outermost one ends, by a
// result or by an exception, the stream has every byte. Only then, and only if nothing is thrown
// already, may the destructor throw: what the stream throws.
class MarshalScope {
 public:
  explicit MarshalScope(WriterState& writer) : writer_(writer) {
    if (writer_.scope_depth_++ == 0) writer_.enter_scope();
  }
  ~MarshalScope() noexcept(false) {
    if (--writer_.scope_depth_ == 0) writer_.leave_scope();
  }
  MarshalScope(const MarshalScope&) = delete;
  MarshalScope& operator=(const MarshalScope&) = delete;

 private:
  WriterState& writer_;
};

}  // namespace lmx::internal
