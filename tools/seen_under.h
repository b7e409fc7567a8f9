// The options that say under which light and for which observer colours are shown.
#pragma once

#include <optional>
#include <string>

#include "colorimetry/colorimeter.h"

namespace CLI {
class App;
}

class SeenUnder {
 public:
  // None where neither option was given: each colour is shown under its own conditions. What is
  // missing beside the other is D50, or 2 degrees.
  std::optional<zol_v2::colorimetry::Conditions> conditions() const;

 private:
  friend void add_seen_under(CLI::App& command, SeenUnder* seen);

  std::string illuminant_;
  std::string observer_;
};

// --illuminant and --observer.
void add_seen_under(CLI::App& command, SeenUnder* seen);
