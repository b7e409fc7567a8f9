#include "lmx/errors.h"

namespace lmx {
namespace {

struct ErrorText {
  elmx_error code;
  const char* text;
};

constexpr ErrorText k_error_texts[] = {
    {elmx_ok, "No Error"},
    {elmx_no_file, "Unable to open file"},
    {elmx_all_cardinality, "Violation of xs:all cardinality constraints"},
    {elmx_attribute_already_read, "Attribute has already been read"},
    {elmx_attributes_in_anonymous_compositor, "Attributes found in anonymous compositor"},
    {elmx_badly_formed, "XML badly formed"},
    {elmx_bad_char_encoding, "XML character encoding not supported"},
    {elmx_bad_choice, "Inappropriate choice option selected"},
    {elmx_bad_comment, "Badly formed comment"},
    {elmx_bad_dtd, "Badly formed DTD"},
    {elmx_bad_end_of_element, "Bad end of element"},
    {elmx_bad_start_tag_end, "Bad start tag end"},
    {elmx_bad_end_tag, "Syntax error in end tag"},
    {elmx_bad_xml_decl, "Bad XML Decl spec"},
    {elmx_bad_xml_version, "Unsupported XML version"},
    {elmx_encoding_mismatch, "Mis-match between specified char encoding and read bytes"},
    {elmx_element_not_found, "Element not found"},
    {elmx_external_entity, "Reference to external entity"},
    {elmx_fraction_digits, "Fraction digits exceeded"},
    {elmx_length_too_long, "Length too long"},
    {elmx_length_too_short, "Length too short"},
    {elmx_mandatory_element_missing, "Mandatory element missing"},
    {elmx_no_pattern_match, "No pattern matched"},
    {elmx_not_well_formed, "Not well formed"},
    {elmx_recursive_entity, "Recursive entity definition"},
    {elmx_required_attributes_missing, "Required attribute(s) missing"},
    {elmx_too_many_elements, "Element instances exceeds maxOccurs"},
    {elmx_total_digits, "Total digits exceeded"},
    {elmx_bad_attribute_value, "Unable to read attribute value"},
    {elmx_bad_element_value, "Unable to read element value"},
    {elmx_unknown_element_in_all, "Unknown element in xs:all"},
    {elmx_unknown_element_in_complex_content, "Unknown element in complexContent"},
    {elmx_unexpected_empty_element, "Unexpected empty element"},
    {elmx_unexpected_entity, "Unexpected entity"},
    {elmx_unexpected_end, "Unexpected end of message"},
    {elmx_bad_value_format, "Invalid value format for this type"},
    {elmx_value_too_big, "Value greater than specified maximum"},
    {elmx_value_too_small, "Value less than specified minimum"},
    {elmx_value_not_enumerated, "Value does not match enumerations"},
    {elmx_unexpected_attribute, "Unexpected attribute"},
    {elmx_nil_body_not_empty, "Nilled element body not empty"},
    {elmx_entity_not_found, "Entity not found"},
    {elmx_undefined, "Undefined error"},
    {elmx_fixed_mismatch, "Value does not match specified fixed constraint"},
    {elmx_unknown_xsi_type, "Unknown xsi:type"},
    {elmx_type_not_set, "Type not set"},
    {elmx_occurs_on_marshal, "min/max occurs error on marshaling"},
    {elmx_user_defined_1, "User defined error 1"},
    {elmx_user_defined_2, "User defined error 2"},
    {elmx_user_defined_3, "User defined error 3"},
    {elmx_user_defined_4, "User defined error 4"},
    {elmx_user_defined_5, "User defined error 5"},
    {elmx_user_defined_6, "User defined error 6"},
    {elmx_user_defined_7, "User defined error 7"},
    {elmx_user_defined_8, "User defined error 8"},
    {elmx_user_defined_9, "User defined error 9"},
};

}  // namespace

const char* get_error_description(elmx_error code) {
  for (const ErrorText& row : k_error_texts) {
    if (row.code == code) return row.text;
  }
  return "";
}

c_error::~c_error() = default;

void c_error::report_error(elmx_error_type, elmx_error, const char*, int, const char*) {}

void c_error::error(elmx_error_type type, elmx_error code, const char* source_id, int line,
                    const char* text) {
  if (is_fatal_errored()) return;

  last_line_ = line;
  last_error_ = code;
  last_type_ = type;
  switch (type) {
    case elmx_fatal:
      ++fatal_count_;
      ++error_count_;
      break;
    case elmx_error_level:
      ++error_count_;
      break;
    case elmx_warning:
      ++warning_count_;
      break;
    case elmx_information:
      ++warning_count_;
      ++information_count_;
      break;
    case elmx_none:
      break;
  }
  report_error(type, code, source_id, line, text);
}

bool c_error::get_error_info(elmx_error_type* type, elmx_error* code, int* line) const {
  if (last_error_ == elmx_ok) return false;
  *type = last_type_;
  *code = last_error_;
  *line = last_line_;
  return true;
}

c_get_as_utf8* c_error::register_getter(c_getter_error_binder* binder) {
  c_get_as_utf8* const displaced = current_getter_;
  current_getter_ = binder->get_new_getter();
  return displaced;
}

void c_error::unregister_getter(c_getter_error_binder* binder) {
  current_getter_ = binder->get_old_getter();
}

c_getter_error_binder::~c_getter_error_binder() {
  if (is_bound_) error_->unregister_getter(this);
}

void c_getter_error_binder::bind(c_get_as_utf8* getter) {
  if (is_bound_) return;
  new_getter_ = getter;
  old_getter_ = error_->register_getter(this);
  is_bound_ = true;
}

c_lmx_exception::~c_lmx_exception() = default;

const char* c_lmx_exception::what() const noexcept { return get_error_description(error_); }

c_lmx_reader_exception::~c_lmx_reader_exception() = default;

}  // namespace lmx
