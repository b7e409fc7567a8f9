// Tables of colours, by their own headings, a mapping, or a guess.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <map>
#include <set>
#include <utility>

#include "interchange/csv.h"
#include "interchange/internal/columns.h"
#include "interchange/internal/values.h"
#include "interchange/internal/writers.h"

namespace zol_v2::interchange::internal {

namespace {

using Kind = Target::Kind;
using Line = std::vector<Cell>;

constexpr std::string_view k_measurement = "Measurement";
constexpr std::string_view k_standard = "Standard";

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

class TableReader {
 public:
  TableReader(std::string_view text, const ReadOptions& options, Report* report)
      : text_(text), options_(options), report_(*report), decimal_(options.decimal) {}

  void read(Zol* document) {
    const char separator = options_.separator != 0 ? options_.separator : guess_separator(text_);
    if (!read_cells(text_, separator, &lines_, &report_)) return;
    if (lines_.empty()) return report_.fail("bad-table", "The table has no headings", {1, 1, 0});
    turn_spectra_in_columns();
    if (!find_targets()) return;
    if (decimal_ == 0) decimal_ = separator != ',' && has_decimal_commas() ? ',' : '.';

    DocumentBuilder::Options building;
    building.time = options_.time;
    building.source = options_.source;
    building.decimal = decimal_;
    building.default_conditions = options_.conditions;
    DocumentBuilder builder(document, std::move(building), text_, &report_);
    if (column_of(Field::axis) != k_nowhere) {
      read_tidy(&builder);
    } else {
      read_wide(&builder);
    }
  }

 private:
  bool fail(std::string sentence, std::size_t offset) {
    report_.fail("bad-table", std::move(sentence), place_of(text_, offset));
    return false;
  }

  // --- What the columns are

  bool find_targets() {
    std::vector<std::string> headings;
    for (const Cell& cell : lines_.front()) headings.push_back(cell.text);
    targets_ = guess_targets(headings);
    is_left_out_.resize(headings.size());
    if (!apply_mapping(headings)) return false;
    for (std::size_t i = 0; i < targets_.size(); ++i) find_column(i);
    if (column_of(Field::axis) == k_nowhere && is_text(column_of(Field::color))) {
      // It tells nothing apart, but names what it stands at.
      const std::size_t column = column_of(Field::color);
      columns_[static_cast<std::size_t>(Field::color)] = k_nowhere;
      targets_[column].field = Field::name;
      find_column(column);
    }
    find_points(headings);
    find_names(headings);
    const bool is_tidy = column_of(Field::axis) != k_nowhere;
    if (is_tidy && (column_of(Field::value) == k_nowhere ||
                    (column_of(Field::space) == k_nowhere && !has_constant(Field::space)))) {
      return fail("A table with a column Axis needs Space and Value, too", 0);
    }
    const bool has_values = std::any_of(targets_.begin(), targets_.end(), [](const Target& t) {
      return t.kind == Kind::coordinate || t.kind == Kind::hex;
    });
    if (is_tidy || has_values) return true;
    return fail("No column is known to hold values of colours; a mapping can say which do", 0);
  }

  bool has_constant(Field field) const {
    return std::any_of(constants_.begin(), constants_.end(), [&](const auto& constant) {
      return constant.first.kind == Kind::field && constant.first.field == field;
    });
  }

  void make_field(std::size_t column, Field field) {
    targets_[column] = Target();
    targets_[column].kind = Kind::field;
    targets_[column].field = field;
    columns_[static_cast<std::size_t>(field)] = column;
  }

  // A line for each point of a spectrum.
  void find_points(const std::vector<std::string>& headings) {
    std::size_t axis = k_nowhere, value = k_nowhere;
    for (std::size_t i = 0; i < targets_.size(); ++i) {
      if (targets_[i].kind == Kind::coordinate || targets_[i].kind == Kind::hex) return;
      if (targets_[i].kind == Kind::none && is_wavelength(headings[i])) axis = i;
      if (targets_[i].kind == Kind::none && is_reflectance(headings[i])) value = i;
    }
    if (column_of(Field::value) != k_nowhere) value = column_of(Field::value);
    if (column_of(Field::axis) != k_nowhere || axis == k_nowhere || value == k_nowhere) return;
    make_field(axis, Field::axis);
    make_field(value, Field::value);
    Target space;
    space.kind = Kind::field;
    space.field = Field::space;
    constants_.emplace_back(space, "Spectral");
    has_points_ = true;
    report_.assume("each line is a point of a spectrum");
  }

  // Where nothing else names a colour, the first column does that has texts and no other meaning.
  void find_names(const std::vector<std::string>& headings) {
    for (const Field field : {Field::name, Field::number, Field::id}) {
      if (column_of(field) != k_nowhere || has_constant(field)) return;
    }
    for (std::size_t i = 0; i < targets_.size(); ++i) {
      if (targets_[i].kind != Kind::none || is_left_out_[i] || !is_text(i)) continue;
      make_field(i, Field::name);
      report_.assume("the column " + headings[i] + " has the names");
      return;
    }
  }

  // Of two columns for one thing the first counts, and the other one is left out.
  void find_column(std::size_t index) {
    Target& target = targets_[index];
    if (target.kind == Kind::field) {
      std::size_t& column = columns_[static_cast<std::size_t>(target.field)];
      if (column == k_nowhere) {
        column = index;
      } else if (column != index) {
        target = Target();
      }
      return;
    }
    std::string key(1, static_cast<char>('0' + static_cast<int>(target.kind)));
    key += static_cast<char>('0' + static_cast<int>(target.condition));
    for (const std::string& text : target.conditions.values) key += text + '\n';
    key += target.space + '\n' + target.axis;
    if (target.kind != Kind::none && !seen_.insert(key).second) target = Target();
  }

  // Whether a column holds something that is no number.
  bool is_text(std::size_t column) const {
    if (column == k_nowhere) return false;
    return std::any_of(lines_.begin() + 1, lines_.end(), [&](const Line& line) {
      double number = 0;
      return !line[column].text.empty() && !is_number(line[column].text, &number);
    });
  }

  // Spectra side by side, below one column of wavelengths, become lines.
  void turn_spectra_in_columns() {
    const std::size_t width = lines_.front().size();
    if (width < 2 || lines_.size() < 3 || !is_wavelength(lines_.front().front().text)) return;
    std::vector<Line> turned(width);
    turned.front().push_back({std::string(name_of(Field::name)), lines_.front().front().offset});
    double last = 0;
    for (std::size_t i = 1; i < lines_.size(); ++i) {
      const std::string wavelength = wavelength_in(lines_[i].front().text);
      double number = 0;
      // A list of samples one behind the other begins again with the shortest.
      if (!is_number(wavelength, &number) || number <= last) return;
      last = number;
      turned.front().push_back({wavelength, lines_[i].front().offset});
    }
    for (std::size_t j = 1; j < width; ++j) {
      for (const Line& line : lines_) turned[j].push_back(line[j]);
    }
    lines_ = std::move(turned);
    report_.assume("each column is a spectrum");
  }

  bool apply_mapping(const std::vector<std::string>& headings) {
    std::string_view rest = options_.mapping;
    for (unsigned number = 1; !rest.empty(); ++number) {
      const std::size_t end = std::min(rest.find('\n'), rest.size());
      std::string_view line = rest.substr(0, end);
      rest.remove_prefix(std::min(end + 1, rest.size()));
      if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
      line = trimmed(line);
      if (line.empty() || line.front() == '#') continue;
      const std::string fault = apply_mapping_line(line, headings);
      if (fault.empty()) continue;
      report_.fail("bad-mapping", "Line " + std::to_string(number) + " of the mapping: " + fault);
      return false;
    }
    return true;
  }

  std::string apply_mapping_line(std::string_view line, const std::vector<std::string>& headings) {
    // A heading may have an equals sign of its own, a target has none.
    const std::size_t equals = line.front() == ':' ? line.find('=') : line.rfind('=');
    if (equals == std::string_view::npos) return "there is no equals sign";
    const std::string_view left = trimmed(line.substr(0, equals));
    const std::string_view right = trimmed(line.substr(equals + 1));
    if (left.substr(0, 1) == ":") {
      const std::optional<Target> target = parse_target(left.substr(1));
      if (!target || (target->kind != Kind::field && target->kind != Kind::condition)) {
        return "there is no '" + std::string(left.substr(1)) + '\'';
      }
      constants_.emplace_back(*target, right);
      return {};
    }
    const std::optional<Target> target = parse_target(right);
    if (!target) return "there is no '" + std::string(right) + '\'';
    const auto found = std::find_if(headings.begin(), headings.end(),
                                    [&](const std::string& h) { return trimmed(h) == left; });
    if (found == headings.end()) return "the table has no column '" + std::string(left) + '\'';
    const auto column = static_cast<std::size_t>(found - headings.begin());
    targets_[column] = *target;
    is_left_out_[column] = target->kind == Kind::none;
    return {};
  }

  std::size_t column_of(Field field) const { return columns_[static_cast<std::size_t>(field)]; }

  // --- What the cells say

  bool has_decimal_commas() const {
    for (std::size_t i = 1; i < lines_.size(); ++i) {
      for (std::size_t j = 0; j < targets_.size(); ++j) {
        const bool is_value = targets_[j].kind == Kind::coordinate || j == column_of(Field::value);
        if (!is_value) continue;
        const std::string& text = lines_[i][j].text;
        if (text.find('.') != std::string::npos) return false;
        if (text.find(',') != std::string::npos) return true;
      }
    }
    return false;
  }

  bool number_in(const std::string& text, double* number) const {
    std::string plain(trimmed(text));
    std::replace(plain.begin(), plain.end(), decimal_, '.');
    return is_number(plain, number);
  }

  std::string text_in(const Line& line, Field field) const {
    const std::size_t column = column_of(field);
    if (column != k_nowhere) return line[column].text;
    for (const auto& [target, text] : constants_) {
      if (target.kind == Kind::field && target.field == field) return text;
    }
    return {};
  }

  bool read_names(const Line& line, std::size_t number, ColorRecord* record) {
    record->offset = line.front().offset;
    record->group = text_in(line, Field::group);
    record->part = text_in(line, Field::part);
    record->name = text_in(line, Field::name);
    record->number = text_in(line, Field::number);
    record->id = text_in(line, Field::id);
    record->comments = text_in(line, Field::comments);
    const std::string pair = text_in(line, Field::pair);
    const auto parsed = std::from_chars(pair.data(), pair.data() + pair.size(), record->pair);
    if (!pair.empty() && (parsed.ptr != pair.data() + pair.size() || record->pair == 0)) {
      return fail("The pair is '" + pair + "', a number from 1 on is expected",
                  line[column_of(Field::pair)].offset);
    }
    if (record->pair != 0 && record->part != k_standard && record->part != k_measurement) {
      return fail(
          "The part of a pair is '" + record->part + "', Standard or Measurement is expected",
          record->offset);
    }
    record->kind = record->pair != 0                                 ? PlaceKind::record
                   : !record->group.empty() || !record->part.empty() ? PlaceKind::palette
                                                                     : PlaceKind::document;
    if (record->name.empty() && column_of(Field::name) == k_nowhere) {
      record->name = !record->number.empty() ? record->number
                     : !record->id.empty()   ? record->id
                                             : "Colour " + std::to_string(number);
    }
    return true;
  }

  Conditions conditions_in(const Line& line) const {
    Conditions conditions;
    for (const auto& [target, text] : constants_) {
      if (target.kind == Kind::condition) settle_condition(target.condition, text, &conditions);
    }
    for (std::size_t i = 0; i < targets_.size(); ++i) {
      if (targets_[i].kind == Kind::condition && !line[i].text.empty()) {
        settle_condition(targets_[i].condition, line[i].text, &conditions);
      }
    }
    return conditions;
  }

  // Whether a line goes on with the colour before it.
  static bool belongs_together(const ColorRecord& a, const ColorRecord& b) {
    return a.group == b.group && a.part == b.part && a.pair == b.pair && a.name == b.name &&
           a.number == b.number && a.id == b.id;
  }

  // Calls take(line, record) for each line, which adds to the colour at hand; false ends it all.
  template <class Take>
  void for_each_line(DocumentBuilder* builder, bool lines_are_colors, const Take& take) {
    std::optional<ColorRecord> record;
    std::string color;
    std::size_t count = 0;
    for (std::size_t i = 1; i < lines_.size(); ++i) {
      const Line& line = lines_[i];
      // Spreadsheets end in lines without anything.
      if (std::all_of(line.begin(), line.end(), [](const Cell& c) { return c.text.empty(); })) {
        continue;
      }
      ColorRecord next;
      if (!read_names(line, count + 1, &next)) return;
      const std::string next_color = text_in(line, Field::color);
      const bool goes_on = record && (column_of(Field::color) != k_nowhere
                                          ? color == next_color
                                          : !lines_are_colors && belongs_together(*record, next));
      if (!goes_on) {
        if (record && !builder->add(*record)) return;
        ++count;
        record = std::move(next);
        color = next_color;
      }
      if (!take(line, &*record)) return;
    }
    if (record) (void)builder->add(*record);
  }

  void read_tidy(DocumentBuilder* builder) {
    const bool is_percent = has_points_ && has_percent();
    if (is_percent) report_.assume("spectra are in percent");
    lose_columns();
    std::string last;
    for_each_line(builder, false, [&](const Line& line, ColorRecord* record) {
      Rendering next;
      next.space = text_in(line, Field::space);
      next.name = text_in(line, Field::space_name);
      next.conditions = conditions_in(line);
      next.offset =
          line[column_of(column_of(Field::space) == k_nowhere ? Field::axis : Field::space)].offset;
      Coordinate coordinate;
      coordinate.axis = text_in(line, Field::axis);
      coordinate.text = line[column_of(Field::value)].text;
      coordinate.offset = line[column_of(Field::value)].offset;
      double value = 0;
      if (is_percent && number_in(coordinate.text, &value)) {
        std::string plain(trimmed(coordinate.text));
        std::replace(plain.begin(), plain.end(), decimal_, '.');
        coordinate.text = number_text(divided(plain, 100));
        std::replace(coordinate.text.begin(), coordinate.text.end(), '.', decimal_);
      }
      const std::string number = text_in(line, Field::rendering);
      const Rendering* const open =
          record->renderings.empty() ? nullptr : &record->renderings.back();
      // A spectrum may have a wavelength twice, so that an axis tells nothing where there are
      // numbers.
      const bool goes_on =
          open != nullptr && open->space == next.space &&
          (column_of(Field::rendering) != k_nowhere
               ? number == last
               : open->conditions == next.conditions && open->find(coordinate.axis) == nullptr);
      last = number;
      if (!goes_on) record->renderings.push_back(std::move(next));
      record->renderings.back().coordinates.push_back(std::move(coordinate));
      return true;
    });
  }

  bool has_percent() const {
    constexpr double k_greatest_ratio = 3;
    return std::any_of(lines_.begin() + 1, lines_.end(), [&](const Line& line) {
      double number = 0;
      return number_in(line[column_of(Field::value)].text, &number) && number > k_greatest_ratio;
    });
  }

  void read_wide(DocumentBuilder* builder) {
    lose_columns();
    guess_scales();
    for_each_line(builder, true, [&](const Line& line, ColorRecord* record) {
      std::vector<Rendering> renderings;
      for (std::size_t i = 0; i < targets_.size(); ++i) {
        if (targets_[i].kind == Kind::hex && !line[i].text.empty()) {
          if (!add_hex(line[i], &renderings)) return false;
        } else if (targets_[i].kind == Kind::coordinate && !line[i].text.empty()) {
          if (!add_value(line[i], targets_[i], &renderings)) return false;
        }
      }
      for (Rendering& rendering : renderings) {
        Conditions conditions = conditions_in(line);
        for (std::size_t i = 0; i < k_conditions; ++i) {
          const std::string& own = rendering.conditions.values[i];
          if (!own.empty()) conditions.values[i] = own;
        }
        rendering.conditions = std::move(conditions);
        if (const std::size_t column = column_of(Field::space_name); column != k_nowhere) {
          rendering.name = line[column].text;
        }
        record->renderings.push_back(std::move(rendering));
      }
      return true;
    });
  }

  static Rendering& rendering_in(std::string_view space, const Conditions& conditions,
                                 std::size_t offset, std::vector<Rendering>* renderings) {
    for (Rendering& rendering : *renderings) {
      if (rendering.space == space && rendering.conditions == conditions) return rendering;
    }
    renderings->emplace_back();
    renderings->back().space = space;
    renderings->back().conditions = conditions;
    renderings->back().offset = offset;
    return renderings->back();
  }

  bool add_value(const Cell& cell, const Target& target, std::vector<Rendering>* renderings) {
    Rendering& rendering = rendering_in(target.space, target.conditions, cell.offset, renderings);
    Coordinate coordinate;
    coordinate.axis = target.axis;
    coordinate.text = cell.text;
    coordinate.offset = cell.offset;
    if (target.is_guess || target.divisor != 1) {
      double number = 0;
      if (!number_in(cell.text, &number)) {
        return fail(target.axis + " is '" + cell.text + "', a number is expected", cell.offset);
      }
      std::string plain(trimmed(cell.text));
      std::replace(plain.begin(), plain.end(), decimal_, '.');
      coordinate.text = number_text(divided(plain, target.divisor));
      std::replace(coordinate.text.begin(), coordinate.text.end(), '.', decimal_);
    }
    rendering.coordinates.push_back(std::move(coordinate));
    return true;
  }

  bool add_hex(const Cell& cell, std::vector<Rendering>* renderings) {
    std::string_view digits = trimmed(cell.text);
    if (digits.substr(0, 1) == "#") digits.remove_prefix(1);
    unsigned value = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (digits.size() != 6 || parsed.ptr != digits.data() + digits.size()) {
      return fail("The colour is '" + cell.text + "', #rrggbb is expected", cell.offset);
    }
    Rendering& rendering = rendering_in("SRGB", {}, cell.offset, renderings);
    set_bytes({(value >> 16) & 0xFF, (value >> 8) & 0xFF, value & 0xFF}, decimal_, &rendering);
    return true;
  }

  void lose_columns() {
    for (std::size_t i = 0; i < targets_.size(); ++i) {
      if (targets_[i].kind != Kind::none) continue;
      const auto filled = std::count_if(lines_.begin() + 1, lines_.end(),
                                        [&](const Line& line) { return !line[i].text.empty(); });
      report_.losses.add("cell of the column " + lines_.front()[i].text,
                         static_cast<std::size_t>(filled));
    }
  }

  // Tables have percent and bytes where the format has ratios; the greatest value tells.
  void guess_scales() {
    std::map<std::string, double> greatest;
    for (std::size_t i = 0; i < targets_.size(); ++i) {
      if (!targets_[i].is_guess) continue;
      const bool has_scale = targets_[i].space != "CIExyY" || targets_[i].axis == "Y";
      if (!has_scale) continue;
      double& most = greatest[targets_[i].space];
      for (std::size_t j = 1; j < lines_.size(); ++j) {
        double number = 0;
        if (number_in(lines_[j][i].text, &number)) most = std::max(most, number);
      }
    }
    struct Scale {
      std::string_view space;
      double greatest, divisor;
      std::string_view note;
    };
    constexpr Scale k_scales[] = {
        {"CIEXYZ", 1.5, 100, "tristimulus values are relative to 100"},
        {"CIExyY", 1.5, 100, "tristimulus values are relative to 100"},
        {"Spectral", 3, 100, "spectra are in percent"},
        {"SRGB", 1, 255, "RGB values are bytes"},
    };
    for (const Scale& scale : k_scales) {
      const auto found = greatest.find(std::string(scale.space));
      if (found == greatest.end() || found->second <= scale.greatest) continue;
      report_.assume(std::string(scale.note));
      for (Target& target : targets_) {
        const bool has_scale = target.space != "CIExyY" || target.axis == "Y";
        if (target.is_guess && target.space == scale.space && has_scale) {
          target.divisor = scale.divisor;
        }
      }
    }
    if (greatest.count("SRGB") != 0) report_.assume("RGB is sRGB");
  }

  std::string_view text_;
  const ReadOptions& options_;
  Report& report_;
  char decimal_;
  std::vector<Line> lines_;
  std::vector<Target> targets_;
  std::array<std::size_t, k_fields> columns_ = no_columns();
  std::vector<bool> is_left_out_;  // columns that the mapping wants nothing of
  bool has_points_ = false;        // a line for each point of a spectrum
  std::set<std::string> seen_;     // what columns other than fields are for
  std::vector<std::pair<Target, std::string>> constants_;

  static constexpr std::array<std::size_t, k_fields> no_columns() {
    std::array<std::size_t, k_fields> columns = {};
    for (std::size_t& column : columns) column = k_nowhere;
    return columns;
  }
};

}  // namespace

Report read_table(std::string_view text, const ReadOptions& options, Zol* document) {
  Report report;
  TableReader(text, options, &report).read(document);
  return report;
}

}  // namespace zol_v2::interchange::internal
