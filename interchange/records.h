// The colours of a document as records: the one form that tables, measurement files, palettes and
// databases are written from and read into.
//
// A record holds what a line of a table can say of a colour: its names, where it stands, and its
// renderings with their conditions. Histories, owners, substrates, tags and the like it does not;
// whoever makes records of a document is told of them.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "interchange/export.h"
#include "interchange/report.h"

namespace zol_v2 {
class ColorSetType;
class ColorType;
class PaletteType;
class Zol;
}  // namespace zol_v2

namespace zol_v2::interchange {

// What a rendering holds for, as its specification says it.
enum class Condition : unsigned char {
  illuminant,  // "D50", "Custom: LED", "ColorTemperature 5000", "WhitePointChromaticity 0.31 0.33"
  observer,    // "2" or "10", degrees
  geometry,    // "SphereGeometry Included", "Angle 45", "BSDFAngle 45 15", or free words
  quantity,    // "Reflectance", "Custom: what"
  filter,
  polarization,  // "true" or "false"
  emissive_type,
  emissive_mode,
  density_status,
  astm_table,
  gamma
};
constexpr std::size_t k_conditions = 11;

// "Illuminant", as columns are headed.
ZOL_INTERCHANGE_API std::string_view name_of(Condition condition);

// Values are those of the format's enumerations without what stands before their first low line;
// empty means that nothing is said.
struct ZOL_INTERCHANGE_API Conditions {
  std::array<std::string, k_conditions> values;

  std::string& operator[](Condition condition) {
    return values[static_cast<std::size_t>(condition)];
  }
  const std::string& operator[](Condition condition) const {
    return values[static_cast<std::size_t>(condition)];
  }
  bool empty() const;
  bool operator==(const Conditions& other) const { return values == other.values; }
  bool operator!=(const Conditions& other) const { return values != other.values; }
};

// Where in the source something stood; `k_nowhere` if there is none.
constexpr std::size_t k_nowhere = static_cast<std::size_t>(-1);

// One value of a rendering.
//
// The axis is the name of a row ("L"; of xyY "x", "y", "Y"), what tells the entries of a list apart
// ("400", a wavelength in nm; "Status_T Filter_Cyan"), or a path ("SpotColor[2]/Percentage").
struct Coordinate {
  std::string axis;
  std::string text;  // a number in its shortest exact form, a text, or "nil"
  std::string unit;
  double number = 0;
  bool is_number = false;
  std::size_t offset = k_nowhere;
};

struct ZOL_INTERCHANGE_API Rendering {
  std::string space;  // "CIELab": an element without "ColorSpace"
  std::string name;   // what the document calls the space
  Conditions conditions;
  std::vector<Coordinate> coordinates;
  std::size_t offset = k_nowhere;

  const Coordinate* find(std::string_view axis) const;
  void add(std::string axis, double number, std::size_t offset = k_nowhere);
};

enum class PlaceKind : unsigned char { document, palette, record };

struct ZOL_INTERCHANGE_API ColorRecord {
  PlaceKind kind = PlaceKind::document;
  std::string group;  // a palette or a record of quality control, by its name
  std::string part;   // a colour set by its name; "Standard" or "Measurement"
  unsigned pair = 0;  // in a record, from 1
  std::string name;
  std::string number;
  std::string id;
  std::string comments;
  std::vector<Rendering> renderings;
  std::size_t offset = k_nowhere;
  // The colour that it was made of, and where that stands; null for one that was read.
  const ColorType* color = nullptr;
  const ColorSetType* set = nullptr;
  const PaletteType* palette = nullptr;

  const Rendering* find(std::string_view space) const;
};

// Visits the colours in the order of the document; `losses`, which may be null, gets what else is
// in it. Specifications that hold for a whole set or palette are those of its renderings.
ZOL_INTERCHANGE_API void for_each_record(const Zol& document,
                                         const std::function<void(const ColorRecord&)>& visit,
                                         Losses* losses);

// Makes a document of records, in their order. Consecutive ones of one group, part and pair come
// to stand together. What the format requires and the record does not say is filled in, and noted.
class ZOL_INTERCHANGE_API DocumentBuilder {
 public:
  struct Options {
    std::string time;               // of all histories, as a document has it; empty for now
    std::string source;             // what is imported, for people
    char decimal = '.';             // in the texts of numbers
    Conditions default_conditions;  // where a rendering says nothing
    // Leaves out renderings with values that documents refuse, and counts them: other programs
    // have RGB and tristimulus values out of the bounds of the format.
    bool is_tolerant = false;
  };

  // The document is a new one. `text` is what offsets refer to; it, the document and the report
  // outlive the builder.
  DocumentBuilder(Zol* document, Options options, std::string_view text, Report* report);

  // False, with the fault in the report, if a value is refused.
  bool add(const ColorRecord& record);
  // A text that belongs to the whole document and has no row.
  void add_attribute(std::string_view name, std::string_view value);

 private:
  // Where the colour of the record stands, which is a new one.
  ColorType& append_color(const ColorRecord& record);
  bool add_rendering(const Rendering& rendering, ColorType* color);
  bool add_renderings(const std::vector<Rendering>& renderings, ColorType* color);
  bool fail(std::string sentence, std::size_t offset);

  Zol& document_;
  Options options_;
  std::string_view text_;
  Report& report_;
  std::optional<ColorRecord> last_;  // without its renderings
};

}  // namespace zol_v2::interchange
