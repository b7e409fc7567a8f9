#include "tools/report_content.h"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <utility>

#include "model/Zol.h"
#include "tools/markup.h"
#include "tools/text.h"

namespace colorimetry = zol_v2::colorimetry;
using colorimetry::Conditions;
using colorimetry::Outcome;
using colorimetry::Stimulus;
using zol_v2::ColorType;
using zol_v2::reflection::ConstRef;
using zol_v2::reflection::Row;
using zol_v2::reflection::Type;

namespace {

constexpr std::size_t k_longest_name = 160;

// --- Specifications ------------------------------------------------------------------------------

ConstRef space_in(const zol_v2::sg_ColorSpace& member) {
  const Row chosen = ConstRef(member).chosen();
  return chosen ? ConstRef(member).value(chosen).child() : ConstRef();
}

// The element that says how the numbers of a space are to be read; none if it has none.
Row specification_row(Type space) {
  constexpr std::string_view k_prefix = "ColorSpaceSpecification";
  for (const Row row : space.elements()) {
    if (row.name().substr(0, k_prefix.size()) == k_prefix) return row;
  }
  return {};
}

template <class Collection>
ConstRef shared_specification(const Collection* collection, std::string_view name) {
  if (collection == nullptr || !collection->isset_CollectionColorSpaceSpecification()) return {};
  const ConstRef shared(collection->get_CollectionColorSpaceSpecification());
  const Row row = shared.type().row(name);
  return row && shared.has(row) ? shared.value(row).child() : ConstRef();
}

// What is nilled holds from the set, or from the palette.
ConstRef specification_of(const zol_v2::sg_ColorSpace& member,
                          const colorimetry::ColorPlace& place) {
  const ConstRef space = space_in(member);
  const Row row = space ? specification_row(space.type()) : Row();
  if (!row) return {};
  const ConstRef own = space.value(row).child();
  if (own && !own.is_nil()) return own;
  const ConstRef of_set = shared_specification(place.set, row.name());
  return of_set ? of_set : shared_specification(place.palette, row.name());
}

std::string text_of(const zol_v2::reflection::Value& value, Row row) {
  const ConstRef object = value.child();
  if (!object) return readable(row, row.name(), value);
  if (object.is_nil()) return "";
  if (const auto* const options = object.as<zol_v2::IlluminationOptionsType>()) {
    return colorimetry::Light::of(*options).name();
  }
  if (const auto* const choice = object.as<zol_v2::GeometryChoiceType>()) {
    return colorimetry::Geometry::of(*choice).text();
  }
  const Row content = object.type().content();
  return content ? readable(content, row.name(), object.value(content)) : "";
}

// The facts of an object in one line, to tell it from others.
std::string key_of(const std::vector<Fact>& facts) {
  std::string key;
  for (const Fact& fact : facts) key += fact.label + '\n' + fact.value + '\n';
  return key;
}

std::string date_text(const lmx::c_datetime& date) { return date_in_words(date.get_as_string()); }

// Minutes since the year 0 in UTC, to order dates by (H. Hinnant: chrono-compatible low-level date
// algorithms, 2021).
double instant_of(const lmx::c_datetime& date) {
  const int year = date.get_year() - (date.get_month() <= 2 ? 1 : 0);
  const int era = (year >= 0 ? year : year - 399) / 400;
  const int of_era = year - era * 400;
  const int month = static_cast<int>(date.get_month());
  const int of_year =
      (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + static_cast<int>(date.get_day()) - 1;
  const int leap_days = of_era / 4 - of_era / 100;
  const double days = 146097.0 * era + of_era * 365.0 + leap_days + of_year;
  return days * 1440 + date.get_hours() * 60.0 + date.get_mins() + double(date.get_secs()) / 60 -
         date.get_total_offset_mins();
}

template <class Dated>
std::string last_change(const Dated& dated) {
  const unsigned count = dated.size_ChangeHistory();
  return count > 0 ? date_text(dated.get_ChangeHistory(count - 1)) : "";
}

}  // namespace

bool ReportConditions::operator<(const ReportConditions& other) const {
  const auto key = [](const ReportConditions& c) {
    return std::tie(c.illuminant, c.observer, c.geometry, c.quantity, c.filter, c.polarisation,
                    c.device);
  };
  if (key(*this) != key(other)) return key(*this) < key(other);
  return key_of(others) < key_of(other.others);
}

// --- Gathering -----------------------------------------------------------------------------------

class ReportContent::Gatherer {
 public:
  Gatherer(ReportContent* content, const std::optional<Conditions>& conditions)
      : content_(*content), wanted_(conditions) {}

  void gather() {
    const zol_v2::Zol& document = content_.document_;
    if (document.size_Color() > 0) {
      begin_group("Single colours", "", {});
      for (unsigned i = 0; i < document.size_Color(); ++i) add_color(document.get_Color(i), {}, "");
    }
    for (unsigned i = 0; i < document.size_Palette(); ++i) add_palette(document.get_Palette(i));
    for (unsigned i = 0; i < document.size_ColorQualityControl(); ++i) {
      add_record(document.get_ColorQualityControl(i), i);
    }
    close_group();
    add_events();
  }

 private:
  std::string unique_id(std::string id) {
    const unsigned count = ++ids_[id];
    if (count == 1) return id;
    // A name may end just so itself.
    std::string numbered = id + '-' + std::to_string(count);
    return ids_.count(numbered) == 0 ? unique_id(numbered) : unique_id(id);
  }

  void begin_group(const std::string& title, const std::string& subtitle, std::vector<Fact> facts) {
    close_group();
    ReportGroup group;
    const std::string slug = slug_of(subtitle.empty() ? title : subtitle + '-' + title);
    group.id = unique_id(slug.empty() ? "group" : "group-" + slug);
    group.title = title.empty() ? "(no name)" : shortened(title, k_longest_name);
    group.subtitle = shortened(subtitle, k_longest_name);
    group.facts = std::move(facts);
    group.first = content_.colors_.size();
    content_.groups_.push_back(std::move(group));
  }

  void close_group() {
    if (!content_.groups_.empty()) content_.groups_.back().last = content_.colors_.size();
  }

  void add_palette(const zol_v2::PaletteType& palette) {
    const std::string name = utf8(palette.get_PaletteName());
    for (unsigned i = 0; i < palette.size_ColorSet(); ++i) {
      const zol_v2::ColorSetType& set = palette.get_ColorSet(i);
      begin_group(utf8(set.get_ColorSetName()), name, collection_facts(palette, set, i == 0));
      if (set.isset_Substrate()) add_substrate(set.get_Substrate());
      for (unsigned j = 0; j < set.size_Color(); ++j) {
        add_color(set.get_Color(j), {&set, &palette}, "");
      }
    }
  }

  static std::vector<Fact> collection_facts(const zol_v2::PaletteType& palette,
                                            const zol_v2::ColorSetType& set, bool is_first) {
    std::vector<Fact> facts;
    if (is_first && palette.isset_PaletteVersion()) {
      facts.push_back({"Palette version", utf8(palette.get_PaletteVersion())});
    }
    if (is_first && palette.isset_PalettePartNumber()) {
      facts.push_back({"Palette part number", utf8(palette.get_PalettePartNumber())});
    }
    if (is_first && palette.isset_Comments()) {
      facts.push_back({"Palette", utf8(palette.get_Comments())});
    }
    if (set.isset_PartNumber()) facts.push_back({"Part number", utf8(set.get_PartNumber())});
    if (set.isset_Comments()) facts.push_back({"Comments", utf8(set.get_Comments())});
    facts.push_back({"Last change", last_change(set)});
    return facts;
  }

  void add_record(const zol_v2::ColorQualityControlType& record, unsigned index) {
    const std::string name = utf8(record.get_Name());
    begin_group(name.empty() ? "Record " + std::to_string(index + 1) : name, "Quality control", {});
    for (unsigned i = 0; i < record.size_StandardAndMeasurement(); ++i) {
      const zol_v2::StandardAndMeasurementType& pair = record.get_StandardAndMeasurement(i);
      const std::size_t first = content_.colors_.size();
      const std::string number = std::to_string(i + 1);
      if (!pair.get_Standard().isnil_Standard()) {
        add_color(pair.get_Standard().get_Color(), {}, "Standard " + number);
        add_device(pair.get_Standard().get_Device());
      }
      for (unsigned j = 0; j < pair.size_Measurement(); ++j) {
        const zol_v2::Measurement& measurement = pair.get_Measurement(j);
        add_color(measurement.get_Color(), {},
                  "Measurement " + number + '.' + std::to_string(j + 1));
        add_device(measurement.get_Device());
      }
      for (std::size_t j = first; j < content_.colors_.size(); ++j) {
        content_.colors_[j].record = &record;
        content_.colors_[j].pair = &pair;
      }
    }
    if (record.isset_PhysicalSample()) {
      const ConstRef sample(record.get_PhysicalSample().get_Sample());
      const ConstRef held = sample.chosen() ? sample.value(sample.chosen()).child() : ConstRef();
      if (const auto* const any = held.as<zol_v2::SampleType>())
        add_substrate(any->get_Substrate());
    }
  }

  void add_color(const ColorType& color, const colorimetry::ColorPlace& place, std::string role) {
    ReportColor entry;
    entry.color = &color;
    entry.place = place;
    entry.number = static_cast<unsigned>(content_.colors_.size()) + 1;
    const std::string name = utf8(color.get_ColorName());
    entry.name = name.empty() ? "(no name)" : shortened(name, k_longest_name);
    entry.role = std::move(role);
    entry.id = id_of(color, name);
    measure(&entry);
    for (unsigned i = 0; i < color.size_ColorSpace(); ++i) {
      add_conditions(color.get_ColorSpace(i), place);
    }
    if (color.isset_Substrate()) add_substrate(color.get_Substrate());
    content_.places_.emplace(&color, content_.colors_.size());
    content_.colors_.push_back(std::move(entry));
  }

  // By what stays when colours are added before it: its identifier, else its name and number.
  std::string id_of(const ColorType& color, const std::string& name) {
    std::string slug = color.isset_UniqueID() ? slug_of(utf8(color.get_UniqueID())) : "";
    if (slug.empty()) {
      slug = slug_of(name);
      if (color.isset_ColorNumber()) {
        const std::string number = slug_of(utf8(color.get_ColorNumber()));
        if (!number.empty()) slug += (slug.empty() ? "" : "-") + number;
      }
    }
    return unique_id(slug.empty() ? "colour" : "colour-" + slug);
  }

  void measure(ReportColor* entry) {
    Outcome<Stimulus> measured = wanted_ ? meter_.measure(*entry->color, *wanted_, entry->place)
                                         : meter_.measure(*entry->color, entry->place);
    if (measured) {
      entry->display = colorimetry::display_of(*measured);
      entry->basis = basis_number(colorimetry::basis_of(*measured));
      entry->stimulus = std::move(*measured);
    } else {
      entry->reason = measured.reason();
    }
    Outcome<colorimetry::Spectrum> spectrum = colorimetry::Colorimeter::spectrum(*entry->color);
    if (!spectrum) return;
    entry->spectrum = std::move(*spectrum);
    entry->is_emission = first_spectral_is_emission(*entry->color);
  }

  static bool first_spectral_is_emission(const ColorType& color) {
    for (unsigned i = 0; i < color.size_ColorSpace(); ++i) {
      const int chosen = color.get_ColorSpace(i).getchosen();
      if (chosen == zol_v2::sg_ColorSpace::chosen_ColorSpaceSpectral) return false;
      if (chosen == zol_v2::sg_ColorSpace::chosen_ColorSpaceEmissiveSpectral) return true;
    }
    return false;
  }

  unsigned basis_number(std::string text) {
    const auto found = basis_numbers_.emplace(std::move(text), content_.bases_.size());
    if (found.second) content_.bases_.emplace_back(found.first->first, 0);
    ++content_.bases_[found.first->second].second;
    return static_cast<unsigned>(found.first->second);
  }

  void add_conditions(const zol_v2::sg_ColorSpace& space, const colorimetry::ColorPlace& place) {
    const ConstRef specification = specification_of(space, place);
    if (!specification) return;
    unsigned& number = content_.numbers_[&specification.object()];
    if (number == 0) number = conditions_number(specification);
    const unsigned found = number;  // the table may move
    content_.numbers_[&space] = found;
  }

  unsigned conditions_number(ConstRef specification) {
    ReportConditions conditions;
    for (const Row row : specification.type().elements()) {
      if (!specification.has(row) || row.is_list()) continue;
      add_condition(row, specification.value(row), &conditions);
    }
    for (const Row row : specification.type().attributes()) {
      if (specification.has(row) && row.name() == "Comments") {
        conditions.others.push_back({"Comments", text_of(specification.value(row), row)});
      }
    }
    const auto found =
        condition_numbers_.emplace(std::move(conditions), condition_numbers_.size() + 1);
    if (found.second) content_.conditions_.push_back(found.first->first);
    return static_cast<unsigned>(found.first->second);
  }

  void add_condition(Row row, const zol_v2::reflection::Value& value, ReportConditions* out) {
    const std::string_view name = row.name();
    const std::pair<std::string_view, std::string*> columns[] = {
        {"IlluminationOptions", &out->illuminant}, {"FieldOfView", &out->observer},
        {"GeometryChoice", &out->geometry},        {"Spectrum", &out->quantity},
        {"EmissiveType", &out->quantity},          {"DeviceFilter", &out->filter},
        {"DevicePolarization", &out->polarisation}};
    for (const auto& [column, text] : columns) {
      if (name == column) *text = text_of(value, row);
    }
    const bool is_column = std::any_of(std::begin(columns), std::end(columns),
                                       [&](const auto& column) { return column.first == name; });
    if (is_column) return;
    const ConstRef child = value.child();
    if (child && child.as<zol_v2::DeviceType>() != nullptr) {
      out->device = add_device(*child.as<zol_v2::DeviceType>());
    } else if (child) {
      for (Fact& fact : facts_of(child)) out->others.push_back(std::move(fact));
    } else {
      out->others.push_back({words_of(name), text_of(value, row)});
    }
  }

  unsigned add_device(const zol_v2::DeviceType& device) {
    std::vector<Fact> facts = facts_of(ConstRef(device));
    const auto found = device_numbers_.emplace(key_of(facts), device_numbers_.size() + 1);
    if (found.second) content_.devices_.push_back({std::move(facts), 0});
    const unsigned number = static_cast<unsigned>(found.first->second);
    ++content_.devices_[number - 1].uses;
    content_.numbers_[&device] = number;
    return number;
  }

  void add_substrate(const zol_v2::sg_Substrate& substrate) {
    const Row chosen = ConstRef(substrate).chosen();
    if (!chosen) return;
    constexpr std::string_view k_prefix = "Substrate";
    ReportSubstrate entry{words_of(chosen.name().substr(k_prefix.size())),
                          facts_of(ConstRef(substrate).value(chosen).child()), 0};
    const auto found = substrate_numbers_.emplace(entry.kind + '\n' + key_of(entry.facts),
                                                  substrate_numbers_.size() + 1);
    if (found.second) content_.substrates_.push_back(std::move(entry));
    const unsigned number = static_cast<unsigned>(found.first->second);
    ++content_.substrates_[number - 1].uses;
    content_.numbers_[&substrate] = number;
  }

  template <class Dated>
  void add_dates(const Dated& dated, const std::string& what) {
    for (unsigned i = 0; i < dated.size_ChangeHistory(); ++i) {
      const lmx::c_datetime& date = dated.get_ChangeHistory(i);
      content_.events_.push_back(
          {instant_of(date), date_text(date), what + (i == 0 ? " made" : " changed")});
    }
  }

  // Those that were made or changed at one time together.
  void add_dates_of_colors() {
    struct Change {
      double instant;
      std::string date;
      std::size_t count;
      const ReportColor* first;
    };
    std::unordered_map<std::string, std::size_t> places;
    std::vector<Change> changes;
    for (const ReportColor& color : content_.colors_) {
      for (unsigned i = 0; i < color.color->size_ChangeHistory(); ++i) {
        const lmx::c_datetime& date = color.color->get_ChangeHistory(i);
        std::string key = (i == 0 ? "m" : "c") + date_text(date);
        const auto found = places.emplace(std::move(key), changes.size());
        if (found.second) {
          changes.push_back({instant_of(date), found.first->first, 0, &color});
        }
        ++changes[found.first->second].count;
      }
    }
    for (const Change& change : changes) {
      const std::string what = change.count > 1 ? grouped_number(change.count) + " colours"
                                                : "Colour " + change.first->name;
      content_.events_.push_back({change.instant, change.date.substr(1),
                                  what + (change.date.front() == 'm' ? " made" : " changed")});
    }
  }

  void add_events() {
    const zol_v2::Zol& document = content_.document_;
    add_dates(document.get_Preamble().get_Header(), "Document");
    for (unsigned i = 0; i < document.size_Palette(); ++i) {
      const zol_v2::PaletteType& palette = document.get_Palette(i);
      add_dates(palette, "Palette " + shortened(utf8(palette.get_PaletteName()), k_longest_name));
    }
    for (unsigned i = 0; i < document.size_ColorQualityControl(); ++i) {
      const zol_v2::ColorQualityControlType& record = document.get_ColorQualityControl(i);
      add_dates(record, "Record " + shortened(utf8(record.get_Name()), k_longest_name));
    }
    add_dates_of_colors();
    std::stable_sort(
        content_.events_.begin(), content_.events_.end(),
        [](const ReportEvent& a, const ReportEvent& b) { return a.instant < b.instant; });
  }

  ReportContent& content_;
  std::optional<Conditions> wanted_;
  colorimetry::Colorimeter meter_;
  std::unordered_map<std::string, unsigned> ids_;
  std::unordered_map<std::string, std::size_t> basis_numbers_;
  std::map<ReportConditions, std::size_t> condition_numbers_;
  std::unordered_map<std::string, std::size_t> device_numbers_;
  std::unordered_map<std::string, std::size_t> substrate_numbers_;
};

ReportContent::ReportContent(const zol_v2::Zol& document,
                             const std::optional<Conditions>& conditions)
    : document_(document) {
  Gatherer(this, conditions).gather();
}

void ReportContent::judge() { evaluation_ = colorimetry::evaluate(document_); }

const ReportColor* ReportContent::find(const ColorType& color) const {
  const auto found = places_.find(&color);
  return found == places_.end() ? nullptr : &colors_[found->second];
}

namespace {

unsigned number_at(const std::unordered_map<const void*, unsigned>& numbers, const void* object) {
  const auto found = numbers.find(object);
  return found == numbers.end() ? 0 : found->second;
}

}  // namespace

unsigned ReportContent::conditions_of(const zol_v2::sg_ColorSpace& space) const {
  return number_at(numbers_, &space);
}

unsigned ReportContent::substrate_of(const ColorType& color) const {
  return color.isset_Substrate() ? number_at(numbers_, &color.get_Substrate()) : 0;
}

unsigned ReportContent::device_of(const zol_v2::DeviceType& device) const {
  return number_at(numbers_, &device);
}

std::size_t ReportContent::count_out_of_gamut() const {
  return static_cast<std::size_t>(std::count_if(
      colors_.begin(), colors_.end(),
      [](const ReportColor& color) { return color.stimulus && !color.display.is_in_gamut; }));
}

std::size_t ReportContent::count_spectra() const {
  return static_cast<std::size_t>(
      std::count_if(colors_.begin(), colors_.end(),
                    [](const ReportColor& color) { return color.spectrum.has_value(); }));
}
