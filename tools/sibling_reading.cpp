#include "tools/sibling_reading.h"

#include "lmx/reader.h"
#include "model/Zol.h"

namespace {

template <class T>
lmx::elmx_error read(lmx::c_xml_reader& reader) {
  T object;
  return object.unmarshal(reader, reader.name);
}

constexpr struct {
  const char* parent;
  const char* name;
  lmx::elmx_error (*read)(lmx::c_xml_reader& reader);
} k_rows[] = {
    {"Zol", "Color", read<zol_v2::ColorType>},
    {"Zol", "Palette", read<zol_v2::PaletteType>},
    {"Zol", "ColorQualityControl", read<zol_v2::ColorQualityControlType>},
    {"Palette", "ColorSet", read<zol_v2::ColorSetType>},
    {"ColorSet", "Color", read<zol_v2::ColorType>},
    {"ColorQualityControl", "StandardAndMeasurement", read<zol_v2::StandardAndMeasurementType>},
    {"ColorQualityControl", "Tolerance", read<zol_v2::ToleranceType>},
    {"StandardAndMeasurement", "Measurement", read<zol_v2::Measurement>},
    {"StandardAndMeasurement", "Standard", read<zol_v2::Standard>},
};

// Only a colour has members of this group.
bool read_color_space(lmx::c_xml_reader& reader, lmx::elmx_error* error) {
  if (!zol_v2::sg_ColorSpace::is_member(reader, reader.name)) return false;
  zol_v2::sg_ColorSpace space;
  (void)space.unmarshal(reader, &reader.name, error);
  return true;
}

}  // namespace

SiblingState read_sibling(lmx::c_xml_reader& reader, const std::string& parent,
                          lmx::elmx_error* error) {
  *error = lmx::elmx_ok;
  if (reader.get_element_ns_id() != zol_v2::Zol::ns_map()->ns_id) return SiblingState::unknown;
  std::string parent_name;
  lmx::c_xml_reader::get_local_name(parent, &parent_name);
  for (const auto& row : k_rows) {
    if (parent_name != row.parent || reader.get_local_name() != row.name) continue;
    *error = row.read(reader);
    return SiblingState::read;
  }
  if (parent_name == "Color" && read_color_space(reader, error)) return SiblingState::passed;
  return SiblingState::unknown;
}
