// Memory that a loaded document takes, and the most that loading it took, as multiples of its text:
//   zol_bench_memory [MEGABYTES...]
// Every allocation of the three libraries is counted, at the size that glibc's heap gives it.
#include <libxml/globals.h>
#include <libxml/parser.h>
#include <libxml/xmlmemory.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "bench/documents.h"
#include "bench/peers.h"
#include "model/Zol.h"

namespace {

std::size_t g_held = 0;
std::size_t g_most = 0;

// Before each block stands its size.
constexpr std::size_t k_prefix = alignof(std::max_align_t);
static_assert(k_prefix >= sizeof(std::size_t));

// A block of the heap has a word of its own, a multiple of 16 bytes and at least 32.
std::size_t heap_size(std::size_t size) {
  return std::max<std::size_t>(32, (size + sizeof(std::size_t) + 15) / 16 * 16);
}

void* counted_malloc(std::size_t size) {
  auto* block = static_cast<char*>(std::malloc(size + k_prefix));
  if (block == nullptr) return nullptr;
  std::memcpy(block, &size, sizeof size);
  g_held += heap_size(size);
  g_most = std::max(g_most, g_held);
  return block + k_prefix;
}

std::size_t counted_size(void* memory) {
  std::size_t size;
  std::memcpy(&size, static_cast<char*>(memory) - k_prefix, sizeof size);
  return size;
}

void counted_free(void* memory) {
  if (memory == nullptr) return;
  g_held -= heap_size(counted_size(memory));
  std::free(static_cast<char*>(memory) - k_prefix);
}

void* counted_realloc(void* memory, std::size_t size) {
  void* grown = counted_malloc(size);
  if (memory == nullptr || grown == nullptr) return grown;
  std::memcpy(grown, memory, std::min(size, counted_size(memory)));
  counted_free(memory);
  return grown;
}

char* counted_strdup(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  void* copy = counted_malloc(size);
  return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

class ZolTree : public bench::KeptAlive {
 public:
  explicit ZolTree(const std::string& text) : document(text.data(), text.size(), &error) {}
  lmx::elmx_error error;
  zol_v2::Zol document;
};

// Counts what libxml2 allocates while it lives. The library's own tables are older and outlive it,
// so they keep to the functions that they were made with.
class CountingLibxml2 {
 public:
  CountingLibxml2() {
    xmlInitParser();
    xmlMemGet(&free_, &malloc_, &realloc_, &strdup_);
    xmlMemSetup(counted_free, counted_malloc, counted_realloc, counted_strdup);
  }
  ~CountingLibxml2() { xmlMemSetup(free_, malloc_, realloc_, strdup_); }
  CountingLibxml2(const CountingLibxml2&) = delete;
  CountingLibxml2& operator=(const CountingLibxml2&) = delete;

 private:
  xmlFreeFunc free_;
  xmlMallocFunc malloc_;
  xmlReallocFunc realloc_;
  xmlStrdupFunc strdup_;
};

std::unique_ptr<bench::KeptAlive> zol_tree(const std::string& text) {
  auto tree = std::make_unique<ZolTree>(text);
  if (tree->error != lmx::elmx_ok) return nullptr;
  return tree;
}

template <class Load>
bool measure(const char* name, const std::string& text, const Load& load) {
  const std::size_t before = g_held;
  g_most = g_held;
  const auto kept = load(text);
  const auto size = static_cast<double>(text.size());
  if (kept == nullptr) {
    std::printf("  %-22s did not load\n", name);
    return false;
  }
  std::printf("  %-22s %6.2f kept %6.2f at most\n", name,
              static_cast<double>(g_held - before) / size,
              static_cast<double>(g_most - before) / size);
  return true;
}

bool measure_document(bench::Profile profile, std::size_t megabytes) {
  const std::string text = bench::make_document(profile, megabytes * 1000 * 1000);
  std::printf("%s, %zu MB\n", bench::name_of(profile), megabytes);
  bool is_good = measure("zol", text, zol_tree);
  is_good &= measure("pugixml", text, bench::pugixml_tree);
  if (profile != bench::Profile::mixed) {
    is_good &= measure("pugixml and structures", text, [profile](const std::string& document) {
      return bench::pugixml_structures(profile, document);
    });
  }
  const CountingLibxml2 counting;
  return measure("libxml2", text, bench::libxml2_tree) && is_good;
}

}  // namespace

void* operator new(std::size_t size) {
  if (void* memory = counted_malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { counted_free(memory); }
void operator delete(void* memory, std::size_t) noexcept { counted_free(memory); }

int main(int argument_count, char** arguments) {
  pugi::set_memory_management_functions(counted_malloc, counted_free);
  std::vector<std::size_t> sizes;
  for (int i = 1; i < argument_count; ++i) {
    sizes.push_back(std::strtoull(arguments[i], nullptr, 10));
  }
  if (sizes.empty()) sizes = {1, 20};
  bool is_good = true;
  for (bench::Profile profile : bench::k_profiles) {
    for (std::size_t megabytes : sizes) is_good &= measure_document(profile, megabytes);
  }
  return is_good ? 0 : 1;
}
