#include "interchange/report.h"

#include <algorithm>

namespace zol_v2::interchange {

void Losses::add(std::string_view kind, std::size_t count) {
  if (count == 0) return;
  const auto found =
      std::find_if(all_.begin(), all_.end(), [&](const Loss& loss) { return loss.kind == kind; });
  if (found != all_.end()) {
    found->count += count;
  } else {
    all_.push_back({std::string(kind), count});
  }
}

void Losses::take_back(std::string_view kind) {
  all_.erase(
      std::remove_if(all_.begin(), all_.end(), [&](const Loss& loss) { return loss.kind == kind; }),
      all_.end());
}

void Report::assume(std::string note) {
  if (std::find(notes.begin(), notes.end(), note) == notes.end()) notes.push_back(std::move(note));
}

void Report::fail(std::string_view rule, std::string sentence, const SourcePlace& place) {
  Fault fault;
  fault.rule = rule;
  fault.expected = std::move(sentence);
  fault.place = place;
  faults.push_back(std::move(fault));
}

SourcePlace place_of(std::string_view text, std::size_t offset) {
  constexpr std::string_view k_mark = "\xEF\xBB\xBF";
  SourcePlace place{1, 1, offset};
  const std::size_t end = std::min(offset, text.size());
  for (std::size_t i = text.substr(0, 3) == k_mark ? 3 : 0; i < end; ++i) {
    if (text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n'))) {
      ++place.line;
      place.column = 1;
    } else if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) {
      ++place.column;
    }
  }
  return place;
}

}  // namespace zol_v2::interchange
