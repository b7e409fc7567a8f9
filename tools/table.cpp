#include "tools/table.h"

#include <algorithm>
#include <cstddef>

#include "interchange/csv.h"

namespace {

// Code points, which is what most cells take.
std::size_t width_of(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

void append_cell(const std::string& cell, std::size_t width, bool is_right, std::string* line) {
  const std::string padding(width - width_of(cell), ' ');
  *line += is_right ? padding + cell : cell + padding;
}

}  // namespace

std::string TextTable::text() const {
  std::vector<std::size_t> widths(columns_.size(), 0);
  for (const std::vector<std::string>& row : rows_) {
    if (row.size() == 1) continue;
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], width_of(row[i]));
  }
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (widths[i] != 0) widths[i] = std::max(widths[i], width_of(columns_[i].heading));
  }
  std::string text;
  const auto append_line = [&](const auto& cell_of) {
    std::string line;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (widths[i] == 0) continue;
      if (!line.empty()) line += "  ";
      append_cell(cell_of(i), widths[i], columns_[i].is_number, &line);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
  };
  append_line([&](std::size_t i) -> const std::string& { return columns_[i].heading; });
  for (const std::vector<std::string>& row : rows_) {
    if (row.size() == 1) {
      text += row.front() + '\n';
      continue;
    }
    append_line([&](std::size_t i) -> const std::string& { return row[i]; });
  }
  return text;
}

std::string comma_separated(const std::vector<std::string>& fields) {
  std::string line;
  zol_v2::interchange::append_cells(fields, ',', "\n", &line);
  return line;
}
