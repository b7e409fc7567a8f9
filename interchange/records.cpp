#include "interchange/records.h"

#include <algorithm>
#include <utility>

#include "interchange/internal/conditions.h"
#include "interchange/internal/coordinates.h"
#include "interchange/internal/values.h"
#include "model/Zol.h"

namespace zol_v2::interchange {

namespace {

using internal::number_text;
using reflection::ConstRef;
using reflection::Row;

struct Held {
  std::string_view type;
  std::vector<std::string_view> rows;
};

// What records hold of each class; all other rows are losses.
const std::vector<Held>& held_rows() {
  static const std::vector<Held> table = {
      {"Zol", {"Color", "Palette", "ColorQualityControl"}},
      {"PaletteType", {"PaletteName", "CollectionColorSpaceSpecification", "ColorSet"}},
      {"ColorSetType", {"ColorSetName", "CollectionColorSpaceSpecification", "Color"}},
      {"ColorQualityControlType", {"Name", "StandardAndMeasurement"}},
      {"StandardAndMeasurementType", {"Measurement", "Standard"}},
      {"Measurement", {"Color"}},
      {"Standard", {"Color"}},
      {"ColorType", {"ColorName", "UniqueID", "ColorNumber", "Comments", "ColorSpace"}},
  };
  return table;
}

std::string narrow(const std::wstring& text) { return internal::narrow_text(text); }

class RecordMaker {
 public:
  RecordMaker(const std::function<void(const ColorRecord&)>& visit, Losses* losses)
      : visit_(visit), losses_(losses) {}

  void visit(const Zol& document) {
    lose_rest(document);
    for (unsigned i = 0; i < document.size_Color(); ++i) add({}, document.get_Color(i));
    for (unsigned i = 0; i < document.size_Palette(); ++i) visit(document.get_Palette(i));
    for (unsigned i = 0; i < document.size_ColorQualityControl(); ++i) {
      visit(document.get_ColorQualityControl(i));
    }
  }

 private:
  void visit(const PaletteType& palette) {
    lose_rest(palette);
    ColorRecord record;
    record.kind = PlaceKind::palette;
    record.group = narrow(palette.get_PaletteName());
    record.palette = &palette;
    for (unsigned i = 0; i < palette.size_ColorSet(); ++i) {
      const ColorSetType& set = palette.get_ColorSet(i);
      lose_rest(set);
      shared_ = {};
      add_shared(set);
      add_shared(palette);
      record.part = narrow(set.get_ColorSetName());
      record.set = &set;
      for (unsigned j = 0; j < set.size_Color(); ++j) add(record, set.get_Color(j));
      if (set.size_Color() == 0 && losses_ != nullptr) losses_->add("empty ColorSet");
    }
    shared_ = {};
  }

  void visit(const ColorQualityControlType& control) {
    lose_rest(control);
    ColorRecord record;
    record.kind = PlaceKind::record;
    record.group = narrow(control.get_Name());
    for (unsigned i = 0; i < control.size_StandardAndMeasurement(); ++i) {
      const StandardAndMeasurementType& pair = control.get_StandardAndMeasurement(i);
      lose_rest(pair);
      record.pair = i + 1;
      record.part = "Measurement";
      for (unsigned j = 0; j < pair.size_Measurement(); ++j) {
        lose_rest(pair.get_Measurement(j));
        add(record, pair.get_Measurement(j).get_Color());
      }
      if (pair.get_Standard().isnil_Standard()) continue;
      record.part = "Standard";
      lose_rest(pair.get_Standard());
      add(record, pair.get_Standard().get_Color());
    }
  }

  template <class Collection>
  void add_shared(const Collection& collection) {
    if (collection.isset_CollectionColorSpaceSpecification()) {
      shared_.push_back(collection.get_CollectionColorSpaceSpecification());
    }
  }

  void add(ColorRecord record, const ColorType& color) {
    lose_rest(color);
    record.color = &color;
    record.name = narrow(color.get_ColorName());
    record.number = narrow(color.get_ColorNumber());
    record.id = narrow(color.get_UniqueID());
    record.comments = narrow(color.get_Comments());
    for (unsigned i = 0; i < color.size_ColorSpace(); ++i) {
      const ConstRef member(color.get_ColorSpace(i));
      if (const Row chosen = member.chosen()) {
        record.renderings.push_back(rendering_of(member.value(chosen).child()));
      }
    }
    visit_(record);
  }

  Rendering rendering_of(ConstRef space) {
    Rendering rendering;
    rendering.space = internal::space_name(space.type());
    if (const Row name = space.type().row("Name"); name && name.is_attribute()) {
      rendering.name = internal::utf8_of(space.value(name));
    }
    rendering.coordinates = internal::coordinates_of(space, losses_);
    if (const Row row = internal::specification_row(space.type())) {
      const ConstRef specification = space.value(row).child();
      rendering.conditions = specification.is_nil()
                                 ? shared_conditions(row)
                                 : internal::conditions_of(specification, losses_);
    }
    return rendering;
  }

  Conditions shared_conditions(Row specification) const {
    for (const ConstRef shared : shared_) {
      const Row row = shared.type().row(specification.name());
      if (row && shared.has(row))
        return internal::conditions_of(shared.value(row).child(), nullptr);
    }
    return {};
  }

  void lose_rest(ConstRef object) {
    if (losses_ == nullptr) return;
    const auto found = std::find_if(held_rows().begin(), held_rows().end(), [&](const Held& held) {
      return held.type == object.type().name();
    });
    for (const Row row : object.type().rows()) {
      const auto& rows = found->rows;
      if (std::find(rows.begin(), rows.end(), row.name()) != rows.end()) continue;
      losses_->add(row.name(), object.count(row));
    }
  }

  const std::function<void(const ColorRecord&)>& visit_;
  Losses* losses_;
  std::vector<ConstRef> shared_;  // that of the set, then that of the palette
};

}  // namespace

const Coordinate* Rendering::find(std::string_view axis) const {
  for (const Coordinate& coordinate : coordinates) {
    if (coordinate.axis == axis) return &coordinate;
  }
  return nullptr;
}

void Rendering::add(std::string axis, double number, std::size_t offset) {
  Coordinate coordinate;
  coordinate.axis = std::move(axis);
  coordinate.text = number_text(number);
  coordinate.number = number;
  coordinate.is_number = true;
  coordinate.offset = offset;
  coordinates.push_back(std::move(coordinate));
}

const Rendering* ColorRecord::find(std::string_view space) const {
  for (const Rendering& rendering : renderings) {
    if (rendering.space == space) return &rendering;
  }
  return nullptr;
}

void for_each_record(const Zol& document, const std::function<void(const ColorRecord&)>& visit,
                     Losses* losses) {
  RecordMaker(visit, losses).visit(document);
}

}  // namespace zol_v2::interchange
