// Colours in tables: there and back, guessed headings, and what is told of tables that are none.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "facade/check.h"
#include "interchange/csv.h"
#include "interchange/derived_documents.h"
#include "interchange/formats.h"
#include "interchange/record_lines.h"
#include "model/documents.h"

namespace {

using namespace zol_v2;
using namespace zol_v2::interchange;
using zol_test::loaded;
using zol_test::record_lines;
using zol_test::sample_bytes;
using zol_test::told;
using zol_test::written;

struct TableForm {
  const char* name;
  Format format;
  char separator;
  char decimal;
};
constexpr TableForm k_forms[] = {
    {"csv", Format::csv, 0, '.'}, {"tsv", Format::tsv, 0, '.'}, {"comma", Format::csv, ';', ','}};

Zol read_back(const std::string& text, const ReadOptions& options = {}) {
  Zol document;
  const Report report = read(text, Format::csv, options, &document);
  EXPECT_EQ(told(report), "");
  EXPECT_TRUE(report.losses.empty());
  CheckOptions judging;
  judging.level = CheckLevel::reading;
  judging.is_exact = true;
  const CheckReport judged = check(document, judging);
  EXPECT_EQ(judged.errors, 0u) << judged.faults.front().path << judged.faults.front().text();
  return document;
}

void expect_back(const Zol& document) {
  for (const TableForm& form : k_forms) {
    SCOPED_TRACE(form.name);
    WriteOptions options;
    options.separator = form.separator;
    options.decimal = form.decimal;
    ASSERT_EQ(record_lines(read_back(written(document, form.format, options))),
              record_lines(document));
  }
}

TEST(TidyTable, HoldsTheColoursOfEverySample) {
  for (const std::string& name : zol_test::sample_names()) {
    SCOPED_TRACE(name);
    expect_back(loaded<Zol>(sample_bytes(name)));
  }
}

TEST(TidyTable, HoldsThoseOfHundredsOfOthers) {
  zol_test::DerivedDocuments documents(2);
  for (int i = 0; i < 300 && !testing::Test::HasFailure(); ++i) {
    SCOPED_TRACE(i);
    expect_back(*documents.next());
  }
}

// A line for each rendering in the space, and the others are counted.
TEST(WideTable, HoldsOneSpace) {
  for (const std::string& name : zol_test::sample_names()) {
    SCOPED_TRACE(name);
    const Zol document = loaded<Zol>(sample_bytes(name));
    std::map<std::string, std::vector<std::string>> lines;
    std::map<std::string, std::size_t> others;
    for_each_record(
        document,
        [&](const ColorRecord& record) {
          for (const Rendering& rendering : record.renderings) {
            std::string line = record.name;
            for (const Coordinate& c : rendering.coordinates) line += '|' + c.axis + '=' + c.text;
            lines[rendering.space].push_back(line);
          }
        },
        nullptr);
    for (const auto& [space, expected] : lines) {
      SCOPED_TRACE(space);
      WriteOptions options;
      options.is_wide = true;
      options.space = space;
      Report report;
      const Zol again = read_back(written(document, Format::csv, options, &report));
      std::vector<std::string> found;
      for_each_record(
          again,
          [&](const ColorRecord& record) {
            for (const Rendering& rendering : record.renderings) {
              std::string line = record.name;
              for (const Coordinate& c : rendering.coordinates) line += '|' + c.axis + '=' + c.text;
              found.push_back(line);
            }
          },
          nullptr);
      std::vector<std::string> sorted = expected;
      std::sort(sorted.begin(), sorted.end());
      std::sort(found.begin(), found.end());
      EXPECT_EQ(found, sorted);
      for (const auto& loss : report.losses.all()) {
        const auto other = lines.find(loss.kind.substr(loss.kind.rfind(' ') + 1));
        if (loss.kind.rfind("rendering in ", 0) == 0) {
          EXPECT_EQ(loss.count, other->second.size());
        }
      }
    }
  }
}

TEST(WideTable, IsNotMadeOfNothing) {
  WriteOptions options;
  options.is_wide = true;
  const auto told_of = [&](const Zol& document, const char* space) {
    options.space = space;
    const auto writer = make_writer(Format::csv, options);
    writer->add(document, "");
    std::string bytes;
    return told(writer->finish(&bytes)) + bytes;
  };
  const Zol document = loaded<Zol>(sample_bytes("named-colours"));
  EXPECT_EQ(told_of(document, "cielab"), "0:0 No colour has values in cielab, but in CIELab, SRGB");
  EXPECT_EQ(told_of(Zol(), ""), "0:0 No colour has values");
  EXPECT_EQ(told_of(Zol(), "CIELab"), "0:0 No colour has values");
}

TEST(TidyTable, CountsWhatItLeavesOut) {
  Report report;
  (void)written(loaded<Zol>(sample_bytes("quality-control")), Format::csv, {}, &report);
  std::map<std::string, std::size_t> losses;
  for (const auto& loss : report.losses.all()) losses[loss.kind] = loss.count;
  EXPECT_EQ(losses["Preamble"], 1u);
  EXPECT_GT(losses["Tolerance"], 0u);
  EXPECT_GT(losses["ChangeHistory"], 0u);
  EXPECT_EQ(losses.count("Color"), 0u);
}

struct Import {
  const char* name;
  const char* text;
  const char* mapping;
  std::vector<std::string> lines;  // of the records, without conditions and units
};

TEST(Import, GuessesAndMaps) {
  const std::vector<Import> cases = {
      {"letters", "Name,L*,a*,b*\nred,53.2,80.1,67.2\n", "", {"red: CIELab L=53.2 A=80.1 B=67.2"}},
      {"prefixes, decimal comma",
       "Sample_ID;LAB_L;LAB_A;LAB_B\r\n1;53,2;80,1;67,2\r\n",
       "",
       {"1: CIELab L=53.2 A=80.1 B=67.2"}},
      {"tristimulus values of 100",
       "name\tX\tY\tZ\nwhite\t96.42\t100\t82.51\n",
       "",
       {"white: CIEXYZ X=0.9642 Y=1 Z=0.8251"}},
      {"bytes", "Colour,R,G,B\nred,255,0,51\n", "", {"red: SRGB Red=1 Green=0.0 Blue=0.2"}},
      {"hex",
       "Colour,Hex\nred,#ff0033\n",
       "",
       {"red: SRGB Red=1 Green=0.0 Blue=0.2 ColorDepth=ColorDepth_8"}},
      {"spectra",
       "name,400 nm,R410,SPECTRAL_NM420\ngrey,20,21,22.5\n",
       "",
       {"grey: Spectral 400=0.2 410=0.21 420=0.225"}},
      {"inks",
       "Name,C,M,Y,K\nk,0,0,0,100\n",
       "",
       {"k: CMYK Cyan=0.0 Magenta=0.0 Yellow=0.0 Black=100"}},
      {"two spaces",
       "Name,L,a,b,400,410\nx,1,2,3,0.1,0.2\ny,4,5,6,,\n",
       "",
       {"x: CIELab L=1 A=2 B=3; Spectral 400=0.1 410=0.2", "y: CIELab L=4 A=5 B=6"}},
      {"a mapping",
       "\"what, it\";one;two=2;three;junk\nblue;30;68;-112;?\n",
       "# comment\n\"what = x\n",
       {}},
      {"another mapping",
       "what;one;two=2;three;junk\nblue;300;68;-112;?\n",
       "# comment\nwhat = Name\none = CIELab.L / 10\ntwo=2 = CIELab.A\nthree=CIELab.B\n"
       "junk = -\n:Illuminant = D65\n:Observer = 10\n",
       {"blue: CIELab L=30 A=68 B=-112 (D65 10)"}},
      {"tidy without numbers",
       "Name,Space,Axis,Value,Observer,Illuminant\na,CIELab,L,1,2,D50\na,CIELab,A,2,2,D50\n"
       "a,CIELab,B,3,2,D50\na,Munsell,CollectionName,m,,\na,Munsell,ColorName,5R 5/5,,\n"
       "b,CIExyY,x,0.3,,\nb,CIExyY,y,0.4,,\nb,CIExyY,Y,0.5,,\n",
       "",
       {"a: CIELab L=1 A=2 B=3 (D50 2); Munsell CollectionName=m ColorName=5R 5/5",
        "b: CIExyY x=0.3 y=0.4 Y=0.5"}},
  };
  for (const Import& import : cases) {
    SCOPED_TRACE(import.name);
    Zol document;
    ReadOptions options;
    options.mapping = import.mapping;
    const Report report = read(import.text, Format::csv, options, &document);
    if (import.lines.empty()) {
      EXPECT_FALSE(report);
      continue;
    }
    EXPECT_EQ(told(report), "");
    std::vector<std::string> lines;
    for_each_record(
        document,
        [&](const ColorRecord& record) {
          lines.push_back(record.name + ":");
          for (const Rendering& rendering : record.renderings) {
            if (&rendering != &record.renderings.front()) lines.back() += ';';
            lines.back() += ' ' + rendering.space;
            for (const Coordinate& c : rendering.coordinates) {
              if (c.text == "ColorDepth_Infinite") continue;
              lines.back() += ' ' + c.axis + '=' + c.text;
            }
            const Conditions& conditions = rendering.conditions;
            if (conditions.empty()) continue;
            lines.back() += " (" + conditions[Condition::illuminant] + ' ' +
                            conditions[Condition::observer] + ')';
          }
        },
        nullptr);
    EXPECT_EQ(lines, import.lines);
    EXPECT_EQ(check(document).errors, 0u);
  }
}

struct BadTable {
  const char* text;
  const char* told;
};

TEST(Table, TellsWhatIsWrongAndWhere) {
  const BadTable cases[] = {
      {"", "1:1 The table has no headings"},
      {"a,b\n1,2\n", "1:1 No column is known to hold values of colours"},
      {"L,A,B\n1,2\n", "2:1 The line has 2 cells, the first one has 3 cells"},
      {"L,A,B\n1,2,\"3\n", "2:5 The quotation mark has no partner"},
      {"L,A,B\n1,2\",3\n", "2:4 A quotation mark stands in a cell that does not begin with one"},
      {"L,A,B\n1,\"2\"x,3\n", "2:6 Something stands behind a quotation mark"},
      {"L,A,B\n1,\xFF,3\n", "2:3 The cell is no UTF-8"},
      {"L,A,B\n1,two,3\n", "2:3 A is 'two', a number is expected"},
      {"L,A,B\n1,151,3\n", "2:3 A is '151', which is refused: at least -150 and at most 150"},
      {"L,A,B\n\xC3\xA4,1,3\n", "2:1 L is '\xC3\xA4', a number is expected"},
      {"L,A,B\n1,,3\n", "2:1 CIELab lacks A"},
      {"CIELab.L,CIELab.Q\n1,2\n", "2:3 The space has no axis Q"},
      {"L,A,B,Pair\n1,2,3,x\n", "2:7 The pair is 'x', a number from 1 on is expected"},
      {"L,A,B,Illuminant,Observer\n1,2,3,D50,7\n", "2:1 FieldOfView has no value '7'"},
      {"Axis,Value\nL,1\n", "1:1 A table with a column Axis needs Space and Value, too"},
      {"Space,Axis,Value\nLab,L,1\n", "2:1 There is no colour space 'Lab'"},
      {"Hex\n12345\n", "2:1 The colour is '12345', #rrggbb is expected"},
  };
  for (const BadTable& bad : cases) {
    Zol document;
    const std::string found = told(read(bad.text, Format::csv, {}, &document));
    EXPECT_EQ(found.substr(0, std::string(bad.told).size()), bad.told) << bad.text;
  }
}

TEST(Csv, IsQuotedAsRfc4180Says) {
  const std::vector<std::string> cells = {"", "a", "b,c", "d\"e", "f\r\ng", " h "};
  std::string text;
  append_cells(cells, ',', "\r\n", &text);
  EXPECT_EQ(text, ",a,\"b,c\",\"d\"\"e\",\"f\r\ng\", h \r\n");
  std::vector<std::vector<Cell>> lines;
  Report report;
  ASSERT_TRUE(read_cells(text, ',', &lines, &report));
  ASSERT_EQ(lines.size(), 1u);
  for (std::size_t i = 0; i < cells.size(); ++i) EXPECT_EQ(lines[0][i].text, cells[i]);
}

}  // namespace
