// Colours in palettes: there and back, and what is told of palettes that are none.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
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
using zol_test::count_of;
using zol_test::loaded;
using zol_test::sample_bytes;
using zol_test::told;

struct Swatch {
  std::string group, name;
  double rgb[3];
};

// The colours that have an sRGB of their own.
std::vector<Swatch> swatches_of(const Zol& document) {
  std::vector<Swatch> swatches;
  for_each_record(
      document,
      [&](const ColorRecord& record) {
        const Rendering* const srgb = record.find("SRGB");
        if (srgb == nullptr) return;
        swatches.push_back(
            {record.group + '|' + record.part,
             record.name,
             {srgb->find("Red")->number, srgb->find("Green")->number, srgb->find("Blue")->number}});
      },
      nullptr);
  return swatches;
}

struct PaletteForm {
  Format format;
  double tolerance;
  bool has_groups;
};
constexpr PaletteForm k_forms[] = {
    {Format::gpl, 0.5 / 255 + 1e-9, false}, {Format::kpl, 0, true}, {Format::ase, 1e-7, true}};

TEST(Palette, HoldsTheSwatchesOfEverySample) {
  for (const std::string& name : zol_test::sample_names()) {
    const Zol document = loaded<Zol>(sample_bytes(name));
    for (const PaletteForm& form : k_forms) {
      SCOPED_TRACE(name + std::to_string(static_cast<int>(form.format)));
      const auto writer = make_writer(form.format, {});
      writer->add(document, "");
      std::string bytes;
      const Report written = writer->finish(&bytes);
      if (!written) {
        EXPECT_TRUE(swatches_of(document).empty());
        continue;
      }
      Zol again;
      const Report report = read(bytes, form.format, {}, &again);
      ASSERT_EQ(told(report), "");
      EXPECT_EQ(check(again).errors, 0u);
      // More colours than those with an sRGB of their own may have been computed.
      const std::vector<Swatch> expected = swatches_of(document);
      const std::vector<Swatch> found = swatches_of(again);
      ASSERT_GE(found.size(), expected.size());
      auto at = found.begin();
      for (const Swatch& swatch : expected) {
        const auto is_same = [&](const Swatch& other) {
          bool is_close = other.name == swatch.name;
          for (int i = 0; i < 3; ++i) {
            is_close &= std::abs(other.rgb[i] - swatch.rgb[i]) <= form.tolerance;
          }
          return is_close && (!form.has_groups || other.group == swatch.group ||
                              swatch.group == "|" || other.group.find('|') != std::string::npos);
        };
        at = form.format == Format::kpl ? std::find_if(found.begin(), found.end(), is_same)
                                        : std::find_if(at, found.end(), is_same);
        ASSERT_NE(at, found.end()) << swatch.name;
      }
      // What came from a palette goes back to it without a change.
      EXPECT_EQ(zol_test::written(again, form.format), bytes);
    }
  }
}

TEST(Palette, HoldsThoseOfOthers) {
  zol_test::DerivedDocuments documents(4);
  for (int i = 0; i < 150 && !HasFatalFailure(); ++i) {
    SCOPED_TRACE(i);
    const auto document = documents.next();
    for (const Format format : {Format::gpl, Format::kpl, Format::css, Format::ase}) {
      const auto writer = make_writer(format, {});
      writer->add(*document, "");
      std::string bytes;
      const Report written = writer->finish(&bytes);
      if (!written || format == Format::css) continue;
      Zol again;
      ASSERT_EQ(told(read(bytes, format, {}, &again)), "");
      ASSERT_EQ(check(again).errors, 0u);
      ASSERT_GE(swatches_of(again).size(), swatches_of(*document).size());
    }
  }
}

TEST(Palette, IsSpelledSo) {
  Zol document;
  ASSERT_EQ(told(read("GIMP Palette\r\nName: Two reds\nColumns: 2\n#\n255 0 0\tRed!\n  1  2   3\n",
                      Format::gpl, {}, &document)),
            "");
  EXPECT_EQ(
      zol_test::written(document, Format::gpl),
      "GIMP Palette\nName: Two reds\nColumns: 0\n#\n255   0   0\tRed!\n  1   2   3\tUntitled\n");
  EXPECT_EQ(zol_test::written(document, Format::css),
            ":root {\n  /* Two reds */\n  --red: #ff0000;\n  --untitled: #010203;\n}\n");
  const std::string ase = zol_test::written(document, Format::ase);
  EXPECT_EQ(ase.substr(0, 12), std::string("ASEF\0\1\0\0\0\0\0\4", 12));
  EXPECT_EQ(ase.substr(12, 8), std::string("\xC0\x01\0\0\0\x14\0\x09", 8));
}

// A line of a palette has no room for all that a name may hold; XML has.
TEST(Palette, KeepsNamesOrTellsWhatItChanges) {
  Zol document;
  ASSERT_EQ(told(read("Name,Hex\n\"two\nlines\",#ff0000\n\"a\tb\",#ff0000\n  blanks ,#0000ff\n",
                      Format::csv, {}, &document)),
            "");
  Report report;
  const std::string gpl = zol_test::written(document, Format::gpl, {}, &report);
  EXPECT_NE(gpl.find("\ttwo lines\n"), gpl.npos);
  EXPECT_NE(gpl.find("\tblanks\n"), gpl.npos);
  EXPECT_EQ(count_of(report, "line break or tab in a name"), 2u);
  EXPECT_EQ(count_of(report, "blank around a name"), 1u);
  for (const Format format : {Format::kpl, Format::ase}) {
    Zol again;
    ASSERT_EQ(told(read(zol_test::written(document, format, {}, &report), format, {}, &again)), "");
    std::vector<std::string> names;
    for (const Swatch& swatch : swatches_of(again)) names.push_back(swatch.name);
    EXPECT_EQ(names, (std::vector<std::string>{"two\nlines", "a\tb", "  blanks "}));
    EXPECT_EQ(count_of(report, "line break or tab in a name"), 0u);
  }
}

struct BadPalette {
  Format format;
  std::string bytes;
  const char* told;
};

TEST(Palette, TellsWhatIsWrongAndWhere) {
  const std::string head("ASEF\0\1\0\0", 8);
  const BadPalette cases[] = {
      {Format::gpl, "", "1:1 The file does not begin with 'GIMP Palette'"},
      {Format::gpl, "GIMP Palette\n", "2:1 The palette has no colours"},
      {Format::gpl, "GIMP Palette\n1 2 x\n",
       "2:5 Three numbers from 0 to 255 are expected, and a name"},
      {Format::gpl, "GIMP Palette\n1 256 3\n",
       "2:3 Three numbers from 0 to 255 are expected, and a name"},
      {Format::gpl, "GIMP Palette\n1 2 3 \xFF\n", "2:1 The line is no UTF-8"},
      {Format::ase, "", "1:1 The file does not begin with ASEF, at byte 0"},
      {Format::ase, head, "1:9 The file has no colours, at byte 8"},
      {Format::ase, head + std::string("\0\0\0\1\0\1\0\0\0\x20", 10),
       "1:13 The file ends within a block, at byte 12"},
      {Format::ase, head + std::string("\0\0\0\1\0\1\0\0\0\2\0\1", 12),
       "1:13 The block is too short for what it holds, at byte 12"},
      {Format::kpl, "", "0:0 The file is no archive, or a damaged one"},
      {Format::css, ":root {}", "0:0 The format is written alone, and not read"},
  };
  for (const BadPalette& bad : cases) {
    Zol document;
    EXPECT_EQ(told(read(bad.bytes, bad.format, {}, &document)), bad.told) << bad.bytes;
  }
}

// A palette that is cut anywhere is refused, or has fewer colours; none does harm.
TEST(Palette, RefusesWhatIsCut) {
  const Zol document = loaded<Zol>(sample_bytes("named-colours"));
  for (const PaletteForm& form : k_forms) {
    const std::string bytes = zol_test::written(document, form.format);
    for (std::size_t size = 0; size < bytes.size(); size += 1 + size / 13) {
      Zol again;
      const Report report = read(bytes.substr(0, size), form.format, {}, &again);
      EXPECT_TRUE(form.format == Format::gpl || !report);
    }
  }
}

}  // namespace
