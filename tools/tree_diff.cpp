#include "tools/tree_diff.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "model/Zol.h"
#include "tools/align.h"
#include "tools/tree.h"

using zol_v2::reflection::ConstRef;
using zol_v2::reflection::Item;
using zol_v2::reflection::Items;
using zol_v2::reflection::Kind;
using zol_v2::reflection::Row;
using zol_v2::reflection::Value;

namespace {

bool is_same_value(const Value& a, const Value& b) {
  if (a.kind() != b.kind()) return false;
  if (a.kind() == Kind::real) {
    const double x = a.number(), y = b.number();
    return (x == y && std::signbit(x) == std::signbit(y)) || (std::isnan(x) && std::isnan(y));
  }
  std::string_view x, y;
  if (a.narrow_text(&x) && b.narrow_text(&y)) return x == y;
  return exact_text(a) == exact_text(b);
}

bool is_same_item(const Item& a, const Item& b) {
  if (a.row != b.row) return false;
  const ConstRef x = a.object(), y = b.object();
  if (!x || !y) return !x && !y && is_same_value(a.value(), b.value());
  return is_same(x, y);
}

// What an entry of a list is known by.
enum Key : unsigned char { k_id, k_number, k_name, k_wavelength, k_keys };

struct Entry {
  DiffSide side;
  std::string keys[k_keys];
  bool is_taken = false;

  bool has_key() const {
    for (const std::string& key : keys) {
      if (!key.empty()) return true;
    }
    return false;
  }
};

bool ends_with(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

void read_keys(Entry* entry) {
  const ConstRef object = entry->side.item.object();
  if (!object) return;
  for (const Row row : object.type().rows()) {
    if (row.is_list() || !row.is_simple() || !object.has(row)) continue;
    const bool is_text = row.kind() == Kind::text;
    const Key key = row.name() == k_unique_id                    ? k_id
                    : is_text && ends_with(row.name(), "Number") ? k_number
                    : is_name_row(row)                           ? k_name
                    : row.is_attribute() && row.unit() == "nm"   ? k_wavelength
                                                                 : k_keys;
    if (key != k_keys && entry->keys[key].empty()) {
      entry->keys[key] = exact_text(object.value(row));
    }
  }
}

// All that an object holds, in one text: a guess of what belongs together, and no more.
std::string content_of(const Item& item) {
  std::string text(item.name());
  for_each_value(item, "", [&text](const std::string& path, const Item& value) {
    text.append(path).append("=").append(exact_text(value.value())).append("\n");
    return true;
  });
  return text;
}

using Entries = std::vector<Entry>;

// What bears a key that no other one bears goes together; with `takes_several`, also the first of
// several with the first.
void match_by_key(Entries& a, Entries& b, bool takes_several, std::vector<IndexPair>* pairs) {
  for (unsigned char key = 0; key < k_keys; ++key) {
    struct Bearers {
      std::vector<std::size_t> a, b;
    };
    std::unordered_map<std::string, Bearers> bearers;
    const auto note = [&](const Entries& entries, std::vector<std::size_t> Bearers::*side) {
      for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].is_taken || entries[i].keys[key].empty()) continue;
        const std::string name(entries[i].side.item.name());
        (bearers[name + '\n' + entries[i].keys[key]].*side).push_back(i);
      }
    };
    note(a, &Bearers::a);
    note(b, &Bearers::b);
    for (const auto& [name, found] : bearers) {
      if (!takes_several && (found.a.size() > 1 || found.b.size() > 1)) continue;
      for (std::size_t k = 0; k < std::min(found.a.size(), found.b.size()); ++k) {
        Entry& x = a[found.a[k]];
        Entry& y = b[found.b[k]];
        // An id says more than any name.
        if (key != k_id && !x.keys[k_id].empty() && !y.keys[k_id].empty()) continue;
        x.is_taken = y.is_taken = true;
        pairs->emplace_back(found.a[k], found.b[k]);
      }
    }
  }
}

void match_by_content(Entries& a, Entries& b, std::vector<IndexPair>* pairs) {
  std::unordered_map<std::string, std::size_t> numbers;
  const auto numbers_of = [&numbers](const Entries& entries, std::vector<std::size_t>* indices) {
    std::vector<std::size_t> result;
    for (std::size_t i = 0; i < entries.size(); ++i) {
      if (entries[i].is_taken) continue;
      indices->push_back(i);
      const std::size_t next = numbers.size();
      result.push_back(numbers.try_emplace(content_of(entries[i].side.item), next).first->second);
    }
    return result;
  };
  std::vector<std::size_t> indices_a, indices_b;
  const std::vector<std::size_t> first = numbers_of(a, &indices_a);
  const std::vector<std::size_t> second = numbers_of(b, &indices_b);
  if (first.empty() || second.empty()) return;
  for (const IndexPair& pair : common_subsequence(first, second)) {
    const std::size_t i = indices_a[pair.first], j = indices_b[pair.second];
    a[i].is_taken = b[j].is_taken = true;
    pairs->emplace_back(i, j);
  }
}

// What stands between two pairs in both lists is the same thing, changed: one with one.
void match_by_place(Entries& a, Entries& b, std::vector<IndexPair>* pairs) {
  std::sort(pairs->begin(), pairs->end());
  std::vector<IndexPair> fixed;
  const std::vector<bool> stays = in_order(*pairs);
  for (std::size_t i = 0; i < pairs->size(); ++i) {
    if (stays[i]) fixed.push_back((*pairs)[i]);
  }
  fixed.emplace_back(a.size(), b.size());
  std::size_t i = 0, j = 0;
  for (const IndexPair& next : fixed) {
    std::vector<std::size_t> left, right;
    for (; i < next.first; ++i) {
      if (!a[i].is_taken) left.push_back(i);
    }
    for (; j < next.second; ++j) {
      if (!b[j].is_taken) right.push_back(j);
    }
    for (std::size_t k = 0; k < std::min(left.size(), right.size()); ++k) {
      Entry& x = a[left[k]];
      Entry& y = b[right[k]];
      const bool has_names = x.has_key() || y.has_key();
      const bool has_ids = !x.keys[k_id].empty() && !y.keys[k_id].empty();
      if (x.side.item.row != y.side.item.row || has_ids ||
          (has_names && left.size() != right.size())) {
        continue;
      }
      x.is_taken = y.is_taken = true;
      pairs->emplace_back(left[k], right[k]);
    }
    i = next.first + 1;
    j = next.second + 1;
  }
}

class Comparer {
 public:
  explicit Comparer(const std::function<bool(const std::string&)>& is_ignored)
      : is_ignored_(is_ignored) {}

  void compare(const DiffSide& a, const DiffSide& b) {
    const Context outside = context_;
    enter(a, b);
    compare_objects(a, b);
    context_ = outside;
  }

  std::vector<Difference> take() { return std::move(differences_); }

 private:
  // What is around the objects at hand.
  struct Context {
    DiffSide around_a, around_b;
    DiffColor color_a, color_b;
    bool is_in_color = false;
  };

  void enter(const DiffSide& a, const DiffSide& b) {
    const ConstRef x = a.item.object(), y = b.item.object();
    const auto note = [](ConstRef object, DiffColor* color) {
      if (const auto* palette = object.as<zol_v2::PaletteType>()) color->palette = palette;
      if (const auto* set = object.as<zol_v2::ColorSetType>()) color->set = set;
      if (const auto* own = object.as<zol_v2::ColorType>()) color->color = own;
    };
    note(x, &context_.color_a);
    note(y, &context_.color_b);
    const bool is_color = x.as<zol_v2::ColorType>() != nullptr;
    if (context_.is_in_color && !is_color) return;
    context_.is_in_color = is_color;
    context_.around_a = a;
    context_.around_b = b;
  }

  void add(Difference::Kind kind, const DiffSide& a, const DiffSide& b) {
    differences_.push_back({kind, a, b, context_.around_a, context_.around_b, {}, {}});
    if (!context_.is_in_color) return;
    differences_.back().color_a = context_.color_a;
    differences_.back().color_b = context_.color_b;
  }

  void compare_items(const DiffSide& a, const DiffSide& b) {
    const bool has_objects = a.item.object() && b.item.object();
    if (a.item.row != b.item.row) {
      add(Difference::Kind::removed, a, {});
      add(Difference::Kind::added, {}, b);
    } else if (has_objects && a.item.object().type() == b.item.object().type() &&
               a.item.object().is_nil() == b.item.object().is_nil()) {
      compare(a, b);
    } else if (has_objects || !is_same_item(a.item, b.item)) {
      add(Difference::Kind::changed, a, b);
    }
  }

  void compare_single(const Entries& a, const Entries& b) {
    if (!a.empty() && !b.empty()) {
      compare_items(a.front().side, b.front().side);
    } else if (!a.empty()) {
      add(Difference::Kind::removed, a.front().side, {});
    } else if (!b.empty()) {
      add(Difference::Kind::added, {}, b.front().side);
    }
  }

  void compare_lists(Entries& a, Entries& b) {
    std::size_t begin = 0;
    while (begin < a.size() && begin < b.size() &&
           is_same_item(a[begin].side.item, b[begin].side.item)) {
      ++begin;
    }
    std::size_t tail = 0;
    while (begin + tail < a.size() && begin + tail < b.size() &&
           is_same_item(a[a.size() - 1 - tail].side.item, b[b.size() - 1 - tail].side.item)) {
      ++tail;
    }
    const auto trim = [=](Entries& entries) {
      entries.erase(entries.end() - static_cast<std::ptrdiff_t>(tail), entries.end());
      entries.erase(entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(begin));
      for (Entry& entry : entries) read_keys(&entry);
    };
    trim(a);
    trim(b);
    if (a.empty() && b.empty()) return;
    std::vector<IndexPair> pairs;
    match_by_key(a, b, false, &pairs);
    match_by_content(a, b, &pairs);
    match_by_place(a, b, &pairs);
    match_by_key(a, b, true, &pairs);
    std::sort(pairs.begin(), pairs.end());
    tell(a, b, pairs);
  }

  void tell(const Entries& a, const Entries& b, const std::vector<IndexPair>& pairs) {
    const std::vector<bool> stays = in_order(pairs);
    std::size_t i = 0, j = 0;
    const auto tell_until = [&](std::size_t end_a, std::size_t end_b) {
      for (; i < end_a; ++i) {
        if (!a[i].is_taken) add(Difference::Kind::removed, a[i].side, {});
      }
      for (; j < end_b; ++j) {
        if (!b[j].is_taken) add(Difference::Kind::added, {}, b[j].side);
      }
    };
    for (std::size_t k = 0; k < pairs.size(); ++k) {
      const DiffSide& x = a[pairs[k].first].side;
      const DiffSide& y = b[pairs[k].second].side;
      tell_until(pairs[k].first, stays[k] ? pairs[k].second : j);
      if (!stays[k]) add(Difference::Kind::moved, x, y);
      compare_items(x, y);
    }
    tell_until(a.size(), b.size());
  }

  // The entries of each row of the parent.
  std::vector<Entries> entries_of(const DiffSide& side, const std::vector<Row>& ways) const {
    std::vector<Entries> result(ways.size());
    Steps steps;
    std::size_t at = 0;
    for_each_item(side.item.object(), [&](const Item& item) {
      while (ways[at] != item.way) ++at;
      Entry entry;
      entry.side = {side.path, item};
      steps.append(item, &entry.side.path);
      if (!is_ignored_(entry.side.path)) result[at].push_back(std::move(entry));
    });
    return result;
  }

  void compare_objects(const DiffSide& a, const DiffSide& b) {
    if (is_same(a.item.object(), b.item.object())) return;
    std::vector<Row> ways;
    for (const Row row : a.item.object().type().rows()) ways.push_back(row);
    std::vector<Entries> first = entries_of(a, ways), second = entries_of(b, ways);
    for (std::size_t i = 0; i < ways.size(); ++i) {
      if (ways[i].is_list()) {
        compare_lists(first[i], second[i]);
      } else {
        compare_single(first[i], second[i]);
      }
    }
  }

  const std::function<bool(const std::string&)>& is_ignored_;
  Context context_;
  std::vector<Difference> differences_;
};

}  // namespace

bool is_same(ConstRef a, ConstRef b) {
  if (a.type() != b.type() || a.is_nil() != b.is_nil()) return false;
  for (const Row row : a.type().attributes()) {
    if (a.has(row) != b.has(row)) return false;
    if (a.has(row) && !is_same_value(a.value(row), b.value(row))) return false;
  }
  Items::Iterator x = a.children().begin(), y = b.children().begin();
  for (; !x.is_at_end() && !y.is_at_end(); ++x, ++y) {
    if (x->way != y->way || !is_same_item(*x, *y)) return false;
  }
  return x.is_at_end() && y.is_at_end();
}

std::vector<Difference> differences(ConstRef a, ConstRef b,
                                    const std::function<bool(const std::string&)>& is_ignored) {
  Comparer comparer(is_ignored);
  const std::string path(a.type().name());
  comparer.compare({path, item_of(a)}, {path, item_of(b)});
  return comparer.take();
}
