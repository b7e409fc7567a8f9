// What the palettes of drawing programs have in common: names, groups and sRGB.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "interchange/internal/display.h"
#include "interchange/internal/writers.h"

namespace zol_v2::interchange::internal {

struct Swatch {
  std::string group;  // "" for none
  std::string name;
  std::array<double, 3> rgb = {};  // sRGB from 0 to 1
};

// Collects what looks like something.
class PaletteWriter : public RecordWriter {
 protected:
  void add_document(const Zol& document, std::string_view name) final;
  void add_record(const ColorRecord& record, std::string_view document) final;
  void finish_records(std::string* bytes) final;

  // Of swatches in eight bits, counts those that had more.
  std::array<unsigned, 3> bytes_of(const Swatch& swatch);
  // What the palette as a whole may be called.
  std::string title() const;
  // A name as it stands in a line, behind other things; counts what that changes.
  std::string in_line(std::string_view name);
  virtual void print(const std::vector<Swatch>& swatches, std::string* bytes) = 0;

 private:
  Display display_;
  std::vector<Swatch> swatches_;
};

// "Palette / Set", and back; one of them where both are the same.
std::string group_name(const ColorRecord& record);
void set_group(std::string_view name, ColorRecord* record);

// A text in one line.
std::string flat(std::string_view text);

DocumentBuilder::Options building_options(const ReadOptions& options);

std::unique_ptr<Writer> make_gpl_writer();
std::unique_ptr<Writer> make_css_writer();
std::unique_ptr<Writer> make_ase_writer();
std::unique_ptr<Writer> make_kpl_writer();
Report read_gpl(std::string_view text, const ReadOptions& options, Zol* document);
Report read_ase(std::string_view bytes, const ReadOptions& options, Zol* document);
Report read_kpl(std::string_view bytes, const ReadOptions& options, Zol* document);

}  // namespace zol_v2::interchange::internal
