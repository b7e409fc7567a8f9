#include "tools/sibling_reading.h"

#include <string_view>
#include <vector>

#include "lmx/reader.h"
#include "model/Zol.h"
#include "model/reflection.h"

using zol_v2::reflection::all_types;
using zol_v2::reflection::Ref;
using zol_v2::reflection::Row;
using zol_v2::reflection::Type;

namespace {

// Elements of one name may be of several types, each in its own place.
std::vector<Type> types_of(std::string_view element) {
  std::vector<Type> types;
  if (element == zol_v2::Zol::k_class.name) types.emplace_back(zol_v2::Zol::k_class);
  for (const Type type : all_types()) {
    const Row row = type.row(element);
    if (row && row.type() && !row.is_transparent()) types.push_back(row.type());
  }
  return types;
}

// The type of a child with that name, or the holder that has it; none for values.
Type type_in(Type parent, std::string_view element) {
  for (const Row row : parent.elements()) {
    if (!row.type()) continue;
    const bool is_it =
        row.is_transparent() ? static_cast<bool>(row.type().row(element)) : row.name() == element;
    if (is_it) return row.type();
  }
  return {};
}

// The one type that the element has in whatever may be called like the parent.
Type type_in(std::string_view parent, std::string_view element) {
  Type found;
  for (const Type type : types_of(parent)) {
    const Type child = type_in(type, element);
    if (child && found && child != found) return {};
    if (child) found = child;
  }
  return found;
}

}  // namespace

SiblingState read_sibling(lmx::c_xml_reader& reader, const std::string& parent,
                          lmx::elmx_error* error) {
  *error = lmx::elmx_ok;
  if (reader.get_element_ns_id() != zol_v2::Zol::ns_map()->ns_id) return SiblingState::unknown;
  std::string parent_name;
  lmx::c_xml_reader::get_local_name(parent, &parent_name);
  const Type type = type_in(parent_name, reader.get_local_name());
  if (!type) return SiblingState::unknown;
  const auto object = type.make();
  if (!type.is_transparent()) {
    *error = Ref(*object).read(reader, reader.name);
    return SiblingState::read;
  }
  (void)Ref(*object).read_member(reader, &reader.name, error);
  return SiblingState::passed;
}
