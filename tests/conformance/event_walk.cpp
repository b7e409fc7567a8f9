// Walks through documents by the reader's events and says of each whether it got to the end.
//
// Takes the paths of files from the standard input, one a line, and writes a line for each: "good
// strict", "good" if only the reader takes it, or why not. What reading code would see is all that
// counts: an event that is no good, tags that do not match, and what stands outside of the one root
// element.
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "facade/files.h"
#include "lmx/reader.h"

namespace {

class EventWalk {
 public:
  explicit EventWalk(const std::string& path) : reader_(path.c_str()) {}
  ~EventWalk() {
    while (!open_.empty()) open_.pop_back();  // scopes die innermost first
  }

  std::string verdict() {
    if (!reader_.is_open()) return "not there";
    bool has_root = false;
    while (true) {
      next_event();
      switch (reader_.get_current_event()) {
        case lmx::elxp_end_of_input:
          return has_root && open_.empty() ? "good" : "ends early";
        case lmx::elxp_text:
          if (open_.empty()) return "text outside of the root";
          break;
        case lmx::elxp_name:
          if (open_.empty() && has_root) return "a second root";
          has_root = true;
          if (!start_tag()) return "bad start tag";
          break;
        case lmx::elxp_end_tag:
          if (open_.empty() || open_.back().name != reader_.name) return "tags do not match";
          open_.pop_back();
          break;
        default:
          return "code " + std::to_string(reader_.get_error());
      }
    }
  }

 private:
  struct Element {
    std::string name;
    std::unique_ptr<lmx::c_xml_reader_local> child;  // the scope of the child that was last opened
  };

  void next_event() {
    if (!open_.empty()) {
      open_.back().child.reset();
      open_.back().child = std::make_unique<lmx::c_xml_reader_local>(reader_);
    }
    lmx::elmx_error error = lmx::elmx_ok;
    reader_.get_element_event(nullptr, &error, &reader_.name);
  }

  bool start_tag() {
    std::string name = reader_.name;
    lmx::elmx_error error = lmx::elmx_ok;
    while (reader_.get_attribute_event(nullptr, &error, &reader_.attribute_name)) {
      if (reader_.get_current_event() != lmx::elxp_name) return false;
      if (!reader_.get_attribute_value(&reader_.value, lmx::elmx_preserve)) return false;
    }
    if (reader_.get_current_event() != lmx::elxp_end_tag) {
      open_.push_back({std::move(name), nullptr});
    }
    return true;
  }

  lmx::c_xml_reader_file reader_;
  std::vector<Element> open_;
};

bool is_strictly_good(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  return zol_v2::checkText(text) == lmx::elmx_ok;
}

}  // namespace

int main() {
  std::ios::sync_with_stdio(false);
  for (std::string path; std::getline(std::cin, path);) {
    const std::string verdict = EventWalk(path).verdict();
    std::cout << verdict << (verdict == "good" && is_strictly_good(path) ? " strict" : "") << '\n';
  }
}
