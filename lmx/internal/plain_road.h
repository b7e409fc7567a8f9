// A shortcut for the elements that most of a document is made of: those that come where the schema
// expects them, and hold nothing that needs a closer look.
//
// Reading an element through its events costs several times what its bytes do. The shortcut looks
// at the next element without taking anything. If it is the one that the caller expects, and stands
// in the window as a whole with nothing but text in it, its parts are handed out, and it is taken
// only once they were good; in the same way a start tag with its attributes is taken by itself. In
// every other case (references, comments, line ends in values, declarations) the caller reads on
// through events, so that faults, handlers and oddities have one road alone.
#pragma once

#include <cstddef>
#include <string_view>

#include "lmx/internal/char_table.h"
#include "lmx/reader.h"

namespace lmx::internal {

class PlainRoad {
 public:
  enum class Sight {
    plain,       // what was looked for, and plain; it is in element()
    other_name,  // another element, or an end tag
    unknown      // only reading it will tell
  };

  explicit PlainRoad(c_xml_reader& reader) : reader_(reader), state_(reader.plain_) {}

  bool is_due() const { return state_.is_due; }
  void set_due(bool is_first = false) {
    state_.next = NextTag::unseen;
    state_.is_due = true;
    state_.is_first = is_first;
    state_.rows = k_no_rows;
  }
  // The same where the event would be one of these rows, though none is expected.
  void set_due_in(const s_event_map* rows) {
    set_due();
    state_.rows = rows;
  }
  // Leaves the first tag of an element unread if it is a start tag that may be plain.
  bool set_due_before_start_tag();
  // Ends that state: gets the event, and the item that a fault in it bears.
  void get_due_event(const s_event_map* map, elmx_error* error, std::string* name,
                     std::string* item);
  void get_due_event(elmx_error* error, std::string* name, std::string* item) {
    get_due_event(state_.rows, error, name, item);
  }
  // Lets the reader's strings tell of what was read last.
  void settle() { reader_.store_plain_parts(); }

  // --- Looking at what stands next ------------------------------------------------------------

  // An element of the row without attributes, with its text.
  Sight see_value(const s_event_map& row) {
    return may_be(row) ? see_value_closely(row) : otherwise();
  }
  // The same with attributes.
  Sight see_element(const s_event_map& row) {
    return may_be(row) ? see_element_closely(row) : otherwise();
  }
  // The start tag of an element of the row, with its attributes.
  Sight see_tag(const s_event_map& row) { return may_be(row) ? see_tag_closely(row) : otherwise(); }
  // The start tag of an element of any row in the table: event() tells which.
  Sight see_tag_of(const s_event_map* rows);
  // After the start tag: the text and the end tag, if that is all.
  bool see_text();

  const PlainElement& element() const { return state_.element; }
  int event() const { return state_.event; }

  // --- Taking what was seen -------------------------------------------------------------------

  // An element with its end tag. `mode` is that of its text.
  void take_value(elmx_whitespace mode) {
    take_text(mode);
    note_cracked(state_.name, reader_.plain_prefix_.size);
  }
  void take_element(elmx_whitespace mode) {
    take_text(mode);
    take_attributes();
  }
  // The start tag, up to its ">". `mode` is that of its last attribute.
  void take_tag(elmx_whitespace mode);
  // The end tag of this name, if it is next, as the current event.
  bool take_end_tag(std::string_view name);

  // Whether another element may be opened here without nesting too deeply.
  bool has_depth() const { return reader_.open_elements_ < ElementDepthGuard::k_max_depth; }

  // --- Between whoever sees a start tag and whoever takes it ------------------------------------

  // The element's class reads it from the tag on that was seen.
  void hand_over_tag() { state_.is_handed_over = true; }
  bool is_handed_over() const { return state_.is_handed_over; }
  bool accept_tag() {
    const bool is_handed_over = state_.is_handed_over;
    state_.is_handed_over = false;
    return is_handed_over;
  }

 private:
  static constexpr s_event_map k_no_rows[] = {{0, nullptr, 0, elxp_unknown}};

  bool may_be(const s_event_map& row) {
    if (state_.next == NextTag::unseen) find_tag();
    return state_.next == NextTag::start_tag && *state_.local == *row.name;
  }
  Sight otherwise() const {
    return state_.next == NextTag::unknown ? Sight::unknown : Sight::other_name;
  }
  Sight see_value_closely(const s_event_map& row);
  Sight see_element_closely(const s_event_map& row);
  Sight see_tag_closely(const s_event_map& row);

  void find_tag();
  void find_namespace();
  Sight match(const s_event_map& row);
  bool see_attributes();

  void take_text(elmx_whitespace mode) {
    reader_.getter().set_ws_mode(mode);
    reader_.getter().take_window(state_.element.end, state_.lines);
    state_.name = state_.element.name;
    state_.value = state_.element.text;
    set_due();
  }
  void take_attributes();
  void note_cracked(std::string_view name, std::size_t local_at) {
    state_.cracked = name;
    state_.cracked_local_at = local_at;
  }

  c_xml_reader& reader_;
  PlainState& state_;
};

}  // namespace lmx::internal
