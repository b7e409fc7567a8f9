#include "tools/terminal_color.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "tools/terminal.h"

namespace {

constexpr int k_levels[] = {0, 95, 135, 175, 215, 255};  // of the cube, as xterm has them

bool ends_with(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

int square(int value) { return value * value; }

int distance(const std::array<unsigned char, 3>& rgb, int r, int g, int b) {
  return square(rgb[0] - r) + square(rgb[1] - g) + square(rgb[2] - b);
}

int nearest_level(int value) {
  int best = 0;
  for (int i = 1; i < 6; ++i) {
    if (std::abs(k_levels[i] - value) < std::abs(k_levels[best] - value)) best = i;
  }
  return best;
}

bool is_light(const std::array<unsigned char, 3>& rgb) {
  return 299 * rgb[0] + 587 * rgb[1] + 114 * rgb[2] > 128000;
}

}  // namespace

ColorDepth color_depth() {
  const std::string term = environment("TERM"), colors = environment("COLORTERM");
  if (!is_terminal(stdout) || !environment("NO_COLOR").empty() || term.empty() || term == "dumb") {
    return ColorDepth::none;
  }
  if (colors == "truecolor" || colors == "24bit" || ends_with(term, "-direct")) {
    return ColorDepth::rgb_24_bit;
  }
  return term.find("256") != std::string::npos ? ColorDepth::palette_256 : ColorDepth::none;
}

int nearest_of_256(const std::array<unsigned char, 3>& rgb) {
  const int r = nearest_level(rgb[0]), g = nearest_level(rgb[1]), b = nearest_level(rgb[2]);
  const int of_cube = distance(rgb, k_levels[r], k_levels[g], k_levels[b]);
  const int mean = (rgb[0] + rgb[1] + rgb[2]) / 3;
  const int grey = std::clamp((mean - 8 + 5) / 10, 0, 23);
  const int shade = 8 + 10 * grey;
  if (distance(rgb, shade, shade, shade) < of_cube) return 232 + grey;
  return 16 + 36 * r + 6 * g + b;
}

std::string terminal_swatch(const std::array<unsigned char, 3>& rgb, char mark, ColorDepth depth) {
  if (depth == ColorDepth::none) return "";
  const bool is_rgb = depth == ColorDepth::rgb_24_bit;
  std::string color = "5;" + std::to_string(nearest_of_256(rgb));
  if (is_rgb) {
    color =
        "2;" + std::to_string(rgb[0]) + ';' + std::to_string(rgb[1]) + ';' + std::to_string(rgb[2]);
  }
  return "\x1b[48;" + color + (is_light(rgb) ? ";30m" : ";97m") + "   " + mark + "\x1b[0m ";
}

std::string terminal_gap(ColorDepth depth) { return depth == ColorDepth::none ? "" : " -   "; }
