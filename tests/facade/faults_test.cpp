// What is told of a broken document: the sentence, the path and the place of each fault. The
// sentences were written for the people who are to mend the documents, and the code follows them.
#include <algorithm>
#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "facade/files.h"
#include "model/documents.h"
#include "model/reflection.h"
#include "support/files.h"
#include "zip/archives.h"

namespace zol_test {
namespace {

using namespace zol_v2;
using std::string_literals::operator""s;

#define URI "http://example.org/zol/v2"
#define XSI "http://www.w3.org/2001/XMLSchema-instance"

constexpr char k_frame[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<Zol:Zol xmlns:Zol="http://example.org/zol/v2" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
 <Zol:Preamble>
  <Zol:Header>
   <Zol:CustomAttribute>
    <Zol:Name>floor</Zol:Name>
    <Zol:ValueChoice><Zol:IntegerValue>2</Zol:IntegerValue></Zol:ValueChoice>
   </Zol:CustomAttribute>
   <Zol:Creator>me</Zol:Creator>
   <Zol:CreatorVersion>1</Zol:CreatorVersion>
   <Zol:ChangeHistory>2026-01-31T10:00:00Z</Zol:ChangeHistory>
   <Zol:Purpose>tests</Zol:Purpose>
  </Zol:Header>
 </Zol:Preamble>
 <Zol:Color ColorName="House red" UniqueID="c1">
  <Zol:ChangeHistory>2026-01-31T10:00:00Z</Zol:ChangeHistory>
  <Zol:ColorSpaceCIELab>
   <Zol:ChangeHistory>2026-01-31T10:00:00Z</Zol:ChangeHistory>
   <Zol:ColorSpaceSpecificationSpectrumTristimulus>
    <Zol:DeviceFilter xsi:nil="true"/>
    <Zol:DevicePolarization xsi:nil="true"/>
    <Zol:ChangeHistory>2026-01-31T10:00:00Z</Zol:ChangeHistory>
    <Zol:Spectrum>Spectrum_Reflectance</Zol:Spectrum>
    <Zol:IlluminationOptions>
     <Zol:Illuminant>Illuminant_D50</Zol:Illuminant>
    </Zol:IlluminationOptions>
    <Zol:FieldOfView>FieldOfView_2_Degree</Zol:FieldOfView>
   </Zol:ColorSpaceSpecificationSpectrumTristimulus>
   <Zol:L>50</Zol:L>
   <Zol:A>20</Zol:A>
   <Zol:B>30</Zol:B>
  </Zol:ColorSpaceCIELab>
  <Zol:ColorSpaceCMYK>
   <Zol:ChangeHistory>2026-01-31T10:00:00Z</Zol:ChangeHistory>
   <Zol:ColorSpaceSpecificationSpectrumGeneric xsi:nil="true"/>
   <Zol:Cyan>0</Zol:Cyan>
   <Zol:Magenta>80</Zol:Magenta>
   <Zol:Yellow>70</Zol:Yellow>
   <Zol:Black>10</Zol:Black>
  </Zol:ColorSpaceCMYK>
  <Zol:ColorSpaceEmissiveSpectral>
   <Zol:ChangeHistory>2026-01-31T10:00:00Z</Zol:ChangeHistory>
   <Zol:ColorSpaceSpecificationEmissiveSpectral xsi:nil="true"/>
   <Zol:EmissiveSpectralPoint Wavelength="400">1</Zol:EmissiveSpectralPoint>
   <Zol:EmissiveSpectralPoint Wavelength="410">1</Zol:EmissiveSpectralPoint>
  </Zol:ColorSpaceEmissiveSpectral>
 </Zol:Color>
</Zol:Zol>
)";

constexpr char k_lab[] = "Zol/Color[1]/ColorSpaceCIELab";
constexpr char k_header[] = "Zol/Preamble/Header";
constexpr char k_specification[] =
    "Zol/Color[1]/ColorSpaceCIELab/ColorSpaceSpecificationSpectrumTristimulus";

std::string changed(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

std::string place_of(const SourcePlace& place) {
  return std::to_string(place.line) + ":" + std::to_string(place.column);
}

LoadReport report_of(const std::string& bytes, const LoadOptions& options = {}) {
  Zol document;
  LoadReport report;
  EXPECT_EQ(openText(document, bytes, &report, options), report.code);
  return report;
}

// --- The table ----------------------------------------------------------------------------------

// One change of the frame, which is one fault.
struct Broken {
  std::string from;
  std::string to;
  int code;
  const char* place;
  std::string path;
  const char* sentence;
};

const Broken k_broken[] = {
    // Numbers.
    {">50<", ">150.5<", 36, "29:11", k_lab + "/L"s, "L is 150.5, at most 150 is allowed"},
    {">20<", ">-200<", 37, "30:11", k_lab + "/A"s, "A is -200, at least -150 is allowed"},
    {">20<", ">NaN<", 37, "30:11", k_lab + "/A"s, "A is NaN, at least -150 is allowed"},
    {">20<", "> twenty <", 35, "30:12", k_lab + "/A"s,
     "A is 'twenty', a number such as 0.5 is expected"},
    {">20<", ">20,5<", 35, "30:11", k_lab + "/A"s,
     "A is '20,5', 20.5 with a decimal point is expected"},
    {">20<", ">20 units<", 35, "30:11", k_lab + "/A"s,
     "A is '20 units', 20 without a unit is expected"},
    {">20<", "><", 35, "30:11", k_lab + "/A"s, "A is empty, a number such as 0.5 is expected"},
    {"<Zol:A>20</Zol:A>", "<Zol:A/>", 35, "30:4", k_lab + "/A"s,
     "A is empty, a number such as 0.5 is expected"},
    {">80<", ">101<", 36, "37:17", "Zol/Color[1]/ColorSpaceCMYK/Magenta",
     "Magenta is 101, at most 100 percent is allowed"},
    {"\"400\"", "\"0\"", 37, "44:43",
     "Zol/Color[1]/ColorSpaceEmissiveSpectral/EmissiveSpectralPoint[1]/@Wavelength",
     "Wavelength is 0, more than 0 nm is allowed"},
    {"<Zol:IntegerValue>2<", "<Zol:IntegerValue>2.5<", 35, "7:40",
     k_header + "/CustomAttribute[1]/ValueChoice/IntegerValue"s,
     "IntegerValue is 2.5, a whole number is expected"},
    {"<Zol:IntegerValue>2<", "<Zol:IntegerValue>3000000000<", 36, "7:40",
     k_header + "/CustomAttribute[1]/ValueChoice/IntegerValue"s,
     "IntegerValue is 3000000000, at most 2147483647 is allowed"},
    // Other values.
    {">Illuminant_D50<", ">D65<", 38, "25:22",
     k_specification + "/IlluminationOptions/Illuminant/text()"s,
     "Illuminant is 'D65', Illuminant_D65, Illuminant_A, Illuminant_B, Illuminant_C, "
     "Illuminant_D50, Illuminant_D55, Illuminant_D75, Illuminant_E, Illuminant_F2, Illuminant_F3, "
     "Illuminant_F7, Illuminant_F11, Illuminant_F12, Illuminant_9300 or Illuminant_Custom is "
     "expected"},
    {">FieldOfView_2_Degree<", ">FieldOfView_10_degree<", 38, "27:22",
     k_specification + "/FieldOfView"s,
     "FieldOfView is 'FieldOfView_10_degree', FieldOfView_10_Degree or FieldOfView_2_Degree is "
     "expected"},
    {">2026-01-31T10:00:00Z</Zol:ChangeHistory>\n   <Zol:Purpose",
     ">2026-01-31T10:00:00</Zol:ChangeHistory>\n   <Zol:Purpose", 22, "11:23",
     k_header + "/ChangeHistory[1]"s,
     "ChangeHistory is '2026-01-31T10:00:00', which has no time zone: 2026-01-31T10:00:00Z or an "
     "offset such as +01:00 is expected"},
    {">2026-01-31T10:00:00Z</Zol:ChangeHistory>\n   <Zol:Purpose",
     ">31.1.2026</Zol:ChangeHistory>\n   <Zol:Purpose", 35, "11:23",
     k_header + "/ChangeHistory[1]"s,
     "ChangeHistory is '31.1.2026', a date and time such as 2026-01-31T10:00:00Z is expected"},
    {"xsi:nil=\"true\"/>\n    <Zol:DeviceP", ">maybe</Zol:DeviceFilter>\n    <Zol:DeviceP", 38,
     "20:24", k_specification + "/DeviceFilter/text()"s,
     "DeviceFilter is 'maybe', Filter_None, Filter_UVExcluded, Filter_UVD65, Filter_Partial or "
     "Filter_Custom is expected"},
    {">me<", ">you & me<", 29, "9:21", k_header + "/Creator"s,
     "A mere & in Creator must be written &amp;"},
    {">me<", ">caf&eacute;<", 29, "9:20", k_header + "/Creator"s,
     "&eacute; in Creator names no entity: define it, or write &amp; for a mere &"},
    {">me<", ">a&#x110000;b<", 29, "9:18", k_header + "/Creator"s,
     "&#x110000; in Creator is no character that a document may hold"},
    {">me<", ">a < b<", 10, "9:19", k_header + "/Creator"s,
     "A mere < in Creator must be written &lt;"},
    // Attributes.
    {"House red\"", "House &red;\"", 28, "15:30", "Zol/Color[1]/@ColorName",
     "&red; in ColorName names no entity: define it, or write &amp; for a mere &"},
    {" UniqueID=", " ColorName=", 3, "15:35", "Zol/Color[1]/@ColorName",
     "The attribute ColorName stands twice in Color, the other is in line 15, column 13"},
    {" ColorName=\"House red\"", "", 25, "15:2", "Zol/Color[1]/@ColorName",
     "Color lacks the attribute ColorName"},
    {" ColorName=", " ColourName=", 39, "15:13", "Zol/Color[1]",
     "Color has no attribute ColourName, ColorName is expected"},
    {" UniqueID=", " Weight=", 39, "15:35", "Zol/Color[1]",
     "Color has no attribute Weight, UniqueID, ColorNumber or Comments may stand there"},
    {" Wavelength=\"400\"", "", 25, "44:4",
     "Zol/Color[1]/ColorSpaceEmissiveSpectral/EmissiveSpectralPoint[1]/@Wavelength",
     "EmissiveSpectralPoint lacks the attribute Wavelength"},
    {" xmlns:xsi=\"" XSI "\"", "", 39, "20:23", k_specification + "/DeviceFilter"s,
     "The prefix of xsi:nil stands for no namespace that is known here, "
     "xmlns:xsi=\"" XSI "\" is expected"},
    // Elements.
    {"<Zol:Purpose>tests</Zol:Purpose>", "<Zol:Purpos>tests</Zol:Purpos>", 21, "12:4", k_header,
     "Purpos is unknown in Header, Purpose is expected"},
    {"<Zol:Purpose>tests</Zol:Purpose>", "<Zol:Reason>tests</Zol:Reason>", 21, "12:4", k_header,
     "Reason is unknown in Header, ChangeHistory or Purpose must stand there"},
    {"   <Zol:L>50", "   <Zol:Hue>1</Zol:Hue>\n   <Zol:L>50", 21, "29:4", k_lab,
     "Hue is unknown in ColorSpaceCIELab, L must stand there"},
    {"<Zol:B>30</Zol:B>", "<Zol:B>30</Zol:B><Zol:C>1</Zol:C>", 10, "31:21", k_lab,
     "C is unknown in ColorSpaceCIELab, nothing more may stand there"},
    {"<Zol:L>50</Zol:L>", "<L>50</L>", 21, "29:4", k_lab,
     "L is unknown in ColorSpaceCIELab, it is of no namespace: Zol:L is expected"},
    {"<Zol:L>50</Zol:L>", "<Zoll:L>50</Zoll:L>", 21, "29:4", k_lab,
     "Zoll:L is unknown in ColorSpaceCIELab, its prefix is not declared: Zol:L is expected"},
    {"   <Zol:L>50</Zol:L>\n", "", 21, "29:4", k_lab + "/L"s,
     "L is missing in ColorSpaceCIELab: it must stand before A"},
    {"   <Zol:B>30</Zol:B>\n", "", 21, "31:3", k_lab + "/B"s,
     "B is missing in ColorSpaceCIELab: it must stand before </Zol:ColorSpaceCIELab>"},
    {"<Zol:L>50</Zol:L>\n   <Zol:A>20</Zol:A>", "<Zol:A>20</Zol:A>\n   <Zol:L>50</Zol:L>", 21,
     "29:4", k_lab + "/A"s,
     "A stands in the wrong place in ColorSpaceCIELab: L must stand before it, the other is in "
     "line 30, column 4"},
    {"<Zol:Purpose>tests</Zol:Purpose>",
     "<Zol:Purpose>tests</Zol:Purpose><Zol:Comments/><Zol:Name/>", 10, "12:51", k_header + "/Name"s,
     "Name stands in the wrong place in Header: it must stand before Comments, the other is in "
     "line 12, column 36"},
    {"<Zol:L>50</Zol:L>", "<Zol:L>50</Zol:L><Zol:L>51</Zol:L>", 21, "29:21", k_lab + "/L"s,
     "L stands once too often in ColorSpaceCIELab, the other is in line 29, column 4"},
    {"<Zol:L>50</Zol:L>", "light <Zol:L>50</Zol:L>", 21, "29:4", k_lab,
     "The text 'light' stands in ColorSpaceCIELab, where L is expected"},
    {"<Zol:B>30</Zol:B>", "<Zol:B>30</Zol:B> blue", 10, "31:22", k_lab,
     "The text 'blue' stands in ColorSpaceCIELab, where only elements may stand"},
    {"<Zol:IntegerValue>2</Zol:IntegerValue>", "", 32, "7:5",
     k_header + "/CustomAttribute[1]/ValueChoice"s,
     "ValueChoice is empty, it must hold DoubleValue, IntegerValue or StringValue"},
    {"<Zol:IntegerValue>2</Zol:IntegerValue>", "<Zol:Value>2</Zol:Value>", 31, "7:22",
     k_header + "/CustomAttribute[1]/ValueChoice"s,
     "Value is unknown in ValueChoice, DoubleValue, IntegerValue or StringValue must stand there"},
    {"</Zol:IntegerValue>", "</Zol:IntegerValue><Zol:DoubleValue>1</Zol:DoubleValue>", 10, "7:60",
     k_header + "/CustomAttribute[1]/ValueChoice"s,
     "DoubleValue stands in ValueChoice, which holds one alternative alone, the other is in line "
     "7, column 22"},
    {">50<", ">5<b>0</b><", 10, "29:12", k_lab + "/L"s, "b stands in L, which holds a value alone"},
    {"<Zol:DeviceFilter xsi:nil=\"true\"/>",
     "<Zol:DeviceFilter xsi:nil=\"true\">none</Zol:DeviceFilter>", 10, "20:38",
     k_specification + "/DeviceFilter"s,
     "The text 'none' stands in DeviceFilter, which must be empty, since it says xsi:nil"},
    {"<Zol:ColorSpaceCMYK>", "<Zol:ColorSpaceCMYK xsi:type=\"Zol:ColorSpaceCMYKPlusN\">", 44,
     "33:33", "Zol/Color[1]/ColorSpaceCMYK",
     "ColorSpaceCMYK names the type 'Zol:ColorSpaceCMYKPlusN', Zol:ColorSpaceCMYKPlusNType or "
     "Zol:ColorSpaceCMYKType is expected"},
    // Tags.
    {"</Zol:L>", "</Zol:LL>", 10, "29:13", k_lab + "/L"s,
     "</Zol:LL> stands where </Zol:L> must, for the tag in line 29, column 4"},
    {"</Zol:L>", "", 10, "30:4", k_lab + "/L"s,
     "</Zol:L> is missing before <Zol:A>, for the tag in line 29, column 4"},
    {"  </Zol:ColorSpaceCIELab>\n", "", 10, "32:3", k_lab,
     "</Zol:ColorSpaceCIELab> is missing before <Zol:ColorSpaceCMYK>, for the tag in line 17, "
     "column 3"},
    {"<Zol:B>30</Zol:B>", "<Zol:B>30</Zol:B></Zol:C>", 10, "31:21", k_lab,
     "</Zol:C> stands in ColorSpaceCIELab and ends nothing"},
    {" UniqueID=\"c1\"", " UniqueID=c1", 23, "15:35", "Zol",
     "The value of UniqueID must stand in quotes"},
    {" UniqueID=\"c1\"", " UniqueID", 23, "15:35", "Zol",
     "The attribute UniqueID has no value: UniqueID=\"...\" is expected"},
    {"  <Zol:Header>", "  < Zol:Header>", 23, "4:3", "Zol/Preamble",
     "The markup < Zol:Header> can't be read: a tag is <name attribute=\"value\">, and a mere < is "
     "&lt;"},
    {">Illuminant_D50<", ">Illuminant_D50 < D65<", 38, "25:37",
     k_specification + "/IlluminationOptions/Illuminant"s,
     "A mere < in Illuminant must be written &lt;"},
    // The whole.
    {"<Zol:Zol xmlns:Zol=\"" URI "\"", "<Zol:Zol xmlns:Zol=\"http://example.org/zol/v1\"", 16,
     "2:1", "", "Zol is of the namespace 'http://example.org/zol/v1', '" URI "' is expected"},
    {" xmlns:Zol=\"" URI "\"", "", 16, "2:1", "",
     "Zol is of the prefix 'Zol', which is not declared, '" URI "' is expected"},
    {"UTF-8", "UTF-16", 15, "1:1", "", "The declaration says 'UTF-16', but the bytes are UTF-8"},
    {"UTF-8", "KOI8-R", 6, "1:1", "",
     "The encoding 'KOI8-R' is not known here, UTF-8, UTF-16, ISO-8859-1 or US-ASCII is expected"},
    {"\"1.0\"", "\"2.0\"", 14, "1:1", "", "The XML version must be 1.0 or 1.1"},
    {" <Zol:Preamble>", " <?xml version=\"1.0\"?><Zol:Preamble>", 13, "3:2", "Zol",
     "The XML declaration must stand once, at the very beginning, as <?xml version=\"1.0\" "
     "encoding=\"UTF-8\"?>"},
    {"?>\n", "?>\n<!DOCTYPE Zol [ <!ENTITY a 'b'> nonsense ]>\n", 9, "2:1", "",
     "The document type is broken, stands behind content, or has entities that name themselves or "
     "grow beyond measure: take it out"},
    {">me<", ">caf\xE9<", 29, "9:20", k_header + "/Creator"s,
     "The byte E9 is no UTF-8: save the document as UTF-8, or declare its encoding, as <?xml "
     "version=\"1.0\" encoding=\"ISO-8859-1\"?> does"},
    {"</Zol:Zol>", "", 34, "49:1", "Zol", "The document ends too early: <Zol:Zol> has no end tag"},
};

TEST(Faults, AreToldInASentence) {
  for (const Broken& each : k_broken) {
    const std::string text = changed(k_frame, each.from, each.to);
    SCOPED_TRACE(each.to);
    const LoadReport report = report_of(text);
    EXPECT_EQ(report.code, each.code);
    ASSERT_FALSE(report.faults.empty());
    EXPECT_EQ(report.faults.size(), 1u) << report.faults[1].text();
    const Fault& fault = report.faults.front();
    EXPECT_EQ(fault.text(), each.sentence);
    EXPECT_EQ(fault.code, each.code);
    EXPECT_EQ(fault.item, report.item);
    EXPECT_EQ(place_of(fault.place), each.place);
    EXPECT_EQ(fault.path, each.path);
    EXPECT_EQ(report.fault_count, 1u);
  }
}

// --- More than one -----------------------------------------------------------------------------

TEST(Faults, AreFoundBehindOneAnother) {
  std::string text = k_frame;
  text = changed(text, "<Zol:Creator>me</Zol:Creator>", "<Zol:Creater>me</Zol:Creater>");
  text = changed(text, "ColorName=", "Colour=");
  text = changed(text, ">50<", ">500<");
  text = changed(text, ">80<", ">eighty<");
  text = changed(text, "\"410\"", "\"-1\"");
  const LoadReport report = report_of(text);
  std::vector<int> codes;
  for (const Fault& fault : report.faults) codes.push_back(fault.code);
  EXPECT_EQ(codes, (std::vector<int>{21, 39, 36, 35, 37}));
  EXPECT_TRUE(report.is_complete);
}

TEST(Faults, AreKeptUpToALimit) {
  std::string text = k_frame;
  for (const char* value : {">20<", ">30<", ">80<", ">70<", ">10<"}) {
    text = changed(text, value, ">x<");
  }
  LoadOptions options;
  options.most_faults = 2;
  LoadReport report = report_of(text, options);
  EXPECT_EQ(report.faults.size(), 2u);
  EXPECT_EQ(report.fault_count, 5u);
  options.most_faults = 0;
  report = report_of(text, options);
  EXPECT_EQ(report.code, 35);
}

// Of a document with faults, everything else.
TEST(Faults, LeaveWhatIsGood) {
  std::string text = changed(k_frame, ">50<", ">x<");
  text = changed(text, "<Zol:Cyan>", "<Zol:Nonsense/><Zol:Cyan>");
  const std::string more =
      "<Zol:Color ColorName=\"second\"><Zol:ChangeHistory>2026-01-31T10:00:00Z"
      "</Zol:ChangeHistory></Zol:Color></Zol:Zol>";
  text = changed(text, "</Zol:Zol>", more);
  Zol document;
  LoadOptions options;
  EXPECT_EQ(openText(document, text, nullptr, options), 35);
  EXPECT_EQ(document.size_Color(), 0u);
  options.best_effort = true;
  EXPECT_EQ(openText(document, text, nullptr, options), 35);
  ASSERT_EQ(document.size_Color(), 2u);
  const auto& lab = document.get_Color(0).get_ColorSpace(0).get_ColorSpaceCIELab();
  EXPECT_FALSE(lab.is_occurs_ok());
  EXPECT_EQ(lab.get_A(), 20);
  EXPECT_EQ(document.get_Color(0).get_ColorSpace(1).get_ColorSpaceCMYK().get_Magenta(), 80);
  EXPECT_EQ(document.get_Color(1).get_ColorName(), L"second");
  // What is no document at all changes nothing.
  EXPECT_EQ(openText(document, "<a/>", nullptr, options), 16);
  EXPECT_EQ(document.size_Color(), 2u);
}

// A good document's tree is what the reader makes of it, also on the road for broken ones.
TEST(Faults, LeaveAWholeTree) {
  for (const std::string& name : sample_names()) {
    const std::string text = sample_bytes(name);
    Zol whole;
    ASSERT_EQ(openText(whole, text), 0);
    // One fault, in the last element of the document.
    const std::size_t end = text.rfind("</");
    std::string broken = text;
    broken.insert(end, "<nonsense/>");
    Zol rest;
    LoadOptions options;
    options.best_effort = true;
    ASSERT_EQ(openText(rest, broken, nullptr, options), 10) << name;
    std::string expected;
    std::string found;
    EXPECT_EQ(whole.marshal(&expected), 0);
    EXPECT_EQ(rest.marshal(&found), 0);
    EXPECT_TRUE(found == expected) << name;
  }
}

// --- Places -------------------------------------------------------------------------------------

struct Encoded {
  const char* name;
  std::string bytes;
};

std::string utf16(const std::string& text, bool is_big_endian) {
  std::wstring wide;
  lmx::convert(&wide, text);
  std::string out = is_big_endian ? "\xFE\xFF" : "\xFF\xFE";
  for (const wchar_t unit : wide) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit);
    out += is_big_endian ? high : low;
    out += is_big_endian ? low : high;
  }
  return out;
}

std::string without_line_ends(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
  return text;
}

// The bytes at the place are those of the value, whatever they are.
TEST(Faults, AreInPlaceInEveryEncoding) {
  // Characters of 1 to 4 bytes, and tabs, before them.
  const std::string text =
      changed(changed(k_frame, "House red", "\xC3\xA4\xE2\x82\xAC"), "   <Zol:L>50</Zol:L>",
              "\t\t\xE2\x80\x83 <Zol:L>\xC3\xA4</Zol:L>");
  const std::string latin = changed(changed(k_frame, "UTF-8", "ISO-8859-1"), "   <Zol:L>50",
                                    "<!--\xE4\xE4--><Zol:L>\xE4");
  const std::string declared = changed(k_frame, "UTF-8", "UTF-16");
  const std::string plane = "<!--\xF0\x9F\x8E\xA8 \xE2\x82\xAC--><Zol:L>\xC3\xA4<";
  std::string crlf = changed(changed(k_frame, ">me<", ">\n\nme\n<"), ">50<", ">\n \xC3\xA4\n<");
  for (std::size_t at = 0; (at = crlf.find('\n', at)) != std::string::npos; at += 2) {
    crlf.insert(at, "\r");
  }
  const struct {
    const char* name;
    std::string bytes;
    std::string value;
    const char* place;
  } k_rows[] = {
      {"Latin-1", latin, "\xE4", "29:17"},
      {"UTF-16, little end first", utf16(changed(declared, "   <Zol:L>50<", plane), false),
       "\xE4\0"s, "29:18"},
      {"UTF-16, big end first", utf16(changed(declared, "   <Zol:L>50<", plane), true), "\0\xE4"s,
       "29:18"},
      {"UTF-8 with a mark", "\xEF\xBB\xBF" + changed(k_frame, "   <Zol:L>50<", plane), "\xC3\xA4",
       "29:18"},
      {"CR LF", crlf, "\xC3\xA4", "33:2"},
      {"lone CR",
       [] {
         std::string cr = changed(k_frame, ">50<", ">\xC3\xA4<");
         std::replace(cr.begin(), cr.end(), '\n', '\r');
         return cr;
       }(),
       "\xC3\xA4", "29:11"},
      {"one line", without_line_ends(changed(k_frame, ">50<", ">\xC3\xA4<")), "\xC3\xA4", "1:1206"},
  };
  for (const auto& row : k_rows) {
    SCOPED_TRACE(row.name);
    const LoadReport report = report_of(row.bytes);
    ASSERT_EQ(report.faults.size(), 1u) << report.faults[0].text();
    const Fault& fault = report.faults.front();
    EXPECT_EQ(fault.text(), "L is '\xC3\xA4', a number such as 0.5 is expected");
    EXPECT_EQ(place_of(fault.place), row.place);
    EXPECT_EQ(row.bytes.substr(fault.place.offset, fault.length), row.value);
  }
  // A wide blank between elements is text, and counts as one character.
  const LoadReport report = report_of(text);
  ASSERT_EQ(report.faults.size(), 2u);
  EXPECT_EQ(place_of(report.faults[0].place), "29:3");
  EXPECT_EQ(place_of(report.faults[1].place), "29:12");
}

TEST(Faults, StandWhereTheirReferencesStand) {
  const std::string text = changed(k_frame, "?>\n",
                                   "?>\n<!DOCTYPE Zol [<!ENTITY high '500'>\n<!ENTITY l "
                                   "'<Zol:L>\n\n600</Zol:L>'>]>\n");
  const struct {
    const char* from;
    const char* to;
    const char* place;
    const char* span;
  } k_rows[] = {
      {">50<", ">&high;<", "33:11", "&high;"},
      {"<Zol:L>50</Zol:L>", "&l;", "33:4", "&l;"},
      {"\"400\"", "\"-&high;\"", "48:43", "-&high;"},
  };
  for (const auto& row : k_rows) {
    const std::string bytes = changed(text, row.from, row.to);
    const LoadReport report = report_of(bytes);
    ASSERT_EQ(report.faults.size(), 1u) << row.to;
    EXPECT_EQ(place_of(report.faults[0].place), row.place) << row.to;
    EXPECT_EQ(bytes.substr(report.faults[0].place.offset, report.faults[0].length), row.span);
  }
}

// --- What is shown of them ---------------------------------------------------------------------

TEST(Faults, ShowNoMoreOfAValueThanIsOfUse) {
  std::string value;
  for (int i = 0; i < 500; ++i) value += "\xF0\x9F\x8E\xA8";
  const LoadReport report = report_of(changed(k_frame, ">50<", ">" + value + "<"));
  ASSERT_EQ(report.faults.size(), 1u);
  EXPECT_EQ(report.faults[0].found, value.substr(0, 4 * 80) + "\xE2\x80\xA6");
  EXPECT_EQ(report.faults[0].length, value.size());
}

TEST(Faults, NameTheObject) {
  const LoadReport report = report_of(changed(k_frame, ">50<", ">x<"));
  ASSERT_EQ(report.faults.size(), 1u);
  const Fault& fault = report.faults[0];
  EXPECT_EQ(fault.object, "House red");
  EXPECT_EQ(fault.path.substr(0, fault.object_at), "Zol/Color[1]");
}

// The excerpt of the only fault, and below it what a terminal shows under what is concerned.
std::string shown(const std::string& bytes, std::size_t columns = 40) {
  const LoadReport report = report_of(bytes);
  EXPECT_EQ(report.faults.size(), 1u);
  const Excerpt excerpt = excerptOf(bytes, report.faults.front(), columns);
  return excerpt.text + "\n" + std::string(excerpt.begin, ' ') + std::string(excerpt.width, '~');
}

TEST(Faults, StandInAnExcerptOfTheirLine) {
  const std::string text = changed(k_frame, "   <Zol:L>50", "\t\t<Zol:L>x");
  EXPECT_EQ(shown(text), "    <Zol:L>x</Zol:L>\n           ~");
  EXPECT_EQ(shown(utf16(changed(text, "UTF-8", "UTF-16"), true)),
            "    <Zol:L>x</Zol:L>\n           ~");
  // Characters of two columns and of none.
  EXPECT_EQ(shown(changed(k_frame, ">50<",
                          ">\xE8\x89\xB2"
                          "e\xCC\x81\xF0\x9F\x8E\xA8<")),
            "   <Zol:L>\xE8\x89\xB2"
            "e\xCC\x81\xF0\x9F\x8E\xA8</Zol:L>\n          ~~~~~");
  EXPECT_EQ(shown(changed(k_frame, "   <Zol:L>50", "<!--\xE8\x89\xB2--><Zol:L>x")),
            "<!--\xE8\x89\xB2--><Zol:L>x</Zol:L>\n                ~");
  // Control characters and bytes that are no text.
  EXPECT_EQ(shown(changed(k_frame, ">me<",
                          ">a\x01"
                          "b\xE9<")),
            "   <Zol:Creator>a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD</Zol:Creator>\n                   ~");
  // On a line that is too long, and at both of its ends.
  const std::string line = without_line_ends(changed(k_frame, ">50<", ">x<"));
  EXPECT_EQ(shown(line),
            "\xE2\x80\xA6istimulus>   <Zol:L>x</Zol:L>   <Zol:A>\xE2\x80\xA6\n"
            "                     ~");
  EXPECT_EQ(shown("<a>" + line), "<a><?xml version=\"1.0\" encoding=\"UTF-8\"?\xE2\x80\xA6\n~~");
  EXPECT_EQ(excerptOf("", Fault()).text, "");
}

// --- Files that are no documents ---------------------------------------------------------------

std::string archive(const std::string& name, const std::string& text, const std::string& second) {
  RawEntry first = stored(text);
  first.name = name;
  RawEntry other = stored(k_frame);
  other.name = second;
  RawArchive made;
  made.entries = {first};
  if (!second.empty()) made.entries.push_back(other);
  return made.bytes();
}

TEST(Faults, SayWhatAFileIs) {
  const struct {
    std::string bytes;
    int code;
    const char* sentence;
  } k_rows[] = {
      {"", 34, "The document is empty"},
      {"\x89PNG\r\n\x1A\n\0\0\0\rIHDR"s, 34, "This is a PNG picture, not a colour-data document"},
      {"\xFF\xD8\xFF\xE0", 34, "This is a JPEG picture, not a colour-data document"},
      {"%PDF-1.7\n", 34, "This is a PDF document, not a colour-data document"},
      {"\x1F\x8B\x08", 34,
       "This is a gzip file, which must be unpacked first, not a colour-data document"},
      {"{\"colours\": []}", 34, "This is a JSON text, not a colour-data document"},
      {"Name,L,a,b\n", 34,
       "This is not a colour-data document: it begins with 'Name,L,a,b?', and a document begins "
       "with <"},
      {"<html><body/></html>", 16, "The document begins with html, the element Zol is expected"},
      {" \n <!-- nothing --> \n", 34, "The document ends too early: it has no element"},
      {archive("readme.txt", "Read me", "palette.zol"), 34,
       "The first entry of the archive, 'readme.txt', is not a colour-data document: it begins "
       "with 'Read me', and a document begins with <: the document must be the first entry, which "
       "'palette.zol' is not"},
      {archive("a.zol", "", ""), 34, "The first entry of the archive, 'a.zol', is empty"},
      {RawArchive().bytes(), 1000, "The archive holds no document"},
      {archive("a.zol", k_frame, "").substr(0, 200), 1000,
       "The archive can't be read: Damaged or not a zip file"},
  };
  for (const auto& row : k_rows) {
    SCOPED_TRACE(row.sentence);
    const LoadReport report = report_of(row.bytes);
    EXPECT_EQ(report.code, row.code);
    ASSERT_EQ(report.faults.size(), 1u);
    EXPECT_EQ(report.faults[0].text(), row.sentence);
  }
}

TEST(Faults, SayWhichEntryTheyAreIn) {
  const LoadReport report =
      report_of(archive("pal\xC3\xA4tte.zol", changed(k_frame, ">50<", ">x<"), ""));
  ASSERT_EQ(report.faults.size(), 1u);
  EXPECT_EQ(report.faults[0].entry, "pal\xC3\xA4tte.zol");
  EXPECT_EQ(place_of(report.faults[0].place), "29:11");
}

// A name may say something else.
TEST(Faults, GoByBytesAndNotByNames) {
  const TempDir dir;
  const std::string zip = archive("a.zol", k_frame, "");
  for (const auto& [name, bytes] :
       {std::pair("zip.zol"s, zip), std::pair("PALETTE.ZOLZ"s, zip), std::pair("x"s, zip),
        std::pair("plain.zolz"s, std::string(k_frame)),
        std::pair("PLAIN.ZOL"s, std::string(k_frame))}) {
    write_file(dir.file(name), bytes);
    Zol document;
    EXPECT_EQ(openFile(document, dir.wide(name)), 0) << name;
    EXPECT_EQ(document.size_Color(), 1u) << name;
    std::string text;
    EXPECT_EQ(readText(text, dir.wide(name)), 0) << name;
    EXPECT_TRUE(text == k_frame) << name;
  }
}

// --- Streams -----------------------------------------------------------------------------------

class FailingBuffer : public std::stringbuf {
 public:
  explicit FailingBuffer(const std::string& text) : std::stringbuf(text) {}

 protected:
  int_type underflow() override { throw std::ios_base::failure("the cable is out"); }
};

TEST(Faults, AreFoundInStreams) {
  for (const std::string& bytes : {std::string(k_frame), archive("a.zol", k_frame, "")}) {
    std::istringstream stream(bytes);
    Zol document;
    EXPECT_EQ(openStream(document, stream), 0);
    EXPECT_EQ(document.size_Color(), 1u);
  }
  Zol document;
  LoadReport report;
  std::istringstream broken(changed(k_frame, ">50<", ">x<"));
  EXPECT_EQ(openStream(document, broken, &report), 35);
  EXPECT_EQ(report.faults.size(), 1u);
  EXPECT_EQ(openStream(document, broken, &report), lmx::elmx_no_file) << "it is at its end";
  EXPECT_EQ(report.faults.size(), 1u);

  FailingBuffer buffer("<Zol");
  std::istream failing(&buffer);
  EXPECT_EQ(openStream(document, failing, &report), lmx::elmx_no_file);
  LoadOptions options;
  options.largest_document = 100;
  std::istringstream large(k_frame);
  EXPECT_EQ(openStream(document, large, &report, options), 1000);
  EXPECT_EQ(document.size_Color(), 0u);
}

// What a setter by text refuses is told as a reader would tell it.
TEST(Faults, AreToldOfTextsThatRowsRefuse) {
  struct Case {
    const char* type;
    const char* row;
    std::string text;
    const char* sentence;
  };
  const Case cases[] = {
      {"ColorSpaceCIELabType", "L", "151", "L is 151, at most 150 is allowed"},
      {"ColorSpaceCIELabType", "L", "-1", "L is -1, at least 0 is allowed"},
      {"ColorSpaceCIELabType", "L", "", "L is empty, a number such as 0.5 is expected"},
      {"ProfileType_Parameters", "Name", "ab", "Name is 'ab', exactly 1 character is allowed"},
      {"ColorType", "ChangeHistory", "2026-01-31T10:00:00",
       "ChangeHistory is '2026-01-31T10:00:00', which has no time zone: 2026-01-31T10:00:00Z or an "
       "offset such as +01:00 is expected"},
      {"DeviceType", "DeviceClass", "deviceclass_spot",
       "DeviceClass is 'deviceclass_spot', DeviceClass_Spot, DeviceClass_Scanning or "
       "DeviceClass_Other is expected"},
      {"ColorType", "ColorName", "a\0b"s, "ColorName must be UTF-8 without a zero"},
      {"Zol", "Preamble", "x", "The text 'x' stands in Preamble, where only elements may stand"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const reflection::Type type = reflection::find_type(c.type);
    const reflection::Row row = type.row(c.row);
    const auto object = type.make();
    const lmx::elmx_error code = reflection::Ref(*object).set_text(row, c.text);
    EXPECT_NE(code, 0);
    const Fault fault = refusal(row, c.text, code);
    EXPECT_EQ(fault.text(), c.sentence);
    EXPECT_EQ(fault.code, code);
  }
}

TEST(Faults, KnowWhichNameWasMeant) {
  const std::vector<std::string> names = {"Color", "ColorSet", "Palette", "@ColorName"};
  for (const auto& [found, meant] :
       std::initializer_list<std::pair<const char*, const char*>>{{"color", "Color"},
                                                                  {"Colour", "Color"},
                                                                  {"ColourSet", "ColorSet"},
                                                                  {"Pallete", "Palette"},
                                                                  {"@colorname", "@ColorName"},
                                                                  {"Header", ""},
                                                                  {"", ""}}) {
    EXPECT_EQ(nearestName(found, names), meant) << found;
  }
  EXPECT_EQ(nearestName("Color", {}), "");
}

}  // namespace
}  // namespace zol_test
