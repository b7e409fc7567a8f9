#include "interchange/internal/columns.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <iterator>
#include <utility>

#include "interchange/internal/coordinates.h"

namespace zol_v2::interchange::internal {

namespace {

using Kind = Target::Kind;

constexpr std::string_view k_field_names[k_fields] = {
    "Document", "Color",     "Group", "Part",      "Pair", "Name",  "Number", "UniqueID",
    "Comments", "Rendering", "Space", "SpaceName", "Axis", "Value", "Unit"};

struct Synonym {
  std::string_view heading;  // letters and digits alone, in small letters
  Field field;
};

constexpr Synonym k_synonyms[] = {
    {"colour", Field::name},
    {"colorname", Field::name},
    {"colourname", Field::name},
    {"samplename", Field::name},
    {"sample", Field::name},
    {"label", Field::name},
    {"patch", Field::name},
    {"swatch", Field::name},
    {"title", Field::name},
    {"description", Field::name},
    {"sampleid", Field::number},
    {"colornumber", Field::number},
    {"colournumber", Field::number},
    {"code", Field::number},
    {"no", Field::number},
    {"nr", Field::number},
    {"id", Field::id},
    {"guid", Field::id},
    {"uuid", Field::id},
    {"comment", Field::comments},
    {"note", Field::comments},
    {"notes", Field::comments},
    {"remark", Field::comments},
    {"remarks", Field::comments},
    {"palette", Field::group},
    {"set", Field::part},
    {"colorset", Field::part},
    {"role", Field::part},
};

struct KnownSpace {
  std::string_view space;
  std::vector<std::string_view> prefixes;
  std::vector<std::string_view> axes;     // as records have them
  std::vector<std::string_view> letters;  // as tables do
  std::vector<std::string_view> words;
};

// Of bare letters the first space is meant that has all of its own.
const std::vector<KnownSpace>& known_spaces() {
  static const std::vector<KnownSpace> table = {
      {"CIELab", {"lab", "cielab"}, {"L", "A", "B"}, {"l", "a", "b"}, {}},
      {"CIELCh", {"lch", "cielch"}, {"L", "C", "H"}, {"l", "c", "h"}, {}},
      {"CIEXYZ", {"xyz", "ciexyz"}, {"X", "Y", "Z"}, {"x", "y", "z"}, {}},
      {"CMYK",
       {"cmyk"},
       {"Cyan", "Magenta", "Yellow", "Black"},
       {"c", "m", "y", "k"},
       {"cyan", "magenta", "yellow", "black"}},
      {"SRGB",
       {"srgb", "rgb"},
       {"Red", "Green", "Blue"},
       {"r", "g", "b"},
       {"red", "green", "blue"}},
      {"CIELuv", {"luv", "cieluv"}, {"L", "U", "V"}, {"l", "u", "v"}, {}},
  };
  return table;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view k_blanks = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(k_blanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(k_blanks) - begin + 1);
}

std::string lower(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return result;
}

std::string exact_letters_and_digits(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (std::isalnum(static_cast<unsigned char>(c))) result += c;
  }
  return result;
}

std::string letters_and_digits(std::string_view text) {
  return lower(exact_letters_and_digits(text));
}

// "CMYK.Cyan [percent]" without the unit.
std::string_view without_unit(std::string_view heading) {
  heading = trimmed(heading);
  const std::size_t bracket = heading.rfind(" [");
  if (bracket == std::string_view::npos || heading.back() != ']') return heading;
  return trimmed(heading.substr(0, bracket));
}

Target coordinate(std::string_view space, std::string_view axis) {
  Target target;
  target.kind = Kind::coordinate;
  target.space = space;
  target.axis = axis;
  return target;
}

Target of_field(Field field) {
  Target target;
  target.kind = Kind::field;
  target.field = field;
  return target;
}

std::optional<Target> parse_name(std::string_view text) {
  const std::string wanted = lower(text);
  for (std::size_t i = 0; i < k_fields; ++i) {
    if (lower(k_field_names[i]) == wanted) return of_field(static_cast<Field>(i));
  }
  Target target;
  for (std::size_t i = 0; i < k_conditions; ++i) {
    target.condition = static_cast<Condition>(i);
    target.kind = Kind::condition;
    if (lower(name_of(target.condition)) == wanted) return target;
  }
  if (wanted == "-") return Target();
  if (wanted == "hex") {
    target.kind = Kind::hex;
    return target;
  }
  const std::size_t dot = text.find('.');
  if (dot == std::string_view::npos || dot + 1 == text.size() || !space_row(text.substr(0, dot))) {
    return std::nullopt;
  }
  return coordinate(text.substr(0, dot), text.substr(dot + 1));
}

// "D65" or "F11"; the format's enumeration says later whether there is such a one.
bool is_illuminant(std::string_view word) {
  if (word.empty()) return false;
  const std::string_view digits = word.substr(1);
  const bool is_number = digits.find_first_not_of("0123456789") == std::string_view::npos;
  if (word[0] == 'D') return digits.size() == 2 && is_number;
  if (word[0] == 'F') return !digits.empty() && digits.size() <= 2 && is_number;
  return digits.empty() && std::string_view("ABCE").find(word[0]) != std::string_view::npos;
}

// "2" or "10"; empty for anything that is none of the two.
std::string_view observer_in(std::string_view word) {
  const std::string plain = letters_and_digits(word);
  constexpr std::pair<std::string_view, std::string_view> k_spellings[] = {
      {"2", "2"},         {"2deg", "2"},       {"2degree", "2"}, {"2degrees", "2"},
      {"1931", "2"},      {"cie1931", "2"},    {"10", "10"},     {"10deg", "10"},
      {"10degree", "10"}, {"10degrees", "10"}, {"1964", "10"},   {"cie1964", "10"}};
  for (const auto& [spelling, observer] : k_spellings) {
    if (plain == spelling) return observer;
  }
  return {};
}

// An illuminant, an observer or both of them, with blanks, commas or slashes between; none if
// anything else is in the text.
std::optional<Conditions> viewing_in(std::string_view text) {
  Conditions conditions;
  bool has_any = false;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("/,; "), text.size());
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    const std::string plain = letters_and_digits(word);
    constexpr std::string_view k_around[] = {"",    "deg", "degree",  "degrees",
                                             "cie", "obs", "observer"};
    if (std::find(std::begin(k_around), std::end(k_around), plain) != std::end(k_around)) continue;
    const std::string_view observer = observer_in(word);
    Condition condition = Condition::observer;
    if (observer.empty() && is_illuminant(word)) {
      condition = Condition::illuminant;
    } else if (observer.empty()) {
      return std::nullopt;
    }
    if (!conditions[condition].empty()) return std::nullopt;
    conditions[condition] = observer.empty() ? word : observer;
    has_any = true;
  }
  if (!has_any) return std::nullopt;
  return conditions;
}

// "L* (D65/10°)" without what stands in brackets, if that is a light.
std::string_view without_viewing(std::string_view heading, Conditions* conditions) {
  heading = trimmed(heading);
  const std::size_t bracket = heading.find_last_of("([");
  if (bracket == std::string_view::npos || bracket == 0 ||
      std::string_view(")]").find(heading.back()) == std::string_view::npos) {
    return heading;
  }
  const auto viewing = viewing_in(heading.substr(bracket + 1, heading.size() - bracket - 2));
  if (!viewing) return heading;
  *conditions = *viewing;
  return trimmed(heading.substr(0, bracket));
}

// With the name of the space before the letter of the axis: "LAB_L", "CIE L*", "cmyk c".
std::optional<Target> parse_prefixed(const std::string& plain) {
  for (const KnownSpace& known : known_spaces()) {
    for (const std::string_view prefix : known.prefixes) {
      if (plain.compare(0, prefix.size(), prefix) != 0) continue;
      const std::string rest = plain.substr(prefix.size());
      for (std::size_t i = 0; i < known.axes.size(); ++i) {
        if (rest == known.letters[i] || rest == lower(known.axes[i])) {
          return coordinate(known.space, known.axes[i]);
        }
      }
    }
  }
  return std::nullopt;
}

Target guess(std::string_view bare, const Conditions& conditions) {
  if (const std::optional<Target> exact = parse_name(bare)) return *exact;
  const std::string plain = letters_and_digits(bare);
  for (const Synonym& synonym : k_synonyms) {
    if (synonym.heading == plain) return of_field(synonym.field);
  }
  Target target;
  if (const std::optional<Target> prefixed = parse_prefixed(plain)) target = *prefixed;
  const std::string wavelength = wavelength_in(bare);
  if (!wavelength.empty()) target = coordinate("Spectral", wavelength);
  target.is_guess = target.kind == Kind::coordinate;
  target.conditions = conditions;
  return target;
}

}  // namespace

std::string_view name_of(Field field) { return k_field_names[static_cast<std::size_t>(field)]; }

void settle_condition(Condition condition, std::string_view text, Conditions* conditions) {
  const bool is_viewing = condition == Condition::observer || condition == Condition::illuminant;
  const std::optional<Conditions> viewing = is_viewing ? viewing_in(text) : std::nullopt;
  (*conditions)[condition] = text;
  if (!viewing) return;
  for (const Condition each : {Condition::observer, Condition::illuminant}) {
    if (!(*viewing)[each].empty()) (*conditions)[each] = (*viewing)[each];
  }
}

bool is_wavelength(std::string_view heading) {
  const std::string plain = letters_and_digits(heading);
  constexpr std::string_view k_spellings[] = {
      "wavelength", "wavelengthnm", "wavelengths", "wavelengthsnm",
      "nm",         "lambda",       "lambdanm",    "wl"};
  return std::find(std::begin(k_spellings), std::end(k_spellings), plain) != std::end(k_spellings);
}

bool is_reflectance(std::string_view heading) {
  const std::string plain = letters_and_digits(heading);
  constexpr std::string_view k_spellings[] = {"reflectance", "reflection", "transmittance",
                                              "r",           "refl",       "spectralvalue"};
  return std::find(std::begin(k_spellings), std::end(k_spellings), plain) != std::end(k_spellings);
}

std::string wavelength_in(std::string_view heading) {
  const std::string text = lower(heading);
  const std::size_t begin = text.find_first_of("0123456789");
  if (begin == std::string::npos) return {};
  std::size_t end = text.find_first_not_of("0123456789.", begin);
  end = std::min(end, text.size());
  const std::string before = letters_and_digits(text.substr(0, begin));
  const std::string behind = letters_and_digits(text.substr(end));
  constexpr std::string_view k_before[] = {"",     "r",        "nm",          "spectralnm",
                                           "spec", "spectral", "reflectance", "wavelength",
                                           "wl",   "lambda",   "refl"};
  if (std::find(std::begin(k_before), std::end(k_before), before) == std::end(k_before)) return {};
  if (!behind.empty() && behind != "nm") return {};
  double number = 0;
  const auto parsed = std::from_chars(text.data() + begin, text.data() + end, number);
  constexpr double k_shortest = 200, k_longest = 2500;
  if (parsed.ptr != text.data() + end || number < k_shortest || number > k_longest) return {};
  return text.substr(begin, end - begin);
}

std::optional<Target> parse_target(std::string_view text) {
  text = trimmed(text);
  const std::size_t sign = text.find_last_of("/*");
  if (sign != std::string_view::npos) {
    const std::string_view digits = trimmed(text.substr(sign + 1));
    double factor = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), factor);
    const bool is_number = !digits.empty() && parsed.ptr == digits.data() + digits.size();
    if (is_number && factor > 0) {
      std::optional<Target> target = parse_name(trimmed(text.substr(0, sign)));
      if (!target || target->kind != Kind::coordinate) return std::nullopt;
      target->divisor = text[sign] == '/' ? factor : 1 / factor;
      return target;
    }
  }
  return parse_name(text);
}

namespace {

// Columns that nobody knows yet, with one light.
struct BareHeadings {
  std::vector<std::string> exact;  // letters and digits alone; empty for one that is known
  std::vector<std::string> small;

  // "X" and not "x" where there are both.
  std::size_t find(std::string_view axis, std::string_view letter) const {
    auto found = std::find(exact.begin(), exact.end(), axis);
    if (found != exact.end()) return static_cast<std::size_t>(found - exact.begin());
    found = std::find(small.begin(), small.end(), letter);
    return found != small.end() ? static_cast<std::size_t>(found - small.begin()) : k_nowhere;
  }
};

void guess_space(std::string_view space, const std::vector<std::string_view>& axes,
                 const std::vector<std::string_view>& names, const Conditions& conditions,
                 BareHeadings* bare, std::vector<Target>* targets) {
  std::vector<std::size_t> columns;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::size_t column = bare->find(axes[i], names[i]);
    if (column == k_nowhere) return;
    columns.push_back(column);
  }
  for (std::size_t i = 0; i < columns.size(); ++i) {
    Target& target = (*targets)[columns[i]];
    target = coordinate(space, axes[i]);
    target.is_guess = true;
    target.conditions = conditions;
    bare->exact[columns[i]].clear();
    bare->small[columns[i]].clear();
  }
}

}  // namespace

std::vector<Target> guess_targets(const std::vector<std::string>& headings) {
  std::vector<Target> targets;
  std::vector<std::string_view> names;
  std::vector<Conditions> lights;  // that headings have, each once
  for (const std::string& heading : headings) {
    Conditions conditions;
    names.push_back(without_unit(without_viewing(heading, &conditions)));
    targets.push_back(guess(names.back(), conditions));
    targets.back().conditions = conditions;
    if (std::find(lights.begin(), lights.end(), conditions) == lights.end()) {
      lights.push_back(conditions);
    }
  }
  for (const Conditions& light : lights) {
    BareHeadings bare;
    for (std::size_t i = 0; i < headings.size(); ++i) {
      const bool is_open = targets[i].kind == Kind::none && targets[i].conditions == light;
      bare.exact.push_back(is_open ? exact_letters_and_digits(names[i]) : std::string());
      bare.small.push_back(lower(bare.exact.back()));
    }
    for (const KnownSpace& known : known_spaces()) {
      guess_space(known.space, known.axes, known.letters, light, &bare, &targets);
      if (!known.words.empty()) {
        guess_space(known.space, known.axes, known.words, light, &bare, &targets);
      }
    }
    // Of these the case tells.
    guess_space("CIExyY", {"x", "y", "Y"}, {"x", "y", "Y"}, light, &bare, &targets);
  }
  return targets;
}

}  // namespace zol_v2::interchange::internal
