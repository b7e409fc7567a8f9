// Colorimetry: a spectrum to tristimulus values, colour differences beside lcms2's, the evaluation
// of a record. Times are processor time, the best of several rounds that alternate between the
// sides.
#include <lcms2.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "colorimetry/difference.h"
#include "colorimetry/evaluation.h"
#include "facade/files.h"
#include "model/Zol.h"

namespace {

using namespace zol_v2;
using namespace zol_v2::colorimetry;

constexpr int k_rounds = 9;

double processor_seconds() {
  timespec now = {};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double seconds_of(const std::function<void()>& work) {
  const double start = processor_seconds();
  work();
  return processor_seconds() - start;
}

// Keeps results from being left out.
volatile double g_sink = 0;

void time_spectra() {
  constexpr int k_count = 200000;
  const Grid grid = *Grid::even(380, 10, 36);
  const auto weights = *Weights::of(grid, StandardIlluminant::D50, Observer::degree_2);
  std::vector<double> values(grid.size(), 0.5);
  double held = 1, looked_up = 1;
  for (int round = 0; round < k_rounds; ++round) {
    held = std::min(held, seconds_of([&] {
                      for (int i = 0; i < k_count; ++i) {
                        values[static_cast<std::size_t>(i) % 36] += 1e-9;
                        g_sink = g_sink + weights->apply(values.data()).y;
                      }
                    }));
    looked_up = std::min(looked_up, seconds_of([&] {
                           for (int i = 0; i < k_count; ++i) {
                             values[static_cast<std::size_t>(i) % 36] += 1e-9;
                             const auto found =
                                 Weights::of(grid, StandardIlluminant::D50, Observer::degree_2);
                             g_sink = g_sink + (*found)->apply(values.data()).y;
                           }
                         }));
  }
  std::printf("36 points to XYZ: %.1f ns, %.1f ns with the table looked up\n", held / k_count * 1e9,
              looked_up / k_count * 1e9);
}

void time_differences() {
  constexpr std::size_t k_count = 100000;
  std::mt19937 random(1);
  std::uniform_real_distribution<double> lightness(0, 100), plane(-80, 80);
  std::vector<Lab> standards, samples;
  for (std::size_t i = 0; i < k_count; ++i) {
    standards.push_back({lightness(random), plane(random), plane(random)});
    samples.push_back({lightness(random), plane(random), plane(random)});
  }
  double ours = 1, theirs = 1;
  for (int round = 0; round < k_rounds; ++round) {
    ours = std::min(ours, seconds_of([&] {
                      double sum = 0;
                      for (std::size_t i = 0; i < k_count; ++i) {
                        sum += de2000(standards[i], samples[i]);
                      }
                      g_sink = sum;
                    }));
    theirs = std::min(theirs, seconds_of([&] {
                        double sum = 0;
                        for (std::size_t i = 0; i < k_count; ++i) {
                          const cmsCIELab a = {standards[i].l, standards[i].a, standards[i].b};
                          const cmsCIELab b = {samples[i].l, samples[i].a, samples[i].b};
                          sum += cmsCIE2000DeltaE(&a, &b, 1, 1, 1);
                        }
                        g_sink = sum;
                      }));
  }
  std::printf("CIEDE2000: %.1f ns, lcms2 %.1f ns, %.2f times its rate\n", ours / k_count * 1e9,
              theirs / k_count * 1e9, theirs / ours);
}

std::string record_of_pairs(int count) {
  const std::string stamp = "<ChangeHistory>2026-01-01T00:00:00Z</ChangeHistory>";
  const std::string device =
      "<Device><Manufacturer>m</Manufacturer><Model>m</Model><SerialNumber>1</SerialNumber>"
      "</Device>";
  const std::string conditions =
      "<ColorSpaceSpecificationSpectrumTristimulus><DeviceFilter>Filter_None</DeviceFilter>"
      "<DevicePolarization>false</DevicePolarization>" +
      stamp +
      "<Spectrum>Spectrum_Reflectance</Spectrum><IlluminationOptions><Illuminant>Illuminant_D50"
      "</Illuminant></IlluminationOptions><FieldOfView>FieldOfView_2_Degree</FieldOfView>"
      "<GeometryChoice><Angle>45</Angle></GeometryChoice>"
      "</ColorSpaceSpecificationSpectrumTristimulus>";
  const auto color = [&](double l, double a, double b) {
    return device + "<Color ColorName='c'>" + stamp + "<ColorSpaceCIELab>" + stamp + conditions +
           "<L>" + std::to_string(l) + "</L><A>" + std::to_string(a) + "</A><B>" +
           std::to_string(b) + "</B></ColorSpaceCIELab></Color>";
  };
  std::string text =
      "<Zol xmlns='http://example.org/zol/v2'><Preamble><Header><Creator>c</Creator>"
      "<CreatorVersion>1</CreatorVersion>" +
      stamp + "<Purpose>p</Purpose></Header></Preamble><ColorQualityControl>" + stamp;
  for (int i = 0; i < count; ++i) {
    const double l = 40 + i % 50, a = i % 71 - 30, b = i % 83 - 40;
    text += "<StandardAndMeasurement><Measurement>" + color(l + 0.3, a, b + 0.2) +
            "</Measurement><Standard>" + color(l, a, b) + "</Standard></StandardAndMeasurement>";
  }
  return text +
         "<Tolerance><Limits><HighTolerance>2</HighTolerance></Limits><FunctionDE2000>"
         "<Param_l>1</Param_l><Param_c>1</Param_c><Param_h>1</Param_h></FunctionDE2000>"
         "</Tolerance></ColorQualityControl></Zol>";
}

void time_evaluation() {
  constexpr int k_pairs = 10000;
  Zol document;
  if (openText(document, record_of_pairs(k_pairs)) != lmx::elmx_ok) std::exit(1);
  double best = 1;
  for (int round = 0; round < k_rounds; ++round) {
    best = std::min(best, seconds_of([&] {
                      const Evaluation evaluation = evaluate(document);
                      if (evaluation.count(Status::passed) != k_pairs) std::exit(1);
                    }));
  }
  std::printf("evaluation of 10,000 pairs: %.1f ms\n", best * 1e3);
}

}  // namespace

int main() {
  time_spectra();
  time_differences();
  time_evaluation();
}
