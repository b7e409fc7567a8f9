#include "lmx/internal/plain_road.h"

#include <cstdint>

#include "lmx/internal/byte_buffer.h"
#include "lmx/internal/runs.h"

namespace lmx::internal {

namespace {

// The end of a run of ASCII without control characters, up to a stop: "<" or "&", and the quote if
// there is one. Of white space only the blank passes, so that the replacing mode has nothing to do.
template <class... Quote>
const char* pass_ascii(const char* p, const char* end, Quote... quote) {
#if ZOL_LANES
  for (; end - p >= Lanes::k_size; p += Lanes::k_size) {
    const unsigned stop = Lanes(p).is_unusual_or('<', '&', quote...);
    if (stop != 0) return p + lowest_bit(stop);
  }
#else
  for (; end - p >= 8; p += 8) {
    const std::uint64_t word = load_word(p);
    const std::uint64_t stop = (word & k_highs) | flag_below(word, ' ') | flag_equal(word, '<') |
                               flag_equal(word, '&') | (flag_equal(word, quote) | ... | 0);
    if (stop != 0) return p + lowest_byte(stop);
  }
#endif
  while (p != end && byte_at(p) >= ' ' && byte_at(p) < 0x80 && *p != '<' && *p != '&' &&
         ((*p != quote) && ...)) {
    ++p;
  }
  return p;
}

// The same with well-formed sequences that need no look of their own.
template <class... Quote>
const char* pass_plain_run(const char* p, const char* end, Quote... quote) {
  while (true) {
    p = pass_ascii(p, end, quote...);
    if (p == end) return p;
    const int length = plain_sequence_length(p, end);
    if (length == 0) return p;
    p += length;
  }
}

bool stands_at(const char* p, const char* end, std::string_view text) {
  return static_cast<std::size_t>(end - p) > text.size() &&
         is_equal_short(p, text.data(), text.size());
}

// A blank at either end is white space that a mode may take away.
bool has_outer_blank(std::string_view text) {
  return !text.empty() && (text.front() == ' ' || text.back() == ' ');
}

std::string_view view(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace

void PlainPrefix::set(std::string_view prefix) {
  if (prefix == view()) return;
  text.clear();
  text.append(prefix);
  size = prefix.size();
  word = '<';
  mask = 0xFF;
  for (std::size_t i = 0; i < size && i + 1 < sizeof word; ++i) {
    word |= std::uint64_t{byte_at(text.data() + i)} << (8 * (i + 1));
    mask = mask << 8 | 0xFF;
  }
}

// --- Looking ----------------------------------------------------------------------------------

void PlainRoad::find_tag() {
  state_.next = NextTag::unknown;
  // The declarations of the element before go first, as they would for the next event.
  reader_.current_local_->clear();
  Window window;
  if (!reader_.getter().open_window(&window) || reader_.getter().is_after_cr()) return;
  state_.lines = 0;
  const char* p = pass_space(window.at, window.end, &state_.lines);
  if (window.end - p < 8) return;
  state_.window_end = window.end;
  const std::uint64_t word = load_word(p);
  if ((word & 0xFFFF) == ('<' | '/' << 8)) {
    state_.local = p + 2;
    state_.next = NextTag::end_tag;
    return;
  }
  // The prefix is that of the last element that was read, or the tag is not for this road.
  const PlainPrefix& prefix = reader_.plain_prefix_;
  if ((word & prefix.mask) != prefix.word) return;
  ++p;
  if (prefix.size + 1 >= sizeof word && !stands_at(p, window.end, prefix.view())) return;
  if (!has_mask(p[prefix.size], k_name_start)) return;
  state_.local = p + prefix.size;
  if (prefix.size == 0) {
    // A name that has none after all, or goes on beyond ASCII or the window.
    p = pass_class(p, window.end, k_ascii_ncname);
    if (p == window.end || has_mask(*p, k_name)) return;
  }
  state_.next = NextTag::start_tag;
}

void PlainRoad::find_namespace() {
  const c_xml_local& scope = *reader_.current_local_;
  const std::string_view prefix = reader_.plain_prefix_.view();
  state_.ns_id = scope.find_namespace_id(prefix.substr(0, prefix.empty() ? 0 : prefix.size() - 1));
  state_.mappings = scope.mappings();
}

// Is the next start tag one of this row? What is behind its name comes at element().end.
inline PlainRoad::Sight PlainRoad::match(const s_event_map& row) {
  const char* const end = state_.local + row.name_length;
  if (state_.window_end - state_.local <= static_cast<std::ptrdiff_t>(row.name_length)) {
    return Sight::unknown;
  }
  if (!is_equal_short(state_.local, row.name, row.name_length) || has_mask(*end, k_name)) {
    return Sight::other_name;
  }
  // The namespace of the prefix is found again only where mappings may have changed.
  if (state_.ns_id < 0 || state_.mappings != reader_.current_local_->mappings()) find_namespace();
  if (state_.ns_id != row.ns_id) return Sight::unknown;
  state_.element.name = view(state_.local - reader_.plain_prefix_.size, end);
  state_.element.end = end;
  return Sight::plain;
}

PlainRoad::Sight PlainRoad::see_value_closely(const s_event_map& row) {
  const Sight sight = match(row);
  if (sight != Sight::plain) return sight;
  if (*state_.element.end++ != '>') return Sight::unknown;
  state_.element.attribute_count = 0;
  return see_text() ? Sight::plain : Sight::unknown;
}

PlainRoad::Sight PlainRoad::see_element_closely(const s_event_map& row) {
  const Sight sight = match(row);
  if (sight != Sight::plain) return sight;
  return see_attributes() && see_text() ? Sight::plain : Sight::unknown;
}

PlainRoad::Sight PlainRoad::see_tag_closely(const s_event_map& row) {
  const Sight sight = match(row);
  if (sight != Sight::plain) return sight;
  return see_attributes() ? Sight::plain : Sight::unknown;
}

PlainRoad::Sight PlainRoad::see_tag_of(const s_event_map* rows) {
  if (state_.next == NextTag::unseen) find_tag();
  if (state_.next != NextTag::start_tag) return otherwise();
  const char* const end = pass_class(state_.local, state_.window_end, k_ascii_ncname);
  if (end == state_.window_end || has_mask(*end, k_name)) return Sight::unknown;
  const std::size_t length = static_cast<std::size_t>(end - state_.local);
  for (; rows->name != nullptr; ++rows) {
    if (rows->name_length != length || !is_equal_short(rows->name, state_.local, length)) continue;
    state_.event = rows->event;
    return see_tag_closely(*rows);
  }
  return Sight::other_name;
}

// From the end of the start tag on. Moves the end of what was seen only if this was good.
bool PlainRoad::see_text() {
  const char* const end = state_.window_end;
  PlainElement& element = state_.element;
  const char* const p = pass_plain_run(element.end, end);
  const std::size_t length = element.name.size();
  if (static_cast<std::size_t>(end - p) < length + 3 || p[0] != '<' || p[1] != '/' ||
      p[length + 2] != '>' || !is_equal_short(p + 2, element.name.data(), length)) {
    return false;
  }
  element.text = view(element.end, p);
  if (has_outer_blank(element.text)) return false;
  element.end = p + length + 3;
  return true;
}

// From the end of the tag's name to behind its ">".
bool PlainRoad::see_attributes() {
  const char* const end = state_.window_end;
  PlainElement& element = state_.element;
  const char* p = element.end;
  element.attribute_count = 0;
  for (; p != end && *p == ' '; ++p) {
    if (element.attribute_count == PlainElement::k_max_attributes) return false;
    PlainElement::Attribute& attribute = element.attributes[element.attribute_count++];
    const char* const name = ++p;
    p = pass_class(p, end, k_ascii_ncname);
    attribute.name = view(name, p);
    if (end - p < 3 || p[0] != '=' || (p[1] != '"' && p[1] != '\'')) return false;
    if (attribute.name.empty() || !has_mask(*name, k_name_start) || attribute.name == "xmlns") {
      return false;
    }
    const char quote = p[1];
    const char* const value = p + 2;
    p = pass_plain_run(value, end, quote);
    if (p == end || *p != quote) return false;
    attribute.value = view(value, p);
    if (has_outer_blank(attribute.value)) return false;
  }
  if (p == end || *p != '>') return false;
  element.end = p + 1;
  return true;
}

// --- Taking -----------------------------------------------------------------------------------

void PlainRoad::take_tag(elmx_whitespace mode) {
  const PlainElement& element = state_.element;
  state_.name = element.name;
  if (element.attribute_count != 0) {
    reader_.getter().set_ws_mode(mode);
    state_.value = element.attributes[element.attribute_count - 1].value;
  }
  reader_.open_plain_tag(element.end, state_.lines);
  reader_.current_event_ = elxp_start_tag_end;
  take_attributes();
  state_.is_due = false;
  state_.next = NextTag::unseen;
}

void PlainRoad::take_attributes() {
  reader_.attribute_name.clear();
  const PlainElement& element = state_.element;
  if (element.attribute_count == 0) {
    note_cracked(element.name, reader_.plain_prefix_.size);
  } else {
    note_cracked(element.attributes[element.attribute_count - 1].name, 0);
  }
}

bool PlainRoad::take_end_tag(std::string_view name) {
  if (state_.next == NextTag::unseen) find_tag();
  const char* const p = state_.local;
  const char* const end = state_.window_end;
  if (state_.next != NextTag::end_tag || !stands_at(p, end, name) || p[name.size()] != '>') {
    return false;
  }
  state_.name = view(p, p + name.size());
  reader_.getter().take_window(p + name.size() + 1, state_.lines);
  reader_.current_event_ = elxp_end_tag;
  state_.is_due = false;
  state_.is_first = false;
  state_.next = NextTag::unseen;
  return true;
}

// --- Entering and leaving ---------------------------------------------------------------------

bool PlainRoad::set_due_before_start_tag() {
  set_due(true);
  find_tag();
  if (state_.next != NextTag::start_tag) state_.is_due = state_.is_first = false;
  return state_.is_due;
}

void PlainRoad::get_due_event(const s_event_map* map, elmx_error* error, std::string* name,
                              std::string* item) {
  const bool is_first = state_.is_first;
  state_.is_due = state_.is_first = false;
  reader_.get_element_event(map, error, name);
  if (*error != elmx_ok) *item = is_first ? std::string(reader_.element_names_.top()) : *name;
}

}  // namespace lmx::internal
