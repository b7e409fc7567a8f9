#include <ctime>
#include <utility>

#include "interchange/internal/conditions.h"
#include "interchange/internal/coordinates.h"
#include "interchange/internal/values.h"
#include "interchange/records.h"
#include "model/Zol.h"
#include "port/wide_text.h"

namespace zol_v2::interchange {

namespace {

using internal::store_text;
using reflection::ConstRef;
using reflection::Ref;
using reflection::Row;

constexpr std::string_view k_standard = "Standard";
constexpr std::wstring_view k_not_known = L"not known";

std::string now() {
  const std::time_t time = std::time(nullptr);
  char text[32];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&time))};
}

Row row_of(Ref object, std::string_view name) { return object.type().row(name); }

// An optional text that says nothing is left out.
std::string store_attribute(Ref object, std::string_view name, const std::string& text) {
  const Row row = row_of(object, name);
  return text.empty() && !row.is_required() ? std::string() : store_text(object, row, text);
}

void make_device(DeviceType* device, Report* report) {
  device->set_Manufacturer(std::wstring(k_not_known));
  device->set_Model(std::wstring(k_not_known));
  device->set_SerialNumber(std::wstring(k_not_known));
  report->assume("the instrument is not known");
}

// The first row that is required and missing, in the object or in what it holds.
std::string_view missing_row(ConstRef object) {
  for (const Row row : object.type().rows()) {
    if (row.is_required() && !object.has(row)) return row.name();
  }
  for (const reflection::Item& item : object.children()) {
    const ConstRef child = item.object();
    if (!child || child.is_nil() || child.type().content()) continue;
    const std::string_view missing = missing_row(child);
    if (!missing.empty()) return missing;
  }
  return {};
}

}  // namespace

DocumentBuilder::DocumentBuilder(Zol* document, Options options, std::string_view text,
                                 Report* report)
    : document_(*document), options_(std::move(options)), text_(text), report_(*report) {
  if (options_.time.empty()) options_.time = now();
  Header& header = document_.get_Preamble().get_Header();
  header.set_Creator(L"Zol");
  header.set_CreatorVersion(L"2");
  (void)store_text(header, row_of(header, "ChangeHistory"), options_.time);
  if (!store_text(header, row_of(header, "Purpose"), "Import from " + options_.source).empty()) {
    header.set_Purpose(L"Import");
  }
}

void DocumentBuilder::add_attribute(std::string_view name, std::string_view value) {
  Header& header = document_.get_Preamble().get_Header();
  const Row row = row_of(header, "CustomAttribute");
  const Ref attribute = Ref(header).append(row);
  const Ref choice = attribute.child(row_of(attribute, "ValueChoice"));
  const bool is_kept = store_text(attribute, row_of(attribute, "Name"), name).empty() &&
                       store_text(choice, row_of(choice, "StringValue"), value).empty();
  if (is_kept) return;
  (void)Ref(header).remove(row, header.size_CustomAttribute() - 1);
  report_.losses.add("keyword with a character that no document can hold");
}

bool DocumentBuilder::fail(std::string sentence, std::size_t offset) {
  report_.fail("bad-value", std::move(sentence),
               offset == k_nowhere ? SourcePlace() : place_of(text_, offset));
  return false;
}

ColorType& DocumentBuilder::append_color(const ColorRecord& record) {
  const bool is_same_group = last_ && last_->kind == record.kind && last_->group == record.group;
  const auto stamp = [this](Ref object) {
    (void)store_text(object, row_of(object, "ChangeHistory"), options_.time);
  };
  if (record.kind == PlaceKind::palette) {
    if (!is_same_group) {
      document_.append_Palette();
      (void)store_attribute(document_.back_Palette(), "PaletteName", record.group);
      stamp(document_.back_Palette());
    }
    PaletteType& palette = document_.back_Palette();
    if (!is_same_group || last_->part != record.part) {
      palette.append_ColorSet();
      (void)store_attribute(palette.back_ColorSet(), "ColorSetName", record.part);
      stamp(palette.back_ColorSet());
    }
    palette.back_ColorSet().append_Color();
    return palette.back_ColorSet().back_Color();
  }
  if (record.kind == PlaceKind::record) {
    if (!is_same_group) {
      document_.append_ColorQualityControl();
      (void)store_attribute(document_.back_ColorQualityControl(), "Name", record.group);
      stamp(document_.back_ColorQualityControl());
    }
    ColorQualityControlType& control = document_.back_ColorQualityControl();
    // A standard ends its pair.
    if (!is_same_group || last_->pair != record.pair || last_->part == k_standard) {
      control.append_StandardAndMeasurement();
      control.back_StandardAndMeasurement().get_Standard().setnil_Standard();
    }
    StandardAndMeasurementType& pair = control.back_StandardAndMeasurement();
    if (record.part == k_standard) {
      pair.assign_Standard(Standard());
      make_device(&pair.get_Standard().get_Device(), &report_);
      return pair.get_Standard().get_Color();
    }
    pair.append_Measurement();
    make_device(&pair.back_Measurement().get_Device(), &report_);
    return pair.back_Measurement().get_Color();
  }
  document_.append_Color();
  return document_.back_Color();
}

bool DocumentBuilder::add(const ColorRecord& record) {
  ColorType color;
  const std::pair<std::string_view, const std::string*> texts[] = {
      {"ColorName", &record.name},
      {"ColorNumber", &record.number},
      {"UniqueID", &record.id},
      {"Comments", &record.comments},
      {"ChangeHistory", &options_.time}};
  for (const auto& [row, text] : texts) {
    std::string fault = store_attribute(color, row, *text);
    if (!fault.empty()) return fail(std::move(fault), record.offset);
  }
  PaletteType named;
  for (const std::string* const text : {&record.group, &record.part}) {
    std::string fault = store_attribute(named, "PaletteName", *text);
    if (!fault.empty()) return fail(std::move(fault), record.offset);
  }
  if (record.renderings.empty()) return fail("The colour has no values", record.offset);
  if (!add_renderings(record.renderings, &color)) return false;
  if (color.size_ColorSpace() == 0) {
    report_.losses.add("colour with values out of bounds");
    return true;
  }
  append_color(record).swap(color);
  last_ = record;
  last_->renderings.clear();
  return true;
}

bool DocumentBuilder::add_renderings(const std::vector<Rendering>& renderings, ColorType* color) {
  for (const Rendering& rendering : renderings) {
    if (add_rendering(rendering, color)) continue;
    if (!options_.is_tolerant) return false;
    report_.faults.clear();
    report_.losses.add("rendering in " + rendering.space + " with values out of bounds");
    color->delete_ColorSpace(color->size_ColorSpace() - 1);
  }
  return true;
}

bool DocumentBuilder::add_rendering(const Rendering& rendering, ColorType* color) {
  const Row alternative = internal::space_row(rendering.space);
  if (!alternative) {
    return fail("There is no colour space '" + rendering.space + '\'', rendering.offset);
  }
  const Ref owner(*color);
  const Ref space = owner.append(row_of(owner, "ColorSpace")).choose(alternative);
  (void)store_text(space, row_of(space, "ChangeHistory"), options_.time);
  if (row_of(space, "Name")) {
    std::string fault = store_attribute(space, "Name", rendering.name);
    if (!fault.empty()) return fail(std::move(fault), rendering.offset);
  }
  if (const Row row = internal::specification_row(space.type())) {
    const Ref specification = space.child(row);
    const Conditions& conditions =
        rendering.conditions.empty() ? options_.default_conditions : rendering.conditions;
    if (conditions.empty()) {
      (void)specification.set_nil(true);
    } else {
      (void)store_text(specification, row_of(specification, "ChangeHistory"), options_.time);
      std::string fault = internal::store_conditions(specification, conditions, &report_);
      if (!fault.empty()) return fail(std::move(fault), rendering.offset);
    }
  }
  for (const Coordinate& coordinate : rendering.coordinates) {
    std::string fault =
        internal::store_coordinate(space, coordinate.axis, coordinate.text, options_.decimal);
    if (!fault.empty()) return fail(std::move(fault), coordinate.offset);
  }
  const Row depth = row_of(space, "ColorDepth");
  if (depth && !ConstRef(space).has(depth)) {
    (void)store_text(space, depth, "ColorDepth_Infinite");
    report_.assume("the depth of RGB values is not limited");
  }
  const std::string_view missing = missing_row(space);
  if (missing.empty()) return true;
  return fail(rendering.space + " lacks " + std::string(missing), rendering.offset);
}

}  // namespace zol_v2::interchange
