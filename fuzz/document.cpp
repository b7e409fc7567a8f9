// Any bytes as a document, from memory in one block and from two sources of our own: one that gives
// a byte at a time, and one whose blocks are so small that hardly a tag stands in one. Memory takes
// shortcuts that the others can't. Nobody may be able to tell: the code, the message, every fault
// that a handler sees, what is left in the reader and the tree must be the same, with a handler
// that lets every fault pass and without, and also when the document is read into the same object
// again. The report of all faults must begin with the same code.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "facade/files.h"
#include "fuzz/limits.h"
#include "model/Zol.h"
#include "support/roads.h"

namespace {

using namespace zol_test;

void expect_same(const char* road, const Account& memory, const Account& other) {
  if (memory == other) return;
  std::fprintf(stderr, "memory:\n%s%s\n%s:\n%s%s\n", memory.report.c_str(), memory.tree.c_str(),
               road, other.report.c_str(), other.tree.c_str());
  std::abort();
}

// As a document of one class.
template <class Document>
void compare_roads(std::string_view text) {
  constexpr int k_rounds = 2;
  for (const Handling handling : {Handling::stop, Handling::waive}) {
    const Account memory = account_of<Document, MemorySource>(text, handling, k_rounds);
    expect_same("bytes", memory, account_of<Document, ByteSource>(text, handling, k_rounds));
    expect_same("small blocks", memory,
                account_of<Document, BlockSource>(text, handling, k_rounds));
  }
}

// What is told of a document begins with what a reader says of it, and is in it.
void check_report(std::string_view text) {
  zol_v2::Zol document;
  zol_v2::LoadReport report;
  zol_v2::LoadOptions options;
  options.best_effort = true;
  const lmx::elmx_error code = zol_v2::openText(document, text, &report, options);
  const auto is_good = [&](const zol_v2::Fault& fault) {
    return !fault.text().empty() && fault.place.offset + fault.length <= text.size();
  };
  // Of an archive the entry is the text.
  if (text.substr(0, 2) == "PK") return;
  const auto& faults = report.faults;
  if (faults.empty() != (code == lmx::elmx_ok) ||
      (!faults.empty() && faults.front().code != code) ||
      !std::all_of(faults.begin(), faults.end(), is_good)) {
    std::fprintf(stderr, "%d faults for the code %d\n", static_cast<int>(faults.size()), code);
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (zol_fuzz::is_tower(text)) return 0;
  compare_roads<zol_v2::Zol>(text);
  check_report(text);
  if (text.find("Measurement") != std::string_view::npos) compare_roads<zol_v2::Measurement>(text);
  return 0;
}
