// zol list: one line for each colour.
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "interchange/formats.h"
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

ExitStatus print_csv(const Options& options) {
  using namespace zol_v2::interchange;
  const std::unique_ptr<Writer> writer = make_writer(Format::csv, {});
  const ExitStatus status = for_each_document(
      options.files, options.recursive, [&](const std::string& path, const zol_v2::Zol& document) {
        writer->add(document, valid_utf8(path));
      });
  if (options.is_single() && status != ExitStatus::ok) return status;
  std::string text;
  (void)writer->finish(&text);
  print(text);
  return status;
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
                    "Comma-separated values, with a line for each coordinate");
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
