#include "tools/report_facts.h"

#include "model/Zol.h"
#include "tools/markup.h"
#include "tools/text.h"

using zol_v2::reflection::ConstRef;
using zol_v2::reflection::Item;
using zol_v2::reflection::Kind;
using zol_v2::reflection::Row;
using zol_v2::reflection::Value;

namespace {

bool is_upper(char c) { return c >= 'A' && c <= 'Z'; }
bool is_lower(char c) { return c >= 'a' && c <= 'z'; }
char lower(char c) { return is_upper(c) ? static_cast<char>(c | 0x20) : c; }

// "UV excluded" for "UVExcluded"; words in capitals stay.
std::string spaced(std::string_view name, bool is_first_capital) {
  std::string result;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    const bool is_next_lower = i + 1 < name.size() && is_lower(name[i + 1]);
    if (c == '_') {
      result += ' ';
      continue;
    }
    const bool is_break =
        i > 0 && is_upper(c) && (is_lower(name[i - 1]) || (is_upper(name[i - 1]) && is_next_lower));
    if (is_break) result += ' ';
    const bool is_word_begin = i == 0 || is_break || name[i - 1] == '_';
    const bool keeps_case = (i == 0 && is_first_capital) || !is_word_begin || !is_next_lower;
    result += keeps_case ? c : lower(c);
  }
  return result;
}

// Enumerated values begin with what they are a value of, which the label says already.
std::string enumerated(std::string_view name, std::string_view value) {
  const std::size_t mark = value.find('_');
  if (mark == std::string_view::npos) return std::string(value);
  const bool is_said = name.find(value.substr(0, mark)) != std::string_view::npos;
  return spaced(is_said ? value.substr(mark + 1) : value, false);
}

std::string unit_of(Row row) {
  const std::string_view unit = row.unit();
  if (unit.empty()) return "";
  if (unit == "degree") return "\u00B0";
  return ' ' + std::string(unit == "percent" ? "%" : unit);
}

bool has_place_of_its_own(ConstRef object) {
  return object.as<zol_v2::DeviceType>() != nullptr ||
         object.as<zol_v2::sg_ColorSpace>() != nullptr ||
         object.as<zol_v2::ColorSpaceType>() != nullptr;
}

bool is_left_out(std::string_view name) {
  // Who read the document is this process itself.
  return name == "ChangeHistory" || name == "UniqueID" || name == "ColorSpace" ||
         name == "ReadSDKInformation" || name == "ReadPlatformInformation";
}

// Of a name and a value: what the format keeps for whatever it has no row for.
bool find_named_value(ConstRef object, Fact* fact) {
  const Row name = object.type().row("Name"), choice = object.type().row("ValueChoice");
  if (!name || !choice) return false;
  const ConstRef held = object.value(choice).child();
  const Row chosen = held ? held.chosen() : Row();
  *fact = {readable(name, "Name", object.value(name)), ""};
  if (chosen) fact->value = readable(chosen, "", held.value(chosen));
  return true;
}

void add_facts(ConstRef object, std::string_view around, std::vector<Fact>* facts);

// Small things that people name in one breath: "Göran Öberg, +46 31 000 00 00".
bool is_one_phrase(ConstRef object) {
  return object.as<zol_v2::Person>() != nullptr || object.as<zol_v2::SDKType>() != nullptr ||
         object.as<zol_v2::PlatformType>() != nullptr;
}

std::string phrase_of(ConstRef object) {
  std::vector<Fact> parts;
  add_facts(object, "", &parts);
  const std::string_view between = object.as<zol_v2::Person>() != nullptr ? ", " : " ";
  std::string phrase;
  for (const Fact& part : parts) {
    if (!phrase.empty()) phrase += between;
    phrase += part.value;
  }
  return phrase;
}

// A value with attributes: "yes (compensation value 4)".
void add_simple(const Item& item, ConstRef object, std::vector<Fact>* facts) {
  const Row content = object.type().content();
  Fact fact{words_of(item.name()), readable(content, item.name(), object.value(content))};
  std::string remarks;
  for (const Row row : object.type().attributes()) {
    if (!object.has(row)) continue;
    if (!remarks.empty()) remarks += ", ";
    std::string label = words_of(row.name());
    label[0] = lower(label[0]);
    remarks += label + ' ' + readable(row, row.name(), object.value(row));
  }
  if (!remarks.empty()) fact.value += " (" + remarks + ')';
  facts->push_back(std::move(fact));
}

void add_item(const Item& item, std::string_view around, std::vector<Fact>* facts) {
  const std::string_view name = item.name();
  if (is_left_out(name)) return;
  const ConstRef object = item.object();
  if (item.row.kind() == Kind::foreign) {
    facts->push_back({words_of(around), "an element of another vocabulary"});
    return;
  }
  if (!object) {
    const bool is_vague = name == "Name" || name == "Version" || name == "Type";
    std::string label = words_of(name);
    if (is_vague && !around.empty()) {
      label[0] = lower(label[0]);
      label = words_of(around) + ' ' + label;
    }
    facts->push_back({std::move(label), readable(item.row, name, item.value())});
    return;
  }
  Fact fact;
  if (has_place_of_its_own(object) || object.is_nil()) return;
  if (const auto* const color = object.as<zol_v2::ColorType>()) {
    facts->push_back({words_of(name), utf8(color->get_ColorName())});
  } else if (find_named_value(object, &fact)) {
    facts->push_back(std::move(fact));
  } else if (is_one_phrase(object)) {
    facts->push_back({words_of(name), phrase_of(object)});
  } else if (object.type().content()) {
    add_simple(item, object, facts);
  } else {
    add_facts(object, name, facts);
  }
}

void add_facts(ConstRef object, std::string_view around, std::vector<Fact>* facts) {
  if (object.is_nil()) return;
  for (const Row row : object.type().attributes()) {
    if (!object.has(row) || is_left_out(row.name())) continue;
    facts->push_back({words_of(row.name()), readable(row, row.name(), object.value(row))});
  }
  for (const Item& item : object.children()) add_item(item, around, facts);
}

}  // namespace

std::vector<Fact> facts_of(ConstRef object) {
  std::vector<Fact> facts;
  if (object) add_facts(object, "", &facts);
  return facts;
}

std::string readable(Row row, std::string_view name, const Value& value) {
  if (!value) return "";
  switch (value.kind()) {
    case Kind::real:
      return short_number(value.number()) + unit_of(row);
    case Kind::int32:
    case Kind::uint32:
    case Kind::uint8:
      return std::to_string(value.integer()) + unit_of(row);
    case Kind::truth:
      return value.truth() ? "yes" : "no";
    case Kind::binary:
      return grouped_number(value.bytes().size()) + " bytes";
    default:
      break;
  }
  std::string text;
  value.append_text(&text);
  text = valid_utf8(text);
  if (value.kind() == Kind::datetime) return date_in_words(text);
  if (value.number_in_enumeration() > 0) return enumerated(name, text);
  return text;
}

std::string words_of(std::string_view name) { return spaced(name, true); }

std::string date_in_words(std::string_view text) {
  std::string result(text);
  const std::size_t mark = result.find('T');
  if (mark == std::string::npos) return result;
  result[mark] = ' ';
  const std::size_t zone = result.find_first_of("Z+-", mark);
  if (zone == std::string::npos) return result;
  if (result[zone] == 'Z') return result.replace(zone, 1, " UTC");
  return result.insert(zone, " ");
}
