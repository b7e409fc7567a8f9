// zol report: a document as a page to look at, or one picture of it.
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "model/Zol.h"
#include "tools/commands.h"
#include "tools/document_text.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/report_content.h"
#include "tools/report_page.h"
#include "tools/report_pictures.h"
#include "tools/save.h"
#include "tools/seen_under.h"
#include "tools/text.h"

namespace {

struct Options {
  std::string file;
  std::string output = k_standard_stream;
  std::string picture;
  SeenUnder seen;
};

// --- Pictures by name ----------------------------------------------------------------------------

// By its id on the page, its UniqueID or its name, the first of these that is known.
std::vector<const ReportColor*> colors_called(const ReportContent& content,
                                              const std::string& name) {
  const auto matching = [&](const auto& matches) {
    std::vector<const ReportColor*> found;
    for (const ReportColor& color : content.colors()) {
      if (matches(color)) found.push_back(&color);
    }
    return found;
  };
  std::vector<const ReportColor*> found =
      matching([&](const ReportColor& color) { return color.id == name; });
  if (found.empty()) {
    found = matching([&](const ReportColor& color) {
      return color.color->isset_UniqueID() && utf8(color.color->get_UniqueID()) == name;
    });
  }
  if (found.empty()) {
    found = matching(
        [&](const ReportColor& color) { return utf8(color.color->get_ColorName()) == name; });
  }
  return found;
}

// What is wrong with the name, or the picture.
std::string find_picture(const ReportContent& content, const std::string& name, Picture* picture) {
  const struct {
    std::string_view name;
    Picture picture;
  } k_plots[] = {{"hues", hue_picture(content)},
                 {"lightness", lightness_picture(content)},
                 {"spectra", spectra_picture(content, false)},
                 {"sources", spectra_picture(content, true)}};
  for (const auto& plot : k_plots) {
    if (plot.name != name) continue;
    *picture = plot.picture;
    return picture->body.empty() ? "the document has no colours for it" : "";
  }
  const std::size_t mark = name.find(':');
  const std::string kind = mark == std::string::npos ? "" : name.substr(0, mark);
  const bool has_kind = kind == "swatch" || kind == "spectrum";
  const std::vector<const ReportColor*> found =
      colors_called(content, has_kind ? name.substr(mark + 1) : name);
  if (found.empty()) return "there is no such picture, and no colour of that name or id";
  if (found.size() > 1) {
    return counted(found.size(), "colour is", "colours are") +
           " called so; ask by id: " + found[0]->id + ", " + found[1]->id +
           (found.size() > 2 ? " ..." : "");
  }
  if (kind == "spectrum" && !found[0]->spectrum) return "the colour has no spectrum";
  *picture = kind == "spectrum" ? spectrum_picture(*found[0])
             : kind == "swatch" ? swatch_picture(*found[0])
                                : color_picture(*found[0]);
  return "";
}

// --- The command ---------------------------------------------------------------------------------

std::string file_name(const std::string& path) {
  if (path == k_standard_stream) return "standard input";
  return valid_utf8(path.substr(path.find_last_of("/\\") + 1));
}

ExitStatus run(const Options& options) {
  zol_v2::Zol document;
  const ExitStatus status = load_document(options.file, document);
  if (status != ExitStatus::ok) return status;
  std::string text;
  {
    const Progress progress("Looking at " + options.file);
    ReportContent content(document, options.seen.conditions());
    if (options.picture.empty()) {
      content.judge();
      text = report_page(content, file_name(options.file));
    } else {
      Picture picture;
      const std::string fault = find_picture(content, options.picture, &picture);
      if (!fault.empty()) {
        complain(options.picture, fault);
        return ExitStatus::trouble;
      }
      text = standalone(picture);
    }
  }
  return save_picture(text, options.output);
}

}  // namespace

void add_report(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      app.add_subcommand("report", "Make a page of HTML with swatches, spectra and verdicts");
  command->add_option("FILE", options->file, "Document; - is standard input")->required();
  command
      ->add_option("-o,--output", options->output,
                   "File to write; - is standard output, which it is by default")
      ->check(CLI::Validator(check_picture_name, "FILE"));
  command->add_option("--svg", options->picture,
                      "Write one picture alone: hues, lightness, spectra, sources; or a colour by "
                      "id or name, of which swatch:NAME and spectrum:NAME are the parts");
  add_seen_under(*command, &options->seen);
  command->footer("The page stands alone: it holds no script and fetches nothing.");
  command->callback([options, status] { *status = run(*options); });
}
