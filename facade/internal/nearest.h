// Which of some names was probably meant.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zol_v2::internal {

// How many letters must be put in, taken out, changed or swapped with their neighbours to make one
// of the other; a letter in another case counts half. In halves.
std::size_t distance(std::string_view a, std::string_view b);

// Is that so little that the one was meant by the other?
bool is_near(std::string_view found, std::string_view meant);

// The nearest first; those that are no nearer than any word is stay in their order.
void sort_by_distance(std::string_view found, std::vector<std::string>* names);

}  // namespace zol_v2::internal
