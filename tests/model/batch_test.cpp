// What was read as a whole goes as a whole, unless somebody changed what its objects hold between
// them. Under AddressSanitizer, which sees what was lost and what was used too late; chunks are in
// use there, too.
#include <algorithm>
#include <functional>
#include <memory>
#include <random>

#include "lmx/internal/pool.h"
#include "model/documents.h"
#include "model/reflection.h"

namespace zol_test {
namespace {

using namespace zol_v2;
using namespace zol_v2::reflection;

const int k_with_chunks = (lmx::internal::Pool::use_chunks(true), 0);

bool is_intact(Zol& document) { return Zol::k_class.batch_of(document).is_intact(); }

std::unique_ptr<Zol> read_whole(const std::string& text) {
  auto document = std::make_unique<Zol>();
  EXPECT_EQ(document->unmarshal(text), lmx::elmx_ok);
  return document;
}

// The same with each object by itself.
std::unique_ptr<Zol> read_apart(const std::string& text) {
  lmx::internal::Pool::use_chunks(false);
  auto document = read_whole(text);
  lmx::internal::Pool::use_chunks(true);
  return document;
}

// Samples as this library writes them.
std::string sample(const char* name) { return saved(*read_whole(sample_bytes(name))); }
const std::vector<std::string>& samples() {
  static const std::vector<std::string> texts = {
      sample("coverage-functions"), sample("coverage-frame"), sample("quality-control")};
  return texts;
}

// As it is written, as far as it can be.
std::string shown(const Zol& document) {
  std::ostringstream out;
  const lmx::elmx_error error = document.marshal(out);
  return std::to_string(error) + '\n' + out.str();
}

// Every object below, outer ones first.
void collect(Ref object, std::vector<Ref>* objects) {
  objects->push_back(object);
  for (const Row row : object.type().rows()) {
    for (unsigned i = 0; row.type() && i < ConstRef(object).count(row); ++i) {
      if (const Ref child = object.child(row, i)) collect(child, objects);
    }
  }
}

// --- Looking ----------------------------------------------------------------------------------

void ask_for_every_text(ConstRef object) {
  for (const Row row : object.type().rows()) {
    for (unsigned i = 0; i < object.count(row); ++i) {
      const Value value = object.value(row, i);
      if (const ConstRef child = value.child()) {
        ask_for_every_text(child);
      } else if (row.kind() == Kind::text) {
        EXPECT_GE(value.text().size(), 0u);
      }
    }
  }
}

TEST(Batch, IsLeftAloneByWhoeverOnlyLooks) {
  for (const std::string& text : samples()) {
    const auto document = read_whole(text);
    ask_for_every_text(*document);
    const Zol copied(*document);
    EXPECT_EQ(saved(copied), saved(*document));
    EXPECT_TRUE(is_intact(*document));
  }
}

TEST(Batch, FollowsTheDocument) {
  const auto document = read_whole(samples()[0]);
  Zol other;
  other.swap(*document);
  EXPECT_TRUE(is_intact(other));
  EXPECT_FALSE(is_intact(*document));
  EXPECT_EQ(document->unmarshal(samples()[1]), lmx::elmx_ok);
  other.swap(*document);
  EXPECT_TRUE(is_intact(other));
  EXPECT_TRUE(is_intact(*document));
  document->reset();
  EXPECT_EQ(document->size_Color(), 0u);
  EXPECT_EQ(document->unmarshal(samples()[1]), lmx::elmx_ok);
  EXPECT_TRUE(is_intact(*document));
  EXPECT_EQ(saved(*document), saved(other));
}

// --- Changing ---------------------------------------------------------------------------------

struct Change {
  const char* name;
  std::function<void(Zol& document, Zol& other)> make;
  bool disturbs = true;
};

TEST(Batch, EndsWithAnyChangeOfWhatItHolds) {
  const auto color = [](Zol& document) -> ColorType& { return document.get_Color(0); };
  const auto header = [](Zol& document) -> Header& { return document.get_Preamble().get_Header(); };
  const Change changes[] = {
      {"a text", [&](Zol& a, Zol&) { (void)color(a).set_ColorName(L"a longer name"); }, false},
      {"a text that was looked at",
       [&](Zol& a, Zol&) {
         EXPECT_FALSE(std::as_const(color(a)).get_ColorName().empty());
         (void)color(a).set_ColorName(L"a name that takes memory");
       },
       false},
      {"a text of the root",
       [&](Zol& a, Zol&) { (void)header(a).set_Purpose(L"something quite different"); }, false},
      {"an optional text", [&](Zol& a, Zol&) { (void)color(a).set_Comments(L"longer"); }, false},
      {"a child of the root removed", [](Zol& a, Zol&) { a.delete_Color(0); }},
      {"a child of the root added", [&](Zol& a, Zol&) { a.insert_Color(1); }},
      {"a child added", [&](Zol& a, Zol&) { (void)color(a).append_SemanticAssociation(L"calm"); }},
      {"an optional child made",
       [&](Zol& a, Zol&) { (void)color(a).get_Owner().append_Company(L"somebody else"); }},
      {"an alternative chosen",
       [&](Zol& a, Zol&) { color(a).get_ColorSpace(0).get_ColorSpaceCIEXYZ().set_X(1); }},
      {"an alternative adopted",
       [&](Zol& a, Zol&) {
         auto space = std::make_unique<ColorSpaceCIEXYZType>();
         color(a).get_ColorSpace(0).assign_ColorSpaceCIEXYZ(*space).set_X(1);
       }},
      {"a child assigned", [&](Zol& a, Zol& b) { color(a) = b.get_Color(1); }},
      {"a child made new", [&](Zol& a, Zol&) { color(a).reset(); }},
      {"a child read again",
       [&](Zol& a, Zol&) {
         EXPECT_EQ(read(color(a), "<Zol:Color/>").code, lmx::elmx_unexpected_empty_element);
       }},
      {"the document read again",
       [](Zol& a, Zol&) { EXPECT_EQ(a.unmarshal(saved(a)), lmx::elmx_ok); }},
      {"a child exchanged", [&](Zol& a, Zol& b) { color(a).swap(b.get_Color(1)); }},
      {"a part of the root exchanged",
       [](Zol& a, Zol& b) { a.get_Preamble().swap(b.get_Preamble()); }},
      {"a part of the root exchanged after another list of it grew",
       [&](Zol& a, Zol& b) {
         (void)header(a).append_ChangeHistory(lmx::c_datetime());
         header(a).swap(header(b));
       }},
  };
  const std::string text = sample("spectra");
  for (const Change& change : changes) {
    SCOPED_TRACE(change.name);
    const auto document = read_whole(text);
    const auto other = read_whole(text);
    change.make(*document, *other);
    EXPECT_EQ(is_intact(*document), !change.disturbs);
    const auto apart = read_apart(text);
    const auto other_apart = read_apart(text);
    change.make(*apart, *other_apart);
    EXPECT_EQ(shown(*document), shown(*apart));
    EXPECT_EQ(shown(*other), shown(*other_apart));
  }
}

// A member that is chosen already is not freed, and from then on its former owner's caller has it.
TEST(Batch, EndsWhenAMemberGetsAnotherOwner) {
  const auto document = read_whole(sample("coverage-functions"));
  std::vector<Ref> objects;
  collect(*document, &objects);
  const auto found = std::find_if(objects.begin(), objects.end(), [](Ref object) {
    const Row chosen = ConstRef(object).chosen();
    return chosen && chosen.table().is_adopting;
  });
  ASSERT_NE(found, objects.end());
  const Row row = ConstRef(*found).chosen();
  const std::unique_ptr<Object> former(&found->child(row).object());
  internal::adopt(found->object(), row.table(), row.type().make().release());
  EXPECT_FALSE(is_intact(*document));
}

// Whatever a client may do, in any order: both documents stay the same, and the sanitizers find
// nothing lost and nothing used too late.
void change_at_random(Zol& document, unsigned seed) {
  std::mt19937 random(seed);
  const auto any = [&random](std::size_t count) { return random() % count; };
  for (int step = 0; step < 12; ++step) {
    std::vector<Ref> objects;
    collect(document, &objects);
    const Ref object = objects[any(objects.size())];
    std::vector<Row> rows;
    for (const Row row : object.type().rows()) rows.push_back(row);
    if (rows.empty()) continue;
    const Row row = rows[any(rows.size())];
    switch (any(7)) {
      case 0:
        (void)object.set_text(row, "a text that is longer than any short one, or 12");
        break;
      case 1:
        (void)object.set_text(row, "12");
        break;
      case 2:
        (void)object.unset(row);
        break;
      case 3:
        (void)object.remove(row, 0);
        break;
      case 4:
        (void)object.append(row);
        break;
      case 5:
        (void)object.choose(row);
        break;
      default:
        (void)object.child(row, 0);
        break;
    }
  }
}

TEST(Batch, GoesOneByOneAfterAnyChange) {
  for (const std::string& text : samples()) {
    for (unsigned seed = 0; seed < 400; ++seed) {
      const auto document = read_whole(text);
      ASSERT_TRUE(is_intact(*document));
      const auto apart = read_apart(text);
      change_at_random(*document, seed);
      change_at_random(*apart, seed);
      ASSERT_EQ(shown(*document), shown(*apart)) << "seed " << seed;
    }
  }
}

}  // namespace
}  // namespace zol_test
