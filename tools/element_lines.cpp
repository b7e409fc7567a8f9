#include "tools/element_lines.h"

#include <map>

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

  // Of the element.
  const std::string& path() const { return path_; }
  int line() const { return line_; }

 private:
  struct Level {
    std::string path;
    std::map<std::string, unsigned> counts;
  };

  bool enter() {
    line_ = reader_.get_line_no();
    lmx::c_xml::get_local_name(reader_.name, &name_);
    name_.insert(0, "Zol:");
    path_ = levels_.empty()
                ? '/' + name_
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
  int line_ = 0;
};

}  // namespace

std::string child_path(const std::string& parent, const std::string& name, unsigned number) {
  return parent + '/' + name + '[' + std::to_string(number) + ']';
}

void find_elements(const char* data, std::size_t size, std::vector<ElementPlace>* places) {
  std::map<std::string, ElementPlace*> sought;
  for (ElementPlace& place : *places) sought.emplace(place.path, &place);

  PathWalk walk(data, size);
  while (!sought.empty() && walk.next()) {
    const auto found = sought.find(walk.path());
    if (found == sought.end()) continue;
    found->second->line = walk.line();
    sought.erase(found);
  }
}
