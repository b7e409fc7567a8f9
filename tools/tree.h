// What stands below an object, value by value, with paths as model/reflection.h has them.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/reflection.h"
#include "tools/json.h"

// The text that a document has for a value, with as many digits as it needs to be read back equal.
std::string exact_text(const zol_v2::reflection::Value& value);

// A value as itself; an object with a member for each row: attributes with "@", content as
// "text()", lists as arrays. So a path leads to the same thing in both.
Json json_of(const zol_v2::reflection::Item& item);

// The steps to the items of one parent, asked in their order: Item::append_step without counting
// again what stands before each of them.
class Steps {
 public:
  void append(const zol_v2::reflection::Item& item, std::string* path);

 private:
  struct Count {
    zol_v2::reflection::Row way, row;
    unsigned number;
  };
  std::vector<Count> counts_;
};

// The item that is an object itself.
zol_v2::reflection::Item item_of(zol_v2::reflection::ConstRef object);

// Calls visit(item) for each attribute that is set, and then for each child.
template <class Visit>
void for_each_item(zol_v2::reflection::ConstRef object, const Visit& visit) {
  for (const zol_v2::reflection::Row row : object.type().attributes()) {
    if (object.has(row)) visit(zol_v2::reflection::Item{object, row, 0, object, row, 0});
  }
  for (const zol_v2::reflection::Item& item : object.children()) visit(item);
}

// False ends the walk.
using VisitValue =
    std::function<bool(const std::string& path, const zol_v2::reflection::Item& value)>;
// Of an object that is nil.
using VisitNil = std::function<void(const std::string& path)>;

// Each value at or below an item, in the order of a document; `path` is the item's.
bool for_each_value(const zol_v2::reflection::Item& item, std::string path, const VisitValue& visit,
                    const VisitNil& visit_nil = {});

// What people call an object: its name, or else its unique id; empty if it has neither.
std::string label_of(zol_v2::reflection::ConstRef object);

// Does the row hold the name of an object? As in Name, ColorName, PaletteName.
bool is_name_row(zol_v2::reflection::Row row);
constexpr std::string_view k_unique_id = "UniqueID";
