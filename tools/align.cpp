#include "tools/align.h"

#include <algorithm>
#include <unordered_map>

namespace {

// Pairs that may be looked at.
constexpr std::size_t k_most_pairs = 1'000'000;
constexpr std::size_t k_none = static_cast<std::size_t>(-1);

struct Node {
  IndexPair pair;
  std::size_t before;
};

// The longest chain that ascends on both sides. The chain of each length ends as early in the
// second list as it can, so that the next pair extends the longest that ends before it (J. W. Hunt
// and T. G. Szymanski, A fast algorithm for computing longest common subsequences, CACM 20, 1977).
class Chains {
 public:
  // Pairs come by ascending first index, and those of one first index by descending second one.
  void add(std::size_t first, std::size_t second) {
    const auto at = std::lower_bound(ends_.begin(), ends_.end(), second);
    const auto length = static_cast<std::size_t>(at - ends_.begin());
    if (at != ends_.end() && *at == second) return;
    nodes_.push_back({{first, second}, length == 0 ? k_none : last_[length - 1]});
    if (at == ends_.end()) {
      ends_.push_back(second);
      last_.push_back(nodes_.size() - 1);
    } else {
      *at = second;
      last_[length] = nodes_.size() - 1;
    }
  }

  std::vector<IndexPair> longest() const {
    std::vector<IndexPair> result(ends_.size());
    std::size_t node = last_.empty() ? k_none : last_.back();
    for (std::size_t i = result.size(); i-- > 0; node = nodes_[node].before) {
      result[i] = nodes_[node].pair;
    }
    return result;
  }

 private:
  std::vector<Node> nodes_;
  std::vector<std::size_t> ends_;  // by length, the second index of the last pair
  std::vector<std::size_t> last_;  // and its node
};

}  // namespace

std::vector<IndexPair> common_subsequence(const std::vector<std::size_t>& first,
                                          const std::vector<std::size_t>& second) {
  std::unordered_map<std::size_t, std::vector<std::size_t>> places;
  for (std::size_t j = second.size(); j-- > 0;) places[second[j]].push_back(j);
  std::size_t pairs = 0;
  for (const std::size_t number : first) {
    const auto found = places.find(number);
    if (found != places.end()) pairs += found->second.size();
  }
  const bool is_too_much = pairs > k_most_pairs;
  Chains chains;
  for (std::size_t i = 0; i < first.size(); ++i) {
    const auto found = places.find(first[i]);
    if (found == places.end() || found->second.empty()) continue;
    if (is_too_much) {
      // The first goes with the first alone.
      chains.add(i, found->second.back());
      found->second.pop_back();
    } else {
      for (const std::size_t j : found->second) chains.add(i, j);
    }
  }
  return chains.longest();
}

std::vector<bool> in_order(const std::vector<IndexPair>& pairs) {
  Chains chains;
  for (std::size_t i = 0; i < pairs.size(); ++i) chains.add(i, pairs[i].second);
  std::vector<bool> result(pairs.size(), false);
  for (const IndexPair& pair : chains.longest()) result[pair.first] = true;
  return result;
}
