// A program of somebody else, with the library of colorimetry.
#include <cstdio>

#include "colorimetry/colorimeter.h"

int main() {
  using namespace zol_v2::colorimetry;
  Stimulus white;
  white.conditions.light = StandardIlluminant::F11;
  white.white = white.xyz = *white.conditions.light.white(white.conditions.observer);
  std::printf("%s\n", display_of(white).hex().c_str());
}
