// The pictures of a report, as SVG that needs no font, script or file.
#pragma once

#include <string>
#include <vector>

#include "tools/report_content.h"

struct Picture {
  int width = 0, height = 0;
  std::string title;        // what it shows, for those who do not see it
  std::string description;  // what can be seen in it
  std::string body;         // elements of SVG
};

// As a part of a page that has picture_style() and the shared symbols.
std::string in_page(const Picture& picture);
// As a file of its own.
std::string standalone(const Picture& picture);
// CSS of the colours and lines, with those of the dark scheme.
std::string_view picture_style();
// What pictures of a page refer to; once in the page.
std::string shared_symbols();

// All colours side by side, in their order; of very many a fair choice.
Picture ribbon_picture(const ReportContent& content);
// The plane of a* and b*, and that of C* and L*. The body is empty if no colour has these.
Picture hue_picture(const ReportContent& content);
Picture lightness_picture(const ReportContent& content);
// All spectra of reflectance and transmittance, or all of light sources. Empty if there are none.
Picture spectra_picture(const ReportContent& content, bool is_emission);

// One colour as it looks, with its name.
Picture swatch_picture(const ReportColor& color);
// The spectrum of one colour, which must have one.
Picture spectrum_picture(const ReportColor& color);
// Both, side by side.
Picture color_picture(const ReportColor& color);
// The curve of a colour's spectrum for a list of many: needs the shared symbols.
std::string small_spectrum(const ReportColor& color);

// A value on its scale, with the limits that it is held to. `words` say the same.
std::string limits_picture(std::string_view words, double value,
                           const zol_v2::colorimetry::Limits& given,
                           const std::optional<double>& warning_level,
                           zol_v2::colorimetry::Status status);

// A measurement as it lies around its standard.
struct Deviation {
  std::string label;
  zol_v2::colorimetry::Lab lab;
  zol_v2::colorimetry::Status status = zol_v2::colorimetry::Status::not_judged;
};
// A border of what passes: closed, in differences of a* and b* from the standard.
struct Border {
  std::string label;
  std::vector<std::pair<double, double>> points;
  double lightness = 0;  // the greatest difference of L* alone that passes; 0 if none is known
};
Picture deviation_picture(const zol_v2::colorimetry::Lab& standard,
                          const std::vector<Deviation>& deviations,
                          const std::vector<Border>& borders);
