#include "tools/element_lines.h"

#include "lmx/reader.h"

namespace {

// The elements of a text with their paths. Documents are matched by local names, and paths have the
// prefix that the library writes.
class PathWalk {
 public:
  PathWalk(const char* data, std::size_t size) : reader_(data, size) {}

  // Moves to the next start tag; false at the end of the text, or where it can't be read on.
  bool next() {
    while (true) {
      elmx_error_ = lmx::elmx_ok;
      reader_.get_element_event(nullptr, &elmx_error_, &reader_.name);
      if (elmx_error_ != lmx::elmx_ok) return false;
      switch (reader_.get_current_event()) {
        case lmx::elxp_text:
          break;
        case lmx::elxp_end_tag:
          if (levels_.empty()) return false;
          levels_.pop_back();
          break;
        default:
          return enter();
      }
    }
  }

  struct Level {
    std::string path;
    std::map<std::string, unsigned> counts;
  };
  // Of the element; the parent is null for the root.
  const std::string& path() const { return path_; }
  const std::string& name() const { return name_; }
  const Level* parent() const { return parent_ < 0 ? nullptr : &levels_[parent_]; }
  int line() const { return line_; }

 private:
  bool enter() {
    line_ = reader_.get_line_no();
    lmx::c_xml::get_local_name(reader_.name, &name_);
    name_.insert(0, "Zol:");
    parent_ = static_cast<std::ptrdiff_t>(levels_.size()) - 1;
    path_ = parent_ < 0 ? '/' + name_
                        : child_path(levels_.back().path, name_, ++levels_.back().counts[name_]);
    bool is_empty = false;
    if (!reader_.skip_start_tag(&is_empty)) return false;
    if (!is_empty) levels_.push_back({path_, {}});
    return true;
  }

  lmx::c_xml_reader_memory reader_;
  lmx::elmx_error elmx_error_ = lmx::elmx_ok;
  std::vector<Level> levels_;
  std::string path_;
  std::string name_;
  std::ptrdiff_t parent_ = -1;
  int line_ = 0;
};

// Whether the element at hand is the one beyond those that were counted.
bool is_beyond(const ElementPlace& place, const PathWalk& walk) {
  const auto counted = place.counts.find(walk.name());
  const unsigned written = counted == place.counts.end() ? 0 : counted->second;
  return walk.parent()->counts.at(walk.name()) > written;
}

}  // namespace

std::string child_path(const std::string& parent, const std::string& name, unsigned number) {
  return parent + '/' + name + '[' + std::to_string(number) + ']';
}

void find_elements(const char* data, std::size_t size, std::vector<ElementPlace>* places) {
  std::multimap<std::string, ElementPlace*> sought;
  for (ElementPlace& place : *places) sought.emplace(place.path, &place);

  PathWalk walk(data, size);
  while (!sought.empty() && walk.next()) {
    const auto [begin, end] = sought.equal_range(walk.path());
    for (auto at = begin; at != end;) {
      at->second->line = walk.line();
      at = at->second->is_child ? std::next(at) : sought.erase(at);
    }
    if (walk.parent() == nullptr) continue;
    const auto [first, last] = sought.equal_range(walk.parent()->path);
    for (auto at = first; at != last;) {
      ElementPlace& place = *at->second;
      if (!is_beyond(place, walk)) {
        ++at;
        continue;
      }
      place.path = walk.path();
      place.line = walk.line();
      at = sought.erase(at);
    }
  }
}
