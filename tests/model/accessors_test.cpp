// Setters, getters and lists: what may be stored, and what stays when it may not.
#include <cmath>
#include <functional>
#include <limits>
#include <memory>

#include "model/documents.h"

namespace zol_test {
namespace {

using namespace zol_v2;

// A row of type V in an object of its own.
template <class V>
struct Row {
  const char* name;
  std::function<lmx::elmx_error(V)> set;
  std::function<V()> get;
};

template <class V, class T, class Set, class Get>
Row<V> row(const char* name, Set set, Get get) {
  auto object = std::make_shared<T>();
  return {name, [object, set](V value) { return (object.get()->*set)(value); },
          [object, get]() { return (object.get()->*get)(); }};
}
#define DOUBLE_ROW(Class, X) row<double, Class>(#Class "." #X, &Class::set_##X, &Class::get_##X)

constexpr double k_no_bound = std::numeric_limits<double>::infinity();

// A bound is inclusive unless marked as strict; NaN is outside of any.
TEST(Setters, KeepDoublesInBounds) {
  struct {
    Row<double> row;
    double low, high;
    bool is_low_strict = false, is_high_strict = false;
  } rows[] = {
      {DOUBLE_ROW(ColorSpaceRGBType, Red), 0, 1},
      {DOUBLE_ROW(ColorSpaceRGBType, Alpha), 0, 1},
      {DOUBLE_ROW(ColorSpaceCIELabType, L), 0, 150},
      {DOUBLE_ROW(ColorSpaceCIELabType, A), -150, 150},
      {DOUBLE_ROW(ColorSpaceCIELChType, L), 0, 100},
      {DOUBLE_ROW(ColorSpaceCIELChType, H), 0, 360, false, true},
      {DOUBLE_ROW(ColorSpaceHSVType, Hue), 0, 360, false, true},
      {DOUBLE_ROW(ColorSpaceCIELuvType, U), -134, 220},
      {DOUBLE_ROW(ColorSpaceCIELuvType, V), -140, 122},
      {DOUBLE_ROW(ColorSpaceYUVType, U), -0.436, 0.436},
      {DOUBLE_ROW(ColorSpaceYIQType, Q), -0.5226, 0.5226},
      {DOUBLE_ROW(ColorSpaceCMYKType, Black), 0, 100},
      {DOUBLE_ROW(ColorSpaceCIExyYType, CapY), 0, 1},
      {DOUBLE_ROW(ColorSpaceEmissiveCIExyYType, CapY), 0, k_no_bound},
      {DOUBLE_ROW(ColorSpaceEmissiveCIEXYZType, X), 0, k_no_bound},
      {DOUBLE_ROW(ColorantElementType, Contribution), 0, 1},
      {DOUBLE_ROW(ColorantElement, Contribution), 0, k_no_bound},
      {DOUBLE_ROW(Density, Density), 0, k_no_bound, true},
      {DOUBLE_ROW(Colorant, Density), 0, k_no_bound, true},
      {DOUBLE_ROW(ReflectancePointType, ReflectancePointType), -1, 10, true, true},
      {DOUBLE_ROW(ReflectancePointType, Wavelength), 0, k_no_bound, true},
      {DOUBLE_ROW(SpotColorType, Percentage), 0, 100},
      {DOUBLE_ROW(WhitePointChromaticity, CoordinateX), 0, 1},
      {DOUBLE_ROW(FunctionDE94Type, Param_l), 0, k_no_bound},
      {DOUBLE_ROW(Process, Thickness), 0, k_no_bound},
      {DOUBLE_ROW(Specification, SampleWidth), -k_no_bound, k_no_bound},
      {DOUBLE_ROW(GeometryChoiceType, Angle), -k_no_bound, k_no_bound},
  };
  for (auto& [row, low, high, is_low_strict, is_high_strict] : rows) {
    SCOPED_TRACE(row.name);
    const bool is_bounded = std::isfinite(low);
    const double inside = std::isfinite(high) ? (low + high) / 2 : is_bounded ? low + 1 : 0;
    const struct {
      double value;
      int code;
    } attempts[] = {
        {low, is_low_strict ? 37 : 0},
        {std::nextafter(low, -k_no_bound), is_bounded ? 37 : 0},
        {std::nextafter(low, k_no_bound), 0},
        {high, is_high_strict ? 36 : 0},
        {std::nextafter(high, -k_no_bound), 0},
        {std::nextafter(high, k_no_bound), std::isfinite(high) ? 36 : 0},
        {-k_no_bound, is_bounded ? 37 : 0},
        {std::nan(""), is_bounded ? 37 : 0},
    };
    for (const auto& [value, code] : attempts) {
      ASSERT_EQ(row.set(inside), lmx::elmx_ok);
      EXPECT_EQ(row.set(value), code) << value;
      const double kept = code == 0 ? value : inside;
      EXPECT_TRUE(row.get() == kept || std::isnan(kept)) << value << " left " << row.get();
    }
  }
}

// The lower bound of positive integers is the reader's business alone.
TEST(Setters, KeepIntegersInBounds) {
  DeviceSettings settings;
  IlluminationOptionsType light;
  for (const unsigned value : {0u, 1u, 2147483647u}) {
    EXPECT_EQ(settings.set_Aperture(value), 0);
    EXPECT_EQ(settings.get_Aperture(), value);
    EXPECT_EQ(light.set_ColorTemperature(value), 0);
    EXPECT_EQ(light.get_ColorTemperature(), value);
  }
  for (const unsigned value : {2147483648u, 4294967295u}) {
    EXPECT_EQ(settings.set_Aperture(value), 36);
    EXPECT_EQ(light.set_ColorTemperature(value), 36);
  }
  EXPECT_EQ(settings.get_Aperture(), 2147483647u);
  EXPECT_EQ(light.get_ColorTemperature(), 2147483647u);

  for (const int value : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    EXPECT_EQ(settings.set_LensPosition(value), 0);
    EXPECT_EQ(settings.get_LensPosition(), value);
  }

  Averaging averaging;
  const struct {
    unsigned char value;
    int code;
  } rows[] = {{0, 37}, {1, 37}, {2, 0}, {99, 0}, {100, 36}, {255, 36}};
  for (const auto& [value, code] : rows) EXPECT_EQ(averaging.set_AveragingValue(value), code);
  EXPECT_EQ(averaging.get_AveragingValue(), 99);
}

// The setter counts UTF-16 units, the reader characters.
TEST(Setters, CountUnits) {
  ProfileType_Parameters parameters;
  const struct {
    std::wstring name;
    int code;
  } rows[] = {{L"", 20}, {L"a", 0}, {L"ab", 19}, {L"\xD83C\xDF42", 19}, {L"\u00E9", 0}};
  for (const auto& [name, code] : rows) EXPECT_EQ(parameters.set_Name(name), code);
  EXPECT_EQ(parameters.get_Name(), L"\u00E9");
  EXPECT_EQ(read(parameters,
                 "<Zol:Parameters><Zol:Name>\xF0\x9F\x8D\x82</Zol:Name><Zol:ValueChoice>"
                 "<Zol:StringValue/></Zol:ValueChoice></Zol:Parameters>"),
            Outcome());
  EXPECT_EQ(parameters.get_Name().size(), 2u);
  EXPECT_FALSE(ProfileType_Parameters(parameters).is_occurs_ok()) << "what no setter takes";
}

template <class T>
struct EnumAccess {
  const char* name;
  int size;
  std::function<int(const T&)> number;
  std::function<bool(T&, int)> store_number;
  std::function<std::wstring(const T&)> get;
  std::function<lmx::elmx_error(T&, const std::wstring&)> set;
};

template <class T>
void expect_enumerated(const EnumAccess<T>& row) {
  SCOPED_TRACE(row.name);
  T object;
  const int initial = row.number(object);
  for (const int number : {0, -1, row.size + 1}) {
    EXPECT_FALSE(row.store_number(object, number)) << number;
    EXPECT_EQ(row.number(object), initial);
  }
  std::vector<std::wstring> values;
  for (int number = 1; number <= row.size; ++number) {
    EXPECT_TRUE(row.store_number(object, number));
    EXPECT_EQ(row.number(object), number);
    values.push_back(row.get(object));
  }
  for (int number = 1; number <= row.size; ++number) {
    EXPECT_EQ(row.set(object, values[number - 1]), lmx::elmx_ok);
    EXPECT_EQ(row.number(object), number);
    for (const std::wstring& wrong :
         {std::wstring(), values[number - 1] + L" ", L" " + values[number - 1]}) {
      EXPECT_EQ(row.set(object, wrong), 38);
      EXPECT_EQ(row.get(object), values[number - 1]);
    }
  }
}

#define EXPECT_ENUMERATED(Class, X, size)                                                     \
  expect_enumerated<Class>(                                                                   \
      {#Class "." #X, size, [](const Class& o) { return static_cast<int>(o.getenum_##X()); }, \
       [](Class& o, int n) { return o.setenum_##X(static_cast<Class::Eenum_##X>(n)); },       \
       [](const Class& o) { return o.get_##X(); },                                            \
       [](Class& o, const std::wstring& text) { return o.set_##X(text); }})

TEST(Setters, TakeEnumeratedValuesAlone) {
  EXPECT_ENUMERATED(DeviceType, DeviceClass, 3);
  EXPECT_ENUMERATED(CalibrationStateType, CalibrationStateType, 3);
  EXPECT_ENUMERATED(DeviceFilterType, DeviceFilterType, 5);
  EXPECT_ENUMERATED(DeviceFilter, DeviceFilterType, 5);
  EXPECT_ENUMERATED(ProfileType, Direction, 3);
  EXPECT_ENUMERATED(FunctionTolerance, ToleranceType, 22);
  EXPECT_ENUMERATED(ToleranceType, PrimaryIlluminant, 15);
  EXPECT_ENUMERATED(ToleranceType, SecondaryIlluminant, 15);
  EXPECT_ENUMERATED(ToleranceType, TertiaryIlluminant, 15);
  EXPECT_ENUMERATED(ToleranceType, FieldOfView, 2);
  EXPECT_ENUMERATED(ToleranceParameterType, ToleranceParameter, 16);
  EXPECT_ENUMERATED(ColorSpaceOMBRELLType, Gamut, 4);
  EXPECT_ENUMERATED(ColorSpaceRGBType, ColorDepth, 4);
  EXPECT_ENUMERATED(ColorSpaceSRGBType, ColorDepth, 4);
  EXPECT_ENUMERATED(ColorSpaceAdobeRGBType, ColorDepth, 4);
  EXPECT_ENUMERATED(ColorSpaceAdobeWideGamutRGBType, ColorDepth, 4);
  EXPECT_ENUMERATED(ColorAndFinish, Finish, 3);
  EXPECT_ENUMERATED(FloatingPointValueType, AxisNominalScale, 3);
  EXPECT_ENUMERATED(DensityType, DensityStatus, 12);
  EXPECT_ENUMERATED(DensityType, DensityFilter, 10);
  EXPECT_ENUMERATED(ColorSpaceSpecificationSpectrumGenericType, FieldOfView, 2);
  EXPECT_ENUMERATED(ColorSpaceSpecificationSpectrumGenericType, ASTM_Table, 2);
  EXPECT_ENUMERATED(ColorSpaceSpecificationSpectrumGenericType, DensityStatus, 12);
  EXPECT_ENUMERATED(ColorSpaceSpecificationSpectrumTristimulusType, FieldOfView, 2);
  EXPECT_ENUMERATED(ColorSpaceSpecificationSpectrumTristimulusType, ASTM_Table, 2);
  EXPECT_ENUMERATED(ColorSpaceSpecificationSpectrumSpectralType, ASTM_Table, 2);
  EXPECT_ENUMERATED(ColorSpaceSpecificationEmissiveType, EmissiveType, 3);
  EXPECT_ENUMERATED(ColorSpaceSpecificationEmissiveType, EmissiveMode, 2);
  EXPECT_ENUMERATED(ColorSpaceSpecificationEmissiveGenericType, FieldOfView, 2);
  EXPECT_ENUMERATED(ColorSpaceSpecificationEmissiveGenericType, ASTM_Table, 2);
  EXPECT_ENUMERATED(ColorSpaceSpecificationEmissiveGenericType, DensityStatus, 12);
  EXPECT_ENUMERATED(ColorSpaceSpecificationEmissiveTristimulusType, FieldOfView, 2);
  EXPECT_ENUMERATED(ColorSpaceSpecificationEmissiveTristimulusType, ASTM_Table, 2);
  EXPECT_ENUMERATED(ColorSpaceSpecificationEmissiveSpectralType, ASTM_Table, 2);
  EXPECT_ENUMERATED(SpectrumType, SpectrumType, 4);
  EXPECT_ENUMERATED(GeometryChoiceType, SphereGeometry, 2);
  EXPECT_ENUMERATED(Illuminant, Illuminant, 15);
  EXPECT_ENUMERATED(SampleType, Backing, 4);
  EXPECT_ENUMERATED(SampleTargetType, Target, 6);
}

TEST(Enumerations, AreNumberedInTheirOrder) {
  Illuminant light;
  ASSERT_EQ(light.set_Illuminant(L"Illuminant_9300"), 0);
  EXPECT_EQ(light.getenum_Illuminant(), 14);
  FunctionTolerance tolerance;
  ASSERT_EQ(tolerance.set_ToleranceType(L"L*a*b*PlusMinus"), 0);
  EXPECT_EQ(tolerance.getenum_ToleranceType(), 14);
  SampleTargetType target;
  ASSERT_EQ(target.set_Target(L"Target_IT8.7/4"), 0);
  EXPECT_EQ(target.getenum_Target(), 4);
  DensityType density;
  ASSERT_EQ(density.set_DensityStatus(L"Status_DIN-NB"), 0);
  EXPECT_EQ(density.getenum_DensityStatus(), 12);
}

TEST(Setters, OfOptionalRowsCanBeTakenBack) {
  ColorSpaceRGBType rgb;
  EXPECT_FALSE(rgb.isset_Alpha());
  ASSERT_EQ(rgb.set_Alpha(0.5), 0);
  rgb.unset_Alpha();
  EXPECT_FALSE(rgb.isset_Alpha());
  EXPECT_EQ(rgb.get_Alpha(), 0.5) << "the value stays";
  EXPECT_EQ(rgb.set_Alpha(7), 36);
  EXPECT_FALSE(rgb.isset_Alpha());

  Header header;
  ASSERT_EQ(header.set_Comments(L"text"), 0);
  header.unset_Comments();
  EXPECT_EQ(header.get_Comments(), L"text");
  EXPECT_EQ(Header(header).get_Comments(), L"") << "a copy takes only what is set";
  (void)header.get_ReadSDKInformation().set_SDKName(L"name");
  header.unset_ReadSDKInformation();
  EXPECT_FALSE(header.isset_ReadSDKInformation());
  EXPECT_EQ(header.get_ReadSDKInformation().get_SDKName(), L"name");
  EXPECT_TRUE(header.isset_ReadSDKInformation()) << "the getter for change marks it as present";

  Averaging averaging;
  ASSERT_EQ(averaging.set_Averaging(true), 0);
  averaging.unset_Averaging();
  EXPECT_FALSE(averaging.isset_Averaging());
  EXPECT_TRUE(averaging.get_Averaging());
}

TEST(Defaults, AreGivenAndCountAsUnset) {
  const FunctionDE94Type de94;
  EXPECT_EQ(de94.get_Param_l(), 2.0);
  EXPECT_EQ(de94.get_Param_c(), 1.0);
  EXPECT_EQ(de94.get_Param_h(), 1.0);
  EXPECT_FALSE(de94.is_occurs_ok());
  EXPECT_TRUE(FunctionDE94Type(de94).is_occurs_ok()) << "a copy has required values set";

  const FloatingPointValueType axis;
  EXPECT_EQ(axis.get_AxisNominalScale(), L"Scale_Linear");
  EXPECT_EQ(axis.getenum_AxisNominalScale(), 1);
  EXPECT_FALSE(axis.isset_AxisNominalScale());
  EXPECT_FALSE(FloatingPointValueType(axis).isset_AxisNominalScale());

  EXPECT_EQ(ColorSpaceRGBType().getenum_ColorDepth(), 0);
  EXPECT_EQ(ColorSpaceRGBType().get_ColorDepth(), L"");
}

std::wstring names(const OwnerType& owner) {
  std::wstring result;
  for (unsigned i = 0; i < owner.size_Person(); ++i) {
    result += owner.get_Person(i).get_Name() + L",";
  }
  return result;
}

TEST(Lists, OfChildren) {
  OwnerType owner;
  owner.get_Person(5);
  EXPECT_EQ(owner.size_Person(), 6u) << "the getter for change appends until there is one";
  for (unsigned i = 0; i < 6; ++i) (void)owner.get_Person(i).set_Name(std::wstring(1, L'a' + i));
  EXPECT_EQ(&owner.back_Person(), &owner.get_Person(5));

  Person& kept = owner.get_Person(3);
  owner.delete_Person(1);
  EXPECT_EQ(names(owner), L"a,c,d,e,f,");
  EXPECT_EQ(&kept, &owner.get_Person(2)) << "a reference outlives the deletion of others";
  EXPECT_EQ(owner.insert_Person(0), 0);
  (void)owner.get_Person(0).set_Name(L"first");
  EXPECT_EQ(owner.insert_Person(100), 0);
  (void)owner.back_Person().set_Name(L"last");
  EXPECT_EQ(names(owner), L"first,a,c,d,e,f,last,");
  EXPECT_EQ(owner.append_Person(), 0);
  EXPECT_EQ(owner.size_Person(), 8u);

  EXPECT_EQ(&owner.assign_Person(9, owner.get_Person(0)), &owner.get_Person(9));
  EXPECT_EQ(owner.size_Person(), 10u);
  EXPECT_EQ(names(owner), L"first,a,c,d,e,f,last,,,first,");
  owner.assign_Person(0, owner.get_Person(0));
  EXPECT_EQ(owner.get_Person(0).get_Name(), L"first");
  owner.clear_Person();
  EXPECT_EQ(owner.size_Person(), 0u);
  owner.clear_Person();
}

TEST(Lists, OfValues) {
  OwnerType owner;
  const auto all = [&owner] {
    std::wstring result;
    for (unsigned i = 0; i < owner.size_Company(); ++i) result += owner.get_Company(i) + L",";
    return result;
  };
  EXPECT_EQ(owner.set_Company(5, L"b"), 0);
  EXPECT_EQ(all(), L"b,") << "past the end it appends one";
  EXPECT_EQ(owner.insert_Company(0, L"a"), 0);
  EXPECT_EQ(owner.insert_Company(100, L"d"), 0);
  EXPECT_EQ(owner.append_Company(L"e"), 0);
  EXPECT_EQ(owner.insert_Company(2, L"c"), 0);
  EXPECT_EQ(all(), L"a,b,c,d,e,");
  EXPECT_EQ(owner.set_Company(1, owner.get_Company(4)), 0);
  EXPECT_EQ(owner.append_Company(owner.get_Company(0)), 0);
  owner.delete_Company(2);
  EXPECT_EQ(all(), L"a,e,d,e,a,");
  owner.clear_Company();
  EXPECT_EQ(all(), L"");

  Header header;
  EXPECT_EQ(header.append_ChangeHistory(lmx::c_datetime("2020-01-01T10:00:00")), 0)
      << "the zone is the reader's business alone";
  EXPECT_EQ(header.get_ChangeHistory(0), lmx::c_datetime("2020-01-01T10:00:00"));
}

// An index past the end, where a client has no business, must not bring the process down.
TEST(Lists, SurviveAWrongIndex) {
  OwnerType owner;
  const OwnerType& reader = owner;
  owner.delete_Person(0);
  owner.delete_Company(7);
  EXPECT_EQ(reader.get_Person(3).get_Name(), L"");
  EXPECT_EQ(reader.get_Company(3), L"");
  EXPECT_EQ(owner.size_Person(), 0u);
  (void)owner.back_Person().set_Name(L"new");
  EXPECT_EQ(names(owner), L"new,");
}

TEST(Lists, OfForeignElements) {
  Revision revision;
  EXPECT_EQ(revision.append_any("<b/>"), 0);
  EXPECT_EQ(revision.insert_any(0, "<a/>"), 0);
  EXPECT_EQ(revision.insert_any(9, "<c/>"), 0);
  EXPECT_EQ(written(revision, "Zol:Revision"),
            "<Zol:Revision>\n\t<a/>\n\t<b/>\n\t<c/>\n</Zol:Revision>\n");
  revision.delete_any(1);
  revision.delete_any(5);
  EXPECT_EQ(revision.size_any(), 2u);

  std::string name = "-", uri = "-", text = "-";
  revision.get_any(5, &name, &uri, &text);
  EXPECT_EQ(name + uri + text, "---");
  revision.get_any(1, nullptr, nullptr, &text);
  EXPECT_EQ(text, "<c/>");
  revision.clear_any();
  EXPECT_EQ(revision.size_any(), 0u);

  ASSERT_EQ(read(revision,
                 "<Zol:Revision><x:note xmlns:x='urn:n' at='&amp;'>a<b/>&lt;</x:note><y/>"
                 "</Zol:Revision>"),
            Outcome());
  revision.get_any(0, &name, &uri, &text);
  EXPECT_EQ(name, "x:note");
  EXPECT_EQ(uri, "urn:n");
  EXPECT_EQ(text, "<x:note xmlns:x='urn:n' at='&amp;'>a<b/>&lt;</x:note>");
  revision.get_any(1, &name, &uri, &text);
  EXPECT_EQ(name, "y");
  EXPECT_EQ(uri, lmx::c_xml_reader::k_namespace_not_found);
}

}  // namespace
}  // namespace zol_test
