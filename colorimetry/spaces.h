// Colour spaces that have a published definition, and the ways between them.
//
// Tristimulus values have the perfect diffuser, or the white of a display, at Y = 1, as documents
// have them. L*, a*, b*, u*, v* and Hunter's L, a, b are on their usual scales, hues in degrees
// from 0 up to but not including 360, RGB and what follows from it from 0 to 1 as far as it is in
// gamut.
//
// No conversion changes the white: coordinates come back relative to the white that is given.
// Whatever numbers come in, nothing fails; what has no result gives NaN.
#pragma once

#include <array>

#include "colorimetry/export.h"

namespace zol_v2::colorimetry {

// --- Spaces of the CIE ---------------------------------------------------------------------------

// Tristimulus values, with the perfect diffuser or the white of a display at Y = 1.
struct Xyz {
  // X, Y and Z.
  double x = 0, y = 0, z = 0;

  // Whether all three are exactly equal.
  bool operator==(const Xyz& other) const { return x == other.x && y == other.y && z == other.z; }
  bool operator!=(const Xyz& other) const { return !(*this == other); }
};
// Chromaticity x, y and luminance factor Y.
struct Xyy {
  // x and y from 0 to 1; Y on the scale of Xyz.
  double x = 0, y = 0, luminance = 0;
};
// Coordinates in CIELAB.
struct Lab {
  // L* from 0 to 100, a* and b*.
  double l = 0, a = 0, b = 0;
};
// Of Lab, chroma C*ab and hue hab; of Luv, C*uv and huv.
struct Lch {
  // Lightness, chroma, and hue in degrees from 0 to below 360.
  double l = 0, c = 0, h = 0;
};
// Coordinates in CIELUV.
struct Luv {
  // L* from 0 to 100, u* and v*.
  double l = 0, u = 0, v = 0;
};

// CIE 15:2004, clause 7.3. Black has the chromaticity of the white: there is no other.
ZOL_COLORIMETRY_API Xyy xyy_of(const Xyz& xyz, const Xyz& white);
ZOL_COLORIMETRY_API Xyz xyz_of(const Xyy& xyy);
// CIELAB, CIE 15:2004, clause 8.2.1, or ISO/CIE 11664-4; the constants as ratios of integers.
ZOL_COLORIMETRY_API Lab lab_of(const Xyz& xyz, const Xyz& white);
ZOL_COLORIMETRY_API Xyz xyz_of(const Lab& lab, const Xyz& white);
ZOL_COLORIMETRY_API Lch lch_of(const Lab& lab);
ZOL_COLORIMETRY_API Lab lab_of(const Lch& lch);
// CIELUV, CIE 15:2004, clause 8.2.2, or ISO/CIE 11664-5.
ZOL_COLORIMETRY_API Luv luv_of(const Xyz& xyz, const Xyz& white);
ZOL_COLORIMETRY_API Xyz xyz_of(const Luv& luv, const Xyz& white);
ZOL_COLORIMETRY_API Lch lch_of(const Luv& luv);
ZOL_COLORIMETRY_API Luv luv_of(const Lch& lch);

// Hunter L, a, b.
struct HunterLab {
  // L from 0 to 100, a and b.
  double l = 0, a = 0, b = 0;
};
// R. S. Hunter: Photoelectric color difference meter, JOSA 48 (1958), with the constants Ka and Kb
// scaled to any white from those of illuminant C, 2 degrees: Ka = 175/198.04 (Xn + Yn),
// Kb = 70/218.11 (Yn + Zn), on the scale Yn = 100.
ZOL_COLORIMETRY_API HunterLab hunter_of(const Xyz& xyz, const Xyz& white);
ZOL_COLORIMETRY_API Xyz xyz_of(const HunterLab& hunter, const Xyz& white);

// --- RGB -----------------------------------------------------------------------------------------

// Non-linear red, green and blue.
struct Rgb {
  // Each from 0 to 1 in gamut.
  double r = 0, g = 0, b = 0;
};

// The spaces of red, green and blue with published primaries.
enum class RgbSpace : unsigned char {
  srgb,            // IEC 61966-2-1:1999
  adobe_rgb_1998,  // Adobe RGB (1998) color image encoding, version 2005-05
  wide_gamut       // the wide gamut RGB of the same house: primaries at 700, 525 and 450 nm, D50
};

// The white of the space, Y = 1: D65 of the standards, x 0.3127, y 0.3290, and for the wide gamut
// D50, x 0.3457, y 0.3585.
ZOL_COLORIMETRY_API Xyz white_of(RgbSpace space);
// The matrices follow from the primaries and the white. Negative light is encoded as the mirror
// image of positive light, so that nothing out of gamut is lost.
ZOL_COLORIMETRY_API Rgb rgb_of(const Xyz& xyz, RgbSpace space);
ZOL_COLORIMETRY_API Xyz xyz_of(const Rgb& rgb, RgbSpace space);
// The light of the three, without the transfer curve.
ZOL_COLORIMETRY_API Rgb linear_rgb_of(const Xyz& xyz, RgbSpace space);

// Whether all three lie from 0 to 1, give or take half a step of eight bits.
ZOL_COLORIMETRY_API bool is_in_gamut(const Rgb& rgb);
// Each of the three brought to 0 to 1; NaN to 0.
ZOL_COLORIMETRY_API Rgb clipped(const Rgb& rgb);
// Eight bits a channel, rounded, clipped.
ZOL_COLORIMETRY_API std::array<unsigned char, 3> bytes_of(const Rgb& rgb);

// --- Transforms of an RGB ------------------------------------------------------------------------

// Hue, saturation and lightness.
struct Hsl {
  // The hue in degrees from 0 to below 360, the others from 0 to 1.
  double hue = 0, saturation = 0, lightness = 0;
};
// Hue, saturation and value.
struct Hsv {
  // As of Hsl.
  double hue = 0, saturation = 0, value = 0;
};
// A. R. Smith: Color gamut transform pairs, SIGGRAPH 1978 (HSV); Joblove and Greenberg: Color
// spaces for computer graphics, SIGGRAPH 1978 (HSL). Greys have hue 0.
ZOL_COLORIMETRY_API Hsl hsl_of(const Rgb& rgb);
ZOL_COLORIMETRY_API Rgb rgb_of(const Hsl& hsl);
ZOL_COLORIMETRY_API Hsv hsv_of(const Rgb& rgb);
ZOL_COLORIMETRY_API Rgb rgb_of(const Hsv& hsv);

// Luma and two differences of colour. Luma has the weights 0.299, 0.587 and 0.114 in all three.
struct Yuv {
  // Y from 0 to 1, U from -0.436 to 0.436, V from -0.615 to 0.615.
  double y = 0, u = 0, v = 0;
};
// Luma and two chrominances of NTSC.
struct Yiq {
  // Y from 0 to 1, I from -0.5957 to 0.5957, Q from -0.5226 to 0.5226.
  double y = 0, i = 0, q = 0;
};
// Luma and two differences at full scale.
struct Ybr {
  // Each from 0 to 1; greys have 0.5 for both differences.
  double y = 0, b = 0, r = 0;
};
// Analogue PAL, ITU-R BT.470-6: U = 0.436/0.886 (B - Y), V = 0.615/0.701 (R - Y).
ZOL_COLORIMETRY_API Yuv yuv_of(const Rgb& rgb);
ZOL_COLORIMETRY_API Rgb rgb_of(const Yuv& yuv);
// NTSC, 47 CFR 73.682: 0.492 (B - Y) and 0.877 (R - Y) turned by 33 degrees, which gives I from
// -0.5957 to 0.5957 and Q from -0.5226 to 0.5226.
ZOL_COLORIMETRY_API Yiq yiq_of(const Rgb& rgb);
ZOL_COLORIMETRY_API Rgb rgb_of(const Yiq& yiq);
// ITU-R BT.601 at full scale, the differences moved up by a half to lie from 0 to 1.
ZOL_COLORIMETRY_API Ybr ybr_of(const Rgb& rgb);
ZOL_COLORIMETRY_API Rgb rgb_of(const Ybr& ybr);

// --- Chromatic adaptation ------------------------------------------------------------------------

// How a colour is brought to another white.
enum class Adaptation : unsigned char {
  none,      // not at all: the values stay
  bradford,  // linear, as in ISO 15076-1, annex E
  cat02      // full adaptation with the matrix of CIE 159:2004
};

// The corresponding colour under another white. A white without light gives NaN.
ZOL_COLORIMETRY_API Xyz adapted(const Xyz& xyz, const Xyz& from_white, const Xyz& to_white,
                                Adaptation method = Adaptation::bradford);

}  // namespace zol_v2::colorimetry
