// Side roads against other libraries doing the same work in the same run, as rows of a table:
//   zol_bench_side [PART OF A NAME]
// Each figure is the best of many short runs, in which the two take turns.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>

#include "bench/roads.h"

namespace {

constexpr int k_rounds = 40;
constexpr double k_round_seconds = 2e-3;

double seconds_of(const std::function<void()>& run, int count) {
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < count; ++i) run();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

int runs_in_a_round(const std::function<void()>& run) {
  int count = 1;
  while (seconds_of(run, count) < k_round_seconds && count < 1 << 20) count *= 2;
  return count;
}

// "2210 MB/s" or "12.3 ns"
std::string rate(const bench::Road& road, double seconds) {
  char text[32];
  if (road.unit == "byte") {
    std::snprintf(text, sizeof text, "%.0f MB/s", road.amount / seconds * 1e-6);
  } else {
    std::snprintf(text, sizeof text, "%.1f ns", seconds / road.amount * 1e9);
  }
  return text;
}

void compare(const bench::Road& road, const bench::Peer& peer) {
  const int our_count = runs_in_a_round(road.run);
  const int their_count = runs_in_a_round(peer.run);
  double ours = 1e9;
  double theirs = 1e9;
  for (int round = 0; round < k_rounds; ++round) {
    ours = std::min(ours, seconds_of(road.run, our_count) / our_count);
    theirs = std::min(theirs, seconds_of(peer.run, their_count) / their_count);
  }
  std::printf("| %s | %s | %s | %s | %.2f |\n", road.name.c_str(), rate(road, ours).c_str(),
              peer.library.c_str(), rate(road, theirs).c_str(), theirs / ours);
  std::fflush(stdout);
}

}  // namespace

int main(int argument_count, char** arguments) {
  const std::string part = argument_count > 1 ? arguments[1] : "";
  const std::vector<bench::Road> roads = bench::side_roads();
  std::vector<bench::Peer> peers = bench::side_peers();
  for (const bench::Road& road : roads) {
    if (road.name == "double to the block") {
      peers.push_back({"double to a stream", "the way into a document", road.run});
    }
  }
  std::printf("| Road | Here | Other | There | Ratio |\n|---|---|---|---|---|\n");
  for (const bench::Road& road : roads) {
    if (road.name.find(part) == std::string::npos) continue;
    for (const bench::Peer& peer : peers) {
      if (peer.road == road.name) compare(road, peer);
    }
  }
}
