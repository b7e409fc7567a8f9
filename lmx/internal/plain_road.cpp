#include "lmx/internal/plain_road.h"

#include <cstdint>

#include "lmx/internal/byte_buffer.h"
#include "lmx/internal/runs.h"
#include "lmx/internal/word.h"

namespace lmx::internal {

namespace {

// The end of a run of plain ASCII text: a control character, "<", "&" or a byte above 127. Of white
// space only the blank passes, so that the replacing mode has nothing to do.
const char* pass_plain_text(const char* p, const char* end) {
  for (; end - p >= 8; p += 8) {
    const std::uint64_t word = load_word(p);
    const std::uint64_t stop =
        (word & k_highs) | flag_below(word, ' ') | flag_equal(word, '<') | flag_equal(word, '&');
    if (stop != 0) return p + lowest_byte(stop);
  }
  while (p != end && (*p == ' ' || !has_mask(*p, k_text_stop | k_plain_stop))) ++p;
  return p;
}

// The end of an attribute's value: the quote that delimits it, or what calls for a closer look.
const char* pass_plain_value(const char* p, const char* end, char quote) {
  for (; p != end && *p != quote; ++p) {
    if (*p != ' ' && has_mask(*p, k_text_stop | k_plain_stop)) break;
  }
  return p;
}

bool stands_at(const char* p, const char* end, std::string_view text) {
  return static_cast<std::size_t>(end - p) > text.size() &&
         is_equal_short(p, text.data(), text.size());
}

bool is_end_tag(const char* p, const char* end, std::string_view name) {
  return static_cast<std::size_t>(end - p) >= name.size() + 3 && p[0] == '<' && p[1] == '/' &&
         is_equal_short(p + 2, name.data(), name.size()) && p[name.size() + 2] == '>';
}

// A blank at either end is white space that a mode may take away.
bool has_outer_blank(std::string_view text) {
  return !text.empty() && (text.front() == ' ' || text.back() == ' ');
}

// A name that begins here, is known to begin with the prefix, and is not this one. It may go on
// beyond the window, and where names have no prefix it may have one, also one beyond ASCII.
bool is_other_name(const char* p, const char* end, std::string_view prefix,
                   std::string_view local) {
  if (static_cast<std::size_t>(end - p) <= local.size() || !has_mask(*p, k_name_start))
    return false;
  if (!prefix.empty()) return true;
  p = pass_class(p, end, k_ascii_ncname);
  return p != end && !has_mask(*p, k_name);
}

}  // namespace

// Puts local_ behind the prefix of the next start tag.
PlainRoad::Sight PlainRoad::find_tag() {
  local_ = nullptr;
  if (!reader_.getter().open_window(&window_) || reader_.getter().is_after_cr()) {
    return Sight::unknown;
  }
  lines_ = 0;
  const char* p = pass_space(window_.at, window_.end, &lines_);
  if (window_.end - p < 2 || *p != '<') return Sight::unknown;
  if (p[1] == '/') return Sight::other_name;

  // The prefix is that of the last element that was read, or the tag is not for this road.
  const std::string_view prefix = reader_.plain_prefix();
  if (!stands_at(++p, window_.end, prefix)) return Sight::unknown;
  local_ = p + prefix.size();
  return Sight::open;
}

PlainRoad::Sight PlainRoad::look(const s_event_map& row, bool attributes, PlainElement* element) {
  Window window;
  const bool is_same_tag = local_ != nullptr && reader_.getter().open_window(&window) &&
                           window.at == window_.at && window.end == window_.end;
  if (!is_same_tag) {
    const Sight sight = find_tag();
    if (sight != Sight::open) return sight;
  }
  const char* const end = window_.end;
  const char* p = local_;
  const std::string_view prefix = reader_.plain_prefix();
  if (p != end && *p != *row.name && !prefix.empty() && has_mask(*p, k_name_start)) {
    return Sight::other_name;
  }
  const std::string_view local(row.name, row.name_length);
  if (!stands_at(p, end, local) || has_mask(p[local.size()], k_name)) {
    return is_other_name(p, end, prefix, local) ? Sight::other_name : Sight::unknown;
  }
  p += local.size();
  const char* const name = local_ - prefix.size();
  element->name = std::string_view(name, static_cast<std::size_t>(p - name));
  element->lines = lines_;

  // The declarations of the element before go first, as they would for its event.
  reader_.current_local_->clear();
  if (reader_.current_local_->find_namespace_id(
          prefix.substr(0, prefix.empty() ? 0 : prefix.size() - 1)) != row.ns_id) {
    return Sight::unknown;
  }

  element->attribute_count = 0;
  if (*p != '>') {
    if (!attributes) return Sight::unknown;
    p = see_attributes(p, end, element);
    if (p == nullptr) return Sight::unknown;
  }
  element->end = p;
  const Sight otherwise = element->attribute_count == 0 ? Sight::open : Sight::unknown;
  const char* const text = ++p;
  p = pass_plain_text(p, end);
  element->text = std::string_view(text, static_cast<std::size_t>(p - text));
  if (has_outer_blank(element->text) || !is_end_tag(p, end, element->name)) return otherwise;
  element->end = p + element->name.size() + 3;
  return Sight::plain;
}

// From the end of the tag's name up to ">", or null if anything calls for a closer look.
const char* PlainRoad::see_attributes(const char* p, const char* end, PlainElement* element) {
  while (p != end && *p == ' ') {
    if (element->attribute_count == PlainElement::k_max_attributes) return nullptr;
    PlainElement::Attribute& attribute = element->attributes[element->attribute_count++];
    const char* const name = ++p;
    p = pass_class(p, end, k_ascii_ncname);
    attribute.name = std::string_view(name, static_cast<std::size_t>(p - name));
    if (end - p < 3 || p[0] != '=' || (p[1] != '"' && p[1] != '\'')) return nullptr;
    if (attribute.name.empty() || !has_mask(*name, k_name_start) || attribute.name == "xmlns") {
      return nullptr;
    }
    const char quote = p[1];
    p += 2;
    const char* const value = p;
    p = pass_plain_value(value, end, quote);
    if (p == end || *p != quote) return nullptr;
    attribute.value = std::string_view(value, static_cast<std::size_t>(p - value));
    if (has_outer_blank(attribute.value)) return nullptr;
    ++p;
  }
  return p != end && *p == '>' ? p : nullptr;
}

void PlainRoad::take(const PlainElement& element) {
  c_get_for_xml& getter = reader_.getter();
  getter.set_ws_mode(element.mode);
  getter.take_window(element.end, element.lines);
  reader_.plain_name_ = element.name;
  reader_.plain_value_ = element.text;
  set_due();
}

void PlainRoad::open(const PlainElement& element, int event) {
  settle();
  store(&reader_.name, element.name.data(), element.name.size());
  reader_.open_plain_tag(element.end, element.lines);
  reader_.cracked_name_.split(reader_.current_local_, reader_.name, reader_.plain_prefix().size());
  reader_.current_event_ = event;
}

// Leaves the road: what was taken on it last is what the reader read last.
void PlainRoad::settle() {
  reader_.is_event_due_ = false;
  reader_.is_first_due_ = false;
  if (reader_.plain_name_.empty()) return;
  store(&reader_.name, reader_.plain_name_.data(), reader_.plain_name_.size());
  store(&reader_.value, reader_.plain_value_.data(), reader_.plain_value_.size());
  reader_.plain_name_ = {};
  reader_.cracked_name_.split(reader_.current_local_, reader_.name, reader_.plain_prefix().size());
}

bool PlainRoad::is_before_start_tag() const {
  Window window;
  if (!reader_.getter().open_window(&window) || reader_.getter().is_after_cr()) return false;
  int lines = 0;
  const char* const p = pass_space(window.at, window.end, &lines);
  return window.end - p >= 2 && p[0] == '<' && has_mask(p[1], k_name_start);
}

void PlainRoad::get_due_event(const s_event_map* map, elmx_error* error, std::string* name,
                              std::string* item) {
  const bool is_first = reader_.is_first_due_;
  settle();
  reader_.get_element_event(map, error, name);
  if (*error != elmx_ok) *item = is_first ? std::string(reader_.element_names_.top()) : *name;
}

bool PlainRoad::take_end_tag(std::string_view name) {
  Window window;
  if (!reader_.getter().open_window(&window) || reader_.getter().is_after_cr()) return false;
  int lines = 0;
  const char* const p = pass_space(window.at, window.end, &lines);
  if (!is_end_tag(p, window.end, name)) return false;
  settle();
  reader_.current_local_->clear();
  store(&reader_.name, p + 2, name.size());
  reader_.getter().take_window(p + name.size() + 3, lines);
  reader_.current_event_ = elxp_end_tag;
  return true;
}

}  // namespace lmx::internal
