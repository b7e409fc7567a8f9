// The date and time types of XML Schema as plain fields.
//
// The values are purely lexical: no calendar, no range check on any field ("2001-02-31" stands as
// it is) and no arithmetic of time zones. Assignment parses text and reports nothing; a text that
// is not valid leaves the fields that were read before the fault, so check is_valid first. Writing
// leaves "0" as the stream's fill character.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>

#include "port/export.h"

namespace lmx {

class c_datetime_base;

namespace internal {

struct DateFields;  // lets the parsers and writers reach the fields
ZOL_API bool is_same_date(const c_datetime_base& a, const c_datetime_base& b);
ZOL_API bool is_later_date(const c_datetime_base& a, const c_datetime_base& b);
ZOL_API std::size_t hash_date(const c_datetime_base& value) noexcept;

}  // namespace internal

// The fields of all date types. Each type shows and uses its own and leaves the others alone.
//
// Each also has is_valid(text), assignment from text, get_as_string(), which is what << writes, and
// the six comparisons: of the numbers as written, from the year down to the seconds. The zone takes
// no part.
class ZOL_API c_datetime_base {
 public:
  // The zone: minutes east of UTC, and whether it is written as "Z". A zone of "+00:00" becomes an
  // offset of 0 that is not UTC, which is written with no zone at all. So is a new value.
  std::int32_t get_total_offset_mins() const { return total_offset_mins_; }
  void set_total_offset_mins(std::int32_t mins) { total_offset_mins_ = mins; }
  bool get_is_utc() const { return is_utc_; }
  void set_is_utc(bool is_utc) { is_utc_ = is_utc; }

  // `mins` counts in the direction that the sign of `hours` gives: (-5, 30) is -330. A total of 0
  // is UTC.
  void set_offset(int hours, unsigned mins);
  void set_offset_mins(int hours, unsigned mins) { set_offset(hours, mins); }

 protected:
  // 1 in a new value; negative behind a leading "-".
  std::int32_t get_year() const { return year_; }
  void set_year(std::int32_t year) { year_ = year; }
  // Counted from 1, and 0 in a new value.
  std::uint32_t get_month() const { return month_; }
  void set_month(std::uint32_t month) { month_ = month; }
  std::uint32_t get_day() const { return day_; }
  void set_day(std::uint32_t day) { day_ = day; }
  // Of the clock, counted from 0.
  std::uint32_t get_hours() const { return hours_; }
  void set_hours(std::uint32_t hours) { hours_ = hours; }
  std::uint32_t get_mins() const { return mins_; }
  void set_mins(std::uint32_t mins) { mins_ = mins; }
  // With their fraction, as near as single precision gets.
  float get_secs() const { return secs_; }
  void set_secs(float secs) { secs_ = secs; }

 private:
  friend struct internal::DateFields;

  std::int32_t year_ = 1;
  std::uint32_t month_ = 0;
  std::uint32_t day_ = 0;
  std::uint32_t hours_ = 0;
  std::uint32_t mins_ = 0;
  float secs_ = 0.0f;
  std::int32_t total_offset_mins_ = 0;
  bool is_utc_ = false;
};

namespace internal {

// What a date type T has besides its fields.
template <class T>
class ZOL_API DateType : public c_datetime_base {
 public:
  T& operator=(const char* text);  // null counts as the empty text
  T& operator=(const std::string& text);

  static bool is_valid(const std::string& text);
  std::string get_as_string() const;

  // They compare the numbers as written, from the year down to the seconds; the zone takes no part.
  friend bool operator==(const T& a, const T& b) { return is_same_date(a, b); }
  friend bool operator!=(const T& a, const T& b) { return !(a == b); }
  friend bool operator>(const T& a, const T& b) { return is_later_date(a, b); }
  friend bool operator>=(const T& a, const T& b) { return a == b || a > b; }
  friend bool operator<(const T& a, const T& b) { return !(a >= b); }
  friend bool operator<=(const T& a, const T& b) { return !(a > b); }
};

}  // namespace internal

// "2005-06-07T08:09:10.5Z", with a year of four or more digits.
class ZOL_API c_datetime : public internal::DateType<c_datetime> {
 public:
  c_datetime() = default;
  // As assigned to a new value.
  c_datetime(const char* text) { *this = text; }
  c_datetime(const std::string& text) { *this = text; }
  using DateType::operator=;

  using c_datetime_base::get_day;
  using c_datetime_base::get_hours;
  using c_datetime_base::get_mins;
  using c_datetime_base::get_month;
  using c_datetime_base::get_secs;
  using c_datetime_base::get_year;
  using c_datetime_base::set_day;
  using c_datetime_base::set_hours;
  using c_datetime_base::set_mins;
  using c_datetime_base::set_month;
  using c_datetime_base::set_secs;
  using c_datetime_base::set_year;
};

// "08:09:10.5Z". A leading sign is valid but not parsed.
class ZOL_API c_time : public internal::DateType<c_time> {
 public:
  c_time() = default;
  // As assigned to a new value.
  c_time(const char* text) { *this = text; }
  c_time(const std::string& text) { *this = text; }
  using DateType::operator=;

  using c_datetime_base::get_hours;
  using c_datetime_base::get_mins;
  using c_datetime_base::get_secs;
  using c_datetime_base::set_hours;
  using c_datetime_base::set_mins;
  using c_datetime_base::set_secs;
};

// "2005-06-07Z"
class ZOL_API c_date : public internal::DateType<c_date> {
 public:
  c_date() = default;
  // As assigned to a new value.
  c_date(const char* text) { *this = text; }
  c_date(const std::string& text) { *this = text; }
  using DateType::operator=;

  using c_datetime_base::get_day;
  using c_datetime_base::get_month;
  using c_datetime_base::get_year;
  using c_datetime_base::set_day;
  using c_datetime_base::set_month;
  using c_datetime_base::set_year;
};

// "2005-06Z"
class ZOL_API c_gyearmonth : public internal::DateType<c_gyearmonth> {
 public:
  c_gyearmonth() = default;
  // As assigned to a new value.
  c_gyearmonth(const char* text) { *this = text; }
  c_gyearmonth(const std::string& text) { *this = text; }
  using DateType::operator=;

  using c_datetime_base::get_month;
  using c_datetime_base::get_year;
  using c_datetime_base::set_month;
  using c_datetime_base::set_year;
};

// "2005Z"
class ZOL_API c_gyear : public internal::DateType<c_gyear> {
 public:
  c_gyear() = default;
  // As assigned to a new value.
  c_gyear(const char* text) { *this = text; }
  c_gyear(const std::string& text) { *this = text; }
  using DateType::operator=;

  using c_datetime_base::get_year;
  using c_datetime_base::set_year;
};

// "--06-07Z". Assignment makes do with one digit for the day.
class ZOL_API c_gmonthday : public internal::DateType<c_gmonthday> {
 public:
  c_gmonthday() = default;
  // As assigned to a new value.
  c_gmonthday(const char* text) { *this = text; }
  c_gmonthday(const std::string& text) { *this = text; }
  using DateType::operator=;

  using c_datetime_base::get_day;
  using c_datetime_base::get_month;
  using c_datetime_base::set_day;
  using c_datetime_base::set_month;
};

// "---07Z". Assignment makes do with one digit.
class ZOL_API c_gday : public internal::DateType<c_gday> {
 public:
  c_gday() = default;
  // As assigned to a new value.
  c_gday(const char* text) { *this = text; }
  c_gday(const std::string& text) { *this = text; }
  using DateType::operator=;

  using c_datetime_base::get_day;
  using c_datetime_base::set_day;
};

// "--06--Z"
class ZOL_API c_gmonth : public internal::DateType<c_gmonth> {
 public:
  c_gmonth() = default;
  // As assigned to a new value.
  c_gmonth(const char* text) { *this = text; }
  c_gmonth(const std::string& text) { *this = text; }
  using DateType::operator=;

  using c_datetime_base::get_month;
  using c_datetime_base::set_month;
};

namespace internal {

struct DateHash {
  std::size_t operator()(const c_datetime_base& value) const noexcept { return hash_date(value); }
};

extern template class DateType<c_datetime>;
extern template class DateType<c_time>;
extern template class DateType<c_date>;
extern template class DateType<c_gyearmonth>;
extern template class DateType<c_gyear>;
extern template class DateType<c_gmonthday>;
extern template class DateType<c_gday>;
extern template class DateType<c_gmonth>;

}  // namespace internal

// The text of get_as_string, whatever the stream's locale: only seconds are written in the stream's
// precision, and in fixed notation if it is set, which writing them unsets.
ZOL_API std::ostream& operator<<(std::ostream& os, const c_datetime& value);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_time& value);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_date& value);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_gyearmonth& value);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_gyear& value);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_gmonthday& value);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_gday& value);
ZOL_API std::ostream& operator<<(std::ostream& os, const c_gmonth& value);

// "P1Y2M3DT4H5M6.5S"; a zero duration is "P". The check is lenient about digits without a
// designator: "P12T5H" is valid, and the 12 is dropped.
//
// The order is that of magnitudes; the sign is not looked at. Where the days in a month leave it
// open, as for P1M against P30D, all operators but != give false.
class ZOL_API c_duration {
 public:
  c_duration() = default;
  // As assigned to a new value.
  c_duration(const char* text) { *this = text; }
  c_duration(const std::string& text) { *this = text; }
  // Sets every field: to 0 what the text does not have. Null counts as the empty text.
  c_duration& operator=(const char* text);
  c_duration& operator=(const std::string& text);

  // As lenient as the class says. Null counts as the empty text, which is not valid.
  static bool is_valid(const char* text);
  static bool is_valid(const std::string& text);
  // What << writes: fields of 0 are left out, and the others stand as they are, however large.
  std::string get_as_string() const;

  // Carries whole minutes, hours and days upward, and months into years; never days into months.
  void normalize();

  // Of the whole duration: no field has a sign of its own.
  bool get_is_neg() const { return is_neg_; }
  void set_is_neg(bool is_neg) { is_neg_ = is_neg; }
  // As written: a field may be more than one of the next larger unit, see normalize().
  std::uint32_t get_years() const { return years_; }
  void set_years(std::uint32_t years) { years_ = years; }
  std::uint32_t get_months() const { return months_; }
  void set_months(std::uint32_t months) { months_ = months; }
  std::uint32_t get_days() const { return days_; }
  void set_days(std::uint32_t days) { days_ = days; }
  std::uint32_t get_hours() const { return hours_; }
  void set_hours(std::uint32_t hours) { hours_ = hours; }
  std::uint32_t get_mins() const { return mins_; }
  void set_mins(std::uint32_t mins) { mins_ = mins; }
  // With their fraction, as near as single precision gets.
  float get_secs() const { return secs_; }
  void set_secs(float secs) { secs_ = secs; }

 private:
  bool is_neg_ = false;
  std::uint32_t years_ = 0;
  std::uint32_t months_ = 0;
  std::uint32_t days_ = 0;
  std::uint32_t hours_ = 0;
  std::uint32_t mins_ = 0;
  float secs_ = 0.0f;
};

// By the order of magnitudes that the class has.
ZOL_API bool operator==(const c_duration& a, const c_duration& b);
ZOL_API bool operator>(const c_duration& a, const c_duration& b);
ZOL_API bool operator>=(const c_duration& a, const c_duration& b);
ZOL_API bool operator<(const c_duration& a, const c_duration& b);
ZOL_API bool operator<=(const c_duration& a, const c_duration& b);
inline bool operator!=(const c_duration& a, const c_duration& b) { return !(a == b); }

// By the same rules as the dates above.
ZOL_API std::ostream& operator<<(std::ostream& os, const c_duration& value);

// The name that generated code has for it.
using tc_datetime = c_datetime;

}  // namespace lmx

namespace std {

// As == has it: the zone takes no part. A c_duration has no hash, since it has no such order
// either.
template <>
struct hash<lmx::c_datetime> : lmx::internal::DateHash {};
template <>
struct hash<lmx::c_time> : lmx::internal::DateHash {};
template <>
struct hash<lmx::c_date> : lmx::internal::DateHash {};
template <>
struct hash<lmx::c_gyearmonth> : lmx::internal::DateHash {};
template <>
struct hash<lmx::c_gyear> : lmx::internal::DateHash {};
template <>
struct hash<lmx::c_gmonthday> : lmx::internal::DateHash {};
template <>
struct hash<lmx::c_gday> : lmx::internal::DateHash {};
template <>
struct hash<lmx::c_gmonth> : lmx::internal::DateHash {};

}  // namespace std
