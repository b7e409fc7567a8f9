// Measurement files: CGATS.17, ISO 28178 and what is derived from them.
//
// A file is made of tables. Each begins with keywords, names its fields between BEGIN_DATA_FORMAT
// and END_DATA_FORMAT, and has a set of values for each sample between BEGIN_DATA and END_DATA.
// Values hold for one illuminant and observer a table, so that colours with several renderings
// stand in several tables, under one SAMPLE_ID.
#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <map>
#include <numeric>
#include <set>
#include <utility>

#include "interchange/internal/columns.h"
#include "interchange/internal/conditions.h"
#include "interchange/internal/values.h"
#include "interchange/internal/writers.h"
#include "model/Zol.h"
#include "port/wide_text.h"

namespace zol_v2::interchange::internal {

namespace {

struct FieldOfSpace {
  std::string_view name;
  std::string_view space;
  std::string_view axis;
  double factor;  // that a value is multiplied by in the file
};

constexpr FieldOfSpace k_space_fields[] = {
    {"LAB_L", "CIELab", "L", 1},
    {"LAB_A", "CIELab", "A", 1},
    {"LAB_B", "CIELab", "B", 1},
    {"LCH_L", "CIELCh", "L", 1},
    {"LCH_C", "CIELCh", "C", 1},
    {"LCH_H", "CIELCh", "H", 1},
    {"XYZ_X", "CIEXYZ", "X", 100},
    {"XYZ_Y", "CIEXYZ", "Y", 100},
    {"XYZ_Z", "CIEXYZ", "Z", 100},
    {"XYY_X", "CIExyY", "x", 1},
    {"XYY_Y", "CIExyY", "y", 1},
    {"XYY_CAPY", "CIExyY", "Y", 100},
    {"CMYK_C", "CMYK", "Cyan", 1},
    {"CMYK_M", "CMYK", "Magenta", 1},
    {"CMYK_Y", "CMYK", "Yellow", 1},
    {"CMYK_K", "CMYK", "Black", 1},
    {"RGB_R", "RGB", "Red", 255},
    {"RGB_G", "RGB", "Green", 255},
    {"RGB_B", "RGB", "Blue", 255},
    {"D_RED", "Density", "Filter_Red", 1},
    {"D_GREEN", "Density", "Filter_Green", 1},
    {"D_BLUE", "Density", "Filter_Blue", 1},
    {"D_VIS", "Density", "Filter_Visual", 1},
    {"D_CYAN", "Density", "Filter_Cyan", 1},
    {"D_MAGENTA", "Density", "Filter_Magenta", 1},
    {"D_YELLOW", "Density", "Filter_Yellow", 1},
    {"D_BLACK", "Density", "Filter_Black", 1},
};

// Other programs have chroma and hue beside LAB_L.
constexpr std::pair<std::string_view, std::string_view> k_other_names[] = {
    {"LAB_C", "LCH_C"}, {"LAB_H", "LCH_H"}, {"XYY_CAP_Y", "XYY_CAPY"}, {"D_M", "D_MAGENTA"}};

struct FieldOfNames {
  std::string_view name;
  Field field;
  bool is_standard;
};

constexpr FieldOfNames k_name_fields[] = {
    {"SAMPLE_ID", Field::color, true},       {"SAMPLE_NAME", Field::name, true},
    {"COLOR_NUMBER", Field::number, false},  {"UNIQUE_ID", Field::id, false},
    {"COLOR_GROUP", Field::group, false},    {"COLOR_PART", Field::part, false},
    {"COLOR_PAIR", Field::pair, false},      {"COLOR_COMMENTS", Field::comments, false},
    {"SPACE_NAME", Field::space_name, false}};

struct ConditionKeyword {
  Condition condition;
  std::string_view keyword;
  std::string_view before;  // in the value
  std::string_view behind;
  bool is_standard;
};

constexpr ConditionKeyword k_conditions_keywords[] = {
    {Condition::illuminant, "WEIGHTING_FUNCTION", "ILLUMINANT, ", "", true},
    {Condition::observer, "WEIGHTING_FUNCTION", "OBSERVER, ", " degree", true},
    {Condition::geometry, "MEASUREMENT_GEOMETRY", "", "", true},
    {Condition::filter, "FILTER", "", "", true},
    {Condition::polarization, "POLARIZATION", "", "", true},
    {Condition::quantity, "SPECTRUM_QUANTITY", "", "", false},
    {Condition::emissive_type, "EMISSIVE_TYPE", "", "", false},
    {Condition::emissive_mode, "EMISSIVE_MODE", "", "", false},
    {Condition::density_status, "DENSITY_STATUS", "", "", false},
    {Condition::astm_table, "ASTM_TABLE", "", "", false},
    {Condition::gamma, "GAMMA", "", "", false},
};

constexpr std::string_view k_identifier = "CGATS.17";
constexpr std::string_view k_spectral = "SPECTRAL_NM";
constexpr std::string_view k_norm = "SPECTRAL_NORM";  // what stands for 1 in spectra
constexpr std::string_view k_status = "Status_";
constexpr std::string_view k_measured = "MEAS_TYPE";  // whether spectra are of lights
constexpr std::string_view k_emission = "EMISSION";
constexpr std::string_view k_emissive_space = "EmissiveSpectral";

bool is_spectral(std::string_view space) {
  return space == "Spectral" || space == k_emissive_space;
}

// Keywords that ISO 28178 knows need no declaration.
constexpr std::string_view k_standard_keywords[] = {"ORIGINATOR",
                                                    "DESCRIPTOR",
                                                    "FILE_DESCRIPTOR",
                                                    "CREATED",
                                                    "MANUFACTURER",
                                                    "PROD_DATE",
                                                    "INSTRUMENTATION",
                                                    "SERIAL",
                                                    "MATERIAL",
                                                    "MEASUREMENT_SOURCE",
                                                    "FILTER",
                                                    "PRINT_CONDITIONS",
                                                    "DIFFUSE_GEOMETRY",
                                                    "POLARIZATION",
                                                    "WEIGHTING_FUNCTION",
                                                    "KEYWORD",
                                                    "MEASUREMENT_GEOMETRY",
                                                    "SAMPLE_BACKING",
                                                    "CHISQ_DOF",
                                                    "COMPUTATIONAL_PARAMETER"};

bool is_standard(std::string_view keyword) {
  return std::find(std::begin(k_standard_keywords), std::end(k_standard_keywords), keyword) !=
         std::end(k_standard_keywords);
}

bool is_keyword(std::string_view text) {
  return !text.empty() &&
         text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_") == std::string_view::npos;
}

// --- Writing -------------------------------------------------------------------------------------

// Values of one colour that stand in one line.
struct Sample {
  std::array<std::string, std::size(k_name_fields)> names;
  std::map<std::string, std::string> values;  // by field
  bool is_of_light = false;
};

struct Table {
  std::vector<std::string> fields;
  Conditions conditions;
  bool is_of_lights = false;
  std::vector<Sample> samples;
};

// Renderings of one colour that hold for the same: what one of them can't have holds as another
// has it.
struct Line {
  Conditions conditions;
  std::array<bool, k_conditions> is_known = {};
  std::vector<const Rendering*> renderings;
  Sample sample;

  bool can_take(const Rendering& rendering) const {
    for (const Rendering* const taken : renderings) {
      if (taken->space == rendering.space || taken->name != rendering.name) return false;
      if (is_spectral(taken->space) && is_spectral(rendering.space)) return false;
    }
    for (std::size_t i = 0; i < k_conditions; ++i) {
      const bool is_other = conditions.values[i] != rendering.conditions.values[i];
      if (is_other && is_known[i] && can_have(rendering.space, static_cast<Condition>(i))) {
        return false;
      }
    }
    return true;
  }

  void take(const Rendering& rendering) {
    renderings.push_back(&rendering);
    for (std::size_t i = 0; i < k_conditions; ++i) {
      if (!can_have(rendering.space, static_cast<Condition>(i))) continue;
      is_known[i] = true;
      conditions.values[i] = rendering.conditions.values[i];
    }
  }
};

class CgatsWriter : public RecordWriter {
 protected:
  void add_document(const Zol& document, std::string_view) override {
    const Header& header = document.get_Preamble().get_Header();
    for (unsigned i = 0; i < header.size_CustomAttribute(); ++i) {
      const CustomAttributeType& attribute = header.get_CustomAttribute(i);
      const reflection::ConstRef choice(attribute.get_ValueChoice());
      const std::string name = narrow_text(attribute.get_Name());
      if (!is_keyword(name) || !choice.chosen()) continue;
      std::string text;
      choice.value(choice.chosen()).append_exact_text(&text);
      keywords_.emplace_back(name, text);
    }
  }

  void add_record(const ColorRecord& record, std::string_view) override {
    ++colors_;
    std::vector<Line> lines;
    for (const Rendering& rendering : record.renderings) {
      const std::map<std::string, std::string> values = values_of(rendering);
      if (values.empty()) {
        losses().add("rendering in " + rendering.space);
        continue;
      }
      auto line = std::find_if(lines.begin(), lines.end(),
                               [&](const Line& l) { return l.can_take(rendering); });
      if (line == lines.end()) line = lines.insert(line, Line());
      line->take(rendering);
      line->sample.values.insert(values.begin(), values.end());
      line->sample.names.back() = rendering.name;
      line->sample.is_of_light |= rendering.space == k_emissive_space;
    }
    if (lines.empty()) losses().add("colour without a value that fits");
    for (Line& line : lines) add_sample(record, line.conditions, std::move(line.sample));
  }

  void finish_records(std::string* bytes) override {
    for (const Table& table : tables_) print(table, bytes);
    if (tables_.empty())
      report().fail("no-colours", "There is no value that CGATS has a field for");
  }

 private:
  // None if the space has no fields.
  std::map<std::string, std::string> values_of(const Rendering& rendering) {
    std::map<std::string, std::string> values;
    std::string status;
    for (const Coordinate& coordinate : rendering.coordinates) {
      std::string axis = coordinate.axis;
      if (rendering.space == "Density") {
        const std::size_t blank = axis.find(' ');
        const std::string own = axis.substr(0, blank);
        if (status.empty()) status = own;
        if (own == status) axis.erase(0, blank + 1);
      }
      std::string name;
      double factor = 1;
      if (is_spectral(rendering.space)) {
        name = std::string(k_spectral) + axis;
        if (wavelength_in(name) != axis) name.clear();
      } else {
        for (const FieldOfSpace& field : k_space_fields) {
          if (field.space != rendering.space || field.axis != axis) continue;
          name = field.name;
          factor = field.factor;
        }
      }
      const bool is_held = !name.empty() && std::isfinite(coordinate.number);
      if (!is_held || !values.emplace(name, times(coordinate.number, factor)).second) {
        unheld_.push_back(rendering.space + ' ' + coordinate.axis);
      }
    }
    if (!values.empty()) {
      for (const std::string& axis : unheld_) losses().add("value of " + axis);
    }
    unheld_.clear();
    if (!values.empty() && !status.empty()) values.emplace("DENSITY_STATUS", status);
    return values;
  }

  std::string one_line(std::string text) {
    bool is_changed = false;
    for (char& c : text) {
      if (static_cast<unsigned char>(c) >= 0x20 && c != 0x7F) continue;
      c = ' ';
      is_changed = true;
    }
    if (is_changed) losses().add("line break or tab in a text");
    return text;
  }

  void add_sample(const ColorRecord& record, Conditions conditions, Sample sample) {
    const auto status = sample.values.find("DENSITY_STATUS");
    if (status != sample.values.end()) {
      std::string& condition = conditions[Condition::density_status];
      const std::string own = status->second.substr(k_status.size());
      if (!condition.empty() && condition != own) losses().add("DensityStatus " + condition);
      condition = own;
      sample.values.erase(status);
    }
    const std::string texts[] = {std::to_string(colors_),
                                 record.name,
                                 record.number,
                                 record.id,
                                 record.group,
                                 record.part,
                                 record.pair == 0 ? std::string() : std::to_string(record.pair),
                                 record.comments};
    for (std::size_t i = 0; i < std::size(texts); ++i) sample.names[i] = one_line(texts[i]);
    sample.names.back() = one_line(sample.names.back());
    std::vector<std::string> fields;
    for (const FieldOfSpace& field : k_space_fields) {
      if (sample.values.count(std::string(field.name)) != 0) fields.emplace_back(field.name);
    }
    std::vector<std::pair<double, std::string>> wavelengths;
    for (const auto& [name, value] : sample.values) {
      if (name.compare(0, k_spectral.size(), k_spectral) != 0) continue;
      wavelengths.emplace_back(number_of(name.substr(k_spectral.size())), name);
    }
    std::sort(wavelengths.begin(), wavelengths.end());
    for (auto& [wavelength, name] : wavelengths) fields.push_back(std::move(name));
    for (Table& table : tables_) {
      if (table.fields != fields || table.conditions != conditions ||
          table.is_of_lights != sample.is_of_light) {
        continue;
      }
      table.samples.push_back(std::move(sample));
      return;
    }
    const bool is_of_light = sample.is_of_light;
    tables_.push_back({std::move(fields), std::move(conditions), is_of_light, {std::move(sample)}});
  }

  static double number_of(const std::string& text) {
    double number = 0;
    (void)std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
  }

  static std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) result.append(c == '"' ? 2 : 1, c);
    return result + '"';
  }

  void print_keyword(std::string_view keyword, std::string_view value, bool is_known,
                     std::string* out) {
    if (!is_known) *out += "KEYWORD\t" + quoted(keyword) + '\n';
    *out += std::string(keyword) + '\t' + quoted(one_line(std::string(value))) + '\n';
  }

  void print(const Table& table, std::string* out) {
    *out += std::string(k_identifier) + '\n';
    for (const auto& [keyword, value] : keywords_) {
      print_keyword(keyword, value, is_standard(keyword), out);
    }
    if (keywords_.empty()) print_keyword("ORIGINATOR", "Zol", true, out);
    for (const ConditionKeyword& line : k_conditions_keywords) {
      const std::string& value = table.conditions[line.condition];
      if (value.empty()) continue;
      print_keyword(line.keyword, std::string(line.before) + value + std::string(line.behind),
                    line.is_standard, out);
    }
    const std::string& last = table.fields.back();
    if (table.is_of_lights) {
      print_keyword(k_measured, k_emission, false, out);
    } else if (last.compare(0, k_spectral.size(), k_spectral) == 0) {
      print_keyword(k_norm, "1", false, out);
    }
    std::array<bool, std::size(k_name_fields)> is_used = {true, true};
    for (const Sample& sample : table.samples) {
      for (std::size_t i = 0; i < is_used.size(); ++i) is_used[i] |= !sample.names[i].empty();
    }
    std::string names;
    std::size_t count = table.fields.size();
    for (std::size_t i = 0; i < is_used.size(); ++i) {
      if (!is_used[i]) continue;
      ++count;
      names += std::string(names.empty() ? "" : "\t") + std::string(k_name_fields[i].name);
      if (!k_name_fields[i].is_standard) {
        *out += "KEYWORD\t" + quoted(k_name_fields[i].name) + '\n';
      }
    }
    for (const std::string& field : table.fields) names += '\t' + field;
    *out += "NUMBER_OF_FIELDS\t" + std::to_string(count) + "\nBEGIN_DATA_FORMAT\n" + names +
            "\nEND_DATA_FORMAT\nNUMBER_OF_SETS\t" + std::to_string(table.samples.size()) +
            "\nBEGIN_DATA\n";
    for (const Sample& sample : table.samples) {
      std::string line;
      for (std::size_t i = 0; i < is_used.size(); ++i) {
        if (is_used[i]) line += (line.empty() ? "" : "\t") + quoted(sample.names[i]);
      }
      for (const std::string& field : table.fields) line += '\t' + sample.values.at(field);
      *out += line + '\n';
    }
    *out += "END_DATA\n";
  }

  std::vector<std::pair<std::string, std::string>> keywords_;
  std::vector<Table> tables_;
  std::vector<std::string> unheld_;
  std::size_t colors_ = 0;
};

// Some count in thousandths of a nanometre, as SPEC_300500.
std::string wavelength_of(const std::string& field) {
  constexpr std::string_view k_before = "SPEC_";
  const std::string digits = field.substr(std::min(field.size(), k_before.size()));
  const bool is_fine = field.compare(0, k_before.size(), k_before) == 0 && digits.size() >= 6 &&
                       digits.find_first_not_of("0123456789") == std::string::npos;
  double number = 0;
  if (!is_fine || !is_number(digits, &number)) return wavelength_in(field);
  return wavelength_in(number_text(divided(digits, 1000)));
}

// --- Reading -------------------------------------------------------------------------------------

struct Token {
  std::string text;
  std::size_t offset = 0;
  bool is_quoted = false;
  bool is_first_of_line = false;
};

class CgatsReader {
 public:
  CgatsReader(std::string_view text, const ReadOptions& options, Report* report)
      : text_(text), options_(options), report_(*report) {}

  void read(Zol* document) {
    if (!next()) return;
    if (token_.offset == text_.size()) {
      fail("The file is empty", 0);
      return;
    }
    while (token_.offset < text_.size()) {
      if (!read_table()) return;
    }
    if (!has_data_) {
      fail("There is no BEGIN_DATA, as a CGATS file has it", text_.size());
      return;
    }
    DocumentBuilder::Options building;
    building.time = options_.time;
    building.source = options_.source;
    building.default_conditions = options_.conditions;
    building.is_tolerant = true;
    DocumentBuilder builder(document, std::move(building), text_, &report_);
    std::set<std::pair<std::string, std::string>> seen;
    for (auto& keyword : keywords_) {
      if (seen.insert(keyword).second) builder.add_attribute(keyword.first, keyword.second);
    }
    for (const std::size_t index : order()) {
      if (!builder.add(records_[index])) return;
    }
  }

 private:
  bool fail(std::string sentence, std::size_t offset) {
    report_.fail("bad-cgats", std::move(sentence), place_of(text_, offset));
    return false;
  }

  // Samples of several tables stand in the order of their numbers, if they have numbers.
  std::vector<std::size_t> order() const {
    std::vector<std::pair<std::size_t, std::size_t>> numbers;
    for (const auto& [key, place] : samples_) {
      std::size_t number = 0;
      const char* const end = key.first.data() + key.first.size();
      const bool is_number = std::from_chars(key.first.data(), end, number).ptr == end;
      if (is_number && !key.first.empty()) numbers.emplace_back(number, place.record);
    }
    std::vector<std::size_t> result(records_.size());
    std::iota(result.begin(), result.end(), 0);
    if (numbers.size() != records_.size() || table_ < 2) return result;
    std::sort(numbers.begin(), numbers.end());
    std::transform(numbers.begin(), numbers.end(), result.begin(),
                   [](const auto& pair) { return pair.second; });
    return result;
  }

  static bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

  // The next token, one at the end of the text behind the last; false after a fault.
  bool next() {
    token_ = Token();
    token_.is_first_of_line = at_ == 0;
    while (at_ < text_.size()) {
      const char c = text_[at_];
      if (c == '#') {
        at_ = std::min(text_.find_first_of("\r\n", at_), text_.size());
      } else if (is_blank(c)) {
        token_.is_first_of_line |= c == '\n' || c == '\r';
        ++at_;
      } else {
        break;
      }
    }
    token_.offset = at_;
    if (at_ == text_.size()) return true;
    if (text_[at_] == '"') return read_quoted();
    while (at_ < text_.size() && !is_blank(text_[at_])) ++at_;
    token_.text = text_.substr(token_.offset, at_ - token_.offset);
    return check_text();
  }

  bool read_quoted() {
    token_.is_quoted = true;
    for (++at_;; ++at_) {
      const std::size_t mark = text_.find_first_of("\"\r\n", at_);
      if (mark == std::string_view::npos || text_[mark] != '"') {
        return fail("The quotation mark has no partner in its line", token_.offset);
      }
      token_.text += text_.substr(at_, mark - at_);
      at_ = mark + 1;
      if (text_.substr(at_, 1) != "\"") return check_text();
      token_.text += '"';
    }
  }

  // Files of today are UTF-8, older ones Latin-1.
  bool check_text() {
    if (zol::port::is_utf8(token_.text.data(), token_.text.size())) return true;
    std::string text;
    for (const char c : token_.text) {
      const unsigned char byte = static_cast<unsigned char>(c);
      if (byte >= 0x80) text += static_cast<char>(0xC0 | (byte >> 6));
      text += static_cast<char>(byte < 0x80 ? byte : 0x80 | (byte & 0x3F));
    }
    token_.text = text;
    return true;
  }

  bool is_word(std::string_view word) const { return !token_.is_quoted && token_.text == word; }
  bool is_at_end() const { return token_.offset >= text_.size(); }

  bool read_table() {
    ++table_;
    divisor_.reset();
    conditions_ = {};
    emits_ = false;
    is_calibration_ = false;
    expected_sets_.reset();
    bool is_first = true;
    while (!is_at_end()) {
      if (is_word("BEGIN_DATA_FORMAT")) {
        if (!read_fields()) return false;
      } else if (is_word("BEGIN_DATA")) {
        return read_data();
      } else if (!read_keyword(is_first)) {
        return false;
      }
      is_first = false;
    }
    return true;
  }

  // A word with its value, or the identifier of the file.
  bool read_keyword(bool is_first) {
    const Token keyword = token_;
    if (!next()) return false;
    if (token_.is_first_of_line || is_at_end()) {
      if (is_first) {
        emits_ = keyword.text == "SPECT";
        is_percent_ = keyword.text.compare(0, 3, "CTI") == 0;
        is_calibration_ = keyword.text == "CAL";
        return true;
      }
      if (is_keyword(keyword.text)) return true;
      return fail("Here stands '" + keyword.text.substr(0, 40) + "', a keyword is expected",
                  keyword.offset);
    }
    std::string value = token_.text;
    if (!next()) return false;
    while (!is_at_end() && !token_.is_first_of_line) {
      value += ' ' + token_.text;
      if (!next()) return false;
    }
    return take_keyword(keyword, value);
  }

  bool take_keyword(const Token& keyword, const std::string& value) {
    const std::string& name = keyword.text;
    if (name == "KEYWORD" || name == "NUMBER_OF_FIELDS") return true;
    if (name == "NUMBER_OF_SETS") {
      std::size_t count = 0;
      const auto parsed = std::from_chars(value.data(), value.data() + value.size(), count);
      if (parsed.ptr != value.data() + value.size()) {
        return fail("NUMBER_OF_SETS is '" + value + "', a number is expected", keyword.offset);
      }
      expected_sets_ = count;
      return true;
    }
    double norm = 0;
    if (name == k_norm && is_number(value, &norm) && norm > 0) {
      divisor_ = norm;
      return true;
    }
    if (name == k_measured) {
      emits_ = value != "REFLECTIVE" && value != "TRANSMISSIVE";
      if (value == k_emission) return true;
    }
    if (!take_condition(name, value)) keywords_.emplace_back(name, value);
    return true;
  }

  // Whether the keyword says what the values hold for, and nothing else.
  bool take_condition(const std::string& name, const std::string& value) {
    for (const ConditionKeyword& line : k_conditions_keywords) {
      const std::size_t around = line.before.size() + line.behind.size();
      if (line.keyword != name || value.size() <= around ||
          value.compare(0, line.before.size(), line.before) != 0 ||
          value.compare(value.size() - line.behind.size(), line.behind.size(), line.behind) != 0) {
        continue;
      }
      const std::string bare = value.substr(line.before.size(), value.size() - around);
      if (!can_hold(line.condition, bare)) return false;
      conditions_[line.condition] = bare;
      return true;
    }
    if (name == "MEASUREMENT_SOURCE") take_source(value);
    return false;
  }

  static bool can_hold(Condition condition, const std::string& value) {
    if (condition == Condition::polarization) return value == "true" || value == "false";
    if (condition == Condition::observer) return value == "2" || value == "10";
    return true;
  }

  // "Illumination=D50 ObserverAngle=2".
  void take_source(const std::string& value) {
    const std::pair<std::string_view, Condition> parts[] = {
        {"Illumination=", Condition::illuminant}, {"ObserverAngle=", Condition::observer}};
    for (const auto& [before, condition] : parts) {
      const std::size_t at = value.find(before);
      if (at == std::string::npos) continue;
      const std::size_t begin = at + before.size();
      const std::size_t end = value.find_first_of(" \t\xB0", begin);
      const std::string found = value.substr(begin, end == std::string::npos ? end : end - begin);
      if (!found.empty() && can_hold(condition, found)) conditions_[condition] = found;
    }
  }

  bool read_fields() {
    const std::size_t begin = token_.offset;
    fields_.clear();
    while (true) {
      if (!next()) return false;
      if (is_at_end()) return fail("BEGIN_DATA_FORMAT has no END_DATA_FORMAT", begin);
      if (is_word("END_DATA_FORMAT")) break;
      fields_.push_back(token_.text);
    }
    if (fields_.empty()) return fail("BEGIN_DATA_FORMAT names no field", begin);
    return next();
  }

  bool read_data() {
    const std::size_t begin = token_.offset;
    has_data_ = true;
    if (fields_.empty()) return fail("No BEGIN_DATA_FORMAT stands before BEGIN_DATA", begin);
    const std::vector<Column> columns = columns_of_fields();
    std::size_t sets = 0;
    std::vector<Token> line;
    while (true) {
      if (!next()) return false;
      if (is_at_end()) return fail("BEGIN_DATA has no END_DATA", begin);
      const bool is_end = is_word("END_DATA");
      if (!is_end) line.push_back(token_);
      if (is_end && !line.empty()) {
        return fail("The last set has " + std::to_string(line.size()) + " values for " +
                        std::to_string(fields_.size()) + " fields",
                    line.front().offset);
      }
      if (is_end) break;
      if (line.size() < fields_.size()) continue;
      ++sets;
      if (!is_calibration_ && !take_set(line, columns)) return false;
      line.clear();
    }
    if (expected_sets_ && *expected_sets_ != sets) {
      return fail("NUMBER_OF_SETS is " + std::to_string(*expected_sets_) + ", there are " +
                      std::to_string(sets),
                  begin);
    }
    finish_sets();
    if (is_calibration_) report_.losses.add("calibration table");
    return next();
  }

  // What a field holds.
  struct Column {
    const FieldOfNames* name = nullptr;
    std::string space, axis;
    double factor = 1;
    bool is_spectral = false;
  };

  std::vector<Column> columns_of_fields() {
    std::vector<Column> columns;
    const auto has = [&](std::string_view name) {
      return std::find(fields_.begin(), fields_.end(), name) != fields_.end();
    };
    const bool has_lch = has("LAB_C") && has("LAB_H") && !has("LCH_L");
    is_lightness_shared_ = has_lch && has("LAB_A");
    for (const std::string& field : fields_) {
      Column column;
      std::string_view name = field;
      for (const auto& [other, own] : k_other_names) {
        if (name == other) name = own;
      }
      if (name == "LAB_L" && has_lch && !is_lightness_shared_) name = "LCH_L";
      for (const FieldOfNames& known : k_name_fields) {
        if (name == known.name || (name == "SampleID" && known.field == Field::color) ||
            (name == "SampleName" && known.field == Field::name) ||
            (name == "SAMPLE_LOC" && known.field == Field::number)) {
          column.name = &known;
        }
      }
      for (const FieldOfSpace& known : k_space_fields) {
        if (known.name != name) continue;
        column.space = known.space;
        column.axis = known.axis;
        // Measurements of devices have percent.
        column.factor = is_percent_ && known.space == "RGB" ? 100 : known.factor;
      }
      const std::string wavelength = wavelength_of(field);
      if (!wavelength.empty()) {
        column.space = emits_ ? k_emissive_space : "Spectral";
        column.axis = wavelength;
        column.is_spectral = true;
      }
      if (column.space.empty() && column.name == nullptr && !is_calibration_) {
        report_.losses.add("field " + field.substr(0, 40));
      }
      columns.push_back(std::move(column));
    }
    return columns;
  }

  bool take_set(const std::vector<Token>& line, const std::vector<Column>& columns) {
    ColorRecord record;
    record.offset = line.front().offset;
    std::string sample, space_name;
    double greatest = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const Column& column = columns[i];
      if (column.name != nullptr) {
        if (!take_name(line[i], column.name->field, &sample, &space_name, &record)) return false;
        continue;
      }
      if (column.space.empty()) continue;
      double number = 0;
      if (!is_number(line[i].text, &number)) {
        return fail(fields_[i] + " is '" + line[i].text.substr(0, 40) + "', a number is expected",
                    line[i].offset);
      }
      if (column.is_spectral) greatest = std::max(greatest, number);
      add_value(column, line[i], &record);
    }
    greatest_ = std::max(greatest_, greatest);
    for (Rendering& rendering : record.renderings) {
      rendering.conditions = conditions_;
      rendering.name = space_name;
    }
    sets_.emplace_back(std::move(sample), std::move(record));
    return true;
  }

  bool take_name(const Token& token, Field field, std::string* sample, std::string* space_name,
                 ColorRecord* record) {
    switch (field) {
      case Field::color:
        *sample = token.text;
        return true;
      case Field::name:
        record->name = token.text;
        return true;
      case Field::number:
        record->number = token.text;
        return true;
      case Field::id:
        record->id = token.text;
        return true;
      case Field::group:
        record->group = token.text;
        return true;
      case Field::part:
        record->part = token.text;
        return true;
      case Field::comments:
        record->comments = token.text;
        return true;
      case Field::space_name:
        *space_name = token.text;
        return true;
      default:
        break;
    }
    const char* const end = token.text.data() + token.text.size();
    const auto parsed = std::from_chars(token.text.data(), end, record->pair);
    if (token.text.empty() || (parsed.ptr == end && record->pair > 0)) return true;
    return fail("COLOR_PAIR is '" + token.text + "', a number from 1 on is expected", token.offset);
  }

  void add_value(const Column& column, const Token& token, ColorRecord* record) {
    const auto add = [&](std::string_view space, std::string axis) {
      Rendering* rendering = nullptr;
      for (Rendering& open : record->renderings) {
        if (open.space == space) rendering = &open;
      }
      if (rendering == nullptr) {
        record->renderings.emplace_back();
        rendering = &record->renderings.back();
        rendering->space = space;
        rendering->offset = token.offset;
      }
      rendering->add(std::move(axis), divided(token.text, column.factor), token.offset);
    };
    if (column.space == "Density") {
      std::string status = conditions_[Condition::density_status];
      if (status.empty()) {
        status = "T";
        report_.assume("densities are of status T");
      }
      add(column.space, std::string(k_status) + status + ' ' + column.axis);
      return;
    }
    add(column.space, column.axis);
    if (is_lightness_shared_ && column.space == "CIELab" && column.axis == "L") {
      add("CIELCh", column.axis);
    }
  }

  // What stands for 1 holds for a table as a whole.
  void finish_sets() {
    constexpr double k_greatest_ratio = 3;
    const bool is_percent = !divisor_ && !emits_ && (is_percent_ || greatest_ > k_greatest_ratio);
    if (is_percent && greatest_ > 0) report_.assume("spectra are in percent");
    const double divisor = emits_ ? 1 : divisor_ ? *divisor_ : is_percent ? 100 : 1;
    for (auto& [sample, record] : sets_) {
      if (divisor != 1) scale_spectrum(divisor, &record);
      finish_set(sample, std::move(record));
    }
    sets_.clear();
    greatest_ = 0;
  }

  static void scale_spectrum(double divisor, ColorRecord* record) {
    for (Rendering& rendering : record->renderings) {
      if (rendering.space != "Spectral") continue;
      for (Coordinate& coordinate : rendering.coordinates) {
        coordinate.number = divided(coordinate.text, divisor);
        coordinate.text = number_text(coordinate.number);
      }
    }
  }

  struct Place {
    std::size_t table = 0;  // the last one that has the sample, from 1
    std::size_t record = 0;
  };

  // A line that goes on with the colour of another table joins it.
  void finish_set(const std::string& sample, ColorRecord record) {
    record.kind = record.pair != 0                                ? PlaceKind::record
                  : !record.group.empty() || !record.part.empty() ? PlaceKind::palette
                                                                  : PlaceKind::document;
    const bool has_name = !record.name.empty();
    if (record.name.empty()) record.name = !sample.empty() ? sample : record.number;
    if (record.name.empty()) record.name = "Colour " + std::to_string(records_.size() + 1);
    if (record.renderings.empty()) {
      report_.losses.add("sample without a value that is known");
      return;
    }
    Place& place = samples_[{sample, record.name}];
    // Within a table it takes a name to tell another rendering from another colour.
    if (sample.empty() || place.table == 0 || (place.table == table_ && !has_name)) {
      place = {table_, records_.size()};
      records_.push_back(std::move(record));
      return;
    }
    place.table = table_;
    std::vector<Rendering>& renderings = records_[place.record].renderings;
    std::move(record.renderings.begin(), record.renderings.end(), std::back_inserter(renderings));
  }

  std::string_view text_;
  const ReadOptions& options_;
  Report& report_;
  std::size_t at_ = 0;
  Token token_;
  // Of the table at hand.
  std::vector<std::pair<std::string, ColorRecord>> sets_;  // with the sample's id
  double greatest_ = 0;                                    // of the values of spectra
  std::vector<std::string> fields_;
  Conditions conditions_;
  std::optional<std::size_t> expected_sets_;
  std::optional<double> divisor_;  // of spectra, where the file says it
  bool emits_ = false;
  bool is_calibration_ = false;
  bool is_lightness_shared_ = false;
  // Of the file.
  bool is_percent_ = false;
  bool has_data_ = false;
  std::vector<std::pair<std::string, std::string>> keywords_;
  std::vector<ColorRecord> records_;
  std::map<std::pair<std::string, std::string>, Place> samples_;  // by id and name
  std::size_t table_ = 0;
};

}  // namespace

std::unique_ptr<Writer> make_cgats_writer() { return std::make_unique<CgatsWriter>(); }

Report read_cgats(std::string_view text, const ReadOptions& options, Zol* document) {
  Report report;
  CgatsReader(text, options, &report).read(document);
  return report;
}

}  // namespace zol_v2::interchange::internal
