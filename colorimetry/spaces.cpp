#include "colorimetry/spaces.h"

#include <lcms2.h>

#include <algorithm>
#include <cmath>

#include "colorimetry/internal/matrix.h"

namespace zol_v2::colorimetry {

using internal::inverse;
using internal::Matrix;
using internal::scaled_columns;
using internal::Vector;
using internal::operator*;

namespace {

constexpr double k_pi = 3.14159265358979323846;

cmsCIEXYZ cms(const Xyz& xyz) { return {xyz.x, xyz.y, xyz.z}; }
Vector vector(const Xyz& xyz) { return {xyz.x, xyz.y, xyz.z}; }
Xyz xyz_from(const Vector& v) { return {v[0], v[1], v[2]}; }
Vector vector(const Rgb& rgb) { return {rgb.r, rgb.g, rgb.b}; }
Rgb rgb_from(const Vector& v) { return {v[0], v[1], v[2]}; }

// A hue a hair below 0 rounds to 360 when it is turned once around.
double hue_below_360(double degrees) { return degrees >= 360 ? 0 : degrees; }

Lch polar(double l, double a, double b) {
  const cmsCIELab lab = {l, a, b};
  cmsCIELCh lch;
  cmsLab2LCh(&lch, &lab);
  return {lch.L, lch.C, hue_below_360(lch.h)};
}

Lab cartesian(const Lch& polar) {
  const cmsCIELCh lch = {polar.l, polar.c, polar.h};
  cmsCIELab lab;
  cmsLCh2Lab(&lab, &lch);
  return {lab.L, lab.a, lab.b};
}

// u', v' of CIE 1976. Of black the ones of nothing, which do not count as L* is 0.
struct Uv {
  double u = 0, v = 0;
};
Uv uv_of(const Xyz& xyz) {
  const double divisor = xyz.x + 15 * xyz.y + 3 * xyz.z;
  if (divisor == 0) return {};
  return {4 * xyz.x / divisor, 9 * xyz.y / divisor};
}

// --- RGB -----------------------------------------------------------------------------------------

struct RgbDefinition {
  double primaries[3][2];  // x and y of red, green and blue
  double white[2];
};

// In the order of RgbSpace.
constexpr RgbDefinition k_definitions[] = {
    {{{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}}, {0.3127, 0.3290}},
    {{{0.64, 0.33}, {0.21, 0.71}, {0.15, 0.06}}, {0.3127, 0.3290}},
    {{{0.7347, 0.2653}, {0.1152, 0.8264}, {0.1566, 0.0177}}, {0.3457, 0.3585}},
};

constexpr Vector unit_luminance(const double (&xy)[2]) {
  return {xy[0] / xy[1], 1, (1 - xy[0] - xy[1]) / xy[1]};
}

struct RgbMatrices {
  Vector white;
  Matrix to_xyz;
  Matrix from_xyz;
};

// SMPTE RP 177-1993: the amounts of the primaries are those that make the white.
constexpr RgbMatrices matrices_of(const RgbDefinition& definition) {
  Matrix columns{};
  for (int i = 0; i < 3; ++i) {
    const Vector primary = unit_luminance(definition.primaries[i]);
    for (int j = 0; j < 3; ++j) columns[j][i] = primary[j];
  }
  const Vector white = unit_luminance(definition.white);
  const Matrix to_xyz = scaled_columns(columns, inverse(columns) * white);
  return {white, to_xyz, inverse(to_xyz)};
}

constexpr RgbMatrices k_rgb[] = {matrices_of(k_definitions[0]), matrices_of(k_definitions[1]),
                                 matrices_of(k_definitions[2])};

const RgbMatrices& rgb_matrices(RgbSpace space) { return k_rgb[static_cast<int>(space)]; }

constexpr double k_adobe_gamma = 563.0 / 256;

double encoded(double linear, RgbSpace space) {
  const double light = std::fabs(linear);
  double value = 0;
  if (space == RgbSpace::srgb) {
    value = light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
  } else {
    value = std::pow(light, 1 / k_adobe_gamma);
  }
  return std::copysign(value, linear);
}

double decoded(double encoded, RgbSpace space) {
  // Where the two pieces of IEC 61966-2-1 meet, as encoded() has it.
  constexpr double k_end_of_line = 12.92 * 0.0031308;
  const double value = std::fabs(encoded);
  double light = 0;
  if (space == RgbSpace::srgb) {
    light = value <= k_end_of_line ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  } else {
    light = std::pow(value, k_adobe_gamma);
  }
  return std::copysign(light, encoded);
}

double between_0_and_1(double value) { return value > 0 ? std::min(value, 1.0) : 0; }

// Hue in sixths of a turn from the greatest and the least channel.
double hue_of(const Rgb& rgb, double greatest, double chroma) {
  if (chroma == 0) return 0;
  double sixths = 0;
  if (greatest == rgb.r) {
    sixths = (rgb.g - rgb.b) / chroma;
  } else if (greatest == rgb.g) {
    sixths = (rgb.b - rgb.r) / chroma + 2;
  } else {
    sixths = (rgb.r - rgb.g) / chroma + 4;
  }
  const double degrees = 60 * sixths;
  return degrees < 0 ? hue_below_360(degrees + 360) : degrees;
}

Rgb from_hue(double hue, double chroma, double least) {
  if (!(std::fabs(hue) < 1e9)) return {NAN, NAN, NAN};
  double sixths = std::fmod(hue / 60, 6);
  if (sixths < 0) sixths += 6;
  const double middle = chroma * (1 - std::fabs(std::fmod(sixths, 2) - 1));
  Rgb rgb;
  switch (static_cast<int>(sixths)) {
    case 0:
      rgb = {chroma, middle, 0};
      break;
    case 1:
      rgb = {middle, chroma, 0};
      break;
    case 2:
      rgb = {0, chroma, middle};
      break;
    case 3:
      rgb = {0, middle, chroma};
      break;
    case 4:
      rgb = {middle, 0, chroma};
      break;
    default:
      rgb = {chroma, 0, middle};
      break;
  }
  return {rgb.r + least, rgb.g + least, rgb.b + least};
}

constexpr double k_red = 0.299, k_green = 0.587, k_blue = 0.114;

// Luma, and blue and red less luma: what the spaces of television are scaled from.
struct Differences {
  double luma, blue, red;
};
Differences differences_of(const Rgb& rgb) {
  const double luma = k_red * rgb.r + k_green * rgb.g + k_blue * rgb.b;
  return {luma, rgb.b - luma, rgb.r - luma};
}
Rgb rgb_from(const Differences& d) {
  return {d.luma + d.red, d.luma - (k_red * d.red + k_blue * d.blue) / k_green, d.luma + d.blue};
}

constexpr double k_u_scale = 0.436 / (1 - k_blue);
constexpr double k_v_scale = 0.615 / (1 - k_red);
constexpr double k_iq_blue = 0.492, k_iq_red = 0.877;

struct Turn {
  double cosine, sine;
};
const Turn& turn_of_iq() {
  static const Turn turn = {std::cos(33 * k_pi / 180), std::sin(33 * k_pi / 180)};
  return turn;
}

// --- Adaptation ----------------------------------------------------------------------------------

constexpr Matrix k_bradford = {
    {{0.8951, 0.2664, -0.1614}, {-0.7502, 1.7135, 0.0367}, {0.0389, -0.0685, 1.0296}}};
constexpr Matrix k_cat02 = {
    {{0.7328, 0.4296, -0.1624}, {-0.7036, 1.6975, 0.0061}, {0.0030, 0.0136, 0.9834}}};
constexpr Matrix k_from_bradford = inverse(k_bradford);
constexpr Matrix k_from_cat02 = inverse(k_cat02);

// Hunter's constants on the scale of Y = 100.
double hunter_a(const Xyz& white) { return 175 / 198.04 * 100 * (white.x + white.y); }
double hunter_b(const Xyz& white) { return 70 / 218.11 * 100 * (white.y + white.z); }

}  // namespace

// --- Spaces of the CIE ---------------------------------------------------------------------------

Xyy xyy_of(const Xyz& xyz, const Xyz& white) {
  const double sum = xyz.x + xyz.y + xyz.z;
  if (sum == 0) {
    const double white_sum = white.x + white.y + white.z;
    return {white.x / white_sum, white.y / white_sum, xyz.y};
  }
  return {xyz.x / sum, xyz.y / sum, xyz.y};
}

Xyz xyz_of(const Xyy& xyy) {
  if (xyy.luminance == 0) return {};
  const double scale = xyy.luminance / xyy.y;
  return {xyy.x * scale, xyy.luminance, (1 - xyy.x - xyy.y) * scale};
}

Lab lab_of(const Xyz& xyz, const Xyz& white) {
  const cmsCIEXYZ from = cms(xyz), reference = cms(white);
  cmsCIELab lab;
  cmsXYZ2Lab(&reference, &lab, &from);
  return {lab.L, lab.a, lab.b};
}

Xyz xyz_of(const Lab& lab, const Xyz& white) {
  const cmsCIELab from = {lab.l, lab.a, lab.b};
  const cmsCIEXYZ reference = cms(white);
  cmsCIEXYZ xyz;
  cmsLab2XYZ(&reference, &xyz, &from);
  return {xyz.X, xyz.Y, xyz.Z};
}

Lch lch_of(const Lab& lab) { return polar(lab.l, lab.a, lab.b); }
Lab lab_of(const Lch& lch) { return cartesian(lch); }
Lch lch_of(const Luv& luv) { return polar(luv.l, luv.u, luv.v); }
Luv luv_of(const Lch& lch) {
  const Lab result = cartesian(lch);
  return {result.l, result.a, result.b};
}

Luv luv_of(const Xyz& xyz, const Xyz& white) {
  const double l = lab_of({0, xyz.y, 0}, {1, white.y, 1}).l;
  const Uv at = uv_of(xyz), neutral = uv_of(white);
  return {l, 13 * l * (at.u - neutral.u), 13 * l * (at.v - neutral.v)};
}

Xyz xyz_of(const Luv& luv, const Xyz& white) {
  if (luv.l == 0) return {};
  const double y = xyz_of(Lab{luv.l, 0, 0}, {1, white.y, 1}).y;
  const Uv neutral = uv_of(white);
  const double u = luv.u / (13 * luv.l) + neutral.u;
  const double v = luv.v / (13 * luv.l) + neutral.v;
  return {y * 9 * u / (4 * v), y, y * (12 - 3 * u - 20 * v) / (4 * v)};
}

HunterLab hunter_of(const Xyz& xyz, const Xyz& white) {
  const double y = xyz.y / white.y;
  if (y == 0) return {};
  const double root = std::sqrt(y);
  return {100 * root, hunter_a(white) * (xyz.x / white.x - y) / root,
          hunter_b(white) * (y - xyz.z / white.z) / root};
}

Xyz xyz_of(const HunterLab& hunter, const Xyz& white) {
  const double root = hunter.l / 100;
  const double y = root * root;
  return {(hunter.a / hunter_a(white) * root + y) * white.x, y * white.y,
          (y - hunter.b / hunter_b(white) * root) * white.z};
}

// --- RGB -----------------------------------------------------------------------------------------

Xyz white_of(RgbSpace space) { return xyz_from(rgb_matrices(space).white); }

Rgb linear_rgb_of(const Xyz& xyz, RgbSpace space) {
  return rgb_from(rgb_matrices(space).from_xyz * vector(xyz));
}

Rgb rgb_of(const Xyz& xyz, RgbSpace space) {
  const Rgb linear = linear_rgb_of(xyz, space);
  return {encoded(linear.r, space), encoded(linear.g, space), encoded(linear.b, space)};
}

Xyz xyz_of(const Rgb& rgb, RgbSpace space) {
  Vector linear = vector(rgb);
  for (double& channel : linear) channel = decoded(channel, space);
  return xyz_from(rgb_matrices(space).to_xyz * linear);
}

bool is_in_gamut(const Rgb& rgb) {
  constexpr double k_slack = 0.5 / 255;
  const Vector channels = vector(rgb);
  return std::all_of(channels.begin(), channels.end(),
                     [](double c) { return c >= -k_slack && c <= 1 + k_slack; });
}

Rgb clipped(const Rgb& rgb) {
  return {between_0_and_1(rgb.r), between_0_and_1(rgb.g), between_0_and_1(rgb.b)};
}

std::array<unsigned char, 3> bytes_of(const Rgb& rgb) {
  const auto byte = [](double channel) {
    return static_cast<unsigned char>(std::lround(255 * between_0_and_1(channel)));
  };
  return {byte(rgb.r), byte(rgb.g), byte(rgb.b)};
}

// --- Transforms of an RGB ------------------------------------------------------------------------

Hsl hsl_of(const Rgb& rgb) {
  const double greatest = std::max({rgb.r, rgb.g, rgb.b});
  const double least = std::min({rgb.r, rgb.g, rgb.b});
  const double chroma = greatest - least;
  const double lightness = (greatest + least) / 2;
  const double room = 1 - std::fabs(2 * lightness - 1);
  return {hue_of(rgb, greatest, chroma), chroma == 0 ? 0 : chroma / room, lightness};
}

Rgb rgb_of(const Hsl& hsl) {
  const double chroma = (1 - std::fabs(2 * hsl.lightness - 1)) * hsl.saturation;
  return from_hue(hsl.hue, chroma, hsl.lightness - chroma / 2);
}

Hsv hsv_of(const Rgb& rgb) {
  const double greatest = std::max({rgb.r, rgb.g, rgb.b});
  const double chroma = greatest - std::min({rgb.r, rgb.g, rgb.b});
  return {hue_of(rgb, greatest, chroma), chroma == 0 ? 0 : chroma / greatest, greatest};
}

Rgb rgb_of(const Hsv& hsv) {
  const double chroma = hsv.value * hsv.saturation;
  return from_hue(hsv.hue, chroma, hsv.value - chroma);
}

Yuv yuv_of(const Rgb& rgb) {
  const Differences d = differences_of(rgb);
  return {d.luma, k_u_scale * d.blue, k_v_scale * d.red};
}
Rgb rgb_of(const Yuv& yuv) {
  return rgb_from(Differences{yuv.y, yuv.u / k_u_scale, yuv.v / k_v_scale});
}

Yiq yiq_of(const Rgb& rgb) {
  const Differences d = differences_of(rgb);
  const Turn& turn = turn_of_iq();
  const double blue = k_iq_blue * d.blue, red = k_iq_red * d.red;
  return {d.luma, turn.cosine * red - turn.sine * blue, turn.sine * red + turn.cosine * blue};
}
Rgb rgb_of(const Yiq& yiq) {
  const Turn& turn = turn_of_iq();
  const double red = turn.cosine * yiq.i + turn.sine * yiq.q;
  const double blue = turn.cosine * yiq.q - turn.sine * yiq.i;
  return rgb_from(Differences{yiq.y, blue / k_iq_blue, red / k_iq_red});
}

Ybr ybr_of(const Rgb& rgb) {
  const Differences d = differences_of(rgb);
  return {d.luma, 0.5 + d.blue / (2 * (1 - k_blue)), 0.5 + d.red / (2 * (1 - k_red))};
}
Rgb rgb_of(const Ybr& ybr) {
  return rgb_from(
      Differences{ybr.y, (ybr.b - 0.5) * 2 * (1 - k_blue), (ybr.r - 0.5) * 2 * (1 - k_red)});
}

// --- Chromatic adaptation ------------------------------------------------------------------------

Xyz adapted(const Xyz& xyz, const Xyz& from_white, const Xyz& to_white, Adaptation method) {
  if (method == Adaptation::none || from_white == to_white) return xyz;
  const bool is_bradford = method == Adaptation::bradford;
  const Matrix& to_cones = is_bradford ? k_bradford : k_cat02;
  const Vector from = to_cones * vector(from_white), to = to_cones * vector(to_white);
  Vector cones = to_cones * vector(xyz);
  for (int i = 0; i < 3; ++i) cones[i] *= to[i] / from[i];
  return xyz_from((is_bradford ? k_from_bradford : k_from_cat02) * cones);
}

}  // namespace zol_v2::colorimetry
