// zol thumbnail: the swatches of a document as a small picture, for file managers.
#include <png.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "colorimetry/colorimeter.h"
#include "model/Zol.h"
#include "tools/commands.h"
#include "tools/document_text.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/placed_colors.h"
#include "tools/save.h"

namespace colorimetry = zol_v2::colorimetry;

namespace {

constexpr unsigned k_smallest = 8, k_largest = 4096;  // pixels
constexpr std::size_t k_most_swatches = 64;

struct Options {
  std::string file;
  std::string output;
  unsigned size = 128;
};

using Swatch = std::array<unsigned char, 3>;

// Of more colours than a picture shows, the first that can be shown of each equal part.
std::vector<Swatch> swatches_of(const zol_v2::Zol& document) {
  const std::vector<colorimetry::PlacedColor> colors = placed_colors(document, "");
  const std::size_t parts = std::min(colors.size(), k_most_swatches);
  colorimetry::Colorimeter meter;
  std::vector<Swatch> swatches;
  for (std::size_t part = 0; part < parts; ++part) {
    const std::size_t last = (part + 1) * colors.size() / parts;
    for (std::size_t i = part * colors.size() / parts; i < last; ++i) {
      const auto stimulus = meter.measure(*colors[i].color, colors[i].place);
      if (!stimulus) continue;
      swatches.push_back(display_of(*stimulus).bytes);
      break;
    }
  }
  return swatches;
}

// Rows of equal height from the top, which share the colours as evenly as they can.
std::vector<unsigned char> pixels_of(const std::vector<Swatch>& swatches, unsigned size) {
  const std::size_t rows = std::max<std::size_t>(
      static_cast<std::size_t>(std::sqrt(static_cast<double>(swatches.size()))), 1);
  std::vector<unsigned char> pixels;
  pixels.reserve(std::size_t{size} * size * 3);
  for (std::size_t y = 0; y < size; ++y) {
    const std::size_t row = y * rows / size;
    const std::size_t first = row * swatches.size() / rows;
    const std::size_t count = (row + 1) * swatches.size() / rows - first;
    for (std::size_t x = 0; x < size; ++x) {
      const Swatch& swatch = swatches[first + x * count / size];
      pixels.insert(pixels.end(), swatch.begin(), swatch.end());
    }
  }
  return pixels;
}

// Empty, with what is wrong in *message, if it can't be made.
std::string png_of(const std::vector<unsigned char>& pixels, unsigned size, std::string* message) {
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  image.width = image.height = size;
  image.format = PNG_FORMAT_RGB;  // of eight bits, as sRGB has them
  std::string text(PNG_IMAGE_PNG_SIZE_MAX(image), '\0');
  png_alloc_size_t length = text.size();
  if (png_image_write_to_memory(&image, text.data(), &length, 0, pixels.data(), 0, nullptr) == 0) {
    *message = image.message;
    return "";
  }
  text.resize(length);
  return text;
}

ExitStatus run(const Options& options) {
  zol_v2::Zol document;
  const ExitStatus status = load_document(options.file, document);
  if (status != ExitStatus::ok) return status;
  const std::vector<Swatch> swatches = swatches_of(document);
  if (swatches.empty()) {
    complain(options.file, "has no colour that can be shown");
    return ExitStatus::fault;
  }
  std::string message;
  const std::string text = png_of(pixels_of(swatches, options.size), options.size, &message);
  if (text.empty()) {
    complain(options.output, message);
    return ExitStatus::trouble;
  }
  return save_picture(text, options.output);
}

}  // namespace

void add_thumbnail(CLI::App& app, ExitStatus* status) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      app.add_subcommand("thumbnail", "Draw the swatches of a document as a small PNG");
  command->add_option("FILE", options->file, "Document; - is standard input")->required();
  command->add_option("OUT", options->output, "PNG to write; - is standard output")
      ->required()
      ->check(CLI::Validator(check_picture_name, "FILE"));
  command->add_option("-s,--size", options->size, "Width and height in pixels, 128 if not given")
      ->check(CLI::Range(k_smallest, k_largest));
  command->callback([options, status] { *status = run(*options); });
}
