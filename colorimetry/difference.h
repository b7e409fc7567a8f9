// Colour differences and indices, each by a published formula.
//
// Where a formula tells the standard from the sample, the standard comes first. Nothing fails: what
// has no result, as with a factor of 0, gives NaN or an infinity.
#pragma once

#include "colorimetry/colorimeter.h"
#include "colorimetry/export.h"
#include "colorimetry/outcome.h"
#include "colorimetry/spaces.h"
#include "colorimetry/spectrum.h"

namespace zol_v2::colorimetry {

// --- Differences ---------------------------------------------------------------------------------

// What the sample has more than the standard: in CIELAB, with dC*ab and dH*ab (CIE 15:2004, clause
// 8.2.3), the latter with the sign of the hue angle's change; or in Hunter's L, a, b.
struct Parts {
  // Signed; those of chroma and hue are 0 in Hunter's space.
  double l = 0, a = 0, b = 0, c = 0, h = 0;
};
// The parts of a difference in the space of the two.
ZOL_COLORIMETRY_API Parts parts_of(const Lab& standard, const Lab& sample);
ZOL_COLORIMETRY_API Parts parts_of(const HunterLab& standard, const HunterLab& sample);

// Parametric factors kL, kC, kH: all 1 in reference conditions.
struct Factors {
  // Of lightness, chroma and hue.
  double l = 1, c = 1, h = 1;
};

// CIE 1976, CIE 15:2004, clause 8.2.1.2.
ZOL_COLORIMETRY_API double de76(const Lab& standard, const Lab& sample);
// CIE 116-1995: chroma weights from the chroma of the standard.
ZOL_COLORIMETRY_API double de94(const Lab& standard, const Lab& sample, const Factors& k = {});
// CIE 142-2001, ISO/CIE 11664-6; G. Sharma, W. Wu, E. N. Dalal: The CIEDE2000 color-difference
// formula, Color Research and Application 30 (2005).
ZOL_COLORIMETRY_API double de2000(const Lab& standard, const Lab& sample, const Factors& k = {});
// CMC(l:c), BS 6923:1988, ISO 105-J03.
ZOL_COLORIMETRY_API double de_cmc(const Lab& standard, const Lab& sample, double l = 2,
                                  double c = 1);
// DIN99, DIN 6176:2001. kE scales the whole, kCH chroma and hue against lightness.
ZOL_COLORIMETRY_API Lab din99_of(const Lab& lab, double k_e = 1, double k_ch = 1);
ZOL_COLORIMETRY_API double de99(const Lab& standard, const Lab& sample, double k_e = 1,
                                double k_ch = 1);
// R. S. Hunter, 1958: the distance in Hunter's L, a, b.
ZOL_COLORIMETRY_API double de_hunter(const HunterLab& standard, const HunterLab& sample);
// FMC-2, K. D. Chickering: FMC color-difference formulas: clarification concerning usage, JOSA 61
// (1971), as in Wyszecki and Stiles: Color Science. The formula was made for illuminant C.
ZOL_COLORIMETRY_API double de_fmc2(const Xyz& standard, const Xyz& sample);

// DIN 6172 and CIE 15:2004, clause 9.2: DE*ab under the test illuminant, after the sample was
// multiplied by what makes it match the standard under the reference illuminant. All four share the
// observer; the second pair is under the test illuminant.
ZOL_COLORIMETRY_API double metamerism(const Xyz& standard_reference, const Xyz& sample_reference,
                                      const Xyz& standard_test, const Xyz& sample_test,
                                      const Xyz& test_white);

// --- Indices -------------------------------------------------------------------------------------

// Whiteness W of CIE 15:2004, clause 9.1. Refused: another light than D65, and what the formula is
// not for, with W outside of 40 to 5Y - 280 or a tint outside of -4 to 2.
ZOL_COLORIMETRY_API Outcome<double> whiteness(const Stimulus& stimulus);
// The tint of the same clause.
ZOL_COLORIMETRY_API Outcome<double> tint(const Stimulus& stimulus);
// Yellowness index of ASTM E313, for C and D65 and either observer; refused otherwise.
ZOL_COLORIMETRY_API Outcome<double> yellowness(const Stimulus& stimulus);
// ISO 2470-1: the reflectance factor weighted around 457 nm, in percent. Refused for a spectrum
// that has no values from 400 to 510 nm.
ZOL_COLORIMETRY_API Outcome<double> brightness(const Spectrum& spectrum);

// Where K/S of the standard is greatest from 400 to 700 nm, of its measured points.
ZOL_COLORIMETRY_API Outcome<double> strongest_wavelength(const Spectrum& standard);
// Relative strength in percent, AATCC Evaluation Procedure 6: K/S = (1 - R)^2 / 2R of the sample by
// that of the standard at one wavelength (Kubelka and Munk). Refused where a reflectance is not
// above 0 and below 1, and outside of the spectra.
ZOL_COLORIMETRY_API Outcome<double> strength(const Spectrum& standard, const Spectrum& sample,
                                             double wavelength);

}  // namespace zol_v2::colorimetry
