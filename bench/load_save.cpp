// Loading and saving whole documents, against other libraries on the same bytes in the same run:
//   zol_bench [--quick] [--cold-heap] [options of Google Benchmark]
// Loads include letting go of what was loaded. The ratios are printed at the end; on a busy machine
// --benchmark_repetitions and --benchmark_enable_random_interleaving make them steadier.
// --quick measures documents of 1 MB alone. --cold-heap lets the heap give memory back to the
// system between runs, which then has to clear each page anew: as the first load of a process is,
// but an accident of sizes in all later ones.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/documents.h"
#include "bench/peers.h"
#include "model/Zol.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace {

using bench::Profile;

constexpr std::size_t k_megabyte = 1000 * 1000;

// One text at a time is kept, since the large ones together would crowd the machine.
const std::string& document_text(Profile profile, std::size_t size) {
  static std::pair<Profile, std::size_t> kept_key;
  static std::string kept;
  if (kept.empty() || kept_key != std::pair(profile, size)) {
    kept = bench::make_document(profile, size);
    kept_key = {profile, size};
  }
  return kept;
}

void count_bytes(benchmark::State& state, std::size_t size) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

template <class Load>
void load(benchmark::State& state, Profile profile, std::size_t size, const Load& load_once) {
  const std::string& text = document_text(profile, size);
  for (auto _ : state) {
    if (!load_once(text)) return state.SkipWithError("the document did not load");
  }
  count_bytes(state, text.size());
}

bool load_zol(const std::string& text) {
  zol_v2::Zol document;
  return document.unmarshal(text.data(), text.size()) == lmx::elmx_ok;
}

void marshal_zol(benchmark::State& state, Profile profile, std::size_t size) {
  const std::string& text = document_text(profile, size);
  lmx::elmx_error error;
  zol_v2::Zol document(text.data(), text.size(), &error);
  if (error != lmx::elmx_ok) return state.SkipWithError("the document did not load");
  std::size_t written = 0;
  for (auto _ : state) {
    std::string out;
    if (document.marshal(&out) != lmx::elmx_ok) return state.SkipWithError("nothing was written");
    written = out.size();
  }
  count_bytes(state, written);
}

// Bytes of the UTF-8 text, as for the others, though the result is wide.
void write_string_zol(benchmark::State& state, Profile profile, std::size_t size) {
  const std::string& text = document_text(profile, size);
  lmx::elmx_error error;
  zol_v2::Zol document(text.data(), text.size(), &error);
  std::string narrow;
  if (error != lmx::elmx_ok || document.marshal(&narrow) != lmx::elmx_ok) {
    return state.SkipWithError("the document did not load");
  }
  for (auto _ : state) {
    if (document.writeString().getElmxError() != lmx::elmx_ok) {
      return state.SkipWithError("nothing was written");
    }
  }
  count_bytes(state, narrow.size());
}

void save_pugixml(benchmark::State& state, Profile profile, std::size_t size) {
  const bench::PugixmlDocument document(document_text(profile, size));
  std::size_t written = 0;
  for (auto _ : state) {
    std::string out;
    document.save(&out);
    written = out.size();
  }
  count_bytes(state, written);
}

// Prints as usual and remembers the throughput of each run for the ratios.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      const auto rate = run.counters.find("bytes_per_second");
      if (run.run_type == Run::RT_Iteration && rate != run.counters.end()) {
        rates_[run.run_name.function_name].push_back(rate->second);
      }
    }
  }

  // One line for each document and peer that were both measured.
  void print_ratios() const {
    std::printf("\n%-34s %10s %10s %8s\n", "ours / theirs", "MB/s", "MB/s", "ratio");
    for (const auto& [name, rates] : rates_) {
      const std::size_t slash = name.find('/');
      const std::string_view operation = std::string_view(name).substr(0, slash);
      const std::string document = name.substr(slash);
      if (operation == "load_zol") {
        for (const char* peer : {"load_pugixml_extract", "load_pugixml", "load_libxml2"}) {
          print_ratio(name, peer + document);
        }
      } else if (operation == "marshal_zol" || operation == "writeString_zol") {
        print_ratio(name, "save_pugixml" + document);
      }
    }
  }

 private:
  void print_ratio(const std::string& ours, const std::string& theirs) const {
    const auto their_rates = rates_.find(theirs);
    if (their_rates == rates_.end()) return;
    const double our_rate = best(rates_.at(ours));
    const double their_rate = best(their_rates->second);
    std::printf("%-34s %10.0f %10.0f %8.2f   %s\n", ours.c_str(), our_rate / k_megabyte,
                their_rate / k_megabyte, our_rate / their_rate,
                theirs.substr(0, theirs.find('/')).c_str());
  }

  // Noise only ever slows a run.
  static double best(const std::vector<double>& rates) {
    return *std::max_element(rates.begin(), rates.end());
  }

  std::map<std::string, std::vector<double>> rates_;
};

void register_benchmarks(const std::vector<std::size_t>& megabytes) {
  for (Profile profile : bench::k_profiles) {
    for (std::size_t count : megabytes) {
      const std::size_t size = count * k_megabyte;
      const std::string document =
          std::string("/") + bench::name_of(profile) + "/" + std::to_string(count) + "MB";
      const auto add = [&document](const char* operation, auto run) {
        benchmark::RegisterBenchmark((operation + document).c_str(), run)
            ->Unit(benchmark::kMillisecond);
      };
      const auto add_load = [&](const char* operation, auto load_once) {
        add(operation, [profile, size, load_once](benchmark::State& state) {
          load(state, profile, size, load_once);
        });
      };
      add_load("load_zol", load_zol);
      add_load("load_pugixml", bench::pugixml_parse);
      if (profile != Profile::mixed) {
        add_load("load_pugixml_extract", [profile](const std::string& text) {
          return bench::pugixml_extract(profile, text);
        });
      }
      add_load("load_libxml2", bench::libxml2_parse);
      const auto add_save = [&](const char* operation, auto save) {
        add(operation,
            [profile, size, save](benchmark::State& state) { save(state, profile, size); });
      };
      add_save("marshal_zol", marshal_zol);
      add_save("writeString_zol", write_string_zol);
      add_save("save_pugixml", save_pugixml);
    }
  }
}

void keep_heap_warm() {
#if defined(__GLIBC__)
  mallopt(M_TRIM_THRESHOLD, INT_MAX);
  mallopt(M_MMAP_MAX, 0);
#endif
}

}  // namespace

int main(int argument_count, char** arguments) {
  bool is_quick = false;
  bool is_cold = false;
  std::vector<char*> others;
  for (int i = 0; i < argument_count; ++i) {
    if (std::strcmp(arguments[i], "--quick") == 0) {
      is_quick = true;
    } else if (std::strcmp(arguments[i], "--cold-heap") == 0) {
      is_cold = true;
    } else {
      others.push_back(arguments[i]);
    }
  }
  int other_count = static_cast<int>(others.size());
  benchmark::Initialize(&other_count, others.data());
  if (benchmark::ReportUnrecognizedArguments(other_count, others.data())) return 1;

  if (!is_cold) keep_heap_warm();
  register_benchmarks(is_quick ? std::vector<std::size_t>{1}
                               : std::vector<std::size_t>{1, 20, 100});
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.print_ratios();
  return 0;
}
