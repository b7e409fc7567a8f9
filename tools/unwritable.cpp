#include "tools/unwritable.h"

#include <string>

#include "model/Zol.h"
#include "model/reflection.h"
#include "tools/element_lines.h"

using zol_v2::reflection::ConstRef;
using zol_v2::reflection::Item;
using zol_v2::reflection::Row;

namespace {

// An element on the way down to the one at hand.
struct Level {
  const Level* up;
  const Item* item;  // null for the root

  std::string path() const {
    if (item == nullptr) return std::string("/") + zol_v2::Zol::k_element_name;
    return child_path(up->path(), "Zol:" + std::string(item->name()), item->number());
  }
};

// Whether a holder or group in the object has nothing to show.
bool has_empty_holder(ConstRef object) {
  for (const Row row : object.type().elements()) {
    if (!row.is_transparent()) continue;
    for (unsigned i = 0; i < object.count(row); ++i) {
      if (!object.value(row, i).child().is_complete()) return true;
    }
  }
  return false;
}

// In the order of the document. The reader keeps documents from being deeper than the stack.
void find_incomplete(ConstRef object, const Level& level, std::vector<ElementPlace>* places) {
  if (object.is_nil()) return;
  if (!object.is_complete() || has_empty_holder(object)) places->push_back({level.path(), 0});
  for (const Item& item : object.children()) {
    if (const ConstRef child = item.object()) find_incomplete(child, {&level, &item}, places);
  }
}

}  // namespace

std::vector<Fault> find_unwritable(const zol_v2::Zol& document, const DocumentText& text) {
  std::vector<ElementPlace> places;
  find_incomplete(document, {nullptr, nullptr}, &places);
  if (places.empty()) return {};

  find_elements(text.data(), text.size(), &places);
  std::vector<Fault> faults;
  faults.reserve(places.size());
  for (const ElementPlace& place : places) {
    faults.push_back(make_fault(place.line, lmx::elmx_occurs_on_marshal, place.path));
  }
  return faults;
}
