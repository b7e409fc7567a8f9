#include "interchange/internal/display.h"

#include <algorithm>

#if defined(ZOL_WITH_COLORIMETRY)
#include "colorimetry/colorimeter.h"
#endif

namespace zol_v2::interchange::internal {

namespace {

std::optional<std::array<double, 3>> numbers_of(const Rendering* rendering,
                                                const std::array<const char*, 3>& axes) {
  if (rendering == nullptr) return std::nullopt;
  std::array<double, 3> numbers = {};
  for (std::size_t i = 0; i < axes.size(); ++i) {
    const Coordinate* const coordinate = rendering->find(axes[i]);
    if (coordinate == nullptr) return std::nullopt;
    numbers[i] = coordinate->number;
  }
  return numbers;
}

}  // namespace

#if defined(ZOL_WITH_COLORIMETRY)

struct Display::Meter {
  colorimetry::Colorimeter colorimeter;
};

std::optional<std::array<double, 3>> Display::rgb_of(const ColorRecord& record, Report* report) {
  if (const auto own = numbers_of(record.find("SRGB"), {"Red", "Green", "Blue"})) return own;
  if (record.color == nullptr) return std::nullopt;
  const auto stimulus = meter_->colorimeter.measure(*record.color, {record.set, record.palette});
  if (!stimulus) return std::nullopt;
  const colorimetry::Display display = colorimetry::display_of(*stimulus);
  report->assume("colours without sRGB look as colorimetry computes them");
  if (!display.is_in_gamut) report->losses.add("chroma of a colour outside of sRGB");
  const auto clipped = [](double value) { return std::clamp(value, 0.0, 1.0); };
  return std::array<double, 3>{clipped(display.rgb.r), clipped(display.rgb.g),
                               clipped(display.rgb.b)};
}

std::optional<std::array<double, 3>> Display::lab_of(const ColorRecord& record) {
  if (record.color == nullptr) return std::nullopt;
  const auto stimulus = meter_->colorimeter.measure(*record.color, colorimetry::Conditions(),
                                                    {record.set, record.palette});
  if (!stimulus || !stimulus->has_white()) return std::nullopt;
  const colorimetry::Lab lab = stimulus->lab();
  return std::array<double, 3>{lab.l, lab.a, lab.b};
}

#else

struct Display::Meter {};

std::optional<std::array<double, 3>> Display::rgb_of(const ColorRecord& record, Report*) {
  return numbers_of(record.find("SRGB"), {"Red", "Green", "Blue"});
}

std::optional<std::array<double, 3>> Display::lab_of(const ColorRecord& record) {
  for (const Rendering& rendering : record.renderings) {
    const bool is_fit = rendering.space == "CIELab" &&
                        rendering.conditions[Condition::illuminant] == "D50" &&
                        rendering.conditions[Condition::observer] == "2";
    if (is_fit) return numbers_of(&rendering, {"L", "A", "B"});
  }
  return std::nullopt;
}

#endif

Display::Display() : meter_(std::make_unique<Meter>()) {}
Display::~Display() = default;
void Display::forget_document() { meter_ = std::make_unique<Meter>(); }

}  // namespace zol_v2::interchange::internal
