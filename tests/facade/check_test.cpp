// Judging an object before it is written: each thing that can be wrong, told in a sentence, and the
// law that an error is found exactly where writing fails or does not come back.
#include "facade/check.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "facade/files.h"
#include "lmx/lmxparse.h"
#include "model/Zol.h"
#include "model/documents.h"
#include "model/reflection.h"

namespace {

using namespace zol_v2;
using lmx::elmx_error;
using reflection::ConstRef;
using reflection::Item;
using reflection::Kind;
using reflection::Ref;
using zol_test::loaded;
using zol_test::sample_bytes;

std::string told(const Fault& fault) {
  return std::to_string(fault.code) + " " + std::string(fault.rule) + " " + fault.path + ": " +
         fault.text();
}

std::vector<std::string> told(const CheckReport& report) {
  std::vector<std::string> lines;
  for (const Fault& fault : report.faults) lines.push_back(told(fault));
  return lines;
}

// --- One thing at a time -------------------------------------------------------------------------

template <class T>
T& put(ConstRef object, const char* row) {
  return object.type().row(row).table().field<T>(const_cast<internal::Object&>(object.object()));
}

void drop(Ref object, const char* row) {
  internal::Head::flags(object.object()) &=
      ~(std::uint32_t{1} << object.type().row(row).table().bit);
}

struct Case {
  const char* name;
  const char* at;  // the object that is changed
  std::function<void(Ref)> change;
  std::vector<std::string> faults;
};

// A member that is chosen is not freed when a pointer takes its place.
sg_Function& emptied(Ref tolerance) {
  sg_Function& holder = tolerance.as<ToleranceType>()->get_Function();
  Ref(holder).unset(ConstRef(holder).chosen());
  return holder;
}

// A palette with a set of two colours, a spectrum and a quality record, in which nothing is wrong.
Zol clean_document() {
  Zol document = loaded<Zol>(zol_test::document(R"(
<Zol:Palette PaletteName="House"><Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>
<Zol:ColorSet ColorSetName="Reds"><Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>
<Zol:Color ColorName="House red" UniqueID="r"><Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>
<Zol:ColorSpaceCIELab><Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>
<Zol:ColorSpaceSpecificationSpectrumTristimulus><Zol:DeviceFilter>Filter_None</Zol:DeviceFilter>
<Zol:DevicePolarization>false</Zol:DevicePolarization><Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>
<Zol:Spectrum>Spectrum_Reflectance</Zol:Spectrum><Zol:IlluminationOptions><Zol:Illuminant>Illuminant_D50</Zol:Illuminant></Zol:IlluminationOptions>
<Zol:FieldOfView>FieldOfView_2_Degree</Zol:FieldOfView></Zol:ColorSpaceSpecificationSpectrumTristimulus>
<Zol:L>50</Zol:L><Zol:A>60.5</Zol:A><Zol:B>40</Zol:B></Zol:ColorSpaceCIELab>
<Zol:ColorSpaceHSL><Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>
<Zol:ColorSpaceSpecificationSpectrumGeneric xsi:nil="true"/><Zol:Hue>10</Zol:Hue><Zol:Saturation>0.5</Zol:Saturation><Zol:Lightness>0.5</Zol:Lightness></Zol:ColorSpaceHSL>
</Zol:Color>
<Zol:Color ColorName="Brick" UniqueID="b"><Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>
<Zol:ColorSpaceSpectral><Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory><Zol:ColorSpaceSpecificationSpectrumSpectral xsi:nil="true"/>
<Zol:ReflectancePoint Wavelength="400">0.1</Zol:ReflectancePoint><Zol:ReflectancePoint Wavelength="410">0.2</Zol:ReflectancePoint></Zol:ColorSpaceSpectral>
<Zol:TagValues><Zol:Tag Name="Mood" UniqueID="t"><Zol:Category Name="Feeling" UniqueID="c"/></Zol:Tag><Zol:TextValue>calm</Zol:TextValue></Zol:TagValues>
</Zol:Color></Zol:ColorSet></Zol:Palette>
<Zol:ColorQualityControl Name="June"><Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory><Zol:StandardAndMeasurement>
<Zol:Standard xsi:nil="true"/></Zol:StandardAndMeasurement><Zol:Tolerance><Zol:Function xsi:type="Zol:FunctionDEType"/></Zol:Tolerance>
</Zol:ColorQualityControl>)"));
  return document;
}

constexpr char k_header[] = "Zol/Preamble/Header";
constexpr char k_red[] = "Zol/Palette[1]/ColorSet[1]/Color[1]";
constexpr char k_lab[] = "Zol/Palette[1]/ColorSet[1]/Color[1]/ColorSpaceCIELab";
constexpr char k_hsl[] = "Zol/Palette[1]/ColorSet[1]/Color[1]/ColorSpaceHSL";
constexpr char k_brick[] = "Zol/Palette[1]/ColorSet[1]/Color[2]";
constexpr char k_spectrum[] = "Zol/Palette[1]/ColorSet[1]/Color[2]/ColorSpaceSpectral";
constexpr char k_specification[] =
    "Zol/Palette[1]/ColorSet[1]/Color[1]/ColorSpaceCIELab/"
    "ColorSpaceSpecificationSpectrumTristimulus";

const std::vector<Case>& cases() {
  static const std::vector<Case> all = {
      {"a missing element",
       k_header,
       [](Ref header) { drop(header, "Purpose"); },
       {"46 element-missing Zol/Preamble/Header/Purpose: Purpose is missing in Header: it is "
        "required"}},
      {"a missing attribute",
       k_red,
       [](Ref red) { drop(red, "ColorName"); },
       {"46 attribute-missing Zol/Palette[1]/ColorSet[1]/Color[1]/@ColorName: Color lacks the "
        "attribute ColorName"}},
      {"an empty list",
       k_header,
       [](Ref header) { header.unset(header.type().row("ChangeHistory")); },
       {"46 element-missing Zol/Preamble/Header/ChangeHistory[1]: ChangeHistory is missing in "
        "Header: "
        "at least one is required"}},
      {"an empty group",
       k_brick,
       [](Ref brick) {
         const Ref tag = brick.child(brick.type().row("TagValues"), 0);
         const Ref value = tag.child(tag.type().row("anon_TextValue"));
         value.unset(value.type().row("TextValue"));
       },
       {"46 alternative-missing Zol/Palette[1]/ColorSet[1]/Color[2]/TagValues[1]: TagValues lacks "
        "one of TextValue or NumberValue: it holds none"}},
      {"a value above its bound",
       k_lab,
       [](Ref lab) { put<double>(lab, "L") = 151; },
       {"36 above-bound Zol/Palette[1]/ColorSet[1]/Color[1]/ColorSpaceCIELab/L: L is 151, at most "
        "150 is allowed"}},
      {"no number where bounds are",
       k_lab,
       [](Ref lab) { put<double>(lab, "A") = std::nan(""); },
       {"37 below-bound Zol/Palette[1]/ColorSet[1]/Color[1]/ColorSpaceCIELab/A: A is NaN, at least "
        "-150 is allowed"}},
      {"a value that is written as its bound",
       k_hsl,
       [](Ref hsl) { put<double>(hsl, "Hue") = std::nextafter(360.0, 0.0); },
       {"36 above-bound Zol/Palette[1]/ColorSet[1]/Color[1]/ColorSpaceHSL/Hue: Hue is "
        "359.99999999999994, of which 360 is written, less than 360 degree is allowed"}},
      {"digits that are not written",
       k_lab,
       [](Ref lab) { put<double>(lab, "B") = 0.1234567890123456; },
       {"0 digits-lost Zol/Palette[1]/ColorSet[1]/Color[1]/ColorSpaceCIELab/B: B is "
        "0.1234567890123456, of which 0.12345678901235 is written"}},
      {"a date without a zone",
       k_header,
       [](Ref header) {
         (void)header.as<Header>()->append_ChangeHistory(lmx::c_datetime("2020-01-01T10:00:00"));
       },
       {"22 no-time-zone Zol/Preamble/Header/ChangeHistory[2]: ChangeHistory is "
        "'2020-01-01T10:00:00', which has no time zone: Z, or an offset other than zero, is "
        "expected"}},
      {"a date that is none",
       k_header,
       [](Ref header) {
         lmx::c_datetime date("2020-01-01T10:00:00Z");
         date.set_month(100);
         (void)header.as<Header>()->append_ChangeHistory(date);
       },
       {"35 wrong-format Zol/Preamble/Header/ChangeHistory[2]: ChangeHistory is "
        "'2020-100-01T10:00:00Z', a date and time is expected"}},
      {"seconds that are cut",
       k_header,
       [](Ref header) {
         lmx::c_datetime date("2020-01-01T10:00:00Z");
         date.set_secs(12.34567f);
         (void)header.as<Header>()->append_ChangeHistory(date);
       },
       {"0 digits-lost Zol/Preamble/Header/ChangeHistory[2]: ChangeHistory is written as "
        "2020-01-01T10:00:12.3457Z, which has not all digits of its seconds"}},
      {"half a character",
       k_header,
       [](Ref header) {
         const wchar_t half[] = {L'a', wchar_t(0xD83C), L'b', 0};
         (void)header.as<Header>()->set_Purpose(half);
       },
       {"29 lone-surrogate Zol/Preamble/Header/Purpose: Purpose holds the lone surrogate U+D83C, "
        "which can't be written"}},
      {"a control character",
       k_red,
       [](Ref red) { (void)red.as<ColorType>()->set_Comments(L"a\x01"); },
       {"28 bad-character Zol/Palette[1]/ColorSet[1]/Color[1]/@Comments: U+0001 in Comments is no "
        "character that a document may hold"}},
      {"the end of a section",
       k_header,
       [](Ref header) { (void)header.as<Header>()->set_Purpose(L"a[b[1]]>2"); },
       {"29 section-end Zol/Preamble/Header/Purpose: Purpose holds ']]>', which XML forbids in a "
        "text"}},
      {"a carriage return",
       k_header,
       [](Ref header) { (void)header.as<Header>()->set_Purpose(L"a\r\nb"); },
       {"29 line-end Zol/Preamble/Header/Purpose: Purpose holds U+000D, which comes back as a line "
        "feed"}},
      {"a line feed in an attribute",
       k_red,
       [](Ref red) { (void)red.as<ColorType>()->set_Comments(L"a\nb"); },
       {"0 attribute-white-space Zol/Palette[1]/ColorSet[1]/Color[1]/@Comments: Comments holds a "
        "line feed or tab, which other readers take for a blank in an attribute"}},
      {"a value out of its list",
       k_specification,
       [](Ref specification) {
         put<const std::wstring*>(specification, "FieldOfView") =
             internal::make_owned<std::wstring>(L"FieldOfView_4_Degree").release();
       },
       {"38 not-enumerated Zol/Palette[1]/ColorSet[1]/Color[1]/ColorSpaceCIELab/"
        "ColorSpaceSpecificationSpectrumTristimulus/FieldOfView: FieldOfView is "
        "'FieldOfView_4_Degree', FieldOfView_2_Degree or FieldOfView_10_Degree is "
        "expected"}},
      {"a plain function",
       "Zol/ColorQualityControl[1]/Tolerance[1]",
       [](Ref tolerance) { emptied(tolerance).assign_Function(new FunctionType); },
       {"44 type-missing Zol/ColorQualityControl[1]/Tolerance[1]/Function: Function names no type: "
        "xsi:type must be FunctionGenericType, FunctionDEType, FunctionMeanDEType, "
        "FunctionDE94Type, FunctionDE2000Type, FunctionDEcmcType, FunctionStdDevXType, "
        "FunctionStdDevYType, FunctionStdDevZType, FunctionStdDevLType, FunctionStdDevAType, "
        "FunctionStdDevBType, FunctionStdDevCType, FunctionStdDevHType, "
        "FunctionAverageStdDevLType, FunctionAverageStdDevAType or one of 2 more"}},
      {"a null pointer for a function",
       "Zol/ColorQualityControl[1]/Tolerance[1]",
       [](Ref tolerance) {
         emptied(tolerance).assign_Function(static_cast<FunctionType*>(nullptr));
       },
       {"45 member-missing Zol/ColorQualityControl[1]/Tolerance[1]/Function: Function is chosen, "
        "but a null pointer was put there"}},
      {"a wavelength twice",
       k_spectrum,
       [](Ref spectrum) {
         auto& points = *spectrum.as<ColorSpaceSpectralType>();
         (void)points.get_ReflectancePoint(0).set_Wavelength(410);
       },
       {"0 wavelength-twice Zol/Palette[1]/ColorSet[1]/Color[2]/ColorSpaceSpectral/"
        "ReflectancePoint[2]/@Wavelength: Wavelength is 410 nm, as that of point 1 is"}},
      {"a wavelength in micrometres",
       k_spectrum,
       [](Ref spectrum) {
         auto& points = *spectrum.as<ColorSpaceSpectralType>();
         (void)points.get_ReflectancePoint(0).set_Wavelength(0.4);
         (void)points.get_ReflectancePoint(1).set_Wavelength(0.41);
       },
       {"0 wavelength-range Zol/Palette[1]/ColorSet[1]/Color[2]/ColorSpaceSpectral/"
        "ReflectancePoint[1]/@Wavelength: Wavelength is 0.4 nm, 100 to 3000 nm is usual"}},
  };
  return all;
}

TEST(Check, FindsNothingInACleanDocument) {
  const Zol document = clean_document();
  EXPECT_EQ(told(check(document)), std::vector<std::string>());
  EXPECT_EQ(zol_test::saved(document).empty(), false);
}

TEST(Check, TellsWhatIsWrongInATree) {
  for (const Case& wrong : cases()) {
    Zol document = clean_document();
    const Ref object = find_object(Ref(document), wrong.at);
    ASSERT_TRUE(object) << wrong.name;
    wrong.change(object);
    EXPECT_EQ(told(check(document)), wrong.faults) << wrong.name;
  }
}

// What loads and is suspicious: the clean document with one text in the place of another.
struct Suspicion {
  const char* name;
  const char* from;
  const char* to;
  std::vector<std::string> faults;
};

constexpr char k_point[] = "<Zol:ReflectancePoint Wavelength=\"400\">0.1</Zol:ReflectancePoint>";
constexpr char k_hsl_end[] = "</Zol:ColorSpaceHSL>";
constexpr char k_tristimulus_end[] = "</Zol:ColorSpaceSpecificationSpectrumTristimulus>";
constexpr char k_lab_text[] =
    "</Zol:ColorSpaceHSL><Zol:ColorSpaceCIELab><Zol:ChangeHistory>2020-01-01T10:00:00Z"
    "</Zol:ChangeHistory><Zol:ColorSpaceSpecificationSpectrumTristimulus UniqueID=\"s\" "
    "xsi:nil=\"true\"/><Zol:L>1</Zol:L><Zol:A>1</Zol:A><Zol:B>1</Zol:B></Zol:ColorSpaceCIELab>";

TEST(Check, SuspectsWhatIsSeldomMeant) {
  const Suspicion suspicions[] = {
      {"spectra of two lengths",
       k_hsl_end,
       "</Zol:ColorSpaceHSL><Zol:ColorSpaceSpectral><Zol:ChangeHistory>2020-01-01T10:00:00Z"
       "</Zol:ChangeHistory><Zol:ColorSpaceSpecificationSpectrumSpectral xsi:nil=\"true\"/>"
       "<Zol:ReflectancePoint Wavelength=\"400\">0.1</Zol:ReflectancePoint>"
       "</Zol:ColorSpaceSpectral>",
       {"0 uneven-spectra Zol/Palette[1]/ColorSet[1]/Color[2]/ColorSpaceSpectral: "
        "ColorSpaceSpectral has 2 points, and the first of the colour set 1"}},
      {"falling wavelengths, one of them twice",
       k_point,
       "<Zol:ReflectancePoint Wavelength=\"430\">0.1</Zol:ReflectancePoint>"
       "<Zol:ReflectancePoint Wavelength=\"420\">0.1</Zol:ReflectancePoint>"
       "<Zol:ReflectancePoint Wavelength=\"410\">0.1</Zol:ReflectancePoint>",
       {"0 wavelength-twice Zol/Palette[1]/ColorSet[1]/Color[2]/ColorSpaceSpectral/"
        "ReflectancePoint[4]/@Wavelength: Wavelength is 410 nm, as that of point 3 is"}},
      {"two colours of one identifier",
       "UniqueID=\"b\"",
       "UniqueID=\"r\"",
       {"0 unique-id-twice Zol/Palette[1]/ColorSet[1]/Color[2]/@UniqueID: UniqueID is 'r', as "
        "that of Zol/Palette[1]/ColorSet[1]/Color[1] is"}},
      {"a custom illuminant without a name",
       "Illuminant_D50",
       "Illuminant_Custom",
       {"0 custom-without-name Zol/Palette[1]/ColorSet[1]/Color[1]/ColorSpaceCIELab/"
        "ColorSpaceSpecificationSpectrumTristimulus/IlluminationOptions/Illuminant/@CustomName: "
        "Illuminant is Illuminant_Custom, and its CustomName does not say which"}},
      {"a custom illuminant with a name",
       "<Zol:Illuminant>Illuminant_D50",
       "<Zol:Illuminant CustomName=\"shop\">Illuminant_Custom",
       {}},
      {"a Lab without illuminant, and a reference to a specification that is not there",
       k_hsl_end,
       k_lab_text,
       {"0 no-illuminant Zol/Palette[1]/ColorSet[1]/Color[1]/ColorSpaceCIELab[2]/"
        "ColorSpaceSpecificationSpectrumTristimulus: ColorSpaceCIELab has no illuminant and no "
        "observer: its specification is nil, and no colour set or palette around it has one",
        "0 unknown-unique-id Zol/Palette[1]/ColorSet[1]/Color[1]/ColorSpaceCIELab[2]/"
        "ColorSpaceSpecificationSpectrumTristimulus/@UniqueID: UniqueID is 's', and nothing of "
        "its kind in the document bears that"}},
      {"a tag that stands for another one",
       k_hsl_end,
       "</Zol:ColorSpaceHSL><Zol:TagValues><Zol:Tag UniqueID=\"t\"><Zol:Category UniqueID=\"c\"/>"
       "</Zol:Tag><Zol:TextValue>wild</Zol:TextValue></Zol:TagValues>",
       {}},
      {"a tag that stands for none",
       k_hsl_end,
       "</Zol:ColorSpaceHSL><Zol:TagValues><Zol:Tag UniqueID=\"x\"><Zol:Category UniqueID=\"c\"/>"
       "</Zol:Tag><Zol:TextValue>wild</Zol:TextValue></Zol:TagValues>",
       {"0 unknown-unique-id Zol/Palette[1]/ColorSet[1]/Color[1]/TagValues[1]/Tag/@UniqueID: "
        "UniqueID is 'x', and nothing of its kind in the document bears that"}},
      {"a tag that recurs",
       k_hsl_end,
       "</Zol:ColorSpaceHSL><Zol:TagValues><Zol:Tag Name=\"Mood\" UniqueID=\"t\">"
       "<Zol:Category Name=\"Feeling\" UniqueID=\"c\"/></Zol:Tag>"
       "<Zol:TextValue>wild</Zol:TextValue></Zol:TagValues>",
       {}},
      {"a tag that recurs under another name",
       k_hsl_end,
       "</Zol:ColorSpaceHSL><Zol:TagValues><Zol:Tag Name=\"Temper\" UniqueID=\"t\">"
       "<Zol:Category Name=\"Feeling\" UniqueID=\"c\"/></Zol:Tag>"
       "<Zol:TextValue>wild</Zol:TextValue></Zol:TagValues>",
       {"0 unique-id-twice Zol/Palette[1]/ColorSet[1]/Color[2]/TagValues[1]/Tag/@UniqueID: "
        "UniqueID is 't', as that of Zol/Palette[1]/ColorSet[1]/Color[1]/TagValues[1]/Tag is"}},
      {"a nil specification with content", k_tristimulus_end, k_tristimulus_end, {}},
  };
  const std::string clean = zol_test::saved(clean_document());
  for (const Suspicion& suspicion : suspicions) {
    std::string text = clean;
    // The text is written on lines, and the cases stand on one.
    text.erase(
        std::remove_if(text.begin(), text.end(), [](char c) { return c == '\n' || c == '\t'; }),
        text.end());
    const std::size_t at = text.find(suspicion.from);
    ASSERT_NE(at, text.npos) << suspicion.name;
    text.replace(at, std::string(suspicion.from).size(), suspicion.to);
    EXPECT_EQ(told(check(loaded<Zol>(text))), suspicion.faults) << suspicion.name;
  }
}

TEST(Check, SeesWhatACollectionSays) {
  Zol document = clean_document();
  PaletteType& palette = document.get_Palette(0);
  auto& lab = palette.get_ColorSet(0).get_Color(0).get_ColorSpace(0).get_ColorSpaceCIELab();
  auto& own = lab.get_ColorSpaceSpecificationSpectrumTristimulus();
  palette.get_CollectionColorSpaceSpecification().assign_ColorSpaceSpecificationSpectrumTristimulus(
      own);
  own.setnil_ColorSpaceSpecificationSpectrumTristimulus();
  EXPECT_EQ(told(check(document)),
            std::vector<std::string>({"0 nil-with-content " + std::string(k_specification) +
                                      ": ColorSpaceSpecificationSpectrumTristimulus is nil, and "
                                      "what it holds is not written"}));
}

TEST(Check, NamesTheInnermostObject) {
  Zol document = clean_document();
  put<double>(find_object(Ref(document), k_lab), "L") = 151;
  const Fault fault = check(document).faults.at(0);
  EXPECT_EQ(fault.object, "House red");
  EXPECT_EQ(fault.path.substr(0, fault.object_at), k_red);
  EXPECT_EQ(fault.item, "Zol:L");
}

TEST(Check, JudgesEveryKindOfObjectByItself) {
  EXPECT_EQ(told(check(ColorSpaceNCS())).front(),
            "46 element-missing ColorSpaceNCS/ChangeHistory[1]: ChangeHistory is missing in "
            "ColorSpaceNCS: at least one is required");
  EXPECT_EQ(check(sg_ColorSpace()).faults.front().rule, "alternative-missing");
  Density density;
  density.setnil_Density();
  EXPECT_TRUE(check(density).is_ok());
}

// 513 elements in each other: the root, and then pairs of a substrate and the colour of it.
TEST(Check, StopsWhereAReaderDoes) {
  Zol document = clean_document();
  ColorType* color = &document.get_Palette(0).get_ColorSet(0).get_Color(0);
  // The colour is the fourth element, and its substrate and that one's colour add two each.
  for (int depth = 4; depth < 520; depth += 2) {
    ColorType& inner = color->get_Substrate().get_SubstratePaper().get_Color();
    (void)inner.set_ColorName(L"deep");
    (void)inner.append_ChangeHistory(lmx::c_datetime("2020-01-01T10:00:00Z"));
    (void)inner.append_ColorSpace();
    inner.back_ColorSpace() =
        document.get_Palette(0).get_ColorSet(0).get_Color(0).get_ColorSpace(1);
    color = &inner;
  }
  const CheckReport report = check(document);
  ASSERT_FALSE(report.is_ok());
  EXPECT_EQ(report.faults[0].code, lmx::elmx_not_well_formed);
  EXPECT_EQ(report.faults[0].rule, "nesting-too-deep");
  Zol again;
  EXPECT_EQ(again.unmarshal(zol_test::saved(document)), lmx::elmx_not_well_formed);
}

TEST(Check, CountsWhatItDoesNotDescribe) {
  Zol document = clean_document();
  for (int i = 0; i < 50; ++i) (void)document.append_Color();
  CheckOptions options;
  options.limit = 3;
  const CheckReport report = check(document, options);
  EXPECT_EQ(report.faults.size(), 3u);
  EXPECT_EQ(report.errors, 150u);
}

// --- The law -------------------------------------------------------------------------------------

// A tree as a document shows it: whether another one shows the same, numbers as far as `digits`.
class Comparison {
 public:
  explicit Comparison(bool is_exact) : is_exact_(is_exact) {}

  bool same(ConstRef a, ConstRef b) const {
    if (&a.type().table().content_class() != &b.type().table().content_class()) return false;
    if (a.is_nil() != b.is_nil()) return false;
    for (const reflection::Row row : a.type().rows()) {
      if (row.kind() == Kind::mark || (a.is_nil() && !row.is_attribute())) continue;
      if (a.count(row) != b.count(row)) return false;
      for (unsigned i = 0; i < a.count(row); ++i) {
        if (!same(row.kind(), a.value(row, i), b.value(row, i))) return false;
      }
    }
    return true;
  }

 private:
  bool same(Kind kind, reflection::Value a, reflection::Value b) const {
    switch (kind) {
      case Kind::text:
      case Kind::enumerated:
        return spelled(a.text()) == spelled(b.text());
      case Kind::real:
        return same(a.number(), b.number());
      case Kind::datetime:
        return same(a.date(), b.date());
      case Kind::binary:
        return a.bytes() == b.bytes();
      case Kind::object:
      case Kind::member:
      case Kind::group:
        return same(a.child(), b.child());
      default:
        return a.integer() == b.integer() && a.truth() == b.truth();
    }
  }
  // By the standard library.
  bool same(double a, double b) const {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    if (!is_exact_) {
      char text[64];
      std::snprintf(text, sizeof text, "%.14g", a);
      a = std::strtod(text, nullptr);
    }
    return a == b && std::signbit(a) == std::signbit(b);
  }
  bool same(const lmx::c_datetime& a, const lmx::c_datetime& b) const {
    return a.get_year() == b.get_year() && a.get_month() == b.get_month() &&
           a.get_day() == b.get_day() && a.get_hours() == b.get_hours() &&
           a.get_mins() == b.get_mins() &&
           std::abs(a.get_secs() - b.get_secs()) <= 1e-4f * std::abs(a.get_secs()) &&
           a.get_total_offset_mins() == b.get_total_offset_mins() &&
           a.get_is_utc() == b.get_is_utc();
  }
  // One unit for a character beyond U+FFFF is the same as two.
  static std::wstring spelled(const std::wstring& text) {
    std::wstring units;
    for (const wchar_t unit : text) {
      if (const auto value = static_cast<std::uint32_t>(unit); value > 0xFFFF) {
        units += wchar_t(0xD7C0 + (value >> 10));
        units += wchar_t(0xDC00 + (value & 0x3FF));
      } else {
        units += unit;
      }
    }
    return units;
  }

  const bool is_exact_;
};

// Does another parser take it?
bool is_xml(const std::string& text) {
  constexpr int k_quiet = XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE;
  const std::unique_ptr<xmlDoc, void (*)(xmlDoc*)> parsed(
      xmlReadMemory(text.data(), static_cast<int>(text.size()), "", nullptr, k_quiet), xmlFreeDoc);
  return parsed != nullptr;
}

// Changes a tree here and there, past every check.
class Vandal {
 public:
  explicit Vandal(unsigned seed) : random_(seed) {}

  // What was done, for the message of a failure.
  std::string change(Zol& document) {
    std::vector<Ref> objects;
    collect(Ref(document), objects);
    while (true) {
      const Ref object = objects[below(objects.size())];
      std::vector<reflection::Row> rows;
      for (const reflection::Row row : object.type().rows()) rows.push_back(row);
      if (object.type().is_nillable() && below(8) == 0) {
        object.set_nil(below(2) == 0);
        return std::string("nil ") + std::string(object.type().name());
      }
      if (rows.empty()) continue;
      const reflection::Row row = rows[below(rows.size())];
      const std::string what =
          std::string(object.type().name()) + '/' + std::string(row.table().tag);
      if (below(6) == 0 ? empty(object, row) : spoil(object, row)) return what;
    }
  }

 private:
  std::size_t below(std::size_t count) { return random_() % count; }
  template <class T, std::size_t size>
  const T& one_of(const T (&all)[size]) {
    return all[below(size)];
  }

  static void collect(Ref object, std::vector<Ref>& objects) {
    objects.push_back(object);
    for (const reflection::Row row : object.type().rows()) {
      for (unsigned i = 0; i < ConstRef(object).count(row); ++i) {
        const ConstRef child = ConstRef(object).value(row, i).child();
        if (child) collect(Ref(const_cast<internal::Object&>(child.object())), objects);
      }
    }
  }

  static bool empty(Ref object, reflection::Row row) {
    if (!ConstRef(object).has(row) || row.kind() == Kind::mark) return false;
    if (!object.unset(row)) {
      internal::Head::flags(object.object()) &= ~(std::uint32_t{1} << row.table().bit);
    }
    return true;
  }

  bool spoil(Ref object, reflection::Row row) {
    const internal::Row& table = row.table();
    internal::Object& self = object.object();
    if (!ConstRef(object).has(row)) return false;
    switch (row.kind()) {
      case Kind::real: {
        double* const at = row.place() == reflection::Place::alternative
                               ? &table.field<internal::Slot>(self).real
                               : &table.field<double>(self);
        *at = number(table);
        return true;
      }
      case Kind::uint8:
        table.field<unsigned char>(self) = static_cast<unsigned char>(below(102));
        return true;
      case Kind::uint32:
        if (row.place() == reflection::Place::alternative) {
          table.field<internal::Slot>(self).uint32 = one_of(k_integers);
        } else {
          table.field<unsigned>(self) = one_of(k_integers);
        }
        return true;
      case Kind::text:
        return write_text(object, row);
      case Kind::enumerated:
        if (row.place() == reflection::Place::alternative) return false;
        table.field<const std::wstring*>(self) =
            internal::make_owned<std::wstring>(below(2) == 0 ? text() : L"Filter_None").release();
        return true;
      case Kind::datetime:
        return write_date(object, row);
      default:
        return false;
    }
  }

  bool write_text(Ref object, reflection::Row row) {
    const internal::Row& table = row.table();
    if (row.is_list()) {
      *static_cast<std::wstring*>(table.field<internal::PointerList>(object.object())[0]) = text();
    } else if (row.place() == reflection::Place::alternative) {
      *table.field<internal::Slot>(object.object()).text = text();
    } else {
      table.field<internal::Text>(object.object()).set(text());
    }
    return true;
  }

  bool write_date(Ref object, reflection::Row row) {
    const internal::Row& table = row.table();
    lmx::c_datetime& date =
        row.is_list()
            ? *static_cast<lmx::c_datetime*>(table.field<internal::PointerList>(object.object())[0])
            : table.field<lmx::c_datetime>(object.object());
    switch (below(8)) {
      case 0:
        date.set_year(one_of({-44, 0, 999, 9999, 10000, 123456}));
        break;
      case 1:
        date.set_month(one_of({0u, 12u, 99u, 100u}));
        break;
      case 2:
        date.set_day(one_of({0u, 31u, 99u, 1000u}));
        break;
      case 3:
        date.set_hours(one_of({0u, 24u, 99u, 100u}));
        break;
      case 4:
        date.set_secs(one_of({-1.0f, 59.5f, 60.0f, 99.0f, 100.0f, 1e-6f, 12.3456789f, 1e10f,
                              std::numeric_limits<float>::quiet_NaN()}));
        break;
      case 5:
        date.set_is_utc(false);
        date.set_total_offset_mins(one_of({0, 60, -330, 5999, 6000, -6000}));
        break;
      case 6:
        date.set_is_utc(true);
        date.set_total_offset_mins(one_of({0, 60}));
        break;
      default:
        date.set_mins(one_of({59u, 60u, 100u}));
    }
    return true;
  }
  template <class T>
  T one_of(std::initializer_list<T> all) {
    return all.begin()[below(all.size())];
  }

  double number(const internal::Row& row) {
    switch (below(8)) {
      case 0:
        return std::nextafter(row.upper, -1e9);
      case 1:
        return std::nextafter(row.lower, 1e9);
      case 2:
        return row.upper;
      case 3:
        return row.lower;
      case 4:
        return one_of({std::nan(""), HUGE_VAL, -HUGE_VAL, -0.0, 5e-324, 1.7976931348623157e308});
      case 5:
        return static_cast<double>(below(1000000)) / 1e4;
      case 6:
        return std::ldexp(static_cast<double>(random_()), -40);
      default:
        return one_of({1e14, 123456789012345.0, 1e22, 0.1 + 0.2, 1.0 / 3});
    }
  }

  std::wstring text() {
    static const wchar_t k_pieces[] = {
        L'a',   L' ',   L'\t',  L'\n',  L'\r',  L'&',   L'<',   L'>',   L']',   L'"',
        L'\'',  0x1,    0x1F,   0x7F,   0x80,   0x85,   0xA0,   0xE9,   0x2028, 0x2029,
        0x3000, 0xD7FF, 0xD83C, 0xDFA8, 0xE000, 0xFEFF, 0xFFFD, 0xFFFE, 0xFFFF};
    std::wstring text;
    for (std::size_t left = below(5); left != 0; --left) {
      text += below(3) == 0 ? one_of({L"x", L"]]>", L"a b", L"\U0001F3A8"})
                            : std::wstring(1, one_of(k_pieces));
    }
    return text;
  }

  static constexpr unsigned k_integers[] = {0, 1, 2147483647u, 2147483648u, 4294967295u};

  std::mt19937 random_;
};

class Law : public testing::TestWithParam<bool> {};

TEST_P(Law, FindsAnErrorExactlyWhereADocumentDoesNotComeBack) {
  const bool is_exact = GetParam();
  SaveOptions saving;
  saving.is_exact = is_exact;
  saving.is_stamped = false;
  CheckOptions checking;
  checking.is_exact = is_exact;
  unsigned failures = 0;
  unsigned refusals = 0;
  unsigned seed = is_exact ? 100000 : 0;
  for (const std::string& name : zol_test::sample_names()) {
    Zol sample = loaded<Zol>(sample_bytes(name));
    // Reading leaves a mark of its own there.
    sample.get_Preamble().get_Header().unset_ReadSDKInformation();
    EXPECT_TRUE(check(sample).is_ok()) << name;
    for (int round = 0; round < 100; ++round) {
      Zol document = sample;
      Vandal vandal(++seed);
      std::string what;
      const int changes = round % 3 == 2 ? 3 : 1;
      for (int i = 0; i < changes; ++i) what += vandal.change(document) + ' ';
      SCOPED_TRACE(testing::Message() << name << " seed " << seed << ": " << what);

      const CheckReport report = check(document, checking);
      std::string text;
      SaveReport saved;
      const elmx_error code = saveString(document, text, &saved, saving);
      ASSERT_EQ(document.marshal(std::make_unique<std::string>().get()), code);
      if (code != lmx::elmx_ok) {
        ++refusals;
        ASSERT_FALSE(report.is_ok());
        ASSERT_EQ(report.faults.front().code, code) << told(report.faults.front());
        ASSERT_FALSE(saved.faults.empty());
        ASSERT_EQ(saved.faults.front().code, code);
        ASSERT_EQ(told(saved.faults.front()), told(report.faults.front()));
        continue;
      }
      Zol again;
      const elmx_error load_code = again.unmarshal(text);
      again.get_Preamble().get_Header().unset_ReadSDKInformation();
      const bool comes_back = load_code == lmx::elmx_ok && is_xml(text) &&
                              Comparison(is_exact).same(ConstRef(document), ConstRef(again));
      failures += comes_back ? 0 : 1;
      ASSERT_EQ(report.is_ok(), comes_back)
          << load_code << ' ' << (report.faults.empty() ? "" : told(report.faults.front()));
      if (changes == 1 && load_code != lmx::elmx_ok &&
          (report.faults.front().code < lmx::elmx_bad_attribute_value ||
           report.faults.front().code > lmx::elmx_bad_element_value)) {
        ASSERT_EQ(report.faults.front().code, load_code) << told(report.faults.front());
      }
      saving.is_checked = true;
      ASSERT_EQ(saveString(document, text, nullptr, saving) == lmx::elmx_ok, comes_back);
      saving.is_checked = false;
    }
  }
  // Each way of going wrong was gone often.
  EXPECT_GT(failures, 100u);
  EXPECT_GT(refusals, 50u);
}

INSTANTIATE_TEST_SUITE_P(Numbers, Law, testing::Bool(),
                         [](const auto& info) { return info.param ? "exact" : "described"; });

}  // namespace
