#include "tools/tree.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "tools/text.h"

using zol_v2::reflection::ConstRef;
using zol_v2::reflection::Item;
using zol_v2::reflection::Kind;
using zol_v2::reflection::Place;
using zol_v2::reflection::Row;
using zol_v2::reflection::Value;

namespace {

// A date and time has three decimals of seconds unless it needs more.
std::string exact_date(const lmx::c_datetime& date, std::string text) {
  lmx::c_datetime again;
  again = text;
  if (again == date) return text;
  const std::size_t begin = text.rfind(':', text.find_first_of("Z+", text.find('T'))) + 1;
  const std::size_t end = std::min(text.find_first_not_of("0123456789.", begin), text.size());
  char seconds[32];
  const std::to_chars_result result =
      std::to_chars(seconds, seconds + sizeof seconds, date.get_secs(), std::chars_format::fixed);
  std::string exact(seconds, result.ptr);
  if (date.get_secs() < 10) exact.insert(0, "0");
  return text.replace(begin, end - begin, exact);
}

Json json_of_value(const Value& value) {
  switch (value.kind()) {
    case Kind::real:
      // JSON has no number for what is not finite.
      return std::isfinite(value.number()) ? Json(value.number()) : Json(exact_text(value));
    case Kind::int32:
    case Kind::uint32:
    case Kind::uint8:
      return value.integer();
    case Kind::truth:
      return value.truth();
    case Kind::mark:
      return nullptr;
    default:
      return valid_utf8(exact_text(value));
  }
}

std::string key_of(const Item& item) {
  if (item.row.place() == Place::content) return "text()";
  return (item.row.is_attribute() ? "@" : "") + std::string(item.name());
}

bool walk(const Item& item, std::string* path, const VisitValue& visit, const VisitNil& visit_nil) {
  const ConstRef object = item.object();
  if (!object) return visit(*path, item);
  if (visit_nil && object.is_nil()) visit_nil(*path);
  Steps steps;
  const std::size_t length = path->size();
  bool goes_on = true;
  for_each_item(object, [&](const Item& inner) {
    if (!goes_on) return;
    steps.append(inner, path);
    goes_on = walk(inner, path, visit, visit_nil);
    path->resize(length);
  });
  return goes_on;
}

}  // namespace

std::string exact_text(const Value& value) {
  std::string text;
  if (!value) return text;
  if (value.kind() == Kind::real) return number_text(value.number());
  if (value.kind() == Kind::foreign) return value.foreign().text;
  value.append_text(&text);
  return value.kind() == Kind::datetime ? exact_date(value.date(), std::move(text)) : text;
}

Json json_of(const Item& item) {
  const ConstRef object = item.object();
  if (!object) return json_of_value(item.value());
  Json json = Json::object();
  if (object.is_nil()) json["@xsi:nil"] = true;
  if (item.row && object.type() != item.row.type()) {
    json["@xsi:type"] = std::string(object.type().type_name());
  }
  for_each_item(object, [&](const Item& inner) {
    Json& place = json[key_of(inner)];
    if (inner.way.is_list()) {
      place.push_back(json_of(inner));
    } else {
      place = json_of(inner);
    }
  });
  return json;
}

void Steps::append(const Item& item, std::string* path) {
  path->push_back('/');
  if (item.row.place() == Place::content) {
    path->append("text()");
    return;
  }
  if (item.row.is_attribute()) path->push_back('@');
  path->append(item.name());
  if (!item.way.is_list()) return;
  unsigned number = item.entry + 1;
  if (item.way.is_transparent()) {
    number = 0;
    for (Count& count : counts_) {
      if (count.way == item.way && count.row == item.row) number = ++count.number;
    }
    if (number == 0) counts_.push_back({item.way, item.row, number = 1});
    if (number == 1) return;
  }
  path->append("[").append(std::to_string(number)).append("]");
}

Item item_of(ConstRef object) {
  Item item;
  item.owner = object;
  item.parent = object;
  return item;
}

bool for_each_value(const Item& item, std::string path, const VisitValue& visit,
                    const VisitNil& visit_nil) {
  return walk(item, &path, visit, visit_nil);
}

bool is_name_row(Row row) {
  constexpr std::string_view k_name = "Name";
  const std::string_view name = row.name();
  return row.kind() == Kind::text && !row.is_list() && name.size() >= k_name.size() &&
         name.substr(name.size() - k_name.size()) == k_name;
}

std::string label_of(ConstRef object) {
  std::string id;
  for (const Row row : object.type().rows()) {
    if (row.is_list() || !row.is_simple() || !object.has(row)) continue;
    if (is_name_row(row)) {
      std::string name = exact_text(object.value(row));
      if (!name.empty()) return name;
    }
    if (row.name() == k_unique_id) id = exact_text(object.value(row));
  }
  return id;
}
