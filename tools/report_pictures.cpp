#include "tools/report_pictures.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "tools/markup.h"
#include "tools/report_style.h"

namespace colorimetry = zol_v2::colorimetry;
using colorimetry::Lab;
using colorimetry::Status;

namespace {

constexpr char k_light_gradient[] =
    "<defs><linearGradient id=\"light\"><stop stop-color=\"#53007f\"/>"
    "<stop offset=\".2\" stop-color=\"#1a2cff\"/><stop offset=\".32\" stop-color=\"#00b7e0\"/>"
    "<stop offset=\".41\" stop-color=\"#00c246\"/><stop offset=\".5\" stop-color=\"#d6e000\"/>"
    "<stop offset=\".57\" stop-color=\"#ff9500\"/><stop offset=\".67\" stop-color=\"#e60000\"/>"
    "<stop offset=\"1\" stop-color=\"#4a0000\"/></linearGradient></defs>";

// --- Elements ------------------------------------------------------------------------------------

std::string num(double value) { return decimal_text(value, 1); }

std::string attribute(std::string_view name, double value) {
  return ' ' + std::string(name) + "=\"" + num(value) + '"';
}

std::string line(double x1, double y1, double x2, double y2, std::string_view type) {
  return "<path class=\"" + std::string(type) + "\" d=\"M" + num(x1) + ' ' + num(y1) + 'L' +
         num(x2) + ' ' + num(y2) + "\"/>";
}

enum class Anchor { start, middle, end };

std::string text(double x, double y, std::string_view words, Anchor anchor = Anchor::middle,
                 std::string_view type = "") {
  std::string result = "<text" + attribute("x", x) + attribute("y", y);
  if (anchor != Anchor::middle) {
    result += anchor == Anchor::end ? " text-anchor=\"end\"" : " text-anchor=\"start\"";
  }
  if (!type.empty()) result += " class=\"" + std::string(type) + '"';
  return result + '>' + escaped(words) + "</text>";
}

// A circle; what a display can't show is a diamond.
std::string mark(double x, double y, double radius, const colorimetry::Display& display,
                 std::string_view type) {
  const std::string fill = " fill=\"" + display.hex() + "\" class=\"" + std::string(type) + "\"/>";
  if (display.is_in_gamut) {
    return "<circle" + attribute("cx", x) + attribute("cy", y) + attribute("r", radius) + fill;
  }
  const std::string reach = num(radius * 1.35);
  return "<path d=\"M" + num(x) + ' ' + num(y - radius * 1.35) + 'l' + reach + ' ' + reach + " -" +
         reach + ' ' + reach + " -" + reach + " -" + reach + "z\"" + fill;
}

// The length between two marks of a scale that has about `count` of them.
double scale_step(double range, int count) {
  const double raw = range / count;
  const double power = std::pow(10, std::floor(std::log10(raw)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= raw) return factor * power;
  }
  return 10 * power;
}

std::string scale_text(double value, double step) {
  return decimal_text(value, step >= 1 ? 0 : static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
}

// --- Labels that keep out of each other's way ----------------------------------------------------

class Labels {
 public:
  void block(double x, double y, double radius) {
    boxes_.push_back({x - radius, y - radius, x + radius, y + radius});
  }

  // Beside a mark, where there is room; nothing if there is none.
  std::string place(double x, double y, double radius, std::string_view words) {
    const double width = 7.2 * double(words.size()), gap = radius + 4;
    const struct {
      double x, y;
      Anchor anchor;
    } k_choices[] = {{x + gap, y + 4, Anchor::start},
                     {x - gap, y + 4, Anchor::end},
                     {x, y - gap, Anchor::middle},
                     {x, y + gap + 10, Anchor::middle}};
    for (const auto& choice : k_choices) {
      const double left = choice.anchor == Anchor::start ? choice.x
                          : choice.anchor == Anchor::end ? choice.x - width
                                                         : choice.x - width / 2;
      const Box box{left, choice.y - 10, left + width, choice.y + 2};
      if (!is_free(box)) continue;
      boxes_.push_back(box);
      return text(choice.x, choice.y, words, choice.anchor);
    }
    return "";
  }

 private:
  struct Box {
    double left, top, right, bottom;
  };

  bool is_free(const Box& box) const {
    return std::none_of(boxes_.begin(), boxes_.end(), [&](const Box& other) {
      return box.left < other.right && other.left < box.right && box.top < other.bottom &&
             other.top < box.bottom;
    });
  }

  std::vector<Box> boxes_;
};

// --- Planes --------------------------------------------------------------------------------------

constexpr int k_most_labels = 30;
// Beyond so many marks, those of like colour share an element.
constexpr std::size_t k_most_marks = 1500;

struct Mark {
  const ReportColor* color = nullptr;
  double x = 0, y = 0;
};

std::vector<const ReportColor*> colors_with_lab(const ReportContent& content) {
  std::vector<const ReportColor*> result;
  for (const ReportColor& color : content.colors()) {
    if (color.has_lab()) result.push_back(&color);
  }
  return result;
}

std::string separate_marks(const std::vector<Mark>& marks) {
  const double radius = marks.size() <= 60 ? 6 : marks.size() <= 300 ? 4.5 : 3;
  std::string result;
  for (const Mark& at : marks) result += mark(at.x, at.y, radius, at.color->display, "mk");
  if (marks.size() > k_most_labels) return result;
  Labels labels;
  for (const Mark& at : marks) labels.block(at.x, at.y, radius);
  for (const Mark& at : marks) {
    result += labels.place(at.x, at.y, radius, std::to_string(at.color->number));
  }
  return result;
}

// One path for each of 4,096 colours, of dots with round ends.
std::string gathered_marks(const std::vector<Mark>& marks) {
  std::map<unsigned, std::string> paths;
  for (const Mark& at : marks) {
    const auto& bytes = at.color->display.bytes;
    const unsigned key = (bytes[0] & 0xF0u) << 4 | (bytes[1] & 0xF0u) | bytes[2] >> 4;
    paths[key] += 'M' + num(at.x) + ' ' + num(at.y) + "h0";
  }
  std::string result = "<g class=\"dots\">";
  constexpr char k_digits[] = "0123456789abcdef";
  for (const auto& [key, path] : paths) {
    result += "<path stroke=\"#";
    for (const int shift : {8, 4, 0}) result += k_digits[key >> shift & 15];
    result += "\" d=\"" + path + "\"/>";
  }
  return result + "</g>";
}

std::string marks_text(const std::vector<Mark>& marks) {
  return marks.size() <= k_most_marks ? separate_marks(marks) : gathered_marks(marks);
}

// "12 colours; 2 of them, drawn as diamonds, are outside of sRGB".
std::string count_text(const std::vector<const ReportColor*>& colors) {
  const auto outside = std::count_if(colors.begin(), colors.end(), [](const ReportColor* color) {
    return !color->display.is_in_gamut;
  });
  std::string result =
      grouped_number(colors.size()) + (colors.size() == 1 ? " colour" : " colours");
  if (outside > 0 && colors.size() <= k_most_marks) {
    result += "; diamonds are outside of sRGB, " + grouped_number(std::size_t(outside)) + " in all";
  }
  return result;
}

// The greatest chroma that a display reaches, as a closed curve in a* and b* under D50.
std::vector<Lab> display_outline() {
  constexpr int k_corners[][3] = {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 1, 1}, {0, 0, 1}, {1, 0, 1}};
  constexpr int k_steps = 10;
  const colorimetry::Xyz from = white_of(colorimetry::RgbSpace::srgb);
  const colorimetry::Xyz to = white_of(colorimetry::RgbSpace::wide_gamut);
  std::vector<Lab> outline;
  for (int i = 0; i < 6; ++i) {
    const int* const begin = k_corners[i];
    const int* const end = k_corners[(i + 1) % 6];
    for (int step = 0; step < k_steps; ++step) {
      const double t = double(step) / k_steps;
      const colorimetry::Rgb rgb{begin[0] + t * (end[0] - begin[0]),
                                 begin[1] + t * (end[1] - begin[1]),
                                 begin[2] + t * (end[2] - begin[2])};
      outline.push_back(lab_of(adapted(xyz_of(rgb, colorimetry::RgbSpace::srgb), from, to), to));
    }
  }
  return outline;
}

std::string closed_path(const std::vector<std::pair<double, double>>& points,
                        std::string_view type) {
  std::string path = "<path class=\"" + std::string(type) + "\" d=\"";
  char command = 'M';
  for (const auto& [x, y] : points) {
    path += command + num(x) + ' ' + num(y);
    command = 'L';
  }
  return path + "Z\"/>";
}

double plane_range(const std::vector<const ReportColor*>& colors) {
  double range = 40;
  for (const ReportColor* const color : colors) {
    const Lab lab = color->stimulus->lab();
    range = std::max({range, std::abs(lab.a) + 4, std::abs(lab.b) + 4});
  }
  // Nothing is drawn that no sample of a surface comes near to.
  return std::min(200.0, 20 * std::ceil(range / 20));
}

}  // namespace

// --- Frames --------------------------------------------------------------------------------------

std::string in_page(const Picture& picture) {
  return "<svg class=\"pic\" viewBox=\"0 0 " + std::to_string(picture.width) + ' ' +
         std::to_string(picture.height) + "\" role=\"img\" aria-label=\"" +
         escaped(picture.title + ". " + picture.description) + "\">" + picture.body + "</svg>";
}

std::string standalone(const Picture& picture) {
  const bool has_light = picture.body.find("url(#light)") != std::string::npos;
  const std::string width = std::to_string(picture.width), height = std::to_string(picture.height);
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"pic\" width=\"" +
         width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + ' ' + height +
         "\" role=\"img\" aria-labelledby=\"title description\">\n<title id=\"title\">" +
         escaped(picture.title) + "</title>\n<desc id=\"description\">" +
         escaped(picture.description) + "</desc>\n<style>" + std::string(picture_style()) +
         "</style>\n<rect class=\"paper\" width=\"" + width + "\" height=\"" + height + "\"/>\n" +
         (has_light ? k_light_gradient : "") + picture.body + "\n</svg>\n";
}

std::string_view picture_style() { return k_picture_style; }

// --- Planes of CIELAB ----------------------------------------------------------------------------

Picture hue_picture(const ReportContent& content) {
  constexpr double k_size = 440, k_middle = k_size / 2, k_reach = 186;
  const std::vector<const ReportColor*> colors = colors_with_lab(content);
  Picture picture{int(k_size), int(k_size), "a* and b* of all colours", count_text(colors), ""};
  if (colors.empty()) return picture;
  const double range = plane_range(colors), scale = k_reach / range;
  const double step = range > 80 ? 40 : 20;
  std::string& body = picture.body;
  for (double radius = step; radius <= range + 1e-9; radius += step) {
    body += "<circle class=\"gr\"" + attribute("cx", k_middle) + attribute("cy", k_middle) +
            attribute("r", radius * scale) + "/>";
  }
  body += line(k_middle - k_reach, k_middle, k_middle + k_reach, k_middle, "ax") +
          line(k_middle, k_middle - k_reach, k_middle, k_middle + k_reach, "ax");
  std::vector<std::pair<double, double>> outline;
  for (const Lab& lab : display_outline()) {
    outline.emplace_back(lab.a * scale, -lab.b * scale);
  }
  // What reaches further than the axes is cut off.
  body += "<svg x=\"34\" y=\"34\" width=\"372\" height=\"372\" viewBox=\"-186 -186 372 372\">" +
          closed_path(outline, "rgb") + "</svg>";
  std::vector<Mark> marks;
  for (const ReportColor* const color : colors) {
    const Lab lab = color->stimulus->lab();
    marks.push_back({color, k_middle + std::clamp(lab.a, -range, range) * scale,
                     k_middle - std::clamp(lab.b, -range, range) * scale});
  }
  body += marks_text(marks);
  for (double tick = step; tick <= range + 1e-9; tick += step) {
    const std::string words = decimal_text(tick, 0);
    body += text(k_middle + tick * scale, k_middle + 16, words, Anchor::middle, "mu") +
            text(k_middle + 5, k_middle - tick * scale - 3, words, Anchor::start, "mu");
  }
  body += text(k_size - 4, k_middle - 8, "a*", Anchor::end, "name") +
          text(k_middle - 10, 28, "b*", Anchor::end, "name");
  return picture;
}

Picture lightness_picture(const ReportContent& content) {
  constexpr double k_width = 440, k_height = 440, k_left = 44, k_right = 424, k_top = 24,
                   k_bottom = 396;
  const std::vector<const ReportColor*> colors = colors_with_lab(content);
  Picture picture{int(k_width), int(k_height), "Lightness L* against chroma C* of all colours",
                  count_text(colors), ""};
  if (colors.empty()) return picture;
  double most_chroma = 40, most_light = 100;
  for (const ReportColor* const color : colors) {
    const Lab lab = color->stimulus->lab();
    most_chroma = std::max(most_chroma, lch_of(lab).c + 4);
    most_light = std::max(most_light, lab.l);
  }
  most_chroma = std::min(200.0, 20 * std::ceil(most_chroma / 20));
  most_light = std::min(160.0, 20 * std::ceil(most_light / 20));
  const auto x = [&](double chroma) {
    return k_left + (k_right - k_left) * std::min(chroma, most_chroma) / most_chroma;
  };
  const auto y = [&](double light) {
    return k_bottom - (k_bottom - k_top) * std::clamp(light, 0.0, most_light) / most_light;
  };
  std::string& body = picture.body;
  for (double tick = 0; tick <= most_light; tick += 20) {
    body += line(k_left, y(tick), k_right, y(tick), tick == 0 ? "ax" : "gr") +
            text(k_left - 8, y(tick) + 4, decimal_text(tick, 0), Anchor::end, "mu");
  }
  for (double tick = 0; tick <= most_chroma; tick += 20) {
    body += line(x(tick), k_top, x(tick), k_bottom, tick == 0 ? "ax" : "gr") +
            text(x(tick), k_bottom + 18, decimal_text(tick, 0), Anchor::middle, "mu");
  }
  std::vector<Mark> marks;
  for (const ReportColor* const color : colors) {
    const Lab lab = color->stimulus->lab();
    marks.push_back({color, x(lch_of(lab).c), y(lab.l)});
  }
  body += marks_text(marks) + text(k_right, k_bottom + 38, "C*", Anchor::end, "name") +
          text(k_left - 8, 14, "L*", Anchor::end, "name");
  return picture;
}

// --- Swatches ------------------------------------------------------------------------------------

Picture ribbon_picture(const ReportContent& content) {
  constexpr std::size_t k_most = 240;
  std::vector<const ReportColor*> seen;
  for (const ReportColor& color : content.colors()) {
    if (color.stimulus) seen.push_back(&color);
  }
  const std::size_t count = std::min(seen.size(), k_most);
  Picture picture{int(count), 1, "Colours of the document in their order", "", ""};
  if (seen.size() > k_most) {
    picture.description = grouped_number(k_most) + " of " + grouped_number(seen.size());
  } else {
    picture.description = "All " + grouped_number(seen.size());
  }
  for (std::size_t i = 0; i < count; ++i) {
    // A little wider than its share, against gaps between neighbours.
    const std::string width = i + 1 < count ? "1.1" : "1";
    picture.body += "<path fill=\"" + seen[i * seen.size() / count]->display.hex() + "\" d=\"M" +
                    std::to_string(i) + " 0h" + width + "v1h-" + width + "z\"/>";
  }
  return picture;
}

namespace {

constexpr int k_swatch_width = 200, k_swatch_height = 260;

// "L* 46.8  a* 68.2  b* 47.6", or why there is none.
std::string numbers_line(const ReportColor& color) {
  if (!color.stimulus) return "no colour";
  if (!color.has_lab()) return color.display.hex();
  const Lab lab = color.stimulus->lab();
  return "L* " + decimal_text(lab.l, 1, true) + "  a* " + decimal_text(lab.a, 1, true) + "  b* " +
         decimal_text(lab.b, 1, true);
}

// Names are cut where the picture ends: a picture can't grow.
std::string swatch_body(const ReportColor& color) {
  std::string body;
  if (color.stimulus) {
    body += "<path fill=\"" + color.display.hex() + "\" d=\"M12 12h176v150h-176z\"/>";
    if (!color.display.is_in_gamut) {
      body +=
          "<path class=\"out\" d=\"M156 12h32v32z\"/>" + text(180, 26, "!", Anchor::middle, "mark");
    }
    body += "<path class=\"gr\" d=\"M12 12h176v150h-176z\"/>";
  } else {
    body += "<path class=\"gr\" d=\"M12 12h176v150h-176zL188 162M188 12L12 162\"/>";
  }
  body += text(12, 188, shortened(color.name, 22), Anchor::start, "head") +
          text(12, 210, numbers_line(color), Anchor::start, "mu");
  if (color.stimulus) {
    body += text(12, 230, text_of(color.stimulus->conditions), Anchor::start, "mu");
    if (!color.display.is_in_gamut) {
      body += text(12, 250, "outside of sRGB", Anchor::start, "mu");
    } else {
      body += text(12, 250, "sRGB " + color.display.hex(), Anchor::start, "mu");
    }
  }
  return body;
}

std::string words_on(const ReportColor& color) {
  if (!color.stimulus) return "No colour can be computed: " + color.reason;
  return numbers_line(color) + ", for " + text_of(color.stimulus->conditions) + ", in sRGB " +
         color.display.hex() + (color.display.is_in_gamut ? "" : ", which is outside of it");
}

}  // namespace

Picture swatch_picture(const ReportColor& color) {
  return {k_swatch_width, k_swatch_height, "Swatch of " + color.name, words_on(color),
          swatch_body(color)};
}

// --- Spectra -------------------------------------------------------------------------------------

namespace {

// A spectrum in the coordinates of a picture.
struct SpectralFrame {
  double left, right, top, bottom;  // of the picture
  double first, last;               // nm
  double most;                      // the greatest value

  double x(double wavelength) const {
    return left + (right - left) * (wavelength - first) / (last - first);
  }
  double y(double value) const {
    return bottom - (bottom - top) * std::clamp(value / most, -0.1, 1.0);
  }
};

double greatest(const colorimetry::Spectrum& spectrum) {
  return *std::max_element(spectrum.values().begin(), spectrum.values().end());
}

// What its values are divided by: light sources are shown relative to their greatest.
double unit_of(const ReportColor& color) {
  if (!color.is_emission) return 1;
  const double most = greatest(*color.spectrum);
  return most > 0 ? most : 1;
}

std::string curve(const ReportColor& color, const SpectralFrame& frame, bool is_whole) {
  const colorimetry::Spectrum& spectrum = *color.spectrum;
  const double unit = unit_of(color);
  // More points than the picture can show make it no finer.
  const std::size_t stride = std::max<std::size_t>(1, spectrum.grid().size() / 400);
  std::string path;
  double last_x = 0, last_y = 0;
  constexpr double k_beyond = 100;  // nm that the way to what is in view may begin outside of it
  for (std::size_t i = 0; i < spectrum.grid().size(); i += stride) {
    const double wavelength = spectrum.grid()[i];
    if (wavelength < frame.first - k_beyond || wavelength > frame.last + k_beyond) continue;
    const double scale = is_whole ? 1 : 10;
    const double x = std::round(frame.x(wavelength) * scale) / scale;
    const double y = std::round(frame.y(spectrum.values()[i] / unit) * scale) / scale;
    if (path.empty()) {
      path = 'M' + num(x) + ' ' + num(y) + 'l';
    } else {
      const std::string dy = num(y - last_y);
      path += num(x - last_x) + (dy.front() == '-' ? "" : " ") + dy + ' ';
    }
    last_x = x;
    last_y = y;
  }
  if (!path.empty()) path.pop_back();
  return path;
}

std::string axes(const SpectralFrame& frame, bool is_emission) {
  std::string body = "<path class=\"light\" d=\"M" + num(frame.x(std::max(380.0, frame.first))) +
                     ' ' + num(frame.bottom + 4) + "V" + num(frame.bottom) + "H" +
                     num(frame.x(std::min(780.0, frame.last))) + "v4z\" fill=\"url(#light)\"/>";
  const double step = std::max(50.0, scale_step(frame.last - frame.first, 6));
  for (double tick = std::ceil(frame.first / step) * step; tick <= frame.last; tick += step) {
    body += line(frame.x(tick), frame.top, frame.x(tick), frame.bottom, "gr") +
            text(frame.x(tick), frame.bottom + 20, decimal_text(tick, 0), Anchor::middle, "mu");
  }
  const double rise = scale_step(frame.most, 5);
  for (double tick = 0; tick <= frame.most + 1e-9; tick += rise) {
    body +=
        line(frame.left, frame.y(tick), frame.right, frame.y(tick), tick == 0 ? "ax" : "gr") +
        text(frame.left - 8, frame.y(tick) + 4,
             is_emission ? scale_text(tick, rise) : decimal_text(tick * 100, 0), Anchor::end, "mu");
  }
  body += text(frame.right, frame.bottom + 38, "Wavelength in nm", Anchor::end, "mu") +
          text(frame.left - 34, 14,
               is_emission ? "Relative power" : "Reflectance or transmittance in %", Anchor::start,
               "mu");
  return body;
}

SpectralFrame frame_of(const std::vector<const ReportColor*>& colors, double width, double height) {
  SpectralFrame frame{44, width - 34, 28, height - 46, 400, 700, 0.1};
  for (const ReportColor* const color : colors) {
    frame.first = std::min(frame.first, color->spectrum->grid().first());
    frame.last = std::max(frame.last, color->spectrum->grid().last());
    frame.most = std::max(frame.most, greatest(*color->spectrum) / unit_of(*color));
  }
  // Beyond this no instrument for colour reads.
  frame.first = std::max(frame.first, 200.0);
  frame.last = std::min(frame.last, 2600.0);
  const double rise = scale_step(frame.most, 5);
  frame.most = rise * std::ceil(frame.most / rise - 1e-9);
  return frame;
}

// The colour itself between two lines that stand out from any paper.
std::string cased_curve(const std::string& path, const std::string& color, std::string_view dash) {
  const std::string style = dash.empty() ? "" : " stroke-dasharray=\"" + std::string(dash) + '"';
  return "<path class=\"case\" d=\"" + path + "\"/><path class=\"cv\" d=\"" + path +
         "\" stroke=\"" + color + '"' + style + "/>";
}

// Numbers of the curves at their right ends, moved apart.
std::string curve_labels(const std::vector<const ReportColor*>& colors,
                         const SpectralFrame& frame) {
  struct End {
    double y, label_y;
    const ReportColor* color;
  };
  std::vector<End> ends;
  for (const ReportColor* const color : colors) {
    const double y = frame.y(color->spectrum->values().back() / unit_of(*color));
    ends.push_back({y, y, color});
  }
  std::sort(ends.begin(), ends.end(), [](const End& a, const End& b) { return a.y < b.y; });
  constexpr double k_apart = 13;
  for (std::size_t i = 1; i < ends.size(); ++i) {
    ends[i].label_y = std::max(ends[i].label_y, ends[i - 1].label_y + k_apart);
  }
  double lowest = frame.bottom;
  for (std::size_t i = ends.size(); i-- > 0; lowest -= k_apart) {
    ends[i].label_y = std::min(ends[i].label_y, lowest);
  }
  std::string body;
  for (const End& end : ends) {
    const double x =
        frame.x(std::clamp(end.color->spectrum->grid().last(), frame.first, frame.last));
    body +=
        line(x + 1, end.y, frame.right + 8, end.label_y, "lead") +
        text(frame.right + 10, end.label_y + 4, std::to_string(end.color->number), Anchor::start);
  }
  return body;
}

std::string hex_or_ink(const ReportColor& color) {
  return color.stimulus ? color.display.hex() : "currentColor";
}

}  // namespace

Picture spectra_picture(const ReportContent& content, bool is_emission) {
  constexpr double k_width = 560, k_height = 360;
  constexpr std::size_t k_most = 300, k_most_numbered = 16;
  std::vector<const ReportColor*> colors;
  for (const ReportColor& color : content.colors()) {
    if (color.spectrum && color.is_emission == is_emission) colors.push_back(&color);
  }
  const std::size_t total = colors.size();
  Picture picture{int(k_width), int(k_height),
                  is_emission ? "Spectra of light sources" : "Spectra of samples",
                  grouped_number(total) + (total == 1 ? " curve" : " curves"), ""};
  if (colors.empty()) return picture;
  if (total > k_most) {
    std::vector<const ReportColor*> chosen;
    for (std::size_t i = 0; i < k_most; ++i) chosen.push_back(colors[i * total / k_most]);
    colors = std::move(chosen);
    picture.description =
        grouped_number(k_most) + " of " + grouped_number(total) + " curves, evenly chosen";
  }
  const SpectralFrame frame = frame_of(colors, k_width, k_height);
  constexpr std::string_view k_dashes[] = {"", "9 4", "2.5 3", "9 3 2 3"};
  picture.body = axes(frame, is_emission);
  for (std::size_t i = 0; i < colors.size(); ++i) {
    const bool is_dashed = colors.size() > 1 && colors.size() <= k_most_numbered;
    picture.body += cased_curve(curve(*colors[i], frame, false), hex_or_ink(*colors[i]),
                                is_dashed ? k_dashes[i % 4] : "");
  }
  if (colors.size() > 1 && colors.size() <= k_most_numbered) {
    picture.body += curve_labels(colors, frame);
  }
  return picture;
}

Picture spectrum_picture(const ReportColor& color) {
  constexpr double k_width = 520, k_height = 320;
  const SpectralFrame frame = frame_of({&color}, k_width, k_height);
  const colorimetry::Grid& grid = color.spectrum->grid();
  return {int(k_width), int(k_height), "Spectrum of " + color.name,
          short_number(grid.first()) + " to " + short_number(grid.last()) + " nm, " +
              std::to_string(grid.size()) + " points, " +
              (color.is_emission ? "relative to its greatest value"
                                 : "greatest value " + short_number(greatest(*color.spectrum))),
          axes(frame, color.is_emission) +
              cased_curve(curve(color, frame, false), hex_or_ink(color), "")};
}

Picture color_picture(const ReportColor& color) {
  Picture swatch = swatch_picture(color);
  if (!color.spectrum) return swatch;
  const Picture spectrum = spectrum_picture(color);
  return {swatch.width + spectrum.width, spectrum.height, color.name,
          swatch.description + ". Spectrum: " + spectrum.description,
          swatch.body + "<g transform=\"translate(" + std::to_string(swatch.width) + ")\">" +
              spectrum.body + "</g>"};
}

std::string shared_symbols() {
  return std::string("<svg class=\"none\" aria-hidden=\"true\">") + k_light_gradient +
         "<defs><symbol id=\"g\" viewBox=\"0 0 360 104\" preserveAspectRatio=\"none\">"
         "<path class=\"gr\" d=\"M40 0V100M140 0V100M240 0V100M340 0V100M0 50H360M0 0H360\"/>"
         "<path class=\"ax\" d=\"M0 100H360\"/>"
         "<path d=\"M20 100H360v4H20z\" fill=\"url(#light)\"/></symbol>"
         "<pattern id=\"w\" width=\"6\" height=\"6\" patternUnits=\"userSpaceOnUse\" "
         "patternTransform=\"rotate(45)\"><path class=\"ht\" d=\"M0 0V6\"/></pattern></defs></svg>";
}

// From 360 to 720 nm and from 0 to 100 %, or to the greatest value if that is more.
std::string small_spectrum(const ReportColor& color) {
  const double most = std::max(greatest(*color.spectrum) / unit_of(color), 1.0);
  const SpectralFrame frame{0, 360, 0, 100, 360, 720, most};
  const std::string scale =
      most > 1.005 ? ", greatest value " + decimal_text(most * 100, 0) + " %" : "";
  return "<svg viewBox=\"0 -2 360 106\" preserveAspectRatio=\"none\" role=\"img\" "
         "aria-label=\"Spectrum" +
         scale + "\"><use href=\"#g\"/><path d=\"" + curve(color, frame, true) + "\"/></svg>";
}

// --- Limits and deviations -----------------------------------------------------------------------

namespace {

std::string percent(double share) { return decimal_text(share * 100, 2) + '%'; }

std::string zone(double from, double to, std::string_view type) {
  if (!(to > from)) return "";
  return "<rect class=\"" + std::string(type) + "\" x=\"" + percent(from) + "\" width=\"" +
         percent(to - from) + "\" y=\"9\" height=\"10\"/>";
}

// A circle, a triangle, a cross or a diamond, around the origin.
std::string status_mark(Status status) {
  std::string_view shape = "M0-6 6 0 0 6-6 0z";
  std::string_view type = "vn";
  if (status == Status::passed) {
    shape = "M-5.5 0a5.5 5.5 0 1 0 11 0a5.5 5.5 0 1 0-11 0z";
    type = "vp";
  } else if (status == Status::warning) {
    shape = "M0-7 7 6H-7z";
    type = "vw";
  } else if (status == Status::failed) {
    shape = "M-6-3.5-3.5-6 0-2.5 3.5-6 6-3.5 2.5 0 6 3.5 3.5 6 0 2.5-3.5 6-6 3.5-2.5 0z";
    type = "vf";
  }
  return "<path class=\"" + std::string(type) + "\" d=\"" + std::string(shape) + "\"/>";
}

std::string limit_tick(double share, double value, std::string_view type) {
  const std::string at = percent(share);
  return "<line class=\"" + std::string(type) + "\" x1=\"" + at + "\" x2=\"" + at +
         "\" y1=\"5\" y2=\"23\"/><text x=\"" + at + "\" y=\"35\">" + short_number(value) +
         "</text>";
}

}  // namespace

std::string limits_picture(std::string_view words, double value, const colorimetry::Limits& given,
                           const std::optional<double>& warning_level, Status status) {
  // What is infinite has no place on a scale.
  if (!std::isfinite(value)) return "";
  colorimetry::Limits limits = given;
  std::optional<double> warning = warning_level;
  for (std::optional<double>* limit : {&limits.low, &limits.high, &warning}) {
    if (!std::isfinite(limit->value_or(0))) limit->reset();
  }
  double low = std::min(0.0, limits.low.value_or(0)), high = std::max(0.0, limits.high.value_or(0));
  if (warning) high = std::max(high, *warning);
  const double reach = high > low ? high - low : std::max(std::abs(value), 1.0);
  // Far beyond its limits a value stands at the end of the scale.
  high = std::clamp(value, high + 0.15 * reach, high + 2 * reach);
  if (low < 0 || value < low) low = std::clamp(value, low - 2 * reach, low - 0.15 * reach);
  const auto share = [&](double at) {
    return 0.02 + 0.96 * (std::clamp(at, low, high) - low) / (high - low);
  };
  const double pass_from = share(limits.low.value_or(low)),
               pass_to = share(limits.high.value_or(high));
  std::string body = "<rect class=\"trk\" x=\"0\" width=\"100%\" y=\"9\" height=\"10\"/>";
  if (limits.has_any()) body += zone(pass_from, pass_to, "ok");
  if (warning) body += zone(share(*warning), pass_to, "warn");
  if (low < 0)
    body += "<line class=\"ax\" x1=\"" + percent(share(0)) + "\" x2=\"" + percent(share(0)) +
            "\" y1=\"7\" y2=\"21\"/>";
  if (limits.low && *limits.low != 0) body += limit_tick(pass_from, *limits.low, "lim");
  if (limits.high) body += limit_tick(pass_to, *limits.high, "lim");
  const bool has_room = warning && std::abs(share(*warning) - pass_to) > 0.12;
  if (has_room) body += limit_tick(share(*warning), *warning, "ax");
  return "<svg class=\"lm\" role=\"img\" aria-label=\"" + escaped(words) + "\">" + body +
         "<svg x=\"" + percent(share(value)) + "\" y=\"14\" overflow=\"visible\">" +
         status_mark(status) + "</svg></svg>";
}

namespace {

constexpr double k_deviation_middle = 132, k_deviation_reach = 112, k_deviation_bar = 300;

double widest_part(const Border& border) {
  double widest = border.lightness;
  for (const auto& [a, b] : border.points) {
    widest = std::max({widest, std::abs(a), std::abs(b)});
  }
  return widest;
}

// So that the tightest border is whole, and all measurements that are not far away.
double deviation_range(const Lab& standard, const std::vector<Deviation>& deviations,
                       const std::vector<Border>& borders) {
  double tightest = 0;
  for (const Border& border : borders) {
    const double widest = widest_part(border);
    if (tightest == 0 || widest < tightest) tightest = widest;
  }
  double range = std::max(tightest, 0.4);
  const double furthest = tightest > 0 ? 4 * tightest : 1e9;
  for (const Deviation& deviation : deviations) {
    const colorimetry::Parts parts = parts_of(standard, deviation.lab);
    for (const double part : {parts.l, parts.a, parts.b}) {
      range = std::max(range, std::min(std::abs(part), furthest));
    }
  }
  return 1.15 * range;
}

std::string deviation_axes(double range) {
  constexpr double k_middle = k_deviation_middle, k_reach = k_deviation_reach,
                   k_bar = k_deviation_bar;
  const double step = scale_step(range, 3);
  std::string body;
  for (double tick = step; tick <= range; tick += step) {
    const double length = tick * k_reach / range;
    body += "<circle class=\"gr\" cx=\"132\" cy=\"132\"" + attribute("r", length) + "/>" +
            text(k_middle + length, k_middle + 14, scale_text(tick, step), Anchor::middle, "mu");
    for (const double y : {k_middle - length, k_middle + length}) {
      body += line(k_bar - 5, y, k_bar + 5, y, "gr");
    }
  }
  return body + line(k_middle - k_reach, k_middle, k_middle + k_reach, k_middle, "ax") +
         line(k_middle, k_middle - k_reach, k_middle, k_middle + k_reach, "ax") +
         line(k_bar, k_middle - k_reach, k_bar, k_middle + k_reach, "ax") +
         line(k_bar - 8, k_middle, k_bar + 8, k_middle, "ax") +
         text(k_middle + k_reach + 24, k_middle + 5, "\u0394a*", Anchor::middle, "name") +
         text(k_middle - 8, 16, "\u0394b*", Anchor::end, "name") +
         text(k_bar, 14, "\u0394L*", Anchor::middle, "name");
}

}  // namespace

Picture deviation_picture(const Lab& standard, const std::vector<Deviation>& deviations,
                          const std::vector<Border>& borders) {
  constexpr double k_middle = k_deviation_middle, k_reach = k_deviation_reach,
                   k_bar = k_deviation_bar;
  Picture picture{340, 252, "Measurements around their standard",
                  "Differences of a* and b*, and beside them of L*", ""};
  const double range = deviation_range(standard, deviations, borders), scale = k_reach / range;
  const auto place = [&](double value) { return std::clamp(value, -range, range) * scale; };
  std::string& body = picture.body;
  body = deviation_axes(range);
  // What reaches further than the axes is cut off.
  body += "<svg x=\"20\" y=\"20\" width=\"224\" height=\"224\" viewBox=\"-112 -112 224 224\">";
  for (const Border& border : borders) {
    std::vector<std::pair<double, double>> points;
    for (const auto& [a, b] : border.points) points.emplace_back(a * scale, -b * scale);
    body += closed_path(points, "lim");
  }
  body += "</svg>";
  for (const Border& border : borders) {
    if (border.lightness <= 0 || border.lightness > range) continue;
    for (const double sign : {-1.0, 1.0}) {
      const double y = k_middle - sign * border.lightness * scale;
      body += line(k_bar - 10, y, k_bar + 10, y, "lim");
    }
  }
  Labels labels, bar_labels;
  for (const Deviation& deviation : deviations) {
    const colorimetry::Parts parts = parts_of(standard, deviation.lab);
    labels.block(k_middle + place(parts.a), k_middle - place(parts.b), 6);
  }
  for (const Deviation& deviation : deviations) {
    const colorimetry::Parts parts = parts_of(standard, deviation.lab);
    const double x = k_middle + place(parts.a), y = k_middle - place(parts.b);
    const double bar_y = k_middle - place(parts.l);
    const auto placed = [&](double at_x, double at_y) {
      return "<g transform=\"translate(" + num(at_x) + ' ' + num(at_y) + ")\">" +
             status_mark(deviation.status) + "</g>";
    };
    body += placed(x, y) + placed(k_bar, bar_y) + labels.place(x, y, 6, deviation.label) +
            bar_labels.place(k_bar, bar_y, 8, deviation.label);
  }
  return picture;
}
