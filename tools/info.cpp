// zol info: what is in a document.
#include <algorithm>
#include <memory>
#include <string>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "model/Zol.h"
#include "tools/commands.h"
#include "tools/json.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/summary.h"
#include "tools/text.h"

namespace {

struct Options {
  std::string file;
  bool json = false;
};

void print_line(const std::string& name, const std::string& content) {
  constexpr std::size_t k_column = 17;
  std::string line = name.empty() ? name : name + ':';
  line.resize(std::max(k_column, line.size() + 1), ' ');
  print(line + one_line(content) + '\n');
}

void print_palette(const PaletteSummary& palette) {
  const std::string version = palette.version.empty() ? "" : " (" + palette.version + ')';
  print_line("Palette", palette.name + version + ", " +
                            counted(palette.sets.size(), "colour set", "colour sets"));
  for (const SetSummary& set : palette.sets) {
    print_line("", "  " + set.name + ", " + counted(set.colors, "colour", "colours"));
  }
}

void print_record(const RecordSummary& record) {
  print_line("Quality control", (record.name.empty() ? "" : record.name + ", ") +
                                    counted(record.standards, "standard", "standards") + ", " +
                                    counted(record.measurements, "measurement", "measurements") +
                                    ", " + counted(record.tolerances, "tolerance", "tolerances"));
}

void print_text(const Summary& summary) {
  for (const auto& [name, content] : summary.provenance) print_line(name, content);
  print_line("Colours", std::to_string(summary.own_colors) + " on their own, " +
                            std::to_string(summary.palette_colors) + " in palettes");
  for (const PaletteSummary& palette : summary.palettes) print_palette(palette);
  for (const RecordSummary& record : summary.records) print_record(record);
  for (const auto& [space, count] : summary.spaces) {
    print_line("Colour space", space + ", " + counted(count, "time", "times"));
  }
  for (const auto& [range, count] : summary.ranges) {
    print_line("Spectra", range.text() + ", " + counted(count, "time", "times"));
  }
}

void write_provenance(JsonWriter& json, const Summary& summary) {
  json.key("provenance");
  json.begin_array();
  for (const auto& [name, content] : summary.provenance) {
    json.begin_object();
    json.member("name", name);
    json.member("value", content);
    json.end_object();
  }
  json.end_array();
}

void write_palettes(JsonWriter& json, const Summary& summary) {
  json.key("palettes");
  json.begin_array();
  for (const PaletteSummary& palette : summary.palettes) {
    json.begin_object();
    json.member("name", palette.name);
    json.member("version", palette.version);
    json.key("colorSets");
    json.begin_array();
    for (const SetSummary& set : palette.sets) {
      json.begin_object();
      json.member("name", set.name);
      json.member("colors", set.colors);
      json.end_object();
    }
    json.end_array();
    json.end_object();
  }
  json.end_array();
}

void write_records(JsonWriter& json, const Summary& summary) {
  json.key("qualityControl");
  json.begin_array();
  for (const RecordSummary& record : summary.records) {
    json.begin_object();
    json.member("name", record.name);
    json.member("standards", record.standards);
    json.member("measurements", record.measurements);
    json.member("tolerances", record.tolerances);
    json.end_object();
  }
  json.end_array();
}

void write_spaces(JsonWriter& json, const Summary& summary) {
  json.key("colorSpaces");
  json.begin_object();
  for (const auto& [space, count] : summary.spaces) json.member(space, count);
  json.end_object();
  json.key("spectra");
  json.begin_array();
  for (const auto& [range, count] : summary.ranges) {
    json.begin_object();
    json.member("first", range.first);
    json.member("last", range.last);
    json.member("points", range.points);
    json.member("count", count);
    json.end_object();
  }
  json.end_array();
}

void print_json(const std::string& file, const Summary& summary) {
  JsonWriter json;
  json.begin_object();
  json.member("file", file);
  write_provenance(json, summary);
  json.member("ownColors", summary.own_colors);
  json.member("paletteColors", summary.palette_colors);
  write_palettes(json, summary);
  write_records(json, summary);
  write_spaces(json, summary);
  json.end_object();
  print(json.text());
}

ExitStatus run(const Options& options) {
  zol_v2::Zol document;
  const ExitStatus status = load_document(options.file, document);
  if (status != ExitStatus::ok) return status;
  const Summary summary = summarise(document);
  if (options.json) {
    print_json(options.file, summary);
  } else {
    print_text(summary);
  }
  return ExitStatus::ok;
}

}  // namespace

void add_info(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = app.add_subcommand("info", "Show what is in a document");
  command->add_option("FILE", options->file, "Document; - is standard input")->required();
  command->add_flag("--json", options->json, "Print JSON");
  command->callback([options, status] { *status = run(*options); });
}
