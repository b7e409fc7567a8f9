#include "tools/placed_colors.h"

#include "model/Zol.h"
#include "tools/text.h"

using zol_v2::colorimetry::PlacedColor;

namespace {

class Collector {
 public:
  Collector(std::string_view name, std::vector<PlacedColor>* colors)
      : name_(name), colors_(*colors) {}

  void add(const zol_v2::PaletteType& palette) {
    const bool is_picked = is_named(palette.get_PaletteName(), palette.get_UniqueID());
    for (const zol_v2::ColorSetType& set : palette.each_ColorSet()) {
      if (!is_picked && !is_named(set.get_ColorSetName(), set.get_UniqueID())) continue;
      for (const zol_v2::ColorType& color : set.each_Color()) {
        colors_.push_back({&color, {&set, &palette}});
      }
    }
  }

  void add(const zol_v2::ColorQualityControlType& record) {
    if (!is_named(record.get_Name(), record.get_UniqueID())) return;
    for (const zol_v2::StandardAndMeasurementType& pair : record.each_StandardAndMeasurement()) {
      if (!pair.get_Standard().isnil_Standard()) {
        colors_.push_back({&pair.get_Standard().get_Color(), {}});
      }
    }
    for (const zol_v2::StandardAndMeasurementType& pair : record.each_StandardAndMeasurement()) {
      for (const zol_v2::Measurement& measurement : pair.each_Measurement()) {
        colors_.push_back({&measurement.get_Color(), {}});
      }
    }
  }

 private:
  bool is_named(const std::wstring& name, const std::wstring& id) const {
    return name_.empty() || utf8(name) == name_ || utf8(id) == name_;
  }

  std::string_view name_;
  std::vector<PlacedColor>& colors_;
};

}  // namespace

std::vector<PlacedColor> placed_colors(const zol_v2::Zol& document, std::string_view name) {
  std::vector<PlacedColor> colors;
  Collector collector(name, &colors);
  if (name.empty()) {
    for (const zol_v2::ColorType& color : document.each_Color()) colors.push_back({&color, {}});
  }
  for (const zol_v2::PaletteType& palette : document.each_Palette()) collector.add(palette);
  for (const zol_v2::ColorQualityControlType& record : document.each_ColorQualityControl()) {
    collector.add(record);
  }
  return colors;
}
