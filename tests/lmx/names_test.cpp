#include "lmx/names.h"

#include <gtest/gtest.h>

#include <string>

#include "lmx/tokeniser.h"

namespace lmx {
namespace {

constexpr char k_xsi[] = "http://www.w3.org/2001/XMLSchema-instance";
constexpr char k_xml[] = "http://www.w3.org/XML/1998/namespace";

TEST(Repository, ReplacesInPlaceAndFindsTheFirstPairOfAValue) {
  c_repository<int> ids;
  ids.add("b", 7);
  ids.add("a", 7);
  EXPECT_STREQ(ids.find_key(7), "b");
  ids.add("b", 8);
  EXPECT_STREQ(ids.find_key(7), "a");
  EXPECT_EQ(ids.size(), 2u);
  int id = 0;
  EXPECT_TRUE(ids.find("b", &id));
  EXPECT_EQ(id, 8);
  EXPECT_FALSE(ids.find("B", &id));
  EXPECT_EQ(ids.find_key(9), nullptr);
  ids.clear();
  EXPECT_FALSE(ids.contains("a"));
}

TEST(Repository, OwnsItsTexts) {
  c_repository<const char*> texts;
  std::string text = "one";
  texts.add("k", text.c_str());
  text = "two";
  const char* found = nullptr;
  ASSERT_TRUE(texts.find("k", &found));
  EXPECT_STREQ(found, "one");
  EXPECT_STREQ(texts.find_key("one"), "k");

  const char* displaced = nullptr;
  texts.add("k", "two", &displaced);
  EXPECT_EQ(displaced, found);
  delete[] displaced;
}

// The index past a few dozen pairs must not show.
TEST(Repository, KeepsItsOrderWhenItGrows) {
  c_repository<int> ids;
  for (int i = 0; i < 200; ++i) {
    ids.add("key" + std::to_string(i), i / 2);
    ASSERT_EQ(ids.find_key(i / 2), "key" + std::to_string(i / 2 * 2));
  }
  ids.add("key100", 3);
  EXPECT_STREQ(ids.find_key(50), "key101");
  EXPECT_STREQ(ids.find_key(3), "key6");
  ids.add("key6", 50);
  ids.add("key7", 50);
  EXPECT_STREQ(ids.find_key(50), "key6");
  EXPECT_STREQ(ids.find_key(3), "key100");
  int id = 0;
  EXPECT_TRUE(ids.find("key199", &id));
  EXPECT_EQ(id, 99);
}

TEST(EnumeratedNamespaces, NumbersFromTheFirstFreeId) {
  c_enumerated_namespaces namespaces;
  EXPECT_EQ(namespaces.find_namespace(k_xsi), 5);
  EXPECT_EQ(namespaces.find_namespace(k_xml), 2);
  namespaces.add_namespace("fixed", 1000);
  EXPECT_EQ(namespaces.add_namespace("u"), 1001);
  EXPECT_EQ(namespaces.add_namespace("fixed"), 1000);
  EXPECT_EQ(namespaces.add_namespace("u"), 1001);
  namespaces.add_namespace("u", 2000);  // known: keeps its id, but the number is taken
  EXPECT_EQ(namespaces.find_namespace("u"), 1001);
  EXPECT_EQ(namespaces.add_namespace("v"), 2001);
  EXPECT_STREQ(namespaces.find_namespace_from_id(2001), "v");
  EXPECT_EQ(namespaces.find_namespace_from_id(999), nullptr);
  namespaces.clear();
  EXPECT_EQ(namespaces.find_namespace("u"), 0);
  EXPECT_EQ(namespaces.add_namespace("w"), 1000);
}

TEST(XmlLocal, InnerLevelsHideOuterOnes) {
  c_xml_local root;
  EXPECT_EQ(root.find_namespace_id("xml"), 2);
  EXPECT_EQ(root.find_namespace_id(""), 0);
  root.add_namespace("", 1000);
  root.add_namespace("a", 1000);
  {
    const c_xml_local silent(root);
    c_xml_local inner(silent);
    EXPECT_EQ(inner.find_namespace_id("a"), 1000);
    inner.add_namespace("b", 1000);
    inner.add_namespace("", 1);
    EXPECT_EQ(inner.find_namespace_id(""), 1);
    EXPECT_STREQ(inner.find_namespace_prefix(1000), "b");
    EXPECT_STREQ(inner.find_first_namespace_prefix(1000), "");
    inner.clear();
    EXPECT_EQ(inner.find_namespace_id(""), 1000);
    EXPECT_EQ(inner.find_namespace_id("b"), 0);
  }
  EXPECT_EQ(root.find_namespace_id(""), 1000);
  EXPECT_STREQ(root.find_namespace_prefix(2), "xml");
  EXPECT_EQ(root.find_namespace_prefix(3), nullptr);
}

TEST(CrackedName, SplitsAtTheFirstColon) {
  c_xml_local with_default;
  with_default.add_namespace("", 7);
  with_default.add_namespace("a", 8);
  const c_xml_local bare;
  const struct {
    const c_xml_local* scope;
    const char* name;
    const char* prefix;
    const char* local;
    bool has_prefix;
    int id;
    int element_id;
  } k_rows[] = {
      {&with_default, "a:b", "a", "b", true, 8, 8},
      {&with_default, "a:b:c", "a", "b:c", true, 8, 8},
      {&with_default, "b", "", "b", false, 7, 7},
      {&with_default, ":b", "", "b", true, 7, 7},
      {&with_default, "x:b", "x", "b", true, 0, 0},
      {&with_default, "xml:lang", "xml", "lang", true, 2, 2},
      {&bare, "b", "", "b", false, 0, 1},
      {&bare, ":b", "", "b", true, 0, 0},
      {nullptr, "a:", "a", "", true, 0, 0},
      {nullptr, "", "", "", false, 0, 1},
  };
  c_cracked_name name;
  for (const auto& row : k_rows) {
    name.set(row.scope, row.name);
    EXPECT_EQ(name.get_full_name(), row.name);
    EXPECT_EQ(name.get_ns_prefix(), row.prefix) << row.name;
    EXPECT_EQ(name.get_local_name(), row.local) << row.name;
    EXPECT_EQ(name.get_has_ns_prefix(), row.has_prefix) << row.name;
    EXPECT_EQ(name.get_ns_id(), row.id) << row.name;
    EXPECT_EQ(name.get_element_ns_id(), row.element_id) << row.name;
  }
  const c_cracked_name copy = c_cracked_name(&with_default, "a:b");
  EXPECT_EQ(copy.get_local_name(), "b");
}

TEST(NameSplitters, AllowTheirArgumentAsResult) {
  std::string text = "a:b:c";
  std::string prefix = "old";
  c_xml::get_namespace_prefix(text, &prefix);
  EXPECT_EQ(prefix, "a");
  c_xml::get_local_name(text, &text);
  EXPECT_EQ(text, "b:c");
  c_xml::get_namespace_prefix("plain", &prefix);
  EXPECT_EQ(prefix, "");
}

}  // namespace
}  // namespace lmx
