// The vocabulary of failure: error codes with their texts, severities, and the tally of one parse.
//
// Errors travel as values. Nothing in the runtime throws the two exception classes below; they
// stand ready for an application whose error handler wants to leave a parse by throwing.
#pragma once

#include <cstdint>
#include <exception>

#include "port/export.h"

namespace lmx {

class c_get_as_utf8;
class c_getter_error_binder;

// What went wrong, as one number; 0 is no error. docs/errors.md says of each what to do about it.
enum elmx_error : std::int32_t {
  elmx_ok = 0,
  elmx_no_file = 1,
  elmx_all_cardinality = 2,
  elmx_attribute_already_read = 3,
  elmx_attributes_in_anonymous_compositor = 4,
  elmx_badly_formed = 5,
  elmx_bad_char_encoding = 6,
  elmx_bad_choice = 7,
  elmx_bad_comment = 8,
  elmx_bad_dtd = 9,
  elmx_bad_end_of_element = 10,
  elmx_bad_start_tag_end = 11,
  elmx_bad_end_tag = 12,
  elmx_bad_xml_decl = 13,
  elmx_bad_xml_version = 14,
  elmx_encoding_mismatch = 15,
  elmx_element_not_found = 16,
  elmx_external_entity = 17,
  elmx_fraction_digits = 18,
  elmx_length_too_long = 19,
  elmx_length_too_short = 20,
  elmx_mandatory_element_missing = 21,
  elmx_no_pattern_match = 22,
  elmx_not_well_formed = 23,
  elmx_recursive_entity = 24,
  elmx_required_attributes_missing = 25,
  elmx_too_many_elements = 26,
  elmx_total_digits = 27,
  elmx_bad_attribute_value = 28,
  elmx_bad_element_value = 29,
  elmx_unknown_element_in_all = 30,
  elmx_unknown_element_in_complex_content = 31,
  elmx_unexpected_empty_element = 32,
  elmx_unexpected_entity = 33,
  elmx_unexpected_end = 34,
  elmx_bad_value_format = 35,
  elmx_value_too_big = 36,
  elmx_value_too_small = 37,
  elmx_value_not_enumerated = 38,
  elmx_unexpected_attribute = 39,
  elmx_nil_body_not_empty = 40,
  elmx_entity_not_found = 41,
  elmx_undefined = 42,
  elmx_fixed_mismatch = 43,
  elmx_unknown_xsi_type = 44,
  elmx_type_not_set = 45,
  elmx_occurs_on_marshal = 46,

  // Reserved for the application.
  elmx_user_defined_1 = 1000,
  elmx_user_defined_2 = 1001,
  elmx_user_defined_3 = 1002,
  elmx_user_defined_4 = 1003,
  elmx_user_defined_5 = 1004,
  elmx_user_defined_6 = 1005,
  elmx_user_defined_7 = 1006,
  elmx_user_defined_8 = 1007,
  elmx_user_defined_9 = 1008
};

// The severity of one report.
enum elmx_error_type : std::int32_t {
  elmx_fatal = 0,
  elmx_error_level = 1,
  elmx_warning = 2,
  elmx_information = 3,
  elmx_none = 4  // held before any report
};

// The English text of a code; "" for a value that is no code. Never null, lives for ever.
ZOL_API const char* get_error_description(elmx_error code);

// Keeps the tally of one parse: the last report and the count of each severity.
//
// The first fatal report freezes the record: later reports are neither stored nor forwarded, so
// get_last_error() then stays the fatal one. Other reports overwrite one another.
class ZOL_API c_error {
 public:
  c_error() = default;
  // Takes over the tally and the bound getter, which must outlive the copy's use of it.
  c_error(const c_error&) = default;
  c_error& operator=(const c_error&) = default;

  // Sees each report with its text, which is stored nowhere. `source_id` may be null and `line` -1.
  virtual void report_error(elmx_error_type type, elmx_error code, const char* source_id, int line,
                            const char* text);
  virtual ~c_error();

  // Takes a report: counts it, keeps it, and hands it to report_error. `source_id` and `text` are
  // borrowed for the call.
  void error(elmx_error_type type, elmx_error code, const char* source_id, int line,
             const char* text);
  // Takes source id and line from the bound getter; null and -1 if none is bound.
  void error(elmx_error_type type, elmx_error code, const char* text);

  // Was anything reported that is worse than a warning?
  bool is_errored() const { return fatal_count_ + error_count_ != 0; }
  // Has a fatal report ended the input?
  bool is_fatal_errored() const { return fatal_count_ != 0; }
  // The code and the severity of the last report: 0 and elmx_none before any.
  elmx_error get_last_error() const { return last_error_; }
  // See get_last_error.
  elmx_error_type get_last_error_type() const { return last_type_; }
  // False, with the arguments untouched, if nothing was reported.
  bool get_error_info(elmx_error_type* type, elmx_error* code, int* line) const;

  // Makes the binder's getter the current one and gives the getter that it displaces.
  c_get_as_utf8* register_getter(c_getter_error_binder* binder);
  // Puts the displaced getter back.
  void unregister_getter(c_getter_error_binder* binder);

 private:
  c_get_as_utf8* current_getter_ = nullptr;
  int fatal_count_ = 0;
  int error_count_ = 0;
  int warning_count_ = 0;
  int information_count_ = 0;
  elmx_error_type last_type_ = elmx_none;
  elmx_error last_error_ = elmx_ok;
  int last_line_ = -1;
};

// Ties a c_error to a getter for as long as the binder lives. Borrows both.
class ZOL_API c_getter_error_binder {
 public:
  // The tally outlives the binder.
  explicit c_getter_error_binder(c_error& error) : error_(&error) {}
  c_getter_error_binder(const c_getter_error_binder&) = delete;
  c_getter_error_binder& operator=(const c_getter_error_binder&) = delete;
  ~c_getter_error_binder();

  // Only the first call binds.
  void bind(c_get_as_utf8* getter);

  // The bound getter, and the one that it displaced; null if there is none.
  c_get_as_utf8* get_new_getter() const { return new_getter_; }
  // See get_new_getter.
  c_get_as_utf8* get_old_getter() const { return old_getter_; }

 private:
  bool is_bound_ = false;
  c_error* error_;
  c_get_as_utf8* new_getter_ = nullptr;
  c_get_as_utf8* old_getter_ = nullptr;
};

// A code as an exception, for a handler that wants to leave by throwing.
class ZOL_API c_lmx_exception : public std::exception {
 public:
  // Of this code.
  explicit c_lmx_exception(elmx_error code) : error_(code) {}
  c_lmx_exception(const c_lmx_exception&) = default;
  c_lmx_exception& operator=(const c_lmx_exception&) = default;
  ~c_lmx_exception() override;

  // The text of the code.
  const char* what() const noexcept override;
  // The code.
  elmx_error get_error() const { return error_; }

 private:
  elmx_error error_;
};

// The same, with the line of the document.
class ZOL_API c_lmx_reader_exception : public c_lmx_exception {
 public:
  // Lines are counted from 1.
  c_lmx_reader_exception(elmx_error code, int line) : c_lmx_exception(code), line_(line) {}
  c_lmx_reader_exception(const c_lmx_reader_exception&) = default;
  c_lmx_reader_exception& operator=(const c_lmx_reader_exception&) = default;
  ~c_lmx_reader_exception() override;

  // The line, from 1.
  int get_line() const { return line_; }

 private:
  int line_;
};

}  // namespace lmx
