#include "bench/peers.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <charconv>
#include <climits>
#include <cstring>
#include <optional>
#include <pugixml.hpp>
#include <string_view>
#include <utility>
#include <vector>

namespace bench {
namespace {

// ------------------------------------------------------------------ What a user would load into

struct DateTime {
  int year, month, day, hour, minute;
  float second;
  int offset_minutes;
};

struct Owner {
  struct Person {
    std::string name;
    std::string contact_info;
  };
  std::vector<Person> persons;
  std::vector<std::string> copyrights;
  std::vector<std::string> companies;
};

struct Preamble {
  std::string creator, creator_version, purpose, name;
  std::vector<DateTime> changes;
  Owner owner;
  std::string version;
};

struct Device {
  std::string manufacturer, model, serial_number, firmware_version;
  int device_class = -1;
  int calibration_state = -1;
  DateTime calibration_time{};
  unsigned aperture = 0;
  bool glass_compensation = false;
  bool averaging = false;
  int averaging_value = 0;
};

struct Geometry {
  enum Kind { none, sphere, angle, bsdf } kind = none;
  int sphere_geometry = -1;
  double illuminant_angle = 0;
  double aspecular = 0;
};

struct Illumination {
  enum Kind { none, standard, white_point, temperature } kind = none;
  int illuminant = -1;
  double x = 0, y = 0;
  unsigned kelvin = 0;
};

struct Specification {
  bool is_nil = false;
  std::optional<Device> device;
  int filter = -1;
  bool polarization = false;
  std::vector<DateTime> changes;
  int spectrum = -1;
  Geometry geometry;
  Illumination illumination;
  int field_of_view = -1;
  int astm_table = -1;
};

struct ReflectancePoint {
  double wavelength;
  double value;
};

struct SpectralSpace {
  std::string name;
  std::vector<DateTime> changes;
  Specification specification;
  std::vector<ReflectancePoint> points;
};

struct LabSpace {
  std::string name;
  std::vector<DateTime> changes;
  Specification specification;
  double l = 0, a = 0, b = 0;
};

struct RgbSpace {
  std::vector<DateTime> changes;
  Specification specification;
  double red = 0, green = 0, blue = 0;
  std::optional<double> alpha;
  int depth = -1;
};

struct ColorRecord {
  std::string name, unique_id, number;
  std::vector<DateTime> changes;
  std::vector<SpectralSpace> spectra;
  std::vector<LabSpace> labs;
  std::vector<RgbSpace> rgbs;
};

struct ColorSetRecord {
  std::string name, unique_id;
  std::vector<DateTime> changes;
  std::vector<ColorRecord> colors;
};

struct PaletteRecord {
  std::string name, version;
  std::vector<DateTime> changes;
  std::vector<ColorSetRecord> sets;
};

struct Document {
  Preamble preamble;
  std::vector<ColorRecord> colors;
  std::vector<PaletteRecord> palettes;
};

// ------------------------------------------------------------------------- Values out of a text

bool is(const pugi::xml_node& node, const char* name) {
  return std::strcmp(node.name(), name) == 0;
}

bool is(const pugi::xml_attribute& attribute, const char* name) {
  return std::strcmp(attribute.name(), name) == 0;
}

class Extractor {
 public:
  bool extract(const pugi::xml_document& tree, Document* out) {
    const pugi::xml_node root = tree.document_element();
    if (!is(root, "Zol:Zol")) return false;
    for (const pugi::xml_node child : root.children()) {
      if (is(child, "Zol:Color")) {
        read(child, &out->colors.emplace_back());
      } else if (is(child, "Zol:Palette")) {
        read(child, &out->palettes.emplace_back());
      } else if (is(child, "Zol:Preamble")) {
        read(child, &out->preamble);
      } else {
        is_good_ = false;
      }
    }
    return is_good_;
  }

 private:
  template <class Number>
  void read_number(const char* text, Number* out) {
    const char* end = text + std::strlen(text);
    const auto result = std::from_chars(text, end, *out);
    if (result.ec != std::errc() || result.ptr != end) is_good_ = false;
  }

  template <class Number>
  void read_number(const pugi::xml_node& node, Number* out) {
    read_number(node.child_value(), out);
  }

  void read_bool(const pugi::xml_node& node, bool* out) {
    const char* text = node.child_value();
    *out = std::strcmp(text, "true") == 0;
    if (!*out && std::strcmp(text, "false") != 0) is_good_ = false;
  }

  template <std::size_t N>
  void read_enumerated(const pugi::xml_node& node, const char* const (&names)[N], int* out) {
    const char* text = node.child_value();
    for (std::size_t i = 0; i < N; ++i) {
      if (std::strcmp(text, names[i]) == 0) {
        *out = static_cast<int>(i);
        return;
      }
    }
    is_good_ = false;
  }

  // Two digits, or four of a year, and the mark after them.
  bool read_field(const char** text, int width, char mark, int* out) {
    *out = 0;
    for (; width > 0; --width, ++*text) {
      if (**text < '0' || **text > '9') return false;
      *out = *out * 10 + (**text - '0');
    }
    return mark == 0 || *(*text)++ == mark;
  }

  void read_date(const char* text, DateTime* out) {
    is_good_ &= read_field(&text, 4, '-', &out->year) && read_field(&text, 2, '-', &out->month) &&
                read_field(&text, 2, 'T', &out->day) && read_field(&text, 2, ':', &out->hour) &&
                read_field(&text, 2, ':', &out->minute) && read_seconds(&text, &out->second) &&
                read_zone(text, &out->offset_minutes);
  }

  bool read_seconds(const char** text, float* out) {
    int whole = 0;
    if (!read_field(text, 2, 0, &whole)) return false;
    *out = static_cast<float>(whole);
    if (**text != '.') return true;
    float place = 0.1F;
    for (++*text; **text >= '0' && **text <= '9'; ++*text, place /= 10) {
      *out += place * static_cast<float>(**text - '0');
    }
    return true;
  }

  bool read_zone(const char* text, int* out) {
    *out = 0;
    if (*text == 'Z') return text[1] == 0;
    const int sign = *text == '-' ? -1 : 1;
    if (*text != '-' && *text != '+') return false;
    ++text;
    int hours = 0;
    int minutes = 0;
    if (!read_field(&text, 2, ':', &hours) || !read_field(&text, 2, 0, &minutes)) return false;
    *out = sign * (hours * 60 + minutes);
    return *text == 0;
  }

  void add_date(const pugi::xml_node& node, std::vector<DateTime>* out) {
    read_date(node.child_value(), &out->emplace_back());
  }

  // ------------------------------------------------------------------------------- Structures

  void read(const pugi::xml_node& node, Preamble* out) {
    for (const pugi::xml_node part : node.children()) {
      if (is(part, "Zol:Header")) {
        for (const pugi::xml_node child : part.children()) {
          if (is(child, "Zol:Creator")) {
            out->creator = child.child_value();
          } else if (is(child, "Zol:CreatorVersion")) {
            out->creator_version = child.child_value();
          } else if (is(child, "Zol:ChangeHistory")) {
            add_date(child, &out->changes);
          } else if (is(child, "Zol:Purpose")) {
            out->purpose = child.child_value();
          } else if (is(child, "Zol:Name")) {
            out->name = child.child_value();
          } else {
            is_good_ = false;
          }
        }
      } else if (is(part, "Zol:Owner")) {
        read(part, &out->owner);
      } else if (is(part, "Zol:Version")) {
        out->version = part.child("Zol:Version").child_value();
      } else {
        is_good_ = false;
      }
    }
  }

  void read(const pugi::xml_node& node, Owner* out) {
    for (const pugi::xml_node child : node.children()) {
      if (is(child, "Zol:Person")) {
        out->persons.push_back(
            {child.child("Zol:Name").child_value(), child.child("Zol:ContactInfo").child_value()});
      } else if (is(child, "Zol:Copyright")) {
        out->copyrights.emplace_back(child.child_value());
      } else if (is(child, "Zol:Company")) {
        out->companies.emplace_back(child.child_value());
      } else {
        is_good_ = false;
      }
    }
  }

  void read(const pugi::xml_node& node, Device* out) {
    static constexpr const char* classes[] = {"DeviceClass_Spot", "DeviceClass_Scanning",
                                              "DeviceClass_Other"};
    static constexpr const char* states[] = {"CalibrationState_NotCalibrated",
                                             "CalibrationState_Calibrated", "CalibrationState_NA"};
    for (const pugi::xml_node child : node.children()) {
      if (is(child, "Zol:Manufacturer")) {
        out->manufacturer = child.child_value();
      } else if (is(child, "Zol:Model")) {
        out->model = child.child_value();
      } else if (is(child, "Zol:SerialNumber")) {
        out->serial_number = child.child_value();
      } else if (is(child, "Zol:DeviceClass")) {
        read_enumerated(child, classes, &out->device_class);
      } else if (is(child, "Zol:FirmwareVersion")) {
        out->firmware_version = child.child_value();
      } else if (is(child, "Zol:CalibrationState")) {
        read_enumerated(child, states, &out->calibration_state);
        read_date(child.attribute("CalibrationDateTime").value(), &out->calibration_time);
      } else if (is(child, "Zol:DeviceSettings")) {
        read_settings(child, out);
      } else {
        is_good_ = false;
      }
    }
  }

  void read_settings(const pugi::xml_node& node, Device* out) {
    for (const pugi::xml_node child : node.children()) {
      if (is(child, "Zol:Aperture")) {
        read_number(child, &out->aperture);
      } else if (is(child, "Zol:GlassCompensation")) {
        read_bool(child, &out->glass_compensation);
      } else if (is(child, "Zol:Averaging")) {
        read_bool(child, &out->averaging);
        read_number(child.attribute("AveragingValue").value(), &out->averaging_value);
      } else {
        is_good_ = false;
      }
    }
  }

  void read(const pugi::xml_node& node, Specification* out) {
    static constexpr const char* filters[] = {"Filter_None", "Filter_UVExcluded", "Filter_UVD65",
                                              "Filter_Partial", "Filter_Custom"};
    static constexpr const char* spectra[] = {"Spectrum_Reflectance", "Spectrum_Transmittance",
                                              "Spectrum_TotalTransmittance", "Spectrum_Custom"};
    static constexpr const char* views[] = {"FieldOfView_2_Degree", "FieldOfView_10_Degree"};
    static constexpr const char* tables[] = {"E308_Table5", "E308_Table6"};
    for (const pugi::xml_attribute attribute : node.attributes()) {
      if (is(attribute, "xsi:nil")) out->is_nil = std::strcmp(attribute.value(), "true") == 0;
    }
    for (const pugi::xml_node child : node.children()) {
      if (is(child, "Zol:DeviceFilter")) {
        read_enumerated(child, filters, &out->filter);
      } else if (is(child, "Zol:DevicePolarization")) {
        read_bool(child, &out->polarization);
      } else if (is(child, "Zol:ChangeHistory")) {
        add_date(child, &out->changes);
      } else if (is(child, "Zol:Spectrum")) {
        read_enumerated(child, spectra, &out->spectrum);
      } else if (is(child, "Zol:IlluminationOptions")) {
        read(child.first_child(), &out->illumination);
      } else if (is(child, "Zol:FieldOfView")) {
        read_enumerated(child, views, &out->field_of_view);
      } else if (is(child, "Zol:GeometryChoice")) {
        read(child.first_child(), &out->geometry);
      } else if (is(child, "Zol:ASTM_Table")) {
        read_enumerated(child, tables, &out->astm_table);
      } else if (is(child, "Zol:Device")) {
        read(child, &out->device.emplace());
      } else {
        is_good_ = false;
      }
    }
  }

  void read(const pugi::xml_node& choice, Geometry* out) {
    static constexpr const char* spheres[] = {"Sphere_Included", "Sphere_Excluded"};
    if (is(choice, "Zol:Angle")) {
      out->kind = Geometry::angle;
      read_number(choice, &out->illuminant_angle);
    } else if (is(choice, "Zol:SphereGeometry")) {
      out->kind = Geometry::sphere;
      read_enumerated(choice, spheres, &out->sphere_geometry);
    } else if (is(choice, "Zol:BSDFAngle")) {
      out->kind = Geometry::bsdf;
      read_number(choice.child("Zol:IlluminantAngle"), &out->illuminant_angle);
      read_number(choice.child("Zol:Aspecular"), &out->aspecular);
    } else {
      is_good_ = false;
    }
  }

  void read(const pugi::xml_node& choice, Illumination* out) {
    static constexpr const char* illuminants[] = {
        "Illuminant_A",   "Illuminant_B",    "Illuminant_C",     "Illuminant_D50",
        "Illuminant_D55", "Illuminant_D65",  "Illuminant_D75",   "Illuminant_E",
        "Illuminant_F2",  "Illuminant_F3",   "Illuminant_F7",    "Illuminant_F11",
        "Illuminant_F12", "Illuminant_9300", "Illuminant_Custom"};
    if (is(choice, "Zol:Illuminant")) {
      out->kind = Illumination::standard;
      read_enumerated(choice, illuminants, &out->illuminant);
    } else if (is(choice, "Zol:WhitePointChromaticity")) {
      out->kind = Illumination::white_point;
      read_number(choice.child("Zol:CoordinateX"), &out->x);
      read_number(choice.child("Zol:CoordinateY"), &out->y);
    } else if (is(choice, "Zol:ColorTemperature")) {
      out->kind = Illumination::temperature;
      read_number(choice, &out->kelvin);
    } else {
      is_good_ = false;
    }
  }

  void read(const pugi::xml_node& node, SpectralSpace* out) {
    out->name = node.attribute("Name").value();
    for (const pugi::xml_node child : node.children()) {
      if (is(child, "Zol:ReflectancePoint")) {
        ReflectancePoint& point = out->points.emplace_back();
        read_number(child.first_attribute().value(), &point.wavelength);
        read_number(child, &point.value);
      } else if (is(child, "Zol:ChangeHistory")) {
        add_date(child, &out->changes);
      } else if (is(child, "Zol:ColorSpaceSpecificationSpectrumSpectral")) {
        read(child, &out->specification);
      } else {
        is_good_ = false;
      }
    }
  }

  void read(const pugi::xml_node& node, LabSpace* out) {
    out->name = node.attribute("Name").value();
    for (const pugi::xml_node child : node.children()) {
      if (is(child, "Zol:L")) {
        read_number(child, &out->l);
      } else if (is(child, "Zol:A")) {
        read_number(child, &out->a);
      } else if (is(child, "Zol:B")) {
        read_number(child, &out->b);
      } else if (is(child, "Zol:ChangeHistory")) {
        add_date(child, &out->changes);
      } else if (is(child, "Zol:ColorSpaceSpecificationSpectrumTristimulus")) {
        read(child, &out->specification);
      } else {
        is_good_ = false;
      }
    }
  }

  void read(const pugi::xml_node& node, RgbSpace* out) {
    static constexpr const char* depths[] = {"ColorDepth_Infinite", "ColorDepth_8", "ColorDepth_16",
                                             "ColorDepth_32"};
    for (const pugi::xml_node child : node.children()) {
      if (is(child, "Zol:Red")) {
        read_number(child, &out->red);
      } else if (is(child, "Zol:Green")) {
        read_number(child, &out->green);
      } else if (is(child, "Zol:Blue")) {
        read_number(child, &out->blue);
      } else if (is(child, "Zol:Alpha")) {
        read_number(child, &out->alpha.emplace());
      } else if (is(child, "Zol:ColorDepth")) {
        read_enumerated(child, depths, &out->depth);
      } else if (is(child, "Zol:ChangeHistory")) {
        add_date(child, &out->changes);
      } else if (is(child, "Zol:ColorSpaceSpecificationSpectrumTristimulus")) {
        read(child, &out->specification);
      } else {
        is_good_ = false;
      }
    }
  }

  void read(const pugi::xml_node& node, ColorRecord* out) {
    for (const pugi::xml_attribute attribute : node.attributes()) {
      if (is(attribute, "ColorName")) {
        out->name = attribute.value();
      } else if (is(attribute, "UniqueID")) {
        out->unique_id = attribute.value();
      } else if (is(attribute, "ColorNumber")) {
        out->number = attribute.value();
      }
    }
    for (const pugi::xml_node child : node.children()) {
      if (is(child, "Zol:ChangeHistory")) {
        add_date(child, &out->changes);
      } else if (is(child, "Zol:ColorSpaceSpectral")) {
        read(child, &out->spectra.emplace_back());
      } else if (is(child, "Zol:ColorSpaceCIELab")) {
        read(child, &out->labs.emplace_back());
      } else if (is(child, "Zol:ColorSpaceRGB")) {
        read(child, &out->rgbs.emplace_back());
      } else {
        is_good_ = false;
      }
    }
  }

  void read(const pugi::xml_node& node, ColorSetRecord* out) {
    out->name = node.attribute("ColorSetName").value();
    out->unique_id = node.attribute("UniqueID").value();
    for (const pugi::xml_node child : node.children()) {
      if (is(child, "Zol:Color")) {
        read(child, &out->colors.emplace_back());
      } else if (is(child, "Zol:ChangeHistory")) {
        add_date(child, &out->changes);
      } else {
        is_good_ = false;
      }
    }
  }

  void read(const pugi::xml_node& node, PaletteRecord* out) {
    out->name = node.attribute("PaletteName").value();
    out->version = node.attribute("PaletteVersion").value();
    for (const pugi::xml_node child : node.children()) {
      if (is(child, "Zol:ColorSet")) {
        read(child, &out->sets.emplace_back());
      } else if (is(child, "Zol:ChangeHistory")) {
        add_date(child, &out->changes);
      } else {
        is_good_ = false;
      }
    }
  }

  bool is_good_ = true;
};

bool extract(const std::string& text, Document* out) {
  pugi::xml_document tree;
  return tree.load_buffer(text.data(), text.size()) && Extractor().extract(tree, out);
}

// XML_PARSE_HUGE lifts the limit of ten million bytes of look-ahead.
xmlDocPtr parse_with_libxml2(const std::string& text) {
  if (text.size() > INT_MAX) return nullptr;
  return xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                       XML_PARSE_HUGE);
}

template <class Kept>
class KeptValue : public KeptAlive {
 public:
  Kept value;
};

struct FreeLibxml2 {
  void operator()(xmlDocPtr document) const { xmlFreeDoc(document); }
};

struct StringWriter : pugi::xml_writer {
  explicit StringWriter(std::string* out) : text(out) {}
  void write(const void* data, std::size_t size) override {
    text->append(static_cast<const char*>(data), size);
  }
  std::string* text;
};

}  // namespace

bool pugixml_parse(const std::string& text) {
  pugi::xml_document tree;
  return static_cast<bool>(tree.load_buffer(text.data(), text.size()));
}

bool libxml2_parse(const std::string& text) {
  const xmlDocPtr document = parse_with_libxml2(text);
  xmlFreeDoc(document);
  return document != nullptr;
}

bool pugixml_extract(Profile profile, const std::string& text) {
  if (profile == Profile::mixed) return false;
  Document document;
  return extract(text, &document);
}

PugixmlDocument::PugixmlDocument(const std::string& text)
    : document_(std::make_unique<pugi::xml_document>()) {
  document_->load_buffer(text.data(), text.size());
}

PugixmlDocument::~PugixmlDocument() = default;

void PugixmlDocument::save(std::string* out) const {
  out->clear();
  StringWriter writer(out);
  document_->save(writer, "\t");
}

std::unique_ptr<KeptAlive> pugixml_tree(const std::string& text) {
  auto kept = std::make_unique<KeptValue<pugi::xml_document>>();
  if (!kept->value.load_buffer(text.data(), text.size())) return nullptr;
  return kept;
}

std::unique_ptr<KeptAlive> pugixml_structures(Profile profile, const std::string& text) {
  if (profile == Profile::mixed) return nullptr;
  auto kept = std::make_unique<KeptValue<Document>>();
  if (!extract(text, &kept->value)) return nullptr;
  return kept;
}

std::unique_ptr<KeptAlive> libxml2_tree(const std::string& text) {
  auto kept = std::make_unique<KeptValue<std::unique_ptr<xmlDoc, FreeLibxml2>>>();
  kept->value.reset(parse_with_libxml2(text));
  if (kept->value == nullptr) return nullptr;
  return kept;
}

}  // namespace bench
