#include "facade/internal/suspicions.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "facade/internal/diagnosis.h"
#include "lmx/internal/lexical.h"
#include "lmx/internal/number_text.h"
#include "lmx/internal/reader_state.h"
#include "lmx/reader.h"
#include "model/Zol.h"
#include "model/internal/object.h"
#include "model/reflection.h"

namespace zol_v2::internal {

namespace {

using reflection::ConstRef;
using reflection::Item;
using reflection::Kind;
using reflection::Type;

// What a spectrophotometer may reach, in nanometres.
constexpr double k_shortest_wave = 100;
constexpr double k_longest_wave = 3000;

const Row* row_of(const Class& type, std::string_view name) {
  const reflection::Row row = Type(type).row(name);
  return row ? &row.table() : nullptr;
}

bool ends_with(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// Whether the value leaves it to a name what it stands for.
bool wants_name(std::string_view value) {
  return ends_with(value, "_Custom") || ends_with(value, "_Partial");
}

// The row whose value may leave something to a name.
const Row* customised_row(const Class& type) {
  for (const reflection::Row row : Type(type).rows()) {
    const reflection::EnumValues values = row.values();
    if (std::any_of(values.begin(), values.end(), wants_name)) return &row.table();
  }
  return nullptr;
}

// A text of this kind that names what the enumeration does not.
const Row* custom_name_row(const Class& type) {
  for (const reflection::Row row : Type(type).attributes()) {
    if (row.kind() == Kind::text && row.name().substr(0, 6) == "Custom") return &row.table();
  }
  return nullptr;
}

// Its values mean nothing without an illuminant and an observer.
bool takes_illuminant(const Class& type) {
  const Class* const classes[] = {&ColorSpaceCIELabType::k_class, &ColorSpaceCIELChType::k_class,
                                  &ColorSpaceCIEXYZType::k_class, &ColorSpaceCIExyYType::k_class,
                                  &ColorSpaceCIELuvType::k_class};
  return std::any_of(std::begin(classes), std::end(classes),
                     [&type](const Class* other) { return type.is_a(*other); });
}

std::string text_of(double value) {
  char text[lmx::internal::k_number_room];
  return {text, lmx::internal::format_exact_double(value, text)};
}

Item item_of(const Object& self, const Row& row, unsigned index) {
  return {self, row, index, self, row, index};
}

}  // namespace

// --- What concerns a class -----------------------------------------------------------------------

std::vector<Suspicions::Concerns> Suspicions::make_concerns() {
  std::vector<Concerns> all;
  for (const Type type : reflection::all_types()) {
    const Class& table = type.table();
    Concerns& concerns = all.emplace_back();
    const bool is_tag = table.is_a(Tag::k_class) || table.is_a(TagCategory::k_class);
    concerns.unique_id = row_of(table, "UniqueID");
    concerns.name = is_tag ? row_of(table, "Name") : nullptr;
    concerns.recurs = is_tag || table.is_a(ColorSpaceSpecificationType::k_class);
    concerns.collection = row_of(table, "CollectionColorSpaceSpecification");
    if (takes_illuminant(table)) {
      concerns.specification = row_of(table, "ColorSpaceSpecificationSpectrumTristimulus");
    }
    for (const reflection::Row row : type.elements()) {
      if (!row.is_list() || row.kind() != Kind::object) continue;
      if (const Row* const wavelength = row_of(row.type().table(), "Wavelength")) {
        concerns.points = &row.table();
        concerns.wavelength = wavelength;
      }
    }
    concerns.custom_name = custom_name_row(table);
    if (concerns.custom_name != nullptr) concerns.custom_value = customised_row(table);
    concerns.is_any = concerns.unique_id != nullptr || concerns.collection != nullptr ||
                      concerns.specification != nullptr || concerns.points != nullptr ||
                      concerns.custom_value != nullptr || table.is_nillable();
  }
  return all;
}

const Suspicions::Concerns& Suspicions::concerns_of(const Class& type) {
  static const std::vector<Concerns> all = make_concerns();
  return all[type.number];
}

// --- The walk ------------------------------------------------------------------------------------

Suspicions::Visit::Visit(Suspicions& all, const Object& self, const Class& type, const Level& level,
                         bool is_wanted) {
  if (!is_wanted) return;
  const Concerns& concerns = concerns_of(type);
  if (!concerns.is_any) return;
  all.look(self, type, concerns, level);
  if (concerns.collection == nullptr) return;
  all_ = &all;
  up_ = all.innermost_;
  self_ = &self;
  collection_ = concerns.collection;
  all.innermost_ = this;
}

Suspicions::Visit::~Visit() {
  if (all_ != nullptr) all_->innermost_ = up_;
}

void Suspicions::look(const Object& self, const Class& type, const Concerns& concerns,
                      const Level& level) {
  if (concerns.unique_id != nullptr) note_identifier(self, type, concerns);
  if (Head::is_nil(self, type)) {
    const Class& content = type.content_class();
    const Rows rows = content.shape == Shape::simple ? Rows{nullptr, nullptr} : content.elements();
    const bool holds = content.shape == Shape::simple
                           ? Head::has(self, content.content().bit)
                           : std::any_of(rows.begin(), rows.end(), [&self](const Row& row) {
                               return ConstRef(self).has(row);
                             });
    if (!holds) return;
    if (Fault* const fault = faults_.add_warning(level, level.item)) {
      fault->rule = "nil-with-content";
      fault->expected =
          std::string(level.item.name()) + " is nil, and what it holds is not written";
    }
    return;
  }
  if (concerns.points != nullptr) look_at_spectrum(self, concerns, level);
  if (concerns.specification != nullptr) look_at_illuminant(self, *concerns.specification, level);
  if (concerns.custom_value != nullptr) look_at_custom_name(self, concerns, level);
}

// --- Spectra -------------------------------------------------------------------------------------

void Suspicions::look_at_spectrum(const Object& self, const Concerns& concerns,
                                  const Level& level) {
  look_at_wavelengths(self, concerns, level);
  // Of the colours of the set itself, and not of what they sit on.
  if (innermost_ == nullptr || level.up == nullptr || level.up->item.parent != *innermost_->self_) {
    return;
  }
  const unsigned size = concerns.points->field<PointerList>(self).size();
  for (Visit::Spectra& spectra : innermost_->spectra_) {
    if (spectra.points == nullptr) {
      spectra.points = concerns.points;
      spectra.size = size;
    }
    if (spectra.points != concerns.points) continue;
    if (spectra.size == size || spectra.is_uneven) return;
    spectra.is_uneven = true;
    if (Fault* const fault = faults_.add_warning(level, level.item)) {
      fault->rule = "uneven-spectra";
      fault->found = std::to_string(size);
      fault->expected = std::string(level.item.name()) + " has " + fault->found +
                        " points, and the first of the colour set " + std::to_string(spectra.size);
    }
    return;
  }
}

Fault* Suspicions::add_of_point(const Object& self, const Concerns& concerns, const Level& level,
                                unsigned index) {
  const Level point{&level, item_of(self, *concerns.points, index), level.depth + 1};
  return faults_.add_warning(point, item_of(point.item.object().object(), *concerns.wavelength, 0));
}

void Suspicions::look_at_wavelengths(const Object& self, const Concerns& concerns,
                                     const Level& level) {
  const PointerList& points = concerns.points->field<PointerList>(self);
  wavelengths_.clear();
  bool is_rising = true;
  bool is_noted = false;
  double last = 0;
  unsigned index = 0;
  for (const void* const entry : points) {
    const Object& point = *static_cast<const Object*>(entry);
    const double wavelength = concerns.wavelength->field<double>(point);
    const unsigned at = index++;
    if (!Head::has(point, concerns.wavelength->bit) || std::isnan(wavelength)) continue;
    is_rising = is_rising && wavelength > last;
    last = wavelength;
    wavelengths_.emplace_back(wavelength, at);
    const bool is_in_range = wavelength >= k_shortest_wave && wavelength <= k_longest_wave;
    if (is_in_range || is_noted || !(wavelength > 0)) continue;
    is_noted = true;
    if (Fault* const fault = add_of_point(self, concerns, level, at)) {
      fault->rule = "wavelength-range";
      fault->found = text_of(wavelength);
      fault->expected = "Wavelength is " + fault->found + " nm, " + text_of(k_shortest_wave) +
                        " to " + text_of(k_longest_wave) + " nm is usual";
    }
  }
  if (is_rising) return;
  std::sort(wavelengths_.begin(), wavelengths_.end());
  const auto twice =
      std::adjacent_find(wavelengths_.begin(), wavelengths_.end(),
                         [](const auto& a, const auto& b) { return a.first == b.first; });
  if (twice == wavelengths_.end()) return;
  const auto [wavelength, first] = twice[0];
  if (Fault* const fault = add_of_point(self, concerns, level, twice[1].second)) {
    fault->rule = "wavelength-twice";
    fault->found = text_of(wavelength);
    fault->expected = "Wavelength is " + fault->found + " nm, as that of point " +
                      std::to_string(first + 1) + " is";
  }
}

// --- What is not said ----------------------------------------------------------------------------

void Suspicions::look_at_illuminant(const Object& self, const Row& specification,
                                    const Level& level) {
  const ConstRef space(self);
  const ConstRef own = space.value(specification).child();
  if (!space.has(specification) || !own.is_nil()) return;
  for (const Visit* around = innermost_; around != nullptr; around = around->up_) {
    const ConstRef object(*around->self_);
    if (!object.has(*around->collection_)) continue;
    const ConstRef collection = object.value(*around->collection_).child();
    if (collection.has(collection.type().row(specification.name()))) return;
  }
  if (Fault* const fault = faults_.add_warning(level, item_of(self, specification, 0))) {
    fault->rule = "no-illuminant";
    fault->expected = std::string(level.item.name()) +
                      " has no illuminant and no observer: its specification is nil, and no "
                      "colour set or palette around it has one";
  }
}

void Suspicions::look_at_custom_name(const Object& self, const Concerns& concerns,
                                     const Level& level) {
  const ConstRef object(self);
  if (!object.has(*concerns.custom_value)) return;
  std::string value;
  object.value(*concerns.custom_value).append_text(&value);
  if (!wants_name(value)) return;
  if (object.has(*concerns.custom_name) && !object.value(*concerns.custom_name).text().empty()) {
    return;
  }
  if (Fault* const fault = faults_.add_warning(level, item_of(self, *concerns.custom_name, 0))) {
    fault->rule = "custom-without-name";
    fault->found = value;
    fault->expected = std::string(level.item.name()) + " is " + value + ", and its " +
                      std::string(concerns.custom_name->name()) + " does not say which";
  }
}

// --- Identifiers ---------------------------------------------------------------------------------

void Suspicions::note_identifier(const Object& self, const Class& type, const Concerns& concerns) {
  if (!Head::has(self, concerns.unique_id->bit)) return;
  const Text& text = concerns.unique_id->field<Text>(self);
  std::string_view utf8;
  if (!text.get_narrow(&utf8)) {
    lmx::internal::append_narrow(&texts_.emplace_back(), text.get());
    utf8 = texts_.back();
  }
  if (utf8.empty()) return;
  const Key key(concerns.unique_id, utf8);
  const bool is_reference =
      concerns.recurs && (Head::is_nil(self, type) ||
                          (concerns.name != nullptr && !Head::has(self, concerns.name->bit)));
  if (is_reference) {
    references_.emplace_back(key, &self);
    return;
  }
  const auto [found, is_new] = identified_.emplace(key, &self);
  if (is_new) return;
  const Object& first = *found->second;
  const Class& content = type.content_class();
  if (concerns.recurs && &Head::class_of(first).content_class() == &content &&
      is_same(first, self, content)) {
    return;
  }
  repeated_.emplace(&self, &first);
  first_paths_.emplace(&first, std::string());
}

void Suspicions::finish(const Object& root) {
  for (const auto& [key, object] : references_) {
    if (identified_.find(key) == identified_.end()) unknown_.insert(object);
  }
  if (repeated_.empty() && unknown_.empty()) return;
  Level level;
  level.item.owner = root;
  find_again(level);
}

// The first of two with one identifier comes before the other one.
void Suspicions::find_again(const Level& level) {
  const ConstRef self = level.item.object();
  const Object* const object = &self.object();
  const auto first = first_paths_.find(object);
  if (first != first_paths_.end()) first->second = level.path();
  const auto repeated = repeated_.find(object);
  const bool is_unknown = unknown_.count(object) != 0;
  if (repeated != repeated_.end() || is_unknown) {
    const Row& row = *concerns_of(self.type().table()).unique_id;
    if (Fault* const fault = faults_.add_warning(level, item_of(*object, row, 0))) {
      std::string text;
      self.value(row).append_text(&text);
      fault->rule = is_unknown ? "unknown-unique-id" : "unique-id-twice";
      fault->found = excerpt(text);
      fault->expected = "UniqueID is '" + fault->found + "'";
      fault->expected += is_unknown ? ", and nothing of its kind in the document bears that"
                                    : ", as that of " + first_paths_[repeated->second] + " is";
    }
  }
  if (level.depth >= lmx::internal::ElementDepthGuard::k_max_depth) return;
  for (const Item& item : self.children()) {
    if (item.object()) find_again({&level, item, level.depth + 1});
  }
}

}  // namespace zol_v2::internal
