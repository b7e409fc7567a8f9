// Tables of colours, tidy and wide.
#include <algorithm>
#include <map>
#include <utility>

#include "interchange/csv.h"
#include "interchange/internal/columns.h"
#include "interchange/internal/writers.h"

namespace zol_v2::interchange::internal {

namespace {

class TableWriter : public RecordWriter {
 protected:
  TableWriter(Format format, const WriteOptions& options)
      : RecordWriter(options),
        separator_(options.separator != 0  ? options.separator
                   : format == Format::tsv ? '\t'
                                           : ','),
        line_end_(format == Format::tsv ? "\n" : "\r\n"),
        decimal_(options.decimal) {}

  void append(const std::vector<std::string>& cells, std::string* text) const {
    append_cells(cells, separator_, line_end_, text);
  }

  std::string text_of(const Coordinate& coordinate) const {
    std::string text = coordinate.text;
    if (coordinate.is_number) std::replace(text.begin(), text.end(), '.', decimal_);
    return text;
  }

  // Color, Group, Part, Pair, Name, Number, UniqueID, Comments.
  static std::vector<std::string> names_of(const ColorRecord& record, std::size_t color) {
    return {std::to_string(color),
            record.group,
            record.part,
            record.pair == 0 ? std::string() : std::to_string(record.pair),
            record.name,
            record.number,
            record.id,
            record.comments};
  }
  static std::vector<std::string> headings_of_names() {
    std::vector<std::string> headings;
    for (std::size_t i = 1; i <= static_cast<std::size_t>(Field::comments); ++i) {
      headings.emplace_back(name_of(static_cast<Field>(i)));
    }
    return headings;
  }

 private:
  char separator_;
  std::string_view line_end_;
  char decimal_;
};

// A line for each value, always with the same columns.
class TidyWriter : public TableWriter {
 public:
  TidyWriter(Format format, const WriteOptions& options) : TableWriter(format, options) {
    std::vector<std::string> headings = {std::string(name_of(Field::document))};
    for (const std::string& heading : headings_of_names()) headings.push_back(heading);
    for (const Field field : {Field::rendering, Field::space, Field::space_name}) {
      headings.emplace_back(name_of(field));
    }
    for (std::size_t i = 0; i < k_conditions; ++i) {
      headings.emplace_back(name_of(static_cast<Condition>(i)));
    }
    for (const Field field : {Field::axis, Field::value, Field::unit}) {
      headings.emplace_back(name_of(field));
    }
    append(headings, &text_);
  }

 protected:
  void add_record(const ColorRecord& record, std::string_view document) override {
    ++colors_;
    if (record.renderings.empty()) losses().add("colour without values");
    for (std::size_t i = 0; i < record.renderings.size(); ++i) {
      const Rendering& rendering = record.renderings[i];
      std::vector<std::string> cells = {std::string(document)};
      for (std::string& name : names_of(record, colors_)) cells.push_back(std::move(name));
      cells.push_back(std::to_string(i + 1));
      cells.push_back(rendering.space);
      cells.push_back(rendering.name);
      cells.insert(cells.end(), rendering.conditions.values.begin(),
                   rendering.conditions.values.end());
      const std::size_t size = cells.size();
      for (const Coordinate& coordinate : rendering.coordinates) {
        cells.resize(size);
        cells.push_back(coordinate.axis);
        cells.push_back(text_of(coordinate));
        cells.push_back(coordinate.unit);
        append(cells, &text_);
      }
    }
    hand_over(&text_);
  }

  void finish_records(std::string* bytes) override { *bytes += text_; }

 private:
  std::string text_;
  std::size_t colors_ = 0;
};

// A line for each rendering in one space, with the columns that say something.
class WideWriter : public TableWriter {
 public:
  WideWriter(Format format, const WriteOptions& options)
      : TableWriter(format, options), space_(options.space) {}

 protected:
  void add_record(const ColorRecord& record, std::string_view document) override {
    std::vector<std::string_view> seen;
    for (const Rendering& rendering : record.renderings) {
      if (std::find(seen.begin(), seen.end(), rendering.space) != seen.end()) continue;
      seen.push_back(rendering.space);
      ++spaces_[rendering.space];
    }
    records_.push_back(record);  // what it was made of may go
    documents_.emplace_back(document);
  }

  void finish_records(std::string* bytes) override {
    if (space_.empty()) choose_space();
    collect_columns();
    if (axes_.empty()) return fail();
    std::vector<std::string> headings =
        columns_of({std::string(name_of(Field::document))}, headings_of_names());
    headings.emplace_back(name_of(Field::space_name));
    for (std::size_t i = 0; i < k_conditions; ++i) {
      headings.emplace_back(name_of(static_cast<Condition>(i)));
    }
    keep_used(&headings);
    for (const auto& [axis, unit] : axes_) {
      headings.push_back(space_ + '.' + axis + (unit.empty() ? "" : " [" + unit + ']'));
    }
    append(headings, bytes);
    for (std::size_t i = 0; i < records_.size(); ++i) {
      append_lines(i, bytes);
      hand_over(bytes);
    }
  }

 private:
  // Without a column for any value it would be a table of nothing.
  void fail() {
    std::string others;
    for (const auto& [space, count] : spaces_) others += (others.empty() ? "" : ", ") + space;
    report().fail("no-colours", space_.empty() || others.empty()
                                    ? "No colour has values"
                                    : "No colour has values in " + space_ + ", but in " + others);
  }

  void choose_space() {
    const auto most =
        std::max_element(spaces_.begin(), spaces_.end(),
                         [](const auto& a, const auto& b) { return a.second < b.second; });
    if (most == spaces_.end()) return;
    space_ = most->first;
    if (spaces_.size() > 1) report().assume("the table is of " + space_);
  }

  static std::vector<std::string> columns_of(std::vector<std::string> first,
                                             const std::vector<std::string>& rest) {
    first.insert(first.end(), rest.begin(), rest.end());
    return first;
  }

  std::vector<std::string> fixed_cells(std::size_t index, const Rendering& rendering) const {
    std::vector<std::string> cells =
        columns_of({documents_[index]}, names_of(records_[index], index + 1));
    cells.push_back(rendering.name);
    cells.insert(cells.end(), rendering.conditions.values.begin(),
                 rendering.conditions.values.end());
    return cells;
  }

  void collect_columns() {
    for (std::size_t i = 0; i < records_.size(); ++i) {
      bool has_any = false;
      for (const Rendering& rendering : records_[i].renderings) {
        if (rendering.space != space_) {
          losses().add("rendering in " + rendering.space);
          continue;
        }
        has_any = true;
        const std::vector<std::string> cells = fixed_cells(i, rendering);
        is_used_.resize(cells.size());
        for (std::size_t j = 0; j < cells.size(); ++j) {
          if (!cells[j].empty()) is_used_[j] = true;
        }
        for (const Coordinate& coordinate : rendering.coordinates) {
          if (numbers_.emplace(coordinate.axis, axes_.size()).second) {
            axes_.emplace_back(coordinate.axis, coordinate.unit);
          }
        }
      }
      if (!has_any) losses().add("colour without " + (space_.empty() ? "values" : space_));
    }
    // A column is in no document's way that is the only one.
    const bool is_one = std::all_of(documents_.begin(), documents_.end(),
                                    [&](const auto& name) { return name == documents_.front(); });
    is_used_.resize(1 + headings_of_names().size() + 1 + k_conditions);
    if (is_one) is_used_.front() = false;
  }

  void keep_used(std::vector<std::string>* cells) const {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < cells->size(); ++i) {
      if (is_used_[i]) std::swap((*cells)[kept++], (*cells)[i]);
    }
    cells->resize(kept);
  }

  void append_lines(std::size_t index, std::string* bytes) {
    for (const Rendering& rendering : records_[index].renderings) {
      if (rendering.space != space_) continue;
      std::vector<std::string> cells = fixed_cells(index, rendering);
      keep_used(&cells);
      const std::size_t size = cells.size();
      cells.resize(size + axes_.size());
      for (const Coordinate& coordinate : rendering.coordinates) {
        std::string& cell = cells[size + numbers_.at(coordinate.axis)];
        if (!cell.empty()) losses().add("second value of " + space_ + ' ' + coordinate.axis);
        if (cell.empty()) cell = text_of(coordinate);
      }
      append(cells, bytes);
    }
  }

  std::string space_;
  std::map<std::string, std::size_t> spaces_;
  std::vector<ColorRecord> records_;
  std::vector<std::string> documents_;
  std::vector<bool> is_used_;                              // of the columns before the axes
  std::vector<std::pair<std::string, std::string>> axes_;  // with their units
  std::map<std::string, std::size_t> numbers_;
};

}  // namespace

std::unique_ptr<Writer> make_table_writer(Format format, const WriteOptions& options) {
  if (options.is_wide) return std::make_unique<WideWriter>(format, options);
  return std::make_unique<TidyWriter>(format, options);
}

}  // namespace zol_v2::interchange::internal
