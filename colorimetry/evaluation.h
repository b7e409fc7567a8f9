// Quality control: what the records of a document give, and whether it passes.
//
//   const Evaluation evaluation = evaluate(document);
//   for (const Verdict& verdict : evaluation.verdicts) ...
//
// A tolerance of a record is held to all its standards, and one of a standard to that one, or to
// all where it says that it is global. It is judged once for each measurement; for what is computed
// over the measurements, once for the standard; and an average over the standards once for the
// record.
//
// Two colours are compared under one light and observer alone: those of the tolerance, else the
// first for which the standard has coordinates (for deviations, the first measurement), else D50
// and 2 degrees (ISO 13655). Coordinates of the document for just these conditions come first, then
// the spectrum. Coordinates are never adapted, device values without a profile never used. Where
// geometry, filter, polarisers or quantity are known of both and differ, or the geometry is not the
// tolerance's, nothing is judged. Further illuminants of a tolerance serve metamerism alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "colorimetry/comparison.h"
#include "colorimetry/export.h"

namespace zol_v2 {
class ColorQualityControlType;
class FunctionType;
class ToleranceType;
class Zol;
}  // namespace zol_v2

namespace zol_v2::colorimetry {

// What can be computed; docs/colour.md has the source of each.
enum class Formula : unsigned char {
  none,  // no published formula; the reason says more
  de76,
  de94,
  de2000,
  cmc,
  din99,
  hunter_de,
  fmc2,
  lab_parts,            // magnitudes of dL*, da*, db*, dC*, dH*
  lab_parts_signed,     // the same with their signs
  lch_parts,            // magnitudes
  hunter_parts,         // magnitudes of dL, da, db of Hunter
  hunter_parts_signed,  // the same with their signs
  metamerism,
  brightness,
  whiteness,
  yellowness,
  density,
  strength,
  mean_de76,
  std_dev_x,
  std_dev_y,
  std_dev_z,
  std_dev_l,
  std_dev_a,
  std_dev_b,
  std_dev_c,
  std_dev_h,
  average_std_dev_l,
  average_std_dev_a,
  average_std_dev_b
};

// "CIEDE2000".
ZOL_COLORIMETRY_API std::string_view name_of(Formula formula);
// Where it was published: "ISO/CIE 11664-6". Empty for none.
ZOL_COLORIMETRY_API std::string_view source_of(Formula formula);

// By a formula that needs no more than two stimuli: differences, whose parts formulas give the
// whole, and whiteness and yellowness of the sample. Factors as in Computed. Refused for other
// formulas, and where an index is not defined.
ZOL_COLORIMETRY_API Outcome<double> difference_by(Formula formula, const Factors& factors,
                                                  const Stimulus& standard, const Stimulus& sample);

// How a tolerance is met.
enum class Status : unsigned char { passed, warning, failed, not_judged };

// "pass", "warning", "fail", "not judged".
ZOL_COLORIMETRY_API std::string_view name_of(Status status);

// The range that a number has to lie in, ends included.
struct Limits {
  // The least and the greatest number that passes; none for no end.
  std::optional<double> low, high;

  // Whether there is an end at all.
  bool has_any() const { return low || high; }
  // Whether no end is NaN.
  bool is_sound() const { return !(low && *low != *low) && !(high && *high != *high); }
  // Whether the value lies between; NaN does.
  bool hold(double value) const { return !(low && value < *low) && !(high && value > *high); }
};

// A number that a function gives beside its result, with the limits that it has of its own.
struct PartVerdict {
  std::string_view name;  // as in "dL*", or "value" for the result itself
  double value = 0;       // as computed
  Limits limits;          // none unless the function has some for it
  bool is_held = true;    // whether the value lies in the limits
};

// Where a function of a document stands, by numbers from 0.
struct FunctionPlace {
  static constexpr unsigned k_all = ~0U;  // not one of them, but over all

  unsigned record = 0;           // of quality control
  unsigned pair = k_all;         // StandardAndMeasurement
  unsigned measurement = k_all;  // in the pair
};

// What a function gives.
struct Computed {
  FunctionPlace place;                     // where the function stands
  const FunctionType* function = nullptr;  // the document's own
  Formula formula = Formula::none;         // what was computed
  // None where it can't be computed, and then the reason, in UTF-8.
  std::optional<double> value;
  std::string reason;
  // Parametric factors in effect where the formula has some: kL, kC and kH; l and c of CMC; kE as l
  // and kCH as c of DIN99.
  Factors factors;
  // None for what needs no light. For metamerism these are the ones of reference, and the test
  // light is the one of the tolerance's further illuminants that gives the greater value.
  std::optional<Conditions> conditions;
  std::optional<Light> test_light;
  // The conditions were neither in the tolerance nor in the standard's coordinates.
  bool has_default_conditions = false;
  // What the numbers of the standard and of the measurement came from.
  Source standard_source = Source::tristimulus;
  Source measurement_source = Source::tristimulus;

  // The document's own Result for it, and whether it is beyond rounding off the value.
  std::optional<double> stored;
  bool is_stored_wrong = false;
};

// One judgement of a tolerance.
struct Verdict : Computed {
  // The document's own.
  const ToleranceType* tolerance = nullptr;
  // Whether the tolerance is one of the standard's own.
  bool is_of_standard = false;
  // By its number in the standard or the record.
  unsigned tolerance_index = 0;
  // The limits of the tolerance for the value.
  Limits limits;
  // From which on a value that passes is a warning.
  std::optional<double> warning_level;
  // The parts of the difference, with limits of their own.
  std::vector<PartVerdict> parts;
  // How it ended; `reason` says why nothing was judged.
  Status status = Status::not_judged;
};

// All that a document's records give.
struct Evaluation {
  // In the order of the document: by record, standard, measurement and tolerance. Their number is
  // that of the measurements times that of the tolerances, so a small document may ask for more
  // than any memory holds: after 500,000 the evaluation stops, and is_cut is set.
  std::vector<Verdict> verdicts;
  bool is_cut = false;
  // The functions that stand in the measurements, by themselves: their values, and what is stored.
  std::vector<Computed> results;

  // Verdicts of that status.
  ZOL_COLORIMETRY_API std::size_t count(Status status) const;
  // Stored results that disagree with the numbers.
  ZOL_COLORIMETRY_API std::size_t wrong_count() const;
};

// The pointers in it are into the document, for as long as it stays as it is.
ZOL_COLORIMETRY_API Evaluation evaluate(const Zol& document);
ZOL_COLORIMETRY_API Evaluation evaluate(const ColorQualityControlType& record);

// Writes what was computed into the measurements: the Result of each function of a measurement that
// has a value, and for a tolerance that was computed for a single measurement a copy of its
// function with the Result, unless the measurement has that function already. Gives the number of
// results that were stored or changed. `evaluation` must be of this document as it stands; its
// pointers are not good any more afterwards.
ZOL_COLORIMETRY_API std::size_t store_results(Zol& document, const Evaluation& evaluation);

}  // namespace zol_v2::colorimetry
