// Conversions between colour spaces: against lcms2, against published numbers, and there and back.
#include "colorimetry/spaces.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <cmath>
#include <limits>
#include <random>

#include "colorimetry/light.h"

namespace zol_v2::colorimetry {
namespace {

const Xyz k_d50 = {0.9642, 1, 0.8249};
const Xyz k_d65 = {0.95047, 1, 1.08883};

// Tristimulus values of real colours and a bit beyond.
class Colours {
 public:
  Xyz next() { return {number_(random_), number_(random_), number_(random_)}; }
  Rgb next_rgb() { return {share_(random_), share_(random_), share_(random_)}; }

 private:
  std::mt19937 random_{7};
  std::uniform_real_distribution<double> number_{0.0001, 1.2};
  std::uniform_real_distribution<double> share_{0, 1};
};

#define EXPECT_TRIPLE(a, b, c, x, y, z, slack) \
  EXPECT_NEAR(a, x, slack);                    \
  EXPECT_NEAR(b, y, slack);                    \
  EXPECT_NEAR(c, z, slack)

TEST(Spaces, AgreeWithLcms) {
  Colours colours;
  const cmsCIEXYZ white = {k_d50.x, k_d50.y, k_d50.z}, other = {k_d65.x, k_d65.y, k_d65.z};
  for (int i = 0; i < 2000; ++i) {
    const Xyz xyz = colours.next();
    const cmsCIEXYZ from = {xyz.x, xyz.y, xyz.z};
    cmsCIELab lab;
    cmsXYZ2Lab(&white, &lab, &from);
    const Lab ours = lab_of(xyz, k_d50);
    EXPECT_TRIPLE(ours.l, ours.a, ours.b, lab.L, lab.a, lab.b, 1e-9);
    cmsCIELCh lch;
    cmsLab2LCh(&lch, &lab);
    const Lch polar = lch_of(ours);
    EXPECT_TRIPLE(polar.l, polar.c, polar.h, lch.L, lch.C, lch.h, 1e-9);
    cmsCIExyY xyy;
    cmsXYZ2xyY(&xyy, &from);
    const Xyy at = xyy_of(xyz, k_d50);
    EXPECT_TRIPLE(at.x, at.y, at.luminance, xyy.x, xyy.y, xyy.Y, 1e-9);
    cmsCIEXYZ corresponding;
    ASSERT_TRUE(cmsAdaptToIlluminant(&corresponding, &white, &other, &from));
    const Xyz to = adapted(xyz, k_d50, k_d65);
    EXPECT_TRIPLE(to.x, to.y, to.z, corresponding.X, corresponding.Y, corresponding.Z, 1e-9);
  }
}

TEST(Spaces, ComeBack) {
  constexpr double k_slack = 1e-10;
  Colours colours;
  for (int i = 0; i < 2000; ++i) {
    const Xyz xyz = colours.next();
    const auto expect_same = [&](const Xyz& back) {
      EXPECT_TRIPLE(back.x, back.y, back.z, xyz.x, xyz.y, xyz.z, k_slack);
    };
    expect_same(xyz_of(xyy_of(xyz, k_d65)));
    expect_same(xyz_of(lab_of(xyz, k_d65), k_d65));
    expect_same(xyz_of(lab_of(lch_of(lab_of(xyz, k_d65))), k_d65));
    expect_same(xyz_of(luv_of(xyz, k_d65), k_d65));
    expect_same(xyz_of(luv_of(lch_of(luv_of(xyz, k_d65))), k_d65));
    expect_same(xyz_of(hunter_of(xyz, k_d65), k_d65));
    for (const Adaptation method : {Adaptation::bradford, Adaptation::cat02}) {
      expect_same(adapted(adapted(xyz, k_d50, k_d65, method), k_d65, k_d50, method));
    }
    const Rgb rgb = colours.next_rgb();
    const auto expect_same_rgb = [&](const Rgb& back) {
      EXPECT_TRIPLE(back.r, back.g, back.b, rgb.r, rgb.g, rgb.b, k_slack);
    };
    for (const RgbSpace space : {RgbSpace::srgb, RgbSpace::adobe_rgb_1998, RgbSpace::wide_gamut}) {
      expect_same_rgb(rgb_of(xyz_of(rgb, space), space));
    }
    expect_same_rgb(rgb_of(hsl_of(rgb)));
    expect_same_rgb(rgb_of(hsv_of(rgb)));
    expect_same_rgb(rgb_of(yuv_of(rgb)));
    expect_same_rgb(rgb_of(yiq_of(rgb)));
    expect_same_rgb(rgb_of(ybr_of(rgb)));
  }
}

TEST(Spaces, MatricesOfTheRgbSpacesAreThePublishedOnes) {
  struct Case {
    const char* name;
    RgbSpace space;
    Xyz red, green, blue;
    double slack;
  };
  const Case cases[] = {
      {"IEC 61966-2-1, four digits",
       RgbSpace::srgb,
       {0.4124, 0.2126, 0.0193},
       {0.3576, 0.7152, 0.1192},
       {0.1805, 0.0722, 0.9505},
       5e-5},
      {"Adobe RGB (1998), 4.3.5.3, five digits",
       RgbSpace::adobe_rgb_1998,
       {0.57667, 0.29734, 0.02703},
       {0.18556, 0.62736, 0.07069},
       {0.18823, 0.07529, 0.99134},
       2e-5},
      {"wide gamut, whose primaries are quoted with three digits or four",
       RgbSpace::wide_gamut,
       {0.7161046, 0.2581874, 0},
       {0.1009296, 0.7249378, 0.0517813},
       {0.1471858, 0.0168748, 0.7734287},
       6e-4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Xyz red = xyz_of(Rgb{1, 0, 0}, c.space);
    const Xyz green = xyz_of(Rgb{0, 1, 0}, c.space);
    const Xyz blue = xyz_of(Rgb{0, 0, 1}, c.space);
    EXPECT_TRIPLE(red.x, red.y, red.z, c.red.x, c.red.y, c.red.z, c.slack);
    EXPECT_TRIPLE(green.x, green.y, green.z, c.green.x, c.green.y, c.green.z, c.slack);
    EXPECT_TRIPLE(blue.x, blue.y, blue.z, c.blue.x, c.blue.y, c.blue.z, c.slack);
    const Xyz white = xyz_of(Rgb{1, 1, 1}, c.space), named = white_of(c.space);
    EXPECT_TRIPLE(white.x, white.y, white.z, named.x, named.y, named.z, 1e-12);
  }
}

TEST(Spaces, HaveTheCoordinatesThatTheirDefinitionsGive) {
  // Mid grey of sRGB, and both pieces of its curve where they meet.
  EXPECT_NEAR(xyz_of(Rgb{0.5, 0.5, 0.5}, RgbSpace::srgb).y, 0.21404114, 1e-8);
  EXPECT_NEAR(xyz_of(Rgb{0.04, 0.04, 0.04}, RgbSpace::srgb).y, 0.04 / 12.92, 1e-12);
  const Rgb dark = rgb_of(Xyz{0.0031308 * 0.95, 0.0031308, 0.0031308 * 1.09}, RgbSpace::srgb);
  EXPECT_NEAR(dark.g, 0.0404, 2e-4);

  const Hsl hsl = hsl_of(Rgb{0.8, 0.4, 0.2});
  EXPECT_TRIPLE(hsl.hue, hsl.saturation, hsl.lightness, 20, 0.6, 0.5, 1e-12);
  const Hsv hsv = hsv_of(Rgb{0.2, 0.4, 0.8});
  EXPECT_TRIPLE(hsv.hue, hsv.saturation, hsv.value, 220, 0.75, 0.8, 1e-12);
  EXPECT_EQ(hsl_of(Rgb{0.3, 0.3, 0.3}).hue, 0);

  // The ends of the ranges that the format has for television's differences.
  EXPECT_NEAR(yuv_of(Rgb{0, 0, 1}).u, 0.436, 1e-12);
  EXPECT_NEAR(yuv_of(Rgb{1, 0, 0}).v, 0.615, 1e-12);
  EXPECT_NEAR(yiq_of(Rgb{1, 0, 0}).i, 0.5957, 5e-5);
  EXPECT_NEAR(yiq_of(Rgb{1, 0, 1}).q, 0.5226, 5e-5);
  const Ybr blue = ybr_of(Rgb{0, 0, 1});
  EXPECT_TRIPLE(blue.y, blue.b, blue.r, 0.114, 1, 0.5 - 0.114 / 1.402, 1e-12);

  // Luv and Hunter of a colour, by hand from the formulas.
  const Luv luv = luv_of({0.2, 0.25, 0.3}, k_d65);
  EXPECT_TRIPLE(luv.l, luv.u, luv.v, 57.075421, -24.404755, -3.278646, 1e-5);
  const HunterLab hunter = hunter_of({0.2, 0.25, 0.3}, {0.98041, 1, 1.18103});
  EXPECT_TRIPLE(hunter.l, hunter.a, hunter.b, 50, -16.101381, -0.562161, 1e-5);
}

TEST(Spaces, WhiteIsNeutralAndBlackIsBlack) {
  for (const Xyz& white : {k_d50, k_d65}) {
    const Lab lab = lab_of(white, white);
    EXPECT_TRIPLE(lab.l, lab.a, lab.b, 100, 0, 0, 1e-12);
    const Luv luv = luv_of(white, white);
    EXPECT_TRIPLE(luv.l, luv.u, luv.v, 100, 0, 0, 1e-12);
    const HunterLab hunter = hunter_of(white, white);
    EXPECT_TRIPLE(hunter.l, hunter.a, hunter.b, 100, 0, 0, 1e-12);
    EXPECT_EQ(xyz_of(Lab{0, 0, 0}, white), (Xyz{0, 0, 0}));
    EXPECT_EQ(xyz_of(Luv{0, 0, 0}, white), (Xyz{0, 0, 0}));
    EXPECT_EQ(xyz_of(hunter_of({}, white), white), (Xyz{0, 0, 0}));
    const Luv black = luv_of({}, white);
    EXPECT_TRIPLE(black.l, black.u, black.v, 0, 0, 0, 1e-12);
    const Xyy at = xyy_of({}, white);
    EXPECT_NEAR(at.x, white.x / (white.x + white.y + white.z), 1e-12);
    EXPECT_EQ(xyz_of(at), (Xyz{0, 0, 0}));
    for (const Adaptation method : {Adaptation::bradford, Adaptation::cat02}) {
      const Xyz to = adapted(white, white, {0.9, 1, 0.7}, method);
      EXPECT_TRIPLE(to.x, to.y, to.z, 0.9, 1, 0.7, 1e-12);
    }
  }
}

TEST(Spaces, HueStaysBelowAWholeTurn) {
  EXPECT_EQ(lch_of(Lab{50, 10, -1e-18}).h, 0);
  EXPECT_EQ(lch_of(Lab{50, 0, 0}).h, 0);
  EXPECT_LT(hsv_of(Rgb{1, 0, 1e-18}).hue, 360);
}

TEST(Spaces, GamutIsSaid) {
  EXPECT_TRUE(is_in_gamut({0, 0.5, 1}));
  EXPECT_TRUE(is_in_gamut({-0.0019, 0.5, 1.0019}));
  EXPECT_FALSE(is_in_gamut({-0.002, 0.5, 1}));
  EXPECT_FALSE(is_in_gamut({0, 0.5, 1.002}));
  EXPECT_FALSE(is_in_gamut({NAN, 0, 0}));
  const auto bytes = bytes_of({-3, 0.5, 1e300});
  EXPECT_EQ(bytes[0], 0);
  EXPECT_EQ(bytes[1], 128);
  EXPECT_EQ(bytes[2], 255);
}

TEST(Spaces, TakeWhatIsNoNumber) {
  const double odd[] = {NAN, std::numeric_limits<double>::infinity(), -1e308, 1e308, -1, 0};
  for (const double x : odd) {
    for (const double y : odd) {
      const Xyz xyz = {x, y, x};
      (void)xyz_of(lab_of(xyz, k_d50), k_d50);
      (void)lab_of(lch_of(Lab{x, y, x}));
      (void)xyz_of(luv_of(xyz, k_d50), xyz);
      (void)xyz_of(hunter_of(xyz, k_d50), k_d50);
      (void)xyz_of(xyy_of(xyz, k_d50));
      (void)adapted(xyz, xyz, k_d50);
      const Rgb rgb = {x, y, x};
      (void)bytes_of(rgb_of(xyz, RgbSpace::srgb));
      (void)rgb_of(hsl_of(rgb));
      (void)rgb_of(hsv_of(rgb));
      (void)rgb_of(Hsv{x, y, 1});
      EXPECT_TRUE(std::isnan(rgb_of(Hsl{NAN, 1, 0.5}).r));
    }
  }
}

}  // namespace
}  // namespace zol_v2::colorimetry
