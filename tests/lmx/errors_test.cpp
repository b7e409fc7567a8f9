#include "lmx/errors.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "lmx/input.h"

namespace lmx {
namespace {

// Keeps what reaches report_error, as one line a report.
class RecordingError : public c_error {
 public:
  void report_error(elmx_error_type type, elmx_error code, const char* source_id, int line,
                    const char* text) override {
    reports.push_back(std::to_string(type) + " " + std::to_string(code) + " " +
                      (source_id == nullptr ? "(none)" : source_id) + " " + std::to_string(line) +
                      " " + text);
  }

  std::vector<std::string> reports;
};

class NamedSource : public c_read_memory {
 public:
  NamedSource(const char* name, const char* text)
      : c_read_memory(text, std::strlen(text)), name_(name) {}
  const char* get_source_id() override { return name_; }

 private:
  const char* name_;
};

TEST(ErrorTextTest, DescribesEveryCodeAndNothingElse) {
  for (int code = -1; code <= 1010; ++code) {
    const bool is_code = (code >= 0 && code <= 46) || (code >= 1000 && code <= 1008);
    const char* const text = get_error_description(static_cast<elmx_error>(code));
    ASSERT_NE(text, nullptr) << code;
    EXPECT_EQ(*text != '\0', is_code) << code;
  }
  const struct {
    int code;
    const char* text;
  } rows[] = {
      {0, "No Error"},
      {15, "Mis-match between specified char encoding and read bytes"},
      {26, "Element instances exceeds maxOccurs"},
      {34, "Unexpected end of message"},
      {35, "Invalid value format for this type"},
      {46, "min/max occurs error on marshaling"},
      {1000, "User defined error 1"},
      {1008, "User defined error 9"},
  };
  for (const auto& row : rows) {
    EXPECT_STREQ(get_error_description(static_cast<elmx_error>(row.code)), row.text);
  }
}

TEST(ErrorTallyTest, StartsClean) {
  const c_error error;
  EXPECT_FALSE(error.is_errored());
  EXPECT_EQ(error.get_last_error(), elmx_ok);
  EXPECT_EQ(error.get_last_error_type(), elmx_none);

  elmx_error_type type = elmx_warning;
  elmx_error code = elmx_no_file;
  int line = 7;
  EXPECT_FALSE(error.get_error_info(&type, &code, &line));
  EXPECT_EQ(type, elmx_warning);
  EXPECT_EQ(code, elmx_no_file);
  EXPECT_EQ(line, 7);
}

TEST(ErrorTallyTest, CountsBySeverity) {
  const struct {
    elmx_error_type type;
    bool is_errored;
    bool is_fatal;
  } rows[] = {
      {elmx_fatal, true, true},     {elmx_error_level, true, false},
      {elmx_warning, false, false}, {elmx_information, false, false},
      {elmx_none, false, false},
  };
  for (const auto& row : rows) {
    c_error error;
    error.error(row.type, elmx_bad_comment, "doc", 3, "text");
    EXPECT_EQ(error.is_errored(), row.is_errored) << row.type;
    EXPECT_EQ(error.is_fatal_errored(), row.is_fatal) << row.type;
    EXPECT_EQ(error.get_last_error_type(), row.type);
  }
}

TEST(ErrorTallyTest, TheLastReportStandsUntilAFatalOneFreezesIt) {
  RecordingError error;
  error.error(elmx_error_level, elmx_not_well_formed, "doc", 1, "first");
  error.error(elmx_error_level, elmx_bad_end_tag, "doc", 2, "second");
  EXPECT_EQ(error.get_last_error(), elmx_bad_end_tag);
  error.error(elmx_fatal, elmx_bad_char_encoding, "doc", 3, "third");
  error.error(elmx_error_level, elmx_not_well_formed, "doc", 4, "fourth");
  error.error(elmx_fatal, elmx_bad_dtd, "doc", 5, "fifth");

  elmx_error_type type;
  elmx_error code;
  int line;
  ASSERT_TRUE(error.get_error_info(&type, &code, &line));
  EXPECT_EQ(type, elmx_fatal);
  EXPECT_EQ(code, elmx_bad_char_encoding);
  EXPECT_EQ(line, 3);
  EXPECT_EQ(error.reports,
            (std::vector<std::string>{"1 23 doc 1 first", "1 12 doc 2 second", "0 6 doc 3 third"}));
}

TEST(ErrorTallyTest, TheShortFormNamesTheBoundSource) {
  RecordingError error;
  error.error(elmx_warning, elmx_bad_comment, "before");
  {
    NamedSource outer_source("outer.zol", "\n\n");
    c_get_as_utf8 outer(outer_source, error);
    while (outer.get() != -1) continue;
    {
      NamedSource inner_source("inner.zol", "a");
      const c_get_as_utf8 inner(inner_source, error);
      error.error(elmx_warning, elmx_bad_comment, "inside");
    }
    error.error(elmx_warning, elmx_bad_comment, "outside");
  }
  error.error(elmx_warning, elmx_bad_comment, "after");
  EXPECT_EQ(error.reports,
            (std::vector<std::string>{"2 8 (none) -1 before", "2 8 inner.zol 1 inside",
                                      "2 8 outer.zol 3 outside", "2 8 (none) -1 after"}));
}

TEST(ErrorTallyTest, ABinderBindsOnce) {
  c_error error;
  c_read_memory source("a", 1);
  c_get_as_utf8 first(source, error);
  c_get_as_utf8 second(source, error);
  c_getter_error_binder binder(error);
  binder.bind(&first);
  binder.bind(&second);
  EXPECT_EQ(binder.get_new_getter(), &first);
  EXPECT_EQ(binder.get_old_getter(), &second);
}

TEST(ErrorExceptionTest, CarriesCodeTextAndLine) {
  const c_lmx_reader_exception exception(elmx_unexpected_end, 12);
  c_lmx_reader_exception copy(elmx_ok, 0);
  copy = exception;
  const std::exception& base = copy;
  EXPECT_STREQ(base.what(), "Unexpected end of message");
  EXPECT_EQ(copy.get_error(), elmx_unexpected_end);
  EXPECT_EQ(copy.get_line(), 12);
}

}  // namespace
}  // namespace lmx
