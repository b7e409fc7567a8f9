// What a document's colour is: under its own conditions, under others, and on a display.
#include "colorimetry/colorimeter.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "colorimetry/colour_documents.h"
#include "colorimetry/difference.h"

namespace zol_v2::colorimetry {
namespace {

using zol_test::color;
using zol_test::element;
using zol_test::lab;
using zol_test::load;
using zol_test::Measured;
using zol_test::number;
using zol_test::space;
using zol_test::spectrum;

const Conditions k_d50_2 = {StandardIlluminant::D50, Observer::degree_2};
const Conditions k_a_2 = {StandardIlluminant::A, Observer::degree_2};
const Conditions k_d65_10 = {StandardIlluminant::D65, Observer::degree_10};

void load_sample(Zol& document, const std::string& name) {
  const std::string path = ZOL_SOURCE_DIR "/examples/documents/" + name;
  ASSERT_EQ(openFile(document, std::wstring(path.begin(), path.end())), 0);
}

// The coordinates there were summed by a program of another language.
TEST(Samples, SpectraHaveTheCoordinatesThatAreWritten) {
  Zol document;
  load_sample(document, "spectra.zol");
  Colorimeter meter;
  int samples = 0, sources = 0;
  for (const ColorType& color : document.each_Color()) {
    for (const sg_ColorSpace& space : color.each_ColorSpace()) {
      if (space.getchosen() == sg_ColorSpace::chosen_ColorSpaceSpectral) {
        const auto from_spectrum = meter.measure(space, k_a_2);
        ASSERT_TRUE(from_spectrum);
        for (const sg_ColorSpace& other : color.each_ColorSpace()) {
          const auto written = meter.measure(other, k_a_2);
          if (!written || written->source != Source::tristimulus) continue;
          // XYZ and chromaticities have six places, a unit of which is 0.0005 of a dark Lab.
          EXPECT_LT(de76(from_spectrum->lab(), written->lab()), 1e-3) << basis_of(*written);
          ++samples;
        }
      }
      if (space.getchosen() == sg_ColorSpace::chosen_ColorSpaceEmissiveSpectral) {
        const auto from_spectrum = meter.measure(space, k_a_2);
        const auto written = meter.measure(color);
        ASSERT_TRUE(from_spectrum && written && written->is_emissive);
        EXPECT_NEAR(from_spectrum->xyz.y / written->xyz.y, 1, 1e-6);
        EXPECT_NEAR(from_spectrum->xyz.x / written->xyz.x, 1, 1e-6);
        EXPECT_FALSE(written->has_white());
        EXPECT_TRUE(std::isnan(written->lab().l));
        EXPECT_TRUE(display_of(*written).is_scaled);
        ++sources;
      }
    }
  }
  EXPECT_GT(samples, 12 * 3);
  EXPECT_EQ(sources, 3);
}

TEST(Samples, NamedColoursShowTheBytesThatTheyWereMadeOf) {
  Zol document;
  load_sample(document, "named-colours.zol");
  Colorimeter meter;
  int count = 0;
  for (const PaletteType& palette : document.each_Palette()) {
    for (const ColorSetType& set : palette.each_ColorSet()) {
      for (const ColorType& color : set.each_Color()) {
        const auto stimulus = meter.measure(color, {&set, &palette});
        ASSERT_TRUE(stimulus) << stimulus.reason();
        EXPECT_EQ(text_of(stimulus->conditions), "D65, 2 degrees");
        EXPECT_FALSE(stimulus->has_default_conditions);
        const Display shown = display_of(*stimulus);
        EXPECT_TRUE(shown.is_in_gamut);
        EXPECT_FALSE(shown.is_adapted);
        for (const sg_ColorSpace& space : color.each_ColorSpace()) {
          if (space.getchosen() != sg_ColorSpace::chosen_ColorSpaceSRGB) continue;
          const ColorSpaceSRGBType& rgb = space.get_ColorSpaceSRGB();
          EXPECT_EQ(shown.bytes, bytes_of({rgb.get_Red(), rgb.get_Green(), rgb.get_Blue()}));
          ++count;
        }
      }
    }
  }
  EXPECT_EQ(count, 550);
}

class ColorimeterTest : public testing::Test {
 protected:
  const ColorType& colour(const std::string& spaces) {
    load(document_, color(spaces));
    return document_.get_Color(0);
  }

  Zol document_;
  Colorimeter meter_;
};

double ramp(int nm) { return 0.1 + 0.002 * (nm - 400); }

TEST_F(ColorimeterTest, TakesTheBestThatThereIs) {
  const std::string xyz =
      space("CIEXYZ", Measured().tristimulus() + "<X>0.3</X><Y>0.4</Y><Z>0.2</Z>");
  const std::string srgb = space("SRGB", Measured().tristimulus() +
                                             "<Red>1</Red><Green>0</Green><Blue>0</Blue>"
                                             "<ColorDepth>ColorDepth_8</ColorDepth>");
  struct Case {
    const char* name;
    std::string spaces;
    unsigned index;
    Source source;
    const char* basis;
  };
  const Case cases[] = {
      {"Lab before all", srgb + spectrum(ramp) + xyz + lab(50, 10, 10), 3, Source::tristimulus,
       "CIELab, for D50, 2 degrees"},
      {"XYZ before a spectrum", spectrum(ramp) + xyz, 1, Source::tristimulus,
       "CIEXYZ, for D50, 2 degrees"},
      {"a spectrum before RGB", srgb + spectrum(ramp), 1, Source::spectrum,
       "Spectral: CIE 15 sum at 1 nm from 360 to 780 nm, Sprague interpolation (CIE 167), end "
       "value "
       "repeated below 400 and above 700 nm, for D50, 2 degrees by default"},
      {"RGB", srgb, 0, Source::rgb, "SRGB, for D65, 2 degrees"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const auto stimulus = meter_.measure(colour(c.spaces));
    ASSERT_TRUE(stimulus) << stimulus.reason();
    EXPECT_EQ(stimulus->space_index, c.index);
    EXPECT_EQ(stimulus->source, c.source);
    EXPECT_EQ(basis_of(*stimulus), c.basis);
  }
}

TEST_F(ColorimeterTest, OtherConditionsComeFromTheSpectrumBeforeAdaptation) {
  Measured at_a;
  at_a.light = "<Illuminant>Illuminant_A</Illuminant>";
  const ColorType& all = colour(lab(50, 10, 10) + lab(51, 20, 30, at_a) + spectrum(ramp));
  const auto own = meter_.measure(all, k_a_2);
  ASSERT_TRUE(own);
  EXPECT_NEAR(own->lab().a, 20, 1e-9);
  const auto summed = meter_.measure(all, k_d65_10);
  ASSERT_TRUE(summed);
  EXPECT_EQ(summed->source, Source::spectrum);
  EXPECT_FALSE(summed->adapted_from);
  EXPECT_EQ(meter_.conditions_of(all).size(), 2u);

  const ColorType& alone = colour(lab(50, 10, 10));
  const auto adapted_one = meter_.measure(alone, k_a_2);
  ASSERT_TRUE(adapted_one);
  EXPECT_EQ(adapted_one->source, Source::adapted);
  EXPECT_EQ(basis_of(*adapted_one),
            "CIELab, for A, 2 degrees, adapted by Bradford from D50, 2 degrees");
  Colorimeter::Options options;
  options.adaptation = Adaptation::none;
  EXPECT_EQ(Colorimeter(options).measure(alone, k_a_2).reason(),
            "there is no spectrum, and CIELab is for D50, 2 degrees");
}

TEST_F(ColorimeterTest, NilledSpecificationsAreThoseOfTheSetOrThePalette) {
  Measured nilled, in_set;
  nilled.light.clear();
  in_set.light = "<Illuminant>Illuminant_F11</Illuminant>";
  in_set.observer = "10";
  const std::string shared = element("CollectionColorSpaceSpecification", in_set.tristimulus());
  const auto check = [&](const std::string& in_palette, const std::string& in_colour_set) {
    load(document_, "<Palette PaletteName='p'>" + std::string(zol_test::k_stamp) + in_palette +
                        "<ColorSet ColorSetName='s'>" + zol_test::k_stamp + in_colour_set +
                        color(lab(50, 10, 10, nilled)) + color(spectrum(ramp)) +
                        "</ColorSet></Palette>");
    const PaletteType& palette = document_.get_Palette(0);
    const ColorSetType& set = palette.get_ColorSet(0);
    std::string texts;
    for (const ColorType& color : set.each_Color()) {
      const auto stimulus = meter_.measure(color, {&set, &palette});
      EXPECT_TRUE(stimulus);
      texts += text_of(stimulus->conditions) + (stimulus->has_default_conditions ? "?" : "") + "; ";
    }
    return texts;
  };
  EXPECT_EQ(check("", ""), "D50, 2 degrees?; D50, 2 degrees?; ");
  EXPECT_EQ(check(shared, ""), "F11, 10 degrees; F11, 10 degrees; ");
  EXPECT_EQ(check("", shared), "F11, 10 degrees; F11, 10 degrees; ");
}

TEST_F(ColorimeterTest, LightsWithoutAWhiteAreSaid) {
  Measured how;
  how.light = "<Illuminant CustomName='shop window'>Illuminant_Custom</Illuminant>";
  const ColorType& custom = colour(lab(50, 10, 10, how));
  const auto stimulus = meter_.measure(custom);
  ASSERT_TRUE(stimulus);
  EXPECT_TRUE(stimulus->has_default_conditions);
  EXPECT_EQ(basis_of(*stimulus), "CIELab, for shop window, 2 degrees, white of D50 by default");
  EXPECT_FALSE(meter_.measure(custom, k_d50_2));
}

TEST_F(ColorimeterTest, DisplaysAreInSrgb) {
  struct Case {
    std::string spaces;
    const char* hex;
    bool is_in_gamut, is_adapted;
  };
  Measured d65;
  d65.light = "<Illuminant>Illuminant_D65</Illuminant>";
  const Case cases[] = {
      {lab(100, 0, 0), "#ffffff", true, true},
      {lab(100, 0, 0, d65), "#ffffff", true, false},
      {lab(0, 0, 0), "#000000", true, true},
      // sRGB's own red, green and blue in CIELAB of D65.
      {lab(53.2408, 80.0925, 67.2032, d65), "#ff0000", true, false},
      {lab(87.7347, -86.1827, 83.1793, d65), "#00ff00", true, false},
      {lab(32.2970, 79.1875, -107.8602, d65), "#0000ff", true, false},
      {lab(50, 120, 0), "", false, true},
      {spectrum([](int) { return 1.0; }), "#ffffff", true, true},
  };
  for (const Case& c : cases) {
    const auto stimulus = meter_.measure(colour(c.spaces));
    ASSERT_TRUE(stimulus);
    const Display shown = display_of(*stimulus);
    EXPECT_EQ(shown.is_in_gamut, c.is_in_gamut);
    EXPECT_EQ(shown.is_adapted, c.is_adapted);
    EXPECT_EQ(c.is_in_gamut ? shown.hex() : "", c.hex);
  }
}

// --- Profiles ----------------------------------------------------------------------------------

std::string profile_element(const std::string& bytes) {
  const lmx::c_binary binary(reinterpret_cast<const unsigned char*>(bytes.data()),
                             static_cast<unsigned>(bytes.size()));
  std::ostringstream text;
  binary.out_base64(text);
  return "<Profile Direction='Profile_Output'><ProfileChoice><ProfileFile>" + text.str() +
         "</ProfileFile></ProfileChoice></Profile>";
}

std::string bytes_of_profile(cmsHPROFILE profile) {
  cmsUInt32Number size = 0;
  EXPECT_TRUE(cmsSaveProfileToMem(profile, nullptr, &size));
  std::string bytes(size, '\0');
  EXPECT_TRUE(cmsSaveProfileToMem(profile, bytes.data(), &size));
  cmsCloseProfile(profile);
  return bytes;
}

// Lightness falls with all inks, chroma follows cyan less magenta: no press is like that.
cmsInt32Number ink_to_lab(const cmsUInt16Number in[], cmsUInt16Number out[], void*) {
  cmsCIELab lab;
  lab.L = 100 - 60 * (in[0] + in[1]) / 65535. / 2 - 30 * in[3] / 65535.;
  lab.a = 40 * (in[1] - in[0]) / 65535.;
  lab.b = 50 * in[2] / 65535.;
  cmsFloat2LabEncodedV2(out, &lab);
  return 1;
}

std::string ink_profile(cmsColorSpaceSignature space, unsigned channels) {
  cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
  cmsSetProfileVersion(profile, 2.1);
  cmsSetDeviceClass(profile, cmsSigOutputClass);
  cmsSetColorSpace(profile, space);
  cmsSetPCS(profile, cmsSigLabData);
  cmsPipeline* table = cmsPipelineAlloc(nullptr, channels, 3);
  cmsStage* grid = cmsStageAllocCLut16bit(nullptr, 3, channels, 3, nullptr);
  EXPECT_TRUE(cmsStageSampleCLut16bit(grid, ink_to_lab, nullptr, 0));
  cmsPipelineInsertStage(table, cmsAT_END, grid);
  EXPECT_TRUE(cmsWriteTag(profile, cmsSigAToB0Tag, table));
  EXPECT_TRUE(cmsWriteTag(profile, cmsSigAToB1Tag, table));
  cmsPipelineFree(table);
  cmsCIEXYZ white = {0.9642, 1, 0.8249};
  EXPECT_TRUE(cmsWriteTag(profile, cmsSigMediaWhitePointTag, &white));
  return bytes_of_profile(profile);
}

std::string cmyk(double c, double m, double y, double k, const Measured& how) {
  return space("CMYK", how.generic() + element("Cyan", number(c)) + element("Magenta", number(m)) +
                           element("Yellow", number(y)) + element("Black", number(k)));
}

std::string rgb(double r, double g, double b, const Measured& how) {
  return space("RGB", how.tristimulus() + element("Red", number(r)) + element("Green", number(g)) +
                          element("Blue", number(b)) + "<ColorDepth>ColorDepth_8</ColorDepth>");
}

TEST_F(ColorimeterTest, DeviceValuesGoThroughTheProfileOfTheDocument) {
  Measured how;
  how.profile = profile_element(ink_profile(cmsSigCmykData, 4));
  const auto inks = Colorimeter().measure(colour(cmyk(100, 50, 0, 0, how)));
  ASSERT_TRUE(inks) << inks.reason();
  EXPECT_EQ(inks->source, Source::profile);
  EXPECT_EQ(basis_of(*inks), "CMYK by the document's ICC profile, for D50, 2 degrees");
  EXPECT_NEAR(inks->lab().l, 55, 0.01);
  EXPECT_NEAR(inks->lab().a, -20, 0.01);
  EXPECT_NEAR(inks->lab().b, 0, 0.01);

  EXPECT_EQ(Colorimeter().measure(colour(rgb(1, 0, 0, {}) + cmyk(100, 50, 0, 0, how)))->space_index,
            1u);
  EXPECT_EQ(Colorimeter().measure(colour(rgb(1, 0, 0, {}) + rgb(0, 1, 0, {})))->space_index, 0u);

  how.profile = profile_element(ink_profile(cmsSig6colorData, 6));
  const auto six = Colorimeter().measure(colour(space(
      "OMBRELLVantiline", how.generic() + "<Cyan>0</Cyan><Magenta>100</Magenta><Yellow>100</Yellow>"
                                          "<Black>0</Black><Orange>7</Orange><Green>3</Green>")));
  ASSERT_TRUE(six) << six.reason();
  EXPECT_NEAR(six->lab().a, 40, 0.01);
  EXPECT_NEAR(six->lab().b, 50, 0.01);

  // sRGB in the clothes of a device: the colours are those of sRGB, up to the profile's precision.
  how.profile = profile_element(bytes_of_profile(cmsCreate_sRGBProfile()));
  const auto device = Colorimeter().measure(colour(rgb(0.8, 0.4, 0.2, how)));
  ASSERT_TRUE(device) << device.reason();
  EXPECT_EQ(device->source, Source::profile);
  EXPECT_EQ(display_of(*device).hex(), "#cc6633");
  const std::string hsv =
      space("HSV", how.generic() + "<Hue>20</Hue><Saturation>0.75</Saturation><Value>0.8</Value>");
  const auto by_hue = Colorimeter().measure(colour(hsv));
  ASSERT_TRUE(by_hue) << by_hue.reason();
  EXPECT_EQ(display_of(*by_hue).hex(), "#cc6633");
}

TEST_F(ColorimeterTest, WithoutAProfileRgbIsShownAndInksAreNot) {
  const auto assumed = meter_.measure(colour(rgb(0.8, 0.4, 0.2, {})));
  ASSERT_TRUE(assumed);
  EXPECT_TRUE(assumed->is_assumed_srgb);
  EXPECT_EQ(display_of(*assumed).hex(), "#cc6633");
  EXPECT_EQ(basis_of(*assumed), "RGB without a profile, read as sRGB, for D65, 2 degrees");
  Colorimeter::Options options;
  options.assume_srgb = false;
  EXPECT_FALSE(Colorimeter(options).measure(colour(rgb(0.8, 0.4, 0.2, {}))));
  EXPECT_EQ(meter_.measure(colour(cmyk(0, 0, 0, 0, {}))).reason(),
            "device values without a profile have no colour");
}

TEST_F(ColorimeterTest, GarbageInAProfileIsRefused) {
  const std::string good = ink_profile(cmsSigCmykData, 4);
  int refused = 0;
  for (std::size_t i = 0; i < good.size(); i += 1 + good.size() / 300) {
    Measured cut, changed;
    cut.profile = profile_element(good.substr(0, i));
    std::string other = good;
    other[i] = static_cast<char>(other[i] ^ 0x5A);
    changed.profile = profile_element(other);
    // A profile that is whole apart from one byte may still be good.
    for (const Measured& how : {cut, changed}) {
      const auto stimulus = Colorimeter().measure(colour(cmyk(10, 20, 30, 40, how)));
      refused += stimulus ? 0 : 1;
      EXPECT_TRUE(!stimulus || std::isfinite(stimulus->xyz.y));
    }
  }
  EXPECT_GT(refused, 100);
  Measured wrong;
  wrong.profile = profile_element(bytes_of_profile(cmsCreate_sRGBProfile()));
  EXPECT_EQ(Colorimeter().measure(colour(cmyk(1, 2, 3, 4, wrong))).reason(),
            "the profile is not one of CMYK");
}

TEST_F(ColorimeterTest, NumbersThatAreNoColourAreRefused) {
  Zol document;
  load(document, color(space("EmissiveCIEXYZ",
                             "<ColorSpaceSpecificationEmissiveTristimulus xsi:nil='true'/>"
                             "<X>INF</X><Y>1</Y><Z>1</Z>")));
  EXPECT_EQ(meter_.measure(document.get_Color(0)).reason(),
            "the numbers of EmissiveCIEXYZ give no colour");
  const std::string chromaticity = Measured().tristimulus() + "<X>0.3</X><Y>0</Y><CapY>0.5</CapY>";
  EXPECT_FALSE(meter_.measure(colour(space("CIExyY", chromaticity))));
  EXPECT_FALSE(meter_.measure(ColorType()));
  EXPECT_FALSE(meter_.measure(sg_ColorSpace(), k_d50_2));
}

}  // namespace
}  // namespace zol_v2::colorimetry
