#include "interchange/json.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "facade/files.h"
#include "interchange/internal/values.h"
#include "interchange/internal/writers.h"
#include "model/Zol.h"
#include "model/reflection.h"

namespace zol_v2::interchange {

namespace {

using reflection::ConstRef;
using reflection::Kind;
using reflection::NamedType;
using reflection::Place;
using reflection::Ref;
using reflection::Row;
using reflection::Type;
using reflection::Value;
using Json = nlohmann::ordered_json;

constexpr std::string_view k_content = "value";
constexpr std::string_view k_type = "xsi:type";
constexpr std::string_view k_nil = "xsi:nil";
// As the reader of documents has it; an element takes up to four levels of JSON.
constexpr unsigned k_deepest_element = 512;
constexpr std::size_t k_deepest_level = 4 * k_deepest_element;

// --- Writing -------------------------------------------------------------------------------------

struct TooDeep {};

class JsonWriter {
 public:
  Json object(ConstRef source, unsigned depth = 0) {
    if (depth > k_deepest_element) throw TooDeep();
    Json target = Json::object();
    add_rows(source, depth, &target);
    return target;
  }

 private:
  void add_rows(ConstRef source, unsigned depth, Json* target) {
    const bool is_nil = source.is_nil();
    if (is_nil) (*target)[std::string(k_nil)] = true;
    for (const Row row : is_nil ? source.type().attributes() : source.type().rows()) {
      const unsigned count = row.kind() == Kind::mark ? 0 : source.count(row);
      if (count == 0) continue;
      if (row.kind() == Kind::group) {
        add_rows(source.value(row).child(), depth, target);
        continue;
      }
      Json& member = (*target)[std::string(row.place() == Place::content ? k_content : row.name())];
      if (!row.is_list()) {
        member = value(source.value(row), row, depth);
        continue;
      }
      member = Json::array();
      for (unsigned i = 0; i < count; ++i) {
        member.push_back(value(source.value(row, i), row, depth));
      }
    }
  }

  Json value(const Value& source, Row row, unsigned depth) {
    switch (row.kind()) {
      case Kind::real:
        if (std::isfinite(source.number())) return source.number();
        break;
      case Kind::int32:
      case Kind::uint32:
      case Kind::uint8:
        return source.integer();
      case Kind::truth:
        return source.truth();
      case Kind::text:
      case Kind::enumerated:
        return internal::utf8_of(source);
      case Kind::foreign:
        return source.foreign().text;
      case Kind::member:
        return object(source.child(), depth);
      case Kind::object:
        return named(source.child(), row, depth + 1);
      default:
        break;
    }
    std::string text;
    source.append_exact_text(&text);
    return text;
  }

  Json named(ConstRef source, Row row, unsigned depth) {
    Json rows = object(source, depth);
    const bool names_type =
        row.named_type() == NamedType::required ||
        (row.named_type() == NamedType::optional && source.type() != row.type());
    if (!names_type) return rows;
    Json result = {{std::string(k_type), source.type().type_name()}};
    result.update(rows);
    return result;
  }
};

// --- The tree of a text --------------------------------------------------------------------------

struct Node {
  enum Kind : unsigned char { null, truth, number, text, object, array };

  Kind kind = null;
  std::size_t offset = 0;  // of its first byte
  std::string name;        // of a member
  std::string value;       // of a text, a number, "true" or "false"
  std::vector<Node> items;
};

constexpr std::string_view k_kinds[] = {"null",   "true or false", "a number",
                                        "a text", "an object",     "an array"};

// Goes through a text and tells how far the parser is.
class Cursor {
 public:
  using value_type = char;
  using reference = const char&;
  using pointer = const char*;
  using difference_type = std::ptrdiff_t;
  using iterator_category = std::input_iterator_tag;

  Cursor(const char* at, const char** reached) : at_(at), reached_(reached) {}
  reference operator*() const { return *at_; }
  Cursor& operator++() {
    *reached_ = ++at_;
    return *this;
  }
  Cursor operator++(int) {
    const Cursor before = *this;
    ++*this;
    return before;
  }
  bool operator==(const Cursor& other) const { return at_ == other.at_; }
  bool operator!=(const Cursor& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  const char** reached_;
};

bool is_of_number(char c) {
  return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
}

// Takes the parser's events, which come right behind their tokens.
class TreeBuilder {
 public:
  TreeBuilder(std::string_view text, Report* report) : text_(text), report_(report) {}

  bool parse() {
    reached_ = text_.data();
    const char* ignored = nullptr;
    return Json::sax_parse(Cursor(text_.data(), &reached_),
                           Cursor(text_.data() + text_.size(), &ignored), this);
  }
  const Node& root() const { return root_; }

  bool null() { return add(Node::null, {}, start_of_word()); }
  bool boolean(bool value) { return add(Node::truth, value ? "true" : "false", start_of_word()); }
  bool number_integer(std::int64_t value) { return number(std::to_string(value)); }
  bool number_unsigned(std::uint64_t value) { return number(std::to_string(value)); }
  bool number_float(double value, const std::string&) {
    char digits[32];
    return number({digits, std::to_chars(digits, digits + sizeof digits, value).ptr});
  }
  bool string(std::string& value) { return add(Node::text, std::move(value), start_of_text()); }
  bool binary(Json::binary_t&) { return false; }
  bool start_object(std::size_t) { return open(Node::object); }
  bool key(std::string& name) {
    name_ = std::move(name);
    return true;
  }
  bool end_object() { return close(); }
  bool start_array(std::size_t) { return open(Node::array); }
  bool end_array() { return close(); }

  bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception& error) {
    std::string_view reason = error.what();
    for (const std::string_view before : {"] ", "syntax error while parsing ", "- "}) {
      const std::size_t at = reason.find(before);
      if (at != std::string_view::npos) reason.remove_prefix(at + before.size());
    }
    const std::size_t end = reached();
    report_->fail("bad-json", "This is no JSON: " + std::string(reason),
                  place_of(text_, end == 0 ? 0 : end - 1));
    return false;
  }

 private:
  std::size_t reached() const { return static_cast<std::size_t>(reached_ - text_.data()); }

  std::size_t start_of_word() const {
    std::size_t at = reached();
    while (at > 0 && text_[at - 1] >= 'a' && text_[at - 1] <= 'z') --at;
    return at;
  }
  // The parser has looked at the byte behind a number, unless that is the last.
  std::size_t start_of_number() const {
    std::size_t at = reached();
    if (at > 0 && !is_of_number(text_[at - 1])) --at;
    while (at > 0 && is_of_number(text_[at - 1])) --at;
    return at;
  }
  // In a text stands an odd number of backslashes before every quotation mark.
  std::size_t start_of_text() const {
    std::size_t at = reached() - 1;
    while (at > 0) {
      --at;
      if (text_[at] != '"') continue;
      std::size_t before = at;
      while (before > 0 && text_[before - 1] == '\\') --before;
      if ((at - before) % 2 == 0) break;
    }
    return at;
  }

  bool number(std::string digits) {
    return add(Node::number, std::move(digits), start_of_number());
  }
  bool add(Node::Kind kind, std::string value, std::size_t offset) {
    Node node;
    node.kind = kind;
    node.offset = offset;
    node.value = std::move(value);
    node.name = std::move(name_);
    name_.clear();
    if (open_.empty()) {
      root_ = std::move(node);
    } else {
      open_.back()->items.push_back(std::move(node));
    }
    return true;
  }
  bool open(Node::Kind kind) {
    const std::size_t offset = reached() - 1;
    if (open_.size() == k_deepest_level) {
      report_->fail("nesting",
                    "Objects and arrays stand more than " + std::to_string(k_deepest_level) +
                        " deep in each other",
                    place_of(text_, offset));
      return false;
    }
    add(kind, {}, offset);
    open_.push_back(open_.empty() ? &root_ : &open_.back()->items.back());
    return true;
  }
  // What is open stays where it is: its container gets no further items before it is closed.
  bool close() {
    open_.pop_back();
    return true;
  }

  std::string_view text_;
  Report* report_;
  const char* reached_ = nullptr;
  Node root_;
  std::vector<Node*> open_;
  std::string name_;
};

// --- Reading -------------------------------------------------------------------------------------

class JsonReader {
 public:
  JsonReader(std::string_view text, bool asks_for_all, Report* report)
      : text_(text), asks_for_all_(asks_for_all), report_(report) {}

  void read_root(const Node& root, Ref target) {
    const std::string name(target.type().name());
    if (root.kind != Node::object) return refuse(root, "the object {\"" + name + "\": ...}");
    const Node* found = nullptr;
    for (const Node& member : root.items) {
      if (member.name == "$schema") continue;
      if (member.name != name || found != nullptr) {
        return fail(member, "The document begins with " + quoted(member.name) + ", " + name +
                                " alone is expected");
      }
      found = &member;
    }
    if (found == nullptr) return fail(root, "There is no " + quoted(name));
    path_ = name;
    read_rows(*found, target);
  }

 private:
  bool is_good() const { return report_->faults.empty(); }

  void fail(const Node& node, std::string sentence) {
    report_->fail("bad-json", std::move(sentence), place_of(text_, node.offset));
    report_->faults.back().path = path_;
  }
  void refuse(const Node& node, const std::string& expected) {
    fail(node, "Here stands " + std::string(k_kinds[node.kind]) + ", " + expected + " is expected");
  }

  void read_rows(const Node& node, Ref target) {
    if (node.kind != Node::object) return refuse(node, "an object");
    // A new Header says which library it is of.
    for (const Row row : target.type().rows()) {
      if (row.is_simple() || row.is_list() || row.is_required()) continue;
      if (ConstRef(target).has(row)) (void)target.unset(row);
    }
    bool is_nil = false;
    for (std::size_t i = 0; i < node.items.size() && is_good(); ++i) {
      const Node& member = node.items[i];
      for (std::size_t j = 0; j < i; ++j) {
        if (node.items[j].name == member.name)
          return fail(member, quoted(member.name) + " stands twice");
      }
      if (member.name == k_type) continue;
      if (member.name != k_nil) {
        read_member(member, target);
      } else if (member.kind != Node::truth) {
        refuse(member, "true or false");
      } else {
        is_nil = member.value == "true";
      }
    }
    if (is_nil && is_good() && !target.set_nil(true)) fail(node, "The element can't be nil");
    if (asks_for_all_ && is_good() && !ConstRef(target).is_complete()) {
      fail(node, std::string(target.type().name()) + " lacks " + missing_in(target));
    }
  }

  static std::string missing_in(ConstRef object) {
    for (const Row row : object.type().rows()) {
      if (row.is_required() && !object.has(row)) return std::string(row.name());
    }
    return "what it is to hold";
  }

  void read_member(const Node& member, Ref target) {
    Row row = member.name == k_content ? target.type().content() : target.type().row(member.name);
    for (const Row group : target.type().elements()) {
      if (row || group.kind() != Kind::group) continue;
      row = group.type().row(member.name);
      if (row) target = target.child(group);
    }
    const std::size_t above = path_.size();
    if (!row || row.kind() == Kind::mark) {
      if (!row) fail(member, quoted(member.name) + " is unknown here");
      return;
    }
    if (row.place() == Place::alternative && ConstRef(target).chosen()) {
      return fail(member, quoted(member.name) + " stands beside another alternative");
    }
    path_ += row.is_attribute() ? "/@" : "/";
    path_ += row.place() == Place::content ? "text()" : row.name();
    if (!row.is_list()) {
      read_value(member, row, target);
    } else if (member.kind != Node::array) {
      refuse(member, "an array");
    } else {
      const std::size_t before = path_.size();
      for (std::size_t i = 0; i < member.items.size() && is_good(); ++i) {
        path_ += '[' + std::to_string(i + 1) + ']';
        read_value(member.items[i], row, target);
        path_.resize(before);
      }
    }
    path_.resize(above);
  }

  void read_value(const Node& node, Row row, Ref target) {
    if (row.kind() == Kind::foreign) return read_foreign(node, target);
    if (row.is_simple()) return read_simple(node, row, target);
    if (row.place() == Place::alternative) return read_alternative(node, row, target);
    read_rows(node, row.is_list() ? target.append(row) : target.child(row));
  }

  void read_alternative(const Node& node, Row row, Ref target) {
    for (const Node& member : node.items) {
      if (member.name != k_type) continue;
      for (const Type type : row.type().named_types()) {
        if (type.type_name() != member.value) continue;
        const Ref chosen = target.choose(row, type);
        if (chosen) return read_rows(node, chosen);
      }
      return fail(member, "No type " + quoted(member.value) + " can stand here");
    }
    read_rows(node, target.choose(row));
  }

  void read_simple(const Node& node, Row row, Ref target) {
    if (!is_of_kind(node, row.kind())) {
      const Kind kind = row.kind();
      return refuse(node, kind == Kind::truth ? "true or false"
                          : kind == Kind::text || kind == Kind::enumerated ||
                                  kind == Kind::datetime || kind == Kind::binary
                              ? "a text"
                              : "a number");
    }
    const std::string fault = internal::store_text(target, row, node.value);
    if (!fault.empty()) fail(node, fault);
  }
  static bool is_of_kind(const Node& node, Kind kind) {
    switch (kind) {
      case Kind::truth:
        return node.kind == Node::truth;
      case Kind::real:
        return node.kind == Node::number ||
               (node.kind == Node::text &&
                (node.value == "NaN" || node.value == "INF" || node.value == "-INF"));
      case Kind::int32:
      case Kind::uint32:
      case Kind::uint8:
        return node.kind == Node::number;
      default:
        return node.kind == Node::text;
    }
  }

  // It would stand in a document as it is.
  void read_foreign(const Node& node, Ref target) {
    if (node.kind != Node::text) return refuse(node, "a text");
    LoadReport report;
    if (checkText(node.value, &report) != lmx::elmx_ok) {
      return fail(node, "The foreign element is no XML: " + report.message);
    }
    if (target.as<Revision>()->append_any(node.value) != lmx::elmx_ok) {
      fail(node, "The foreign element can't be kept");
    }
  }

  static std::string quoted(const std::string& name) { return '\'' + name + '\''; }

  std::string_view text_;
  bool asks_for_all_;
  Report* report_;
  std::string path_;
};

}  // namespace

Report write_json(const zol_v2::internal::Object& object, std::string* text, int indent) {
  Report report;
  try {
    const ConstRef source(object);
    Json root;
    root[std::string(source.type().name())] = JsonWriter().object(source);
    *text += root.dump(indent) + '\n';
  } catch (const TooDeep&) {
    report.fail("nesting-too-deep", "Elements stand more than " +
                                        std::to_string(k_deepest_element) + " deep in each other");
  } catch (const Json::type_error&) {
    report.fail("bad-encoding",
                "A text has a surrogate without its partner, which is no character");
  }
  return report;
}

namespace {

Report read_into(std::string_view text, bool asks_for_all, zol_v2::internal::Object* object) {
  Report report;
  TreeBuilder tree(text, &report);
  if (tree.parse()) JsonReader(text, asks_for_all, &report).read_root(tree.root(), *object);
  return report;
}

}  // namespace

Report read_json(std::string_view text, zol_v2::internal::Object* object) {
  return read_into(text, false, object);
}

namespace internal {

Report read_whole_json(std::string_view text, Zol* document) {
  return read_into(text, true, document);
}

}  // namespace internal

}  // namespace zol_v2::interchange
