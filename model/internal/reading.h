// How an object of the model reads itself: the element step, and a step for each kind of row.
//
// Generated code lists the rows of a class in schema order on a BodyReader, or picks one in an
// AttributeReader or ChoiceReader. Every failure goes through the reader's error handler, which may
// let it pass: the step then carries on as if nothing had happened. A step gives false once a
// failure stands, and the code is in the error word that the reader object was built on.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "lmx/binary.h"
#include "lmx/dates.h"
#include "lmx/internal/plain_road.h"
#include "lmx/reader.h"
#include "model/internal/checks.h"
#include "model/internal/fields.h"

namespace zol_v2::internal {

// Where a value stands, for whoever finds fault with it. `item` is its element or attribute, `line`
// the line of generated code that reads it.
struct Site {
  lmx::c_xml_reader& reader;
  const std::string& item;
  lmx::elmx_error& err;
  int line;

  // The error handler's verdict on the code: true to carry on.
  bool pass(lmx::elmx_error code) const;
};

// The text of a value, checked and converted. False if a check fails, or if only the long road can
// tell; the target is then as it was.
bool convert(std::string_view text, std::wstring& target);
bool convert(std::string_view text, std::wstring& target, Length length);
bool convert(std::string_view text, std::wstring& target, Collapsed);
bool convert(std::string_view text, double& target, const Range& range = {});
bool convert(std::string_view text, int& target, const IntegerRange& range);
bool convert(std::string_view text, unsigned& target, const IntegerRange& range);
bool convert(std::string_view text, unsigned char& target, const IntegerRange& range);
bool convert(std::string_view text, bool& target);
bool convert(std::string_view text, lmx::c_datetime& target);  // a time zone is required
bool convert(std::string_view text, lmx::c_binary& target);
bool convert(std::string_view text, Enumerated& target, const EnumTable& table);

// The same on the long road: the text stands in reader.value, and each check that fails goes to the
// handler. False if a failure stands.
bool take(const Site& site, std::wstring& target);
bool take(const Site& site, std::wstring& target, Length length);
bool take(const Site& site, double& target, const Range& range = {});
bool take(const Site& site, int& target, const IntegerRange& range);
bool take(const Site& site, unsigned& target, const IntegerRange& range);
bool take(const Site& site, unsigned char& target, const IntegerRange& range);
bool take(const Site& site, bool& target);
bool take(const Site& site, lmx::c_datetime& target);
bool take(const Site& site, lmx::c_binary& target);
bool take(const Site& site, Enumerated& target, const EnumTable& table);

inline bool take(const Site& site, std::wstring& target, Collapsed) { return take(site, target); }

// Fields by what they hold.
template <class... Facet>
bool convert(std::string_view text, Text& target, const Facet&... facet) {
  return convert(text, target.value, facet...);
}
// Lets a field have what it needs for its value from the pool.
template <class Field>
void prepare(Field&, Pool&) {}
inline void prepare(OptionalText& field, Pool& pool) { field.make(&pool); }

template <class... Facet>
bool convert(std::string_view text, OptionalText& target, const Facet&... facet) {
  return convert(text, target.make(), facet...);
}
template <class T, class... Facet>
bool convert(std::string_view text, Value<T>& target, const Facet&... facet) {
  return convert(text, target.value, facet...);
}
template <class... Facet>
bool take(const Site& site, Text& target, const Facet&... facet) {
  return take(site, target.value, facet...);
}
template <class... Facet>
bool take(const Site& site, OptionalText& target, const Facet&... facet) {
  return take(site, target.make(), facet...);
}
template <class T, class... Facet>
bool take(const Site& site, Value<T>& target, const Facet&... facet) {
  return take(site, target.value, facet...);
}

// White space of texts is kept unless the row says otherwise; that of everything else collapses.
template <class Field>
constexpr lmx::elmx_whitespace whitespace_of(const Field&) {
  return lmx::elmx_collapse;
}
constexpr lmx::elmx_whitespace whitespace_of(const std::wstring&) { return lmx::elmx_preserve; }
constexpr lmx::elmx_whitespace whitespace_of(const Text&) { return lmx::elmx_preserve; }
constexpr lmx::elmx_whitespace whitespace_of(const Value<std::wstring>&) {
  return lmx::elmx_preserve;
}
constexpr lmx::elmx_whitespace whitespace_of(const OptionalText&) { return lmx::elmx_preserve; }
constexpr lmx::elmx_whitespace whitespace_of(const Enumerated&) { return lmx::elmx_preserve; }
template <class Field, class Facet>
constexpr lmx::elmx_whitespace whitespace_of(const Field& field, const Facet&) {
  return whitespace_of(field);
}
template <class Field>
constexpr lmx::elmx_whitespace whitespace_of(const Field&, const Collapsed&) {
  return lmx::elmx_collapse;
}

// Reads the attributes of an element that was seen to be plain, and its content if that is a value.
// Values are stored as they are found good; their flags follow when all of them are.
class PlainReader {
 public:
  PlainReader(const lmx::internal::PlainElement& element, Pool& pool)
      : element_(element), pool_(pool) {}

  template <class Field, class... Facet>
  PlainReader& required(std::string_view name, Field& field, const Facet&... facet) {
    is_good_ = is_good_ && find(name) && accept(found_->value, field, facet...);
    return *this;
  }
  template <class Field, class... Facet>
  PlainReader& optional(std::string_view name, Field& field, const Facet&... facet) {
    if (is_good_ && find(name)) is_good_ = accept(found_->value, field, facet...);
    return *this;
  }
  template <class Field, class... Facet>
  PlainReader& content(Field& field, const Facet&... facet) {
    is_good_ = is_good_ && convert(element_.text, field, facet...);
    content_flag_ = &field.set;
    mode_ = whitespace_of(field, facet...);
    return *this;
  }
  // False if the long road must be taken, from the start tag on.
  bool finish() {
    if (!is_good_ || flag_count_ != element_.attribute_count) return false;
    for (int i = 0; i < flag_count_; ++i) *flags_[i] = true;
    if (content_flag_ != nullptr) *content_flag_ = true;
    return true;
  }
  // Of what comes last: the content, or the last attribute.
  lmx::elmx_whitespace mode() const { return mode_; }

 private:
  bool find(std::string_view name) {
    for (int i = 0; i < element_.attribute_count; ++i) {
      found_ = &element_.attributes[i];
      if (found_->name == name) return true;
    }
    return false;
  }
  // An attribute that is set already is for the long road.
  template <class Field, class... Facet>
  bool accept(std::string_view text, Field& field, const Facet&... facet) {
    if (field.set) return false;
    prepare(field, pool_);
    if (!convert(text, field, facet...)) return false;
    if (found_ + 1 == element_.attributes + element_.attribute_count) {
      mode_ = whitespace_of(field, facet...);
    }
    flags_[flag_count_++] = &field.set;
    return true;
  }

  const lmx::internal::PlainElement& element_;
  Pool& pool_;
  const lmx::internal::PlainElement::Attribute* found_ = nullptr;
  bool* flags_[lmx::internal::PlainElement::k_max_attributes];
  bool* content_flag_ = nullptr;
  int flag_count_ = 0;
  lmx::elmx_whitespace mode_ = lmx::elmx_preserve;
  bool is_good_ = true;
};

// What the classes of the model show to the readers here alone: they call it their friend.
struct PlainAccess {
  template <class T>
  static auto test(int)
      -> decltype(std::declval<T&>().unmarshal_plain(std::declval<PlainReader&>()),
                  std::true_type());
  template <class T>
  static std::false_type test(...);
  // Has the class simple content, so that it reads whole elements?
  template <class T>
  static constexpr bool is_plain = decltype(test<T>(0))::value;

  // Takes the element that was seen as a whole. False, with no flag set, if the long road must be
  // taken.
  template <class T>
  static bool read(T& object, lmx::internal::PlainRoad& road, Pool& pool) {
    if (!road.has_depth()) return false;
    PlainReader in(road.element(), pool);
    object.unmarshal_plain(in);
    if (!in.finish()) return false;
    road.take_element(in.mode());
    return true;
  }
  // The names of the members of a group.
  template <class T>
  static const lmx::s_event_map* member_rows() {
    return T::member_rows();
  }
};

// The child elements of a class. `rows` is the table of their names in schema order; a row is named
// by its index there. `line` is the source line before the first row's.
//
// After a row the next tag is left unread as long as it can be: the following row may then find its
// element whole and take it without an event. Whatever is not that plain is read through events.
class BodyReader {
 public:
  BodyReader(lmx::c_xml_reader& reader, std::string& name, lmx::elmx_error& err,
             const lmx::s_event_map* rows, int line)
      : reader_(reader), road_(reader), name_(name), err_(err), rows_(rows), line_(line) {
    tokenise_from(0);
  }

  // Simple rows, single: 21 for a required one that is not at hand.
  template <class Field, class... Facet>
  bool required(int row, Field& field, const Facet&... facet) {
    if (take_plain(row, field, facet...) == Step::taken) return true;
    if (!read_due_event(row)) return false;
    return is_at(row) ? value(row, field, facet...) : missing(row);
  }
  template <class Field, class... Facet>
  bool optional(int row, Field& field, const Facet&... facet) {
    if (take_plain(row, field, facet...) != Step::unknown) return true;
    return read_due_event(row) && (!is_at(row) || value(row, field, facet...));
  }
  // Lists of simple values.
  template <class T, class... Facet>
  bool values(int row, List<T>& list, const Facet&... facet) {
    while (true) {
      Value<T> taken;
      const Step step = take_plain(row, taken, facet...);
      if (step == Step::other) return true;
      if (step == Step::unknown) {
        if (!read_due_event(row)) return false;
        if (!is_at(row)) return true;
        const Site at = site(row);
        if (!fetch(at, whitespace_of(taken.value, facet...), true)) return false;
        if (!take(at, taken.value, facet...)) return false;
        set_due();
      }
      list.append_in(&reader_.pool(), std::move(taken.value));
    }
  }
  template <class T, class... Facet>
  bool values_from_one(int row, List<T>& list, const Facet&... facet) {
    const unsigned before = list.size();
    if (!values(row, list, facet...)) return false;
    return list.size() != before || (read_due_event(row) && missing(row));
  }

  // Children.
  template <class Field>
  bool required_child(int row, Field& field) {
    switch (take_plain_field(row, field)) {
      case Step::taken:
        return true;
      case Step::handed_over:
        return child(field);
      default:
        return read_due_event(row) && (is_at(row) ? child(field) : missing(row));
    }
  }
  template <class Field>
  bool optional_child(int row, Field& field) {
    switch (take_plain_field(row, field)) {
      case Step::taken:
        return true;
      case Step::other:
        return true;
      case Step::handed_over:
        return child(field);
      default:
        return read_due_event(row) && (!is_at(row) || child(field));
    }
  }
  template <class T>
  bool children(int row, List<T>& list) {
    while (true) {
      switch (take_plain_element(row, list)) {
        case Step::taken:
          continue;
        case Step::other:
          return true;
        case Step::handed_over:
          break;
        default:
          if (!read_due_event(row)) return false;
          if (!is_at(row)) return true;
      }
      if (!accept(list.append_in(&reader_.pool()).unmarshal(reader_, name_))) return false;
      set_due();
    }
  }
  template <class T>
  bool children_from_one(int row, List<T>& list) {
    const unsigned before = list.size();
    if (!children(row, list)) return false;
    return list.size() != before || (read_due_event(row) && missing(row));
  }

  // Members of a substitution group. Their names stand in the holder's table and not in this one:
  // `next_row` is the row behind. A missing one is never reported, not even where it is required.
  template <class T>
  bool holder(int next_row, OptionalChild<T>& field) {
    const Step step = hand_over_member<T>();
    if (step == Step::other) return true;
    if (step != Step::handed_over) {
      if (!read_due_event(next_row)) return false;
      if (!T::is_member(reader_, name_)) return true;
    }
    return member(next_row, field);
  }
  template <class T>
  bool holders(int next_row, List<T>& list) {
    Step step = hand_over_member<T>();
    for (; step == Step::handed_over; step = hand_over_member<T>()) {
      if (!list.append_in(&reader_.pool()).unmarshal(reader_, &name_, &err_)) return false;
    }
    if (step == Step::other) return true;
    if (!read_due_event(next_row)) return false;
    while (T::is_member(reader_, name_)) {
      if (!list.append_in(&reader_.pool()).unmarshal(reader_, &name_, &err_)) return false;
    }
    tokenise_from(next_row);
    return true;
  }
  // An anonymous group is required: 21 without an item if none of its values is at hand.
  template <class T>
  bool group(int next_row, Child<T>& field) {
    if (!read_due_event(next_row)) return false;
    if (!T::is_member(reader_, name_)) return missing_group(next_row);
    return member(next_row, field);
  }

  // An empty element that nobody asks for.
  bool mark(int row);
  // Every element that is still there, as text.
  bool foreign(List<AnyElement>& list);

 private:
  using Sight = lmx::internal::PlainRoad::Sight;

  // What became of a row on the short road. Whoever reads a child takes the tag that is handed
  // over.
  enum class Step { taken, handed_over, other, unknown };

  Site site(int row) const { return Site{reader_, name_, err_, line_ + 1 + row}; }
  bool is_at(int row) const { return reader_.get_current_event() == rows_[row].event; }
  void tokenise_from(int row) {
    if (!road_.is_due() && reader_.is_current_event_tokenisable()) {
      reader_.tokenise(rows_ + row, lmx::elxp_element);
    }
  }
  void set_due() { road_.set_due(); }
  // The next tag or text, if it was left unread, as the given row or one behind it.
  bool read_due_event(int row) { return !road_.is_due() || read_event(row); }
  bool read_event(int row);
  // A child's code has been through the handler already.
  bool accept(lmx::elmx_error code) {
    err_ = code;
    return code == lmx::elmx_ok;
  }

  static Step step_of(Sight sight) {
    return sight == Sight::other_name ? Step::other : Step::unknown;
  }
  template <class Field, class... Facet>
  Step take_plain(int row, Field& field, const Facet&... facet) {
    if (!road_.is_due()) return Step::unknown;
    const Sight sight = road_.see_value(rows_[row]);
    if (sight != Sight::plain) return step_of(sight);
    prepare(field, reader_.pool());
    if (!convert(road_.element().text, field, facet...)) return Step::unknown;
    field.set = true;
    road_.take_value(whitespace_of(field, facet...));
    return Step::taken;
  }
  // The next element as the child of a row: `make` gives the object to read into.
  template <class Object, class Make>
  Step take_plain_child(int row, const Make& make) {
    if (!road_.is_due()) return Step::unknown;
    if constexpr (PlainAccess::is_plain<Object>) {
      const Sight sight = road_.see_element(rows_[row]);
      if (sight != Sight::plain) return step_of(sight);
      return PlainAccess::read(make(), road_, reader_.pool()) ? Step::taken : Step::unknown;
    } else {
      return hand_over(road_.see_tag(rows_[row]));
    }
  }
  Step hand_over(Sight sight) {
    if (sight != Sight::plain) return step_of(sight);
    if (!road_.has_depth()) return Step::unknown;
    road_.hand_over_tag();
    return Step::handed_over;
  }
  template <class T>
  Step hand_over_member() {
    if (!road_.is_due()) return Step::unknown;
    return hand_over(road_.see_tag_of(PlainAccess::member_rows<T>()));
  }
  template <class Field>
  Step take_plain_field(int row, Field& field) {
    using Object = std::remove_reference_t<decltype(field.make())>;
    const Step step =
        take_plain_child<Object>(row, [&]() -> Object& { return field.make(&reader_.pool()); });
    if (step == Step::taken) field.set = true;
    return step;
  }
  template <class T>
  Step take_plain_element(int row, List<T>& list) {
    const unsigned before = list.size();
    const Step step =
        take_plain_child<T>(row, [&]() -> T& { return list.append_in(&reader_.pool()); });
    if (step != Step::taken && list.size() != before) list.remove(before);
    return step;
  }

  template <class Field, class... Facet>
  bool value(int row, Field& field, const Facet&... facet) {
    const Site at = site(row);
    if (!fetch(at, whitespace_of(field, facet...), false)) return false;
    if (!take(at, field, facet...)) return false;
    field.set = true;
    set_due();
    return true;
  }
  template <class Field>
  bool child(Field& field) {
    if (!accept(field.make(&reader_.pool()).unmarshal(reader_, name_))) return false;
    field.set = true;
    set_due();
    return true;
  }

  // A member counts once the event behind it was read as well.
  template <class Field>
  bool member(int next_row, Field& field) {
    if (!field.make(&reader_.pool()).unmarshal(reader_, &name_, &err_)) return false;
    if (!read_due_event(next_row)) return false;
    field.set = true;
    tokenise_from(next_row);
    return true;
  }

  bool fetch(const Site& at, lmx::elmx_whitespace mode, bool in_list);
  bool missing(int row);
  bool missing_group(int next_row);

  lmx::c_xml_reader& reader_;
  lmx::internal::PlainRoad road_;
  std::string& name_;
  lmx::elmx_error& err_;
  const lmx::s_event_map* rows_;
  int line_;
};

// One attribute, whose event is at hand after construction. A case of the switch on event() names
// the field; what it returns says whether the attribute was claimed.
class AttributeReader {
 public:
  AttributeReader(lmx::c_xml_reader& reader, const std::string& name, lmx::elmx_error& err,
                  const lmx::s_event_map* rows, int line)
      : site_{reader, name, err, line} {
    reader.tokenise(rows, lmx::elxp_attribute);
  }

  int event() const { return site_.reader.get_current_event(); }

  template <class Field, class... Facet>
  bool read(Field& field, const Facet&... facet) {
    if (field.set && !site_.pass(lmx::elmx_attribute_already_read)) return false;
    if (!fetch(whitespace_of(field, facet...)) || !take(site_, field, facet...)) return false;
    field.set = true;
    return true;
  }
  // xsi:nil; whatever is neither "true" nor "1" counts as false.
  bool read_nil(bool& nil);

 private:
  bool fetch(lmx::elmx_whitespace mode);

  Site site_;
};

// 25 with the class as item for each required attribute that is not there.
lmx::elmx_error check_attributes(lmx::c_xml_reader& reader, const char* class_name, int line,
                                 std::initializer_list<bool> are_set);

// The value of a class with simple content. `has_text` is false for a tag that ended in "/>", whose
// value is the empty text.
class ContentReader {
 public:
  ContentReader(lmx::c_xml_reader& reader, const std::string& name, lmx::elmx_error& err,
                bool has_text, int line)
      : site_{reader, name, err, line}, has_text_(has_text) {}

  template <class Field, class... Facet>
  bool read(Field& field, const Facet&... facet) {
    if (!fetch(whitespace_of(field, facet...)) || !take(site_, field, facet...)) return false;
    field.set = true;
    return true;
  }

 private:
  bool fetch(lmx::elmx_whitespace mode);

  Site site_;
  bool has_text_;
};

// One alternative of a choice, stored in its slot with the selection. A selection changes only when
// the new alternative is complete. As in a BodyReader, an alternative that is plain is taken whole,
// and what follows it may be left unread.
class ChoiceReader {
 public:
  ChoiceReader(lmx::c_xml_reader& reader, std::string& name, lmx::elmx_error& err,
               const lmx::s_event_map* rows, int line);

  // 0 after a failure that stands; every step is silent then.
  int event() const { return event_; }

  template <class... Facet>
  bool text(Slot& slot, int& chosen, int selection, const Facet&... facet) {
    auto taken = make_owned_in<std::wstring>(&site_.reader.pool());
    if (!value(*taken, facet...)) return false;
    slot.adopt(std::move(taken));
    return chose(chosen, selection);
  }
  bool number(Slot& slot, int& chosen, int selection, const Range& range = {});
  bool enumerated(Slot& slot, int& chosen, int selection, const EnumTable& table);
  template <class T>
  bool integer(Slot& slot, int& chosen, int selection, const IntegerRange& range) {
    T taken{};
    if (!value(taken, range)) return false;
    slot.store(static_cast<std::int64_t>(taken));
    return chose(chosen, selection);
  }
  template <class T>
  bool object(Slot& slot, int& chosen, int selection) {
    T& child = slot.adopt(make_owned_in<T>(&site_.reader.pool()));
    chosen = selection;
    if constexpr (PlainAccess::is_plain<T>) {
      if (is_tag_seen_ && road_.see_text() &&
          PlainAccess::read(child, road_, site_.reader.pool())) {
        return next();
      }
      if (!leave_plain_road()) return false;
    } else if (is_tag_seen_ && road_.has_depth()) {
      road_.hand_over_tag();
    } else if (!leave_plain_road()) {
      return false;
    }
    site_.err = child.unmarshal(site_.reader, name_);
    return site_.err == lmx::elmx_ok && next();
  }
  // None of the alternatives: 31.
  bool unknown() {
    return leave_plain_road() && site_.pass(lmx::elmx_unknown_element_in_complex_content);
  }

 private:
  template <class Target, class... Facet>
  bool value(Target& target, const Facet&... facet) {
    if (is_tag_seen_ && road_.element().attribute_count == 0 && road_.see_text() &&
        convert(road_.element().text, target, facet...)) {
      road_.take_value(whitespace_of(target, facet...));
      return true;
    }
    return leave_plain_road() && fetch(whitespace_of(target, facet...)) &&
           take(site_, target, facet...);
  }
  // Reads the alternative that was only looked at through its event.
  bool leave_plain_road();
  bool fetch(lmx::elmx_whitespace mode);
  bool chose(int& chosen, int selection) {
    chosen = selection;
    return next();
  }
  bool next();

  Site site_;
  std::string& name_;
  const lmx::s_event_map* rows_;
  lmx::internal::PlainRoad road_;
  bool is_tag_seen_ = false;
  bool has_failed_ = false;
  bool may_leave_unread_ = false;
  int event_ = 0;
};

// The member of a substitution group that is at hand.
class MemberReader {
 public:
  MemberReader(lmx::c_xml_reader& reader, std::string& name, lmx::elmx_error& err,
               const lmx::s_event_map* rows, int line);

  int event() const { return event_; }

  // Reads into a member that its holder has stored. Null, where the document named no type that the
  // factory knows, is 44; no handler is asked.
  template <class T>
  bool read(T* member) {
    if (member == nullptr) {
      site_.err = lmx::elmx_unknown_xsi_type;
      return false;
    }
    site_.err = member->unmarshal(site_.reader, name_);
    return site_.err == lmx::elmx_ok && next();
  }
  // The object that the element's xsi:type asks for; null if it has none or the factory refuses.
  template <class T>
  std::unique_ptr<T> make_named() {
    std::unique_ptr<T> member;
    int ns_id = 0;
    if (get_type(&ns_id)) member.reset(T::factory(ns_id, site_.reader.value));
    return member;
  }
  // The same, but a plain T if the element has no xsi:type.
  template <class T>
  std::unique_ptr<T> make_named_or_plain() {
    int ns_id = 0;
    if (!get_type(&ns_id)) return std::unique_ptr<T>(new (site_.reader.pool()) T);
    return std::unique_ptr<T>(T::factory(ns_id, site_.reader.value));
  }
  // Not a member: passed over.
  bool skip();

 private:
  // The name of the type that the element asks for goes to the work string.
  bool get_type(int* ns_id);
  bool next();

  Site site_;
  std::string& name_;
  const lmx::s_event_map* rows_;
  lmx::internal::PlainRoad road_;
  bool may_leave_unread_ = false;
  int event_;
};

// Whether the element at hand is in the table; if it is not, the reader is left as it was.
bool is_in_table(lmx::c_xml_reader& reader, const lmx::s_event_map* rows);

// What is special about the element of one class.
struct ReadSteps {
  bool (*attributes)(void* self, lmx::c_xml_reader& reader, const std::string& name,
                     lmx::elmx_error* err);
  bool (*plain_attributes)(void* self, PlainReader& in);
  lmx::elmx_error (*check_attributes)(void* self, lmx::c_xml_reader& reader);
  bool (*body)(void* self, lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err,
               bool has_text);
  bool (*is_nil)(const void* self);  // null for a class that is not nillable
  bool wants_content;                // an empty element is a fault
  bool is_simple;                    // its content is a value
};

// The element step: attributes, children or content, end tag. `name` is the element's name as the
// document spells it.
lmx::elmx_error read_element(void* self, const ReadSteps& steps, lmx::c_xml_reader& reader,
                             const std::string& name);

// The first tag of a document, which must be this element of the format: 16 if not.
lmx::elmx_error read_root_tag(lmx::c_xml_reader& reader, const char* local_name, int line);

// A document as its sources give it.
struct DocumentTarget {
  void* self;
  lmx::elmx_error (*unmarshal)(void* self, lmx::c_xml_reader& reader);
};

lmx::elmx_error unmarshal_from_file(DocumentTarget target,
                                    const char* file);  // 1: cannot be opened
lmx::elmx_error unmarshal_from_memory(DocumentTarget target, const char* buffer, std::size_t size);

// The factory of a family: a new object of the named type, or null.
template <class T>
struct FactoryRow {
  const char* type_name;
  T* (*make)();
};

template <class T, std::size_t size>
T* make_from(const FactoryRow<T> (&rows)[size], int ns_id, const std::string& type_name) {
  if (ns_id != 1000) return nullptr;
  for (const FactoryRow<T>& row : rows) {
    if (type_name == row.type_name) return row.make();
  }
  return nullptr;
}

template <class Base, class T>
Base* make_new() {
  return new T;
}

}  // namespace zol_v2::internal
