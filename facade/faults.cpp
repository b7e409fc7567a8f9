#include "facade/faults.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <iterator>

#include "facade/internal/diagnosis.h"
#include "facade/internal/nearest.h"
#include "model/reflection.h"

namespace zol_v2 {

namespace {

// Words in braces stand for what the fault knows: its fields, and names out of its path.
struct Sentence {
  std::string_view rule;
  std::string_view text;
};

constexpr Sentence k_sentences[] = {
    // Values.
    {"above-bound", "{item} is {value}, {expected} is allowed"},
    {"below-bound", "{item} is {value}, {expected} is allowed"},
    {"wrong-format", "{item} is {value}, {expected} is expected"},
    {"wrong-length", "{item} is {value}, {expected} is allowed"},
    {"no-time-zone", "{item} is {value}, which has no time zone: {expected} is expected"},
    {"not-enumerated", "{item} is {value}, {allowed} is expected"},
    {"unknown-reference", "{found} in {item} names no entity: {expected}"},
    {"bare-markup", "A mere {found} in {item} must be written {expected}"},
    {"bad-character", "{found} in {item} is no character that a document may hold"},
    // Attributes.
    {"attribute-twice", "The attribute {item} stands twice in {parent}{first}"},
    {"attribute-missing", "{parent} lacks the attribute {element}"},
    {"unknown-attribute", "{element} has no attribute {found}, {expected}"},
    {"undeclared-prefix",
     "The prefix of {found} stands for no namespace that is known here, {expected} is expected"},
    // Elements.
    {"unknown-element", "{found} is unknown in {element}, {expected}"},
    {"misplaced-element", "{element} stands in the wrong place in {parent}: {expected}{first}"},
    {"element-twice", "{element} stands once too often in {parent}{first}"},
    {"alternative-twice", "{found} stands in {element}, which holds one alternative alone{first}"},
    {"element-missing", "{element} is missing in {parent}: {expected}"},
    {"alternative-missing", "{element} lacks one of {allowed}: {expected}"},
    {"text-misplaced", "The text {value} stands in {element}, {expected}"},
    {"element-empty", "{element} is empty, it must hold {expected}"},
    {"element-in-value", "{found} stands in {element}, which holds a value alone"},
    {"not-empty", "{found} stands in {element}, which must be empty{expected}"},
    {"end-tag-mismatch", "{found} stands where {expected} must{start}"},
    {"end-tag-stray", "{found} stands in {element} and ends nothing"},
    {"end-tag-missing", "{expected} is missing before {found}{start}"},
    {"unknown-type", "{element} names the type '{found}', {allowed} is expected"},
    {"type-missing", "{element} names no type: xsi:type must be {allowed}"},
    {"wrong-root", "The document begins with {found}, {expected} is expected"},
    {"wrong-namespace", "{item} is of {found}, {expected} is expected"},
    {"nesting-too-deep", "{item} stands more than {expected} elements deep"},
    // Documents and files, whose sentences are their own.
    {"xml-syntax", "{expected}"},
    {"cut-document", "{expected}"},
    {"bad-encoding", "{expected}"},
    {"document-type", "{expected}"},
    {"no-document", "{expected}"},
    {"bad-archive", "{expected}"},
    {"bad-file", "{expected}"},
};

// How many of the allowed values or elements a sentence names.
constexpr std::size_t k_named = 16;

std::string_view local_name(std::string_view name) { return name.substr(name.find(':') + 1); }

// The name in a step of the path; 0 is the last.
std::string_view step_of(std::string_view path, int from_end) {
  while (from_end-- > 0) {
    const std::size_t slash = path.rfind('/');
    path = path.substr(0, slash == std::string_view::npos ? 0 : slash);
  }
  path = path.substr(path.rfind('/') + 1);
  if (path.substr(0, 1) == "@") path.remove_prefix(1);
  return path.substr(0, path.find('['));
}

std::string list_of(const std::vector<std::string>& names) {
  std::string text;
  const std::size_t count = names.size() <= k_named + 1 ? names.size() : k_named;
  for (std::size_t i = 0; i < count; ++i) {
    if (i != 0) text += i + 1 == names.size() ? " or " : ", ";
    text += names[i];
  }
  if (count < names.size()) text += " or one of " + std::to_string(names.size() - count) + " more";
  return text;
}

// A value in quotes unless it is plainly a number.
std::string quoted(const std::string& value) {
  if (value.empty()) return "empty";
  double number = 0;
  const char* const end = value.data() + value.size();
  const bool is_number =
      std::from_chars(value.data(), end, number).ptr == end || value == "INF" || value == "-INF";
  return is_number ? value : '\'' + value + '\'';
}

std::string place_of(const SourcePlace& place) {
  return "line " + std::to_string(place.line) + ", column " + std::to_string(place.column);
}

std::string word(const Fault& fault, std::string_view name) {
  if (name == "item") return std::string(local_name(fault.item));
  if (name == "found") return fault.found;
  if (name == "value") return quoted(fault.found);
  if (name == "expected") return fault.expected;
  if (name == "allowed") return list_of(fault.allowed);
  if (name == "element") return std::string(step_of(fault.path, 0));
  if (name == "parent") return std::string(step_of(fault.path, 1));
  if (!fault.first) return {};
  return (name == "start" ? ", for the tag in " : ", the other is in ") + place_of(fault.first);
}

}  // namespace

std::string Fault::text() const {
  const auto* const sentence = std::find_if(std::begin(k_sentences), std::end(k_sentences),
                                            [this](const Sentence& s) { return s.rule == rule; });
  std::string_view rest = sentence != std::end(k_sentences) ? sentence->text : "{expected}";
  std::string text;
  while (!rest.empty()) {
    const std::size_t brace = std::min(rest.find('{'), rest.size());
    text += rest.substr(0, brace);
    rest.remove_prefix(brace);
    if (rest.empty()) break;
    const std::size_t end = rest.find('}');
    text += word(*this, rest.substr(1, end - 1));
    rest.remove_prefix(end + 1);
  }
  return text.empty() ? lmx::get_error_description(code) : text;
}

Fault refusal(reflection::Row row, std::string_view text, lmx::elmx_error code) {
  Fault fault;
  fault.code = code;
  fault.item = row.name();
  if (code == lmx::elmx_bad_char_encoding) {
    fault.rule = "bad-encoding";
    fault.expected = fault.item + " must be UTF-8 without a zero";
  } else if (!row.is_simple()) {
    fault.rule = "text-misplaced";
    fault.path = fault.item;
    fault.found = internal::excerpt(text);
    fault.expected = "where only elements may stand";
  } else {
    internal::describe_value(row.table(), code, text, &fault);
  }
  return fault;
}

std::string nearestName(std::string_view found, const std::vector<std::string>& names) {
  std::string nearest;
  std::size_t least = 0;
  for (const std::string& name : names) {
    if (!internal::is_near(found, name)) continue;
    const std::size_t distance = internal::distance(found, name);
    if (!nearest.empty() && distance >= least) continue;
    nearest = name;
    least = distance;
  }
  return nearest;
}

}  // namespace zol_v2
