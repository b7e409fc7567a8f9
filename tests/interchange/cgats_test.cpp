// Colours in measurement files: there and back, and what is told of files that are none.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "facade/check.h"
#include "interchange/derived_documents.h"
#include "interchange/formats.h"
#include "interchange/record_lines.h"
#include "model/documents.h"

namespace {

using namespace zol_v2;
using namespace zol_v2::interchange;
using zol_test::loaded;
using zol_test::sample_bytes;
using zol_test::told;

const std::vector<std::string> k_spaces = {"CIELab", "CIELCh", "CIEXYZ",   "CIExyY",
                                           "CMYK",   "RGB",    "Spectral", "EmissiveSpectral"};

double wavelength_of(const Coordinate& coordinate) {
  double number = 0;
  const std::string& text = coordinate.axis;
  (void)std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

using Values = std::map<std::string, std::multiset<double>>;

// What CGATS holds of a document: values by colour, space and axis.
Values values_of(const Zol& document) {
  Values values;
  std::size_t color = 0;
  for_each_record(
      document,
      [&](const ColorRecord& record) {
        bool is_held = false;
        for (const Rendering& rendering : record.renderings) {
          if (std::find(k_spaces.begin(), k_spaces.end(), rendering.space) == k_spaces.end()) {
            continue;
          }
          if (!is_held) ++color;
          is_held = true;
          // A spectrum has neither.
          const bool is_spectrum =
              rendering.space == "Spectral" || rendering.space == "EmissiveSpectral";
          const std::string conditions = is_spectrum
                                             ? ""
                                             : rendering.conditions[Condition::illuminant] +
                                                   rendering.conditions[Condition::observer];
          for (const Coordinate& coordinate : rendering.coordinates) {
            if (!coordinate.is_number || !std::isfinite(coordinate.number)) continue;
            if (coordinate.axis.find('/') != std::string::npos) continue;
            // There are no fields for these.
            if (coordinate.axis == "Alpha") continue;
            if (is_spectrum &&
                (coordinate.axis.find('e') != std::string::npos ||
                 wavelength_of(coordinate) < 200 || wavelength_of(coordinate) > 2500)) {
              continue;
            }
            values[std::to_string(color) + ' ' + rendering.space + conditions + ' ' +
                   coordinate.axis]
                .insert(coordinate.number);
          }
        }
      },
      nullptr);
  return values;
}

void expect_back(const Zol& document) {
  const Values expected = values_of(document);
  const auto writer = make_writer(Format::cgats, {});
  writer->add(document, "");
  std::string text;
  if (const Report report = writer->finish(&text); !report) {
    EXPECT_TRUE(expected.empty()) << told(report);
    return;
  }
  Zol again;
  const Report report = read(text, Format::cgats, {}, &again);
  ASSERT_EQ(told(report), "");
  const Values found = values_of(again);
  for (const auto& [name, values] : expected) {
    ASSERT_EQ(found.count(name), 1u) << name;
    const bool is_scaled = name.find(" RGB") != std::string::npos;
    ASSERT_THAT(found.at(name),
                testing::Pointwise(testing::DoubleNear(is_scaled ? 1e-12 : 0), values))
        << name;
  }
  ASSERT_EQ(found.size(), expected.size());
  CheckOptions judging;
  judging.level = CheckLevel::reading;
  judging.is_exact = true;
  ASSERT_EQ(check(again, judging).errors, 0u);
}

TEST(Cgats, HoldsTheValuesOfEverySample) {
  for (const std::string& name : zol_test::sample_names()) {
    SCOPED_TRACE(name);
    expect_back(loaded<Zol>(sample_bytes(name)));
  }
}

TEST(Cgats, HoldsThoseOfHundredsOfOthers) {
  zol_test::DerivedDocuments documents(3);
  for (int i = 0; i < 300 && !HasFatalFailure(); ++i) {
    SCOPED_TRACE(i);
    expect_back(*documents.next());
  }
}

TEST(Cgats, ReadsWhatOthersWrite) {
  const std::string text =
      "CGATS.17\r\n"
      "ORIGINATOR \"A \"\"great\"\" program\"   # and a remark\r\n"
      "KEYWORD \"MY_KEY\"\r\nMY_KEY 17\r\n"
      "MEASUREMENT_SOURCE \"Illumination=D50\tObserverAngle=2\xB0\tFilter=No\"\r\n"
      "NUMBER_OF_FIELDS 7\r\nBEGIN_DATA_FORMAT\r\nSampleID SAMPLE_NAME LAB_L LAB_A\r\nLAB_B LAB_C "
      "LAB_H\r\nEND_DATA_FORMAT\r\nNUMBER_OF_SETS 2\r\nBEGIN_DATA\r\n"
      "1 \"a b\" 50 3 4 5 53.13\r\n2 c +60 -3 -4 5 233.13\r\nEND_DATA\r\n"
      "NUMBER_OF_FIELDS 4\r\nBEGIN_DATA_FORMAT\r\nSAMPLE_ID SAMPLE_NAME nm400 nm410\r\n"
      "END_DATA_FORMAT\r\nBEGIN_DATA\r\n1 \"a b\" 10 20\r\n3 d 30 120\r\nEND_DATA\r\n";
  Zol document;
  const Report report = read(text, Format::cgats, {}, &document);
  ASSERT_EQ(told(report), "");
  std::vector<std::string> lines;
  for_each_record(
      document,
      [&](const ColorRecord& record) {
        std::string line = record.name;
        for (const Rendering& rendering : record.renderings) {
          line += ' ' + rendering.space;
          for (const Coordinate& c : rendering.coordinates) line += ' ' + c.axis + '=' + c.text;
          line += rendering.conditions[Condition::illuminant];
        }
        lines.push_back(line);
      },
      nullptr);
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "a b CIELab L=50 A=3 B=4D50 CIELCh L=50 C=5 H=53.13D50 Spectral 400=0.1 "
                       "410=0.2",
                       "c CIELab L=60 A=-3 B=-4D50 CIELCh L=60 C=5 H=233.13D50",
                       "d Spectral 400=0.3 410=1.2"}));
  const Header& header = document.get_Preamble().get_Header();
  ASSERT_EQ(header.size_CustomAttribute(), 3u);
  EXPECT_EQ(header.get_CustomAttribute(0).get_ValueChoice().get_StringValue(),
            L"A \"great\" program");
  EXPECT_NE(zol_test::written(document, Format::cgats).find("MY_KEY\t\"17\""), std::string::npos);
}

// Of the two that a document may have, that of the values counts.
TEST(Cgats, TellsOfAStatusThatItHasNoPlaceFor) {
  const Zol document = loaded<Zol>(sample_bytes("coverage-spaces"));
  Report report;
  (void)zol_test::written(document, Format::cgats, {}, &report);
  EXPECT_EQ(zol_test::count_of(report, "DensityStatus Ex"), 1u);
}

struct BadFile {
  const char* text;
  const char* told;
};

TEST(Cgats, TellsWhatIsWrongAndWhere) {
  const std::string head =
      "CGATS.17\nBEGIN_DATA_FORMAT\nSAMPLE_ID LAB_L LAB_A LAB_B\nEND_DATA_FORMAT\n";
  const BadFile cases[] = {
      {"BEGIN_DATA\n1 2 3 x\nEND_DATA\n", "6:7 LAB_B is 'x', a number is expected"},
      {"BEGIN_DATA\n1 2 3\nEND_DATA\n", "6:1 The last set has 3 values for 4 fields"},
      {"BEGIN_DATA\n1 2 3 4\n", "5:1 BEGIN_DATA has no END_DATA"},
      {"NUMBER_OF_SETS 3\nBEGIN_DATA\n1 2 3 4\nEND_DATA\n", "6:1 NUMBER_OF_SETS is 3, there are 1"},
      {"NUMBER_OF_SETS x\n", "5:1 NUMBER_OF_SETS is 'x', a number is expected"},
      {"BEGIN_DATA\n\"1 2 3 4\nEND_DATA\n", "6:1 The quotation mark has no partner in its line"},
      {"", "5:1 There is no BEGIN_DATA, as a CGATS file has it"},
      {"BEGIN_DATA_FORMAT\nEND_DATA_FORMAT\n", "5:1 BEGIN_DATA_FORMAT names no field"},
      {"hello?\nworld\n", "5:1 Here stands 'hello?', a keyword is expected"},
  };
  for (const BadFile& bad : cases) {
    Zol document;
    EXPECT_EQ(told(read(head + bad.text, Format::cgats, {}, &document)), bad.told) << bad.text;
  }
  Zol document;
  EXPECT_EQ(told(read("", Format::cgats, {}, &document)), "1:1 The file is empty");
  const std::string bare = "CGATS.17\nBEGIN_DATA\n";
  EXPECT_EQ(told(read(bare, Format::cgats, {}, &document)),
            "2:1 No BEGIN_DATA_FORMAT stands before BEGIN_DATA");
}

// What documents have no room for is counted, and no reason to refuse the rest.
TEST(Cgats, LeavesOutWhatIsOutOfBounds) {
  Zol document;
  const Report report = read(
      "CTI3\nBEGIN_DATA_FORMAT\nSAMPLE_ID RGB_R RGB_G RGB_B LAB_L LAB_A LAB_B\nEND_DATA_FORMAT\n"
      "BEGIN_DATA\n1 120 0 0 50 0 0\n2 100 50 0 50 0 500\n3 -1 0 0 500 0 0\nEND_DATA\n",
      Format::cgats, {}, &document);
  EXPECT_EQ(told(report), "");
  ASSERT_EQ(document.size_Color(), 2u);
  EXPECT_EQ(document.get_Color(1).size_ColorSpace(), 1u);
  ASSERT_EQ(report.losses.all().size(), 3u);
  EXPECT_EQ(report.losses.all()[2].kind, "colour with values out of bounds");
}

}  // namespace
