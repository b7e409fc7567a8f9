#include "interchange/internal/coordinates.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "interchange/internal/values.h"
#include "model/Zol.h"

namespace zol_v2::interchange::internal {

namespace {

using reflection::ConstRef;
using reflection::Kind;
using reflection::Place;
using reflection::Ref;
using reflection::Row;
using reflection::Shape;
using reflection::Type;
using reflection::Value;

constexpr std::string_view k_prefix = "ColorSpace";
constexpr std::string_view k_suffix = "Type";
constexpr std::string_view k_nil = "nil";
constexpr std::string_view k_luminance = "CapY";
constexpr std::string_view k_name = "Name";

// The format tells the chromaticity y from the luminance Y by another name.
bool has_chromaticity(Type space) { return static_cast<bool>(space.row(k_luminance)); }
std::string_view spelled(Type space, std::string_view row) {
  if (!has_chromaticity(space)) return row;
  return row == k_luminance ? "Y" : row == "X" ? "x" : row == "Y" ? "y" : row;
}
std::string_view row_name(Type space, std::string_view axis) {
  if (!has_chromaticity(space)) return axis;
  return axis == "Y" ? k_luminance : axis == "x" ? "X" : axis == "y" ? "Y" : axis;
}

// Of all members of the family.
bool is_common(Type space, Row row) {
  while (space.base()) space = space.base();
  return static_cast<bool>(space.row(row.name()));
}

// A specification, another space, and whatever holds one of those.
bool holds_family_member(Type type) {
  if (type.is_polymorphic()) return true;
  for (const Row row : type.elements()) {
    if (row.type() && row.type().is_polymorphic()) return true;
  }
  return false;
}

bool is_foreign_to_axes(Row row) {
  return row.type() &&
         (holds_family_member(row.type()) || row.type() == CustomAttributeType::k_class ||
          row.name() == "CustomAttributes");
}

// Entries that their attributes tell apart: points of a spectrum, densities.
bool is_labelled(Row row) {
  return row.is_list() && row.type() && row.type().shape() == Shape::simple;
}

class Collector {
 public:
  Collector(std::vector<Coordinate>* found, Losses* losses) : found_(*found), losses_(losses) {}

  void collect_space(ConstRef space) {
    for (const Row row : space.type().rows()) {
      const unsigned count = space.count(row);
      if (count == 0 || row == specification_row(space.type()) ||
          (row.is_attribute() && row.name() == k_name)) {
        continue;
      }
      if (is_common(space.type(), row)) {
        lose(row, count);
      } else if (is_labelled(row)) {
        for (unsigned i = 0; i < count; ++i) add_entry(space.value(row, i).child());
      } else {
        collect_row(space, row, std::string(spelled(space.type(), row.name())));
      }
    }
  }

 private:
  void lose(Row row, unsigned count) {
    if (losses_ != nullptr) losses_->add(row.name(), count);
  }

  void add_entry(ConstRef entry) {
    std::string label;
    for (const Row attribute : entry.type().attributes()) {
      if (!label.empty()) label += ' ';
      entry.value(attribute).append_exact_text(&label);
    }
    add(entry.value(entry.type().content()), entry.type().content(), std::move(label));
  }

  void collect_row(ConstRef owner, Row row, const std::string& axis) {
    const unsigned count = owner.count(row);
    if (is_foreign_to_axes(row)) return lose(row, count);
    for (unsigned i = 0; i < count; ++i) {
      const std::string name = row.is_list() ? axis + '[' + std::to_string(i + 1) + ']' : axis;
      const Value value = owner.value(row, i);
      if (row.is_simple()) {
        add(value, row, name);
      } else {
        collect_object(value.child(), name);
      }
    }
  }

  void collect_object(ConstRef object, const std::string& axis) {
    if (object.is_nil()) return add_nil(axis);
    for (const Row row : object.type().rows()) {
      if (row.place() == Place::content) {
        add(object.value(row), row, axis);
      } else {
        collect_row(object, row,
                    axis + (row.is_attribute() ? "/@" : "/") + std::string(row.name()));
      }
    }
  }

  void add_nil(const std::string& axis) {
    Coordinate coordinate;
    coordinate.axis = axis;
    coordinate.text = k_nil;
    found_.push_back(std::move(coordinate));
  }

  void add(const Value& value, Row row, std::string axis) {
    Coordinate coordinate;
    coordinate.axis = std::move(axis);
    coordinate.unit = row.unit();
    coordinate.is_number = row.kind() == Kind::real;
    if (coordinate.is_number) coordinate.number = value.number();
    if (row.kind() == Kind::text) {
      coordinate.text = utf8_of(value);
    } else {
      value.append_exact_text(&coordinate.text);
    }
    found_.push_back(std::move(coordinate));
  }

  std::vector<Coordinate>& found_;
  Losses* losses_;
};

// --- In ------------------------------------------------------------------------------------------

std::string store_value(Ref owner, Row row, std::string_view text, char decimal) {
  if (row.kind() != Kind::real || decimal == '.') return store_text(owner, row, text);
  std::string number(text);
  std::replace(number.begin(), number.end(), decimal, '.');
  return store_text(owner, row, number);
}

std::string store_entry(Ref space, Row list, std::string_view label, std::string_view text,
                        char decimal) {
  const Ref entry = space.append(list);
  for (const Row attribute : entry.type().attributes()) {
    const std::size_t end = std::min(label.find(' '), label.size());
    std::string fault = store_text(entry, attribute, label.substr(0, end));
    if (!fault.empty()) return fault;
    label.remove_prefix(std::min(end + 1, label.size()));
  }
  if (!label.empty()) return "The axis has '" + std::string(label) + "' too much";
  return store_value(entry, entry.type().content(), text, decimal);
}

// A step of a path: "SpotColor[2]", "@AxisNominalMax".
struct Step {
  std::string_view name;
  unsigned number = 1;
  bool is_good = true;

  explicit Step(std::string_view text) : name(text.substr(0, text.find('['))) {
    if (name.substr(0, 1) == "@") name.remove_prefix(1);
    if (name.size() == text.size() || name.data() + name.size() == text.data() + text.size()) {
      return;
    }
    const std::string_view digits = text.substr(name.size() + 1);
    const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    is_good = end.ec == std::errc() && number > 0 &&
              std::string_view(end.ptr, static_cast<std::size_t>(digits.data() + digits.size() -
                                                                 end.ptr)) == "]";
  }
};

// Existing, or the next of its list; none if something would be left out.
Ref object_at(Ref owner, Row row, unsigned number) {
  if (row.place() == Place::alternative) {
    const ConstRef seen = owner;
    if (seen.chosen() != row) return owner.choose(row);
    return const_cast<zol_v2::internal::Object&>(seen.value(row).child().object());
  }
  if (!row.is_list()) return owner.child(row);
  const unsigned count = ConstRef(owner).count(row);
  return number == count + 1 ? owner.append(row) : owner.child(row, number - 1);
}

std::string store_path(Ref owner, std::string_view path, std::string_view text, char decimal) {
  const std::string axis(path);
  while (true) {
    const std::size_t slash = std::min(path.find('/'), path.size());
    const Step step(path.substr(0, slash));
    path.remove_prefix(std::min(slash + 1, path.size()));
    const Row row = owner.type().row(step.name);
    const bool is_known = row && step.is_good && !is_foreign_to_axes(row) &&
                          row.kind() != Kind::mark && (path.empty() || !row.is_simple());
    if (!is_known) return "The space has no axis " + axis;
    if (row.is_simple()) return store_value(owner, row, text, decimal);
    const Ref object = object_at(owner, row, step.number);
    if (!object) return "Nothing stands before " + axis;
    if (!path.empty()) {
      owner = object;
      continue;
    }
    if (text == k_nil && object.set_nil(true)) return {};
    if (!object.type().content()) return axis + " is no value";
    return store_value(object, object.type().content(), text, decimal);
  }
}

}  // namespace

std::string space_name(Type space) {
  std::string_view name = space.name().substr(k_prefix.size());
  if (name.size() > k_suffix.size() && name.substr(name.size() - k_suffix.size()) == k_suffix) {
    name.remove_suffix(k_suffix.size());
  }
  return std::string(name);
}

Row space_row(std::string_view name) {
  return Type(sg_ColorSpace::k_class).row(std::string(k_prefix) + std::string(name));
}

Row specification_row(Type space) {
  for (const Row row : space.elements()) {
    if (row.type() && row.type().is_a(ColorSpaceSpecificationType::k_class)) return row;
  }
  return {};
}

std::vector<Coordinate> coordinates_of(ConstRef space, Losses* losses) {
  std::vector<Coordinate> found;
  Collector(&found, losses).collect_space(space);
  return found;
}

std::string store_coordinate(Ref space, std::string_view axis, std::string_view text,
                             char decimal) {
  const Type type = space.type();
  if (axis.find_first_of("/[") == std::string_view::npos) {
    axis = row_name(type, axis);
    const Row named = type.row(axis);
    if (!named || is_labelled(named)) {
      for (const Row row : type.elements()) {
        if (is_labelled(row)) return store_entry(space, row, axis, text, decimal);
      }
    }
  }
  return store_path(space, axis, text, decimal);
}

}  // namespace zol_v2::interchange::internal
