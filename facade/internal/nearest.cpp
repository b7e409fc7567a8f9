#include "facade/internal/nearest.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace zol_v2::internal {

namespace {

// Nobody misspells a longer name by so much that its beginning would not tell.
constexpr std::size_t k_longest = 64;

// Values are called after what they are values of: "Illuminant_D65".
std::string_view last_word(std::string_view name) { return name.substr(name.rfind('_') + 1); }

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool is_same_but_for_case(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                            [](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace

// The distance of Damerau and Levenshtein where no letter is moved twice, by its three last lines.
std::size_t distance(std::string_view a, std::string_view b) {
  a = a.substr(0, k_longest);
  b = b.substr(0, k_longest);
  std::array<std::array<std::size_t, k_longest + 1>, 3> lines;
  for (std::size_t j = 0; j <= b.size(); ++j) lines[0][j] = 2 * j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    auto& line = lines[i % 3];
    const auto& above = lines[(i + 2) % 3];
    line[0] = 2 * i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const char x = a[i - 1];
      const char y = b[j - 1];
      const std::size_t change = x == y ? 0 : lower(x) == lower(y) ? 1 : 2;
      line[j] = std::min({above[j] + 2, line[j - 1] + 2, above[j - 1] + change});
      if (i > 1 && j > 1 && x == b[j - 2] && a[i - 2] == y) {
        line[j] = std::min(line[j], lines[(i + 1) % 3][j - 2] + 2);
      }
    }
  }
  return lines[a.size() % 3][b.size()];
}

bool is_near(std::string_view found, std::string_view meant) {
  // A third of the letters, or their case alone.
  return 3 * distance(found, meant) <= 2 * meant.size() || is_same_but_for_case(found, meant) ||
         is_same_but_for_case(found, last_word(meant));
}

void sort_by_distance(std::string_view found, std::vector<std::string>* names) {
  std::vector<std::pair<std::size_t, std::string>> sorted;
  for (std::string& name : *names) {
    const bool is_meant = is_near(found, name);
    sorted.emplace_back(is_meant ? distance(found, name) : std::numeric_limits<std::size_t>::max(),
                        std::move(name));
  }
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  for (std::size_t i = 0; i < sorted.size(); ++i) (*names)[i] = std::move(sorted[i].second);
}

}  // namespace zol_v2::internal
