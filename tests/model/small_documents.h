// Small documents that together hold whatever large ones hold.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace zol_test {

// An element of a well-formed text, by its bytes.
struct Element {
  std::string_view name;  // with its prefix
  std::size_t begin = 0;  // of the start tag
  std::size_t content = 0;
  std::size_t close = 0;  // of the end tag; equal to `content` and `end` without one
  std::size_t end = 0;
  Element* parent = nullptr;
  std::vector<std::unique_ptr<Element>> children;
  bool is_cut = false;
  bool has_news = false;  // it, or what stands in it, is what no small document has yet

  std::string_view local_name() const { return name.substr(name.find(':') + 1); }
  bool is_within(const Element& other) const { return begin >= other.begin && end <= other.end; }
  // Cut, or in something that is.
  bool is_gone() const;
};

std::unique_ptr<Element> parse(std::string_view text);
// Every element, an outer one before those in it.
std::vector<Element*> elements_of(Element& root);

// Cuts a document down, again and again, as long as there are things in it that were not seen in
// one of the small ones before: a child in its parent, two kinds of children side by side, an
// attribute, markup in a text.
class SmallDocuments {
 public:
  // `is_good` tells whether what was cut may stand for a document.
  explicit SmallDocuments(std::function<bool(const std::string&)> is_good)
      : is_good_(std::move(is_good)) {}

  std::vector<std::string> of(const std::string& text);

 private:
  std::set<std::string> novelties(const Element& element, std::string_view text) const;
  std::set<std::string> all_novelties(const Element& element, std::string_view text) const;
  bool note_news(Element& element, std::string_view text) const;
  void cut_repetitions(Element& root, const std::string& text);

  std::function<bool(const std::string&)> is_good_;
  std::set<std::string> seen_;
};

}  // namespace zol_test
