#include "tools/seen_under.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace colorimetry = zol_v2::colorimetry;

namespace {

std::string check_illuminant(const std::string& name) {
  const auto light = colorimetry::Light::named(name);
  return light ? "" : light.reason();
}

std::string check_observer(const std::string& name) {
  return name == "2" || name == "10" ? "" : "the observers are 2 and 10, in degrees";
}

}  // namespace

std::optional<colorimetry::Conditions> SeenUnder::conditions() const {
  if (illuminant_.empty() && observer_.empty()) return std::nullopt;
  colorimetry::Conditions result;
  if (!illuminant_.empty()) result.light = *colorimetry::Light::named(illuminant_);
  if (observer_ == "10") result.observer = colorimetry::Observer::degree_10;
  return result;
}

void add_seen_under(CLI::App& command, SeenUnder* seen) {
  command
      .add_option("--illuminant", seen->illuminant_,
                  "Show colours as under this illuminant, as D50 or F11")
      ->check(CLI::Validator(check_illuminant, "NAME"));
  command.add_option("--observer", seen->observer_, "Show them for this observer: 2 or 10 degrees")
      ->check(CLI::Validator(check_observer, "DEGREES"));
}
