#include "interchange/csv.h"

#include <algorithm>

#include "port/wide_text.h"

namespace zol_v2::interchange {

namespace {

constexpr std::string_view k_mark = "\xEF\xBB\xBF";

std::string counted_cells(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " cell" : " cells");
}

class CellReader {
 public:
  CellReader(std::string_view text, char separator, Report* report)
      : text_(text), separator_(separator), report_(*report) {
    if (text_.substr(0, k_mark.size()) == k_mark) at_ = k_mark.size();
  }

  bool read(std::vector<std::vector<Cell>>* lines) {
    while (at_ < text_.size()) {
      const std::size_t begin = at_;
      std::vector<Cell> line;
      if (!read_line(&line)) return false;
      if (line.size() == 1 && line.front().text.empty()) continue;
      if (!lines->empty() && line.size() != lines->front().size()) {
        return fail("The line has " + counted_cells(line.size()) + ", the first one has " +
                        counted_cells(lines->front().size()),
                    begin);
      }
      lines->push_back(std::move(line));
    }
    return true;
  }

 private:
  bool fail(std::string sentence, std::size_t offset) {
    report_.fail("bad-table", std::move(sentence), place_of(text_, offset));
    return false;
  }

  bool is_end_of_line() const {
    return at_ >= text_.size() || text_[at_] == '\n' || text_[at_] == '\r';
  }

  bool read_line(std::vector<Cell>* line) {
    while (true) {
      line->emplace_back();
      Cell& cell = line->back();
      cell.offset = at_;
      if (at_ < text_.size() && text_[at_] == '"') {
        if (!read_quoted(&cell)) return false;
      } else {
        const char ends[] = {separator_, '\r', '\n', '"'};
        const std::size_t end =
            std::min(text_.find_first_of({ends, sizeof ends}, at_), text_.size());
        if (end < text_.size() && text_[end] == '"') {
          return fail("A quotation mark stands in a cell that does not begin with one", end);
        }
        cell.text = text_.substr(at_, end - at_);
        at_ = end;
      }
      if (!zol::port::is_utf8(cell.text.data(), cell.text.size())) {
        return fail("The cell is no UTF-8", cell.offset);
      }
      if (is_end_of_line()) break;
      if (text_[at_] != separator_) return fail("Something stands behind a quotation mark", at_);
      ++at_;
    }
    if (text_.substr(at_, 2) == "\r\n") ++at_;
    ++at_;
    return true;
  }

  bool read_quoted(Cell* cell) {
    for (++at_;; ++at_) {
      const std::size_t mark = text_.find('"', at_);
      if (mark == std::string_view::npos) {
        return fail("The quotation mark has no partner", cell->offset);
      }
      cell->text += text_.substr(at_, mark - at_);
      at_ = mark + 1;
      if (text_.substr(at_, 1) != "\"") return true;
      cell->text += '"';
    }
  }

  std::string_view text_;
  char separator_;
  Report& report_;
  std::size_t at_ = 0;
};

}  // namespace

bool read_cells(std::string_view text, char separator, std::vector<std::vector<Cell>>* lines,
                Report* report) {
  return CellReader(text, separator, report).read(lines);
}

char guess_separator(std::string_view text) {
  constexpr std::string_view k_separators = ",;\t|";
  char best = ',';
  std::ptrdiff_t most = 0;
  bool is_quoted = false;
  std::string line;
  for (const char c : text) {
    if (c == '"') is_quoted = !is_quoted;
    if (!is_quoted && c == '\n') break;
    if (!is_quoted) line += c;
  }
  for (const char separator : k_separators) {
    const std::ptrdiff_t count = std::count(line.begin(), line.end(), separator);
    if (count > most) {
      best = separator;
      most = count;
    }
  }
  return best;
}

void append_cells(const std::vector<std::string>& cells, char separator, std::string_view line_end,
                  std::string* text) {
  const char special[] = {separator, '"', '\r', '\n'};
  bool is_first = true;
  for (const std::string& cell : cells) {
    if (!is_first) *text += separator;
    is_first = false;
    if (cell.find_first_of(special, 0, sizeof special) == std::string::npos) {
      *text += cell;
      continue;
    }
    *text += '"';
    for (const char c : cell) {
      if (c == '"') *text += '"';
      *text += c;
    }
    *text += '"';
  }
  *text += line_end;
}

}  // namespace zol_v2::interchange
