#include "interchange/internal/conditions.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <utility>

#include "interchange/internal/coordinates.h"
#include "interchange/internal/values.h"

namespace zol_v2::interchange {

namespace {

struct Column {
  std::string_view name;
  std::string_view row;  // of a specification
};

// In the order of the conditions.
constexpr Column k_columns[k_conditions] = {
    {"Illuminant", "IlluminationOptions"},
    {"Observer", "FieldOfView"},
    {"Geometry", "GeometryChoice"},
    {"Quantity", "Spectrum"},
    {"Filter", "DeviceFilter"},
    {"Polarization", "DevicePolarization"},
    {"EmissiveType", "EmissiveType"},
    {"EmissiveMode", "EmissiveMode"},
    {"DensityStatus", "DensityStatus"},
    {"ASTM_Table", "ASTM_Table"},
    {"Gamma", "Gamma"},
};

}  // namespace

std::string_view name_of(Condition condition) {
  return k_columns[static_cast<std::size_t>(condition)].name;
}

bool Conditions::empty() const {
  return std::all_of(values.begin(), values.end(), [](const auto& text) { return text.empty(); });
}

namespace internal {

namespace {

using reflection::ConstRef;
using reflection::Kind;
using reflection::Ref;
using reflection::Row;
using reflection::Shape;
using reflection::Type;

constexpr std::string_view k_attribute_mark = ": ";
constexpr std::string_view k_custom = "Custom";

// "Illuminant_D50" without its first word, "FieldOfView_2_Degree" without its last, too.
std::string_view shortened(std::string_view value) {
  constexpr std::string_view k_degree = "_Degree";
  value.remove_prefix(value.find('_') == std::string_view::npos ? 0 : value.find('_') + 1);
  if (value.size() > k_degree.size() && value.substr(value.size() - k_degree.size()) == k_degree) {
    value.remove_suffix(k_degree.size());
  }
  return value;
}

bool is_alike(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) ==
           std::tolower(static_cast<unsigned char>(y));
  });
}

// Empty if the enumeration has no such value.
std::string_view long_value(Row row, std::string_view text) {
  for (const std::string_view value : row.values()) {
    if (is_alike(value, text) || is_alike(shortened(value), text)) return value;
  }
  return {};
}

// --- Out -----------------------------------------------------------------------------------------

std::string text_of(ConstRef owner, Row row);

// An alternative that is known by its own value needs no name.
bool speaks_for_itself(Row alternative) {
  return alternative.type() && alternative.type().shape() == Shape::simple &&
         !alternative.type().content().values().empty();
}

std::string text_of_object(ConstRef object) {
  const Type type = object.type();
  if (object.is_nil()) return {};
  if (const Row content = type.content()) {
    std::string text = text_of(object, content);
    for (const Row attribute : type.attributes()) {
      if (object.has(attribute)) {
        text += std::string(k_attribute_mark) + text_of(object, attribute);
      }
    }
    return text;
  }
  if (type.is_choice()) {
    const Row chosen = object.chosen();
    if (!chosen) return {};
    const std::string text = text_of(object, chosen);
    return speaks_for_itself(chosen) ? text : std::string(chosen.name()) + ' ' + text;
  }
  std::string text;
  for (const Row row : type.elements()) {
    if (row.kind() == Kind::mark) continue;
    text += (text.empty() ? "" : " ") + text_of(object, row);
  }
  return text;
}

std::string text_of(ConstRef owner, Row row) {
  if (!row.is_simple()) return text_of_object(owner.value(row).child());
  if (row.kind() == Kind::enumerated) {
    return std::string(shortened(utf8_of(owner.value(row))));
  }
  if (row.kind() == Kind::text) return utf8_of(owner.value(row));
  std::string text;
  owner.value(row).append_exact_text(&text);
  return text;
}

// --- In ------------------------------------------------------------------------------------------

std::string store(Ref owner, Row row, std::string_view text);

std::string refusal(Row row, std::string_view text) {
  return std::string(row.name()) + " has no value '" + std::string(text) + '\'';
}

// The first word goes to the first element, and so on.
std::string store_words(Ref object, std::string_view text) {
  for (const Row row : object.type().elements()) {
    if (row.kind() == Kind::mark) continue;
    const std::size_t end = std::min(text.find(' '), text.size());
    std::string fault = store(object, row, text.substr(0, end));
    if (!fault.empty()) return fault;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return {};
}

bool can_be_custom(Row content) { return !long_value(content, k_custom).empty(); }

// "D50", "Custom: LED", or a name that no value has, which is a custom one.
std::string store_content(Ref object, Row row, std::string_view text) {
  const Row content = object.type().content();
  const reflection::RowRange attributes = object.type().attributes();
  const bool has_attribute = attributes.begin() != attributes.end();
  std::string_view head = text;
  std::optional<std::string_view> tail;
  const std::size_t mark = text.find(k_attribute_mark);
  if (has_attribute && mark != std::string_view::npos) {
    head = text.substr(0, mark);
    tail = text.substr(mark + k_attribute_mark.size());
  }
  if (!content.values().empty() && long_value(content, head).empty()) {
    if (!has_attribute || !can_be_custom(content)) return refusal(row, text);
    head = k_custom;
    tail = text;
  }
  std::string fault = store(object, content, head);
  if (fault.empty() && tail) fault = store(object, *attributes.begin(), *tail);
  return fault;
}

std::string store_alternative(Ref choice, Row row, std::string_view text) {
  for (const Row alternative : choice.type().elements()) {
    const std::string_view name = alternative.name();
    if (text.substr(0, name.size()) == name && text.substr(name.size(), 1) == " ") {
      return store(choice, alternative, text.substr(name.size() + 1));
    }
  }
  for (const Row alternative : choice.type().elements()) {
    if (speaks_for_itself(alternative) || alternative.kind() == Kind::text) {
      return store(choice, alternative, text);
    }
  }
  return refusal(row, text);
}

std::string store(Ref owner, Row row, std::string_view text) {
  if (row.is_simple()) {
    if (row.values().empty()) return store_text(owner, row, text);
    const std::string_view value = long_value(row, text);
    return value.empty() ? refusal(row, text) : store_text(owner, row, value);
  }
  const bool is_alternative = row.place() == reflection::Place::alternative;
  const Ref object = is_alternative ? owner.choose(row) : owner.child(row);
  if (object.type().is_choice()) return store_alternative(object, row, text);
  return object.type().content() ? store_content(object, row, text) : store_words(object, text);
}

struct Assumption {
  std::string_view row;
  std::string_view text;  // empty for nil
  std::string_view note;
};

// What stands where something is required and nothing is said.
constexpr Assumption k_assumptions[] = {
    {"DeviceFilter", "", ""},
    {"DevicePolarization", "", ""},
    {"Spectrum", "Reflectance", "the quantity is reflectance"},
    {"IlluminationOptions", "Custom: not known", "the illuminant is not known"},
    {"FieldOfView", "2", "the observer is that of 2 degrees"},
    {"GeometryChoice", "UnknownGeometry not known", "the geometry is not known"},
    {"EmissiveType", "Spot", "the emission is that of a spot"},
    {"EmissiveMode", "NA", "nothing is said of a diffuser"},
};

// What was never said is not said when it is told again.
bool is_assumed(std::string_view text) {
  constexpr std::string_view k_not_known = "not known";
  return text.size() >= k_not_known.size() &&
         text.substr(text.size() - k_not_known.size()) == k_not_known &&
         std::any_of(std::begin(k_assumptions), std::end(k_assumptions),
                     [&](const Assumption& assumption) { return assumption.text == text; });
}

}  // namespace

Conditions conditions_of(ConstRef specification, Losses* losses) {
  Conditions conditions;
  for (const Row row : specification.type().rows()) {
    if (!specification.has(row)) continue;
    const auto* const column = std::find_if(std::begin(k_columns), std::end(k_columns),
                                            [&](const Column& c) { return c.row == row.name(); });
    if (column == std::end(k_columns)) {
      if (losses != nullptr) losses->add(row.name(), specification.count(row));
      continue;
    }
    std::string text = text_of(specification, row);
    if (is_assumed(text)) text.clear();
    conditions.values[static_cast<std::size_t>(column - k_columns)] = std::move(text);
    const ConstRef child = specification.value(row).child();
    if (losses == nullptr || !child || !child.type().is_choice()) continue;
    for (const Row attribute : child.type().attributes()) {
      if (child.has(attribute)) losses->add(attribute.name());
    }
  }
  return conditions;
}

bool can_have(std::string_view space, Condition condition) {
  const Row alternative = space_row(space);
  const Row specification = alternative ? specification_row(alternative.type()) : Row();
  const Column& column = k_columns[static_cast<std::size_t>(condition)];
  return specification && specification.type().row(column.row);
}

std::string store_conditions(Ref specification, const Conditions& conditions, Report* report) {
  for (std::size_t i = 0; i < k_conditions; ++i) {
    const Row row = specification.type().row(k_columns[i].row);
    if (!row || conditions.values[i].empty()) continue;
    std::string fault = store(specification, row, conditions.values[i]);
    if (!fault.empty()) return fault;
  }
  for (const Assumption& assumption : k_assumptions) {
    const Row row = specification.type().row(assumption.row);
    if (!row || !row.is_required() || ConstRef(specification).has(row)) continue;
    if (assumption.text.empty()) {
      (void)specification.child(row).set_nil(true);
    } else {
      (void)store(specification, row, assumption.text);
      report->assume(std::string(assumption.note));
    }
  }
  return {};
}

}  // namespace internal

}  // namespace zol_v2::interchange
