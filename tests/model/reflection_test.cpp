// What the library says of the format and of objects: laws over every class and every sample
// document, and tables by hand of what a text may be and where a path leads.
#include "model/reflection.h"

#include <set>
#include <utility>
#include <vector>

#include "model/documents.h"
#include "support/allocation_count.h"

namespace zol_test {
namespace {

using namespace zol_v2;
using namespace zol_v2::reflection;

// --- Types ---------------------------------------------------------------------------------------

// The names of the elements that an object of the type may have.
void collect_names(Type type, std::vector<std::string>* names) {
  for (const Row row : type.elements()) {
    if (row.is_transparent()) {
      collect_names(row.type(), names);
    } else {
      names->emplace_back(row.name());
    }
  }
}

TEST(Types, AreFoundAndMade) {
  std::size_t count = 0;
  for (const Type type : all_types()) {
    SCOPED_TRACE(std::string(type.name()));
    ++count;
    EXPECT_EQ(find_type(type.name()), type);
    const auto object = type.make();
    EXPECT_EQ(type_of(*object), type);
    EXPECT_TRUE(!type.base() || type.is_a(type.base()));
    for (const Type named : type.named_types()) EXPECT_TRUE(named.is_a(type));

    // A name leads to one row, and a path to one element.
    for (const Row row : type.rows()) EXPECT_EQ(type.row(row.name()), row) << row.name();
    std::vector<std::string> names;
    collect_names(type, &names);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
  }
  EXPECT_EQ(count, 216u);
  EXPECT_FALSE(find_type("Colour"));
  EXPECT_FALSE(find_type("Zol").row("Colour"));
}

std::string row_names(const char* type) {
  std::string names;
  for (const Row row : find_type(type).rows()) {
    names += (row.is_attribute() ? " @" : " ") + std::string(row.name());
  }
  return names;
}

TEST(Types, ListTheRowsOfTheirBasesFirst) {
  EXPECT_EQ(row_names("Zol"), " Preamble Color Palette ColorQualityControl");
  EXPECT_EQ(row_names("ReflectancePointType"), " @Wavelength ReflectancePointType");
  EXPECT_EQ(row_names("ColorSpaceCMYKPlusNType"),
            " @Comments @UniqueID @Name CustomAttribute ParentColorSpace ChangeHistory"
            " ColorSpaceSpecificationSpectrumGeneric Cyan Magenta Yellow Black SpotColor"
            " ColorSpaceName Color");
  EXPECT_EQ(row_names("ColorSpaceSpecificationSpectrumGeneric"),
            row_names("ColorSpaceSpecificationSpectrumGenericType"));
}

TEST(Rows, SayWhatTheyHold) {
  const struct {
    const char* type;
    const char* row;
    Kind kind;
    Bound lower;
    Bound upper;
    const char* unit;
  } cases[] = {
      {"ReflectancePointType", "Wavelength", Kind::real, {0, End::strict}, {}, "nm"},
      {"ReflectancePointType",
       "ReflectancePointType",
       Kind::real,
       {-1, End::strict},
       {10, End::strict},
       ""},
      {"Averaging", "AveragingValue", Kind::uint8, {2, End::inclusive}, {99, End::inclusive}, ""},
      {"DeviceSettings",
       "Aperture",
       Kind::uint32,
       {0, End::strict},
       {2147483647, End::inclusive},
       "mm"},
      {"Zol", "Color", Kind::object, {}, {}, ""},
      {"ColorType", "ColorSpace", Kind::member, {}, {}, ""},
      {"TagValue", "anon_TextValue", Kind::group, {}, {}, ""},
      {"Revision", "any", Kind::foreign, {}, {}, ""},
      {"BSDFAngle", "Azimuth", Kind::mark, {}, {}, ""},
      {"ProfileFile", "ProfileFile", Kind::binary, {}, {}, ""},
  };
  for (const auto& expected : cases) {
    SCOPED_TRACE(std::string(expected.type) + '/' + expected.row);
    const Row row = find_type(expected.type).row(expected.row);
    ASSERT_TRUE(row);
    EXPECT_EQ(row.kind(), expected.kind);
    EXPECT_EQ(row.lower().end, expected.lower.end);
    EXPECT_EQ(row.lower().value, expected.lower.value);
    EXPECT_EQ(row.upper().end, expected.upper.end);
    EXPECT_EQ(row.upper().value, expected.upper.value);
    EXPECT_EQ(row.unit(), expected.unit);
  }
  EXPECT_TRUE(find_type("DeviceSettings").row("Aperture").is_lower_on_reading_only());
  EXPECT_FALSE(find_type("Averaging").row("AveragingValue").is_lower_on_reading_only());

  const Row geometry = find_type("GeometryChoiceType").row("SphereGeometry");
  EXPECT_EQ(geometry.place(), Place::alternative);
  ASSERT_EQ(geometry.values().size(), 2u);
  EXPECT_EQ(geometry.values()[0], "Sphere_Included");
  EXPECT_EQ(find_type("ColorType").row("ColorSpace").type(), find_type("sg_ColorSpace"));
  EXPECT_EQ(find_type("sg_ColorSpace").row("ColorSpaceCMYK").named_type(), NamedType::optional);
  EXPECT_TRUE(find_type("sg_ColorSpace").is_transparent());
  EXPECT_NE(find_type("ReflectancePointType").content().note(), "");
}

TEST(Rows, HaveTheirDefaultsInUntouchedObjects) {
  const Type type = find_type("FloatingPointValueType");
  const Value scale = type.untouched().value(type.row("AxisNominalScale"));
  EXPECT_EQ(scale.text(), L"Scale_Linear");
  EXPECT_NE(scale.number_in_enumeration(), 0);
  EXPECT_FALSE(type.untouched().has(type.row("AxisNominalScale")));
}

// --- Documents by reflection alone ---------------------------------------------------------------

void append_escaped(const std::string& text, std::string* out) {
  for (const char c : text) {
    switch (c) {
      case '"':
        *out += "&quot;";
        break;
      case '\'':
        *out += "&apos;";
        break;
      case '&':
        *out += "&amp;";
        break;
      case '<':
        *out += "&lt;";
        break;
      default:
        *out += c;
    }
  }
}

// Writes what the library writes, knowing nothing but what reflection tells.
class Printer {
 public:
  std::string run(ConstRef root) {
    out_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    print_element(root, "Zol",
                  std::string(" xmlns:Zol=\"") + k_uri + "\" xmlns:xsi=\"" + k_xsi_uri + '"');
    return out_;
  }

 private:
  void print_element(ConstRef object, std::string_view name, const std::string& namespaces = {}) {
    const Type type = object.type();
    open(name);
    out_ += namespaces;
    // An element of the type that was expected leaves the expectation to the next that has one.
    if (type.is_polymorphic() && !expected_.empty() && expected_ != type.type_name()) {
      out_ += " xsi:type=\"Zol:" + std::string(type.type_name()) + '"';
      expected_.clear();
    }
    for (const Row row : type.attributes()) {
      if (!object.has(row)) continue;
      out_ += ' ' + std::string(row.name()) + "=\"";
      print_value(object.value(row));
      out_ += '"';
    }
    if (object.is_nil()) {
      out_ += " xsi:nil=\"true\"/>\n";
    } else if (type.content()) {
      out_ += '>';
      print_value(object.value(type.content()));
      close(name);
    } else if (type.elements().begin() == type.elements().end()) {
      out_ += "/>\n";
    } else {
      out_ += ">\n";
      ++depth_;
      for (const Item& item : object.children()) print(item);
      --depth_;
      out_.append(depth_, '\t');
      close(name);
    }
  }

  void print(const Item& item) {
    if (item.way.kind() == Kind::member && item.row.named_type() != NamedType::no) {
      expected_ = item.row.type().type_name();
    }
    if (const ConstRef object = item.object()) return print_element(object, item.name());
    if (item.row.kind() == Kind::foreign) {
      out_.append(depth_, '\t');
      out_ += item.value().foreign().text + '\n';
      return;
    }
    open(item.name());
    if (item.row.kind() == Kind::mark) {
      out_ += "/>\n";
      return;
    }
    out_ += '>';
    print_value(item.value());
    close(item.name());
  }

  void print_value(const Value& value) {
    std::string text;
    value.append_text(&text);
    append_escaped(text, &out_);
  }
  void open(std::string_view name) {
    out_.append(depth_, '\t');
    out_.append("<Zol:").append(name);
  }
  void close(std::string_view name) { out_.append("</Zol:").append(name).append(">\n"); }

  std::string out_;
  std::string expected_;
  std::size_t depth_ = 0;
};

template <class Visit>
void for_each_object(ConstRef object, const Visit& visit) {
  visit(object);
  for (const Item& item : object.children()) {
    if (const ConstRef child = item.object()) for_each_object(child, visit);
  }
}

// Makes a copy, knowing nothing but what reflection tells.
void copy_by_reflection(Ref to, ConstRef from) {
  const auto copy_value = [](Ref target, Row row, const Value& value) {
    std::string text;
    value.append_text(&text);
    EXPECT_EQ(target.set_text(row, text), 0) << row.name() << ' ' << text;
  };
  for (const Row row : from.type().attributes()) {
    if (from.has(row)) copy_value(to, row, from.value(row));
  }
  EXPECT_TRUE(!from.is_nil() || to.set_nil(true));
  for (const Item& item : from.children()) {
    Ref owner = to;
    if (item.way.is_transparent()) {
      owner = item.way.is_list() ? to.append(item.way) : to.child(item.way);
    }
    if (item.row.kind() == Kind::foreign) {
      (void)owner.as<Revision>()->append_any(item.value().foreign().text);
    } else if (const ConstRef child = item.object()) {
      copy_by_reflection(item.row.is_list() ? owner.append(item.row)
                         : item.row.place() == Place::alternative
                             ? owner.choose(item.row, child.type())
                             : owner.child(item.row),
                         child);
    } else if (item.row.kind() != Kind::mark) {
      copy_value(owner, item.row, item.value());
    }
  }
}

class Reflected : public testing::TestWithParam<std::string> {
 protected:
  Zol document_ = loaded<Zol>(sample_bytes(GetParam()));
};

INSTANTIATE_TEST_SUITE_P(All, Reflected, testing::ValuesIn(sample_names()), [](const auto& info) {
  std::string name = info.param;
  for (char& c : name) c = c == '-' ? '_' : c;
  return name;
});

TEST_P(Reflected, IsPrintedAsItIsWritten) { EXPECT_EQ(Printer().run(document_), saved(document_)); }

TEST_P(Reflected, IsCopied) {
  Zol copy;
  copy_by_reflection(copy, document_);
  EXPECT_EQ(saved(copy), saved(document_));
}

TEST_P(Reflected, TakesEachValueFromItsText) {
  const std::string before = saved(document_);
  std::size_t count = 0;
  for_each_object(document_, [&](ConstRef object) {
    const auto set_again = [&](ConstRef owner, Row row, unsigned index) {
      if (!row.is_simple()) return;
      std::string text;
      owner.value(row, index).append_text(&text);
      const Ref target(const_cast<Object&>(owner.object()));
      EXPECT_EQ(row.is_list() ? target.set_text(row, index, text) : target.set_text(row, text), 0)
          << text;
      ++count;
    };
    for (const Row row : object.type().attributes()) {
      if (object.has(row)) set_again(object, row, 0);
    }
    for (const Item& item : object.children()) set_again(item.owner, item.row, item.index);
  });
  EXPECT_GT(count, 100u);
  EXPECT_EQ(saved(document_), before);
}

// Walks with the steps and looks each path up again. Some paths are searched for, too, which takes
// the time of the whole tree.
class PathWalk {
 public:
  explicit PathWalk(ConstRef root) : root_(root) {}

  void run(ConstRef object, const std::string& path) {
    check(path, object, {}, 0);
    EXPECT_EQ(find(root_, path).item.object(), object) << path;
    for (const Row row : object.type().attributes()) {
      if (object.has(row)) check(path + "/@" + std::string(row.name()), object, row, 0);
    }
    for (const Item& item : object.children()) {
      std::string inner = path;
      item.append_step(&inner);
      check(inner, item.owner, item.row, item.index);
      if (const ConstRef child = item.object()) run(child, inner);
    }
  }

  std::set<std::string> paths;

 private:
  void check(const std::string& path, ConstRef owner, Row row, unsigned index) {
    const Found found = find(root_, path);
    ASSERT_TRUE(found) << path;
    if (row) {
      EXPECT_TRUE(paths.insert(path).second) << path;
      EXPECT_EQ(found.item.owner, owner) << path;
      EXPECT_EQ(found.item.row, row) << path;
      EXPECT_EQ(found.item.index, index) << path;
    }
    if (++count_ % 97 != 0) return;
    std::string searched;
    EXPECT_TRUE(row ? append_path(root_, owner, row, index, &searched)
                    : append_path(root_, owner, &searched));
    EXPECT_EQ(searched, path);
  }

  ConstRef root_;
  int count_ = 0;
};

TEST_P(Reflected, IsFoundByItsPaths) {
  PathWalk walk(document_);
  walk.run(document_, "Zol");
  EXPECT_GT(walk.paths.size(), 100u);
}

TEST_P(Reflected, IsAskedWithoutAllocation) {
  for (const Type type : all_types()) (void)type.untouched();
  // The first who asks for a text that was read has it widened.
  for_each_object(document_, [](ConstRef object) {
    for (const Row row : object.type().rows()) (void)object.value(row).text();
  });
  std::string text;
  text.reserve(1 << 20);
  std::size_t sum = 0;
  const long before = allocation_count();
  for_each_object(document_, [&](ConstRef object) {
    sum += object.type().name().size() + (object.is_complete() ? 1 : 0);
    for (const Row row : object.type().rows()) {
      sum += object.count(row) + row.name().size() + row.unit().size() + row.note().size();
      const Value value = object.value(row);
      sum += value.text().size() + value.bytes().size() + (value.truth() ? 1 : 0) +
             static_cast<std::size_t>(value.integer() & 1) + (value.number() > 0 ? 1 : 0) +
             static_cast<std::size_t>(value.date().get_year() & 1) + value.foreign().text.size() +
             (value.child() ? 1 : 0);
    }
    for (const Item& item : object.children()) {
      text.clear();
      item.value().append_text(&text);
      item.append_step(&text);
      sum += text.size();
    }
  });
  sum += find(document_, "Zol/Preamble/Header/ChangeHistory[1]") ? 1 : 0;
  EXPECT_EQ(allocation_count(), before);
  EXPECT_GT(sum, 1000u);
  (void)find_type("Zol").make();
  EXPECT_GT(allocation_count(), before) << "an allocation would have been noticed";
}

// --- Values --------------------------------------------------------------------------------------

TEST(Values, AreThoseOfTheAccessors) {
  const Zol document = loaded<Zol>(sample_bytes("named-colours"));
  const Header& header = document.get_Preamble().get_Header();
  const ConstRef seen(header);
  EXPECT_EQ(&seen.value(seen.type().row("Creator")).text(), &header.get_Creator());
  EXPECT_EQ(&seen.value(seen.type().row("ChangeHistory")).date(), &header.get_ChangeHistory(0));
  EXPECT_EQ(seen.value(seen.type().row("ReadSDKInformation")).child(),
            ConstRef(header.get_ReadSDKInformation()));
  EXPECT_FALSE(seen.value(seen.type().row("ChangeHistory"), header.size_ChangeHistory()));

  const auto& set = document.get_Palette(0).get_ColorSet(0);
  const Found found = find(document, "Zol/Palette[1]/ColorSet/Color[3]/ColorSpaceCIELab/L");
  ASSERT_TRUE(found);
  unsigned at = 0;
  const ColorType& color = set.get_Color(2);
  while (color.get_ColorSpace(at).getchosen() != sg_ColorSpace::chosen_ColorSpaceCIELab) ++at;
  EXPECT_EQ(found.item.value().number(), color.get_ColorSpace(at).get_ColorSpaceCIELab().get_L());
  EXPECT_EQ(found.item.owner.as<ColorSpaceCIELabType>(),
            &color.get_ColorSpace(at).get_ColorSpaceCIELab());
  EXPECT_EQ(found.item.owner.as<ColorSpaceRGBType>(), nullptr);
}

// Another kind of value is none.
TEST(Values, OfOtherKindsAreEmpty) {
  const ColorType color;
  const Value text = ConstRef(color).value(find_type("ColorType").row("ColorName"));
  EXPECT_EQ(text.number(), 0);
  EXPECT_EQ(text.integer(), 0);
  EXPECT_FALSE(text.truth());
  EXPECT_FALSE(text.child());
  EXPECT_EQ(text.number_in_enumeration(), 0);
  EXPECT_EQ(text.bytes().size(), 0u);
  EXPECT_EQ(Value().text(), L"");
  std::string none;
  Value().append_text(&none);
  EXPECT_EQ(none, "");
}

// UTF-16 that no document can hold ends where the writer ends it.
TEST(Values, EndAtALoneSurrogate) {
  TagValue tag;
  (void)tag.get_anon_TextValue().set_TextValue(L"a\xD800z");
  std::string text;
  ConstRef(tag.get_anon_TextValue())
      .value(find_type("anon_TextValue").row("TextValue"))
      .append_text(&text);
  EXPECT_EQ(text, "a");
}

TEST(Setting, GivesTheCodeOfTheFirstFacetThatFails) {
  const struct {
    const char* type;
    const char* row;
    const char* text;
    int code;
    const char* stored;  // after success
  } cases[] = {
      {"ReflectancePointType", "Wavelength", " 400.50\n", 0, "400.5"},
      {"ReflectancePointType", "Wavelength", "0", 37, ""},
      {"ReflectancePointType", "Wavelength", "400 nm", 35, ""},
      {"ReflectancePointType", "Wavelength", "", 35, ""},
      {"ReflectancePointType", "ReflectancePointType", "10", 36, ""},
      {"ReflectancePointType", "ReflectancePointType", "NaN", 37, ""},
      {"Averaging", "AveragingValue", "99", 0, "99"},
      {"Averaging", "AveragingValue", "1", 37, ""},
      {"Averaging", "AveragingValue", "100", 36, ""},
      {"Averaging", "AveragingValue", "99999999999999999999999", 36, ""},
      {"Averaging", "AveragingValue", "5.5", 35, ""},
      {"Averaging", "Averaging", "1", 0, "true"},
      {"Averaging", "Averaging", "TRUE", 35, ""},
      {"DeviceSettings", "Aperture", "0", 37, ""},  // which the accessor lets pass
      {"Header", "ChangeHistory", "2020-01-01T10:00:00Z", 0, "2020-01-01T10:00:00Z"},
      {"Header", "ChangeHistory", "2020-01-01T10:00:00", 22, ""},
      {"Header", "ChangeHistory", "2020-01-01", 35, ""},
      {"Header", "Creator", " a \t b ", 0, " a \t b "},
      {"Header", "Creator", "\xC2\x85\xE2\x80\xA8\xF0\x9F\x8E\xA8", 0,
       "\xC2\x85\xE2\x80\xA8\xF0\x9F\x8E\xA8"},
      {"Header", "Creator", "a\xC3", 6, ""},
      {"Header", "Creator", "\xED\xA0\x80", 6, ""},
      {"Header", "Creator", "\xC0\x80", 6, ""},
      {"Header", "WriteSDKInformation", "x", 42, ""},
      {"FloatingPointValueType", "AxisNominalScale", "Scale_log", 38, ""},
      {"FloatingPointValueType", "AxisNominalScale", " Scale_Linear", 38, ""},
      {"ProfileFile", "ProfileFile", " AQID\n", 0, "AQID"},
      {"ProfileFile", "ProfileFile", "A", 35, ""},
      {"GeometryChoiceType", "Angle", "45", 0, "45"},
      {"GeometryChoiceType", "Angle", "x", 35, ""},
      {"GeometryChoiceType", "SphereGeometry", "Sphere_Included", 0, "Sphere_Included"},
      {"GeometryChoiceType", "BSDFAngle", "1", 42, ""},
  };
  for (const auto& expected : cases) {
    const std::string text = expected.text;
    SCOPED_TRACE(std::string(expected.type) + '/' + expected.row + " '" + text + '\'');
    const Type type = find_type(expected.type);
    const auto object = type.make();
    const Ref changed(*object);
    const Row row = type.row(expected.row);
    ASSERT_TRUE(row);
    EXPECT_EQ(changed.set_text(row, text), expected.code);
    EXPECT_EQ(ConstRef(changed).has(row), expected.code == 0) << "a failure stores nothing";
    std::string stored;
    if (expected.code == 0) ConstRef(changed).value(row).append_text(&stored);
    EXPECT_EQ(stored, expected.stored);
  }
}

// Passes over every fault and keeps the first of one value.
class FacetReader : public lmx::c_xml_reader_memory {
 public:
  // The item is what faults of the value are blamed on. The text must outlive the reader.
  FacetReader(const std::string& text, std::string item)
      : c_xml_reader_memory(text.data(), text.size()), item_(std::move(item)) {}
  using c_xml_reader_memory::user_handle_error;

  lmx::elmx_error user_handle_error(lmx::elmx_error code, const std::string& item, const char*,
                                    int) override {
    if (first == lmx::elmx_ok && item == item_) first = code;
    return lmx::elmx_ok;
  }

  lmx::elmx_error first = lmx::elmx_ok;

 private:
  std::string item_;
};

// Reads an object that has nothing but this value, and gives what the reader finds wrong with it.
lmx::elmx_error code_of_reader(Type type, Row row, const std::string& text) {
  const std::string name(row.name());
  std::string item = row.place() == Place::content ? "Zol:x" : "Zol:" + name;
  std::string whole = "<Zol:x><" + item + '>' + text + "</" + item + "></Zol:x>";
  if (row.place() == Place::content) whole = "<Zol:x>" + text + "</Zol:x>";
  if (row.is_attribute()) {
    whole = "<Zol:x " + name + "='" + text + "'/>";
    item = name;
  }
  FacetReader reader(whole, item);
  reader.add_namespace_mapping("Zol", k_uri);
  reader.set_ns_map(Zol::ns_map());
  const lmx::c_xml_reader_local scope(reader);
  lmx::elmx_error error = lmx::elmx_ok;
  reader.get_element_event(nullptr, &error, &reader.name);
  const auto object = type.make();
  (void)Ref(*object).read(reader, reader.name);
  return reader.first;
}

TEST(Setting, JudgesEachRowAsTheReaderDoes) {
  const char* const texts[] = {"",
                               "0",
                               "1",
                               "-1",
                               " 5 ",
                               "5.",
                               "1.5",
                               "100",
                               "101",
                               "360",
                               "1e400",
                               "-1e-400",
                               "NaN",
                               "-INF",
                               "+3",
                               "0x10",
                               "2147483648",
                               "-2147483649",
                               "99999999999999999999",
                               "true",
                               " false ",
                               "yes",
                               "2020-01-01T10:00:00Z",
                               "2020-01-01T10:00:00",
                               "2020-01-01",
                               "AQID",
                               "AQI",
                               "a b",
                               "ab",
                               "\xE8\x97\x8D",
                               "\xF0\x9F\x8E\xA8",
                               "Scale_Log",
                               "Spectrum_Custom",
                               "Status_A"};
  int refused = 0;
  for (const Type type : all_types()) {
    // What stands around a group's value is read with the class that has the group.
    if (type.is_transparent()) continue;
    for (const Row row : type.rows()) {
      if (!row.is_simple()) continue;
      for (const char* const text : texts) {
        const auto object = type.make();
        const lmx::elmx_error code = Ref(*object).set_text(row, text);
        EXPECT_EQ(code, code_of_reader(type, row, text))
            << type.name() << '/' << row.name() << " '" << text << '\'';
        if (code != lmx::elmx_ok) ++refused;
      }
    }
  }
  EXPECT_GT(refused, 1000);
}

TEST(Setting, CollapsesWhereTheRowSaysSo) {
  int count = 0;
  for (const Type type : all_types()) {
    for (const Row text : type.rows()) {
      if (text.kind() != Kind::text || !text.collapses()) continue;
      const auto object = type.make();
      ASSERT_EQ(Ref(*object).set_text(text, " a \t\n b "), 0);
      EXPECT_EQ(ConstRef(*object).value(text).text(), L"a b") << type.name();
      ++count;
    }
  }
  EXPECT_GE(count, 3);
}

TEST(Setting, KeepsAnEntryThatIsRefused) {
  Header header;
  const Ref changed(header);
  const Row row = find_type("Header").row("ChangeHistory");
  ASSERT_EQ(changed.set_text(row, "2020-01-01T10:00:00Z"), 0);
  ASSERT_EQ(changed.set_text(row, "2021-01-01T10:00:00Z"), 0);
  EXPECT_EQ(changed.set_text(row, 1, "yesterday"), 35);
  EXPECT_EQ(changed.set_text(row, 2, "2022-01-01T10:00:00Z"), 42);
  EXPECT_EQ(header.get_ChangeHistory(1).get_year(), 2021);
  EXPECT_EQ(changed.set_text(row, 1, "2022-01-01T10:00:00Z"), 0);
  EXPECT_EQ(header.get_ChangeHistory(1).get_year(), 2022);
  EXPECT_TRUE(changed.remove(row, 0));
  EXPECT_FALSE(changed.remove(row, 1));
  EXPECT_EQ(header.size_ChangeHistory(), 1u);
  EXPECT_TRUE(changed.unset(row));
  EXPECT_EQ(header.size_ChangeHistory(), 0u);
}

TEST(Changing, UnsetsWhatIsNotRequired) {
  ColorType color;
  (void)color.set_ColorName(L"n");
  (void)color.set_Comments(L"c");
  const Ref changed(color);
  const Type type = changed.type();
  EXPECT_FALSE(changed.unset(type.row("ColorName")));
  EXPECT_TRUE(changed.unset(type.row("Comments")));
  EXPECT_FALSE(color.isset_Comments());
  EXPECT_TRUE(changed.child(type.row("Substrate")));
  EXPECT_TRUE(color.isset_Substrate());
  EXPECT_TRUE(changed.unset(type.row("Substrate")));
  EXPECT_FALSE(color.isset_Substrate());
  EXPECT_FALSE(changed.set_nil(true));

  GeometryChoiceType geometry;
  (void)geometry.get_BSDFAngle().set_Aspecular(1);
  const Ref choice(geometry);
  EXPECT_TRUE(choice.unset(choice.type().row("Angle")));
  EXPECT_EQ(geometry.getchosen(), GeometryChoiceType::chosen_BSDFAngle);
  EXPECT_TRUE(choice.unset(choice.type().row("BSDFAngle")));
  EXPECT_EQ(geometry.getchosen(), GeometryChoiceType::chosen_none);
  EXPECT_FALSE(ConstRef(geometry).chosen());
}

TEST(Changing, ChoosesMembersAndTheirTypes) {
  ColorType color;
  const Ref changed(color);
  const Row spaces = changed.type().row("ColorSpace");
  const Ref holder = changed.append(spaces);
  const Row cmyk = holder.type().row("ColorSpaceCMYK");
  const Type more = find_type("ColorSpaceCMYKPlusNType");
  EXPECT_EQ(holder.choose(cmyk).type(), cmyk.type());
  EXPECT_EQ(holder.choose(cmyk, more).type(), more);
  EXPECT_FALSE(holder.choose(cmyk, find_type("ColorSpaceRGBType")));
  EXPECT_FALSE(holder.choose(holder.type().row("ColorSpaceRGB"), more));
  EXPECT_EQ(color.get_ColorSpace(0).getchosen(), sg_ColorSpace::chosen_ColorSpaceCMYK);
  EXPECT_FALSE(changed.append(changed.type().row("Comments")));
  EXPECT_FALSE(changed.child(spaces, 1));
  EXPECT_FALSE(changed.choose(spaces));
}

TEST(Reading, TakesAMemberOrLeavesIt) {
  const auto outcome = [](const std::string& text) {
    lmx::c_xml_reader_memory reader(text.data(), text.size());
    reader.add_namespace_mapping("Zol", k_uri);
    reader.set_ns_map(Zol::ns_map());
    const lmx::c_xml_reader_local scope(reader);
    lmx::elmx_error error = lmx::elmx_ok;
    reader.get_element_event(nullptr, &error, &reader.name);
    anon_TextValue group;
    const bool is_read = Ref(group).read_member(reader, &reader.name, &error);
    return std::to_string(group.getchosen()) + (is_read ? " read " : " left ") +
           std::to_string(error);
  };
  EXPECT_EQ(outcome("<Zol:NumberValue>1.5</Zol:NumberValue><Zol:x/>"), "1 read 0");
  EXPECT_EQ(outcome("<Zol:NumberValue>x</Zol:NumberValue><Zol:x/>"), "2 left 35");
  EXPECT_EQ(outcome("<Zol:Number>1</Zol:Number>"), "2 left 0");
}

// --- Paths ---------------------------------------------------------------------------------------

TEST(Paths, LeadSomewhereOrSayWhyNot) {
  Zol document;
  for (int i = 0; i < 3; ++i) (void)document.append_Color();
  ColorType& color = document.get_Color(1);
  (void)color.set_ColorName(L"second");
  for (int i = 0; i < 3; ++i) {
    (void)color.append_ColorSpace();
    if (i != 1) (void)color.back_ColorSpace().get_ColorSpaceCIELab().set_L(50 + i);
  }
  (void)color.append_ColorSpace();  // holds nothing
  (void)color.get_ColorSpace(1).get_ColorSpaceSpectral().get_ReflectancePoint(0).set_Wavelength(9);

  const struct {
    const char* path;
    PathError error;
    std::size_t at;
    const char* text;
  } cases[] = {
      {"Zol", PathError::none, 0, ""},
      {"Zol[1]/Color[2]/@ColorName", PathError::none, 16, "second"},
      {"Zol/Color[2]/ColorSpaceCIELab/L", PathError::none, 30, "50"},
      {"Zol/Color[2]/ColorSpaceCIELab[2]/L", PathError::none, 33, "52"},
      {"Zol/Color[2]/ColorSpaceSpectral/ReflectancePoint/@Wavelength", PathError::none, 49, "9"},
      {"Zol/Color[2]/ColorSpaceCIELab[3]", PathError::not_there, 13, ""},
      {"Zol/Color[2]/ColorSpaceRGB", PathError::not_there, 13, ""},
      {"Zol/Color[2]/ColorSpace", PathError::no_such_row, 13, ""},
      {"Zol/Color[4]", PathError::not_there, 4, ""},
      {"Zol/Color[0]", PathError::malformed, 4, ""},
      {"Zol/Color[2", PathError::malformed, 4, ""},
      {"Zol/Color[2]x", PathError::malformed, 4, ""},
      {"Zol/Color[-1]", PathError::malformed, 4, ""},
      {"Zol/Color[99999999999]", PathError::malformed, 4, ""},
      {"Zol/Color[2]/@ColorName[1]", PathError::malformed, 13, ""},
      {"Zol/Color[2]/@ColorName/x", PathError::no_such_row, 24, ""},
      {"Zol/Color[2]/ColorName", PathError::no_such_row, 13, ""},
      {"Zol/Color[2]/@Comments", PathError::not_there, 13, ""},
      {"Zol/text()", PathError::no_such_row, 4, ""},
      {"Zol/", PathError::malformed, 4, ""},
      {"/Zol", PathError::malformed, 0, ""},
      {"", PathError::malformed, 0, ""},
      {"Header", PathError::other_root, 0, ""},
      {"Zol[2]", PathError::other_root, 0, ""},
  };
  for (const auto& expected : cases) {
    SCOPED_TRACE(expected.path);
    const Found found = find(document, expected.path);
    EXPECT_EQ(found.error, expected.error);
    EXPECT_EQ(found.at, expected.at);
    std::string text;
    if (found && found.item.row) found.item.value().append_text(&text);
    EXPECT_EQ(text, expected.text);
  }

  const Ref changed = find_object(document, "Zol/Color[2]/ColorSpaceCIELab[2]");
  ASSERT_TRUE(changed);
  EXPECT_EQ(changed.as<ColorSpaceCIELabType>()->get_L(), 52);
  EXPECT_FALSE(find_object(document, "Zol/Color[2]/@ColorName"));

  std::string path;
  EXPECT_FALSE(append_path(document, ConstRef(Zol()), &path));
  EXPECT_EQ(path, "");
  const sg_ColorSpace& holder = color.get_ColorSpace(2);
  EXPECT_TRUE(append_path(document, ConstRef(holder), &path));
  EXPECT_EQ(path, "Zol/Color[2]");
  path.clear();
  EXPECT_TRUE(append_path(document, ConstRef(holder),
                          find_type("sg_ColorSpace").row("ColorSpaceCIELab"), 0, &path));
  EXPECT_EQ(path, "Zol/Color[2]/ColorSpaceCIELab[2]");
}

// What a nilled element holds in memory is not in its document.
TEST(Paths, EndAtANilledElement) {
  ColorSpaceSRGBType space;
  auto& specification = space.get_ColorSpaceSpecificationSpectrumTristimulus();
  (void)specification.append_ChangeHistory(lmx::c_datetime("2026-01-02T03:04:05Z"));
  const std::string path =
      "ColorSpaceSRGBType/ColorSpaceSpecificationSpectrumTristimulus/ChangeHistory[1]";
  EXPECT_TRUE(find(space, path));
  specification.setnil_ColorSpaceSpecificationSpectrumTristimulus();
  EXPECT_EQ(find(space, path).error, PathError::not_there);
  EXPECT_TRUE(find(space, path.substr(0, path.rfind('/'))));
}

}  // namespace
}  // namespace zol_test
