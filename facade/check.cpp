#include "facade/check.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "facade/internal/diagnosis.h"
#include "facade/internal/fault_list.h"
#include "facade/internal/suspicions.h"
#include "facade/internal/text_flaws.h"
#include "lmx/internal/lexical.h"
#include "lmx/internal/number_text.h"
#include "lmx/internal/reader_state.h"
#include "lmx/reader.h"
#include "model/internal/values.h"
#include "model/reflection.h"

namespace zol_v2 {

namespace {

using internal::Class;
using internal::FaultList;
using internal::Head;
using internal::Level;
using internal::Object;
using internal::PointerList;
using internal::Row;
using internal::Shape;
using internal::Slot;
using internal::Suspicions;
using internal::Text;
using internal::TextFlaw;
using lmx::elmx_error;
using reflection::Item;
using reflection::Kind;
using reflection::Place;
using reflection::Value;

// --- Values --------------------------------------------------------------------------------------

// Whether so many decimals spell it in at most 14 digits: the quotient of two whole numbers that
// are exact is the double nearest to the decimal number.
bool is_decimal(double value, double power_of_ten) {
  constexpr double k_fifteen_digits = 1e14;
  const double scaled = value * power_of_ten;
  if (!(std::abs(scaled) < k_fifteen_digits)) return false;
  const double whole =
      static_cast<double>(static_cast<std::int64_t>(scaled + (scaled < 0 ? -0.5 : 0.5)));
  return whole / power_of_ten == value;
}

double as_read_back(double value) {
  char text[lmx::internal::k_number_room];
  const char* const end = lmx::internal::format_double(value, text);
  double again = value;
  lmx::internal::read_double({text, static_cast<std::size_t>(end - text)}, &again);
  return again;
}

bool keeps_digits(double value) {
  if (is_decimal(value, 1e6) || is_decimal(value, 1e10)) return true;
  return as_read_back(value) == value || std::isnan(value);
}

std::string text_of(double value) {
  char text[lmx::internal::k_number_room];
  return {text, lmx::internal::format_exact_double(value, text)};
}

std::string text_of(const lmx::c_datetime& value, bool is_exact) {
  char text[lmx::internal::k_max_datetime_text];
  return {text, is_exact ? lmx::internal::format_exact_datetime(value, text)
                         : lmx::internal::format_datetime(value, text)};
}

// A date of our days on a whole second.
bool is_usual(const lmx::c_datetime& date) {
  constexpr int k_most_minutes = 14 * 60;
  const float secs = date.get_secs();
  const int offset = date.get_total_offset_mins();
  const bool is_zoned = date.get_is_utc() ? offset == 0 : offset != 0;
  return is_zoned && std::abs(offset) <= k_most_minutes && date.get_year() >= 1 &&
         date.get_year() <= 9999 && date.get_month() <= 12 && date.get_day() <= 31 &&
         date.get_hours() <= 24 && date.get_mins() <= 59 && secs >= 0 && secs < 60 &&
         secs == std::floor(secs);
}

std::string code_point(std::uint32_t unit) {
  constexpr char k_digits[] = "0123456789ABCDEF";
  std::string text = "U+";
  const int places = unit > 0xFFFF ? 6 : 4;
  for (int place = places - 1; place >= 0; --place) text += k_digits[unit >> (4 * place) & 15];
  return text;
}

// --- The walk ------------------------------------------------------------------------------------

// Goes where writing goes, by the same tables.
class Walk {
 public:
  Walk(const CheckOptions& options, FaultList& faults)
      : faults_(faults),
        reads_back_(options.level >= CheckLevel::reading),
        warns_(options.level >= CheckLevel::warnings),
        is_exact_(options.is_exact),
        suspicions_(faults) {}

  void run(const Object& root) {
    const Class& type = Head::class_of(root);
    Level level;
    level.item.owner = root;
    if (type.shape == Shape::holder || type.shape == Shape::anonymous) {
      alternative(root, type, level, {});
    } else {
      object(root, type, level);
    }
    if (warns_) suspicions_.finish(root);
  }

 private:
  // Where an alternative without an element of its own stands: the row that leads to it.
  struct Way {
    const Object* parent = nullptr;
    const Row* row = nullptr;
    unsigned entry = 0;
  };

  void child(const Object& self, const Class& type, const Level& up, const Item& item) {
    const Level level{&up, item, up.depth + 1};
    if (level.depth <= lmx::internal::ElementDepthGuard::k_max_depth) {
      return object(self, type, level);
    }
    if (!reads_back_) return;
    if (Fault* const fault = faults_.add_error(lmx::elmx_not_well_formed, level, item)) {
      fault->rule = "nesting-too-deep";
      fault->expected = std::to_string(lmx::internal::ElementDepthGuard::k_max_depth);
    }
  }

  void object(const Object& self, const Class& type, const Level& level) {
    if (!internal::is_occurs_ok(self, type)) missing(self, type, level, type);
    const Suspicions::Visit visit(suspicions_, self, type, level, warns_);
    attributes(self, type, level);
    if (Head::is_nil(self, type)) return;
    const Class& content = type.content_class();
    if (content.shape == Shape::simple) {
      field(self, content.content(), level);
    } else if (content.shape == Shape::choice) {
      alternative(self, content, level, {});
    } else {
      elements(self, type, level);
    }
  }

  void attributes(const Object& self, const Class& type, const Level& level) {
    if (type.base != nullptr) attributes(self, *type.base, level);
    for (const Row& row : type.attributes()) field(self, row, level);
  }

  void elements(const Object& self, const Class& type, const Level& level) {
    if (type.base != nullptr) elements(self, *type.base, level);
    for (const Row& row : type.elements()) {
      if (row.kind == Kind::foreign || row.kind == Kind::mark) continue;
      if (row.is_list) {
        list(self, row, level);
      } else if (row.is_simple()) {
        field(self, row, level);
      } else if (Head::has(self, row.bit)) {
        const Object* const held =
            row.is_in_place() ? &row.field<Object>(self) : row.field<Object*>(self);
        entry(self, row, held != nullptr ? *held : row.type->empty(), 0, level);
      }
    }
  }

  void list(const Object& self, const Row& row, const Level& level) {
    unsigned index = 0;
    for (const void* const held : row.field<PointerList>(self)) {
      if (!row.is_simple()) {
        entry(self, row, *static_cast<const Object*>(held), index, level);
      } else if (!is_sound(row, held)) {
        judge(item_of(self, row, index), level);
      }
      ++index;
    }
  }

  // A child, a holder or a group.
  void entry(const Object& self, const Row& row, const Object& held, unsigned index,
             const Level& level) {
    if (row.kind == Kind::object) {
      return child(held, *row.type, level, item_of(self, row, index));
    }
    alternative(held, *row.type, level, {&self, &row, index});
  }

  // What a choice holds. Whether it holds something is asked here for holders and groups, which
  // have no element for it to be asked of.
  void alternative(const Object& self, const Class& type, const Level& level, const Way& way) {
    const int chosen = Head::chosen(self);
    if (chosen < 0 || chosen >= type.rest_count) {
      if (type.shape != Shape::choice) missing_alternative(type, level, way);
      return;
    }
    const Row& row = type.alternatives().first[chosen];
    const Slot& slot = row.field<Slot>(self);
    Item item = item_of(self, row, 0);
    if (way.parent != nullptr) {
      item.parent = *way.parent;
      item.way = *way.row;
      item.entry = way.entry;
    }
    if (row.kind == Kind::object) {
      if (slot.object == nullptr) return missing_member(level, item);
      if (type.shape != Shape::holder) return child(*slot.object, *row.type, level, item);
      return member(*slot.object, row, level, item);
    }
    const void* const value = row.kind == Kind::text ? static_cast<const void*>(slot.text) : &slot;
    if (!is_sound(row, value)) judge(item, level);
  }

  // A member of a family, which may be of a derived type where the element says so.
  void member(const Object& self, const Row& row, const Level& up, const Item& item) {
    const Class& type = Head::class_of(self);
    const bool is_named = row.named_type == internal::NamedType::required;
    if (reads_back_ && is_named && *type.identity == *row.type->identity) {
      if (Fault* const fault = faults_.add_error(lmx::elmx_unknown_xsi_type, up, item)) {
        fault->rule = "type-missing";
        for (const reflection::Type known : reflection::Type(*row.type).named_types()) {
          fault->allowed.emplace_back(known.type_name());
        }
      }
    }
    child(self, type, up, item);
  }

  static Item item_of(const Object& self, const Row& row, unsigned index) {
    return {self, row, index, self, row, index};
  }

  // --- What is missing

  void missing(const Object& self, const Class& type, const Level& level, const Class& whole) {
    if (type.base != nullptr) missing(self, *type.base, level, whole);
    for (const Row& row : type.all()) {
      if (row.place == Place::alternative) break;
      const bool is_there = row.is_list
                                ? !row.is_required || !row.field<PointerList>(self).empty()
                                : (whole.required >> row.bit & 1) == 0 || Head::has(self, row.bit);
      if (is_there || row.kind == Kind::mark) continue;
      if (row.is_named() || row.place == Place::content) {
        missing_row(self, row, level);
      } else {
        missing_alternative(*row.type, level, {&self, &row, 0});
      }
    }
    if (type.is_choice() && Head::chosen(self) == type.none) missing_alternative(type, level, {});
  }

  void missing_row(const Object& self, const Row& row, const Level& level) {
    const Item item = item_of(self, row, 0);
    Fault* const fault = faults_.add_unwritable(lmx::elmx_occurs_on_marshal, level, item);
    if (fault == nullptr) return;
    if (row.place == Place::attribute) {
      fault->rule = "attribute-missing";
    } else if (row.place == Place::content) {
      fault->rule = "value-missing";
      fault->expected = std::string(level.item.name()) + " has no value";
    } else {
      fault->rule = "element-missing";
      fault->expected = row.is_list ? "at least one is required" : "it is required";
    }
  }

  void missing_alternative(const Class& type, const Level& level, const Way& way) {
    const Item item =
        way.parent != nullptr ? item_of(*way.parent, *way.row, way.entry) : level.item;
    Fault* const fault = faults_.add_unwritable(lmx::elmx_occurs_on_marshal, level, item);
    if (fault == nullptr) return;
    fault->rule = "alternative-missing";
    fault->expected = "it holds none";
    for (const Row& row : type.alternatives()) fault->allowed.emplace_back(row.name());
  }

  void missing_member(const Level& level, const Item& item) {
    Fault* const fault = faults_.add_unwritable(lmx::elmx_type_not_set, level, item);
    if (fault == nullptr) return;
    fault->rule = "member-missing";
    fault->expected = std::string(item.name()) + " is chosen, but a null pointer was put there";
  }

  // --- What does not come back

  // Most values are sound, which is to show at a glance. The others are looked at again.
  void field(const Object& self, const Row& row, const Level& level) {
    if (!Head::has(self, row.bit) || !reads_back_) return;
    const void* const at = &row.field<char>(self);
    if (row.kind == Kind::text ? is_sound(row, row.field<Text>(self)) : is_sound(row, at)) return;
    judge(item_of(self, row, 0), level);
  }

  bool is_sound(const Row& row, const Text& text) const {
    std::string_view utf8;
    if (row.length != 0 || row.collapses) return false;
    return text.get_narrow(&utf8) ? internal::is_plain_text(utf8)
                                  : internal::is_plain_text(text.get());
  }

  bool is_sound(const Row& row, const void* at) const {
    if (!reads_back_) return true;
    switch (row.kind) {
      case Kind::text:
        return row.length == 0 && !row.collapses &&
               internal::is_plain_text(*static_cast<const std::wstring*>(at));
      case Kind::enumerated:
        return row.enumeration->number_at(*static_cast<const std::wstring* const*>(at)) != 0;
      case Kind::real: {
        const double value = *static_cast<const double*>(at);
        return internal::check(row, value) == lmx::elmx_ok && (is_exact_ || keeps_digits(value));
      }
      case Kind::int32:
        return internal::check(row, *static_cast<const int*>(at)) == lmx::elmx_ok;
      case Kind::uint32:
        return internal::check(row, *static_cast<const unsigned*>(at)) == lmx::elmx_ok;
      case Kind::uint8:
        return internal::check(row, *static_cast<const unsigned char*>(at)) == lmx::elmx_ok;
      case Kind::datetime:
        return is_usual(*static_cast<const lmx::c_datetime*>(at));
      default:
        return true;
    }
  }

  void judge(const Item& item, const Level& level) {
    const Value value = item.value();
    switch (value.kind()) {
      case Kind::text:
        return judge_text(value.text(), item, level);
      case Kind::enumerated:
        return judge_enumerated(value.text(), item, level);
      case Kind::datetime:
        return judge_date(value.date(), item, level);
      default:
        return judge_number(value.number(), item, level);
    }
  }

  void judge_number(double value, const Item& item, const Level& level) {
    const Row& row = item.row.table();
    const double again = is_exact_ || row.kind != Kind::real ? value : as_read_back(value);
    const elmx_error now = internal::check(row, value);
    if (const elmx_error error = now != lmx::elmx_ok ? now : internal::check(row, again)) {
      if (Fault* const fault = faults_.add_error(error, level, item)) {
        const bool is_above = error == lmx::elmx_value_too_big;
        fault->rule = is_above ? "above-bound" : "below-bound";
        fault->found = std::isnan(value) ? "NaN" : text_of(value);
        if (now == lmx::elmx_ok) fault->expected = "of which " + text_of(again) + " is written, ";
        fault->expected +=
            is_above ? internal::upper_bound_words(row) : internal::lower_bound_words(row);
      }
      return;
    }
    if (!warns_) return;
    if (Fault* const fault = faults_.add_warning(level, item)) {
      fault->rule = "digits-lost";
      fault->found = text_of(value);
      fault->expected = std::string(internal::name_in_words(item)) + " is " + fault->found +
                        ", of which " + text_of(again) + " is written";
    }
  }

  // The text may be another copy of one in the table.
  void judge_enumerated(const std::wstring& text, const Item& item, const Level& level) {
    if (item.row.table().enumeration->number_of(text) != 0) return;
    if (!internal::is_written(text)) return judge_text(text, item, level);
    Fault* const fault = faults_.add_error(lmx::elmx_value_not_enumerated, level, item);
    if (fault == nullptr) return;
    fault->rule = "not-enumerated";
    fault->found = internal::excerpt(internal::utf8_of(text));
    for (const std::string_view known : item.row.values()) fault->allowed.emplace_back(known);
  }

  void judge_date(const lmx::c_datetime& date, const Item& item, const Level& level) {
    const std::string text = text_of(date, is_exact_);
    lmx::c_datetime again;
    bool is_zoned = false;
    const bool is_date = lmx::internal::parse_datetime(text, &again, &is_zoned);
    if (!is_date || !is_zoned) {
      const elmx_error error = is_date ? lmx::elmx_no_pattern_match : lmx::elmx_bad_value_format;
      if (Fault* const fault = faults_.add_error(error, level, item)) {
        fault->rule = is_date ? "no-time-zone" : "wrong-format";
        fault->found = internal::excerpt(text);
        fault->expected = is_date ? "Z, or an offset other than zero," : "a date and time";
      }
      return;
    }
    if (internal::is_same_datetime(date, again)) return;
    const bool loses_digits = again.get_secs() != date.get_secs();
    if (loses_digits && !warns_) return;
    Fault* const fault = loses_digits ? faults_.add_warning(level, item)
                                      : faults_.add_error(lmx::elmx_bad_value_format, level, item);
    if (fault == nullptr) return;
    fault->rule = loses_digits ? "digits-lost" : "wrong-format";
    fault->found = internal::excerpt(text);
    fault->expected = loses_digits
                          ? std::string(internal::name_in_words(item)) + " is written as " + text +
                                ", which has not all digits of its seconds"
                          : "a date and time with one time zone";
  }

  void judge_text(const std::wstring& text, const Item& item, const Level& level) {
    const Row& row = item.row.table();
    const bool is_attribute = row.place == Place::attribute;
    const internal::TextFault found =
        internal::find_flaw(text, {is_attribute, row.collapses, is_exact_});
    const std::string name(internal::name_in_words(item));
    if (found.flaw == TextFlaw::attribute_white_space) {
      if (!warns_) return;
      if (Fault* const fault = faults_.add_warning(level, item)) {
        fault->rule = "attribute-white-space";
        fault->expected =
            name +
            " holds a line feed or tab, which other readers take for a blank in an attribute";
      }
      return;
    }
    if (found.flaw == TextFlaw::none) return judge_length(text, item, level);
    const elmx_error error =
        is_attribute ? lmx::elmx_bad_attribute_value : lmx::elmx_bad_element_value;
    Fault* const fault = faults_.add_error(error, level, item);
    if (fault == nullptr) return;
    fault->found = code_point(found.unit);
    switch (found.flaw) {
      case TextFlaw::lone_surrogate:
        fault->rule = "lone-surrogate";
        fault->expected =
            name + " holds the lone surrogate " + fault->found + ", which can't be written";
        return;
      case TextFlaw::no_character:
        fault->rule = "bad-character";
        return;
      case TextFlaw::section_end:
        fault->rule = "section-end";
        fault->found = "]]>";
        fault->expected = name + " holds ']]>', which XML forbids in a text";
        return;
      case TextFlaw::line_end:
        fault->rule = "line-end";
        fault->expected = name + " holds " + fault->found + ", which comes back as a line feed";
        return;
      default:
        fault->rule = "lost-white-space";
        fault->found = internal::excerpt(internal::utf8_of(text));
        fault->expected = name + " is '" + fault->found + "', whose white space is not kept";
    }
  }

  // A reader counts characters, and a setter units.
  void judge_length(const std::wstring& text, const Item& item, const Level& level) {
    const Row& row = item.row.table();
    if (row.length == 0) return;
    std::size_t characters = 0;
    for (const wchar_t unit : text) {
      if ((static_cast<std::uint32_t>(unit) & 0xFC00) != 0xDC00) ++characters;
    }
    if (characters == row.length) return;
    const bool is_long = characters > row.length;
    Fault* const fault = faults_.add_error(
        is_long ? lmx::elmx_length_too_long : lmx::elmx_length_too_short, level, item);
    if (fault == nullptr) return;
    fault->rule = "wrong-length";
    fault->found = internal::excerpt(internal::utf8_of(text));
    fault->expected =
        "exactly " + std::to_string(row.length) + " character" + (row.length == 1 ? "" : "s");
  }

  FaultList& faults_;
  const bool reads_back_;
  const bool warns_;
  const bool is_exact_;
  Suspicions suspicions_;
};

}  // namespace

CheckReport check(const internal::Object& object, const CheckOptions& options) {
  FaultList faults(options.limit);
  Walk(options, faults).run(object);
  return faults.take();
}

}  // namespace zol_v2
