// Spectra to tristimulus values: published whites, physical laws, grids of every shape.
#include "colorimetry/spectrum.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "model/Zol.h"
#include "support/files.h"

namespace zol_v2::colorimetry {
namespace {

struct PublishedWhite {
  StandardIlluminant illuminant;
  double x2, y2, x10, y10;
};

// CIE 15:2004, tables T.3 and T.8.1, to as many digits as they are quoted with. For fluorescent
// lamps CIE 15 has four digits, of sums at 5 nm.
const PublishedWhite k_whites[] = {
    {StandardIlluminant::A, 0.44758, 0.40745, 0.45117, 0.40594},
    {StandardIlluminant::B, 0.34842, 0.35161, 0.34980, 0.35270},
    {StandardIlluminant::C, 0.31006, 0.31616, 0.31039, 0.31905},
    {StandardIlluminant::D50, 0.34567, 0.35851, 0.34773, 0.35952},
    {StandardIlluminant::D55, 0.33243, 0.34744, 0.33412, 0.34877},
    {StandardIlluminant::D65, 0.31272, 0.32903, 0.31381, 0.33098},
    {StandardIlluminant::D75, 0.29903, 0.31488, 0.29968, 0.31740},
    {StandardIlluminant::E, 0.33333, 0.33333, 0.33333, 0.33333},
    {StandardIlluminant::F2, 0.3721, 0.3751, 0, 0},
    {StandardIlluminant::F3, 0.4091, 0.3941, 0, 0},
    {StandardIlluminant::F7, 0.3129, 0.3292, 0, 0},
    {StandardIlluminant::F11, 0.3805, 0.3769, 0, 0},
    {StandardIlluminant::F12, 0.4370, 0.4042, 0, 0},
    {StandardIlluminant::monitor_9300, 0.2848, 0.2932, 0, 0},
};

TEST(Whites, AreThePublishedOnes) {
  for (const PublishedWhite& published : k_whites) {
    SCOPED_TRACE(std::string(name_of(published.illuminant)));
    const Light light = published.illuminant;
    // The lines of a lamp lie between the 5 nm of its table: the sum at 1 nm moves its white a bit.
    const bool is_lamp = published.illuminant >= StandardIlluminant::F2 &&
                         published.illuminant <= StandardIlluminant::F12;
    const double slack = is_lamp ? 2.5e-4 : 1e-4;
    const Xyz white = *light.white(Observer::degree_2);
    const Xyy at = xyy_of(white, white);
    EXPECT_NEAR(at.x, published.x2, slack);
    EXPECT_NEAR(at.y, published.y2, slack);
    if (published.x10 == 0) continue;
    const Xyz white_10 = *light.white(Observer::degree_10);
    const Xyy at_10 = xyy_of(white_10, white_10);
    EXPECT_NEAR(at_10.x, published.x10, slack);
    EXPECT_NEAR(at_10.y, published.y10, slack);
  }
  EXPECT_EQ(std::size(k_whites), std::size_t{k_standard_illuminants});
}

TEST(Whites, OfLightsThatAreNoIlluminants) {
  const Xyz given = *Light::of_chromaticity(0.3, 0.4).white(Observer::degree_10);
  EXPECT_NEAR(given.x, 0.75, 1e-12);
  EXPECT_NEAR(given.z, 0.75, 1e-12);
  // D65 is daylight of 6,504 K on today's scale of temperature; A a black body of 2,856 K.
  const Xyz daylight = *Light::of_temperature(6504).white(Observer::degree_2);
  const Xyz d65 = *Light(StandardIlluminant::D65).white(Observer::degree_2);
  EXPECT_NEAR(daylight.x, d65.x, 5e-4);
  EXPECT_NEAR(daylight.z, d65.z, 1e-3);
  const Xyz black_body = *Light::of_temperature(2856).white(Observer::degree_10);
  const Xyz a = *Light(StandardIlluminant::A).white(Observer::degree_10);
  EXPECT_NEAR(black_body.x, a.x, 5e-4);
  EXPECT_NEAR(black_body.z, a.z, 5e-4);

  EXPECT_FALSE(Light(StandardIlluminant::monitor_9300).white(Observer::degree_10));
  EXPECT_FALSE(Light::of_temperature(6504).white(Observer::degree_10));
  EXPECT_FALSE(Light::of_temperature(30000).white(Observer::degree_2));
  EXPECT_FALSE(Light::of_temperature(0).white(Observer::degree_2));
  EXPECT_FALSE(Light::of_temperature(NAN).white(Observer::degree_2));
  EXPECT_FALSE(Light::of_chromaticity(0.3, 0).white(Observer::degree_2));
  EXPECT_FALSE(Light::of_chromaticity(NAN, 0.3).white(Observer::degree_2));
  EXPECT_FALSE(Light::custom("candles").white(Observer::degree_2));
  EXPECT_NE(Light::custom(""), Light::custom(""));
  EXPECT_EQ(Light::custom("candles"), Light::custom("candles"));
  EXPECT_FALSE(Light::named("D60"));
  EXPECT_EQ(*Light::named("Illuminant_F11"), Light(StandardIlluminant::F11));
}

Xyz sum(const Grid& grid, const std::vector<double>& values, const Light& light,
        Observer observer = Observer::degree_2) {
  const auto weights = Weights::of(grid, light, observer);
  EXPECT_TRUE(weights) << weights.reason();
  return (*weights)->apply(values.data());
}

const Grid k_grids[] = {
    *Grid::even(360, 1, 471),
    *Grid::even(380, 10, 36),
    *Grid::even(400, 20, 16),
    *Grid::even(380, 5, 81),
    *Grid::even(361.5, 3, 140),
    *Grid::even(380.5, 0.25, 1600),
    *Grid::even(380, 80, 5),
    *Grid::of({380, 390, 405, 425, 455, 470, 500, 540, 580, 600, 640, 680, 720}),
    *Grid::of({390, 430, 480, 530, 580, 620, 660, 700}),
};

TEST(Spectra, PerfectDiffuserHasTheWhiteOfTheLight) {
  for (const Grid& grid : k_grids) {
    SCOPED_TRACE(testing::Message() << grid.first() << " nm, " << grid.size() << " points");
    const std::vector<double> ones(grid.size(), 1);
    for (int i = 1; i <= k_standard_illuminants; ++i) {
      const Light light = StandardIlluminant(i);
      for (const Observer observer : {Observer::degree_2, Observer::degree_10}) {
        const auto weights = Weights::of(grid, light, observer);
        if (!light.has_spectrum() || grid.step() == 80) {
          EXPECT_FALSE(weights);
          continue;
        }
        ASSERT_TRUE(weights) << weights.reason();
        const Xyz white = *light.white(observer), seen = (*weights)->apply(ones.data());
        EXPECT_NEAR(seen.x, white.x, 1e-12);
        EXPECT_NEAR(seen.y, 1, 1e-12);
        EXPECT_NEAR(seen.z, white.z, 1e-12);
      }
    }
  }
}

// A smooth spectrum, as samples have.
double smooth(double nm) { return 0.1 + 0.7 / (1 + std::exp((580 - nm) / 25)); }

TEST(Spectra, EveryGridGivesTheColourOfTheCurve) {
  std::vector<double> fine;
  for (int nm = 360; nm <= 830; ++nm) fine.push_back(smooth(nm));
  const Light light = StandardIlluminant::D50;
  const Xyz white = *light.white(Observer::degree_2);
  const Lab exact = lab_of(sum(k_grids[0], fine, light), white);
  for (const Grid& grid : k_grids) {
    if (grid.step() == 80) continue;
    SCOPED_TRACE(testing::Message() << grid.first() << " nm, " << grid.size() << " points");
    std::vector<double> values;
    for (std::size_t i = 0; i < grid.size(); ++i) values.push_back(smooth(grid[i]));
    const Lab seen = lab_of(sum(grid, values, light), white);
    const double coarseness = grid.is_even() ? grid.step() : 40;
    const double slack = coarseness > 10 ? (coarseness > 20 ? 1.5 : 0.05) : 0.005;
    EXPECT_NEAR(std::hypot(std::hypot(seen.l - exact.l, seen.a - exact.a), seen.b - exact.b), 0,
                slack);
  }
}

TEST(Spectra, SpragueAndSplineKeepPolynomials) {
  // Sprague's formula has the derivatives of quartics, a natural spline keeps straight lines.
  const auto quartic = [](double nm) {
    const double t = (nm - 500) / 100;
    return 0.5 + t * (0.1 + t * (0.05 - t * (0.02 + 0.01 * t)));
  };
  const Grid even = *Grid::even(400, 20, 16);
  const Grid uneven = *Grid::of({400, 415, 440, 500, 510, 560, 650});
  std::vector<double> values, line;
  for (std::size_t i = 0; i < even.size(); ++i) values.push_back(quartic(even[i]));
  for (std::size_t i = 0; i < uneven.size(); ++i) line.push_back(0.001 * uneven[i]);
  const Spectrum curve(even, values), straight(uneven, line);
  // Two intervals at either end rest on points that CIE 167 makes up.
  for (double nm = 440; nm <= 660; nm += 3.7) EXPECT_NEAR(curve.at(nm), quartic(nm), 1e-12);
  for (double nm = 400; nm <= 650; nm += 3.7) EXPECT_NEAR(straight.at(nm), 0.001 * nm, 1e-12);
  EXPECT_EQ(curve.at(300), values.front());
  EXPECT_EQ(curve.at(900), values.back());
}

// The natural spline through 0, 1, 0, 1, solved by hand: 60 m1 + 20 m2 = 6 (-1/20 - 1/10) for the
// second derivatives at the inner points, of which one is the other's opposite.
TEST(Spectra, SplineOfFourPoints) {
  const Spectrum spectrum(*Grid::of({400, 410, 430, 440}), {0, 1, 0, 1});
  const double m1 = -0.9 / 40;
  EXPECT_NEAR(spectrum.at(405), 0.5 + (0.125 - 0.5) * m1 * 100 / 6, 1e-12);
  EXPECT_NEAR(spectrum.at(420), 0.5, 1e-12);
  EXPECT_NEAR(spectrum.at(415), 0.75 + ((0.421875 - 0.75) * m1 - (0.015625 - 0.25) * m1) * 400 / 6,
              1e-12);
}

TEST(Spectra, OfLightSourcesAreAbsolute) {
  const Grid grid = *Grid::even(360, 1, 471);
  const auto weights = Weights::of_emission(grid, Observer::degree_2);
  ASSERT_TRUE(weights);
  std::vector<double> line(grid.size(), 0);
  line[555 - 360] = 1;  // 1 W/(sr m2) at 555 nm, where an eye of 2 degrees sees most
  EXPECT_NEAR((*weights)->apply(line.data()).y, 683, 0.01);
}

TEST(Spectra, MethodIsSaid) {
  const auto method = [](const Grid& grid, StandardIlluminant light) {
    return description_of((*Weights::of(grid, light, Observer::degree_2))->method());
  };
  EXPECT_EQ(method(*Grid::even(360, 1, 471), StandardIlluminant::D65),
            "CIE 15 sum at 1 nm from 360 to 780 nm");
  EXPECT_EQ(method(*Grid::even(400, 10, 31), StandardIlluminant::F11),
            "CIE 15 sum at 1 nm from 380 to 780 nm, Sprague interpolation (CIE 167), end value "
            "repeated below 400 and above 700 nm");
  EXPECT_EQ(method(*Grid::of({360, 400, 430, 470, 500, 550, 600, 650, 700, 750, 800}),
                   StandardIlluminant::E),
            "CIE 15 sum at 1 nm from 360 to 830 nm, cubic spline, end value repeated above 800 nm, "
            "steps of up to 50 nm where CIE 15 allows 20");
}

TEST(Spectra, FaultyOnesAreRefused) {
  constexpr double k_nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(Grid::even(400, 0, 31));
  EXPECT_FALSE(Grid::even(400, -10, 31));
  EXPECT_FALSE(Grid::even(400, k_nan, 31));
  EXPECT_FALSE(Grid::even(0, 10, 31));
  EXPECT_FALSE(Grid::even(400, 10, 1));
  EXPECT_FALSE(Grid::even(400, 10, 0));
  EXPECT_FALSE(Grid::even(400, 1e-5, 200000));
  EXPECT_FALSE(Grid::of({}));
  EXPECT_FALSE(Grid::of({500}));
  EXPECT_FALSE(Grid::of({400, 400, 410}));
  EXPECT_FALSE(Grid::of({410, 400}));
  EXPECT_FALSE(Grid::of({400, k_nan, 420}));
  EXPECT_TRUE(Grid::of({400, 410, 420.000000001})->is_even());
  EXPECT_FALSE(Grid::of({400, 410, 421})->is_even());
  const auto is_refused = [](const Grid& grid) {
    return !Weights::of(grid, StandardIlluminant::D50, Observer::degree_2);
  };
  EXPECT_TRUE(is_refused(*Grid::even(500, 1, 30)));
  EXPECT_TRUE(is_refused(*Grid::even(1000, 10, 31)));
  EXPECT_TRUE(is_refused(*Grid::even(0.001, 0.001, 31)));
  EXPECT_TRUE(is_refused(*Grid::even(1, 1e300, 3)));

  ColorSpaceSpectralType space;
  EXPECT_FALSE(Spectrum::of(space));
  const auto add = [&](double wavelength, double value) {
    space.append_ReflectancePoint();
    (void)space.back_ReflectancePoint().set_Wavelength(wavelength);
    (void)space.back_ReflectancePoint().set_ReflectancePointType(value);
  };
  // A document's points may stand in any order.
  add(420, 0.3);
  add(400, 0.1);
  add(410, 0.2);
  const auto sorted = Spectrum::of(space);
  ASSERT_TRUE(sorted);
  EXPECT_EQ(sorted->values(), (std::vector<double>{0.1, 0.2, 0.3}));
  add(410, 0.2);
  EXPECT_EQ(Spectrum::of(space).reason(), "the spectrum has two points at 410 nm");
}

TEST(Spectra, TablesAreSharedInAnyThread) {
  const Grid grid = *Grid::even(390, 10, 34);
  const auto first = *Weights::of(grid, StandardIlluminant::D50, Observer::degree_2);
  EXPECT_EQ(first, *Weights::of(grid, StandardIlluminant::D50, Observer::degree_2));
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t, &grid] {
      for (int i = 0; i < 200; ++i) {
        const Grid other = *Grid::even(380 + (i + t) % 80, 5, 76);
        const std::vector<double> ones(other.size(), 1);
        const auto weights = Weights::of(other, StandardIlluminant::D65, Observer::degree_10);
        EXPECT_TRUE(!weights || std::fabs((*weights)->apply(ones.data()).y - 1) < 1e-12);
        EXPECT_TRUE(Weights::of(grid, StandardIlluminant::D50, Observer::degree_2));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  // More tables than are kept went by, and the one that a client holds is good.
  EXPECT_NEAR(first->apply(std::vector<double>(34, 1).data()).y, 1, 1e-12);
}

#if !defined(_WIN32)

// Another maker's program sums by a method of its own, so it comes near and no nearer.
TEST(Spectra, Spec2cieSeesTheSame) {
  if (zol_test::run_shell("command -v spec2cie").status != 0) GTEST_SKIP() << "needs spec2cie";
  const zol_test::TempDir directory;
  const Grid grid = *Grid::even(380, 10, 36);
  std::vector<std::vector<double>> samples;
  for (const double centre : {430., 480., 530., 580., 630.}) {
    samples.emplace_back();
    for (std::size_t i = 0; i < grid.size(); ++i) {
      samples.back().push_back(0.05 + 0.8 * std::exp(-std::pow((grid[i] - centre) / 60, 2)));
    }
  }
  const std::string in = directory.file("in.ti3"), out = directory.file("out.ti3");
  {
    std::ofstream file(in);
    file.imbue(std::locale::classic());
    file << std::fixed
         << "CTI3\n\nDESCRIPTOR \"spectra\"\nORIGINATOR \"test\"\nKEYWORD \"DEVICE_CLASS\"\n"
            "DEVICE_CLASS \"OUTPUT\"\nKEYWORD \"COLOR_REP\"\nCOLOR_REP \"RGB_XYZ\"\n"
            "KEYWORD \"SPECTRAL_BANDS\"\nSPECTRAL_BANDS \"36\"\nKEYWORD \"SPECTRAL_START_NM\"\n"
            "SPECTRAL_START_NM \"380.000000\"\nKEYWORD \"SPECTRAL_END_NM\"\n"
            "SPECTRAL_END_NM \"730.000000\"\n\nNUMBER_OF_FIELDS 43\nBEGIN_DATA_FORMAT\n"
            "SAMPLE_ID RGB_R RGB_G RGB_B XYZ_X XYZ_Y XYZ_Z";
    for (int i = 0; i < 36; ++i) file << " SPEC_" << 380 + 10 * i;
    file << "\nEND_DATA_FORMAT\n\nNUMBER_OF_SETS " << samples.size() << "\nBEGIN_DATA\n";
    for (std::size_t s = 0; s < samples.size(); ++s) {
      file << s + 1 << " 0 0 0 1 1 1";
      for (const double value : samples[s]) file << ' ' << 100 * value;
      file << '\n';
    }
    file << "END_DATA\n";
  }
  struct Case {
    const char* light;
    const char* observer;
    StandardIlluminant ours;
    Observer our_observer;
  };
  for (const Case& c : {Case{"D50", "1931_2", StandardIlluminant::D50, Observer::degree_2},
                        Case{"D65", "1964_10", StandardIlluminant::D65, Observer::degree_10},
                        Case{"A", "1931_2", StandardIlluminant::A, Observer::degree_2}}) {
    SCOPED_TRACE(c.light);
    const zol_test::ProgramResult result =
        zol_test::run({"spec2cie", "-n", "-i", c.light, "-o", c.observer, in, out});
    ASSERT_EQ(result.status, 0) << result.output;
    std::ifstream file(out);
    std::string line;
    while (std::getline(file, line) && line != "BEGIN_DATA") {
    }
    for (const std::vector<double>& sample : samples) {
      ASSERT_TRUE(std::getline(file, line));
      std::istringstream row(line);
      row.imbue(std::locale::classic());
      double number = 0;
      for (int i = 0; i < 4; ++i) row >> number;  // the sample and its device values
      Xyz theirs;
      ASSERT_TRUE(row >> theirs.x >> theirs.y >> theirs.z);
      theirs = {theirs.x / 100, theirs.y / 100, theirs.z / 100};
      const Xyz ours = sum(grid, sample, c.ours, c.our_observer);
      const Xyz white = *Light(c.ours).white(c.our_observer);
      const Lab one = lab_of(ours, white), other = lab_of(theirs, white);
      EXPECT_NEAR(one.l, other.l, 0.1);
      EXPECT_NEAR(one.a, other.a, 0.3);
      EXPECT_NEAR(one.b, other.b, 0.3);
    }
  }
}

#endif

}  // namespace
}  // namespace zol_v2::colorimetry
