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
  filter,      // "UVExcluded"
  polarization,    // "true" or "false"
  emissive_type,   // "Spot"
  emissive_mode,   // "Diffuser"
  density_status,  // "T"
  astm_table,      // "Table5"
  gamma            // a number
};
// How many there are.
constexpr std::size_t k_conditions = 11;

// "Illuminant", as columns are headed.
ZOL_INTERCHANGE_API std::string_view name_of(Condition condition);

// Values are those of the format's enumerations without what stands before their first low line;
// empty means that nothing is said.
struct ZOL_INTERCHANGE_API Conditions {
  // By the number of the condition.
  std::array<std::string, k_conditions> values;

  // What is said of one condition.
  std::string& operator[](Condition condition) {
    return values[static_cast<std::size_t>(condition)];
  }
  const std::string& operator[](Condition condition) const {
    return values[static_cast<std::size_t>(condition)];
  }
  // Whether nothing is said of any.
  bool empty() const;
  // Whether the same is said of all.
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
  std::string axis;                // see above
  std::string text;                // a number in its shortest exact form, a text, or "nil"
  std::string unit;                // "nm"; empty for none
  double number = 0;               // of a number
  bool is_number = false;          // whether the text is one
  std::size_t offset = k_nowhere;  // in the source, in bytes
};

// A colour in one space.
struct ZOL_INTERCHANGE_API Rendering {
  std::string space;                    // "CIELab": an element without "ColorSpace"
  std::string name;                     // what the document calls the space
  Conditions conditions;                // what its values are for
  std::vector<Coordinate> coordinates;  // in the order of the document
  std::size_t offset = k_nowhere;       // in the source, in bytes

  // By its axis; null if there is none. Good until another is added.
  const Coordinate* find(std::string_view axis) const;
  // Adds a number, with its text.
  void add(std::string axis, double number, std::size_t offset = k_nowhere);
};

// What a colour stands in.
enum class PlaceKind : unsigned char { document, palette, record };

// What a line of a table can say of a colour. Texts are UTF-8.
struct ZOL_INTERCHANGE_API ColorRecord {
  PlaceKind kind = PlaceKind::document;  // what it stands in
  std::string group;                     // a palette or a record of quality control, by its name
  std::string part;                      // a colour set by its name; "Standard" or "Measurement"
  unsigned pair = 0;                     // in a record, from 1
  std::string name;                      // of the colour
  std::string number;                    // its number or code
  std::string id;                        // its UniqueID
  std::string comments;                  // remarks
  std::vector<Rendering> renderings;     // one at least in a document that can be saved
  std::size_t offset = k_nowhere;        // in the source, in bytes
  // The colour that it was made of, and where that stands; null for one that was read.
  const ColorType* color = nullptr;
  const ColorSetType* set = nullptr;
  const PaletteType* palette = nullptr;

  // The first in that space; null if there is none.
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
  // How records become a document.
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
