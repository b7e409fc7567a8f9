#include "interchange/record_lines.h"

#include <gtest/gtest.h>

#include "model/Zol.h"

namespace zol_test {

using namespace zol_v2::interchange;

std::vector<std::string> record_lines(const zol_v2::Zol& document) {
  std::vector<std::string> lines;
  const auto add = [&](const ColorRecord& record) {
    lines.push_back(std::to_string(static_cast<int>(record.kind)) + '|' + record.group + '|' +
                    record.part + '|' + std::to_string(record.pair) + '|' + record.name + '|' +
                    record.number + '|' + record.id + '|' + record.comments);
    for (const Rendering& rendering : record.renderings) {
      std::string line = "  " + rendering.space + '|' + rendering.name;
      for (const std::string& value : rendering.conditions.values) line += '|' + value;
      for (const Coordinate& coordinate : rendering.coordinates) {
        line += '|' + coordinate.axis + '=' + coordinate.text + coordinate.unit;
      }
      lines.push_back(line);
    }
  };
  for_each_record(document, add, nullptr);
  return lines;
}

std::string written(const zol_v2::Zol& document, Format format, const WriteOptions& options,
                    Report* report) {
  const std::unique_ptr<Writer> writer = make_writer(format, options);
  writer->add(document, "document");
  std::string bytes;
  const Report made = writer->finish(&bytes);
  EXPECT_EQ(told(made), "");
  if (report != nullptr) *report = made;
  return bytes;
}

std::size_t count_of(const Report& report, std::string_view kind) {
  for (const auto& loss : report.losses.all()) {
    if (loss.kind == kind) return loss.count;
  }
  return 0;
}

std::string told(const Report& report) {
  if (report) return "";
  const zol_v2::Fault& fault = report.faults.front();
  return std::to_string(fault.place.line) + ':' + std::to_string(fault.place.column) + ' ' +
         fault.text();
}

}  // namespace zol_test
