#include "model/internal/reading.h"

#include <charconv>
#include <cstdlib>

#include "lmx/decimal.h"
#include "lmx/facets.h"
#include "lmx/internal/lexical.h"
#include "lmx/internal/number_text.h"
#include "lmx/pattern.h"
#include "lmx/text.h"
#include "model/internal/document_namespace.h"

namespace zol_v2::internal {

using lmx::c_xml_reader;
using lmx::elmx_error;

namespace {

// Asks of a date and time that it carries a time zone.
const lmx::c_pattern k_zoned_pattern(".+T.+(Z|[+\\-].+)");

// Below this many characters no integer text can overflow 64 bits.
constexpr std::size_t k_short_integer = 18;

// The number that a short text begins with, behind an optional sign.
std::int64_t short_integer(std::string_view text) {
  std::int64_t value = 0;
  const char* const begin = text.data() + (!text.empty() && text.front() == '+' ? 1 : 0);
  std::from_chars(begin, text.data() + text.size(), value);
  return value;
}

// The text of an integer against the bounds, lower bound first, whatever its length.
elmx_error check_integer(std::string_view text, const IntegerRange& range) {
  if (text.size() < k_short_integer) {
    const std::int64_t value = short_integer(text);
    if (value < range.minimum) return lmx::elmx_value_too_small;
    if (value > range.maximum) return lmx::elmx_value_too_big;
    return lmx::elmx_ok;
  }
  const std::string digits(text);
  const lmx::c_big_int minimum(std::to_string(range.minimum));
  const lmx::c_big_int maximum(std::to_string(range.maximum));
  if (digits < minimum) return lmx::elmx_value_too_small;
  if (digits > maximum) return lmx::elmx_value_too_big;
  return lmx::elmx_ok;
}

// What a text that is no number begins with, for a handler that lets it pass.
double leading_number(const std::string& text) {
  const char* begin = text.data();
  const char* end = begin + text.size();
  if (begin != end && *begin == '+') ++begin;
  double value = 0;
  std::from_chars(begin, end, value);
  return value;
}

// A value in bounds fits 64 bits; what a handler lets pass wraps.
template <class T>
T integer_value(std::string_view text) {
  return text.size() < k_short_integer
             ? static_cast<T>(short_integer(text))
             : static_cast<T>(lmx::c_big_int(std::string(text)).get(nullptr));
}

// A text that is not ASCII ends, for the comparison too, where its conversion would.
int number_in(const EnumTable& table, const std::string& text) {
  const int number = table.number_of(text);
  return number != 0 ? number : table.number_of_converted(text);
}

template <class T>
bool convert_integer(std::string_view text, T& target, const IntegerRange& range) {
  if (!lmx::internal::is_valid_integer(text) || check_integer(text, range) != lmx::elmx_ok) {
    return false;
  }
  target = integer_value<T>(text);
  return true;
}

template <class T>
bool take_integer(const Site& site, T& target, const IntegerRange& range) {
  const std::string& text = site.reader.value;
  if (convert_integer(text, target, range)) return true;
  if (!lmx::internal::is_valid_integer(text) && !site.pass(lmx::elmx_bad_value_format))
    return false;
  if (const elmx_error error = check_integer(text, range)) {
    if (!site.pass(error)) return false;
  }
  target = integer_value<T>(text);
  return true;
}

}  // namespace

bool Site::pass(elmx_error code) const {
  err = reader.handle_error(code, item, k_model_source, line);
  return err == lmx::elmx_ok;
}

bool convert(std::string_view text, std::wstring& target) {
  target.clear();
  lmx::internal::append_wide(&target, text);
  return true;
}

bool convert(std::string_view text, std::wstring& target, Length length) {
  // Texts beyond ASCII are counted on the long road.
  return text.size() == length.characters && convert(text, target) && target.size() == text.size();
}

bool convert(std::string_view text, std::wstring& target, Collapsed) {
  return text.find("  ") == std::string_view::npos && convert(text, target);
}

bool convert(std::string_view text, double& target, const Range& range) {
  double value = 0;
  if (!lmx::internal::read_double(text, &value) || range.check(value) != lmx::elmx_ok) return false;
  target = value;
  return true;
}

bool convert(std::string_view text, int& target, const IntegerRange& range) {
  return convert_integer(text, target, range);
}
bool convert(std::string_view text, unsigned& target, const IntegerRange& range) {
  return convert_integer(text, target, range);
}
bool convert(std::string_view text, unsigned char& target, const IntegerRange& range) {
  return convert_integer(text, target, range);
}

bool convert(std::string_view text, bool& target) {
  if (!lmx::internal::is_valid_bool(text)) return false;
  target = text == "true" || text == "1";
  return true;
}

// A valid text matches the pattern exactly when it has a zone, so the engine need not run for it.
bool convert(std::string_view text, lmx::c_datetime& target) {
  lmx::c_datetime value;
  bool has_zone = false;
  if (!lmx::internal::parse_datetime(text, &value, &has_zone) || !has_zone) return false;
  target = value;
  return true;
}

bool convert(std::string_view text, lmx::c_binary& target) {
  if (!lmx::internal::is_valid_base64(text)) return false;
  target.from_base64(std::string(text));
  return true;
}

bool convert(std::string_view text, Enumerated& target, const EnumTable& table) {
  const int number = table.number_of(text);
  if (number == 0) return false;
  target.store(table, number);
  return true;
}

bool take(const Site& site, std::wstring& target) { return convert(site.reader.value, target); }

bool take(const Site& site, std::wstring& target, Length length) {
  const std::string& text = site.reader.value;
  if (!lmx::is_max_length_ok(text, length.characters) && !site.pass(lmx::elmx_length_too_long)) {
    return false;
  }
  if (!lmx::is_min_length_ok(text, length.characters) && !site.pass(lmx::elmx_length_too_short)) {
    return false;
  }
  return take(site, target);
}

bool take(const Site& site, double& target, const Range& range) {
  const std::string& text = site.reader.value;
  if (convert(text, target, range)) return true;
  double value = 0;
  if (!lmx::internal::read_double(text, &value)) {
    if (!site.pass(lmx::elmx_bad_value_format)) return false;
    value = leading_number(text);
  }
  if (const elmx_error error = range.check(value)) {
    if (!site.pass(error)) return false;
  }
  target = value;
  return true;
}

bool take(const Site& site, int& target, const IntegerRange& range) {
  return take_integer(site, target, range);
}
bool take(const Site& site, unsigned& target, const IntegerRange& range) {
  return take_integer(site, target, range);
}
bool take(const Site& site, unsigned char& target, const IntegerRange& range) {
  return take_integer(site, target, range);
}

bool take(const Site& site, bool& target) {
  const std::string& text = site.reader.value;
  if (convert(text, target)) return true;
  if (!site.pass(lmx::elmx_bad_value_format)) return false;
  target = false;
  return true;
}

bool take(const Site& site, lmx::c_datetime& target) {
  const std::string& text = site.reader.value;
  if (convert(text, target)) return true;
  if (!lmx::c_datetime::is_valid(text) && !site.pass(lmx::elmx_bad_value_format)) return false;
  if (!k_zoned_pattern.is_match(text) && !site.pass(lmx::elmx_no_pattern_match)) return false;
  target = lmx::c_datetime(text);
  return true;
}

bool take(const Site& site, lmx::c_binary& target) {
  const std::string& text = site.reader.value;
  if (convert(text, target)) return true;
  if (!site.pass(lmx::elmx_bad_value_format)) return false;
  target.from_base64(text);
  return true;
}

bool take(const Site& site, Enumerated& target, const EnumTable& table) {
  const std::string& text = site.reader.value;
  if (const int number = number_in(table, text)) {
    target.store(table, number);
    return true;
  }
  if (!site.pass(lmx::elmx_value_not_enumerated)) return false;
  target.store_foreign(text);
  return true;
}

bool BodyReader::fetch(const Site& at, lmx::elmx_whitespace mode, bool in_list) {
  bool was_empty = false;
  err_ = lmx::elmx_ok;
  if (reader_.get_simple_type_value(name_, mode, &reader_.value, &err_, &was_empty)) return true;
  return at.pass(in_list ? lmx::elmx_bad_element_value : err_);
}

bool BodyReader::read_event(int row) {
  err_ = lmx::elmx_ok;
  std::string item;
  road_.get_due_event(rows_ + row, &err_, &name_, &item);
  return err_ == lmx::elmx_ok || Site{reader_, item, err_, line_ + 1 + row}.pass(err_);
}

bool BodyReader::missing(int row) {
  const std::string item = std::string("Zol:") + rows_[row].name;
  return Site{reader_, item, err_, line_ + 1 + row}.pass(lmx::elmx_mandatory_element_missing);
}

bool BodyReader::missing_group(int next_row) {
  const std::string no_item;
  return Site{reader_, no_item, err_, line_ + 1 + next_row}.pass(
      lmx::elmx_mandatory_element_missing);
}

bool BodyReader::mark(int row) {
  if (!read_due_event(row)) return false;
  if (!is_at(row)) return true;
  if (!reader_.skip_rest_of_empty_element(name_) && !site(row).pass(lmx::elmx_bad_end_of_element)) {
    return false;
  }
  set_due();
  return true;
}

bool BodyReader::foreign(List<AnyElement>& list) {
  if (!read_due_event(0)) return false;
  while (reader_.is_current_event_tokenisable()) {
    AnyElement element;
    element.full_name = name_;
    reader_.get_namespace(name_, &element.namespace_uri);
    if (!reader_.get_any_element(name_, &element.text, lmx::elmx_preserve, false) &&
        !site(0).pass(lmx::elmx_bad_element_value)) {
      return false;
    }
    list.append_in(&reader_.pool(), std::move(element));
    if (!read_event(0)) return false;
  }
  return true;
}

bool AttributeReader::fetch(lmx::elmx_whitespace mode) {
  return site_.reader.get_attribute_value(&site_.reader.value, mode) ||
         site_.pass(lmx::elmx_bad_attribute_value);
}

bool AttributeReader::read_nil(bool& nil) {
  if (!fetch(lmx::elmx_collapse)) return false;
  nil = site_.reader.value == "true" || site_.reader.value == "1";
  return true;
}

elmx_error check_attributes(c_xml_reader& reader, const char* class_name, int line,
                            std::initializer_list<bool> are_set) {
  for (const bool is_set : are_set) {
    if (is_set) continue;
    const elmx_error error = reader.handle_error(lmx::elmx_required_attributes_missing, class_name,
                                                 k_model_source, line);
    if (error != lmx::elmx_ok) return error;
  }
  return lmx::elmx_ok;
}

bool ContentReader::fetch(lmx::elmx_whitespace mode) {
  site_.reader.value.clear();
  return !has_text_ || site_.reader.get_element_value(&site_.reader.value, mode, true) ||
         site_.pass(lmx::elmx_bad_element_value);
}

ChoiceReader::ChoiceReader(c_xml_reader& reader, std::string& name, elmx_error& err,
                           const lmx::s_event_map* rows, int line)
    : site_{reader, name, err, line}, name_(name), rows_(rows), road_(reader) {
  if (!road_.is_due()) {
    // The alternative of an anonymous group: whoever asked for it expects an event behind it too.
    if (reader.is_current_event_tokenisable()) reader.tokenise(rows, lmx::elxp_element);
    event_ = reader.get_current_event();
    return;
  }
  may_leave_unread_ = true;
  is_tag_seen_ = road_.see_tag_of(rows) == lmx::internal::PlainRoad::Sight::plain;
  if (is_tag_seen_) {
    event_ = road_.event();
  } else {
    (void)leave_plain_road();
  }
}

bool ChoiceReader::leave_plain_road() {
  is_tag_seen_ = false;
  if (has_failed_) return false;
  if (!road_.is_due()) return true;
  site_.err = lmx::elmx_ok;
  std::string item;
  road_.get_due_event(rows_, &site_.err, &name_, &item);
  has_failed_ =
      site_.err != lmx::elmx_ok && !Site{site_.reader, item, site_.err, site_.line}.pass(site_.err);
  event_ = has_failed_ ? 0 : site_.reader.get_current_event();
  return !has_failed_;
}

bool ChoiceReader::fetch(lmx::elmx_whitespace mode) {
  bool was_empty = false;
  site_.err = lmx::elmx_ok;
  return site_.reader.get_simple_type_value(name_, mode, &site_.reader.value, &site_.err,
                                            &was_empty) ||
         site_.pass(site_.err);
}

bool ChoiceReader::number(Slot& slot, int& chosen, int selection, const Range& range) {
  double taken = 0;
  if (!value(taken, range)) return false;
  slot.store(taken);
  return chose(chosen, selection);
}

bool ChoiceReader::enumerated(Slot& slot, int& chosen, int selection, const EnumTable& table) {
  Enumerated taken;
  if (!value(taken, table)) return false;
  if (const int number = taken.number(table)) {
    slot.refer(table[number]);
  } else {
    slot.adopt(make_owned_in<std::wstring>(&site_.reader.pool(), taken.get()));
  }
  return chose(chosen, selection);
}

bool ChoiceReader::next() {
  if (may_leave_unread_) {
    road_.set_due_in(rows_);
    return true;
  }
  site_.err = lmx::elmx_ok;
  site_.reader.get_element_event(rows_, &site_.err, &name_);
  return site_.err == lmx::elmx_ok || site_.pass(site_.err);
}

MemberReader::MemberReader(c_xml_reader& reader, std::string& name, elmx_error& err,
                           const lmx::s_event_map* rows, int line)
    : site_{reader, name, err, line}, name_(name), rows_(rows), road_(reader) {
  if (road_.is_handed_over()) {
    may_leave_unread_ = true;
    event_ = road_.event();
  } else {
    reader.tokenise(rows, lmx::elxp_element);
    event_ = reader.get_current_event();
  }
}

// Attributes of the instance namespace are read on the long road alone. The tag was seen to be
// whole, so that reading it is no fault.
bool MemberReader::get_type(int* ns_id) {
  if (road_.accept_tag()) {
    std::string item;
    road_.get_due_event(rows_, &site_.err, &name_, &item);
  }
  return site_.reader.get_xsi_type(ns_id, &site_.reader.value);
}

bool MemberReader::next() {
  if (may_leave_unread_) {
    road_.set_due();
    return true;
  }
  site_.err = lmx::elmx_ok;
  site_.reader.get_element_event(rows_, &site_.err, &name_);
  return site_.err == lmx::elmx_ok || site_.pass(site_.err);
}

bool MemberReader::skip() {
  if (!site_.reader.skip_rest_of_element(name_) && !site_.pass(lmx::elmx_bad_end_of_element)) {
    return false;
  }
  return next();
}

bool is_in_table(c_xml_reader& reader, const lmx::s_event_map* rows) {
  if (!reader.is_current_event_tokenisable()) return false;
  const int before = reader.get_current_event();
  reader.tokenise(rows, lmx::elxp_element);
  if (reader.get_current_event() != lmx::elxp_unknown) return true;
  reader.restore_event(before);
  return false;
}

namespace {

// One element from its start tag on. The name stands on the reader's stack while it is open, since
// the work strings of the reader are overwritten by whatever is read inside.
class ElementStep {
 public:
  ElementStep(void* self, const ReadSteps& steps, c_xml_reader& reader, std::string_view name)
      : self_(self),
        steps_(steps),
        reader_(reader),
        depth_(reader),
        node_(reader.get_element_name_stack(), name) {}

  // From the attributes on.
  elmx_error run() {
    if (!depth_.ok() && !pass(lmx::elmx_not_well_formed)) return err_;
    if (!read_attributes()) return err_;
    const elmx_error error = run_opened();
    lmx::internal::PlainRoad(reader_).settle();
    return error;
  }
  // From the end of the start tag on.
  elmx_error run_opened() {
    if ((err_ = steps_.check_attributes(self_, reader_)) != lmx::elmx_ok) return err_;
    lmx::c_xml_reader_local children(reader_);
    if (steps_.is_nil != nullptr && steps_.is_nil(self_)) {
      return next_event() && check_end() ? lmx::elmx_ok : err_;
    }
    return (steps_.is_simple ? read_content() : read_children()) ? lmx::elmx_ok : err_;
  }

 private:
  bool pass(elmx_error code) {
    err_ = reader_.handle_error(code, node_.get_str(), k_model_source, __LINE__);
    return err_ == lmx::elmx_ok;
  }
  bool is_at_end_tag() const { return reader_.get_current_event() == lmx::elxp_end_tag; }

  bool read_attributes() {
    while (reader_.get_attribute_event(nullptr, &err_, &reader_.attribute_name)) {
      const bool is_broken = err_ != lmx::elmx_ok;
      if (is_broken && !pass(err_)) return false;
      // Past a fault in the tag, or the end of the input, no attribute follows.
      if (is_broken) return true;
      const bool is_claimed = steps_.attributes(self_, reader_, reader_.attribute_name, &err_);
      if (err_ != lmx::elmx_ok) return false;
      if (is_claimed) continue;
      if (!reader_.is_xsi_attribute(reader_.attribute_name)) {
        err_ = reader_.handle_error(lmx::elmx_unexpected_attribute, reader_.name, k_model_source,
                                    __LINE__);
        if (err_ != lmx::elmx_ok) return false;
      }
      reader_.skip_attribute_value();
    }
    return true;
  }

  // Moves to the first content, unless the tag ended in "/>".
  bool next_event() {
    if (is_at_end_tag()) return true;
    err_ = lmx::elmx_ok;
    reader_.get_element_event(nullptr, &err_, &reader_.name);
    return err_ == lmx::elmx_ok || pass(err_);
  }

  bool read_children() {
    lmx::internal::PlainRoad road(reader_);
    if (!is_at_end_tag() && road.set_due_before_start_tag()) {
      return run_body(true) && read_rest(road);
    }
    if (!next_event()) return false;
    if (is_at_end_tag()) {
      if (steps_.wants_content && !pass(lmx::elmx_unexpected_empty_element)) return false;
      return check_end();
    }
    return run_body(true) && read_rest(road);
  }

  // The value is taken where the tag ends; the work string must hold the element's own name for the
  // check of the end, also where the tag was its own end.
  bool read_content() {
    if (!run_body(!is_at_end_tag())) return false;
    if (is_at_end_tag()) return true;
    return next_event() && check_end();
  }

  bool run_body(bool has_text) {
    err_ = lmx::elmx_ok;
    steps_.body(self_, reader_, &reader_.name, &err_, has_text);
    return err_ == lmx::elmx_ok;
  }

  // The end tag, which the last row of the body may have left unread.
  bool read_rest(lmx::internal::PlainRoad& road) {
    if (road.is_due()) {
      if (road.take_end_tag(node_.get_view())) return true;
      std::string item;
      road.get_due_event(&err_, &reader_.name, &item);
      if (err_ != lmx::elmx_ok && !Site{reader_, item, err_, __LINE__}.pass(err_)) return false;
    }
    return check_end();
  }

  bool check_end() {
    if (is_at_end_tag() && node_ == reader_.name) return true;
    return pass(lmx::elmx_bad_end_of_element);
  }

  void* self_;
  const ReadSteps& steps_;
  c_xml_reader& reader_;
  lmx::internal::ElementDepthGuard depth_;
  lmx::c_string_stack_node node_;
  elmx_error err_ = lmx::elmx_ok;
};

}  // namespace

elmx_error read_element(void* self, const ReadSteps& steps, c_xml_reader& reader,
                        const std::string& name) {
  lmx::internal::PlainRoad road(reader);
  if (!road.accept_tag()) return ElementStep(self, steps, reader, name).run();
  PlainReader attributes(road.element(), reader.pool());
  if (steps.plain_attributes(self, attributes)) {
    road.take_tag(attributes.mode());
    return ElementStep(self, steps, reader, road.element().name).run_opened();
  }
  // The tag was seen to be whole, so that reading it is no fault.
  elmx_error error = lmx::elmx_ok;
  std::string item;
  road.get_due_event(&error, &reader.name, &item);
  return ElementStep(self, steps, reader, reader.name).run();
}

elmx_error read_root_tag(c_xml_reader& reader, const char* local_name, int line) {
  elmx_error err = lmx::elmx_ok;
  const Site site{reader, reader.name, err, line};
  reader.get_element_event(nullptr, &err, &reader.name);
  if (err != lmx::elmx_ok && !site.pass(err)) return err;
  if (reader.get_element_ns_id() != k_document_namespace_id ||
      reader.get_local_name() != local_name) {
    (void)site.pass(lmx::elmx_element_not_found);
  }
  return err;
}

elmx_error unmarshal_from_file(DocumentTarget target, const char* file) {
  lmx::c_xml_reader_file reader(file);
  return reader.is_open() ? target.unmarshal(target.self, reader) : lmx::elmx_no_file;
}

elmx_error unmarshal_from_memory(DocumentTarget target, const char* buffer, std::size_t size) {
  lmx::c_xml_reader_memory reader(buffer, size);
  return target.unmarshal(target.self, reader);
}

}  // namespace zol_v2::internal
