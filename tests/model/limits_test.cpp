// Hostile documents: nested deep, or long. Neither the stack nor the time may run away.
#include <pthread.h>

#include <algorithm>
#include <functional>

#include "model/documents.h"
#include "support/processor_time.h"

namespace zol_test {
namespace {

using namespace zol_v2;

const std::string k_history = "<Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>";

std::string repeated(const std::string& text, int count) {
  std::string result;
  result.reserve(text.size() * static_cast<std::size_t>(count));
  while (count-- > 0) result += text;
  return result;
}

// A colour whose rendering has that many ancestors. The specification of the innermost stands in
// level 4 of the document and two further down for each.
std::string with_parents(int count) {
  const std::string end = k_history +
                          "<Zol:ColorSpaceSpecificationSpectrumGeneric xsi:nil='1'/>"
                          "<Zol:ColorName/></Zol:ColorSpaceNCS>";
  return document("<Zol:Color ColorName='c'>" + k_history +
                  repeated("<Zol:ColorSpaceNCS><Zol:ParentColorSpace>", count) +
                  "<Zol:ColorSpaceNCS>" + end + repeated("</Zol:ParentColorSpace>" + end, count) +
                  "</Zol:Color>");
}

// A colour on a substrate of a colour on a substrate, that many times; levels as above.
std::string on_substrates(int count) {
  const std::string start = "<Zol:Color ColorName='c'>" + k_history + "<Zol:ColorSpaceNCS>" +
                            k_history +
                            "<Zol:ColorSpaceSpecificationSpectrumGeneric xsi:nil='1'/>"
                            "<Zol:ColorName/></Zol:ColorSpaceNCS>";
  return document(repeated(start + "<Zol:SubstratePaper>", count) + start + "</Zol:Color>" +
                  repeated("</Zol:SubstratePaper></Zol:Color>", count));
}

constexpr int k_deepest = (512 - 4) / 2;

// Sanitizers want more stack than the library does.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t k_stack = 16 << 20;
#else
constexpr std::size_t k_stack = 1 << 20;
#endif

void run_in_small_stack(const std::function<void()>& work) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, k_stack), 0);
  pthread_t thread;
  const auto call = [](void* argument) -> void* {
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, call,
                           const_cast<void*>(static_cast<const void*>(&work))),
            0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

TEST(Depth, OfTheLastLevelLivesInASmallStack) {
  for (const std::string& text : {with_parents(k_deepest), on_substrates(k_deepest)}) {
    run_in_small_stack([&text] {
      Zol original = loaded<Zol>(text);
      const std::string written = saved(original);
      Zol copy(original);
      Zol assigned;
      assigned = copy;
      copy.swap(original);
      original.reset();
      EXPECT_TRUE(saved(assigned) == written);
      EXPECT_TRUE(saved(loaded<Zol>(written)) == written);
    });
  }
}

TEST(Depth, BeyondIsAFault) {
  for (const int count : {k_deepest + 1, 100'000}) {
    for (const std::string& text : {with_parents(count), on_substrates(count)}) {
      run_in_small_stack([&text] {
        EXPECT_EQ(Zol().unmarshal(text), 23);
        WaivingReader reader(text.data(), text.size());
        Zol waived;
        EXPECT_EQ(waived.unmarshal(reader), lmx::elmx_ok) << "and reading comes to an end";
        EXPECT_EQ(reader.first.code, 23);
      });
    }
  }
}

// Only documents have a limit.
TEST(Depth, OfWhatAccessorsMakeHasNoLimit) {
  run_in_small_stack([] {
    ColorSpaceNCSType root;
    for (int round = 0; round < 2; ++round) {
      ColorSpaceNCSType* innermost = &root;
      for (int i = 0; i < 200'000; ++i) {
        innermost = &innermost->get_ParentColorSpace().get_ColorSpace().get_ColorSpaceNCS();
      }
      if (round == 0) root.reset();
    }
  });
}

TEST(Depth, OfForeignElementsHasNoLimit) {
  constexpr int k_many = 1'000'000;
  const std::string foreign = repeated("<a>", k_many) + repeated("</a>", k_many);
  const std::string text = "<Zol:Revision>" + foreign + "</Zol:Revision>";
  run_in_small_stack([&] {
    const auto revision = made<Revision>(text);
    std::string kept;
    revision.get_any(0, nullptr, nullptr, &kept);
    EXPECT_TRUE(kept == foreign);
    EXPECT_EQ(outcome_of<Person>("<p>" + foreign + "</p>").code, 21);
  });
}

double seconds_of(const std::function<void()>& work) {
  double best = 1e9;
  for (int i = 0; i < 3; ++i) {
    const double start = processor_seconds();
    work();
    best = std::min(best, processor_seconds() - start);
  }
  return best;
}

// Sixteen times the rows take about as many times as long. Caches and a busy machine may make it
// several times that, which is still far from their square.
// `prepare` gives the work for a number of rows: what it makes before is not measured.
using Work = std::function<void()>;
void expect_linear(const char* what, const std::function<Work(int)>& prepare) {
  constexpr int k_rows = 12'500;
  const double once = seconds_of(prepare(k_rows));
  const double sixteen_times = seconds_of(prepare(16 * k_rows));
  EXPECT_LT(sixteen_times, 64 * std::max(once, 0.005)) << what << ": " << once << " s at first";
}

// The whole of a document whose body repeats one piece; "#" in it is its number.
std::string document_of(const std::string& before, const std::string& piece, int count,
                        const std::string& after) {
  std::string body = before;
  for (int i = 0; i < count; ++i) {
    const auto at = piece.find('#');
    body += at == std::string::npos
                ? piece
                : piece.substr(0, at) + std::to_string(i) + piece.substr(at + 1);
  }
  return document(body + after);
}

TEST(Growth, IsLinearInReading) {
  const std::string color = "<Zol:Color ColorName='c'>";
  const std::string space = "<Zol:ColorSpaceNCS>" + k_history +
                            "<Zol:ColorSpaceSpecificationSpectrumGeneric xsi:nil='1'/>"
                            "<Zol:ColorName/></Zol:ColorSpaceNCS>";
  const struct {
    const char* what;
    std::string before, piece, after;
  } rows[] = {
      {"children", "", color + k_history + "</Zol:Color>", ""},
      {"values", color, k_history, "</Zol:Color>"},
      {"members", color + k_history, space, "</Zol:Color>"},
      {"comments", "", "<!-- c -->\n", ""},
      {"attributes", "<Zol:Color ColorName='c' ", " a#='v'", ">" + k_history + "</Zol:Color>"},
      {"namespaces", "<Zol:Color ColorName='c' ", " xmlns:n#='urn:#'",
       ">" + k_history + "</Zol:Color>"},
      {"elements that nobody knows", color + k_history + "<Zol:Nonsense>", "<n#/>",
       "</Zol:Nonsense></Zol:Color>"},
  };
  for (const auto& row : rows) {
    expect_linear(row.what, [&row](int count) -> Work {
      return [text = document_of(row.before, row.piece, count, row.after)] {
        WaivingReader reader(text.data(), text.size());
        EXPECT_EQ(Zol().unmarshal(reader), lmx::elmx_ok);
      };
    });
  }
}

TEST(Growth, IsLinearInEverythingElse) {
  const auto owner_of = [](int count) {
    OwnerType owner;
    for (int i = 0; i < count; ++i) {
      (void)owner.append_Company(L"company");
      (void)owner.append_Person();
      (void)owner.back_Person().set_Name(L"person");
    }
    return owner;
  };
  expect_linear("filling", [&](int count) -> Work { return [=] { owner_of(count); }; });
  expect_linear("writing", [&](int count) -> Work {
    return [owner = owner_of(count)] { (void)written(owner, "o"); };
  });
  expect_linear("growing at once", [](int count) -> Work {
    return [count] {
      OwnerType owner;
      owner.get_Person(static_cast<unsigned>(count));
      owner.clear_Person();
    };
  });
}

}  // namespace
}  // namespace zol_test
