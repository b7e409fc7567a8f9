#include "tools/fault_reader.h"

#include <utility>

#include "tools/sibling_reading.h"

using lmx::elmx_error;

namespace {

// Faults of a value, which is taken or dropped as a whole.
bool is_value_fault(elmx_error code) {
  switch (code) {
    case lmx::elmx_fraction_digits:
    case lmx::elmx_length_too_long:
    case lmx::elmx_length_too_short:
    case lmx::elmx_no_pattern_match:
    case lmx::elmx_total_digits:
    case lmx::elmx_bad_value_format:
    case lmx::elmx_value_too_big:
    case lmx::elmx_value_too_small:
    case lmx::elmx_value_not_enumerated:
      return true;
    default:
      return false;
  }
}

// Faults after which the reader stands where it would without them.
bool is_local_fault(elmx_error code) {
  switch (code) {
    case lmx::elmx_attribute_already_read:
    case lmx::elmx_mandatory_element_missing:
    case lmx::elmx_required_attributes_missing:
    case lmx::elmx_bad_attribute_value:
    case lmx::elmx_unknown_element_in_complex_content:
    case lmx::elmx_unexpected_empty_element:
    case lmx::elmx_unexpected_attribute:
      return true;
    default:
      return is_value_fault(code);
  }
}

}  // namespace

elmx_error FaultReader::user_handle_error(elmx_error code, const std::string& item, const char*,
                                          int) {
  // The argument may be one of the reader's own work strings.
  const std::string item_name = item;  // NOLINT(performance-unnecessary-copy-initialization)
  forget_false_gaps(code);
  if (!is_follow_up(code, item_name)) {
    faults_.push_back(make_fault(get_line_no(), code, item_name));
    if (faults_.size() == limit_) {
      is_complete_ = false;
      return code;
    }
  }
  const elmx_error result = is_broken() ? code : go_on(code, item_name);
  if (result != lmx::elmx_ok) is_complete_ = false;
  return result;
}

void FaultReader::finish(elmx_error result) {
  if (result == lmx::elmx_ok) return;
  is_complete_ = false;
  if (faults_.empty() || faults_.back().code != result) {
    faults_.push_back(make_fault(get_line_no(), result, name));
  }
}

FaultReader::Place FaultReader::place() {
  return {get_line_no(), get_element_name_stack().get_stack_size(), name};
}

// After a fatal report the input is at its end, and nothing that is missing then is news.
bool FaultReader::is_broken() const {
  lmx::elmx_error_type type = lmx::elmx_none;
  elmx_error code = lmx::elmx_ok;
  int line = 0;
  if (get_error_info(&type, &code, &line) && type == lmx::elmx_fatal) return true;
  const int event = get_current_event();
  return event == lmx::elxp_end_of_input || is_error_event(event);
}

bool FaultReader::is_follow_up(elmx_error code, const std::string& item) {
  const bool is_of_lost_value = is_value_fault(code) && item == lost_value_;
  lost_value_.clear();
  if (is_of_lost_value) return true;

  const bool is_about_stray = code == lmx::elmx_mandatory_element_missing ||
                              code == lmx::elmx_unknown_element_in_complex_content ||
                              code == lmx::elmx_bad_end_of_element;
  const int event = get_current_event();
  if (!is_about_stray || (event != lmx::elxp_unknown && event != lmx::elxp_text)) return false;
  const Place here = place();
  if (here == stray_) return true;
  stray_ = here;
  return false;
}

// An element that seems to end has not, after all, if the end tag turns out to be another's. Of
// what it seemed to lack the first stays, which is what the library alone would have found.
void FaultReader::forget_false_gaps(elmx_error code) {
  if (get_current_event() != lmx::elxp_end_tag) return;
  const Place here = place();
  if (!(here == end_tag_)) gaps_ = 0;
  end_tag_ = here;
  if (code == lmx::elmx_mandatory_element_missing) {
    ++gaps_;
  } else if (code == lmx::elmx_bad_end_of_element) {
    for (; gaps_ > 1; --gaps_) faults_.pop_back();
  }
}

elmx_error FaultReader::go_on(elmx_error code, const std::string& item) {
  if (is_local_fault(code)) return lmx::elmx_ok;
  if (code != lmx::elmx_bad_end_of_element && code != lmx::elmx_bad_element_value) return code;
  // A row's own event stays at hand while its value is read.
  const bool is_in_value =
      get_current_event() > lmx::elxp_xsi_no_namespace_schema_location && name == item;
  const elmx_error result = !is_in_value       ? pass_siblings(code, item)
                            : pass_value(item) ? lmx::elmx_ok
                                               : code;
  if (is_in_value || code == lmx::elmx_bad_element_value) lost_value_ = item;
  return result;
}

// Moves behind the end tag of a value. False if that does not come in good order.
bool FaultReader::pass_value(const std::string& element) {
  // The search for the end tag takes the start tag of an element inside, which is then known by its
  // end tag alone.
  bool may_be_inner = true;
  while (true) {
    elmx_error error = lmx::elmx_ok;
    get_element_event(nullptr, &error, &name);
    if (error != lmx::elmx_ok) return false;
    switch (get_current_event()) {
      case lmx::elxp_text:
        break;
      case lmx::elxp_end_tag:
        if (name == element) return true;
        if (!std::exchange(may_be_inner, false)) return false;
        break;
      default:
        if (!skip_rest_of_element(name)) return false;
    }
  }
}

// Moves behind the end tag of an element that has no use for the element or text at hand, and looks
// into that and what follows. Gives `code` if the end tag does not come in good order.
elmx_error FaultReader::pass_siblings(elmx_error code, const std::string& parent) {
  elmx_error error = lmx::elmx_ok;
  bool has_event = get_current_event() != lmx::elxp_start_tag_end;
  while (true) {
    if (!has_event) get_element_event(nullptr, &error, &name);
    if (error != lmx::elmx_ok) return code;
    has_event = false;
    switch (get_current_event()) {
      case lmx::elxp_text:
        break;
      case lmx::elxp_end_tag:
        return name == parent ? lmx::elmx_ok : code;
      default:
        switch (read_sibling(*this, parent, &error)) {
          case SiblingState::unknown:
            if (!skip_rest_of_element(name)) return code;
            break;
          case SiblingState::read:
            break;
          case SiblingState::passed:
            has_event = true;
        }
        if (error != lmx::elmx_ok) return error;
    }
  }
}
