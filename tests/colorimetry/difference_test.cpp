// Colour differences: published pairs, lcms2 as the judge, and what every difference obeys.
#include "colorimetry/difference.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <cmath>
#include <random>
#include <vector>

namespace zol_v2::colorimetry {
namespace {

struct PublishedPair {
  Lab standard, sample;
  double difference;
};

// G. Sharma, W. Wu, E. N. Dalal, Color Research and Application 30 (2005), table 1.
const PublishedPair k_sharma[] = {
    {{50, 2.6772, -79.7751}, {50, 0, -82.7485}, 2.0425},
    {{50, 3.1571, -77.2803}, {50, 0, -82.7485}, 2.8615},
    {{50, 2.8361, -74.0200}, {50, 0, -82.7485}, 3.4412},
    {{50, -1.3802, -84.2814}, {50, 0, -82.7485}, 1.0000},
    {{50, -1.1848, -84.8006}, {50, 0, -82.7485}, 1.0000},
    {{50, -0.9009, -85.5211}, {50, 0, -82.7485}, 1.0000},
    {{50, 0, 0}, {50, -1, 2}, 2.3669},
    {{50, -1, 2}, {50, 0, 0}, 2.3669},
    {{50, 2.4900, -0.0010}, {50, -2.4900, 0.0009}, 7.1792},
    {{50, 2.4900, -0.0010}, {50, -2.4900, 0.0010}, 7.1792},
    {{50, 2.4900, -0.0010}, {50, -2.4900, 0.0011}, 7.2195},
    {{50, 2.4900, -0.0010}, {50, -2.4900, 0.0012}, 7.2195},
    {{50, -0.0010, 2.4900}, {50, 0.0009, -2.4900}, 4.8045},
    {{50, -0.0010, 2.4900}, {50, 0.0010, -2.4900}, 4.8045},
    {{50, -0.0010, 2.4900}, {50, 0.0011, -2.4900}, 4.7461},
    {{50, 2.5, 0}, {50, 0, -2.5}, 4.3065},
    {{50, 2.5, 0}, {73, 25, -18}, 27.1492},
    {{50, 2.5, 0}, {61, -5, 29}, 22.8977},
    {{50, 2.5, 0}, {56, -27, -3}, 31.9030},
    {{50, 2.5, 0}, {58, 24, 15}, 19.4535},
    {{50, 2.5, 0}, {50, 3.1736, 0.5854}, 1.0000},
    {{50, 2.5, 0}, {50, 3.2972, 0}, 1.0000},
    {{50, 2.5, 0}, {50, 1.8634, 0.5757}, 1.0000},
    {{50, 2.5, 0}, {50, 3.2592, 0.3350}, 1.0000},
    {{60.2574, -34.0099, 36.2677}, {60.4626, -34.1751, 39.4387}, 1.2644},
    {{63.0109, -31.0961, -5.8663}, {62.8187, -29.7946, -4.0864}, 1.2630},
    {{61.2901, 3.7196, -5.3901}, {61.4292, 2.2480, -4.9620}, 1.8731},
    {{35.0831, -44.1164, 3.7933}, {35.0232, -40.0716, 1.5901}, 1.8645},
    {{22.7233, 20.0904, -46.6940}, {23.0331, 14.9730, -42.5619}, 2.0373},
    {{36.4612, 47.8580, 18.3852}, {36.2715, 50.5065, 21.2231}, 1.4146},
    {{90.8027, -2.0831, 1.4410}, {91.1528, -1.6435, 0.0447}, 1.4441},
    {{90.9257, -0.5406, -0.9208}, {88.6381, -0.8985, -0.7239}, 1.5381},
    {{6.7747, -0.2908, -2.4247}, {5.8714, -0.0985, -2.2286}, 0.6377},
    {{2.0776, 0.0795, -1.1350}, {0.9033, -0.0636, -0.5514}, 0.9082},
};

cmsCIELab cms(const Lab& lab) { return {lab.l, lab.a, lab.b}; }

TEST(Difference, Ciede2000OfThePublishedPairs) {
  int number = 0;
  for (const PublishedPair& pair : k_sharma) {
    SCOPED_TRACE(++number);
    EXPECT_NEAR(de2000(pair.standard, pair.sample), pair.difference, 5e-5);
    EXPECT_NEAR(de2000(pair.sample, pair.standard), pair.difference, 5e-5);
    // The table was written down here by heart, so somebody else has to confirm it.
    const cmsCIELab a = cms(pair.standard), b = cms(pair.sample);
    EXPECT_NEAR(cmsCIE2000DeltaE(&a, &b, 1, 1, 1), pair.difference, 5e-5);
  }
  EXPECT_EQ(number, 34);
}

// Colours all over, with neighbours of every distance.
class Pairs {
 public:
  PublishedPair next() {
    const Lab from = {lightness_(random_), plane_(random_), plane_(random_)};
    const double reach = std::pow(10, reach_(random_));
    const auto near = [&](double value) { return value + reach * step_(random_); };
    return {from, {std::fabs(near(from.l)), near(from.a), near(from.b)}, 0};
  }

 private:
  std::mt19937 random_{11};
  std::uniform_real_distribution<double> lightness_{0, 100}, plane_{-90, 90}, reach_{-4, 2};
  std::uniform_real_distribution<double> step_{-1, 1};
};

TEST(Difference, AgreesWithLcms) {
  Pairs pairs;
  for (int i = 0; i < 20000; ++i) {
    const PublishedPair pair = pairs.next();
    const cmsCIELab a = cms(pair.standard), b = cms(pair.sample);
    ASSERT_NEAR(de76(pair.standard, pair.sample), cmsDeltaE(&a, &b), 1e-9);
    ASSERT_NEAR(de2000(pair.standard, pair.sample), cmsCIE2000DeltaE(&a, &b, 1, 1, 1), 1e-9);
    ASSERT_NEAR(de2000(pair.standard, pair.sample, {2, 1.5, 0.7}),
                cmsCIE2000DeltaE(&a, &b, 2, 1.5, 0.7), 1e-9);
    // Theirs has dH as what dL and dC leave of the whole, and so the fewer digits the less is left.
    const double whole = de76(pair.standard, pair.sample);
    const double left = std::fabs(parts_of(pair.standard, pair.sample).h);
    ASSERT_NEAR(de_cmc(pair.standard, pair.sample, 2, 1), cmsCMCdeltaE(&a, &b, 2, 1),
                1e-9 + 1e-14 * 100 * whole / left);
  }
}

using Formula = double (*)(const Lab&, const Lab&);
struct NamedFormula {
  const char* name;
  Formula formula;
  bool is_symmetric;
};
const NamedFormula k_formulas[] = {
    {"76", [](const Lab& a, const Lab& b) { return de76(a, b); }, true},
    {"94", [](const Lab& a, const Lab& b) { return de94(a, b); }, false},
    {"2000", [](const Lab& a, const Lab& b) { return de2000(a, b); }, true},
    {"cmc", [](const Lab& a, const Lab& b) { return de_cmc(a, b); }, false},
    {"99", [](const Lab& a, const Lab& b) { return de99(a, b); }, true},
    {"hunter",
     [](const Lab& a, const Lab& b) {
       const Xyz white = {0.98, 1, 1.18};
       return de_hunter(hunter_of(xyz_of(a, white), white), hunter_of(xyz_of(b, white), white));
     },
     true},
    {"fmc2",
     [](const Lab& a, const Lab& b) {
       const Xyz white = {0.98, 1, 1.18};
       return de_fmc2(xyz_of(a, white), xyz_of(b, white));
     },
     false},
};

TEST(Difference, IsNoneForOneColourAndSomeForTwo) {
  Pairs pairs;
  for (int i = 0; i < 2000; ++i) {
    const PublishedPair pair = pairs.next();
    // FMC-2 and Hunter have no place for what is too dark to be a colour.
    if (pair.standard.l < 5 || pair.sample.l < 5) continue;
    for (const NamedFormula& named : k_formulas) {
      SCOPED_TRACE(named.name);
      EXPECT_EQ(named.formula(pair.standard, pair.standard), 0);
      const double there = named.formula(pair.standard, pair.sample);
      EXPECT_GT(there, 0);
      if (named.is_symmetric) {
        EXPECT_NEAR(named.formula(pair.sample, pair.standard), there, 1e-9 * (1 + there));
      }
    }
  }
}

TEST(Difference, PartsMakeTheWhole) {
  Pairs pairs;
  for (int i = 0; i < 2000; ++i) {
    const PublishedPair pair = pairs.next();
    const Parts parts = parts_of(pair.standard, pair.sample);
    const double whole = de76(pair.standard, pair.sample);
    EXPECT_NEAR(std::sqrt(parts.l * parts.l + parts.c * parts.c + parts.h * parts.h), whole,
                1e-9 * (1 + whole));
    const double turn = std::remainder(lch_of(pair.sample).h - lch_of(pair.standard).h, 360);
    EXPECT_TRUE(std::fabs(parts.h) < 1e-6 || (parts.h > 0) == (turn > 0));
  }
}

// By hand, from the formulas.
TEST(Difference, OfTheOtherFormulas) {
  const Lab standard = {50, 30, 40}, sample = {52, 27, 45};
  // C* = 50: SC = 3.25, SH = 1.75; dL = 2, dC = 2.478567, dH^2 = 27.856705.
  EXPECT_NEAR(de94(standard, sample), 3.698335, 1e-5);
  EXPECT_NEAR(de94(standard, sample, {2, 1, 1}), 3.267672, 1e-5);
  // CMC: the hue of 53.13 degrees is outside of 164 to 345.
  const double s_l = 0.040975 * 50 / 1.8825, s_c = 0.0638 * 50 / 1.655 + 0.638;
  const double f = std::sqrt(6250000. / 6251900),
               t = 0.36 + std::fabs(0.4 * std::cos(88.1301 * 3.14159265 / 180));
  const double dc = std::sqrt(27. * 27 + 45 * 45) - 50, dh2 = 34 - dc * dc;
  const double s_h = s_c * (f * t + 1 - f);
  EXPECT_NEAR(de_cmc(standard, sample, 2, 1),
              std::sqrt(std::pow(2 / (2 * s_l), 2) + dc * dc / (s_c * s_c) + dh2 / (s_h * s_h)),
              1e-6);
  // DIN99 of a neutral colour is its lightness alone: 105.51 ln(1 + 0.0158 L*).
  const Lab grey = din99_of({50, 0, 0});
  EXPECT_NEAR(grey.l, 105.51 * std::log(1.79), 1e-9);
  EXPECT_EQ(grey.a, 0);
  EXPECT_NEAR(din99_of({100, 0, 0}).l, 100, 0.01);
  EXPECT_NEAR(de99(standard, sample, 2, 1), de99(standard, sample) / 2, 1e-12);
}

TEST(Difference, MetamerismLeavesTheReferenceOut) {
  const Xyz white = {1.0985, 1, 0.3558};
  const Xyz one = {0.2, 0.25, 0.3}, other = {0.22, 0.24, 0.29}, lit = {0.25, 0.26, 0.1};
  EXPECT_NEAR(metamerism(one, one, lit, lit, white), 0, 1e-12);
  // Equally wrong under both lights: no metamerism.
  const Xyz wrong = {lit.x * 1.1, lit.y * 0.96, lit.z * 0.29 / 0.3};
  EXPECT_NEAR(metamerism(one, other, lit, wrong, white), 0, 1e-9);
  EXPECT_GT(metamerism(one, one, lit, wrong, white), 1);
}

Stimulus paper(const Xyz& xyz, StandardIlluminant light, Observer observer) {
  Stimulus stimulus;
  stimulus.conditions = {light, observer};
  stimulus.white = *stimulus.conditions.light.white(observer);
  stimulus.xyz = xyz;
  return stimulus;
}

TEST(Index, WhitenessAndYellowness) {
  for (const Observer observer : {Observer::degree_2, Observer::degree_10}) {
    Stimulus white = paper({}, StandardIlluminant::D65, observer);
    white.xyz = white.white;
    EXPECT_NEAR(*whiteness(white), 100, 1e-9);
    EXPECT_NEAR(*tint(white), 0, 1e-9);
    // E313's factors are those that leave a perfect white at almost 0.
    EXPECT_NEAR(*yellowness(white), 0, 0.02);
    Stimulus c = paper({}, StandardIlluminant::C, observer);
    c.xyz = c.white;
    EXPECT_NEAR(*yellowness(c), 0, 0.1);
  }
  const Xyy blueish = {0.3050, 0.3200, 0.85};
  const Stimulus sheet = paper(xyz_of(blueish), StandardIlluminant::D65, Observer::degree_10);
  const double dx = 0.31382 - 0.3050, dy = 0.33100 - 0.3200;
  EXPECT_NEAR(*whiteness(sheet), 85 + 800 * dx + 1700 * dy, 0.02);
  EXPECT_NEAR(*tint(sheet), 900 * dx - 650 * dy, 0.02);
  EXPECT_FALSE(whiteness(paper({0.3, 0.2, 0.1}, StandardIlluminant::D65, Observer::degree_2)));
  EXPECT_FALSE(whiteness(paper({0.9, 0.9, 0.8}, StandardIlluminant::D50, Observer::degree_2)));
  EXPECT_FALSE(yellowness(paper({0.9, 0.9, 0.8}, StandardIlluminant::D50, Observer::degree_2)));
  EXPECT_FALSE(yellowness(paper({0, 0, 0}, StandardIlluminant::C, Observer::degree_2)));
}

Spectrum spectrum(std::vector<double> values, double first = 380, double step = 10) {
  return {*Grid::even(first, step, values.size()), values};
}

TEST(Index, BrightnessAndStrength) {
  EXPECT_NEAR(*brightness(spectrum(std::vector<double>(36, 0.84))), 84, 1e-9);
  EXPECT_FALSE(brightness(spectrum(std::vector<double>(20, 0.84), 450)));
  // The weights stand around 457 nm, so a straight line has its value there.
  std::vector<double> line(36);
  for (std::size_t i = 0; i < line.size(); ++i) line[i] = 0.2 + 0.001 * 10 * double(i);
  EXPECT_NEAR(*brightness(spectrum(line)), 100 * (0.2 + 0.001 * 77), 0.03);

  std::vector<double> standard(36, 0.5), sample(36, 0.5);
  standard[20] = 0.2;  // K/S 1.6 at 580 nm
  sample[20] = 0.1;    // K/S 4.05
  EXPECT_EQ(*strongest_wavelength(spectrum(standard)), 580);
  EXPECT_NEAR(*strength(spectrum(standard), spectrum(sample), 580), 253.125, 1e-9);
  EXPECT_FALSE(strength(spectrum(standard), spectrum(sample), 900));
  EXPECT_FALSE(strongest_wavelength(spectrum(std::vector<double>(36, 1.0))));
  EXPECT_FALSE(strength(spectrum(std::vector<double>(36, 0.0)), spectrum(sample), 580));
}

}  // namespace
}  // namespace zol_v2::colorimetry
