// The library of colour over arrays, and over the colours and records of a document.
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <array>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "colorimetry/colorimeter.h"
#include "colorimetry/difference.h"
#include "colorimetry/evaluation.h"
#include "colorimetry/light.h"
#include "colorimetry/spaces.h"
#include "colorimetry/spectrum.h"
#include "model/Zol.h"
#include "python/handles.h"

namespace zol_v2::python {

namespace py = pybind11;

namespace {

using namespace colorimetry;
using Numbers = py::array_t<double, py::array::c_style | py::array::forcecast>;

template <class T>
T value_of(const Outcome<T>& outcome) {
  if (!outcome) throw py::value_error(outcome.reason());
  return *outcome;
}

const Zol& document_of(const py::object& object, Proxy** proxy) {
  *proxy = live_proxy(object.ptr());
  if (*proxy == nullptr) throw py::error_already_set();
  const Zol* const document = ConstRef(*(*proxy)->object).as<Zol>();
  if (document == nullptr) throw py::type_error("a document is wanted");
  return *document;
}

// --- Arrays of triples ---------------------------------------------------------------------------

template <class T>
T triple(const double* at) {
  return {at[0], at[1], at[2]};
}
template <class T>
void put(double* to, const T& value) {
  static_assert(sizeof(T) == 3 * sizeof(double), "three numbers side by side");
  std::memcpy(to, &value, sizeof value);
}

void want_triples(const Numbers& array) {
  if (array.ndim() < 1 || array.shape(array.ndim() - 1) != 3) {
    throw py::value_error("the last dimension has to be of 3 numbers");
  }
}

std::vector<py::ssize_t> shape_of(const Numbers& array) {
  return {array.shape(), array.shape() + array.ndim()};
}

// One triple to another.
using Conversion = void (*)(const double* from, double* to, const Xyz& white);

template <class From, class To, To (*convert)(const From&)>
void plain(const double* from, double* to, const Xyz&) {
  put<To>(to, convert(triple<From>(from)));
}
template <class From, class To, To (*convert)(const From&, const Xyz&)>
void whited(const double* from, double* to, const Xyz& white) {
  put<To>(to, convert(triple<From>(from), white));
}
template <RgbSpace space>
void rgb_from_xyz(const double* from, double* to, const Xyz&) {
  put<Rgb>(to, rgb_of(triple<Xyz>(from), space));
}
template <RgbSpace space>
void xyz_from_rgb(const double* from, double* to, const Xyz&) {
  put<Xyz>(to, xyz_of(triple<Rgb>(from), space));
}

const std::unordered_map<std::string, Conversion>& conversions() {
  static const std::unordered_map<std::string, Conversion> table = {
      {"xyz_lab", whited<Xyz, Lab, lab_of>},
      {"lab_xyz", whited<Lab, Xyz, xyz_of>},
      {"lab_lch", plain<Lab, Lch, lch_of>},
      {"lch_lab", plain<Lch, Lab, lab_of>},
      {"xyz_luv", whited<Xyz, Luv, luv_of>},
      {"luv_xyz", whited<Luv, Xyz, xyz_of>},
      {"xyz_xyy", whited<Xyz, Xyy, xyy_of>},
      {"xyy_xyz", plain<Xyy, Xyz, xyz_of>},
      {"xyz_hunter", whited<Xyz, HunterLab, hunter_of>},
      {"hunter_xyz", whited<HunterLab, Xyz, xyz_of>},
      {"xyz_srgb", rgb_from_xyz<RgbSpace::srgb>},
      {"srgb_xyz", xyz_from_rgb<RgbSpace::srgb>},
      {"xyz_adobe_rgb", rgb_from_xyz<RgbSpace::adobe_rgb_1998>},
      {"adobe_rgb_xyz", xyz_from_rgb<RgbSpace::adobe_rgb_1998>},
      {"xyz_wide_gamut_rgb", rgb_from_xyz<RgbSpace::wide_gamut>},
      {"wide_gamut_rgb_xyz", xyz_from_rgb<RgbSpace::wide_gamut>},
      {"rgb_hsl", plain<Rgb, Hsl, hsl_of>},
      {"hsl_rgb", plain<Hsl, Rgb, rgb_of>},
      {"rgb_hsv", plain<Rgb, Hsv, hsv_of>},
      {"hsv_rgb", plain<Hsv, Rgb, rgb_of>},
      {"rgb_yuv", plain<Rgb, Yuv, yuv_of>},
      {"yuv_rgb", plain<Yuv, Rgb, rgb_of>},
      {"rgb_yiq", plain<Rgb, Yiq, yiq_of>},
      {"yiq_rgb", plain<Yiq, Rgb, rgb_of>},
      {"rgb_ybr", plain<Rgb, Ybr, ybr_of>},
      {"ybr_rgb", plain<Ybr, Rgb, rgb_of>},
  };
  return table;
}

Numbers convert(const std::string& way, const Numbers& values, const std::array<double, 3>& white) {
  const auto found = conversions().find(way);
  if (found == conversions().end()) throw py::value_error("no such conversion: " + way);
  want_triples(values);
  Numbers result(shape_of(values));
  const double* const from = values.data();
  double* const to = result.mutable_data();
  const py::ssize_t size = values.size();
  const Xyz reference{white[0], white[1], white[2]};
  const py::gil_scoped_release unlocked;
  for (py::ssize_t i = 0; i < size; i += 3) found->second(from + i, to + i, reference);
  return result;
}

Numbers adapt(const Numbers& values, const std::array<double, 3>& from_white,
              const std::array<double, 3>& to_white, bool is_cat02) {
  want_triples(values);
  Numbers result(shape_of(values));
  const double* const from = values.data();
  double* const to = result.mutable_data();
  const py::ssize_t size = values.size();
  const Xyz before = triple<Xyz>(from_white.data()), after = triple<Xyz>(to_white.data());
  const Adaptation method = is_cat02 ? Adaptation::cat02 : Adaptation::bradford;
  const py::gil_scoped_release unlocked;
  for (py::ssize_t i = 0; i < size; i += 3) {
    put<Xyz>(to + i, adapted(triple<Xyz>(from + i), before, after, method));
  }
  return result;
}

using Difference = double (*)(const Lab& standard, const Lab& sample, const Factors& k);

Difference difference_called(const std::string& formula) {
  static const std::unordered_map<std::string, Difference> table = {
      {"76", [](const Lab& a, const Lab& b, const Factors&) { return de76(a, b); }},
      {"94", [](const Lab& a, const Lab& b, const Factors& k) { return de94(a, b, k); }},
      {"2000", [](const Lab& a, const Lab& b, const Factors& k) { return de2000(a, b, k); }},
      {"cmc", [](const Lab& a, const Lab& b, const Factors& k) { return de_cmc(a, b, k.l, k.c); }},
      {"99", [](const Lab& a, const Lab& b, const Factors& k) { return de99(a, b, k.l, k.c); }},
  };
  const auto found = table.find(formula);
  if (found == table.end()) throw py::value_error("no such formula: " + formula);
  return found->second;
}

// Of arrays of one shape.
Numbers difference(const std::string& formula, const Numbers& standard, const Numbers& sample,
                   const std::array<double, 3>& factors) {
  const Difference by = difference_called(formula);
  want_triples(standard);
  want_triples(sample);
  std::vector<py::ssize_t> shape = shape_of(standard);
  if (shape != shape_of(sample)) throw py::value_error("the arrays are of different shapes");
  shape.pop_back();
  Numbers result(shape);
  const double *const a = standard.data(), *const b = sample.data();
  double* const to = result.mutable_data();
  const py::ssize_t size = result.size();
  const Factors k{factors[0], factors[1], factors[2]};
  const py::gil_scoped_release unlocked;
  for (py::ssize_t i = 0; i < size; ++i)
    to[i] = by(triple<Lab>(a + 3 * i), triple<Lab>(b + 3 * i), k);
  return result;
}

// --- Light and spectra ---------------------------------------------------------------------------

Observer observer_of(int degrees) {
  if (degrees == 2) return Observer::degree_2;
  if (degrees == 10) return Observer::degree_10;
  throw py::value_error("the observers are those of 2 and of 10 degrees");
}

Conditions conditions_of(const std::string& illuminant, int observer) {
  return {value_of(Light::named(illuminant)), observer_of(observer)};
}

std::array<double, 3> white(const std::string& illuminant, int observer) {
  const Conditions conditions = conditions_of(illuminant, observer);
  const Xyz xyz = value_of(conditions.light.white(conditions.observer));
  return {xyz.x, xyz.y, xyz.z};
}

Numbers spectrum_to_xyz(const std::vector<double>& wavelengths, const Numbers& values,
                        const std::string& illuminant, int observer) {
  const Grid grid = value_of(Grid::of(wavelengths));
  const Conditions conditions = conditions_of(illuminant, observer);
  const auto weights = value_of(Weights::of(grid, conditions.light, conditions.observer));
  std::vector<py::ssize_t> shape = shape_of(values);
  if (shape.empty() || static_cast<std::size_t>(shape.back()) != grid.size()) {
    throw py::value_error("the last dimension has to be of " + std::to_string(grid.size()) +
                          " numbers");
  }
  shape.back() = 3;
  Numbers result(shape);
  const double* from = values.data();
  double* to = result.mutable_data();
  double* const end = to + result.size();
  const py::gil_scoped_release unlocked;
  for (; to != end; to += 3, from += grid.size()) put<Xyz>(to, weights->apply(from));
  return result;
}

// --- Documents -----------------------------------------------------------------------------------

// A colour and where it stands.
struct Placed {
  const ColorType* color;
  ColorPlace place;
  const char* role = "color";
};

// In the order of the document.
std::vector<Placed> colors_of(const Zol& document) {
  std::vector<Placed> all;
  for (unsigned i = 0; i < document.size_Color(); ++i) all.push_back({&document.get_Color(i), {}});
  for (unsigned i = 0; i < document.size_Palette(); ++i) {
    const PaletteType& palette = document.get_Palette(i);
    for (unsigned j = 0; j < palette.size_ColorSet(); ++j) {
      const ColorSetType& set = palette.get_ColorSet(j);
      for (unsigned k = 0; k < set.size_Color(); ++k) {
        all.push_back({&set.get_Color(k), {&set, &palette}});
      }
    }
  }
  for (unsigned i = 0; i < document.size_ColorQualityControl(); ++i) {
    const ColorQualityControlType& record = document.get_ColorQualityControl(i);
    for (unsigned j = 0; j < record.size_StandardAndMeasurement(); ++j) {
      const StandardAndMeasurementType& pair = record.get_StandardAndMeasurement(j);
      for (unsigned k = 0; k < pair.size_Measurement(); ++k) {
        all.push_back({&pair.get_Measurement(k).get_Color(), {}, "measurement"});
      }
      if (!ConstRef(pair.get_Standard()).is_nil()) {
        all.push_back({&pair.get_Standard().get_Color(), {}, "standard"});
      }
    }
  }
  return all;
}

py::object text_or_none(const char* row, const Object* object) {
  if (object == nullptr) return py::none();
  const ConstRef ref(*object);
  return py::reinterpret_steal<py::object>(to_text(ref.value(ref.type().row(row))));
}

std::string_view source_name(Source source) {
  constexpr std::string_view names[] = {"tristimulus", "spectrum", "adapted", "profile", "rgb"};
  return names[static_cast<unsigned>(source)];
}

py::str text(std::string_view utf8) { return {utf8.data(), utf8.size()}; }

constexpr const char* k_measured[] = {"palette", "color_set",  "color",    "unique_id",
                                      "role",    "illuminant", "observer", "source",
                                      "hex",     "in_gamut",   "basis",    "reason"};

// Columns of all colours of a document under the conditions, or under their own.
py::dict measure(const py::object& object, const std::optional<std::string>& illuminant,
                 int observer, bool adapts, bool tells) {
  Proxy* proxy = nullptr;
  const Zol& document = document_of(object, &proxy);
  std::optional<Conditions> wanted;
  if (illuminant) wanted = conditions_of(*illuminant, observer);
  std::vector<Placed> all;
  std::vector<Outcome<Stimulus>> measured;
  {
    const Exclusive unlocked(*proxy);
    all = colors_of(document);
    measured.reserve(all.size());
    Colorimeter::Options options;
    if (!adapts) options.adaptation = Adaptation::none;
    Colorimeter meter(options);
    for (const Placed& placed : all) {
      measured.push_back(wanted ? meter.measure(*placed.color, *wanted, placed.place)
                                : meter.measure(*placed.color, placed.place));
    }
  }
  const auto count = static_cast<py::ssize_t>(all.size());
  Numbers xyz({count, py::ssize_t{3}}), lab({count, py::ssize_t{3}});
  py::list lists[std::size(k_measured)];
  std::unordered_map<std::string, py::str> kept;
  const auto shared = [&](const std::string& one) {
    const auto found = kept.find(one);
    return found != kept.end() ? found->second : kept.emplace(one, text(one)).first->second;
  };
  for (py::ssize_t i = 0; i < count; ++i) {
    const Placed& placed = all[static_cast<std::size_t>(i)];
    const Outcome<Stimulus>& outcome = measured[static_cast<std::size_t>(i)];
    double* const x = xyz.mutable_data(i, 0);
    double* const l = lab.mutable_data(i, 0);
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    put<Xyz>(x, outcome ? outcome->xyz : Xyz{nan, nan, nan});
    put<Lab>(l, outcome ? outcome->lab() : Lab{nan, nan, nan});
    const py::none none;
    unsigned at = 0;
    lists[at++].append(text_or_none("PaletteName", placed.place.palette));
    lists[at++].append(text_or_none("ColorSetName", placed.place.set));
    lists[at++].append(text_or_none("ColorName", placed.color));
    lists[at++].append(placed.color->isset_UniqueID() ? text_or_none("UniqueID", placed.color)
                                                      : py::object(none));
    lists[at++].append(shared(placed.role));
    if (!outcome) {
      for (; at + 1 < std::size(k_measured); ++at) lists[at].append(none);
      lists[at].append(shared(outcome.reason()));
      continue;
    }
    const Display display = display_of(*outcome);
    lists[at++].append(shared(outcome->conditions.light.name()));
    lists[at++].append(outcome->conditions.observer == Observer::degree_2 ? 2 : 10);
    lists[at++].append(shared(std::string(source_name(outcome->source))));
    lists[at++].append(text(display.hex()));
    lists[at++].append(display.is_in_gamut);
    lists[at++].append(tells ? py::object(shared(basis_of(*outcome))) : py::object(none));
    lists[at++].append(none);
  }
  py::dict columns;
  for (unsigned i = 0; i < std::size(k_measured); ++i) columns[k_measured[i]] = lists[i];
  columns["xyz"] = xyz;
  columns["lab"] = lab;
  return columns;
}

// What a display shows for a colour, or why there is nothing.
py::tuple shown(const py::object& object) {
  Proxy* const proxy = live_proxy(object.ptr());
  if (proxy == nullptr) throw py::error_already_set();
  const auto* const color = ConstRef(*proxy->object).as<ColorType>();
  if (color == nullptr) throw py::type_error("a colour is wanted");
  ColorPlace place;
  for (const Proxy* at = proxy->parent; at != nullptr; at = at->parent) {
    const ConstRef around(*at->object);
    if (place.set == nullptr) place.set = around.as<ColorSetType>();
    if (place.palette == nullptr) place.palette = around.as<PaletteType>();
  }
  const Outcome<Stimulus> outcome = Colorimeter().measure(*color, place);
  if (!outcome) return py::make_tuple(py::none(), text(outcome.reason()));
  return py::make_tuple(text(display_of(*outcome).hex()), text(""));
}

// A row for each verdict of the document's records.
py::list evaluate_document(const py::object& object) {
  Proxy* proxy = nullptr;
  const Zol& document = document_of(object, &proxy);
  Evaluation evaluation;
  {
    const Exclusive unlocked(*proxy);
    evaluation = evaluate(document);
  }
  py::list rows;
  for (const Verdict& verdict : evaluation.verdicts) {
    const auto& record = document.get_ColorQualityControl(verdict.place.record);
    const auto number = [](const std::optional<double>& value) -> py::object {
      return value ? py::object(py::float_(*value)) : py::object(py::none());
    };
    py::object standard = py::none(), measurement = py::none(), changed = py::none();
    if (verdict.place.pair != FunctionPlace::k_all) {
      const auto& pair = record.get_StandardAndMeasurement(verdict.place.pair);
      standard = text_or_none("ColorName", &pair.get_Standard().get_Color());
      if (verdict.place.measurement != FunctionPlace::k_all) {
        const ColorType& color = pair.get_Measurement(verdict.place.measurement).get_Color();
        measurement = text_or_none("ColorName", &color);
        if (color.size_ChangeHistory() != 0) {
          changed = text(color.get_ChangeHistory(0).get_as_string());
        }
      }
    }
    py::dict row;
    row["record"] = text_or_none("Name", &record);
    row["standard"] = standard;
    row["measurement"] = measurement;
    row["measured"] = changed;
    row["tolerance"] = text_or_none("Name", verdict.tolerance);
    row["formula"] = text(name_of(verdict.formula));
    row["value"] = number(verdict.value);
    row["low"] = number(verdict.limits.low);
    row["high"] = number(verdict.limits.high);
    row["warning_level"] = number(verdict.warning_level);
    row["status"] = text(name_of(verdict.status));
    row["conditions"] = verdict.conditions ? py::object(text(text_of(*verdict.conditions)))
                                           : py::object(py::none());
    row["reason"] = text(verdict.reason);
    rows.append(row);
  }
  return rows;
}

}  // namespace

void add_color(py::module_& module) {
  module.def("convert", convert);
  module.def("adapt", adapt);
  module.def("difference", difference);
  module.def("white", white);
  module.def("spectrum_to_xyz", spectrum_to_xyz);
  module.def("measure", measure);
  module.def("shown", shown);
  module.def("evaluate", evaluate_document);
}

}  // namespace zol_v2::python
