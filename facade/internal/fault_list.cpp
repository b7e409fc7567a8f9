#include "facade/internal/fault_list.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "facade/internal/diagnosis.h"
#include "facade/internal/text_flaws.h"

namespace zol_v2::internal {

namespace {

using reflection::ConstRef;
using reflection::Item;

std::string utf8_of(const reflection::Value& text) {
  std::string_view utf8;
  return text.narrow_text(&utf8) ? std::string(utf8) : internal::utf8_of(text.text());
}

// What people call the object by; empty if it bears no name.
std::string name_of(ConstRef object) {
  const Row* const row = name_row(object.type().table());
  return row != nullptr && object.has(*row) ? excerpt(utf8_of(object.value(*row))) : std::string();
}

// Appends the steps, and notes the name and the end of the innermost object that bears one.
void describe(const Level& level, Fault& fault) {
  if (level.up != nullptr) describe(*level.up, fault);
  level.item.append_step(&fault.path);
  const ConstRef object = level.item.object();
  if (std::string name = object ? name_of(object) : std::string(); !name.empty()) {
    fault.object = std::move(name);
    fault.object_at = fault.path.size();
  }
}

}  // namespace

std::string Level::path() const {
  std::string text = up != nullptr ? up->path() : std::string();
  item.append_step(&text);
  return text;
}

std::string_view name_in_words(const Item& item) {
  return item.row && item.row.place() == Place::content ? item.owner.type().name() : item.name();
}

Fault* FaultList::add(Part& part, Severity severity, lmx::elmx_error code, const Level& level,
                      const Item& item) const {
  if (part.count++ >= limit_) return nullptr;
  Fault& fault = part.faults.emplace_back();
  fault.code = code;
  fault.severity = severity;
  describe(level, fault);
  if (!item.row) {
    fault.item = item.owner.type().name();
    return &fault;
  }
  const bool is_own = item.owner == level.item.owner && item.row == level.item.row;
  if (!is_own && !item.row.is_transparent()) item.append_step(&fault.path);
  fault.item = item.row.table().tag;
  if (item.row.place() == Place::content) fault.item = level.item.name();
  return &fault;
}

CheckReport FaultList::take() {
  CheckReport report;
  report.errors = unwritable_.count + unreadable_.count;
  report.warnings = warnings_.count;
  report.faults = std::move(unwritable_.faults);
  for (Part* const part : {&unreadable_, &warnings_}) {
    std::move(part->faults.begin(), part->faults.end(), std::back_inserter(report.faults));
  }
  return report;
}

}  // namespace zol_v2::internal
