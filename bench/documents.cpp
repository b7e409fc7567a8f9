#include "bench/documents.h"

#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace bench {
namespace {

// SplitMix64 (Steele, Lea and Flood, 2014): the standard's distributions differ between libraries.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t below(std::uint64_t limit) {
    state_ += 0x9E3779B97F4A7C15;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return (z ^ (z >> 31)) % limit;
  }
  // Any of low to high.
  std::int64_t between(std::int64_t low, std::int64_t high) {
    return low + static_cast<std::int64_t>(below(static_cast<std::uint64_t>(high - low + 1)));
  }
  bool once_in(std::uint64_t times) { return below(times) == 0; }
  template <class T, std::size_t N>
  const T& pick(const T (&items)[N]) {
    return items[below(N)];
  }

 private:
  std::uint64_t state_;
};

struct Attribute {
  std::string_view name;
  std::string value;
};

// XML as it grows. Values are escaped by whoever gives them.
class Markup {
 public:
  using Attributes = std::initializer_list<Attribute>;

  std::size_t size() const { return text_.size(); }
  std::string take() { return std::move(text_); }

  void line(std::string_view text) { text_.append(depth_, '\t').append(text).push_back('\n'); }
  void leaf(std::string_view name, std::string_view value, Attributes attributes = {}) {
    start(name, attributes);
    text_.append(">").append(value);
    end(name);
  }
  void empty(std::string_view name, Attributes attributes = {}) {
    start(name, attributes);
    text_.append("/>\n");
  }
  void open(std::string_view name, Attributes attributes) {
    start(name, attributes);
    text_.append(">\n");
    ++depth_;
  }
  void close(std::string_view name) {
    --depth_;
    text_.append(depth_, '\t');
    end(name);
  }

 private:
  void start(std::string_view name, Attributes attributes) {
    text_.append(depth_, '\t').append("<Zol:").append(name);
    for (const Attribute& attribute : attributes) {
      text_.append(" ").append(attribute.name).append("=\"").append(attribute.value).append("\"");
    }
  }
  void end(std::string_view name) { text_.append("</Zol:").append(name).append(">\n"); }

  std::string text_;
  std::size_t depth_ = 0;
};

// Its start tag now, its end tag at the end of the scope.
class Element {
 public:
  Element(Markup& out, std::string_view name, Markup::Attributes attributes = {})
      : out_(out), name_(name) {
    out_.open(name_, attributes);
  }
  ~Element() { out_.close(name_); }
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;

 private:
  Markup& out_;
  std::string_view name_;
};

// `units` * 10^-decimals without trailing zeros, as the library writes a number.
std::string decimal(std::int64_t units, int decimals) {
  if (units == 0) return "0.0";
  std::string digits = std::to_string(std::llabs(units));
  if (digits.size() <= static_cast<std::size_t>(decimals)) {
    digits.insert(0, static_cast<std::size_t>(decimals) + 1 - digits.size(), '0');
  }
  digits.insert(digits.size() - static_cast<std::size_t>(decimals), ".");
  while (digits.back() == '0') digits.pop_back();
  if (digits.back() == '.') digits.pop_back();
  return units < 0 ? "-" + digits : digits;
}

std::string two_digits(std::int64_t value) {
  return (value < 10 ? "0" : "") + std::to_string(value);
}

class DocumentWriter {
 public:
  DocumentWriter(Profile profile, std::size_t size)
      : profile_(profile), size_(size), random_(1931 + static_cast<std::uint64_t>(profile)) {}

  std::string write() {
    out_.line("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    {
      Element root(out_, "Zol",
                   {{"xmlns:Zol", "http://example.org/zol/v2"},
                    {"xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance"}});
      preamble();
      switch (profile_) {
        case Profile::spectra:
          while (out_.size() < size_) spectral_color();
          break;
        case Profile::palettes:
          while (out_.size() < size_) palette();
          break;
        case Profile::mixed:
          while (out_.size() < size_ / 2) mixed_color();
          while (out_.size() < size_ / 3 * 2) palette();
          while (out_.size() < size_) quality_control();
          break;
      }
    }
    return out_.take();
  }

 private:
  // A number of `decimals` places from low to high, both in units of the last place.
  std::string number(std::int64_t low, std::int64_t high, int decimals) {
    return decimal(random_.between(low, high), decimals);
  }
  std::string ratio() { return number(0, 10000, 4); }
  std::string percentage() { return number(0, 1000, 1); }

  std::string date_time() {
    static constexpr std::string_view zones[] = {"Z", "Z", "+01:00", "+02:00", "-05:00", "+09:30"};
    struct Field {
      std::int64_t low, high;
      char end;
    };
    std::string text;
    for (const Field& field : {Field{1998, 2026, '-'}, Field{1, 12, '-'}, Field{1, 28, 'T'},
                               Field{0, 23, ':'}, Field{0, 59, ':'}, Field{0, 59, 0}}) {
      text += two_digits(random_.between(field.low, field.high));
      if (field.end != 0) text += field.end;
    }
    return text.append(random_.pick(zones));
  }

  std::string color_name() {
    static constexpr std::string_view tones[] = {"Light", "Deep", "Pale",   "Warm",      "Cool",
                                                 "Dusty", "Ljus", "Blasse", "P&apos;tit"};
    static constexpr std::string_view colors[] = {
        "Red",         "Blue",      "Ochre", "Teal",    "Umber", "Magenta",           "Vermilion",
        "Himmelsblau", "Grön jord", "Rosé",  "Кобальт", "茜色",  "Black &amp; White", "Orange 🍊"};
    std::string text(random_.pick(tones));
    text.append(" ").append(random_.pick(colors));
    return text.append(" ").append(std::to_string(random_.below(10000)));
  }

  std::string identifier() {
    static constexpr char hexadecimal[] = "0123456789abcdef";
    std::string text = "id-";
    for (int i = 0; i < 12; ++i) text.push_back(hexadecimal[random_.below(16)]);
    return text;
  }

  void changes() {
    out_.leaf("ChangeHistory", date_time());
    if (random_.once_in(8)) out_.leaf("ChangeHistory", date_time());
  }

  void custom_attribute() {
    Element attribute(out_, "CustomAttribute");
    out_.leaf("Name", "Attribute " + std::to_string(random_.below(100)));
    Element value(out_, "ValueChoice");
    switch (random_.below(3)) {
      case 0:
        out_.leaf("DoubleValue", number(-1000000, 1000000, 3));
        break;
      case 1:
        out_.leaf("IntegerValue", std::to_string(random_.between(-100000, 100000)));
        break;
      default:
        out_.leaf("StringValue", "Lot " + std::to_string(random_.below(100000)));
        break;
    }
  }

  void owner() {
    Element owner(out_, "Owner");
    {
      Element person(out_, "Person");
      out_.leaf("Name", "Åsa Lindqvist");
      out_.leaf("ContactInfo", "asa@example.org");
    }
    out_.leaf("Copyright", "public domain");
    out_.leaf("Company", "Färgverket");
  }

  void preamble() {
    Element preamble(out_, "Preamble");
    {
      Element header(out_, "Header");
      out_.leaf("Creator", "bench");
      out_.leaf("CreatorVersion", "1");
      out_.leaf("ChangeHistory", date_time());
      out_.leaf("Purpose", "Measuring");
      out_.leaf("Name", name_of(profile_));
    }
    owner();
    Element version(out_, "Version");
    out_.leaf("Version", "1.0");
  }

  void device() {
    static constexpr std::string_view models[] = {"Bänk 45", "Handheld 8", "Scan 900"};
    static constexpr std::string_view classes[] = {"DeviceClass_Spot", "DeviceClass_Scanning"};
    Element device(out_, "Device");
    out_.leaf("Manufacturer", "Färgverket AB");
    out_.leaf("Model", random_.pick(models));
    out_.leaf("SerialNumber", "FV-" + std::to_string(random_.between(1000, 9999)));
    out_.leaf("DeviceClass", random_.pick(classes));
    out_.leaf("FirmwareVersion", "4.1." + std::to_string(random_.below(10)));
    out_.leaf("CalibrationState", "CalibrationState_Calibrated",
              {{"CalibrationDateTime", date_time()}});
    Element settings(out_, "DeviceSettings");
    out_.leaf("Aperture", std::to_string(random_.between(2, 30)));
    out_.leaf("GlassCompensation", random_.once_in(4) ? "true" : "false");
    out_.leaf("Averaging", "true", {{"AveragingValue", std::to_string(random_.between(2, 9))}});
  }

  // The rows that every specification begins with.
  void filter_and_changes() {
    static constexpr std::string_view filters[] = {"Filter_None", "Filter_UVExcluded",
                                                   "Filter_UVD65"};
    out_.leaf("DeviceFilter", random_.pick(filters));
    out_.leaf("DevicePolarization", random_.once_in(3) ? "true" : "false");
    out_.leaf("ChangeHistory", date_time());
    out_.leaf("Spectrum", "Spectrum_Reflectance");
  }

  void illumination() {
    static constexpr std::string_view illuminants[] = {"Illuminant_D50", "Illuminant_D65",
                                                       "Illuminant_A", "Illuminant_F11"};
    Element options(out_, "IlluminationOptions");
    switch (random_.below(8)) {
      case 0:
        out_.leaf("ColorTemperature", std::to_string(random_.between(2700, 9300)));
        break;
      case 1: {
        Element white(out_, "WhitePointChromaticity");
        out_.leaf("CoordinateX", number(3000, 3600, 4));
        out_.leaf("CoordinateY", number(3000, 3600, 4));
        break;
      }
      default:
        out_.leaf("Illuminant", random_.pick(illuminants));
        break;
    }
  }

  std::string_view field_of_view() {
    return random_.once_in(3) ? "FieldOfView_10_Degree" : "FieldOfView_2_Degree";
  }

  void geometry() {
    Element geometry(out_, "GeometryChoice");
    switch (random_.below(4)) {
      case 0:
        out_.leaf("SphereGeometry", "Sphere_Included");
        break;
      case 1: {
        Element angle(out_, "BSDFAngle");
        out_.leaf("IlluminantAngle", "45");
        out_.leaf("Aspecular", number(-150, 1100, 1));
        out_.empty("Azimuth");
        break;
      }
      default:
        out_.leaf("Angle", "45");
        break;
    }
  }

  void spectral_specification() {
    Element specification(out_, "ColorSpaceSpecificationSpectrumSpectral");
    device();
    filter_and_changes();
    geometry();
    out_.leaf("ASTM_Table", random_.once_in(2) ? "E308_Table5" : "E308_Table6");
  }

  void tristimulus_specification() {
    if (random_.once_in(8)) {
      out_.empty("ColorSpaceSpecificationSpectrumTristimulus", {{"xsi:nil", "true"}});
      return;
    }
    Element specification(out_, "ColorSpaceSpecificationSpectrumTristimulus");
    filter_and_changes();
    illumination();
    out_.leaf("FieldOfView", field_of_view());
  }

  void generic_specification() {
    if (random_.once_in(4)) {
      out_.empty("ColorSpaceSpecificationSpectrumGeneric", {{"xsi:nil", "true"}});
      return;
    }
    Element specification(out_, "ColorSpaceSpecificationSpectrumGeneric",
                          {{"Comments", "measured twice"}});
    filter_and_changes();
    illumination();
    out_.leaf("FieldOfView", field_of_view());
    out_.leaf("Gamma", number(1800, 2600, 3));
  }

  void spectral_space() {
    Element space(out_, "ColorSpaceSpectral", {{"Name", "Reflectance"}});
    changes();
    spectral_specification();
    const bool is_wide = random_.once_in(2);
    const int first = is_wide ? 380 : 400;
    const int last = is_wide ? 730 : 700;
    const int decimals = random_.once_in(3) ? 6 : 4;
    std::int64_t value = random_.between(20, 900);
    for (int wavelength = first; wavelength <= last; wavelength += 10) {
      value = std::llabs(value + random_.between(-60, 60));
      const std::int64_t tail = decimals == 6 ? random_.between(0, 999) : random_.between(0, 9);
      out_.leaf("ReflectancePoint", decimal(value * (decimals == 6 ? 1000 : 10) + tail, decimals),
                {{"Wavelength", std::to_string(wavelength)}});
    }
  }

  void lab_space() {
    Element space(out_, "ColorSpaceCIELab", {{"Name", "CIELab"}});
    changes();
    tristimulus_specification();
    out_.leaf("L", number(0, 100000, 3));
    out_.leaf("A", number(-128000, 128000, 3));
    out_.leaf("B", number(-128000, 128000, 3));
  }

  void rgb_space(std::string_view name = "ColorSpaceRGB") {
    Element space(out_, name);
    changes();
    tristimulus_specification();
    out_.leaf("Red", number(0, 1000000, 6));
    out_.leaf("Green", number(0, 1000000, 6));
    out_.leaf("Blue", number(0, 1000000, 6));
    if (random_.once_in(10)) out_.leaf("Alpha", ratio());
    out_.leaf("ColorDepth", random_.once_in(4) ? "ColorDepth_16" : "ColorDepth_8");
  }

  struct Coordinate {
    std::string_view name;
    std::int64_t low;
    std::int64_t high;
  };

  // A space of coordinates in thousandths.
  void simple_space(std::string_view name, bool is_tristimulus,
                    std::initializer_list<Coordinate> coordinates) {
    Element space(out_, name, {{"UniqueID", identifier()}});
    changes();
    if (is_tristimulus) {
      tristimulus_specification();
    } else {
      generic_specification();
    }
    for (const Coordinate& coordinate : coordinates) {
      out_.leaf(coordinate.name, number(coordinate.low, coordinate.high, 3));
    }
  }

  void ink_space() {
    const bool has_more = random_.once_in(3);
    if (has_more) {
      out_.open("ColorSpaceCMYK", {{"xsi:type", "Zol:ColorSpaceCMYKPlusNType"}});
    } else {
      out_.open("ColorSpaceCMYK", {});
    }
    changes();
    generic_specification();
    for (std::string_view ink : {"Cyan", "Magenta", "Yellow", "Black"}) {
      out_.leaf(ink, percentage());
    }
    if (random_.once_in(2)) {
      Element spot(out_, "SpotColor");
      out_.leaf("Name", color_name());
      out_.leaf("Percentage", percentage());
    }
    if (has_more) {
      out_.leaf("ColorSpaceName", "CMYK and more");
      for (std::string_view channel : {"Orange", "Violet"}) {
        Element color(out_, "Color");
        out_.leaf("Name", channel);
        out_.leaf("Value", percentage());
      }
    }
    out_.close("ColorSpaceCMYK");
  }

  void density_space() {
    static constexpr std::string_view filters[] = {"Filter_Cyan", "Filter_Magenta", "Filter_Yellow",
                                                   "Filter_Visual"};
    Element space(out_, "ColorSpaceDensity", {{"Name", "Status T"}});
    changes();
    generic_specification();
    for (std::string_view filter : filters) {
      out_.leaf("Density", number(0, 2500, 3),
                {{"DensityStatus", "Status_T"}, {"DensityFilter", std::string(filter)}});
    }
  }

  void generic_space() {
    Element space(out_, "ColorSpaceGeneric", {{"Name", "Own axes"}});
    changes();
    generic_specification();
    for (int i = 0; i < 3; ++i) {
      Element axis(out_, "Axis");
      out_.leaf("AxisName", "Axis " + std::to_string(i));
      Element value(out_, "AxisValueChoice");
      if (random_.once_in(4)) {
        out_.leaf("AxisStringValue", "none");
      } else {
        out_.leaf("AxisFloatingPointValue", number(-10000, 10000, 2),
                  {{"AxisNominalMax", "100"}, {"AxisNominalMin", "-100"}});
      }
    }
  }

  void recipe_space() {
    Element space(out_, "ColorSpaceRecipe", {{"Name", "Formula"}});
    changes();
    generic_specification();
    for (int i = 0; i < 3; ++i) {
      Element element(out_, "ColorantElement");
      {
        Element colorant(out_, "Colorant");
        if (i == 0) custom_attribute();
        out_.leaf("Name", color_name());
        out_.leaf("Manufacturer", "Färgverket AB");
        out_.leaf("PartNumber", "P-" + std::to_string(random_.below(1000)));
        out_.leaf("Density", number(800, 1900, 3));
      }
      out_.leaf("Contribution", ratio());
    }
  }

  void any_space() {
    switch (random_.below(10)) {
      case 0:
        return ink_space();
      case 1:
        return density_space();
      case 2:
        return generic_space();
      case 3:
        return recipe_space();
      case 4:
        return spectral_space();
      case 5:
        return rgb_space("ColorSpaceSRGB");
      case 6:
        return simple_space("ColorSpaceCIELCh", true,
                            {{"L", 0, 100000}, {"C", 0, 150000}, {"H", 0, 359999}});
      case 7:
        return simple_space("ColorSpaceCIEXYZ", true,
                            {{"X", 0, 1000}, {"Y", 0, 1000}, {"Z", 0, 1000}});
      case 8:
        return simple_space("ColorSpaceHSV", false,
                            {{"Hue", 0, 359999}, {"Saturation", 0, 1000}, {"Value", 0, 1000}});
      default:
        return simple_space("ColorSpaceYUV", false,
                            {{"Y", 0, 1000}, {"U", -436, 436}, {"V", -615, 615}});
    }
  }

  void substrate() {
    switch (random_.below(3)) {
      case 0: {
        Element paper(out_, "SubstratePaper");
        out_.leaf("PartNumber", "KR-" + std::to_string(random_.below(200)));
        out_.leaf("PaperThickness", number(50, 300, 3));
        out_.leaf("PaperType", "kraft, bleached");
        break;
      }
      case 1: {
        Element metal(out_, "SubstrateMetal");
        out_.leaf("MetalWeight", number(100, 3000, 1));
        out_.leaf("MetalType", "aluminium");
        break;
      }
      default: {
        Element film(out_, "SubstrateFilm");
        out_.leaf("FilmType", "polyester");
        break;
      }
    }
  }

  void tag() {
    Element values(out_, "TagValues", {{"UniqueID", identifier()}});
    {
      Element tag(out_, "Tag", {{"Name", "Season"}});
      out_.empty("Category", {{"Name", "Fashion"}});
    }
    if (random_.once_in(2)) {
      out_.leaf("TextValue", "autumn");
    } else {
      out_.leaf("NumberValue", number(-5000, 5000, 2));
    }
  }

  void spectral_color() {
    Element color(out_, "Color", {{"ColorName", color_name()}, {"UniqueID", identifier()}});
    changes();
    spectral_space();
  }

  void palette_color() {
    Element color(out_, "Color",
                  {{"ColorName", color_name()}, {"ColorNumber", std::to_string(++color_number_)}});
    changes();
    lab_space();
    rgb_space();
  }

  void palette() {
    Element palette(out_, "Palette", {{"PaletteName", color_name()}, {"PaletteVersion", "2"}});
    changes();
    Element set(out_, "ColorSet", {{"ColorSetName", color_name()}, {"UniqueID", identifier()}});
    changes();
    for (int i = 0; i < 8; ++i) palette_color();
  }

  void mixed_color() {
    Element color(
        out_, "Color",
        {{"ColorName", color_name()}, {"UniqueID", identifier()}, {"Comments", "as delivered"}});
    if (random_.once_in(3)) custom_attribute();
    changes();
    if (random_.once_in(4)) owner();
    if (random_.once_in(2)) out_.leaf("SemanticAssociation", "earth &amp; clay");
    const auto spaces = random_.between(1, 3);
    for (std::int64_t i = 0; i < spaces; ++i) any_space();
    if (random_.once_in(2)) substrate();
    if (random_.once_in(3)) tag();
  }

  void function() {
    switch (random_.below(4)) {
      case 0: {
        Element function(out_, "FunctionDE2000");
        out_.leaf("Result", number(0, 5000000, 6));
        for (std::string_view weight : {"Param_l", "Param_c", "Param_h"}) out_.leaf(weight, "1");
        break;
      }
      case 1: {
        Element function(out_, "FunctionDECMC");
        out_.leaf("Result", number(0, 5000000, 6));
        out_.leaf("Param_l", "2");
        out_.leaf("Param_c", "1");
        break;
      }
      case 2: {
        Element function(out_, "FunctionGeneric");
        out_.leaf("Name", "Own difference");
        Element parameters(out_, "Parameters");
        out_.leaf("Name", "weight");
        Element value(out_, "ValueChoice");
        out_.leaf("Double", ratio());
        break;
      }
      default: {
        Element function(out_, "FunctionDE");
        out_.leaf("Result", number(0, 5000000, 6));
        break;
      }
    }
  }

  void tolerance() {
    Element tolerance(out_, "Tolerance", {{"Name", "Customer&apos;s own"}});
    {
      Element limits(out_, "Limits");
      out_.leaf("HighTolerance", number(1, 50, 1));
      out_.leaf("LowTolerance", "0.0");
    }
    out_.leaf("PrimaryIlluminant", "Illuminant_D50");
    function();
  }

  void quality_control() {
    Element record(
        out_, "ColorQualityControl",
        {{"Name", "Run " + std::to_string(random_.below(10000))}, {"UniqueID", identifier()}});
    changes();
    for (int i = 0; i < 2; ++i) {
      Element pair(out_, "StandardAndMeasurement");
      const auto measurements = random_.between(1, 3);
      for (std::int64_t j = 0; j < measurements; ++j) {
        Element measurement(out_, "Measurement");
        device();
        palette_color();
        function();
      }
      if (random_.once_in(5)) {
        out_.empty("Standard", {{"xsi:nil", "true"}});
        continue;
      }
      Element standard(out_, "Standard");
      device();
      palette_color();
      tolerance();
    }
    {
      Element sample(out_, "PhysicalSample");
      out_.leaf("Coating", "water-based varnish");
      {
        Element process(out_, "Process");
        out_.leaf("Name", "Flexography");
        out_.leaf("Thickness", number(1, 90, 4));
      }
      Element spot(out_, "SampleSpot");
      out_.leaf("Backing", "Backing_Black");
      out_.leaf("ProductionDate", date_time());
      substrate();
      Element specification(out_, "Specification");
      out_.leaf("SampleWidth", number(50, 500, 1));
      out_.leaf("SampleHeight", number(50, 500, 1));
    }
    tolerance();
  }

  Profile profile_;
  std::size_t size_;
  Random random_;
  Markup out_;
  int color_number_ = 0;
};

}  // namespace

const char* name_of(Profile profile) {
  switch (profile) {
    case Profile::spectra:
      return "spectra";
    case Profile::palettes:
      return "palettes";
    case Profile::mixed:
      return "mixed";
  }
  return "";
}

std::string make_document(Profile profile, std::size_t size) {
  return DocumentWriter(profile, size).write();
}

}  // namespace bench
