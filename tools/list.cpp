// zol list: one line for each colour.
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "model/Zol.h"
#include "tools/color_values.h"
#include "tools/commands.h"
#if defined(ZOL_WITH_REPORT)
#include "tools/color_list.h"
#include "tools/seen_under.h"
#endif
#include "tools/load.h"
#include "tools/output.h"
#include "tools/text.h"

namespace {

struct Options {
  std::string file;
  bool csv = false;
#if defined(ZOL_WITH_REPORT)
  SeenUnder seen;
#endif
};

#if defined(ZOL_WITH_REPORT)
void print_text(const zol_v2::Zol& document, const Options& options) {
  print_color_list(document, options.seen.conditions());
}
#else
void print_text(const zol_v2::Zol& document, const Options&) {
  for_each_color(document, [](const ColorPlace&, const zol_v2::ColorType& color) {
    std::string line =
        one_line(utf8(color.get_ColorName())) + '\t' + one_line(utf8(color.get_UniqueID())) + '\t';
    for (unsigned i = 0; i < color.size_ColorSpace(); ++i) {
      if (i > 0) line += "; ";
      line += one_line(text_of(color.get_ColorSpace(i)));
    }
    print(line + '\n');
  });
}
#endif

// Quoted where it must be, by RFC 4180.
std::string csv_field(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"') result += '"';
    result += c;
  }
  return result + '"';
}

std::string csv_line(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) {
    if (&field != &fields.front()) line += ',';
    line += csv_field(field);
  }
  return line + '\n';
}

// Calls take(column, value) for each coordinate of a colour. A column is named "CIELab.L"; if the
// colour has the same space or axis again, a number is added.
template <class Take>
void for_each_value(const zol_v2::ColorType& color, const Take& take) {
  std::map<std::string, unsigned> seen;
  for (unsigned i = 0; i < color.size_ColorSpace(); ++i) {
    const Rendering rendering = rendering_of(color.get_ColorSpace(i));
    for (const Coordinate& coordinate : rendering.coordinates) {
      std::string column = rendering.space + '.' + coordinate.axis;
      const unsigned number = ++seen[column];
      if (number > 1) column += '#' + std::to_string(number);
      take(column, coordinate.value);
    }
  }
}

std::string space_names(const zol_v2::ColorType& color) {
  std::string result;
  for (unsigned i = 0; i < color.size_ColorSpace(); ++i) {
    if (i > 0) result += ' ';
    result += space_name(color.get_ColorSpace(i));
  }
  return result;
}

// The columns of the coordinates stand in the order in which they are first met.
class CsvTable {
 public:
  explicit CsvTable(const zol_v2::Zol& document) {
    for_each_color(document, [this](const ColorPlace&, const zol_v2::ColorType& color) {
      for_each_value(color, [this](const std::string& column, const std::string&) {
        if (numbers_.emplace(column, header_.size()).second) header_.push_back(column);
      });
    });
  }

  void print_header() const { print(csv_line(header_)); }

  void print_color(const ColorPlace& place, const zol_v2::ColorType& color) const {
    std::vector<std::string> fields = {utf8(color.get_ColorName()), utf8(color.get_UniqueID()),
                                       space_names(color), place.group, place.part};
    fields.resize(header_.size());
    for_each_value(color, [&](const std::string& column, const std::string& value) {
      fields[numbers_.at(column)] = value;
    });
    print(csv_line(fields));
  }

 private:
  std::vector<std::string> header_ = {"Name", "UniqueID", "Spaces", "Group", "Part"};
  std::map<std::string, std::size_t> numbers_;
};

void print_csv(const zol_v2::Zol& document) {
  const CsvTable table(document);
  table.print_header();
  for_each_color(document, [&](const ColorPlace& place, const zol_v2::ColorType& color) {
    table.print_color(place, color);
  });
}

ExitStatus run(const Options& options) {
  zol_v2::Zol document;
  const ExitStatus status = load_document(options.file, document);
  if (status != ExitStatus::ok) return status;
  if (options.csv) {
    print_csv(document);
  } else {
    print_text(document, options);
  }
  return ExitStatus::ok;
}

}  // namespace

void add_list(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      app.add_subcommand("list", "Print each colour: name, id, colour spaces and coordinates");
  command->add_option("FILE", options->file, "Document; - is standard input")->required();
  command->add_flag("--csv", options->csv,
                    "Comma-separated values, with a column for each coordinate");
#if defined(ZOL_WITH_REPORT)
  add_seen_under(*command, &options->seen);
  for (const char* const option : {"--illuminant", "--observer"}) {
    command->get_option(option)->excludes("--csv");
  }
#endif
  command->callback([options, status] { *status = run(*options); });
}
