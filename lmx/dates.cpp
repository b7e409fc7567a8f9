#include "lmx/dates.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <ostream>
#include <string_view>
#include <type_traits>

#include "lmx/internal/lexical.h"
#include "lmx/internal/number_text.h"
#include "lmx/internal/scan.h"
#include "lmx/internal/word.h"

namespace lmx {
namespace {

using internal::Cursor;
using internal::DateFields;
using internal::digit_value;
using internal::is_digit;

std::string_view view(const char* text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

// A digit run of any length as a number that wraps around.
std::uint32_t take_number(Cursor& cursor, std::size_t* count) {
  std::uint32_t value = 0;
  *count = 0;
  for (; cursor.at_digit(); ++*count) {
    value = value * 10 + static_cast<std::uint32_t>(cursor.take_digit());
  }
  return value;
}

// Adds the digits behind a point and moves past them. Each step rounds to single precision; the
// outcome of these very steps is what a value keeps.
float add_fraction(float value, const char** at, const char* end) {
  float weight = 0.1f;
  for (; *at != end && is_digit(**at); ++*at) {
    value += static_cast<float>(digit_value(**at)) * weight;
    weight /= 10.0f;
  }
  return value;
}

float take_secs(Cursor& cursor) {
  float value = 0.0f;
  while (cursor.at_digit()) value = value * 10.0f + static_cast<float>(cursor.take_digit());
  if (!cursor.skip('.')) return value;
  const char* at = cursor.position();
  value = add_fraction(value, &at, at + cursor.remaining());
  cursor.skip_digits();
  return value;
}

std::uint32_t to_unsigned(char digit) { return static_cast<std::uint32_t>(digit_value(digit)); }

bool are_two_digits(const char* text) { return is_digit(text[0]) && is_digit(text[1]); }

std::uint32_t two_digit_value(const char* text) {
  return to_unsigned(text[0]) * 10 + to_unsigned(text[1]);
}

// The lexical grammar, without a value.
bool skip_two_digits(Cursor& cursor) { return cursor.skip_digits() == 2; }

bool skip_year(Cursor& cursor) {
  cursor.skip_sign();
  return cursor.skip_digits() >= 4;
}

bool skip_clock(Cursor& cursor) {
  const bool held = skip_two_digits(cursor) && cursor.skip(':') && skip_two_digits(cursor) &&
                    cursor.skip(':') && skip_two_digits(cursor);
  if (held && cursor.skip('.')) cursor.skip_digits();
  return held;
}

// Nothing, "Z" or an offset, and then the end of the text.
bool skip_zone(Cursor& cursor) {
  if (cursor.skip_sign()) {
    if (!skip_two_digits(cursor) || !cursor.skip(':') || !skip_two_digits(cursor)) return false;
  } else {
    cursor.skip('Z');
  }
  return cursor.at_end();
}

// Writes a value in the width, with zeros in front, as a stream with that width and fill does.
template <class Number>
char* put_padded(char* out, int width, Number value) {
  char digits[std::numeric_limits<Number>::digits10 + 2];
  char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  for (auto missing = width - (end - digits); missing > 0; --missing) *out++ = '0';
  return std::copy(digits, end, out);
}

char* put_two_digits(char* out, std::uint32_t value) {
  *out++ = static_cast<char>('0' + value / 10);
  *out++ = static_cast<char>('0' + value % 10);
  return out;
}

char* put_dashes(char* out, int count) { return std::fill_n(out, count, '-'); }

char* put_two_places(char* out, std::uint32_t value) {
  return value < 100 ? put_two_digits(out, value) : put_padded(out, 2, value);
}

std::uint32_t offset_magnitude(std::int32_t offset) {
  const auto bits = static_cast<std::uint32_t>(offset);
  return offset < 0 ? 0 - bits : bits;
}

// Too small for the general format to do without an exponent; negative values count as small.
bool needs_fixed(float secs) { return secs != 0.0f && secs < 0.001f; }

// How seconds are spelled: in a stream's general format at its first precision, unless a stream
// says otherwise.
struct SecondsFormat {
  bool is_fixed = false;
  int precision = 6;
};

// No float takes more characters than these and one for each place of the precision.
char* put_float(char* out, float secs, const SecondsFormat& format) {
  const bool is_usual = !format.is_fixed && format.precision == SecondsFormat().precision;
  if (is_usual && std::isfinite(secs) && secs > 0.0f && !needs_fixed(secs)) {
    return internal::format_seconds(secs, out);
  }
  constexpr int k_room = 42;
  const auto notation =
      format.is_fixed || needs_fixed(secs) ? std::chars_format::fixed : std::chars_format::general;
  return std::to_chars(out, out + k_room + format.precision, secs, notation, format.precision).ptr;
}

char* put_secs(char* out, float secs, const SecondsFormat& format) {
  const bool has_digits = !format.is_fixed && format.precision >= 2;
  if (has_digits && !std::signbit(secs) && secs < 100.0f && secs == std::floor(secs)) {
    return put_two_digits(out, static_cast<std::uint32_t>(secs));
  }
  if (secs < 10.0f) *out++ = '0';
  return put_float(out, secs, format);
}

}  // namespace

namespace internal {

struct DateFields {
  // Each of these stores what it reads, also where the count of digits then turns out wrong.
  static bool year(Cursor& cursor, c_datetime_base& value) {
    std::size_t count;
    value.year_ = static_cast<std::int32_t>(take_number(cursor, &count));
    return count >= 4;
  }

  static bool two_digits(Cursor& cursor, std::uint32_t& field) {
    std::size_t count;
    field = take_number(cursor, &count);
    return count == 2;
  }

  static bool month(Cursor& cursor, c_datetime_base& value) {
    return two_digits(cursor, value.month_);
  }

  static bool day(Cursor& cursor, c_datetime_base& value) { return two_digits(cursor, value.day_); }

  // Unlike the check this is content with one digit.
  static bool last_day(Cursor& cursor, c_datetime_base& value) {
    std::size_t count;
    value.day_ = take_number(cursor, &count);
    return count >= 1;
  }

  static bool clock(Cursor& cursor, c_datetime_base& value) {
    if (!two_digits(cursor, value.hours_) || !cursor.skip(':')) return false;
    if (!two_digits(cursor, value.mins_) || !cursor.skip(':')) return false;
    const char* const start = cursor.position();
    value.secs_ = take_secs(cursor);
    return cursor.position() - start >= 2;
  }

  static void zone(Cursor& cursor, c_datetime_base& value) {
    std::int32_t offset = 0;
    bool is_utc = false;
    const bool is_west = cursor.skip('-');
    if (is_west || cursor.skip('+')) {
      std::uint32_t hours;
      std::uint32_t mins;
      if (!two_digits(cursor, hours) || !cursor.skip(':') || !two_digits(cursor, mins)) return;
      offset = static_cast<std::int32_t>(hours * 60 + mins);
      if (is_west) offset = -offset;
    } else {
      is_utc = cursor.skip('Z');
    }
    if (!cursor.at_end()) return;
    value.total_offset_mins_ = offset;
    value.is_utc_ = is_utc;
  }

  static void negate_year(c_datetime_base& value) {
    value.year_ = static_cast<std::int32_t>(0 - static_cast<std::uint32_t>(value.year_));
  }

  // Parses the optional sign and what stands between it and the zone by `fields`, then the zone.
  template <class Fields>
  static void parse_signed(std::string_view text, c_datetime_base& value, Fields fields) {
    Cursor cursor(text);
    const bool is_negative = cursor.skip('-');
    if (!is_negative) cursor.skip('+');
    if (!fields(cursor)) return;
    zone(cursor, value);
    if (is_negative) negate_year(value);
  }

  static void parse(std::string_view text, c_datetime& value) {
    bool has_zone;
    if (parse_datetime(text, &value, &has_zone)) return;
    parse_signed(text, value, [&value](Cursor& cursor) {
      return year(cursor, value) && cursor.skip('-') && month(cursor, value) && cursor.skip('-') &&
             day(cursor, value) && cursor.skip('T') && clock(cursor, value);
    });
  }

  static void parse(std::string_view text, c_time& value) {
    Cursor cursor(text);
    if (clock(cursor, value)) zone(cursor, value);
  }

  static void parse(std::string_view text, c_date& value) {
    parse_signed(text, value, [&value](Cursor& cursor) {
      return year(cursor, value) && cursor.skip('-') && month(cursor, value) && cursor.skip('-') &&
             day(cursor, value);
    });
  }

  static void parse(std::string_view text, c_gyearmonth& value) {
    parse_signed(text, value, [&value](Cursor& cursor) {
      return year(cursor, value) && cursor.skip('-') && month(cursor, value);
    });
  }

  static void parse(std::string_view text, c_gyear& value) {
    parse_signed(text, value, [&value](Cursor& cursor) { return year(cursor, value); });
  }

  static void parse(std::string_view text, c_gmonthday& value) {
    Cursor cursor(text);
    if (cursor.skip('-') && cursor.skip('-') && month(cursor, value) && cursor.skip('-') &&
        last_day(cursor, value)) {
      zone(cursor, value);
    }
  }

  static void parse(std::string_view text, c_gday& value) {
    Cursor cursor(text);
    if (cursor.skip('-') && cursor.skip('-') && cursor.skip('-') && last_day(cursor, value)) {
      zone(cursor, value);
    }
  }

  static void parse(std::string_view text, c_gmonth& value) {
    Cursor cursor(text);
    if (cursor.skip('-') && cursor.skip('-') && month(cursor, value) && cursor.skip('-') &&
        cursor.skip('-')) {
      zone(cursor, value);
    }
  }

  // Passes the fields of a valid text, up to the zone.
  static bool skip(Cursor& cursor, const c_time*) {
    cursor.skip_sign();  // valid, though assignment does not take it
    return skip_clock(cursor);
  }
  static bool skip(Cursor& cursor, const c_date*) {
    return skip_year(cursor) && cursor.skip('-') && skip_two_digits(cursor) && cursor.skip('-') &&
           skip_two_digits(cursor);
  }
  static bool skip(Cursor& cursor, const c_gyearmonth*) {
    return skip_year(cursor) && cursor.skip('-') && skip_two_digits(cursor);
  }
  static bool skip(Cursor& cursor, const c_gyear*) { return skip_year(cursor); }
  static bool skip(Cursor& cursor, const c_gmonthday*) {
    return cursor.skip('-') && cursor.skip('-') && skip_two_digits(cursor) && cursor.skip('-') &&
           skip_two_digits(cursor);
  }
  static bool skip(Cursor& cursor, const c_gday*) {
    return cursor.skip('-') && cursor.skip('-') && cursor.skip('-') && skip_two_digits(cursor);
  }
  static bool skip(Cursor& cursor, const c_gmonth*) {
    return cursor.skip('-') && cursor.skip('-') && skip_two_digits(cursor) && cursor.skip('-') &&
           cursor.skip('-');
  }

  static char* put_year(char* out, const c_datetime_base& value) {
    if (value.year_ < 0 || value.year_ >= 10000) return put_padded(out, 4, value.year_);
    out = put_two_digits(out, static_cast<std::uint32_t>(value.year_) / 100);
    return put_two_digits(out, static_cast<std::uint32_t>(value.year_) % 100);
  }

  static char* put_month(char* out, const c_datetime_base& value) {
    return put_two_places(out, value.month_);
  }

  static char* put_day(char* out, const c_datetime_base& value) {
    return put_two_places(out, value.day_);
  }

  static char* put_clock(char* out, const c_datetime_base& value, const SecondsFormat& format) {
    out = put_two_places(out, value.hours_);
    *out++ = ':';
    out = put_two_places(out, value.mins_);
    *out++ = ':';
    return put_secs(out, value.secs_, format);
  }

  static char* put_zone(char* out, const c_datetime_base& value) {
    if (value.is_utc_) {
      *out++ = 'Z';
    } else if (value.total_offset_mins_ != 0) {
      const std::uint32_t mins = offset_magnitude(value.total_offset_mins_);
      *out++ = value.total_offset_mins_ < 0 ? '-' : '+';
      out = put_two_places(out, mins / 60);
      *out++ = ':';
      out = put_two_digits(out, mins % 60);
    }
    return out;
  }

  static char* put_behind_year(char* out, const c_datetime& value, const SecondsFormat& format) {
    *out++ = '-';
    out = put_month(out, value);
    *out++ = '-';
    out = put_day(out, value);
    *out++ = 'T';
    return put_clock(out, value, format);
  }

  // With a sign in front of the zeros of a year, as reading takes it, and with the zone.
  static char* put_exact(char* out, const c_datetime& value, const SecondsFormat& format) {
    if (value.year_ < 0) {
      *out++ = '-';
      out = put_padded(out, 4, -std::int64_t{value.year_});
    } else {
      out = put_year(out, value);
    }
    out = put_behind_year(out, value, format);
    // Without any zone it would be refused; this one is read as the same value.
    constexpr std::string_view k_zone_of_zero = "+00:00";
    if (!value.is_utc_ && value.total_offset_mins_ == 0) {
      return std::copy(k_zone_of_zero.begin(), k_zone_of_zero.end(), out);
    }
    return put_zone(out, value);
  }

  // Each puts its text without the zone.
  static char* put(char* out, const c_datetime& value, const SecondsFormat& format) {
    return put_behind_year(put_year(out, value), value, format);
  }
  static char* put(char* out, const c_time& value, const SecondsFormat& format) {
    return put_clock(out, value, format);
  }
  static char* put(char* out, const c_date& value, const SecondsFormat&) {
    out = put_year(out, value);
    *out++ = '-';
    out = put_month(out, value);
    *out++ = '-';
    return put_day(out, value);
  }
  static char* put(char* out, const c_gyearmonth& value, const SecondsFormat&) {
    out = put_year(out, value);
    *out++ = '-';
    return put_month(out, value);
  }
  static char* put(char* out, const c_gyear& value, const SecondsFormat&) {
    return put_year(out, value);
  }
  static char* put(char* out, const c_gmonthday& value, const SecondsFormat&) {
    out = put_month(put_dashes(out, 2), value);
    return put_day(put_dashes(out, 1), value);
  }
  static char* put(char* out, const c_gday& value, const SecondsFormat&) {
    return put_day(put_dashes(out, 3), value);
  }
  static char* put(char* out, const c_gmonth& value, const SecondsFormat&) {
    return put_dashes(put_month(put_dashes(out, 2), value), 2);
  }

  static bool is_same(const c_datetime_base& a, const c_datetime_base& b) {
    return a.year_ == b.year_ && a.month_ == b.month_ && a.day_ == b.day_ && a.hours_ == b.hours_ &&
           a.mins_ == b.mins_ && a.secs_ == b.secs_;
  }

  static std::size_t hash(const c_datetime_base& value) noexcept {
    std::size_t result = std::hash<float>()(value.secs_);
    for (const std::uint32_t field : {static_cast<std::uint32_t>(value.year_), value.month_,
                                      value.day_, value.hours_, value.mins_}) {
      result = result * 1000003 + field;
    }
    return result;
  }

  static bool is_later(const c_datetime_base& a, const c_datetime_base& b) {
    if (a.year_ != b.year_) return a.year_ > b.year_;
    if (a.month_ != b.month_) return a.month_ > b.month_;
    if (a.day_ != b.day_) return a.day_ > b.day_;
    if (a.hours_ != b.hours_) return a.hours_ > b.hours_;
    if (a.mins_ != b.mins_) return a.mins_ > b.mins_;
    return a.secs_ > b.secs_;
  }
};

bool is_same_date(const c_datetime_base& a, const c_datetime_base& b) {
  return DateFields::is_same(a, b);
}

bool is_later_date(const c_datetime_base& a, const c_datetime_base& b) {
  return DateFields::is_later(a, b);
}

std::size_t hash_date(const c_datetime_base& value) noexcept { return DateFields::hash(value); }

// Everything between the year and the seconds stands at a fixed place, so these places are judged
// together, and only the year, the fraction and the zone are walked.
namespace {

// The digits of eight bytes that are like the pattern, where a "0" stands for any digit: each as a
// number in its byte. False if one is not like it.
bool take_like(const char* at, const char* pattern, std::uint64_t separators,
               std::uint64_t* digits) {
  const std::uint64_t word = load_word(at) ^ load_word(pattern);
  const std::uint64_t too_big = (word + k_ones * 0x76) | word;
  *digits = word;
  return ((too_big & k_highs) | (word & separators)) == 0;
}

// The two digits whose first is the byte with this number.
std::uint32_t pair_at(std::uint64_t digits, int byte) {
  const auto pair = static_cast<std::uint32_t>(digits >> (8 * byte));
  return (pair & 0xF) * 10 + (pair >> 8 & 0xF);
}

// As most are: four digits of a year, no fraction, and "Z" or a zone. False for any other.
bool parse_usual_datetime(std::string_view text, c_datetime* value) {
  constexpr std::size_t k_length = 19;  // "YYYY-MM-DDThh:mm:ss"
  if (text.size() != k_length + 1 && text.size() != k_length + 6) return false;
  std::uint64_t date, middle, clock;
  const char* const at = text.data();
  if (!take_like(at, "0000-00-", 0xFF0000FF00000000, &date) ||
      !take_like(at + 8, "00T00:00", 0x0000FF0000FF0000, &middle) ||
      !take_like(at + 11, "00:00:00", 0x0000FF0000FF0000, &clock)) {
    return false;
  }
  std::int32_t offset = 0;
  const bool is_utc = text.size() == k_length + 1;
  if (is_utc) {
    if (at[k_length] != 'Z') return false;
  } else {
    std::uint64_t zone;
    if ((at[k_length] != '+' && at[k_length] != '-') ||
        !take_like(at + k_length - 2, at[k_length] == '+' ? "00+00:00" : "00-00:00",
                   0x0000FF0000FF0000, &zone)) {
      return false;
    }
    offset = static_cast<std::int32_t>(pair_at(zone, 3) * 60 + pair_at(zone, 6));
    if (at[k_length] == '-') offset = -offset;
  }
  value->set_year(static_cast<std::int32_t>(pair_at(date, 0) * 100 + pair_at(date, 2)));
  value->set_month(pair_at(date, 5));
  value->set_day(pair_at(middle, 0));
  value->set_hours(pair_at(clock, 0));
  value->set_mins(pair_at(clock, 3));
  value->set_secs(static_cast<float>(pair_at(clock, 6)));
  value->set_total_offset_mins(offset);
  value->set_is_utc(is_utc);
  return true;
}

}  // namespace

bool parse_datetime(std::string_view text, c_datetime* value, bool* has_zone) {
  if (parse_usual_datetime(text, value)) {
    *has_zone = true;
    return true;
  }
  const char* at = text.data();
  const char* const end = at + text.size();
  const auto is_sign = [](char c) { return c == '-' || c == '+'; };

  const bool is_negative = at != end && *at == '-';
  if (at != end && is_sign(*at)) ++at;
  const char* const year_start = at;
  std::uint32_t year = 0;
  for (; at != end && is_digit(*at); ++at) year = year * 10 + to_unsigned(*at);
  if (at - year_start < 4) return false;

  // "-MM-DDThh:mm:ss"
  constexpr std::ptrdiff_t k_fixed_part = 15;
  if (end - at < k_fixed_part) return false;
  const bool has_literals =
      at[0] == '-' && at[3] == '-' && at[6] == 'T' && at[9] == ':' && at[12] == ':';
  if (!has_literals || !are_two_digits(at + 1) || !are_two_digits(at + 4) ||
      !are_two_digits(at + 7) || !are_two_digits(at + 10) || !are_two_digits(at + 13)) {
    return false;
  }
  const char* const fixed_part = at;
  at += k_fixed_part;

  float secs = static_cast<float>(two_digit_value(fixed_part + 13));
  if (at != end && *at == '.') {
    ++at;
    secs = add_fraction(secs, &at, end);
  }

  std::int32_t offset = 0;
  const bool ends_here = at == end;
  const bool is_utc = !ends_here && *at == 'Z';
  if (is_utc) {
    if (at + 1 != end) return false;
  } else if (!ends_here) {
    // "+hh:mm"
    if (end - at != 6 || !is_sign(at[0]) || !are_two_digits(at + 1) || at[3] != ':' ||
        !are_two_digits(at + 4)) {
      return false;
    }
    offset = static_cast<std::int32_t>(two_digit_value(at + 1) * 60 + two_digit_value(at + 4));
    if (*at == '-') offset = -offset;
  }

  value->set_year(static_cast<std::int32_t>(is_negative ? 0 - year : year));
  value->set_month(two_digit_value(fixed_part + 1));
  value->set_day(two_digit_value(fixed_part + 4));
  value->set_hours(two_digit_value(fixed_part + 7));
  value->set_mins(two_digit_value(fixed_part + 10));
  value->set_secs(secs);
  value->set_total_offset_mins(offset);
  value->set_is_utc(is_utc);
  *has_zone = !ends_here;
  return true;
}

char* format_datetime(const c_datetime& value, char* out) {
  return DateFields::put_zone(DateFields::put(out, value, {}), value);
}

// Reading adds the decimals up one by one, in rounded steps: which text gives the value back shows
// when it is read. Where none of the value itself does, that of a neighbour may.
char* format_exact_datetime(const c_datetime& value, char* out) {
  constexpr int k_most_decimals = 20;
  constexpr int k_most_steps = 4;
  const float secs = value.get_secs();
  const auto reads_back = [&](const char* end) {
    c_datetime again;
    bool has_zone = false;
    return parse_datetime({out, static_cast<std::size_t>(end - out)}, &again, &has_zone) &&
           again.get_secs() == secs;
  };
  char* end = DateFields::put_exact(out, value, {});
  if (!(secs >= 0.0f && secs < 100.0f) || reads_back(end)) return end;
  const auto found_near = [&](const c_datetime& near) {
    for (int decimals = 1; decimals <= k_most_decimals; ++decimals) {
      end = DateFields::put_exact(out, near, {true, decimals});
      if (reads_back(end)) return true;
    }
    return false;
  };
  if (found_near(value)) return end;
  for (const float direction : {100.0f, 0.0f}) {
    c_datetime near = value;
    for (int step = 0; step < k_most_steps; ++step) {
      near.set_secs(std::nextafter(near.get_secs(), direction));
      if (found_near(near)) return end;
    }
  }
  return DateFields::put_exact(out, value, {true, k_most_decimals});
}

}  // namespace internal

void c_datetime_base::set_offset(int hours, unsigned mins) {
  const std::uint32_t whole_hours = static_cast<std::uint32_t>(hours) * 60;
  total_offset_mins_ =
      static_cast<std::int32_t>(hours < 0 ? whole_hours - mins : whole_hours + mins);
  is_utc_ = total_offset_mins_ == 0;
}

namespace {

char* put_text(char* out, const c_duration& value, const SecondsFormat& format);

template <class T>
char* put_text(char* out, const T& value, const SecondsFormat& format) {
  return DateFields::put_zone(DateFields::put(out, value, format), value);
}

template <class T>
std::string text_of(const T& value) {
  char text[internal::k_max_datetime_text];
  const char* const end = put_text(text, value, {});
  return std::string(text, static_cast<std::size_t>(end - text));
}

bool has_secs(const c_datetime&) { return true; }
bool has_secs(const c_time&) { return true; }
bool has_secs(const c_datetime_base&) { return false; }
bool has_secs(const c_duration& value) { return value.get_secs() != 0.0f; }

// A stream has a say in its precision and in fixed notation, but not through its locale: a point
// among the thousands of a year would make it another text.
template <class T>
std::ostream& write(std::ostream& os, const T& value) {
  constexpr std::streamsize k_max_precision = 1000;
  SecondsFormat format;
  format.is_fixed = (os.flags() & std::ios_base::floatfield) == std::ios_base::fixed;
  if (os.precision() >= 0) {
    format.precision = static_cast<int>(std::min(os.precision(), k_max_precision));
  }
  char text[internal::k_max_datetime_text + k_max_precision];
  char* const end = put_text(text, value, format);
  os << std::string_view(text, static_cast<std::size_t>(end - text));
  os.fill('0');
  if (has_secs(value)) os.unsetf(std::ios_base::fixed);
  return os;
}

}  // namespace

std::ostream& operator<<(std::ostream& os, const c_datetime& value) { return write(os, value); }

std::ostream& operator<<(std::ostream& os, const c_time& value) { return write(os, value); }

std::ostream& operator<<(std::ostream& os, const c_date& value) { return write(os, value); }

std::ostream& operator<<(std::ostream& os, const c_gyearmonth& value) { return write(os, value); }

std::ostream& operator<<(std::ostream& os, const c_gyear& value) { return write(os, value); }

std::ostream& operator<<(std::ostream& os, const c_gmonthday& value) { return write(os, value); }

std::ostream& operator<<(std::ostream& os, const c_gday& value) { return write(os, value); }

std::ostream& operator<<(std::ostream& os, const c_gmonth& value) { return write(os, value); }

namespace internal {

template <class T>
T& DateType<T>::operator=(const char* text) {
  T& self = static_cast<T&>(*this);
  DateFields::parse(view(text), self);
  return self;
}

template <class T>
T& DateType<T>::operator=(const std::string& text) {
  T& self = static_cast<T&>(*this);
  DateFields::parse(text, self);
  return self;
}

template <class T>
bool DateType<T>::is_valid(const std::string& text) {
  if constexpr (std::is_same_v<T, c_datetime>) {
    T value;
    bool has_zone;
    return parse_datetime(text, &value, &has_zone);
  } else {
    Cursor cursor(text);
    return DateFields::skip(cursor, static_cast<const T*>(nullptr)) && skip_zone(cursor);
  }
}

template <class T>
std::string DateType<T>::get_as_string() const {
  return text_of(static_cast<const T&>(*this));
}

template class DateType<c_datetime>;
template class DateType<c_time>;
template class DateType<c_date>;
template class DateType<c_gyearmonth>;
template class DateType<c_gyear>;
template class DateType<c_gmonthday>;
template class DateType<c_gday>;
template class DateType<c_gmonth>;

}  // namespace internal

namespace {

// The number that starts at `run` and goes on to the first other character.
std::uint32_t number_at(const char* run, const char* end) {
  Cursor cursor(std::string_view(run, static_cast<std::size_t>(end - run)));
  std::size_t count;
  return take_number(cursor, &count);
}

// Seconds with a fraction, or a run without digits, which counts as 0.
float secs_at(const char* run, const char* end) {
  double secs = 0.0;
  const auto result = std::from_chars(run, end, secs, std::chars_format::fixed);
  if (result.ec == std::errc::result_out_of_range) {
    const bool is_huge =
        std::find_if(run, end, [](char c) { return c != '0'; }) != std::find(run, end, '.');
    secs = is_huge ? std::numeric_limits<double>::infinity() : 0.0;
  }
  return secs > static_cast<double>(std::numeric_limits<float>::max())
             ? std::numeric_limits<float>::infinity()
             : static_cast<float>(secs);
}

// Walks the text, stores what it finds in a value that was reset, and says whether the text is
// valid. `pending` means digits that still want a designator; that "T" does not clear it is why
// "P12T5H" passes.
bool walk_duration(std::string_view text, c_duration& value) {
  Cursor cursor(text);
  const bool is_neg = cursor.skip('-');
  if (!is_neg) cursor.skip('+');
  value.set_is_neg(is_neg);
  if (!cursor.skip('P')) return false;

  const char* run = cursor.position();
  bool pending = cursor.skip_digits() > 0;
  const auto take = [&](char designator) {
    if (!pending || !cursor.skip(designator)) return false;
    pending = false;
    return true;
  };
  const auto next_run = [&] {
    run = cursor.position();
    if (cursor.skip_digits() > 0) pending = true;
  };

  if (take('Y')) {
    value.set_years(number_at(run, cursor.position()));
    next_run();
  }
  if (take('M')) {
    value.set_months(number_at(run, cursor.position()));
    next_run();
  }
  if (take('D')) value.set_days(number_at(run, cursor.position()));
  if (cursor.at_end()) return !pending;

  if (!cursor.skip('T') || cursor.at_end()) return false;
  next_run();
  if (take('H')) {
    value.set_hours(number_at(run, cursor.position()));
    next_run();
  }
  if (take('M')) {
    value.set_mins(number_at(run, cursor.position()));
    next_run();
  }
  if (cursor.skip('.')) {
    if (cursor.at_end()) return false;
    if (cursor.skip_digits() > 0) pending = true;
  }
  if (take('S')) value.set_secs(secs_at(run, cursor.position()));
  return !pending && cursor.at_end();
}

c_duration normalized(c_duration value) {
  value.normalize();
  return value;
}

// Whether the number of days in the months leaves the order open. Normalised months are below 12.
bool is_indeterminate(const c_duration& a, const c_duration& b) {
  static constexpr std::uint64_t k_min_days[] = {0,   28,  59,  89,  120, 150,
                                                 181, 212, 242, 273, 303, 334};
  static constexpr std::uint64_t k_max_days[] = {0,   31,  62,  92,  123, 153,
                                                 184, 215, 245, 276, 306, 337};
  if (a.get_is_neg() != b.get_is_neg() || a.get_months() % 12 == b.get_months() % 12) return false;

  const c_duration left = normalized(a);
  const c_duration right = normalized(b);
  const std::uint32_t common_years = std::min(left.get_years(), right.get_years());
  const auto days = [common_years](const c_duration& value, std::uint64_t year_days,
                                   const std::uint64_t* month_days) {
    return (value.get_years() - common_years) * year_days + month_days[value.get_months()] +
           value.get_days();
  };
  return days(left, 366, k_max_days) > days(right, 365, k_min_days) &&
         days(left, 365, k_min_days) < days(right, 366, k_max_days);
}

bool is_same(const c_duration& a, const c_duration& b) {
  return a.get_is_neg() == b.get_is_neg() && a.get_years() == b.get_years() &&
         a.get_months() == b.get_months() && a.get_days() == b.get_days() &&
         a.get_hours() == b.get_hours() && a.get_mins() == b.get_mins() &&
         a.get_secs() == b.get_secs();
}

bool is_longer(const c_duration& a, const c_duration& b) {
  if (a.get_years() != b.get_years()) return a.get_years() > b.get_years();
  if (a.get_months() != b.get_months()) return a.get_months() > b.get_months();
  if (a.get_days() != b.get_days()) return a.get_days() > b.get_days();
  if (a.get_hours() != b.get_hours()) return a.get_hours() > b.get_hours();
  if (a.get_mins() != b.get_mins()) return a.get_mins() > b.get_mins();
  return a.get_secs() > b.get_secs();
}

}  // namespace

c_duration& c_duration::operator=(const char* text) {
  *this = c_duration();
  walk_duration(view(text), *this);
  return *this;
}

c_duration& c_duration::operator=(const std::string& text) {
  *this = c_duration();
  walk_duration(text, *this);
  return *this;
}

bool c_duration::is_valid(const char* text) {
  c_duration value;
  return walk_duration(view(text), value);
}

bool c_duration::is_valid(const std::string& text) {
  c_duration value;
  return walk_duration(text, value);
}

std::string c_duration::get_as_string() const { return text_of(*this); }

void c_duration::normalize() {
  // Seconds may be anything that a float holds; what no integer can take is left alone.
  constexpr double k_limit = 9.0e18;
  const double whole_mins = std::trunc(static_cast<double>(secs_) / 60.0);
  if (std::abs(whole_mins) < k_limit) {
    mins_ += static_cast<std::uint32_t>(static_cast<std::int64_t>(whole_mins));
    secs_ = std::fmod(secs_, 60.0f);  // of many minutes no difference is exact
  }
  hours_ += mins_ / 60;
  mins_ %= 60;
  days_ += hours_ / 24;
  hours_ %= 24;
  years_ += months_ / 12;
  months_ %= 12;
}

bool operator==(const c_duration& a, const c_duration& b) {
  return !is_indeterminate(a, b) && is_same(normalized(a), normalized(b));
}

bool operator>(const c_duration& a, const c_duration& b) {
  return !is_indeterminate(a, b) && is_longer(normalized(a), normalized(b));
}

bool operator>=(const c_duration& a, const c_duration& b) { return a > b || a == b; }

bool operator<(const c_duration& a, const c_duration& b) {
  return !is_indeterminate(a, b) && !(a >= b);
}

bool operator<=(const c_duration& a, const c_duration& b) {
  return !is_indeterminate(a, b) && !(a > b);
}

namespace {

char* put_text(char* out, const c_duration& value, const SecondsFormat& format) {
  const auto put = [&out](std::uint32_t number, char designator) {
    if (number == 0) return;
    out = put_padded(out, 1, number);
    *out++ = designator;
  };
  if (value.get_is_neg()) *out++ = '-';
  *out++ = 'P';
  put(value.get_years(), 'Y');
  put(value.get_months(), 'M');
  put(value.get_days(), 'D');
  if (value.get_hours() == 0 && value.get_mins() == 0 && value.get_secs() == 0.0f) return out;
  *out++ = 'T';
  put(value.get_hours(), 'H');
  put(value.get_mins(), 'M');
  if (value.get_secs() != 0.0f) {
    out = put_float(out, value.get_secs(), format);
    *out++ = 'S';
  }
  return out;
}

}  // namespace

std::ostream& operator<<(std::ostream& os, const c_duration& value) { return write(os, value); }

}  // namespace lmx
