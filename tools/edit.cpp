#include "tools/edit.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include "facade/faults.h"
#include "tools/paths.h"

using zol_v2::reflection::ConstRef;
using zol_v2::reflection::Found;
using zol_v2::reflection::Item;
using zol_v2::reflection::Kind;
using zol_v2::reflection::Place;
using zol_v2::reflection::Ref;
using zol_v2::reflection::Row;
using zol_v2::reflection::Step;

namespace {

std::string has_no_more(std::string_view step, std::size_t count) {
  return '\'' + std::string(step) + "' can't be made: there " + (count == 1 ? "is " : "are ") +
         (count == 0 ? "none" : std::to_string(count)) + ", and the next one is number " +
         std::to_string(count + 1);
}

// Walks down a path, making what is missing, and sets what is at its end.
class Setter {
 public:
  Setter(Ref root, const Assignment& assignment) : at_(root), assignment_(assignment) {}

  // Empty, or why it is refused.
  std::string run() {
    const std::string_view path = assignment_.path;
    std::size_t begin = std::min(path.find('/'), path.size());
    while (begin < path.size() && fault_.empty()) {
      const std::size_t end = std::min(path.find('/', begin + 1), path.size());
      step_text_ = path.substr(begin + 1, end - begin - 1);
      if (step_text_ == k_nil_step && end == path.size()) {
        set_nil();
        break;
      }
      if (!parse_step(step_text_, &step_)) return "'" + std::string(step_text_) + "' is no step";
      take(end == path.size());
      begin = end;
    }
    if (fault_.empty() && !is_set_) set_content();
    return fault_;
  }

 private:
  void refuse(std::string why) { fault_ = std::move(why); }

  void take(bool is_last) {
    if (!step_.is_attribute && ConstRef(at_).is_nil()) (void)at_.set_nil(false);
    const RowPlace rows = find_row(at_.type(), step_);
    if (!rows) return refuse(unknown_step(at_.type(), step_text_));
    if (rows.row.is_simple()) {
      if (!is_last) return refuse("'" + std::string(step_text_) + "' is a value");
      return set_value(rows);
    }
    if (rows.row.kind() == Kind::mark && is_last && assignment_.value.empty()) {
      is_set_ = true;  // it always is
      return;
    }
    const Ref below = object_at(rows);
    if (!fault_.empty()) return;
    if (!below) return refuse("'" + std::string(step_text_) + "' has no value to be set");
    at_ = below;
  }

  void set_nil() {
    const std::string& value = assignment_.value;
    const bool is_nil = value == "true" || value == "1";
    is_set_ = true;
    if (!is_nil && value != "false" && value != "0") {
      return refuse("xsi:nil is '" + value + "', true or false is expected");
    }
    if (!at_.set_nil(is_nil)) refuse(std::string(at_.type().name()) + " can't be nil");
  }

  // An element with a value and attributes goes by its own name, too.
  void set_content() {
    const Row content = at_.type().content();
    if (!content) return refuse("It holds elements and no value");
    if (ConstRef(at_).is_nil()) (void)at_.set_nil(false);
    store(at_, content, std::nullopt);
  }

  void set_value(const RowPlace& rows) {
    if (rows.way.is_transparent()) {
      const Ref holder = holder_at(rows);
      if (holder) store(holder, rows.row, std::nullopt);
      return;
    }
    if (rows.row.place() == Place::alternative && !may_choose(at_, rows.row)) return;
    if (!rows.row.is_list()) {
      return step_.number == 1 ? store(at_, rows.row, std::nullopt)
                               : refuse(has_no_more(step_text_, ConstRef(at_).count(rows.row)));
    }
    const unsigned count = ConstRef(at_).count(rows.row);
    if (step_.number > count + std::size_t{1}) return refuse(has_no_more(step_text_, count));
    if (step_.number <= count) return store(at_, rows.row, step_.number - 1);
    store(at_, rows.row, std::nullopt);
  }

  void store(Ref owner, Row row, std::optional<unsigned> index) {
    const lmx::elmx_error code = index ? owner.set_text(row, *index, assignment_.value)
                                       : owner.set_text(row, assignment_.value);
    is_set_ = true;
    if (code != lmx::elmx_ok) {
      refuse(zol_v2::refusal(row, assignment_.value, code).text());
    }
  }

  Ref object_at(const RowPlace& rows) {
    if (rows.way.is_transparent()) {
      const Ref holder = holder_at(rows);
      return holder ? chosen_in(holder, rows.row) : Ref();
    }
    if (rows.row.place() == Place::alternative) {
      return may_choose(at_, rows.row) ? chosen_in(at_, rows.row) : Ref();
    }
    const unsigned count = ConstRef(at_).count(rows.row);
    if (!rows.row.is_list()) {
      if (step_.number == 1) return at_.child(rows.row);
    } else if (step_.number <= count) {
      return at_.child(rows.row, step_.number - 1);
    } else if (step_.number == count + std::size_t{1}) {
      return at_.append(rows.row);
    }
    refuse(has_no_more(step_text_, count));
    return {};
  }

  static Ref chosen_in(Ref choice, Row alternative) {
    const ConstRef seen(choice);
    if (seen.chosen() != alternative) return choice.choose(alternative);
    // To choose again would make another object.
    const ConstRef held = seen.value(alternative).child();
    return held ? Ref(const_cast<zol_v2::reflection::Object&>(held.object()))
                : choice.choose(alternative);
  }

  // The holder whose alternative the step means, or a new one.
  Ref holder_at(const RowPlace& rows) {
    if (!rows.way.is_list()) {
      if (step_.number != 1) {
        refuse(has_no_more(step_text_, ConstRef(at_).has(rows.way) ? 1 : 0));
        return {};
      }
      const Ref holder = at_.child(rows.way);
      return may_choose(holder, rows.row) ? holder : Ref();
    }
    std::size_t number = 0;
    const unsigned count = ConstRef(at_).count(rows.way);
    for (unsigned i = 0; i < count; ++i) {
      const Ref holder = at_.child(rows.way, i);
      if (ConstRef(holder).chosen() == rows.row && ++number == step_.number) return holder;
    }
    if (step_.number == number + 1) return at_.append(rows.way);
    refuse(has_no_more(step_text_, number));
    return {};
  }

  bool may_choose(Ref choice, Row alternative) {
    const Row chosen = ConstRef(choice).chosen();
    if (!chosen || chosen == alternative || (chosen.is_simple() && alternative.is_simple())) {
      return true;
    }
    refuse("'" + std::string(step_text_) + "' would take the place of " +
           std::string(chosen.name()) + ", which must be deleted first");
    return false;
  }

  Ref at_;
  const Assignment& assignment_;
  std::string_view step_text_;
  Step step_;
  bool is_set_ = false;
  std::string fault_;
};

struct Deletion {
  const std::string* path;
  Item item;
  std::size_t depth;
};

// Why the item is not to be deleted; empty after it was.
std::string erase(const Deletion& deletion) {
  const Item& item = deletion.item;
  if (!item.row) return "The document itself can't be deleted";
  // Whatever a tree holds may be changed by whoever may change its root.
  const Ref parent(const_cast<zol_v2::reflection::Object&>(item.parent.object()));
  const bool is_gone =
      item.way.is_list() ? parent.remove(item.way, item.entry) : parent.unset(item.way);
  if (is_gone) return "";
  return std::string(item.way.is_transparent() ? "It" : item.row.name()) + " is required in " +
         std::string(item.parent.type().name());
}

// Deeper ones first, and the last of a list before those that would take its number.
void erase_all(std::vector<Deletion> deletions, std::vector<std::string>* faults) {
  const auto key = [](const Deletion& d) { return std::make_pair(d.depth, d.item.entry); };
  std::stable_sort(deletions.begin(), deletions.end(),
                   [&](const Deletion& a, const Deletion& b) { return key(b) < key(a); });
  const auto is_same = [](const Deletion& a, const Deletion& b) {
    return a.item.parent == b.item.parent && a.item.way == b.item.way &&
           a.item.entry == b.item.entry;
  };
  for (std::size_t i = 0; i < deletions.size(); ++i) {
    // The same one again has the same key.
    bool is_told_before = false;
    for (std::size_t j = i; j-- > 0 && key(deletions[j]) == key(deletions[i]);) {
      is_told_before = is_told_before || is_same(deletions[i], deletions[j]);
    }
    if (is_told_before) continue;
    const std::string fault = erase(deletions[i]);
    if (!fault.empty()) faults->push_back(*deletions[i].path + ": " + fault);
  }
}

}  // namespace

void edit(Ref root, const std::vector<Assignment>& assignments,
          const std::vector<std::string>& deletions, std::vector<std::string>* faults) {
  std::vector<Deletion> found;
  for (const std::string& path : deletions) {
    const Found at = find(root, path);
    if (at) {
      const auto depth = static_cast<std::size_t>(std::count(path.begin(), path.end(), '/'));
      found.push_back({&path, at.item, depth});
    } else {
      faults->push_back(path + ": " + path_fault(root, path, at));
    }
  }
  for (const Assignment& assignment : assignments) {
    const std::string_view path = assignment.path;
    const Found first = find(root, path.substr(0, path.find('/')));
    const std::string fault = first ? Setter(root, assignment).run()
                                    : path_fault(root, path.substr(0, path.find('/')), first);
    if (!fault.empty()) faults->push_back(assignment.path + ": " + fault);
  }
  erase_all(std::move(found), faults);
}
