// Where faults of a tree stand in the text that it was loaded from.
#include <algorithm>
#include <charconv>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "facade/check.h"
#include "facade/internal/source_text.h"
#include "lmx/internal/tokeniser.h"
#include "lmx/reader.h"

namespace zol_v2 {

namespace {

using internal::SourceText;
using internal::Span;

// An element that some path leads through.
struct Node {
  const Node* up = nullptr;
  std::map<std::string, std::map<unsigned, std::unique_ptr<Node>>, std::less<>> below;
  Span tag;  // once it is found

  bool is_found() const { return tag.end != 0; }
};

// A step without a number means the first.
Node& step_to(Node& from, std::string_view step) {
  const std::size_t bracket = step.find('[');
  unsigned number = 1;
  if (bracket != std::string_view::npos) {
    std::from_chars(step.data() + bracket + 1, step.data() + step.size(), number);
  }
  std::unique_ptr<Node>& node = from.below[std::string(step.substr(0, bracket))][number];
  if (node == nullptr) {
    node = std::make_unique<Node>();
    node->up = &from;
  }
  return *node;
}

// The element that the path leads to; an attribute's name stays in *attribute.
Node& way_to(Node& top, std::string_view path, std::string* attribute) {
  Node* node = &top;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('/'), path.size());
    const std::string_view step = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    if (step[0] == '@') {
      *attribute = step.substr(1);
    } else if (step != "text()") {
      node = &step_to(*node, step);
    }
  }
  return *node;
}

// Goes through the elements that are on a way, and past all others.
class Search : public lmx::c_xml_reader_memory {
 public:
  explicit Search(const SourceText& source)
      : c_xml_reader_memory(source.bytes().data(), source.bytes().size()), source_(source) {}

  void run(Node& top) {
    std::vector<Level> levels;
    levels.push_back({&top, {}});
    std::string local;
    while (!levels.empty()) {
      const std::size_t before = at();
      lmx::elmx_error error = lmx::elmx_ok;
      get_element_event(nullptr, &error, &name);
      if (error != lmx::elmx_ok || get_current_event() == lmx::elxp_end_of_input) return;
      if (get_current_event() == lmx::elxp_text) continue;
      if (get_current_event() == lmx::elxp_end_tag) {
        levels.pop_back();
        continue;
      }
      get_local_name(name, &local);
      Node* const node = next_of(levels.back(), local);
      if (node != nullptr) node->tag = tag_from(before);
      if (node == nullptr || node->below.empty()) {
        if (!skip_rest_of_element(name)) return;
        continue;
      }
      bool is_empty = false;
      if (!skip_start_tag(&is_empty)) return;
      if (!is_empty) levels.push_back({node, {}});
    }
  }

 private:
  struct Level {
    Node* node;
    std::map<std::string, unsigned, std::less<>> counts;  // of the names that are looked for
  };

  static Node* next_of(Level& level, const std::string& name) {
    const auto named = level.node->below.find(name);
    if (named == level.node->below.end()) return nullptr;
    const auto numbered = named->second.find(++level.counts[name]);
    return numbered != named->second.end() ? numbered->second.get() : nullptr;
  }

  std::size_t at() const { return static_cast<std::size_t>(bytes_read()); }
  // What stands in an entity has the place of the reference.
  Span tag_from(std::size_t before) {
    if (tokeniser().getter().get_entity_stack_depth() != 0) return source_.reference_before(at());
    return source_.tag_head(source_.skip_to_content(before));
  }

  const SourceText& source_;
};

}  // namespace

void locate(std::vector<Fault>& faults, std::string_view bytes) {
  struct Sought {
    Fault* fault;
    const Node* node;
    std::string attribute;
  };
  Node top;
  std::vector<Sought> all;
  for (Fault& fault : faults) {
    if (fault.place || fault.path.empty()) continue;
    std::string attribute;
    const Node& node = way_to(top, fault.path, &attribute);
    all.push_back({&fault, &node, std::move(attribute)});
  }
  if (all.empty()) return;

  const SourceText source(bytes);
  Search(source).run(top);
  std::vector<SourcePlace*> places;
  for (Sought& sought : all) {
    const bool is_there = sought.node->is_found();
    while (!sought.node->is_found() && sought.node->up != nullptr) sought.node = sought.node->up;
    if (!sought.node->is_found()) continue;
    Span span = sought.node->tag;
    if (is_there && !sought.attribute.empty()) {
      const SourceText::Attribute found = source.attribute(span.begin, sought.attribute);
      if (found.name.size() != 0) span = found.value.size() != 0 ? found.value : found.name;
    }
    sought.fault->place.line = 1;  // until the lines are counted
    sought.fault->place.offset = span.begin;
    sought.fault->length = span.size();
    places.push_back(&sought.fault->place);
  }
  source.find_lines(std::move(places));
}

}  // namespace zol_v2
