// Reads a document that has no faults, as fast as its bytes can be passed.
//
// The text stands in memory as a whole, the object is as new, and the tables of the classes say
// what may come. There are no events and no handlers here: at the first thing that is not taken, a
// fault above all, the reader gives up, and whoever asked reads the document again from its
// beginning by reading.cpp, which alone knows faults, handlers and entities. What is taken is all
// that honest documents hold: any prefix, comments, instructions, CDATA sections, references to
// characters and the five predefined entities, CR LF, xsi:nil and xsi:type, text beyond ASCII,
// foreign entries. What is read is exactly what the other road would have read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lmx/internal/byte_buffer.h"
#include "lmx/internal/pool.h"
#include "lmx/internal/reader_state.h"
#include "lmx/internal/transcode.h"
#include "lmx/reader.h"
#include "lmx/tokeniser.h"
#include "model/internal/document_namespace.h"
#include "model/internal/object.h"
#include "model/internal/values.h"

namespace zol_v2::internal {

class StrictReader {
 public:
  // In any encoding that a reader knows, with or without a mark. Stays the caller's; what is not
  // UTF-8 is turned into it first.
  StrictReader(std::string_view bytes, Pool& pool) : bytes_(bytes), pool_(pool) {}

  // False if the other road must be taken; the object then holds what was read so far.
  bool read(Object& self, const Class& type);

  // From now on the entries of lists that may be empty are shown when they are read, and then
  // deleted: what takes them must not mind. False from it ends the reading.
  using Taker = std::function<bool(const Object& entry)>;
  void give_entries_to(Taker take) { take_ = std::move(take); }

  // --- What the other road would have left in its reader --------------------------------------

  // Up to behind the root's end tag.
  lmx::internal::SourceBytes bytes_read() const;
  // The name in the root's end tag, the last value, and the last name of an element or attribute.
  std::string_view end_name() const { return root_name_; }
  std::string_view last_value() const { return last_value_; }
  lmx::elmx_whitespace last_mode() const { return last_mode_; }
  std::string_view last_name() const { return last_name_; }
  int last_name_ns_id() const { return last_name_ns_id_; }
  // The namespaces that the document declares, in its order.
  const std::vector<std::string>& declared() const { return declared_; }

 private:
  enum class Next : unsigned char { start_tag, end_tag };

  struct Attribute {
    std::string_view name;
    std::string_view value;  // as it stands between the quotes
  };
  struct Binding {
    std::string_view prefix;
    std::string_view uri;
  };
  struct Tag {
    const char* name;
    std::size_t size;

    std::string_view view() const { return {name, size}; }
  };
  class Scope;
  class Entries;
  static constexpr int k_max_depth = lmx::internal::ElementDepthGuard::k_max_depth;

  // --- Objects
  bool open();
  bool go_on_in(lmx::internal::SourceEncoding encoding);
  bool read_root(Object& self, const Class& type);
  // From behind the name of the start tag to behind the end tag.
  bool read_object(Object& self, const Class& type, Tag tag);
  bool read_opened(Object& self, const Class& type, Tag tag, std::uint32_t seen, bool is_empty);
  bool read_content(Object& self, const Row& row, Tag tag);
  bool read_children(Object& self, const Class& type, std::uint32_t seen);
  bool read_rows(Object& self, const Class& type, std::uint32_t* seen);
  bool read_row(Object& self, const Row& row);
  bool read_list(Object& self, const Row& row);
  bool read_child(Object& self, const Row& row);
  bool read_holder(Object& self, const Row& alternative);
  bool read_choice(Object& self, const Class& type);
  bool read_foreign(Object& self, const Row& row);
  bool read_mark(const Row& row);

  // --- Values
  bool read_value(Object& self, const Row& row);
  bool store(Object& self, const Row& row, std::string_view text);
  bool read_real(const Row& row, double* out);
  // The text of the simple element at hand, its white space treated.
  bool take_text(const Row& row, std::string_view* text);
  bool take_content(lmx::elmx_whitespace mode, std::string_view* text);
  bool take_treated_content(lmx::elmx_whitespace mode, std::string_view* text);
  bool treat(std::string_view source, lmx::elmx_whitespace mode);
  bool treat_markup(const char** at);
  bool treat_reference(const char** at, const char* end, lmx::elmx_whitespace mode);
  void treat_character(char c, lmx::elmx_whitespace mode);

  // --- Tags
  // Moves to the next tag. False for anything but white space, comments and instructions before it.
  bool find_tag();
  bool find_other_tag();
  void forget_name() {
    local_ = nullptr;
    local_head_ = 0;  // which is no name's
  }
  bool begins_like(const Row& row) const { return ((local_head_ ^ row.head) & row.filled) == 0; }
  bool is_at(const Row& row) const;
  const Row* alternative_at(const Class& type);
  Tag tag_of(const Row& row) const { return {at_ + 1, prefix_.size() + row.name_length}; }
  // The rest of a start tag. Declarations take effect.
  bool take_plain_attributes(Object& self, const Class& type, std::uint32_t* seen);
  const Row* attribute_at(const Class& type, const char* name) const;
  bool scan_tag(bool* is_empty);
  bool scan_attribute();
  bool declare(const Attribute& attribute);
  bool apply_attributes(Object& self, const Class& type, std::uint32_t* seen);
  bool apply_attribute(Object& self, const Class& type, const Attribute& attribute,
                       std::uint32_t* seen);
  bool read_tag_value(const Attribute& attribute, lmx::elmx_whitespace mode,
                      std::string_view* value);
  // The type that an attribute of the tag asks for; an empty name if there is none.
  bool find_named_type(int* ns_id, std::string* name);
  bool take_end_tag(std::string_view name);
  bool take_late_end();
  bool take_end_of_empty_tag();

  // --- The rest
  bool read_declaration();
  bool skip_comment();
  bool skip_instruction();
  bool set_prefix(std::string_view prefix);
  void forget_bindings(std::size_t left);
  int ns_id_of(std::string_view prefix) const;
  void note_name(Tag tag) {
    last_name_ = tag.view();
    last_name_ns_id_ = k_document_namespace_id;
  }
  // Behind a name.
  void count_pushed_back() {
    if (*at_ == '\n' || (*at_ == '\r' && !is_near_end(1) && at_[1] == '\n')) ++extra_lines_;
  }
  // Would another element be too deep?
  bool is_full() const { return depth_ >= k_max_depth; }
  bool is_near_end(std::size_t size) const { return static_cast<std::size_t>(end_ - at_) <= size; }

  const std::string_view bytes_;
  Pool& pool_;
  // Of another encoding: the text from transcoded_at_ on in UTF-8.
  lmx::internal::ByteBuffer transcoded_{0};
  std::size_t transcoded_at_ = 0;
  int encoding_ = lmx::c_get_as_utf8::k_utf8;
  const char* at_ = nullptr;
  const char* end_ = nullptr;

  // The tag that find_tag() found: at_ is its "<".
  Next next_ = Next::start_tag;
  const char* local_ = nullptr;   // the local name of a start tag with the prefix, else null
  std::uint64_t local_head_ = 0;  // its first bytes

  // How a start tag of the format begins: "<" and the prefix with its colon, or as much of that as
  // a word holds.
  std::string_view prefix_;
  std::uint64_t prefix_word_ = '<';
  std::uint64_t prefix_mask_ = 0xFF;
  bool has_short_prefix_ = false;  // which the word tells whole

  std::vector<Binding> bindings_;  // of the open elements, the innermost last
  int default_ns_id_ = 0;          // of a name without prefix
  std::vector<Attribute> attributes_;
  Taker take_;
  std::vector<void*> entries_;  // of the lists that are being read
  std::string treated_;         // a value that does not stand in the text as it is
  // The alternative that was found last, where, and what came after each the last time.
  const Row* matched_ = nullptr;
  const char* matched_at_ = nullptr;
  const Row* followers_[256] = {};
  bool pending_space_ = false;
  int depth_ = 0;
  RefuseFaults refuse_;

  std::string_view root_name_;
  std::string_view last_value_;
  lmx::elmx_whitespace last_mode_ = lmx::elmx_preserve;
  std::string_view last_name_;
  int last_name_ns_id_ = 0;
  int extra_lines_ = 0;  // line ends that count twice, since only they end the name before them
  std::vector<std::string> declared_;
};

}  // namespace zol_v2::internal
