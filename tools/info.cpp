// zol info: what is in a document.
#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

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
  std::vector<std::string> files;
  bool json = false;
  bool recursive = false;
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

Json json_of(const Summary& summary) {
  Json json;
  Json& provenance = json["provenance"] = Json::array();
  for (const auto& [name, content] : summary.provenance) {
    provenance.push_back({{"name", name}, {"value", content}});
  }
  json["ownColors"] = summary.own_colors;
  json["paletteColors"] = summary.palette_colors;
  Json& palettes = json["palettes"] = Json::array();
  for (const PaletteSummary& palette : summary.palettes) {
    Json sets = Json::array();
    for (const SetSummary& set : palette.sets) {
      sets.push_back({{"name", set.name}, {"colors", set.colors}});
    }
    palettes.push_back(
        {{"name", palette.name}, {"version", palette.version}, {"colorSets", std::move(sets)}});
  }
  Json& records = json["qualityControl"] = Json::array();
  for (const RecordSummary& record : summary.records) {
    records.push_back({{"name", record.name},
                       {"standards", record.standards},
                       {"measurements", record.measurements},
                       {"tolerances", record.tolerances}});
  }
  Json& spaces = json["colorSpaces"] = Json::object();
  for (const auto& [space, count] : summary.spaces) spaces[space] = count;
  Json& spectra = json["spectra"] = Json::array();
  for (const auto& [range, count] : summary.ranges) {
    spectra.push_back(
        {{"first", range.first}, {"last", range.last}, {"points", range.points}, {"count", count}});
  }
  return json;
}

// An object for one file that is named, else an array of them.
ExitStatus run_json(const Options& options, bool is_single) {
  JsonArrayOutput files(0);
  if (!is_single) files.begin();
  const ExitStatus status = for_each_document(
      options.files, options.recursive, [&](const std::string& path, const zol_v2::Zol& document) {
        Json json = {{"file", path}};
        json.update(json_of(summarise(document)));
        if (is_single) {
          print(text_of(json) + '\n');
        } else {
          files.print(json);
        }
      });
  if (!is_single) {
    files.end();
    print("\n");
  }
  return status;
}

ExitStatus run(const Options& options) {
  const bool is_single = options.files.size() == 1 && !options.recursive;
  if (options.json) return run_json(options, is_single);
  bool is_first = true;
  return for_each_document(options.files, options.recursive,
                           [&](const std::string& path, const zol_v2::Zol& document) {
                             if (!is_single) print((is_first ? "" : "\n") + one_line(path) + '\n');
                             is_first = false;
                             print_text(summarise(document));
                           });
}

}  // namespace

void add_info(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = app.add_subcommand("info", "Show what is in documents");
  command->add_option("FILE", options->files, "Documents; - is standard input")->required();
  command->add_flag("--json", options->json, "Print JSON");
  command->add_flag("-r,--recursive", options->recursive,
                    "Walk through folders, to every .zol and .zolz");
  command->callback([options, status] { *status = run(*options); });
}
