// Runs each road once for callgrind, which writes down the instructions of that run alone:
//   valgrind --tool=callgrind zol_bench_counts
// What was done before the run, and a first run that fills caches and tables, do not count. Prints
// the units of each road, in the order in which callgrind numbers its files.
#include <valgrind/callgrind.h>

#include <cstdio>

#include "bench/roads.h"

int main() {
  std::vector<bench::Road> roads = bench::side_roads();
  for (bench::Road& road : bench::document_roads()) roads.push_back(std::move(road));
  for (const bench::Road& road : roads) {
    road.run();
    CALLGRIND_ZERO_STATS;
    road.run();
    CALLGRIND_DUMP_STATS_AT(road.name.c_str());
    std::printf("%s\t%s\t%.0f\n", road.name.c_str(), road.unit.c_str(), road.amount);
  }
}
