#include "tools/color_values.h"

#include <initializer_list>
#include <iterator>
#include <tuple>

#include "model/Zol.h"
#include "tools/text.h"

using zol_v2::ColorType;
using zol_v2::sg_ColorSpace;

namespace {

using Visit = std::function<void(const ColorPlace&, const ColorType&)>;

void visit_palette(const zol_v2::PaletteType& palette, const Visit& visit) {
  for (unsigned i = 0; i < palette.size_ColorSet(); ++i) {
    const zol_v2::ColorSetType& set = palette.get_ColorSet(i);
    const ColorPlace place{utf8(palette.get_PaletteName()), utf8(set.get_ColorSetName())};
    for (unsigned j = 0; j < set.size_Color(); ++j) visit(place, set.get_Color(j));
  }
}

void visit_record(const zol_v2::ColorQualityControlType& record, const Visit& visit) {
  const std::string name = utf8(record.get_Name());
  for (unsigned i = 0; i < record.size_StandardAndMeasurement(); ++i) {
    const zol_v2::StandardAndMeasurementType& pair = record.get_StandardAndMeasurement(i);
    for (unsigned j = 0; j < pair.size_Measurement(); ++j) {
      visit({name, "Measurement"}, pair.get_Measurement(j).get_Color());
    }
    if (!pair.get_Standard().isnil_Standard()) {
      visit({name, "Standard"}, pair.get_Standard().get_Color());
    }
  }
}

using Coordinates = std::vector<Coordinate>;

template <class Space>
struct Axis {
  const char* name;
  double (Space::*get)() const;
};

template <class Space>
Coordinates numbers(const Space& space, std::initializer_list<Axis<Space>> axes) {
  Coordinates result;
  for (const Axis<Space>& axis : axes) {
    result.push_back({axis.name, number_text((space.*axis.get)())});
  }
  return result;
}

template <class Rgb>
Coordinates rgb(const Rgb& space) {
  Coordinates result = numbers<Rgb>(
      space, {{"Red", &Rgb::get_Red}, {"Green", &Rgb::get_Green}, {"Blue", &Rgb::get_Blue}});
  if (space.isset_Alpha()) result.push_back({"Alpha", number_text(space.get_Alpha())});
  return result;
}

template <class Xyz>
Coordinates xyz(const Xyz& space) {
  return numbers<Xyz>(space, {{"X", &Xyz::get_X}, {"Y", &Xyz::get_Y}, {"Z", &Xyz::get_Z}});
}

template <class Chromaticity>
Coordinates chromaticity(const Chromaticity& space) {
  return numbers<Chromaticity>(
      space,
      {{"x", &Chromaticity::get_X}, {"y", &Chromaticity::get_Y}, {"Y", &Chromaticity::get_CapY}});
}

template <class Space>
void add_spot_colors(const Space& space, Coordinates* result) {
  for (unsigned i = 0; i < space.size_SpotColor(); ++i) {
    const zol_v2::SpotColorType& spot = space.get_SpotColor(i);
    result->push_back({utf8(spot.get_Name()), number_text(spot.get_Percentage())});
  }
}

// Also an extension to more channels that stands in the element of the plain space.
Coordinates cmyk(const zol_v2::ColorSpaceCMYKType& space) {
  using Cmyk = zol_v2::ColorSpaceCMYKType;
  Coordinates result = numbers<Cmyk>(space, {{"Cyan", &Cmyk::get_Cyan},
                                             {"Magenta", &Cmyk::get_Magenta},
                                             {"Yellow", &Cmyk::get_Yellow},
                                             {"Black", &Cmyk::get_Black}});
  add_spot_colors(space, &result);
  if (const auto* more = dynamic_cast<const zol_v2::ColorSpaceCMYKPlusNType*>(&space)) {
    for (unsigned i = 0; i < more->size_Color(); ++i) {
      result.push_back(
          {utf8(more->get_Color(i).get_Name()), number_text(more->get_Color(i).get_Value())});
    }
  }
  return result;
}

Coordinates vantiline(const zol_v2::ColorSpaceOMBRELLVantilineType& space) {
  using Space = zol_v2::ColorSpaceOMBRELLVantilineType;
  Coordinates result = numbers<Space>(space, {{"Cyan", &Space::get_Cyan},
                                              {"Magenta", &Space::get_Magenta},
                                              {"Yellow", &Space::get_Yellow},
                                              {"Black", &Space::get_Black},
                                              {"Orange", &Space::get_Orange},
                                              {"Green", &Space::get_Green}});
  add_spot_colors(space, &result);
  return result;
}

template <class Generic>
Coordinates named_axes(const Generic& space) {
  Coordinates result;
  for (unsigned i = 0; i < space.size_Axis(); ++i) {
    const zol_v2::AxisType& axis = space.get_Axis(i);
    const zol_v2::AxisValueChoice& choice = axis.get_AxisValueChoice();
    const bool is_text = choice.getchosen() == zol_v2::AxisValueChoice::chosen_AxisStringValue;
    result.push_back(
        {utf8(axis.get_AxisName()),
         is_text ? utf8(choice.get_AxisStringValue())
                 : number_text(choice.get_AxisFloatingPointValue().get_FloatingPointValueType())});
  }
  return result;
}

Coordinates densities(const zol_v2::ColorSpaceDensityType& space) {
  Coordinates result;
  for (unsigned i = 0; i < space.size_Density(); ++i) {
    const zol_v2::DensityType& density = space.get_Density(i);
    result.push_back({utf8(density.get_DensityStatus()) + ' ' + utf8(density.get_DensityFilter()),
                      number_text(density.get_DensityType())});
  }
  return result;
}

Coordinates recipe(const zol_v2::ColorSpaceRecipeType& space) {
  Coordinates result;
  for (unsigned i = 0; i < space.size_ColorantElement(); ++i) {
    const zol_v2::ColorantElementType& element = space.get_ColorantElement(i);
    result.push_back(
        {utf8(element.get_Colorant().get_Name()), number_text(element.get_Contribution())});
  }
  return result;
}

Coordinates fan_deck(const zol_v2::ColorSpaceOMBRELLType& space) {
  const zol_v2::ColorName& name = space.get_ColorName();
  return {{"FamilyName", utf8(space.get_FamilyName())},
          {"ColorName", utf8(name.get_PrefixName()) + ' ' + utf8(name.get_BaseName()) + ' ' +
                            utf8(name.get_SuffixName())},
          {"Page", utf8(space.get_Page())}};
}

// By the number of the selection.
constexpr const char* k_space_names[] = {"Recipe",
                                         "OMBRELL",
                                         "Generic",
                                         "EmissiveGeneric",
                                         "Density",
                                         "RGB",
                                         "SRGB",
                                         "AdobeRGB",
                                         "CMYKPlusN",
                                         "AdobeWideGamutRGB",
                                         "Spectral",
                                         "EmissiveSpectral",
                                         "CIELab",
                                         "CIELCh",
                                         "CIEXYZ",
                                         "EmissiveCIEXYZ",
                                         "CIExyY",
                                         "EmissiveCIExyY",
                                         "CIELuv",
                                         "HSL",
                                         "HSV",
                                         "CMYK",
                                         "OMBRELLVantiline",
                                         "YUV",
                                         "YIQ",
                                         "YBR",
                                         "NCS",
                                         "Munsell"};
static_assert(std::size(k_space_names) == sg_ColorSpace::chosen_ColorSpaceMunsell + 1);

// The two kinds of spectra differ in the names of their rows.
const zol_v2::ReflectancePointType& point(const zol_v2::ColorSpaceSpectralType& space, unsigned i) {
  return space.get_ReflectancePoint(i);
}
const zol_v2::EmissiveSpectralPointType& point(const zol_v2::ColorSpaceEmissiveSpectralType& space,
                                               unsigned i) {
  return space.get_EmissiveSpectralPoint(i);
}
double point_value(const zol_v2::ReflectancePointType& point) {
  return point.get_ReflectancePointType();
}
double point_value(const zol_v2::EmissiveSpectralPointType& point) {
  return point.get_EmissiveSpectralPointType();
}

template <class Spectrum>
Coordinates spectrum(const Spectrum& space, unsigned size) {
  Coordinates result;
  for (unsigned i = 0; i < size; ++i) {
    result.push_back(
        {number_text(point(space, i).get_Wavelength()), number_text(point_value(point(space, i)))});
  }
  return result;
}

template <class Spectrum>
std::optional<SpectralRange> range(const Spectrum& space, unsigned size) {
  if (size == 0) return std::nullopt;
  return SpectralRange{point(space, 0).get_Wavelength(), point(space, size - 1).get_Wavelength(),
                       size};
}

Coordinates coordinates_of(const sg_ColorSpace& space) {
  using namespace zol_v2;
  switch (space.getchosen()) {
    case sg_ColorSpace::chosen_ColorSpaceRecipe:
      return recipe(space.get_ColorSpaceRecipe());
    case sg_ColorSpace::chosen_ColorSpaceOMBRELL:
      return fan_deck(space.get_ColorSpaceOMBRELL());
    case sg_ColorSpace::chosen_ColorSpaceGeneric:
      return named_axes(space.get_ColorSpaceGeneric());
    case sg_ColorSpace::chosen_ColorSpaceEmissiveGeneric:
      return named_axes(space.get_ColorSpaceEmissiveGeneric());
    case sg_ColorSpace::chosen_ColorSpaceDensity:
      return densities(space.get_ColorSpaceDensity());
    case sg_ColorSpace::chosen_ColorSpaceRGB:
      return rgb(space.get_ColorSpaceRGB());
    case sg_ColorSpace::chosen_ColorSpaceSRGB:
      return rgb(space.get_ColorSpaceSRGB());
    case sg_ColorSpace::chosen_ColorSpaceAdobeRGB:
      return rgb(space.get_ColorSpaceAdobeRGB());
    case sg_ColorSpace::chosen_ColorSpaceAdobeWideGamutRGB:
      return rgb(space.get_ColorSpaceAdobeWideGamutRGB());
    case sg_ColorSpace::chosen_ColorSpaceCMYKPlusN:
      return cmyk(space.get_ColorSpaceCMYKPlusN());
    case sg_ColorSpace::chosen_ColorSpaceCMYK:
      return cmyk(space.get_ColorSpaceCMYK());
    case sg_ColorSpace::chosen_ColorSpaceOMBRELLVantiline:
      return vantiline(space.get_ColorSpaceOMBRELLVantiline());
    case sg_ColorSpace::chosen_ColorSpaceSpectral:
      return spectrum(space.get_ColorSpaceSpectral(),
                      space.get_ColorSpaceSpectral().size_ReflectancePoint());
    case sg_ColorSpace::chosen_ColorSpaceEmissiveSpectral:
      return spectrum(space.get_ColorSpaceEmissiveSpectral(),
                      space.get_ColorSpaceEmissiveSpectral().size_EmissiveSpectralPoint());
    case sg_ColorSpace::chosen_ColorSpaceCIELab:
      return numbers<ColorSpaceCIELabType>(space.get_ColorSpaceCIELab(),
                                           {{"L", &ColorSpaceCIELabType::get_L},
                                            {"A", &ColorSpaceCIELabType::get_A},
                                            {"B", &ColorSpaceCIELabType::get_B}});
    case sg_ColorSpace::chosen_ColorSpaceCIELCh:
      return numbers<ColorSpaceCIELChType>(space.get_ColorSpaceCIELCh(),
                                           {{"L", &ColorSpaceCIELChType::get_L},
                                            {"C", &ColorSpaceCIELChType::get_C},
                                            {"H", &ColorSpaceCIELChType::get_H}});
    case sg_ColorSpace::chosen_ColorSpaceCIELuv:
      return numbers<ColorSpaceCIELuvType>(space.get_ColorSpaceCIELuv(),
                                           {{"L", &ColorSpaceCIELuvType::get_L},
                                            {"U", &ColorSpaceCIELuvType::get_U},
                                            {"V", &ColorSpaceCIELuvType::get_V}});
    case sg_ColorSpace::chosen_ColorSpaceCIEXYZ:
      return xyz(space.get_ColorSpaceCIEXYZ());
    case sg_ColorSpace::chosen_ColorSpaceEmissiveCIEXYZ:
      return xyz(space.get_ColorSpaceEmissiveCIEXYZ());
    case sg_ColorSpace::chosen_ColorSpaceCIExyY:
      return chromaticity(space.get_ColorSpaceCIExyY());
    case sg_ColorSpace::chosen_ColorSpaceEmissiveCIExyY:
      return chromaticity(space.get_ColorSpaceEmissiveCIExyY());
    case sg_ColorSpace::chosen_ColorSpaceHSL:
      return numbers<ColorSpaceHSLType>(space.get_ColorSpaceHSL(),
                                        {{"Hue", &ColorSpaceHSLType::get_Hue},
                                         {"Saturation", &ColorSpaceHSLType::get_Saturation},
                                         {"Lightness", &ColorSpaceHSLType::get_Lightness}});
    case sg_ColorSpace::chosen_ColorSpaceHSV:
      return numbers<ColorSpaceHSVType>(space.get_ColorSpaceHSV(),
                                        {{"Hue", &ColorSpaceHSVType::get_Hue},
                                         {"Saturation", &ColorSpaceHSVType::get_Saturation},
                                         {"Value", &ColorSpaceHSVType::get_Value}});
    case sg_ColorSpace::chosen_ColorSpaceYUV:
      return numbers<ColorSpaceYUVType>(space.get_ColorSpaceYUV(),
                                        {{"Y", &ColorSpaceYUVType::get_Y},
                                         {"U", &ColorSpaceYUVType::get_U},
                                         {"V", &ColorSpaceYUVType::get_V}});
    case sg_ColorSpace::chosen_ColorSpaceYIQ:
      return numbers<ColorSpaceYIQType>(space.get_ColorSpaceYIQ(),
                                        {{"Y", &ColorSpaceYIQType::get_Y},
                                         {"I", &ColorSpaceYIQType::get_I},
                                         {"Q", &ColorSpaceYIQType::get_Q}});
    case sg_ColorSpace::chosen_ColorSpaceYBR:
      return numbers<ColorSpaceYBRType>(space.get_ColorSpaceYBR(),
                                        {{"Y", &ColorSpaceYBRType::get_Y},
                                         {"B", &ColorSpaceYBRType::get_B},
                                         {"R", &ColorSpaceYBRType::get_R}});
    case sg_ColorSpace::chosen_ColorSpaceNCS:
      return {{"ColorName", utf8(space.get_ColorSpaceNCS().get_ColorName())}};
    case sg_ColorSpace::chosen_ColorSpaceMunsell:
      return {{"CollectionName", utf8(space.get_ColorSpaceMunsell().get_CollectionName())},
              {"ColorName", utf8(space.get_ColorSpaceMunsell().get_ColorName())}};
    case sg_ColorSpace::chosen_none:
      break;
  }
  return {};
}

}  // namespace

void for_each_color(const zol_v2::Zol& document, const Visit& visit) {
  for (unsigned i = 0; i < document.size_Color(); ++i) visit({}, document.get_Color(i));
  for (unsigned i = 0; i < document.size_Palette(); ++i) {
    visit_palette(document.get_Palette(i), visit);
  }
  for (unsigned i = 0; i < document.size_ColorQualityControl(); ++i) {
    visit_record(document.get_ColorQualityControl(i), visit);
  }
}

Rendering rendering_of(const sg_ColorSpace& space) {
  return {space_name(space), coordinates_of(space)};
}

std::string space_name(const sg_ColorSpace& space) {
  const auto number = static_cast<std::size_t>(space.getchosen());
  return number < std::size(k_space_names) ? k_space_names[number] : "none";
}

bool SpectralRange::operator<(const SpectralRange& other) const {
  return std::tie(first, last, points) < std::tie(other.first, other.last, other.points);
}

std::string SpectralRange::text() const {
  return number_text(first) + " to " + number_text(last) + " nm, " +
         counted(points, "point", "points");
}

std::optional<SpectralRange> spectral_range(const sg_ColorSpace& space) {
  switch (space.getchosen()) {
    case sg_ColorSpace::chosen_ColorSpaceSpectral:
      return range(space.get_ColorSpaceSpectral(),
                   space.get_ColorSpaceSpectral().size_ReflectancePoint());
    case sg_ColorSpace::chosen_ColorSpaceEmissiveSpectral:
      return range(space.get_ColorSpaceEmissiveSpectral(),
                   space.get_ColorSpaceEmissiveSpectral().size_EmissiveSpectralPoint());
    default:
      return std::nullopt;
  }
}
