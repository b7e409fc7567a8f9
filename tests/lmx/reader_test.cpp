#include "lmx/reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "lmx/internal/reader_state.h"
#include "lmx/xml_support.h"
#include "support/processor_time.h"

namespace lmx::test {
namespace {

constexpr char k_uri[] = "http://example.org/one";
constexpr s_ns_map k_ns_map[] = {{1000, "one", k_uri}, {0, nullptr, nullptr}};
constexpr s_event_map k_elements[] = {{1000, "Name", 4, 12},
                                      {1000, "Names", 5, 13},
                                      {1, "Plain", 5, 14},
                                      {1000, "Last", 4, 15},
                                      {0, nullptr, 0, 1}};
constexpr s_event_map k_attributes[] = {{1, "id", 2, 20}, {1000, "id", 2, 21}, {0, nullptr, 0, 1}};

// A reader on a document, with its ids fixed.
class Fixture {
 public:
  explicit Fixture(const std::string& document)
      : document_(document), reader(document_.data(), document_.size()), local_(nullptr) {
    reader.set_ns_map(k_ns_map);
    local_ = std::make_unique<c_xml_reader_local>(reader);
  }

  int next(const s_event_map* map = k_elements) {
    error = elmx_ok;
    reader.get_element_event(map, &error, &reader.name);
    return reader.get_current_event();
  }
  bool next_attribute(const s_event_map* map = k_attributes) {
    return reader.get_attribute_event(map, &error, &reader.attribute_name);
  }
  std::string simple(elmx_whitespace mode = elmx_collapse) {
    error = elmx_ok;
    const bool is_good =
        reader.get_simple_type_value(reader.name, mode, &reader.value, &error, &empty);
    return (is_good ? "" : "!" + std::to_string(error) + " ") + reader.value;
  }

 private:
  std::string document_;

 public:
  c_xml_reader_memory reader;
  elmx_error error = elmx_ok;
  bool empty = false;

 private:
  std::unique_ptr<c_xml_reader_local> local_;
};

const std::string k_open = "<o:r xmlns:o='http://example.org/one' xmlns='http://example.org/two'>";

TEST(Reader, EventsComeFromUriAndLocalName) {
  const struct {
    const char* tag;
    int event;
  } k_rows[] = {
      {"<o:Name/>", 12},
      {"<o:Names/>", 13},
      {"<Name xmlns='http://example.org/one'/>", 12},
      {"<x:Last xmlns:x='http://example.org/one'/>", 15},
      {"<o:name/>", 1},
      {"<o:Nam/>", 1},
      {"<Name/>", 1},
      {"<none:Name/>", 1},
      {"<Plain/>", 1},
      {"<Plain xmlns=''/>", 14},
      {"<:Plain/>", 1},
      {"<none:Plain/>", 1},
  };
  for (const auto& row : k_rows) {
    Fixture f(k_open + row.tag);
    ASSERT_EQ(f.next(), 1);
    ASSERT_FALSE(f.next_attribute());
    const c_xml_reader_local inner(f.reader);
    EXPECT_EQ(f.next(), row.event) << row.tag;
    EXPECT_TRUE(f.reader.is_current_event_tokenisable());
    EXPECT_EQ(f.error, elmx_ok);
  }
}

TEST(Reader, AttributesIgnoreTheDefaultNamespace) {
  Fixture f(
      "<r xmlns='http://example.org/one' xmlns:o='http://example.org/one'"
      " xmlns:i='http://www.w3.org/2001/XMLSchema-instance' id='1' o:id='2' x:id='3'"
      " i:type='4' i:nil='5' i:schemaLocation='6' i:noNamespaceSchemaLocation='7' i:x='8'/>");
  ASSERT_EQ(f.next(nullptr), elxp_name);
  const int k_events[] = {20,
                          21,
                          1,
                          elxp_xsi_type,
                          elxp_xsi_nil,
                          elxp_xsi_schema_location,
                          elxp_xsi_no_namespace_schema_location,
                          1};
  int number = 0;
  for (const int event : k_events) {
    ASSERT_TRUE(f.next_attribute());
    EXPECT_EQ(f.reader.get_current_event(), event) << f.reader.attribute_name;
    EXPECT_EQ(f.reader.is_xsi_attribute(f.reader.attribute_name), number >= 3);
    ASSERT_TRUE(f.reader.get_attribute_value(&f.reader.value, elmx_collapse));
    EXPECT_EQ(f.reader.value, std::to_string(++number));
  }
  EXPECT_FALSE(f.next_attribute());
  EXPECT_EQ(f.reader.get_current_event(), elxp_end_tag);
  EXPECT_FALSE(f.reader.is_current_event_tokenisable());
}

TEST(Reader, SiblingsDoNotShareDeclarations) {
  Fixture f("<r><p:Name xmlns:p='http://example.org/one'/><p:Name/></r>");
  f.next();
  f.next_attribute();
  const c_xml_reader_local inner(f.reader);
  EXPECT_EQ(f.next(), 12);
  EXPECT_FALSE(f.next_attribute());
  EXPECT_EQ(f.next(), 1);
  EXPECT_EQ(f.reader.get_ns_id(), 0);
  EXPECT_EQ(f.reader.get_element_ns_id(), 0);
}

TEST(Reader, SimpleValues) {
  const struct {
    const char* document;
    const char* value;
    bool empty;
    int next;
  } k_rows[] = {
      {"<a>1</a>", "1", false, 0},
      {"<a b='c' > 1\n 2 </a >", "1 2", false, 0},
      {"<a/>", "", true, 0},
      {"<a></a>", "", false, 0},
      {"<a>1<!-- c -->2</a><b/>", "12", false, 7},
      {"<a>&#49;</a>", "1", false, 0},
      {"<a>\xC3\xA9</a>", "\xC3\xA9", false, 0},
      {"<a>1</b>", "!10 1", false, 5},
      {"<a>1<b/></a>", "!10 1", false, 5},
      {"<a>&no;</a>", "!29 &no;", false, 6},
      {"<a>1", "!29 1", false, 0},
      {"<a / x>1</a>", "!11 ", true, 5},
      {"<a \"", "!11 ", false, 0},
  };
  for (const auto& row : k_rows) {
    Fixture f(row.document);
    f.next(nullptr);
    EXPECT_EQ(f.simple(), row.value) << row.document;
    EXPECT_EQ(f.empty, row.empty) << row.document;
    // The event is as it was until the next one.
    EXPECT_EQ(f.reader.get_current_event(), elxp_name) << row.document;
    EXPECT_EQ(f.next(nullptr), row.next) << row.document;
  }
}

TEST(Reader, ValuesOfAnyContent) {
  const struct {
    const char* document;
    const char* value;
    int error;
  } k_rows[] = {
      {"<a>x <b c='1'>&amp;</b> </a>", "x <b c='1'>&amp;</b> ", 0},
      {"<a/>", "", 0},
      {"<a>x</b>", "x", 10},
      {"<a>x<b></a>", "x<b>", 29},
  };
  for (const auto& row : k_rows) {
    Fixture f(row.document);
    f.next(nullptr);
    EXPECT_EQ(f.reader.get_element_ur_value("a", &f.reader.value, &f.error, &f.empty),
              row.error == 0);
    EXPECT_EQ(f.reader.value, row.value) << row.document;
    EXPECT_EQ(f.error, row.error) << row.document;
  }
}

TEST(Reader, ErrorsOfEvents) {
  const struct {
    const char* document;
    int event;
    int error;
  } k_rows[] = {
      {"", 0, 34},
      {"abc", 0, 34},  // the code of the fatal report is in get_error()
      {"<", 3, 23},
      {"<!x>", 3, 0},  // no report, but an error all the same
  };
  for (const auto& row : k_rows) {
    Fixture f(row.document);
    EXPECT_EQ(f.next(), row.event) << row.document;
    EXPECT_EQ(f.error, row.error) << row.document;
    EXPECT_FALSE(f.reader.is_current_event_tokenisable());
  }
  Fixture f("abc");
  f.next();
  EXPECT_EQ(f.reader.get_error(), elmx_bad_char_encoding);
  // An element event leaves the error alone, an attribute event clears it.
  Fixture g("<a x");
  g.error = elmx_undefined;
  g.reader.get_element_event(nullptr, &g.error, &g.reader.name);
  EXPECT_EQ(g.error, elmx_unexpected_end);
  Fixture h("<a>");
  h.error = elmx_undefined;
  h.reader.get_element_event(nullptr, &h.error, &h.reader.name);
  EXPECT_EQ(h.error, elmx_undefined);
  EXPECT_FALSE(h.next_attribute());
  EXPECT_EQ(h.error, elmx_ok);
  Fixture i("<a \"");
  i.next();
  EXPECT_TRUE(i.next_attribute());
  EXPECT_EQ(i.error, elmx_not_well_formed);
}

// The handler has the last word, and the message is built from what it was told and what it left.
TEST(Reader, HandlesErrors) {
  class Handler : public c_xml_reader_memory {
   public:
    using c_xml_reader_memory::c_xml_reader_memory;
    elmx_error user_handle_error(elmx_error code) override {
      return code == elmx_undefined ? elmx_ok : elmx_user_defined_1;
    }
  };
  const std::string document = "<a\n/>";
  Handler handler(document.data(), document.size());
  std::string message;
  EXPECT_EQ(handler.get_error_message(&message), "No Error");
  EXPECT_EQ(handler.handle_error(elmx_undefined, "x", "file", 1), elmx_ok);
  EXPECT_EQ(handler.get_error_message(&message), "No Error");
  EXPECT_EQ(handler.handle_error(elmx_no_file, "y", "file", 1), elmx_user_defined_1);
  EXPECT_EQ(&handler.get_error_message(&message), &message);
  EXPECT_EQ(message, "line:1-'y'-User defined error 1");
  EXPECT_EQ(handler.get_error_item_name(), "y");
  EXPECT_EQ(handler.get_error(), elmx_ok);

  Fixture f("<o:r\n\n/>");
  f.next();
  f.reader.handle_error(elmx_unexpected_attribute, "Zol:Color", "", 0);
  f.reader.get_error_message(&message);
  // The line feed after the name is read twice.
  EXPECT_EQ(message, "line:4-'Zol:Color'-Unexpected attribute");
}

TEST(Reader, NamespacesAndQualifiedNames) {
  Fixture f("<r xmlns:o='http://example.org/one' xmlns:n=''/>");
  f.reader.add_namespace_mapping("m", "mapped");
  f.reader.set_ns_map(k_ns_map);
  f.next();
  const struct {
    const char* name;
    const char* uri;
    bool is_valid;
  } k_rows[] = {
      {"o:a", k_uri, true},
      {"m:a", "mapped", true},
      {"xml:lang", "http://www.w3.org/XML/1998/namespace", true},
      {"a", " ", false},  // no default namespace
      {"x:a", " ", false},
      {"o:", k_uri, false},
      {"o:1", k_uri, false},
      {"o:a:b", k_uri, false},
      {"o:\xC3\xA9.-_1", k_uri, true},
      {"o:a b", k_uri, false},
      {":a", " ", false},
      {"", " ", false},
  };
  for (const auto& row : k_rows) {
    std::string uri;
    f.reader.get_namespace(row.name, &uri);
    EXPECT_EQ(uri, row.uri) << row.name;
    EXPECT_EQ(f.reader.is_valid_qname(row.name), row.is_valid) << row.name;
  }
  f.reader.add_default_namespace_mapping("mapped");
  f.reader.set_ns_map(k_ns_map);
  std::string uri;
  f.reader.get_namespace("a", &uri);
  EXPECT_EQ(uri, "mapped");
  EXPECT_TRUE(f.reader.is_valid_qname("a"));
  const c_xml_reader_local inner(f.reader);
  f.reader.get_reader_local()->add_namespace("", 1);
  f.reader.get_namespace("a", &uri);
  EXPECT_EQ(uri, "");
}

TEST(Reader, LooksAheadAtAttributes) {
  const std::string xsi = " xmlns:i='http://www.w3.org/2001/XMLSchema-instance'";
  const struct {
    std::string tag;
    bool is_found;
    int id;
    const char* name;
  } k_rows[] = {
      {"<a b='1' i:type='o:T' xmlns:o='http://example.org/one'" + xsi + "/>", true, 1000, "T"},
      {"<a i:type='T'" + xsi + "/>", true, 1, "T"},
      {"<a i:type='T' xmlns='http://example.org/one'" + xsi + "/>", true, 1000, "T"},
      {"<a i:type='x:T'" + xsi + "/>", true, 0, "T"},
      {"<a type='T' x:type='T'" + xsi + "/>", false, -1, ""},
      {"<a i:type='&no;'" + xsi + "/>", false, -1, ""},
      {"<a/>", false, -1, ""},
  };
  for (const auto& row : k_rows) {
    Fixture f(row.tag);
    f.next();
    int id = -1;
    std::string name;
    EXPECT_EQ(f.reader.get_xsi_type(&id, &name), row.is_found) << row.tag;
    EXPECT_EQ(id, row.id) << row.tag;
    EXPECT_EQ(name, row.name) << row.tag;
  }
  Fixture f("<a b='1' c='2'/>");
  f.next();
  EXPECT_TRUE(f.reader.get_named_attribute(1, "c", &f.reader.value));
  EXPECT_EQ(f.reader.value, "2");
  EXPECT_TRUE(f.next_attribute());  // the first again
  EXPECT_EQ(f.reader.attribute_name, "b");
}

TEST(Reader, PassesElementsThatNobodyKnows) {
  constexpr s_known_elements k_known[] = {{1000, "Outer", 5}, {0, nullptr, 0}};
  Fixture f(k_open + "<x>1<y/></x> <o:Other><o:Name/></o:Other><o:Name/><o:Outer/><z></q>");
  f.next();
  f.next_attribute();
  EXPECT_EQ(f.reader.get_known_elements(), nullptr);
  {
    const c_known_elements_selector selector(f.reader, k_known);
    const c_xml_reader_local inner(f.reader);
    const auto next_known = [&] {
      f.error = elmx_ok;
      f.reader.get_known_element_event(k_elements, &f.error, &f.reader.name);
      return f.reader.get_current_event();
    };
    EXPECT_EQ(next_known(), 12);
    f.reader.skip_rest_of_element(f.reader.name);
    EXPECT_EQ(next_known(), 1);
    EXPECT_EQ(f.reader.name, "o:Outer");
    f.reader.skip_rest_of_element(f.reader.name);
    next_known();
    EXPECT_EQ(f.error, elmx_badly_formed);
  }
  EXPECT_EQ(f.reader.get_known_elements(), nullptr);
}

TEST(Reader, NameStackKeepsWholeNames) {
  c_string_stack stack;
  const std::string long_name(1000, 'n');
  {
    const c_string_stack_node outer(stack, "Zol:Outer");
    EXPECT_EQ(stack.get_stack_size(), 10u);
    {
      const c_string_stack_node inner(stack, long_name);
      EXPECT_TRUE(inner == long_name);
      EXPECT_STREQ(inner.get_str(), long_name.c_str());
    }
    EXPECT_EQ(stack.get_stack_size(), 10u);
    EXPECT_TRUE(outer == "Zol:Outer");
    EXPECT_TRUE(outer != "Zol:Oute");
    EXPECT_TRUE(outer != "Zol:Outer2");
  }
  EXPECT_EQ(stack.get_stack_size(), 0u);
}

TEST(Reader, PeeksAtTheRootsNamespace) {
  const struct {
    const char* document;
    bool result;
    const char* uri;
  } k_rows[] = {
      {"<!-- c --><x:r xmlns:x='u'>", true, "u"},
      {"<r xmlns='u'/>", true, "u"},
      {"<r xmlns=''/>", true, ""},
      {"<r/>", false, " "},
      {"<x:r/>", false, " "},
      {"text", false, "as it was"},
      {" text", false, "as it was"},
  };
  for (const auto& row : k_rows) {
    const std::string document = row.document;
    c_xml_reader_memory reader(document.data(), document.size());
    std::string uri = "as it was";
    EXPECT_EQ(get_instance_namespace(reader, &uri), row.result) << row.document;
    EXPECT_EQ(uri, row.uri) << row.document;
    if (document[0] != '<') continue;
    // The document can be read from its start.
    elmx_error error = elmx_ok;
    reader.set_ns_map(k_ns_map);
    reader.get_element_event(nullptr, &error, &reader.name);
    EXPECT_EQ(reader.get_current_event(), elxp_name) << row.document;
  }
}

TEST(Reader, ScansForMustUnderstand) {
  const struct {
    const char* document;
    int result;
  } k_rows[] = {
      {"<r xmlns:m='u' m:must='1'/>", 2},
      {"<r xmlns:m='u' must='1' m:other='1'/>", 0},
      {"<r><a/>text<a><b xmlns:m='u' m:must='true'/></a></r>", 2},
      {"<r><a xmlns:m='u' m:must='0'></a><m:a m:must='1'/></r>", 0},
      {"<r xmlns:m='u'><a xmlns:m='v' m:must='1'/><a m:must='false'/></r>", 0},
      {"<r xmlns:m='u' m:must='TRUE'/>", 1},
      {"<r xmlns:m='u' m:must='&no;'/>", 1},
      {"<r><a></b></r>", 1},
      {"<r><a>", 1},
      {"<r \"", 1},
      {"text", 1},
  };
  for (const auto& row : k_rows) {
    const std::string document = row.document;
    c_xml_reader_memory reader(document.data(), document.size());
    EXPECT_EQ(has_must_understand(reader, "u", "must", bool_must_understand), row.result)
        << row.document;
  }
  std::string nested;
  for (int i = 0; i < 200000; ++i) nested += "<b>";
  on_small_stack([&] {
    c_xml_reader_memory reader(nested.data(), nested.size());
    EXPECT_EQ(has_must_understand(reader, "u", "must", bool_must_understand), 1);
  });
}

TEST(Reader, GuardsTheDepthOfElements) {
  Fixture f("<a/>");
  std::vector<std::unique_ptr<internal::ElementDepthGuard>> guards;
  for (int i = 0; i < 512; ++i) {
    guards.push_back(std::make_unique<internal::ElementDepthGuard>(f.reader));
    EXPECT_TRUE(guards.back()->ok());
  }
  EXPECT_EQ(f.reader.get_error(), elmx_ok);
  const internal::ElementDepthGuard one_more(f.reader);
  EXPECT_FALSE(one_more.ok());
  elmx_error_type type;
  elmx_error code;
  int line;
  ASSERT_TRUE(f.reader.get_error_info(&type, &code, &line));
  EXPECT_EQ(type, elmx_fatal);
  EXPECT_EQ(code, elmx_not_well_formed);
  EXPECT_EQ(f.next(), elxp_end_of_input);
}

TEST(Reader, ReadsFiles) {
  const TempFile temp("<r>1</r>");
  c_xml_reader_file missing("/nonexistent/zol");
  EXPECT_FALSE(missing.is_open());
  const std::string path = temp.path();
  c_xml_reader_file by_path(path.c_str());
  c_xml_reader_file by_wide_path(std::wstring(path.begin(), path.end()).c_str());
  c_xml_reader_file by_handle(std::fopen(temp.path(), "rb"));
  for (c_xml_reader_file* const reader : {&by_path, &by_wide_path, &by_handle}) {
    ASSERT_TRUE(reader->is_open());
    elmx_error error = elmx_ok;
    reader->get_element_event(nullptr, &error, &reader->name);
    EXPECT_EQ(reader->name, "r");
  }
  EXPECT_EQ(by_path.get_source_id(), path);
}

// A document whose names of every kind are as many as there can be of them.
std::string document_of_names(int count) {
  std::string document = "<!DOCTYPE r [";
  for (int i = 0; i < count; ++i) document += "<!ENTITY e" + std::to_string(i) + " 'x'>";
  document += "]><r";
  for (int i = 0; i < count; ++i) document += " a" + std::to_string(i) + "='&e7;'";
  for (int i = 0; i < count / 4; ++i) {
    document += " xmlns:p" + std::to_string(i) + "='u" + std::to_string(i) + "'";
  }
  document += ">";
  for (int i = 0; i < count / 4; ++i) {
    document += "<p" + std::to_string(i) + ":c p" + std::to_string(i) + ":must='0'/>";
  }
  return document + "</r>";
}

// Processor time for a scan of the whole document, the better of two.
double seconds_to_scan(int count) {
  const std::string document = document_of_names(count);
  const std::string uri = "u" + std::to_string(count / 4 - 1);
  double best = 1e9;
  for (int run = 0; run < 2; ++run) {
    const double begin = zol_test::processor_seconds();
    c_xml_reader_memory reader(document.data(), document.size());
    EXPECT_EQ(has_must_understand(reader, uri, "must", bool_must_understand), 0);
    best = std::min(best, zol_test::processor_seconds() - begin);
  }
  return best;
}

// Chosen names must not make a document quadratic. Sixteen times the names take somewhat more than
// as many times as long, since the indexes are ordered; their square would be 256.
TEST(Reader, StaysLinear) {
  const double once = seconds_to_scan(12'500);
  EXPECT_LT(seconds_to_scan(200'000), 64 * std::max(once, 0.002));
}

}  // namespace
}  // namespace lmx::test
