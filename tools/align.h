// Which entries of two lists belong together.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

using IndexPair = std::pair<std::size_t, std::size_t>;

// A longest common subsequence of two lists, whose equal entries have equal numbers: pairs of
// indices, ascending on both sides. Lists in which so much is equal that it would take too long
// lose some pairs, none that stands for an entry that is there once.
std::vector<IndexPair> common_subsequence(const std::vector<std::size_t>& first,
                                          const std::vector<std::size_t>& second);

// Of pairs in the order of their first indices, those that keep the order of the second ones: as
// many as can.
std::vector<bool> in_order(const std::vector<IndexPair>& pairs);
