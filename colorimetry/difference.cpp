#include "colorimetry/difference.h"

#include <cmath>
#include <iterator>
#include <string>

#include "colorimetry/internal/text.h"

namespace zol_v2::colorimetry {

using internal::number_text;

namespace {

constexpr double k_pi = 3.14159265358979323846;
constexpr double k_degree = k_pi / 180;

double length(double x, double y) { return std::sqrt(x * x + y * y); }
double length(double x, double y, double z) { return std::sqrt(x * x + y * y + z * z); }

// 2 sqrt(C1 C2) sin(dh / 2) of two vectors in the plane of chroma, from the scalar and the vector
// product: each of the two forms is exact where the other one loses its digits.
double hue_difference(double dot, double cross, double chromas) {
  if (dot > 0) return cross * std::sqrt(2 / (chromas + dot));
  const double size = std::sqrt(std::fmax(2 * (chromas - dot), 0));
  return cross < 0 ? -size : size;
}

double hue_in_degrees(double a, double b) {
  if (a == 0 && b == 0) return 0;
  const double degrees = std::atan2(b, a) / k_degree;
  return degrees < 0 ? degrees + 360 : degrees;
}

Parts parts_in_plane(double dl, double a1, double b1, double a2, double b2) {
  const double c1 = length(a1, b1), c2 = length(a2, b2);
  return {dl, a2 - a1, b2 - b1, c2 - c1,
          hue_difference(a1 * a2 + b1 * b2, a1 * b2 - a2 * b1, c1 * c2)};
}

// The Chickering polynomials, by powers of Y on the scale of 100.
constexpr double k_fmc_chroma[] = {0.55669, 0.049434, -0.82575e-3, 0.79172e-5, -0.30087e-7};
constexpr double k_fmc_light[] = {0.17548, 0.027556, -0.57262e-3, 0.63893e-5, -0.26731e-7};

double polynomial(const double (&coefficients)[5], double y) {
  double sum = 0;
  for (int i = 4; i >= 0; --i) sum = sum * y + coefficients[i];
  return sum;
}

struct FmcCones {
  double p, q, s;
};
FmcCones fmc_cones(const Xyz& xyz) {
  const double x = 100 * xyz.x, y = 100 * xyz.y, z = 100 * xyz.z;
  return {0.724 * x + 0.382 * y - 0.098 * z, -0.48 * x + 1.37 * y + 0.1276 * z, 0.686 * z};
}

}  // namespace

// --- Differences ---------------------------------------------------------------------------------

Parts parts_of(const Lab& standard, const Lab& sample) {
  return parts_in_plane(sample.l - standard.l, standard.a, standard.b, sample.a, sample.b);
}

Parts parts_of(const HunterLab& standard, const HunterLab& sample) {
  return parts_in_plane(sample.l - standard.l, standard.a, standard.b, sample.a, sample.b);
}

double de76(const Lab& standard, const Lab& sample) {
  return length(sample.l - standard.l, sample.a - standard.a, sample.b - standard.b);
}

double de94(const Lab& standard, const Lab& sample, const Factors& k) {
  const Parts d = parts_of(standard, sample);
  const double c = length(standard.a, standard.b);
  return length(d.l / k.l, d.c / (k.c * (1 + 0.045 * c)), d.h / (k.h * (1 + 0.015 * c)));
}

double de2000(const Lab& standard, const Lab& sample, const Factors& k) {
  constexpr double k_25_to_7 = 6103515625.0;
  const auto root_of_7 = [](double c) {
    const double c2 = c * c, c7 = c2 * c2 * c2 * c;
    return std::sqrt(c7 / (c7 + k_25_to_7));
  };
  const double mean_of_chromas = (length(standard.a, standard.b) + length(sample.a, sample.b)) / 2;
  const double stretch = 1 + 0.5 * (1 - root_of_7(mean_of_chromas));
  const double a1 = standard.a * stretch, a2 = sample.a * stretch;
  const double b1 = standard.b, b2 = sample.b;
  const double c1 = length(a1, b1), c2 = length(a2, b2), chromas = c1 * c2;
  const double dot = a1 * a2 + b1 * b2, cross = a1 * b2 - a2 * b1;

  // The mean hue halves the angle between the two vectors, so it points along the sum of both at
  // one length. Of a neutral colour and another one it is the hue of the other. Opposite hues have
  // two halves: there the formula's own rule, by the angles, decides.
  double cosine = 1, sine = 0;
  double hue_part = hue_difference(dot, cross, chromas);
  if (chromas > 0 && dot < -0.999999 * chromas) {
    const double h1 = hue_in_degrees(a1, b1), h2 = hue_in_degrees(a2, b2);
    const double sum = h1 + h2;
    // Angles that are 180 apart may come out a hair further apart.
    const bool is_near = std::fabs(h1 - h2) <= 180 + 1e-10;
    const double hue = is_near ? sum / 2 : sum < 360 ? (sum + 360) / 2 : (sum - 360) / 2;
    if ((h2 > h1) == is_near) {
      hue_part = std::fabs(hue_part);
    } else {
      hue_part = -std::fabs(hue_part);
    }
    cosine = std::cos(hue * k_degree);
    sine = std::sin(hue * k_degree);
  } else {
    const double x = chromas > 0 ? a1 * c2 + a2 * c1 : a1 + a2;
    const double y = chromas > 0 ? b1 * c2 + b2 * c1 : b1 + b2;
    const double size = length(x, y);
    if (size > 0) {
      cosine = x / size;
      sine = y / size;
    }
  }
  // cos(h - 30), cos 2h, cos(3h + 6), cos(4h - 63) by the sums of angles.
  constexpr double k_cos_30 = 0.86602540378443864676, k_sin_30 = 0.5;
  constexpr double k_cos_6 = 0.99452189536827333692, k_sin_6 = 0.10452846326765347140;
  constexpr double k_cos_63 = 0.45399049973954679156, k_sin_63 = 0.89100652418836786236;
  const double cosine_2 = cosine * cosine - sine * sine, sine_2 = 2 * sine * cosine;
  const double cosine_3 = cosine_2 * cosine - sine_2 * sine;
  const double sine_3 = sine_2 * cosine + cosine_2 * sine;
  const double cosine_4 = cosine_2 * cosine_2 - sine_2 * sine_2, sine_4 = 2 * sine_2 * cosine_2;
  const double t = 1 - 0.17 * (cosine * k_cos_30 + sine * k_sin_30) + 0.24 * cosine_2 +
                   0.32 * (cosine_3 * k_cos_6 - sine_3 * k_sin_6) -
                   0.20 * (cosine_4 * k_cos_63 + sine_4 * k_sin_63);

  const double c = (c1 + c2) / 2;
  const double l = (standard.l + sample.l) / 2 - 50, l2 = l * l;
  const double s_l = 1 + 0.015 * l2 / std::sqrt(20 + l2);
  const double s_c = 1 + 0.045 * c;
  const double s_h = 1 + 0.015 * c * t;
  const double dl = (sample.l - standard.l) / (k.l * s_l);
  const double dc = (c2 - c1) / (k.c * s_c);
  const double dh = hue_part / (k.h * s_h);
  // The rotation of blue is below 1e-15 from 0 to 125 degrees.
  constexpr double k_cos_125 = -0.57357643635104609611;
  double rotation = 0;
  if (sine < 0 || cosine < k_cos_125) {
    const double from_blue = (hue_in_degrees(cosine, sine) - 275) / 25;
    const double turn = 60 * k_degree * std::exp(-from_blue * from_blue);
    rotation = -2 * root_of_7(c) * std::sin(turn);
  }
  return std::sqrt(std::fmax(dl * dl + dc * dc + dh * dh + rotation * dc * dh, 0));
}

double de_cmc(const Lab& standard, const Lab& sample, double l, double c) {
  const Parts d = parts_of(standard, sample);
  const double chroma = length(standard.a, standard.b);
  const double hue = hue_in_degrees(standard.a, standard.b);
  const double c4 = chroma * chroma * chroma * chroma;
  const double f = std::sqrt(c4 / (c4 + 1900));
  const double t = hue >= 164 && hue <= 345
                       ? 0.56 + std::fabs(0.2 * std::cos((hue + 168) * k_degree))
                       : 0.36 + std::fabs(0.4 * std::cos((hue + 35) * k_degree));
  const double s_l = standard.l < 16 ? 0.511 : 0.040975 * standard.l / (1 + 0.01765 * standard.l);
  const double s_c = 0.0638 * chroma / (1 + 0.0131 * chroma) + 0.638;
  const double s_h = s_c * (f * t + 1 - f);
  return length(d.l / (l * s_l), d.c / (c * s_c), d.h / s_h);
}

Lab din99_of(const Lab& lab, double k_e, double k_ch) {
  static const double cosine = std::cos(16 * k_degree), sine = std::sin(16 * k_degree);
  const double l = 105.51 * std::log1p(0.0158 * lab.l) / k_e;
  const double e = lab.a * cosine + lab.b * sine;
  const double f = 0.7 * (lab.b * cosine - lab.a * sine);
  const double g = length(e, f);
  if (g == 0) return {l, 0, 0};
  const double scale = std::log1p(0.045 * g) / (0.045 * k_ch * k_e) / g;
  return {l, e * scale, f * scale};
}

double de99(const Lab& standard, const Lab& sample, double k_e, double k_ch) {
  return de76(din99_of(standard, k_e, k_ch), din99_of(sample, k_e, k_ch));
}

double de_hunter(const HunterLab& standard, const HunterLab& sample) {
  return length(sample.l - standard.l, sample.a - standard.a, sample.b - standard.b);
}

double de_fmc2(const Xyz& standard, const Xyz& sample) {
  const FmcCones from = fmc_cones(standard), to = fmc_cones(sample);
  const double y = 100 * standard.y;
  const double p2 = from.p * from.p, q2 = from.q * from.q, size = std::sqrt(p2 + q2);
  const double a = std::sqrt(17.3e-6 * (p2 + q2) / (1 + 2.73 * p2 * q2 / (p2 * p2 + q2 * q2)));
  const double b = std::sqrt(3.098e-4 * (from.s * from.s + 0.2015 * y * y));
  const double dp = to.p - from.p, dq = to.q - from.q, ds = to.s - from.s;
  const double red_green = (from.q * dp - from.p * dq) / size;
  const double light = (from.p * dp + from.q * dq) / size;
  const double yellow_blue = from.s * light / size - ds;
  const double chroma = polynomial(k_fmc_chroma, y) * length(red_green / a, yellow_blue / b);
  const double lightness = polynomial(k_fmc_light, y) * 0.279 * light / a;
  return length(chroma, lightness);
}

double metamerism(const Xyz& standard_reference, const Xyz& sample_reference,
                  const Xyz& standard_test, const Xyz& sample_test, const Xyz& test_white) {
  const Xyz corrected = {sample_test.x * standard_reference.x / sample_reference.x,
                         sample_test.y * standard_reference.y / sample_reference.y,
                         sample_test.z * standard_reference.z / sample_reference.z};
  return de76(lab_of(standard_test, test_white), lab_of(corrected, test_white));
}

// --- Indices -------------------------------------------------------------------------------------

namespace {

struct WhitePaper {
  double whiteness, tint;
};

// CIE 15:2004, clause 9.1, which gives the tint another factor for each observer.
Outcome<WhitePaper> white_paper(const Stimulus& stimulus) {
  if (stimulus.conditions.light != Light(StandardIlluminant::D65) || !stimulus.has_white()) {
    return Refusal{"whiteness is defined for D65"};
  }
  const Xyy at = xyy_of(stimulus.xyz, stimulus.white);
  const Xyy white = xyy_of(stimulus.white, stimulus.white);
  const double factor = stimulus.conditions.observer == Observer::degree_10 ? 900 : 1000;
  const double y = 100 * at.luminance;
  const WhitePaper paper = {y + 800 * (white.x - at.x) + 1700 * (white.y - at.y),
                            factor * (white.x - at.x) - 650 * (white.y - at.y)};
  const bool is_white = paper.whiteness > 40 && paper.whiteness < 5 * y - 280;
  if (!is_white || !(paper.tint > -4 && paper.tint < 2)) {
    return Refusal{"whiteness " + number_text(paper.whiteness) + " with tint " +
                   number_text(paper.tint) + " is beyond what the formula is for"};
  }
  return paper;
}

struct YellownessFactors {
  StandardIlluminant illuminant;
  Observer observer;
  double x, z;
};
constexpr YellownessFactors k_yellowness[] = {
    {StandardIlluminant::C, Observer::degree_2, 1.2769, 1.0592},
    {StandardIlluminant::C, Observer::degree_10, 1.2871, 1.0781},
    {StandardIlluminant::D65, Observer::degree_2, 1.2985, 1.1335},
    {StandardIlluminant::D65, Observer::degree_10, 1.3013, 1.1498},
};

// ISO 2470-1, table of F(l) from 400 nm by 5 nm.
constexpr double k_brightness[] = {1.0,  2.9,  6.7,  12.1, 18.2, 25.8, 34.5, 44.9,
                                   57.6, 70.0, 82.5, 94.1, 100,  99.3, 88.7, 72.5,
                                   53.1, 34.0, 20.3, 11.1, 5.6,  2.2,  0.3};
constexpr int k_brightness_first = 400, k_brightness_step = 5;
constexpr int k_brightness_last =
    k_brightness_first + k_brightness_step * (int(std::size(k_brightness)) - 1);

bool covers(const Spectrum& spectrum, double first, double last) {
  return spectrum.grid().first() <= first && spectrum.grid().last() >= last;
}

double absorption(double reflectance) {
  return (1 - reflectance) * (1 - reflectance) / (2 * reflectance);
}

bool is_between_0_and_1(double value) { return value > 0 && value < 1; }

}  // namespace

Outcome<double> whiteness(const Stimulus& stimulus) {
  const Outcome<WhitePaper> paper = white_paper(stimulus);
  if (!paper) return paper.refusal();
  return paper->whiteness;
}

Outcome<double> tint(const Stimulus& stimulus) {
  const Outcome<WhitePaper> paper = white_paper(stimulus);
  if (!paper) return paper.refusal();
  return paper->tint;
}

Outcome<double> yellowness(const Stimulus& stimulus) {
  for (const YellownessFactors& factors : k_yellowness) {
    if (stimulus.conditions.light == Light(factors.illuminant) &&
        stimulus.conditions.observer == factors.observer) {
      const Xyz& xyz = stimulus.xyz;
      if (!(xyz.y > 0)) return Refusal{"black has no yellowness"};
      return 100 * (factors.x * xyz.x - factors.z * xyz.z) / xyz.y;
    }
  }
  return Refusal{"yellowness is defined for C and D65"};
}

Outcome<double> brightness(const Spectrum& spectrum) {
  if (!covers(spectrum, k_brightness_first, k_brightness_last)) {
    return Refusal{"brightness needs a spectrum from 400 to 510 nm"};
  }
  double sum = 0, weights = 0;
  double wavelength = k_brightness_first;
  for (const double weight : k_brightness) {
    sum += weight * spectrum.at(wavelength);
    weights += weight;
    wavelength += k_brightness_step;
  }
  return 100 * sum / weights;
}

Outcome<double> strongest_wavelength(const Spectrum& standard) {
  double wavelength = 0, strongest = 0;
  for (std::size_t i = 0; i < standard.grid().size(); ++i) {
    const double nm = standard.grid()[i], value = standard.values()[i];
    if (nm < 400 || nm > 700 || !is_between_0_and_1(value)) continue;
    if (absorption(value) > strongest) {
      strongest = absorption(value);
      wavelength = nm;
    }
  }
  if (strongest == 0) return Refusal{"the standard absorbs nothing from 400 to 700 nm"};
  return wavelength;
}

Outcome<double> strength(const Spectrum& standard, const Spectrum& sample, double wavelength) {
  if (!covers(standard, wavelength, wavelength) || !covers(sample, wavelength, wavelength)) {
    return Refusal{"there is no reflectance at " + number_text(wavelength) + " nm"};
  }
  const double from = standard.at(wavelength), to = sample.at(wavelength);
  if (!is_between_0_and_1(from) || !is_between_0_and_1(to)) {
    return Refusal{"K/S is not defined for the reflectance at " + number_text(wavelength) + " nm"};
  }
  return 100 * absorption(to) / absorption(from);
}

}  // namespace zol_v2::colorimetry
