// Memory that runs out, at every call in turn.
#include <new>

#include "model/documents.h"
#include "support/failing_memory.h"

namespace zol_test {
namespace {

using namespace zol_v2;

// Does something again and again, until no call for memory fails any more.
template <class Work, class Check>
void fail_each_allocation(Work work, Check check) {
  for (unsigned number = 1;; ++number) {
    bool is_done = true;
    fail_allocation(number);
    try {
      work();
    } catch (const std::bad_alloc&) {
      is_done = false;
    }
    fail_allocation(0);
    if (is_done) {
      EXPECT_GT(number, 1u) << "no memory was asked for";
      return;
    }
    check(number);
    if (testing::Test::HasFailure()) return;
  }
}

TEST(Memory, ThatRunsOutTakesTheGrowthOfAListBack) {
  OwnerType owner;
  (void)owner.append_Person();
  (void)owner.append_Company(L"c");
  const auto is_as_before = [&owner](unsigned number) {
    EXPECT_EQ(owner.size_Person(), 1u) << "call " << number;
    EXPECT_EQ(owner.size_Company(), 1u) << "call " << number;
  };
  fail_each_allocation([&] { owner.get_Person(100); }, is_as_before);
  EXPECT_EQ(owner.size_Person(), 101u);
  owner.clear_Person();
  (void)owner.append_Person();

  constexpr unsigned k_last = 0xFFFFFFFF;
  EXPECT_THROW(owner.get_Person(k_last), std::bad_alloc);
  is_as_before(0);
  fail_allocation(1);
  EXPECT_THROW(owner.get_Person(k_last - 1), std::bad_alloc);
  fail_allocation(0);
  is_as_before(0);
  fail_each_allocation([&] { (void)owner.append_Company(L"longer than what stands in place"); },
                       is_as_before);
  EXPECT_EQ(owner.size_Company(), 2u);
}

// Neither road loses anything; the object can be filled again.
TEST(Memory, MayRunOutWhileReading) {
  const std::string history = "<Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>";
  const std::string text = document(
      "<Zol:Color ColorName='c' Comments='of more than a few characters'>" + history + history +
      "<Zol:Owner><Zol:Person><Zol:Name/></Zol:Person><Zol:Person><Zol:Name/></"
      "Zol:Person><Zol:Company>a</Zol:Company><Zol:Company/></Zol:Owner>"
      "<Zol:ColorSpaceNCS>" +
      history +
      "<Zol:ColorSpaceSpecificationSpectrumGeneric "
      "xsi:nil='1'/><Zol:ColorName/></Zol:ColorSpaceNCS>"
      "<Zol:SubstratePaper xsi:type='Zol:SubstratePaperType'/></Zol:Color>");
  const std::string expected = saved(loaded<Zol>(text));
  for (const std::string& body : {text, text.substr(0, text.size() - 1) + " a='1'>"}) {
    Zol object;
    const std::ptrdiff_t blocks = count_blocks();
    fail_each_allocation([&] { (void)object.unmarshal(body); },
                         [&](unsigned number) {
                           object.reset();
                           EXPECT_EQ(count_blocks(), blocks) << "call " << number;
                         });
    EXPECT_EQ(saved(object), expected);
  }
}

}  // namespace
}  // namespace zol_test
