// Colours on a terminal, as far as it has any.
#pragma once

#include <array>
#include <string>

// What standard output shows of colours.
enum class ColorDepth : unsigned char { none, palette_256, rgb_24_bit };

// None where standard output is no terminal, is a dumb one, or NO_COLOR is set to anything
// (no-color.org). 24 bits where COLORTERM says "truecolor" or "24bit" or TERM ends in "-direct",
// 256 colours where TERM has that number.
ColorDepth color_depth();

// Four columns of the colour, sRGB in bytes, with `mark` in the last of them; then everything is as
// it was. Without colours an empty text.
std::string terminal_swatch(const std::array<unsigned char, 3>& rgb, char mark, ColorDepth depth);
// The same for what has no colour.
std::string terminal_gap(ColorDepth depth);

// The nearest of the 240 colours of a 256-colour terminal that are the same everywhere: the cube
// and the greys.
int nearest_of_256(const std::array<unsigned char, 3>& rgb);
