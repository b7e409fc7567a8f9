// The functions of bridge/zol_helpers.h that reach every class and row by number.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "bridge/zol_exports.h"
#include "bridge/zol_helpers.h"
#include "model/Zol.h"
#include "support/files.h"

namespace {

unsigned type(const char* name) { return static_cast<unsigned>(zol_type(name)); }
unsigned row(const char* owner, const char* name) {
  return static_cast<unsigned>(zol_row(owner, name));
}

std::string taken(char* given) {
  const std::string text = given != nullptr ? std::string(given, zol_text_bytes(given)) : "-";
  zol_text_free(given);
  return text;
}

int set_text(void* self, unsigned row, std::string_view text) {
  return zol_set_text(self, row, 0, text.data(), static_cast<unsigned>(text.size()));
}
int insert_text(void* self, unsigned row, unsigned index, std::string_view text) {
  return zol_insert_text(self, row, index, text.data(), static_cast<unsigned>(text.size()));
}

void* child(void* self, unsigned row, unsigned index = 0) {
  unsigned ignored = 0;
  return zol_child(self, row, index, &ignored);
}

TEST(Rows, AreFoundByName) {
  EXPECT_EQ(zol_type("NoSuchType"), -1);
  EXPECT_EQ(zol_row("NoSuchType", "L"), -1);
  EXPECT_EQ(zol_row("ColorSpaceCIELabType", "NoSuchRow"), -1);
  EXPECT_EQ(zol_row("ColorSpaceCIELabType", "UniqueID"), -1) << "a row of the base";
  EXPECT_EQ(row("ColorSpaceCIELabType", "L") + 1, row("ColorSpaceCIELabType", "A"));
  EXPECT_EQ(row("Density", "Density") / 256, type("Density")) << "content";
}

TEST(Rows, SayWhatMayStandInThem) {
  const struct {
    const char* owner;
    const char* name;
    const char* expected;
  } cases[] = {
      {"ColorSpaceCIELabType", "L", "at least 0 and at most 150"},
      {"ColorSpaceCIELChType", "H", "at least 0 and less than 360 degree"},
      {"Density", "Density", "more than 0"},
      {"ProfileType_Parameters", "Name", "exactly 1 character"},
      {"GeometryChoiceType", "SphereGeometry", "one of Sphere_Included, Sphere_Excluded"},
      {"Header", "Creator", "-"},
  };
  for (const auto& wanted : cases) {
    EXPECT_EQ(taken(zol_expected(row(wanted.owner, wanted.name))), wanted.expected) << wanted.name;
  }
}

TEST(Rows, AHandleIsTheSameUnderEveryClass) {
  zol_v2::ColorSpaceCMYKPlusN space;
  EXPECT_EQ(_CSharp_ColorSpaceCMYKPlusNUpcast(&space), &space);
  EXPECT_EQ(_CSharp_ColorSpaceCMYKPlusNTypeUpcast(&space), &space);
  EXPECT_EQ(_CSharp_ColorSpaceCMYKTypeUpcast(&space), &space);
  EXPECT_EQ(zol_type_of(&space), type("ColorSpaceCMYKPlusN"));
}

TEST(Rows, SettersJudgeAsReadersDo) {
  void* const lab = zol_new(type("ColorSpaceCIELabType"));
  const unsigned lightness = row("ColorSpaceCIELabType", "L");
  double number = -1;
  EXPECT_EQ(zol_get_number(lab, lightness, &number), 0u);
  EXPECT_EQ(number, 0.0);
  EXPECT_EQ(zol_set_number(lab, lightness, 150.5), lmx::elmx_value_too_big);
  EXPECT_EQ(zol_set_number(lab, lightness, std::nan("")), lmx::elmx_value_too_small);
  EXPECT_EQ(zol_count(lab, lightness), 0u);
  EXPECT_EQ(zol_set_number(lab, lightness, 50.5), 0);
  EXPECT_EQ(zol_get_number(lab, lightness, &number), 1u);
  EXPECT_EQ(number, 50.5);
  EXPECT_EQ(zol_unset(lab, lightness), 0u) << "what is required stays";
  zol_delete(lab);

  void* const settings = zol_new(type("DeviceSettings"));
  const unsigned aperture = row("DeviceSettings", "Aperture");
  // The setter of C++ lets 0 pass, which no reader takes.
  EXPECT_EQ(zol_set_integer(settings, aperture, 0), lmx::elmx_value_too_small);
  EXPECT_EQ(zol_set_integer(settings, aperture, 2147483648), lmx::elmx_value_too_big);
  EXPECT_EQ(zol_set_integer(settings, aperture, 1LL << 40), lmx::elmx_value_too_big);
  EXPECT_EQ(zol_set_integer(settings, row("DeviceSettings", "GridTuner"), 1), 0);
  long long integer = 0;
  EXPECT_EQ(zol_get_integer(settings, row("DeviceSettings", "GridTuner"), &integer), 1u);
  EXPECT_EQ(integer, 1);
  zol_delete(settings);

  void* const device = zol_new(type("DeviceType"));
  const unsigned kind = row("DeviceType", "DeviceClass");
  EXPECT_EQ(zol_set_integer(device, kind, 4), lmx::elmx_value_not_enumerated);
  EXPECT_EQ(zol_set_integer(device, kind, (1LL << 32) + 1), lmx::elmx_value_not_enumerated);
  EXPECT_EQ(zol_set_integer(device, kind, 2), 0);
  EXPECT_EQ(zol_get_integer(device, kind, &integer), 1u);
  EXPECT_EQ(integer, 2);
  EXPECT_EQ(zol_unset(device, kind), 1u);
  EXPECT_EQ(zol_get_integer(device, kind, &integer), 0u);
  zol_delete(device);
}

TEST(Rows, TextsGoThroughAsTheyAre) {
  void* const color = zol_new(type("ColorType"));
  const unsigned name = row("ColorType", "ColorName"),
                 words = row("ColorType", "SemanticAssociation");
  zol_text_view view;
  EXPECT_EQ(zol_get_text(color, name, 0, &view), 0u);
  zol_text_free(view.wide);
  EXPECT_EQ(set_text(color, name, "na\xC3\xAFve"), 0);
  EXPECT_EQ(set_text(color, name, std::string_view("a\0b", 3)), lmx::elmx_bad_char_encoding);
  EXPECT_EQ(set_text(color, name, "\xFF"), lmx::elmx_bad_char_encoding);
  ASSERT_EQ(zol_get_text(color, name, 0, &view), 1u);
  if (view.utf8 != nullptr) {
    EXPECT_EQ(std::string_view(view.utf8, view.size), "na\xC3\xAFve");
  } else {
    EXPECT_EQ(std::u16string_view(view.wide, view.size / 2), u"na\u00EFve");
    zol_text_free(view.wide);
  }
  EXPECT_EQ(insert_text(color, words, 0, "c"), 0);
  EXPECT_EQ(insert_text(color, words, 0, "a"), 0);
  EXPECT_EQ(insert_text(color, words, 1, "b"), 0);
  EXPECT_EQ(insert_text(color, words, 99, ""), 0);
  EXPECT_EQ(taken(zol_texts(color, words)), std::string("a\0b\0c\0\0", 7));
  EXPECT_EQ(zol_set_text(color, words, 4, "x", 1), lmx::elmx_undefined);
  EXPECT_EQ(zol_remove(color, words, 4), 0u);
  EXPECT_EQ(zol_remove(color, words, 0), 1u);
  EXPECT_EQ(taken(zol_texts(color, words)), std::string("b\0c\0\0", 5));
  zol_delete(color);
}

TEST(Rows, MomentsHaveAZone) {
  void* const color = zol_new(type("ColorType"));
  const unsigned dates = row("ColorType", "ChangeHistory");
  const zol_moment wrong[] = {{2026, 100, 2, 3, 4, 5, 60, 0}, {2026, 1, 2, 3, 4, 5, 60, 1}};
  for (const zol_moment& moment : wrong) {
    EXPECT_EQ(zol_insert_moment(color, dates, 0, &moment), lmx::elmx_bad_value_format);
  }
  const zol_moment plain{2026, 1, 2, 3, 4, 5.5f, 0, 0}, west{12026, 2, 31, 0, 0, 0, -330, 0};
  EXPECT_EQ(zol_insert_moment(color, dates, 0, &west), 0);
  EXPECT_EQ(zol_insert_moment(color, dates, 0, &plain), 0);
  zol_moment all[3] = {};
  EXPECT_EQ(zol_moments(color, dates, all, 1), 2u);
  EXPECT_EQ(all[1].year, 0) << "behind the room";
  EXPECT_EQ(zol_moments(color, dates, all, 3), 2u);
  EXPECT_EQ(all[0].is_utc, 1u) << "a zone of zero would be written as none";
  EXPECT_EQ(all[1].offset_mins, -330);
  EXPECT_EQ(zol_set_moment(color, dates, 2, &plain), lmx::elmx_undefined);
  EXPECT_EQ(zol_get_moment(color, dates, 2, all), 0u);
  zol_delete(color);
}

TEST(Rows, ChildrenAreMadeOnDemandAlone) {
  zol_v2::Zol zol;
  const unsigned colors = row("Zol", "Color"), owner = row("ColorType", "Owner");
  const unsigned spaces = row("ColorType", "ColorSpace");
  void* const color = zol_insert_child(&zol, colors, 7, type("ColorType"));
  ASSERT_NE(color, nullptr);
  EXPECT_EQ(zol_insert_child(&zol, colors, 0, type("OwnerType")), nullptr);
  EXPECT_EQ(child(&zol, colors, 1), nullptr);
  EXPECT_EQ(child(color, owner), nullptr);
  EXPECT_EQ(zol_count(color, owner), 0u);
  void* const made = zol_make_child(color, owner, type("OwnerType"));
  EXPECT_EQ(child(color, owner), made);
  EXPECT_EQ(insert_text(made, row("OwnerType", "Company"), 0, "x"), 0);
  EXPECT_EQ(zol_unset(color, owner), 1u);
  EXPECT_EQ(zol_count(zol_make_child(color, owner, type("OwnerType")), row("OwnerType", "Company")),
            0u)
      << "what was taken away does not come back";

  // A holder is looked through.
  EXPECT_EQ(zol_insert_child(color, spaces, 0, type("sg_ColorSpace")), nullptr);
  EXPECT_EQ(zol_insert_child(color, spaces, 0, type("ColorSpaceType")), nullptr) << "abstract";
  EXPECT_EQ(zol_count(color, spaces), 0u);
  void* const lab = zol_insert_child(color, spaces, 0, type("ColorSpaceCIELabType"));
  ASSERT_NE(lab, nullptr);
  EXPECT_EQ(child(color, spaces), lab);
  EXPECT_EQ(taken(zol_path(&zol, lab, -1, 0)), "Zol/Color[1]/ColorSpaceCIELab");
  EXPECT_EQ(taken(zol_path(&zol, lab, zol_row("ColorSpaceCIELabType", "L"), 0)),
            "Zol/Color[1]/ColorSpaceCIELab/L");
  zol_v2::ColorType elsewhere;
  EXPECT_EQ(zol_path(&zol, &elsewhere, -1, 0), nullptr);
}

TEST(Rows, AHolderTakesATypeThatAnElementNames) {
  zol_v2::sg_Function holder;
  zol_v2::FunctionTolerance tolerance;
  tolerance.set_ToleranceType(L"DE00");
  const unsigned function = row("sg_Function", "Function");
  ASSERT_EQ(zol_put_child(&holder, function, &tolerance), 0);
  void* const held = child(&holder, function);
  EXPECT_NE(held, &tolerance);
  EXPECT_EQ(zol_type_of(held), type("FunctionTolerance"));
  EXPECT_EQ(zol_chosen(&holder), static_cast<int>(function));
  EXPECT_EQ(zol_put_child(&holder, function, held), 0) << "itself";
  EXPECT_EQ(zol_put_child(&holder, row("sg_Function", "FunctionDE"), &tolerance),
            lmx::elmx_bad_choice);
  zol_v2::FunctionType base;
  EXPECT_EQ(zol_assign(&base, &tolerance), lmx::elmx_bad_choice);
  EXPECT_EQ(zol_unset(&holder, function), 1u);
  EXPECT_EQ(zol_chosen(&holder), -1);
}

TEST(Rows, AssigningAPartOfItselfKeepsThePart) {
  zol_v2::ColorType color;
  zol_v2::ColorType& inner = color.get_Substrate().get_SubstratePaper().get_Color();
  inner.set_ColorName(L"paper white");
  EXPECT_EQ(zol_assign(&color, &inner), 0);
  EXPECT_EQ(color.get_ColorName(), L"paper white");
}

TEST(Rows, NilIsCopied) {
  void* const standard = zol_new(type("Standard"));
  EXPECT_EQ(zol_is_nil(standard), 0u);
  EXPECT_EQ(zol_set_nil(standard, 1), 1u);
  void* const copy = zol_copy(standard);
  EXPECT_EQ(zol_is_nil(copy), 1u);
  zol_delete(copy);
  zol_delete(standard);
  zol_v2::Header header;
  EXPECT_EQ(zol_set_nil(&header, 1), 0u);
}

TEST(Rows, SpectraAreReplacedWholeOrNotAtAll) {
  void* const spectrum = zol_new(type("ColorSpaceSpectralType"));
  const std::vector<double> nm{400, 410, 420}, factors{0.25, 0.5, 0.75};
  unsigned wrong = 9;
  ASSERT_EQ(zol_set_spectrum(spectrum, nm.data(), factors.data(), 3, &wrong), 0);
  const double bad[] = {0.5, 11};
  EXPECT_EQ(zol_set_spectrum(spectrum, nm.data(), bad, 2, &wrong), lmx::elmx_value_too_big);
  EXPECT_EQ(wrong, 1u);
  std::vector<double> left(3), right(3);
  EXPECT_EQ(zol_spectrum_points(spectrum, left.data(), nullptr, 3), 3u);
  EXPECT_EQ(zol_spectrum_points(spectrum, nullptr, right.data(), 2), 3u);
  EXPECT_EQ(left, nm);
  EXPECT_EQ(right, (std::vector<double>{0.25, 0.5, 0}));
  EXPECT_EQ(zol_set_spectrum(spectrum, nullptr, nullptr, 0, &wrong), 0);
  EXPECT_EQ(zol_spectrum_points(spectrum, nullptr, nullptr, 0), 0u);
  zol_delete(spectrum);
  zol_v2::Header header;
  EXPECT_EQ(zol_spectrum_points(&header, nullptr, nullptr, 0), 0u);
}

TEST(Rows, MemoryGrowsByWhatIsPutIn) {
  zol_v2::Zol zol;
  const auto before = zol_memory(&zol);
  EXPECT_GE(before, sizeof zol);
  for (int i = 0; i < 1000; ++i) {
    zol.append_Color();
    zol.back_Color().set_ColorName(std::wstring(1000, L'x'));
    zol.back_Color().append_SemanticAssociation(std::wstring(500, L'y'));
  }
  const auto full = zol_memory(&zol) - before;
  constexpr unsigned long long k_texts = 1000 * 1500 * sizeof(wchar_t);
  EXPECT_GT(full, k_texts + 1000 * sizeof(zol_v2::ColorType));
  EXPECT_LT(full, k_texts + 1000 * (sizeof(zol_v2::ColorType) + 500));
  zol.clear_Color();
  EXPECT_EQ(zol_memory(&zol), before);
}

TEST(Outcomes, TellWhereAndWhy) {
  zol_v2::Zol zol;
  zol_outcome* outcome = zol_open(&zol, nullptr, "<x", 2);
  EXPECT_NE(outcome->code, 0);
  EXPECT_NE(outcome->message, nullptr);
  ASSERT_EQ(outcome->fault_count, 1u);
  EXPECT_EQ(outcome->faults[0].line, 1u);
  zol_outcome_free(outcome);

  const std::string path = std::string(ZOL_SOURCE_DIR) + "/examples/documents/named-colours.zol";
  outcome = zol_open(&zol, std::u16string(path.begin(), path.end()).c_str(), nullptr, 0);
  EXPECT_EQ(outcome->code, 0);
  EXPECT_EQ(outcome->message, nullptr);
  zol_outcome_free(outcome);

  outcome = zol_save(&zol, nullptr);
  ASSERT_EQ(outcome->code, 0);
  zol_v2::Zol again;
  zol_outcome* const second = zol_open(&again, nullptr, outcome->bytes, outcome->size);
  EXPECT_EQ(second->code, 0);
  EXPECT_EQ(again.size_Palette(), zol.size_Palette());
  zol_outcome_free(second);
  zol_outcome_free(outcome);

  outcome = zol_open(&zol, nullptr, "PK\3\4 and no more", 16);
  EXPECT_EQ(outcome->code, 1000);
  EXPECT_EQ(zol.size_Palette(), again.size_Palette()) << "as it was";
  zol_outcome_free(outcome);
  zol_outcome_free(nullptr);
}

}  // namespace
