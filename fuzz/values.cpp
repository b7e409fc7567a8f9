// Texts as values of every simple type. A line is a choice of the law and two texts, divided by a
// vertical bar: whatever a type takes must come back from its own text, be set from it, and keep
// its order.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/input.h"
#include "lmx/lmxtypes.h"
#include "model/Zol.h"
#include "model/reflection.h"

namespace {

using namespace lmx;
using zol_v2::reflection::Row;
using zol_v2::reflection::Type;

void expect(bool is_so, const char* law, const std::string& text) {
  if (is_so) return;
  std::fprintf(stderr, "%s: '%s'\n", law, text.c_str());
  std::abort();
}

template <class T>
std::string shown(const T& value) {
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

template <class T>
void keep_order(const T& a, const T& b, const std::string& text) {
  expect((a == b) + (a < b) + (a > b) == 1, "one of three", text);
  expect((a <= b) == (a < b || a == b) && (a >= b) == (a > b || a == b), "with equality", text);
  expect((a == b) == (b == a) && (a != b) == !(a == b), "the other way round", text);
  expect(a == a && a <= a && !(a < a), "the same", text);
}

template <class T>
void keep_date(const std::string& a, const std::string& b) {
  const T value(a);
  const std::string text = value.get_as_string();
  expect(shown(value) == text, "written as a stream has it", a);
  T set;
  set = a;
  expect(set.get_as_string() == text, "set as made", a);
  if (!T::is_valid(a)) return;
  // A year before the first has a form of its own, such as 0-29, which nothing reads; one beyond 32
  // bits may wrap around to such a one.
  const std::size_t sign = text.find_first_not_of('0');
  const bool is_before_first = sign < 4 && text[sign] == '-' && text[sign + 1] != '-';
  expect(is_before_first || T(text).get_as_string() == text, "back from its text", a);
  if (T::is_valid(b)) keep_order(value, T(b), a + '|' + b);
}

void keep_duration(const std::string& a, const std::string& b) {
  c_duration value(a);
  const std::string text = value.get_as_string();
  expect(shown(value) == text, "written as a stream has it", a);
  if (!c_duration::is_valid(a)) return;
  // Seconds of seven digits are written with an exponent, and those beyond a float as "inf":
  // nothing reads either.
  const bool is_lost = text.find_first_of("ei") != std::string::npos;
  expect(is_lost || c_duration(text).get_as_string() == text, "back from its text", a);
  if (c_duration::is_valid(b)) keep_order(value, c_duration(b), a + '|' + b);
  value.normalize();
  const std::string normal = value.get_as_string();
  value.normalize();
  expect(value.get_as_string() == normal, "normal once for all", a);
}

// They are summed up digit by digit, and each step rounds.
bool is_near(double value, const std::string& text) {
  constexpr double k_tolerance = 1e-12;
  const double wanted = std::strtod(text.c_str(), nullptr);
  return value == wanted || std::fabs(value - wanted) <= k_tolerance * std::fabs(wanted);
}

void keep_integer(const std::string& a, const std::string& b) {
  if (!is_valid_integer(a)) return;
  const c_big_int value(a);
  const std::string text = value.get_as_string();
  expect(c_big_int(text) == value && c_big_int(text).get_as_string() == text && value == a,
         "back from its text", a);
  expect(shown(value) == text, "written as a stream has it", a);
  bool is_too_large = false;
  const long number = value.get(&is_too_large);
  if (!is_too_large) expect(c_big_int(number).get_as_string() == text, "the number it is", a);
  expect(is_near(value.get_as_float(), text), "near its number", a);
  if (!is_valid_integer(b)) return;
  const c_big_int other(b);
  keep_order(value, other, a + '|' + b);
  expect((value > other) == (value > b) && (value == other) == (value == b), "against a text",
         a + '|' + b);
}

void keep_decimal(const std::string& a, const std::string& b) {
  if (!c_decimal::is_valid(a)) return;
  c_decimal value(a);
  const std::string text = value.get_as_string();
  expect(c_decimal(text) == value && c_decimal(text).get_as_string() == text, "back from its text",
         a);
  expect(shown(value) == text, "written as a stream has it", a);
  expect(is_near(value.get_as_float(), text), "near its number", a);
  expect(total_digits(a) >= 0 && fraction_digits(a) >= 0, "a count of digits", a);
  if (c_decimal::is_valid(b)) {
    c_decimal other(b);
    expect((value == other) == (other == value), "the other way round", a + '|' + b);
    value.swap(other);
    expect(other.get_as_string() == text, "swapped", a);
  }
}

void keep_bytes(const std::string& a) {
  c_binary bytes;
  std::ostringstream hex;
  std::ostringstream base64;
  bytes.from_hex(a);
  bytes.out_hex(hex);
  if (c_binary::is_valid_hex(a)) {
    expect(bytes.size() == a.size() / 2, "half as many bytes", a);
    c_binary again;
    again.from_hex(hex.str());
    expect(again == bytes, "back from its text", a);
  }
  bytes.from_base64(a);
  bytes.out_base64(base64);
  expect(c_binary::is_valid_base64(base64.str()), "valid as written", a);
  c_binary again;
  again.from_base64(base64.str());
  expect(again == bytes, "back from its text", a);
}

void keep_text(const std::string& a) {
  const std::wstring wide = convert_to_wide(a);
  const std::string narrow = convert_to_narrow(wide);
  expect(convert_to_wide(narrow) == wide.substr(0, convert_to_wide(narrow).size()), "wide again",
         a);
  const unsigned size = length(a);
  expect(size <= a.size(), "no more characters than bytes", a);
  const bool is_plain = narrow == a;
  expect(!is_plain || a.empty() || (is_max_length_ok(a, size) && is_min_length_ok(a, size)),
         "as long as it is", a);
  std::string token;
  c_xml_list_tokeniser tokens(a);
  for (std::size_t count = 0; tokens.get(&token); ++count) {
    expect(!token.empty() && count < a.size(), "tokens", a);
  }
  (void)is_valid_bool(a);
  (void)is_valid_float(a);
  (void)stringncompare(a.c_str(), "b", 0, 3);
}

// The rows that hold a value, of all classes.
struct ValueRow {
  Type type;
  Row row;
};

const std::vector<ValueRow>& value_rows() {
  static const std::vector<ValueRow> rows = [] {
    std::vector<ValueRow> found;
    for (const Type type : zol_v2::reflection::all_types()) {
      for (const Row row : type.rows()) {
        if (row.is_simple()) found.push_back({type, row});
      }
    }
    return found;
  }();
  return rows;
}

// What a number of 14 digits may do at a bound, and a date whose zone is zero.
bool is_lost_in_writing(elmx_error code) {
  return code == elmx_value_too_big || code == elmx_value_too_small ||
         code == elmx_no_pattern_match || code == elmx_bad_value_format;
}

// Set from its text and shown again, as a document and its reader do it.
void keep_row(const ValueRow& of, const std::string& text) {
  const auto object = of.type.make();
  const zol_v2::reflection::Ref ref(*object);
  if (ref.set_text(of.row, text) != elmx_ok) {
    expect(!ref.child(of.row) || of.row.is_required(), "nothing of a refused text", text);
    return;
  }
  const zol_v2::reflection::ConstRef held(*object);
  expect(held.count(of.row) == 1, "there", text);
  std::string shown;
  held.value(of.row).append_text(&shown);
  const auto other = of.type.make();
  const zol_v2::reflection::Ref again(*other);
  const elmx_error code = again.set_text(of.row, shown);
  if (code != elmx_ok && is_lost_in_writing(code)) return;
  expect(code == elmx_ok, "takes its own text", text);
  std::string twice;
  zol_v2::reflection::ConstRef(*other).value(of.row).append_text(&twice);
  expect(twice == shown, "the same text again", text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zol_fuzz::Input input(data, size);
  while (!input.is_empty()) {
    const unsigned law = input.byte();
    const std::size_t row = input.below(value_rows().size());
    const std::string line = input.line();
    const std::size_t bar = line.find('|');
    const std::string a = line.substr(0, bar);
    const std::string b = bar == std::string::npos ? std::string() : line.substr(bar + 1);
    switch (law % 14) {
      case 0:
        keep_date<c_datetime>(a, b);
        break;
      case 1:
        keep_date<c_time>(a, b);
        break;
      case 2:
        keep_date<c_date>(a, b);
        break;
      case 3:
        keep_date<c_gyearmonth>(a, b);
        break;
      case 4:
        keep_date<c_gyear>(a, b);
        break;
      case 5:
        keep_date<c_gmonthday>(a, b);
        break;
      case 6:
        keep_date<c_gday>(a, b);
        break;
      case 7:
        keep_date<c_gmonth>(a, b);
        break;
      case 8:
        keep_duration(a, b);
        break;
      case 9:
        keep_integer(a, b);
        break;
      case 10:
        keep_decimal(a, b);
        break;
      case 11:
        keep_bytes(a);
        break;
      case 12:
        keep_text(a);
        break;
      default:
        keep_row(value_rows()[row], a);
    }
  }
  return 0;
}
