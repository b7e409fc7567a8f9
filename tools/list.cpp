// zol list: one line for each colour.
#include <algorithm>
#include <functional>
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
#include "tools/document_text.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/text.h"
#if defined(ZOL_WITH_REPORT)
#include "tools/color_list.h"
#include "tools/seen_under.h"
#endif

namespace {

struct Options {
  std::vector<std::string> files;
  bool csv = false;
  bool recursive = false;

  bool is_single() const { return files.size() == 1 && !recursive; }
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

// A row for each colour. The columns of the coordinates stand in the order in which they are first
// met, which all documents are read for before the first row can be printed.
class CsvTable {
 public:
  explicit CsvTable(bool has_files) {
    if (has_files) header_.emplace_back("File");
    header_.insert(header_.end(), {"Name", "UniqueID", "Spaces", "Group", "Part"});
  }

  void add_columns(const zol_v2::Zol& document) {
    for_each_color(document, [this](const ColorPlace&, const zol_v2::ColorType& color) {
      for_each_value(color, [this](const std::string& column, const std::string&) {
        if (numbers_.emplace(column, header_.size()).second) header_.push_back(column);
      });
    });
  }

  void print_header() const { print(csv_line(header_)); }

  void print_colors(const std::string& file, const zol_v2::Zol& document) const {
    for_each_color(document, [&](const ColorPlace& place, const zol_v2::ColorType& color) {
      std::vector<std::string> fields;
      if (header_.front() == "File") fields.push_back(valid_utf8(file));
      fields.insert(fields.end(), {utf8(color.get_ColorName()), utf8(color.get_UniqueID()),
                                   space_names(color), place.group, place.part});
      fields.resize(header_.size());
      for_each_value(color, [&](const std::string& column, const std::string& value) {
        fields[numbers_.at(column)] = value;
      });
      print(csv_line(fields));
    });
  }

 private:
  std::vector<std::string> header_;
  std::map<std::string, std::size_t> numbers_;
};

using Show = std::function<void(const std::string& path, const zol_v2::Zol& document)>;

ExitStatus print_csv(const Options& options) {
  if (options.is_single()) {
    return for_each_document(options.files, false,
                             [](const std::string& path, const zol_v2::Zol& document) {
                               CsvTable table(false);
                               table.add_columns(document);
                               table.print_header();
                               table.print_colors(path, document);
                             });
  }
  const auto& files = options.files;
  if (std::find(files.begin(), files.end(), k_standard_stream) != files.end()) {
    complain("standard input", "can't be one of several files of a table, which are read twice");
    return ExitStatus::trouble;
  }
  CsvTable table(true);
  std::vector<std::string> good;
  const ExitStatus status = for_each_document(
      files, options.recursive, [&](const std::string& path, const zol_v2::Zol& document) {
        table.add_columns(document);
        good.push_back(path);
      });
  table.print_header();
  const Show print_rows = [&table](const std::string& path, const zol_v2::Zol& document) {
    table.print_colors(path, document);
  };
  return worse(status, for_each_document(good, false, print_rows));
}

ExitStatus run(const Options& options) {
  if (options.csv) return print_csv(options);
  bool is_first = true;
  return for_each_document(options.files, options.recursive,
                           [&](const std::string& path, const zol_v2::Zol& document) {
                             if (!options.is_single())
                               print((is_first ? "" : "\n") + one_line(path) + '\n');
                             is_first = false;
                             print_text(document, options);
                           });
}

}  // namespace

void add_list(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      app.add_subcommand("list", "Print each colour: name, id, colour spaces and coordinates");
  command->add_option("FILE", options->files, "Documents; - is standard input")->required();
  command->add_flag("--csv", options->csv,
                    "Comma-separated values, with a column for each coordinate");
  command->add_flag("-r,--recursive", options->recursive,
                    "Walk through folders, to every .zol and .zolz");
#if defined(ZOL_WITH_REPORT)
  add_seen_under(*command, &options->seen);
  for (const char* const option : {"--illuminant", "--observer"}) {
    command->get_option(option)->excludes("--csv");
  }
#endif
  command->callback([options, status] { *status = run(*options); });
}
