// What a reader keeps of the element that is next, for the short road (plain_road.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "lmx/internal/byte_buffer.h"

namespace lmx {

struct s_event_map;

namespace internal {

// An element as it stands in the window. The views are good until anything is read.
struct PlainElement {
  static constexpr int k_max_attributes = 8;

  struct Attribute {
    std::string_view name;
    std::string_view value;
  };

  std::string_view name;  // as the document spells it
  std::string_view text;
  Attribute attributes[k_max_attributes];
  int attribute_count = 0;

  const char* end = nullptr;  // behind what was seen of it
};

// The prefix of the last element, with its colon; most elements have the same.
struct PlainPrefix {
  ByteBuffer text{16};
  std::size_t size = 0;
  // How a start tag with it begins: "<" and the prefix, or as much of that as a word holds.
  std::uint64_t word = '<';
  std::uint64_t mask = 0xFF;

  std::string_view view() const { return {text.data(), size}; }
  void set(std::string_view prefix);
};

// What stands behind the white space that is next.
enum class NextTag : unsigned char {
  unseen,
  start_tag,  // with the prefix that the element before it had
  end_tag,
  unknown  // only reading it will tell
};

struct PlainState {
  NextTag next = NextTag::unseen;
  // Whether the next tag is still to be read, because it may be taken on the short road.
  bool is_due = false;
  // It is the first in its parent, whose name a fault in it then bears.
  bool is_first = false;
  // The rows that it may be of, if nobody asks for others.
  const s_event_map* rows = nullptr;
  // Its start tag was seen to be plain, and is taken by whoever reads the element.
  bool is_handed_over = false;

  const char* local = nullptr;  // behind the prefix of a start tag, behind the "</" of an end tag
  const char* window_end = nullptr;
  int lines = 0;         // line ends in the white space before it
  PlainElement element;  // what was seen of it
  int event = 0;         // of its row, if it was looked for in a table

  // The namespace of the prefix, found in these mappings; negative if it is not known.
  int ns_id = -1;
  const void* mappings = nullptr;

  // What was read last on the short road. The strings of the reader are brought up to date when
  // somebody may look at them, and not for each element.
  std::string_view name;
  std::string_view value;
  std::string_view cracked;
  std::size_t cracked_local_at = 0;
};

}  // namespace internal
}  // namespace lmx
