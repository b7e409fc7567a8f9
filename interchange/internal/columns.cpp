#include "interchange/internal/columns.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <iterator>

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

std::string letters_and_digits(std::string_view text) {
  std::string result;
  for (const char c : lower(text)) {
    if (std::isalnum(static_cast<unsigned char>(c))) result += c;
  }
  return result;
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

Target guess(std::string_view heading) {
  const std::string_view bare = without_unit(heading);
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
  return target;
}

}  // namespace

std::string_view name_of(Field field) { return k_field_names[static_cast<std::size_t>(field)]; }

std::string wavelength_in(std::string_view heading) {
  const std::string text = lower(heading);
  const std::size_t begin = text.find_first_of("0123456789");
  if (begin == std::string::npos) return {};
  std::size_t end = text.find_first_not_of("0123456789.", begin);
  end = std::min(end, text.size());
  const std::string before = letters_and_digits(text.substr(0, begin));
  const std::string behind = letters_and_digits(text.substr(end));
  constexpr std::string_view k_before[] = {
      "", "r", "nm", "spectralnm", "spec", "spectral", "reflectance", "wavelength", "wl"};
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

std::vector<Target> guess_targets(const std::vector<std::string>& headings) {
  std::vector<Target> targets;
  std::vector<std::string> bare;
  for (const std::string& heading : headings) {
    targets.push_back(guess(heading));
    bare.push_back(targets.back().kind == Kind::none ? letters_and_digits(without_unit(heading))
                                                     : std::string());
  }
  for (const KnownSpace& known : known_spaces()) {
    for (const auto* const names : {&known.letters, &known.words}) {
      std::vector<std::size_t> columns;
      for (const std::string_view name : *names) {
        const auto found = std::find(bare.begin(), bare.end(), name);
        if (found != bare.end()) columns.push_back(static_cast<std::size_t>(found - bare.begin()));
      }
      if (names->empty() || columns.size() != names->size()) continue;
      for (std::size_t i = 0; i < columns.size(); ++i) {
        targets[columns[i]] = coordinate(known.space, known.axes[i]);
        targets[columns[i]].is_guess = true;
        bare[columns[i]].clear();
      }
    }
  }
  return targets;
}

}  // namespace zol_v2::interchange::internal
