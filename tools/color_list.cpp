#include "tools/color_list.h"

#include <string>
#include <vector>

#include "model/Zol.h"
#include "tools/color_values.h"
#include "tools/markup.h"
#include "tools/output.h"
#include "tools/report_content.h"
#include "tools/table.h"
#include "tools/terminal.h"
#include "tools/terminal_color.h"
#include "tools/text.h"

namespace colorimetry = zol_v2::colorimetry;

namespace {

void join(const std::string& part, std::string_view between, std::string* text) {
  if (part.empty()) return;
  if (!text->empty()) *text += between;
  *text += part;
}

// "CIELab L=53.2 A=80.1 B=67.2; SRGB ...".
std::string spaces_of(const zol_v2::ColorType& color) {
  std::string text;
  for (unsigned i = 0; i < color.size_ColorSpace(); ++i) {
    join(text_of(color.get_ColorSpace(i)), "; ", &text);
  }
  return text;
}

std::string lab_of(const ReportColor& color) {
  if (!color.stimulus) return color.reason;
  if (!color.has_lab()) return "";
  const colorimetry::Lab lab = color.stimulus->lab();
  return "CIELab L=" + decimal_text(lab.l, 4) + " A=" + decimal_text(lab.a, 4) +
         " B=" + decimal_text(lab.b, 4);
}

// As far as the document says them.
std::string conditions_of(const colorimetry::Stimulus& stimulus) {
  std::string text;
  if (!stimulus.has_default_conditions) text = text_of(stimulus.conditions);
  if (stimulus.geometry) join(stimulus.geometry.text(), ", ", &text);
  return text;
}

std::string tolerances_of(const ReportColor& color) {
  std::string text;
  const auto add = [&](const zol_v2::ToleranceType& tolerance, unsigned index) {
    const std::string name = utf8(tolerance.get_Name());
    join(name.empty() ? "tolerance " + std::to_string(index + 1) : name, "; ", &text);
  };
  const zol_v2::Standard& standard = color.pair->get_Standard();
  for (unsigned i = 0; !standard.isnil_Standard() && i < standard.size_Tolerance(); ++i) {
    add(standard.get_Tolerance(i), i);
  }
  for (unsigned i = 0; i < color.record->size_Tolerance(); ++i) {
    add(color.record->get_Tolerance(i), i);
  }
  return text;
}

std::string swatch_of(const ReportColor& color, ColorDepth depth) {
  if (!color.stimulus) return terminal_gap(depth);
  return terminal_swatch(color.display.bytes, color.display.is_in_gamut ? ' ' : '!', depth);
}

// "D50, 2 degrees, from CIELab, adapted by Bradford from A, 2 degrees".
std::string origin_of(const colorimetry::Stimulus& stimulus) {
  std::string text = text_of(stimulus.conditions);
  if (stimulus.space != nullptr) text += ", from " + space_name(*stimulus.space);
  if (stimulus.adapted_from) {
    text += ", adapted by Bradford from " + text_of(*stimulus.adapted_from);
  }
  return text;
}

struct Line {
  std::string name, id, spaces, conditions, number, place, tolerances;
};

Line line_of(const ReportColor& color, bool is_computed) {
  Line line;
  line.name = one_line(utf8(color.color->get_ColorName()));
  line.id = one_line(utf8(color.color->get_UniqueID()));
  line.spaces = one_line(is_computed ? lab_of(color) : spaces_of(*color.color));
  if (color.stimulus) {
    line.conditions =
        one_line(is_computed ? origin_of(*color.stimulus) : conditions_of(*color.stimulus));
  }
  line.number = one_line(utf8(color.color->get_ColorNumber()));
  if (color.pair != nullptr) {
    line.place = one_line(utf8(color.record->get_Name()));
    join(color.role, ", ", &line.place);
    line.tolerances = one_line(tolerances_of(color));
  }
  return line;
}

// For programs: nothing stands behind the last column that says something.
void print_fields(const Line& line) {
  std::vector<const std::string*> fields = {&line.name,       &line.id,     &line.spaces,  //
                                            &line.conditions, &line.number, &line.place,
                                            &line.tolerances};
  while (fields.size() > 3 && fields.back()->empty()) fields.pop_back();
  std::string text = *fields.front();
  for (std::size_t i = 1; i < fields.size(); ++i) text += '\t' + *fields[i];
  print(text + '\n');
}

// For people: under headings, with swatches before. What is long stands last.
void print_table(const std::vector<const ReportColor*>& colors, bool is_computed) {
  constexpr std::size_t k_widest = 40;
  TextTable table({{"Name"},
                   {"Number"},
                   {"Id"},
                   {"Place"},
                   {"Conditions"},
                   {"Tolerances"},
                   {is_computed ? "Computed" : "Colour spaces"}});
  for (const ReportColor* const color : colors) {
    const Line line = line_of(*color, is_computed);
    table.add({shortened(line.name, k_widest), shortened(line.number, k_widest),
               shortened(line.id, k_widest), shortened(line.place, k_widest),
               shortened(line.conditions, 2 * k_widest), shortened(line.tolerances, 2 * k_widest),
               line.spaces});
  }
  const ColorDepth depth = color_depth();
  const std::string text = table.text();
  std::size_t at = 0;
  for (std::size_t i = 0; at < text.size(); ++i) {
    const std::size_t end = text.find('\n', at) + 1;
    if (depth != ColorDepth::none) print(i == 0 ? "     " : swatch_of(*colors[i - 1], depth));
    print(std::string_view(text).substr(at, end - at));
    at = end;
  }
}

}  // namespace

void print_color_list(const zol_v2::Zol& document,
                      const std::optional<colorimetry::Conditions>& conditions) {
  const ReportContent content(document, conditions);
  std::vector<const ReportColor*> colors;
  for_each_color(document, [&](const ColorPlace&, const zol_v2::ColorType& color) {
    if (const ReportColor* const found = content.find(color)) colors.push_back(found);
  });
  if (colors.empty()) return;
  if (is_terminal(stdout)) {
    print_table(colors, conditions.has_value());
    return;
  }
  for (const ReportColor* const color : colors) {
    print_fields(line_of(*color, conditions.has_value()));
  }
}
