// A shortcut for the elements that most of a document is made of: those that come where the schema
// expects them, and hold nothing that needs a closer look.
//
// Reading an element through its events costs several times what its bytes do. The shortcut looks
// at the next element without taking anything. If it is the one that the caller expects, and stands
// in the window as a whole with nothing but text in it, its parts are handed out, and it is taken
// only once they were good; a start tag without attributes can be taken by itself. In every other
// case (references, comments, line ends in values, declarations, characters beyond ASCII) the
// caller reads on through events, so that faults, handlers and oddities have one road alone.
#pragma once

#include <cstddef>
#include <string_view>

#include "lmx/reader.h"

namespace lmx::internal {

// Views into the window: good until anything is read.
struct PlainElement {
  static constexpr int k_max_attributes = 4;

  struct Attribute {
    std::string_view name;
    std::string_view value;
  };

  std::string_view name;  // as the document spells it
  std::string_view text;
  Attribute attributes[k_max_attributes];
  int attribute_count = 0;

  elmx_whitespace mode = elmx_preserve;  // of the text; whoever converts it says so

  const char* end = nullptr;
  int lines = 0;
};

class PlainRoad {
 public:
  enum class Sight {
    plain,       // the element of the row, whole and plain
    open,        // the element of the row, whose start tag has no attributes
    other_name,  // another element, or an end tag
    unknown      // only reading it will tell
  };

  explicit PlainRoad(c_xml_reader& reader) : reader_(reader) {}

  // Whether the next tag is still to be read, because it may be taken on this road. `is_first` says
  // that it is the first in its parent, whose name a fault in it then bears.
  bool is_due() const { return reader_.is_event_due_; }
  void set_due(bool is_first = false) {
    reader_.is_event_due_ = true;
    reader_.is_first_due_ = is_first;
  }
  // Whether a start tag is next, so that it may be left unread.
  bool is_before_start_tag() const;
  // Ends that state: gets the event, and the item that a fault in it bears.
  void get_due_event(const s_event_map* map, elmx_error* error, std::string* name,
                     std::string* item);

  // What stands next, seen as the element of the row. Attributes are only wanted if `attributes`.
  Sight look(const s_event_map& row, bool attributes, PlainElement* element);
  // Takes what look() saw, the end tag included.
  void take(const PlainElement& element);
  // Takes the start tag that look() saw, up to its ">", as the event of the row.
  void open(const PlainElement& element, int event);
  // Takes the end tag of this name, if it is next, as the current event.
  bool take_end_tag(std::string_view name);
  // Whether an element may be opened here without nesting too deeply.
  bool has_depth() const { return reader_.open_elements_ < ElementDepthGuard::k_max_depth; }

 private:
  void settle();
  Sight find_tag();
  const char* see_attributes(const char* at, const char* end, PlainElement* element);

  c_xml_reader& reader_;
  // The tag that was looked at last, for the next row to look at: where the window began, where the
  // tag's local name begins, and the line ends before it.
  Window window_ = {nullptr, nullptr};
  const char* local_ = nullptr;
  int lines_ = 0;
};

}  // namespace lmx::internal
