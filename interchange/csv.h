// Lines of separated values, as RFC 4180 has them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "interchange/export.h"
#include "interchange/report.h"

namespace zol_v2::interchange {

// A cell of a table.
struct Cell {
  std::string text;        // UTF-8, without quotation marks
  std::size_t offset = 0;  // of its first byte, or quotation mark
};

// The cells of each line, but for lines without anything. Line feeds with or without a carriage
// return end lines. False with a fault for quotation marks out of place, for what is no UTF-8, and
// for lines that have more or fewer cells than the first.
ZOL_INTERCHANGE_API bool read_cells(std::string_view text, char separator,
                                    std::vector<std::vector<Cell>>* lines, Report* report);

// The separator that the first line speaks for: a comma, a semicolon, a tab or a bar.
ZOL_INTERCHANGE_API char guess_separator(std::string_view text);

// Appends a line. Cells are quoted where they must be.
ZOL_INTERCHANGE_API void append_cells(const std::vector<std::string>& cells, char separator,
                                      std::string_view line_end, std::string* text);

}  // namespace zol_v2::interchange
