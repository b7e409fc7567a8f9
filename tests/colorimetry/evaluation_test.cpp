// Verdicts: records worked out by hand, what can't be judged, and results written back.
#include "colorimetry/evaluation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "colorimetry/colour_documents.h"

namespace zol_v2::colorimetry {
namespace {

using zol_test::element;
using zol_test::lab;
using zol_test::load;
using zol_test::Measured;
using zol_test::measurement;
using zol_test::pair;
using zol_test::record;
using zol_test::space;
using zol_test::spectrum;
using zol_test::standard;

std::string limits(const std::string& high, const std::string& low = "") {
  return element(
      "Limits", element("HighTolerance", high) + (low.empty() ? "" : element("LowTolerance", low)));
}

std::string tolerance(const std::string& function, const std::string& before = limits("2")) {
  return element("Tolerance", before + function);
}

std::string parameter(const std::string& name, const std::string& low,
                      const std::string& high = "") {
  return element("Parameters", (high.empty() ? "" : element("HighValue", high)) +
                                   (name.empty() ? "" : element("ToleranceParameter", name)) +
                                   element("LowValue", low));
}

std::string by_type(const std::string& type, const std::string& parameters) {
  return "<Function xsi:type='FunctionTolerance'>" + element("ToleranceType", type) + parameters +
         "</Function>";
}

const std::string k_factors = "<Param_l>1</Param_l><Param_c>1</Param_c><Param_h>1</Param_h>";

// The record that most cases are about: the standard is L* 50, a* 30, b* 40, the measurement two
// lighter, three less red and five more yellow. DE*ab is the root of 38.
class EvaluationTest : public testing::Test {
 protected:
  const Verdict& judge(const std::string& tolerance, const std::string& sample = lab(52, 27, 45),
                       const std::string& reference = lab(50, 30, 40)) {
    load(document_, record(pair(measurement(sample), standard(reference)), tolerance));
    evaluation_ = evaluate(document_);
    EXPECT_EQ(evaluation_.verdicts.size(), 1u);
    return evaluation_.verdicts.front();
  }

  Zol document_;
  Evaluation evaluation_;
};

TEST_F(EvaluationTest, ValuesByHand) {
  struct Case {
    const char* name;
    std::string function;
    double value, slack;
  };
  const double root_of_38 = std::sqrt(38);
  const Case cases[] = {
      {"DE", "<FunctionDE/>", root_of_38, 1e-9},
      {"DE94", element("FunctionDE94", k_factors), 3.698335, 1e-6},
      {"DE94, kL of 2 by default", by_type("DE94", parameter("Param_KL", "2")), 3.267672, 1e-6},
      {"DE94 of a tolerance", by_type("DE94", parameter("Param_delta", "0")), 3.698335, 1e-6},
      {"DE*", by_type("DE*", parameter("", "0")), root_of_38, 1e-9},
      {"parts", by_type("L*a*b*PlusMinus", parameter("Param_L", "-3", "3")), root_of_38, 1e-9},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Verdict& verdict = judge(tolerance(c.function, limits("10")));
    ASSERT_TRUE(verdict.value) << verdict.reason;
    EXPECT_NEAR(*verdict.value, c.value, c.slack);
    EXPECT_EQ(text_of(*verdict.conditions), "D50, 2 degrees");
    EXPECT_FALSE(verdict.has_default_conditions);
    EXPECT_EQ(verdict.status, Status::passed);
  }
}

TEST_F(EvaluationTest, LimitsAndWarningLevels) {
  // The value is 6.164.
  struct Case {
    const char* name;
    std::string before;
    Status status;
  };
  const Case cases[] = {
      {"within", limits("7"), Status::passed},
      {"above", limits("6"), Status::failed},
      {"below the low end", limits("9", "7"), Status::failed},
      {"between", limits("7", "6"), Status::passed},
      {"warned", limits("7") + element("WarningLevel", "6"), Status::warning},
      {"not yet warned", limits("7") + element("WarningLevel", "6.2"), Status::passed},
      {"failure before warning", limits("6") + element("WarningLevel", "5"), Status::failed},
      {"a warning level alone", element("WarningLevel", "5"), Status::warning},
      {"no limits", "", Status::not_judged},
      {"a limit that is no number", limits("NaN"), Status::not_judged},
      {"no end", limits("INF"), Status::passed},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Verdict& verdict = judge(tolerance("<FunctionDE/>", c.before));
    EXPECT_EQ(verdict.status, c.status) << verdict.reason;
    EXPECT_TRUE(verdict.value);
    EXPECT_EQ(verdict.reason.empty(), c.status != Status::not_judged);
  }
}

TEST_F(EvaluationTest, PartsHaveLimitsOfTheirOwn) {
  struct Case {
    const char* name;
    std::string function;
    Status status;
    double part;
  };
  const Case cases[] = {
      {"lighter, signed", by_type("L*a*b*PlusMinus", parameter("Param_L", "-1", "3")),
       Status::passed, 2},
      {"redder, signed", by_type("L*a*b*PlusMinus", parameter("Param_a", "-2", "9")),
       Status::failed, -3},
      {"redder, by magnitude", by_type("L*a*b*", parameter("Param_a", "0", "3.5")), Status::passed,
       3},
      {"no high end", by_type("L*a*b*PlusMinus", parameter("Param_b", "4")), Status::passed, 5},
      {"chroma", by_type("L*C*H*", parameter("Param_C", "0", "2.4")), Status::failed, 2.478567},
      {"hue", by_type("L*C*H*", parameter("Param_H", "0", "5.3")), Status::passed, 5.277945},
      {"of a whole difference", by_type("DE00", parameter("Param_L", "-1", "1")), Status::failed,
       2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Verdict& verdict = judge(tolerance(c.function, ""));
    EXPECT_EQ(verdict.status, c.status) << verdict.reason;
    ASSERT_EQ(verdict.parts.size(), 1u);
    EXPECT_NEAR(verdict.parts[0].value, c.part, 1e-5);
    EXPECT_EQ(verdict.parts[0].is_held, c.status == Status::passed);
  }
}

TEST_F(EvaluationTest, WhatNoFormulaIsKnownForIsNotJudged) {
  struct Case {
    std::string function, reason;
  };
  const Case cases[] = {
      {by_type("ddna", parameter("", "0")), "no published formula is known for \"ddna\""},
      {by_type("df", parameter("", "0")), "no published formula is known for \"df\""},
      {by_type("DEDIN6175", parameter("", "0")), "no published formula is known for \"DEDIN6175\""},
      {"<FunctionGeneric><Name>house</Name></FunctionGeneric>",
       "the function \"house\" is the document's own"},
      {by_type("DE00", parameter("Param_kE", "1")), "CIEDE2000 has no place for Param_kE"},
      {by_type("DE00", parameter("Param_KL", "1", "2")), "Param_KL has two values"},
      {by_type("DE00", parameter("Param_KL", "0")), "Param_KL is not above 0"},
      {by_type("Whiteness", parameter("Param_P", "1")), "CIE whiteness has no place for Param_P"},
      {"<FunctionDE94><Param_l>0</Param_l><Param_c>1</Param_c><Param_h>1</Param_h></FunctionDE94>",
       "a parametric factor is not above 0"},
      {by_type("Yellowness", parameter("", "0")), "yellowness is defined for C and D65"},
      {by_type("MetamerismIndex", parameter("", "0")),
       "the tolerance does not name the second illuminant"},
      {by_type("Brightness", parameter("", "0")), "the standard: the colour has no spectrum"},
      {by_type("StatusDensity", parameter("", "0")),
       "the colours have no measured density of one status and filter"},
      {"<FunctionStdDevL/>", "there is one measurement alone"},
      {"<FunctionAverageStdDevL/>", "no standard has two measurements"},
  };
  for (const Case& c : cases) {
    const Verdict& verdict = judge(tolerance(c.function));
    EXPECT_EQ(verdict.reason, c.reason);
    EXPECT_EQ(verdict.status, Status::not_judged);
    EXPECT_FALSE(verdict.value);
  }
}

double ramp(int nm) { return 0.1 + 0.002 * (nm - 400); }
double steeper(int nm) { return 0.1 + 0.0021 * (nm - 400); }

TEST_F(EvaluationTest, UnlikeConditionsAreNotCompared) {
  Measured other;
  const auto with = [&](auto change) {
    other = {};
    change(other);
    return lab(52, 27, 45, other);
  };
  struct Case {
    std::string sample, before, reason;
  };
  const Case cases[] = {
      {with([](Measured& m) { m.light = "<Illuminant>Illuminant_A</Illuminant>"; }), "",
       "the measurement: there is no spectrum, and CIELab is for A, 2 degrees"},
      {with([](Measured& m) { m.observer = "10"; }), "",
       "the measurement: there is no spectrum, and CIELab is for D50, 10 degrees"},
      {with([](Measured& m) { m.light.clear(); }), "",
       "the measurement: the illuminant or the observer of the coordinates is not known"},
      {with([](Measured& m) { m.geometry = "<Angle>0</Angle>"; }), "",
       "the measurement: the geometries differ: 45 degrees and 0 degrees"},
      {with([](Measured& m) { m.filter = "Filter_UVExcluded"; }), "",
       "the measurement: the filters differ"},
      {with([](Measured& m) { m.polarised = "true"; }), "",
       "the measurement: one was measured with polarisers and one without"},
      {with([](Measured& m) { m.quantity = "Spectrum_Transmittance"; }), "",
       "the measurement: they are not of one spectral quantity, such as reflectance"},
      {lab(52, 27, 45), element("PrimaryIlluminant", "Illuminant_D65"),
       "the standard: there is no spectrum, and CIELab is for D50, 2 degrees"},
      {lab(52, 27, 45), element("FieldOfView", "FieldOfView_10_Degree"),
       "the standard: there is no spectrum, and CIELab is for D50, 2 degrees"},
      {lab(52, 27, 45), element("Geometry", "<SphereGeometry>Sphere_Included</SphereGeometry>"),
       "the standard: the geometry is 45 degrees, not sphere, specular included"},
      {with([](Measured& m) { m.geometry.clear(); }), element("Geometry", "<Angle>45</Angle>"),
       "the measurement: the geometry is not given"},
      {space("NCS", Measured().generic() + "<ColorName>S 1050-R</ColorName>"), "",
       "the measurement: NCS has no published way to colorimetry"},
  };
  for (const Case& c : cases) {
    const Verdict& verdict = judge(tolerance("<FunctionDE/>", limits("20") + c.before), c.sample);
    EXPECT_EQ(verdict.reason, c.reason);
    EXPECT_EQ(verdict.status, Status::not_judged);
  }
  // Silence about a filter or a geometry is not another one.
  const std::string silent = with([](Measured& m) { m.geometry = m.filter = m.polarised = ""; });
  EXPECT_EQ(judge(tolerance("<FunctionDE/>", limits("20")), silent).status, Status::passed);
}

TEST_F(EvaluationTest, SpectraServeWhereNothingWasMeasured) {
  const std::string primary = element("PrimaryIlluminant", "Illuminant_D65") +
                              element("SecondaryIlluminant", "Illuminant_A") +
                              element("TertiaryIlluminant", "Illuminant_F11") +
                              element("FieldOfView", "FieldOfView_10_Degree");
  const std::string sample = lab(1, 2, 3) + spectrum(steeper), reference = spectrum(ramp);
  const Verdict& under_d65 =
      judge(tolerance("<FunctionDE/>", limits("99") + primary), sample, reference);
  ASSERT_TRUE(under_d65.value) << under_d65.reason;
  EXPECT_EQ(under_d65.measurement_source, Source::spectrum);
  EXPECT_EQ(text_of(*under_d65.conditions), "D65, 10 degrees");

  // Without a demand both are seen under D50 and 2 degrees: the coordinates of the measurement
  // alone are for just these, and so they count.
  const Verdict& open = judge(tolerance("<FunctionDE/>", limits("99")), sample, reference);
  EXPECT_TRUE(open.has_default_conditions);
  EXPECT_EQ(open.measurement_source, Source::tristimulus);
  EXPECT_EQ(open.standard_source, Source::spectrum);

  const Verdict& metamerism =
      judge(tolerance(by_type("MetamerismIndex", parameter("", "0", "9")), primary),
            spectrum(steeper), reference);
  ASSERT_TRUE(metamerism.value) << metamerism.reason;
  EXPECT_GT(*metamerism.value, 0);
  EXPECT_LT(*metamerism.value, 1);
  ASSERT_TRUE(metamerism.test_light);
  // Equal spectra match under every light.
  const Verdict& none =
      judge(tolerance(by_type("DIN6172", parameter("", "0", "9")), primary), reference, reference);
  EXPECT_NEAR(none.value.value_or(9), 0, 1e-9);
}

TEST_F(EvaluationTest, IndicesAreThoseOfTheMeasurement) {
  const auto white = [](int nm) { return nm < 450 ? 0.8 : 0.85; };
  const auto whiter = [](int) { return 0.9; };
  const std::string d65 = element("PrimaryIlluminant", "Illuminant_D65") +
                          element("FieldOfView", "FieldOfView_10_Degree");
  const Verdict& whiteness =
      judge(tolerance(by_type("Whiteness", parameter("Param_Whiteness", "85", "95")), d65),
            spectrum(whiter), spectrum(white));
  EXPECT_NEAR(whiteness.value.value_or(0), 90, 1e-6) << whiteness.reason;
  EXPECT_EQ(whiteness.status, Status::passed);
  const Verdict& brightness =
      judge(tolerance(by_type("Brightness", parameter("Param_delta", "-1", "1")), ""),
            spectrum(whiter), spectrum(white));
  EXPECT_NEAR(brightness.value.value_or(0), 90, 1e-6) << brightness.reason;
  EXPECT_EQ(brightness.status, Status::failed);
  ASSERT_EQ(brightness.parts.size(), 1u);
  EXPECT_GT(brightness.parts[0].value, 5);
  const Verdict& strength = judge(
      tolerance(by_type("Strength", parameter("Param_WaveLength", "500")), limits("110", "90")),
      spectrum(steeper), spectrum(ramp));
  EXPECT_NEAR(strength.value.value_or(0), 100 * (0.69 * 0.69 / 0.62) / (0.7 * 0.7 / 0.6), 1e-9);

  const auto density = [](double value, const std::string& polarised) {
    Measured how;
    how.polarised = polarised;
    return space("Density", how.generic() +
                                "<Density DensityStatus='Status_T' DensityFilter='Filter_Cyan'>" +
                                std::to_string(value) + "</Density>");
  };
  const Verdict& dense =
      judge(tolerance(by_type("StatusDensity", parameter("Param_delta", "-0.05", "0.05")),
                      limits("1.5", "1.4")),
            density(1.42, "false"), density(1.45, "false"));
  EXPECT_EQ(dense.status, Status::passed) << dense.reason;
  EXPECT_NEAR(*dense.value, 1.42, 1e-9);
  EXPECT_NEAR(dense.parts[0].value, -0.03, 1e-9);
  const Verdict& polarised = judge(tolerance(by_type("StatusDensity", parameter("", "1.4"))),
                                   density(1.42, "true"), density(1.45, "false"));
  EXPECT_EQ(polarised.reason, "the measurement: one was measured with polarisers and one without");
  Measured filtered;
  filtered.filter = "Filter_UVExcluded";
  const Verdict& unlike = judge(tolerance(by_type("Brightness", parameter("", "80"))),
                                spectrum(whiter, filtered), spectrum(white));
  EXPECT_EQ(unlike.reason, "the measurement: the filters differ");
}

TEST(Record, StatisticsGoOverTheMeasurements) {
  // Hues of 359, 1 and 3 degrees, chroma 10, lightness 50, 51 and 53.
  const auto lch = [](double l, double h) {
    return space("CIELCh", Measured().tristimulus() + element("L", std::to_string(l)) +
                               "<C>10</C>" + element("H", std::to_string(h)));
  };
  const std::string measurements = measurement(lch(50, 359), "<FunctionStdDevL/>") +
                                   measurement(lch(51, 1)) + measurement(lch(53, 3));
  std::string tolerances;
  for (const char* name : {"StdDevL", "StdDevC", "StdDevH", "MeanDE", "AverageStdDevL"}) {
    tolerances += tolerance("<Function" + std::string(name) + "/>", limits("3"));
  }
  const std::string other =
      pair(measurement(lch(40, 10)) + measurement(lch(42, 10)), standard(lch(40, 10)));
  Zol document;
  load(document, record(pair(measurements, standard(lch(50, 359))) + other, tolerances));
  const Evaluation evaluation = evaluate(document);
  const double deviation = std::sqrt(7. / 3);  // of 50, 51 and 53
  const auto value = [&](Formula formula, unsigned number) {
    for (const Verdict& verdict : evaluation.verdicts) {
      if (verdict.formula == formula && verdict.place.pair == number) {
        EXPECT_EQ(verdict.place.measurement, FunctionPlace::k_all);
        return verdict.value.value_or(-1);
      }
    }
    return -2.;
  };
  EXPECT_NEAR(value(Formula::std_dev_l, 0), deviation, 1e-9);
  EXPECT_NEAR(value(Formula::std_dev_c, 0), 0, 1e-9);
  EXPECT_NEAR(value(Formula::std_dev_h, 0), 2, 1e-9);
  const double second = std::hypot(1, 20 * std::sin(1 * 3.14159265358979 / 180));
  const double third = std::hypot(3, 20 * std::sin(2 * 3.14159265358979 / 180));
  EXPECT_NEAR(value(Formula::mean_de76, 0), (0 + second + third) / 3, 1e-9);
  EXPECT_NEAR(value(Formula::average_std_dev_l, FunctionPlace::k_all),
              (deviation + std::sqrt(2)) / 2, 1e-9);
  ASSERT_EQ(evaluation.results.size(), 1u);
  EXPECT_NEAR(evaluation.results[0].value.value_or(-1), deviation, 1e-9);
}

TEST(Record, TolerancesHoldForTheStandardsThatTheyAreFor) {
  const auto named = [](const std::string& name, const std::string& global) {
    return "<Tolerance Name='" + name + "'>" + limits("2") + global + "<FunctionDE/></Tolerance>";
  };
  const std::string first =
      pair(measurement(lab(50, 0, 0)),
           standard(lab(50, 0, 1), named("own", "") + named("all", "<Global>true</Global>")));
  const std::string second = pair(measurement(lab(60, 0, 0)), standard(lab(60, 0, 3)));
  Zol document;
  load(document, record(first + second, named("record", "")));
  std::string said;
  for (const Verdict& verdict : evaluate(document).verdicts) {
    const std::wstring& name = verdict.tolerance->get_Name();
    said += std::to_string(verdict.place.pair) + ' ' + std::string(name.begin(), name.end()) + ' ' +
            std::string(name_of(verdict.status)) + "; ";
  }
  EXPECT_EQ(said, "0 own pass; 0 all pass; 0 record pass; 1 all fail; 1 record fail; ");
}

TEST(Record, MoreVerdictsThanAnybodyReadsAreCut) {
  Zol document;
  load(document, record(pair(measurement(lab(50, 0, 0)), "<Standard xsi:nil='true'/>"),
                        tolerance("<FunctionDE/>")));
  ColorQualityControlType& whole = document.get_ColorQualityControl(0);
  for (int i = 0; i < 720; ++i) {
    whole.append_StandardAndMeasurement();
    whole.back_StandardAndMeasurement() = whole.get_StandardAndMeasurement(0);
    whole.append_Tolerance();
    whole.back_Tolerance() = whole.get_Tolerance(0);
  }
  const Evaluation evaluation = evaluate(document);
  EXPECT_TRUE(evaluation.is_cut);
  EXPECT_EQ(evaluation.verdicts.size(), 500000u);
}

TEST(Results, StoredOnesAreCheckedAndWrittenBack) {
  const auto stored = [](const std::string& result) {
    return element("FunctionDE", element("Result", result));
  };
  struct Case {
    std::string result;
    bool is_wrong;
  };
  // The value is 6.164414002968977.
  for (const Case& c : {Case{"6.164414", false}, Case{"6.16", false}, Case{"6.2", false},
                        Case{"6", true}, Case{"6.1", true}, Case{"6.175", true}, Case{"NaN", true},
                        Case{"INF", true}, Case{"-6.164414", true}}) {
    Zol document;
    load(document,
         record(pair(measurement(lab(52, 27, 45), stored(c.result)), standard(lab(50, 30, 40)))));
    const Evaluation evaluation = evaluate(document);
    ASSERT_EQ(evaluation.results.size(), 1u);
    EXPECT_EQ(evaluation.results[0].is_stored_wrong, c.is_wrong) << c.result;
    EXPECT_EQ(evaluation.wrong_count(), c.is_wrong ? 1u : 0u);
    EXPECT_EQ(store_results(document, evaluation), 1u);
    const Evaluation again = evaluate(document);
    EXPECT_EQ(again.wrong_count(), 0u);
    EXPECT_EQ(store_results(document, again), 0u);
  }
}

TEST(Results, OfTolerancesFindAPlaceInTheMeasurements) {
  Zol document;
  const std::string de2000 = element("FunctionDE2000", k_factors);
  load(document,
       record(pair(measurement(lab(52, 27, 45), "<FunctionDE/>"), standard(lab(50, 30, 40))),
              tolerance("<FunctionDE/>") + tolerance(de2000) + tolerance(de2000) +
                  tolerance(by_type("L*a*b*", parameter("Param_L", "0", "1")), "") +
                  tolerance(by_type("df", parameter("", "0")))));
  EXPECT_EQ(store_results(document, evaluate(document)), 3u);
  const Measurement& measured =
      document.get_ColorQualityControl(0).get_StandardAndMeasurement(0).get_Measurement(0);
  ASSERT_EQ(measured.size_Function(), 3u);
  EXPECT_NEAR(measured.get_Function(0).get_FunctionDE().get_Result(), std::sqrt(38), 1e-12);
  EXPECT_TRUE(measured.get_Function(1).get_FunctionDE2000().isset_Result());
  EXPECT_FALSE(document.get_ColorQualityControl(0)
                   .get_Tolerance(1)
                   .get_Function()
                   .get_FunctionDE2000()
                   .isset_Result());
  const Evaluation again = evaluate(document);
  EXPECT_EQ(again.results.size(), 3u);
  EXPECT_EQ(again.wrong_count(), 0u);
  // What was stored is a document that can be written and read.
  const XMLDocumentResult written = document.writeString();
  ASSERT_EQ(written.getElmxError(), 0);
  Zol back;
  EXPECT_EQ(back.loadString(written.getXmlDocument()), 0);
  EXPECT_EQ(evaluate(back).wrong_count(), 0u);
}

}  // namespace
}  // namespace zol_v2::colorimetry
