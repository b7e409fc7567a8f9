// The part of a report on quality control: verdicts with their limits, and what the records say.
#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "model/Zol.h"
#include "tools/markup.h"
#include "tools/report_page.h"
#include "tools/report_parts.h"
#include "tools/report_pictures.h"
#include "tools/text.h"

namespace colorimetry = zol_v2::colorimetry;
using colorimetry::Computed;
using colorimetry::Formula;
using colorimetry::FunctionPlace;
using colorimetry::Lab;
using colorimetry::Status;
using colorimetry::Verdict;
using zol_v2::reflection::ConstRef;

namespace {

using Verdicts = std::vector<const Verdict*>;
using Results = std::vector<const Computed*>;

// --- Words ---------------------------------------------------------------------------------------

struct StatusWords {
  std::string_view type, sign, word;
};

StatusWords words_for(Status status) {
  switch (status) {
    case Status::passed:
      return {"vp", "\u25CF", "Pass"};
    case Status::warning:
      return {"vw", "\u25B2", "Warning"};
    case Status::failed:
      return {"vf", "\u2716", "Fail"};
    default:
      return {"vn", "\u25C6", "Not judged"};
  }
}

std::string badge(Status status) {
  const StatusWords words = words_for(status);
  return "<b class=\"" + std::string(words.type) + "\">" + std::string(words.sign) + ' ' +
         std::string(words.word) + "</b>";
}

std::string number(double value) { return decimal_text(value, 2, true); }

// "CIEDE2000 (1:1:1)"; of what no formula is known for, the type of the function.
std::string formula_text(const Computed& computed) {
  if (computed.formula == Formula::none) {
    constexpr std::string_view k_prefix = "Function";
    std::string_view name = zol_v2::reflection::type_of(*computed.function).name();
    if (name.substr(0, k_prefix.size()) == k_prefix) name.remove_prefix(k_prefix.size());
    return words_of(name);
  }
  std::string text(name_of(computed.formula));
  const colorimetry::Factors& k = computed.factors;
  const std::string first = short_number(k.l) + ':' + short_number(k.c);
  if (computed.formula == Formula::de94 || computed.formula == Formula::de2000) {
    text += " (" + first + ':' + short_number(k.h) + ')';
  } else if (computed.formula == Formula::cmc || computed.formula == Formula::din99) {
    text += " (" + first + ')';
  }
  return text;
}

std::string limits_text(const colorimetry::Limits& limits) {
  if (limits.low && limits.high && *limits.low != 0) {
    return short_number(*limits.low) + " to " + short_number(*limits.high);
  }
  if (limits.high) return "\u2264 " + short_number(*limits.high);
  if (limits.low) return "\u2265 " + short_number(*limits.low);
  return "none";
}

std::string conditions_text(const Computed& computed) {
  if (!computed.conditions) return "";
  std::string text = text_of(*computed.conditions);
  if (computed.test_light) text += ", against " + computed.test_light->name();
  if (computed.has_default_conditions) text += " by default";
  return text;
}

// --- Borders of what passes ----------------------------------------------------------------------

using Difference = double (*)(const Lab&, const Lab&, const colorimetry::Factors&);

// A formula that depends on two colours alone; null for all others.
Difference difference_by(Formula formula) {
  switch (formula) {
    case Formula::de76:
      return [](const Lab& a, const Lab& b, const colorimetry::Factors&) {
        return colorimetry::de76(a, b);
      };
    case Formula::de94:
      return [](const Lab& a, const Lab& b, const colorimetry::Factors& k) {
        return colorimetry::de94(a, b, k);
      };
    case Formula::de2000:
      return [](const Lab& a, const Lab& b, const colorimetry::Factors& k) {
        return colorimetry::de2000(a, b, k);
      };
    case Formula::cmc:
      return [](const Lab& a, const Lab& b, const colorimetry::Factors& k) {
        return colorimetry::de_cmc(a, b, k.l, k.c);
      };
    case Formula::din99:
      return [](const Lab& a, const Lab& b, const colorimetry::Factors& k) {
        return colorimetry::de99(a, b, k.l, k.c);
      };
    default:
      return nullptr;
  }
}

// How far one may go from the standard in a direction before the difference exceeds the limit.
double reach(const Verdict& verdict, Difference difference, const Lab& standard, const Lab& way) {
  const double limit = *verdict.limits.high;
  double inside = 0, outside = 200;
  for (int i = 0; i < 24; ++i) {
    const double middle = (inside + outside) / 2;
    const Lab there{standard.l + way.l * middle, standard.a + way.a * middle,
                    standard.b + way.b * middle};
    (difference(standard, there, verdict.factors) <= limit ? inside : outside) = middle;
  }
  return inside;
}

Border border_of(const Verdict& verdict, Difference difference, const Lab& standard) {
  constexpr int k_directions = 40;
  constexpr double k_turn = 6.283185307179586;
  Border border;
  for (int i = 0; i < k_directions; ++i) {
    const double angle = k_turn * i / k_directions;
    const Lab way{0, std::cos(angle), std::sin(angle)};
    const double length = reach(verdict, difference, standard, way);
    border.points.emplace_back(way.a * length, way.b * length);
  }
  border.lightness = reach(verdict, difference, standard, {1, 0, 0});
  return border;
}

// A rectangle, of limits for da* and db*.
bool find_box(const Verdict& verdict, Border* border) {
  const bool is_signed = verdict.formula == Formula::lab_parts_signed;
  if (!is_signed && verdict.formula != Formula::lab_parts) return false;
  double low[2] = {}, high[2] = {};
  bool has[2] = {};
  for (const colorimetry::PartVerdict& part : verdict.parts) {
    if (!part.limits.high) continue;
    const double least =
        is_signed ? part.limits.low.value_or(-*part.limits.high) : -*part.limits.high;
    if (part.name == "dL*") border->lightness = *part.limits.high;
    const int axis = part.name == "da*" ? 0 : part.name == "db*" ? 1 : -1;
    if (axis < 0) continue;
    has[axis] = true;
    low[axis] = least;
    high[axis] = *part.limits.high;
  }
  if (!has[0] || !has[1]) return false;
  border->points = {{low[0], low[1]}, {high[0], low[1]}, {high[0], high[1]}, {low[0], high[1]}};
  return true;
}

// --- A standard and its measurements -------------------------------------------------------------

struct Pair {
  const zol_v2::StandardAndMeasurementType* object = nullptr;
  Verdicts verdicts;
  Results results;
};

// What the page still has room for, so that one of thousands of standards stays small.
struct Room {
  std::size_t pictures = 200;
  std::size_t rows = 20000;
};

std::string tally(const Verdicts& verdicts) {
  std::string out = "<p class=\"tally\">";
  for (const Status status :
       {Status::failed, Status::warning, Status::passed, Status::not_judged}) {
    const auto count = std::count_if(verdicts.begin(), verdicts.end(), [&](const Verdict* verdict) {
      return verdict->status == status;
    });
    if (count == 0) continue;
    const StatusWords words = words_for(status);
    out += "<b class=\"" + std::string(words.type) + "\">" + std::string(words.sign) + ' ' +
           grouped_number(std::size_t(count)) + ' ' + std::string(words.word) + "</b> ";
  }
  if (verdicts.empty()) out += "<span class=\"mu\">Nothing to judge</span>";
  return out + "</p>";
}

class PairWriter {
 public:
  PairWriter(const ReportContent& content, const Pair& pair, unsigned number, Room* room)
      : content_(content), pair_(pair), number_(number), room_(*room) {}

  std::string text() {
    std::string out = "<article class=\"pair\">" + head();
    const std::size_t rows = pair_.verdicts.size() + pair_.results.size();
    if (rows > room_.rows) {
      return out + tally(pair_.verdicts) +
             "<p class=\"mu\">Too many to list here: zol check lists them.</p></article>";
    }
    room_.rows -= rows;
    std::string picture;
    if (room_.pictures > 0) picture = deviations();
    if (!picture.empty()) --room_.pictures;
    out += "<div class=\"pairbody\"><div>";
    if (pair_.verdicts.empty()) {
      out += "<p class=\"mu\">No tolerance applies to it.</p>";
    } else {
      out += verdict_table();
    }
    out += result_table() + "</div>" + picture + "</div></article>";
    return out;
  }

 private:
  const ReportColor* standard() const {
    const zol_v2::Standard& standard = pair_.object->get_Standard();
    return standard.isnil_Standard() ? nullptr : content_.find(standard.get_Color());
  }

  const ReportColor* measurement(unsigned index) const {
    if (index >= pair_.object->size_Measurement()) return nullptr;
    return content_.find(pair_.object->get_Measurement(index).get_Color());
  }

  // The standard above, its measurements below: an edge shows the least difference.
  std::string head() const {
    const ReportColor* const target = standard();
    const unsigned count = pair_.object->size_Measurement();
    constexpr unsigned k_most = 24;
    std::string out =
        "<header><div class=\"match\" aria-hidden=\"true\">" + swatch_element(target, "") + "<div>";
    for (unsigned i = 0; i < std::min(count, k_most); ++i)
      out += swatch_element(measurement(i), "");
    out += "</div></div><div><h4>";
    const ReportColor* const named = target != nullptr ? target : measurement(0);
    out += named != nullptr ? "<bdi>" + escaped(named->name) + "</bdi>"
                            : "Standard " + std::to_string(number_);
    out += "</h4><p class=\"mu\">";
    out += target != nullptr ? "Standard " + color_link(*target) : "No standard";
    for (unsigned i = 0; i < std::min(count, k_most); ++i) {
      const ReportColor* const color = measurement(i);
      if (color == nullptr) continue;
      out += (i == 0 ? std::string(count == 1 ? "; measurement " : "; measurements ")
                     : std::string(", ")) +
             color_link(*color);
    }
    if (count > k_most) out += " and " + grouped_number(count - k_most) + " more";
    if (count == 0) out += "; not measured yet";
    return out + "</p></div></header>";
  }

  std::string place_text(const FunctionPlace& place) const {
    if (place.measurement == FunctionPlace::k_all) return "all measurements";
    const ReportColor* const color = measurement(place.measurement);
    if (color == nullptr) return "";
    const std::string code = utf8(color->color->get_ColorNumber());
    return color_link(*color) +
           (code.empty() ? "" : " <bdi>" + escaped(shortened(code, 40)) + "</bdi>");
  }

  std::string verdict_table() const {
    std::string out =
        "<table class=\"vt\"><thead><tr><th>Measurement</th><th>Tolerance</th>"
        "<th class=\"r\">Value</th><th>Limits</th><th>Verdict</th></tr></thead><tbody>";
    for (std::size_t i = 0; i < pair_.verdicts.size();) {
      const unsigned measurement = pair_.verdicts[i]->place.measurement;
      std::size_t end = i + 1;
      while (end < pair_.verdicts.size() && pair_.verdicts[end]->place.measurement == measurement) {
        ++end;
      }
      out += "<tr><th scope=\"rowgroup\" rowspan=\"" + std::to_string(end - i) + "\">" +
             place_text(pair_.verdicts[i]->place) + "</th>";
      for (std::size_t first = i; i < end; ++i) {
        out += (i > first ? "<tr>" : "") + verdict_cells(*pair_.verdicts[i]) + "</tr>";
      }
    }
    return out + "</tbody></table>";
  }

  std::string verdict_cells(const Verdict& verdict) const {
    const std::string name = utf8(verdict.tolerance->get_Name());
    std::string out = "<td>";
    if (!name.empty()) out += "<bdi>" + escaped(shortened(name, 80)) + "</bdi><br>";
    const std::string conditions = conditions_text(verdict);
    out += "<small>" + escaped(formula_text(verdict)) +
           (conditions.empty() ? "" : "<br>" + escaped(conditions)) + "</small></td>";
    if (!verdict.value) {
      out += "<td class=\"r\">\u2013</td><td><small>" + escaped(limits_words(verdict)) +
             "</small></td>";
    } else if (has_parts(verdict)) {
      out += parts_cells(verdict);
    } else {
      out += "<td class=\"r\"><b>" + number(*verdict.value) + "</b></td><td>" +
             limits_picture(number(*verdict.value) + ", limits " + limits_words(verdict),
                            *verdict.value, verdict.limits, verdict.warning_level, verdict.status) +
             "</td>";
    }
    out += "<td>" + badge(verdict.status);
    if (!verdict.reason.empty()) out += "<br><small>" + escaped(verdict.reason) + "</small>";
    return out + stored_text(verdict) + "</td>";
  }

  static bool has_parts(const Verdict& verdict) {
    return std::any_of(verdict.parts.begin(), verdict.parts.end(),
                       [](const colorimetry::PartVerdict& part) { return part.name != "value"; });
  }

  static std::string limits_words(const Verdict& verdict) {
    std::string text = limits_text(verdict.limits);
    if (verdict.warning_level) text += ", warning from " + short_number(*verdict.warning_level);
    return text;
  }

  // Each part of a difference with its own value and limits.
  static std::string parts_cells(const Verdict& verdict) {
    std::string out = "<td colspan=\"2\">";
    for (const colorimetry::PartVerdict& part : verdict.parts) {
      out += "<div class=\"one\"><div><small>" + escaped(part.name) + "</small> <b>" +
             number(part.value) + "</b></div>" +
             limits_picture(std::string(part.name) + ' ' + number(part.value) + ", limits " +
                                limits_text(part.limits),
                            part.value, part.limits, std::nullopt,
                            part.is_held ? Status::passed : Status::failed) +
             "</div>";
    }
    return out + "</td>";
  }

  static std::string stored_text(const Computed& computed) {
    if (!computed.stored) return "";
    return std::string("<br><small>") +
           (computed.is_stored_wrong ? "\u2260 stored " : "= stored ") +
           short_number(*computed.stored) + "</small>";
  }

  // What the measurements say of themselves.
  std::string result_table() const {
    if (pair_.results.empty()) return "";
    std::string out =
        "<table class=\"vt rs\"><thead><tr><th>Measurement</th><th>Calculation</th>"
        "<th class=\"r\">Computed</th><th class=\"r\">Stored</th><th>Do they agree?</th></tr>"
        "</thead><tbody>";
    for (const Computed* const result : pair_.results) {
      out += "<tr><td>" + place_text(result->place) + "</td><td>" + escaped(formula_text(*result)) +
             "</td><td class=\"r\" data-label=\"Computed\">" +
             (result->value ? number(*result->value) : "\u2013") +
             "</td><td class=\"r\" data-label=\"Stored\">" +
             (result->stored ? short_number(*result->stored) : "\u2013") + "</td><td>" +
             agreement(*result) + "</td></tr>";
    }
    return out + "</tbody></table>";
  }

  static std::string agreement(const Computed& result) {
    if (!result.value) return "<small>" + escaped(result.reason) + "</small>";
    if (!result.stored) return "<small>nothing stored</small>";
    return result.is_stored_wrong ? "<b class=\"vf\">\u2260 No</b>" : "= Yes";
  }

  // The measurements around the standard, where all verdicts share their conditions.
  std::string deviations() const {
    const ReportColor* const target = standard();
    if (target == nullptr) return "";
    const auto usable =
        std::find_if(pair_.verdicts.begin(), pair_.verdicts.end(), [](const Verdict* verdict) {
          return verdict->conditions && verdict->value && !verdict->test_light &&
                 verdict->place.measurement != FunctionPlace::k_all;
        });
    if (usable == pair_.verdicts.end()) return "";
    const colorimetry::Conditions& conditions = *(*usable)->conditions;
    const std::optional<Lab> middle = lab_under(*target, conditions);
    if (!middle) return "";
    std::map<unsigned, Deviation> found;
    std::vector<Border> borders;
    for (const Verdict* const verdict : pair_.verdicts) {
      if (!verdict->value || !verdict->conditions || !same(*verdict->conditions, conditions))
        continue;
      const ReportColor* const color = measurement(verdict->place.measurement);
      const std::optional<Lab> lab =
          color == nullptr ? std::nullopt : lab_under(*color, conditions);
      if (!lab) continue;
      const auto entry =
          found.emplace(verdict->place.measurement,
                        Deviation{std::to_string(color->number), *lab, verdict->status});
      Status& status = entry.first->second.status;
      status = graver(status, verdict->status);
      if (entry.first == found.begin()) add_border(*verdict, *middle, *lab, &borders);
    }
    if (found.empty()) return "";
    std::vector<Deviation> deviations;
    deviations.reserve(found.size());
    for (auto& [index, deviation] : found) deviations.push_back(std::move(deviation));
    return "<figure class=\"dev\">" + in_page(deviation_picture(*middle, deviations, borders)) +
           "<figcaption>Measurements by their number, " + escaped(text_of(conditions)) +
           (borders.empty() ? "" : "; dashed: limits at equal lightness") +
           "</figcaption></figure>";
  }

  static bool same(const colorimetry::Conditions& a, const colorimetry::Conditions& b) {
    return a.light == b.light && a.observer == b.observer;
  }

  static Status graver(Status a, Status b) {
    if (a == Status::not_judged) return b;
    if (b == Status::not_judged) return a;
    return std::max(a, b);
  }

  // Nothing that was adapted: what is judged is not either.
  std::optional<Lab> lab_under(const ReportColor& color,
                               const colorimetry::Conditions& conditions) const {
    colorimetry::Colorimeter::Options options;
    options.adaptation = colorimetry::Adaptation::none;
    colorimetry::Colorimeter meter(options);
    const auto measured = meter.measure(*color.color, conditions, color.place);
    if (!measured || !measured->has_white()) return std::nullopt;
    return measured->lab();
  }

  static void add_border(const Verdict& verdict, const Lab& standard, const Lab& sample,
                         std::vector<Border>* borders) {
    Border box;
    if (find_box(verdict, &box)) {
      borders->push_back(std::move(box));
      return;
    }
    const Difference difference = difference_by(verdict.formula);
    if (difference == nullptr || !verdict.limits.high || !(*verdict.limits.high > 0)) return;
    // A factor that is not among those known would bend the border.
    const double known = difference(standard, sample, verdict.factors);
    if (!(std::abs(known - *verdict.value) <= 1e-6 * std::max(1.0, known))) return;
    borders->push_back(border_of(verdict, difference, standard));
  }

  const ReportContent& content_;
  const Pair& pair_;
  unsigned number_;
  Room& room_;
};

// --- Records -------------------------------------------------------------------------------------

// Over all measurements of the record.
std::string record_verdicts(const Verdicts& verdicts) {
  if (verdicts.empty()) return "";
  std::string out =
      "<table class=\"vt\"><thead><tr><th>Over all standards</th><th class=\"r\">Value</th>"
      "<th>Limits</th><th>Verdict</th></tr></thead><tbody>";
  for (const Verdict* const verdict : verdicts) {
    out += "<tr><td>" + escaped(formula_text(*verdict)) + "</td><td class=\"r\">" +
           (verdict->value ? number(*verdict->value) : "\u2013") + "</td><td>" +
           (verdict->value
                ? limits_picture(
                      number(*verdict->value) + ", limits " + limits_text(verdict->limits),
                      *verdict->value, verdict->limits, verdict->warning_level, verdict->status)
                : "") +
           "</td><td>" + badge(verdict->status) + "<br><small>" + escaped(verdict->reason) +
           "</small></td></tr>";
  }
  return out + "</tbody></table>";
}

std::string record_facts(const zol_v2::ColorQualityControlType& record) {
  std::vector<Fact> facts;
  if (record.isset_Description()) facts.push_back({"Description", utf8(record.get_Description())});
  if (record.isset_Comments()) facts.push_back({"Comments", utf8(record.get_Comments())});
  if (record.isset_PhysicalSample()) {
    for (Fact& fact : facts_of(ConstRef(record.get_PhysicalSample()))) {
      facts.push_back(std::move(fact));
    }
  }
  return fact_list(facts);
}

std::string record_text(const ReportContent& content, unsigned index, const Verdicts& verdicts,
                        const Results& results, Room* room) {
  const zol_v2::ColorQualityControlType& record = content.document().get_ColorQualityControl(index);
  std::vector<Pair> pairs(record.size_StandardAndMeasurement());
  for (unsigned i = 0; i < pairs.size(); ++i)
    pairs[i].object = &record.get_StandardAndMeasurement(i);
  Verdicts over_all;
  for (const Verdict* const verdict : verdicts) {
    (verdict->place.pair == FunctionPlace::k_all ? over_all : pairs[verdict->place.pair].verdicts)
        .push_back(verdict);
  }
  for (const Computed* const result : results) pairs[result->place.pair].results.push_back(result);

  const std::string name = utf8(record.get_Name());
  std::string out =
      "<section class=\"record\" id=\"record-" + std::to_string(index + 1) + "\"><h3><bdi>" +
      escaped(name.empty() ? "Record " + std::to_string(index + 1) : shortened(name, 160)) +
      "</bdi></h3>" + tally(verdicts) + record_facts(record);
  for (unsigned i = 0; i < pairs.size(); ++i) {
    out += PairWriter(content, pairs[i], i + 1, room).text();
  }
  return out + record_verdicts(over_all) + "</section>";
}

}  // namespace

std::string quality_control_section(const ReportContent& content) {
  const unsigned count = content.document().size_ColorQualityControl();
  if (count == 0) return "";
  std::vector<Verdicts> verdicts(count);
  std::vector<Results> results(count);
  for (const Verdict& verdict : content.evaluation().verdicts) {
    verdicts[verdict.place.record].push_back(&verdict);
  }
  for (const Computed& result : content.evaluation().results) {
    results[result.place.record].push_back(&result);
  }
  Room room;
  std::string out;
  if (content.evaluation().is_cut) {
    out += "<p>Only the first " + grouped_number(content.evaluation().verdicts.size()) +
           " verdicts were computed: measurements times tolerances are more.</p>";
  }
  for (unsigned i = 0; i < count; ++i) {
    out += record_text(content, i, verdicts[i], results[i], &room);
  }
  return out;
}
