// Edges of reading that follow from one rule each, and what a lenient handler gets.
#include <cmath>

#include "model/documents.h"

namespace zol_test {
namespace {

using namespace zol_v2;

struct Edge {
  const char* what;
  Outcome (*read)(const std::string& text);
  std::string text;
  Outcome expected;
};

const std::string k_history = "<Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>\n";

const Edge k_edges[] = {
    {"a version with nothing but its predecessor",
     outcome_of<Version>,
     "<Zol:Version>\n<Zol:Predecessor>1</Zol:Predecessor></Zol:Version>",
     {21, "Zol:Version", 2}},
    {"text in the version that is not in its row of the same name",
     outcome_of<Version>,
     "<Zol:Version>2.0</Zol:Version>",
     {21, "Zol:Version", 1}},
    {"a version within a version",
     outcome_of<Version>,
     "<Zol:Version><Zol:Version>2.0</Zol:Version></Zol:Version>",
     {}},
    {"a prefix beyond ASCII among names without one",
     outcome_of<Version>,
     "<v xmlns='http://example.org/zol/v2' xmlns:\xC3\xA9='http://example.org/zol/v2'>"
     "<Version>2</Version><\xC3\xA9:Predecessor>1</\xC3\xA9:Predecessor></v>",
     {}},
    {"a colour set with an owner alone",
     outcome_of<ColorSetType>,
     "<Zol:ColorSet ColorSetName='s'>\n<Zol:Owner/>\n</Zol:ColorSet>",
     {21, "Zol:ChangeHistory", 2}},
    {"an empty colour set",
     outcome_of<ColorSetType>,
     "<Zol:ColorSet ColorSetName='s'/>",
     {32, "Zol:ColorSet", 1}},
    {"the substrate before the colour space",
     outcome_of<ColorType>,
     "<Zol:Color ColorName='c'>" + k_history +
         "<Zol:SubstratePaper/>\n<Zol:ColorSpaceNCS/>"
         "</Zol:Color>",
     {10, "Zol:Color", 3}},
    {"a colour without any rendering",
     outcome_of<ColorType>,
     "<Zol:Color ColorName='c'>" + k_history + "</Zol:Color>",
     {}},
    {"tag values without a value",
     outcome_of<TagValue>,
     "<Zol:TagValues><Zol:Tag>\n<Zol:Category/></Zol:Tag>\n</Zol:TagValues>",
     {21, "", 3}},
    {"a choice between the tags of another",
     outcome_of<AxisValueChoice>,
     "<Zol:AxisValueChoice>\n<Zol:TextValue/></Zol:AxisValueChoice>",
     {31, "Zol:TextValue", 2}},
    {"text for an alternative",
     outcome_of<AxisValueChoice>,
     "<Zol:AxisValueChoice>\ntext</Zol:AxisValueChoice>",
     {31, "text", 2}},
    {"a second alternative",
     outcome_of<ValueChoice>,
     "<v><Zol:Double>1</Zol:Double>\n<Zol:String/></v>",
     {10, "v", 2}},
    {"CMYK of a type that is no CMYK",
     outcome_of<ParentColorSpace>,
     "<p><Zol:ColorSpaceCMYK xsi:type='Zol:ColorSpaceRGBType'/></p>",
     {44, "", 1}},
    {"CMYK of a type without a prefix, which has no namespace then",
     outcome_of<ParentColorSpace>,
     "<p><Zol:ColorSpaceCMYK xsi:type='ColorSpaceCMYKType'/></p>",
     {44, "", 1}},
    {"a function of no named type",
     outcome_of<ToleranceType>,
     "<t>\n<Zol:Function/></t>",
     {44, "", 2}},
    {"a function of the head's own type",
     outcome_of<ToleranceType>,
     "<t><Zol:Function xsi:type='Zol:FunctionType'/></t>",
     {44, "", 1}},
    {"a function of a type in the default namespace",
     outcome_of<ToleranceType>,
     "<t xmlns='http://example.org/zol/v2'><Function xsi:type='FunctionDEType'/></t>",
     {}},
    {"blanks around the type's name",
     outcome_of<ToleranceType>,
     "<t><Zol:Function xsi:type=' Zol:FunctionDEType'/></t>",
     {44, "", 1}},
    {"a nilled class of attributes that lacks one",
     outcome_of<Averaging>,
     "<Zol:Averaging xsi:nil='true'>1</Zol:Averaging>",
     {25, "Averaging", 1}},
    {"nil told by a word", outcome_of<SDKVersion>, "<s xsi:nil='yes'>1</s>", {}},
    {"nil told twice", outcome_of<SDKVersion>, "<s xsi:nil='1' xsi:nil='true'/>", {}},
    {"content of a simple class in CDATA", outcome_of<Density>, "<d><![CDATA[1.5]]></d>", {}},
    {"content behind a comment", outcome_of<Density>, "<d><!-- x -->1.5<!-- y --></d>", {}},
    {"content that is not there", outcome_of<Density>, "<d/>", {35, "d", 1}},
    {"an integer of forty digits",
     outcome_of<DeviceSettings>,
     "<d><Zol:LensPosition>0000000000000000000000000000000002147483647</Zol:LensPosition></d>",
     {}},
    {"one more than that",
     outcome_of<DeviceSettings>,
     "<d><Zol:LensPosition>+000000000000000000000000000000002147483648</Zol:LensPosition></d>",
     {36, "Zol:LensPosition", 1}},
    {"nothing, with a sign, of what must be positive",
     outcome_of<DeviceSettings>,
     "<d><Zol:Aperture>-0</Zol:Aperture></d>",
     {37, "Zol:Aperture", 1}},
    {"the azimuth in two tags",
     outcome_of<BSDFAngle>,
     "<b><Zol:IlluminantAngle>1</Zol:IlluminantAngle><Zol:Aspecular>1</Zol:Aspecular>"
     "<Zol:Azimuth></Zol:Azimuth></b>",
     {}},
    {"an entity that nobody declared, in an attribute",
     outcome_of<TagCategory>,
     "<c Name='&nope;'/>",
     {28, "Name", 1}},
    {"in a value", outcome_of<Person>, "<p><Zol:Name>&nope;</Zol:Name></p>", {29, "Zol:Name", 1}},
    {"in content", outcome_of<Density>, "<d>1&nope;</d>", {29, "d", 1}},
    {"one history with a zone and one without",
     outcome_of<Measurement>,
     "<m><Zol:Device><Zol:Manufacturer/><Zol:Model/><Zol:SerialNumber/></Zol:Device>"
     "<Zol:Color ColorName=''>" +
         k_history + "<Zol:ChangeHistory>2020-01-01T10:00:00</Zol:ChangeHistory></Zol:Color></m>",
     {22, "Zol:ChangeHistory", 2}},
    {"a row under the name of another namespace",
     outcome_of<Person>,
     "<p><o:Name xmlns:o='urn:o'/></p>",
     {21, "Zol:Name", 1}},
    {"an attribute in the namespace of the format",
     outcome_of<Tag>,
     "<Zol:Tag Zol:Name='n'><Zol:Category/></Zol:Tag>",
     {39, "Zol:Tag", 1}},
    {"an attribute of a list's element",
     outcome_of<OwnerType>,
     "<o><Zol:Company nonsense='1'/></o>",
     {}},
    {"a broken value in a list",
     outcome_of<OwnerType>,
     "<o>\n<Zol:Company><Zol:Person/></Zol:Company></o>",
     {29, "Zol:Company", 2}},
    {"the same in a single row",
     outcome_of<Person>,
     "<p>\n<Zol:Name><Zol:Person/></Zol:Name></p>",
     {10, "Zol:Name", 2}},
};

TEST(Reading, Edges) {
  for (const Edge& edge : k_edges) EXPECT_EQ(edge.read(edge.text), edge.expected) << edge.what;
}

// Nine elements may stand empty although they have required rows; writing notices.
TEST(Reading, PassesNineEmptyElements) {
  EXPECT_EQ(outcome_of<ColorAndFinish>("<e/>"), Outcome());
  EXPECT_EQ(outcome_of<CustomAttributes>("<e></e>"), Outcome());
  EXPECT_EQ(outcome_of<Parameters>("<e/>"), Outcome());
  EXPECT_EQ(outcome_of<ParentColorSpace>("<e> </e>"), Outcome());
  EXPECT_EQ(outcome_of<Person>("<e/>"), Outcome());
  EXPECT_EQ(outcome_of<Process>("<e/>"), Outcome());
  EXPECT_EQ(outcome_of<ProfileType_Parameters>("<e/>"), Outcome());
  EXPECT_EQ(outcome_of<Recipe>("<e/>"), Outcome());
  EXPECT_EQ(outcome_of<Version>("<e/>"), Outcome());
  EXPECT_FALSE(made<Person>("<e/>").is_occurs_ok());
}

TEST(Reading, KeepsWhiteSpaceWhereTextIsText) {
  const auto name = [](const char* text) {
    return made<Person>(std::string("<p><Zol:Name>") + text + "</Zol:Name></p>").get_Name();
  };
  EXPECT_EQ(name("  a \n\t b  "), L"  a \n\t b  ");
  EXPECT_EQ(name("a\r\nb\rc"), L"a\nb\nc");
  EXPECT_EQ(name("<![CDATA[ <x> ]]>"), L" <x> ");
  EXPECT_EQ(name("a<!-- - -->b<?pi?>c"), L"abc");
  EXPECT_EQ(name("&#9;&lt;&amp;&#x1F342;"), L"\t<&\xD83C\xDF42");
  const auto version = made<Version>(
      "<v><Zol:Version> 1 </Zol:Version><Zol:Predecessor>  0.9\n beta  </Zol:Predecessor></v>");
  EXPECT_EQ(version.get_Version(), L" 1 ");
  EXPECT_EQ(version.get_Predecessor(0), L"0.9 beta");
  EXPECT_EQ(made<FunctionGenericType>("<f><Zol:Name>\n a  b </Zol:Name></f>").get_Name(), L"a b");
  EXPECT_EQ(made<ProfileChoice>("<c><Zol:ProfileURI> a  b\n</Zol:ProfileURI></c>").get_ProfileURI(),
            L"a b");
}

// Elements overwrite, lists grow, attributes refuse.
TEST(Reading, TwiceIntoOneObject) {
  SubstratePaperType paper;
  const std::string text =
      "<s><Zol:CustomAttribute><Zol:Name>n</Zol:Name><Zol:ValueChoice><Zol:DoubleValue>1"
      "</Zol:DoubleValue></Zol:ValueChoice></Zol:CustomAttribute><Zol:PartNumber>1</Zol:PartNumber>"
      "</s>";
  EXPECT_EQ(read(paper, text), Outcome());
  EXPECT_EQ(read(paper, "<s><Zol:PartNumber>2</Zol:PartNumber></s>"), Outcome());
  EXPECT_EQ(read(paper, text.substr(0, text.find("<Zol:PartNumber>")) + "</s>"), Outcome());
  EXPECT_EQ(paper.get_PartNumber(), L"2");
  EXPECT_EQ(paper.size_CustomAttribute(), 2u);

  sg_Substrate holder;
  ToleranceType tolerance = made<ToleranceType>("<t><Zol:FunctionDE/></t>");
  EXPECT_EQ(read(tolerance,
                 "<t><Zol:FunctionDE94><Zol:Param_l>1</Zol:Param_l><Zol:Param_c>1"
                 "</Zol:Param_c><Zol:Param_h>1</Zol:Param_h></Zol:FunctionDE94></t>"),
            Outcome());
  EXPECT_EQ(tolerance.get_Function().getchosen(), 4) << "the earlier member is gone";

  TagCategory category;
  EXPECT_EQ(read(category, "<c Name='1'/>"), Outcome());
  EXPECT_EQ(read(category, "<c Name='2'/>"), (Outcome{3, "Name", 1}));
  EXPECT_EQ(category.get_Name(), L"1");
}

TEST(Reading, ClearsAStandingMarkOfNil) {
  SDKVersion version;
  EXPECT_EQ(read(version, "<s xsi:nil='1'/>"), Outcome());
  EXPECT_TRUE(version.isnil_SDKVersion());
  EXPECT_EQ(read(version, "<s>2</s>"), Outcome());
  EXPECT_FALSE(version.isnil_SDKVersion());
  ParentColorSpace parent;
  parent.setnil_ParentColorSpace();
  EXPECT_EQ(read(parent, "<p/>"), Outcome());
  EXPECT_FALSE(parent.isnil_ParentColorSpace());
}

TEST(Reading, LeavesWhatCameBeforeTheFault) {
  OwnerType owner;
  EXPECT_EQ(read(owner,
                 "<o><Zol:Person><Zol:Name>n</Zol:Name></Zol:Person>"
                 "<Zol:Company>c</Zol:Company><Zol:Nonsense/></o>")
                .code,
            10);
  EXPECT_EQ(owner.get_Person(0).get_Name(), L"n");
  EXPECT_EQ(owner.get_Company(0), L"c");

  ColorSpaceRGBType rgb;
  (void)rgb.set_Red(0.25);
  EXPECT_EQ(read(rgb, "<c>" + k_history +
                          "<Zol:ColorSpaceSpecificationSpectrumTristimulus xsi:nil='1'/>"
                          "<Zol:Red>7</Zol:Red></c>")
                .code,
            36);
  EXPECT_EQ(rgb.get_Red(), 0.25) << "a refused value is not stored";
}

// What a handler lets pass is stored, and reading goes on behind it.
TEST(Handlers, GetWhatTheyWaive) {
  const std::string text =
      "<c nonsense='1'>" + k_history +
      "<Zol:ColorSpaceSpecificationSpectrumTristimulus xsi:nil='1'/><Zol:Red>7</Zol:Red>"
      "<Zol:Blue>0.5x</Zol:Blue><Zol:ColorDepth>ColorDepth_24</Zol:ColorDepth></c>";
  WaivingReader reader(text.data(), text.size());
  ColorSpaceRGBType rgb;
  EXPECT_EQ(read_element(reader, rgb), lmx::elmx_ok);
  EXPECT_EQ(reader.first, (Outcome{39, "c", 1}));
  EXPECT_EQ(reader.count, 5);
  EXPECT_EQ(rgb.get_Red(), 7);
  EXPECT_EQ(rgb.get_Green(), 0);
  EXPECT_EQ(rgb.get_Blue(), 0.5) << "a broken number is what it begins with";
  EXPECT_EQ(rgb.get_ColorDepth(), L"ColorDepth_24");
  EXPECT_EQ(rgb.getenum_ColorDepth(), 0);
  EXPECT_FALSE(rgb.is_occurs_ok()) << "green is still missing";
  EXPECT_EQ(reader.get_error(), lmx::elmx_ok) << "below the model nothing was wrong";

  const std::string unnamed = "<Zol:ToleranceType><Zol:Function/></Zol:ToleranceType>";
  WaivingReader other(unnamed.data(), unnamed.size());
  ToleranceType tolerance;
  EXPECT_EQ(read_element(other, tolerance), 44) << "nobody is asked";
  EXPECT_EQ(other.count, 0);
}

TEST(Handlers, SeeEventOneForAnAttributeThatNobodyKnows) {
  struct Handler : lmx::c_xml_reader_memory {
    using c_xml_reader_memory::c_xml_reader_memory;
    using c_xml_reader_memory::user_handle_error;
    lmx::elmx_error user_handle_error(lmx::elmx_error code) override {
      EXPECT_EQ(code, 39);
      events.push_back(get_current_event());
      return lmx::elmx_ok;
    }
    std::vector<int> events;
  };
  // A class with attributes, and one without.
  const std::string text =
      document("<Zol:Color a='1' ColorName='c'>" + k_history + "<Zol:Owner a='1'/></Zol:Color>");
  Handler reader(text.data(), text.size());
  EXPECT_EQ(Zol().unmarshal(reader), lmx::elmx_ok);
  EXPECT_EQ(reader.events, std::vector<int>({1, 1}));
}

TEST(Handlers, MayPutAnotherCodeOrThrow) {
  struct Handler : lmx::c_xml_reader_memory {
    using c_xml_reader_memory::c_xml_reader_memory;
    using c_xml_reader_memory::user_handle_error;
    lmx::elmx_error user_handle_error(lmx::elmx_error code) override {
      if (throws) throw lmx::c_lmx_reader_exception(code, get_line_no());
      return lmx::elmx_user_defined_3;
    }
    bool throws = false;
  };
  const std::string text =
      document("<Zol:Color ColorName='c'>" + k_history + "<Zol:ColorSpaceNCS Name='n'>" +
               k_history + "<Zol:Nonsense/></Zol:ColorSpaceNCS></Zol:Color>");
  Handler substituting(text.data(), text.size());
  Zol object;
  EXPECT_EQ(object.unmarshal(substituting), lmx::elmx_user_defined_3);
  std::string message;
  EXPECT_EQ(substituting.get_error_message(&message),
            "line:3-'Zol:ColorSpaceSpecificationSpectrumGeneric'-User defined error 3");

  Handler throwing(text.data(), text.size());
  throwing.throws = true;
  try {
    (void)object.unmarshal(throwing);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const lmx::c_lmx_reader_exception& exception) {
    EXPECT_EQ(exception.get_error(), 21);
    EXPECT_EQ(exception.get_line(), 3);
  }
  EXPECT_EQ(object.size_Color(), 2u) << "what was read stays";
}

// UTF-16 units on every platform.
TEST(Text, IsInUtf16Units) {
  Person person = made<Person>("<p><Zol:Name>a\xC3\xA9\xE2\x82\xAC\xF0\x90\x80\x80</Zol:Name></p>");
  const std::wstring expected = {L'a', 0xE9, 0x20AC, 0xD800, 0xDC00};
  EXPECT_EQ(person.get_Name(), expected);

  const struct {
    const char* what;
    std::wstring text;
    const char* bytes;
  } rows[] = {
      {"a pair", {0xD83C, 0xDF42}, "\xF0\x9F\x8D\x82"},
      {"the highest pair", {0xDBFF, 0xDFFF}, "\xF4\x8F\xBF\xBF"},
      {"a high surrogate ends the text", {L'a', 0xD83C, L'b'}, "a"},
      {"also at the end", {L'a', 0xD83C}, "a"},
      {"a low one alone is a character",
       {L'a', 0xDF42, L'b'},
       "a\xED\xBD\x82"
       "b"},
      {"a character, in one unit if that has 32 bits", L"\U0001F342", "\xF0\x9F\x8D\x82"},
      {"the four that are escaped", L"\"'&<>", "&quot;&apos;&amp;&lt;>"},
      {"control characters are not", L"\t\n\r\x1", "\t\n\r\x1"},
  };
  for (const auto& [what, text, bytes] : rows) {
    ASSERT_EQ(person.set_Name(text), 0);
    EXPECT_EQ(written(person, "p"),
              std::string("<p>\n\t<Zol:Name>") + bytes + "</Zol:Name>\n</p>\n")
        << what;
    TagCategory tag;
    ASSERT_EQ(tag.set_Name(text), 0);
    EXPECT_EQ(written(tag, "c"), std::string("<c Name=\"") + bytes + "\"/>\n") << what;
  }
}

TEST(Numbers, AreWrittenInFourteenDigits) {
  const struct {
    double value;
    const char* text;
  } rows[] = {{0.1, "0.1"},
              {2, "2"},
              {0.0, "0.0"},
              {-0.0, "-0.0"},
              {1.0 / 3, "0.33333333333333"},
              {-1234567.5, "-1234567.5"},
              {1e300, "1e+300"},
              {5e-324, "4.9406564584125e-324"},
              {HUGE_VAL, "INF"},
              {-HUGE_VAL, "-INF"}};
  for (const auto& [value, text] : rows) {
    ValueChoice choice;
    (void)choice.set_Double(value);
    const std::string expected =
        std::string("<v>\n\t<Zol:Double>") + text + "</Zol:Double>\n</v>\n";
    EXPECT_EQ(written(choice, "v"), expected);
    EXPECT_EQ(written(made<ValueChoice>(expected), "v"), expected);
  }
}

// A zone of no offset is read and not written, which no reader takes back.
TEST(Dates, LoseAZoneOfNoOffset) {
  const auto state = made<CalibrationStateType>(
      "<Zol:CalibrationState CalibrationDateTime='2020-01-01T10:00:00+00:00'>CalibrationState_NA"
      "</Zol:CalibrationState>");
  const std::string text = written(state, "Zol:CalibrationState");
  EXPECT_EQ(text,
            "<Zol:CalibrationState CalibrationDateTime=\"2020-01-01T10:00:00\">CalibrationState_NA"
            "</Zol:CalibrationState>\n");
  EXPECT_EQ(outcome_of<CalibrationStateType>(text), (Outcome{22, "CalibrationDateTime", 1}));
}

}  // namespace
}  // namespace zol_test
