#include "facade/internal/diagnosis.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>
#include <unordered_map>
#include <utility>

#include "facade/internal/nearest.h"
#include "facade/internal/source_text.h"
#include "lmx/entities.h"
#include "lmx/internal/number_text.h"
#include "lmx/internal/reader_state.h"
#include "lmx/internal/tokeniser.h"
#include "lmx/reader.h"
#include "model/Zol.h"
#include "model/internal/document_namespace.h"
#include "model/internal/object.h"
#include "model/internal/values.h"
#include "model/internal/walkers.h"

namespace zol_v2::internal {

using lmx::elmx_error;

namespace {

constexpr std::size_t k_longest_excerpt = 80;  // in characters

// --- Words --------------------------------------------------------------------------------------

std::string number_words(double value) {
  char text[32];
  const std::to_chars_result end = std::to_chars(text, text + sizeof text, value);
  return std::string(text, end.ptr);
}

std::string with_unit(const Row& row, const std::string& number) {
  return row.unit != nullptr ? number + ' ' + row.unit : number;
}

bool is_number(std::string_view text) {
  double value = 0;
  return lmx::internal::read_double(text, &value);
}

// A number as it was probably meant.
std::string real_words(std::string_view text) {
  std::string mended(text);
  const std::size_t comma = mended.find(',');
  if (comma != std::string::npos) {
    mended[comma] = '.';
    if (is_number(mended)) return mended + " with a decimal point";
  }
  const std::size_t unit = text.find_last_of("0123456789.");
  if (unit != std::string_view::npos && is_number(text.substr(0, unit + 1))) {
    return std::string(text.substr(0, unit + 1)) + " without a unit";
  }
  return "a number such as 0.5";
}

std::string format_words(const Row& row, std::string_view text) {
  switch (row.kind) {
    case Kind::real:
      return real_words(text);
    case Kind::int32:
    case Kind::uint32:
    case Kind::uint8:
      return "a whole number";
    case Kind::truth:
      return "true or false";
    case Kind::datetime:
      return "a date and time such as 2026-01-31T10:00:00Z";
    default:
      return "base64";
  }
}

// What is wrong with a reference, or with a mere bracket.
void explain_reference(Fault* fault, const std::string& text) {
  fault->found = excerpt(text);
  if (text == "<") {
    fault->rule = "bare-markup";
    fault->expected = "&lt;";
  } else if (text == "&") {
    fault->rule = "bare-markup";
    fault->expected = "&amp;";
  } else if (text.substr(0, 2) == "&#") {
    fault->rule = "bad-character";
  } else {
    fault->expected = "define it, or write &amp; for a mere &";
  }
}

std::vector<std::string> values_of(const EnumTable& table) {
  return {table.narrow, table.narrow + table.size};
}

// A value whose facets are all that is asked of it.
class Scratch {
 public:
  elmx_error judge(const Row& row, std::string_view text, Faults& faults) {
    switch (row.kind) {
      case Kind::text:
        return parse(row, text, &text_, nullptr, faults);
      case Kind::enumerated:
        enumerated_ = nullptr;
        return parse(row, text, &enumerated_, nullptr, faults);
      case Kind::datetime:
        return parse(row, text, &date_, nullptr, faults);
      case Kind::binary:
        return parse(row, text, &bytes_, nullptr, faults);
      default:
        return parse(row, text, &number_, nullptr, faults);
    }
  }

 private:
  std::wstring text_;
  const std::wstring* enumerated_ = nullptr;
  lmx::c_datetime date_;
  lmx::c_binary bytes_;
  std::uint64_t number_ = 0;
};

// --- Tables -------------------------------------------------------------------------------------

// The rows between the tags of a class, those of its bases first.
using Order = std::vector<const Row*>;

void append_order(const Class& type, Order* order) {
  if (type.base != nullptr) append_order(*type.base, order);
  for (const Row& row : type.elements()) order->push_back(&row);
}

bool is_transparent(const Row& row) { return row.kind == Kind::member || row.kind == Kind::group; }

// Whether its absence is a fault for the reader: a group of classes may be empty.
bool is_enforced(const Row& row) {
  return row.kind == Kind::group || (row.is_required && row.kind != Kind::member &&
                                     row.kind != Kind::mark && row.kind != Kind::foreign);
}

const Row* row_named(Rows rows, std::string_view name) {
  for (const Row& row : rows) {
    if (row.is_named() && row.name() == name) return &row;
  }
  return nullptr;
}

// The alternative of a holder or group, or the row itself.
const Row* match(const Row& row, std::string_view name) {
  if (is_transparent(row)) return row_named(row.type->alternatives(), name);
  return row.is_named() && row.name() == name ? &row : nullptr;
}

void append_names(const Row& row, std::vector<std::string>* names) {
  if (is_transparent(row)) {
    for (const Row& alternative : row.type->alternatives()) {
      names->emplace_back(alternative.name());
    }
  } else if (row.is_named()) {
    names->emplace_back(row.name());
  }
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i != 0) text += i + 1 == names.size() ? " or " : ", ";
    text += names[i];
  }
  return text;
}

std::string_view local_name(std::string_view name) { return name.substr(name.find(':') + 1); }

std::string_view prefix_of(std::string_view name) {
  const std::size_t colon = name.find(':');
  return name.substr(0, colon == std::string_view::npos ? 0 : colon);
}

// --- The walk -----------------------------------------------------------------------------------

constexpr std::size_t k_none = std::numeric_limits<std::size_t>::max();

// An element that is open.
struct Level {
  const Level* up;
  const Class* type;      // null for a value
  const Row* row;         // in the parent; null for the root
  unsigned number;        // in the path; 0: not numbered there
  std::size_t before;     // a place before its tag, with nothing but what is no content between
  std::size_t reference;  // behind the reference in whose entity it stands, or k_none
  std::string_view full_name;             // as it is written
  bool is_guess = false;                  // the row is the one that was probably meant
  mutable SourceText::Closing closing{};  // what was last found out about its end
};

// What became of a row in one object.
struct RowState {
  std::size_t before = 0;  // its first element, as in Level
  std::size_t reference = k_none;
  std::uint32_t count = 0;
  std::uint32_t came_instead = 0;  // the row that stood where this one was missed
  std::size_t missing_as = 0;      // the number of the fault that says so, from 1
  bool is_settled = false;         // it came later: that row stands in the wrong place
  bool is_guess = false;           // all that came was of a name that is merely near
};

class Walk : public lmx::c_xml_reader_memory {
 public:
  Walk(std::string_view bytes, std::size_t limit, Diagnosis* out)
      : c_xml_reader_memory(bytes.data(), bytes.size()),
        source_(bytes),
        limit_(limit),
        out_(*out) {}

  void run(const Class& type, Object* tree);

 private:
  class Children;
  struct Place {
    Span span;
  };

  // --- Elements
  bool read_root_tag(const Class& type);
  void read_object(const Level& level, Object* self);
  void read_choice(const Level& level, Object* self);
  void read_content(const Level& level, Object* self);
  // An element of the row; of a holder or group `named` is the alternative.
  void read_row(const Level& parent, Object* self, const Row& row, const Row& named,
                unsigned number, bool is_guess);
  void read_alternative(const Level& level, Object* self, const Row& row);
  void read_member(Level level, Object* holder, const Row& row);
  void read_value(const Level& level, Object* self, const Row& row);
  void read_mark(const Level& level);
  void read_foreign(const Level& level, Object* self, const Row& row);
  void check_empty(const Level& level);
  // At an end tag.
  void check_end(const Level& level, elmx_error code);
  void end_wrongly(const Level& level, elmx_error code, std::string_view item);
  bool is_own_end(const Level& level) const {
    return name == level.full_name || (level.is_guess && local_name(name) == level.row->name());
  }
  // An end tag that has no start, while that of the element is still to come.
  bool is_stray_end(const Level& level) {
    return !is_own_end(level) && reference() == k_none && !is_open_above(level.up) &&
           is_closed_behind(level, at());
  }
  // Is the end tag of the element still to come, before that of its parent?
  bool is_closed_behind(const Level& level, std::size_t from) const {
    if (level.closing.at <= from) {
      level.closing = source_.closing(
          from, level.full_name, level.up != nullptr ? level.up->full_name : std::string_view());
    }
    return level.closing.is_first;
  }
  void note_stray_end(const Level& level, elmx_error code, std::string_view item) {
    Fault* const fault = note(&level, code, "end-tag-stray", item, here());
    if (fault != nullptr) fault->found = "</" + excerpt(name) + ">";
  }
  bool is_open_above(const Level* level) const;
  // Behind an element in the given one: is the end of that one at hand, or of one further out?
  bool is_left(const Level& level);
  // Has the given element no end tag before the tag at hand, which has no place in it, but in one
  // further out? That is noted, and the tag left to them.
  bool is_unclosed(const Level& level, elmx_error code, std::string_view item);
  // The rest of an element of which nothing more is to be told. With `is_at_hand`, something in it
  // is at hand.
  void skip_rest(const Level& level, bool is_at_hand);
  // The element at hand, whatever it is.
  void skip_element(const Level& parent);

  // --- Attributes
  // Whether the element says that it is nil.
  bool read_attributes(const Level& level, Object* self);
  void read_attribute(const Level& level, Object* self, const Row& row, bool is_again);
  void note_bad_attribute(const Level& level, std::string_view row_name);
  void check_attributes(const Level& level, const Class& type, std::uint32_t seen,
                        std::size_t* stray);
  // Whether it was told which one it was meant to be.
  bool note_unknown_attribute(const Level& level, std::uint32_t* seen);
  void note_undeclared(const Level& level);
  SourceText::Attribute attribute_here(const Level& level);

  // --- Values
  // The text up to the next tag; false after a fault in it.
  bool fetch_content(const Level& level, const Row& row, elmx_error bracket_code, Span* span);
  bool is_bare_bracket(const Level& level);
  void store(const Level& level, Object* self, const Row& row, const Span& span);
  elmx_error take(Object* self, const Row& row);
  void note_value(const Level& level, const Row& row, elmx_error code, const Place& place,
                  std::string_view item, std::string_view step);

  // --- Events
  // Moves on. False where the text can't be read on, which is noted with the given item, or else
  // the name at hand; `code` is then that of the reader, which others may hide.
  bool next(const Level* level, const std::string_view* item, elmx_error code = lmx::elmx_ok);
  bool next_in(const Level& level, elmx_error code = lmx::elmx_ok) {
    return next(&level, &level.full_name, code);
  }
  void note_broken(const Level* level, elmx_error code, std::string_view item);
  int event() const { return get_current_event(); }
  bool is_start() const { return is_current_event_tokenisable(); }
  bool is_end() const { return event() == lmx::elxp_end_tag; }
  bool is_ours() const { return get_element_ns_id() == namespace_; }

  // --- Places
  std::size_t at() const { return static_cast<std::size_t>(bytes_read()); }
  std::size_t reference() {
    return tokeniser().getter().get_entity_stack_depth() == 0 ? k_none : at();
  }
  Place tag_place(const Level& level) const;
  // Of the tag or text at hand.
  Place here();
  static void put(SourcePlace* out, const Place& place) {
    out->line = 1;  // until the lines are counted
    out->offset = place.span.begin;
  }

  // --- Faults
  // A new one at the level's path, or null if no more are kept.
  Fault* note(const Level* level, elmx_error code, std::string_view rule, std::string_view item,
              const Place& place);
  void set_path(Fault* fault, const Level* level);
  static void add_step(Fault* fault, const Row& row, unsigned number);
  // The number of the last one, also if it was not kept.
  std::size_t last_number() const {
    return out_.count > out_.faults.size() ? k_none : out_.faults.size();
  }
  void drop(std::size_t number);
  std::string shown_name(std::string_view full_name) const;
  void note_text(const Level& level, elmx_error code, std::string_view item, std::string expected);
  // An element that no row bears. `meant` is the name that it probably should have.
  void note_unknown(const Level& level, elmx_error code, std::string_view item,
                    std::vector<std::string> allowed, std::string_view meant);

  Object* child_of(Object* self, const Row& row);
  Object* appended(Object* self, const Row& row);
  const Class* member_class(const Level& level, const Row& alternative);
  const Order& order_of(const Class& type);

  const SourceText source_;
  const std::size_t limit_;
  Diagnosis& out_;
  int namespace_ = k_document_namespace_id;
  std::string prefix_;      // of the root
  std::size_t before_ = 0;  // the last event
  bool is_over_ = false;
  bool is_unwinding_ = false;    // the end tag at hand is that of an element further out
  bool is_handed_back_ = false;  // the start tag at hand belongs to an element further out
  bool has_no_code_ = false;     // the reader saw what ended the walk, and said nothing
  std::vector<RowState> states_;
  std::vector<std::string> undeclared_;  // prefixes of attributes that were told of
  std::unordered_map<const Class*, Order> orders_;
  Scratch scratch_;
  RefuseFaults refuse_;
};

void Walk::run(const Class& type, Object* tree) {
  set_ns_map(document_ns_map());
  const lmx::c_xml_reader_local scope(*this);
  if (read_root_tag(type)) {
    out_.has_root = true;
    const std::string root_name = name;
    read_object({nullptr, &type, nullptr, 0, before_, reference(), root_name}, tree);
    is_unwinding_ = false;
  }
  out_.is_complete = !is_over_;
  auto& faults = out_.faults;
  faults.erase(std::remove_if(faults.begin(), faults.end(),
                              [](const Fault& fault) { return fault.rule.empty(); }),
               faults.end());
  std::vector<SourcePlace*> places;
  for (Fault& fault : faults) {
    for (SourcePlace* const place : {&fault.place, &fault.first}) {
      if (*place) places.push_back(place);
    }
  }
  source_.find_lines(std::move(places));
}

bool Walk::read_root_tag(const Class& type) {
  if (!next(nullptr, nullptr)) return false;
  if (event() == lmx::elxp_name) {
    prefix_ = prefix_of(name);
    const bool is_named = get_local_view() == type.name;
    if (is_named && is_ours()) return true;
    Fault* const fault = note(nullptr, lmx::elmx_element_not_found,
                              is_named ? "wrong-namespace" : "wrong-root", name, here());
    if (fault != nullptr) {
      fault->found = name;
      fault->expected = "the element " + std::string(type.name);
      fault->allowed = {type.name};
      if (is_named) {
        std::string uri;
        get_namespace(name, &uri);
        const bool is_undeclared = uri == k_namespace_not_found;
        fault->found = is_undeclared && get_has_ns_prefix()
                           ? "the prefix '" + prefix_ + "', which is not declared"
                       : is_undeclared || uri.empty() ? "no namespace"
                                                      : "the namespace '" + excerpt(uri) + "'";
        fault->allowed = {k_document_namespace};
        fault->expected = std::string("'") + k_document_namespace + "'";
      }
    }
    // What stands in it is judged as if it were of the right one.
    if (is_named) {
      namespace_ = get_element_ns_id();
      return true;
    }
  } else if (Fault* const fault =
                 note(nullptr, lmx::elmx_element_not_found, "wrong-root", name, here())) {
    fault->found = event() == lmx::elxp_text ? '\'' + excerpt(name) + '\'' : "an end tag";
    fault->expected = "the element " + std::string(type.name);
    fault->allowed = {type.name};
  }
  is_over_ = true;
  return false;
}

// --- Faults -------------------------------------------------------------------------------------

Fault* Walk::note(const Level* level, elmx_error code, std::string_view rule, std::string_view item,
                  const Place& place) {
  ++out_.count;
  if (out_.faults.size() >= limit_) return nullptr;
  Fault& fault = out_.faults.emplace_back();
  fault.code = code;
  fault.rule = rule;
  fault.item = item;
  put(&fault.place, place);
  fault.length = place.span.size();
  if (level != nullptr) set_path(&fault, level);
  return &fault;
}

// What turned out to be no fault of its own.
void Walk::drop(std::size_t number) {
  --out_.count;
  if (number != k_none) out_.faults[number - 1].rule = {};
}

void Walk::add_step(Fault* fault, const Row& row, unsigned number) {
  if (!row.is_named() && !is_transparent(row)) return;
  fault->path.append("/").append(row.name());
  if (number != 0) fault->path.append("[").append(std::to_string(number)).append("]");
}

void Walk::set_path(Fault* fault, const Level* level) {
  std::vector<const Level*> way;
  for (; level != nullptr; level = level->up) way.push_back(level);
  std::vector<std::size_t> ends(way.size());
  for (std::size_t i = way.size(); i-- > 0;) {
    const Level& step = *way[i];
    if (step.row == nullptr) {
      fault->path += step.type->name;
    } else {
      add_step(fault, *step.row, step.number);
    }
    ends[i] = fault->path.size();
  }
  for (std::size_t i = 0; i < way.size(); ++i) {
    const Row* const row = way[i]->type != nullptr ? name_row(*way[i]->type) : nullptr;
    if (row == nullptr || way[i]->reference != k_none) continue;
    const Place tag = tag_place(*way[i]);
    const SourceText::Attribute attribute = source_.attribute(tag.span.begin, row->name());
    if (attribute.value.size() == 0) continue;
    fault->object = excerpt(source_.text(attribute.value));
    fault->object_at = ends[i];
    return;
  }
}

// Without the prefix that the document has for the format.
std::string Walk::shown_name(std::string_view full_name) const {
  return excerpt(prefix_of(full_name) == prefix_ ? local_name(full_name) : full_name);
}

Walk::Place Walk::tag_place(const Level& level) const {
  if (level.reference != k_none) return {source_.reference_before(level.reference)};
  return {source_.tag_head(source_.skip_to_content(level.before))};
}

Walk::Place Walk::here() {
  if (const std::size_t behind = reference(); behind != k_none) {
    return {source_.reference_before(behind)};
  }
  const std::size_t begin = source_.skip_to_content(before_);
  if (event() == lmx::elxp_text) return {source_.trimmed({begin, std::max(begin, at())})};
  return {source_.tag_head(begin)};
}

void Walk::note_text(const Level& level, elmx_error code, std::string_view item,
                     std::string expected) {
  if (Fault* const fault = note(&level, code, "text-misplaced", item, here())) {
    const std::size_t end = name.find_last_not_of(" \t\r\n");
    fault->found = excerpt(std::string_view(name).substr(0, end + 1));
    fault->expected = std::move(expected);
  }
}

void Walk::note_unknown(const Level& level, elmx_error code, std::string_view item,
                        std::vector<std::string> allowed, std::string_view meant) {
  Fault* const fault = note(&level, code, "unknown-element", item, here());
  if (fault == nullptr) return;
  fault->found = shown_name(name);
  const std::string local = get_local_name();
  sort_by_distance(local, &allowed);
  if (!meant.empty()) {
    const auto found = std::find(allowed.begin(), allowed.end(), meant);
    if (found != allowed.end()) allowed.erase(found);
    allowed.emplace(allowed.begin(), meant);
  }
  if (!is_ours()) {
    fault->found = excerpt(name);
    if (get_has_ns_prefix() && get_element_ns_id() == lmx::k_ns_not_found) {
      fault->expected = "its prefix is not declared: ";
    } else {
      std::string uri;
      get_namespace(name, &uri);
      fault->expected = uri.empty() || uri == k_namespace_not_found
                            ? "it is of no namespace: "
                            : "it is of the namespace '" + excerpt(uri) + "': ";
    }
  }
  const std::string with_prefix = is_ours() || prefix_.empty() ? std::string() : prefix_ + ':';
  fault->expected += !meant.empty()    ? with_prefix + std::string(meant) + " is expected"
                     : allowed.empty() ? "nothing more may stand there"
                     : code == lmx::elmx_bad_end_of_element ? joined(allowed) + " may stand there"
                                                            : joined(allowed) + " must stand there";
  fault->allowed = std::move(allowed);
}

// --- Events -------------------------------------------------------------------------------------

bool Walk::next(const Level* level, const std::string_view* item, elmx_error code) {
  if (is_over_) return false;
  before_ = at();
  elmx_error error = lmx::elmx_ok;
  get_element_event(nullptr, &error, &name);
  if (event() != lmx::elxp_error && event() != lmx::elxp_end_of_input && error == lmx::elmx_ok) {
    return true;
  }
  if (code != lmx::elmx_ok) error = code;
  has_no_code_ = error == lmx::elmx_ok;
  if (!has_no_code_) {
    note_broken(level, error, item != nullptr ? *item : std::string_view(name));
  } else if (level != nullptr) {
    note_broken(level, lmx::elmx_bad_end_of_element, level->full_name);
  } else {
    note_broken(level, lmx::elmx_element_not_found, name);
  }
  return false;
}

// Where the text can't be read on.
void Walk::note_broken(const Level* level, elmx_error code, std::string_view item) {
  is_over_ = true;
  lmx::elmx_error_type type = lmx::elmx_none;
  elmx_error cause = lmx::elmx_ok;
  int line = 0;
  const bool is_fatal = get_error_info(&type, &cause, &line) && type == lmx::elmx_fatal;
  if (!is_fatal) cause = code;

  const std::size_t from = source_.skip_to_content(before_);
  const std::size_t last = std::min(at() + 4, source_.size());
  const std::size_t bad = source_.bad_utf8(std::min(from, at()), last);
  const Level* open = level;
  if (bad < last && !is_fatal) {
    Fault* const fault = note(level, code, "bad-encoding", item, {{bad, bad + 1}});
    if (fault == nullptr) return;
    char hex[3];
    std::snprintf(hex, sizeof hex, "%02X",
                  static_cast<unsigned>(static_cast<unsigned char>(source_.bytes()[bad])));
    fault->found = hex;
    fault->expected = std::string("The byte ") + hex +
                      " is no UTF-8: save the document as UTF-8, or declare its encoding, as "
                      "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?> does";
    return;
  }
  if (!is_fatal && (cause == lmx::elmx_unexpected_end || at() >= source_.size())) {
    Fault* const fault =
        note(level, code, "cut-document", item, {{source_.size(), source_.size()}});
    if (fault == nullptr) return;
    fault->expected =
        source_.size() == source_.begin() ? "The document is empty" : "The document ends too early";
    if (open != nullptr) {
      fault->expected += ": <" + std::string(open->full_name) + "> has no end tag";
      put(&fault->first, tag_place(*open));
    } else if (source_.size() != source_.begin()) {
      fault->expected += ": it has no element";
    }
    return;
  }
  std::string_view rule = "xml-syntax";
  std::string words;
  const Span tag = source_.tag(from);
  Place place{{from, std::min(std::max(tag.end, from), source_.size())}};
  switch (cause) {
    case lmx::elmx_bad_char_encoding:
    case lmx::elmx_encoding_mismatch:
    case lmx::elmx_bad_xml_decl:
    case lmx::elmx_bad_xml_version: {
      rule = "bad-encoding";
      place.span = source_.tag(source_.skip_space(source_.begin(), source_.size()));
      const std::string declared = excerpt(source_.text(source_.declared_encoding()));
      if (cause == lmx::elmx_encoding_mismatch) {
        words = "The declaration says '" + declared + "', but the bytes are " +
                (source_.is_utf8() ? "UTF-8" : "UTF-16");
      } else if (cause == lmx::elmx_bad_char_encoding && !declared.empty()) {
        words = "The encoding '" + declared +
                "' is not known here, UTF-8, UTF-16, ISO-8859-1 or US-ASCII is expected";
      } else if (cause == lmx::elmx_bad_char_encoding) {
        words = "The characters are of no encoding that is known here, UTF-8 is expected";
      } else {
        rule = "xml-syntax";
        place.span = source_.tag(source_.find(std::max(before_, source_.begin()), "<?xml"));
        words = cause == lmx::elmx_bad_xml_version
                    ? "The XML version must be 1.0 or 1.1"
                    : "The XML declaration must stand once, at the very beginning, as <?xml "
                      "version=\"1.0\" encoding=\"UTF-8\"?>";
      }
      break;
    }
    case lmx::elmx_bad_dtd:
      rule = "document-type";
      place.span = source_.tag_head(source_.find(std::max(before_, source_.begin()), "<!DOCTYPE"));
      words =
          "The document type is broken, stands behind content, or has entities that name "
          "themselves or grow beyond measure: take it out";
      break;
    default: {
      const SourceText::Attribute broken =
          source_.is_bare_bracket(from) ? SourceText::Attribute() : source_.broken_attribute(from);
      const std::string text = excerpt(source_.text(tag));
      if (broken.name.size() == 0) {
        words = "The markup " + text +
                " can't be read: a tag is <name attribute=\"value\">, and a mere < is &lt;";
        break;
      }
      const std::string attribute = excerpt(source_.text(broken.name));
      place.span = broken.name;
      words = broken.value.size() == 0 ? "The attribute " + attribute +
                                             " has no value: " + attribute + "=\"...\" is expected"
                                       : "The value of " + attribute + " must stand in quotes";
    }
  }
  if (Fault* const fault = note(level, code, rule, item, place)) {
    fault->found =
        excerpt(source_.text({place.span.begin, std::min(place.span.begin + 64, place.span.end)}));
    fault->expected = std::move(words);
  }
}

bool Walk::is_open_above(const Level* level) const {
  for (; level != nullptr; level = level->up) {
    if (name == level->full_name) return true;
  }
  return false;
}

// --- Elements -----------------------------------------------------------------------------------

const Order& Walk::order_of(const Class& type) {
  const auto [found, is_new] = orders_.try_emplace(&type);
  if (is_new) append_order(type, &found->second);
  return found->second;
}

// A nilled element, behind its start tag.
void Walk::check_empty(const Level& level) {
  if (is_end() || !next_in(level)) return;
  if (is_end()) return check_end(level, lmx::elmx_bad_end_of_element);
  if (Fault* const fault =
          note(&level, lmx::elmx_bad_end_of_element, "not-empty", level.full_name, here())) {
    fault->found = event() == lmx::elxp_text ? "The text '" + excerpt(name) + '\''
                                             : "The element " + shown_name(name);
    fault->expected = ", since it says xsi:nil";
  }
  skip_rest(level, true);
}

void Walk::check_end(const Level& level, elmx_error code) {
  if (!is_own_end(level)) end_wrongly(level, code, std::string(level.full_name));
}

// At an end tag that is another's.
void Walk::end_wrongly(const Level& level, elmx_error code, std::string_view item) {
  if (Fault* const fault = note(&level, code, "end-tag-mismatch", item, here())) {
    fault->found = (is_end() ? "</" : "<") + excerpt(name) + ">";
    fault->expected = "</" + std::string(level.full_name) + ">";
    put(&fault->first, tag_place(level));
  }
  is_unwinding_ = is_open_above(level.up);
}

bool has_row(const Order& order, std::string_view name) {
  return std::any_of(order.begin(), order.end(),
                     [name](const Row* row) { return match(*row, name) != nullptr; });
}

bool Walk::is_unclosed(const Level& level, elmx_error code, std::string_view item) {
  if (!is_ours() || level.up == nullptr || reference() != k_none) return false;
  const std::string_view local = get_local_view();
  bool is_known = false;
  for (const Level* at = level.up; at != nullptr && !is_known; at = at->up) {
    const Class& type = at->type->content_class();
    is_known = type.is_choice() ? row_named(type.alternatives(), local) != nullptr
                                : has_row(order_of(type), local);
  }
  if (!is_known) return false;
  const bool is_again = name == level.full_name;
  const bool is_closed = is_closed_behind(level, is_again ? at() : before_);
  if (!is_again && is_closed) return false;
  if (is_again && !is_closed) {
    // An end tag that lost its slash.
    end_wrongly(level, code, item);
    is_unwinding_ = false;
    if (!skip_start_tag(nullptr)) is_over_ = true;
    return true;
  }
  if (Fault* const fault = note(&level, code, "end-tag-missing", item, here())) {
    fault->found = "<" + excerpt(name) + ">";
    fault->expected = "</" + std::string(level.full_name) + ">";
    put(&fault->first, tag_place(level));
  }
  is_handed_back_ = true;
  return true;
}

bool Walk::is_left(const Level& level) {
  if (is_over_ || is_handed_back_) return true;
  if (!is_unwinding_) return false;
  is_unwinding_ = !is_own_end(level);
  return true;
}

void Walk::skip_rest(const Level& level, bool is_at_hand) {
  while (!is_over_) {
    if (!is_at_hand && !next_in(level)) return;
    is_at_hand = false;
    if (is_end()) return check_end(level, lmx::elmx_bad_end_of_element);
    if (!is_start()) continue;
    skip_element(level);
    if (is_left(level)) return;
  }
}

void Walk::skip_element(const Level& parent) {
  // Deep nesting costs no stack here.
  std::vector<std::string> open;
  do {
    if (is_start()) {
      std::string full_name = name;
      bool is_empty = false;
      if (!skip_start_tag(&is_empty)) return note_broken(&parent, get_error(), full_name);
      if (!is_empty) open.push_back(std::move(full_name));
    } else if (is_end()) {
      const auto found = std::find(open.rbegin(), open.rend(), name);
      if (found != open.rbegin()) {
        if (Fault* const fault = note(&parent, lmx::elmx_bad_end_of_element, "end-tag-mismatch",
                                      open.back(), here())) {
          fault->found = "</" + excerpt(name) + ">";
          fault->expected = "</" + open.back() + ">";
        }
        is_unwinding_ = found == open.rend() && is_open_above(&parent);
        if (is_unwinding_) return;
      }
      // A name that nobody has is that of the innermost.
      const auto closed = found == open.rend() ? 1 : found - open.rbegin() + 1;
      open.resize(open.size() - static_cast<std::size_t>(closed));
    }
    if (open.empty()) return;
  } while (next(&parent, nullptr));
}

// --- Children -----------------------------------------------------------------------------------

// The elements of one object, against the rows of its class in their order.
class Walk::Children {
 public:
  Children(Walk& walk, const Level& level, Object* self)
      : walk_(walk),
        level_(level),
        self_(self),
        order_(walk.order_of(level.type->content_class())),
        base_(walk.states_.size()) {
    walk_.states_.resize(base_ + order_.size());
  }
  Children(const Children&) = delete;
  Children& operator=(const Children&) = delete;
  ~Children() { walk_.states_.resize(base_); }

  // The reader took what it could not read for something in the way, with the code of that.
  void mend_code() {
    if (!std::exchange(walk_.has_no_code_, false) || walk_.last_number() == k_none) return;
    Fault& fault = walk_.out_.faults.back();
    fault.code = code_in_the_way(&fault.item);
  }

  // From the first event on, which is at hand and no end tag.
  void read() {
    bool is_behind_text = false;
    while (true) {
      if (walk_.is_end()) {
        if (!walk_.is_stray_end(level_)) break;
        // What stands before it was to be its start, if that is text.
        if (!std::exchange(is_behind_text, false)) {
          std::string item;
          const elmx_error code = code_in_the_way(&item);
          walk_.note_stray_end(level_, code, item);
        }
      } else if (walk_.is_start()) {
        read_element();
        is_behind_text = false;
      } else if (!std::exchange(is_behind_text, true)) {
        read_text();
      }
      if (is_unclosed_) return;
      if (std::exchange(walk_.is_handed_back_, false)) continue;
      if (walk_.is_left(level_)) break;
      if (!walk_.next(&level_, nullptr)) return mend_code();
    }
    if (walk_.is_over_ || walk_.is_unwinding_) return;
    if (!walk_.is_own_end(level_)) {
      std::string item;
      const elmx_error code = code_in_the_way(&item);
      return walk_.end_wrongly(level_, code, item);
    }
    note_missing(order_.size());
  }

 private:
  RowState& state(std::size_t index) { return walk_.states_[base_ + index]; }
  const Row& row(std::size_t index) const { return *order_[index]; }
  bool is_taken(std::size_t index) {
    return state(index).count != 0 && !row(index).is_list && !state(index).is_guess;
  }
  bool is_missing(std::size_t index) {
    const RowState& at = state(index);
    return is_enforced(row(index)) && at.count == 0 && at.missing_as == 0 && !at.is_settled;
  }

  // What the reader says of something that no row takes from here on.
  elmx_error code_in_the_way(std::string* item) {
    for (std::size_t i = from_; i < order_.size(); ++i) {
      if (!is_missing(i)) continue;
      item->assign(row(i).kind == Kind::group ? "" : row(i).tag);
      return lmx::elmx_mandatory_element_missing;
    }
    item->assign(level_.full_name);
    return lmx::elmx_bad_end_of_element;
  }
  // The row from `begin` to `end` that the element at hand belongs to.
  std::size_t find(std::size_t begin, std::size_t end, const Row** named) {
    const std::string_view name = walk_.get_local_view();
    const bool is_ours = walk_.is_ours();
    for (std::size_t i = begin; i < end; ++i) {
      if (row(i).kind == Kind::foreign) {
        *named = &row(i);
        return i;
      }
      if (is_ours && (*named = match(row(i), name)) != nullptr) return i;
    }
    return k_none;
  }

  void read_element() {
    const Row* named = nullptr;
    if (const std::size_t index = find(from_, order_.size(), &named); index != k_none) {
      return accept(index, *named);
    }
    if (const std::size_t index = find(0, from_, &named); index != k_none) {
      return accept_late(index, *named);
    }
    read_unknown();
  }

  void accept(std::size_t index, const Row& named) {
    note_missing(index);
    excused_ = k_none;
    if (is_taken(index)) return refuse_second(index, named);
    if (state(index).missing_as != 0) settle(index);
    take(index, named);
  }

  // An element whose turn is over.
  void accept_late(std::size_t index, const Row& named) {
    excused_ = k_none;
    if (state(index).missing_as != 0) {
      settle(index);
    } else if (is_taken(index)) {
      return refuse_second(index, named);
    } else if (!state(index).is_guess) {
      note_late(index, named);
    }
    state(index).is_guess = false;
    take(index, named);
  }

  void take(std::size_t index, const Row& named, bool is_guess = false) {
    RowState& at = state(index);
    if (at.count == 0) {
      at.before = walk_.before_;
      at.reference = walk_.reference();
    }
    ++at.count;
    from_ = row(index).is_list ? index : index + 1;
    walk_.read_row(level_, self_, row(index), named, number_of(index, named, true), is_guess);
  }

  // In a path.
  unsigned number_of(std::size_t index, const Row& named, bool is_new) {
    if (!row(index).is_list) return 0;
    if (!is_transparent(row(index))) return std::max(state(index).count, 1u);
    auto found = std::find_if(members_.begin(), members_.end(),
                              [&](const auto& entry) { return entry.first == &named; });
    if (found == members_.end()) found = members_.insert(members_.end(), {&named, 0});
    if (is_new) ++found->second;
    return found->second > 1 ? found->second : 0;
  }

  void read_unknown() {
    const Row* named = nullptr;
    const std::size_t meant = find_meant(&named);
    if (meant != k_none) note_missing(meant);
    std::string item;
    const elmx_error code = code_in_the_way(&item);
    if (meant == k_none && walk_.is_unclosed(level_, code, item)) {
      is_unclosed_ = true;
      return;
    }
    // What may stand here: all up to the first that must.
    std::vector<std::string> allowed;
    std::size_t last = from_;
    while (last < order_.size() && !is_missing(last)) ++last;
    for (std::size_t i = from_; i <= last && i < order_.size(); ++i) {
      if (row(i).is_list || state(i).count == 0) append_names(row(i), &allowed);
    }
    walk_.note_unknown(level_, code, item, std::move(allowed),
                       named != nullptr ? named->name() : std::string_view());
    excused_ = k_none;
    if (meant != k_none) {
      state(meant).is_guess = state(meant).count == 0;
      return take(meant, *named, true);
    }
    if (last < order_.size()) excused_ = last;
    walk_.skip_element(level_);
  }

  // The row whose name is nearest to that at hand, if it is near.
  std::size_t find_meant(const Row** named) {
    const std::string name = walk_.get_local_name();
    const bool is_ours = walk_.is_ours();
    std::size_t best = k_none;
    std::size_t least = k_none;
    const auto look_at = [&](std::size_t index, const Row& candidate) {
      if (!is_ours && candidate.name() != name) return;
      if (!is_near(name, candidate.name())) return;
      const std::size_t halves = distance(name, candidate.name());
      if (halves >= least) return;
      least = halves;
      best = index;
      *named = &candidate;
    };
    for (std::size_t i = from_; i < order_.size(); ++i) {
      if (state(i).count != 0 && !row(i).is_list) continue;
      if (is_transparent(row(i))) {
        for (const Row& alternative : row(i).type->alternatives()) look_at(i, alternative);
      } else if (row(i).is_named()) {
        look_at(i, row(i));
      }
    }
    return best;
  }

  void read_text() {
    std::string item;
    const elmx_error code = code_in_the_way(&item);
    std::string expected = "where only elements may stand";
    excused_ = k_none;
    if (code == lmx::elmx_mandatory_element_missing) {
      for (excused_ = from_; !is_missing(excused_);) ++excused_;
      std::vector<std::string> names;
      append_names(row(excused_), &names);
      expected = "where " + joined(names) + " is expected";
    }
    walk_.note_text(level_, code, item, std::move(expected));
  }

  // What is required before the row with the given index, which is at hand, or before the end.
  void note_missing(std::size_t index) {
    for (std::size_t i = from_; i < index; ++i) {
      if (!is_missing(i) || i == excused_) continue;
      const bool is_group = row(i).kind == Kind::group;
      Fault* const fault = walk_.note(&level_, lmx::elmx_mandatory_element_missing,
                                      is_group ? "alternative-missing" : "element-missing",
                                      is_group ? "" : row(i).tag, walk_.here());
      state(i).missing_as = walk_.last_number();
      state(i).came_instead = static_cast<std::uint32_t>(index);
      if (fault == nullptr) continue;
      if (!is_group) add_step(fault, row(i), row(i).is_list ? 1 : 0);
      append_names(row(i), &fault->allowed);
      fault->found = walk_.is_end() ? "</" + walk_.name + ">" : walk_.shown_name(walk_.name);
      fault->expected = "it must stand before " + fault->found;
    }
  }

  // What was missed came after all, so that what stood there instead was too early. That is one
  // fault, whatever else was missed there.
  void settle(std::size_t index) {
    const std::size_t number = std::exchange(state(index).missing_as, 0);
    state(index).is_settled = true;
    const std::size_t early = state(index).came_instead;
    for (std::size_t i = 0; i < order_.size(); ++i) {
      if (i != index && state(i).is_settled && state(i).came_instead == early) {
        return walk_.drop(number);
      }
    }
    if (number == k_none) return;
    Fault& fault = walk_.out_.faults[number - 1];
    fault.rule = "misplaced-element";
    fault.path.clear();
    walk_.set_path(&fault, &level_);
    fault.path.append("/").append(fault.found);
    if (row(early).is_list && !is_transparent(row(early))) fault.path += "[1]";
    fault.expected = walk_.shown_name(walk_.name) + " must stand before it";
    put(&fault.first, walk_.here());
  }

  void note_late(std::size_t index, const Row& named) {
    std::string item;
    const elmx_error code = code_in_the_way(&item);
    Fault* const fault = walk_.note(&level_, code, "misplaced-element", item, walk_.here());
    if (fault == nullptr) return;
    const unsigned number = row(index).is_list ? state(index).count + 1 : 0;
    add_step(fault, named, is_transparent(row(index)) && number < 2 ? 0 : number);
    fault->found = walk_.shown_name(walk_.name);
    for (std::size_t i = index + 1; i < order_.size(); ++i) {
      if (state(i).count == 0) continue;
      std::vector<std::string> names;
      append_names(row(i), &names);
      fault->expected = "it must stand before " + joined(names);
      put(&fault->first,
          walk_.tag_place(
              {&level_, nullptr, order_[i], 0, state(i).before, state(i).reference, {}}));
      return;
    }
  }

  // A single row again, or another alternative of a holder or group.
  void refuse_second(std::size_t index, const Row& named) {
    std::string item;
    const elmx_error code = code_in_the_way(&item);
    if (Fault* const fault = walk_.note(&level_, code, "element-twice", item, walk_.here())) {
      add_step(fault, named, 0);
      fault->found = walk_.shown_name(walk_.name);
      put(&fault->first, walk_.tag_place({&level_,
                                          nullptr,
                                          order_[index],
                                          0,
                                          state(index).before,
                                          state(index).reference,
                                          {}}));
    }
    walk_.skip_element(level_);
  }

  Walk& walk_;
  const Level& level_;
  Object* const self_;
  const Order& order_;
  const std::size_t base_;
  std::size_t from_ = 0;          // the first row whose turn is not over
  std::size_t excused_ = k_none;  // a row instead of which something else stands
  bool is_unclosed_ = false;
  std::vector<std::pair<const Row*, unsigned>> members_;  // how many of each alternative
};

void Walk::read_object(const Level& level, Object* self) {
  const lmx::internal::ElementDepthGuard depth(*this);
  if (!depth.ok()) {
    if (Fault* const fault = note(&level, lmx::elmx_not_well_formed, "nesting-too-deep",
                                  level.full_name, tag_place(level))) {
      fault->expected = std::to_string(lmx::internal::ElementDepthGuard::k_max_depth);
    }
    is_over_ = true;
    return;
  }
  const bool is_nil = read_attributes(level, self);
  if (is_over_) return;
  const lmx::c_xml_reader_local children(*this);
  const Class& content = level.type->content_class();
  if (is_nil) return check_empty(level);
  if (content.shape == Shape::simple) return read_content(level, self);
  if (!is_end() && !next_in(level)) {
    if (content.shape != Shape::choice) return Children(*this, level, self).mend_code();
    if (has_no_code_ && last_number() != k_none) {
      out_.faults.back().code = lmx::elmx_unknown_element_in_complex_content;
      out_.faults.back().item = name;
    }
    return;
  }
  // A tag that is its own end leaves the name as it was.
  if (!is_end()) {
    return content.shape == Shape::choice ? read_choice(level, self)
                                          : Children(*this, level, self).read();
  }
  const bool is_fault = level.type->is(Class::k_wants_content);
  if (!is_own_end(level)) {
    return end_wrongly(level,
                       is_fault ? lmx::elmx_unexpected_empty_element : lmx::elmx_bad_end_of_element,
                       level.full_name);
  }
  if (!is_fault) return;
  Fault* const fault = note(&level, lmx::elmx_unexpected_empty_element, "element-empty",
                            level.full_name, tag_place(level));
  if (fault == nullptr) return;
  if (content.is_choice()) {
    for (const Row& row : content.alternatives()) append_names(row, &fault->allowed);
    fault->expected = joined(fault->allowed);
    return;
  }
  for (const Row* const row : order_of(content)) {
    if (!is_enforced(*row)) continue;
    std::vector<std::string> names;
    append_names(*row, &names);
    if (!fault->expected.empty()) fault->expected += " and ";
    fault->expected += joined(names);
    for (std::string& one : names) fault->allowed.push_back(std::move(one));
  }
}

// An element that holds one of its alternatives, from the first event on.
void Walk::read_choice(const Level& level, Object* self) {
  const Class& type = level.type->content_class();
  const auto names = [&type] {
    std::vector<std::string> all;
    for (const Row& row : type.alternatives()) append_names(row, &all);
    return all;
  };
  Place first;
  bool is_chosen = false;
  bool is_behind_text = false;
  while (true) {
    // Before the first alternative the reader misses one, behind it the end.
    const elmx_error code =
        is_chosen ? lmx::elmx_bad_end_of_element : lmx::elmx_unknown_element_in_complex_content;
    const std::string item = is_chosen ? std::string(level.full_name) : name;
    if (is_end()) {
      if (!is_stray_end(level)) break;
      if (!std::exchange(is_behind_text, false)) note_stray_end(level, code, item);
    } else if (!is_start()) {
      if (!std::exchange(is_behind_text, true)) {
        note_text(level, code, item,
                  is_chosen ? "where only elements may stand"
                            : "where " + joined(names()) + " is expected");
      }
    } else {
      is_behind_text = false;
      const Row* row = is_ours() ? row_named(type.alternatives(), get_local_view()) : nullptr;
      const bool is_guess = row == nullptr;
      if (row == nullptr) {
        if (is_unclosed(level, code, item)) return;
        const std::string local = get_local_name();
        for (const Row& candidate : type.alternatives()) {
          const bool is_nearer =
              row == nullptr || distance(local, candidate.name()) < distance(local, row->name());
          if (!is_chosen && is_nearer &&
              (is_ours() ? is_near(local, candidate.name()) : candidate.name() == local)) {
            row = &candidate;
          }
        }
        note_unknown(level, code, item, is_chosen ? std::vector<std::string>() : names(),
                     row != nullptr ? row->name() : std::string_view());
      } else if (is_chosen) {
        if (Fault* const fault = note(&level, code, "alternative-twice", item, here())) {
          fault->found = shown_name(name);
          fault->allowed = names();
          put(&fault->first, first);
        }
        row = nullptr;
      }
      if (row == nullptr) {
        skip_element(level);
      } else {
        first = here();
        is_chosen = true;
        const std::string full_name = name;
        read_alternative({&level, nullptr, row, 0, before_, reference(), full_name, is_guess}, self,
                         *row);
      }
    }
    if (std::exchange(is_handed_back_, false)) continue;
    if (is_left(level)) break;
    if (!next(&level, nullptr)) return;
  }
  if (!is_over_ && !is_unwinding_) check_end(level, lmx::elmx_bad_end_of_element);
}

// --- One element --------------------------------------------------------------------------------

Object* Walk::child_of(Object* self, const Row& row) {
  if (self == nullptr) return nullptr;
  Head::touch(*self, row.bit);
  if (row.is_in_place()) return &row.field<Object>(*self);
  Object*& child = row.field<Object*>(*self);
  if (child == nullptr) child = row.type->make(&pool());
  return child;
}

Object* Walk::appended(Object* self, const Row& row) {
  if (self == nullptr) return nullptr;
  auto& list = row.field<PointerList>(*self);
  list.reserve(list.size() + 1);
  Object* const object = row.type->make(&pool());
  list.push_back(object);
  return object;
}

// An element that adds nothing to its type reads as that.
const Class& read_as(const Class& type) { return type.is_nillable() ? type : type.content_class(); }

void Walk::read_row(const Level& parent, Object* self, const Row& row, const Row& named,
                    unsigned number, bool is_guess) {
  const std::string full_name = name;
  Level level{&parent, nullptr, &named, number, before_, reference(), full_name, is_guess};
  switch (row.kind) {
    case Kind::object:
      level.type = &read_as(*row.type);
      return read_object(level, row.is_list ? appended(self, row) : child_of(self, row));
    case Kind::member:
      return read_member(level, row.is_list ? appended(self, row) : child_of(self, row), named);
    case Kind::group:
      return read_alternative(level, child_of(self, row), named);
    case Kind::foreign:
      return read_foreign(level, self, row);
    case Kind::mark:
      return read_mark(level);
    default:
      return read_value(level, self, row);
  }
}

void Walk::read_alternative(const Level& level, Object* self, const Row& row) {
  if (row.kind != Kind::object) return read_value(level, self, row);
  Slot slot;
  slot.object = nullptr;
  if (self != nullptr) {
    slot.object = row.type->make(&pool());
    select(*self, row, slot);
  }
  Level typed = level;
  typed.type = &read_as(*row.type);
  read_object(typed, slot.object);
}

// The class that the element of an alternative asks for; null after a fault.
const Class* Walk::member_class(const Level& level, const Row& alternative) {
  if (alternative.named_type == NamedType::no) return alternative.type;
  int ns_id = 0;
  const bool is_named = get_xsi_type(&ns_id, &value);
  if (!is_named && alternative.named_type == NamedType::optional) return alternative.type;
  const Class* const* type = alternative.type->factory;
  if (is_named && ns_id == namespace_) {
    for (; type != nullptr && *type != nullptr; ++type) {
      if (value == (*type)->name) return *type;
    }
  }
  Place place = tag_place(level);
  std::string found;
  const char* const prefix = get_reader_local()->find_namespace_prefix(lmx::k_ns_xsi);
  if (is_named && prefix != nullptr && level.reference == k_none) {
    const auto attribute = source_.attribute(place.span.begin, std::string(prefix) + ":type");
    found = excerpt(source_.text(attribute.value));
    place.span = attribute.value;
  }
  if (Fault* const fault =
          note(&level, lmx::elmx_unknown_xsi_type, is_named ? "unknown-type" : "type-missing",
               get_full_name(), place)) {
    fault->found = found;
    const std::string with_colon = prefix_.empty() ? std::string() : prefix_ + ':';
    for (type = alternative.type->factory; type != nullptr && *type != nullptr; ++type) {
      fault->allowed.push_back(with_colon + (*type)->name);
    }
    sort_by_distance(found, &fault->allowed);
  }
  return nullptr;
}

void Walk::read_member(Level level, Object* holder, const Row& row) {
  const Class* const type = member_class(level, row);
  if (type == nullptr) return skip_element(*level.up);
  Slot slot;
  slot.object = nullptr;
  if (holder != nullptr) {
    slot.object = type->make(&pool());
    select(*holder, row, slot);
  }
  level.type = &read_as(*type);
  read_object(level, slot.object);
}

// An empty element that nobody asks for. The reader does not even take a comment in it.
void Walk::read_mark(const Level& level) {
  bool is_empty = false;
  if (!skip_start_tag(&is_empty)) {
    return note_broken(&level, lmx::elmx_bad_end_of_element, level.full_name);
  }
  if (is_empty) return;
  const std::size_t begin = source_.skip_space(at(), source_.size());
  const bool is_short = level.reference != k_none || source_.text(source_.tag_head(begin)) ==
                                                         "</" + std::string(level.full_name);
  if (!next_in(level, lmx::elmx_bad_end_of_element)) return;
  if (is_end() && (is_short || !is_own_end(level))) {
    return check_end(level, lmx::elmx_bad_end_of_element);
  }
  if (Fault* const fault =
          note(&level, lmx::elmx_bad_end_of_element, "not-empty", level.full_name, here())) {
    fault->found = is_end()                    ? "A comment"
                   : event() == lmx::elxp_text ? "The text '" + excerpt(name) + '\''
                                               : "The element " + shown_name(name);
  }
  skip_rest(level, true);
}

// Any element, as text.
void Walk::read_foreign(const Level& level, Object* self, const Row& row) {
  auto element = make_owned_in<AnyElement>(&pool());
  element->full_name = name;
  get_namespace(name, &element->namespace_uri);
  const std::size_t begin = at();
  if (get_any_element(*get_reader_local(), name, &element->text)) {
    if (self == nullptr) return;
    auto& list = row.field<PointerList>(*self);
    list.reserve(list.size() + 1);
    list.push_back(element.release());
    return;
  }
  const Span reference = source_.reference_before(at());
  if (reference.begin < begin || at() >= source_.size()) {
    return note_broken(&level, lmx::elmx_bad_element_value, level.full_name);
  }
  if (Fault* const fault = note(&level, lmx::elmx_bad_element_value, "unknown-reference",
                                level.full_name, {reference})) {
    explain_reference(fault, source_.text(reference));
  }
  // How many elements are open in it is not known.
  while (next_in(level)) {
    if (!is_end()) {
      if (is_start() && !skip_start_tag(nullptr)) return;
      continue;
    }
    if (is_own_end(level)) return;
    is_unwinding_ = is_open_above(level.up);
    if (is_unwinding_) return;
  }
}

// --- Attributes ---------------------------------------------------------------------------------

bool Walk::read_attributes(const Level& level, Object* self) {
  const Class& type = *level.type;
  bool is_nil = false;
  std::uint32_t seen = 0;
  std::size_t stray = 0;  // the fault of an unknown one, by its number
  elmx_error error = lmx::elmx_ok;
  while (get_attribute_event(nullptr, &error, &attribute_name)) {
    if (error != lmx::elmx_ok) {
      note_broken(&level, error, level.full_name);
      return false;
    }
    bool is_xsi = lmx::c_xml_reader::is_xsi_attribute(attribute_name);
    const bool is_instance = get_local_view() == "nil" || get_local_view() == "type";
    if (!is_xsi && get_has_ns_prefix() &&
        (get_ns_id() == lmx::k_ns_not_found || (is_instance && get_ns_id() != namespace_))) {
      note_undeclared(level);
      is_xsi = true;
    }
    if (is_xsi && get_local_view() == "nil" && type.is_nillable()) {
      if (get_attribute_value(&value, lmx::elmx_collapse)) {
        is_nil = value == "true" || value == "1";
      } else {
        note_bad_attribute(level, {});
      }
      continue;
    }
    const Row* row = nullptr;
    for (const Class* at = &type; at != nullptr && row == nullptr; at = at->base) {
      if (!get_has_ns_prefix()) row = row_named(at->attributes(), get_local_view());
    }
    if (row != nullptr) {
      const std::uint32_t bit = std::uint32_t{1} << row->bit;
      read_attribute(level, self, *row, (seen & bit) != 0);
      seen |= bit;
      continue;
    }
    if (!is_xsi && !note_unknown_attribute(level, &seen)) stray = last_number();
    skip_attribute_value();
  }
  check_attributes(level, type, seen, &stray);
  if (self != nullptr && is_nil) {
    Head::flags(*self) |= std::uint32_t{1} << type.nil_bit;
  }
  return is_nil;
}

SourceText::Attribute Walk::attribute_here(const Level& level) {
  const Place tag = tag_place(level);
  if (level.reference != k_none) return {tag.span, tag.span};
  return source_.attribute(tag.span.begin, attribute_name);
}

void Walk::read_attribute(const Level& level, Object* self, const Row& row, bool is_again) {
  if (is_again) {
    const SourceText::Attribute first = attribute_here(level);
    SourceText::Attribute second = first;
    if (level.reference == k_none) {
      second = source_.attribute(tag_place(level).span.begin, attribute_name, 1);
    }
    if (Fault* const fault = note(&level, lmx::elmx_attribute_already_read, "attribute-twice",
                                  attribute_name, {second.name})) {
      fault->path.append("/@").append(row.name());
      fault->found = excerpt(source_.text(second.value));
      put(&fault->first, {first.name});
    }
    skip_attribute_value();
    return;
  }
  if (!get_attribute_value(&value, whitespace_of(row))) {
    return note_bad_attribute(level, row.name());
  }
  const elmx_error error = take(self, row);
  if (error == lmx::elmx_ok) return;
  note_value(level, row, error, {attribute_here(level).value}, attribute_name, "/@");
}

// A reference that stands for nothing in the value of an attribute.
void Walk::note_bad_attribute(const Level& level, std::string_view row_name) {
  const Span whole = attribute_here(level).value;
  const Span reference = source_.strange_reference(whole);
  const Span span = reference.size() != 0 ? reference : whole;
  Fault* const fault =
      note(&level, lmx::elmx_bad_attribute_value, "unknown-reference", attribute_name, {span});
  if (fault == nullptr) return;
  if (!row_name.empty()) fault->path.append("/@").append(row_name);
  explain_reference(fault, source_.text(span));
}

// One that is missing beside one that is unknown is the same mistake.
void Walk::check_attributes(const Level& level, const Class& type, std::uint32_t seen,
                            std::size_t* stray) {
  if (type.base != nullptr) check_attributes(level, *type.base, seen, stray);
  for (const Row& row : type.attributes()) {
    if (!row.is_required || (seen >> row.bit & 1) != 0) continue;
    if (const std::size_t number = std::exchange(*stray, 0); number != 0) {
      if (number != k_none)
        out_.faults[number - 1].expected = std::string(row.name()) + " is expected";
      continue;
    }
    if (Fault* const fault = note(&level, lmx::elmx_required_attributes_missing,
                                  "attribute-missing", type.name, tag_place(level))) {
      fault->path.append("/@").append(row.name());
      fault->expected = row.name();
      fault->allowed = {std::string(row.name())};
    }
  }
}

// A prefix that nothing declares is one fault, however often it is used.
void Walk::note_undeclared(const Level& level) {
  const std::string prefix(prefix_of(attribute_name));
  if (std::find(undeclared_.begin(), undeclared_.end(), prefix) != undeclared_.end()) return;
  undeclared_.push_back(prefix);
  Fault* const fault = note(&level, lmx::elmx_unexpected_attribute, "undeclared-prefix",
                            level.full_name, {attribute_here(level).name});
  if (fault == nullptr) return;
  fault->found = excerpt(attribute_name);
  const bool is_instance =
      local_name(attribute_name) == "nil" || local_name(attribute_name) == "type";
  fault->expected = is_instance ? "xmlns:" + excerpt(prefix) + "=\"" + lmx::k_xsi_uri + "\""
                                : "an attribute without a prefix";
}

// One that is called nearly like a row stands for it: its absence is no fault beside.
bool Walk::note_unknown_attribute(const Level& level, std::uint32_t* seen) {
  std::vector<std::string> allowed;
  const Row* meant = nullptr;
  const std::string local = get_local_name();
  for (const Class* at = level.type; at != nullptr; at = at->base) {
    for (const Row& row : at->attributes()) {
      if ((*seen >> row.bit & 1) != 0) continue;
      allowed.emplace_back(row.name());
      if (!is_near(local, row.name())) continue;
      if (meant == nullptr || distance(local, row.name()) < distance(local, meant->name())) {
        meant = &row;
      }
    }
  }
  if (meant != nullptr) *seen |= std::uint32_t{1} << meant->bit;
  Fault* const fault = note(&level, lmx::elmx_unexpected_attribute, "unknown-attribute",
                            level.full_name, {attribute_here(level).name});
  if (fault == nullptr) return meant != nullptr;
  sort_by_distance(local, &allowed);
  fault->found = excerpt(attribute_name);
  if (meant != nullptr) {
    fault->expected = std::string(meant->name()) + " is expected";
  } else {
    fault->expected =
        allowed.empty() ? "none may stand there" : joined(allowed) + " may stand there";
  }
  fault->allowed = std::move(allowed);
  return meant != nullptr;
}

// --- Values -------------------------------------------------------------------------------------

// Judges the work string, and stores it if there is where.
elmx_error Walk::take(Object* self, const Row& row) {
  if (self == nullptr) {
    if (row.kind == Kind::text && row.length == 0) return lmx::elmx_ok;
    return scratch_.judge(row, value, refuse_);
  }
  if (row.place == zol_v2::internal::Place::alternative)
    return parse_alternative(*self, row, value, &pool(), refuse_);
  if (!row.is_list) return parse_into(*self, row, value, &pool(), refuse_);
  auto& list = row.field<PointerList>(*self);
  list.reserve(list.size() + 1);
  elmx_error error = lmx::elmx_ok;
  void* const entry = parse_new(row, value, &pool(), refuse_, &error);
  if (error == lmx::elmx_ok) list.push_back(entry);
  return error;
}

// Behind a value: does a "<" follow that begins no markup, and the end tag somewhere behind it?
bool Walk::is_bare_bracket(const Level& level) {
  return reference() == k_none && level.up != nullptr && source_.is_bare_bracket(at()) &&
         is_closed_behind(level, at());
}

bool Walk::fetch_content(const Level& level, const Row& row, elmx_error bracket_code, Span* span) {
  span->begin = at();
  bool is_good = get_element_value(&value, whitespace_of(row), true);
  span->end = at();
  if (is_good && !is_bare_bracket(level)) return true;
  Place place;
  elmx_error code = lmx::elmx_bad_element_value;
  if (is_good) {
    // The reader looks for the end of what it takes for a tag, which is that of the end tag.
    place.span = source_.bracket(at());
    code = bracket_code;
    if (code == lmx::elmx_not_well_formed) {
      // It judged the value already.
      const elmx_error error = scratch_.judge(row, value, refuse_);
      if (error != lmx::elmx_ok) {
        code = error;
      } else if (source_.has_slash(place.span.end)) {
        code = lmx::elmx_bad_end_tag;
      }
    }
  } else {
    place.span = source_.reference_before(at());
    if (get_error() == lmx::elmx_not_well_formed || at() >= source_.size() ||
        source_.bad_utf8(span->begin, at()) < at() || place.span.begin < span->begin) {
      note_broken(&level, lmx::elmx_bad_element_value, level.full_name);
      return false;
    }
  }
  if (Fault* const fault = note(&level, code, "unknown-reference", level.full_name, place)) {
    explain_reference(fault, source_.text(place.span));
  }
  // Up to the end of the value.
  while (true) {
    const std::size_t from = at();
    if (is_good) {
      if (!is_bare_bracket(level)) break;
      tokeniser().getter().get();
    }
    is_good = get_element_value(&value, lmx::elmx_preserve, true);
    if (!is_good && at() == from) break;
  }
  return false;
}

// Of an element that holds nothing else.
void Walk::read_value(const Level& level, Object* self, const Row& row) {
  // The reader of a list tells less.
  const auto code = [&row](elmx_error error) {
    return row.is_list ? lmx::elmx_bad_element_value : error;
  };
  bool is_empty = false;
  if (!skip_start_tag(&is_empty)) {
    note_broken(&level, code(lmx::elmx_bad_start_tag_end), level.full_name);
    return;
  }
  value.clear();
  Span span;
  if (is_empty) return store(level, self, row, tag_place(level).span);
  const bool is_told = !fetch_content(level, row, code(lmx::elmx_bad_end_of_element), &span);
  if (is_over_) return;
  const std::string text = value;
  if (!next_in(level, code(lmx::elmx_bad_end_of_element))) return;
  if (!is_end()) {
    if (!is_told && is_start() &&
        is_unclosed(level, code(lmx::elmx_bad_end_of_element), level.full_name)) {
      return;
    }
    Fault* const fault = is_told ? nullptr
                                 : note(&level, code(lmx::elmx_bad_end_of_element),
                                        "element-in-value", level.full_name, here());
    if (fault != nullptr) fault->found = shown_name(name);
    return skip_rest(level, true);
  }
  if (is_stray_end(level)) {
    if (!is_told) note_stray_end(level, code(lmx::elmx_bad_end_of_element), level.full_name);
    return skip_rest(level, false);
  }
  if (!is_own_end(level)) {
    if (!is_told) return end_wrongly(level, code(lmx::elmx_bad_end_of_element), level.full_name);
    is_unwinding_ = is_open_above(level.up);
    return;
  }
  if (is_told) return;
  value = text;
  store(level, self, row, span);
}

// The value of an element with attributes.
void Walk::read_content(const Level& level, Object* self) {
  const Row& row = level.type->content_class().content();
  value.clear();
  if (is_end()) return store(level, self, row, tag_place(level).span);
  Span span;
  const std::uint64_t told = out_.count;
  if (fetch_content(level, row, lmx::elmx_not_well_formed, &span)) store(level, self, row, span);
  if (is_over_ || !next_in(level)) return;
  const bool is_told = out_.count != told;
  if (is_end()) {
    if (is_own_end(level)) return;
    if (is_stray_end(level)) {
      if (!is_told) note_stray_end(level, lmx::elmx_bad_end_of_element, level.full_name);
      return skip_rest(level, false);
    }
    if (!is_told) return end_wrongly(level, lmx::elmx_bad_end_of_element, level.full_name);
    is_unwinding_ = is_open_above(level.up);
    return;
  }
  if (!is_told && is_start() && is_unclosed(level, lmx::elmx_bad_end_of_element, level.full_name)) {
    return;
  }
  Fault* const fault = is_told ? nullptr
                               : note(&level, lmx::elmx_bad_end_of_element, "element-in-value",
                                      level.full_name, here());
  if (fault != nullptr) fault->found = shown_name(name);
  skip_rest(level, true);
}

void Walk::store(const Level& level, Object* self, const Row& row, const Span& span) {
  const elmx_error error = take(self, row);
  if (error == lmx::elmx_ok) return;
  Place place{span};
  if (level.reference != k_none) {
    place = tag_place(level);
  } else if (whitespace_of(row) != lmx::elmx_preserve) {
    place.span = source_.trimmed(span);
  }
  const bool is_content = row.place == zol_v2::internal::Place::content;
  note_value(level, row, error, place, level.full_name,
             is_content ? "/text()" : std::string_view());
}

void Walk::note_value(const Level& level, const Row& row, elmx_error code, const Place& place,
                      std::string_view item, std::string_view step) {
  Fault* const fault = note(&level, code, {}, item, place);
  if (fault == nullptr) return;
  fault->path.append(step);
  if (row.place == zol_v2::internal::Place::attribute) fault->path.append(row.name());
  describe_value(row, code, value, fault);
}

}  // namespace

// --- The face -----------------------------------------------------------------------------------

void describe_value(const Row& row, elmx_error code, std::string_view text, Fault* fault) {
  fault->found = excerpt(text);
  switch (code) {
    case lmx::elmx_value_too_big:
      fault->rule = "above-bound";
      fault->expected = upper_bound_words(row);
      break;
    case lmx::elmx_value_too_small:
      fault->rule = "below-bound";
      fault->expected = lower_bound_words(row);
      break;
    case lmx::elmx_length_too_long:
    case lmx::elmx_length_too_short:
      fault->rule = "wrong-length";
      fault->expected = "exactly " + std::to_string(row.length) +
                        (row.length == 1 ? " character" : " characters");
      break;
    case lmx::elmx_no_pattern_match:
      fault->rule = "no-time-zone";
      fault->expected = fault->found + "Z or an offset such as +01:00";
      break;
    case lmx::elmx_value_not_enumerated:
      fault->rule = "not-enumerated";
      fault->allowed = values_of(*row.enumeration);
      sort_by_distance(text, &fault->allowed);
      break;
    default:
      fault->rule = "wrong-format";
      fault->expected = format_words(row, text);
  }
}

std::string lower_bound_words(const Row& row) {
  if (row.lower_end != End::none) {
    return (row.lower_end == End::strict ? "more than " : "at least ") +
           with_unit(row, number_words(row.lower));
  }
  return row.kind == Kind::int32 ? "at least -2147483648" : "at least 0";
}

std::string upper_bound_words(const Row& row) {
  if (row.upper_end != End::none) {
    return (row.upper_end == End::strict ? "less than " : "at most ") +
           with_unit(row, number_words(row.upper));
  }
  return row.kind == Kind::int32    ? "at most 2147483647"
         : row.kind == Kind::uint32 ? "at most 4294967295"
                                    : "at most 255";
}

const Row* name_row(const Class& type) {
  constexpr std::string_view k_name = "Name";
  for (const Class* level = &type; level != nullptr; level = level->base) {
    for (const Row& row : level->attributes()) {
      const std::string_view name = row.name();
      if (row.kind == Kind::text && name.size() >= k_name.size() &&
          name.substr(name.size() - k_name.size()) == k_name) {
        return &row;
      }
    }
  }
  return nullptr;
}

std::string excerpt(std::string_view utf8) {
  std::string text;
  std::size_t characters = 0;
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80 && ++characters > k_longest_excerpt) return text + "\xE2\x80\xA6";
    text += byte < 0x20 || byte == 0x7F ? ' ' : c;
  }
  return text;
}

Diagnosis diagnose(std::string_view bytes, const Class& type, std::size_t limit, Object* tree) {
  Diagnosis diagnosis;
  Walk(bytes, limit, &diagnosis).run(type, tree);
  return diagnosis;
}

}  // namespace zol_v2::internal
