// Objects that hold others: choices, substitution groups, nil, copies, types by name.
#include <memory>
#include <set>

#include "model/documents.h"

namespace zol_test {
namespace {

using namespace zol_v2;

TEST(Choice, HoldsOneAlternative) {
  GeometryChoiceType geometry;
  const GeometryChoiceType& reader = geometry;
  EXPECT_EQ(geometry.getchosen(), 4);
  EXPECT_FALSE(geometry.is_occurs_ok());
  EXPECT_EQ(written(geometry, "Zol:GeometryChoice", lmx::elmx_occurs_on_marshal), "");

  ASSERT_EQ(geometry.set_Angle(45), 0);
  EXPECT_EQ(geometry.getchosen(), 1);
  EXPECT_TRUE(geometry.is_occurs_ok());
  EXPECT_EQ(reader.get_Angle(), 45);
  ASSERT_EQ(geometry.set_UnknownGeometry(L"annular"), 0);
  EXPECT_EQ(geometry.getchosen(), 2);

  // What is not chosen reads as its default, and looking does not choose.
  EXPECT_EQ(reader.get_Angle(), 0);
  EXPECT_EQ(reader.get_SphereGeometry(), L"");
  EXPECT_EQ(geometry.getenum_SphereGeometry(), 0);
  EXPECT_EQ(reader.get_BSDFAngle().get_Aspecular(), 0);
  EXPECT_EQ(geometry.getchosen(), 2);

  EXPECT_EQ(geometry.set_SphereGeometry(L"Sphere"), 38);
  EXPECT_EQ(geometry.getchosen(), 2) << "a refused value chooses nothing";
  EXPECT_EQ(geometry.set_SphereGeometry(L"Sphere_Excluded"), 0);
  EXPECT_EQ(geometry.getchosen(), 0);
  EXPECT_EQ(reader.get_UnknownGeometry(), L"");

  BSDFAngle& angle = geometry.get_BSDFAngle();
  EXPECT_EQ(geometry.getchosen(), 3);
  EXPECT_EQ(&geometry.get_BSDFAngle(), &angle) << "it was chosen already";
  (void)angle.set_Aspecular(15);
  (void)angle.set_IlluminantAngle(45);
  EXPECT_EQ(written(geometry, "Zol:GeometryChoice"),
            "<Zol:GeometryChoice>\n\t<Zol:BSDFAngle>\n\t\t<Zol:IlluminantAngle>45"
            "</Zol:IlluminantAngle>\n\t\t<Zol:Aspecular>15</Zol:Aspecular>\n\t\t<Zol:Azimuth/>\n"
            "\t</Zol:BSDFAngle>\n</Zol:GeometryChoice>\n");

  const GeometryChoiceType copy(geometry);
  geometry.reset();
  EXPECT_EQ(geometry.getchosen(), 4);
  EXPECT_EQ(copy.get_BSDFAngle().get_Aspecular(), 15);
}

TEST(Choice, IntegersKeepTheirBoundsAndAttributes) {
  auto light = made<IlluminationOptionsType>(
      "<Zol:IlluminationOptions Description='d'><Zol:ColorTemperature>2147483647"
      "</Zol:ColorTemperature></Zol:IlluminationOptions>");
  EXPECT_EQ(light.get_ColorTemperature(), 2147483647u);
  EXPECT_EQ(light.set_ColorTemperature(2147483648u), 36);
  EXPECT_EQ(light.get_ColorTemperature(), 2147483647u);
  const IlluminationOptionsType copy(light);
  EXPECT_EQ(written(copy, "Zol:I"), written(light, "Zol:I"));
  EXPECT_EQ(copy.get_Description(), L"d");

  CustomAttributeType_ValueChoice choice;
  ASSERT_EQ(choice.set_IntegerValue(-2147483647 - 1), 0);
  EXPECT_EQ(CustomAttributeType_ValueChoice(choice).get_IntegerValue(), -2147483647 - 1);
}

// The value may live inside the alternative that is about to go.
TEST(Choice, TakesAValueFromItself) {
  GeometryChoiceType geometry;
  const std::wstring text(100, L'x');
  ASSERT_EQ(geometry.set_UnknownGeometry(text), 0);
  ASSERT_EQ(geometry.set_UnknownGeometry(geometry.get_UnknownGeometry()), 0);
  EXPECT_EQ(geometry.get_UnknownGeometry(), text);
  ASSERT_TRUE(geometry.setenum_SphereGeometry(GeometryChoiceType::SphereGeometry_Sphere_Excluded));
  ASSERT_EQ(geometry.set_UnknownGeometry(geometry.get_SphereGeometry()), 0);
  EXPECT_EQ(geometry.get_UnknownGeometry(), L"Sphere_Excluded");
  (void)geometry.get_BSDFAngle().set_Aspecular(7);
  geometry.assign_BSDFAngle(geometry.get_BSDFAngle());
  EXPECT_EQ(geometry.get_BSDFAngle().get_Aspecular(), 7);
}

TEST(Holder, TakesAMemberFromInsideItself) {
  sg_ColorSpace holder;
  auto& outer = holder.get_ColorSpaceRGB();
  (void)outer.get_ParentColorSpace().get_ColorSpace().get_ColorSpaceCIELab().set_L(50);
  const sg_ColorSpace& inner = outer.get_ParentColorSpace().get_ColorSpace();
  holder.assign_ColorSpaceCIELab(inner.get_ColorSpaceCIELab());
  EXPECT_EQ(holder.getchosen(), sg_ColorSpace::chosen_ColorSpaceCIELab);
  EXPECT_EQ(holder.get_ColorSpaceCIELab().get_L(), 50);

  (void)holder.get_ColorSpaceRGB()
      .get_ParentColorSpace()
      .get_ColorSpace()
      .get_ColorSpaceRGB()
      .set_Red(1);
  holder.assign_ColorSpaceRGB(
      holder.get_ColorSpaceRGB().get_ParentColorSpace().get_ColorSpace().get_ColorSpaceRGB());
  EXPECT_EQ(holder.get_ColorSpaceRGB().get_Red(), 1);

  ColorType color;
  (void)color.get_Substrate().get_SubstratePaper().get_Color().set_ColorName(L"inside");
  color = color.get_Substrate().get_SubstratePaper().get_Color();
  EXPECT_EQ(color.get_ColorName(), L"inside");
  EXPECT_FALSE(color.isset_Substrate());
}

TEST(Holder, NumbersItsMembers) {
  EXPECT_EQ(sg_ColorSpace().getchosen(), 29);
  EXPECT_EQ(sg_Substrate().getchosen(), 10);
  EXPECT_EQ(sg_Sample().getchosen(), 3);
  EXPECT_EQ(sg_Function().getchosen(), 19);
  EXPECT_EQ(anon_TextValue().getchosen(), 2);
  sg_ColorSpace space;
  const struct {
    int expected;
    int chosen;
  } rows[] = {
      {0, (space.get_ColorSpaceRecipe(), space.getchosen())},
      {8, (space.get_ColorSpaceCMYKPlusN(), space.getchosen())},
      {21, (space.get_ColorSpaceCMYK(), space.getchosen())},
      {27, (space.get_ColorSpaceMunsell(), space.getchosen())},
  };
  for (const auto& row : rows) EXPECT_EQ(row.chosen, row.expected);
  sg_Function function;
  function.get_FunctionAverageStdDevB();
  EXPECT_EQ(function.getchosen(), 17);
  const sg_Function& reader = function;
  EXPECT_EQ(reader.get_FunctionDE94().get_Param_l(), 2.0) << "not chosen: as constructed";
}

TEST(Holder, IsAbsentUntilAskedFor) {
  const ParentColorSpace parent;
  EXPECT_EQ(parent.get_ColorSpace().getchosen(), sg_ColorSpace::chosen_none);
  EXPECT_FALSE(parent.is_occurs_ok());
  EXPECT_FALSE(ParentColorSpace(parent).is_occurs_ok()) << "there is no holder to copy";
  EXPECT_EQ(written(parent, "Zol:P", lmx::elmx_occurs_on_marshal), "");
  ParentColorSpace touched;
  touched.get_ColorSpace();
  EXPECT_TRUE(touched.is_occurs_ok());
  EXPECT_EQ(written(touched, "Zol:P", lmx::elmx_occurs_on_marshal), "<Zol:P>\n")
      << "a child fails when it is written";
}

std::unique_ptr<ColorSpaceCMYKPlusNType> cmyk_plus_n() {
  auto space = std::make_unique<ColorSpaceCMYKPlusNType>();
  (void)space->append_ChangeHistory(lmx::c_datetime("2020-01-01T10:00:00Z"));
  space->get_ColorSpaceSpecificationSpectrumGeneric()
      .setnil_ColorSpaceSpecificationSpectrumGeneric();
  for (const auto set :
       {&ColorSpaceCMYKPlusNType::set_Cyan, &ColorSpaceCMYKPlusNType::set_Magenta,
        &ColorSpaceCMYKPlusNType::set_Yellow, &ColorSpaceCMYKPlusNType::set_Black}) {
    EXPECT_EQ((space.get()->*set)(1), 0);
  }
  (void)space->get_Color(0).set_Name(L"n");
  (void)space->get_Color(0).set_Value(2);
  return space;
}

constexpr char k_cmyk_body[] =
    "\t<Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>\n"
    "\t<Zol:ColorSpaceSpecificationSpectrumGeneric$ xsi:nil=\"true\"/>\n"
    "\t<Zol:Cyan>1</Zol:Cyan>\n\t<Zol:Magenta>1</Zol:Magenta>\n"
    "\t<Zol:Yellow>1</Zol:Yellow>\n\t<Zol:Black>1</Zol:Black>\n";

std::string cmyk_body(const std::string& specification_type) {
  std::string text = k_cmyk_body;
  return text.replace(text.find('$'), 1, specification_type);
}

TEST(Holder, NamesTheTypeOfADerivedMember) {
  sg_ColorSpace holder;
  const ColorSpaceCMYKType* adopted = cmyk_plus_n().release();
  EXPECT_EQ(&holder.assign_ColorSpaceCMYK(const_cast<ColorSpaceCMYKType*>(adopted)), adopted);
  const std::string expected =
      "<Zol:ColorSpaceCMYK xsi:type=\"Zol:ColorSpaceCMYKPlusNType\">\n" + cmyk_body("") +
      "\t<Zol:Color>\n\t\t<Zol:Name>n</Zol:Name>\n\t\t<Zol:Value>2</Zol:Value>\n\t</Zol:Color>\n"
      "</Zol:ColorSpaceCMYK>\n";
  EXPECT_EQ(written(holder, ""), expected);
  EXPECT_EQ(written(sg_ColorSpace(holder), ""), expected) << "a copy keeps the class";

  holder.assign_ColorSpaceCMYKPlusN(*cmyk_plus_n());
  EXPECT_EQ(written(holder, "").substr(0, 26), "<Zol:ColorSpaceCMYKPlusN>\n");
}

// The hint that a plain member leaves behind makes the next polymorphic element name its type.
TEST(Holder, LeavesTheHintOfAPlainMember) {
  sg_ColorSpace holder;
  holder.assign_ColorSpaceCMYK(*cmyk_plus_n());
  const std::string expected =
      "<Zol:ColorSpaceCMYK>\n" +
      cmyk_body(" xsi:type=\"Zol:ColorSpaceSpecificationSpectrumGenericType\"") +
      "</Zol:ColorSpaceCMYK>\n";
  EXPECT_EQ(written(holder, ""), expected);
  EXPECT_EQ(outcome_of<ColorSpaceCMYKType>(expected), Outcome());

  Measurement two;
  (void)two.get_Device().set_Manufacturer(L"");
  (void)two.get_Device().set_Model(L"");
  (void)two.get_Device().set_SerialNumber(L"");
  (void)two.get_Color().set_ColorName(L"");
  (void)two.get_Color().append_ChangeHistory(lmx::c_datetime("2020-01-01T10:00:00Z"));
  two.get_Color().append_ColorSpace();
  two.get_Color()
      .get_ColorSpace(0)
      .get_ColorSpaceNCS()
      .get_ColorSpaceSpecificationSpectrumGeneric()
      .setnil_ColorSpaceSpecificationSpectrumGeneric();
  (void)two.get_Color().get_ColorSpace(0).get_ColorSpaceNCS().set_ColorName(L"");
  (void)two.get_Color().get_ColorSpace(0).get_ColorSpaceNCS().append_ChangeHistory(
      lmx::c_datetime("2020-01-01T10:00:00Z"));
  two.get_Function(0).get_Function();
  two.get_Function(1).get_FunctionDE();
  const std::string text = written(two, "Zol:M");
  EXPECT_NE(text.find("\t<Zol:Function>\n\t</Zol:Function>\n"
                      "\t<Zol:FunctionDE xsi:type=\"Zol:FunctionDEType\">\n"),
            std::string::npos)
      << text;
}

TEST(Holder, TakesOverAPointer) {
  sg_ColorSpace holder;
  holder.get_ColorSpaceRGB();
  EXPECT_NE(&holder.assign_ColorSpaceCMYK(nullptr), nullptr);
  EXPECT_EQ(holder.getchosen(), sg_ColorSpace::chosen_ColorSpaceCMYK);
  EXPECT_TRUE(holder.is_occurs_ok());
  EXPECT_EQ(written(holder, "", lmx::elmx_type_not_set), "");
  EXPECT_EQ(sg_ColorSpace(holder).getchosen(), sg_ColorSpace::chosen_ColorSpaceCMYK);
  (void)holder.get_ColorSpaceCMYK().set_Cyan(3);
  EXPECT_EQ(holder.get_ColorSpaceCMYK().get_Cyan(), 3) << "asked for, there is one";

  sg_Function function;
  auto tolerance = std::make_unique<FunctionTolerance>();
  (void)tolerance->set_ToleranceType(L"DE*");
  (void)tolerance->get_Parameters(0).set_LowValue(1);
  function.assign_Function(tolerance.release());
  EXPECT_EQ(written(function, ""),
            "<Zol:Function xsi:type=\"Zol:FunctionTolerance\">\n"
            "\t<Zol:ToleranceType>DE*</Zol:ToleranceType>\n\t<Zol:Parameters>\n"
            "\t\t<Zol:LowValue>1</Zol:LowValue>\n\t</Zol:Parameters>\n</Zol:Function>\n");
  function.get_FunctionDE();
  EXPECT_EQ(function.getchosen(), 2);
}

// A plain member of the head's own type can be held and written, but no document can say it.
TEST(Holder, WritesAPlainFunctionThatNobodyReads) {
  ToleranceType tolerance;
  tolerance.get_Function().get_Function();
  const std::string text = written(tolerance, "Zol:Tolerance");
  EXPECT_EQ(text, "<Zol:Tolerance>\n\t<Zol:Function>\n\t</Zol:Function>\n</Zol:Tolerance>\n");
  EXPECT_EQ(outcome_of<ToleranceType>(text).code, 44);
}

#define EXPECT_NILLABLE(Class, content)                                                         \
  {                                                                                             \
    SCOPED_TRACE(#Class);                                                                       \
    const std::string nilled = "<Zol:X xsi:nil=\"true\"/>\n";                                   \
    Class object;                                                                               \
    EXPECT_FALSE(object.isnil_##Class());                                                       \
    EXPECT_FALSE(object.is_occurs_ok());                                                        \
    object.setnil_##Class();                                                                    \
    EXPECT_TRUE(object.isnil_##Class() && object.is_occurs_ok());                               \
    EXPECT_EQ(written(object, "Zol:X"), nilled);                                                \
    content;                                                                                    \
    EXPECT_TRUE(object.isnil_##Class()) << "content does not take the mark away";               \
    EXPECT_EQ(written(Class(object), "Zol:X"), nilled);                                         \
    Class other;                                                                                \
    other.swap(object);                                                                         \
    EXPECT_TRUE(other.isnil_##Class() && !object.isnil_##Class());                              \
    object = other;                                                                             \
    EXPECT_TRUE(object.isnil_##Class());                                                        \
    other.reset();                                                                              \
    EXPECT_FALSE(other.isnil_##Class());                                                        \
    EXPECT_TRUE(made<Class>("<Zol:X xsi:nil='1'></Zol:X>").isnil_##Class());                    \
    EXPECT_EQ(outcome_of<Class>("<Zol:X xsi:nil='true'>\n<Zol:Y/></Zol:X>"),                    \
              (Outcome{10, "Zol:X", 2}));                                                       \
    EXPECT_EQ(outcome_of<Class>("<Zol:X xsi:nil='true'>t</Zol:X>"), (Outcome{10, "Zol:X", 1})); \
  }
#define EXPECT_NILLABLE_SPECIFICATION(Kind) \
  EXPECT_NILLABLE(ColorSpaceSpecification##Kind, (void)object.set_ASTM_Table(L"E308_Table5"))

TEST(Nil, StandsForContent){
    EXPECT_NILLABLE(Density, (void)object.set_Density(1))
        EXPECT_NILLABLE(SDKVersion, (void)object.set_SDKVersion(L"1"))
            EXPECT_NILLABLE(DevicePolarization, (void)object.set_DevicePolarization(true))
                EXPECT_NILLABLE(DeviceFilter, (void)object.set_DeviceFilterType(L"Filter_None"))
                    EXPECT_NILLABLE(ParentColorSpace, object.get_ColorSpace().get_ColorSpaceRGB())
                        EXPECT_NILLABLE(Standard, (object.get_Device(), object.get_Color()))
                            EXPECT_NILLABLE_SPECIFICATION(SpectrumGeneric)
                                EXPECT_NILLABLE_SPECIFICATION(SpectrumTristimulus)
                                    EXPECT_NILLABLE_SPECIFICATION(SpectrumSpectral)
                                        EXPECT_NILLABLE_SPECIFICATION(EmissiveGeneric)
                                            EXPECT_NILLABLE_SPECIFICATION(EmissiveTristimulus)
                                                EXPECT_NILLABLE_SPECIFICATION(EmissiveSpectral)}

TEST(Nil, KeepsAttributes) {
  const std::string text = "<Zol:X UniqueID=\"u\" xsi:nil=\"true\"/>\n";
  const auto specification = made<ColorSpaceSpecificationSpectrumGeneric>(text);
  EXPECT_EQ(specification.get_UniqueID(), L"u");
  EXPECT_EQ(written(specification, "Zol:X"), text);
  EXPECT_EQ(outcome_of<ColorSpaceSpecificationSpectrumGenericType>(text).code, 32)
      << "the plain type knows no nil";
}

// A real copy, which the compiler must not leave out.
template <class T>
T copy_of_fresh() {
  const T fresh;
  return T(fresh);
}

TEST(Copies, HaveRequiredValuesSet) {
  const ColorSpaceNCSType fresh;
  EXPECT_FALSE(fresh.is_occurs_ok());
  ColorSpaceNCSType copy(fresh);
  EXPECT_FALSE(copy.is_occurs_ok()) << "a list stays empty";
  (void)copy.append_ChangeHistory(lmx::c_datetime("2020-01-01T10:00:00Z"));
  EXPECT_TRUE(copy.is_occurs_ok()) << "text and child count as present";

  EXPECT_TRUE(copy_of_fresh<WhitePointChromaticity>().is_occurs_ok());
  EXPECT_FALSE(copy_of_fresh<Density>().is_occurs_ok()) << "0 is out of bounds";
  EXPECT_FALSE(copy_of_fresh<Illuminant>().is_occurs_ok()) << "no value of the enumeration";
  EXPECT_FALSE(copy_of_fresh<Averaging>().is_occurs_ok());
}

TEST(Copies, KeepNoTextOutsideAnEnumeration) {
  const std::string text = "<Zol:X>Filter_Pink</Zol:X>";
  WaivingReader reader(text.data(), text.size());
  DeviceFilterType filter;
  ASSERT_EQ(read_element(reader, filter), lmx::elmx_ok);
  EXPECT_EQ(reader.first, (Outcome{38, "Zol:X", 1}));
  EXPECT_EQ(filter.get_DeviceFilterType(), L"Filter_Pink");
  EXPECT_EQ(filter.getenum_DeviceFilterType(), 0);
  EXPECT_TRUE(filter.is_occurs_ok());
  EXPECT_EQ(written(filter, "Zol:X"), text + "\n");
  EXPECT_FALSE(DeviceFilterType(filter).is_occurs_ok());
}

template <class Family>
void expect_types(const std::set<std::string>& names) {
  for (const std::string& name : names) {
    const std::unique_ptr<Family> object(Family::factory(1000, name));
    ASSERT_NE(object, nullptr) << name;
    EXPECT_EQ(object->getid(), name);
    EXPECT_TRUE(object->has_id(Family::id));
    const std::unique_ptr<Family> clone(object->clone());
    EXPECT_EQ(clone->getid(), object->getid()) << "compared by address";
    for (const int ns_id : {0, 1, 999, 1001}) EXPECT_EQ(Family::factory(ns_id, name), nullptr);
  }
  for (const char* name : {"", "Nonsense", "Zol:FunctionDEType"}) {
    EXPECT_EQ(Family::factory(1000, name), nullptr) << name;
  }
}

TEST(Factories, MakeTheTypesOfAFamily) {
  expect_types<ColorSpaceType>({"ColorSpaceRecipeType",
                                "ColorSpaceOMBRELLType",
                                "ColorSpaceGenericType",
                                "ColorSpaceEmissiveGenericType",
                                "ColorSpaceDensityType",
                                "ColorSpaceRGBType",
                                "ColorSpaceSRGBType",
                                "ColorSpaceAdobeRGBType",
                                "ColorSpaceCMYKPlusNType",
                                "ColorSpaceAdobeWideGamutRGBType",
                                "ColorSpaceSpectralType",
                                "ColorSpaceEmissiveSpectralType",
                                "ColorSpaceCIELabType",
                                "ColorSpaceCIELChType",
                                "ColorSpaceCIEXYZType",
                                "ColorSpaceEmissiveCIEXYZType",
                                "ColorSpaceCIExyYType",
                                "ColorSpaceEmissiveCIExyYType",
                                "ColorSpaceCIELuvType",
                                "ColorSpaceHSLType",
                                "ColorSpaceHSVType",
                                "ColorSpaceCMYKType",
                                "ColorSpaceOMBRELLVantilineType",
                                "ColorSpaceYUVType",
                                "ColorSpaceYIQType",
                                "ColorSpaceYBRType",
                                "ColorSpaceNCSType",
                                "ColorSpaceMunsellType"});
  expect_types<ColorSpaceCMYKType>({"ColorSpaceCMYKType", "ColorSpaceCMYKPlusNType"});
  expect_types<SubstrateType>({"SubstrateGenericType", "SubstratePaperType", "SubstrateMetalType",
                               "SubstratePlasticType", "SubstrateWoodType", "SubstrateVinylType",
                               "SubstrateTileType", "SubstrateFilmType", "SubstrateTextileType"});
  expect_types<SampleType>({"SampleSpotType", "SampleTargetType"});
  expect_types<FunctionType>(
      {"FunctionGenericType", "FunctionDEType", "FunctionMeanDEType", "FunctionDE94Type",
       "FunctionDE2000Type", "FunctionDEcmcType", "FunctionStdDevXType", "FunctionStdDevYType",
       "FunctionStdDevZType", "FunctionStdDevLType", "FunctionStdDevAType", "FunctionStdDevBType",
       "FunctionStdDevCType", "FunctionStdDevHType", "FunctionAverageStdDevLType",
       "FunctionAverageStdDevAType", "FunctionAverageStdDevBType", "FunctionTolerance"});
  const std::set<std::string> spectrum = {"ColorSpaceSpecificationSpectrumType",
                                          "ColorSpaceSpecificationSpectrumGenericType",
                                          "ColorSpaceSpecificationSpectrumTristimulusType",
                                          "ColorSpaceSpecificationSpectrumSpectralType"};
  const std::set<std::string> emissive = {"ColorSpaceSpecificationEmissiveType",
                                          "ColorSpaceSpecificationEmissiveGenericType",
                                          "ColorSpaceSpecificationEmissiveTristimulusType",
                                          "ColorSpaceSpecificationEmissiveSpectralType"};
  expect_types<ColorSpaceSpecificationSpectrumType>(spectrum);
  expect_types<ColorSpaceSpecificationEmissiveType>(emissive);
  expect_types<ColorSpaceSpecificationType>(spectrum);
  expect_types<ColorSpaceSpecificationType>(emissive);

  // The roots are built by none.
  for (const char* root : {"ColorSpaceType", "ColorSpaceSpecificationType", "SubstrateType",
                           "SampleType", "FunctionType"}) {
    EXPECT_EQ(ColorSpaceType::factory(1000, root), nullptr);
    EXPECT_EQ(ColorSpaceSpecificationType::factory(1000, root), nullptr);
    EXPECT_EQ(SubstrateType::factory(1000, root), nullptr);
    EXPECT_EQ(SampleType::factory(1000, root), nullptr);
    EXPECT_EQ(FunctionType::factory(1000, root), nullptr);
  }
  EXPECT_EQ(ColorSpaceCMYKType::factory(1000, "ColorSpaceRGBType"), nullptr);
}

TEST(Identities, FollowTheBases) {
  const ColorSpaceCMYKPlusN element;
  const ColorSpaceType& space = element;
  EXPECT_EQ(space.getid(), ColorSpaceCMYKPlusNType::id) << "an element has its type's";
  for (const char* id : {ColorSpaceCMYKPlusNType::id, ColorSpaceCMYKType::id, ColorSpaceType::id}) {
    EXPECT_TRUE(space.has_id(id));
  }
  const std::string same_text = ColorSpaceCMYKType::id;
  for (const char* id :
       {ColorSpaceRGBType::id, same_text.c_str(), static_cast<const char*>(nullptr)}) {
    EXPECT_FALSE(space.has_id(id));
  }
  const std::unique_ptr<ColorSpaceType> clone(space.clone());
  EXPECT_NE(dynamic_cast<ColorSpaceCMYKPlusNType*>(clone.get()), nullptr);
}

// What the bases of a class hold goes along.
TEST(Swaps, TakeThePresenceOfInheritedRowsAlong) {
  ColorSpaceRGBType full, empty;
  (void)full.set_Comments(L"c");
  (void)full.set_Alpha(0.5);
  full.swap(empty);
  EXPECT_TRUE(empty.isset_Comments() && empty.isset_Alpha());
  EXPECT_FALSE(full.isset_Comments() || full.isset_Alpha());
  EXPECT_EQ(empty.get_Comments(), L"c");
  empty.reset();
  EXPECT_FALSE(empty.isset_Comments() || empty.isset_Alpha());
}

TEST(Lists, AreWalkedThroughInOrder) {
  OwnerType owner;
  const OwnerType& fixed = owner;
  EXPECT_TRUE(fixed.each_Person().empty());
  for (const Person& person : fixed.each_Person()) ADD_FAILURE() << person.is_occurs_ok();
  for (const wchar_t* const name : {L"a", L"b", L"c"}) {
    (void)owner.append_Person();
    (void)owner.back_Person().set_Name(name);
    std::wstring all;
    for (const Person& person : fixed.each_Person()) all += person.get_Name();
    EXPECT_EQ(all, std::wstring(L"abc").substr(0, owner.size_Person()));
  }
  for (Person& person : owner.each_Person()) (void)person.set_Name(L"d");
  EXPECT_EQ(owner.get_Person(0).get_Name() + owner.get_Person(2).get_Name(), L"dd");
  EXPECT_EQ(fixed.each_Person().size(), 3u);
}

TEST(Holders, ShowAVisitorWhatIsChosen) {
  struct Visitor {
    void operator()(const FunctionDE94Type& function) { param_l = function.get_Param_l(); }
    void operator()(const FunctionType&) { ++others; }
    double param_l = 0;
    int others = 0;
  } visitor;
  sg_Function holder;
  EXPECT_FALSE(holder.visit(visitor));
  (void)holder.get_FunctionDE94().set_Param_l(2);
  EXPECT_TRUE(holder.visit(visitor));
  EXPECT_EQ(visitor.param_l, 2);
  EXPECT_EQ(visitor.others, 0);
  holder.get_FunctionDECMC();
  EXPECT_TRUE(holder.visit(visitor));
  EXPECT_EQ(visitor.others, 1);
}

// --- Moving -------------------------------------------------------------------------------------

template <class... T>
constexpr bool k_move_without_throwing = (... && (std::is_nothrow_move_constructible_v<T> &&
                                                  std::is_nothrow_move_assignable_v<T> &&
                                                  std::is_nothrow_swappable_v<T>));
static_assert(
    k_move_without_throwing<Zol, ColorType, ColorSpaceCMYKPlusNType, Function, FunctionTolerance,
                            GeometryChoiceType, sg_ColorSpace, BSDFAngle>);
static_assert(k_move_without_throwing<lmx::c_binary, lmx::c_big_int, lmx::c_decimal>);

TEST(Moving, TakesWhatTheOtherHeld) {
  Zol read;
  ASSERT_EQ(read.unmarshal(sample_bytes("coverage-spaces")), lmx::elmx_ok);
  const std::string text = saved(read);
  const ColorType* const first = &read.get_Color(0);

  Zol taken(std::move(read));
  EXPECT_EQ(&std::as_const(taken).get_Color(0), first) << "nothing is copied";
  EXPECT_EQ(std::as_const(read).size_Color(), 0u);  // NOLINT: what was moved from is empty
  EXPECT_EQ(saved(taken), text);
  (void)read.append_Color();

  Zol other;
  (void)other.append_Color();
  other = std::move(taken);
  EXPECT_EQ(saved(other), text);
  Zol& same = other;
  other = std::move(same);
  EXPECT_EQ(saved(other), text);

  // A part of a document that was read as a whole outlives it.
  const std::string color = written(std::as_const(other).get_Color(0), "Zol:Color");
  auto document = std::make_unique<Zol>(std::move(other));
  std::vector<ColorType> colors;
  for (unsigned i = 0; i < std::as_const(*document).size_Color(); ++i) {
    colors.push_back(std::move(document->get_Color(i)));
  }
  document.reset();
  EXPECT_EQ(written(colors.front(), "Zol:Color"), color);
}

TEST(Moving, GoesWithTheChosenAlternativeAndTheClass) {
  GeometryChoiceType geometry;
  ASSERT_EQ(geometry.set_UnknownGeometry(L"annular"), 0);
  GeometryChoiceType moved(std::move(geometry));
  EXPECT_EQ(moved.get_UnknownGeometry(), L"annular");
  EXPECT_EQ(geometry.getchosen(), 4);  // NOLINT: what was moved from is empty

  FunctionTolerance tolerance;
  ASSERT_EQ(tolerance.set_ToleranceType(L"DE00"), 0);
  const FunctionTolerance taken(std::move(tolerance));
  EXPECT_EQ(taken.get_ToleranceType(), L"DE00");
  EXPECT_STREQ(taken.getid(), FunctionTolerance::id);
}

}  // namespace
}  // namespace zol_test
