#include "tools/color_values.h"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <utility>

#include "model/Zol.h"
#include "model/reflection.h"
#include "tools/text.h"

using zol_v2::ColorType;
using zol_v2::sg_ColorSpace;
using zol_v2::reflection::ConstRef;
using zol_v2::reflection::Item;
using zol_v2::reflection::Kind;
using zol_v2::reflection::Row;
using zol_v2::reflection::Type;
using zol_v2::reflection::Value;

namespace {

using Visit = std::function<void(const ColorPlace&, const ColorType&)>;

void visit_palette(const zol_v2::PaletteType& palette, const Visit& visit) {
  for (unsigned i = 0; i < palette.size_ColorSet(); ++i) {
    const zol_v2::ColorSetType& set = palette.get_ColorSet(i);
    const ColorPlace place{utf8(palette.get_PaletteName()), utf8(set.get_ColorSetName())};
    for (unsigned j = 0; j < set.size_Color(); ++j) visit(place, set.get_Color(j));
  }
}

void visit_record(const zol_v2::ColorQualityControlType& record, const Visit& visit) {
  const std::string name = utf8(record.get_Name());
  for (unsigned i = 0; i < record.size_StandardAndMeasurement(); ++i) {
    const zol_v2::StandardAndMeasurementType& pair = record.get_StandardAndMeasurement(i);
    for (unsigned j = 0; j < pair.size_Measurement(); ++j) {
      visit({name, "Measurement"}, pair.get_Measurement(j).get_Color());
    }
    if (!pair.get_Standard().isnil_Standard()) {
      visit({name, "Standard"}, pair.get_Standard().get_Color());
    }
  }
}

// Not of a member of the family of spaces alone, but of all of them.
bool is_common(Type space, Row row) {
  while (space.base()) space = space.base();
  return static_cast<bool>(space.row(row.name()));
}

std::string text_of(const Value& value) {
  if (value.kind() == Kind::real) return number_text(value.number());
  return utf8(value.text());
}

// What the entry of a list is called: by its attributes, or by the first text in it.
bool find_label(ConstRef entry, std::string* label) {
  for (const Row row : entry.type().attributes()) {
    if (!label->empty()) *label += ' ';
    *label += text_of(entry.value(row));
  }
  if (!label->empty()) return true;
  for (const Item& item : entry.children()) {
    if (item.way.is_list()) continue;
    if (const ConstRef child = item.object()) {
      if (find_label(child, label)) return true;
    } else if (item.row.kind() == Kind::text) {
      *label = text_of(item.value());
      return true;
    }
  }
  return false;
}

// What it is worth: the last value in it.
std::string value_of(ConstRef entry) {
  std::string value;
  for (const Item& item : entry.children()) {
    if (item.way.is_list()) continue;
    const ConstRef child = item.object();
    value = child ? value_of(child) : text_of(item.value());
  }
  return value;
}

std::string joined_texts(ConstRef object) {
  std::string result;
  for (const Item& item : object.children()) result += text_of(item.value()) + ' ';
  if (!result.empty()) result.pop_back();
  return result;
}

// A child with a type of a family is a specification or another space, and no coordinate.
bool holds_family_member(Type type) {
  for (const Row row : type.elements()) {
    if (row.type() && row.type().is_polymorphic()) return true;
  }
  return false;
}

void add_coordinate(const Item& item, std::vector<Coordinate>* result) {
  const std::string name(item.name());
  if (const ConstRef child = item.object()) {
    if (child.type().is_polymorphic() || holds_family_member(child.type())) return;
    if (item.row.is_list()) {
      std::string label;
      (void)find_label(child, &label);
      result->push_back({std::move(label), value_of(child)});
    } else if (item.row.is_required()) {
      result->push_back({name, joined_texts(child)});
    }
    return;
  }
  // A text that may be missing is a remark.
  if (item.row.kind() == Kind::real || (item.row.kind() == Kind::text && item.row.is_required())) {
    result->push_back({name, text_of(item.value())});
  }
}

// The format tells the chromaticity y from the luminance Y by another name.
void spell_chromaticity(std::vector<Coordinate>* coordinates) {
  const auto has_luminance = [](const Coordinate& coordinate) { return coordinate.axis == "CapY"; };
  if (std::none_of(coordinates->begin(), coordinates->end(), has_luminance)) return;
  for (Coordinate& coordinate : *coordinates) {
    coordinate.axis = coordinate.axis == "CapY" ? "Y" : coordinate.axis == "X" ? "x" : "y";
  }
}

// The list of a space that is measured by wavelength; none of another.
Row spectrum_of(Type space) {
  for (const Row row : space.elements()) {
    if (!row.is_list() || !row.type()) continue;
    for (const Row attribute : row.type().attributes()) {
      if (attribute.unit() == "nm") return row;
    }
  }
  return {};
}

double wavelength(ConstRef point) {
  return point.value(*point.type().attributes().begin()).number();
}

// The colour space that a member is.
ConstRef space_in(ConstRef member) {
  const Row chosen = member.chosen();
  return chosen ? member.value(chosen).child() : ConstRef();
}

}  // namespace

void for_each_color(const zol_v2::Zol& document, const Visit& visit) {
  for (unsigned i = 0; i < document.size_Color(); ++i) visit({}, document.get_Color(i));
  for (unsigned i = 0; i < document.size_Palette(); ++i) {
    visit_palette(document.get_Palette(i), visit);
  }
  for (unsigned i = 0; i < document.size_ColorQualityControl(); ++i) {
    visit_record(document.get_ColorQualityControl(i), visit);
  }
}

Rendering rendering_of(const sg_ColorSpace& member) {
  Rendering result{space_name(member), {}};
  const ConstRef space = space_in(member);
  if (!space) return result;
  for (const Item& item : space.children()) {
    if (!is_common(space.type(), item.way)) add_coordinate(item, &result.coordinates);
  }
  spell_chromaticity(&result.coordinates);
  return result;
}

std::string text_of(const sg_ColorSpace& space) {
  if (const auto range = spectral_range(space)) return space_name(space) + ' ' + range->text();
  const Rendering rendering = rendering_of(space);
  std::string result = rendering.space;
  for (const Coordinate& coordinate : rendering.coordinates) {
    result += ' ' + coordinate.axis + '=' + coordinate.value;
  }
  return result;
}

std::string space_name(const sg_ColorSpace& member) {
  constexpr std::string_view k_prefix = "ColorSpace";
  const Row chosen = ConstRef(member).chosen();
  return chosen ? std::string(chosen.name().substr(k_prefix.size())) : "none";
}

bool SpectralRange::operator<(const SpectralRange& other) const {
  return std::tie(first, last, points) < std::tie(other.first, other.last, other.points);
}

std::string SpectralRange::text() const {
  return number_text(first) + " to " + number_text(last) + " nm, " +
         counted(points, "point", "points");
}

std::optional<SpectralRange> spectral_range(const sg_ColorSpace& member) {
  const ConstRef space = space_in(member);
  const Row points = space ? spectrum_of(space.type()) : Row();
  const unsigned count = points ? space.count(points) : 0;
  if (count == 0) return std::nullopt;
  return SpectralRange{wavelength(space.value(points, 0).child()),
                       wavelength(space.value(points, count - 1).child()), count};
}
