// A table of texts for people, and one for programs.
#pragma once

#include <string>
#include <utility>
#include <vector>

// Columns under a line of headings, each as wide as its widest cell; columns without any content
// are left out. Cells are fit for one line.
class TextTable {
 public:
  struct Column {
    std::string heading;
    bool is_number = false;  // set to the right
  };

  explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}
  // As many cells as columns, of which there are two at least.
  void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  // A line of its own above the rows that follow.
  void add_title(std::string title) { rows_.push_back({std::move(title)}); }
  bool empty() const { return rows_.empty(); }
  std::string text() const;

 private:
  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;  // a single cell is a title
};

// A line of comma-separated values with its line feed; fields are quoted where they must be, by
// RFC 4180.
std::string comma_separated(const std::vector<std::string>& fields);
