#include "model/small_documents.h"

#include <algorithm>

namespace zol_test {

namespace {

constexpr std::size_t k_wanted_size = 2000;

void add_text(const Element& element, std::string_view text, std::string* out) {
  if (element.is_cut) return;
  std::size_t at = element.begin;
  for (const auto& child : element.children) {
    out->append(text.substr(at, child->begin - at));
    add_text(*child, text, out);
    at = child->end;
  }
  out->append(text.substr(at, element.end - at));
}

// What is left of the text, without the empty lines that the cuts leave.
std::string remains(const Element& root, std::string_view text) {
  std::string whole(text.substr(0, root.begin));
  add_text(root, text, &whole);
  whole.append(text.substr(root.end));
  std::string out;
  for (std::size_t at = 0; at < whole.size();) {
    const std::size_t end = std::min(whole.find('\n', at), whole.size() - 1) + 1;
    if (whole.find_first_not_of(" \t\r\n", at) < end) out.append(whole, at, end - at);
    at = end;
  }
  return out;
}

const Element* previous_of(const Element& element) {
  const Element* previous = nullptr;
  if (element.parent == nullptr) return nullptr;
  for (const auto& sibling : element.parent->children) {
    if (sibling.get() == &element) break;
    if (!sibling->is_cut) previous = sibling.get();
  }
  return previous;
}

// Their names. The samples have no "=" in a value.
std::vector<std::string_view> attributes_of(const Element& element, std::string_view text) {
  const std::string_view tag = text.substr(element.begin, element.content - element.begin);
  std::vector<std::string_view> names;
  for (std::size_t at = 0; (at = tag.find('=', at)) != tag.npos; ++at) {
    const std::size_t name = tag.find_last_of(" \t\r\n", at) + 1;
    names.push_back(tag.substr(name, at - name));
  }
  return names;
}

// The element's tree of names.
std::string shape_of(const Element& element, std::string_view text) {
  std::string shape(element.name);
  for (const std::string_view name : attributes_of(element, text)) shape.append(" ").append(name);
  shape += '(';
  for (const auto& child : element.children) shape += shape_of(*child, text);
  return shape + ')';
}

}  // namespace

std::unique_ptr<Element> parse(std::string_view text) {
  std::unique_ptr<Element> root;
  Element* open = nullptr;
  for (std::size_t at = 0; (at = text.find('<', at)) != text.npos;) {
    if (text[at + 1] == '!' || text[at + 1] == '?') {
      const char kind = text[at + 1] == '?' ? '?' : text[at + 2];
      const char* const stop = kind == '?'   ? "?>"
                               : kind == '-' ? "-->"
                               : kind == '[' ? "]]>"
                                             : "]>";
      at = text.find(stop, at) + 1;
    } else if (text[at + 1] == '/') {
      open->close = at;
      at = text.find('>', at) + 1;
      open->end = at;
      open = open->parent;
    } else {
      auto element = std::make_unique<Element>();
      element->begin = at;
      element->name = text.substr(at + 1, text.find_first_of(" \t\r\n/>", at) - at - 1);
      // A value may hold a ">".
      for (char quote = 0; quote != 0 || text[at] != '>'; ++at) {
        if (quote != 0 ? text[at] == quote : text[at] == '"' || text[at] == '\'') {
          quote = quote != 0 ? '\0' : text[at];
        }
      }
      const bool is_empty = text[at - 1] == '/';
      element->content = element->close = element->end = ++at;
      element->parent = open;
      Element* const added = element.get();
      if (open == nullptr) {
        root = std::move(element);
      } else {
        open->children.push_back(std::move(element));
      }
      if (!is_empty) open = added;
    }
  }
  return root;
}

bool Element::is_gone() const { return is_cut || (parent != nullptr && parent->is_gone()); }

std::vector<Element*> elements_of(Element& root) {
  std::vector<Element*> all = {&root};
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Element& element = *all[i];
    for (const auto& child : element.children) {
      if (!child->is_cut) all.push_back(child.get());
    }
  }
  return all;
}

std::set<std::string> SmallDocuments::novelties(const Element& element,
                                                std::string_view text) const {
  std::set<std::string> found;
  const auto add = [&](std::string what) {
    if (seen_.count(what) == 0) found.insert(std::move(what));
  };
  const std::string name(element.local_name());
  if (element.parent != nullptr) {
    const std::string place = std::string(element.parent->local_name()) + '/';
    const Element* const previous = previous_of(element);
    add(place + name);
    if (previous != nullptr) add(place + std::string(previous->local_name()) + ',' + name);
  }
  for (const std::string_view attribute : attributes_of(element, text)) {
    add(name + '@' + std::string(attribute));
  }
  if (element.children.empty()) {
    const std::string_view content = text.substr(element.content, element.close - element.content);
    for (const char* const markup : {"<!--", "<?", "<![", "&#", "&"}) {
      if (content.find(markup) != content.npos) add(name + " with " + markup);
    }
  }
  return found;
}

std::set<std::string> SmallDocuments::all_novelties(const Element& element,
                                                    std::string_view text) const {
  std::set<std::string> found = novelties(element, text);
  for (const auto& child : element.children) {
    if (!child->is_cut) found.merge(all_novelties(*child, text));
  }
  return found;
}

bool SmallDocuments::note_news(Element& element, std::string_view text) const {
  element.has_news = !novelties(element, text).empty();
  for (const auto& child : element.children) {
    if (!child->is_cut && note_news(*child, text)) element.has_news = true;
  }
  return element.has_news;
}

// Siblings of one shape: two of them tell all that a thousand do.
void SmallDocuments::cut_repetitions(Element& root, const std::string& text) {
  for (Element* const element : elements_of(root)) {
    std::multiset<std::string> shapes;
    for (const auto& child : element->children) {
      std::string shape = shape_of(*child, text);
      child->is_cut = shapes.count(shape) == 2;
      shapes.insert(std::move(shape));
    }
  }
}

std::vector<std::string> SmallDocuments::of(const std::string& large) {
  std::string text = large;
  std::unique_ptr<Element> root = parse(text);
  cut_repetitions(*root, text);
  text = remains(*root, text);

  std::vector<std::string> documents;
  while (true) {
    root = parse(text);
    const std::vector<Element*> all = elements_of(*root);
    const auto target = std::find_if(all.begin(), all.end(), [&](const Element* element) {
      return !novelties(*element, text).empty();
    });
    if (target == all.end()) return documents;
    Element& kept = **target;
    const std::set<std::string> wanted = novelties(kept, text);
    std::string rest = text;
    const auto cut = [&](const std::function<bool(const Element&)>& may_go) {
      for (Element* const element : elements_of(*root)) {
        if (rest.size() <= k_wanted_size) return;
        if (kept.is_within(*element) || !may_go(*element) || element->is_gone()) {
          continue;
        }
        element->is_cut = true;
        std::string less = remains(*root, text);
        // The neighbours of what goes may be what is to be kept.
        if (novelties(kept, text) == wanted && is_good_(less)) {
          rest = std::move(less);
        } else {
          element->is_cut = false;
        }
      }
    };
    note_news(*root, text);
    // What is large goes at once, or the rest would be read too often.
    cut([](const Element& element) { return element.end - element.begin > k_wanted_size / 2; });
    cut([](const Element& element) { return !element.has_news; });
    cut([](const Element&) { return true; });
    documents.push_back(std::move(rest));
    seen_.merge(all_novelties(*root, text));
  }
}

}  // namespace zol_test
