// Documents as JSON: there and back, and what is told of JSON that is none of theirs.
#include "interchange/json.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "facade/check.h"
#include "interchange/derived_documents.h"
#include "model/documents.h"
#include "model/reflection.h"
#include "support/files.h"

namespace {

using namespace zol_v2;
using interchange::read_json;
using interchange::Report;
using interchange::write_json;
using zol_test::exact_text;
using zol_test::loaded;
using zol_test::sample_bytes;

std::string json_of(const Zol& document) {
  std::string text;
  const Report report = write_json(document, &text);
  EXPECT_TRUE(report) << report.faults.front().text();
  return text;
}

void expect_back(const Zol& document) {
  const std::string text = json_of(document);
  Zol again;
  const Report report = read_json(text, &again);
  ASSERT_TRUE(report) << report.faults.front().text() << " at " << report.faults.front().path;
  ASSERT_EQ(exact_text(again), exact_text(document));
  ASSERT_EQ(json_of(again), text);
}

TEST(Json, HoldsEverySample) {
  for (const std::string& name : zol_test::sample_names()) {
    SCOPED_TRACE(name);
    expect_back(loaded<Zol>(sample_bytes(name)));
  }
}

TEST(Json, HoldsThousandsOfOthers) {
  zol_test::DerivedDocuments documents;
  for (int i = 0; i < 2000 && !HasFatalFailure(); ++i) {
    SCOPED_TRACE(i);
    expect_back(*documents.next());
  }
}

TEST(Json, IsSpelledSo) {
  ColorSpaceCIELab space;
  ASSERT_EQ(reflection::Ref(space).set_text(reflection::type_of(space).row("L"), "5"), 0);
  space.set_Comments(L"\u00E9 \"x\"");
  space.get_ColorSpaceSpecificationSpectrumTristimulus()
      .setnil_ColorSpaceSpecificationSpectrumTristimulus();
  std::string text;
  ASSERT_TRUE(write_json(space, &text, -1));
  EXPECT_EQ(text,
            "{\"ColorSpaceCIELab\":{\"Comments\":\"\u00E9 \\\"x\\\"\","
            "\"ColorSpaceSpecificationSpectrumTristimulus\":{\"xsi:nil\":true},\"L\":5.0}}\n");
}

TEST(Json, TakesMembersInAnyOrder) {
  Zol document;
  const Report report = read_json(R"({"$schema": "x", "Zol": {"Color": [{"ColorSpace": [
      {"ColorSpaceCMYK": {"Cyan": 1, "xsi:type": "ColorSpaceCMYKPlusNType",
                          "Color": [{"Value": 2, "Name": "n"}]}}], "ColorName": "c"}]}})",
                                  &document);
  ASSERT_TRUE(report) << report.faults.front().text();
  std::string text;
  ASSERT_TRUE(write_json(document, &text, -1));
  EXPECT_NE(text.find(R"({"ColorSpaceCMYK":{"xsi:type":"ColorSpaceCMYKPlusNType","Cyan":1.0,)"
                      R"("Color":[{"Name":"n","Value":2.0}]}})"),
            std::string::npos)
      << text;
}

struct BadJson {
  const char* text;
  const char* told;  // line, column and sentence
};

TEST(Json, TellsWhatIsWrongAndWhere) {
  const std::vector<BadJson> cases = {
      {"", "1:1 This is no JSON: unexpected end of input; expected '[', '{', or a literal"},
      {"{\"Zol\": {}", "1:10 This is no JSON: unexpected end of input; expected '}'"},
      {"{\"Zol\": tru}", "1:12 This is no JSON: invalid literal"},
      {"[]", "1:1 Here stands an array, the object {\"Zol\": ...} is expected"},
      {"{}", "1:1 There is no 'Zol'"},
      {"{\"Zoll\": {}}", "1:10 The document begins with 'Zoll', Zol alone is expected"},
      {"{\"Zol\":\n  {\"Colour\": []}}", "2:14 'Colour' is unknown here"},
      {"{\"Zol\": {\"Color\": [1]}}", "1:20 Here stands a number, an object is expected"},
      {"{\"Zol\": {\"Color\": {}}}", "1:19 Here stands an object, an array is expected"},
      {"{\"Zol\": {\"Color\": [{\"ColorName\": null}]}}",
       "1:34 Here stands null, a text is expected"},
      {"{\"Zol\": {\"Color\": [{\"ColorName\": \"a\", \"ColorName\": \"b\\\"\"}]}}",
       "1:52 'ColorName' stands twice"},
      {"{\"Zol\": {\"Color\": [{\"ColorSpace\": [{\"ColorSpaceCIELab\":\n{\"A\": -150.5}}]}]}}",
       "2:7 A is '-150.5', which is refused: at least -150 and at most 150"},
      {"{\"Zol\": {\"Color\": [{\"ColorSpace\": [{\"ColorSpaceCIELab\": {},\n"
       "\"ColorSpaceCMYK\": {}}]}]}}",
       "2:19 'ColorSpaceCMYK' stands beside another alternative"},
      {"{\"Zol\": {\"Color\": [{\"ColorSpace\": [{\"ColorSpaceCMYK\":"
       "{\"xsi:type\": \"ColorSpaceRGBType\"}}]}]}}",
       "1:67 No type 'ColorSpaceRGBType' can stand here"},
      {"{\"Zol\": {\"xsi:nil\": true}}", "1:9 The element can't be nil"},
      {"{\"Zol\": {\"Preamble\": {\"Header\": {\"Revision\": [{\"any\": [\"<a>\"]}]}}}}",
       "1:56 The foreign element is no XML"},
      {"{\"Zol\": {\"Color\": [{\"ChangeHistory\": [\"2020-01-01\"]}]}}",
       "1:39 ChangeHistory is '2020-01-01', which is refused"},
      {"{\"Zol\": {\"Color\": [{\"ColorName\": \"\xFF\"}]}}",
       "1:35 This is no JSON: invalid string"},
      {"{\"Zol\": {\"Color\": [{\"ColorSpace\": [{\"ColorSpaceCIELab\": {\"L\": 1e999}}]}]}}",
       "1:68 This is no JSON: number overflow"},
  };
  for (const BadJson& bad : cases) {
    Zol document;
    const Report report = read_json(bad.text, &document);
    ASSERT_EQ(report.faults.size(), 1u) << bad.text;
    const Fault& fault = report.faults.front();
    const std::string told = std::to_string(fault.place.line) + ':' +
                             std::to_string(fault.place.column) + ' ' + fault.text();
    EXPECT_EQ(told.substr(0, std::string(bad.told).size()), bad.told) << bad.text;
  }
}

// Every text that was cut short is refused, and none does harm.
TEST(Json, RefusesWhatIsCut) {
  const std::string text = json_of(loaded<Zol>(sample_bytes("coverage-frame")));
  for (std::size_t size = 0; size + 2 < text.size(); size += 1 + size / 97) {
    Zol document;
    EXPECT_FALSE(read_json(text.substr(0, size), &document)) << size;
  }
}

TEST(Json, RefusesWhatIsTooDeep) {
  std::string text = "{\"Zol\": ";
  for (int i = 0; i < 1000000; ++i) text += '[';
  Zol document;
  const Report report = read_json(text, &document);
  ASSERT_FALSE(report);
  EXPECT_EQ(report.faults.front().rule, "nesting");
}

TEST(Json, RefusesTextThatIsNone) {
  Zol document;
  document.append_Color();
  document.get_Color(0).set_ColorName(std::wstring(1, static_cast<wchar_t>(0xD800)));
  std::string text = "before";
  const Report report = write_json(document, &text);
  EXPECT_FALSE(report);
  EXPECT_EQ(text, "before");
}

}  // namespace
