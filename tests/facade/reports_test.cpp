// Whatever is done to a document, its report begins with what a reader says of it, and everything
// in it is in the document.
#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "facade/files.h"
#include "model/documents.h"
#include "model/small_documents.h"

namespace zol_test {
namespace {

using namespace zol_v2;
using std::string_literals::operator""s;

constexpr std::size_t k_stride = ZOL_TEST_PATIENCE == 1 ? 6'007 : 60'001;

const std::string k_tokens[] = {
    " ",
    "\n",
    "\r\n",
    "x",
    "5",
    ":",
    "<",
    ">",
    "/",
    "/>",
    "</",
    "&",
    "&#65;",
    "&#0;",
    "&nope;",
    "]]>",
    "<!-- c -->",
    "<?xml?>",
    "<!DOCTYPE x [<!ENTITY nope 'y'>]>",
    "<![CDATA[y]]>",
    "\"",
    "'",
    "=",
    "\0"s,
    "\xEF\xBB\xBF",
    "\xC2\x85",
    "\x80",
    "\xED\xA0\x80",
    " xsi:nil='true'",
    " xsi:type='Zol:X'",
    " a='b'",
    "<Zol:X/>",
    "<x xmlns='urn:x'>y</x>",
    "</Zol:Color>",
    "</Zol:Zol>",
};

// Counted in the simplest way, in UTF-8.
std::string line_and_column(std::string_view text, std::size_t offset) {
  std::size_t line = 1;
  std::size_t column = 1;
  for (std::size_t i = text.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0; i < offset; ++i) {
    const bool is_end = text[i] == '\n' || (text[i] == '\r' && text.substr(i + 1, 1) != "\n") ||
                        text.substr(i - (i > 0), 2) == "\xC2\x85" ||
                        (i > 1 && text.substr(i - 2, 3) == "\xE2\x80\xA8");
    if (is_end) {
      ++line;
      column = 1;
    } else if (text[i] != '\r' && (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) {
      ++column;
    }
  }
  return std::to_string(line) + ":" + std::to_string(column);
}

// What is wrong with the report of a document; empty if nothing is.
std::string complaint(const std::string& text) {
  Zol document;
  LoadReport report;
  LoadOptions options;
  options.best_effort = true;
  const lmx::elmx_error code = openText(document, text, &report, options);
  // What is good is an object like any other.
  std::string written;
  static_cast<void>(document.marshal(&written));
  if (code == lmx::elmx_ok) return report.faults.empty() ? "" : "a fault in a good document";
  if (report.faults.empty()) return "no fault";
  if (report.faults.size() != report.fault_count) return "not all faults";
  const bool is_latin = text.find("ISO-8859-1") != std::string::npos;
  const Fault& first = report.faults.front();
  if (first.code != code || first.item != report.item) {
    return "begins with " + std::to_string(first.code) + " of '" + first.item + "', and not with " +
           std::to_string(code) + " of '" + report.item + "'";
  }
  for (const Fault& fault : report.faults) {
    const std::string sentence = fault.text();
    if (sentence.empty() || sentence.find('{') != std::string::npos) return "says " + sentence;
    if (!fault.place) return "no place: " + sentence;
    if (fault.place.offset + fault.length > text.size()) return "too long: " + sentence;
    for (const SourcePlace& place : {fault.place, fault.first}) {
      if (!place || is_latin) continue;
      const std::string told = std::to_string(place.line) + ":" + std::to_string(place.column);
      const std::string counted = line_and_column(text, place.offset);
      if (told != counted) return told + " and not " + counted + ": " + sentence;
    }
  }
  return "";
}

TEST(Reports, BeginAsReadersEnd) {
  SmallDocuments small([](const std::string& text) { return Zol().unmarshal(text) == 0; });
  std::size_t count = 0;
  std::size_t looked_at = 0;
  const auto look_at = [&](const std::string& text) {
    ++looked_at;
    const std::string found = complaint(text);
    ASSERT_EQ(found, "") << text;
  };
  for (const std::string& name : sample_names()) {
    for (const std::string& text : small.of(sample_bytes(name))) {
      for (std::size_t at = 0; at <= text.size() && !HasFatalFailure(); ++at) {
        for (const std::string& token : k_tokens) {
          if (++count % k_stride == 0) look_at(std::string(text).insert(at, token));
        }
        if (at % (k_stride / 100) == 0) {
          look_at(text.substr(0, at));
          look_at(std::string(text).erase(at, 1));
        }
      }
    }
  }
  EXPECT_GT(looked_at, 500u);
}

}  // namespace
}  // namespace zol_test
