#include "tools/report_page.h"

#include <algorithm>
#include <charconv>

#include "model/Zol.h"
#include "tools/color_values.h"
#include "tools/markup.h"
#include "tools/report_parts.h"
#include "tools/report_pictures.h"
#include "tools/report_style.h"
#include "tools/text.h"

namespace colorimetry = zol_v2::colorimetry;
using colorimetry::Lab;
using zol_v2::reflection::ConstRef;

// --- Parts ---------------------------------------------------------------------------------------

std::string swatch_element(const ReportColor* color, std::string_view label) {
  std::string out = "<i";
  if (color == nullptr || !color->stimulus) {
    out += " class=\"no\"";
  } else {
    if (!color->display.is_in_gamut) out += " class=\"og\"";
    out += " style=\"background:" + color->display.hex() + '"';
  }
  if (!label.empty()) out += " role=\"img\" aria-label=\"" + escaped(label) + '"';
  return out + "></i>";
}

std::string color_link(const ReportColor& color) {
  std::string out = "<a href=\"#";
  append_escaped(fragment_of(color.id), &out);
  return out + "\">" + std::to_string(color.number) + "</a>";
}

std::string fact_list(const std::vector<Fact>& facts) {
  if (facts.empty()) return "";
  constexpr std::size_t k_most = 120;
  std::string out = "<dl>";
  for (std::size_t i = 0; i < std::min(facts.size(), k_most); ++i) {
    const Fact& fact = facts[i];
    const std::string value = fact.value.empty() ? "(empty)" : shortened(fact.value, 600);
    out += "<div><dt><bdi>" + escaped(shortened(fact.label, 80)) + "</bdi></dt><dd><bdi>" +
           escaped(value) + "</bdi></dd></div>";
  }
  if (facts.size() > k_most) {
    out += "<div><dt>Further</dt><dd>" + grouped_number(facts.size() - k_most) + " more</dd></div>";
  }
  return out + "</dl>";
}

namespace {

std::string bdi(const std::string& text, std::size_t limit) {
  return "<bdi>" + escaped(shortened(text, limit)) + "</bdi>";
}

// --- Head ----------------------------------------------------------------------------------------

std::string title_of(const ReportContent& content, const std::string& file) {
  const zol_v2::Header& header = content.document().get_Preamble().get_Header();
  const std::string name = header.isset_Name() ? utf8(header.get_Name()) : "";
  return name.find_first_not_of(" \t\n") == std::string::npos ? file : name;
}

std::string figure(std::size_t count, std::string_view one, std::string_view many) {
  return "<div><b>" + grouped_number(count) + "</b> " + std::string(count == 1 ? one : many) +
         "</div>";
}

std::string status_figures(const colorimetry::Evaluation& evaluation) {
  constexpr struct {
    colorimetry::Status status;
    std::string_view type, sign, word;
  } k_kinds[] = {{colorimetry::Status::failed, "vf", "\u2716", "fail"},
                 {colorimetry::Status::warning, "vw", "\u25B2", "warning"},
                 {colorimetry::Status::passed, "vp", "\u25CF", "pass"},
                 {colorimetry::Status::not_judged, "vn", "\u25C6", "not judged"}};
  std::string out;
  for (const auto& kind : k_kinds) {
    const std::size_t count = evaluation.count(kind.status);
    if (count == 0) continue;
    out += "<div class=\"" + std::string(kind.type) + "\"><b>" + std::string(kind.sign) + ' ' +
           grouped_number(count) + "</b> " + std::string(kind.word) + "</div>";
  }
  return out;
}

std::string masthead(const ReportContent& content, const std::string& file) {
  const zol_v2::Preamble& preamble = content.document().get_Preamble();
  const zol_v2::Header& header = preamble.get_Header();
  std::string out = "<header class=\"mast\"><p class=\"kind\">Colour report</p><h1>" +
                    bdi(title_of(content, file), 240) + "</h1><p class=\"lead\">" +
                    bdi(utf8(header.get_Purpose()), 400) + "</p>";
  const Picture ribbon = ribbon_picture(content);
  if (ribbon.width > 0) {
    std::string drawn = in_page(ribbon);
    drawn.replace(0, 4, "<svg preserveAspectRatio=\"none\"");
    out += "<div class=\"ribbon\">" + drawn + "</div>";
  }
  out += "<div class=\"figures\">" + figure(content.colors().size(), "colour", "colours");
  if (const std::size_t spectra = content.count_spectra()) {
    out += figure(spectra, "spectrum", "spectra");
  }
  if (const std::size_t outside = content.count_out_of_gamut()) {
    out += figure(outside, "outside of sRGB", "outside of sRGB");
  }
  out += status_figures(content.evaluation()) + "</div>";
  std::vector<Fact> facts = {{"File", file}};
  for (Fact& fact : facts_of(ConstRef(header))) {
    if (fact.label != "Name" && fact.label != "Purpose") facts.push_back(std::move(fact));
  }
  if (preamble.isset_Owner()) {
    for (Fact& fact : facts_of(ConstRef(preamble.get_Owner()))) facts.push_back(std::move(fact));
  }
  if (preamble.isset_Version()) {
    for (Fact& fact : facts_of(ConstRef(preamble.get_Version()))) facts.push_back(std::move(fact));
  }
  return out + fact_list(facts) + "</header>";
}

// --- Colours -------------------------------------------------------------------------------------

// One colour of the list. There may be very many, so each has few elements.
class ColorWriter {
 public:
  ColorWriter(const ReportContent& content, const ReportColor& color, std::string* out)
      : content_(content), color_(color), out_(*out) {}

  void write() {
    out_ += "<li id=\"";
    append_escaped(color_.id, &out_);
    out_ += "\"><p class=\"sw\">" + swatch_element(&color_, "");
    if (color_.stimulus) {
      out_ += color_.display.hex();
      if (!color_.display.is_in_gamut) out_ += "<br>outside sRGB";
      if (color_.display.is_scaled) out_ += "<br>light, scaled";
    } else {
      out_ += "no colour";
    }
    out_ += "</p><div class=\"id\">" + color_link(color_) + "<b><bdi>";
    append_escaped(color_.name, &out_);
    out_ += "</bdi></b>";
    write_identity();
    write_renderings();
    out_ += "</div>";
    write_numbers();
    if (color_.spectrum) out_ += small_spectrum(color_);
    out_ += "</li>\n";
  }

 private:
  void write_identity() {
    const zol_v2::ColorType& color = *color_.color;
    std::string text = color_.role;
    const auto add = [&](std::string_view label, const std::string& value) {
      if (value.empty()) return;
      if (!text.empty()) text += " \u00B7 ";
      text += std::string(label) + "<bdi>";
      append_escaped(shortened(value, 200), &text);
      text += "</bdi>";
    };
    if (color.isset_ColorNumber()) add("", utf8(color.get_ColorNumber()));
    if (color.isset_UniqueID()) add("id ", utf8(color.get_UniqueID()));
    if (color.isset_Comments()) add("", utf8(color.get_Comments()));
    std::string associations;
    for (unsigned i = 0; i < color.size_SemanticAssociation(); ++i) {
      associations += (i == 0 ? "" : ", ") + utf8(color.get_SemanticAssociation(i));
    }
    add("", associations);
    if (const unsigned substrate = content_.substrate_of(color)) {
      if (!text.empty()) text += " \u00B7 ";
      text += "<a href=\"#s" + std::to_string(substrate) + "\">Substrate S" +
              std::to_string(substrate) + "</a>";
    }
    if (!text.empty()) out_ += "<small>" + text + "</small>";
  }

  // What the numbers beside it show already is not said twice.
  bool is_shown(const zol_v2::sg_ColorSpace& space) const {
    return color_.stimulus && color_.stimulus->space == &space &&
           color_.stimulus->source == colorimetry::Source::tristimulus &&
           space.getchosen() == zol_v2::sg_ColorSpace::chosen_ColorSpaceCIELab;
  }

  void write_renderings() {
    const zol_v2::ColorType& color = *color_.color;
    for (unsigned i = 0; i < color.size_ColorSpace(); ++i) {
      const zol_v2::sg_ColorSpace& space = color.get_ColorSpace(i);
      out_ += "<p>";
      append_escaped(space_name(space), &out_);
      if (!is_shown(space)) write_coordinates(space);
      if (const unsigned conditions = content_.conditions_of(space)) {
        const std::string number = std::to_string(conditions);
        out_ += " <a href=\"#m" + number + "\">M" + number + "</a>";
      }
      out_ += "</p>";
    }
  }

  void write_coordinates(const zol_v2::sg_ColorSpace& space) {
    if (const auto range = spectral_range(space)) {
      out_ += ' ' + range->text();
      return;
    }
    constexpr std::size_t k_most = 40;
    const Rendering rendering = rendering_of(space);
    std::size_t left = rendering.coordinates.size();
    for (const Coordinate& coordinate : rendering.coordinates) {
      if (left + k_most == rendering.coordinates.size()) {
        out_ += " and " + grouped_number(left) + " more";
        return;
      }
      --left;
      out_ += " <span>";
      append_escaped(shortened(coordinate.axis, 60), &out_);
      out_ += "</span> ";
      append_escaped(shortened(rounded(coordinate.value), 60), &out_);
    }
  }

  // Six digits of a number; any other text as it is.
  static std::string rounded(const std::string& text) {
    const std::size_t point = text.find('.');
    const bool is_number =
        point != std::string::npos && text.size() > 8 &&
        text.find_first_not_of("0123456789", text.front() == '-' ? 1 : 0) == point &&
        text.find_first_not_of("0123456789", point + 1) == std::string::npos;
    double value = 0;
    if (is_number) std::from_chars(text.data(), text.data() + text.size(), value);
    return is_number ? short_number(value) : text;
  }

  // In lines of their own, so that one element holds them all.
  void write_numbers() {
    if (!color_.stimulus) {
      out_ += "<p class=\"lab mu\">";
      append_escaped(color_.reason, &out_);
      out_ += "</p>";
      return;
    }
    out_ += "<p class=\"lab\">";
    if (color_.has_lab()) {
      const Lab lab = color_.stimulus->lab();
      const colorimetry::Lch lch = lch_of(lab);
      out_ += padded("L*", lab.l) + padded("  C*", lch.c) + '\n' + padded("a*", lab.a) +
              padded("  h ", lch.h) + '\n' + padded("b*", lab.b);
    } else {
      const colorimetry::Xyz& xyz = color_.stimulus->xyz;
      out_ +=
          "X " + short_number(xyz.x) + "\nY " + short_number(xyz.y) + "\nZ " + short_number(xyz.z);
    }
    out_ += "\n<a href=\"#b" + std::to_string(color_.basis + 1) + "\">";
    append_escaped(text_of(color_.stimulus->conditions), &out_);
    out_ += "</a></p>";
  }

  static std::string padded(std::string_view label, double value) {
    std::string number = decimal_text(value, 2, true);
    if (number.size() < 7) number.insert(0, 7 - number.size(), ' ');
    return std::string(label) + number;
  }

  const ReportContent& content_;
  const ReportColor& color_;
  std::string& out_;
};

std::string group_text(const ReportContent& content, const ReportGroup& group) {
  // What is far away is not laid out; so many make whole rows in one, two or three columns.
  constexpr std::size_t k_block = 48;
  std::string out = "<section class=\"group\" id=\"" + escaped(group.id) + "\"><h3>" +
                    bdi(group.title, 200) + "</h3>";
  if (!group.subtitle.empty()) out += "<p class=\"mu sub\">" + bdi(group.subtitle, 200) + "</p>";
  out += fact_list(group.facts);
  if (group.first == group.last) out += "<p class=\"mu\">No colours.</p>";
  for (std::size_t first = group.first; first < group.last; first += k_block) {
    const std::size_t last = std::min(first + k_block, group.last);
    const ReportColor& color = content.colors()[first];
    const bool has_spectra =
        std::any_of(content.colors().begin() + std::ptrdiff_t(first),
                    content.colors().begin() + std::ptrdiff_t(last),
                    [](const ReportColor& each) { return each.spectrum.has_value(); });
    out += std::string("<ol class=\"cs") + (has_spectra ? "" : " ns") + "\" start=\"" +
           std::to_string(color.number) + "\" style=\"contain-intrinsic-height:auto " +
           std::to_string((last - first) * 124) + "px\">";
    for (std::size_t i = first; i < last; ++i) {
      ColorWriter(content, content.colors()[i], &out).write();
    }
    out += "</ol>";
  }
  return out + "</section>";
}

std::string colors_section(const ReportContent& content) {
  std::string out;
  for (const ReportGroup& group : content.groups()) out += group_text(content, group);
  return out;
}

// --- Plots ---------------------------------------------------------------------------------------

std::string plot(const Picture& picture, const std::string& caption) {
  if (picture.body.empty()) return "";
  return "<figure>" + in_page(picture) + "<figcaption>" + caption + escaped(picture.description) +
         "</figcaption></figure>";
}

std::string plots_section(const ReportContent& content) {
  std::string out =
      plot(hue_picture(content), "Hue and chroma; dotted: the most that sRGB shows. ") +
      plot(lightness_picture(content), "Lightness and chroma. ");
  if (!out.empty()) out = "<div class=\"plots\">" + out + "</div>";
  return out;
}

std::string spectra_section(const ReportContent& content) {
  const std::string out =
      plot(spectra_picture(content, false), "Samples, by their number. ") +
      plot(spectra_picture(content, true), "Light sources, each relative to its greatest value. ");
  return out.empty() ? out : "<div class=\"plots wide\">" + out + "</div>";
}

// --- Tables --------------------------------------------------------------------------------------

std::string or_dash(const std::string& text) {
  return text.empty() ? "<span class=\"mu\">\u2013</span>" : bdi(text, 200);
}

std::string conditions_section(const ReportContent& content) {
  std::string out;
  if (!content.conditions().empty()) {
    out +=
        "<div class=\"scroll\" tabindex=\"0\" role=\"region\" aria-label=\"Measurement "
        "conditions\"><table><thead><tr><th>Key</th><th>Illuminant</th><th>Observer</th>"
        "<th>Geometry</th><th>Quantity</th><th>Filter</th><th>Polariser</th><th>Device</th>"
        "<th>Further</th></tr></thead><tbody>";
    unsigned number = 0;
    for (const ReportConditions& row : content.conditions()) {
      const std::string key = std::to_string(++number);
      out += "<tr id=\"m" + key + "\"><th>M" + key + "</th>";
      for (const std::string* const cell : {&row.illuminant, &row.observer, &row.geometry,
                                            &row.quantity, &row.filter, &row.polarisation}) {
        out += "<td>" + or_dash(*cell) + "</td>";
      }
      const std::string device = std::to_string(row.device);
      out += row.device == 0 ? "<td>" + or_dash("") + "</td>"
                             : "<td><a href=\"#d" + device + "\">D" + device + "</a></td>";
      out += "<td>";
      for (const Fact& fact : row.others) {
        out += bdi(fact.label, 80) + ' ' + bdi(fact.value, 200) + "<br>";
      }
      out += "</td></tr>";
    }
    out += "</tbody></table></div>";
  }
  out +=
      "<h3>How the colours shown were computed</h3><table><thead><tr><th>Key</th><th>Basis</th>"
      "<th class=\"r\">Colours</th></tr></thead><tbody>";
  unsigned number = 0;
  for (const auto& [basis, count] : content.bases()) {
    const std::string key = std::to_string(++number);
    out += "<tr id=\"b" + key + "\"><th>B" + key + "</th><td>" + escaped(shortened(basis, 600)) +
           "</td><td class=\"r\">" + grouped_number(count) + "</td></tr>";
  }
  return out + "</tbody></table>";
}

std::string devices_section(const ReportContent& content) {
  std::string out;
  unsigned number = 0;
  for (const ReportDevice& device : content.devices()) {
    const std::string key = std::to_string(++number);
    out += "<div class=\"thing\" id=\"d" + key + "\"><h3>D" + key + "</h3><p class=\"mu sub\">" +
           counted(device.uses, "use", "uses") + "</p>" + fact_list(device.facts) + "</div>";
  }
  return out.empty() ? out : "<div class=\"things\">" + out + "</div>";
}

std::string substrates_section(const ReportContent& content) {
  std::string out;
  unsigned number = 0;
  for (const ReportSubstrate& substrate : content.substrates()) {
    const std::string key = std::to_string(++number);
    out += "<div class=\"thing\" id=\"s" + key + "\"><h3>S" + key + " " + escaped(substrate.kind) +
           "</h3><p class=\"mu sub\">" + counted(substrate.uses, "use", "uses") + "</p>" +
           fact_list(substrate.facts) + "</div>";
  }
  return out.empty() ? out : "<div class=\"things\">" + out + "</div>";
}

std::string history_section(const ReportContent& content) {
  constexpr std::size_t k_most = 400;
  std::string out =
      "<table class=\"hist\"><thead><tr><th>When</th><th>What</th></tr></thead><tbody>";
  std::size_t left = k_most;
  for (const ReportEvent& event : content.events()) {
    if (left-- == 0) {
      out += "<tr><td></td><td>and " + grouped_number(content.events().size() - k_most) +
             " changes more</td></tr>";
      break;
    }
    out += "<tr><td><time>" + escaped(event.date) + "</time></td><td>" + bdi(event.what, 240) +
           "</td></tr>";
  }
  return out + "</tbody></table>";
}

// --- The page ------------------------------------------------------------------------------------

struct Section {
  std::string_view id, title;
  std::string body;
};

}  // namespace

std::string report_page(const ReportContent& content, const std::string& file) {
  const Section sections[] = {{"quality", "Quality control", quality_control_section(content)},
                              {"plots", "Plots", plots_section(content)},
                              {"spectra", "Spectra", spectra_section(content)},
                              {"colours", "Colours", colors_section(content)},
                              {"conditions", "Conditions", conditions_section(content)},
                              {"devices", "Devices", devices_section(content)},
                              {"substrates", "Substrates", substrates_section(content)},
                              {"history", "History", history_section(content)}};
  std::string out =
      "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
      // Whatever a document may smuggle in finds nothing that runs or fetches it.
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
      "style-src 'unsafe-inline'\">"
      "<meta name=\"viewport\" content=\"width=device-width,initial-scale=1\">"
      "<meta name=\"color-scheme\" content=\"light dark\">"
      "<meta name=\"referrer\" content=\"no-referrer\"><title>" +
      escaped(shortened(title_of(content, file), 120)) + " \u2013 colour report</title><style>" +
      std::string(picture_style()) + std::string(k_report_style) + "</style></head><body>" +
      shared_symbols() + "<div class=\"page\">" + masthead(content, file) +
      "<nav aria-label=\"Contents\"><ul>";
  for (const Section& section : sections) {
    if (section.body.empty()) continue;
    out += "<li><a href=\"#" + std::string(section.id) + "\">" + std::string(section.title) +
           "</a></li>";
  }
  out += "</ul></nav><main>";
  for (const Section& section : sections) {
    if (section.body.empty()) continue;
    out += "\n<section class=\"part\" id=\"" + std::string(section.id) + "\"><h2>" +
           std::string(section.title) + "</h2><div class=\"body\">";
    out += section.body;
    out += "</div></section>";
  }
  return out + "</main><footer><p>Made by zol " + ZOL_VERSION +
         ". Colours are shown in sRGB and need a calibrated display; what is outside of sRGB is "
         "marked and shown by the nearest values that it has.</p></footer></div></body></html>\n";
}
